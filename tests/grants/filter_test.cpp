#include "core/db.h"
#include "grants/filter.h"
#include "support/testenv.h"

#include <QSqlQuery>

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Granty = QString::fromLatin1(GrantyDbName);

// Runs a criterion against a table and gives the first selected column, sorted.
QStringList Selected(const QString &column, const QString &table, const Criterion &c)
{
    DbConnection conn(ConnStrGranty());
    QSqlQuery q = conn.query();
    const QString sql = QStringLiteral("SELECT %1 FROM %2 %3 ORDER BY 1")
                            .arg(column, table, c.isEmpty() ? QString() : QStringLiteral("WHERE ") + c.where);
    EXPECT_TRUE(conn.exec(q, sql, c.values)) << conn.errorText().toStdString();
    QStringList values;
    while (q.next())
        values << q.value(0).toString();
    return values;
}

QStringList Castky(CriterionForm form, const QString &filter, const QString &grant)
{
    return Selected("Castka", "ImportUctyCastky", BuildCriterion(form, filter, grant));
}
} // namespace

TEST(FilterText, TidyItemsAndPickedAccounts)
{
    // ",," goes first in one pass, so three commas leave two; the items stay the same.
    for (const auto &[text, tidy] : {std::pair{" 501*,\r\n502* ", "501*,502*"}, {"501,,502", "501,502"},
                                     {"501,,,502", "501,,502"}, {"501,,,,502", "501,,502"}, {"", ""}})
        EXPECT_EQ(TidyFilter(text), tidy) << text;
    EXPECT_EQ(FilterItems(TidyFilter("501,,,502")), (QStringList{"501", "502"}));

    // Items are prefixes without stars, minuses and blanks.
    EXPECT_EQ(FilterItems("6*,801*,123000"), (QStringList{"6", "801", "123000"}));
    EXPECT_EQ(FilterItems("501, 502"), (QStringList{"501", "502"}));
    EXPECT_EQ(FilterItems("-518*"), QStringList{"518"});
    for (const char *text : {"*", " , ,*, ", ""})
        EXPECT_TRUE(FilterItems(text).isEmpty()) << text;

    // Picked accounts are appended after comma and blank.
    EXPECT_EQ(AppendAccount("", "501100"), "501100");
    EXPECT_EQ(AppendAccount("  ", " 501100 "), "501100");
    EXPECT_EQ(AppendAccount("501*", "502"), "501*, 502");
}

TEST(FilterCriterion, SelectsByPrefixInTheDatabaseAndSurvivesGarbage)
{
    FreshDatabases(false);
    Exec(Granty, "INSERT INTO ImportUctyCastky (Ucet, `Grant`, Castka, `MD/DAL`) VALUES "
                 "('123000','12','1,00','MD'), ('1230001','12','2,00','MD'), ('123001','12','3,00','MD'),"
                 "('801200','12','4,00','MD'), ('801200','13','5,00','MD'), ('60','12','6,00','DAL')");
    EXPECT_EQ(Castky(CriterionForm::Movements, "6*,801*,123000", "12"), (QStringList{"1,00", "2,00", "4,00", "6,00"}));
    // The second form takes the grant as a prefix, the third exactly.
    EXPECT_EQ(Castky(CriterionForm::Accounts, "801", "1"), (QStringList{"4,00", "5,00"}));
    EXPECT_TRUE(Castky(CriterionForm::Budget, "801", "1").isEmpty());
    // A filter without items selects every row, of every grant, in every form.
    EXPECT_EQ(Castky(CriterionForm::Movements, " * ", "12").size(), 6);
    EXPECT_EQ(Castky(CriterionForm::Accounts, "*", "12").size(), 6);
    EXPECT_EQ(Castky(CriterionForm::Budget, "", "12").size(), 6);
    // Quotes and SQL in a filter are only text to compare.
    EXPECT_TRUE(Castky(CriterionForm::Movements, "1' OR '1'='1, x);DROP TABLE y;--", "12'").isEmpty());
}

TEST(FilterGrants, UserListAsPrefixTermsAndPermittedGrants)
{
    FreshDatabases(true);
    Exec(Granty, "UPDATE GrantyPlan SET archiv='' WHERE _grant='1202'");
    Exec(Granty, "UPDATE GrantyPlan SET archiv=NULL WHERE _grant='1203'");
    const auto grants = [](const Criterion &c) { return Selected("_grant", "GrantyPlan", c); };
    ASSERT_EQ(grants(Criterion()).size(), 12);
    EXPECT_TRUE(GrantLikeCriterion("_GRANT", "0").isEmpty());
    EXPECT_TRUE(GrantLikeCriterion("_GRANT", "").isEmpty());
    EXPECT_EQ(grants(GrantLikeCriterion("_GRANT", "1201,2301")), (QStringList{"1201", "2301"}));
    EXPECT_EQ(grants(GrantLikeCriterion("_GRANT", "23")).size(), 6);
    // A trailing comma leaves an empty number, which matches every grant.
    EXPECT_EQ(grants(GrantLikeCriterion("_GRANT", "1201,")).size(), 12);
    EXPECT_TRUE(grants(GrantLikeCriterion("_GRANT", "x'y")).isEmpty());

    // Not archived: "0", empty and null alike; the demo archives 1204 and 2305.
    QStringList active = grants(Criterion());
    active.removeAll("1204");
    active.removeAll("2305");
    EXPECT_EQ(grants(PermittedGrantsCriterion("0")), active);
    EXPECT_EQ(grants(PermittedGrantsCriterion("1203,1204,23")), QStringList{"1203"});
    // One grant against the list: whole numbers, blanks after commas allowed.
    for (const auto &[filter, grant, permitted] : {std::tuple{"0", "1201", true}, {"", "1", true}, {"1201, 1202", "1202", true},
                                                   {"1201", "12", false}, {"1201,", "9", false}})
        EXPECT_EQ(GrantPermitted(filter, grant), permitted) << filter << " " << grant;
}
