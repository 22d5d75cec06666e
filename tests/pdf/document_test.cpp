// Whole documents built the way the order forms and protocols build them,
// checked byte by byte and by the PDF tools.

#include "testpdf.h"

#include <regex>

using namespace pdftest;

namespace {

const char *const kCzech = "Příliš žluťoučký kůň úpěl ďábelské ódy";

// The page of a request form. Every call runs twice, first measuring. As the
// order forms do, the dry run adds figures of its own where the measures
// fall short of the bytes written: a plain Rectangle writes 3 bytes more than
// it counts ("n" and the path), MoveTo and LineTo 1 more each, Path has no
// measure, and DrawImg counts 1 byte more than it writes. These are chosen
// so that /Length comes out exact.
int32_t RequestPage(clsPDFCreator &pdf, bool measure)
{
    int32_t total = 0, len = 0;
    auto text = [&](float x, float y, const char *s, const char *font, float size) {
        pdf.DrawBinaryText(x, y, s, font, size, 0, 0, measure, len);
        total += len;
    };
    pdf.Rectangle(2, 2, 17.2f, 24, 1, 0, measure, len);
    total += len + 3;
    pdf.MoveTo(2, 25.5f, measure, len);
    total += len + 1;
    pdf.LineTo(2, 29, 0, measure, len);
    total += len + 1;
    pdf.LineTo(20.2f, 29, 0, measure, len);
    total += len + 1 + 3;
    if (!measure)
        pdf.Path(1);
    text(3, 25, "ŽÁDANKA - č.", "Fnt1b", 10);
    text(6, 25, "0042/05032024", "Fnt1b", 10);
    text(3, 20, "Věc", "Fnt1b", 12);
    text(3, 19, kCzech, "Fnt1a", 12);
    text(3, 18.5f, "   -", "Fnt1a", 12);
    text(2, 1.5f, "IČO          Bankovní spojení          Telefon", "Fnt1a", 8);
    pdf.DrawImg("Img1", 2.5f, 26.2f, 17.2f, 2.7f, measure, len);
    return total + len - 1;
}

// A second page as a protocol with corrections has it.
int32_t CorrectionPage(clsPDFCreator &pdf, bool measure)
{
    int32_t total = 0, len = 0;
    float x = 2.57f;
    pdf.Rectangle(2, 2, 17.2f, 27, 0, 0, measure, len);
    total += len; // with options 0 nothing follows the "re" line
    pdf.DrawBinaryText(x, 27.5f, "Korekce:", "Fnt1b", 12, 0, 0, measure, len);
    total += len;
    pdf.DrawBinaryText(x, 27, "Oprava údajů pacienta (č. 7)", "Fnt1a", 12, 0, 0, measure, len);
    total += len;
    x = 19;
    pdf.DrawBinaryText(x, 1.5f, "Str. 2/2", "Fnt1a", 12, 0, 0, measure, len);
    return total + len;
}

// A letterhead logo: a gray band with a dark bar.
std::string LogoFile()
{
    const fs::path path = ScratchFile(".logo.bmp");
    WriteFile(path, MakeBMP24(150, 30, [](int x, int y) {
                  const auto v = uint8_t(y > 10 && y < 20 && x > 20 && x < 130 ? 30 : 200 - y * 3);
                  return std::array<uint8_t, 3>{v, v, uint8_t(255 - v)};
              }));
    return path.string();
}

void StartDocument(clsPDFCreator &pdf, const fs::path &path)
{
    pdf.Title("OBJEDNAVKA");
    pdf.ScaleMode(3);
    pdf.PaperSize(0);
    pdf.Margin(0);
    pdf.Orientation(0);
    pdf.EncodeASCII85(false);
    ASSERT_TRUE(pdf.InitPDFFile(path.string()));
}

// Dry run, fonts on the first page only, the stream, the page object.
void AddPage(clsPDFCreator &pdf, int32_t (*page)(clsPDFCreator &, bool), bool loadFonts)
{
    const int32_t length = page(pdf, true);
    if (loadFonts) {
        pdf.LoadFont("Fnt1a", 8, "Times New Roman", 0);
        pdf.LoadFont("Fnt1b", 12, "Times New Roman", 1);
    }
    pdf.LoadStrem(length);
    page(pdf, false);
    pdf.EndStrem();
    int16_t content = 0;
    pdf.TypePage(content);
}

// Tests run side by side: only one of them writes the sample kept for people.
fs::path OrderDocument(const fs::path &path)
{
    clsPDFCreator pdf;
    StartDocument(pdf, path);
    AddPage(pdf, RequestPage, true);
    // Left at 0, /Count 0 makes poppler find no page at all.
    pdf.SetPages(1);
    bool ok = false;
    pdf.LoadImgFromBMPFile("Img1", LogoFile(), false, "", ok);
    EXPECT_TRUE(ok);
    pdf.CreatePDFZaver(pdf);
    pdf.ClosePDFFile({});
    return path;
}

fs::path ProtocolWithCorrection()
{
    const fs::path path = SampleDir() / "protocol_two_pages.pdf";
    clsPDFCreator pdf;
    StartDocument(pdf, path);
    std::vector<int32_t> kids(2);
    AddPage(pdf, RequestPage, true);
    pdf.SetPages(2);
    kids[0] = pdf.MaxObjects();
    bool ok = false;
    pdf.LoadImgFromBMPFile("Img1", LogoFile(), false, "", ok);
    AddPage(pdf, CorrectionPage, false);
    kids[1] = pdf.MaxObjects();
    pdf.CreatePDFZaver(pdf);
    pdf.ClosePDFFile(kids);
    return path;
}

std::vector<int> Numbers(const std::vector<std::pair<int, std::size_t>> &objects)
{
    std::vector<int> numbers;
    for (const auto &o : objects)
        numbers.push_back(o.first);
    return numbers;
}

// Every xref entry points at its own object line; the reserved 4 repeats 5.
void ExpectXrefMatches(const std::string &pdf)
{
    const std::vector<std::size_t> offsets = XrefOffsets(pdf);
    ASSERT_GT(offsets.size(), 5u);
    for (std::size_t i = 1; i < offsets.size(); ++i) {
        if (i == 4)
            EXPECT_EQ(offsets[4], offsets[5]);
        else
            EXPECT_EQ(pdf.compare(offsets[i], std::to_string(i).size() + 8, std::to_string(i) + " 0 obj\r\n"), 0)
                << "object " << i;
    }
    const std::size_t startxref = pdf.rfind("startxref\r");
    EXPECT_EQ(std::stoul(pdf.substr(startxref + 10)), pdf.rfind("xref\r\n0 "));
}

// Each page stream carries the length its dry run summed up.
void ExpectPageLengthsExact(const std::string &pdf)
{
    const std::regex head("/Length ([0-9]+)\r>>\rstream\r\n");
    int pages = 0;
    for (std::sregex_iterator it(pdf.begin(), pdf.end(), head), end; it != end; ++it, ++pages) {
        const std::size_t start = std::size_t(it->position() + it->length());
        EXPECT_EQ(pdf.find("endstream\r\nendobj\r\n", start) - start, std::stoul((*it)[1]));
    }
    EXPECT_GT(pages, 0);
}

} // namespace

TEST(Document, OrderFormHasFixedObjectOrderXrefAndTrailer)
{
    const std::string pdf = ReadFile(OrderDocument(ScratchFile(".pdf")));
    // Info, two fonts of four objects, content, page, image and its length,
    // catalog, then pages and resources written at the close.
    EXPECT_EQ(Numbers(ObjectsInOrder(pdf)),
              (std::vector<int>{1, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 2, 3}));
    ExpectXrefMatches(pdf);
    ExpectPageLengthsExact(pdf);
    EXPECT_NE(pdf.find("xref\r\n0 18\r\n0000000000 65535 f\r\n"), std::string::npos);
    EXPECT_NE(pdf.find("2 0 obj\r\n<<\r/Type/Pages\r/Kids[\r14 0 R\r]\r/Count 1\r/Resources 3 0 R\r>>\r\n"),
              std::string::npos);
    EXPECT_NE(pdf.find("trailer\r<<\r/Size 17\r/Info 1 0 R\r/Root 17 0 R\r>>\r\n"), std::string::npos);
    EXPECT_NE(pdf.find("3 0 obj\r\n<<\r/ProcSet[/PDF/Text /ImageB /ImageC /ImageI ]\r/Font <<\r"
                       "/Fnt1a 8 0 R \r/Fnt1b 12 0 R \r>>\r/XObject <<\r/Img1 15 0 R \r\r>>\r>>\r\n"),
              std::string::npos);
    EXPECT_EQ(pdf.substr(0, 10), "%PDF-1.3\r\n");
    EXPECT_EQ(pdf.substr(pdf.size() - 8), "%%EOF\r\r\n");
    // The text reaches the file in Windows-1250.
    EXPECT_NE(pdf.find("(P\xF8\xED\x6Ci\x9A \x9Elu\x9Do\x75\xE8k\xFD k\xF9\xF2 \xFAp\xECl \xEF\xE1\x62\x65lsk\xE9 \xF3\x64y) Tj"),
              std::string::npos);
}

TEST(Document, InfoObjectKeepsItsSeparatorsAndZone)
{
    const std::string pdf = ReadFile(OrderDocument(ScratchFile(".pdf")));
    const std::regex info("^%PDF-1\\.3\r\n1 0 obj\r\n<<\r/Title \\(OBJEDNAVKA\\)\r/Author \\([^\r()]*\\)\r"
                          "/Creator  \\(KS4 PDFCreator\\)\r/Producer \\([^\r]*\\)\r"
                          "/CreationDate \\(D:20[0-9]{12}\\+01'00'\\)\r>>\r\nendobj\r\n5 0 obj\r\n");
    EXPECT_TRUE(std::regex_search(pdf, info));
}

TEST(Document, TitleIsEscapedAndHasADefault)
{
    for (const auto &[title, expected] : std::vector<std::pair<const char *, std::string>>{
             {nullptr, "/Title (\\(senza titolo\\))\r"},
             {"", "/Title ()\r"},
             {"a(b)\\c", "/Title (a\\(b\\)\\\\c)\r"}}) {
        const fs::path path = ScratchFile(".pdf");
        {
            clsPDFCreator pdf;
            if (title)
                pdf.Title(title);
            ASSERT_TRUE(pdf.InitPDFFile(path.string()));
        }
        EXPECT_NE(ReadFile(path).find(expected), std::string::npos) << expected;
    }
}

TEST(Document, OrderFormReadsBackInTools)
{
    const fs::path path = OrderDocument(SampleDir() / "order_form.pdf");
    ExpectQpdfAccepts(path);
    if (!HaveTool("pdftoppm") || !HaveTool("pdftotext"))
        GTEST_SKIP() << "poppler tools missing";
    const fs::path png = SampleDir() / "order_form";
    // Not a word from poppler either: any complaint would go to the output.
    const ToolResult render = RunTool("pdftoppm -png -r 50 -singlefile '" + path.string() + "' '" + png.string() + "'");
    EXPECT_EQ(render.status, 0);
    EXPECT_EQ(render.output, "");
    EXPECT_GT(fs::file_size(png.string() + ".png"), 1000u);
    const ToolResult text = RunTool("pdftotext -layout '" + path.string() + "' -");
    EXPECT_EQ(text.status, 0) << text.output;
    EXPECT_NE(text.output.find(kCzech), std::string::npos) << text.output;
    EXPECT_NE(text.output.find("ŽÁDANKA - č."), std::string::npos) << text.output;
}

TEST(Document, ProtocolWithCorrectionHasTwoPages)
{
    const fs::path path = ProtocolWithCorrection();
    const std::string pdf = ReadFile(path);
    ExpectXrefMatches(pdf);
    ExpectPageLengthsExact(pdf);
    // Page 1 at 14; its image 15..16; page 2's content and page 17, 18.
    EXPECT_NE(pdf.find("/Kids[\r14 0 R\r18 0 R\r\r]\r/Count 2\r"), std::string::npos);
    ExpectQpdfAccepts(path);
    if (!HaveTool("pdftotext"))
        GTEST_SKIP() << "pdftotext missing";
    const ToolResult text = RunTool("pdftotext '" + path.string() + "' -");
    EXPECT_NE(text.output.find("Oprava údajů pacienta (č. 7)"), std::string::npos) << text.output;
    EXPECT_TRUE(std::regex_search(RunTool("pdfinfo '" + path.string() + "'").output, std::regex("Pages: +2\n")));
}

TEST(Document, UnnamedFileGoesToTheTemporaryFolder)
{
    const fs::path dir = ScratchFile(".dir");
    fs::remove_all(dir);
    fs::create_directories(dir);
    clsPDFCreator pdf;
    pdf.TempDir(dir.string());
    ASSERT_TRUE(pdf.InitPDFFile(""));
    const auto entry = *fs::directory_iterator(dir);
    const std::string name = entry.path().filename().string();
    // "~", then day, hour, minute, second and one random digit in hexadecimal.
    ASSERT_TRUE(std::regex_match(name, std::regex("~[0-9A-F]+\\.pdf"))) << name;
    const long number = std::stol(name.substr(1), nullptr, 16);
    EXPECT_GE(number, 1000000L * 10);
    EXPECT_LE(number, 31235959L * 10 + 9);
}

TEST(Document, FailedOpenLeavesNoUsableFile)
{
    clsPDFCreator pdf;
    EXPECT_FALSE(pdf.InitPDFFile((ScratchFile(".missing") / "x.pdf").string()));
    const fs::path dir = ScratchFile(".isdir");
    fs::create_directories(dir);
    EXPECT_FALSE(pdf.InitPDFFile(dir.string()));
    EXPECT_TRUE(fs::is_directory(dir));
    int32_t len;
    EXPECT_THROW(pdf.MoveTo(1, 1, false, len), std::runtime_error);
    // A dry run writes nothing and so needs no file.
    pdf.MoveTo(1, 1, true, len);
    EXPECT_GT(len, 0);
}
