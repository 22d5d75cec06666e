#pragma once
// "Středisko": the budgets of every grant's account groups, with totals over the rows in view.
// Only Castka_plan is edited here: it is stored and the row's rest and share recomputed (the
// check against the grant's budget is the drawdown screen's, tab Key2).

#include "grants/skupuctugrant.h"

#include <QDialog>
#include <QMap>
#include <QVector>

class QLineEdit;
class QPushButton;
class QTableView;
class RowsModel;

class frmStredisko : public QDialog {
    Q_OBJECT
public:
    explicit frmStredisko(QWidget *parent = nullptr);

    // The rows in view and each grant's budget, read again from the database.
    void load();

private:
    bool editPlan(int row, const QString &value);
    void showTotals();
    void cmdFind_Click();
    void cmdDelete_Click();
    void cmdCompare_Click();
    void cmdPrint_Click();

    QVector<GroupRow> m_rows;
    QVector<GrantBudget> m_grants;
    QMap<QString, double> m_planSums;   // grant -> sum of Castka_plan as read by load(), for cmdCompare

    RowsModel *m_model;
    QTableView *DataGrid1;
    QLineEdit *txtCelkem[3];
    QPushButton *cmdFind, *cmdDelete, *cmdCompare, *cmdPrint, *cmdClose;
};

// Opens the screen, modal.
void ShowStredisko(QWidget *parent);
