#pragma once
// Editor of the page setup: header, footer and the four margins in millimetres.

#include <QDialog>

class QLineEdit;
class QPushButton;

class frmSysPageSetup : public QDialog {
    Q_OBJECT
public:
    explicit frmSysPageSetup(QWidget *parent = nullptr);

private:
    void save();
    QLineEdit *marginField(const char *name);

    QLineEdit *txtHeader;
    QLineEdit *txtFooter;
    QLineEdit *txtLeft;
    QLineEdit *txtRight;
    QLineEdit *txtTop;
    QLineEdit *txtBottom;
    QPushButton *cmdOk;
    QPushButton *Command1;
};
