#include "core/codepage.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "grants/frmGranty.h"
#include "support/testenv.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTableView>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Granty = QString::fromLatin1(GrantyDbName);

// The demo institute with a period of movements for grant 1201 and its classes.
void DemoWithPeriod()
{
    FreshDatabases(true);
    Exec(Granty, "INSERT INTO ImportUctyCastky (Datum, Doklad, `Text`, Castka, Ucet, `Grant`, NazevUctu, `MD/DAL`) VALUES "
                 "('05.01.2025', 'FP-1', 'Reagencie', '10 000,00', '501100', '1201', 'Spotřeba materiálu', 'MD'), "
                 "('06.01.2025', 'FP-2', 'Dobropis', '1 500,50', '501100', '1201', 'Spotřeba materiálu', 'DAL'), "
                 "('07.01.2025', 'CP-3', 'Konference', '4 200,00', '512', '1201', 'Cestovné', 'MD'), "
                 "('31.01.2025', 'VF-4', 'Analýzy', '2 000,00', '602', '1201', 'Tržby', 'DAL')");
    Exec(Granty, "INSERT INTO GrantTabl_main (`Grant`, Ucet, Nazev, Castka, Castka_import) VALUES "
                 "('1201', '5', 'Náklady', '0,00', '12 699,50'), ('1201', '6', 'Výnosy', '0,00', '-2 000,00')");
}

QAbstractItemModel *Model(QWidget *screen, const char *grid) { return Child<QTableView>(screen, grid)->model(); }
QString Cell(QWidget *screen, const char *grid, int row, int column)
{
    return Model(screen, grid)->index(row, column).data().toString();
}
QString Text(QWidget *screen, const char *name) { return Child<QLabel>(screen, name)->text(); }
void Click(QWidget *screen, const char *name) { Child<QPushButton>(screen, name)->click(); }
QString Figures(QWidget *screen)
{
    auto *grid = Child<QTableWidget>(screen, "MSFlexGrid1");
    QStringList cells;
    for (int c = 0; c < 4; ++c)
        cells << grid->item(0, c)->text();
    return cells.join('|');
}
QString Stored(const QString &sql) { return Column(Granty, sql).value(0); }
} // namespace

TEST(frmGranty, OpensWithTheUsersGrantsAndRecalculatesThemAll)
{
    DemoWithPeriod();
    LoginAs(2);
    ScriptedMessages messages;
    frmGranty screen;
    screen.load();
    EXPECT_EQ(screen.windowTitle(), "Čerpání nákladů GRANTu");
    EXPECT_TRUE(messages.shown.empty());
    // Archived grants (1204, 2305) are not in the list; a null Poskytnute is repaired.
    QAbstractItemModel *grants = Model(&screen, "DataGridGr");
    ASSERT_EQ(grants->rowCount(), 10);
    EXPECT_EQ(Cell(&screen, "DataGridGr", 0, 0), "1201");
    EXPECT_EQ(Stored("SELECT Poskytnute FROM GrantyPlan WHERE _grant='1206'"), "0,00");
    EXPECT_EQ(Text(&screen, "lblDatOd") + " - " + Text(&screen, "lblDatDo"), "05.01.2025 - 31.01.2025");
    // The demo's figures of 1201: 2 450 000,00 - 1 667 466,69, spent 31,94 % rounded to 31,9.
    EXPECT_EQ(Figures(&screen), "1201|782 533,31|1 667 466,69|31,90   ");
    EXPECT_EQ(Child<QTableWidget>(&screen, "MSFlexGrid1")->item(0, 2)->foreground().color(), QColor(0, 0, 255));
    EXPECT_EQ(Text(&screen, "Label34"), "+ 650 000,00");
    SaveScreen(&screen, "frmGranty");

    // Cancel leaves everything; OK recalculates every grant and says so.
    messages.answers = {AnswerCancel};
    Click(&screen, "cmdActual");
    EXPECT_EQ(messages.shown.back().text, "Opravu chcete provest aktualizace čérpaní částek všech účtů?");
    EXPECT_EQ(messages.shown.back().title, "Informace");
    EXPECT_EQ(Stored("SELECT Castka3 FROM GrantyPlan WHERE _grant='1201'"), "1 667 466,69");
    messages.answers = {AnswerOk};
    Click(&screen, "cmdActual");
    EXPECT_EQ(messages.lastText(), "Akce byla úspěšně ukončena...");
    // 2 450 000,00 minus the classes' 12 699,50 and -2 000,00.
    EXPECT_EQ(Stored("SELECT Castka3 FROM GrantyPlan WHERE _grant='1201'"), "2 439 300,50");
    EXPECT_EQ(Stored("SELECT Castka3 FROM GrantyPlan WHERE _grant='2305'"), "720 000,00");   // archived, no classes
    EXPECT_EQ(Stored("SELECT CONCAT(Castka_cerpani,'|',Zustatek,'|',Procent) FROM SkupUctuGrant "
                     "WHERE `Grant`='1201' AND Nazev='Materiál a energie'"),
              "8 499,50|530 500,50|98,40");
    // "-602*": the exact account 602 counts the other way, so the credit lowers nothing here.
    EXPECT_EQ(Stored("SELECT Castka_cerpani FROM SkupUctuGrant WHERE `Grant`='1201' AND Ucet='-602*'"), "2 000,00");
    EXPECT_EQ(Cell(&screen, "DataGridGr", 0, 3), "2 439 300,50");
    EXPECT_EQ(Figures(&screen), "1201|10 699,50|2 439 300,50|0,40   ");

    // Find by the beginning of the number.
    messages.inputs = {QString("23"), QString("9'9")};
    Click(&screen, "cmdFind");
    EXPECT_EQ(messages.prompts.back(), "Zadejte číslo GRANTu:");
    EXPECT_EQ(Text(&screen, "Label5"), "2301");
    Click(&screen, "cmdFind");
    EXPECT_EQ(messages.lastText(), "GRANT 9'9 není najden...");

    // The budget and the money provided are edited in the grants grid and stored at once.
    const int row = Child<QTableView>(&screen, "DataGridGr")->currentIndex().row();
    ASSERT_TRUE(grants->setData(grants->index(row, 2), "5000000"));
    EXPECT_EQ(Stored("SELECT Poskytnute FROM GrantyPlan WHERE _grant='2301'"), "5 000 000,00");
    EXPECT_EQ(Text(&screen, "Label34"), "- 900 000,00");
    ASSERT_TRUE(grants->setData(grants->index(row, 1), ""));
    EXPECT_EQ(Stored("SELECT Castka1 FROM GrantyPlan WHERE _grant='2301'"), "0,00");
    EXPECT_TRUE(Figures(&screen).endsWith("|0,00   "));

}

TEST(frmGranty, GroupsTabChecksTheBudgetMarksRowsAndPrints)
{
    DemoWithPeriod();
    LoginAs(2);
    ScriptedMessages messages;
    frmGranty screen;
    screen.load();
    screen.show();
    QApplication::setActiveWindow(&screen);
    screen.showTab("Key2");
    EXPECT_TRUE(messages.shown.empty());
    QAbstractItemModel *groups = Model(&screen, "DataGrid");
    ASSERT_EQ(groups->rowCount(), 8);
    EXPECT_EQ(Cell(&screen, "DataGrid", 0, 1), "Cestovné");   // sorted by name
    EXPECT_EQ(Child<QLineEdit>(&screen, "txtCelkem0")->text(), "2 450 000,00");
    EXPECT_EQ(Text(&screen, "Label10"), "Cestovné");

    // The groups of 1201 take the whole budget: one heller more is refused, and nothing stored.
    auto *view = Child<QTableView>(&screen, "DataGrid");
    view->selectRow(2);
    EXPECT_EQ(Text(&screen, "Label9"), "501*, 502*");
    EXPECT_FALSE(groups->setData(groups->index(2, 2), "539 000,01"));
    EXPECT_EQ(messages.lastText(), "Částka za skupinu překročila rozpočtovou částku za tento GRANT: 1201\r\n"
                                   " z řozpočtem 2 450 000,00 Kč na částku 0,01 Kč!");
    EXPECT_EQ(Stored("SELECT Castka_plan FROM SkupUctuGrant WHERE `Grant`='1201' AND Ucet='501*,502*'"), "539 000,00");
    ASSERT_TRUE(groups->setData(groups->index(2, 2), "500000"));
    EXPECT_EQ(Stored("SELECT CONCAT(Castka_plan,'|',Zustatek) FROM SkupUctuGrant WHERE `Grant`='1201' AND Ucet='501*,502*'"),
              "500 000,00|402 980,00");
    EXPECT_EQ(Child<QLineEdit>(&screen, "txtCelkem0")->text(), "2 411 000,00");

    // Ctrl+A marks every row and sums the columns; the selection prints with its block.
    view->setFocus();
    QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(view->selectionModel()->selectedRows().size(), 8);
    EXPECT_TRUE(Text(&screen, "lblVyber").startsWith("Výběr 8 řádků: 2 411 000,00 | "));
    SaveScreen(&screen, "frmGranty_skupiny");
    Click(&screen, "cmdPrintVyber");
    const QString selection = ReadFileCp1250(Session().TempDir + "/List.htm");
    EXPECT_TRUE(selection.startsWith("<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0 Transitional//EN\">\r\n"));
    EXPECT_TRUE(selection.contains("<font size=1>Rozpočet za výběr, Kč : </font>"));
    EXPECT_TRUE(selection.endsWith("</table></body></html>\r\n"));

    // All groups of the grant, in the report of the groups.
    Click(&screen, "cmdTiskSkupUctu");
    const QString report = ReadFileCp1250(Session().TempDir + "/List.htm");
    EXPECT_TRUE(report.contains("<td><em><font size=2>prof. MUDr. Karel Veselý, CSc.</font></em></td>"));
    EXPECT_EQ(report.count("Celkem za GRANT, Kč"), 1);

    // Aktualizace skupiny: a group gone from the catalogue goes from the grant too.
    Exec(Granty, "DELETE FROM SkupUctu WHERE Nazev='Cestovné'");
    Click(&screen, "cmdRefresh");
    EXPECT_EQ(messages.lastText(), "Akce byla úspěšně ukončena...");
    EXPECT_EQ(groups->rowCount(), 7);
    EXPECT_EQ(Stored("SELECT Castka_cerpani FROM SkupUctuGrant WHERE `Grant`='1201' AND Ucet='501*,502*'"), "8 499,50");
    // An empty catalogue is said on entering the tab and on the refresh.
    Exec(Granty, "DELETE FROM SkupUctu");
    screen.showTab("Key1");
    screen.showTab("Key2");
    EXPECT_TRUE(messages.saw("Není definována žádna skupina účtů!"));
}

TEST(frmGranty, ChartOfAccountsRecalculatesTheClassesAfterTheQuestion)
{
    DemoWithPeriod();
    Exec(Granty, "INSERT INTO Grant_devize_1 (`Grant`, Ucet, Nazev, Castka) VALUES ('1201', '50', 'Spotřeba', '0,00'), "
                 "('1201', '51', 'Služby', '0,00'), ('1201', '60', 'Tržby', '0,00')");
    LoginAs(1);
    ScriptedMessages messages;
    frmGranty screen;
    screen.Editable = false;
    screen.load();
    QAbstractItemModel *grid = Model(&screen, "DataGrid");
    ASSERT_EQ(grid->rowCount(), 2);
    EXPECT_FALSE(Model(&screen, "DataGridGr")->flags(Model(&screen, "DataGridGr")->index(0, 1)) & Qt::ItemIsEditable);
    messages.answers = {AnswerOk};
    Click(&screen, "cmdCalcul");
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu spustit přepočet všech GRANTU ?");
    EXPECT_EQ(messages.shown.back().title, "Start calculate ?");
    EXPECT_EQ(Cell(&screen, "DataGrid", 0, 2), "2 450 000,00");   // the budget on the first class
    EXPECT_EQ(Cell(&screen, "DataGrid", 0, 3), "12 699,50");
    EXPECT_EQ(Cell(&screen, "DataGrid", 1, 3), "-2 000,00");
    SaveScreen(&screen, "frmGranty_osnova");

    // Down to the accounts of class 5.
    auto *view = Child<QTableView>(&screen, "DataGrid");
    view->setCurrentIndex(grid->index(0, 0));
    emit view->doubleClicked(grid->index(0, 0));
    EXPECT_EQ(Child<QComboBox>(&screen, "Combo1")->currentData().toInt(), 0);
    ASSERT_EQ(grid->rowCount(), 2);
    messages.answers = {AnswerOk};
    Click(&screen, "cmdCalcul");
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu spustit přepočet ÚČTU 5 ?");
    EXPECT_EQ(Cell(&screen, "DataGrid", 0, 2), "8 499,50");
    EXPECT_EQ(Cell(&screen, "DataGrid", 1, 2), "4 200,00");
}
