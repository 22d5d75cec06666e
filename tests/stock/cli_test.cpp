#include "support/testenv.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace testenv;

TEST(StockVerbs, SummariesAndSearchAsTheScreensMakeThem)
{
    FreshDatabases();
    QTemporaryDir dir;
    const QString issues = dir.filePath("vydej.html");
    CliRun run = Cli({"stock", "issues", "--sklad", "Kancelář", "--out", issues, "--login", "dvorakova"});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    const QString rows = Column("fondarix_ofk", "SELECT COUNT(*) FROM CHEM_VYD WHERE sklad='Kancelář'").value(0);
    EXPECT_EQ(run.out, "stock issues: " + rows + " řádků výdeje skladu Kancelář do " + issues + "\n");
    EXPECT_TRUE(QFile::exists(issues));   // the writer the screen calls; its bytes are checked there

    const QString ordered = dir.filePath("objednano.html");
    run = Cli({"stock", "ordered", "--sklad", "Chemikálie", "--year", "2025", "--out", ordered});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.startsWith("stock ordered: ")) << run.out.toStdString();
    EXPECT_TRUE(QFile::exists(ordered));

    run = Cli({"stock", "find", "*zkumavky"});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains("Mikrozkumavky 1,5 ml\tMZ-015\tLaboratorní plasty\n"));
    EXPECT_TRUE(run.out.endsWith(" položek\n"));

    // Refusals: an unknown warehouse, a bad year, a missing table; wrong usage.
    const struct { QStringList args; int code; const char *said; } refusals[] = {
        {{"stock", "ordered", "--sklad", "Neznámý"}, 1, "Sklad Neznámý není v seznamu skladů."},
        {{"stock", "ordered", "--sklad", "Kancelář", "--year", "dvacet"}, 1, "Rok dvacet není platný."},
        {{"stock", "ordered", "--sklad", "Kancelář", "--from", "31.2.2026"}, 1, "Datum 31.2.2026 není platné (d.m.rrrr)."},
        {{"stock", "issues", "--nic"}, 2, ""},
        {{"stock", "find"}, 2, ""},
    };
    for (const auto &r : refusals) {
        run = Cli(r.args);
        EXPECT_EQ(run.code, r.code) << r.args.join(' ').toStdString();
        EXPECT_TRUE(run.err.contains(QString::fromUtf8(r.said))) << run.err.toStdString();
    }
    Exec("fondarix_ofk", "DROP TABLE Skl1622026094003");
    run = Cli({"stock", "ordered", "--sklad", "Kancelář"});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains("Sklad Kancelář nemá svou tabulku Skl1622026094003.")) << run.err.toStdString();
    run = Cli({"stock", "find", "Mikro"});   // the dropped warehouse is passed over
    EXPECT_EQ(run.code, 0);
}
