// The order record: numbering, the two state derivations on the edge rows, the archive's
// filter texts and their rows, pages, and the writes of the entry screen and the archive.

#include "core/db.h"
#include "core/session.h"
#include "orders/objfooter.h"
#include "orders/objlist.h"
#include "orders/objrecord.h"
#include "orders/objsave.h"
#include "support/testenv.h"
#include "orders/seed.h"

#include <QSqlRecord>

#include <gtest/gtest.h>

using namespace testenv;

using namespace seed;

namespace {
// The cis_obj of the rows a filter keeps, in number order.
QStringList Numbers(const QList<ObjListRow> &rows)
{
    QStringList numbers;
    for (const ObjListRow &r : rows)
        numbers << r.cisObj;
    return numbers;
}

QStringList Kept(const ObjFilter &f)
{
    DbConnection c(ConnStrFor(Centre));
    QSqlQuery q = c.query();
    const QString where = f.sql.isEmpty() ? QString() : QStringLiteral(" WHERE ") + f.sql;
    EXPECT_TRUE(c.exec(q, QStringLiteral("SELECT cis_obj FROM archobj") + where + QStringLiteral(" ORDER BY cis_obj"), f.values))
        << c.errorText().toStdString();
    QStringList kept;
    while (q.next())
        kept << q.value(0).toString();
    return kept;
}

} // namespace

TEST(ObjNumbering, CounterFromTheLastNumberInTextOrder)
{
    const struct {
        QStringList present;
        short next;
    } cases[] = {
        {{}, 1},
        {{"0012/01012011", "0013/05062012"}, 14},          // the year does not restart the counter
        {{"0013/05062012", "0012/01012011"}, 14},
        {{"9998/01012020", "9999/02012020"}, 10000},
        {{"9999/02012020", "10000/03012020"}, 10000},       // "10000/" sorts first: the counter sticks
        {{"xyz/03012020"}, 1},                              // unreadable counts as 0
        {{"0001/01012020", "99999/02012020"}, 1},           // beyond 16 bits counts as 0 too
    };
    for (const auto &c : cases)
        EXPECT_EQ(NextObjCounterFrom(c.present), c.next) << c.present.join(' ').toStdString();

    const QDate day(2026, 3, 7);
    EXPECT_EQ(MakeObjCislo(1, day), "0001/07032026");
    EXPECT_EQ(MakeObjCislo(14, day), "0014/07032026");
    EXPECT_EQ(MakeObjCislo(10000, day), "10000/07032026");

    EmptyCentre();
    DbConnection c(ConnStrFor(Centre));
    short counter = 0;
    ASSERT_TRUE(NextObjCounter(c, &counter));
    EXPECT_EQ(counter, 1);
    for (const char *n : {"0012/01012011", "0013/05062012", "0009/01012013"})
        Insert({{"cis_obj", n}});
    ASSERT_TRUE(NextObjCounter(c, &counter));
    EXPECT_EQ(counter, 14);   // (the reservation on opening is checked in the entry screen's flow)
}

TEST(ObjRecordLine, FortyOneFieldsAndTheTildeOfAnEnglishLetter)
{
    EmptyCentre();
    Insert({{"cis_obj", "0001/01012024"}, {"Dat_obj", "2024-01-01 10:00:00"}, {"Grant", "1201, 1202"},
            {"Firma", "Firma 'A'"}, {"Typ", "4"}, {"LineRec1", "Adresát"}, {"LineRec9", "Tomáš Černý"},
            {"Poc9", "267 161 111~cerny@ukv-lhotka.cz"}, {"LineRec10", "2345"}, {"poc10", "1 250,00"},
            {"paticka", "2"}, {"file_paticka", "<p>S pozdravem</p>"}, {"Castka", "NULL"}});
    DbConnection c(ConnStrFor(Centre));
    QSqlQuery q = c.query();
    ASSERT_TRUE(c.exec(q, "SELECT * FROM archobj"));
    ASSERT_TRUE(q.next());
    const QString line = ObjRecordLine(q.record());
    EXPECT_EQ(ObjRecordColumns().size(), 41);
    EXPECT_EQ(line.count('~'), 42);   // 41 fields, one more from Poc9
    const QStringList p = line.split('~');
    const struct {
        int index;
        const char *value;
    } pieces[] = {{0, "0001/01012024"}, {1, "2024-01-01 10:00:00"}, {2, "1201, 1202"}, {3, "Firma 'A'"},
                  {13, ""}, {14, "4"}, {19, "Adresát"}, {35, "Tomáš Černý"}, {36, "267 161 111"},
                  {37, "cerny@ukv-lhotka.cz"}, {38, "2345"}, {39, "1 250,00"}, {40, "2"}, {41, "<p>S pozdravem</p>"}};
    for (const auto &e : pieces)
        EXPECT_EQ(p.value(e.index), QString::fromUtf8(e.value)) << e.index;
}

TEST(ObjState, ColourAndListFilterOnTheEdgeRows)
{
    // Each row: Castka (NULL allowed), Dat_vyriz, objWF, Cis_global, objZauct; the colour and
    // the status entries whose filter keeps the row.
    const struct {
        const char *number, *castka, *datVyriz, *objWF, *cisGlobal, *objZauct;
        QColor colour;
        QList<int> statuses;
    } rows[] = {
        {"0001/01", "NULL", "NULL", "NULL", "NULL", "NULL", ObjColours::White, {}},
        {"0002/01", "NULL", "", " ", "", " ", ObjColours::White, {4}},            // a new row: blank objWF and objZauct
        {"0003/01", "", "", "05.01.2024", "", "", ObjColours::Yellow, {1}},
        {"0004/01", "0,00##", "", "05.01.2024", "X1", "", ObjColours::Yellow, {1}},
        {"0005/01", "0,00##", "12.01.2024", "05.01.2024", "X1", "", ObjColours::Green, {2}},
        {"0006/01", "0,00", "12.01.2024", "", "", "", ObjColours::Green, {2}},
        {"0007/01", "1 250,00#0,00#", "12.01.2024", "05.01.2024", "X1", "", ObjColours::Red, {3}},
        {"0008/01", "1 250,00#0,00#", "12.01.2024", "", "X1", "", ObjColours::Red, {}},   // no objWF: not in the filter
        {"0009/01", "1 250,00#1 250,00#", "12.01.2024", "05.01.2024", "X1", "", ObjColours::Grey, {3}},
        {"0010/01", "1 250,00#1 250,00#", "", "", "X1", "30.01.2024", ObjColours::Grey, {4}},
        {"0011/01", "1 250,00#1 250,00#", "", "", "", "30.01.2024", ObjColours::White, {4}},  // booked without number
        {"0012/01", "0#500,00#", "", "", "X1", "", ObjColours::Grey, {}},
        {"0013/01", "0,00##", "", " ", "", "", ObjColours::White, {1}},               // blank objWF: listed, not coloured
        // Texts the server leaves to the program: an overflowing price, tabs, letters, a second
        // sign, a non-breaking space.
        {"0014/01", "1e400#0,00#", "12.01.2024", "", "", "", ObjColours::Green, {}},
        {"0015/01", "\t0,00#\t", "\t", "05.01.2024", "", "", ObjColours::Yellow, {3}},
        {"0016/01", "abc5#", "", "05.01.2024", "", "", ObjColours::Yellow, {}},
        {"0017/01", "0,00-5#7", "", "", "X1", "", ObjColours::Grey, {}},
        {"0018/01", "NULL", "", "\u00a0", "", "", ObjColours::White, {}},
        // A price too long for the list's image of the amounts: the row is read whole.
        {"0019/01", "12,50                                                               #0,00#", "12.01.2024", "05.01.2024",
         "", "", ObjColours::Red, {3}},
    };
    const auto code = [](const QColor &c) {
        return QList<QColor>{ObjColours::White, ObjColours::Yellow, ObjColours::Green, ObjColours::Red, ObjColours::Grey}.indexOf(c);
    };
    EmptyCentre();
    for (const auto &r : rows)
        Insert({{"cis_obj", r.number}, {"Castka", r.castka}, {"Dat_vyriz", r.datVyriz}, {"objWF", r.objWF},
                {"Cis_global", r.cisGlobal}, {"objZauct", r.objZauct}, {"Dat_obj", "2024-01-05 10:00:00"},
                {"Grant", QStringList{"0007/01", "0010/01", "0015/01"}.contains(r.number) ? "1201, 1202" : "1201"}});
    // Every row is of 2024, so the year keeps them all and the alternatives alone decide.
    DbConnection c(ConnStrFor(Centre));
    for (int status = 1; status <= 4; ++status) {
        QStringList expected, coloured, both;
        for (const auto &r : rows) {
            if (r.statuses.contains(status))
                expected << r.number;
            if (code(r.colour) == status)
                coloured << r.number;
            if (r.statuses.contains(status) && code(r.colour) == status)
                both << r.number;
        }
        EXPECT_EQ(Kept(FilterObj(status, ObjStatusEntries()[status], "2024", false)), expected) << status;
        EXPECT_TRUE(FilterObj(status, ObjStatusEntries()[status], "", false).sql.isEmpty())
            << "without a year a status is left to the colours";
        // The status list: the colour the server works out, or the program where it leaves it,
        // of the rows the filter keeps. Its sums, read off the index, are those of its rows read
        // whole, rows on two grants left out.
        for (const char *year : {"", "2024"}) {
            const ObjFilter filter = FilterObj(status, ObjStatusEntries()[status], year, false);
            QList<ObjListRow> list;
            ObjListKeys keys;
            ASSERT_TRUE(ObjListRows(c, filter, status, &list));
            ASSERT_TRUE(ObjListKeysOf(c, filter, status, &keys));
            EXPECT_EQ(Numbers(list), *year ? both : coloured) << status << year;
            ObjSums whole;
            for (const ObjListRow &row : list)
                whole.add(row.castka, row.grant.contains(','));
            EXPECT_EQ(keys.sums.price, whole.price) << status << year;
            EXPECT_EQ(keys.sums.booked, whole.booked) << status << year;
        }
    }
    // The red rows: 0008 and the long price of 0019; 0007 is on two grants.
    ObjListKeys red;
    ASSERT_TRUE(ObjListKeysOf(c, ObjFilter{}, 3, &red));
    EXPECT_EQ(red.sums.price, 1262.5);
    // The server's colour is the program's wherever it decides; plain texts it always decides.
    const QStringList stav = Column(Centre, "SELECT stav FROM archobj ORDER BY cis_obj");
    for (int i = 0; i < int(std::size(rows)); ++i)
        EXPECT_EQ(stav.value(i).toInt(), i < 13 ? code(rows[i].colour) : stav.value(i).toInt() == 9 ? 9 : code(rows[i].colour))
            << rows[i].number;
    for (const auto &r : rows) {
        ObjStateFields s;
        s.castkaNull = QLatin1String(r.castka) == "NULL";
        s.castka = s.castkaNull ? QString() : r.castka;
        s.datVyriz = QLatin1String(r.datVyriz) == "NULL" ? QString() : r.datVyriz;
        s.objWF = QLatin1String(r.objWF) == "NULL" ? QString() : r.objWF;
        s.cisGlobal = QLatin1String(r.cisGlobal) == "NULL" ? QString() : r.cisGlobal;
        EXPECT_EQ(ObjColour(s), r.colour) << r.number;
        // Without an official number only the first column shows the state.
        EXPECT_EQ(ObjCellColour(s, 3, false), s.cisGlobal.isEmpty() ? ObjColours::White : r.colour) << r.number;
        EXPECT_EQ(ObjCellColour(s, 0, true), ObjColours::Aqua);
    }
}

TEST(ObjFilter, TextsAsBuiltAndTheYearBindingToTheFirstAlternativeOnly)
{
    const QString v = ObjStatusFilterText(1);
    const struct {
        int status;
        const char *text, *year;
        bool pharmacy;
        QString expected;
    } cases[] = {
        {0, "- Vše -", "", false, ""},
        {0, "- Vše -", "2011", false, "dat_obj >= 2011-01-01 AND dat_obj <= 2011-12-31"},
        {1, "Výřizování", "2011", false, "dat_obj >= 2011-01-01 AND dat_obj <= 2011-12-31 AND " + v},
        {1, "Výřizování", "2011", true, "coml=1 AND dat_obj >= 2011-01-01 AND dat_obj <= 2011-12-31 AND " + v},
        {1, "Výřizování", "", true, ""},     // no year: empty, and no pharmacy prefix either
        {4, "Zaúčtována", "2012", false, "dat_obj >= 2012-01-01 AND dat_obj <= 2012-12-31 AND (objZauct <> '' )"},
        {5, "1201", "", false, "Grant like '%1201%'"},
        {5, "1201", "2011", true, "coml=1 AND dat_obj >= 2011-01-01 AND dat_obj <= 2011-12-31 AND Grant like '%1201%'"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(FilterObj(c.status, QString::fromUtf8(c.text), c.year, c.pharmacy).text, c.expected) << c.status << c.year;

    // The seeded centre: orders in processing of 2011 by the first alternative, of any year by
    // the other two; 2012 by the first alternative stays out.
    EmptyCentre();
    Insert({{"cis_obj", "0001/03012011"}, {"Dat_obj", "2011-01-03 09:00:00"}, {"Castka", "0,00"}, {"objWF", "04.01.2011"}, {"Dat_vyriz", ""}});
    Insert({{"cis_obj", "0002/03012012"}, {"Dat_obj", "2012-01-03 09:00:00"}, {"Castka", "0,00"}, {"objWF", "04.01.2012"}, {"Dat_vyriz", ""}});
    Insert({{"cis_obj", "0003/03012012"}, {"Dat_obj", "2012-01-03 09:00:00"}, {"Castka", "0,00##"}, {"objWF", "04.01.2012"}, {"Dat_vyriz", ""}});
    Insert({{"cis_obj", "0004/03012013"}, {"Dat_obj", "2013-01-03 09:00:00"}, {"Castka", ""}, {"objWF", "04.01.2013"}, {"Dat_vyriz", ""}, {"coml", "1"}});
    Insert({{"cis_obj", "0005/03012011"}, {"Dat_obj", "2011-01-03 09:00:00"}, {"Castka", "0,00"}, {"objWF", "04.01.2011"}, {"Dat_vyriz", ""}, {"coml", "1"}});
    EXPECT_EQ(Kept(FilterObj(1, "Výřizování", "2011", false)),
              QStringList({"0001/03012011", "0003/03012012", "0004/03012013", "0005/03012011"}));
    // The pharmacy's prefix binds to the first alternative as well.
    EXPECT_EQ(Kept(FilterObj(1, "Výřizování", "2011", true)),
              QStringList({"0003/03012012", "0004/03012013", "0005/03012011"}));
    // The batch verb lists what the archive's status list shows: those of the four in processing.
    const CliRun listed = Cli({"orders", "list", "--status", "Výřizování", "--year", "2011", "--login", "cerny"});
    EXPECT_EQ(listed.code, 0) << listed.err.toStdString();
    QStringList numbersAndStates;
    for (const QString &line : listed.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        numbersAndStates << line.section(QLatin1Char('\t'), 1, 1) + QLatin1Char(' ') + line.section(QLatin1Char('\t'), 8, 8);
    EXPECT_EQ(numbersAndStates, QStringList({"0001/03012011 stáv výřizování", "0003/03012012 stáv výřizování",
                                             "0004/03012013 stáv výřizování", "0005/03012011 stáv výřizování"}));
    Exec(Centre, "UPDATE archobj SET `Grant`='1201, 1202' WHERE cis_obj LIKE '0003%'");
    Exec(Centre, "UPDATE archobj SET `Grant`='1202' WHERE cis_obj LIKE '0002%'");
    EXPECT_EQ(Kept(FilterObj(5, "1202", "", false)), QStringList({"0002/03012012", "0003/03012012"}));
    EXPECT_EQ(Kept(FilterObj(5, "1202", "2012", false)), QStringList({"0002/03012012", "0003/03012012"}));
    EXPECT_EQ(Kept(FilterObj(5, "1202", "2011", false)), QStringList());
    // A grant text with a quote is a bound value, not a broken statement.
    EXPECT_EQ(Kept(FilterObj(5, "12'02", "", false)), QStringList());
}

TEST(ObjPages, TwentyEightRowsAPageCountedFromTheEnd)
{
    const struct {
        int rows, page, pages, start;
    } cases[] = {
        {0, 0, 0, 0}, {1, 0, 1, 0}, {28, 0, 1, 0}, {28, 1, 1, 0}, {29, 0, 2, 1}, {29, 2, 2, 1}, {29, 1, 2, 0},
        {57, 0, 3, 29}, {57, 2, 3, 1}, {57, 1, 3, 0}, {57, 9, 3, 29},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(ObjPageCount(c.rows), c.pages) << c.rows;
        EXPECT_EQ(ObjPageStart(c.rows, c.page), c.start) << c.rows << " page " << c.page;
    }
    // Each page read from the nearer end is that slice of the whole list, repeated numbers
    // kept in the order of their keys.
    EmptyCentre();
    for (int i = 1; i <= 57; ++i)
        Insert({{"cis_obj", QStringLiteral("%1/05012025").arg(i % 20, 4, 10, QLatin1Char('0'))}, {"Dat_obj", "2025-01-05"}});
    DbConnection c(ConnStrFor(Centre));
    QList<ObjListRow> all, page;
    ASSERT_TRUE(ObjListRows(c, ObjFilter{}, 0, &all));
    ASSERT_EQ(all.size(), 57);
    for (int p = 1; p <= 3; ++p) {
        const int start = ObjPageStart(57, p);
        ASSERT_TRUE(ObjListPage(c, ObjFilter{}, 57, start, ObjPageRows, &page));
        EXPECT_EQ(Numbers(page), Numbers(all.mid(start, ObjPageRows))) << p;
        EXPECT_EQ(page.first().nom, all[start].nom) << p;
    }
}

TEST(ObjSave, EntryArchiveAndPharmacyWritesInTheDatabase)
{
    EmptyCentre();
    LoginAs(4);
    DbConnection c(ConnStrFor(Centre));
    ASSERT_TRUE(ReserveObj(c, "0001/22112026"));
    ObjEntry e;
    e.cisObj = "0001/22112026";
    e.typ = KindSklad;
    e.datum = "5.1.2026";
    e.stredisko = "510";
    e.firm = {"Lach-Ner's", "Katalog `B`", "Tovární 157", "277 11", "Neratovice", "315", "316"};
    e.grant = "1201, 1202";
    e.hrazeno = "GRANTU";
    e.pozn = QString(40, 'n') + "'~#<script>";
    e.rows[0] = {"Ethanol", "2", "l", "245,50"};
    e.rows[1] = {"Špičky", "", "bal", "189,00"};
    e.rows[2] = {"Rukavice", "3", "bal", "abc"};
    e.cena = RecalkObj(e.rows);
    e.vyrizuje = "Tomáš Černý";
    e.telefon = "267";
    e.linka = "2345";
    EXPECT_EQ(e.cena, "491,00");   // a row without quantity counts nothing, letters in a price read as 0
    const QDateTime now(QDate(2026, 11, 22), QTime(14, 5, 6));
    ASSERT_EQ(SaveObj(c, e, {"1", "<p>F\"1\"</p>"}, now), ObjWrite::Saved);
    EXPECT_EQ(Row("Firma, Pobocka, Dat_obj, Autor, Prikazce, Typ, objWF, objZauct, coml, zkatalog, poc10, paticka, file_paticka", e.cisObj),
              "Lach-Ner's|Katalog `B`|2026-01-05 14:05:06|510|#GRANTU#nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn|1| | |0| |491,00|1|<p>F\"1\"</p>");
    EXPECT_EQ(Row("Text1, LineRec1, Poc1, LineRec2, Poc2, LineRec8, `Grant`, `Text`", e.cisObj),
              e.pozn + "|Ethanol#245,50#l|2|Špičky#189,00#bal||##|1201, 1202|");
    EXPECT_EQ(Column(Centre, "SELECT CONCAT(id_typ,'|',`text`) FROM objedn_footer").join(';'), "1|<p>F\"1\"</p>");

    // Without a footer type the footer recorded is a blank. (The bodies of kinds 2 and 5 are
    // checked in the entry screen's flows.)
    ASSERT_TRUE(ReserveObj(c, "0002/22112026"));
    e.cisObj = "0002/22112026";
    e.typ = KindText;
    ASSERT_EQ(SaveObj(c, e, {"0", ""}, now), ObjWrite::Saved);
    EXPECT_EQ(Column(Centre, "SELECT `text` FROM objedn_footer WHERE cis_obj='0002/22112026'").value(0), "&nbsp;");
    // (A row deleted meanwhile, and the letter's save, are checked in the entry screens' flows.)

    // The archive's save removes quotes; the pharmacy's touches three columns only.
    const int nom = Column(Centre, "SELECT nom FROM archobj WHERE cis_obj='0001/22112026'").value(0).toInt();
    ObjArchiveDetail d;
    d.typ = KindSklad;
    d.firm = {"O'Neil", "", "", "", "", "", ""};
    d.lineRec[0] = "Ethanol#245,50#l";
    d.poc[0] = "2";
    d.castka = "1 250,00#0,00#Svoboda";
    d.poc10 = "491,00";
    d.grant = "1201";
    d.cisGlobal = "OBJ-'1'";
    d.objWF = "06.01.2026";
    d.text1 = QString(10000, 'x');
    ASSERT_EQ(SaveObjArchive(c, nom, d), ObjWrite::Saved);
    EXPECT_EQ(Row("Firma, Castka, `Grant`, Cis_global, objWF, LENGTH(Text1), Poc2", "0001/22112026"),
              "ONeil|1 250,00#0,00#Svoboda|1201|OBJ-1|06.01.2026|10000|");
    ASSERT_EQ(SaveObjLekarna(c, nom, " 0,00## ", "7.1.2026", "0'8.01.2026"), ObjWrite::Saved);
    EXPECT_EQ(Row("Castka, Dat_vyriz, objWF, Firma", "0001/22112026"), "0,00##|07.01.2026|08.01.2026|ONeil");
    EXPECT_EQ(SaveObjLekarna(c, 99999, "", "", ""), ObjWrite::Missing);
}

// (Copy, delete and the handover are checked in the archive's flow.)
TEST(ObjSave, CopyAndDeleteOfRowsGoneMeanwhileAndTheQuestionsCount)
{
    EmptyCentre();
    const int a = Insert({{"cis_obj", "0001/01"}, {"paticka", "2"}, {"file_html_text", "<p>x</p>"}});
    const int b = Insert({{"cis_obj", "0002/01"}});
    DbConnection c(ConnStrFor(Centre));
    const int copy = CopyObj(c, a, "0002/01");
    EXPECT_EQ(Column(Centre, QStringLiteral("SELECT CONCAT_WS('|', IFNULL(paticka,'null'), file_html_text) FROM archobj WHERE nom=%1").arg(copy)),
              QStringList({"null|<p>x</p>"}));
    EXPECT_EQ(CopyObj(c, 99999, "0009/01"), 0);
    EXPECT_EQ(DeleteObjRows(c, {b, 99999}), 1);
    const struct {
        int count;
        const char *question;
    } questions[] = {{1, "Chcete opravdu smazat 1 položku  objednavky? \r\n\r\n"},
                     {4, "Chcete opravdu smazat 4 položky  objednavky? \r\n\r\n"},
                     {5, "Chcete opravdu smazat 5 položek  objednavky? \r\n\r\n"}};
    for (const auto &q : questions)
        EXPECT_EQ(MultiDeleteQuestion(q.count), QString::fromUtf8(q.question));
}
