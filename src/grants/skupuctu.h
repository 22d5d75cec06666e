#pragma once
// The global catalogue of account groups (SkupUctu): a name, a code filter and a default budget.

#include <QString>
#include <QVector>

class DbConnection;

struct GroupDef {
    int id = 0;
    QString ucet, nazev, castka, zustatek;   // Ucet holds the group's code filter
};

// The catalogue sorted by its filters.
bool LoadSkupUctu(DbConnection &conn, QVector<GroupDef> *groups);
// A new empty group: no filter, no name, amounts "0,00". Gives its id.
bool AddSkupUctu(DbConnection &conn, int *id);
bool SaveSkupUctu(DbConnection &conn, const GroupDef &group);
bool DeleteSkupUctu(DbConnection &conn, int id);

// After the amount was typed: empty becomes "0,00", Zustatek follows Castka.
void AmountEdited(GroupDef &group);
// The tidy form a group is kept in: filter and name trimmed, the filter tidied, the amount
// formatted, Zustatek equal to Castka.
GroupDef TidyGroup(const GroupDef &group);
// Brings every row of the catalogue to its tidy form, all rows or none.
bool TidySkupUctu(DbConnection &conn);
