// fondarix-cli: batch jobs without the desktop.
//
//   fondarix-cli init-db [--demo] [--force]
//     creates fondarix_sys, fondarix_granty and every centre database named in sys_db_kvl;
//     --demo loads the demo institute, --force drops existing databases first.

#include "core/config.h"
#include "core/db.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>

namespace {
QString dataDir()
{
    // The schema and demo files: beside the executable when installed, else in the sources.
    const QString installed = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/fondarix/db");
    if (QFileInfo::exists(installed))
        return QDir::cleanPath(installed);
    return QStringLiteral(FONDARIX_SOURCE_DIR "/db");
}

int usage()
{
    std::fprintf(stderr, "usage: fondarix-cli init-db [--demo] [--force]\n");
    return 2;
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (args.isEmpty() || args.first() != QLatin1String("init-db"))
        return usage();
    const bool demo = args.contains(QStringLiteral("--demo"));
    const bool force = args.contains(QStringLiteral("--force"));
    InitSpecialDirs();
    QString error;
    const QString dir = dataDir();
    if (!CreateDatabases(dir + QStringLiteral("/schema"), demo ? dir + QStringLiteral("/demo") : QString(), force,
                         &error)) {
        std::fprintf(stderr, "init-db: %s\n", error.toLocal8Bit().constData());
        return 1;
    }
    std::printf("init-db: databases ready%s\n", demo ? " with the demo institute" : "");
    return 0;
}
