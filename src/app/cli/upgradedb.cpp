// upgrade-db: the databases of an earlier version of the program brought up to this one's
// tables; init-db does the same on every start.

#include "app/cli/cli.h"

#include "core/db.h"
#include "core/schemaupgrade.h"
#include "fondarix_paths.h"
#include "stock/sklad.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSqlQuery>

QString CliDataDir()
{
    const QString installed = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/fondarix/db");
    if (QFileInfo::exists(installed))
        return QDir::cleanPath(installed);
    return QStringLiteral(FONDARIX_SOURCE_DIR "/db");
}

bool UpgradeDatabases(const QString &verb, QStringList *summary, QString *error)
{
    QStringList centres;
    if (!CentreDatabaseNames(&centres, error))
        return false;
    centres.removeDuplicates();
    const QString schema = CliDataDir() + QStringLiteral("/schema/");
    QList<std::pair<QString, QString>> databases{{QLatin1String(SysDbName), QStringLiteral("sys")},
                                                 {QLatin1String(GrantyDbName), QStringLiteral("granty")}};
    for (const QString &centre : std::as_const(centres))
        databases.append({centre, QStringLiteral("centre")});

    DbConnection server(ConnStrFor(QString()));
    for (const auto &[name, kind] : std::as_const(databases)) {
        if (!IsSafeIdentifier(name)) {
            *error = QStringLiteral("Neplatný název databáze: %1").arg(name.left(80));
            return false;
        }
        QSqlQuery q = server.query();
        if (!server.exec(q, QStringLiteral("SELECT 1 FROM information_schema.SCHEMATA WHERE SCHEMA_NAME = ?"), {name})) {
            *error = server.errorText();
            return false;
        }
        if (!q.next())
            continue;   // a centre named in the list but never made: init-db makes it
        CliProgress(QStringLiteral("%1: %2").arg(verb, name));
        DbConnection conn(ConnStrFor(name));
        if (!conn.isOpen()) {
            *error = conn.errorText();
            return false;
        }
        QStringList changes;
        const bool ok = UpgradeSchema(conn, schema + kind + QStringLiteral(".sql"), &changes, error)
            && (kind != QLatin1String("centre") || UpgradeSklady(conn, &changes, error));
        for (const QString &change : std::as_const(changes))
            summary->append(name + QStringLiteral(".") + change);
        if (!ok) {
            *error = name + QStringLiteral(": ") + *error;
            return false;
        }
    }
    CliProgressDone();
    return true;
}

namespace {
int upgradeDb(const CliArgs &)
{
    QStringList summary;
    QString error;
    const bool ok = UpgradeDatabases(QStringLiteral("upgrade-db"), &summary, &error);
    for (const QString &line : std::as_const(summary))
        CliSummary(line);
    if (!ok)
        return CliFail(QStringLiteral("upgrade-db: ") + error);
    CliSummary(summary.isEmpty() ? QStringLiteral("upgrade-db: databáze odpovídají této verzi programu")
                                 : QStringLiteral("upgrade-db: hotovo"));
    return CliOk;
}

const CliRegistration registration({
    QStringLiteral("upgrade-db"),
    QString(),
    QStringLiteral("doplní do databází ze starší verze programu sloupce a indexy této verze (data zůstanou)"),
    {},
    {},
    0,
    0,
    upgradeDb,
});
} // namespace
