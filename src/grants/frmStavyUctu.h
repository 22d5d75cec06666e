#pragma once
// "Tvorbá skupin účtů": the catalogue of account groups. Opened with ViewUcty for viewing
// only; otherwise every row is tidied when the screen closes.

#include "grants/skupuctu.h"

#include <QDialog>
#include <QStringList>
#include <QVector>

#include <functional>

class QPlainTextEdit;
class QPushButton;
class QTableView;
class RowsModel;

class frmStavyUctu : public QDialog {
    Q_OBJECT
public:
    explicit frmStavyUctu(QWidget *parent = nullptr);

    bool ViewUcty = false;   // set before load()

    void load();
    void done(int result) override;

private:
    bool editCell(int row, int column, const QString &value);
    bool saveRow(int row, const GroupDef &group);
    void showUcty();
    void cmdAdd_Click();
    void cmdInsert_Click();
    void cmdDelete_Click();

    QVector<GroupDef> m_groups;
    RowsModel *m_model;
    QTableView *DataGrid1;
    QPlainTextEdit *txtUcty;
    QPushButton *cmdAdd, *cmdInsert, *cmdDelete, *cmdSelect, *cmdClose;
};

// The account picker of the account list, used by cmdInsert: the accounts chosen, none
// when cancelled. The button is off until the import installs it.
using AccountPicker = std::function<QStringList(QWidget *parent)>;
void SetAccountPicker(AccountPicker picker);

// Opens the screen, modal; viewUcty opens it for viewing.
void ShowStavyUctu(QWidget *parent, bool viewUcty);
