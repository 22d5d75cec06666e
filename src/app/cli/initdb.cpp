// init-db: creates the program's databases, with the demo institute on request.

#include "app/cli/cli.h"

#include "core/db.h"
#include "fondarix_paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {
QString dataDir()
{
    // The schema and demo files: beside the executable when installed, else in the sources.
    const QString installed = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/fondarix/db");
    if (QFileInfo::exists(installed))
        return QDir::cleanPath(installed);
    return QStringLiteral(FONDARIX_SOURCE_DIR "/db");
}

int initDb(const CliArgs &args)
{
    const bool demo = args.flag(QStringLiteral("--demo"));
    QString error;
    const QString dir = dataDir();
    if (!CreateDatabases(dir + QStringLiteral("/schema"), demo ? dir + QStringLiteral("/demo") : QString(),
                         args.flag(QStringLiteral("--force")), &error))
        return CliFail(QStringLiteral("init-db: ") + error);
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
