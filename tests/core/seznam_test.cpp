#include "core/db.h"
#include "core/frmSeznamUs.h"
#include "core/frmSeznamUz.h"
#include "core/msg.h"
#include "support/testenv.h"

#include <QAbstractItemModel>
#include <QHeaderView>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
QTableView *grid(QWidget &screen) { return screen.findChild<QTableView *>("DataGrid1"); }

QStringList shownHeaders(QTableView *view)
{
    QStringList headers;
    if (!view->model())
        return headers;
    for (int c = 0; c < view->model()->columnCount(); ++c)
        if (!view->isColumnHidden(c))
            headers << view->model()->headerData(c, Qt::Horizontal).toString();
    return headers;
}

void doubleClick(QTableView *view, int row, int column)
{
    const QModelIndex index = view->model()->index(row, column);
    view->scrollTo(index);
    const QPoint at = view->visualRect(index).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
}

int columnOf(QTableView *view, const QString &name)
{
    for (int c = 0; c < view->model()->columnCount(); ++c)
        if (view->model()->headerData(c, Qt::Horizontal).toString() == name)
            return c;
    return -1;
}
} // namespace

TEST(SeznamUs, SolversOfGrantsWithKeysAndInputBoxes)
{
    FreshDatabases(true);
    ScriptedMessages messages;
    frmSeznamUs screen;
    screen.Tabulka = "sys_prava";   // any case
    screen.show();
    EXPECT_EQ(screen.windowTitle(), "Seznam řešitelé GRANTU");
    QTableView *view = grid(screen);
    ASSERT_NE(view, nullptr);
    ASSERT_NE(view->model(), nullptr);
    EXPECT_EQ(shownHeaders(view), (QStringList{"Grant", "Jmeno"}));

    // F7: grant, then name; a cancelled second box adds nothing.
    messages.inputs = {QString("12"), std::nullopt};
    QTest::keyClick(view, Qt::Key_F7);
    EXPECT_EQ(messages.prompts, (QStringList{"Zadejte číslo noveno GRANTU:", "Zadejte nove jméno řešitelé GRANTU:"}));
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM SYS_PRAVA"), QStringList{"0"});

    messages.inputs = {QString("12"), QString("MUDr. Jan Nový")};
    QTest::keyClick(view, Qt::Key_F7);
    EXPECT_EQ(Column(SysDbName, "SELECT CONCAT(`Grant`, '|', Jmeno) FROM SYS_PRAVA"), QStringList{"12|MUDr. Jan Nový"});
    EXPECT_EQ(view->model()->rowCount(), 1);

    messages.inputs = {QString("Šťastný")};
    doubleClick(view, 0, columnOf(view, "Jmeno"));
    EXPECT_EQ(messages.prompts.last(), "Zeditujte jméno:");
    EXPECT_EQ(Column(SysDbName, "SELECT Jmeno FROM SYS_PRAVA"), QStringList{"Šťastný"});
    messages.inputs = {QString("15")};
    doubleClick(view, 0, columnOf(view, "Grant"));
    EXPECT_EQ(messages.prompts.last(), "Zeditujte GRANT:");
    EXPECT_EQ(Column(SysDbName, "SELECT `Grant` FROM SYS_PRAVA"), QStringList{"15"});

    messages.answers = {AnswerCancel};
    QTest::keyClick(view, Qt::Key_F8);
    ASSERT_FALSE(messages.shown.empty());
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu zrušit položku ?");
    EXPECT_EQ(messages.shown.back().title, "Zrušit záznam ?");
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM SYS_PRAVA"), QStringList{"1"});
    messages.answers = {AnswerOk};
    QTest::keyClick(view, Qt::Key_F8);
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM SYS_PRAVA"), QStringList{"0"});

    QTest::keyClick(view, Qt::Key_Escape);
    EXPECT_FALSE(screen.isVisible());
}

TEST(SeznamUs, OneColumnListsAndTheMisspelledName)
{
    FreshDatabases(true);
    ScriptedMessages messages;
    {
        frmSeznamUs screen;
        screen.Tabulka = "SYS_PRIKAZCE";
        screen.Titulek = "Seznam příkazců";
        screen.Klic = "Jmeno";
        screen.show();
        EXPECT_EQ(screen.windowTitle(), "Seznam příkazců");
        QTableView *view = grid(screen);
        EXPECT_EQ(shownHeaders(view), QStringList{"Jmeno"});
        ASSERT_EQ(view->model()->rowCount(), 2);
        // Ordered by the key column.
        EXPECT_EQ(view->model()->index(0, columnOf(view, "Jmeno")).data().toString(), "doc. MUDr. Eva Horáková, Ph.D.");
        messages.inputs = {QString("MUDr. Petra Malá")};
        QTest::keyClick(view, Qt::Key_F7);
        EXPECT_EQ(messages.prompts, QStringList{"Zadejte nove jméno řešitelé GRANTU:"});
        EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM sys_prikazce WHERE Jmeno = 'MUDr. Petra Malá'"),
                  QStringList{"1"});
        SaveScreen(&screen, "frmSeznamUs_prikazce");
    }
    {
        // The name with the letters swapped binds nothing; the commands do nothing.
        frmSeznamUs screen;
        screen.Tabulka = "SYS_PARVA";
        screen.show();
        EXPECT_EQ(grid(screen)->model(), nullptr);
        messages.prompts.clear();
        QTest::keyClick(grid(screen), Qt::Key_F7);
        QTest::keyClick(grid(screen), Qt::Key_F8);
        EXPECT_TRUE(messages.prompts.isEmpty());
    }
    EXPECT_TRUE(messages.shown.empty());
}

TEST(SeznamUz, OrderingPersons)
{
    FreshDatabases(true);
    ScriptedMessages messages;
    frmSeznamUz screen;
    screen.show();
    EXPECT_EQ(screen.windowTitle(), "Seznam objednávajícich osob");
    QTableView *view = grid(screen);
    EXPECT_EQ(shownHeaders(view), QStringList{"Vyrizuje"});
    ASSERT_EQ(view->model()->rowCount(), 2);

    messages.inputs = {QString("Hana Marková")};
    QTest::keyClick(view, Qt::Key_F7);
    EXPECT_EQ(messages.prompts.last(), "Zadejte nove jméno:");
    // The row's other columns stay empty; the key is the server's.
    EXPECT_EQ(Column(SysDbName, "SELECT CONCAT_WS('|', Vyrizuje, IFNULL(Telefon, '-')) FROM sys_nastaveniobj "
                                "WHERE Vyrizuje = 'Hana Marková'"),
              QStringList{"Hana Marková|-"});

    const int column = columnOf(view, "Vyrizuje");
    messages.inputs = {QString("  ")};   // a blank answer changes nothing
    doubleClick(view, 0, column);
    EXPECT_EQ(messages.prompts.last(), "Zeditujte jméno:");
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM sys_nastaveniobj WHERE TRIM(Vyrizuje) = ''"), QStringList{"0"});

    messages.answers = {AnswerOk};
    view->setCurrentIndex(view->model()->index(0, column));
    QTest::keyClick(view, Qt::Key_F8);
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu zrušit položku?");
    EXPECT_EQ(messages.shown.back().title, "Zrušit záznam?");
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM sys_nastaveniobj"), QStringList{"2"});
}
