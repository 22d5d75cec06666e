#include "stock/summaries.h"

#include "core/buildobjlj.h"
#include "core/db.h"
#include "core/number.h"
#include "core/text.h"
#include "stock/sklad.h"

#include <QSet>
#include <QSqlQuery>

namespace {
QString fileName(const QString &folder, const QString &prefix, const QString &sklad)
{
    QString name = sklad.left(120);
    for (QChar &c : name)
        if (QStringLiteral("/\\:*?\"<>|").contains(c) || c.unicode() < 32)
            c = QLatin1Char('_');
    return folder + QLatin1Char('/') + prefix + name + QStringLiteral(".html");
}

QString esc(const QString &text) { return text.toHtmlEscaped(); }

// The goods heading, letter by letter.
QString spaced(const QString &text)
{
    QStringList letters;
    for (const QChar c : text)
        letters << (c == QLatin1Char(' ') ? QStringLiteral("&nbsp;") : QString(c));
    return letters.join(QStringLiteral("&nbsp;"));
}

void head(BuildObjLJ &out, const QString &title, const QString &sklad)
{
    out.Line(QStringLiteral("<head>"));
    out.Line(QStringLiteral("<meta http-equiv=Content-Language content=cs>"));
    out.Line(QStringLiteral("<meta http-equiv=Content-Type content=text/html; charset=windows-1250>"));
    out.Line(QStringLiteral("<title>") + title + QStringLiteral("</title>"));
    out.Line(QStringLiteral("</head></body>"));
    out.Line(QStringLiteral("<style>"));
    out.Line(QStringLiteral(".cellw {border: 1px solid #000000; background-color: #FFFFFF; font-size: 9pt; padding: 2px}"));
    out.Line(QStringLiteral(".cell_top {border: 1px solid #000000; background-color: #C0C0C0; font-size: 8pt; font-weight: bold; text-align: center}"));
    out.Line(QStringLiteral(".cell_first {border: 1px solid #000000; background-color: #C0C0C0; font-size: 8pt; text-align: right}"));
    out.Line(QStringLiteral(".cellb {border: 1px solid #000000; background-color: #FFFFFF; font-size: 9pt; text-align: right; padding: 2px}"));
    out.Line(QStringLiteral(".cell_hidd {border: 1px solid #FFFFFF; background-color: #FFFFFF}"));
    out.Line(QStringLiteral("</style>"));
    out.Line(QStringLiteral("<p><b><i>Seznam položek: sklad - ") + esc(sklad) + QStringLiteral("</i></b></p>"));
    out.Line(QStringLiteral("<table cellspacing=0 cellpadding=0 style=\"border-collapse: collapse\">"));
}

// A header cell; width 0 leaves the width to the browser.
QString th(const QString &text, int width = 0)
{
    return QStringLiteral("<td class=cell_top") + (width ? QStringLiteral(" width=%1px").arg(width) : QString())
        + QLatin1Char('>') + text + QStringLiteral("</td>");
}

QString td(const QString &text, const char *cls = "cellw")
{
    return QStringLiteral("<td class=%1>%2</td>").arg(QLatin1String(cls), text.trimmed().isEmpty() ? QStringLiteral("&nbsp;") : esc(text));
}

int finish(BuildObjLJ &out, int rows, QString *error)
{
    out.Line(QStringLiteral("</table>"));
    out.Line(QStringLiteral("</body></html>"));
    if (!out.Close()) {
        if (error)
            *error = QStringLiteral("Soubor %1 se nepodařilo zapsat.").arg(out.Path());
        return -1;
    }
    return rows;
}

QString dateText(const QVariant &v)
{
    if (v.isNull())
        return QString();
    const QDate d = v.toDate();
    return d.isValid() ? d.toString(QStringLiteral("dd.MM.yyyy")) : v.toString();
}
} // namespace

QString VydejSummaryPath(const QString &folder, const QString &sklad)
{
    return fileName(folder, QStringLiteral("Souhrn výdaného zboži - "), sklad);
}

QString ObjednSummaryPath(const QString &folder, const QString &sklad)
{
    return fileName(folder, QStringLiteral("Souhrn objednaného zboži - "), sklad);
}

int WriteVydejSummary(DbConnection &centre, const QString &sklad, const QString &path, QString *error)
{
    QSqlQuery q = centre.query();
    q.setForwardOnly(true);
    const QString sql = QStringLiteral("SELECT NAM_CHIM, KATAL, KUS_VY, MIRA, KOMU, DAT_VYD FROM CHEM_VYD")
        + (sklad.isEmpty() ? QString() : QStringLiteral(" WHERE sklad=?")) + QStringLiteral(" ORDER BY nam_chim ASC");
    if (!centre.exec(q, sql, sklad.isEmpty() ? QVariantList() : QVariantList{sklad})) {
        if (error)
            *error = centre.errorText();
        return -1;
    }
    BuildObjLJ out;
    if (!out.Open(path)) {
        if (error)
            *error = out.Error();
        return -1;
    }
    head(out, QStringLiteral("Souhrn výdaného zboži"), sklad);
    out.Line(QStringLiteral("<tr>") + th(QStringLiteral("Poz."), 30) + th(spaced(QStringLiteral("NÁZEV ZBOŽÍ")), 250)
             + th(QStringLiteral("KATALOGOVÉ<br>ČÍSLO"), 80) + th(QStringLiteral("MN"), 40) + th(QStringLiteral("MÍRA"), 40)
             + th(QStringLiteral("KOMU")) + th(QStringLiteral("DATUM&nbsp;VÝDEJE"), 80) + QStringLiteral("</tr>"));
    int rows = 0;
    while (q.next()) {
        ++rows;
        out.Line(QStringLiteral("<tr>") + td(QString::number(rows), "cell_first") + td(FieldText(q, 0))
                 + td(FieldText(q, 1)) + td(FieldText(q, 2), "cellb") + td(FieldText(q, 3)) + td(FieldText(q, 4))
                 + td(dateText(q.value(5))) + QStringLiteral("</tr>"));
    }
    return finish(out, rows, error);
}

int WriteObjednSummary(DbConnection &centre, const QString &sklad, const ObjednFilter &filter, const QString &path,
                       QString *error)
{
    auto failed = [&](const QString &text) {
        if (error)
            *error = text;
        return -1;
    };
    // The goods of the warehouse, by name.
    QSet<QString> goods;
    if (!filter.item.isEmpty()) {
        goods.insert(filter.item.trimmed().toLower());
    } else {
        if (!IsSafeIdentifier(filter.skladFile))
            return failed(QStringLiteral("Neplatný název tabulky skladu: %1").arg(filter.skladFile.left(80)));
        QSqlQuery items = centre.query();
        if (!centre.exec(items, QStringLiteral("SELECT DISTINCT Nazev FROM ") + filter.skladFile))
            return failed(centre.errorText());
        while (items.next())
            goods.insert(FieldText(items, 0).toLower());
    }
    QString sql = QStringLiteral("SELECT * FROM ArchObj WHERE Typ='1'");
    QVariantList values;
    if (filter.year) {
        sql += QStringLiteral(" AND Dat_obj >= ? AND Dat_obj < ?");
        values << QStringLiteral("%1-01-01").arg(filter.year) << QStringLiteral("%1-01-01").arg(filter.year + 1);
    }
    if (!filter.firma.isEmpty()) {
        sql += QStringLiteral(" AND Firma LIKE ?");
        values << filter.firma + QLatin1Char('%');
    }
    if (filter.from.isValid()) {
        sql += QStringLiteral(" AND Dat_obj >= ?");
        values << filter.from.toString(Qt::ISODate);
    }
    sql += QStringLiteral(" ORDER BY Dat_obj, cis_obj");
    QSqlQuery q = centre.query();
    q.setForwardOnly(true);
    if (!centre.exec(q, sql, values))
        return failed(centre.errorText());

    BuildObjLJ out;
    if (!out.Open(path))
        return failed(out.Error());
    head(out, QStringLiteral("Souhrn objednaného zboži"), sklad);
    out.Line(QStringLiteral("<tr>") + th(QStringLiteral("Poz."), 30) + th(spaced(QStringLiteral("NÁZEV ZBOŽÍ")), 250)
             + th(QStringLiteral("FIRMA<br>DODAVATEL"), 80) + th(QStringLiteral("Z&nbsp;KATALOGU"), 80)
             + th(QStringLiteral("MN"), 40) + th(QStringLiteral("ČÁSTKA,&nbsp;Kč"), 80) + th(QStringLiteral("DOKLAD"), 90)
             + th(QStringLiteral("GRANT"), 50) + th(QStringLiteral("OBJEDNATEL"), 100) + th(QStringLiteral("OBJADNÁNO"), 70)
             + th(QStringLiteral("VYŘÍZENO"), 70) + th(QStringLiteral("ZAÚČTOVÁNO"), 70) + QStringLiteral("</tr>"));
    int rows = 0;
    while (q.next()) {
        for (int line = 1; line <= 8; ++line) {
            const QString rec = FieldText(q, QStringLiteral("LineRec%1").arg(line));
            if (rec.isEmpty())
                continue;
            const QString name = GetField(rec, 0).trimmed();
            // A picked line carries the packaging after the name: "name, (2 x 50)".
            const qsizetype packaging = name.lastIndexOf(QStringLiteral(", ("));
            const QString bare = packaging > 0 ? name.left(packaging) : name;
            if (!goods.contains(bare.toLower()) && !goods.contains(name.toLower()))
                continue;
            const QString count = FieldText(q, QStringLiteral("Poc%1").arg(line));
            QString price = GetField(rec, 1);
            const double total = ScanNumber(QString(price).remove(QLatin1Char(' ')).replace(QLatin1Char(','), QLatin1Char('.')))
                * ScanNumber(QString(count).replace(QLatin1Char(','), QLatin1Char('.')));
            const QString doklad = FieldText(q, QStringLiteral("Cis_global")).isEmpty()
                ? FieldText(q, QStringLiteral("cis_obj")) : FieldText(q, QStringLiteral("Cis_global"));
            ++rows;
            out.Line(QStringLiteral("<tr>") + td(QString::number(rows), "cell_first") + td(name)
                     + td(FieldText(q, QStringLiteral("Firma"))) + td(FieldText(q, QStringLiteral("Pobocka")))
                     + td(count, "cellb") + td(FormatAmount(QString::number(total, 'f', 2)), "cellb") + td(doklad)
                     + td(FieldText(q, QStringLiteral("Grant"))) + td(FieldText(q, QStringLiteral("LineRec9")))
                     + td(dateText(QDate::fromString(FieldText(q, QStringLiteral("Dat_obj")).left(10), Qt::ISODate)))
                     + td(FieldText(q, QStringLiteral("Dat_vyriz"))) + td(FieldText(q, QStringLiteral("objZauct")))
                     + QStringLiteral("</tr>"));
        }
    }
    return finish(out, rows, error);
}
