#pragma once
// The stock summaries: what was issued (from the journal CHEM_VYD) and what was ordered
// (goods lines of the stock orders in archobj), each an HTML page in Windows-1250 in the
// scratch folder, overwritten at each run.

#include <QDate>
#include <QString>

class DbConnection;

// "<folder>/Souhrn výdaného zboži - <warehouse>.html" and "... objednaného ...": characters a
// file name cannot hold become "_", and a very long name is cut.
QString VydejSummaryPath(const QString &folder, const QString &sklad);
QString ObjednSummaryPath(const QString &folder, const QString &sklad);

// The issues of one warehouse (all warehouses when sklad is empty), by name. Returns the
// number of rows written, -1 on failure with a Czech message in *error.
int WriteVydejSummary(DbConnection &centre, const QString &sklad, const QString &path, QString *error);

// Which order lines a summary of ordered goods takes.
struct ObjednFilter {
    QString skladFile;      // lines whose goods are items of this warehouse
    QString item;           // only this item's lines (empty: every item)
    int year = 0;           // only orders of this year (0: any)
    QString firma;          // only firms starting with this (empty: any)
    QDate from;             // only orders from this date on (invalid: any)
};
int WriteObjednSummary(DbConnection &centre, const QString &sklad, const ObjednFilter &filter, const QString &path,
                       QString *error);
