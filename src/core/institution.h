#pragma once
// The institution's own data (table sys_nastaveni, one row), printed on order forms
// and reports. Empty columns get the institution's defaults, written back to the row.

#include <QDateTime>
#include <QString>

class DbConnection;

// Seconds from 1 January 1970 to the given local time, counted as if local time were
// universal time: the moment from which the second account number applies.
QString NewdateUcetText(const QDateTime &localNow);

// Reads the row into the session, repairing empty columns on the server first.
// A table without rows leaves the session's institution fields empty.
// False when the server refused a statement.
bool ReadInstitution(DbConnection &sys);
