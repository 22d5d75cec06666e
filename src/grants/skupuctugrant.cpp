#include "grants/skupuctugrant.h"

#include "core/db.h"
#include "core/number.h"
#include "grants/amount.h"
#include "grants/filter.h"

#include <QSqlQuery>

namespace {
const QString LineBreak = QStringLiteral("\r\n");

// Amounts compared to the heller, so that sums of decimals do not differ by a rounding error.
double Cents(double value) { return RoundHalfEven(value, 2); }
} // namespace

void SpoctiRadek(GroupRow &row)
{
    row.plan = FormatAmount(AmountValue(AmountText(row.plan)));
    row.zustatek = FormatAmount(AmountValue(row.plan) - AmountValue(row.cerpani));
    if (row.plan == QLatin1String("0,00")) {
        row.procent = QStringLiteral("0,00");
        return;
    }
    // The scanner stops at the decimal comma: only the whole crowns of the rest count.
    const double whole = ScanNumber(row.zustatek);
    row.procent = FormatAmount(RoundHalfEven(whole * 100.0 / AmountValue(row.plan), 1));
}

GroupTotals SumGroupRows(const QVector<GroupRow> &rows)
{
    GroupTotals t;
    for (const GroupRow &r : rows) {
        t.plan += AmountValue(AmountText(r.plan));
        t.cerpani += AmountValue(AmountText(r.cerpani));
        t.zustatek += AmountValue(AmountText(r.zustatek));
    }
    return t;
}

QMap<QString, double> PlanSumsByGrant(const QVector<GroupRow> &rows)
{
    QMap<QString, double> sums;
    for (const GroupRow &r : rows)
        sums[r.grant] += AmountValue(AmountText(r.plan));
    return sums;
}

QString BudgetCheck(const QString &grant, const QString &castka1, const QString &newValue,
                    const QString &oldValue, const QString &shownTotal)
{
    const double total = AmountValue(AmountText(shownTotal)) - AmountValue(AmountText(oldValue)) +
                         AmountValue(AmountText(newValue));
    const double budget = AmountValue(AmountText(castka1));
    if (Cents(total) <= Cents(budget))
        return {};
    return QStringLiteral("Částka za skupinu překročila rozpočtovou částku za tento GRANT: ") + grant + LineBreak +
           QStringLiteral(" z řozpočtem ") + AmountText(castka1) + QStringLiteral(" Kč na částku ") +
           FormatAmount(total - budget) + QStringLiteral(" Kč!");
}

bool LoadStredisko(DbConnection &conn, const QString &userFilter, QVector<GroupRow> *rows)
{
    const Criterion c = GrantLikeCriterion(QStringLiteral("`Grant`"), userFilter);
    return QueryGroupRows(conn, c.where, c.values, QStringLiteral("`grant`, nazev"), rows);
}

bool QueryGroupRows(DbConnection &conn, const QString &where, const QVariantList &values, const QString &order,
                    QVector<GroupRow> *rows)
{
    QSqlQuery q = conn.query();
    q.setForwardOnly(true);
    const QString sql = QStringLiteral("SELECT id, `Grant`, Ucet, Nazev, Castka_plan, Castka_cerpani, Zustatek, Procent "
                                       "FROM SkupUctuGrant ") +
                        (where.isEmpty() ? QString() : QStringLiteral("WHERE ") + where) +
                        QStringLiteral(" ORDER BY ") + order;
    if (!conn.exec(q, sql, values))
        return false;
    rows->clear();
    while (q.next()) {
        GroupRow r;
        r.id = q.value(0).toInt();
        r.grant = FieldText(q, 1);
        r.ucet = FieldText(q, 2);
        r.nazev = FieldText(q, 3);
        r.plan = FieldText(q, 4);
        r.cerpani = FieldText(q, 5);
        r.zustatek = FieldText(q, 6);
        r.procent = FieldText(q, 7);
        rows->append(r);
    }
    return true;
}

bool SaveGroupFigures(DbConnection &conn, const GroupRow &row)
{
    return conn.exec(QStringLiteral("UPDATE skupuctugrant SET `Castka_plan` = ?, `Zustatek` = ?, `Procent` = ? WHERE id=?"),
                     {row.plan, row.zustatek, row.procent, row.id});
}

bool StoreGroupPlan(DbConnection &conn, GroupRow &row, const QString &value)
{
    GroupRow edited = row;
    edited.plan = value;
    SpoctiRadek(edited);
    if (!SaveGroupFigures(conn, edited))
        return false;
    row = edited;
    return true;
}

bool DeleteGroupRow(DbConnection &conn, int id)
{
    return conn.exec(QStringLiteral("DELETE FROM skupuctugrant WHERE id=?"), {id});
}

bool DeleteGrantActiv(DbConnection &conn, const QString &DelGrant)
{
    return conn.exec(QStringLiteral("DELETE FROM skupuctugrant WHERE `Grant`=?"), {DelGrant});
}

bool DeleteGrantCascade(DbConnection &conn, const QString &grant)
{
    Transaction t(conn);
    return DeleteGrantActiv(conn, grant) &&
           conn.exec(QStringLiteral("DELETE From GrantyPlan WHERE _grant = ?"), {grant}) &&
           conn.exec(QStringLiteral("DELETE From documents WHERE _grant = ?"), {grant}) && t.commit();
}

bool LoadGrantBudgets(DbConnection &conn, const QString &userFilter, QVector<GrantBudget> *grants)
{
    const Criterion c = GrantLikeCriterion(QStringLiteral("_GRANT"), userFilter);
    QSqlQuery q = conn.query();
    q.setForwardOnly(true);
    const QString sql = QStringLiteral("SELECT _grant, Castka1 FROM GrantyPlan ") +
                        (c.isEmpty() ? QString() : QStringLiteral("WHERE ") + c.where) +
                        QStringLiteral(" ORDER BY _grant");
    if (!conn.exec(q, sql, c.values))
        return false;
    grants->clear();
    while (q.next())
        grants->append({FieldText(q, 0), FieldText(q, 1)});
    return true;
}

QString CompareText(const QVector<GrantBudget> &grants, const QMap<QString, double> &planSums)
{
    QString text = QStringLiteral("Seznam GRANTu v porovnání rožpočtových částek a částek v Skupinach účtů") +
                   LineBreak + LineBreak;
    bool differs = false;
    for (const GrantBudget &g : grants) {
        const double sum = planSums.value(g.grant);
        if (Cents(AmountValue(AmountText(g.castka1))) == Cents(sum))
            continue;
        differs = true;
        text += QStringLiteral("Grant ") + g.grant + QLatin1Char('\t') + QStringLiteral("Rozpočet  plan: ") +
                AmountText(g.castka1) + QLatin1Char('\t') + QStringLiteral("fakt: ") + FormatAmount(sum) + LineBreak;
    }
    return differs ? text : QString();
}
