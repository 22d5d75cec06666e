#pragma once
// The search over every warehouse of the centre (the tables listed in `typ`).

#include <QString>
#include <QVector>

class DbConnection;

struct FindAllHit {
    QString nazev, katal, skladName, skladFile;
    quint32 nom = 0;
};

// The text as searched: "*" stands for any text, apostrophes and double quotes are dropped.
QString FindAllPattern(const QString &text);

// Hits whose name, catalogue number or catalogue label starts with the text, warehouse by
// warehouse in the order of `typ`, by name within each. A table that is missing (or whose
// name could not be a table) is passed over without a word. At most maxPerSklad hits come
// from one warehouse, so that a one-letter search stays a list a person can read.
QVector<FindAllHit> FindInAllSklady(DbConnection &centre, const QString &text, int maxPerSklad = 1000);
