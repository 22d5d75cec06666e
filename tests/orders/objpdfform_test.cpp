// The order forms as PDF: each generator's page read back by the PDF tools,
// the places of the body lines, the reduction of the editor's HTML, bad input.

#include "orders/objpdfform.h"

#include "orders/objhtml.h"

#include "../pdf/testpdf.h"
#include "core/codepage.h"
#include "core/config.h"
#include "core/session.h"
#include "orders/seed.h"
#include "support/testenv.h"

#include <QDir>
#include <QFile>


using pdftest::HaveTool;
using pdftest::RunTool;
using seed::ReadFile;
using seed::RecordLine;

namespace {

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
        EXPECT_TRUE(ReadFile(path).contains("/Count 0"));
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

// Where the body of the Czech letter stands: a line at Y 19 with its dash at
// 18.5; a long tail breaks at a blank and goes on 0.5 lower.
TEST_F(ObjPdf, CzechBodyLinesAndDashes)
{
    const auto td = [](double x, double y) {
        return QStringLiteral("%1 %2 Td\r\n").arg(x * 72 / 2.54, 0, 'f', 2).arg(y * 72 / 2.54, 0, 'f', 2).toLatin1();
    };
    const QString path = ScratchPdf(QStringLiteral("one-line"));
    ASSERT_TRUE(ObjPdfCZ(path, CzechLetter(), QStringLiteral("Jediný řádek"), true));
    QByteArray bytes = ReadFile(path);
    EXPECT_TRUE(bytes.contains(td(3, 19) + ToCp1250(QStringLiteral("(Jediný řádek) Tj"))));
    EXPECT_TRUE(bytes.contains(td(3, 18.5) + "(   -) Tj"));
    EXPECT_EQ(bytes.count("(   -) Tj"), 1);
    EXPECT_FALSE(bytes.contains(td(3, 18)));

    QString tail;
    for (int i = 0; tail.size() < 120; ++i)
        tail += QStringLiteral("slovo%1 ").arg(i);
    ASSERT_TRUE(ObjPdfCZ(path, CzechLetter(), tail.trimmed(), true));
    bytes = ReadFile(path);
    const qsizetype second = bytes.indexOf(td(3, 18.5) + "(slovo");
    ASSERT_GE(second, 0);
    // The first line ends at the blank before the 96th character.
    const qsizetype first = bytes.indexOf(td(3, 19) + "(");
    const QByteArray firstLine = bytes.mid(first + td(3, 19).size() + 1, bytes.indexOf(") Tj", first) - first - td(3, 19).size() - 1);
    EXPECT_LE(firstLine.size(), 95);
    EXPECT_TRUE(tail.startsWith(QString::fromLatin1(firstLine) + QLatin1Char(' ')));
    EXPECT_EQ(bytes.count("(   -) Tj"), 2);
}

// The five address lines: "#" is removed and a line left empty is not drawn;
// the dry run's texts differ from the written ones, so the stream's /Length
// is the measured figure and not the byte count.
TEST_F(ObjPdf, AddressLinesAndMeasuredLength)
{
    const QString path = ScratchPdf(QStringLiteral("address"));
    ASSERT_TRUE(ObjPdfCZ(path, RecordLine({{14, "3"}, {19, "#"}, {21, "##"}, {23, "#"}, {25, ""}, {27, "#"}}),
                         QStringLiteral("Text"), true));
    const QByteArray bytes = ReadFile(path);
    for (double y : {24.75, 24.25, 23.75, 23.25, 22.75})   // no address line at all
        EXPECT_FALSE(bytes.contains(QStringLiteral("354.33 %1 Td").arg(y * 72 / 2.54, 0, 'f', 2).toLatin1())) << y;
    const qsizetype stream = bytes.indexOf("stream\r\n", bytes.indexOf("13 0 obj"));
    const qsizetype end = bytes.indexOf("endstream", stream);
    const int declared = bytes.mid(bytes.indexOf("/Length ", bytes.indexOf("13 0 obj")) + 8, 6).split('\r')[0].toInt();
    const int written = int(end - stream - 8);
    // "Vyřizuje: ", "Telefon: ", "Linka: " count one blank more each, the
    // frame is measured 17.4 wide: the declared length is never short.
    EXPECT_GT(declared, written);
    EXPECT_LT(declared - written, 200);
    EXPECT_TRUE(bytes.contains(ToCp1250(QStringLiteral("(Vyřizuje:) Tj"))));
    EXPECT_TRUE(bytes.contains("/Kids[\r14 0 R\r]\r/Count 0\r"));
}

// Bad input: missing pieces, separators in texts, a 100,000-character body,
// pictures that are no BMP or cut short, a target that cannot be written.
TEST_F(ObjPdf, BadInputGivesAValidFileOrFalse)
{
    const QString bmp = QString::fromStdString(
        pdftest::MakeBMP24(40, 40, [](int, int) { return std::array<uint8_t, 3>{1, 2, 3}; }));
    const struct {
        const char *name;
        QString line;
        QString body;
        QByteArray logo;
    } cases[] = {
        {"empty-line", QString(), QString(), QByteArray()},
        {"short-line", QStringLiteral("0001/01012026~2026~"), QStringLiteral("<p>x"), QByteArray("BM")},
        {"separators", RecordLine({{14, "1"}, {19, "A~B#C#D"}, {20, "1~2"}, {3, "F#i#r#m"}}),
         QStringLiteral("a~b#c"), QByteArray("not a picture at all")},
        {"long-body-cz", CzechLetter(), QString(100000, QLatin1Char('x')) + QStringLiteral(" konec"),
         ToCp1250(bmp).left(70)},
        {"long-body-typ", GoodsOrder().replace(QStringLiteral("~1~"), QStringLiteral("~2~")),
         QStringLiteral("<p>") + QStringLiteral("slovo ").repeated(20000) + QStringLiteral("</p>"), QByteArray()},
        {"long-body-en", EnglishLetter(), QStringLiteral("řádek\t1\tA<br>").repeated(5000), QByteArray()},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        QFile logo(Session().TempDir + QStringLiteral("/logo_kvl_tmp.bmp"));
        ASSERT_TRUE(logo.open(QIODevice::WriteOnly | QIODevice::Truncate));
        logo.write(c.logo);
        logo.close();
        const QString path = ScratchPdf(QLatin1String(c.name));
        ASSERT_TRUE(ObjPdfForm(path, c.line, c.body, true));
        pdftest::ExpectQpdfAccepts(path.toStdString(), true);
        const QByteArray bytes = ReadFile(path);
        EXPECT_EQ(bytes.count("/Type/Page\r"), 1);
        EXPECT_FALSE(bytes.contains("/Name /Img1"));   // a broken logo is left out
    }
    EXPECT_FALSE(ObjPdfForm(QStringLiteral("/nonexistent-folder/x.pdf"), GoodsOrder(), QString(), true));
    EXPECT_FALSE(ObjPdfForm(Session().TempDir, CzechLetter(), QString(), true));   // a folder
}
