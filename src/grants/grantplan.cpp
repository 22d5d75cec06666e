#include "grants/grantplan.h"

#include "core/db.h"
#include "grants/amount.h"
#include "grants/filter.h"

#include <QSqlQuery>
#include <QStringList>

namespace {
// The grant number column is VARCHAR(20).
constexpr int GrantNumberWidth = 20;

const QStringList &sortKeys()
{
    static const QStringList keys{QStringLiteral("_Grant"),    QStringLiteral("castka1"),  QStringLiteral("castka3"),
                                  QStringLiteral("cislo"),     QStringLiteral("stredisko"), QStringLiteral("zahajeni"),
                                  QStringLiteral("ukonceni"),  QStringLiteral("castka2")};
    return keys;
}

// An empty detail is stored as one blank, as in a new row.
QString blankIfEmpty(const QString &text) { return text.trimmed().isEmpty() ? QStringLiteral(" ") : text; }
} // namespace

bool IsWholeRegister(const QString &grantActiv)
{
    const QString t = grantActiv.trimmed();
    return t.isEmpty() || t == QLatin1String(WholeRegister);
}

QString GrantPlanSortKey(int column)
{
    return sortKeys().value(column);
}

bool IsGrantEnded(const GrantPlanRow &row) { return !row.ukonceni.trimmed().isEmpty(); }

bool IsGrantArchived(const GrantPlanRow &row) { return row.archiv.trimmed() == QLatin1String("1"); }

bool FillGrantPlan(DbConnection &conn, const GrantPlanView &view, GrantPlanList *list)
{
    if (!conn.exec(QStringLiteral("UPDATE GrantyPlan SET Poskytnute=? WHERE Poskytnute IS NULL"),
                   {QStringLiteral("0,00")}))
        return false;

    QStringList where;
    QVariantList values;
    const bool whole = IsWholeRegister(view.grantActiv);
    if (!whole) {
        where << QStringLiteral("_grant=?");
        values << view.grantActiv.trimmed();
    }
    const Criterion permitted = GrantLikeCriterion(QStringLiteral("_GRANT"), view.userFilter);
    if (!permitted.isEmpty()) {
        where << QLatin1Char('(') + permitted.where + QLatin1Char(')');
        values << permitted.values;
    }
    // The key is one of the fixed column names, never text from outside.
    const QString key = sortKeys().contains(view.sortKey) ? view.sortKey : sortKeys().first();
    const QString sql =
        QStringLiteral("SELECT id, _grant, Castka1, Poskytnute, cislo, stredisko, agentura, zahajeni, ukonceni, "
                       "Castka2, archiv FROM GrantyPlan") +
        (where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + where.join(QStringLiteral(" AND "))) +
        QStringLiteral(" ORDER BY ") + key + (view.descending ? QStringLiteral(" DESC") : QStringLiteral(" ASC")) +
        QStringLiteral(", id");
    QSqlQuery q = conn.query();
    q.setForwardOnly(true);
    if (!conn.exec(q, sql, values))
        return false;

    list->rows.clear();
    list->grants.clear();
    while (q.next()) {
        GrantPlanRow r;
        r.id = q.value(0).toInt();
        r.grant = FieldText(q, 1);
        r.castka1 = FieldText(q, 2);
        r.poskytnute = FieldText(q, 3);
        r.cislo = FieldText(q, 4);
        r.stredisko = FieldText(q, 5);
        r.agentura = FieldText(q, 6);
        r.zahajeni = FieldText(q, 7);
        r.ukonceni = FieldText(q, 8);
        r.castka2 = FieldText(q, 9);
        r.archiv = FieldText(q, 10);
        list->grants.insert(r.grant);
        // The one grant asked for is shown whatever the hide boxes say.
        if (whole && ((view.hideArchived && IsGrantArchived(r)) || (view.hideEnded && IsGrantEnded(r))))
            continue;
        list->rows.append(r);
    }
    return true;
}

QString GrantNumberProblem(const QString &number)
{
    for (const QChar c : number)
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return QStringLiteral("Číslo GRANTu smí obsahovat jen číslice 0 až 9.");
    if (number.size() > GrantNumberWidth)
        return QStringLiteral("Číslo GRANTu smí mít nejvýše %1 číslic.").arg(GrantNumberWidth);
    if (number == QLatin1String(WholeRegister))
        return QStringLiteral("Číslo 999999 nelze použít jako číslo GRANTu.");
    return QString();
}

namespace {
// Id of the first row of a grant number, 0 when there is none.
bool findGrant(DbConnection &conn, const QString &grant, int *id)
{
    QSqlQuery q = conn.query();
    if (!conn.exec(q, QStringLiteral("SELECT * FROM GrantyPlan WHERE _grant=?"), {grant}))
        return false;
    *id = q.next() ? q.value(QStringLiteral("id")).toInt() : 0;
    return true;
}
} // namespace

bool AddGrant(DbConnection &conn, const QString &number)
{
    int id = 0;
    if (!findGrant(conn, number, &id))
        return false;
    if (id != 0)
        return true;
    const QString zero = QStringLiteral("0,00");
    const QString blank = QStringLiteral(" ");
    return conn.exec(QStringLiteral("INSERT INTO GrantyPlan (_grant, Castka1, Poskytnute, Castka2, Castka3, zahajeni, "
                                    "ukonceni, cislo, stredisko, agentura, archiv) VALUES (?,?,?,?,?,?,?,?,?,?,?)"),
                     {number, zero, zero, blank, zero, blank, blank, blank, blank, blank, QStringLiteral("0")});
}

bool RenameGrant(DbConnection &conn, const QString &current, const QString &renamed, bool *done)
{
    *done = false;
    Transaction t(conn);
    int id = 0;
    int taken = 0;
    if (!findGrant(conn, current, &id) || !findGrant(conn, renamed, &taken))
        return false;
    if (id == 0 || taken != 0)
        return true;
    if (!conn.exec(QStringLiteral("UPDATE GrantyPlan SET _grant=? WHERE id=?"), {renamed, id}) || !t.commit())
        return false;
    *done = true;
    return true;
}

QString GrantAmountText(const QString &text)
{
    return text.trimmed().isEmpty() ? QStringLiteral("0,00") : FormatAmount(AmountValue(text));
}

bool SaveGrantPlan(DbConnection &conn, const GrantPlanRow &d)
{
    return conn.exec(QStringLiteral("UPDATE GrantyPlan SET  poskytnute=?, castka2=?, castka1=?, zahajeni=?, "
                                    "ukonceni=?, cislo=?, stredisko=?, archiv=?, agentura=? WHERE _grant=?"),
                     {GrantAmountText(d.poskytnute), blankIfEmpty(d.castka2), GrantAmountText(d.castka1),
                      blankIfEmpty(d.zahajeni), blankIfEmpty(d.ukonceni), blankIfEmpty(d.cislo),
                      blankIfEmpty(d.stredisko), IsGrantArchived(d) ? QStringLiteral("1") : QStringLiteral("0"),
                      blankIfEmpty(d.agentura), d.grant});
}

bool CountDocuments(DbConnection &conn, const QString &grant, int *count)
{
    QSqlQuery q = conn.query();
    q.setForwardOnly(true);
    if (!conn.exec(q, QStringLiteral("SELECT `_grant` FROM documents WHERE _grant=?"), {grant}))
        return false;
    *count = 0;
    while (q.next())
        ++*count;
    return true;
}
