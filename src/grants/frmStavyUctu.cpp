#include "grants/frmStavyUctu.h"

#include "core/db.h"
#include "core/msg.h"
#include "grants/filter.h"
#include "grants/granttables.h"
#include "grants/rowsmodel.h"
#include "grants/screenparts.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>
#include <QVBoxLayout>

namespace {
AccountPicker &Picker()
{
    static AccountPicker picker;
    return picker;
}

enum Column { ColUcet, ColNazev, ColCastka, ColZustatek };
} // namespace

void SetAccountPicker(AccountPicker picker) { Picker() = std::move(picker); }

frmStavyUctu::frmStavyUctu(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmStavyUctu"));
    setWindowTitle(QStringLiteral("Tvorbá skupin účtů"));
    resize(820, 560);

    QLabel *heading = HeadingLabel(this, QStringLiteral("Skupiny účtů"));

    RowsModel::Hooks hooks;
    hooks.count = [this] { return int(m_groups.size()); };
    hooks.text = [this](int row, int column) {
        const GroupDef &g = m_groups.at(row);
        const QString *cells[] = {&g.ucet, &g.nazev, &g.castka, &g.zustatek};
        return *cells[column];
    };
    hooks.editable = [this](int column) { return !ViewUcty && column != ColZustatek; };
    hooks.edit = [this](int row, int column, const QString &value) { return editCell(row, column, value); };
    m_model = new RowsModel({QStringLiteral("Ucet"), QStringLiteral("Nazev"), QStringLiteral("Castka"), QStringLiteral("Zustatek")},
                            ColCastka, std::move(hooks), this);
    DataGrid1 = RowsGrid(this, m_model);
    DataGrid1->setColumnWidth(ColUcet, 220);
    DataGrid1->setColumnWidth(ColNazev, 250);
    DataGrid1->setColumnWidth(ColCastka, 130);

    auto *uctyLabel = new QLabel(QStringLiteral("Čísla účtů :"), this);
    uctyLabel->setObjectName(QStringLiteral("Label2"));
    txtUcty = new QPlainTextEdit(this);
    txtUcty->setObjectName(QStringLiteral("txtUcty"));
    txtUcty->setReadOnly(true);
    txtUcty->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    txtUcty->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    txtUcty->setMaximumHeight(80);

    cmdAdd = CommandButton(this, "cmdAdd", QStringLiteral("&Přidat"));
    cmdInsert = CommandButton(this, "cmdInsert", QStringLiteral("Úč&ty"));
    cmdDelete = CommandButton(this, "cmdDelete", QStringLiteral("F8-&Smazat"));
    cmdSelect = CommandButton(this, "cmdSelect", QStringLiteral("&Výběr"));
    cmdClose = CommandButton(this, "cmdClose", QStringLiteral("&Konec"));
    cmdDelete->setShortcut(QKeySequence(Qt::Key_F8));

    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdAdd, cmdInsert, cmdDelete})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(cmdSelect);
    buttons->addWidget(cmdClose);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(DataGrid1, 1);
    layout->addWidget(uctyLabel);
    layout->addWidget(txtUcty);
    layout->addLayout(buttons);

    connect(cmdAdd, &QPushButton::clicked, this, &frmStavyUctu::cmdAdd_Click);
    connect(cmdInsert, &QPushButton::clicked, this, &frmStavyUctu::cmdInsert_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmStavyUctu::cmdDelete_Click);
    connect(cmdSelect, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(DataGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &frmStavyUctu::showUcty);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &frmStavyUctu::showUcty);
}

void frmStavyUctu::load()
{
    cmdAdd->setEnabled(!ViewUcty);
    cmdInsert->setEnabled(!ViewUcty && bool(Picker()));
    cmdDelete->setEnabled(!ViewUcty);
    DbConnection conn(ConnStrGranty());
    QVector<GroupDef> groups;
    if (!conn.isOpen() || !LoadSkupUctu(conn, &groups)) {
        ShowDbError(conn);
        groups.clear();
    }
    m_model->reset([&] { m_groups.swap(groups); });
    if (!m_groups.isEmpty())
        DataGrid1->selectRow(0);
    showUcty();
}

void frmStavyUctu::showUcty()
{
    const QModelIndex current = DataGrid1->currentIndex();
    if (!current.isValid()) {
        txtUcty->clear();
        return;
    }
    // A blank after each comma lets a long filter wrap between its items.
    static const QRegularExpression comma(QStringLiteral(",\\s*"));
    txtUcty->setPlainText(QString(m_groups.at(current.row()).ucet).replace(comma, QStringLiteral(", ")));
}

bool frmStavyUctu::editCell(int row, int column, const QString &value)
{
    GroupDef g = m_groups.at(row);
    switch (column) {
    case ColUcet: g.ucet = value; break;
    case ColNazev: g.nazev = value; break;
    default:
        g.castka = value;
        AmountEdited(g);
    }
    return saveRow(row, g);
}

bool frmStavyUctu::saveRow(int row, const GroupDef &group)
{
    DbConnection conn(ConnStrGranty());
    if (!conn.isOpen() || !SaveSkupUctu(conn, group))
        return ShowDbError(conn);
    m_groups[row] = group;
    return true;
}

void frmStavyUctu::cmdAdd_Click()
{
    DbConnection conn(ConnStrGranty());
    GroupDef g{0, QString(), QString(), QStringLiteral("0,00"), QStringLiteral("0,00")};
    if (!conn.isOpen() || !AddSkupUctu(conn, &g.id)) {
        ShowDbError(conn);
        return;
    }
    m_model->appendRow([&] { m_groups.append(g); });
    DataGrid1->selectRow(m_groups.size() - 1);
    DataGrid1->edit(m_model->index(m_groups.size() - 1, ColUcet));
}

void frmStavyUctu::cmdInsert_Click()
{
    const QModelIndex current = DataGrid1->currentIndex();
    if (!current.isValid() || !Picker())
        return;
    GroupDef g = m_groups.at(current.row());
    for (const QString &account : Picker()(this))
        g.ucet = AppendAccount(g.ucet, account);
    if (saveRow(current.row(), g))
        m_model->rowChanged(current.row());
}

void frmStavyUctu::cmdDelete_Click()
{
    const QModelIndex current = DataGrid1->currentIndex();
    if (!current.isValid())
        return;
    if (!Confirmed(MsgBox(QStringLiteral("Chcete opravdu zrušit skupinu ?"), MsgQuestionOkCancel,
                          QStringLiteral("Zrušit záznam ?"))))
        return;
    DbConnection conn(ConnStrGranty());
    if (!conn.isOpen() || !DeleteSkupUctu(conn, m_groups.at(current.row()).id)) {
        ShowDbError(conn);
        return;
    }
    m_model->removeRow(current.row(), [&] { m_groups.removeAt(current.row()); });
    showUcty();
}

void frmStavyUctu::done(int result)
{
    if (!ViewUcty) {
        DbConnection conn(ConnStrGranty());
        if (!conn.isOpen() || !TidySkupUctu(conn))
            ShowDbError(conn);
    }
    QDialog::done(result);
}

void ShowStavyUctu(QWidget *parent, bool viewUcty)
{
    frmStavyUctu screen(parent);
    screen.ViewUcty = viewUcty;
    screen.load();
    screen.exec();
}
