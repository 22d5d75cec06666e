// Whole documents built the way the order forms and protocols build them,
// checked byte by byte and by the PDF tools.

#include "testpdf.h"

using namespace pdftest;

namespace {

const char *const kCzech = "Příliš žluťoučký kůň úpěl ďábelské ódy";

// The page of a request form, run twice, first measuring. As the order forms
// do, the dry run adds figures of its own where the measures fall short of
// the bytes written: a plain Rectangle writes 3 bytes more than it counts,
// MoveTo and LineTo 1 more each, Path has none, DrawImg counts 1 over. So
// /Length comes out exact.
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
    pdf.LineTo(20.2f, 29, 0, measure, len);
    total += len + 1 + 3;
    if (!measure)
        pdf.Path(1);
    text(3, 25, "ŽÁDANKA - č.", "Fnt1b", 10);
    text(3, 19, kCzech, "Fnt1a", 12);
    text(2, 1.5f, "IČO          Bankovní spojení", "Fnt1a", 8);
    pdf.DrawImg("Img1", 2.5f, 26.2f, 17.2f, 2.7f, measure, len);
    return total + len - 1;
}

// The order form as the callers build it: properties, dry run, fonts, stream, page, logo.
fs::path OrderDocument(const fs::path &path)
{
    clsPDFCreator pdf;
    pdf.Title("OBJEDNAVKA");
    pdf.ScaleMode(3);
    pdf.PaperSize(0);
    pdf.Margin(0);
    pdf.Orientation(0);
    pdf.EncodeASCII85(false);
    EXPECT_TRUE(pdf.InitPDFFile(path.string()));
    const int32_t length = RequestPage(pdf, true);
    pdf.LoadFont("Fnt1a", 8, "Times New Roman", 0);
    pdf.LoadFont("Fnt1b", 12, "Times New Roman", 1);
    pdf.LoadStrem(length);
    RequestPage(pdf, false);
    pdf.EndStrem();
    int16_t content = 0;
    pdf.TypePage(content);
    const fs::path logo = ScratchFile(".logo.bmp");
    WriteFile(logo, MakeBMP24(150, 30, [](int x, int y) {
                  const auto v = uint8_t(y > 10 && y < 20 && x > 20 && x < 130 ? 30 : 200 - y * 3);
                  return std::array<uint8_t, 3>{v, v, uint8_t(255 - v)};
              }));
    bool ok = false;
    pdf.LoadImgFromBMPFile("Img1", logo.string(), false, "", ok);
    EXPECT_TRUE(ok);
    pdf.SetPages(1); // left at 0, poppler finds no page
    pdf.CreatePDFZaver(pdf);
    pdf.ClosePDFFile({});
    return path;
}

std::vector<int> ObjectOrder(const std::string &pdf)
{
    std::vector<int> numbers;
    const std::regex head("(^|\n)([0-9]+) 0 obj\r\n");
    for (std::sregex_iterator it(pdf.begin(), pdf.end(), head), end; it != end; ++it)
        numbers.push_back(std::stoi((*it)[2]));
    return numbers;
}

// Each xref entry, 20 bytes, points at its own object line, the reserved 4
// repeats 5; startxref points at the table; the page stream carries the
// length its dry run summed up.
void ExpectXrefAndLengths(const std::string &pdf)
{
    const std::size_t xref = pdf.rfind("xref\r\n0 ");
    EXPECT_EQ(std::stoul(pdf.substr(pdf.rfind("startxref\r") + 10)), xref);
    const std::size_t entries = pdf.find("0000000000 65535 f\r\n", xref) + 20;
    const int count = std::stoi(pdf.substr(xref + 8));
    for (int i = 1; i < count; ++i) {
        const std::size_t offset = std::stoul(pdf.substr(entries + 20 * std::size_t(i - 1), 10));
        const std::string head = std::to_string(i == 4 ? 5 : i) + " 0 obj\r\n";
        EXPECT_EQ(pdf.compare(offset, head.size(), head), 0) << "object " << i;
    }
    EXPECT_EQ(pdf.compare(entries + 20 * std::size_t(count - 1), 8, "trailer\r"), 0);
    const std::regex stream("/Length ([0-9]+)\r>>\rstream\r\n");
    for (std::sregex_iterator it(pdf.begin(), pdf.end(), stream), end; it != end; ++it) {
        const std::size_t start = std::size_t(it->position() + it->length());
        EXPECT_EQ(pdf.find("endstream\r\nendobj\r\n", start) - start, std::stoul((*it)[1]));
    }
}

} // namespace

TEST(Document, OrderFormBytesAndWhatTheToolsRead)
{
    const fs::path path = OrderDocument(SampleDir() / "order_form.pdf");
    const std::string pdf = ReadFile(path);
    // Info, two fonts of four objects, content, page, image and its length,
    // catalog, then pages and resources written at the close.
    EXPECT_EQ(ObjectOrder(pdf), (std::vector<int>{1, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 2, 3}));
    ExpectXrefAndLengths(pdf);
    EXPECT_TRUE(std::regex_search(
        pdf, std::regex("^%PDF-1\\.3\r\n1 0 obj\r\n<<\r/Title \\(OBJEDNAVKA\\)\r/Author \\([^\r]*\\)\r"
                        "/Creator  \\(KS4 PDFCreator\\)\r/Producer \\([^\r]*\\)\r"
                        "/CreationDate \\(D:20[0-9]{12}\\+01'00'\\)\r>>\r\nendobj\r\n5 0 obj\r\n")));
    EXPECT_NE(pdf.find("\r\nxref\r\n0 18\r\n0000000000 65535 f\r\n"), std::string::npos);
    EXPECT_NE(pdf.find("2 0 obj\r\n<<\r/Type/Pages\r/Kids[\r14 0 R\r]\r/Count 1\r/Resources 3 0 R\r>>\r\n"),
              std::string::npos);
    EXPECT_NE(pdf.find("3 0 obj\r\n<<\r/ProcSet[/PDF/Text /ImageB /ImageC /ImageI ]\r/Font <<\r"
                       "/Fnt1a 8 0 R \r/Fnt1b 12 0 R \r>>\r/XObject <<\r/Img1 15 0 R \r\r>>\r>>\r\n"),
              std::string::npos);
    EXPECT_TRUE(pdf.ends_with("trailer\r<<\r/Size 17\r/Info 1 0 R\r/Root 17 0 R\r>>\r\nstartxref\r" +
                              std::to_string(pdf.rfind("xref\r\n0 ")) + "\r\n%%EOF\r\r\n"));
    // The text reaches the file in Windows-1250.
    EXPECT_NE(pdf.find("(P\xF8\xED\x6Ci\x9A \x9Elu\x9Do\x75\xE8k\xFD k\xF9\xF2 \xFAp\xECl \xEF\xE1\x62\x65lsk\xE9 \xF3\x64y) Tj"),
              std::string::npos);
    ExpectQpdfAccepts(path);
    if (!HaveTool("pdftoppm") || !HaveTool("pdftotext"))
        GTEST_SKIP() << "poppler tools missing";
    const fs::path png = SampleDir() / "order_form";
    // Not a word from poppler either: any complaint would go to the output.
    const ToolResult render = RunTool("pdftoppm -png -r 50 -singlefile '" + path.string() + "' '" + png.string() + "'");
    EXPECT_EQ(render.status, 0);
    EXPECT_EQ(render.output, "");
    EXPECT_GT(fs::file_size(png.string() + ".png"), 1000u);
    const ToolResult text = RunTool("pdftotext '" + path.string() + "' -");
    EXPECT_EQ(text.status, 0) << text.output;
    EXPECT_NE(text.output.find(kCzech), std::string::npos) << text.output;
}

TEST(Document, TitleIsEscapedAndHasADefault)
{
    for (const auto &[title, expected] : std::vector<std::pair<const char *, std::string>>{
             {nullptr, "/Title (\\(senza titolo\\))\r"}, {"", "/Title ()\r"}, {"a(b)\\c", "/Title (a\\(b\\)\\\\c)\r"}}) {
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

TEST(Document, UnnamedFileGoesToTheTemporaryFolderAndFailedOpensLeaveNoFile)
{
    const fs::path dir = ScratchFile(".dir");
    fs::remove_all(dir);
    fs::create_directories(dir);
    clsPDFCreator pdf;
    pdf.TempDir(dir.string());
    ASSERT_TRUE(pdf.InitPDFFile(""));
    const std::string name = fs::directory_iterator(dir)->path().filename().string();
    // "~", then day, hour, minute, second and one random digit in hexadecimal.
    ASSERT_TRUE(std::regex_match(name, std::regex("~[0-9A-F]+\\.pdf"))) << name;
    const long number = std::stol(name.substr(1), nullptr, 16);
    EXPECT_GE(number, 1000000L * 10);
    EXPECT_LE(number, 31235959L * 10 + 9);

    EXPECT_FALSE(pdf.InitPDFFile((dir / "missing" / "x.pdf").string()));
    EXPECT_FALSE(pdf.InitPDFFile(dir.string()));
    EXPECT_TRUE(fs::is_directory(dir));
    int32_t len;
    EXPECT_THROW(pdf.MoveTo(1, 1, false, len), std::runtime_error);
}
