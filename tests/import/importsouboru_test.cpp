#include "core/config.h"
#include "import/buildtree.h"
#include "import/importsouboru.h"
#include "import/revize.h"
#include "importdata.h"

#include <QFile>
#include <QFileInfo>

using namespace testenv;

namespace {
ImportResult Importuj(short mode, const QString &file, const QString &side = QString(), const QString &from = QString(),
                 const QString &to = QString(), bool replace = false, const QString &extra = QString())
{
    DbConnection conn(ConnStrGranty());
    ImportRequest rq;
    rq.fileName = file;
    rq.mode = mode;
    rq.side = side;
    rq.dateFrom = from;
    rq.dateTo = to;
    rq.replacePeriod = replace;
    rq.extraFilter = extra;
    return ImportSouboru(conn, rq);
}

class Import : public ::testing::Test {
protected:
    void SetUp() override
    {
        FreshDatabases(true);
        LoginAs(2);
        DefineDemoColumns();
    }
};
} // namespace

TEST(ImportPieces, AmountsDatesPrefixesAndDataRecords)
{
    // Amounts reach the reader with points for commas.
    for (const auto &[text, stored] : {std::pair{"100.00", "  100,00"}, {"", "  0,00"}, {"1234.5", "  1 234,50"}, {"1 234.5", "  1 234,50"},
                                       {"-100.00", "  -100,00"}, {"-616.50", "  -616,50"},
                                       {"-1234567.5", "  -1 234 567,50"}, {"-0.00", "  0,00"}, {"1.234.50", "   Find error !   "},
                                       {"abc", "   Find error !   "}, {"1e308", "   Find error !   "},
                                       {"  ", "   Find error !   "}})
        EXPECT_EQ(FormatCastky(QString::fromUtf8(text)), QString::fromUtf8(stored)) << text;

    const QStringList prefixes = PrefixList({"501*,502*", " -602*", "6*,6", ""}, "  ,518100");
    EXPECT_EQ(prefixes, (QStringList{"501", "502", "602", "6", "6", "518100"}));
    for (const auto &[account, fits] : {std::pair{"501100", true}, {"5", true}, {"51", true}, {"518", true}, {"5181009", true},
                                        {"512", false}, {"321000", false}, {"", false}, {"699", true}})
        EXPECT_EQ(UcetVeFiltru(account, prefixes), fits) << account;
    EXPECT_FALSE(UcetVeFiltru("501", {}));

    for (const auto &[grant, kept] : {std::pair{"000", "0"}, {"0012", "12"}, {"", "0"}, {"1201", "1201"}, {"  Error !", "  Error !"}})
        EXPECT_EQ(DropLeadingZeros(grant), kept) << grant;
    for (const auto &[record, data] : {std::pair{"501100\tx", true}, {"Účet\t1", false}, {"\t501", false}, {"A1", true},
                                       {"Celkem", false}, {"", false}})
        EXPECT_EQ(IsDataRecord(QString::fromUtf8(record)), data) << record;
    for (const auto &[text, date] : {std::pair{"1.2.2024", "2024-02-01"}, {"31.12.2009 00:00:00", "2009-12-31"},
                                     {"2024-03-15", "2024-03-15"}, {"31.02.2024", ""}, {"15/03/2024", ""}, {"abc", ""}})
        EXPECT_EQ(ParseImportDate(text).toString(Qt::ISODate), date) << text;
}

TEST_F(Import, AccountListKeepsFilteredAccountsOncePerCentre)
{
    const QString file = WriteExport("ucty.txt", AccountHeadLine,
                                     {"5\tNáklady\t1201", "501100\tMateriál\t1201", "501100\tMateriál znovu\t1201",
                                      "501100\tMateriál\t1202", "501-200\tPomlčka\t000", "321000\tDodavatelé\t1201",
                                      "501.1.1\tNení číslo\t12A", "Celkem účtů\t\t", "512100\tCestovné\t0012"});
    ScriptedMessages messages;
    const ImportResult r = Importuj(ImportUcty, file);
    ASSERT_TRUE(r.ok) << r.failure.toStdString();
    EXPECT_EQ(Rows("SELECT UCET, NAZEV, `GRANT`, CASTKA FROM memImport ORDER BY id"),
              (QStringList{"5|  Náklady|1201|0,00", "501100|  Materiál|1201|0,00", "501100|  Materiál|1202|0,00",
                           "501200|  Pomlčka|0|0,00", "  Error !|  Není číslo|  Error !|0,00",
                           "512100|  Cestovné|12|0,00"}));
    EXPECT_EQ(r.lines, 10);
    EXPECT_EQ(r.dataRecords, 8);
    EXPECT_EQ(r.stored, 6);

    // Without any group the import refuses and stores nothing.
    Exec("fondarix_granty", "DELETE FROM SkupUctu");
    const ImportResult none = Importuj(ImportUcty, file);
    EXPECT_FALSE(none.ok);
    EXPECT_TRUE(messages.saw("Není nadefinovaná žádna skupina účtů. Vytvořte filtry dle skupin účtu a opakujte volbu!"));
}

TEST_F(Import, MovementsBothSidesOneSideErrorsAndPeriodReplacement)
{
    const QString file = WriteExport(
        "pohyby.txt", MovementHeadLine,
        {"05.01.2025\tFA1\tReagencie \"Bio\"\t1 250,50\t501100\t321000\t001201\t\tMateriál\tDodavatelé",
         "06.01.2025 00:00:00\tFA2\tTržba O'Neill'; DROP TABLE x\t300,00\t311000\t602100\t\t1202\tOdběratelé\tTržby",
         "07.01.2025\tFA3\tPřevod\t1.234,50\t512100\t602100\t1201\t\tCestovné\tTržby",
         "08.02.2025\tFA4\tMimo období\t10,00\t501100\t321000\t1201\t\tMateriál\tDodavatelé",
         "31.02.2025\tFA5\tŠpatné datum\t10,00\t501100\t321000\t1201\t\tMateriál\tDodavatelé"});
    ScriptedMessages messages;
    ImportResult r = Importuj(ImportPohyby, file, "MD", "01.01.2025", "31.01.2025");
    ASSERT_TRUE(r.ok) << r.failure.toStdString();
    const QStringList md{
        "05.01.2025|  FA1|Reagencie Bio|  1 250,50|501100|1201|Materiál|MD",
        "06.01.2025|  FA2|Tržba O'Neill'; DROP TABLE x|0,00|602100|1202|Tržby|DAL",
        "07.01.2025|  FA3|Převod|   Find error !   |512100|1201|Cestovné|MD",
        "07.01.2025|  FA3|Převod|0,00|602100|  Error !|Tržby|DAL",
    };
    const char *select = "SELECT Datum, Doklad, `Text`, Castka, Ucet, `Grant`, NazevUctu, `MD/DAL` FROM ImportUctyCastky ORDER BY id";
    EXPECT_EQ(Rows(select), md);
    ASSERT_EQ(r.errors.size(), 2);
    EXPECT_EQ(r.errors[0], QStringLiteral("1.   \t Účet : 512100\tdokl.:   FA3               \t dne : 07.01.2025\tCestovné")
                               + QString(32, ' ') + QStringLiteral("\tČástka :    Find error !   \tMD"));
    EXPECT_TRUE(r.errors[1].startsWith(QStringLiteral("2.   \t Účet : 602100\t")));
    EXPECT_TRUE(r.errors[1].endsWith(QStringLiteral("\tDAL")));
    EXPECT_EQ(r.skipped, 2);   // out of the period, and a day that does not exist

    // The DAL import with replacement deletes only the DAL rows of the period.
    r = Importuj(ImportPohyby, file, "Dal", "01.01.2025", "31.01.2025", true);
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.deleted, 2);
    const QStringList all = Rows(select);
    ASSERT_EQ(all.size(), 6);
    EXPECT_EQ(all.mid(0, 1), md.mid(0, 1));
    EXPECT_EQ(all[1], md[2]);
    EXPECT_EQ(all[3], "06.01.2025|  FA2|Tržba O'Neill'; DROP TABLE x|  300,00|602100|1202|Tržby|DAL");
    EXPECT_EQ(all[2], "05.01.2025|  FA1|Reagencie Bio|0,00|501100|1201|Materiál|MD");

    // Both sides at once (no side chosen) keep their amounts.
    Exec("fondarix_granty", "DELETE FROM ImportUctyCastky");
    ASSERT_TRUE(Importuj(ImportPohyby, file).ok);
    EXPECT_EQ(Rows("SELECT Castka FROM ImportUctyCastky WHERE Doklad = '  FA2'"), QStringList{"  300,00"});

    // Amounts out of the ordinary inside a file: a float beyond any money, and a negative zero.
    Exec("fondarix_granty", "DELETE FROM ImportUctyCastky");
    r = Importuj(ImportPohyby, WriteExport("castky.txt", MovementHeadLine,
                                           {"05.01.2025\tFA8\tVelká\t1e308\t501100\t\t1201\t\tM\t",
                                            "05.01.2025\tFA9\tNula\t-0,00\t501100\t\t1201\t\tM\t"}),
                 "MD");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(Rows("SELECT Doklad, Castka FROM ImportUctyCastky ORDER BY id"),
              (QStringList{"  FA8|   Find error !   ", "  FA9|  0,00"}));
    EXPECT_EQ(r.errors.size(), 1);
}

TEST_F(Import, ARunThatFailsOrIsCancelledLeavesTheTableAsItWas)
{
    Exec("fondarix_granty", "INSERT INTO ImportUctyCastky (Datum, Castka, Ucet, `Grant`, `MD/DAL`) "
                         "VALUES ('10.01.2025', '  5,00', '501100', '1201', 'MD')");
    const QStringList before = Rows("SELECT * FROM ImportUctyCastky");
    QStringList lines;
    for (int i = 0; i < 2000; ++i)
        lines << QStringLiteral("1%1.01.2025\tFA%2\tText\t10,00\t501100\t321000\t1201\t\tMateriál\tDodavatelé").arg(i % 9).arg(i);
    const QString file = WriteExport("velky.txt", MovementHeadLine, lines);

    ScriptedMessages messages;
    DbConnection conn(ConnStrGranty());
    ImportRequest rq{file, ImportPohyby, "01.01.2025", "31.01.2025", QString(), "MD", true, false, {}};
    int calls = 0;
    rq.progress = [&](const ImportProgress &p) { return ++calls < 60 || p.percent < 40; };
    ImportResult r = ImportSouboru(conn, rq);
    EXPECT_TRUE(r.cancelled);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(Rows("SELECT * FROM ImportUctyCastky"), before);
    EXPECT_TRUE(messages.saw("Import byl přerušen, data zůstala beze změny."));

    // A refused row half-way (a text too long for its column) rolls back the whole run.
    lines.insert(1500, QStringLiteral("12.01.2025\t") + QString(300, 'D') + QStringLiteral("\tText\t1,00\t501100\t\t1201\t\tM\tD"));
    rq.fileName = WriteExport("spatny.txt", MovementHeadLine, lines);
    rq.progress = {};
    r = ImportSouboru(conn, rq);
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.failure.startsWith("Import se nezdařil, data zůstala beze změny."));
    EXPECT_EQ(Rows("SELECT * FROM ImportUctyCastky"), before);

    // The server drops the connection half-way, as when it goes away: said in Czech, nothing stored.
    rq.fileName = file;
    QSqlQuery id = conn.query();
    ASSERT_TRUE(conn.exec(id, "SELECT CONNECTION_ID()") && id.next());
    bool dropped = false;
    rq.progress = [&](const ImportProgress &p) {
        if (p.percent > 50 && !dropped) {
            Exec("fondarix_granty", "KILL CONNECTION " + id.value(0).toString());
            dropped = true;
        }
        return true;
    };
    r = ImportSouboru(conn, rq);
    EXPECT_TRUE(dropped);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.failure, "Import se nezdařil, data zůstala beze změny.\nSpojení s databázovým serverem bylo přerušeno; "
                         "rozpracovaná změna nebyla uložena.");
    EXPECT_EQ(Rows("SELECT * FROM ImportUctyCastky"), before);
}

TEST_F(Import, BadFilesGiveAMessageOrNothingAndNeverAHalfImport)
{
    const QByteArray head = ToCp1250(MovementHeadLine);
    const QByteArray row = ToCp1250(QStringLiteral("05.01.2025\tFA1\tText\t10,00\t501100\t\t1201\t\tMateriál\t"));
    struct Case {
        const char *name;
        QByteArray content;
        int stored;
    };
    // Line ends and NUL bytes are the splitter's (its own test); here what reaches the table.
    const Case cases[] = {
        {"empty", QByteArray(), 0},
        {"head only", head + "\r\n", 0},
        {"binary", BinaryBytes(20000), 0},
        {"nul bytes", head + "\r\n" + QByteArray(row).insert(14, '\0') + "\r\n", 1},
        {"long line", head + "\r\n" + row + QByteArray(1000000, 'x') + "\r\n" + row + "\r\n", 2},
        {"short rows", head + "\r\n05.01.2025\tFA1\r\n501100\r\n", 0},
        {"utf-8", QStringLiteral("05.01.2025\tFA1\tŽluťoučký\t10,00\t501100\t\t1201\t\tMateriál\t\r\n").toUtf8(), 1},
    };
    for (const Case &c : cases) {
        Exec("fondarix_granty", "DELETE FROM ImportUctyCastky");
        ScriptedMessages messages;
        const ImportResult r = Importuj(ImportPohyby, WriteSample("bad.txt", c.content), "MD");
        EXPECT_TRUE(r.ok) << c.name << r.failure.toStdString();
        EXPECT_EQ(Rows("SELECT COUNT(*) FROM ImportUctyCastky").value(0).toInt(), c.stored) << c.name;
    }
    // Read as Windows-1250, a UTF-8 text shows as the user will see it.
    EXPECT_EQ(Rows("SELECT `Text` FROM ImportUctyCastky"), QStringList{FromCp1250(QStringLiteral("Žluťoučký").toUtf8())});

    ScriptedMessages messages;
    const ImportResult gone = Importuj(ImportPohyby, Session().TempDir + "/zmizel.txt", "MD");
    EXPECT_FALSE(gone.ok);
    EXPECT_TRUE(messages.saw("Importní soubor neexistuje..."));
    SetPoziceTab("Castka", "x");
    EXPECT_FALSE(Importuj(ImportPohyby, WriteSample("a.txt", row), "MD").ok);
    EXPECT_TRUE(messages.saw("Není definovaná pozice TAB pro import! Nelze pokračovat v importu dat."));
}

TEST_F(Import, RepeatTestByLengthOrByTime)
{
    const QString file = WriteSample("opak.txt", "12345");
    EXPECT_FALSE(IsRepeatedFile(file, RepeatMovements));
    RememberFile(file, RepeatMovements);
    EXPECT_TRUE(IsRepeatedFile(file, RepeatMovements));
    EXPECT_FALSE(IsRepeatedFile(file, RepeatBudget));
    // Another length, the same time; a copy of the same length at another time; neither.
    const QDateTime time = QFileInfo(file).lastModified();
    auto sample = [&](const char *name, const QByteArray &content, int secondsEarlier) {
        const QString path = WriteSample(name, content);
        QFile f(path);
        f.open(QIODevice::Append);
        f.setFileTime(time.addSecs(-secondsEarlier), QFileDevice::FileModificationTime);
        return path;
    };
    EXPECT_TRUE(IsRepeatedFile(sample("opak.txt", "123456", 0), RepeatMovements));
    EXPECT_TRUE(IsRepeatedFile(sample("kopie.txt", "54321", 3600), RepeatMovements));
    EXPECT_FALSE(IsRepeatedFile(sample("jiny.txt", "123", 7200), RepeatMovements));
}

TEST_F(Import, TreeLevelsMissingAccountsSumsAndFirstCastka3)
{
    ScriptedMessages messages;
    DbConnection conn(ConnStrGranty());
    EXPECT_TRUE(BuildTree(conn, true).nothing);
    EXPECT_TRUE(messages.saw("Mate prázdný seznam účtu GRANTu, importujte soubor funkce :\n      - Export seznamu všech účtu. "));
    ASSERT_TRUE(Importuj(ImportUcty, WriteExport("ucty.txt", AccountHeadLine,
                                            {"5\tNáklady\t1201", "50\tSpotřeba\t1201", "501\tMateriál\t1201",
                                             "501100\tLaboratorní\t1201", "6\tVýnosy\t1202"}))
                    .ok);
    ASSERT_TRUE(Importuj(ImportPohyby,
                    WriteExport("pohyby.txt", MovementHeadLine,
                                {"05.01.2025\tFA1\tA\t1 000,50\t501100\t\t1201\t\tLaboratorní\t",
                                 "06.01.2025\tFA2\tB\t200,00\t501200\t\t1201\t\tChemikálie\t",
                                 "07.01.2025\tFA3\tC\t50,25\t311000\t501100\t\t1201\tOdběratelé\tLaboratorní",
                                 "08.01.2025\tFA4\tD\tabc\t502100\t\t1201\t\tEnergie\t"}))
                    .ok);
    // A row in another form than the import writes (one decimal, side in small letters) counts the same.
    ASSERT_TRUE(conn.exec("INSERT INTO ImportUctyCastky (Datum, Castka, Ucet, `Grant`, `MD/DAL`) "
                          "VALUES ('09.01.2025', '7,5', '501100', '1201', 'dal')"));
    const TreeResult r = BuildTree(conn, true);
    ASSERT_TRUE(r.ok) << r.failure.toStdString();
    EXPECT_EQ(r.added, 1);   // 501200; 502100 has no amount
    EXPECT_EQ(Rows("SELECT `Grant`, Ucet, Nazev, Castka, Castka_import, Castka_zustatek, Procent FROM GrantTabl_main ORDER BY id"),
              (QStringList{"1201|5|  Náklady|1 142,75|1 142,75|0,00|0,00", "1202|6|  Výnosy|0,00|0,00|0,00|0,00"}));
    EXPECT_EQ(Rows("SELECT Ucet, Castka FROM Grant_devize_1"), QStringList{"50|1 142,75"});
    EXPECT_EQ(Rows("SELECT Ucet, Castka FROM Grant_devize_2"), QStringList{"501|1 142,75"});
    EXPECT_EQ(Rows("SELECT Ucet, Nazev, Castka FROM Grant_devize_3 ORDER BY id"),
              (QStringList{"501100|  Laboratorní|942,75", "501200|* Chemikálie|200,00"}));
    // The first class row gives Castka3; a grant without one keeps its plan.
    EXPECT_EQ(Rows("SELECT _grant, Castka3 FROM GrantyPlan WHERE _grant IN ('1201', '1202', '1203') ORDER BY _grant"),
              (QStringList{"1201|1 142,75", "1202|0,00", "1203|1 250 000,00"}));
}

TEST_F(Import, RevisionListsAccountsTheListLacksUnlessExcused)
{
    ASSERT_TRUE(Importuj(ImportUcty, WriteExport("ucty.txt", AccountHeadLine, {"501100\tMateriál\t1201"})).ok);
    SaveSetting("NASTAVENI", "UctyNotControl", "321,33*");
    const QString file = WriteExport("pohyby.txt", MovementHeadLine,
                                     {"05.01.2025\tFA1\tA\t100,00\t501100\t321000\t1201\t\tMateriál\tDodavatelé",
                                      "06.01.2025\tFA2\tB\t20,50\t513100\t331000\t1201\t\tReprezentace\tZaměstnanci",
                                      "07.01.2025\tFA3\tC\tabc\t501100\t311000\t1201\t\tMateriál\tOdběratelé",
                                      "07.03.2025\tFA4\tD\t9,00\t999999\t999999\t1201\t\tMimo\tMimo"});
    DbConnection conn(ConnStrGranty());
    const RevizeResult r = KontrolaSouboru(conn, file, "01.01.2025", "31.01.2025");
    ASSERT_TRUE(r.ok);
    ASSERT_EQ(r.lines.size(), 2);
    EXPECT_EQ(r.lines[0], QStringLiteral("1        513100   FA2   \tB              \t06.01.2025    Reprezentace") + QString(28, ' ')
                              + QStringLiteral("\t  20,50MD "));
    EXPECT_TRUE(r.lines[1].endsWith("   Find error !   DAL "));
    EXPECT_DOUBLE_EQ(r.totalMD, 20.5);
    EXPECT_DOUBLE_EQ(r.totalDal, 0);
    EXPECT_TRUE(UcetNotControl("331000", "321,33*"));
    EXPECT_FALSE(UcetNotControl("3", "321"));
}

TEST_F(Import, BudgetSumsOnlyCzkOfTheFilter)
{
    const QString file = WriteExport("rozpocet.txt", AccountHeadLine,
                                     {"672100\tDotace\t001201\t1 000,00\tCZK", "672200\tDotace\t1201\t500,50\tCZK",
                                      "672100\tDotace\t1201\t9 999,00\tEUR", "311000\tOdběratelé\t1201\t7,00\tCZK",
                                      "672100\tDotace\t1202\t2,00\tCZK"});
    DbConnection conn(ConnStrGranty());
    ImportRequest rq;
    rq.fileName = file;
    rq.mode = ImportRozpocet;
    rq.emptyTarget = true;
    ASSERT_TRUE(ImportSouboru(conn, rq).ok);
    EXPECT_EQ(Rows("SELECT Castka, `Grant`, NazevUctu, Ucet, `Text` FROM RozpocetFakt ORDER BY id").value(0),
              "  1 000,00|1201|  Dotace|672100|CZK");
    ASSERT_TRUE(SumPoskytnute(conn, "672*"));
    EXPECT_EQ(Rows("SELECT _grant, Poskytnute FROM GrantyPlan WHERE _grant IN ('1201', '1202', '1203') ORDER BY _grant"),
              (QStringList{"1201|1 500,50", "1202|2,00", "1203|0,00"}));
}
