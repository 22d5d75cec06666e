#pragma once
// The archive's list of orders read from the database: the keys of the rows a filter keeps,
// with the sums of their amounts, and the rows themselves by key, a page or a painted part of
// a list at a time. The archive screen and the batch command read it the same way.

#include "orders/objrecord.h"

#include <QList>

class DbConnection;

struct ObjListRow {
    int nom = 0;
    QString cisObj, datObj, grant, firma, castka;
    bool coml = false;
    ObjStateFields state;
};

// The sums of a list's price and booked amounts (Castka pieces 0 and 1). A row on several
// grants (a comma in its Grant) is left out: its price belongs to no one grant.
struct ObjSums {
    double price = 0, booked = 0;
    void add(const QString &castka, bool severalGrants);
};

// A list: the keys of its rows in number order, and its sums.
struct ObjListKeys {
    QList<int> noms;
    ObjSums sums;
};

// The number of rows the filter keeps; false on a server error.
bool ObjListCount(DbConnection &centre, const ObjFilter &filter, int *count);
// The keys and sums of every row the filter keeps. With a status entry (1..4) only the rows
// whose colour fits the status are kept: the server's colour `stav` and the short images of
// the texts the filter compares are read from one index, so a status list of thousands of
// rows does not read the wide rows; only those whose colour the server leaves to the program,
// or whose amounts are too long for their image, are read whole.
bool ObjListKeysOf(DbConnection &centre, const ObjFilter &filter, int statusIndex, ObjListKeys *list);
// Does the centre's archobj carry what a status list reads (the colour, the short images,
// the index objstav)? A database made by an earlier version lacks them until
// `fondarix-cli upgrade-db` (or init-db) has brought it up to date.
bool ObjListUpToDate(DbConnection &centre);
// What the archive says instead of a status list on such a database, and the batch list
// instead of any list (it reads them for every filter).
QString ObjListOldDatabaseText(const QString &database);
// The rows of the keys, in the keys' order; rows gone meanwhile are left out.
bool ObjListRowsOf(DbConnection &centre, const QList<int> &noms, QList<ObjListRow> *rows);
// Every row the filter keeps (the keys, then their rows).
bool ObjListRows(DbConnection &centre, const ObjFilter &filter, int statusIndex, QList<ObjListRow> *rows);
// The rows start .. start + count - 1 (in number order) of a list of total rows. The row keys
// are counted off the index from whichever end of the list is nearer, then only the page's
// rows are read, so the last page of 100,000 costs what the first does.
bool ObjListPage(DbConnection &centre, const ObjFilter &filter, int total, int start, int count,
                 QList<ObjListRow> *rows);
// A row read again by its key; false when it is gone.
bool ObjListRowOf(DbConnection &centre, int nom, ObjListRow *row);

// The state as the legend names it: "vytvořena", "připravena", "stáv výřizování", "dodáno",
// "vyfakturována", "zaúčtována".
QString ObjStateName(const ObjStateFields &state);
