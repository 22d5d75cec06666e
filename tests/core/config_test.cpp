#include "core/config.h"
#include "core/db.h"
#include "core/session.h"
#include "support/testenv.h"

#include <QDate>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <utility>

using namespace testenv;

namespace {
QString today() { return QDate::currentDate().toString("dd.MM.yyyy"); }
} // namespace

TEST(ClipIniValue, TrimsAndCutsAtFirstControlCharacter)
{
    // Only blanks are trimmed: a leading tab ends the value at once.
    const std::pair<QString, const char *> cases[] = {
        {"  abc  ", "abc"}, {"abc\tdef", "abc"}, {QString("abc") + QChar(0) + "   ", "abc"},
        {QString("a") + QChar(30) + "b", "a"}, {"", ""}, {"\tabc", ""}, {"abc \tdef", "abc "},
    };
    for (const auto &[value, clipped] : cases)
        EXPECT_EQ(ClipIniValue(value), clipped) << value.toStdString();
}

TEST(ProfileFile, GettersClipTrimIgnoreCaseCutToWidthAndDefault)
{
    FreshDatabases(false);
    WriteIni("[NASTAVENI]\r\nSERVER_PORT=3307 \tkomentář\r\n");
    EXPECT_EQ(GetServerPort(), "3307");
    SaveSetting("FORMULAR", "EMAIL", " store@ukv.cz \tstarý");
    EXPECT_EQ(GetEmail(), "store@ukv.cz");
    // A stored value that clips to nothing still hides the file.
    WriteIni("[FORMULAR]\r\nLINKA=123\r\n");
    SaveSetting("FORMULAR", "LINKA", "\t456");
    EXPECT_EQ(GetLinka(), "");

    // Sections and keys without regard to case; the width cuts the value.
    WriteIni("[nastaveni]\r\nserver_ip = 10.20.30.40 \r\n[FORMULAR]\r\nVYRIZUJE=\"Jana Nováková\"\r\n");
    EXPECT_EQ(GetServerIP(), "10.20.30.40");
    EXPECT_EQ(GetVyrizuje(), "Jana Nováková");
    // Width 10: at most nine characters are taken.
    WriteIni("[NASTAVENI]\r\nSERVER_PORT=123456789012\r\n");
    EXPECT_EQ(GetServerPort(), "123456789");

    QFile::remove(Session().IniPath);
    EXPECT_EQ(GetServerPort(), "3306");
    EXPECT_EQ(GetServerIP(), DefaultServerIP);
    EXPECT_EQ(GetTypFormulara(), "1");
    EXPECT_EQ(GetSelectTypBottom(), "0");
    EXPECT_EQ(GetLastDir(), "Hodnota nenalezena");
    EXPECT_EQ(GetDatumOd(), today());
    EXPECT_EQ(GetDatumDo(), today());
    EXPECT_EQ(GetPoziceTab("Datum"), "");
    EXPECT_DOUBLE_EQ(GetStudioFrmTop(), 0.0);
}

TEST(ProfileFile, WriterKeepsOtherLinesAndAddsSections)
{
    FreshDatabases(false);
    WriteIni("; poznámka\r\n[NASTAVENI]\r\nSERVER_PORT=3307\r\n\r\n[FORMULAR]\r\nTELEFON=123\r\n");
    ASSERT_TRUE(SetPoziceTab("Ucet MD", "5"));
    ASSERT_TRUE(WriteProfileString("nastaveni", "server_ip", "10.0.0.9"));
    ASSERT_TRUE(WriteProfileString("FORMULAR", "TELEFON", "456"));
    EXPECT_EQ(GetServerPort(), "3307");
    EXPECT_EQ(GetServerIP(), "10.0.0.9");
    EXPECT_EQ(GetTelefon(), "456");
    EXPECT_EQ(GetPoziceTab("ucet md"), "5");
    QFile f(Session().IniPath);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QString text = QString::fromLatin1(f.readAll());
    EXPECT_TRUE(text.startsWith("; pozn"));
    EXPECT_EQ(text.count("[NASTAVENI]"), 1);
    EXPECT_TRUE(text.contains("[DEFINE POZICE TAB]\r\nUcet MD=5\r\n"));
}

TEST(SettingsStore, StoreHidesFileForEverButNotWithANonNumberPosition)
{
    FreshDatabases(false);
    WriteIni("[FORMULAR]\r\nEMAIL=soubor@ukv.cz\r\nTypFormulara=2\r\n");
    EXPECT_EQ(GetEmail(), "soubor@ukv.cz");
    SaveSetting("FORMULAR", "EMAIL", "store@ukv.cz");
    EXPECT_EQ(GetEmail(), "store@ukv.cz");
    EXPECT_EQ(GetTypFormulara(), "2");
    SaveFormSetting("NASTAVENI", "UctyNotControl", " 501 , 502 ");
    EXPECT_EQ(GetUctyNotControl(), "501,502");
    // A position that is no number in the store asks the file.
    WriteIni("[NASTAVENI]\r\nSTUDIO_FRM_TOP=120.5\r\n");
    SaveSetting("NASTAVENI", "STUDIO_FRM_TOP", "abc");
    EXPECT_DOUBLE_EQ(GetStudioFrmTop(), 120.5);
    SetStudioFrmTop(300.25f);
    EXPECT_DOUBLE_EQ(GetStudioFrmTop(), 300.25);
}

TEST(ComputedDefaults, ZadankySaveFromSectionFondarixAndFoldersWithoutTrailingSeparator)
{
    FreshDatabases(false);
    // A hand-written ZADANKY_SAVE key in the file is not found: the file is asked under
    // section "Fondarix", key "NASTAVENI".
    WriteIni("[NASTAVENI]\r\nZADANKY_SAVE=/elsewhere\r\n");
    const QString computed = GetZadankySave();
    EXPECT_TRUE(computed.endsWith("/Objednavky Fondarix/"));
    EXPECT_TRUE(QDir(computed).exists());
    WriteIni("[Fondarix]\r\nNASTAVENI=/srv/objednavky\r\n");
    EXPECT_EQ(GetZadankySave(), "/srv/objednavky");
    SaveSetting("NASTAVENI", "ZADANKY_SAVE", "/home/ja/obj");
    EXPECT_EQ(GetZadankySave(), "/home/ja/obj");
    // DirExe and LastDir lose their trailing separator.
    EXPECT_FALSE(GetDirExe().endsWith('/'));
    SaveSetting("NASTAVENI", "Dir k EXE", "/opt/fondarix/");
    EXPECT_EQ(GetDirExe(), "/opt/fondarix");
    WriteIni("[NASTAVENI]\r\nLast Dir=C:\\Exporty\\\r\n");
    EXPECT_EQ(GetLastDir(), "C:\\Exporty");
}

TEST(DateSetters, BadDateRefusedWithMessage)
{
    FreshDatabases(false);
    ScriptedMessages messages;
    EXPECT_FALSE(SaveDatumOd("31.02.2024", DateTarget::Store));
    EXPECT_FALSE(SaveDatumDo("abc", DateTarget::File));
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(messages.shown[0].text, "Špatný formát datumu.");
    EXPECT_EQ(GetDatumOd(), today());
    for (const char *bad : {"1.3.-5", "1.3.+24", "1. 3.2024", "1.3.", "..", ""})
        EXPECT_FALSE(IsDateText(bad)) << bad;
    EXPECT_TRUE(IsDateText(" 01.03.24 "));
    EXPECT_TRUE(SaveDatumOd("1.3.2024", DateTarget::Store));
    EXPECT_EQ(GetDatumOd(), "1.3.2024");
    EXPECT_TRUE(SaveDatumDo("31.12.2024", DateTarget::File));
    EXPECT_EQ(ReadProfileString("FORMULAR", "Datum do", "", 50), "31.12.2024");
    EXPECT_EQ(GetSetting("FORMULAR", "Datum do"), "");
}

TEST(PrintParams, FirstReadInsertsRowFromFileThenFindsItAndAUserWithoutRowIsNotStored)
{
    FreshDatabases(true);
    LoginAs(2);
    WriteIni(QString("[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=%1\r\n[FORMULAR]\r\nSize=3\r\n").arg(ServerPort()));
    QString empty;
    EXPECT_EQ(GetSetPrintSize(empty), "3");
    EXPECT_EQ(Column(SysDbName, "SELECT param_1 FROM sys_users_print WHERE login='svoboda'"), QStringList{"3"});
    WriteIni(QString("[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=%1\r\n[FORMULAR]\r\nSize=5\r\n").arg(ServerPort()));
    EXPECT_EQ(GetSetPrintSize(empty), "3");   // the row is found now
    // A NULL column takes the file's value and stores it.
    EXPECT_EQ(GetSetPrintRows(empty), "24");
    EXPECT_EQ(Column(SysDbName, "SELECT param_2 FROM sys_users_print WHERE login='svoboda'"), QStringList{"24"});
    QString value = "30";
    EXPECT_EQ(GetSetPrintRows(value), "30");
    EXPECT_EQ(Column(SysDbName, "SELECT param_2 FROM sys_users_print WHERE login='svoboda'"), QStringList{"30"});

    // No row yet: the insert of the margin takes the size's key and default "4".
    LoginAs(1);
    WriteIni(QString("[NASTAVENI]\r\nSERVER_IP=127.0.0.1\r\nSERVER_PORT=%1\r\n").arg(ServerPort()));
    EXPECT_EQ(GetSetPrintMargin(empty), "4");
    EXPECT_EQ(Column(SysDbName, "SELECT param_4 FROM sys_users_print WHERE login='novakova'"), QStringList{"4"});
    // A user without a row is silently not stored.
    Session().UserLogin = "nikdo";
    QString v = "2";
    EXPECT_EQ(GetSetToolBar(v), "2");
    EXPECT_EQ(Column(SysDbName, "SELECT COUNT(*) FROM sys_users_print WHERE login='nikdo'"), QStringList{"0"});
}
