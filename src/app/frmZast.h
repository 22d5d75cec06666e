#pragma once
// The splash screen: name, version and copyright for a moment at the start.

#include <QDialog>

class QTimer;

class frmZast : public QDialog {
    Q_OBJECT
public:
    explicit frmZast(QWidget *parent = nullptr);

private:
    QTimer *Timer1;
    int ticks = 0;
};
