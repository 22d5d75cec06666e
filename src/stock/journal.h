#pragma once
// The journal of issues (CHEM_VYD) as the issue archive reads it: a page at a time, so that
// a journal of any length opens at once. The order is name, catalogue number, and among
// rows equal in both the order they were written in; the keys of the table serve it.

#include <QDate>
#include <QString>
#include <QVector>

class DbConnection;

struct JournalRow {
    QString nazev, katal, kusVy, mira, komu;
    QDate datVyd;
    QString sklad;
};

// The rows of one warehouse (by its name; all warehouses when empty). -1 on failure, with
// the server's message in *error.
int CountJournal(DbConnection &centre, const QString &sklad, QString *error);
// At most count rows from position first (from 0) on, in the journal's order.
bool ReadJournal(DbConnection &centre, const QString &sklad, int first, int count, QVector<JournalRow> *rows,
                 QString *error);
