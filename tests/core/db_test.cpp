#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "support/testenv.h"

#include <QFile>
#include <QSqlQuery>

#include <gtest/gtest.h>

#include <utility>

using namespace testenv;

namespace {
// An option file of the given text in the session's scratch folder.
QString optionFile(const QString &name, const QByteArray &text)
{
    const QString path = Session().TempDir + "/" + name;
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
    f.write(text);
    return path;
}
} // namespace

TEST(ConnStr, WorkstationAndDeveloperFormsAndTheirKeywords)
{
    // The workstation form keeps its keyword order.
    EXPECT_EQ(BuildConnStr("fondarix_sys", "PC-17", "10.1.2.3", "3307"),
              "ODBC;DATABASE=fondarix_sys;DSN=10.1.2.3;PORT=3307;SERVER=10.1.2.3;UID=;CHARSET=cp1250;PWD=;OPTION=165932");
    // The developer form only for the exact name.
    EXPECT_EQ(BuildConnStr("fondarix_granty", "DEVBOX-01", "10.1.2.3", "3307"),
              "ODBC;DATABASE=fondarix_granty;CHARSET=cp1250;DSN=127.0.0.1;PORT=3307;SERVER=127.0.0.1;UID=root;OPTION=165932");
    // The test is case-sensitive: a lower-case name is an ordinary workstation.
    EXPECT_TRUE(BuildConnStr("x", "devbox-01", "10.1.2.3", "3307").contains("SERVER=10.1.2.3"));

    const auto keys = ParseConnStr(BuildConnStr("fondarix_sys", "PC", "127.0.0.1", "3307"));
    for (const auto &[key, value] : {std::pair{"DATABASE", "fondarix_sys"}, {"PORT", "3307"}, {"SERVER", "127.0.0.1"},
                                     {"CHARSET", "cp1250"}, {"OPTION", "165932"}})
        EXPECT_EQ(keys.value(key), value) << key;
}

TEST(ConnStr, PortFromFileAndCentreEmptyBeforeLogin)
{
    FreshDatabases(false);
    WriteIni("[nastaveni]\r\nserver_port=3307\r\n");
    EXPECT_TRUE(ConnStrSys().contains(";PORT=3307;"));
    EXPECT_TRUE(ConnStrCentre().startsWith("ODBC;DATABASE=;"));
    WriteIni("");
    EXPECT_TRUE(ConnStrGranty().contains(";PORT=3306;"));
}

// An option file without the group is named by the connection test.
TEST(OptionFile, MissingFileIsNamed)
{
    QString error;
    EXPECT_FALSE(ReadOptionFile(Session().TempDir + "/chybi.cnf", &error).has_value());
    EXPECT_TRUE(error.contains("chybi.cnf")) << error.toStdString();
}

TEST(Connection, ServerDownOrOptionFileWithoutGroupIsFatalWithoutHanging)
{
    FreshDatabases(false);
    // A port where nothing listens: refused at once, the two texts in one box, then the end.
    WriteIni("[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=1\r\n");
    {
        ScriptedMessages messages;
        ProcessEndRecorder end;
        DbConnection conn(ConnStrSys());
        EXPECT_FALSE(OpenOrFatal(conn));
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.shown[0].style, MsgCritical);
        EXPECT_TRUE(messages.shown[0].text.contains(QString::fromUtf8(TextNotConnected)));
        EXPECT_TRUE(messages.shown[0].text.endsWith(QString::fromUtf8(TextWillEnd)));
        EXPECT_TRUE(end.ended);
    }
    // An option file without the group is named before the fatal message.
    FreshDatabases(false);
    const QByteArray saved = qgetenv("FONDARIX_MYCNF");
    const QString path = optionFile("bez-skupiny.cnf", "[client]\nuser=fondarix\n");
    qputenv("FONDARIX_MYCNF", path.toLocal8Bit());
    ScriptedMessages messages;
    ProcessEndRecorder end;
    DbConnection conn(ConnStrSys());
    EXPECT_FALSE(OpenOrFatal(conn));
    qputenv("FONDARIX_MYCNF", saved);
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_TRUE(messages.shown[0].text.contains(path));
    EXPECT_TRUE(messages.shown[0].text.contains("[fondarix]"));
    EXPECT_TRUE(messages.shown[1].text.startsWith(QString::fromUtf8(TextNotConnected)));
    EXPECT_TRUE(end.ended);
}

TEST(Connection, CzechTextRoundTripsAndForeignCharacterIsNamed)
{
    FreshDatabases(false);
    DbConnection sys(ConnStrSys());
    ASSERT_TRUE(sys.isOpen());
    ASSERT_TRUE(sys.exec("INSERT INTO sys_prikazce (Jmeno) VALUES (?)", {QString("Příliš žluťoučký kůň")}));
    EXPECT_EQ(Column(SysDbName, "SELECT Jmeno FROM sys_prikazce"), QStringList{"Příliš žluťoučký kůň"});
    // Stored as cp1250 bytes on the server.
    EXPECT_EQ(Column(SysDbName, "SELECT HEX(CONVERT(Jmeno USING binary)) FROM sys_prikazce").value(0).left(4), "50F8");
    // Named by the column without a caption, by the caption (letter case of the column aside)
    // when the screen gives one; a text too long is refused, not cut.
    EXPECT_FALSE(sys.exec("INSERT INTO sys_prikazce (Jmeno) VALUES (?)", {QString("Ωmega")}));
    EXPECT_TRUE(sys.errorText().contains("„Jmeno“")) << sys.errorText().toStdString();
    sys.setCaptions({{"JMENO", CaptionOf(" Jméno  příkazce: ")}});
    EXPECT_FALSE(sys.exec("INSERT INTO sys_prikazce (Jmeno) VALUES (?)", {QString("Ωmega")}));
    EXPECT_TRUE(sys.errorText().startsWith("Pole „Jméno příkazce“ obsahuje znak")) << sys.errorText().toStdString();
    EXPECT_FALSE(sys.exec("INSERT INTO sys_prikazce (Jmeno) VALUES (?)", {QString(5000, 'x')}));
    EXPECT_TRUE(sys.errorText().startsWith("Text v poli „Jméno příkazce“ je příliš dlouhý")) << sys.errorText().toStdString();
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM sys_prikazce"), QStringList{"1"});
}

TEST(Connection, TransactionRollsBackUnlessCommitted)
{
    FreshDatabases(false);
    DbConnection sys(ConnStrSys());
    {
        Transaction t(sys);
        ASSERT_TRUE(t.active());
        sys.exec("INSERT INTO sys_prikazce (Jmeno) VALUES ('a')");
    }
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM sys_prikazce"), QStringList{"0"});
    {
        Transaction t(sys);
        sys.exec("INSERT INTO sys_prikazce (Jmeno) VALUES ('b')");
        EXPECT_TRUE(t.commit());
    }
    EXPECT_EQ(Column(SysDbName, "SELECT Jmeno FROM sys_prikazce"), QStringList{"b"});
}

TEST(SqlScript, SplitsOutsideQuotesAndDropsComments)
{
    const QStringList s = SplitSqlScript("-- note; here\nINSERT INTO t VALUES ('a;b');\nSELECT `x;y` FROM t;\n\n");
    ASSERT_EQ(s.size(), 2);
    EXPECT_EQ(s[0], "INSERT INTO t VALUES ('a;b')");
    EXPECT_EQ(s[1], "SELECT `x;y` FROM t");
}
