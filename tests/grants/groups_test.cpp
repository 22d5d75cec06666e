#include "core/db.h"
#include "grants/amount.h"
#include "grants/granttables.h"
#include "grants/skupuctu.h"
#include "grants/skupuctugrant.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Granty = QString::fromLatin1(GrantyDbName);

// The number of group rows of a grant, and whether it is still in the register.
QString Groups(const QString &grant) { return Column(Granty, "SELECT COUNT(*) FROM SkupUctuGrant WHERE `Grant`='" + grant + "'").value(0); }
bool Planned(const QString &grant) { return !Column(Granty, "SELECT _grant FROM GrantyPlan WHERE _grant='" + grant + "'").isEmpty(); }
} // namespace

TEST(Amount, EmptyIsZeroCommaIsDecimalAndFormattedUnpadded)
{
    for (const QVariant &v : {QVariant(), QVariant(QString()), QVariant(QString("   "))})
        EXPECT_EQ(AmountText(v), "0,00");
    EXPECT_EQ(AmountText(QString(" 12,50 ")), "12,50");
    EXPECT_DOUBLE_EQ(AmountValue(u"   Find error !   "), 0.0);
    for (const auto &[value, text] : {std::pair{1234.5, "1 234,50"}, {0.0, "0,00"}, {2450000.0, "2 450 000,00"}})
        EXPECT_EQ(FormatAmount(value), text) << value;
    // The sign stands at the far left, ahead of any padding.
    EXPECT_TRUE(FormatAmount(-0.5).startsWith('-'));
    EXPECT_TRUE(FormatAmount(-0.5).endsWith("0,50"));
    EXPECT_DOUBLE_EQ(AmountValue(FormatAmount(-1234.5)), -1234.5);
    // Round trip of what is stored.
    EXPECT_EQ(FormatAmount(AmountValue(u"1 973 300,15")), "1 973 300,15");
}

TEST(Amount, MovementBytesReadAsTheTextIs)
{
    // Each text as the sum reads it, from the bytes the server sends: whether it is a number
    // and its value, against the text functions.
    const struct { const char *bytes; bool number; double value; } cases[] = {
        {"  12 345,67 ", true, 12345.67}, {"-7 955,33", true, -7955.33}, {"-500", true, -500}, {"- 5", true, -5}, {"5-3", true, 5},
        {"--5", true, 0}, {"-", true, 0}, {".", true, 0}, {",5", true, 0.5}, {"5.", true, 5}, {"0,005", true, 0.005},
        {"1,2,3", false, 0}, {"1.2,3", false, 0}, {"   ", false, 0}, {"", false, 0}, {"   Find error !   ", false, 0},
        {"1\u00a0234,50", true, 1}, {"\u00a0-1 234,50\u00a0", true, -1234.5}, {"12,5e3", false, 0}, {"+5", false, 0},
        {"\t5", false, 0}, {"１２", false, 0}, {"1 000 000 000 000 000,01", true, 1e15},
        {"12,345678901234567890123", true, 12.345678901234567}, {" 9 999 999 999 999,99", true, 9999999999999.99},
        {"0,00000000000007", true, 7e-14}, {"0,000000000000007", true, 7e-15}, {"0,1-", true, 0.1},
        {"1111111111111111111111111111111111111111111111111111111111111111111111,5", true, 1.1111111111111111e69},
    };
    for (const auto &c : cases) {
        const QString text = QString::fromUtf8(c.bytes);
        double value = -1;
        ASSERT_EQ(MovementAmount(c.bytes, &value), c.number) << c.bytes;
        ASSERT_EQ(IsNumberView(text), c.number) << c.bytes;
        if (!c.number)
            continue;
        EXPECT_DOUBLE_EQ(value, c.value) << c.bytes;
        EXPECT_EQ(value, AmountValue(QStringView(text).trimmed())) << c.bytes;   // to the last bit
    }
}

TEST(SpoctiRadek, RestAndShareFromTheWholeCrownsOfTheRest)
{
    // 749 * 100 / 1000: the 50 hellers do not count; 1 * 100 / 400 = 0.25 rounds to the even 0.2.
    const struct { const char *plan, *cerpani, *planShown, *restText; double rest; const char *share; } cases[] = {
        {"1 000,00", "250,50", "1 000,00", "749,50", 749.5, "74,90"},
        {"1000", "1 250,75", "1 000,00", nullptr, -250.75, "-25,00"},
        {"400,00", "399,00", "400,00", "1,00", 1.0, "0,20"},
        {"", "120,00", "0,00", nullptr, -120.0, "0,00"},
        {"500,00", "", "500,00", "500,00", 500.0, "100,00"}};
    for (const auto &c : cases) {
        GroupRow r;
        r.plan = c.plan;
        r.cerpani = c.cerpani;
        SpoctiRadek(r);
        EXPECT_EQ(r.plan, c.planShown) << c.plan;
        EXPECT_DOUBLE_EQ(AmountValue(r.zustatek), c.rest) << c.plan;
        if (c.restText)
            EXPECT_EQ(r.zustatek, c.restText) << c.plan;
        EXPECT_EQ(r.procent, c.share) << c.plan;
    }
}

TEST(BudgetCheck, NewTotalAgainstTheGrantsBudgetWithTheExactMessage)
{
    // Shown total 900 with the old value 100 in it: 900 - 100 + 200 = 1000 is still within.
    EXPECT_TRUE(BudgetCheck("1201", "1 000,00", "200", "100,00", "900,00").isEmpty());
    EXPECT_EQ(BudgetCheck("1201", "1 000,00", "1 300,50", "100,00", "900,00"),
              QString("Částka za skupinu překročila rozpočtovou částku za tento GRANT: 1201\r\n"
                      " z řozpočtem 1 000,00 Kč na částku 1 100,50 Kč!"));
    // Decimals that do not add up exactly in binary are still equal to the heller.
    EXPECT_TRUE(BudgetCheck("7", "0,30", "0,20", "", "0,10").isEmpty());
    // A grant without budget takes no group budget at all; garbage counts as nothing.
    EXPECT_FALSE(BudgetCheck("9", "", "0,01", "", "").isEmpty());
    EXPECT_TRUE(BudgetCheck("9", "", "abc'", "", "").isEmpty());
}

TEST(GrantTables, TruncateTakesOnlyPlainTableNames)
{
    FreshDatabases(false);
    Exec(Granty, "INSERT INTO memImport (UCET, `GRANT`, CASTKA) VALUES ('501', '12', '0,00')");
    DbConnection conn(ConnStrGranty());
    EXPECT_FALSE(VymazTabulku(conn, "memImport; DROP TABLE GrantyPlan"));
    EXPECT_EQ(Column(Granty, "SELECT COUNT(*) FROM memImport"), QStringList{"1"});
    EXPECT_TRUE(VymazTabulku(conn, "memimport")) << conn.errorText().toStdString();
    EXPECT_EQ(Column(Granty, "SELECT COUNT(*) FROM memImport"), QStringList{"0"});
    EXPECT_EQ(Column(Granty, "SELECT COUNT(*) FROM GrantyPlan"), QStringList{"0"});
}

TEST(GrantDelete, CascadeRemovesGroupsGrantAndDocumentsAllOrNothing)
{
    FreshDatabases(true);
    Exec(Granty, "INSERT INTO documents (_grant, param1) VALUES ('1201', 'Smlouva'), ('1202', 'Zpráva')");
    Exec(Granty, "INSERT INTO ImportUctyCastky (Ucet, `Grant`, Castka) VALUES ('501', '1201', '1,00')");
    const QStringList before = Column(Granty, "SELECT COUNT(*) FROM SkupUctuGrant");
    DbConnection conn(ConnStrGranty());
    ASSERT_TRUE(DeleteGrantCascade(conn, "1201")) << conn.errorText().toStdString();
    EXPECT_EQ(Groups("1201"), "0");
    EXPECT_EQ(Column(Granty, "SELECT COUNT(*) FROM SkupUctuGrant"), QStringList{QString::number(before[0].toInt() - 8)});
    EXPECT_FALSE(Planned("1201"));
    EXPECT_EQ(Column(Granty, "SELECT _grant FROM documents"), QStringList{"1202"});
    EXPECT_EQ(Column(Granty, "SELECT COUNT(*) FROM ImportUctyCastky"), QStringList{"1"});

    // When the last step fails, the grant and its groups are still there.
    Exec(Granty, "DROP TABLE documents");
    EXPECT_FALSE(DeleteGrantCascade(conn, "1202"));
    EXPECT_FALSE(conn.errorText().isEmpty());
    EXPECT_EQ(Groups("1202"), "8");
    EXPECT_TRUE(Planned("1202"));
    // DeleteGrantActiv alone takes only the group rows.
    EXPECT_TRUE(DeleteGrantActiv(conn, "1202"));
    EXPECT_EQ(Groups("1202"), "0");
    EXPECT_TRUE(Planned("1202"));
}

TEST(Catalogue, TidyOnCloseTrimsFiltersNamesAndFormatsAmounts)
{
    FreshDatabases(false);
    Exec(Granty, "INSERT INTO SkupUctu (Ucet, Nazev, Castka, Zustatek) VALUES "
                 "(' 501*,\\r\\n,502* ', '  Materiál ', '1500', '0,00'), ('518*', 'Služby', '', NULL)");
    DbConnection conn(ConnStrGranty());
    ASSERT_TRUE(TidySkupUctu(conn)) << conn.errorText().toStdString();
    EXPECT_EQ(Column(Granty, "SELECT CONCAT(Ucet, '|', Nazev, '|', Castka, '|', Zustatek) FROM SkupUctu ORDER BY Ucet"),
              (QStringList{"501*,502*|Materiál|1 500,00|1 500,00", "518*|Služby|0,00|0,00"}));

    GroupDef edited{1, "501*", "x", "", "9,00"};
    AmountEdited(edited);
    EXPECT_EQ(edited.castka, "0,00");
    EXPECT_EQ(edited.zustatek, "0,00");
}
