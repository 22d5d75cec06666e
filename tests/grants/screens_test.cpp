#include "core/codepage.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "grants/frmStavyUctu.h"
#include "grants/frmStredisko.h"
#include "support/testenv.h"

#include <QAbstractItemModel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Granty = QString::fromLatin1(GrantyDbName);

QAbstractItemModel *Grid(QWidget *screen) { return Child<QTableView>(screen, "DataGrid1")->model(); }

// The row of the grid with these texts in its first column and, when given, in another, or -1.
int RowOf(QWidget *screen, const QString &first, int column = 0, const QString &text = QString())
{
    QAbstractItemModel *m = Grid(screen);
    for (int r = 0; r < m->rowCount(); ++r)
        if (m->index(r, 0).data().toString() == first && (text.isNull() || m->index(r, column).data().toString() == text))
            return r;
    return -1;
}

void Click(QWidget *screen, const char *name) { Child<QPushButton>(screen, name)->click(); }
bool Enabled(QWidget *screen, const char *name) { return Child<QPushButton>(screen, name)->isEnabled(); }
QString Total(QWidget *screen) { return Child<QLineEdit>(screen, "txtCelkem0")->text(); }
QString Count(const QString &sql) { return Column(Granty, sql).value(0); }

QString Plan(const QString &grant, const QString &nazev)
{
    return Count(QStringLiteral("SELECT CONCAT(Castka_plan,'|',Zustatek,'|',Procent) FROM SkupUctuGrant "
                                "WHERE `Grant`='%1' AND Nazev='%2'").arg(grant, nazev));
}
} // namespace

TEST(frmStredisko, GridTotalsFindCompareBudgetPrintAndDeleteForTheAdministratorOnly)
{
    FreshDatabases(true);
    LoginAs(2);
    ScriptedMessages messages;
    frmStredisko screen;
    screen.load();
    EXPECT_EQ(screen.windowTitle(), "Středisko");
    QAbstractItemModel *grid = Grid(&screen);
    ASSERT_EQ(grid->rowCount(), 96);
    EXPECT_EQ(grid->headerData(3, Qt::Horizontal).toString(), "Castka_plan");
    EXPECT_EQ(grid->index(0, 0).data().toString() + ' ' + grid->index(0, 2).data().toString(), "1201 Cestovné");
    EXPECT_EQ(Total(&screen), "27 796 000,00");   // the sum of the demo's 96 group budgets
    EXPECT_TRUE(Enabled(&screen, "cmdDelete") && Enabled(&screen, "cmdCompare"));
    SaveScreen(&screen, "frmStredisko");

    auto *view = Child<QTableView>(&screen, "DataGrid1");
    messages.inputs = {QString("23"), QString("99'x")};
    Click(&screen, "cmdFind");
    EXPECT_EQ(messages.prompts.value(0), "Zadejte číslo GRANTu:");
    EXPECT_EQ(grid->index(view->currentIndex().row(), 0).data().toString(), "2301");
    Click(&screen, "cmdFind");
    EXPECT_TRUE(messages.saw("GRANT 99'x není najden..."));

    // The demo leaves part of the budget unassigned in every third grant.
    Click(&screen, "cmdCompare");
    const QString text = messages.lastText();
    EXPECT_TRUE(text.startsWith("Seznam GRANTu v porovnání rožpočtových částek a částek v Skupinach účtů\r\n\r\n"));
    EXPECT_EQ(text.count("Grant "), 4);
    EXPECT_EQ(messages.shown.back().style, MsgInformation);

    // Grant 1203 has 1 250 000,00 and its groups take 1 063 000,00.
    const int row = RowOf(&screen, "1203", 2, "Cestovné");
    ASSERT_GE(row, 0);
    EXPECT_FALSE(grid->flags(grid->index(row, 2)) & Qt::ItemIsEditable);
    EXPECT_FALSE(grid->setData(grid->index(row, 4), "5,00"));
    EXPECT_TRUE(grid->flags(grid->index(row, 3)) & Qt::ItemIsEditable);

    // Here the value is stored even beyond the grant's budget: the check is the drawdown screen's.
    const QString total = Total(&screen);
    const size_t said = messages.shown.size();
    ASSERT_TRUE(grid->setData(grid->index(row, 3), "250000"));
    EXPECT_EQ(messages.shown.size(), said);
    EXPECT_EQ(grid->index(row, 3).data().toString(), "250 000,00");
    const QString stored = Plan("1203", "Cestovné");
    EXPECT_TRUE(stored.startsWith("250 000,00|"));
    EXPECT_EQ(stored.section('|', 1, 1), grid->index(row, 5).data().toString());
    EXPECT_NE(Total(&screen), total);
    // The comparison still reports the groups as the screen found them on opening.
    Click(&screen, "cmdCompare");
    EXPECT_TRUE(messages.lastText().contains("Grant 1203\tRozpočet  plan: 1 250 000,00\tfakt: 1 063 000,00\r\n"));

    // Print: the budgets per grant in List.htm, the edited value among them.
    Click(&screen, "cmdPrint");
    const QString html = ReadFileCp1250(Session().TempDir + "/List.htm");
    EXPECT_EQ(html.count("<td colspan=4><strong><font size=2>GRANT -</font></strong></td>"), 12);
    EXPECT_TRUE(html.contains("<font size=2>Rozpočet : </font></strong></td>\r\n      <td><em><font size=2>1 250 000,00 Kč</font>"));
    EXPECT_TRUE(html.contains("<font size=2>250 000,00</font>"));

    // Delete asks first and removes the one row.
    view->selectRow(RowOf(&screen, "1202"));
    messages.answers = {AnswerCancel, AnswerOk};
    Click(&screen, "cmdDelete");
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu zrušit položku ?");
    EXPECT_EQ(messages.shown.back().title, "Delete row");
    EXPECT_EQ(Count("SELECT COUNT(*) FROM SkupUctuGrant"), "96");
    const QString before = Total(&screen);
    Click(&screen, "cmdDelete");
    EXPECT_EQ(Count("SELECT COUNT(*) FROM SkupUctuGrant"), "95");
    EXPECT_EQ(Count("SELECT COUNT(*) FROM SkupUctuGrant WHERE `Grant`='1202'"), "7");
    EXPECT_EQ(grid->rowCount(), 95);
    EXPECT_NE(Total(&screen), before);

    // A user sees the groups of the permitted grants only, and cannot delete or compare.
    LoginAs(1);
    Session().UserFiltrGrant = "2301,1202";
    messages.shown.clear();
    {
        frmStredisko user;
        user.load();
        EXPECT_FALSE(Enabled(&user, "cmdDelete") || Enabled(&user, "cmdCompare"));
        QAbstractItemModel *rows = Grid(&user);
        EXPECT_EQ(rows->rowCount(), 15);   // one row of 1202 deleted above
        for (int r = 0; r < rows->rowCount(); ++r)
            EXPECT_TRUE(rows->index(r, 0).data() == "1202" || rows->index(r, 0).data() == "2301");
        EXPECT_TRUE(messages.shown.empty());
        SaveScreen(&user, "frmStredisko_uzivatel");
    }
    Exec(Granty, "DELETE FROM GrantyPlan");
    frmStredisko none;
    none.load();
    EXPECT_TRUE(messages.saw("Není vytvořen seznam GRANTu s rozpočtovýma částkama!"));
}

TEST(frmStavyUctu, CatalogueEditedAddedDeletedAndTidiedOnClose)
{
    FreshDatabases(true);
    LoginAs(2);
    ScriptedMessages messages;
    QStringList picked{"501100", "503"};
    SetAccountPicker([&](QWidget *) { return picked; });
    frmStavyUctu screen;
    screen.load();
    EXPECT_EQ(screen.windowTitle(), "Tvorbá skupin účtů");
    QAbstractItemModel *grid = Grid(&screen);
    ASSERT_EQ(grid->rowCount(), 8);
    EXPECT_EQ(grid->index(0, 0).data().toString(), "-602*");   // sorted by the filter text
    auto *view = Child<QTableView>(&screen, "DataGrid1");
    view->selectRow(RowOf(&screen, "521*,524*,527*"));
    EXPECT_EQ(Child<QPlainTextEdit>(&screen, "txtUcty")->toPlainText(), "521*, 524*, 527*");
    SaveScreen(&screen, "frmStavyUctu");

    Click(&screen, "cmdAdd");
    ASSERT_EQ(grid->rowCount(), 9);
    EXPECT_EQ(Column(Granty, "SELECT CONCAT(Ucet,'|',Nazev,'|',Castka,'|',Zustatek) FROM SkupUctu WHERE Ucet=''"),
              QStringList{"||0,00|0,00"});
    const int row = grid->rowCount() - 1;
    for (const auto &[column, text] : {std::pair{0, "501*,\r\n,,502*"}, {1, "  Materiál laboratoř "}, {2, ""}})
        ASSERT_TRUE(grid->setData(grid->index(row, column), QString::fromUtf8(text))) << column;
    EXPECT_EQ(grid->index(row, 2).data().toString(), "0,00");
    ASSERT_TRUE(grid->setData(grid->index(row, 2), "2500"));
    EXPECT_EQ(grid->index(row, 3).data().toString(), "2500");
    EXPECT_FALSE(grid->flags(grid->index(row, 3)) & Qt::ItemIsEditable);
    // A character the database's code page cannot hold is refused with a message.
    EXPECT_FALSE(grid->setData(grid->index(row, 1), QString::fromUtf8("漢字")));
    EXPECT_EQ(messages.shown.back().style, MsgCritical);
    view->selectRow(row);
    Click(&screen, "cmdInsert");
    EXPECT_EQ(grid->index(row, 0).data().toString(), "501*,\r\n,,502*, 501100, 503");

    view->selectRow(RowOf(&screen, "551*"));
    messages.answers = {AnswerOk};
    Click(&screen, "cmdDelete");
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu zrušit skupinu ?");
    EXPECT_EQ(messages.shown.back().title, "Zrušit záznam ?");
    EXPECT_TRUE(Column(Granty, "SELECT id FROM SkupUctu WHERE Ucet='551*'").isEmpty());

    Click(&screen, "cmdClose");
    EXPECT_EQ(Column(Granty, "SELECT CONCAT(Ucet,'|',Nazev,'|',Castka,'|',Zustatek) FROM SkupUctu WHERE Nazev LIKE 'Materiál l%'"),
              QStringList{"501*,,502*, 501100, 503|Materiál laboratoř|2 500,00|2 500,00"});
    EXPECT_EQ(Count("SELECT COUNT(*) FROM SkupUctu"), "8");
    SetAccountPicker(nullptr);
}

TEST(frmStavyUctu, ViewUctyShowsWithoutChangingAnything)
{
    FreshDatabases(true);
    LoginAs(1);
    Exec(Granty, "INSERT INTO SkupUctu (Ucet, Nazev, Castka, Zustatek) VALUES (' 7*,,8* ', ' Výnosy ', '10', '0')");
    ScriptedMessages messages;
    frmStavyUctu screen;
    screen.ViewUcty = true;
    screen.load();
    QAbstractItemModel *grid = Grid(&screen);
    ASSERT_EQ(grid->rowCount(), 9);
    for (const char *name : {"cmdAdd", "cmdInsert", "cmdDelete"})
        EXPECT_FALSE(Enabled(&screen, name)) << name;
    EXPECT_FALSE(grid->flags(grid->index(0, 1)) & Qt::ItemIsEditable);
    EXPECT_FALSE(grid->setData(grid->index(0, 1), "x"));
    SaveScreen(&screen, "frmStavyUctu_ViewUcty");
    Click(&screen, "cmdSelect");
    EXPECT_EQ(Column(Granty, "SELECT CONCAT(Ucet,'|',Nazev,'|',Castka) FROM SkupUctu WHERE Castka='10'"),
              QStringList{" 7*,,8* | Výnosy |10"});
    EXPECT_TRUE(messages.shown.empty());
}
