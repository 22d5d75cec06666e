#include "grants/granttables.h"

#include "core/db.h"
#include "core/msg.h"

bool VymazTabulku(DbConnection &conn, const QString &tableName)
{
    // A table name cannot be bound: it must be a plain identifier before it goes into SQL.
    if (!IsSafeIdentifier(tableName))
        return false;
    return conn.exec(QStringLiteral("TRUNCATE TABLE  ") + tableName + QStringLiteral(";"));
}

bool ShowDbError(const DbConnection &conn)
{
    MsgBox(conn.errorText(), MsgCritical);
    return false;
}
