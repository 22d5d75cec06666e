#include "grants/frmGraph.h"

#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "grants/amount.h"
#include "grants/granttables.h"
#include "grants/screenparts.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QCursor>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHorizontalBarSeries>
#include <QImage>
#include <QLabel>
#include <QLegend>
#include <QListWidget>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QToolTip>
#include <QVBoxLayout>

#include <algorithm>

namespace {
const QString Hint = QStringLiteral("Najeďte myší na sloupec: ukáže se jeho částka.");

// One colour per meaning, the same on every chart: plans blue, money provided teal,
// drawdown orange, remainder green, overspending red.
const QColor Plan(0x3F, 0x6E, 0xB5), Provided(0x2A, 0x9D, 0x8F), Drawn(0xE7, 0x6F, 0x24), Rest(0x5A, 0xA8, 0x4B),
    Over(0xC6, 0x28, 0x28);

QBarSet *Set(const QString &label, const QColor &colour)
{
    auto *set = new QBarSet(label);
    set->setColor(colour);
    set->setBorderColor(colour.darker(115));
    return set;
}

// The money axis with Czech labels at round values.
QCategoryAxis *MoneyAxisOf(double min, double max)
{
    auto *axis = new QCategoryAxis;
    axis->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
    const QVector<AxisTick> ticks = MoneyAxis(min, max);
    for (const AxisTick &t : ticks)
        axis->append(t.label, t.value);
    axis->setRange(ticks.first().value, ticks.last().value);
    axis->setGridLineColor(QColor(0xDD, 0xDD, 0xDD));
    return axis;
}

QString Title(const QString &head, const QString &line)
{
    return QStringLiteral("<b style='font-size:15pt'>%1</b><br><span style='font-size:10pt'>%2</span>")
        .arg(head.toHtmlEscaped(), line);
}
} // namespace

frmGraph::frmGraph(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmGraph"));
    setWindowTitle(QStringLiteral("Graf čerpání GRANTů"));
    resize(1280, 760);

    lstGranty = new QListWidget(this);
    lstGranty->setObjectName(QStringLiteral("lstGranty"));
    cmdVse = CommandButton(this, "cmdVse", QStringLiteral("Vybrat vše"));
    cmdNic = CommandButton(this, "cmdNic", QStringLiteral("Zrušit výběr"));
    auto *kind = new QGroupBox(QStringLiteral("Zobrazit"), this);
    optGranty = new QRadioButton(QStringLiteral("Rozpočet a čerpání vybraných GRANTů"), kind);
    optGranty->setObjectName(QStringLiteral("optGranty"));
    optSkupiny = new QRadioButton(QStringLiteral("Skupiny účtů označeného GRANTu"), kind);
    optSkupiny->setObjectName(QStringLiteral("optSkupiny"));
    optGranty->setChecked(true);
    auto *kindLayout = new QVBoxLayout(kind);
    kindLayout->addWidget(optGranty);
    kindLayout->addWidget(optSkupiny);

    chtGraf = new QChartView(this);
    chtGraf->setObjectName(QStringLiteral("chtGraf"));
    chtGraf->setRenderHint(QPainter::Antialiasing);
    chtGraf->setMinimumSize(640, 420);
    lblHodnota = new QLabel(Hint, this);
    lblHodnota->setObjectName(QStringLiteral("lblHodnota"));
    QFont bold = lblHodnota->font();
    bold.setBold(true);
    lblHodnota->setFont(bold);

    cmdUlozit = CommandButton(this, "cmdUlozit", QStringLiteral("Uložit jako PNG…"));
    cmdTisk = CommandButton(this, "cmdTisk", QStringLiteral("Tisk…"));
    cmdClose = CommandButton(this, "cmdClose", QStringLiteral("Zavřít"));

    auto *left = new QVBoxLayout;
    left->addWidget(new QLabel(QStringLiteral("GRANTy:"), this));
    left->addWidget(lstGranty, 1);
    auto *choice = new QHBoxLayout;
    choice->addWidget(cmdVse);
    choice->addWidget(cmdNic);
    left->addLayout(choice);
    left->addWidget(kind);
    auto *panes = new QHBoxLayout;
    panes->addLayout(left);
    panes->addWidget(chtGraf, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(lblHodnota, 1);
    buttons->addWidget(cmdUlozit);
    buttons->addWidget(cmdTisk);
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(panes, 1);
    layout->addLayout(buttons);
    lstGranty->setFixedWidth(290);

    ChooseFile = [](QWidget *from) {
        return QFileDialog::getSaveFileName(from, QStringLiteral("Uložit graf"), Session().TempDir + QStringLiteral("/Graf.png"),
                                            QStringLiteral("Obrázek PNG (*.png)"));
    };
    ChoosePrinter = [](QPrinter &printer, QWidget *from) {
        QPrintDialog dialog(&printer, from);
        return dialog.exec() == QDialog::Accepted;
    };

    connect(lstGranty, &QListWidget::itemChanged, this, [this] {
        if (optGranty->isChecked())
            redraw();
    });
    connect(lstGranty, &QListWidget::currentRowChanged, this, [this] {
        if (optSkupiny->isChecked())
            redraw();
    });
    const auto checkAll = [this](Qt::CheckState state) {
        const QSignalBlocker block(lstGranty);
        for (int i = 0; i < lstGranty->count(); ++i)
            lstGranty->item(i)->setCheckState(state);
        redraw();
    };
    connect(cmdVse, &QPushButton::clicked, this, [checkAll] { checkAll(Qt::Checked); });
    connect(cmdNic, &QPushButton::clicked, this, [checkAll] { checkAll(Qt::Unchecked); });
    connect(optGranty, &QRadioButton::toggled, this, [this] { redraw(); });
    connect(cmdUlozit, &QPushButton::clicked, this, &frmGraph::cmdUlozit_Click);
    connect(cmdTisk, &QPushButton::clicked, this, &frmGraph::cmdTisk_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
}

void frmGraph::load()
{
    QVector<GrantHead> grants;
    QString from, to;
    {
        DbConnection conn(ConnStrGranty());
        if (!conn.isOpen() || !LoadGrantHeads(conn, Session().UserFiltrGrant, &grants) || !LoadPeriod(conn, &from, &to)) {
            ShowDbError(conn);
            return;
        }
    }
    if (grants.isEmpty())
        MsgBox(QStringLiteral("Není vytvořen seznam GRANTU s rozpočtovýma částkama!"));
    m_grants = grants;
    m_period = from.isEmpty() ? QStringLiteral("bez pohybů MD/DAL") : QStringLiteral("pohyby od %1 do %2").arg(from, to);
    const QStringList chosen = DefaultChosen(m_grants);
    {
        const QSignalBlocker block(lstGranty);
        lstGranty->clear();
        for (const GrantHead &g : std::as_const(m_grants)) {
            auto *item = new QListWidgetItem(QStringLiteral("%1   %2").arg(g.grant, g.castka2.trimmed()), lstGranty);
            item->setData(Qt::UserRole, g.grant);
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(chosen.contains(g.grant) ? Qt::Checked : Qt::Unchecked);
        }
        if (lstGranty->count() > 0)
            lstGranty->setCurrentRow(0);
    }
    redraw();
}

QString frmGraph::currentGrant() const
{
    const QListWidgetItem *item = lstGranty->currentItem();
    return item ? item->data(Qt::UserRole).toString() : QString();
}

void frmGraph::redraw()
{
    lblHodnota->setText(Hint);
    if (optGranty->isChecked())
        drawGrants();
    else
        drawGroups();
}

void frmGraph::drawGrants()
{
    auto *chart = new QChart;
    QVector<GrantBar> bars;
    for (int i = 0; i < lstGranty->count(); ++i)
        if (lstGranty->item(i)->checkState() == Qt::Checked)
            bars.append(GrantBarOf(m_grants.at(i)));
    if (bars.isEmpty()) {
        chart->setTitle(Title(QStringLiteral("Rozpočet a čerpání GRANTů"), QStringLiteral("Není vybrán žádný GRANT.")));
        showChart(chart);
        return;
    }
    const QString names[] = {QStringLiteral("Rozpočet"), QStringLiteral("Poskytnuto"), QStringLiteral("Čerpání"),
                             QStringLiteral("Zůstatek")};
    const QColor colours[] = {Plan, Provided, Drawn, Rest};
    auto *series = new QBarSeries;
    QStringList categories;
    GrantBar total;
    double low = 0, high = 0;
    for (int s = 0; s < 4; ++s) {
        QBarSet *set = Set(names[s], colours[s]);
        for (const GrantBar &b : std::as_const(bars)) {
            const double values[] = {b.budget, b.provided, b.drawdown, b.remainder};
            *set << values[s];
            low = std::min(low, values[s]);
            high = std::max(high, values[s]);
        }
        connect(set, &QBarSet::hovered, this, [this, set, bars](bool on, int index) {
            showTip(on, GrantBarTip(bars.at(index), set->label(), set->at(index)));
        });
        series->append(set);
    }
    for (const GrantBar &b : std::as_const(bars)) {
        const QString share = ShareText(b.drawdown, b.budget);
        categories << (share.isEmpty() ? b.grant : b.grant + QStringLiteral(" · ") + share);
        total.budget += b.budget;
        total.drawdown += b.drawdown;
        total.remainder += b.remainder;
    }
    series->setBarWidth(0.85);
    chart->addSeries(series);
    auto *x = new QBarCategoryAxis;
    x->append(categories);
    x->setTitleText(QStringLiteral("GRANT · čerpáno z rozpočtu"));
    chart->addAxis(x, Qt::AlignBottom);
    series->attachAxis(x);
    QCategoryAxis *y = MoneyAxisOf(low, high);
    chart->addAxis(y, Qt::AlignLeft);
    series->attachAxis(y);
    const QString share = total.budget > 0 ? QStringLiteral(" (%1)").arg(ShareText(total.drawdown, total.budget)) : QString();
    chart->setTitle(Title(QStringLiteral("Rozpočet a čerpání GRANTů"),
                          QStringLiteral("%1 &nbsp;·&nbsp; %2 GRANTů: rozpočet %3, čerpání %4%5, zůstatek %6")
                              .arg(m_period)
                              .arg(bars.size())
                              .arg(CzechMoney(total.budget), CzechMoney(total.drawdown), share,
                                   CzechMoney(total.remainder))));
    showChart(chart);
}

void frmGraph::drawGroups()
{
    auto *chart = new QChart;
    const QString number = currentGrant();
    const auto found = std::find_if(m_grants.cbegin(), m_grants.cend(), [&](const GrantHead &g) { return g.grant == number; });
    if (found == m_grants.cend()) {
        chart->setTitle(Title(QStringLiteral("Skupiny účtů GRANTu"), QStringLiteral("Není označen žádný GRANT.")));
        showChart(chart);
        return;
    }
    QVector<GroupRow> rows;
    {
        DbConnection conn(ConnStrGranty());
        if (!conn.isOpen() || !LoadGroupsByName(conn, number, &rows)) {
            ShowDbError(conn);
            showChart(chart);
            return;
        }
    }
    const QString head = QStringLiteral("GRANT %1 – %2").arg(number, found->castka2.trimmed());
    if (rows.isEmpty()) {
        chart->setTitle(Title(head, QStringLiteral("Není žádna skupina účtů za GRANT ! Proveďte aktualizace skupin. ")));
        showChart(chart);
        return;
    }
    // The first group at the top: a horizontal chart draws its first category at the bottom.
    QVector<GroupBar> bars;
    for (auto r = rows.crbegin(); r != rows.crend(); ++r)
        bars.append(GroupBarOf(*r));
    QBarSet *plan = Set(QStringLiteral("Plán"), Plan);
    QBarSet *drawn = Set(QStringLiteral("Čerpání"), Drawn);
    drawn->setSelectedColor(Over);
    QStringList categories;
    double low = 0, high = 0;
    int overspent = 0;
    for (int i = 0; i < bars.size(); ++i) {
        const GroupBar &b = bars.at(i);
        *plan << b.plan;
        *drawn << b.drawdown;
        if (b.overspent) {
            drawn->selectBar(i);
            ++overspent;
        }
        categories << GroupCategory(b);
        low = std::min({low, b.plan, b.drawdown});
        high = std::max({high, b.plan, b.drawdown});
    }
    auto *series = new QHorizontalBarSeries;
    for (QBarSet *set : {plan, drawn}) {
        connect(set, &QBarSet::hovered, this, [this, set, bars](bool on, int index) {
            showTip(on, GroupBarTip(bars.at(index), set->label(), set->at(index)));
        });
        series->append(set);
    }
    series->setBarWidth(0.8);
    chart->addSeries(series);
    auto *y = new QBarCategoryAxis;
    y->append(categories);
    chart->addAxis(y, Qt::AlignLeft);
    series->attachAxis(y);
    QCategoryAxis *x = MoneyAxisOf(low, high);
    chart->addAxis(x, Qt::AlignBottom);
    series->attachAxis(x);
    const GroupTotals t = SumGroupRows(rows);
    const QString overText = overspent == 0 ? QStringLiteral("žádná skupina není překročena")
                                            : QStringLiteral("<span style='color:#C62828'><b>▲ překročeno skupin: %1</b></span>")
                                                  .arg(overspent);
    chart->setTitle(Title(head, QStringLiteral("plán %1, čerpání %2, zůstatek %3 &nbsp;·&nbsp; %4 &nbsp;·&nbsp; %5")
                                    .arg(CzechMoney(t.plan), CzechMoney(t.cerpani), CzechMoney(t.zustatek), overText,
                                         m_period)));
    showChart(chart);
}

void frmGraph::showChart(QChart *chart)
{
    // Room on the right for the last money label, which stands centred on its value.
    chart->setMargins(QMargins(10, 10, 40, 10));
    chart->legend()->setAlignment(Qt::AlignBottom);
    // The view lets go of its previous chart without deleting it.
    QChart *previous = chtGraf->chart();
    chtGraf->setChart(chart);
    delete previous;
}

void frmGraph::showTip(bool hovering, const QString &text)
{
    if (!hovering) {
        QToolTip::hideText();
        return;
    }
    lblHodnota->setText(text);
    QToolTip::showText(QCursor::pos(), text, chtGraf);
}

bool frmGraph::savePng(const QString &path) const
{
    // The scene drawn anew at twice the size, sharp on a printed poster.
    QImage picture(chtGraf->size() * 2, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    chtGraf->render(&painter, QRectF(picture.rect()), QRect(), Qt::KeepAspectRatio);
    painter.end();
    return picture.save(path, "PNG");
}

void frmGraph::cmdUlozit_Click()
{
    QString path = ChooseFile ? ChooseFile(this) : QString();
    if (path.isEmpty())
        return;
    if (!path.endsWith(QLatin1String(".png"), Qt::CaseInsensitive))
        path += QStringLiteral(".png");
    if (!savePng(path)) {
        MsgBox(QStringLiteral("Graf se nepodařilo uložit do souboru ") + QDir::toNativeSeparators(path) + QLatin1Char('.'),
               MsgCritical);
        return;
    }
    lblHodnota->setText(QStringLiteral("Graf uložen: ") + QDir::toNativeSeparators(path));
}

void frmGraph::cmdTisk_Click()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    if (!ChoosePrinter || !ChoosePrinter(printer, this))
        return;
    QPainter painter;
    if (!painter.begin(&printer)) {
        MsgBox(QStringLiteral("Tiskárnu se nepodařilo spustit, graf nebyl vytištěn."), MsgWarning);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    // The painter starts at the printable area's corner.
    const QSize page = printer.pageLayout().paintRectPixels(printer.resolution()).size();
    chtGraf->render(&painter, QRectF(QPointF(0, 0), QSizeF(page)), QRect(), Qt::KeepAspectRatio);
    painter.end();
}

void ShowGraph(QWidget *parent)
{
    frmGraph screen(parent);
    screen.load();
    screen.exec();
}
