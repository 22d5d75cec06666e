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
// Rows in number order from offset, at most limit (-1: all). With a status entry (1..4) only
// the rows whose colour fits the status are kept.
bool ObjListRows(DbConnection &centre, const ObjFilter &filter, int statusIndex, int offset, int limit,
                 QList<ObjListRow> *rows);
// A row read again by its key; false when it is gone.
bool ObjListRowOf(DbConnection &centre, int nom, ObjListRow *row);

// The state as the legend names it: "vytvořena", "připravena", "stáv výřizování", "dodáno",
// "vyfakturována", "zaúčtována".
QString ObjStateName(const ObjStateFields &state);
