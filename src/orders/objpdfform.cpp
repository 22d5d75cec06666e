#include "orders/objpdfform.h"

#include "core/config.h"
#include "core/db.h"
#include "core/institution.h"
#include "core/session.h"
#include "core/text.h"
#include "orders/objfooter.h"
#include "orders/objhtml.h"
#include "orders/objrecord.h"
#include "pdf/objpdf.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QSqlRecord>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>

#include <exception>
#include <functional>

namespace {

const char *const BodyFont = "Fnt1a";
const char *const BoldFont = "Fnt1b";
const QString BodySize = QStringLiteral("12");   // the body font size, as the forms keep it
const float BodySizeValue = BodySize.toFloat();
const char *const LogoFile = "/logo_kvl_tmp.bmp";
const char *const MarkFile = "/typ4_tmp.bmp";

QString Piece(const QString &line, short index) { return GetField(line, index, '~'); }

// One run over a page: the dry run (Measure) sums what each operation would
// write, the real run writes it. Operations without a measure of their own
// count by the constants the forms have always added for them.
class PageRun {
public:
    PageRun(clsPDFCreator &pdf, bool measure) : pdf_(pdf), measure_(measure) {}
    bool measure() const { return measure_; }
    int32_t total() const { return total_; }

    void text(float x, float y, const QString &text, const char *font, float size)
    {
        int32_t length = 0;
        pdf_.DrawBinaryText(x, y, text.toStdString(), font, size, 0, 0, measure_, length);
        total_ += length;
    }
    void body(float x, float y, const QString &s) { text(x, y, s, BodyFont, BodySizeValue); }
    void rectangle(float x, float y, float width, float height)
    {
        int32_t length = 0;
        pdf_.Rectangle(x, y, width, height, 1, 0, measure_, length);
        total_ += length;
    }
    void moveTo(float x, float y)
    {
        int32_t length = 0;
        pdf_.MoveTo(x, y, measure_, length);
        total_ += length;
    }
    void lineTo(float x, float y)
    {
        int32_t length = 0;
        pdf_.LineTo(x, y, 0, measure_, length);
        total_ += length;
    }
    void image(const char *name, float x, float y, float width, float height)
    {
        int32_t length = 0;
        pdf_.DrawImg(name, x, y, width, height, measure_, length);
        total_ += length;
    }
    void path() { if (!measure_) pdf_.Path(1); }
    void lineCap() { if (!measure_) pdf_.SetLineCap(0); }
    void add(int32_t constant) { if (measure_) total_ += constant; }

    // The outer frame and the address box; the dry run measures them as the
    // forms always have, 17.4 wide and the box at 3.3.
    void frames(float outerY, float outerHeight)
    {
        rectangle(2, outerY, measure_ ? 17.4f : 17.2f, outerHeight);
        rectangle(12, measure_ ? 3.3f : 22.3f, 7, 3);
        add(5);
    }
    void headFrame()
    {
        moveTo(2, 25.5f);
        lineTo(2, 29);
        lineTo(20.2f, 29);
        lineTo(20.2f, 25.5f);
        path();
        add(10);
    }
    // A stroked line; the dry run counts its two ends as moves and 25 for the rest.
    void rule(float x1, float y1, float x2, float y2)
    {
        moveTo(x1, y1);
        if (measure_) {
            moveTo(x2, y2);
            add(25);
            return;
        }
        lineTo(x2, y2);
        path();
    }

private:
    clsPDFCreator &pdf_;
    bool measure_;
    int32_t total_ = 0;
};

// The rows of the institution's data at the foot of the page.
void LetterheadRows(PageRun &page, const ObjPdfLetterhead &head)
{
    const QStringList rows = ::LetterheadRows(head);
    for (int i = 0; i < 3; ++i)
        page.text(2, LetterheadRowY[i], rows[i], BodyFont, 8);
}

// The five address lines (pieces 19, 21, ... 27) without "#"; empty ones are left out.
void AddressLines(PageRun &page, const QString &line)
{
    for (short i = 0; i < 5; ++i) {
        QString address = Piece(line, short(19 + 2 * i));
        address.remove(QLatin1Char('#'));
        if (!address.isEmpty())
            page.body(12.5f, 24.75f - 0.5f * float(i), address);
    }
}

// "Vyřizuje", "Telefon", "Linka" and their values (pieces 35 to 37); the dry run
// measures the labels with a trailing blank, as the forms always have.
void SignatureRow(PageRun &page, const QString &line)
{
    const bool dry = page.measure();
    page.body(3, 2.5f, dry ? QStringLiteral("Vyřizuje: ") : QStringLiteral("Vyřizuje:"));
    page.body(5, 2.5f, Piece(line, 35));
    page.body(10, 2.5f, dry ? QStringLiteral("Telefon: ") : QStringLiteral("Telefon:"));
    page.body(11.7f, 2.5f, Piece(line, 36));
    page.body(15, 2.5f, dry ? QStringLiteral("Linka: ") : QStringLiteral("Linka:"));
    page.body(16.5f, 2.5f, Piece(line, 37));
}

// The document around a page: open, dry run, fonts, stream, real run, page,
// the pictures the page drew, catalog, close.
using PageFunction = std::function<void(PageRun &)>;

bool WriteForm(const QString &fileName, const PageFunction &draw, bool usesMark, bool usesLogo, bool noView)
{
    try {
        clsPDFCreator pdf;
        pdf.TempDir(Session().TempDir.toStdString());
        if (!ObjPdfOpen(pdf, fileName.toStdString(), "OBJEDNAVKA"))
            return false;
        PageRun dry(pdf, true);
        draw(dry);
        pdf.LoadFont(BodyFont, 8, "Times New Roman", 0);
        pdf.LoadFont(BoldFont, 12, "Times New Roman", 1);
        pdf.LoadStrem(dry.total());
        PageRun real(pdf, false);
        draw(real);
        pdf.EndStrem();
        int16_t content = 0;
        pdf.TypePage(content);
        bool ok = false;
        if (usesLogo)
            pdf.LoadImgFromBMPFile("Img1", (Session().TempDir + QLatin1String(LogoFile)).toStdString(), false, "", ok);
        if (usesMark)
            pdf.LoadImgFromBMPFile("Img2", (Session().TempDir + QLatin1String(MarkFile)).toStdString(), false, "", ok);
        // The page count is left unset, as the forms always have: "/Count 0".
        pdf.CreatePDFZaver(pdf);
        pdf.ClosePDFFile({});
    } catch (const std::exception &) {
        return false;
    }
    if (!noView)
        QDesktopServices::openUrl(QUrl::fromLocalFile(fileName));
    return true;
}

// Kind of an order from its piece 14: empty 0, a text that is no number 3.
int Kind(const QString &line)
{
    const QString typ = Piece(line, 14).trimmed();
    if (typ.isEmpty())
        return 0;
    bool ok = false;
    const int kind = typ.toInt(&ok);
    return ok ? kind : 3;
}

// The text of the rich-text box, line by line; the cells of a table row stand
// in one line, separated by tabs.
QString RichTextLines(const QString &html)
{
    QTextDocument document;
    document.setHtml(html);
    QStringList lines;
    const QTextTable *table = nullptr;
    int row = -1, column = -1;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextCursor cursor(block);
        const QTextTable *inTable = cursor.currentTable();
        if (!inTable) {
            table = nullptr;
            lines << block.text();
            continue;
        }
        const QTextTableCell cell = inTable->cellAt(cursor);
        if (inTable != table || cell.row() != row)
            lines << QString();
        else
            lines.last() += cell.column() != column ? QLatin1Char('\t') : QLatin1Char(' ');
        table = inTable;
        row = cell.row();
        column = cell.column();
        lines.last() += block.text();
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

QString HtmlToPlain(const QString &Html)
{
    QString text = Html;
    text.replace(QChar(10), QLatin1Char(' '));
    text.remove(QChar(13));
    text.replace(QLatin1String("&nbsp;"), QLatin1String(" "));
    for (qsizetype open; (open = text.indexOf(QLatin1Char('<'))) >= 0;) {
        const qsizetype close = text.indexOf(QLatin1Char('>'), open);
        // An unclosed tag runs to the end of the text.
        const QString tag = text.mid(open, close < 0 ? -1 : close - open + 1);
        const QString upper = tag.toUpper();
        if (upper.contains(QLatin1String("<O:P>"))) {
            text.replace(tag, QLatin1String("~"));
        } else if (upper == QLatin1String("<HEAD>")) {
            const qsizetype end = text.indexOf(QLatin1String("</HEAD>"), open, Qt::CaseInsensitive);
            if (end < 0)
                text.remove(open, tag.size());
            else
                text = text.mid(end + 7);
        } else {
            text.replace(tag, QString());
        }
    }
    return text;
}

bool ObjPdfCZ(const QString &FileName, const QString &RecordLine, const QString &Body, bool NoView)
{
    const ObjPdfLetterhead head = ReadObjPdfLetterhead();
    // The body's lines: 95 characters at size 12, 110 otherwise.
    const QString wrapped = QString::fromStdString(
        WrapText(Body.toStdString(), int16_t(BodySize == QLatin1String("12") ? 95 : 110)));
    const auto draw = [&](PageRun &page) {
        page.frames(2, 24);
        page.headFrame();
        LetterheadRows(page, head);
        AddressLines(page, RecordLine);
        page.text(3, 25, QStringLiteral("ŽÁDANKA - č."), BoldFont, 10);
        page.text(6, 25, Piece(RecordLine, 1), BoldFont, 10);
        page.text(3, 20, QStringLiteral("Věc"), BoldFont, 12);
        page.lineCap();
        // The mark beside "Věc" is stroked with the footer rule.
        page.moveTo(3, 20.4f);
        if (page.measure()) {
            page.moveTo(3.7f, 20.4f);
            page.add(7);
        } else {
            page.lineTo(3.7f, 20.4f);
        }
        page.rule(2, 3.2f, 20.2f, 3.2f);
        float y = 19;
        for (const QString &line : wrapped.split(QLatin1Char('~'))) {
            page.body(3, y, line);
            y -= 0.5f;
            page.body(3, y, QStringLiteral("   -"));
        }
        page.body(3, 3.5f, QStringLiteral("Datum:"));
        page.body(5, 3.5f, Piece(RecordLine, 1));
        SignatureRow(page, RecordLine);
        page.image("Img1", 2.5f, 26.2f, 17.2f, 2.7f);
    };
    return WriteForm(FileName, draw, false, true, NoView);
}

bool ObjPdfEN(const QString &FileName, const QString &RecordLine, const QString &Body, bool NoView)
{
    const ObjPdfLetterhead head = ReadObjPdfLetterhead();
    QString text = Body;
    text.replace(QLatin1String("&nbsp;"), QLatin1String(" "));
    text.replace(QLatin1String("  "), QLatin1String(" "));
    text.remove(QChar(13));
    const QStringList lines = text.split(QChar(10));
    // The English letter names the institution in its head lines instead of the logo.
    const auto draw = [&](PageRun &page) {
        page.frames(1, 25);
        page.headFrame();
        page.text(6, 28, head.NameEn, BoldFont, 14);
        page.text(9, 27.35f, head.AddressEn, BoldFont, 12);
        page.text(9.5f, 26.75f, head.DepartmentEn, BoldFont, 12);
        AddressLines(page, RecordLine);
        page.text(3, 25, QStringLiteral("To"), BoldFont, 10);
        page.text(3, 19.5f, QStringLiteral("Material"), BoldFont, 10);
        page.text(15, 19.5f, QStringLiteral("Quantity"), BoldFont, 10);
        page.text(18, 19.5f, QStringLiteral("Cat.number"), BoldFont, 10);
        page.lineCap();
        page.rule(2, 3.2f, 20.2f, 3.2f);
        page.rule(3, 20, 16, 20);
        page.rule(3, 19.25f, 16, 19.25f);
        float y = 18.7f;
        for (const QString &line : lines) {
            page.body(3, y, GetField(line, 0, '\t'));
            page.body(16, y, GetField(line, 1, '\t'));
            page.body(17.75f, y, GetField(line, 2, '\t'));
            y -= 0.5f;
        }
        page.body(3, 3.5f, QStringLiteral("Date:"));
        page.body(4.7f, 3.5f, Piece(RecordLine, 1));
        page.body(3, 2.5f, QStringLiteral("Corresponding person"));
        page.body(7.5f, 2.5f, Piece(RecordLine, 35));
        page.body(13, 3.5f, QStringLiteral("phone number"));
        page.body(17, 3.5f, Piece(RecordLine, 36));
        page.body(12, 2.5f, QStringLiteral("e-mail address"));
        page.body(15, 2.5f, Piece(RecordLine, 37));
    };
    return WriteForm(FileName, draw, false, false, NoView);
}

bool ObjPdfTyp(const QString &FileName, const QString &RecordLine, const QString &Text1,
               const QString &Text2, bool NoView)
{
    const ObjPdfLetterhead head = ReadObjPdfLetterhead();
    const int kind = Kind(RecordLine);
    // A purchase order of goods from the stock (kind 1) has the item table; every other
    // kind is a request ("požadavek") with free text under the unit's letterhead.
    const bool items = kind == 1;
    // The picture footer (footer type 3) carries the type-4 mark.
    const bool mark = Piece(RecordLine, 39).trimmed() == QLatin1String("3");
    const QString freeText = items ? QString()
                                   : QString::fromStdString(WrapText(Text1.toStdString(), int16_t(95)));
    const QString source = GetField(Piece(RecordLine, 17), 1).trimmed();
    const auto draw = [&](PageRun &page) {
        page.image("Img1", 2.5f, 26.2f, 17.2f, 2.7f);
        if (mark)
            page.image("Img2", 3, 16, 2, 2);
        page.frames(2, 24);
        page.headFrame();
        if (!items) {
            page.text(7.6f, 28, QStringLiteral("Základna Laboratorní Medicíny"), BoldFont, 14);
            page.body(9, 27.5f, head.Adresa);
            page.body(6, 27, head.PscMesto);
            page.body(8.6f, 26.5f, QStringLiteral("IČO ") + head.ICO + QStringLiteral("          DIČ ") + head.DIC);
        }
        LetterheadRows(page, head);

        page.text(12.5f, 24.75f, QStringLiteral("Dodavatel:"), BoldFont, 10);
        float y = 24.25f;
        auto supplier = [&](QString value) {
            value.replace(QLatin1Char('#'), QLatin1Char(' '));
            if (!value.trimmed().isEmpty()) {
                page.body(12.5f, y, value.trimmed());
                y -= 0.5f;
            }
        };
        supplier(Piece(RecordLine, 3));
        supplier(Piece(RecordLine, 4));
        supplier(Piece(RecordLine, 5));
        supplier(Piece(RecordLine, 6) + QStringLiteral("  ") + Piece(RecordLine, 7));
        page.text(12, 22, QStringLiteral("Tel.: ") + Piece(RecordLine, 8), BodyFont, 8);
        page.text(16, 22, QStringLiteral("Fax:  ") + Piece(RecordLine, 9), BodyFont, 8);

        if (items) {
            page.text(3, 25, QStringLiteral("POŽADAVEK na nákup - č."), BoldFont, 10);
            page.text(7.5f, 25, Piece(RecordLine, 0), BoldFont, 10);
            page.text(4, 20, QStringLiteral("Objednáváme z katalogu: ") + Piece(RecordLine, 4), BoldFont, 10);
        } else {
            page.text(3, 25, QStringLiteral("ŽÁDANKA - č."), BoldFont, 10);
            page.text(6, 25, Piece(RecordLine, 0), BoldFont, 10);
        }
        page.lineCap();
        page.rule(2, 3.2f, 20.2f, 3.2f);
        page.rule(2, 8, 20.2f, 8);

        y = 17.75f;
        if (items) {
            page.rule(3, 19, 16, 19);
            page.rule(3, 18.25f, 16, 18.25f);
            page.text(4, 18.5f, QStringLiteral("Název materialu, (katal. číslo)"), BoldFont, 10);
            page.text(18, 18.5f, QStringLiteral("Množství"), BoldFont, 10);
            for (const QString &item : Text1.split(QLatin1Char('~'))) {
                page.body(4, y, GetField(item, 0));
                page.body(18, y, GetField(item, 1));
                y -= 0.5f;
            }
        } else {
            for (const QString &line : freeText.split(QLatin1Char('~'))) {
                page.body(3, y, line);
                y -= 0.5f;
            }
        }

        page.body(3, 9, QStringLiteral("Předpokládaná cena s DPH:"));
        page.text(9, 9, Piece(RecordLine, 38).trimmed() + QStringLiteral(" Kč"), BoldFont, 12);
        page.body(3, 8.5f, QStringLiteral("Hrazeno z"));
        page.body(5.5f, 8.5f,
                  (source.toUpper().startsWith(QLatin1String("GRANT")) ? QStringLiteral("GRANTu: ")
                                                                      : source + QStringLiteral(", číslo: ")) +
                      Piece(RecordLine, 2));
        page.body(13, 8.5f, QStringLiteral("V Lhotce, dne: ") + Piece(RecordLine, 1));

        SignatureRow(page, RecordLine);

        y = 7.45f;
        for (const QString &line : Text2.split(QLatin1Char('~'))) {
            page.body(3, y, line);
            y -= 0.5f;
        }
    };
    return WriteForm(FileName, draw, mark, true, NoView);
}

bool ObjPdfForm(const QString &FileName, const QString &RecordLine, const QString &BodyHtml, bool NoView)
{
    const int kind = Kind(RecordLine);
    if (kind == 3)
        return ObjPdfCZ(FileName, RecordLine, HtmlToPlain(BodyHtml), NoView);
    if (kind == 4)
        return ObjPdfEN(FileName, RecordLine, RichTextLines(BodyHtml), NoView);
    const QString signatures = HtmlToPlain(Piece(RecordLine, 40)).trimmed();
    if (kind == 1) {
        QStringList items;
        for (short i = 0; i < 8; ++i) {
            const QString goods = Piece(RecordLine, short(19 + 2 * i));
            const QString name = GetField(goods, 0).trimmed();
            if (name.isEmpty())
                continue;
            QString quantity = Piece(RecordLine, short(20 + 2 * i)).trimmed();
            const QString unit = GetField(goods, 2).trimmed();
            if (!unit.isEmpty() && !quantity.contains(unit))
                quantity += QLatin1Char(' ') + unit;
            items << name + QLatin1Char('#') + quantity;
        }
        return ObjPdfTyp(FileName, RecordLine, items.join(QLatin1Char('~')), signatures, NoView);
    }
    // The service order keeps its line breaks as "<br>".
    QString body = BodyHtml;
    if (kind == 5)
        body.replace(QLatin1String("<br>"), QLatin1String("~"), Qt::CaseInsensitive);
    return ObjPdfTyp(FileName, RecordLine, HtmlToPlain(body).trimmed(), signatures, NoView);
}

bool ObjPdfOfRow(const QSqlRecord &row, const QString &FileName, bool NoView)
{
    return ObjPdfForm(FileName, ObjRecordLine(row), row.value(QStringLiteral("file_html_text")).toString(), NoView);
}

QString ObjPdfPath(const QString &cisObj)
{
    return QDir(Session().TempDir).filePath(QString(cisObj).replace(QLatin1Char('/'), QLatin1Char('-')) + QStringLiteral(".pdf"));
}

bool ObjPdfPicturesToTemp(DbConnection &sys, const QString &login, QString *error)
{
    const QString dir = Session().TempDir;
    LogoToTemp(sys, dir);
    // The mark: the user's picture footer, copied afresh under the name the form reads.
    QFile mark(dir + QLatin1String(MarkFile));
    mark.remove();
    QSqlQuery query = sys.query();
    if (!sys.exec(query, QStringLiteral("SELECT oleObrazek FROM sys_paticky_obrazky WHERE typ='4' AND login=?"), {login})) {
        if (error)
            *error = DbErrorMessage(query.lastError());
        return false;
    }
    if (!query.next())
        return true;
    const QByteArray bytes = query.value(0).toByteArray();
    if (!mark.open(QIODevice::WriteOnly) || mark.write(bytes) != bytes.size()) {
        if (error)
            *error = QStringLiteral("Obrázek nelze zapsat do souboru ") + QDir::toNativeSeparators(mark.fileName()) +
                     QStringLiteral(".");
        return false;
    }
    return true;
}
