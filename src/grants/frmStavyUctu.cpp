#include "grants/frmStavyUctu.h"

#include "core/db.h"
#include "core/msg.h"
#include "grants/filter.h"
#include "grants/granttables.h"

#include <QAbstractTableModel>
#include <QHBoxLayout>
#include <QHeaderView>
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

enum Column { ColUcet, ColNazev, ColCastka, ColZustatek, ColumnCount };
} // namespace

void SetAccountPicker(AccountPicker picker) { Picker() = std::move(picker); }

class SkupUctuModel : public QAbstractTableModel {
public:
    explicit SkupUctuModel(frmStavyUctu *screen) : QAbstractTableModel(screen), m_screen(screen) {}

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : m_screen->m_groups.size(); }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : ColumnCount; }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        static const char *const names[] = {"Ucet", "Nazev", "Castka", "Zustatek"};
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < ColumnCount)
            return QString::fromLatin1(names[section]);
        return QAbstractTableModel::headerData(section, orientation, role);
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!index.isValid())
            return {};
        const GroupDef &g = m_screen->m_groups.at(index.row());
        if (role == Qt::TextAlignmentRole && index.column() >= ColCastka)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        if (role != Qt::DisplayRole && role != Qt::EditRole)
            return {};
        switch (index.column()) {
        case ColUcet: return g.ucet;
        case ColNazev: return g.nazev;
        case ColCastka: return g.castka;
        case ColZustatek: return g.zustatek;
        }
        return {};
    }

    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        Qt::ItemFlags f = QAbstractTableModel::flags(index);
        return !m_screen->ViewUcty && index.column() != ColZustatek ? f | Qt::ItemIsEditable : f;
    }

    bool setData(const QModelIndex &index, const QVariant &value, int role) override
    {
        if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
            return false;
        GroupDef g = m_screen->m_groups.at(index.row());
        switch (index.column()) {
        case ColUcet: g.ucet = value.toString(); break;
        case ColNazev: g.nazev = value.toString(); break;
        default:
            g.castka = value.toString();
            AmountEdited(g);
        }
        if (!m_screen->saveRow(index.row(), g))
            return false;
        emit dataChanged(this->index(index.row(), 0), this->index(index.row(), ColumnCount - 1));
        return true;
    }

    void reset()
    {
        beginResetModel();
        endResetModel();
    }
    void appendRow(const GroupDef &g)
    {
        beginInsertRows({}, m_screen->m_groups.size(), m_screen->m_groups.size());
        m_screen->m_groups.append(g);
        endInsertRows();
    }
    void removeRow(int row)
    {
        beginRemoveRows({}, row, row);
        m_screen->m_groups.removeAt(row);
        endRemoveRows();
    }

private:
    frmStavyUctu *m_screen;
};

frmStavyUctu::frmStavyUctu(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmStavyUctu"));
    setWindowTitle(QStringLiteral("Tvorbá skupin účtů"));
    resize(820, 560);

    auto *heading = new QLabel(QStringLiteral("Skupiny účtů"), this);
    heading->setObjectName(QStringLiteral("Label1"));
    QFont bold = heading->font();
    bold.setBold(true);
    bold.setPointSize(bold.pointSize() + 2);
    heading->setFont(bold);

    m_model = new SkupUctuModel(this);
    DataGrid1 = new QTableView(this);
    DataGrid1->setObjectName(QStringLiteral("DataGrid1"));
    DataGrid1->setModel(m_model);
    DataGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    DataGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    DataGrid1->verticalHeader()->setDefaultSectionSize(22);
    DataGrid1->horizontalHeader()->setStretchLastSection(true);
    DataGrid1->setColumnWidth(ColUcet, 220);
    DataGrid1->setColumnWidth(ColNazev, 250);
    DataGrid1->setColumnWidth(ColCastka, 130);

    auto *uctyLabel = new QLabel(QStringLiteral("Čísla účtů :"), this);
    uctyLabel->setObjectName(QStringLiteral("Label2"));
    txtUcty = new QPlainTextEdit(this);
    txtUcty->setObjectName(QStringLiteral("txtUcty"));
    txtUcty->setReadOnly(true);
    txtUcty->setMaximumHeight(80);

    auto button = [this](QPushButton *&b, const char *name, const QString &caption) {
        b = new QPushButton(caption, this);
        b->setObjectName(QLatin1String(name));
        b->setAutoDefault(false);
    };
    button(cmdAdd, "cmdAdd", QStringLiteral("&Přidat"));
    button(cmdInsert, "cmdInsert", QStringLiteral("Úč&ty"));
    button(cmdDelete, "cmdDelete", QStringLiteral("F8-&Smazat"));
    button(cmdSelect, "cmdSelect", QStringLiteral("&Výběr"));
    button(cmdClose, "cmdClose", QStringLiteral("&Konec"));
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
    if (!conn.isOpen() || !LoadSkupUctu(conn, &m_groups)) {
        ShowDbError(conn);
        m_groups.clear();
    }
    m_model->reset();
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
    m_model->appendRow(g);
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
        emit m_model->dataChanged(m_model->index(current.row(), 0), m_model->index(current.row(), ColumnCount - 1));
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
    m_model->removeRow(current.row());
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
