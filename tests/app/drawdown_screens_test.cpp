// The drawdown's screens as a user meets them from the main window's menu: the graph, and
// the movement list of a group opened from the drawdown screen.

#include "app/frmMDIMain.h"
#include "app/screens.h"
#include "core/codepage.h"
#include "core/db.h"
#include "core/session.h"
#include "grants/frmGraph.h"
#include "grants/grantreports.h"
#include "support/testenv.h"

#include <QAction>
#include <QApplication>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QFile>
#include <QHorizontalBarSeries>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTableView>
#include <QTimer>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
QBarSet *SetOf(QChartView *view, int index)
{
    const auto series = view->chart()->series();
    if (series.isEmpty())
        return nullptr;
    auto *bars = qobject_cast<QAbstractBarSeries *>(series.first());
    return bars ? bars->barSets().value(index) : nullptr;
}
} // namespace

TEST(frmGraph, OpensFromTheMenuDrawsTheUsersGrantsAndTheirGroupsSavesAndPrints)
{
    FreshDatabases();
    LoginAs(1);
    Session().UserFiltrGrant = QStringLiteral("1201,1203,2302");
    // One group of 1201 drawn beyond its plan.
    Exec(QString::fromLatin1(GrantyDbName),
         "UPDATE SkupUctuGrant SET Castka_cerpani='120 000,00', Zustatek='-22 000,00' WHERE `Grant`='1201' AND Nazev='Cestovné'");
    RegisterScreens();
    ScriptedMessages messages;
    frmMDIMain window;
    const QString png = SamplesDir(QStringLiteral("graph")) + QStringLiteral("/Graf 1201.png");
    const QString pdf = SamplesDir(QStringLiteral("graph")) + QStringLiteral("/Graf.pdf");
    QFile::remove(png);
    QFile::remove(pdf);
    bool ran = false;
    QTimer::singleShot(0, [&] {
        auto *screen = qobject_cast<frmGraph *>(QApplication::activeModalWidget());
        ASSERT_NE(screen, nullptr);
        ran = true;
        auto *list = Child<QListWidget>(screen, "lstGranty");
        auto *chart = Child<QChartView>(screen, "chtGraf");
        // Only the user's grants, all chosen; four bars per grant.
        ASSERT_EQ(list->count(), 3);
        EXPECT_EQ(list->item(0)->text(), "1201   prof. MUDr. Karel Veselý, CSc.");
        QBarSet *drawdown = SetOf(chart, 2);
        ASSERT_NE(drawdown, nullptr);
        EXPECT_EQ(drawdown->label(), "Čerpání");
        ASSERT_EQ(drawdown->count(), 3);
        EXPECT_DOUBLE_EQ(drawdown->at(0), 782533.31);   // 2 450 000,00 - 1 667 466,69
        EXPECT_TRUE(chart->chart()->title().contains("rozpočet 6 450 000,00 Kč, čerpání 3 700 539,74 Kč (57,4 %)")) << chart->chart()->title().toStdString();
        // Hovering a bar gives its figure in Czech.
        emit drawdown->hovered(true, 0);
        EXPECT_EQ(Child<QLabel>(screen, "lblHodnota")->text(), "GRANT 1201 · Čerpání: 782 533,31 Kč");
        // One grant unchosen leaves two.
        list->item(1)->setCheckState(Qt::Unchecked);
        EXPECT_EQ(SetOf(chart, 0)->count(), 2);
        list->item(1)->setCheckState(Qt::Checked);

        // The groups of the marked grant: the overspent one marked red and in its label.
        Child<QRadioButton>(screen, "optSkupiny")->setChecked(true);
        list->setCurrentRow(0);
        QBarSet *groups = SetOf(chart, 1);
        ASSERT_NE(groups, nullptr);
        ASSERT_EQ(groups->count(), 8);
        const QList<int> marked = groups->selectedBars();
        ASSERT_EQ(marked.size(), 1);
        emit groups->hovered(true, marked.first());
        EXPECT_EQ(Child<QLabel>(screen, "lblHodnota")->text(),
                  "Cestovné · Čerpání: 120 000,00 Kč (překročeno o 22 000,00 Kč)");
        EXPECT_TRUE(chart->chart()->title().contains("překročeno skupin: 1"));

        screen->ChooseFile = [&](QWidget *) { return png; };
        Child<QPushButton>(screen, "cmdUlozit")->click();
        screen->ChoosePrinter = [&](QPrinter &printer, QWidget *) {
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(pdf);
            return true;
        };
        Child<QPushButton>(screen, "cmdTisk")->click();
        SaveScreen(screen, "frmGraph");
        Child<QRadioButton>(screen, "optGranty")->setChecked(true);
        SaveScreen(screen, "frmGraph grants");
        Child<QPushButton>(screen, "cmdClose")->click();
    });
    window.findChild<QAction *>("mnuGraf")->trigger();
    EXPECT_TRUE(ran);
    EXPECT_TRUE(messages.shown.empty());

    // The picture: a real PNG at twice the screen's size.
    const QImage picture(png);
    ASSERT_FALSE(picture.isNull());
    EXPECT_GT(picture.width(), 1200);
    // The printout: one landscape page whose text carries the chart's labels.
    QProcess text;
    text.start("pdftotext", {"-layout", pdf, "-"});
    if (text.waitForFinished(20000) && text.exitCode() == 0) {
        const QString page = QString::fromUtf8(text.readAllStandardOutput());
        EXPECT_TRUE(page.contains("Cestovné")) << page.toStdString();
        EXPECT_TRUE(page.contains("Kč"));
    } else {
        EXPECT_TRUE(QFile(pdf).size() > 1000);
    }
}

TEST(frmGranty, MovementListOfAGroupShowsItsRowsPrintsThemAndRefreshesTheGroup)
{
    FreshDatabases();
    LoginAs(2);
    qputenv("FONDARIX_NO_BROWSER", "1");
    // Movements of 1201: two of its travel group, one of another group, one of another grant.
    Exec(QString::fromLatin1(GrantyDbName),
         "INSERT INTO ImportUctyCastky (Datum, Doklad, `Text`, Castka, Ucet, `Grant`, NazevUctu, `MD/DAL`) VALUES "
         "('07.01.2025', '  CP-3', 'Konference <Brno>', '  4 200,00', '512100', '1201', 'Cestovné', 'MD'), "
         "('09.01.2025', '  CP-4', 'Vratka zálohy', '  200,00', '512100', '1201', 'Cestovné', 'DAL'), "
         "('05.01.2025', '  FP-1', 'Reagencie', '  10 000,00', '501100', '1201', 'Materiál', 'MD'), "
         "('06.01.2025', '  CP-9', 'Cesta', '  999,00', '512100', '1202', 'Cestovné', 'MD')");
    RegisterScreens();
    ScriptedMessages messages;
    frmMDIMain window;
    QString listTitle, heading;
    int listRows = -1;
    QTimer::singleShot(0, [&] {
        QWidget *granty = QApplication::activeModalWidget();
        ASSERT_NE(granty, nullptr);
        ASSERT_EQ(granty->objectName(), "frmGranty");
        Child<QTabBar>(granty, "TabStrip1")->setCurrentIndex(1);
        auto *groups = Child<QTableView>(granty, "DataGrid");
        int travel = -1;
        for (int r = 0; r < groups->model()->rowCount(); ++r)
            if (groups->model()->index(r, 1).data().toString() == "Cestovné")
                travel = r;
        ASSERT_GE(travel, 0);
        groups->selectRow(travel);
        auto *list = Child<QPushButton>(granty, "cmdPictTablList");
        ASSERT_TRUE(list->isEnabled());
        QTimer::singleShot(0, [&] {
            QWidget *screen = QApplication::activeModalWidget();
            ASSERT_NE(screen, nullptr);
            ASSERT_EQ(screen->objectName(), "frmImportPohyb");
            listTitle = screen->windowTitle();
            heading = Child<QLabel>(screen, "lblHeading")->text();
            listRows = Child<QTableView>(screen, "DataGrid1")->model()->rowCount();
            EXPECT_FALSE(Child<QPushButton>(screen, "cmdImportAct")->isVisible());
            SaveScreen(screen, "frmImportPohyb list");
            Child<QPushButton>(screen, "cmdPrint")->click();
            Child<QPushButton>(screen, "cmdClose")->click();
        });
        list->click();
        Child<QPushButton>(granty, "cmdClose")->click();
    });
    window.findChild<QAction *>("mnuGrantTree")->trigger();

    EXPECT_EQ(listTitle, "Položký MD/DAL - GRANT 1201");
    EXPECT_EQ(listRows, 2);
    EXPECT_TRUE(heading.contains("<b>Cestovné</b> &nbsp;(512*) &nbsp; položek: 2")) << heading.toStdString();
    // The print: the rows in Windows-1250, the text of a movement escaped, the amount last.
    const QByteArray bytes = [] {
        QFile f(ReportPath());
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }();
    const QString html = FromCp1250(bytes);
    EXPECT_TRUE(html.contains("GRANT : ")) << html.toStdString();
    EXPECT_TRUE(html.contains("Konference &lt;Brno&gt;"));
    EXPECT_TRUE(html.contains("Cestovné (512*)"));
    EXPECT_FALSE(html.contains("Reagencie"));
    EXPECT_LT(html.indexOf("MD/DAL"), html.indexOf("Částka"));
    // Closing the list refreshes the group: MD 4 200,00 less DAL 200,00.
    EXPECT_TRUE(messages.saw("Akce byla úspěšně ukončena..."));
    EXPECT_EQ(Column(QString::fromLatin1(GrantyDbName),
                     "SELECT Castka_cerpani FROM SkupUctuGrant WHERE `Grant`='1201' AND Nazev='Cestovné'")
                  .value(0),
              "4 000,00");
}
