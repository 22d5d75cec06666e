#pragma once
// Code filters of account groups: "501*,502*,-602*". Items are account prefixes; "*" adds
// nothing, "-" marks reversed accounts, blanks around items are allowed.
// A criterion is an SQL condition with bound values, ready to follow WHERE.

#include <QString>
#include <QStringList>
#include <QVariantList>

struct Criterion {
    QString where;          // empty: no condition, every row
    QVariantList values;    // bound in order of the "?" in where
    bool isEmpty() const { return where.isEmpty(); }
};

// Tidied filter text: carriage returns and line feeds removed, then ",," and ",,," each
// replaced by "," in one pass, in this order (what picking and unpicking accounts leaves).
QString TidyFilter(const QString &filter);

// The prefixes of a filter: "-" and "*" removed, split at commas, items trimmed,
// blank items dropped. "6*, -801*,,123000" gives 6, 801, 123000.
QStringList FilterItems(const QString &filter);

// Which rows a filter selects, in the three places that ask.
enum class CriterionForm {
    Movements,   // ImportUctyCastky of one grant: (ucet LIKE 'item%' AND GRANT='grant')
    Accounts,    // accounts and classes of a grant: (Grant like 'grant%' and Ucet like 'item%')
    Budget,      // RozpocetFakt of one grant: (Grant like 'grant' and Ucet like 'item%')
};
// One clause per item, joined by OR. A filter without items gives the empty criterion,
// so a group with an empty filter selects every row.
Criterion BuildCriterion(CriterionForm form, const QString &filter, const QString &grant);

// The sign of a movement row in a group's sum: MD +1, DAL -1; when the filter holds a "-"
// and one of its items (without "-" and "*") equals the account exactly, the other way.
int MovementSign(const QString &filter, const QString &account, const QString &side);
// The accounts whose sign a filter reverses: none without a "-", else every item with "-" and
// "*" removed and trimmed (an empty item among them).
QStringList ReversedAccounts(const QString &filter);

// The filter after an account picked in the catalogue: appended after ", " unless empty.
QString AppendAccount(const QString &filter, const QString &account);

// The user's list of permitted grants ("0" all, else "12,15,...") as prefix terms on a
// grant column: (column like 'number%') or ... . A trailing comma gives a term that
// matches every grant. "0" gives the empty criterion.
Criterion GrantLikeCriterion(const QString &column, const QString &userFilter);

// The grants a user may see in the drawdown list: for "0" every grant not archived
// (archiv empty, null or "0"), else each listed number that is not archived.
Criterion PermittedGrantsCriterion(const QString &userFilter);

// Is the grant one of those the user's list names? "0" (or nothing) permits every grant.
bool GrantPermitted(const QString &userFilter, const QString &grant);
