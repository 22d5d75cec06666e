#include "core/db.h"
#include "grants/drawdown.h"
#include "grants/filter.h"
#include "grants/graphdata.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Granty = QString::fromLatin1(GrantyDbName);

// A small period: grant 100 with every kind of group filter, grant 200 without a budget,
// grant 300 with a budget that is text and no groups, grant 400 with no classes.
void SeedPeriod()
{
    FreshDatabases(false);
    Exec(Granty, "INSERT INTO GrantyPlan (_grant, Castka1, Poskytnute, Castka2, Castka3, stredisko, archiv) VALUES "
                 "('100', '1 000,00', '800,00', 'Dr. O''Neil <b>', '0,00', 'A', '0'), "
                 "('200', '0,00', '0,00', ' ', '0,00', 'A', '0'), "
                 "('300', 'abc', NULL, ' ', '0,00', 'B', NULL), "
                 "('400', '500,00', '500,00', ' ', '0,00', 'B', '1')");
    Exec(Granty, "INSERT INTO ImportUctyCastky (Datum, Castka, Ucet, `Grant`, `MD/DAL`) VALUES "
                 "('01.02.2024', '300,50', '501100', '100', 'MD'), "
                 "('02.02.2024', '50,00', '501', '100', 'DAL'), "
                 "('03.02.2024', '   Find error !   ', '501', '100', 'MD'), "
                 "('04.02.2024', '100,00', '512', '100', 'MD'), "
                 "('05.02.2024', '30,00', '512', '100', 'DAL'), "
                 "('06.02.2024', '10,00', '518', '100', 'MD'), "
                 "('07.02.2024', '5,00', '602', '100', 'DAL'), "
                 "('08.02.2024', '7,00', '6025', '100', 'MD'), "
                 "('09.02.2024', '3,00', '5181', '100', 'MD'), "
                 "('10.02.2024', '40,00', '501', '200', 'MD'), "
                 "('11.02.2024', '1 000,00', '501', '999', 'MD')");
    Exec(Granty, "INSERT INTO SkupUctuGrant (`Grant`, Ucet, Nazev, Castka_plan, Castka_cerpani, Zustatek, Procent) VALUES "
                 "('100', '501*', 'Materiál', '1 000,00', '0,00', '0,00', '0,00'), "
                 "('100', '512*', 'Cestovné', '100,00', '0,00', '0,00', '0,00'), "
                 "('100', '518,-602*', 'Služby', '', '0,00', '0,00', '0,00'), "
                 "('100', '', 'Vše', '0,00', '0,00', '0,00', '0,00'), "
                 "('100', ',', 'Čárka', '0,00', '0,00', '0,00', '0,00'), "
                 "('100', 'abc''x', 'Nesmysl', '0,00', '9,00', '0,00', '0,00'), "
                 "('200', '501*', 'Materiál', '0,00', '0,00', '0,00', '0,00'), "
                 "('200', 'Ucet like ''%''', 'Výchozí', '0,00', '3,00', '0,00', '0,00')");
    Exec(Granty, "INSERT INTO GrantTabl_main (`Grant`, Ucet, Nazev, Castka, Castka_import) VALUES "
                 "('100', '5', 'Náklady', '0,00', '300,00'), ('100', '6', 'Výnosy', '0,00', ''), "
                 "('200', '5', 'Náklady', '0,00', '50,00')");
}

QString Group(const QString &grant, const QString &nazev)
{
    return Column(Granty, "SELECT CONCAT(Castka_cerpani,'|',Zustatek,'|',Procent) FROM SkupUctuGrant WHERE `Grant`='" +
                              grant + "' AND Nazev='" + nazev + "'")
        .value(0);
}
QString Castka3(const QString &grant)
{
    return Column(Granty, "SELECT Castka3 FROM GrantyPlan WHERE _grant='" + grant + "'").value(0);
}

QVector<GrantHead> Heads(DbConnection &conn, const QString &filter, bool withArchived = true)
{
    QVector<GrantHead> heads;
    EXPECT_TRUE(LoadGrantHeads(conn, filter, &heads, withArchived)) << conn.errorText().toStdString();
    return heads;
}
} // namespace

TEST(Drawdown, GroupSumsOverTheSeededPeriod)
{
    SeedPeriod();
    DbConnection conn(ConnStrGranty());
    MovementSource movements(conn);
    ImportPohybCalc calc(movements);
    calc.GrantActiv = "100 ";
    // Every sum of the period: MD adds, DAL takes away, reversed only for exact accounts.
    const struct { const char *filter, *cerpani; } cases[] = {
        {"501*", "250,50"},                 // 300,50 - 50,00; "   Find error !   " skipped
        {"512", "70,00"},                   // MD 100, DAL 30
        {"518,-602*", "5,00"},              // 518 MD -10, 602 DAL +5, 6025 MD +7, 5181 MD +3
        {"518, -602*", "5,00"},             // items are trimmed, for the prefix and the reversal
        {"501, 512", "320,50"},
        {"-518*", "-7,00"},                 // 518 reversed, 5181 not
        {"", "1 375,50"},                   // no criterion: every row of every grant
        {",", "1 375,50"},
        {" , *", "1 375,50"},
        {"abc'x", "0,00"},
        {",501", "250,50"},                 // a criterion opening with " OR " selects its clauses
        {"5", "333,50"},
    };
    for (const auto &c : cases) {
        calc.SkupUctu = c.filter;
        ASSERT_TRUE(calc.SoucetSkupiny());
        EXPECT_EQ(calc.Cerpani, QString::fromUtf8(c.cerpani)) << c.filter;
    }
    // The screen's default criterion ends the sum at once: the figure before it stays.
    calc.SkupUctu = ImportPohybCalc::DefaultFilter;
    ASSERT_TRUE(calc.SoucetSkupiny());
    EXPECT_EQ(calc.Cerpani, "333,50");
    // A grant without movements sums nothing.
    calc.GrantActiv = "777";
    calc.SkupUctu = "501*";
    ASSERT_TRUE(calc.SoucetSkupiny());
    EXPECT_EQ(calc.Cerpani, "0,00");
}

TEST(Drawdown, RowsAreSummedInTheOrderOfTheirDates)
{
    FreshDatabases(false);
    // Stored out of date order: by date the small amount is lost against the large one
    // (1e16 + 1 - 1e16 = 0), by storage order it would survive.
    Exec(Granty, "INSERT INTO ImportUctyCastky (Datum, Castka, Ucet, `Grant`, `MD/DAL`) VALUES "
                 "('01.03.2024', '10000000000000000,00', '501', '7', 'MD'), "
                 "('03.03.2024', '10000000000000000,00', '501', '7', 'DAL'), "
                 "('02.03.2024', '1,00', '501', '7', 'MD'), (NULL, '1,00', '501', '8', 'MD')");
    DbConnection conn(ConnStrGranty());
    const auto sum = [&](MovementSource &source) {
        ImportPohybCalc calc(source);
        calc.SkupUctu = "501";
        calc.GrantActiv = "7";
        EXPECT_TRUE(calc.SoucetSkupiny());
        return calc.Cerpani;
    };
    MovementSource one(conn), all(conn);
    ASSERT_TRUE(all.loadAll());
    EXPECT_EQ(sum(one), "0,00");
    EXPECT_EQ(sum(all), "0,00");
    // Dates the server holds equal but not byte for byte ("02.03.2024 " and "02.03.2024").
    Exec(Granty, "UPDATE ImportUctyCastky SET Datum = '02.03.2024 ' WHERE Castka = '1,00'");
    Exec(Granty, "INSERT INTO ImportUctyCastky (Datum, Castka, Ucet, `Grant`, `MD/DAL`) VALUES ('02.03.2024', '0,00', '501', '7', 'MD')");
    MovementSource again(conn);
    ASSERT_TRUE(again.loadAll());
    EXPECT_EQ(sum(again), "0,00");
}

TEST(Drawdown, RecalculationWritesGroupsAndRemaindersOfTheUsersGrants)
{
    SeedPeriod();
    DbConnection conn(ConnStrGranty());
    const QVector<GrantHead> all = Heads(conn, "0");
    ASSERT_EQ(all.size(), 4);   // archived grant 400 too, for a user without limit
    EXPECT_EQ(Heads(conn, "0", false).size(), 3);
    // A filter naming grants that do not exist simply finds fewer.
    EXPECT_EQ(Heads(conn, "999,100,").size(), 1);

    // A cancelled run leaves everything as it was.
    RecalcResult r = RecalcGrants(conn, all, false, [](int done, int, const QString &) { return done < 2; });
    EXPECT_TRUE(r.cancelled);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(Group("100", "Materiál"), "0,00|0,00|0,00");
    EXPECT_EQ(Castka3("100"), "0,00");

    QStringList seen;
    r = RecalcGrants(conn, all, false, [&](int done, int total, const QString &grant) {
        seen << QStringLiteral("%1/%2 %3").arg(done).arg(total).arg(grant);
        return true;
    });
    ASSERT_TRUE(r.ok) << r.error.toStdString();
    EXPECT_EQ(seen, (QStringList{"1/4 100", "2/4 200", "3/4 300", "4/4 400"}));
    EXPECT_EQ(r.groups, 8);
    const struct { const char *grant, *nazev, *figures; } groups[] = {
        {"100", "Materiál", "250,50|749,50|74,90"},   // the share from the whole crowns, 749
        {"100", "Cestovné", "70,00|30,00|30,00"},
        {"100", "Služby", "5,00|-5,00|0,00"},          // no plan: no share
        {"100", "Vše", "1 375,50|-1 375,50|0,00"},
        {"100", "Čárka", "1 375,50|-1 375,50|0,00"},
        {"100", "Nesmysl", "0,00|0,00|0,00"},
        {"200", "Materiál", "40,00|-40,00|0,00"},
        {"200", "Výchozí", "40,00|-40,00|0,00"},       // the default criterion keeps the figure before it
    };
    for (const auto &g : groups)
        EXPECT_EQ(Group(g.grant, QString::fromUtf8(g.nazev)), QString::fromUtf8(g.figures)) << g.grant << g.nazev;
    EXPECT_EQ(Column(Granty, "SELECT Castka_plan FROM SkupUctuGrant WHERE Nazev='Služby'"), QStringList{"0,00"});
    // Castka3: budget minus the classes' drawdown; without classes the budget itself, formatted.
    for (const auto &[grant, castka3] : {std::pair{"100", "700,00"}, {"200", "-50,00"}, {"300", "0,00"}, {"400", "500,00"}})
        EXPECT_EQ(Castka3(grant), castka3) << grant;

}

TEST(Drawdown, GroupRefreshBringsAGrantInLineWithTheCatalogue)
{
    SeedPeriod();
    Exec(Granty, "INSERT INTO SkupUctu (Ucet, Nazev, Castka, Zustatek) VALUES "
                 "('501*', 'Materiál', '0,00', '0,00'), ('512*', 'Cestovné', '0,00', '0,00'), ('518*', 'Služby', '0,00', '0,00')");
    DbConnection conn(ConnStrGranty());
    bool empty = true;
    ASSERT_TRUE(CalkulRowUctu(conn, "300", &empty));
    EXPECT_FALSE(empty);
    EXPECT_EQ(Column(Granty, "SELECT CONCAT(Ucet,'|',Nazev,'|',Castka_plan,'|',Rezerv1,'|') FROM SkupUctuGrant "
                             "WHERE `Grant`='300' ORDER BY Ucet"),
              (QStringList{"501*|Materiál|0,00| |", "512*|Cestovné|0,00| |", "518*|Služby|0,00| |"}));

    // Grant 100 as one: its orphans go (the catalogue's Služby has another filter), then the sums.
    QVector<GrantHead> one;
    for (const GrantHead &g : Heads(conn, "0"))
        if (g.grant == "100")
            one.append(g);
    const RecalcResult r = RecalcGrants(conn, one, true);
    ASSERT_TRUE(r.ok) << r.error.toStdString();
    EXPECT_EQ(Column(Granty, "SELECT CONCAT(Ucet,'|',Nazev,'|',Castka_cerpani) FROM SkupUctuGrant WHERE `Grant`='100' ORDER BY Ucet"),
              (QStringList{"501*|Materiál|250,50", "512*|Cestovné|70,00", "518*|Služby|13,00"}));

    // An empty catalogue is said, and nothing is added.
    Exec(Granty, "DELETE FROM SkupUctu");
    ASSERT_TRUE(CalkulRowUctu(conn, "400", &empty));
    EXPECT_TRUE(empty);
    EXPECT_EQ(Column(Granty, "SELECT COUNT(*) FROM SkupUctuGrant WHERE `Grant`='400'"), QStringList{"0"});
}

TEST(Drawdown, FiguresOfTheSelectedGrantAndGroup)
{
    const struct { const char *castka1, *castka3, *cerpani, *procent; bool red; } grants[] = {
        {"1 000,00", "253,70", "746,30", "74,60   ", false},   // 100 - 25,37: the decimals count
        {"0,00", "-50,00", "50,00", "0,00   ", false},         // no budget: minus the rest, no share
        {"0,00", "120,00", "-120,00", "0,00   ", true},
        {"abc", "", "0,00", "0,00   ", false},
        {"200,00", "-20,00", "220,00", "110,00   ", false},
    };
    for (const auto &g : grants) {
        const GrantFigures f = FiguresOfGrant("1", g.castka1, g.castka3);
        EXPECT_EQ(f.cerpani, g.cerpani) << g.castka1 << "/" << g.castka3;
        EXPECT_EQ(f.procent, g.procent) << g.castka1 << "/" << g.castka3;
        EXPECT_EQ(f.cerpaniNegative, g.red) << g.castka1 << "/" << g.castka3;
    }
    const struct { const char *castka1, *poskytnute, *text; } differences[] = {
        {"1 000,00", "250,00", "+ 750,00"}, {"250,00", "1 000,00", "- 750,00"}, {"5,00", "5,00", "0,00"}, {"", "x", "0,00"},
    };
    for (const auto &d : differences)
        EXPECT_EQ(DifferenceText(d.castka1, d.poskytnute), d.text) << d.castka1;
    EXPECT_EQ(ZustatekFakt("800,00", 1416.5), "-616,50");   // stored unpadded, the sign by the digits
}

TEST(Drawdown, ChartOfAccountsLevelsTakeTheirSums)
{
    SeedPeriod();
    Exec(Granty, "INSERT INTO Grant_devize_2 (`Grant`, Ucet, Nazev, Castka) VALUES "
                 "('100', '501', 'Spotřeba materiálu', '0,00'), ('100', '512', 'Cestovné', '0,00'), ('200', '501', 'x', '0,00')");
    DbConnection conn(ConnStrGranty());
    ASSERT_TRUE(MemUcetFiltr(conn));
    // Only the first class of each grant takes the budget.
    EXPECT_EQ(Column(Granty, "SELECT CONCAT(`Grant`,Ucet,'=',Castka) FROM GrantTabl_main ORDER BY `Grant`, Ucet"),
              (QStringList{"1005=1 000,00", "1006=0,00", "2005=0,00"}));
    MovementSource movements(conn);
    ImportPohybCalc calc(movements);
    QVector<LevelRow> classes, accounts;
    ASSERT_TRUE(LoadLevelRows(conn, 3, "100", "", &classes));
    ASSERT_TRUE(CalculGrant(calc, 3, classes));
    ASSERT_TRUE(WriteLevelRows(conn, 3, classes));
    EXPECT_EQ(Column(Granty, "SELECT CONCAT(Ucet,'|',Castka_import,'|',Castka_zustatek,'|',Procent) FROM GrantTabl_main "
                             "WHERE `Grant`='100' ORDER BY Ucet"),
              (QStringList{"5|333,50|666,50|66,60", "6|2,00|-2,00|0,00"}));
    ASSERT_TRUE(LoadLevelRows(conn, 1, "100", "50", &accounts));
    ASSERT_EQ(accounts.size(), 1);
    ASSERT_TRUE(CalculGrant(calc, 1, accounts));
    ASSERT_TRUE(WriteLevelRows(conn, 1, accounts));
    EXPECT_EQ(Column(Granty, "SELECT CONCAT(`Grant`,'/',Ucet,'=',Castka) FROM Grant_devize_2 ORDER BY `Grant`, Ucet"),
              (QStringList{"100/501=250,50", "100/512=0,00", "200/501=0,00"}));
    QString from, to;
    ASSERT_TRUE(LoadPeriod(conn, &from, &to));
    EXPECT_EQ(from + " - " + to, "01.02.2024 - 11.02.2024");
}

TEST(Graph, MoneyAxisSharesAndOverspentGroups)
{
    // Round steps from below zero to above the highest bar, labelled in whole crowns.
    const struct { double min, max; const char *labels; } axes[] = {
        {-12000, 1176000, "-200 000 Kč|0 Kč|200 000 Kč|400 000 Kč|600 000 Kč|800 000 Kč|1 000 000 Kč|1 200 000 Kč"},
        {0, 0, "0 Kč|0,20 Kč|0,40 Kč|0,60 Kč|0,80 Kč|1 Kč"},
        {0, 2750000, "0 Kč|500 000 Kč|1 000 000 Kč|1 500 000 Kč|2 000 000 Kč|2 500 000 Kč|3 000 000 Kč"},
    };
    for (const auto &a : axes) {
        QStringList labels;
        for (const AxisTick &t : MoneyAxis(a.min, a.max))
            labels << t.label;
        EXPECT_EQ(labels.join('|'), QString::fromUtf8(a.labels)) << a.min << " " << a.max;
    }
    EXPECT_EQ(ShareText(3700539.74, 6450000), "57,4 %");
    EXPECT_EQ(ShareText(5, 0), "");
    // Overspent to the cent; a group with no plan shows its name alone.
    const GroupBar over = GroupBarOf({1, "1", "512*", " Cestovné ", "98 000,00", "98 000,01", "", ""});
    EXPECT_TRUE(over.overspent);
    EXPECT_EQ(GroupCategory(over), "Cestovné  ▲ 100,0 %");
    EXPECT_FALSE(GroupBarOf({1, "1", "512*", "x", "98 000,00", "98 000,00", "", ""}).overspent);
    EXPECT_EQ(GroupCategory(GroupBarOf({1, "1", "-602*", "Tržby", "0,00", "-12 000,00", "", ""})), "Tržby");
    const GrantBar bar = GrantBarOf({1, "1203", "1 250 000,00", "600 000,00", "", "- 540 934,35", ""});
    EXPECT_DOUBLE_EQ(bar.drawdown, 1790934.35);
    EXPECT_EQ(GrantBarTip(bar, "Zůstatek", bar.remainder), "GRANT 1203 · Zůstatek: -540 934,35 Kč");
}
