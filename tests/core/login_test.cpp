#include "core/frmLogin.h"
#include "core/login.h"
#include "core/msg.h"
#include "core/session.h"
#include "support/testenv.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const char *const WrongLogin = "Mate uvedeno špatné přihlašovací JMÉNO nebo HESLO...";

QString lastLogin(const QString &login)
{
    const QStringList v = Column("fondarix_sys", "SELECT last_login FROM sys_users WHERE login='" + login + "'");
    return v.value(0);
}
} // namespace

TEST(CheckLogin, PastedPasswordLogsInAndWritesTheWorkstation)
{
    FreshDatabases();
    ScriptedMessages messages;
    EXPECT_EQ(CheckLogin("svoboda\n", "admin2\r\n"), LoginResult::Succeeded);
    // Role, original role, login, name, surname, grant filter, centre database, server.
    const SessionRecord &s = Session();
    EXPECT_EQ(QStringList({QString::number(s.UserTyp), QString::number(s.UserTypOrig), s.UserLogin, s.UserJmeno,
                           s.UserPrijmeni, s.UserFiltrGrant, s.MysqlDb, s.IpServer}),
              QStringList({"2", "2", "svoboda", "Petr", "Svoboda", "0", "fondarix_ofk", "127.0.0.1"}));
    EXPECT_TRUE(messages.shown.empty());

    const QStringList row = Column("fondarix_sys", "SELECT CONCAT_WS('|', screen, os, version) FROM sys_users "
                                                   "WHERE login='svoboda'");
    const QStringList parts = row.value(0).split('|');
    ASSERT_EQ(parts.size(), 3);
    EXPECT_TRUE(QRegularExpression("^\\d+x\\d+$").match(parts[0]).hasMatch()) << parts[0].toStdString();
    EXPECT_FALSE(parts[1].isEmpty());
    EXPECT_EQ(parts[2], ProgramVersion());
    // Year, month and day without leading zeros, then the time.
    EXPECT_TRUE(QRegularExpression("^\\d{4}-[1-9]\\d?-[1-9]\\d? \\d{1,2}:\\d{2}:\\d{2}$")
                    .match(lastLogin("svoboda")).hasMatch())
        << lastLogin("svoboda").toStdString();
    // The other users' rows are untouched.
    EXPECT_EQ(lastLogin("novakova"), "<NULL>");
}

TEST(CheckLogin, WrongPairAndSqlTextLogNobodyIn)
{
    FreshDatabases();
    ScriptedMessages messages;
    LoginAs(2);
    const QStringList before = Column("fondarix_sys", "SELECT CONCAT(login, password, typ) FROM sys_users ORDER BY _key");
    const QStringList attempts[] = {
        {"svoboda", "admin3"},
        {"SVOBODA ", "admin2x"},
        {"svoboda", "ADMIN2"},   // passwords are compared as stored
        {"' OR '1'='1", "' OR '1'='1"},
        {"svoboda' -- ", "x"},
        {"x'; UPDATE sys_users SET typ=2; --", "x"},
        {"svoboda", "' OR 1=1 OR password='"},
    };
    for (const QStringList &pair : attempts) {
        EXPECT_EQ(CheckLogin(pair[0], pair[1]), LoginResult::Refused) << pair[0].toStdString();
        EXPECT_EQ(Session().UserTyp, -1);
    }
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(Column("fondarix_sys", "SELECT CONCAT(login, password, typ) FROM sys_users ORDER BY _key"), before);
    EXPECT_EQ(Column("fondarix_sys", "SELECT COUNT(*) FROM sys_users WHERE last_login IS NOT NULL"), QStringList{"0"});
}

TEST(CheckLogin, UserWithoutCentreRowEndsTheProgramAfterLastLogin)
{
    FreshDatabases();
    Exec("fondarix_sys", "UPDATE sys_users SET code_stredisko='999' WHERE login='cerny'");
    ScriptedMessages messages;
    ProcessEndRecorder end;
    EXPECT_EQ(CheckLogin("cerny", "tvurce4"), LoginResult::Failed);
    EXPECT_TRUE(end.ended);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].style, MsgCritical);
    EXPECT_TRUE(messages.shown[0].text.startsWith(QString::fromUtf8(TextNotConnected)));
    EXPECT_NE(lastLogin("cerny"), "<NULL>");
    EXPECT_EQ(Session().UserTyp, -1);
}

TEST(frmLogin, WrongPasswordKeepsTheDialogAndRightOneCloses)
{
    FreshDatabases();
    ScriptedMessages messages;
    frmLogin dialog;
    dialog.show();
    auto *login = dialog.findChild<QLineEdit *>("txtLogin");
    auto *password = dialog.findChild<QLineEdit *>("txtHeslo");
    auto *cmdLogin = dialog.findChild<QPushButton *>("cmdLogin");
    ASSERT_TRUE(login && password && cmdLogin);
    EXPECT_EQ(cmdLogin->text(), "Přihlásit");
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);

    // An empty field takes the path of a wrong password.
    login->setText("svoboda");
    QTest::mouseClick(cmdLogin, Qt::LeftButton);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, QString::fromUtf8(WrongLogin));
    EXPECT_EQ(messages.shown[0].style, MsgCritical);

    password->setText("spatne");
    QTest::mouseClick(cmdLogin, Qt::LeftButton);
    EXPECT_EQ(messages.shown.size(), 2u);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_FALSE(dialog.LoginSucceeded);
    SaveScreen(&dialog, "frmLogin");

    password->setText("  admin2 ");
    QTest::mouseClick(cmdLogin, Qt::LeftButton);
    EXPECT_TRUE(dialog.LoginSucceeded);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(Session().UserTyp, 2);
}

TEST(frmLogin, OnlyZavritLeavesWithoutLoginAndItEndsTheProgram)
{
    FreshDatabases();
    frmLogin dialog;
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    auto *login = dialog.findChild<QLineEdit *>("txtLogin");
    auto *password = dialog.findChild<QLineEdit *>("txtHeslo");
    login->setFocus();
    login->setText("dvorakova");
    password->setFocus();
    EXPECT_EQ(Session().LoginText, "dvorakova");

    // Escape and the close button do not lead past the login.
    QTest::keyClick(&dialog, Qt::Key_Escape);
    dialog.close();
    EXPECT_TRUE(dialog.isVisible());

    ProcessEndRecorder end;
    QTest::mouseClick(dialog.findChild<QPushButton *>("Command2"), Qt::LeftButton);
    EXPECT_TRUE(end.ended);
    EXPECT_FALSE(dialog.LoginSucceeded);
    EXPECT_FALSE(dialog.isVisible());
}
