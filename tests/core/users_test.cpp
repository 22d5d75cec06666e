#include "core/db.h"
#include "core/frmLoginUser.h"
#include "core/msg.h"
#include "core/session.h"
#include "core/users.h"
#include "support/testenv.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <tuple>
#include <utility>

using namespace testenv;

namespace {
QString duplicateMessage(const QString &value)
{
    return "Zadána hodnota  " + value + "  v seznamu již existuje, opakujte prosím volbu.";
}

// The users screen as the demo user of a role opens it on fresh demo data, after what a
// test changes before the login; the messages are recorded.
struct UsersScreen {
    explicit UsersScreen(int role, const std::function<void()> &before = {})
        : ready((FreshDatabases(true), before ? before() : void(), LoginAs(role), true)) {}
    bool ready;
    ScriptedMessages messages;
    frmLoginUser screen;
    QTableWidget *grid = Child<QTableWidget>(&screen, "MSFlexGrid1");

    QString cell(int row, int column) const
    {
        const QTableWidgetItem *item = grid->item(row, column);
        return item ? item->text() : QString();
    }
    QLineEdit *edit(const char *name) { return Child<QLineEdit>(&screen, name); }
    QComboBox *combo(const char *name) { return Child<QComboBox>(&screen, name); }
    QPushButton *button(const char *name) { return Child<QPushButton>(&screen, name); }
};
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
    // (filter, picked grant, filter after, refused): doubled commas vanish when read; "1"
    // is not "12": whole items are compared.
    const std::tuple<const char *, const char *, const char *, bool> picks[] = {
        {"0", "12", "12,", false},          {"", "12", "12,", false},   {"0,", "7", "7,", false},
        {"12,", "34", "12,34,", false},     {"12,,34,", "5", "1234,5,", false},
        {"12,34,", "12", "12,34,", true},   {"12,", "1", "12,1,", false},
    };
    for (const auto &[filter, grant, after, refused] : picks) {
        const size_t before = messages.shown.size();
        EXPECT_EQ(FilterAfterPick(filter, grant), after) << filter << " + " << grant;
        ASSERT_EQ(messages.shown.size(), before + (refused ? 1 : 0)) << filter << " + " << grant;
        if (refused)
            EXPECT_EQ(messages.shown.back().text, duplicateMessage(grant));
    }

    const std::pair<const char *, const char *> backspaces[] = {
        {"12,", "0"}, {"12", "0"}, {"", "0"}, {"12,34,", "12,"}, {"12,34", "12,"},
    };
    for (const auto &[filter, after] : backspaces)
        EXPECT_EQ(FilterAfterBackspace(filter), after) << filter;

    EXPECT_EQ(ReadFilterText(" 12,,34, "), "1234,");
}

TEST(LoginUser, AdministratorSeesEveryUserInEightColumnsAndFiltersByRole)
{
    UsersScreen u(2);
    ASSERT_EQ(u.grid->columnCount(), 8);
    EXPECT_EQ(u.grid->horizontalHeaderItem(1)->text(), "   Příjmení");
    EXPECT_EQ(u.grid->horizontalHeaderItem(7)->text(), "     Filtr GRANTu");
    ASSERT_EQ(u.grid->rowCount(), 6);
    // Ordered by role: the user (1) first, the super user (6) last.
    const std::tuple<int, int, const char *> cells[] = {
        {0, 0, "1."}, {0, 1, "Nováková"}, {0, 6, "Uživatel"}, {4, 6, "Správce objednávek"},
        {5, 0, "6."}, {5, 6, "Super uživatel"}, {1, 4, "svoboda"}, {1, 5, "admin2"},
    };
    for (const auto &[row, column, text] : cells)
        EXPECT_EQ(u.cell(row, column), text) << row << "," << column;

    auto *typ = u.combo("cmbTyp0");
    EXPECT_EQ(typ->count(), 6);
    EXPECT_EQ(typ->itemText(5), "Správce objedávek");
    for (const char *open : {"txtUser", "txtJmeno", "txtPrijmeni", "txtFiltr"})
        EXPECT_TRUE(u.edit(open)->isEnabled()) << open;
    EXPECT_TRUE(u.button("cmdAdd")->isEnabled());

    // The order manager row picks position 5 of the list through the grid's spelling.
    u.grid->setCurrentCell(4, 1);
    EXPECT_EQ(typ->currentIndex(), 5);
    EXPECT_EQ(u.edit("txtUser")->text(), "prochazkova");
    SaveScreen(&u.screen, "frmLoginUser_role2");

    // Grants picked into the filter field; Backspace takes the last one off.
    auto *combo = u.combo("Combo2");
    auto *filter = u.edit("txtFiltr");
    ASSERT_EQ(combo->count(), Column(GrantyDbName, "SELECT _GRANT FROM GrantyPlan").size());
    u.grid->setCurrentCell(0, 1);
    ASSERT_EQ(filter->text(), "0");
    emit combo->activated(0);
    emit combo->activated(1);
    EXPECT_EQ(filter->text(), combo->itemText(0) + "," + combo->itemText(1) + ",");
    QTest::keyClick(filter, Qt::Key_Backspace);
    EXPECT_EQ(filter->text(), combo->itemText(0) + ",");

    u.combo("cmbTyp1")->setCurrentIndex(4);   // "Lékárna"
    ASSERT_EQ(u.grid->rowCount(), 1);
    EXPECT_EQ(u.cell(0, 1), "Dvořáková");
    u.combo("cmbTyp1")->setCurrentIndex(0);
    EXPECT_EQ(u.grid->rowCount(), 6);
    EXPECT_TRUE(u.messages.shown.empty());
}

TEST(LoginUser, NonAdministratorSeesOwnRowAndChangesOnlyTitleAndPassword)
{
    UsersScreen u(1);
    EXPECT_EQ(u.grid->columnCount(), 3);
    ASSERT_EQ(u.grid->rowCount(), 1);
    EXPECT_EQ(u.cell(0, 1), "Nováková");
    for (const char *locked : {"txtUser", "txtJmeno", "txtPrijmeni", "txtFiltr"})
        EXPECT_FALSE(u.edit(locked)->isEnabled()) << locked;
    for (const char *locked : {"cmbTyp0", "cmbTyp1", "Combo2"})
        EXPECT_FALSE(u.combo(locked)->isEnabled()) << locked;
    for (const char *locked : {"cmdAdd", "cmdDelete"})
        EXPECT_FALSE(u.button(locked)->isEnabled()) << locked;
    SaveScreen(&u.screen, "frmLoginUser_role1");

    u.edit("txtTitul")->setText("Mgr.");
    u.edit("txtHeslo")->setText("nove-heslo ");
    u.button("cmdSave")->click();
    EXPECT_TRUE(u.messages.saw("Akce byla úspěšně provedena..."));
    EXPECT_EQ(Column(SysDbName, "SELECT CONCAT_WS('|', titul, password, typ, filtr_grant, login) FROM sys_users "
                                "WHERE prijmeni = 'Nováková'"),
              QStringList{"Mgr.|nove-heslo|1|0|novakova"});
}

TEST(LoginUser, RoleZeroForeignCharacterAndAddSaveDeleteWithTheirQuestions)
{
    UsersScreen u(2, [] { Exec(SysDbName, "UPDATE sys_users SET typ = 0 WHERE login = 'cerny'"); });
    ScriptedMessages &messages = u.messages;
    // Role 0 sorts first, shows as the super user and picks the super user in the list.
    ASSERT_EQ(u.cell(0, 1), "Černý");
    EXPECT_EQ(u.cell(0, 6), "Super uživatel");
    u.grid->setCurrentCell(0, 1);
    EXPECT_EQ(u.combo("cmbTyp0")->currentIndex(), 2);
    u.edit("txtTitul")->setText("Ωmega");
    u.button("cmdSave")->click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].style, MsgCritical);
    EXPECT_EQ(messages.shown[0].text, "Pole „Titul“ obsahuje znak, který nelze uložit ve znakové sadě Windows-1250; "
                                      "text nebyl uložen.");
    EXPECT_EQ(Column(SysDbName, "SELECT CONCAT_WS('|', typ, titul) FROM sys_users WHERE login = 'cerny'"), QStringList{"0|"});
    messages.shown.clear();
    auto count = [](const QString &where) {
        return Column(SysDbName, "SELECT COUNT(*) FROM sys_users" + where).value(0);
    };

    messages.answers = {AnswerCancel};
    u.button("cmdAdd")->click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "Opravdu si přejete přídat nového uživatele? ");
    EXPECT_EQ(messages.shown[0].title, "Informace");
    EXPECT_EQ(messages.shown[0].style, MsgQuestionOkCancel);
    EXPECT_EQ(count(""), "6");

    messages.answers = {AnswerOk};
    u.button("cmdAdd")->click();
    EXPECT_EQ(u.grid->rowCount(), 7);
    const QString key = u.edit("txtIDPac")->text();
    EXPECT_EQ(Column(SysDbName, "SELECT _key FROM sys_users WHERE jmeno = ''"), QStringList{key});

    const std::pair<const char *, const char *> typed[] = {
        {"txtPrijmeni", "O'Brien'; DROP TABLE sys_users; --"}, {"txtJmeno", "  Eva "},
        {"txtUser", "obrien"}, {"txtHeslo", "x' OR '1'='1"}, {"txtFiltr", "12,,34,"},
    };
    for (const auto &[name, text] : typed)
        u.edit(name)->setText(text);
    u.combo("cmbTyp0")->setCurrentIndex(3);   // "Lékárna"
    u.button("cmdSave")->click();
    EXPECT_EQ(messages.lastText(), "Akce byla úspěšně provedena...");
    EXPECT_EQ(Column(SysDbName, "SELECT CONCAT_WS('|', prijmeni, jmeno, login, password, typ, filtr_grant) "
                                "FROM sys_users WHERE _key = " + key),
              QStringList{"O'Brien'; DROP TABLE sys_users; --|Eva|obrien|x' OR '1'='1|3|1234,"});
    // The grid row changed in place.
    const int row = u.grid->currentRow();
    ASSERT_GE(row, 0);
    EXPECT_EQ(u.cell(row, 2), "Eva");
    EXPECT_EQ(u.cell(row, 6), "Lékárna");

    messages.answers = {AnswerCancel};
    u.button("cmdDelete")->click();
    EXPECT_EQ(messages.lastText(), "Opravdu si přejete smazat uživatele? ");
    EXPECT_EQ(count(""), "7");
    messages.answers = {AnswerOk};
    u.button("cmdDelete")->click();
    EXPECT_EQ(count(" WHERE _key = " + key), "0");
    EXPECT_EQ(u.grid->rowCount(), 6);

    // Nothing selected after the delete: a warning, no question.
    const size_t before = messages.shown.size();
    u.button("cmdDelete")->click();
    ASSERT_EQ(messages.shown.size(), before + 1);
    EXPECT_EQ(messages.shown.back().style, MsgWarning);
}

TEST(LoginUser, MissingGrantTableLeavesThePickerEmptyWithoutMessage)
{
    UsersScreen u(2, [] { Exec(GrantyDbName, "DROP TABLE GrantyPlan"); });
    EXPECT_EQ(u.combo("Combo2")->count(), 0);
    EXPECT_EQ(u.grid->rowCount(), 6);
    EXPECT_TRUE(u.messages.shown.empty());
}
