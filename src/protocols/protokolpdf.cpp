#include "protocols/protokolpdf.h"

#include "core/config.h"
#include "core/db.h"
#include "core/institution.h"
#include "core/session.h"
#include "pdf/objpdf.h"
#include "pdf/pdfformat.h"
#include "protocols/formmodel.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <stdexcept>
#include <system_error>

namespace {
const QChar Tilde = QLatin1Char('~');

std::string utf8(const QString &text) { return text.toStdString(); }

// One pass over a page: the dry run sums what the real run will write. The writer's own
// measures fall short of a few bytes where a path or a frame line follows; those are
// added here so that the stream's length comes out exact.
class PageRun {
public:
    PageRun(clsPDFCreator &pdf, bool measure) : pdf(pdf), measure(measure) {}

    void text(float x, float y, const QString &s, const char *font, float size)
    {
        pdf.DrawBinaryText(x, y, utf8(s), font, size, 0, 0, measure, len);
        total += len;
    }
    void frame(float x, float y, float w, float h)
    {
        pdf.Rectangle(x, y, w, h, 1, 0, measure, len);
        total += len + 3;
    }
    void moveTo(float x, float y)
    {
        pdf.MoveTo(x, y, measure, len);
        total += len + 1;
    }
    void lineTo(float x, float y)
    {
        pdf.LineTo(x, y, 0, measure, len);
        total += len + 1;
    }
    void stroke()
    {
        if (measure)
            total += 3;
        else
            pdf.Path(1);
    }
    void image(const char *name, float x, float y, float w, float h)
    {
        pdf.DrawImg(name, x, y, w, h, measure, len);
        total += len - 1;
    }
    int32_t length() const { return total; }

private:
    clsPDFCreator &pdf;
    bool measure;
    int32_t len = 0;
    int32_t total = 0;
};

// Lines of a multi-line text: wrapped, then each CR a line break and LF dropped.
QStringList wrappedLines(const QString &text, int width)
{
    QString wrapped = QString::fromStdString(WrapText(utf8(text), int16_t(width)));
    wrapped.replace(QLatin1Char('\r'), Tilde).remove(QLatin1Char('\n'));
    return wrapped.isEmpty() ? QStringList() : wrapped.split(Tilde);
}

float round2(double v) { return float(pdf::RoundHalfEven(v, 2)); }

bool hasLogo(const ProtocolPage &page) { return !page.logoFile.isEmpty() && QFileInfo(page.logoFile).isFile(); }

void drawFields(PageRun &run, const ProtocolPage &page)
{
    const QStringList data = page.data.split(Tilde), keys = page.keys.split(Tilde), types = page.types.split(Tilde),
                      bolds = page.bolds.split(Tilde), fonts = page.fonts.split(Tilde),
                      kursivs = page.kursivs.split(Tilde), pozice = page.pozice.split(QStringLiteral("\r\n"));
    // A form without a width would put every field at infinity: take the page's own.
    const double k = page.formWidth > 0 ? page.formWidth / 21 : 1;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        if (keys[i].trimmed().toInt() == 0)
            continue;
        const QStringList pos = pozice.value(i).split(Tilde);
        const double top = ParseLocaleNumber(pos.value(0)), left = ParseLocaleNumber(pos.value(1));
        const char *font = "Fnt1a";
        if (bolds.value(i).trimmed().toInt() >= 1)
            font = "Fnt1b";
        if (kursivs.value(i).trimmed().toInt() >= 1)
            font = "Fnt1i";
        float y = round2(27 - top / k);
        const float x = round2(left / k + 0.5);
        const double size = ParseLocaleNumber(fonts.value(i));
        const QString value = data.value(i);
        if (types.value(i).trimmed().toInt() == TypTextBox) {
            for (const QString &line : wrappedLines(value, size == 8.25 ? 138 : 110)) {
                run.text(x, y, line, font, float(size));
                y -= 0.325f;
                run.text(x, y, QStringLiteral("   -"), font, float(size));
            }
        } else if (!value.isEmpty()) {
            run.text(x, y, value, font, float(size));
        }
    }
}

int32_t firstPage(clsPDFCreator &pdf, const ProtocolPage &page, bool measure)
{
    PageRun run(pdf, measure);
    drawFields(run, page);
    run.frame(2, 2, 17.2f, 24);
    run.moveTo(2, 25.5f);
    run.lineTo(2, 29);
    run.lineTo(20.2f, 29);
    run.lineTo(20.2f, 25.5f);
    run.stroke();
    for (int i = 0; i < 3; ++i)
        run.text(2, LetterheadRowY[i], page.letterhead.value(i), "Fnt1a", 8);
    if (hasLogo(page))
        run.image("Img1", 2.5f, 26.2f, 17.2f, 2.7f);
    if (!page.korekce.isEmpty())
        run.text(19, 1.5f, QStringLiteral("Str. 2/1"), "Fnt1a", 8);
    return run.length();
}

int32_t correctionPage(clsPDFCreator &pdf, const ProtocolPage &page, bool measure)
{
    PageRun run(pdf, measure);
    run.frame(2, 2, 17.2f, 27);
    run.text(2.57f, 27.5f, QStringLiteral("Korekce:"), "Fnt1b", 10);
    float y = 27;
    for (const QString &line : wrappedLines(page.korekce, 110)) {
        run.text(2.57f, y, line, "Fnt1a", 10);
        y -= 0.5f;
    }
    run.text(19, 1.5f, QStringLiteral("Str. 2/2"), "Fnt1a", 8);
    return run.length();
}

// The page of a saved row: the form's width from its definition, the institution's
// letterhead and the logo already laid in the scratch folder.
ProtocolPage pageOf(DbConnection &sys, const ProtocolRow &row, const QString &logoFile)
{
    const std::optional<FormHeader> form = ReadFormHeader(sys, row.id);
    return {row.data_fields,  row.key_fields,   row.pozice_fields, row.type_fields,
            row.font_fields,  row.bold_fields,  row.kursiv_fields, row.korekce_fields,
            form ? ParseLocaleNumber(form->formParam.split(Tilde).value(2)) : 0,
            LetterheadRows(ReadObjPdfLetterhead()), logoFile};
}
} // namespace

QString ProtocolPdfPath(const QString &cisloProt, const QString &folderGiven)
{
    QString folder = folderGiven;
    if (folder.isEmpty())
        folder = GetSetting(QStringLiteral("NASTAVENI"), QStringLiteral("PROTOKOLY_SAVE"));
    if (folder.isEmpty())
        folder = Session().DirExe.isEmpty() ? QCoreApplication::applicationDirPath() : Session().DirExe;
    QString name = cisloProt;
    name.replace(QLatin1Char('\\'), QLatin1Char('-')).replace(QLatin1Char('/'), QLatin1Char('-'));
    return QDir(folder).filePath(name + QStringLiteral(".pdf"));
}

bool WriteProtocolPdf(const ProtocolPage &page, const QString &fileName)
{
    try {
        clsPDFCreator pdf;
        if (!ObjPdfOpen(pdf, QFile::encodeName(fileName).toStdString(), "PROTOKOL"))
            return false;
        const int32_t length = firstPage(pdf, page, true);
        pdf.LoadFont("Fnt1a", 8, "Times New Roman", 0);
        pdf.LoadFont("Fnt1b", 12, "Times New Roman", 1);
        pdf.LoadStrem(length);
        firstPage(pdf, page, false);
        pdf.EndStrem();
        const bool corrections = !page.korekce.isEmpty();
        pdf.SetPages(corrections ? 2 : 1);
        int16_t content = 0;
        pdf.TypePage(content);
        std::vector<int32_t> kids{pdf.MaxObjects()};
        if (hasLogo(page)) {
            bool ok = false;
            pdf.LoadImgFromBMPFile("Img1", QFile::encodeName(page.logoFile).toStdString(), false, "", ok);
        }
        if (corrections) {
            pdf.LoadStrem(correctionPage(pdf, page, true));
            correctionPage(pdf, page, false);
            pdf.EndStrem();
            content = 0;
            pdf.TypePage(content);
            kids.push_back(pdf.MaxObjects());
        } else {
            kids.clear();
        }
        pdf.CreatePDFZaver(pdf);
        pdf.ClosePDFFile(kids);
        return true;
    } catch (const std::exception &) {
        return false;
    }
}

bool ProtokolPdf(DbConnection &centre, DbConnection &sys, const QString &key, bool noView, const QString &outFile,
                 QString *fileOut, QString *error)
{
    if (key.trimmed().isEmpty())
        return true;
    const std::optional<ProtocolRow> row = ReadProtocol(centre, key.trimmed().toInt(), error);
    if (!row)
        return false;
    const QString file = outFile.isEmpty() ? ProtocolPdfPath(row->cislo_prot) : outFile;
    if (fileOut)
        *fileOut = file;
    if (!WriteProtocolPdf(pageOf(sys, *row, LogoToTemp(sys, Session().TempDir)), file)) {
        if (error)
            *error = QStringLiteral("Soubor %1 nelze vytvořit.").arg(file);
        return false;
    }
    if (!noView)
        QDesktopServices::openUrl(QUrl::fromLocalFile(file));
    return true;
}

bool ProtokolListPdf(DbConnection &centre, DbConnection &sys, int idPac, int formId, const QString &folder,
                     QStringList *files, QString *error)
{
    const std::optional<std::vector<ProtocolRow>> rows = ListProtocols(centre, idPac, formId, error);
    if (!rows)
        return false;
    const QString logo = LogoToTemp(sys, Session().TempDir);
    for (const ProtocolRow &row : *rows) {
        const QString file = ProtocolPdfPath(row.cislo_prot, folder);
        if (!WriteProtocolPdf(pageOf(sys, row, logo), file)) {
            if (error)
                *error = QStringLiteral("Soubor %1 nelze vytvořit.").arg(file);
            return false;
        }
        if (files)
            *files << file;
    }
    return true;
}

bool FormPdf(DbConnection &sys, clsDocument &doc, const std::vector<ControlValue> &controls, const QStringList &params,
             bool noView, QString *fileOut)
{
    const ProtocolLists l = CollectProtocolLists(doc, controls);
    const ProtocolPage page{l.data,   l.keys,    l.pozice, l.types, l.fonts, l.bolds, l.kursivs, QString(),
                            ParseLocaleNumber(params.value(2)), LetterheadRows(ReadObjPdfLetterhead()),
                            LogoToTemp(sys, Session().TempDir)};
    const QString file = QDir(Session().TempDir).filePath(QStringLiteral("formular.pdf"));
    if (fileOut)
        *fileOut = file;
    if (!WriteProtocolPdf(page, file))
        return false;
    if (!noView)
        QDesktopServices::openUrl(QUrl::fromLocalFile(file));
    return true;
}
