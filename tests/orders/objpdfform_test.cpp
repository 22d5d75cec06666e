// The order forms as PDF: each generator's page read back by the PDF tools,
// the places of the body lines, the reduction of the editor's HTML, bad input.

#include "orders/objpdfform.h"

#include "../pdf/testpdf.h"
#include "core/codepage.h"
#include "core/config.h"
#include "core/session.h"
#include "support/testenv.h"

#include <QDir>
#include <QFile>

#include <map>

using pdftest::HaveTool;
using pdftest::RunTool;

namespace {

// A record line from the pieces given by index (0 to 40), the rest empty.
QString RecordLine(const std::map<int, QString> &pieces)
{
    QStringList fields;
    for (int i = 0; i <= 40; ++i)
        fields << (pieces.count(i) ? pieces.at(i) : QString());
    return fields.join(QLatin1Char('~')) + QLatin1Char('~');
}

// The demo's orders of each kind as their record lines; kind 4 keeps the
// telephone and the e-mail in pieces 36 and 37.
QString GoodsOrder()
{
    return RecordLine({{0, "0007/12032026"}, {1, "2026-03-12 10:15:00"}, {2, "1207"},
                       {3, "BioLab Praha s.r.o."}, {4, "Katalog 2026"}, {5, "Na Příkopě 12"},
                       {6, "110 00"}, {7, "Praha 1"}, {8, "222 333 444"}, {9, "222 333 445"},
                       {10, "510"}, {13, "0,00##"}, {14, "1"}, {17, "#GRANTU#Reagencie"},
                       {19, "Pipety 10 µl#125,00#ks"}, {20, "4"},
                       {21, "Zkumavky Eppendorf#3,50#bal"}, {22, "20 bal"},
                       {35, "Jana Černá"}, {36, "266 001 234"}, {37, "1234"}, {38, "1 250,00"},
                       {39, "1"}, {40, "<p>Schválil: přednosta ústavu</p>"}});
}

QString CzechLetter()
{
    return RecordLine({{0, "0009/14032026"}, {1, "2026-03-14 09:00:00"}, {2, "1207"},
                       {14, "3"}, {19, "Ústav hematologie"}, {21, "#"}, {23, "Šrobárova 50#"},
                       {25, "100 34 Praha 10"}, {35, "Jana Černá"}, {36, "266 001 234"}, {37, "1234"}});
}

QString EnglishLetter()
{
    return RecordLine({{0, "0010/15032026"}, {1, "2026-03-15 11:30:00"}, {14, "4"},
                       {19, "Karolinska Institutet"}, {21, "Solnavägen 1"}, {23, "171 77 Stockholm"},
                       {35, "Jana Černá"}, {36, "+420 266 001 234"}, {37, "cerna@lhotka.example"}});
}

QString ScratchPdf(const QString &name)
{
    return QDir(Session().TempDir).filePath(name + QStringLiteral(".pdf"));
}

QByteArray ReadBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The forms declare "/Count 0", which poppler refuses ("Invalid page count 0");
// qpdf rebuilds the page tree from the kids, as a user does to open the file
// in such a viewer. Returns the copy, or empty text without the tools.
QString ReadableCopy(const QString &path)
{
    if (!HaveTool("qpdf") || !HaveTool("pdftotext") || !HaveTool("pdftoppm"))
        return QString();
    const QString copy = path.chopped(4) + QStringLiteral(".view.pdf");
    RunTool("qpdf --empty --pages '" + path.toStdString() + "' -- '" + copy.toStdString() + "'");
    return copy;
}

// The page as text, as a reader extracts it.
QString PdfText(const QString &path)
{
    return QString::fromStdString(RunTool("pdftotext -layout '" + path.toStdString() + "' -").output);
}

// A 24-bit picture, symmetric, written where the generators look for the logo.
void WriteLogo(const QString &name)
{
    const std::string bmp = pdftest::MakeBMP24(64, 16, [](int x, int y) {
        const bool band = y < 4 || y > 11;
        return std::array<uint8_t, 3>{uint8_t(band ? 160 : 255), uint8_t(band ? 60 : 255), uint8_t(x * 4)};
    });
    QFile file(Session().TempDir + name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bmp.data(), qint64(bmp.size()));
}

class ObjPdf : public ::testing::Test {
protected:
    void SetUp() override
    {
        Session() = SessionRecord();
        InitSpecialDirs();
        QDir().mkpath(Session().TempDir);
        SessionRecord &s = Session();
        s.InstFirma = QStringLiteral("Ústav klinického výzkumu Lhotka");
        s.InstAdresa = QStringLiteral("Nemocniční 5");
        s.InstPSC = QStringLiteral("100 00");
        s.InstMesto = QStringLiteral("Lhotka");
        s.InstICO = QStringLiteral("123 456");
        s.InstBanka = QStringLiteral("Banka Lhotka-město");
        s.InstUcet = QStringLiteral("11111-222/0100");
        s.InstUcet2 = QStringLiteral("99999-999/0100");
        testenv::WriteIni(QStringLiteral("[HLAVICKA]\r\nTELEFON=266 001 000\r\nFAX=266 001 099\r\n"
                                         "EMAIL=ustav@lhotka.example\r\nWWW=www.lhotka.example\r\n"
                                         "NAZEV-ENG=Institute of Clinical Research Lhotka\r\n"
                                         "ODDELENI-ENG=Department of Laboratory Medicine\r\n"));
        WriteLogo(QStringLiteral("/logo_kvl_tmp.bmp"));
        WriteLogo(QStringLiteral("/typ4_tmp.bmp"));
    }
};

} // namespace

TEST(HtmlToPlain, TagsBreaksAndHead)
{
    const struct {
        const char *html;
        const char *plain;
    } cases[] = {
        {"", ""},
        {"plain text", "plain text"},
        {"a\r\nb", "a b"},
        {"a&nbsp;&nbsp;b", "a  b"},
        {"<p>První</p><p>druhý</p>", "Prvnídruhý"},
        {"<p class=MsoNormal>Věc<o:p></o:p></p><p>Text<O:P></O:P></p>", "Věc~Text~"},
        {"<html><head><title>x</title><style>p{}</style></head><body>Tělo</body></html>", "Tělo"},
        {"<HEAD>bez konce<b>x</b>", "bez koncex"},
        {"a < b", "a "},                    // an unclosed tag runs to the end
        {"a > b <i>c</i>", "a > b c"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(HtmlToPlain(QString::fromUtf8(c.html)), QString::fromUtf8(c.plain)) << c.html;
}

TEST(ObjPdfUcet, NewAccountOnlyAfterItsDateAndNotThePlaceholder)
{
    const struct {
        const char *newAccount, *newdate, *now, *printed;
    } cases[] = {
        {"22222-333/0800", "1000", "2000", "22222-333/0800"},
        {"22222-333/0800", "3000", "2000", "11111-222/0100"},
        {"22222-333/0800", "0", "2000", "11111-222/0100"},
        {"22222-333/0800", "", "2000", "11111-222/0100"},
        {"99999-999/0100", "1000", "2000", "11111-222/0100"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(ObjPdfUcet(QStringLiteral(" 11111-222/0100 "), QString::fromUtf8(c.newAccount),
                             QString::fromUtf8(c.newdate), QString::fromUtf8(c.now)),
                  QString::fromUtf8(c.printed))
            << c.newAccount << " " << c.newdate;
}

// Each kind through ObjPdfForm: the file passes qpdf, its text comes back with
// the Czech letters, and the page is rendered for a person to look at.
TEST_F(ObjPdf, EachGeneratorWritesAPageTheToolsRead)
{
    const struct {
        const char *name;
        QString line;
        QString body;
        QStringList expected;
    } cases[] = {
        {"order-goods", GoodsOrder(), QString(),
         {"POŽADAVEK na nákup - č.", "0007/12032026", "Objednáváme z katalogu: Katalog 2026",
          "Pipety 10 µl", "4 ks", "20 bal", "Dodavatel:", "BioLab Praha s.r.o.", "Praha 1",
          "Předpokládaná cena s DPH:", "1 250,00 Kč", "GRANTu: 1207", "Vyřizuje:", "Jana Černá",
          "Schválil: přednosta ústavu", "11111-222/0100", "www.lhotka.example"}},
        {"order-text", RecordLine({{0, "0008/13032026"}, {1, "2026-03-13 08:00:00"}, {2, "1207"}, {14, "2"},
                                   {17, "#VVZ#"}, {35, "Jana Černá"}}),
         QStringLiteral("<p>Prosíme o servis centrifugy <b>Hettich</b>.</p>"),
         {"ŽÁDANKA - č.", "0008/13032026", "Základna Laboratorní Medicíny", "IČO 123 456",
          "Prosíme o servis centrifugy Hettich.", "VVZ, číslo: 1207"}},
        {"letter-cz", CzechLetter(), QStringLiteral("<p>Žádáme o zaslání vzorků.<o:p></o:p></p><p>Děkujeme.</p>"),
         {"ŽÁDANKA - č.", "2026-03-14 09:00:00", "Věc", "Ústav hematologie", "Šrobárova 50",
          "Žádáme o zaslání vzorků.", "Děkujeme.", "Datum:", "Vyřizuje:", "Telefon:", "Linka:",
          "Bankovní spojení", "266 001 000"}},
        {"letter-en", EnglishLetter(), QStringLiteral("<p>Please send us:</p><table><tr><td>Anti-CD34 antibody</td><td>2 vials</td>"
                        "<td>AB-1234</td></tr><tr><td>Buffer</td><td>1 l</td><td>B-9</td></tr></table>"),
         {"Institute of Clinical Research Lhotka", "Department of Laboratory Medicine", "To",
          "Karolinska Institutet", "Material", "Quantity", "Cat.number", "Please send us:",
          "Anti-CD34 antibody", "2 vials", "AB-1234", "Buffer", "Corresponding person", "cerna@lhotka.example"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const QString path = QDir(testenv::SamplesDir(QStringLiteral("pdf"))).filePath(QLatin1String(c.name) + ".pdf");
        ASSERT_TRUE(ObjPdfForm(path, c.line, c.body, true));
        pdftest::ExpectQpdfAccepts(path.toStdString(), true);
        EXPECT_TRUE(ReadBytes(path).contains("/Count 0"));
        const QString copy = ReadableCopy(path);
        if (copy.isEmpty())
            GTEST_SKIP() << "qpdf or poppler-utils missing";
        const QString text = PdfText(copy);
        for (const QString &expected : c.expected)
            EXPECT_TRUE(text.contains(expected)) << expected.toStdString() << "\n" << text.toStdString();
        const std::string png = path.chopped(4).toStdString();
        const auto r = RunTool("pdftoppm -r 60 -png -singlefile '" + copy.toStdString() + "' '" + png + "'");
        EXPECT_EQ(r.status, 0) << r.output;
        EXPECT_TRUE(QFile::exists(QString::fromStdString(png) + ".png"));
    }
}
