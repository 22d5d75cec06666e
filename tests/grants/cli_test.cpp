// The drawdown's batch verbs as a user runs them on the demo institute made by init-db --demo:
// its period of movements imported and recalculated, the user's grant filter applied, and
// wrong usage refused.

#include "core/codepage.h"
#include "core/db.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

using namespace testenv;

namespace {
const QString Granty = QString::fromLatin1(GrantyDbName);
QString Stored(const QString &sql) { return Column(Granty, sql).value(0); }
} // namespace

TEST(DrawdownCli, DemoPeriodThenRecalcAndReportsUnderTheUsersFilter)
{
    FreshDatabases(false);
    const CliRun init = Cli({"init-db", "--demo", "--force"});
    ASSERT_EQ(init.code, 0) << init.err.toStdString();
    // Both sides of the demo exports are in, the tree built, every grant recalculated.
    EXPECT_EQ(Stored("SELECT COUNT(*) FROM ImportUctyCastky"), "5858");
    EXPECT_EQ(Stored("SELECT Castka3 FROM GrantyPlan WHERE _grant='1201'"), "787 770,34");
    EXPECT_EQ(Stored("SELECT CONCAT(Castka_cerpani, '|', Procent) FROM SkupUctuGrant WHERE `Grant`='1201' AND Nazev='Cestovné'"),
              "289 407,34|-195,30");
    // Run again without --force it leaves the data alone.
    Exec(Granty, "UPDATE GrantyPlan SET Castka3='0,00'");
    ASSERT_EQ(Cli({"init-db", "--demo"}).code, 0);
    EXPECT_EQ(Stored("SELECT COUNT(*) FROM GrantyPlan WHERE Castka3='0,00'"), "12");

    Exec(QString::fromLatin1(SysDbName), "UPDATE sys_users SET filtr_grant='1201,1203,9999' WHERE login='novakova'");
    const struct {
        QStringList args;
        int code;
        QString out, err;   // parts of stdout and stderr
    } cases[] = {
        {{"recalc", "--login", "novakova"}, 0, "Akce byla úspěšně ukončena... GRANTů: 2, skupin účtů: 16, čas: ",
         "Přepočet GRANTu 1203 (2 z 2)"},
        {{"recalc", "--grant", "1202", "--login", "novakova"}, 1, "", "GRANT 1202 nepatří mezi granty uživatele."},
        {{"recalc", "--grant", "9999"}, 1, "", "GRANT 9999 není najden..."},
        {{"recalc", "--grant", "2302"}, 0, "GRANTů: 1, skupin účtů: 8", ""},
        {{"recalc", "1201"}, 2, "", ""},
        {{"report", "groups"}, 2, "", "report groups: chybí volba --grant N"},
        {{"report", "groups", "--grant", "1202", "--login", "novakova"}, 1, "", "GRANT 1202 nepatří mezi granty uživatele."},
        {{"report", "grants", "--size", "x", "--bogus"}, 2, "", ""},
    };
    for (const auto &c : cases) {
        const CliRun run = Cli(c.args);
        EXPECT_EQ(run.code, c.code) << c.args.join(' ').toStdString() << "\n" << run.err.toStdString();
        EXPECT_TRUE(run.out.contains(c.out)) << run.out.toStdString();
        EXPECT_TRUE(run.err.contains(c.err)) << run.err.toStdString();
    }
    // Only the user's grants and the one named were written.
    EXPECT_EQ(Column(Granty, "SELECT CONCAT(_grant, ' ', Castka3) FROM GrantyPlan WHERE Castka3 <> '0,00' ORDER BY _grant"),
              QStringList({"1201 787 770,34", "1203 -540 934,35", "2302 859 582,77"}));

    // The reports print their file's path; the grant list holds the user's grants only.
    const CliRun groups = Cli({"report", "groups", "--grant", "1201", "--login", "novakova"});
    ASSERT_EQ(groups.code, 0) << groups.err.toStdString();
    const QString groupsHtml = ReadFileCp1250(groups.out.trimmed());
    EXPECT_TRUE(groupsHtml.contains("289 407,34"));
    EXPECT_TRUE(groupsHtml.contains("Celkem za GRANT, Kč"));
    const CliRun grants = Cli({"report", "grants", "--login", "novakova"});
    ASSERT_EQ(grants.code, 0) << grants.err.toStdString();
    EXPECT_EQ(grants.out.trimmed(), groups.out.trimmed());
    const QString list = ReadFileCp1250(grants.out.trimmed());
    EXPECT_TRUE(list.contains("1203"));
    EXPECT_FALSE(list.contains("1202"));
    // A filter of grants that do not exist leaves nothing to report.
    Exec(QString::fromLatin1(SysDbName), "UPDATE sys_users SET filtr_grant='9998,9999' WHERE login='novakova'");
    const CliRun none = Cli({"report", "grants", "--login", "novakova"});
    EXPECT_EQ(none.code, 1);
    EXPECT_TRUE(none.err.contains("Není vytvořen seznam GRANTU s rozpočtovýma částkama!"));
}
