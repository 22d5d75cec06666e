#include "orders/objhtml.h"

#include "core/config.h"
#include "core/db.h"
#include "core/institution.h"
#include "core/msg.h"
#include "core/session.h"
#include "core/text.h"
#include "orders/objfooter.h"
#include "orders/objrecord.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlRecord>
#include <QSysInfo>

ObjFormContext LoadObjFormContext(DbConnection &sys, const QString &tempDir)
{
    ObjFormContext c;
    QString ask;
    c.font = GetSetPrintSize(ask);
    c.rows = GetSetPrintRows(ask);
    c.top = GetSetPrintTop(ask);
    c.formPoz = GetTypFormulara().toUpper() == QLatin1String("FALSE");
    const SessionRecord &s = Session();
    c.role = s.UserTyp;
    ReadInstitution(sys);
    c.firma = s.InstFirma;
    c.adresa = s.InstAdresa;
    c.psc = s.InstPSC;
    c.mesto = s.InstMesto;
    c.ico = s.InstICO;
    c.dic = s.InstDIC;
    c.banka = s.InstBanka;
    c.ucet = s.InstUcet;
    c.ucet2 = s.InstUcet2;
    c.newdateUcet = s.InstNewdateUcet;
    QSqlQuery q = sys.query();
    if (sys.exec(q, QStringLiteral("SELECT name_stredisko FROM sys_db_kvl WHERE mysql_db = ?"), {s.MysqlDb}) && q.next())
        c.department = q.value(0).toString();
    c.systemXP = QSysInfo::prettyProductName().contains(QLatin1String(" XP"));
    c.pictureFooter = FooterPictureHtml(sys, QString(), s.UserLogin, tempDir);
    return c;
}

QString ObjFormPath(const QString &folder, const QString &cisObj)
{
    return QDir(folder).filePath(QString(cisObj).replace(QLatin1Char('/'), QLatin1Char('-')) + QStringLiteral(".html"));
}

namespace {
// A stored text as the form prints it: what a clerk typed is text, not markup.
QString esc(const QString &text) { return text.toHtmlEscaped(); }
QString piece(const QString &line, short index) { return GetField(line, index, '~'); }
QString textPiece(const QString &line, short index) { return esc(piece(line, index)); }

// The smaller elements are one size less.
QString smaller(const QString &font) { return QString::number(font.toInt() - 1); }

bool isNumber(const QString &text, int *value)
{
    bool ok = false;
    *value = text.trimmed().toInt(&ok);
    return ok;
}

QString bankAccount(const ObjFormContext &ctx)
{
    return ObjBankAccount(ctx.ucet, ctx.ucet2, ctx.newdateUcet, ctx.now);
}

// Blank lines before the body, so that a short form fills the page.
int bodyLines(const ObjFormContext &ctx, const QString &paticka)
{
    int rows = 0, top = 0, pat = 0;
    if (ctx.rows.trimmed().isEmpty() || !isNumber(ctx.rows, &rows))
        return 0;
    int l = isNumber(ctx.top, &top) && top >= 0 && rows > 0 ? rows - (top + 1) : rows;
    if (!isNumber(paticka, &pat) || pat <= 2)
        l += 6;
    return std::clamp(l - 4, 0, 200);
}

void head(BuildObjLJ &out, const QString &title)
{
    for (const QString &l : {QStringLiteral("<html>"), QString(), QStringLiteral("<head>"),
                             QStringLiteral("<meta http-equiv=Content-Language content=cs>"),
                             QStringLiteral("<meta http-equiv=Content-Type content=text/html; charset=windows-1250>"),
                             QStringLiteral("<title>"), title, QStringLiteral("</title>"), QStringLiteral("</head>"),
                             QString(), QString(), QStringLiteral("<body bgcolor=#FFFFFF>")})
        out.Line(l);
}

// The footer as the order was saved with it; a picture footer loses what a word processor left.
void footer(BuildObjLJ &out, const ObjFormContext &ctx, const QString &line)
{
    QString text = piece(line, ObjIx::FilePaticka);
    if (text.trimmed().isEmpty())
        text = QStringLiteral("&nbsp;");
    if (piece(line, ObjIx::Paticka).trimmed() == QLatin1String("3")) {
        text.remove(QStringLiteral("normal'><o:p>&nbsp;</o:p></span><BR>"));
        text.replace(QStringLiteral("<p class=MsoNormal><o:p>&nbsp;</o:p><BR>"),
                     QStringLiteral("<p class=MsoNormal><o:p>&nbsp;</o:p>"));
        out.Line(text);
        out.Line(QStringLiteral("<tr><td colspan=2>") + ctx.pictureFooter);
    } else {
        out.Line(text);
        out.Line(QStringLiteral("<tr><td colspan=2>&nbsp;&nbsp;&nbsp;</td><td width='100%'>"));
    }
}

std::array<QString, 5> addressLines(const QString &line)
{
    std::array<QString, 5> a;
    for (int i = 0; i < 5; ++i) {
        QString t = textPiece(line, short(ObjIx::LineRec1 + 2 * i)).remove(QLatin1Char('#'));
        a[i] = t == QLatin1String(" ") ? QStringLiteral("&nbsp;") : t;
    }
    return a;
}
} // namespace

void BuildObjednano(BuildObjLJ &out, const QString &font, const std::array<std::array<QString, 4>, 8> &rows)
{
    const QString small = smaller(font);
    out.Line(QStringLiteral("<table border=0 width=100%>"));
    out.Line(QStringLiteral("  <tr>"));
    out.Line(QStringLiteral("      <td bgcolor=#C0C0C0>&nbsp;</td>"));
    out.Line(QStringLiteral("      <td bgcolor=#C0C0C0><font size=%1 face=Arial>Název materialu, (katal. číslo)</font></td>").arg(small));
    out.Line(QStringLiteral("      <td bgcolor=#C0C0C0><font size=%1 face=Arial>Množství</font></td>").arg(small));
    out.Line(QStringLiteral("        <td>&nbsp;&nbsp;</td>"));
    out.Line(QStringLiteral("  </tr>"));
    int count = 0;
    for (const auto &row : rows) {
        const QString name = esc(row[0].section(QLatin1Char('#'), 0, 0));
        const QString qty = esc(row[1].trimmed());
        const QString unit = esc(row[2].trimmed());
        QString number = QStringLiteral("&nbsp;");
        if (!name.trimmed().isEmpty())
            number = QString::number(++count) + QLatin1Char('.');
        QString amount = qty.isEmpty() ? QStringLiteral("&nbsp;") : qty;
        if (!qty.isEmpty() && !unit.isEmpty() && !qty.contains(unit))
            amount += QStringLiteral("&nbsp;") + unit;
        out.Line(QStringLiteral("  <tr>"));
        out.Line(QStringLiteral("      <td align=rigth valign=top width=20><font size=%1 face=Arial>%2</font></td>").arg(font, number));
        out.Line(QStringLiteral("      <td valign=top><font size=%1 face=Arial>").arg(font)
                 + (name.trimmed().isEmpty() ? QStringLiteral("&nbsp;") : name) + QStringLiteral("</font></td>"));
        out.Line(QStringLiteral("      <td valign=top><font size=%1 face=Arial>").arg(font) + amount + QStringLiteral("</font></td>"));
        out.Line(QStringLiteral("        <td>&nbsp;&nbsp;</td>"));
        out.Line(QStringLiteral("  </tr>"));
    }
    out.Line(QStringLiteral("</table>"));
}

bool BuildFormObj2(BuildObjLJ &out, const ObjFormContext &ctx, const QString &path, const QString &line,
                   const QString &body)
{
    if (!out.Open(path))
        return false;
    const QString font = FormFontSize(ctx.font);
    const QString small = smaller(font);
    const QString typText = piece(line, ObjIx::Typ).trimmed();
    int kind = 0;
    if (!typText.isEmpty() && !isNumber(typText, &kind))
        kind = 3;
    const QString hrazeno = esc(GetField(piece(line, ObjIx::Prikazce), 1).trimmed());
    const QString cena = textPiece(line, ObjIx::Poc10);
    const QString grant = textPiece(line, ObjIx::Grant);
    const QString datum = esc(ObjDateText(piece(line, ObjIx::DatObj)));
    const bool order = !ctx.formPoz;
    const bool goodsOrder = order && ctx.role != 3 && kind == KindSklad;

    head(out, QFileInfo(path).fileName());
    out.Line(QStringLiteral("<table border='0' cellpadding='0' cellspacing='0' width='100%'><TR><TD>"));
    out.Line(QStringLiteral("<table border=1 cellpadding=3 cellspacing=0 width=100% >"));
    out.Line(QStringLiteral("  <tr>"));
    const QString institute = goodsOrder ? esc(ctx.firma + QStringLiteral(", ") + ctx.adresa + QStringLiteral(", ") + ctx.mesto
                                                   + QLatin1Char(' ') + ctx.psc)
                                         : QStringLiteral("Základna Laboratorní Medicíny");
    out.Line(QStringLiteral("      <td colspan=5><font size=") + font + QLatin1Char('>') + institute + QStringLiteral("</font></td>"));
    out.Line(QStringLiteral("  </tr>"));
    out.Line(QStringLiteral("  <tr>"));
    QString numbers = QStringLiteral("      <td valign=top width=250><p align=left><font size=") + font
                      + QStringLiteral(">IČO&nbsp;") + esc(ctx.ico);
    if (!ctx.dic.trimmed().isEmpty())
        numbers += QStringLiteral("&nbsp;&nbsp;&nbsp;DIČ&nbsp;") + esc(ctx.dic);
    out.Line(numbers);
    out.Line(QStringLiteral("       Bankovní spojení ") + esc(ctx.banka) + QStringLiteral(",  ") + esc(bankAccount(ctx))
             + QStringLiteral("</font></p></td>"));
    out.Line(QStringLiteral("  </tr>"));
    out.Line(QStringLiteral("</table>"));
    out.Line(QStringLiteral("<table border=0 cellpadding=3 cellspacing=0 width=100%>"));
    if (!order)
        out.Line(QStringLiteral("<tr><td><font size=") + font
                 + QStringLiteral("><strong>POŽADAVEK - na nákup</strong></font></td><td>&nbsp;</td></tr></table>"));
    else
        out.Line(QStringLiteral("<tr><td><font size=") + font + QStringLiteral("><strong>ŽÁDANKA</strong></font></td><td align=right><font size=")
                 + font + QStringLiteral(">č.&nbsp;<strong>") + textPiece(line, ObjIx::CisObj)
                 + QStringLiteral("</strong>&nbsp;&nbsp;</font></td></tr></table>"));
    int top = 0;
    if (isNumber(ctx.top, &top))
        for (int i = 0; i < std::clamp(top, 0, 200); ++i)
            out.Line(QStringLiteral("<BR>"));

    // The supplier.
    out.Line(QStringLiteral("<div align=left>"));
    out.Line(QStringLiteral("      </div><div align=right><table border=1 cellpadding=6 cellspacing=0>"));
    out.Line(QStringLiteral("      <tr><td><font size=") + font + QStringLiteral("><u><strong>Dodavatel </strong></u><BR>"));
    for (int i = 0; i <= 4; ++i) {
        const QString text = QStringLiteral("&nbsp;&nbsp;") + textPiece(line, short(ObjIx::Firma + i))
                             + (i == 3 ? QStringLiteral("&nbsp;") : QStringLiteral("<BR>"));
        if (text != QLatin1String("&nbsp;&nbsp;&nbsp;"))
            out.Line(text);
    }
    out.Line(QStringLiteral("      </font><font size=") + small + QStringLiteral(">Tel.: ") + textPiece(line, ObjIx::Tel)
             + QStringLiteral("<BR>Fax: ") + textPiece(line, ObjIx::Fax) + QStringLiteral("</font></td></tr></table></div>"));

    if (goodsOrder) {
        const QString catalogue = textPiece(line, ObjIx::Pobocka);
        out.Line(QStringLiteral("<table border=0 widtn='100%'><tr><td 'width=100%'><font size=") + font
                 + QStringLiteral(">&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;<u>Objednáváme")
                 + (catalogue.trimmed().isEmpty() ? QStringLiteral(":") : QStringLiteral(" z katalogu: ") + catalogue)
                 + QStringLiteral("</u></font></td></tr></table>"));
    }

    // The body, pushed down by n blank lines in the left cell.
    out.Line(QStringLiteral("<table border=0 width=100%><tr><td valign=top>"));
    const int n = bodyLines(ctx, piece(line, ObjIx::Paticka));
    for (int i = 0; i < n; ++i)
        out.Line(QStringLiteral("<BR>"));
    out.Line(QStringLiteral("</td><td valign=top width='100%'>"));
    if (kind == KindSklad) {
        std::array<std::array<QString, 4>, 8> rows;
        for (int i = 1; i <= 8; ++i) {
            const QString rec = piece(line, ObjIx::LineRec(i));
            rows[i - 1] = {GetField(rec, 0), piece(line, ObjIx::Poc(i)), GetField(rec, 2), QString()};
        }
        BuildObjednano(out, font, rows);
        out.Line(QStringLiteral("</td>"));
    } else {
        out.Line(body + QStringLiteral("</td>"));
    }
    out.Line(QStringLiteral("</tr></table>"));

    // The note.
    out.Line(QStringLiteral("<table border=0 width=100%><tr><td align=right><font size=") + font + QLatin1Char('>')
             + esc(GetField(piece(line, ObjIx::Text1), 0)) + QStringLiteral("</font></td></tr>"));
    out.Line(QStringLiteral("<tr><td><BR><BR><BR><BR></td></tr></table>"));

    if (ctx.systemXP && piece(line, ObjIx::Paticka).trimmed() == QLatin1String("3"))
        for (int i = 0; i < 3; ++i)
            out.Line(QStringLiteral("<BR>"));

    // Price and payment.
    out.Line(QStringLiteral("<table border=0 width=100%><tr>"));
    if (!cena.trimmed().isEmpty()) {
        out.Line(QStringLiteral("                      <td width=400 nowrap><font size=") + font + QStringLiteral(">Předpokládaná"));
        out.Line(QStringLiteral("cena s DPH: <strong>") + cena + QStringLiteral("</strong> Kč</font></td>"));
    } else {
        out.Line(QStringLiteral("                      <td width=400></td>"));
    }
    const QString source = hrazeno.toUpper().startsWith(QLatin1String("GRANT")) ? QStringLiteral("GRANTu:&nbsp;")
                                                                                  : hrazeno + QStringLiteral(", číslo:&nbsp;");
    out.Line(QStringLiteral("                      <td><font size=") + font + QStringLiteral(">Hrazeno z ") + source
             + QStringLiteral("<strong>") + grant + QStringLiteral("</strong></font></td></tr>"));
    out.Line(QStringLiteral("<tr><td colspan=2><font size=") + font + QStringLiteral(">V Lhotce, dne: <strong>") + datum
             + QStringLiteral("</strong></font></td></tr>"));

    out.Line(QStringLiteral("            <tr><td><div style='height:150px'>&nbsp;</div></td><td width='100%'>"));
    footer(out, ctx, line);
    out.Line(QStringLiteral("<font size=") + small + QStringLiteral(">Vyřizuje: ") + textPiece(line, ObjIx::LineRec9));
    out.Line(QStringLiteral("&nbsp;&nbsp;&nbsp;Telefon: ") + textPiece(line, ObjIx::Telefon));
    out.Line(QStringLiteral("&nbsp;&nbsp;&nbsp;Linka: ") + textPiece(line, ObjIx::Linka) + QStringLiteral("</font></td>"));
    out.Line(QStringLiteral("  </tr></table>"));
    out.Line(QStringLiteral("</TD></TR></table>"));
    out.Line(QStringLiteral("</div></body></html>"));
    return out.Close();
}

namespace {
// What the Czech and the English letter share up to the subject.
void letterHead(BuildObjLJ &out, const ObjFormContext &ctx, const QString &line, bool english)
{
    out.Line(QStringLiteral("<html>"));
    out.Line(QStringLiteral("<head>"));
    out.Line(QStringLiteral("<meta http-equiv=Content-Type content=text/html; charset=windows-1250>"));
    out.Line(QStringLiteral("<title>Objednavka.htm</title>"));
    out.Line(QStringLiteral("</head>"));
    out.Line(QStringLiteral("<body bgcolor=#FFFFFF>"));
    out.Line(QStringLiteral("<table border=0 width=100%>"));
    const QString lines[3] = {esc(ctx.firma), esc(ctx.adresa + QStringLiteral(", ") + ctx.psc + QLatin1Char(' ') + ctx.mesto),
                              esc(ctx.department)};
    for (QString l : lines) {
        if (english)
            l.replace(QLatin1Char(' '), QStringLiteral("&nbsp;"));
        out.Line(QStringLiteral("<tr><td><font size=5>") + l + QStringLiteral("</font></td></tr>"));
    }
    out.Line(QStringLiteral("</table>"));
    out.Line(QStringLiteral("<div align=right><table border=1 cellpadding=6 cellspacing=0 width=320><tr>"));
    if (english)
        out.Line(QStringLiteral("<td valign=top><font size=4><strong>To:</strong></font></td>"));
    out.Line(QStringLiteral("<td><font size=4>"));
    const auto address = addressLines(line);
    for (int i = 0; i < 5; ++i)
        out.Line(address[i] + (i < 4 ? QStringLiteral("<BR>") : QString()));
    out.Line(QStringLiteral("</font></td></tr></table></div>"));
    int rows = 0, top = 0;
    isNumber(ctx.rows, &rows);
    isNumber(ctx.top, &top);
    for (int i = 0; i < std::clamp(rows - top, 0, 200); ++i)
        out.Line(QStringLiteral("              <font size=4>&nbsp;<BR>"));
}

void letterSubject(BuildObjLJ &out, const QString &line, const QString &subject, const QString &dateCaption)
{
    out.Line(QStringLiteral("<font size=4><u>Věc</u></font>"));
    out.Line(subject);
    out.Line(QStringLiteral("<table border=0 width=100%><tr><td valign=bottom>"));
    for (int i = 0; i < 8; ++i)
        out.Line(QStringLiteral("&nbsp;<BR>"));
    out.Line(QStringLiteral("<font size=4") + dateCaption + esc(ObjDateText(piece(line, ObjIx::DatObj))) + QStringLiteral("</font>"));
    out.Line(QStringLiteral("</td></tr></table>"));
    out.Line(QStringLiteral("<hr>"));
}
} // namespace

bool GeneratorFormularCZ(BuildObjLJ &out, const ObjFormContext &ctx, const QString &path, const QString &line,
                         const QString &subject)
{
    if (!out.Open(path))
        return false;
    letterHead(out, ctx, line, false);
    letterSubject(out, line, subject, QStringLiteral(">&nbsp;Datum : "));
    out.Line(QStringLiteral("<table border=0 width=100%><tr>"));
    out.Line(QStringLiteral("<td width=300><font size=4>Vyřizuje ") + textPiece(line, ObjIx::LineRec9) + QStringLiteral("</font></td>"));
    out.Line(QStringLiteral("<td width=200><font size=4>Telefon ") + textPiece(line, ObjIx::Telefon) + QStringLiteral("</font></td><td"));
    out.Line(QStringLiteral("              width=200><font size=4>Linka ") + textPiece(line, ObjIx::Linka) + QStringLiteral("</font></td>"));
    out.Line(QStringLiteral("</tr></table>"));
    out.Line(QStringLiteral("</body>"));
    out.Line(QStringLiteral("</html>"));
    return out.Close();
}

bool GeneratorFormularAN(BuildObjLJ &out, const ObjFormContext &ctx, const QString &path, const QString &line,
                         const QString &subject)
{
    if (!out.Open(path))
        return false;
    letterHead(out, ctx, line, true);
    letterSubject(out, line, subject, QStringLiteral(">&nbsp;Date: "));
    out.Line(QStringLiteral("<table border=0 width=100%><tr>"));
    out.Line(QStringLiteral("<td width=300 valign=top><font size=4>") + textPiece(line, ObjIx::LineRec9) + QStringLiteral("</font></td>"));
    out.Line(QStringLiteral("<td valign=top><font size=4><em><strong><u>Corresponding person</u>:</strong></em><BR>"));
    out.Line(QStringLiteral("phone number: ") + textPiece(line, ObjIx::Telefon) + QStringLiteral("<BR>"));
    out.Line(QStringLiteral("e-mail address: ") + textPiece(line, ObjIx::Linka) + QStringLiteral("</font></td>"));
    out.Line(QStringLiteral("</tr></table>"));
    return BuildObjAnHtm(out, QStringLiteral("4"));
}

bool BuildObjAnHtm(BuildObjLJ &out, const QString &font)
{
    out.Line(QStringLiteral("<table border=1 cellpadding=3 cellspacing=0 width=100%>"));
    out.Line(QStringLiteral("<tr><td bgcolor=#C0C0C0><font size=") + font + QStringLiteral(">Material</font></td><td bgcolor=#C0C0C0><font size=")
             + font + QStringLiteral(">Quantity</font></td><td bgcolor=#C0C0C0><font size=") + font
             + QStringLiteral(">Cat. number</font></td></tr>"));
    for (int i = 0; i < 4; ++i)
        out.Line(QStringLiteral("<tr><td>&nbsp;</td><td>&nbsp;</td><td>&nbsp;</td></tr>"));
    out.Line(QStringLiteral("</table>"));
    out.Line(QStringLiteral("</body>"));
    out.Line(QStringLiteral("</html>"));
    return out.Close();
}

bool WriteObjForm(BuildObjLJ &out, const ObjFormContext &ctx, const QString &path, const QString &line,
                  const QString &body)
{
    const QString typ = piece(line, ObjIx::Typ).trimmed();
    if (typ == QLatin1String("3"))
        return GeneratorFormularCZ(out, ctx, path, line, body);
    if (typ == QLatin1String("4"))
        return GeneratorFormularAN(out, ctx, path, line, body);
    return BuildFormObj2(out, ctx, path, line, body);
}

QString WriteObjFormFile(DbConnection &centre, const ObjFormContext &ctx, const QString &folder,
                         const QString &cisObj, QString *error)
{
    QSqlQuery q = centre.query();
    if (!centre.exec(q, QStringLiteral("SELECT * FROM archobj WHERE cis_obj = ? ORDER BY nom LIMIT 1"), {cisObj})) {
        *error = DbErrorMessage(q.lastError());
        return QString();
    }
    if (!q.next()) {
        *error = QStringLiteral("Objednávka číslo %1 neexistuje.").arg(cisObj);
        return QString();
    }
    const QString line = ObjRecordLine(q.record());
    const QString path = ObjFormPath(folder, cisObj);
    if (!QDir().mkpath(folder)) {
        *error = QStringLiteral("Složku %1 nelze vytvořit.").arg(QDir::toNativeSeparators(folder));
        return QString();
    }
    BuildObjLJ out;
    if (!WriteObjForm(out, ctx, path, line, q.value(QStringLiteral("file_html_text")).toString())) {
        *error = out.Error();
        return QString();
    }
    return path;
}

void ViewObjForm(const QString &centreDb, const QString &cisObj)
{
    DbConnection sys(ConnStrSys());
    DbConnection centre(ConnStrFor(centreDb));
    if (!sys.isOpen() || !centre.isOpen()) {
        MsgBox(sys.isOpen() ? centre.errorText() : sys.errorText(), MsgCritical);
        return;
    }
    const ObjFormContext ctx = LoadObjFormContext(sys, Session().TempDir);
    QString error;
    const QString path = WriteObjFormFile(centre, ctx, GetZadankySave(), cisObj, &error);
    if (path.isEmpty())
        MsgBox(error, MsgCritical);
    else
        ViewHTML(path);
}
