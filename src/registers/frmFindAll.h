#pragma once
// "Find": the hits of a search in all warehouses. The caller sets mLineInput (the text),
// calls Load() and exec(); after "Výběr" (or a double click) mActualSklad, mNazActualSklad
// and mLineOutput ("name~catalogue~warehouse") describe the chosen row; "Zavřit" leaves
// them empty.

#include <QDialog>
#include <QString>
#include <QVector>

#include <memory>

#include "registers/findall.h"

class QPushButton;
class FindAllModel;
class QTableView;

class frmFindAll : public QDialog {
    Q_OBJECT
public:
    explicit frmFindAll(QWidget *parent = nullptr);

    QString mNazActualSklad;
    QString mActualSklad;
    QString mLineInput;
    QString mLineOutput;
    QString OpenFile;
    // The centre whose warehouses are searched: the user's own unless the caller names another.
    QString CentreDb;

    bool Load();
    void cmdOk_Click();

private:
    QTableView *MSFlexGrid1;
    FindAllModel *m_model;
    QPushButton *cmdOk, *CmdExit;
};
