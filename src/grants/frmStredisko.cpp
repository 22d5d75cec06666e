#include "grants/frmStredisko.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/rights.h"
#include "core/session.h"
#include "grants/amount.h"
#include "core/text.h"
#include "grants/grantreports.h"
#include "grants/granttables.h"
#include "grants/rowsmodel.h"
#include "grants/screenparts.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace {
enum Column { ColGrant, ColUcet, ColNazev, ColPlan, ColCerpani, ColZustatek, ColProcent };
} // namespace

frmStredisko::frmStredisko(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmStredisko"));
    setWindowTitle(QStringLiteral("Středisko"));
    resize(980, 600);

    QLabel *heading = HeadingLabel(this, QStringLiteral("Počateční částky za STŘEDISKO dle skupiny účtů"));

    RowsModel::Hooks hooks;
    hooks.count = [this] { return int(m_rows.size()); };
    hooks.text = [this](int row, int column) {
        const GroupRow &r = m_rows.at(row);
        const QString *cells[] = {&r.grant, &r.ucet, &r.nazev, &r.plan, &r.cerpani, &r.zustatek, &r.procent};
        return *cells[column];
    };
    hooks.editable = [](int column) { return column == ColPlan; };
    hooks.edit = [this](int row, int, const QString &value) { return editPlan(row, value); };
    m_model = new RowsModel({QStringLiteral("Grant"), QStringLiteral("Ucet"), QStringLiteral("Nazev"),
                             QStringLiteral("Castka_plan"), QStringLiteral("Castka_cerpani"), QStringLiteral("Zustatek"),
                             QStringLiteral("procent")},
                            ColPlan, std::move(hooks), this);
    DataGrid1 = RowsGrid(this, m_model);
    for (int c : {ColGrant, ColPlan, ColCerpani, ColZustatek})
        DataGrid1->setColumnWidth(c, c == ColGrant ? 70 : 120);
    DataGrid1->setColumnWidth(ColUcet, 150);
    DataGrid1->setColumnWidth(ColNazev, 210);

    auto *totals = new QHBoxLayout;
    auto *totalLabel = new QLabel(QStringLiteral("Celkem za středisko, Kč "), this);
    totalLabel->setObjectName(QStringLiteral("Label2"));
    totals->addWidget(totalLabel);
    for (int i = 0; i < 3; ++i) {
        txtCelkem[i] = new QLineEdit(this);
        txtCelkem[i]->setObjectName(QStringLiteral("txtCelkem%1").arg(i));
        txtCelkem[i]->setReadOnly(true);
        txtCelkem[i]->setAlignment(Qt::AlignRight);
        totals->addWidget(txtCelkem[i]);
    }

    cmdFind = CommandButton(this, "cmdFind", QStringLiteral("F7-&Najit"));
    cmdDelete = CommandButton(this, "cmdDelete", QStringLiteral("F8-&Smazat"));
    cmdCompare = CommandButton(this, "cmdCompare", QStringLiteral("&Porovnání"));
    cmdPrint = CommandButton(this, "cmdPrint", QStringLiteral("&Tisk"));
    cmdClose = CommandButton(this, "cmdClose", QStringLiteral("Zavřít"));
    cmdFind->setShortcut(QKeySequence(Qt::Key_F7));
    cmdDelete->setShortcut(QKeySequence(Qt::Key_F8));

    const bool admin = CanDeleteStredisko(Session().UserTyp);
    cmdDelete->setEnabled(admin);
    cmdCompare->setEnabled(admin);

    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdFind, cmdDelete, cmdCompare, cmdPrint})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(cmdClose);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(DataGrid1, 1);
    layout->addLayout(totals);
    layout->addLayout(buttons);

    connect(cmdFind, &QPushButton::clicked, this, &frmStredisko::cmdFind_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmStredisko::cmdDelete_Click);
    connect(cmdCompare, &QPushButton::clicked, this, &frmStredisko::cmdCompare_Click);
    connect(cmdPrint, &QPushButton::clicked, this, &frmStredisko::cmdPrint_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
}

void frmStredisko::load()
{
    DbConnection conn(ConnStrGranty());
    const QString filter = Session().UserFiltrGrant;
    QVector<GrantBudget> grants;
    QVector<GroupRow> rows;
    if (!conn.isOpen() || !LoadGrantBudgets(conn, filter, &grants) || !LoadStredisko(conn, filter, &rows)) {
        ShowDbError(conn);
        grants.clear();
        rows.clear();
    } else if (grants.isEmpty()) {
        MsgBox(QStringLiteral("Není vytvořen seznam GRANTu s rozpočtovýma částkama!"));
    }
    m_grants = grants;
    m_model->reset([&] { m_rows.swap(rows); });
    m_planSums = PlanSumsByGrant(m_rows);
    showTotals();
    if (!m_rows.isEmpty())
        DataGrid1->selectRow(0);
}

void frmStredisko::showTotals()
{
    const GroupTotals t = SumGroupRows(m_rows);
    txtCelkem[0]->setText(FormatAmount(t.plan));
    txtCelkem[1]->setText(FormatAmount(t.cerpani));
    txtCelkem[2]->setText(FormatAmount(t.zustatek));
}

bool frmStredisko::editPlan(int row, const QString &value)
{
    DbConnection conn(ConnStrGranty());
    if (!conn.isOpen() || !StoreGroupPlan(conn, m_rows[row], value))
        return ShowDbError(conn);
    showTotals();
    return true;
}

void frmStredisko::cmdFind_Click()
{
    FindGrantRow(DataGrid1, [this](int row) { return m_rows.at(row).grant; });
}

void frmStredisko::cmdDelete_Click()
{
    const QModelIndex current = DataGrid1->currentIndex();
    if (!current.isValid())
        return;
    if (!Confirmed(MsgBox(QStringLiteral("Chcete opravdu zrušit položku ?"), MsgQuestionOkCancel,
                          QStringLiteral("Delete row"))))
        return;
    DbConnection conn(ConnStrGranty());
    if (!conn.isOpen() || !DeleteGroupRow(conn, m_rows.at(current.row()).id)) {
        ShowDbError(conn);
        return;
    }
    m_model->removeRow(current.row(), [&] { m_rows.removeAt(current.row()); });
    showTotals();
}

void frmStredisko::cmdCompare_Click()
{
    // The comparison is of the state the screen was opened with: later edits and deletes
    // here show in the totals, not in it.
    const QString text = CompareText(m_grants, m_planSums);
    if (!text.isEmpty())
        MsgBox(text, MsgInformation);
}

void frmStredisko::cmdPrint_Click()
{
    // Every register row, archived ones too: a group row's grant is looked up by its number.
    QVector<GrantHead> heads;
    DbConnection conn(ConnStrGranty());
    if (!conn.isOpen() || !LoadGrantHeads(conn, QStringLiteral("0"), &heads, true)) {
        ShowDbError(conn);
        return;
    }
    QString path, error;
    if (!WriteReport([&](BuildObjLJ &html) { PrintSkupUctu(html, m_rows, heads, QStringLiteral("2")); }, &path, &error)) {
        MsgBox(error, MsgCritical);
        return;
    }
    ViewHTML(path);
}

void ShowStredisko(QWidget *parent)
{
    frmStredisko screen(parent);
    screen.load();
    screen.exec();
}
