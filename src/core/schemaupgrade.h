#pragma once
// Bringing a database made by an earlier version of the program up to the tables of its
// schema file. The schema file stays the one place where a table is defined: its CREATE
// statements are read, and an existing table gets what it lacks (columns, a changed
// collation, keys) by ALTER, while its rows stay as they are. Running it again changes nothing.

#include <QString>
#include <QStringList>

class DbConnection;

// Every CREATE TABLE / CREATE VIEW of the schema file applied to the database of the
// connection: a missing table or view is created (with the rows the file inserts into it),
// an existing table is brought up to its definition (UpgradeTable). Each change is
// appended to changes as "table: what"; false with the reason on the first failure.
bool UpgradeSchema(DbConnection &conn, const QString &schemaFile, QStringList *changes, QString *error);

// One existing table brought up to a CREATE TABLE statement: missing columns added in their
// place, a column whose collation differs from the one the statement names modified, keys
// missing or of other columns added, keys the statement does not have dropped (the primary
// key is left alone). Columns the statement lacks are kept: they hold data.
bool UpgradeTable(DbConnection &conn, const QString &createStatement, QStringList *changes, QString *error);

// The keys of an existing table made to be the given ones ("KEY [name] (col, ...)",
// "UNIQUE KEY ..."): as UpgradeTable does with the keys of its statement. A table that does
// not exist is left alone.
bool UpgradeKeys(DbConnection &conn, const QString &table, const QStringList &keys, QStringList *changes,
                 QString *error);
