// A centre made by an earlier version of the program, as the institute keeps it over an
// update: the archive says what to do instead of failing, and `upgrade-db` brings its tables
// to what a fresh database has, after which the lists are those of a fresh database.

#include "core/db.h"
#include "fondarix_paths.h"
#include "core/msg.h"
#include "orders/frmArchObj.h"
#include "orders/objlist.h"
#include "orders/objrecord.h"
#include "orders/seed.h"
#include "support/testenv.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace testenv;
using namespace seed;

namespace {
const QString Fixtures = QStringLiteral(FONDARIX_SOURCE_DIR "/tests/orders/fixtures/");

void RunFixture(const QString &name)
{
    QFile f(Fixtures + name);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << name.toStdString();
    for (const QString &sql : SplitSqlScript(QString::fromUtf8(f.readAll())))
        Exec(Centre, sql);
}

// A table's columns and keys as SHOW CREATE TABLE gives them, in no order, without its name,
// its engine line and the key's counter.
QStringList Shape(const QString &database, const QString &table)
{
    DbConnection c(ConnStrFor(database));
    QSqlQuery q = c.query();
    EXPECT_TRUE(c.exec(q, QStringLiteral("SHOW CREATE TABLE `%1`").arg(table)) && q.next()) << table.toStdString();
    QStringList lines = q.value(1).toString().split(QLatin1Char('\n'));
    lines = lines.mid(1, lines.size() - 2);
    for (QString &line : lines) {
        line = line.trimmed();
        if (line.endsWith(QLatin1Char(',')))
            line.chop(1);
    }
    lines.sort();
    return lines;
}

struct Shapes {
    QStringList archobj, journal, warehouse, centres;
};
// The upgraded warehouse is compared with one the program made as it makes them now.
Shapes ShapesNow(const QString &warehouse)
{
    return {Shape(Centre, "archobj"), Shape(Centre, "CHEM_VYD"), Shape(Centre, warehouse),
            Shape(QLatin1String(SysDbName), "sys_db_kvl")};
}

// Every list the archive shows of the rows: each status with its keys and sums, and the
// batch verb's lines for the whole archive, a year and each status.
QStringList Lists()
{
    QStringList out;
    DbConnection c(ConnStrFor(Centre));
    for (int status = 1; status <= 4; ++status) {
        ObjListKeys keys;
        const ObjFilter filter = FilterObj(status, ObjStatusEntries().at(status), QString(), false);
        EXPECT_TRUE(ObjListKeysOf(c, filter, status, &keys)) << c.errorText().toStdString();
        QStringList noms;
        for (int nom : keys.noms)
            noms << QString::number(nom);
        out << QStringLiteral("%1: %2 | %3 | %4").arg(status).arg(noms.join(' ')).arg(keys.sums.price).arg(keys.sums.booked);
        const CliRun run = Cli({"orders", "list", "--status", ObjStatusEntries().at(status)});
        EXPECT_EQ(run.code, 0) << run.err.toStdString();
        out << run.out;
    }
    for (const QStringList &args : {QStringList{"orders", "list"}, QStringList{"orders", "list", "--year", "2024"}}) {
        const CliRun run = Cli(args);
        EXPECT_EQ(run.code, 0) << run.err.toStdString();
        out << run.out;
    }
    return out;
}
} // namespace

TEST(UpgradeDb, OldCentreIsToldThenUpgradedTwiceToTheFreshTablesAndLists)
{
    FreshDatabases(true);
    const QString warehouse = Column(Centre, "SELECT File FROM typ ORDER BY id").value(0);
    const Shapes fresh = ShapesNow(warehouse);
    Exec(Centre, "DELETE FROM archobj");
    RunFixture("orders.sql");
    const QStringList freshLists = Lists();
    EXPECT_TRUE(freshLists.join('\n').contains("0008/04022024"));

    RunFixture("old_centre.sql");
    RunFixture("orders.sql");
    // The archive on the old centre: said once, in Czech, instead of a failing statement.
    {
        LoginAs(2);
        ScriptedMessages messages;
        frmArchObj screen;
        screen.Load();
        screen.show();
        Choose(&screen, "Combo2", "Výřizování");
        Choose(&screen, "Combo2", "Vyfakturována");
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.shown.at(0).text, ObjListOldDatabaseText(Centre));
        EXPECT_EQ(GridRows(&screen), 0);
        SaveScreen(&screen, "frmArchObj-old-centre");
        // The lists that read no status still work.
        Choose(&screen, "Combo2", "- Vše -");
        EXPECT_EQ(GridRows(&screen), 9);
    }
    for (const QStringList &args : {QStringList{"orders", "list", "--status", "Výřizování"}, QStringList{"orders", "list", "--year", "2025"}}) {
        const CliRun told = Cli(args);
        EXPECT_EQ(told.code, 1);
        EXPECT_TRUE(told.err.contains(ObjListOldDatabaseText(Centre))) << told.err.toStdString();
    }

    const CliRun first = Cli({"upgrade-db"});
    ASSERT_EQ(first.code, 0) << first.err.toStdString();
    for (const char *line : {"fondarix_ofk.archobj: přidán sloupec stav", "fondarix_ofk.archobj: přidán index objstav",
                             "fondarix_ofk.archobj: zrušen index cis_obj",
                             "fondarix_ofk.archobj: index Dat_obj přestavěn na (Dat_obj, cis_obj)",
                             "fondarix_ofk.archobj: sloupec Dat_obj porovnáván jako cp1250_nopad_bin",
                             "fondarix_ofk.CHEM_VYD: index sklad přestavěn", "fondarix_ofk.SklOld1: přidán index Nazev",
                             "fondarix_sys.sys_db_kvl: přidán sloupec lekarna",
                             "fondarix_ofk.typ: sklad Poškozený záznam má neplatný název tabulky (Skl 1; DROP), vynechán"})
        EXPECT_TRUE(first.out.contains(QString::fromUtf8(line))) << line << "\n" << first.out.toStdString();
    EXPECT_TRUE(first.err.contains("upgrade-db: fondarix_ofk")) << first.err.toStdString();
    const CliRun again = Cli({"upgrade-db"});
    ASSERT_EQ(again.code, 0) << again.err.toStdString();
    EXPECT_FALSE(again.out.contains("archobj")) << again.out.toStdString();

    const Shapes upgraded = ShapesNow("SklOld1");
    EXPECT_EQ(upgraded.archobj, fresh.archobj);
    EXPECT_EQ(upgraded.journal, fresh.journal);
    EXPECT_EQ(upgraded.warehouse, fresh.warehouse);
    EXPECT_EQ(upgraded.centres, fresh.centres);
    EXPECT_EQ(Column(Centre, "SELECT KOMU FROM CHEM_VYD"), QStringList{"Laboratoř 2"});
    EXPECT_EQ(Lists(), freshLists);
}
