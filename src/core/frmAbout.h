#pragma once
// "O autoře": the program's name, version and copyright. The version text is shared with
// the splash screen and the status bar.

#include <QDialog>

class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget *parent = nullptr);
};

QString VersionLabelText();     // "verze 2.4.1"
QString CopyrightLabelText();   // the splash's "© Copyright 2025. All rights reserved"
QString StatusVersionText();    // "Fondarix verze 2.4.1  © Copyright 2025"
