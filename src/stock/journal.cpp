#include "stock/journal.h"

#include "core/db.h"

#include <QSqlQuery>

namespace {
QString where(const QString &sklad) { return sklad.isEmpty() ? QString() : QStringLiteral(" WHERE sklad=?"); }
QVariantList values(const QString &sklad) { return sklad.isEmpty() ? QVariantList() : QVariantList{sklad}; }

bool failed(DbConnection &centre, QString *error)
{
    if (error)
        *error = centre.errorText();
    return false;
}
} // namespace

int CountJournal(DbConnection &centre, const QString &sklad, QString *error)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT COUNT(*) FROM CHEM_VYD") + where(sklad), values(sklad)) || !q.next()) {
        failed(centre, error);
        return -1;
    }
    return q.value(0).toInt();
}

bool ReadJournal(DbConnection &centre, const QString &sklad, int first, int count, QVector<JournalRow> *rows,
                 QString *error)
{
    rows->clear();
    if (first < 0 || count <= 0)
        return true;
    // The page's ids come from the key alone (name, catalogue number, id), which skips to the
    // page without reading the rows before it; only the page's own rows are read whole.
    QVariantList bound = values(sklad);
    bound << count << first;
    QSqlQuery q = centre.query();
    q.setForwardOnly(true);
    if (!centre.exec(q,
                     QStringLiteral("SELECT v.NAM_CHIM, v.KATAL, v.KUS_VY, v.MIRA, v.KOMU, v.DAT_VYD, v.sklad "
                                    "FROM CHEM_VYD v JOIN (SELECT id FROM CHEM_VYD")
                         + where(sklad)
                         + QStringLiteral(" ORDER BY nam_chim, katal, id LIMIT ? OFFSET ?) page ON page.id = v.id "
                                          "ORDER BY v.nam_chim, v.katal, v.id"),
                     bound))
        return failed(centre, error);
    while (q.next())
        rows->push_back({FieldText(q, 0), FieldText(q, 1), FieldText(q, 2), FieldText(q, 3), FieldText(q, 4),
                         q.value(5).toDate(), FieldText(q, 6)});
    return true;
}
