#pragma once
// Users of the program (rows of sys_users): role names, the two list conversions,
// reading and writing the rows, and the rules of the grant-filter field.

#include "core/db.h"

#include <QString>
#include <QStringList>
#include <QVector>

struct SessionRecord;

// --- roles -------------------------------------------------------------------------

// The name of a role as the grid shows it; any number without a name of its own,
// 6 and 0 included, is "Super uživatel".
QString TypName(int typ);
// The six names in the order of the role list (cmbTyp(0)).
QStringList TypListNames();
// The filter list (cmbTyp(1)): " - Vše - " before the six names.
QStringList TypFilterNames();
// Role number of a position in the role list; an unknown position gives 0.
short TypFromList(int position);
// The older table, kept for compatibility; no screen uses it.
short TypFromListOld(int position);
// Role of a position in the filter list: position 0 is no filter (0).
short TypFromFilterList(int position);
// Position in the role list of a role name from the grid, by exact text; unknown gives 1.
int ListPositionFromTypText(const QString &text);

// --- the rows ---------------------------------------------------------------------

struct UserRow {
    int key = 0;
    QString prijmeni;
    QString jmeno;
    QString titul;
    QString login;
    QString password;
    int typ = 0;
    QString filtrGrant;
};

// The rows the logged-in user may see: everyone (optionally one role, filterTyp > 0)
// for the administrator, otherwise the user's own row. False with a message text on failure.
bool FillUsers(const SessionRecord &session, int filterTyp, QVector<UserRow> &rows, QString *error);
// Adds an empty row (a blank first name) and gives its key.
bool AddUser(int *newKey, QString *error);
// Writes the editable values of the row with row.key; a refused value is named by its caption.
bool SaveUser(const UserRow &row, QString *error, const FieldCaptions &captions = {});
bool DeleteUser(int key, QString *error);

// Grant numbers for the filter picker (column _GRANT of GrantyPlan); empty when the
// grant database or its table is not there.
QStringList GrantNumbers();

// --- the grant-filter field -------------------------------------------------------

// The field's text as it is read: doubled commas removed, trimmed.
QString ReadFilterText(const QString &text);
// The text after a grant is picked: an empty or "0" filter starts afresh; the grant is
// appended with a trailing comma unless the list already has it (ListHasValue says so).
QString FilterAfterPick(const QString &text, const QString &grant);
// The text after Backspace: the last whole item removed; nothing left gives "0".
QString FilterAfterBackspace(const QString &text);
