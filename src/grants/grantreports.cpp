#include "grants/grantreports.h"

#include "core/buildobjlj.h"
#include "core/config.h"
#include "core/session.h"
#include "core/text.h"
#include "grants/amount.h"

#include <QDir>
#include <QHash>

namespace {
const QString Border = QStringLiteral("1px solid black");

// A cell's style attribute from the borders it has: "border-top:1px solid black;...".
QString Style(const QStringList &borders)
{
    return QStringLiteral(" style='") + borders.join(QLatin1Char(';')) + QLatin1Char('\'');
}

QString Font(const QString &size, const QString &text)
{
    return QStringLiteral("<font size=") + size + QLatin1Char('>') + text + QStringLiteral("</font>");
}

// A head row of a report: a strong label over four columns and an italic value.
void LabelRow(BuildObjLJ &html, const QString &size, const QString &label, const QString &value)
{
    html.Line(QStringLiteral("    <tr>"));
    html.Line(QStringLiteral("      <td colspan=4><strong>") + Font(size, label) + QStringLiteral("</strong></td>"));
    html.Line(QStringLiteral("      <td><em>") + Font(size, CellText(value)) + QStringLiteral("</em></td>"));
    html.Line(QStringLiteral("    </tr>"));
}

// A row of a bordered table: every cell has the top and left border, the last also the right;
// a heading row has a bottom border too.
void BorderedRow(BuildObjLJ &html, const QString &size, const QStringList &cells, int firstRight,
                 const QStringList &extra = {}, const QString &background = QString())
{
    html.Line(QStringLiteral("  <tr>"));
    for (int i = 0; i < cells.size(); ++i) {
        QStringList borders = extra.isEmpty() ? QStringList{QStringLiteral("border-top:") + Border} : extra;
        borders << QStringLiteral("border-left:") + Border;
        if (i == cells.size() - 1)
            borders << QStringLiteral("border-right:") + Border;
        const QString align = i >= firstRight ? QStringLiteral(" align=right") : QStringLiteral(" align=left");
        const QString bg = background.isEmpty() ? QString() : QStringLiteral(" bgcolor=") + background;
        html.Line(QStringLiteral("    <td") + align + bg + Style(borders) + QLatin1Char('>') + Font(size, cells.at(i)) +
                  QStringLiteral("</td>"));
    }
    html.Line(QStringLiteral("  </tr>"));
}

// The total row under a bordered table: a line of 2px above, 1px below, every cell right-aligned.
void TotalRow(BuildObjLJ &html, const QString &size, const QStringList &cells)
{
    html.Line(QStringLiteral("  <tr>"));
    for (const QString &cell : cells)
        html.Line(QStringLiteral("    <td align=right style='border-top:2px solid black;border-bottom:") + Border +
                  QStringLiteral("'>") + Font(size, cell) + QStringLiteral("</td>"));
    html.Line(QStringLiteral("  </tr>"));
}

QString Sum(double value) { return FormatAmount(value); }

// The head of a page up to its body, as the group reports write it.
void PageHead(BuildObjLJ &html, const QString &title)
{
    html.Line(QStringLiteral("<HTML><HEAD><TITLE>") + title + QStringLiteral("</TITLE>"));
    html.Line(ReportMetaLine());
    html.Line(QStringLiteral("</HEAD>"));
    html.Line(QStringLiteral("<body bgcolor=#FFFFFF topmargin=0>"));
}

// The first row of a report's first table: the product mark.
void ProductRow(BuildObjLJ &html)
{
    html.Line(QStringLiteral("    <tr>"));
    html.Line(ProductCellLine());
    html.Line(QStringLiteral("    </tr>"));
}
} // namespace

QString ReportPath()
{
    if (Session().TempDir.isEmpty())
        InitSpecialDirs();
    return QDir::toNativeSeparators(NormalizePath(Session().TempDir + QStringLiteral("/List.htm")));
}

QString ReportFontSize(const QString &size)
{
    const QString s = size.trimmed();
    return s.isEmpty() || s == QLatin1String("0") ? QStringLiteral("1") : s;
}

QString ReportMetaLine()
{
    return QStringLiteral("<META content=\"text/html; charset=windows-1250\" http-equiv=Content-Type>");
}

QString ProductCellLine()
{
    return QStringLiteral("      <td colspan=5 align=right><font size=1><em>Fondarix</em></font> </td>");
}

QString CellText(const QString &text)
{
    QString t = text;
    return t.replace(QLatin1Char('&'), QLatin1String("&amp;"))
        .replace(QLatin1Char('<'), QLatin1String("&lt;"))
        .replace(QLatin1Char('>'), QLatin1String("&gt;"));
}

bool WriteReport(const std::function<void(BuildObjLJ &)> &body, QString *path, QString *error)
{
    *path = ReportPath();
    BuildObjLJ html;
    if (!html.Open(*path)) {
        *error = html.Error();
        return false;
    }
    body(html);
    if (!html.Close()) {
        *error = html.Error();
        return false;
    }
    return true;
}

void CreateSestavuUctu(BuildObjLJ &html, const GrantHead &grant, const QVector<GroupRow> &groups, const QString &size)
{
    const QString s = ReportFontSize(size);
    QString filter = groups.isEmpty() ? QString() : groups.first().ucet;
    filter.replace(QLatin1Char(','), QLatin1String(", "));

    PageHead(html, QStringLiteral("Fondarix"));
    html.Line(QStringLiteral("<TABLE border=0 width=100%>"));
    ProductRow(html);
    LabelRow(html, s, QStringLiteral("GRANT : "), grant.grant);
    LabelRow(html, s, QStringLiteral("Název : "), grant.castka2);
    LabelRow(html, s, QStringLiteral("Skupina účtů : "), filter);
    html.Line(QStringLiteral("</TABLE><br>"));
    html.Line(QStringLiteral("<TABLE cellpadding='3' cellspacing='0' border='0' width='100%'>"));
    BorderedRow(html, s,
                {QStringLiteral("&nbsp;Název&nbsp;účtu&nbsp;"), QStringLiteral("&nbsp;Rozpočet,&nbsp;Kč&nbsp;&nbsp;"),
                 QStringLiteral("&nbsp;Čerpání,&nbsp;Kč&nbsp;"), QStringLiteral("&nbsp;Zůstatek,&nbsp;Kč&nbsp;"),
                 QStringLiteral("&nbsp;V&nbsp;%&nbsp;")},
                5,
                {QStringLiteral("border-top:") + Border, QStringLiteral("border-bottom:") + Border},
                QStringLiteral("#C0C0C0"));
    for (const GroupRow &r : groups)
        BorderedRow(html, s, {CellText(r.nazev), r.plan, r.cerpani, r.zustatek, r.procent}, 1);
    const GroupTotals t = SumGroupRows(groups);
    TotalRow(html, s, {QStringLiteral("Celkem za GRANT, Kč"), Sum(t.plan), Sum(t.cerpani), Sum(t.zustatek), QStringLiteral("&nbsp;")});
    html.Line(QStringLiteral("</TABLE></CENTER></DIV></CENTER></DIV></BODY></HTML>"));
}

void GrantListReport(BuildObjLJ &html, const QVector<GrantHead> &grants, const QString &from, const QString &to,
                     const QString &size)
{
    if (grants.isEmpty())
        return;
    const QString s = ReportFontSize(size);
    html.Line(QStringLiteral("<html>"));
    html.Line(QStringLiteral("<head>"));
    html.Line(ReportMetaLine());
    html.Line(QStringLiteral("<title>Fondarix</title>"));
    html.Line(QStringLiteral("</head>"));
    html.Line(QStringLiteral("<body bgcolor=#FFFFFF>"));
    html.Line(QStringLiteral("<div align=center><center>"));
    html.Line(QStringLiteral("<TABLE cellpadding='3' cellspacing='0' border='0' width='100%'>"));
    ProductRow(html);
    html.Line(QStringLiteral("    <tr>"));
    html.Line(QStringLiteral("      <td colspan=5><strong>") +
              Font(s, QStringLiteral("Seznam GRANTu za období ") + CellText(from) + QStringLiteral(" - ") + CellText(to)) +
              QStringLiteral("</strong></td>"));
    html.Line(QStringLiteral("    </tr>"));
    BorderedRow(html, s,
                {QStringLiteral("&nbsp;GRANT&nbsp;"), QStringLiteral("&nbsp;Rozpočet&nbsp;plán,&nbsp;Kč&nbsp;"),
                 QStringLiteral("&nbsp;Zůstatek,&nbsp;Kč&nbsp;"), QStringLiteral("&nbsp;Poskytnuté,&nbsp;Kč&nbsp;"),
                 QStringLiteral("&nbsp;Čerpání,&nbsp;Kč&nbsp;")},
                1, {QStringLiteral("border-top:") + Border, QStringLiteral("border-bottom:") + Border},
                QStringLiteral("#C0C0C0"));
    double plan = 0, rest = 0, provided = 0, drawn = 0;
    QString stredisko;
    for (int i = 0; i < grants.size(); ++i) {
        const GrantHead &g = grants.at(i);
        if (i == 0 || g.stredisko != stredisko) {
            stredisko = g.stredisko;
            html.Line(QStringLiteral("  <tr><td colspan=5 style='border-top:") + Border + QStringLiteral("'><em>") +
                      Font(s, CellText(stredisko)) + QStringLiteral("</em></td></tr>"));
        }
        const double c1 = AmountValue(AmountText(g.castka1)), c3 = AmountValue(AmountText(g.castka3));
        BorderedRow(html, s,
                    {CellText(g.grant), AmountText(g.castka1), AmountText(g.castka3), AmountText(g.poskytnute),
                     Sum(c1 - c3)},
                    1);
        plan += c1;
        rest += c3;
        provided += AmountValue(AmountText(g.poskytnute));
        drawn += c1 - c3;
    }
    TotalRow(html, s, {QStringLiteral("Celkem, Kč"), Sum(plan), Sum(rest), Sum(provided), Sum(drawn)});
    html.Line(QStringLiteral("</TABLE></center></div></body></html>"));
}

void GeneratorList(BuildObjLJ &html, const ListSpec &list)
{
    const QString s = ReportFontSize(list.size);
    html.Line(QStringLiteral("<table cellpadding='3' cellspacing='0' border='0' width='100%'>"));
    QStringList heads;
    for (const QString &c : list.columns.split(QLatin1Char('~')))
        heads << QStringLiteral("&nbsp;") + CellText(c) + QStringLiteral("&nbsp;");
    BorderedRow(html, s, heads, list.firstAmount,
                {QStringLiteral("border-top:") + Border, QStringLiteral("border-bottom:") + Border},
                QStringLiteral("#C0C0C0"));
    for (const QStringList &row : list.rows) {
        QStringList cells;
        for (int c = 0; c < heads.size(); ++c)
            cells << CellText(row.value(c));
        BorderedRow(html, s, cells, list.firstAmount);
    }
}

void GeneratorListPage(BuildObjLJ &html, const ListSpec &list)
{
    const QString s = ReportFontSize(list.size);
    PageHead(html, QStringLiteral("List.htm"));
    html.Line(QStringLiteral("<TABLE border=0 width=100%>"));
    ProductRow(html);
    LabelRow(html, s, QStringLiteral("GRANT : "), list.grant + QLatin1Char(' ') + list.selection);
    html.Line(QStringLiteral("</TABLE>"));
    GeneratorList(html, list);
    html.Line(QStringLiteral("</table></body></html>"));
}

void SelectionReport(BuildObjLJ &html, ListSpec list, const SelectionSums &sums)
{
    if (list.rows.isEmpty())
        return;
    list.size = ReportFontSize(QString::number(ReportFontSize(list.size).toInt() - 2));
    const QString s = list.size;
    html.Line(QStringLiteral("<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0 Transitional//EN\">"));
    html.Line(QStringLiteral("<HTML><HEAD><TITLE>List.htm</TITLE>"));
    html.Line(ReportMetaLine());
    html.Line(QStringLiteral("<META http-equiv=Content-Language content=cs>"));
    html.Line(QStringLiteral("</HEAD>"));
    html.Line(QStringLiteral("<BODY bgColor=#ffffff>"));
    html.Line(QStringLiteral("<TABLE border=0 width=100%>"));
    ProductRow(html);
    LabelRow(html, s, QStringLiteral("GRANT : "), list.grant + QLatin1Char(' ') + list.selection);
    html.Line(QStringLiteral("</TABLE>"));
    GeneratorList(html, list);
    QStringList spacer;
    for (qsizetype i = list.columns.count(QLatin1Char('~')); i >= 0; --i)
        spacer << QStringLiteral("<td>&nbsp;</td>");
    html.Line(QStringLiteral("  <tr>") + spacer.join(QString()) + QStringLiteral("</tr>"));
    html.Line(QStringLiteral("  <tr><td colspan=99><table border=0 width=100%>"));
    const auto line = [&](const QString &label, const QString &value) {
        html.Line(QStringLiteral("    <tr><td width=250><strong>") + Font(s, label) + QStringLiteral("</strong></td><td><em>") +
                  Font(s, CellText(value)) + QStringLiteral("</em></td></tr>"));
    };
    line(QStringLiteral("GRANT -"), sums.grant);
    line(QStringLiteral("Název - "), sums.name);
    line(QStringLiteral("Rozpočet za výběr, Kč : "), Sum(sums.plan));
    line(QStringLiteral("Čerpání za výběr, Kč : "), Sum(sums.cerpani));
    line(QStringLiteral("Zůstatek za výběr, Kč : "), Sum(sums.zustatek));
    // The share remaining, from the whole crowns of the rest as for a group row.
    GroupRow share;
    share.plan = Sum(sums.plan);
    share.cerpani = Sum(sums.cerpani);
    SpoctiRadek(share);
    line(QStringLiteral("Zůstatek za výběr, %  "), share.procent);
    html.Line(QStringLiteral("  </table></td></tr>"));
    html.Line(QStringLiteral("</table></body></html>"));
}

void PrintSkupUctu(BuildObjLJ &html, const QVector<GroupRow> &groups, const QVector<GrantHead> &grants,
                   const QString &size)
{
    const QString s = ReportFontSize(size);
    PageHead(html, QStringLiteral("Fondarix"));
    html.Line(QStringLiteral("<TABLE border=0 width=700>"));
    ProductRow(html);
    html.Line(QStringLiteral("</TABLE>"));
    // The head of a grant: the first register row whose number begins with the grant's.
    const auto headOf = [&](const QString &grant) {
        for (const GrantHead &g : grants)
            if (g.grant.startsWith(grant))
                return g;
        return GrantHead{};
    };
    for (qsizetype from = 0; from < groups.size();) {
        const QString grant = groups.at(from).grant;
        qsizetype to = from;
        while (to < groups.size() && groups.at(to).grant == grant)
            ++to;
        const QVector<GroupRow> rows = groups.mid(from, to - from);
        const GrantHead head = headOf(grant);
        html.Line(QStringLiteral("<br><TABLE border=0 width=700>"));
        LabelRow(html, s, QStringLiteral("GRANT -"), grant);
        LabelRow(html, s, QStringLiteral("Rozpočet : "), AmountText(head.castka1) + QStringLiteral(" Kč"));
        LabelRow(html, s, QStringLiteral("Název - "), head.castka2);
        html.Line(QStringLiteral("</TABLE>"));
        html.Line(QStringLiteral("<TABLE cellpadding='3' cellspacing='0' border='0' width=700>"));
        BorderedRow(html, s,
                    {QStringLiteral("Název"), QStringLiteral("Rozpočet, Kč"), QStringLiteral("Čerpání, Kč"),
                     QStringLiteral("Zůstatek, Kč"), QStringLiteral("%")},
                    1, {QStringLiteral("border-top:") + Border, QStringLiteral("border-bottom:") + Border},
                    QStringLiteral("#C0C0C0"));
        for (const GroupRow &r : rows)
            BorderedRow(html, s, {CellText(r.nazev), r.plan, r.cerpani, r.zustatek, r.procent}, 1);
        const GroupTotals t = SumGroupRows(rows);
        TotalRow(html, s, {QStringLiteral("Celkem za GRANT, Kč"), Sum(t.plan), Sum(t.cerpani), Sum(t.zustatek), QStringLiteral("&nbsp;")});
        html.Line(QStringLiteral("</TABLE>"));
        from = to;
    }
    html.Line(QStringLiteral("</BODY></HTML>"));
}
