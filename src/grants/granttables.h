#pragma once
// Operations on whole tables of the grant database.

#include <QString>

class DbConnection;

// Empties a table ("TRUNCATE TABLE  name;"). Only plain table names are taken.
bool VymazTabulku(DbConnection &conn, const QString &tableName);

// Shows the connection's last error in a critical box. Returns false, so that a command
// can end with "return ShowDbError(conn);".
bool ShowDbError(const DbConnection &conn);
