#pragma once
// "Čerpání nákladů GRANTu": the grants of the user with their drawdown, the chart of accounts
// (tab Key1) or the account groups (tab Key2) of the selected grant, the recalculations and
// the reports.

#include "grants/drawdown.h"

#include <QDialog>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabBar;
class QTableView;
class QTableWidget;
class RowsModel;

// What the movement list (the import screen in its list mode) is opened with.
struct MovementListRequest {
    QString filter;        // the selection's accounts, tidied: "501,502"
    QString grant, name;   // the grant and its investigator
    QString heading;       // the group's name or the accounts' names
    QString plan, cerpani, zustatek, procent;
};
// The import library sets this (through the application); the button stays off without it.
using MovementListHook = std::function<void(QWidget *parent, const MovementListRequest &request)>;
void SetMovementListHook(MovementListHook hook);

class frmGranty : public QDialog {
    Q_OBJECT
public:
    explicit frmGranty(QWidget *parent = nullptr);

    // Reads the grants and the period, selects the grant given (else the first).
    void load(const QString &keepGrant = QString());
    // The tab shown: "Key1" chart of accounts, "Key2" account groups.
    void showTab(const QString &key);
    // Off: the grids are locked (the budgets are not edited here).
    bool Editable = true;

private:
    void fillGrants(const QString &keepGrant);
    void grantChanged();
    void showGrantFigures();
    void loadDetail();
    void showGroupFigures();
    void showTotals();
    void selectionChanged();
    bool editGrant(int row, int column, const QString &value);
    bool editPlan(int row, const QString &value);
    void headingClick(int column);
    void levelChanged();
    void drillDown();
    const GrantHead *currentGrant() const;

    void cmdActual_Click();
    void cmdRefresh_Click();
    void cmdFind_Click();
    void cmdCalcul_Click();
    void cmdPictTablList_Click();
    void cmdTiskSkupUctu_Click();
    void cmdPrint_Click();
    void cmdPrintVyber_Click();
    void cmdStredisko_Click();
    void showReport(const std::function<void(class BuildObjLJ &)> &body);
    // Runs a recalculation with the progress display; true when it was written.
    bool runRecalc(const QVector<GrantHead> &grants, bool refreshGroups);

    QVector<GrantHead> m_grants;
    QVector<GroupRow> m_groups;       // tab Key2: the groups of the current grant
    QVector<LevelRow> m_levelRows;    // tab Key1: accounts of the current level
    int m_level = 3;                  // 3 classes, 0..2 the levels below
    QString m_prefix;                 // the account chosen on the level above
    QString m_sortKey = QStringLiteral("stredisko");
    bool m_descending = false;
    bool m_busy = false;              // recalculating: selection changes do not recompute
    bool m_selectAll = false;         // Ctrl+A marks every row; Ctrl-click at most 100
    QString m_selectionFilter;        // the marked rows' accounts, each followed by ","

    QTabBar *TabStrip1;
    QTableView *DataGridGr, *DataGrid;
    RowsModel *m_grantModel, *m_groupModel, *m_levelModel;
    QTableWidget *MSFlexGrid1;
    QComboBox *Combo1, *Combo2;
    QLabel *lblDatOd, *lblDatDo, *Label5, *Label9, *Label10, *Label27, *Label32, *Label33, *Label34, *Label35;
    QLabel *lblUcetPlan, *lblUcetCerpani, *lblUcetZustatek, *lblUcetProcent, *lblPrefix, *lblVyber, *lblName2;
    QLineEdit *txtCelkem[3];
    QLineEdit *Text1;
    QPushButton *cmdActual, *cmdRefresh, *cmdFind, *cmdCalcul, *cmdPictTablList, *cmdTiskSkupUctu, *cmdPrint,
        *cmdPrintVyber, *cmdStredisko, *cmdClose;
};

// Opens the screen, modal; tab Key2 when groups is set (mnuActualSkup), grids locked unless
// editable.
void ShowGranty(QWidget *parent, bool groups = false, bool editable = true);
