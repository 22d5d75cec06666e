#pragma once
// The register of grants (GrantyPlan): which rows the register shows and in what order,
// and the writes of its commands: add, renumber, save the details.
// A grant's delete is DeleteGrantCascade (skupuctugrant.h).

#include <QSet>
#include <QString>
#include <QVector>

class DbConnection;

struct GrantPlanRow {
    int id = 0;
    QString grant, castka1, poskytnute, cislo, stredisko, agentura, zahajeni, ukonceni, castka2, archiv;
};

// The register opened with "999999" or empty text shows every grant; any other value is
// the one grant to show, read-only.
inline constexpr const char *WholeRegister = "999999";
bool IsWholeRegister(const QString &grantActiv);

// Sort key of a heading click for grid columns 0..7; empty for the others.
QString GrantPlanSortKey(int column);

bool IsGrantEnded(const GrantPlanRow &row);      // any value in ukonceni, even a future date
bool IsGrantArchived(const GrantPlanRow &row);   // archiv "1"

// What the register is asked to show.
struct GrantPlanView {
    QString grantActiv = QLatin1String(WholeRegister);
    QString userFilter = QStringLiteral("0");   // the user's permitted grants; "0" all
    QString sortKey = QStringLiteral("_Grant");
    bool descending = false;
    bool hideArchived = false;                  // Check2, "ARCHIVNI"
    bool hideEnded = false;                     // Check3, "UKONCENE"
};

struct GrantPlanList {
    QVector<GrantPlanRow> rows;   // the rows shown, in order
    QSet<QString> grants;         // numbers of every row read, shown or hidden
};

// Repairs a null Poskytnute to "0,00", then reads the register as the view asks.
// On failure returns false; the connection keeps the error.
bool FillGrantPlan(DbConnection &conn, const GrantPlanView &view, GrantPlanList *list);

// Why a typed grant number cannot be used; empty when it can. A grant number is digits
// only, as the accounting's cost centres are, and never the register's "999999".
QString GrantNumberProblem(const QString &number);

// Adds a grant with the values of a new row, unless a row of that number exists.
bool AddGrant(DbConnection &conn, const QString &number);

// Gives the row of `current` the number `renamed`; other tables keep the old number.
// Nothing happens (and *done stays false) when `current` has no row or `renamed` has one.
bool RenameGrant(DbConnection &conn, const QString &current, const QString &renamed, bool *done);

// An amount box's text as stored: empty gives "0,00", any other text the formatted amount.
QString GrantAmountText(const QString &text);

// Stores the details of a grant: amounts through GrantAmountText, other empty texts as " ",
// archiv "1" or "0".
bool SaveGrantPlan(DbConnection &conn, const GrantPlanRow &details);

// Number of the grant's stored documents.
bool CountDocuments(DbConnection &conn, const QString &grant, int *count);
