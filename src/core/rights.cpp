#include "core/rights.h"

#include <QStringList>

bool IsAdministrator(int typ) { return typ == 2; }

bool ToolbarButtonVisible(const QString &key, int typ)
{
    if (key == QLatin1String("SPRAVA GR"))
        return typ == 2;
    if (key == QLatin1String("SKLAD") || key == QLatin1String("FIRMY") || key == QLatin1String("OBJEDN"))
        return typ == 2 || typ == 4;
    if (key == QLatin1String("TISKY"))
        return typ >= 2 && typ <= 6;
    if (key == QLatin1String("SPRAVA PR"))
        return typ >= 1 && typ <= 6;
    return true;   // the other buttons are never hidden
}

bool DropDownRefused(const QString &key, int typ)
{
    static const QStringList refused{QStringLiteral("mnu31"),  QStringLiteral("mnu32"),  QStringLiteral("mnu34"),
                                     QStringLiteral("mnu341"), QStringLiteral("mnu36"),  QStringLiteral("mnu37"),
                                     QStringLiteral("mnu311"), QStringLiteral("mnu312"), QStringLiteral("mnu314")};
    return typ == 5 && refused.contains(key);
}

bool CanRecalculateGrants(int typ) { return IsAdministrator(typ); }
bool CanImportMovements(int typ) { return IsAdministrator(typ); }
bool CanEditAccountList(int typ) { return IsAdministrator(typ); }
bool CanDeleteStredisko(int typ) { return IsAdministrator(typ); }
bool CanEditGrantPlan(int typ) { return IsAdministrator(typ); }
bool CanEditAllUsers(int typ) { return IsAdministrator(typ); }
