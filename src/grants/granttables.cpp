#include "grants/granttables.h"

#include "core/db.h"
#include "core/msg.h"

#include <QRegularExpression>

bool VymazTabulku(DbConnection &conn, const QString &tableName)
{
    // A table name cannot be bound: it must be a plain identifier before it goes into SQL.
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_]+$"));
    if (!plain.match(tableName).hasMatch())
        return false;
    return conn.exec(QStringLiteral("TRUNCATE TABLE  ") + tableName + QStringLiteral(";"));
}

bool ShowDbError(const DbConnection &conn)
{
    MsgBox(conn.errorText(), MsgCritical);
    return false;
}
