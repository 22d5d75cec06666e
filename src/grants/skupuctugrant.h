#pragma once
// The account groups of each grant (SkupUctuGrant): their figures, the check that the
// groups' budgets stay within the grant's budget, and their removal with a grant.

#include <QMap>
#include <QString>
#include <QVariantList>
#include <QVector>

class DbConnection;

struct GroupRow {
    int id = 0;
    QString grant, ucet, nazev;
    QString plan, cerpani, zustatek, procent;   // Castka_plan, Castka_cerpani, Zustatek, Procent
};

// Zustatek = plan - cerpani; Procent = the share remaining, computed from the whole part of
// Zustatek only (so 749,50 of 1 000,00 gives 74,90), "0,00" when there is no plan.
// Castka_plan is written back formatted, "0,00" when it was empty.
void SpoctiRadek(GroupRow &row);

struct GroupTotals {
    double plan = 0, cerpani = 0, zustatek = 0;
};
GroupTotals SumGroupRows(const QVector<GroupRow> &rows);
// Sum of Castka_plan per grant.
QMap<QString, double> PlanSumsByGrant(const QVector<GroupRow> &rows);

// The check before a group's new budget is taken: the grant's groups together may not
// exceed Castka1. Returns the refusal to show, or an empty text when the value is accepted.
QString BudgetCheck(const QString &grant, const QString &castka1, const QString &newValue,
                    const QString &oldValue, const QString &shownTotal);

// Group rows sorted by grant and name, limited by the user's list of grants ("0": all).
// On failure returns false; the connection keeps the error.
bool LoadStredisko(DbConnection &conn, const QString &userFilter, QVector<GroupRow> *rows);

// Group rows by a condition (empty: all) in an order, e.g. "`Grant` LIKE ?", "Ucet, id".
bool QueryGroupRows(DbConnection &conn, const QString &where, const QVariantList &values, const QString &order,
                    QVector<GroupRow> *rows);

// Castka_plan, Zustatek and Procent of a row.
bool SaveGroupFigures(DbConnection &conn, const GroupRow &row);
// A typed Castka_plan: the row recomputed (SpoctiRadek) and stored; the row changes only on success.
bool StoreGroupPlan(DbConnection &conn, GroupRow &row, const QString &value);
bool DeleteGroupRow(DbConnection &conn, int id);

// Removes every group row of the grant DelGrant.
bool DeleteGrantActiv(DbConnection &conn, const QString &DelGrant);
// Removes a grant: its group rows, its GrantyPlan row, its documents, all or nothing.
// Other tables keep the grant's rows.
bool DeleteGrantCascade(DbConnection &conn, const QString &grant);

// Grants with their planned budget, in the user's list, sorted by number.
struct GrantBudget {
    QString grant, castka1;
};
bool LoadGrantBudgets(DbConnection &conn, const QString &userFilter, QVector<GrantBudget> *grants);

// The comparison of each grant's budget with the sum of its groups' budgets: a heading and a
// line per grant whose two differ; empty when none differs.
QString CompareText(const QVector<GrantBudget> &grants, const QMap<QString, double> &planSums);
