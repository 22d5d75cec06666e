#include "grants/frmGranty.h"

#include "core/buildobjlj.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "core/text.h"
#include "grants/amount.h"
#include "grants/filter.h"
#include "grants/frmStredisko.h"
#include "grants/grantplan.h"
#include "grants/grantreports.h"
#include "grants/granttables.h"
#include "grants/rowsmodel.h"
#include "grants/screenparts.h"
#include "grants/skupuctu.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTabBar>
#include <QTableView>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>

namespace {
MovementListHook &ListHook()
{
    static MovementListHook hook;
    return hook;
}

constexpr int MaxMarked = 100;

enum GrantColumn { GrGrant, GrCastka1, GrPoskytnute, GrCastka3, GrCastka2 };
enum GroupColumn { GpUcet, GpNazev, GpPlan, GpCerpani, GpZustatek, GpProcent };
enum LevelColumn { LvUcet, LvNazev, LvCastka, LvImport, LvZustatek, LvProcent };

// Heading click: the register's sort keys by column, ASC and DESC in turn.
const QString SortKeys[] = {QStringLiteral("stredisko"), QStringLiteral("Castka1"), QStringLiteral("Poskytnute"),
                            QStringLiteral("Castka3"), QStringLiteral("Castka2")};

QLabel *Figure(QWidget *parent, const char *name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(110);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

QString Tidied(QString filter)
{
    filter = TidyFilter(filter);
    while (filter.endsWith(QLatin1Char(',')))
        filter.chop(1);
    return filter;
}
} // namespace

void SetMovementListHook(MovementListHook hook) { ListHook() = std::move(hook); }

frmGranty::frmGranty(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmGranty"));
    setWindowTitle(QStringLiteral("Čerpání nákladů GRANTu"));
    resize(1180, 720);

    TabStrip1 = new QTabBar(this);
    TabStrip1->setObjectName(QStringLiteral("TabStrip1"));
    TabStrip1->addTab(QStringLiteral("Dle účetní osnovy"));
    TabStrip1->setTabData(0, QStringLiteral("Key1"));
    TabStrip1->addTab(QStringLiteral("Dle skupin účtů"));
    TabStrip1->setTabData(1, QStringLiteral("Key2"));

    // Grants.
    RowsModel::Hooks grantHooks;
    grantHooks.count = [this] { return int(m_grants.size()); };
    grantHooks.text = [this](int row, int column) {
        const GrantHead &g = m_grants.at(row);
        const QString cells[] = {g.grant, AmountText(g.castka1), AmountText(g.poskytnute), AmountText(g.castka3), g.castka2};
        return cells[column];
    };
    grantHooks.editable = [this](int column) { return Editable && (column == GrCastka1 || column == GrPoskytnute); };
    grantHooks.edit = [this](int row, int column, const QString &value) { return editGrant(row, column, value); };
    m_grantModel = new RowsModel({QStringLiteral("GRANT"), QStringLiteral("Rozpočet plán, Kč"), QStringLiteral("Poskytnuté, Kč"),
                                  QStringLiteral("Zůstatek, Kč"), QStringLiteral("Řešitel GRANTU")},
                                 GrCastka1, std::move(grantHooks), this);
    DataGridGr = RowsGrid(this, m_grantModel);
    DataGridGr->setObjectName(QStringLiteral("DataGridGr"));
    DataGridGr->setColumnWidth(GrGrant, 70);
    for (int c : {GrCastka1, GrPoskytnute, GrCastka3})
        DataGridGr->setColumnWidth(c, 115);
    DataGridGr->horizontalHeader()->setSectionsClickable(true);

    // Groups (Key2) and accounts (Key1) share the lower grid.
    RowsModel::Hooks groupHooks;
    groupHooks.count = [this] { return int(m_groups.size()); };
    groupHooks.text = [this](int row, int column) {
        const GroupRow &g = m_groups.at(row);
        const QString cells[] = {g.ucet, g.nazev, g.plan, g.cerpani, g.zustatek, g.procent};
        return cells[column];
    };
    groupHooks.editable = [this](int column) { return Editable && column == GpPlan; };
    groupHooks.edit = [this](int row, int, const QString &value) { return editPlan(row, value); };
    m_groupModel = new RowsModel({QStringLiteral("Ucet"), QStringLiteral("Nazev"), QStringLiteral("Castka_plan"),
                                  QStringLiteral("Castka_cerpani"), QStringLiteral("Zustatek"), QStringLiteral("Procent")},
                                 GpPlan, std::move(groupHooks), this);
    RowsModel::Hooks levelHooks;
    levelHooks.count = [this] { return int(m_levelRows.size()); };
    levelHooks.text = [this](int row, int column) {
        const LevelRow &r = m_levelRows.at(row);
        const QString cells[] = {r.ucet, r.nazev, r.castka, r.castkaImport, r.castkaZustatek, r.procent};
        return cells[column];
    };
    levelHooks.editable = [](int) { return false; };
    levelHooks.edit = [](int, int, const QString &) { return false; };
    m_levelModel = new RowsModel({QStringLiteral("Ucet"), QStringLiteral("Nazev"), QStringLiteral("Castka"),
                                  QStringLiteral("Castka_import"), QStringLiteral("Castka_zustatek"), QStringLiteral("Procent")},
                                 LvCastka, std::move(levelHooks), this);
    DataGrid = RowsGrid(this, m_groupModel);
    DataGrid->setObjectName(QStringLiteral("DataGrid"));
    DataGrid->setSelectionMode(QAbstractItemView::ExtendedSelection);
    DataGrid->setColumnWidth(0, 160);
    DataGrid->setColumnWidth(1, 240);
    auto *selectAll = new QShortcut(QKeySequence::SelectAll, DataGrid, nullptr, nullptr, Qt::WidgetShortcut);
    connect(selectAll, &QShortcut::activated, this, [this] {
        m_selectAll = true;
        DataGrid->selectAll();
        m_selectAll = false;
    });

    // Figures of the selected grant.
    MSFlexGrid1 = new QTableWidget(1, 4, this);
    MSFlexGrid1->setObjectName(QStringLiteral("MSFlexGrid1"));
    MSFlexGrid1->setHorizontalHeaderLabels({QStringLiteral("GRANT"), QStringLiteral("     Čerpání v Kč"),
                                            QStringLiteral("    Zůstatek, Kč"), QStringLiteral(" Čerpání v %")});
    const int widths[] = {800, 1665, 1670, 1270};   // in twips, as the grid was laid out
    for (int c = 0; c < 4; ++c)
        MSFlexGrid1->setColumnWidth(c, widths[c] / 12);
    MSFlexGrid1->verticalHeader()->hide();
    MSFlexGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    MSFlexGrid1->setFixedHeight(MSFlexGrid1->horizontalHeader()->sizeHint().height() + 30);
    MSFlexGrid1->setFixedWidth(std::accumulate(std::begin(widths), std::end(widths), 0) / 12 + 4);

    // Labels of the grant and of the group.
    auto *grantBox = new QGroupBox(QStringLiteral("Za GRANT:"), this);
    auto *grantGrid = new QGridLayout(grantBox);
    Label5 = Figure(grantBox, "Label5");
    Label32 = Figure(grantBox, "Label32");
    Label33 = Figure(grantBox, "Label33");
    Label34 = Figure(grantBox, "Label34");
    Label35 = Figure(grantBox, "Label35");
    lblName2 = new QLabel(grantBox);
    lblName2->setObjectName(QStringLiteral("lblName2"));
    int line = 0;
    for (const auto &[caption, label] : {std::pair{"GRANT:", Label5}, {"Rozpočet plán, Kč:", Label32},
                                         {"Poskytnuté, Kč:", Label33}, {"Rozdíl, Kč:", Label34},
                                         {"Zůstatek z poskytnutých, Kč:", Label35}}) {
        grantGrid->addWidget(new QLabel(QString::fromUtf8(caption), grantBox), line, 0);
        grantGrid->addWidget(label, line++, 1);
    }
    grantGrid->addWidget(lblName2, line, 0, 1, 2);

    auto *groupBox = new QGroupBox(QStringLiteral(" Za účet:"), this);
    auto *groupGrid = new QGridLayout(groupBox);
    Label9 = new QLabel(groupBox);
    Label9->setObjectName(QStringLiteral("Label9"));
    Label9->setWordWrap(true);
    Label10 = new QLabel(groupBox);
    Label10->setObjectName(QStringLiteral("Label10"));
    lblUcetPlan = Figure(groupBox, "lblUcetPlan");
    lblUcetCerpani = Figure(groupBox, "lblUcetCerpani");
    lblUcetZustatek = Figure(groupBox, "lblUcetZustatek");
    lblUcetProcent = Figure(groupBox, "lblUcetProcent");
    groupGrid->addWidget(Label10, 0, 0, 1, 2);
    groupGrid->addWidget(Label9, 1, 0, 1, 2);
    line = 2;
    for (const auto &[caption, label] : {std::pair{"Rozpočet, Kč:", lblUcetPlan}, {"Čerpání, Kč:", lblUcetCerpani},
                                         {"Zůstatek, Kč:", lblUcetZustatek}, {"Zůstatek, %:", lblUcetProcent}}) {
        groupGrid->addWidget(new QLabel(QString::fromUtf8(caption), groupBox), line, 0);
        groupGrid->addWidget(label, line++, 1);
    }

    // Period of the movements.
    lblDatOd = new QLabel(this);
    lblDatOd->setObjectName(QStringLiteral("lblDatOd"));
    lblDatDo = new QLabel(this);
    lblDatDo->setObjectName(QStringLiteral("lblDatDo"));
    auto *period = new QHBoxLayout;
    period->addWidget(new QLabel(QStringLiteral("Pohyby od:"), this));
    period->addWidget(lblDatOd);
    period->addWidget(new QLabel(QStringLiteral("do:"), this));
    period->addWidget(lblDatDo);
    period->addStretch();

    // Level of the chart of accounts (Key1).
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    for (const auto &[text, level] : {std::pair{"Třídy účtů", 3}, {"Účty dvoumístné", 0}, {"Účty trojmístné", 1},
                                      {"Analytické účty", 2}})
        Combo1->addItem(QString::fromUtf8(text), level);
    lblPrefix = new QLabel(this);
    lblPrefix->setObjectName(QStringLiteral("lblPrefix"));
    cmdCalcul = CommandButton(this, "cmdCalcul", QStringLiteral("Přepočet účtů"));
    auto *levelBar = new QHBoxLayout;
    levelBar->addWidget(Combo1);
    levelBar->addWidget(lblPrefix, 1);
    levelBar->addWidget(cmdCalcul);

    // Totals of the groups, the selection, the position during a recalculation.
    auto *totals = new QHBoxLayout;
    Label27 = new QLabel(this);
    Label27->setObjectName(QStringLiteral("Label27"));
    totals->addWidget(Label27);
    totals->addWidget(new QLabel(QStringLiteral("Celkem, Kč"), this));
    for (int i = 0; i < 3; ++i) {
        txtCelkem[i] = new QLineEdit(this);
        txtCelkem[i]->setObjectName(QStringLiteral("txtCelkem%1").arg(i));
        txtCelkem[i]->setReadOnly(true);
        txtCelkem[i]->setAlignment(Qt::AlignRight);
        totals->addWidget(txtCelkem[i]);
    }
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setReadOnly(true);
    Text1->setMaximumWidth(60);
    totals->addWidget(Text1);
    lblVyber = new QLabel(this);
    lblVyber->setObjectName(QStringLiteral("lblVyber"));

    Combo2 = new QComboBox(this);
    Combo2->setObjectName(QStringLiteral("Combo2"));
    for (int size = 1; size <= 7; ++size)
        Combo2->addItem(QString::number(size));
    Combo2->setCurrentIndex(1);
    Combo2->setToolTip(QStringLiteral("Velikost písma sestav"));

    cmdActual = CommandButton(this, "cmdActual", QStringLiteral("Přepočet všech GRANTu"));
    cmdRefresh = CommandButton(this, "cmdRefresh", QStringLiteral("Aktualizace skupiny"));
    cmdFind = CommandButton(this, "cmdFind", QStringLiteral("F7-&Najít"));
    cmdFind->setShortcut(QKeySequence(Qt::Key_F7));
    cmdPictTablList = CommandButton(this, "cmdPictTablList", QStringLiteral("Položký MD/DAL"));
    cmdTiskSkupUctu = CommandButton(this, "cmdTiskSkupUctu", QStringLiteral("Tisk všech skupin účtů"));
    cmdPrint = CommandButton(this, "cmdPrint", QStringLiteral("Tisk seznamu GRANTu"));
    cmdPrintVyber = CommandButton(this, "cmdPrintVyber", QStringLiteral("Tisk výběru"));
    cmdStredisko = CommandButton(this, "cmdStredisko", QStringLiteral("Středisko"));
    cmdClose = CommandButton(this, "cmdClose", QStringLiteral("Zavřít"));
    cmdPictTablList->setEnabled(bool(ListHook()));

    auto *left = new QVBoxLayout;
    left->addWidget(DataGridGr, 1);
    left->addWidget(MSFlexGrid1);
    left->addWidget(grantBox);
    left->addLayout(period);
    auto *right = new QVBoxLayout;
    right->addWidget(TabStrip1);
    right->addLayout(levelBar);
    right->addWidget(DataGrid, 1);
    right->addLayout(totals);
    right->addWidget(lblVyber);
    right->addWidget(groupBox);
    auto *panes = new QHBoxLayout;
    panes->addLayout(left, 5);
    panes->addLayout(right, 6);
    auto *buttons = new QHBoxLayout;
    for (QWidget *w : std::initializer_list<QWidget *>{cmdActual, cmdRefresh, cmdFind, cmdPictTablList, cmdTiskSkupUctu,
                                                       cmdPrint, cmdPrintVyber, Combo2, cmdStredisko})
        buttons->addWidget(w);
    buttons->addStretch();
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(panes, 1);
    layout->addLayout(buttons);

    connect(DataGridGr->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] {
        if (!m_busy)
            grantChanged();
    });
    connect(DataGridGr->horizontalHeader(), &QHeaderView::sectionClicked, this, &frmGranty::headingClick);
    connect(TabStrip1, &QTabBar::currentChanged, this, [this](int index) { showTab(TabStrip1->tabData(index).toString()); });
    connect(Combo1, &QComboBox::currentIndexChanged, this, &frmGranty::levelChanged);
    connect(DataGrid, &QTableView::doubleClicked, this, &frmGranty::drillDown);
    connect(cmdActual, &QPushButton::clicked, this, &frmGranty::cmdActual_Click);
    connect(cmdRefresh, &QPushButton::clicked, this, &frmGranty::cmdRefresh_Click);
    connect(cmdFind, &QPushButton::clicked, this, &frmGranty::cmdFind_Click);
    connect(cmdCalcul, &QPushButton::clicked, this, &frmGranty::cmdCalcul_Click);
    connect(cmdPictTablList, &QPushButton::clicked, this, &frmGranty::cmdPictTablList_Click);
    connect(cmdTiskSkupUctu, &QPushButton::clicked, this, &frmGranty::cmdTiskSkupUctu_Click);
    connect(cmdPrint, &QPushButton::clicked, this, &frmGranty::cmdPrint_Click);
    connect(cmdPrintVyber, &QPushButton::clicked, this, &frmGranty::cmdPrintVyber_Click);
    connect(cmdStredisko, &QPushButton::clicked, this, &frmGranty::cmdStredisko_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    showTab(QStringLiteral("Key1"));
}

void frmGranty::load(const QString &keepGrant)
{
    DbConnection conn(ConnStrGranty());
    QString from, to;
    QVector<GrantHead> grants;
    if (!conn.isOpen() || !RepairGrantyPlan(conn) || !LoadPeriod(conn, &from, &to) ||
        !LoadGrantHeads(conn, Session().UserFiltrGrant, &grants)) {
        ShowDbError(conn);
        return;
    }
    lblDatOd->setText(from);
    lblDatDo->setText(to);
    if (grants.isEmpty())
        MsgBox(QStringLiteral("Není vytvořen seznam GRANTU s rozpočtovýma částkama!"));
    m_grants = grants;
    fillGrants(keepGrant);
}

void frmGranty::fillGrants(const QString &keepGrant)
{
    // The sort of the list: amounts by value, texts as text, the number breaking ties.
    const QString key = m_sortKey;
    const auto value = [&key](const GrantHead &g) -> QString {
        if (key == QLatin1String("Castka2"))
            return g.castka2;
        return g.stredisko;
    };
    const auto amount = [&key](const GrantHead &g) {
        const QString &text = key == QLatin1String("Castka1") ? g.castka1 : key == QLatin1String("Poskytnute") ? g.poskytnute : g.castka3;
        return AmountValue(AmountText(text));
    };
    const bool byText = key == QLatin1String("stredisko") || key == QLatin1String("Castka2");
    m_grantModel->reset([&] {
        std::stable_sort(m_grants.begin(), m_grants.end(), [&](const GrantHead &a, const GrantHead &b) {
            int c = byText ? QString::compare(value(a), value(b), Qt::CaseInsensitive)
                           : (amount(a) < amount(b) ? -1 : amount(a) > amount(b) ? 1 : 0);
            if (c == 0)
                c = QString::compare(a.grant, b.grant);
            return m_descending ? c > 0 : c < 0;
        });
    });
    int row = 0;
    for (int i = 0; i < m_grants.size(); ++i)
        if (m_grants.at(i).grant == keepGrant)
            row = i;
    if (m_grants.isEmpty()) {
        grantChanged();
        return;
    }
    DataGridGr->selectRow(row);
    DataGridGr->scrollTo(m_grantModel->index(row, 0));
    grantChanged();
}

const GrantHead *frmGranty::currentGrant() const
{
    const int row = DataGridGr->currentIndex().row();
    return row >= 0 && row < m_grants.size() ? &m_grants.at(row) : nullptr;
}

void frmGranty::headingClick(int column)
{
    if (column < 0 || column > GrCastka2)
        return;
    const QString key = SortKeys[column];
    m_descending = key == m_sortKey ? !m_descending : false;
    m_sortKey = key;
    const GrantHead *g = currentGrant();
    fillGrants(g ? g->grant : QString());
}

void frmGranty::grantChanged()
{
    showGrantFigures();
    loadDetail();
}

void frmGranty::showGrantFigures()
{
    const GrantHead *g = currentGrant();
    const GrantFigures f = g ? FiguresOfGrant(g->grant, g->castka1, g->castka3) : GrantFigures{};
    const QString texts[] = {f.grant, f.cerpani, f.zustatek, f.procent};
    const bool negative[] = {false, f.cerpaniNegative, f.zustatekNegative, f.procentNegative};
    for (int c = 0; c < 4; ++c) {
        auto *item = new QTableWidgetItem(texts[c]);
        QFont bold = item->font();
        bold.setBold(true);
        item->setFont(bold);
        item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        if (c == 1)
            item->setForeground(negative[c] ? QColor(255, 0, 0) : palette().color(QPalette::WindowText));
        else if (c > 1)
            item->setForeground(negative[c] ? QColor(255, 0, 0) : QColor(0, 0, 255));
        MSFlexGrid1->setItem(0, c, item);
    }
    Label5->setText(g ? g->grant : QString());
    Label32->setText(g ? AmountText(g->castka1) : QString());
    Label33->setText(g ? AmountText(g->poskytnute) : QString());
    Label34->setText(g ? DifferenceText(g->castka1, g->poskytnute) : QString());
    lblName2->setText(g ? g->castka2 : QString());
}

void frmGranty::loadDetail()
{
    const GrantHead *g = currentGrant();
    const bool groups = TabStrip1->tabData(TabStrip1->currentIndex()).toString() == QLatin1String("Key2");
    QVector<GroupRow> groupRows;
    QVector<LevelRow> levelRows;
    if (g) {
        DbConnection conn(ConnStrGranty());
        const bool ok = conn.isOpen() && (groups ? LoadGroupsByName(conn, g->grant, &groupRows)
                                                 : LoadLevelRows(conn, m_level, g->grant, m_prefix, &levelRows));
        if (!ok)
            ShowDbError(conn);
    }
    if (groups)
        m_groupModel->reset([&] { m_groups.swap(groupRows); });
    else
        m_levelModel->reset([&] { m_levelRows.swap(levelRows); });
    showTotals();
    if (DataGrid->model()->rowCount() > 0)
        DataGrid->selectRow(0);
    selectionChanged();
}

void frmGranty::showTab(const QString &key)
{
    const bool groups = key == QLatin1String("Key2");
    for (int i = 0; i < TabStrip1->count(); ++i)
        if (TabStrip1->tabData(i).toString() == key && TabStrip1->currentIndex() != i) {
            TabStrip1->setCurrentIndex(i);   // comes back here through the signal
            return;
        }
    if (DataGrid->model() != (groups ? m_groupModel : m_levelModel)) {
        DataGrid->setModel(groups ? static_cast<QAbstractItemModel *>(m_groupModel) : m_levelModel);
        connect(DataGrid->selectionModel(), &QItemSelectionModel::selectionChanged, this, &frmGranty::selectionChanged);
    }
    Combo1->setVisible(!groups);
    lblPrefix->setVisible(!groups);
    cmdCalcul->setVisible(!groups);
    cmdTiskSkupUctu->setEnabled(groups);
    if (groups && isVisible()) {
        DbConnection conn(ConnStrGranty());
        QVector<GroupDef> catalogue;
        if (conn.isOpen() && LoadSkupUctu(conn, &catalogue) && catalogue.isEmpty())
            MsgBox(QStringLiteral("Není definována žádna skupina účtů!"));
    }
    loadDetail();
    if (groups && isVisible() && currentGrant() && m_groups.isEmpty())
        MsgBox(QStringLiteral("Není žádna skupina účtů za GRANT ! Proveďte aktualizace skupin. "));
}

void frmGranty::levelChanged()
{
    m_level = Combo1->currentData().toInt();
    m_prefix.clear();
    lblPrefix->clear();
    loadDetail();
}

void frmGranty::drillDown()
{
    // A double click on an account shows its accounts one level lower.
    const int row = DataGrid->currentIndex().row();
    if (DataGrid->model() != m_levelModel || row < 0 || m_level == 2)
        return;
    const QString account = m_levelRows.at(row).ucet;
    const int next = m_level == 3 ? 0 : m_level + 1;
    m_level = next;
    {
        const QSignalBlocker block(Combo1);
        Combo1->setCurrentIndex(Combo1->findData(next));
    }
    m_prefix = account;
    lblPrefix->setText(QStringLiteral("Účet: ") + account);
    loadDetail();
}

void frmGranty::showTotals()
{
    const GroupTotals t = SumGroupRows(m_groups);
    const bool groups = DataGrid->model() == m_groupModel;
    txtCelkem[0]->setText(groups ? FormatAmount(t.plan) : QString());
    txtCelkem[1]->setText(groups ? FormatAmount(t.cerpani) : QString());
    txtCelkem[2]->setText(groups ? FormatAmount(t.zustatek) : QString());
    Label27->setText(groups ? QStringLiteral("Skupin: %1").arg(m_groups.size()) : QString());
    const GrantHead *g = currentGrant();
    Label35->setText(g && groups ? ZustatekFakt(g->poskytnute, t.cerpani) : QString());
}

void frmGranty::showGroupFigures()
{
    // ActualSkupUctu: the figures of the current group.
    const int row = DataGrid->currentIndex().row();
    const bool groups = DataGrid->model() == m_groupModel;
    if (!groups || row < 0 || row >= m_groups.size()) {
        for (QLabel *l : {Label9, Label10, lblUcetPlan, lblUcetCerpani, lblUcetZustatek, lblUcetProcent})
            l->clear();
        return;
    }
    const GroupRow &r = m_groups.at(row);
    QString accounts = r.ucet;
    Label9->setText(accounts.replace(QLatin1Char(','), QLatin1String(", ")));
    Label10->setText(r.nazev);
    lblUcetPlan->setText(AmountText(r.plan));
    lblUcetCerpani->setText(AmountText(r.cerpani));
    lblUcetZustatek->setText(AmountText(r.zustatek));
    lblUcetProcent->setText(AmountText(r.procent));
}

void frmGranty::selectionChanged()
{
    QModelIndexList marked = DataGrid->selectionModel() ? DataGrid->selectionModel()->selectedRows() : QModelIndexList();
    if (!m_selectAll && marked.size() > MaxMarked) {
        // Ctrl-click marks at most a hundred rows: the row beyond them is unmarked again.
        const QModelIndex last = DataGrid->currentIndex();
        DataGrid->selectionModel()->select(last, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
        return;
    }
    std::sort(marked.begin(), marked.end());
    const bool groups = DataGrid->model() == m_groupModel;
    double sums[4] = {0, 0, 0, 0};
    m_selectionFilter.clear();
    for (const QModelIndex &index : std::as_const(marked)) {
        const int row = index.row();
        if (groups) {
            const GroupRow &r = m_groups.at(row);
            m_selectionFilter += r.ucet + QLatin1Char(',');
            const QString values[] = {r.plan, r.cerpani, r.zustatek, r.procent};
            for (int c = 0; c < 4; ++c)
                sums[c] += AmountValue(AmountText(values[c]));
        } else {
            const LevelRow &r = m_levelRows.at(row);
            m_selectionFilter += r.ucet + QLatin1Char(',');
            const QString values[] = {r.castka, r.castkaImport, r.castkaZustatek, r.procent};
            for (int c = 0; c < 4; ++c)
                sums[c] += AmountValue(AmountText(values[c]));
        }
    }
    lblVyber->setText(marked.size() < 2 ? QString()
                                        : QStringLiteral("Výběr %1 řádků: %2 | %3 | %4 | %5")
                                              .arg(marked.size())
                                              .arg(FormatAmount(sums[0]), FormatAmount(sums[1]), FormatAmount(sums[2]),
                                                   FormatAmount(sums[3])));
    showGroupFigures();
}

bool frmGranty::editGrant(int row, int column, const QString &value)
{
    GrantHead &g = m_grants[row];
    const QString text = GrantAmountText(value);
    DbConnection conn(ConnStrGranty());
    const GrantAmount which = column == GrCastka1 ? GrantAmount::Castka1 : GrantAmount::Poskytnute;
    if (!conn.isOpen() || !SaveGrantAmount(conn, g.grant, which, text))
        return ShowDbError(conn);
    (which == GrantAmount::Castka1 ? g.castka1 : g.poskytnute) = text;
    showGrantFigures();
    showTotals();
    return true;
}

bool frmGranty::editPlan(int row, const QString &value)
{
    const GrantHead *g = currentGrant();
    if (!g)
        return false;
    const QString refusal = BudgetCheck(g->grant, g->castka1, value, m_groups.at(row).plan, txtCelkem[0]->text());
    if (!refusal.isEmpty()) {
        MsgBox(refusal, MsgWarning);
        return false;
    }
    DbConnection conn(ConnStrGranty());
    if (!conn.isOpen() || !StoreGroupPlan(conn, m_groups[row], value))
        return ShowDbError(conn);
    showTotals();
    showGroupFigures();
    return true;
}

bool frmGranty::runRecalc(const QVector<GrantHead> &grants, bool refreshGroups)
{
    QProgressDialog progress(QStringLiteral("Přepočet všech GRANTu"), QStringLiteral("Storno"), 0, int(grants.size()), this);
    progress.setObjectName(QStringLiteral("frmProgress"));
    progress.setWindowTitle(QStringLiteral("Přepočet všech GRANTu"));
    progress.setMinimumDuration(300);
    progress.setWindowModality(Qt::WindowModal);
    m_busy = true;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    DbConnection conn(ConnStrGranty());
    RecalcResult r;
    if (conn.isOpen()) {
        r = RecalcGrants(conn, grants, refreshGroups, [&](int done, int, const QString &grant) {
            Text1->setText(QString::number(done));
            progress.setLabelText(QStringLiteral("Přepočet GRANTu %1\n(vše se zapíše najednou na konci; Storno nechá data beze změny)")
                                      .arg(grant));
            progress.setValue(done);
            return !progress.wasCanceled();
        });
    } else {
        r.error = conn.errorText();
    }
    QApplication::restoreOverrideCursor();
    m_busy = false;
    Text1->clear();
    progress.close();
    if (r.cancelled) {
        MsgBox(QStringLiteral("Přepočet byl zrušen, nic nebylo zapsáno."), MsgWarning);
        return false;
    }
    if (!r.ok) {
        MsgBox(QStringLiteral("Přepočet se nepodařil, nic nebylo zapsáno.\r\n") + r.error, MsgCritical);
        return false;
    }
    MsgBox(QStringLiteral("Akce byla úspěšně ukončena..."));
    return true;
}

void frmGranty::cmdActual_Click()
{
    if (!Confirmed(MsgBox(QStringLiteral("Opravu chcete provest aktualizace čérpaní částek všech účtů?"), MsgQuestionOkCancel,
                          QStringLiteral("Informace"))))
        return;
    DbConnection conn(ConnStrGranty());
    QVector<GrantHead> grants;
    QVector<GroupRow> any;
    if (!conn.isOpen() || !LoadGrantHeads(conn, Session().UserFiltrGrant, &grants, true) ||
        !QueryGroupRows(conn, QString(), {}, QStringLiteral("id LIMIT 1"), &any)) {
        ShowDbError(conn);
        return;
    }
    if (any.isEmpty()) {
        MsgBox(QStringLiteral("Není seznam počátečných částek u vybraných GRANTů!"));
        return;
    }
    const GrantHead *g = currentGrant();
    const QString keep = g ? g->grant : QString();
    runRecalc(grants, false);
    load(keep);
}

void frmGranty::cmdRefresh_Click()
{
    const GrantHead *g = currentGrant();
    if (!g)
        return;
    const GrantHead grant = *g;
    DbConnection conn(ConnStrGranty());
    QVector<GroupDef> catalogue;
    if (!conn.isOpen() || !LoadSkupUctu(conn, &catalogue)) {
        ShowDbError(conn);
        return;
    }
    if (catalogue.isEmpty()) {
        MsgBox(QStringLiteral("Není definována žádna skupina účtů!"));
        return;
    }
    runRecalc({grant}, true);
    load(grant.grant);
}

void frmGranty::cmdFind_Click()
{
    FindGrantRow(DataGridGr, [this](int row) { return m_grants.at(row).grant; });
}

void frmGranty::cmdCalcul_Click()
{
    const QString question = m_level == 3 ? QStringLiteral("Chcete opravdu spustit přepočet všech ") + QStringLiteral("GRANTU") +
                                                QStringLiteral(" ?")
                                          : QStringLiteral("Chcete opravdu spustit přepočet ") + QStringLiteral("ÚČTU") +
                                                QStringLiteral(" ") + m_prefix + QStringLiteral(" ?");
    if (!Confirmed(MsgBox(question, MsgQuestionOkCancel, QStringLiteral("Start calculate ?"))))
        return;
    const GrantHead *g = currentGrant();
    DbConnection conn(ConnStrGranty());
    QVector<LevelRow> rows;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_busy = true;
    // The classes are recalculated for every grant, the levels below for the rows in view.
    bool ok = conn.isOpen() && (m_level != 3 || MemUcetFiltr(conn)) &&
              LoadLevelRows(conn, m_level, m_level == 3 ? QString() : (g ? g->grant : QString()),
                            m_level == 3 ? QString() : m_prefix, &rows);
    if (ok && !rows.isEmpty()) {
        MovementSource movements(conn);
        ImportPohybCalc calc(movements);
        ok = CalculGrant(calc, m_level, rows) && WriteLevelRows(conn, m_level, rows);
    }
    m_busy = false;
    QApplication::restoreOverrideCursor();
    if (!ok)
        ShowDbError(conn);
    loadDetail();
}

void frmGranty::cmdPictTablList_Click()
{
    const GrantHead *g = currentGrant();
    if (!g || !ListHook())
        return;
    MovementListRequest request;
    request.filter = Tidied(m_selectionFilter);
    request.grant = g->grant;
    request.name = g->castka2;
    request.heading = Label10->text();
    request.plan = lblUcetPlan->text();
    request.cerpani = lblUcetCerpani->text();
    request.zustatek = lblUcetZustatek->text();
    request.procent = lblUcetProcent->text();
    const int row = DataGrid->currentIndex().row();
    ListHook()(this, request);
    cmdRefresh_Click();
    if (row >= 0 && row < DataGrid->model()->rowCount())
        DataGrid->selectRow(row);
}

void frmGranty::showReport(const std::function<void(BuildObjLJ &)> &body)
{
    QString path, error;
    if (!WriteReport(body, &path, &error)) {
        MsgBox(error, MsgCritical);
        return;
    }
    ViewHTML(path);
}

void frmGranty::cmdTiskSkupUctu_Click()
{
    const GrantHead *g = currentGrant();
    if (!g)
        return;
    const GrantHead grant = *g;
    showReport([&](BuildObjLJ &html) { CreateSestavuUctu(html, grant, m_groups, Combo2->currentText()); });
}

void frmGranty::cmdPrint_Click()
{
    if (m_grants.isEmpty())
        return;
    // The list in the order of the register's reports, whatever the grid's sort.
    QVector<GrantHead> grants = m_grants;
    std::stable_sort(grants.begin(), grants.end(), [](const GrantHead &a, const GrantHead &b) {
        const int c = QString::compare(a.stredisko, b.stredisko, Qt::CaseInsensitive);
        return c != 0 ? c < 0 : QString::compare(a.grant, b.grant) < 0;
    });
    showReport([&](BuildObjLJ &html) {
        GrantListReport(html, grants, lblDatOd->text(), lblDatDo->text(), Combo2->currentText());
    });
}

void frmGranty::cmdPrintVyber_Click()
{
    const GrantHead *g = currentGrant();
    QModelIndexList marked = DataGrid->selectionModel()->selectedRows();
    if (!g || marked.isEmpty())
        return;
    std::sort(marked.begin(), marked.end());
    const bool groups = DataGrid->model() == m_groupModel;
    ListSpec list;
    list.grant = g->grant;
    list.selection = Tidied(m_selectionFilter).replace(QLatin1Char(','), QLatin1String(", "));
    list.size = Combo2->currentText();
    list.firstAmount = 2;
    list.columns = groups ? QStringLiteral("Účty~Název~Rozpočet, Kč~Čerpání, Kč~Zůstatek, Kč~%")
                          : QStringLiteral("Účet~Název~Částka, Kč");
    SelectionSums sums{g->grant, g->castka2};
    for (const QModelIndex &index : std::as_const(marked)) {
        if (groups) {
            const GroupRow &r = m_groups.at(index.row());
            list.rows.append({r.ucet, r.nazev, r.plan, r.cerpani, r.zustatek, r.procent});
            sums.plan += AmountValue(AmountText(r.plan));
            sums.cerpani += AmountValue(AmountText(r.cerpani));
            sums.zustatek += AmountValue(AmountText(r.zustatek));
        } else {
            const LevelRow &r = m_levelRows.at(index.row());
            list.rows.append({r.ucet, r.nazev, r.castka});
            sums.cerpani += AmountValue(AmountText(r.castka));
        }
    }
    showReport([&](BuildObjLJ &html) { SelectionReport(html, list, sums); });
}

void frmGranty::cmdStredisko_Click()
{
    ShowStredisko(this);
    const GrantHead *g = currentGrant();
    load(g ? g->grant : QString());
}

void ShowGranty(QWidget *parent, bool groups, bool editable)
{
    frmGranty screen(parent);
    screen.Editable = editable;
    screen.load();
    if (groups)
        screen.showTab(QStringLiteral("Key2"));
    screen.exec();
}
