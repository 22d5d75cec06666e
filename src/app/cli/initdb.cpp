// init-db: creates the program's databases, with the demo institute on request.

#include "app/cli/cli.h"

#include "core/db.h"
#include "core/session.h"
#include "grants/drawdown.h"
#include "import/buildtree.h"
#include "import/importsouboru.h"
#include "import/pozice.h"

#include <QFileInfo>
#include <QSqlQuery>

namespace {
bool GrantsDatabaseExists()
{
    DbConnection server(ConnStrFor(QString()));
    QSqlQuery q = server.query();
    return server.exec(q, QStringLiteral("SELECT 1 FROM information_schema.SCHEMATA WHERE SCHEMA_NAME = ?"),
                       {QLatin1String(GrantyDbName)}) &&
           q.next();
}

// The columns of the demo exports, defined from their head lines where the workstation has
// no definition yet.
void DefineDemoColumns(const QString &exports)
{
    const struct {
        int kind;
        const char *file;
        QVector<QString> headings;
    } kinds[] = {
        {PoziceUcty, "ucty.txt", {"Účet", "Název účtu", "Středisko", "Stav", "Měna"}},
        {PoziceMD_DAL, "pohyby.txt",
         {"Datum", "Doklad", "Text", "Částka", "Účet MD", "Účet DAL", "Středisko MD", "Středisko DAL", "Název MD", "Název DAL"}},
    };
    for (const auto &k : kinds) {
        if (!ReadPozice(k.kind, PoziceRadky(k.kind).first().keyName).trimmed().isEmpty())
            continue;
        QVector<QString> numbers;
        PoziceZeVzorku(exports + QLatin1Char('/') + QLatin1String(k.file), k.kind, numbers, k.headings);
    }
}

// The demo's period of movements, January and February 2025: its exports read as the import
// screens read them, the account tree built with the sums, and every grant recalculated, so
// that the drawdown screen and the graph show what the movements give.
bool LoadDemoPeriod(const QString &exports, QString *error)
{
    DefineDemoColumns(exports);
    DbConnection conn(ConnStrGranty());
    if (!conn.isOpen()) {
        *error = conn.errorText();
        return false;
    }
    const QString movements = exports + QStringLiteral("/pohyby.txt");
    ImportRequest accounts;
    accounts.fileName = exports + QStringLiteral("/ucty.txt");
    accounts.mode = ImportUcty;
    accounts.emptyTarget = true;
    QVector<ImportRequest> runs{accounts};
    for (const char *side : {"MD", "Dal"}) {
        ImportRequest rq;
        rq.fileName = movements;
        rq.mode = ImportPohyby;
        rq.dateFrom = QStringLiteral("01.01.2025");
        rq.dateTo = QStringLiteral("28.02.2025");
        rq.side = QLatin1String(side);
        runs.append(rq);
    }
    for (const ImportRequest &rq : std::as_const(runs)) {
        CliProgress(QStringLiteral("init-db: import %1 %2").arg(QFileInfo(rq.fileName).fileName(), rq.side));
        const ImportResult r = ImportSouboru(conn, rq);
        if (!r.ok) {
            *error = r.failure;
            return false;
        }
    }
    // The movement file counts as imported: importing it again asks first.
    RememberFile(movements, RepeatMovements);
    CliProgress(QStringLiteral("init-db: strom účtů"));
    const TreeResult tree = BuildTree(conn, true);
    if (!tree.ok) {
        *error = tree.failure;
        return false;
    }
    QVector<GrantHead> grants;
    if (!LoadGrantHeads(conn, QStringLiteral("0"), &grants, true)) {
        *error = conn.errorText();
        return false;
    }
    CliProgress(QStringLiteral("init-db: Přepočet všech GRANTu"));
    const RecalcResult r = RecalcGrants(conn, grants, false);
    *error = r.error;
    CliProgressDone();
    return r.ok;
}

int initDb(const CliArgs &args)
{
    const bool demo = args.flag(QStringLiteral("--demo"));
    const bool force = args.flag(QStringLiteral("--force"));
    QString error;
    const QString dir = CliDataDir();
    // The demo's movements come with a newly made grants database only, never over the user's.
    const bool fresh = force || !GrantsDatabaseExists();
    if (!CreateDatabases(dir + QStringLiteral("/schema"), demo ? dir + QStringLiteral("/demo") : QString(), force, &error))
        return CliFail(QStringLiteral("init-db: ") + error);
    if (demo && fresh && !LoadDemoPeriod(dir + QStringLiteral("/demo/exports"), &error))
        return CliFail(QStringLiteral("init-db: pohyby demonstračního ústavu nenačteny: ") + error);
    // Databases left by an earlier version of the program get what this one needs.
    QStringList upgraded;
    if (!UpgradeDatabases(QStringLiteral("init-db"), &upgraded, &error))
        return CliFail(QStringLiteral("init-db: ") + error);
    for (const QString &line : std::as_const(upgraded))
        CliSummary(QStringLiteral("init-db: ") + line);
    CliSummary(demo ? QStringLiteral("init-db: databáze připraveny, s demonstračním ústavem")
                    : QStringLiteral("init-db: databáze připraveny"));
    return CliOk;
}

const CliRegistration registration({
    QStringLiteral("init-db"),
    QStringLiteral("[--demo] [--force]"),
    QStringLiteral("vytvoří fondarix_sys, fondarix_granty a databáze všech středisek ze sys_db_kvl; "
                   "--demo nahraje demonstrační ústav, --force databáze nejprve smaže"),
    {},
    {QStringLiteral("--demo"), QStringLiteral("--force")},
    0,
    0,
    initDb,
});
} // namespace
