// fondarix: the desktop client.

#include "core/config.h"
#include "core/db.h"
#include "core/msg.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Fondarix"));
    QApplication::setOrganizationName(QStringLiteral("Fondarix"));
    InitSpecialDirs();
    DbConnection sys(ConnStrSys());
    if (!OpenOrFatal(sys))
        return 1;
    MsgBox(QStringLiteral("Připojeno k databázi ") + QLatin1String(SysDbName), MsgInformation);
    return 0;
}
