#include "orders/objlist.h"

#include "core/db.h"

#include <algorithm>

namespace {
const QString Columns = QStringLiteral("nom, cis_obj, Dat_obj, `Grant`, Firma, Castka, coml, Dat_vyriz, objWF, Cis_global");

ObjListRow rowOf(const QSqlQuery &q)
{
    ObjListRow row;
    row.nom = q.value(0).toInt();
    row.cisObj = q.value(1).toString();
    row.datObj = q.value(2).toString();
    row.grant = q.value(3).toString();
    row.firma = q.value(4).toString();
    row.castka = q.value(5).toString();
    row.coml = q.value(6).toInt() == 1;
    row.state = {q.value(5).isNull(), row.castka, q.value(7).toString(), q.value(8).toString(), q.value(9).toString()};
    return row;
}

QString where(const ObjFilter &f)
{
    return f.sql.isEmpty() ? QString() : QStringLiteral(" WHERE ") + f.sql;
}
} // namespace

bool ObjListCount(DbConnection &centre, const ObjFilter &filter, int *count)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT COUNT(*) FROM archobj") + where(filter), filter.values) || !q.next())
        return false;
    *count = q.value(0).toInt();
    return true;
}

namespace {
bool readRows(DbConnection &centre, const QString &sql, const QVariantList &values, int statusIndex,
              QList<ObjListRow> *rows)
{
    QSqlQuery q = centre.query();
    q.setForwardOnly(true);
    if (!centre.exec(q, sql, values))
        return false;
    rows->clear();
    while (q.next()) {
        ObjListRow row = rowOf(q);
        if (ObjColourFitsStatus(ObjColour(row.state), statusIndex))
            rows->append(row);
    }
    return true;
}
} // namespace

bool ObjListRows(DbConnection &centre, const ObjFilter &filter, int statusIndex, QList<ObjListRow> *rows)
{
    QString sql = filter.sql;
    QVariantList values = filter.values;
    if (statusIndex >= 1 && statusIndex <= 4) {
        // The status entries are numbered as the colours of `stav`; 9 is undecided.
        sql = (sql.isEmpty() ? QString() : QLatin1Char('(') + sql + QStringLiteral(") AND ")) + QStringLiteral("stav IN (?, 9)");
        values << statusIndex;
    }
    return readRows(centre,
                    QStringLiteral("SELECT ") + Columns + QStringLiteral(" FROM archobj")
                        + (sql.isEmpty() ? QString() : QStringLiteral(" WHERE ") + sql) + QStringLiteral(" ORDER BY cis_obj, nom"),
                    values, statusIndex, rows);
}

bool ObjListPage(DbConnection &centre, const ObjFilter &filter, int total, int start, int count,
                 QList<ObjListRow> *rows)
{
    start = std::clamp(start, 0, std::max(0, total));
    count = std::clamp(count, 0, std::max(0, total - start));
    // From the end the page is the rows after the last total - start - count, read backwards.
    const bool fromEnd = total - start - count < start;
    const QString order = fromEnd ? QStringLiteral(" ORDER BY cis_obj DESC, nom DESC") : QStringLiteral(" ORDER BY cis_obj, nom");
    QVariantList values = filter.values;
    values << count << (fromEnd ? total - start - count : start);
    const QString sql = QStringLiteral("SELECT ") + Columns + QStringLiteral(" FROM archobj JOIN (SELECT nom AS k FROM archobj")
                        + where(filter) + order + QStringLiteral(" LIMIT ? OFFSET ?) page ON nom = page.k") + order;
    if (!readRows(centre, sql, values, 0, rows))
        return false;
    if (fromEnd)
        std::reverse(rows->begin(), rows->end());
    return true;
}

bool ObjListRowOf(DbConnection &centre, int nom, ObjListRow *row)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT ") + Columns + QStringLiteral(" FROM archobj WHERE nom = ?"), {nom}) || !q.next())
        return false;
    *row = rowOf(q);
    return true;
}

QString ObjStateName(const ObjStateFields &state)
{
    const QColor c = ObjColour(state);
    if (c == ObjColours::Yellow)
        return QStringLiteral("stáv výřizování");
    if (c == ObjColours::Green)
        return QStringLiteral("dodáno");
    if (c == ObjColours::Red)
        return QStringLiteral("vyfakturována");
    if (c == ObjColours::Grey)
        return QStringLiteral("zaúčtována");
    return state.cisGlobal.trimmed().isEmpty() ? QStringLiteral("vytvořena") : QStringLiteral("připravena");
}
