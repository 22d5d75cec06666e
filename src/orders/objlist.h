#pragma once
// The archive's list of orders read from the database: the rows a filter keeps, one page
// of them or all, with what the grid and the colour need. The archive screen and the batch
// command read it the same way.

#include "orders/objrecord.h"

#include <QList>

class DbConnection;

struct ObjListRow {
    int nom = 0;
    QString cisObj, datObj, grant, firma, castka;
    bool coml = false;
    ObjStateFields state;
};

// The number of rows the filter keeps; false on a server error.
bool ObjListCount(DbConnection &centre, const ObjFilter &filter, int *count);
// Every row the filter keeps, in number order. With a status entry (1..4) only the rows whose
// colour fits the status are kept; the server's column `stav` hands over just the rows of that
// colour and those it leaves to the program, so the whole table is not read.
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
