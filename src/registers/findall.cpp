#include "registers/findall.h"

#include "core/db.h"

#include <QRegularExpression>
#include <QSqlQuery>

QString FindAllPattern(const QString &text)
{
    QString pattern = text;
    pattern.replace(QLatin1Char('*'), QLatin1Char('%'));
    pattern.remove(QLatin1Char('\'')).remove(QLatin1Char('"'));
    return pattern + QLatin1Char('%');
}

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
        const QString sql = QStringLiteral("SELECT nom, nazev, katal FROM ") + file
            + QStringLiteral(" WHERE nazev LIKE ? OR katal LIKE ? OR zkatalog LIKE ? ORDER BY nazev ASC LIMIT %1")
                  .arg(maxPerSklad);
        if (!centre.exec(q, sql, {pattern, pattern, pattern}))
            continue;   // a table dropped by hand
        while (q.next())
            hits.push_back({FieldText(q, 1), FieldText(q, 2), name, file, q.value(0).toUInt()});
    }
    return hits;
}
