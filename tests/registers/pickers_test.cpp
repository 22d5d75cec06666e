#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"
#include "core/session.h"
#include "core/text.h"
#include "registers/findall.h"
#include "registers/frmKontakty.h"
#include "registers/frmListDir.h"
#include "support/testenv.h"

#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Sys = QString::fromLatin1(SysDbName);
const QString Centre = QStringLiteral("fondarix_ofk");
void Click(QWidget *screen, const char *name) { Child<QPushButton>(screen, name)->click(); }
} // namespace

TEST(frmKontakty, PasswordsShownOpenStoredScrambled)
{
    FreshDatabases(true);
    LoginAs(4);   // cerny, with two contacts in the demo
    Exec(Sys, "INSERT INTO sys_kontakty (Email, Heslo, Param1, Param2, `User`) VALUES "
              "('stare@ukv-lhotka.cz', 'otevrene', '', '', 'cerny')");
    ScriptedMessages messages;
    frmKontakty screen;
    ASSERT_TRUE(screen.Load());
    EXPECT_EQ(screen.windowTitle(), "Kontakty");
    auto *grid = Child<QTableWidget>(&screen, "DataGrid1");
    ASSERT_EQ(grid->rowCount(), 3);
    EXPECT_EQ(grid->item(0, 0)->text(), "objednavky@ukv-lhotka.cz");
    EXPECT_EQ(grid->item(0, 1)->text(), "objednavky");
    EXPECT_EQ(grid->item(1, 1)->text(), "Lab2026!");
    EXPECT_EQ(grid->item(2, 1)->text(), "otevrene");   // no "~": shown as it stands

    messages.inputs = {QString("nova@ukv-lhotka.cz")};
    Click(&screen, "cmdAdd");
    EXPECT_EQ(messages.prompts.back(), "Zadejte novy E-mail:");
    ASSERT_EQ(grid->rowCount(), 4);
    grid->item(3, 1)->setText("Heslo 'x' ~ č");
    grid->item(1, 2)->setText("smtp2.ukv-lhotka.cz");
    SaveScreen(&screen, "frmKontakty");

    // Delete asks first and removes the chosen row.
    grid->setCurrentCell(2, 0);
    messages.answers = {AnswerOk};
    Click(&screen, "cmdDelete");
    EXPECT_EQ(messages.shown.back().text, "Chcete opravdu zrušit položku ?");
    EXPECT_EQ(messages.shown.back().title, "Zrušit záznam ?");
    ASSERT_EQ(grid->rowCount(), 3);

    Click(&screen, "cmdClose");
    const QStringList stored = Column(Sys, "SELECT CONCAT(Email, '|', Heslo, '|', Param1) FROM sys_kontakty "
                                           "WHERE `User`='cerny' ORDER BY id");
    ASSERT_EQ(stored.size(), 3);
    EXPECT_EQ(stored[0], "objednavky@ukv-lhotka.cz|" + ScrambleText("objednavky") + "|smtp.ukv-lhotka.cz");
    EXPECT_EQ(stored[1], "laborator@ukv-lhotka.cz|" + ScrambleText("Lab2026!") + "|smtp2.ukv-lhotka.cz");
    EXPECT_FALSE(stored[2].contains("Heslo"));
    EXPECT_EQ(UnscrambleText(stored[2].section('|', 1, 1)), "Heslo 'x' ~ č");
    EXPECT_EQ(Column(Sys, "SELECT COUNT(*) FROM sys_kontakty WHERE `User`='dvorakova'").value(0), "1");   // others untouched

    frmKontakty again;
    ASSERT_TRUE(again.Load());
    EXPECT_EQ(Child<QTableWidget>(&again, "DataGrid1")->item(2, 1)->text(), "Heslo 'x' ~ č");
}

TEST(frmFindAll, QuotesDroppedStarsWidenMissingTablesPassedOver)
{
    FreshDatabases(true);
    LoginAs(4);
    const struct { const char *typed, *pattern; } patterns[] = {
        {"Mikro", "Mikro%"}, {"*zkum", "%zkum%"}, {"O'Brien", "OBrien%"}, {"\"x\"", "x%"}, {"a%b", "a%b%"},
    };
    for (const auto &p : patterns)
        EXPECT_EQ(FindAllPattern(QString::fromUtf8(p.typed)), QString::fromUtf8(p.pattern)) << p.typed;

    DbConnection centre(ConnStrCentre());
    Exec(Centre, "INSERT INTO typ (Typ, File) VALUES ('Zrušený', 'Skl1'), ('Podvržený', 'x; DROP TABLE typ')");
    Exec(Centre, "INSERT INTO Skl1622026094003 (Nazev, Katal, ZKATALOG) VALUES ('Zkumavky do stojanu', 'Z-1', ' '), "
                 "('Štítky', 'ZK-9', ' '), ('Cokoli', 'C', 'Zkatalog-1')");
    QStringList found;
    for (const FindAllHit &hit : FindInAllSklady(centre, "Zk"))
        found << hit.nazev + "|" + hit.skladName;
    // Warehouses in the order of the list, names in order within each; by name, number or label.
    EXPECT_EQ(found, (QStringList{"Cokoli|Kancelář", "Štítky|Kancelář", "Zkumavky do stojanu|Kancelář"}));
    // A row found by two columns is one hit; the cap keeps the first names over all three columns.
    Exec(Centre, "INSERT INTO Skl1622026094003 (Nazev, Katal, ZKATALOG) VALUES ('Zkouška', 'ZK-2', 'Zk-3')");
    for (const auto &[cap, names] : {std::pair{1000, QStringList{"Cokoli", "Štítky", "Zkouška", "Zkumavky do stojanu"}},
                                     std::pair{2, QStringList{"Cokoli", "Štítky"}}}) {
        found.clear();
        for (const FindAllHit &hit : FindInAllSklady(centre, "Zk", cap))
            found << hit.nazev;
        EXPECT_EQ(found, names) << cap;
    }
    EXPECT_EQ(FindInAllSklady(centre, "*zkumavky").size(), 7);   // five plastics, two office items
    EXPECT_EQ(FindInAllSklady(centre, "Mikro").size(), 3);
    EXPECT_EQ(FindInAllSklady(centre, "Mikro", 2).size(), 2);   // the cap of one warehouse
    EXPECT_TRUE(FindInAllSklady(centre, "' OR 1=1 --").isEmpty());
    EXPECT_EQ(Column(Centre, "SELECT COUNT(*) FROM typ").value(0), "5");
}

TEST(frmListDir, FolderForAnImportOrIntoTheSettings)
{
    FreshDatabases(false);
    QTemporaryDir dir;
    QDir(dir.path()).mkpath("data/import");
    const QString folder = QDir::toNativeSeparators(dir.path() + "/data/import");

    frmListDir picker;
    picker.ImportLoad = true;
    picker.Load(dir.path() + "/data/import");
    EXPECT_EQ(picker.windowTitle(), "Vybrat adresář...");
    EXPECT_EQ(Child<QLineEdit>(&picker, "TextDirList")->text(), folder);
    SaveScreen(&picker, "frmListDir");
    Click(&picker, "cmdOk");
    EXPECT_EQ(picker.DirList, folder);
    EXPECT_EQ(picker.DataPathImp, folder);
    EXPECT_TRUE(GetSetting("NASTAVENI", "Dir Lokal").isEmpty());

    Session().DirExe = "/opt/fondarix";
    frmListDir settings;
    settings.FileList = "fondarix.mdb";
    settings.Load(dir.path());
    Child<QLineEdit>(&settings, "TextDirList")->setText(folder);
    Click(&settings, "cmdOk");
    EXPECT_EQ(GetSetting("NASTAVENI", "Dir Lokal"), folder);
    EXPECT_EQ(GetSetting("NASTAVENI", "Databaze"), "fondarix.mdb");
    EXPECT_EQ(GetSetting("NASTAVENI", "Dir k EXE"), "/opt/fondarix");
    EXPECT_TRUE(settings.DataPathImp.isEmpty());

    // A folder that is not there is no choice; Zavřít leaves without one.
    frmListDir none;
    none.Load("/nonexistent/folder");
    EXPECT_EQ(Child<QLineEdit>(&none, "TextDirList")->text(), QDir::toNativeSeparators(QDir::homePath()));
    Child<QLineEdit>(&none, "TextDirList")->setText("/nonexistent/folder");
    Click(&none, "cmdOk");
    EXPECT_TRUE(none.DirList.isEmpty());
    Click(&none, "cmdCancel");
    EXPECT_EQ(none.result(), QDialog::Rejected);
}
