#include "registers/findall.h"

#include "core/db.h"

#include <QRegularExpression>
#include <QSqlQuery>
#include <QStringList>

QString FindAllPattern(const QString &text)
{
    QString pattern = text;
    pattern.replace(QLatin1Char('*'), QLatin1Char('%'));
    pattern.remove(QLatin1Char('\'')).remove(QLatin1Char('"'));
    return pattern + QLatin1Char('%');
}

namespace {
// The search of one warehouse table, by name (then catalogue number, label and key, so that
// the order is the same at every run). A pattern that starts with a fixed text reads the
// indexes of the three columns: one part of a union for each, each part cut at the limit in
// that order, which the name's index (name, number, label) gives without reading a row. One
// OR of the three would let the server walk the whole name index instead. A pattern that
// starts with a wildcard can seek in no index: the one statement reads the name's index once.
QString searchStatement(const QString &file, const QString &pattern, int limit)
{
    const QString select = QStringLiteral("SELECT nom, nazev, katal, zkatalog FROM ") + file + QStringLiteral(" WHERE ");
    const QString order = QStringLiteral(" ORDER BY nazev ASC, katal, zkatalog, nom LIMIT %1").arg(limit);
    if (pattern.startsWith(QLatin1Char('%')) || pattern.startsWith(QLatin1Char('_')))
        return select + QStringLiteral("nazev LIKE ? OR katal LIKE ? OR zkatalog LIKE ?") + order;
    QStringList parts;
    for (const char *column : {"nazev", "katal", "zkatalog"})
        parts << QLatin1Char('(') + select + QLatin1String(column) + QStringLiteral(" LIKE ?") + order + QLatin1Char(')');
    // UNION, not UNION ALL: a row found by two columns is one hit.
    return parts.join(QStringLiteral(" UNION ")) + order;
}
} // namespace

QVector<FindAllHit> FindInAllSklady(DbConnection &centre, const QString &text, int maxPerSklad)
{
    static const QRegularExpression table(QStringLiteral("^[A-Za-z0-9_]{1,64}$"));
    QVector<FindAllHit> hits;
    QSqlQuery list = centre.query();
    if (!centre.exec(list, QStringLiteral("SELECT Typ, File FROM typ ORDER BY id")))
        return hits;
    QVector<std::pair<QString, QString>> sklady;
    while (list.next())
        sklady.push_back({FieldText(list, 0), FieldText(list, 1)});
    const QString pattern = FindAllPattern(text);
    QSqlQuery q = centre.query();
    for (const auto &[name, file] : sklady) {
        if (!table.match(file).hasMatch())
            continue;
        const QString sql = searchStatement(file, pattern, maxPerSklad);
        if (!centre.exec(q, sql, {pattern, pattern, pattern}))
            continue;   // a table dropped by hand
        while (q.next())
            hits.push_back({FieldText(q, 1), FieldText(q, 2), name, file, q.value(0).toUInt()});
    }
    return hits;
}
