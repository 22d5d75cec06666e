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
    CliSummary(demo ? QStringLiteral("init-db: databases ready with the demo institute")
                    : QStringLiteral("init-db: databases ready"));
    return CliOk;
}

const CliRegistration registration({
    QStringLiteral("init-db"),
    QStringLiteral("[--demo] [--force]"),
    QStringLiteral("creates fondarix_sys, fondarix_granty and every centre database of sys_db_kvl; "
                   "--demo loads the demo institute, --force drops the databases first"),
    {},
    {QStringLiteral("--demo"), QStringLiteral("--force")},
    0,
    0,
    initDb,
});
} // namespace
