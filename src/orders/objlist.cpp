#include "orders/objlist.h"

#include "core/db.h"
#include "core/text.h"

#include <QHash>
#include <QSet>

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

void ObjSums::add(const QString &castka, bool severalGrants)
{
    if (severalGrants)
        return;
    price += AmountOf(GetField(castka, 0));
    booked += AmountOf(GetField(castka, 1));
}

bool ObjListCount(DbConnection &centre, const ObjFilter &filter, int *count)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT COUNT(*) FROM archobj") + where(filter), filter.values) || !q.next())
        return false;
    *count = q.value(0).toInt();
    return true;
}

bool ObjListKeysOf(DbConnection &centre, const ObjFilter &filter, int statusIndex, ObjListKeys *list)
{
    const bool status = statusIndex >= 1 && statusIndex <= 4;
    QString sql = where(filter);
    QVariantList values = filter.values;
    if (status) {
        // The status entries are numbered as the colours of `stav`; 9 is undecided.
        sql = QStringLiteral(" FORCE INDEX (objstav) WHERE stav IN (?, 9)")
              + (filter.sql.isEmpty() ? QString() : QStringLiteral(" AND (") + filter.sql + QLatin1Char(')'));
        values.prepend(statusIndex);
    }
    QSqlQuery q = centre.query();
    q.setForwardOnly(true);
    if (!centre.exec(q, QStringLiteral("SELECT nom, stav, castka_sum, grant_multi FROM archobj") + sql + QStringLiteral(" ORDER BY cis_obj, nom"),
                     values))
        return false;
    struct Entry {
        int nom;
        QString amounts;
        bool severalGrants, colourOpen;
    };
    QList<Entry> entries;
    QList<int> whole;
    while (q.next()) {
        Entry e{q.value(0).toInt(), q.value(2).toString(), q.value(3).toInt() != 0, status && q.value(1).toInt() == 9};
        // The image holds 61 characters: at that length the amounts may be cut.
        if (e.colourOpen || e.amounts.size() > 60)
            whole << e.nom;
        entries << e;
    }
    QList<ObjListRow> read;
    if (!whole.isEmpty() && !ObjListRowsOf(centre, whole, &read))
        return false;
    QHash<int, const ObjListRow *> rowOfKey;
    for (const ObjListRow &row : read)
        rowOfKey.insert(row.nom, &row);
    const QSet<int> wholeKeys(whole.begin(), whole.end());
    list->noms.clear();
    list->sums = {};
    for (const Entry &e : entries) {
        if (!wholeKeys.contains(e.nom)) {
            list->noms << e.nom;
            list->sums.add(e.amounts, e.severalGrants);
            continue;
        }
        const ObjListRow *row = rowOfKey.value(e.nom);
        if (!row || (e.colourOpen && !ObjColourFitsStatus(ObjColour(row->state), statusIndex)))
            continue;   // gone meanwhile, or of another colour
        list->noms << e.nom;
        list->sums.add(row->castka, row->grant.contains(QLatin1Char(',')));
    }
    return true;
}

bool ObjListUpToDate(DbConnection &centre)
{
    QSqlQuery q = centre.query();
    return centre.exec(q, QStringLiteral("SELECT (SELECT COUNT(*) FROM information_schema.COLUMNS WHERE TABLE_SCHEMA = DATABASE() "
                                         "AND TABLE_NAME = 'archobj' AND COLUMN_NAME IN ('stav', 'castka_f', 'objwf_f', "
                                         "'dat_vyriz_f', 'objzauct_f', 'castka_sum', 'grant_multi')), "
                                         "(SELECT COUNT(*) FROM information_schema.STATISTICS WHERE TABLE_SCHEMA = DATABASE() "
                                         "AND TABLE_NAME = 'archobj' AND INDEX_NAME = 'objstav')"))
        && q.next() && q.value(0).toInt() == 7 && q.value(1).toInt() > 0;
}

QString ObjListOldDatabaseText(const QString &database)
{
    return QStringLiteral("Databáze střediska %1 pochází ze starší verze programu; správce ji převede příkazem "
                          "fondarix-cli upgrade-db.")
        .arg(database);
}

bool ObjListRowsOf(DbConnection &centre, const QList<int> &noms, QList<ObjListRow> *rows)
{
    QHash<int, ObjListRow> found;
    constexpr qsizetype Chunk = 500;
    for (qsizetype at = 0; at < noms.size(); at += Chunk) {
        QVariantList values;
        for (int nom : noms.mid(at, Chunk))
            values << nom;
        QSqlQuery q = centre.query();
        q.setForwardOnly(true);
        const QString marks = QStringList(values.size(), QStringLiteral("?")).join(QLatin1Char(','));
        if (!centre.exec(q, QStringLiteral("SELECT ") + Columns + QStringLiteral(" FROM archobj WHERE nom IN (") + marks + QLatin1Char(')'),
                         values))
            return false;
        while (q.next()) {
            const ObjListRow row = rowOf(q);
            found.insert(row.nom, row);
        }
    }
    rows->clear();
    for (int nom : noms)
        if (const auto it = found.constFind(nom); it != found.cend())
            rows->append(*it);
    return true;
}

bool ObjListRows(DbConnection &centre, const ObjFilter &filter, int statusIndex, QList<ObjListRow> *rows)
{
    ObjListKeys list;
    return ObjListKeysOf(centre, filter, statusIndex, &list) && ObjListRowsOf(centre, list.noms, rows);
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
    QSqlQuery q = centre.query();
    q.setForwardOnly(true);
    if (!centre.exec(q, sql, values))
        return false;
    rows->clear();
    while (q.next())
        rows->append(rowOf(q));
    if (fromEnd)
        std::reverse(rows->begin(), rows->end());
    return true;
}

bool ObjListRowOf(DbConnection &centre, int nom, ObjListRow *row)
{
    QList<ObjListRow> rows;
    if (!ObjListRowsOf(centre, {nom}, &rows) || rows.isEmpty())
        return false;
    *row = rows.first();
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
