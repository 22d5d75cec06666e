#include "orders/objreports.h"

#include "core/db.h"
#include "core/text.h"
#include "orders/objrecord.h"

#include <QDir>

namespace {
// Angle brackets and ampersands of stored texts would break the table.
QString cell(const QString &text)
{
    return text.trimmed().isEmpty() ? QStringLiteral("&nbsp;") : text.toHtmlEscaped();
}

// The head, the orders of the query and the sums of their prices: one table.
bool writeOrders(BuildObjLJ &out, QSqlQuery &q, const QString &path, const QStringList &headRows, const QString &font,
                 const QString &sumCaption)
{
    if (!out.Open(path))
        return false;
    out.Line(QStringLiteral("<HTML><HEAD><TITLE>Fondarix</TITLE>"));
    out.Line(QStringLiteral("<meta content=\"text/html; charset=windows-1250\" http-equiv=Content-Type>"));
    out.Line(QStringLiteral("</HEAD><body bgcolor=#FFFFFF topmargin=0>"));
    out.Line(QStringLiteral("<TABLE border=0 width=100%>"));
    out.Line(QStringLiteral("  <tr>"));
    out.Line(QStringLiteral("      <td colspan=5 align=right><font size=1><em>Fondarix</em></font> </td>"));
    out.Line(QStringLiteral("  </tr>"));
    for (const QString &row : headRows)
        out.Line(row);
    out.Line(QStringLiteral("</TABLE><br>"));
    out.Line(QStringLiteral("<TABLE cellpadding='3' cellspacing='0' border='1' width='100%'>"));
    out.Line(QStringLiteral("<tr>"));
    for (const char *caption : {"Číslo dokladu", "Datum", "GRANT", "Firma", "Z katalogu", "Položky", "Skut. Kč", "Zaúčt. Kč"})
        out.Line(QStringLiteral("<td bgcolor=#C0C0C0><font size=%1><strong>%2</strong></font></td>").arg(font, QString::fromUtf8(caption)));
    out.Line(QStringLiteral("</tr>"));
    double actual = 0, booked = 0;
    while (q.next()) {
        QStringList goods;
        for (int i = 1; i <= 8; ++i) {
            const QString rec = q.value(QStringLiteral("LineRec%1").arg(i)).toString();
            const QString name = GetField(rec, 0).trimmed();
            if (!name.isEmpty())
                goods << (q.value(QStringLiteral("Poc%1").arg(i)).toString().trimmed() + QLatin1Char(' ') + name).trimmed().toHtmlEscaped();
        }
        const QString castka = q.value(QStringLiteral("castka")).toString().trimmed();
        const QString grant = q.value(QStringLiteral("grant")).toString();
        // A price shared by several grants belongs to none of them alone.
        if (!grant.contains(QLatin1Char(','))) {
            actual += AmountOf(GetField(castka, 0));
            booked += AmountOf(GetField(castka, 1));
        }
        out.Line(QStringLiteral("<tr>"));
        for (const QString &v : {q.value(QStringLiteral("cis_obj")).toString(),
                                 q.value(QStringLiteral("dat_obj")).toString().left(10), grant,
                                 q.value(QStringLiteral("firma")).toString(), q.value(QStringLiteral("pobocka")).toString()})
            out.Line(QStringLiteral("<td valign=top><font size=%1>").arg(font) + cell(v) + QStringLiteral("</font></td>"));
        out.Line(QStringLiteral("<td valign=top><font size=%1>").arg(font)
                 + (goods.isEmpty() ? QStringLiteral("&nbsp;") : goods.join(QStringLiteral("<br>")))
                 + QStringLiteral("</font></td>"));
        for (int piece = 0; piece < 2; ++piece)
            out.Line(QStringLiteral("<td valign=top align=right><font size=%1>").arg(font) + cell(GetField(castka, short(piece)))
                     + QStringLiteral("</font></td>"));
        out.Line(QStringLiteral("</tr>"));
    }
    out.Line(QStringLiteral("<tr><td colspan=6 align=right><font size=%1><strong>%2</strong></font></td>").arg(font, sumCaption));
    out.Line(QStringLiteral("<td align=right><font size=%1><strong>%2</strong></font></td>").arg(font, FormatAmount(QString::number(actual, 'f', 2))));
    out.Line(QStringLiteral("<td align=right><font size=%1><strong>%2</strong></font></td></tr>").arg(font, FormatAmount(QString::number(booked, 'f', 2))));
    out.Line(QStringLiteral("</TABLE></BODY></HTML>"));
    return out.Close();
}

QString headRow(const QString &label, const QString &value)
{
    return QStringLiteral("<tr><td colspan=4><strong>") + label + QStringLiteral("</strong></td><td><em>") + value.toHtmlEscaped()
           + QStringLiteral("</em></td></tr>");
}
} // namespace

bool TiskGrantTabl(BuildObjLJ &out, DbConnection &centre, DbConnection &granty, const QString &path,
                   const QString &grant, const QString &font, QString *error)
{
    QSqlQuery plan = granty.query();
    if (!granty.exec(plan, QStringLiteral("SELECT Castka1, Castka2 FROM GrantyPlan WHERE _grant = ?"), {grant})) {
        *error = DbErrorMessage(plan.lastError());
        return false;
    }
    const bool known = plan.next();
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT * FROM archobj WHERE `Grant` LIKE ? ORDER BY cis_obj, dat_obj ASC"),
                     {QStringLiteral("%") + grant + QStringLiteral("%")})) {
        *error = DbErrorMessage(q.lastError());
        return false;
    }
    const QStringList head{headRow(QStringLiteral("GRANT : "), grant),
                           headRow(QStringLiteral("Rozpočet : "), known ? plan.value(0).toString() + QStringLiteral(" Kč") : QString()),
                           headRow(QStringLiteral("Název : "), known ? plan.value(1).toString() : QString())};
    return writeOrders(out, q, path, head, FormFontSize(font), QStringLiteral("Celkem za GRANT, Kč"));
}

bool BuildCerpani(BuildObjLJ &out, DbConnection &centre, const QString &path, const QString &text, const QString &font,
                  QString *error)
{
    QString where;
    QVariantList values;
    for (int i = 1; i <= 8; ++i) {
        where += (i == 1 ? QStringLiteral("(") : QStringLiteral(" OR ")) + QStringLiteral("LineRec%1 LIKE ?").arg(i);
        values << QStringLiteral("%") + text + QStringLiteral("%");
    }
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT * FROM archobj WHERE ") + where + QStringLiteral(") ORDER BY cis_obj, dat_obj ASC"),
                     values)) {
        *error = DbErrorMessage(q.lastError());
        return false;
    }
    return writeOrders(out, q, path, {headRow(QStringLiteral("Hledaný text : "), text)}, FormFontSize(font), QStringLiteral("Celkem, Kč"));
}

QString CerpaniPath(const QString &folder, const QString &grant)
{
    QString name = grant;
    name.replace(QLatin1Char('/'), QLatin1Char('-')).replace(QLatin1Char('\\'), QLatin1Char('-'));
    return QDir(folder).filePath(QStringLiteral("Čerpání-") + name + QStringLiteral(".html"));
}
