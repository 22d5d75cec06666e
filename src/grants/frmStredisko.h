#pragma once
// "Středisko": the budgets of every grant's account groups, with totals over the rows in view.
// Only Castka_plan is edited here; a grant's groups may not exceed the grant's budget.

#include "grants/skupuctugrant.h"

#include <QDialog>
#include <QMap>
#include <QVector>

#include <functional>

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

    QVector<GroupRow> m_rows;
    QVector<GrantBudget> m_grants;
    QMap<QString, QString> m_castka1;   // grant -> Castka1
    QMap<QString, double> m_planSums;   // grant -> sum of Castka_plan as read by load(), for cmdCompare

    RowsModel *m_model;
    QTableView *DataGrid1;
    QLineEdit *txtCelkem[3];
    QPushButton *cmdFind, *cmdDelete, *cmdCompare, *cmdPrint, *cmdClose;
};

// The report of the budgets per grant and group, printed from cmdPrint; the button is
// off until the reports install it.
using StrediskoPrinter = std::function<void(QWidget *parent)>;
void SetStrediskoPrinter(StrediskoPrinter printer);

// Opens the screen, modal.
void ShowStredisko(QWidget *parent);
