#pragma once
// "Revize importného souboru": the revision of a movement file for a period, without
// importing it.

#include <QDialog>

class QLineEdit;
class QPushButton;

class frmRevize : public QDialog {
    Q_OBJECT
public:
    explicit frmRevize(QWidget *parent = nullptr);
    void cmdControl_Click();

private:
    bool checkDate(QLineEdit *box, bool from);

    QLineEdit *datDatumOd, *datDatumDo;
    QPushButton *cmdKalendarOd, *cmdKalendarDo, *cmdControl, *cmdCancel;
};

void ShowRevize(QWidget *parent);
