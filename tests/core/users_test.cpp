#include "core/db.h"
#include "core/frmLoginUser.h"
#include "core/msg.h"
#include "core/session.h"
#include "core/users.h"
#include "support/testenv.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
QString cell(QTableWidget *grid, int row, int column)
{
    const QTableWidgetItem *item = grid->item(row, column);
    return item ? item->text() : QString();
}

QString duplicateMessage(const QString &value)
{
    return "Zadána hodnota  " + value + "  v seznamu již existuje, opakujte prosím volbu.";
}
} // namespace

TEST(Roles, ListPositionsAndNames)
{
    const short expected[] = {2, 1, 6, 3, 4, 5};
    for (int position = 0; position < 6; ++position)
        EXPECT_EQ(TypFromList(position), expected[position]) << position;
    EXPECT_EQ(TypFromList(-1), 0);
    EXPECT_EQ(TypFromList(6), 0);

    const short old[] = {3, 4, 6, 2, 5};
    for (int position = 0; position < 5; ++position)
        EXPECT_EQ(TypFromListOld(position), old[position]) << position;
    EXPECT_EQ(TypFromListOld(5), 1);
    EXPECT_EQ(TypFromListOld(-1), 1);

    // The filter list: " - Vše - " is no filter, then the same conversion one place on.
    EXPECT_EQ(TypFromFilterList(0), 0);
    EXPECT_EQ(TypFromFilterList(1), 2);
    EXPECT_EQ(TypFromFilterList(6), 5);
    EXPECT_EQ(TypFilterNames().value(0), " - Vše - ");
    EXPECT_EQ(TypFilterNames().mid(1), TypListNames());

    // The lists and the grid spell the order manager differently.
    EXPECT_EQ(TypListNames().value(5), "Správce objedávek");
    EXPECT_EQ(TypName(5), "Správce objednávek");
    EXPECT_EQ(TypName(0), "Super uživatel");
    EXPECT_EQ(TypName(42), "Super uživatel");

    // From the grid's text back to the list: every named role survives the round trip.
    for (int typ = 1; typ <= 6; ++typ)
        EXPECT_EQ(TypFromList(ListPositionFromTypText(TypName(typ))), typ) << typ;
    EXPECT_EQ(ListPositionFromTypText("Neznámá role"), 1);
    EXPECT_EQ(ListPositionFromTypText("Správce objedávek"), 1);   // the list's spelling is not the grid's
}

TEST(UserGrantFilter, PickBackspaceAndDoubledCommas)
{
    ScriptedMessages messages;
    EXPECT_EQ(FilterAfterPick("0", "12"), "12,");
    EXPECT_EQ(FilterAfterPick("", "12"), "12,");
    EXPECT_EQ(FilterAfterPick("0,", "7"), "7,");
    EXPECT_EQ(FilterAfterPick("12,", "34"), "12,34,");
    EXPECT_EQ(FilterAfterPick("12,,34,", "5"), "1234,5,");   // doubled commas vanish when read
    EXPECT_TRUE(messages.shown.empty());

    EXPECT_EQ(FilterAfterPick("12,34,", "12"), "12,34,");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, duplicateMessage("12"));
    // "1" is not "12": whole items are compared.
    EXPECT_EQ(FilterAfterPick("12,", "1"), "12,1,");

    EXPECT_EQ(FilterAfterBackspace("12,"), "0");
    EXPECT_EQ(FilterAfterBackspace("12"), "0");
    EXPECT_EQ(FilterAfterBackspace(""), "0");
    EXPECT_EQ(FilterAfterBackspace("12,34,"), "12,");
    EXPECT_EQ(FilterAfterBackspace("12,34"), "12,");

    EXPECT_EQ(ReadFilterText(" 12,,34, "), "1234,");
}

TEST(LoginUser, AdministratorSeesEveryUserInEightColumnsAndFiltersByRole)
{
    FreshDatabases(true);
    LoginAs(2);
    ScriptedMessages messages;
    frmLoginUser screen;
    auto *grid = Child<QTableWidget>(&screen, "MSFlexGrid1");
    ASSERT_EQ(grid->columnCount(), 8);
    EXPECT_EQ(grid->horizontalHeaderItem(1)->text(), "   Příjmení");
    EXPECT_EQ(grid->horizontalHeaderItem(7)->text(), "     Filtr GRANTu");
    ASSERT_EQ(grid->rowCount(), 6);
    // Ordered by role: the user (1) first, the super user (6) last.
    EXPECT_EQ(cell(grid, 0, 0), "1.");
    EXPECT_EQ(cell(grid, 0, 1), "Nováková");
    EXPECT_EQ(cell(grid, 0, 6), "Uživatel");
    EXPECT_EQ(cell(grid, 4, 6), "Správce objednávek");
    EXPECT_EQ(cell(grid, 5, 0), "6.");
    EXPECT_EQ(cell(grid, 5, 6), "Super uživatel");
    EXPECT_EQ(cell(grid, 1, 4), "svoboda");
    EXPECT_EQ(cell(grid, 1, 5), "admin2");

    auto *typ = Child<QComboBox>(&screen, "cmbTyp0");
    EXPECT_EQ(typ->count(), 6);
    EXPECT_EQ(typ->itemText(5), "Správce objedávek");
    for (const char *locked : {"txtUser", "txtJmeno", "txtPrijmeni", "txtFiltr"})
        EXPECT_TRUE(Child<QLineEdit>(&screen, locked)->isEnabled()) << locked;
    EXPECT_TRUE(Child<QPushButton>(&screen, "cmdAdd")->isEnabled());

    // The order manager row picks position 5 of the list through the grid's spelling.
    grid->setCurrentCell(4, 1);
    EXPECT_EQ(typ->currentIndex(), 5);
    EXPECT_EQ(Child<QLineEdit>(&screen, "txtUser")->text(), "prochazkova");
    SaveScreen(&screen, "frmLoginUser_role2");

    Child<QComboBox>(&screen, "cmbTyp1")->setCurrentIndex(4);   // "Lékárna"
    ASSERT_EQ(grid->rowCount(), 1);
    EXPECT_EQ(cell(grid, 0, 1), "Dvořáková");
    Child<QComboBox>(&screen, "cmbTyp1")->setCurrentIndex(0);
    EXPECT_EQ(grid->rowCount(), 6);
    EXPECT_TRUE(messages.shown.empty());
}

TEST(LoginUser, NonAdministratorSeesOwnRowAndChangesOnlyTitleAndPassword)
{
    FreshDatabases(true);
    LoginAs(1);
    ScriptedMessages messages;
    frmLoginUser screen;
    auto *grid = Child<QTableWidget>(&screen, "MSFlexGrid1");
    EXPECT_EQ(grid->columnCount(), 3);
    ASSERT_EQ(grid->rowCount(), 1);
    EXPECT_EQ(cell(grid, 0, 1), "Nováková");
    for (const char *locked : {"txtUser", "txtJmeno", "txtPrijmeni", "txtFiltr"})
        EXPECT_FALSE(Child<QLineEdit>(&screen, locked)->isEnabled()) << locked;
    for (const char *locked : {"cmbTyp0", "cmbTyp1", "Combo2"})
        EXPECT_FALSE(Child<QComboBox>(&screen, locked)->isEnabled()) << locked;
    EXPECT_FALSE(Child<QPushButton>(&screen, "cmdAdd")->isEnabled());
    EXPECT_FALSE(Child<QPushButton>(&screen, "cmdDelete")->isEnabled());
    SaveScreen(&screen, "frmLoginUser_role1");

    Child<QLineEdit>(&screen, "txtTitul")->setText("Mgr.");
    Child<QLineEdit>(&screen, "txtHeslo")->setText("nove-heslo ");
    Child<QPushButton>(&screen, "cmdSave")->click();
    EXPECT_TRUE(messages.saw("Akce byla úspěšně provedena..."));
    EXPECT_EQ(Column(SysDbName, "SELECT CONCAT_WS('|', titul, password, typ, filtr_grant, login) FROM sys_users "
                                "WHERE prijmeni = 'Nováková'"),
              QStringList{"Mgr.|nove-heslo|1|0|novakova"});
}

TEST(LoginUser, AddSaveAndDeleteAskTheirQuestions)
{
    FreshDatabases(true);
    LoginAs(2);
    ScriptedMessages messages;
    frmLoginUser screen;
    auto *grid = Child<QTableWidget>(&screen, "MSFlexGrid1");

    messages.answers = {AnswerCancel};
    Child<QPushButton>(&screen, "cmdAdd")->click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "Opravdu si přejete přídat nového uživatele? ");
    EXPECT_EQ(messages.shown[0].title, "Informace");
    EXPECT_EQ(messages.shown[0].style, MsgQuestionOkCancel);
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM sys_users"), QStringList{"6"});

    messages.answers = {AnswerOk};
    Child<QPushButton>(&screen, "cmdAdd")->click();
    EXPECT_EQ(grid->rowCount(), 7);
    const QString key = Child<QLineEdit>(&screen, "txtIDPac")->text();
    EXPECT_EQ(Column(SysDbName, "SELECT _key FROM sys_users WHERE jmeno = ''"), QStringList{key});

    Child<QLineEdit>(&screen, "txtPrijmeni")->setText("O'Brien'; DROP TABLE sys_users; --");
    Child<QLineEdit>(&screen, "txtJmeno")->setText("  Eva ");
    Child<QLineEdit>(&screen, "txtUser")->setText("obrien");
    Child<QLineEdit>(&screen, "txtHeslo")->setText("x' OR '1'='1");
    Child<QComboBox>(&screen, "cmbTyp0")->setCurrentIndex(3);   // "Lékárna"
    Child<QLineEdit>(&screen, "txtFiltr")->setText("12,,34,");
    Child<QPushButton>(&screen, "cmdSave")->click();
    EXPECT_EQ(messages.lastText(), "Akce byla úspěšně provedena...");
    EXPECT_EQ(Column(SysDbName, "SELECT CONCAT_WS('|', prijmeni, jmeno, login, password, typ, filtr_grant) "
                                "FROM sys_users WHERE _key = " + key),
              QStringList{"O'Brien'; DROP TABLE sys_users; --|Eva|obrien|x' OR '1'='1|3|1234,"});
    // The grid row changed in place.
    const int row = grid->currentRow();
    ASSERT_GE(row, 0);
    EXPECT_EQ(cell(grid, row, 2), "Eva");
    EXPECT_EQ(cell(grid, row, 6), "Lékárna");

    messages.answers = {AnswerCancel};
    Child<QPushButton>(&screen, "cmdDelete")->click();
    EXPECT_EQ(messages.lastText(), "Opravdu si přejete smazat uživatele? ");
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM sys_users"), QStringList{"7"});
    messages.answers = {AnswerOk};
    Child<QPushButton>(&screen, "cmdDelete")->click();
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM sys_users WHERE _key = " + key), QStringList{"0"});
    EXPECT_EQ(grid->rowCount(), 6);

    // Nothing selected after the delete: a warning, no question.
    const size_t before = messages.shown.size();
    Child<QPushButton>(&screen, "cmdDelete")->click();
    ASSERT_EQ(messages.shown.size(), before + 1);
    EXPECT_EQ(messages.shown.back().style, MsgWarning);
}

TEST(LoginUser, RoleZeroShowsAsSuperUserAndForeignCharacterIsRefused)
{
    FreshDatabases(true);
    Exec(SysDbName, "UPDATE sys_users SET typ = 0 WHERE login = 'cerny'");
    LoginAs(2);
    ScriptedMessages messages;
    frmLoginUser screen;
    auto *grid = Child<QTableWidget>(&screen, "MSFlexGrid1");
    ASSERT_EQ(cell(grid, 0, 1), "Černý");   // role 0 sorts first
    EXPECT_EQ(cell(grid, 0, 6), "Super uživatel");
    grid->setCurrentCell(0, 1);
    EXPECT_EQ(Child<QComboBox>(&screen, "cmbTyp0")->currentIndex(), 2);

    Child<QLineEdit>(&screen, "txtTitul")->setText("Ωmega");
    Child<QPushButton>(&screen, "cmdSave")->click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].style, MsgCritical);
    EXPECT_TRUE(messages.shown[0].text.contains("titul")) << messages.shown[0].text.toStdString();
    EXPECT_EQ(Column(SysDbName, "SELECT typ FROM sys_users WHERE login = 'cerny'"), QStringList{"0"});
}

TEST(LoginUser, GrantPicksAndBackspaceInTheFilterField)
{
    FreshDatabases(true);
    LoginAs(2);
    ScriptedMessages messages;
    frmLoginUser screen;
    auto *combo = Child<QComboBox>(&screen, "Combo2");
    auto *filter = Child<QLineEdit>(&screen, "txtFiltr");
    const QStringList grants = Column(GrantyDbName, "SELECT _GRANT FROM GrantyPlan");
    ASSERT_EQ(combo->count(), grants.size());
    ASSERT_GE(combo->count(), 2) << "the demo grants are needed";

    Child<QTableWidget>(&screen, "MSFlexGrid1")->setCurrentCell(0, 1);
    ASSERT_EQ(filter->text(), "0");
    emit combo->activated(0);
    EXPECT_EQ(filter->text(), combo->itemText(0) + ",");
    emit combo->activated(1);
    EXPECT_EQ(filter->text(), combo->itemText(0) + "," + combo->itemText(1) + ",");
    emit combo->activated(0);
    EXPECT_EQ(messages.lastText(), duplicateMessage(combo->itemText(0)));

    QTest::keyClick(filter, Qt::Key_Backspace);
    EXPECT_EQ(filter->text(), combo->itemText(0) + ",");
    QTest::keyClick(filter, Qt::Key_Backspace);
    EXPECT_EQ(filter->text(), "0");
}

TEST(LoginUser, MissingGrantTableLeavesThePickerEmptyWithoutMessage)
{
    FreshDatabases(true);
    Exec(GrantyDbName, "DROP TABLE GrantyPlan");
    LoginAs(2);
    ScriptedMessages messages;
    frmLoginUser screen;
    EXPECT_EQ(Child<QComboBox>(&screen, "Combo2")->count(), 0);
    EXPECT_EQ(Child<QTableWidget>(&screen, "MSFlexGrid1")->rowCount(), 6);
    EXPECT_TRUE(messages.shown.empty());
}
