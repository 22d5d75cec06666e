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
// /Length comes out exact. Below the logo, pictures of the other depths.
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
    total += len - 1;
    for (int i = 2; i <= 4; ++i) {
        pdf.DrawImg("Img" + std::to_string(i), 2 + 4.5f * float(i - 2), 20, 4, 4, measure, len);
        total += len - 1;
    }
    return total;
}

// The order form as the callers build it: properties, dry run, fonts, stream,
// page, the logo in 24 bits, then pictures in 1, 4 (loaded gray) and 8 bits.
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
    const std::string pictures[] = {
        MakeBMP24(150, 30, [](int x, int y) {
            const auto v = uint8_t(y > 10 && y < 20 && x > 20 && x < 130 ? 30 : 200 - y * 3);
            return std::array<uint8_t, 3>{v, v, uint8_t(255 - v)};
        }),
        MakeBMP(1, 32, 16, {0, 0, 0, 0, 255, 255, 255, 0}, Rows(16, 4, 4)),
        MakeBMP(4, 8, 8, Palette(16), Rows(8, 4, 4)),
        MakeBMP(8, 10, 10, Palette(256), Rows(10, 10, 12)),
    };
    for (int i = 1; i <= 4; ++i) {
        const fs::path bmp = ScratchFile("." + std::to_string(i) + ".bmp");
        WriteFile(bmp, pictures[i - 1]);
        bool ok = false;
        pdf.LoadImgFromBMPFile("Img" + std::to_string(i), bmp.string(), i == 3, "", ok);
        EXPECT_TRUE(ok) << i;
    }
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
    // Info, two fonts of four objects, content, page, the images with their
    // lengths and palettes, catalog, then pages and resources written at the close.
    std::vector<int> order{1};
    for (int i = 5; i <= 26; ++i)
        order.push_back(i);
    order.insert(order.end(), {2, 3});
    EXPECT_EQ(ObjectOrder(pdf), order);
    ExpectXrefAndLengths(pdf);
    EXPECT_TRUE(std::regex_search(
        pdf, std::regex("^%PDF-1\\.3\r\n1 0 obj\r\n<<\r/Title \\(OBJEDNAVKA\\)\r/Author \\([^\r]*\\)\r"
                        "/Creator  \\(KS4 PDFCreator\\)\r/Producer \\([^\r]*\\)\r"
                        "/CreationDate \\(D:20[0-9]{12}\\+01'00'\\)\r>>\r\nendobj\r\n5 0 obj\r\n")));
    // The page in centimetres, its text in Windows-1250; the frame is one centimetre wider than asked for.
    EXPECT_NE(pdf.find("13 0 obj\r\n<<\r/Length 500\r>>\rstream\r\nn\r\n56.69 56.69 515.91 680.31 re\r\nS\r\n"
                       "56.693 722.835 m\r\n572.598 822.047 l\r\nS\r\nBT\r\n/Fnt1b 10 Tf\r\n85.04 708.66 Td\r\n"
                       "(\x8E\xC1" "DANKA - \xE8.) Tj\r\nET\r\nBT\r\n/Fnt1a 12 Tf\r\n85.04 538.58 Td\r\n"
                       "(P\xF8\xEDli\x9A \x9Elu\x9Dou\xE8k\xFD k\xF9\xF2 \xFAp\xECl \xEF\xE1" "belsk\xE9 \xF3" "dy) Tj\r\nET\r\n"
                       "BT\r\n/Fnt1a 8 Tf\r\n56.69 42.52 Td\r\n(I\xC8O          Bankovn\xED spojen\xED) Tj\r\nET\r\n"
                       "q\r487.559 0 0 76.535 70.866 742.677 cm\r/Img1 Do\rQ\r\n"
                       "q\r113.386 0 0 113.386 56.693 566.929 cm\r/Img2 Do\rQ\r\n"
                       "q\r113.386 0 0 113.386 184.252 566.929 cm\r/Img3 Do\rQ\r\n"
                       "q\r113.386 0 0 113.386 311.811 566.929 cm\r/Img4 Do\rQ\r\nendstream\r\nendobj\r\n"),
              std::string::npos);
    EXPECT_NE(pdf.find("2 0 obj\r\n<<\r/Type/Pages\r/Kids[\r14 0 R\r]\r/Count 1\r/Resources 3 0 R\r>>\r\nendobj\r\n"
                       "3 0 obj\r\n<<\r/ProcSet[/PDF/Text /ImageB /ImageC /ImageI ]\r/Font <<\r/Fnt1a 8 0 R \r/Fnt1b 12 0 R \r>>\r"
                       "/XObject <<\r/Img1 15 0 R \r/Img2 17 0 R \r/Img3 20 0 R \r/Img4 23 0 R \r\r>>\r>>\r\nendobj\r\n"
                       "xref\r\n0 27\r\n0000000000 65535 f\r\n"),
              std::string::npos);
    // The old reader keeps each palette entry's blue, green, red as they stand and weighs gray
    // 0.33 blue, 0.59 green, 0.11 red; 8-bit rows lose their padding, 4-bit ones keep it.
    std::string palette;
    for (int e = 0; e < 256; ++e)
        palette += {char(e), char(e + 1), char(e + 2)};
    EXPECT_NE(pdf.find("20 0 obj\r\n<<\r/Type /XObject\r/Subtype /Image\r/Name /Img3\r/Width 8\r/Height 8\r\n"
                       "/BitsPerComponent 4\r/ColorSpace [/Indexed /DeviceGray 15 22 0 R]\r/Length 21 0 R\r\n>>\rstream\r" +
                       Rows(8, 4, 4) + "\rendstream\r\nendobj\r\n21 0 obj\r\n32\r\nendobj\r\n22 0 obj\r\n<</Length 16 >>\rstream\r" +
                       std::string("\0\1\2\3\4\5\6\10\11\12\13\14\15\16\17\20", 16) +
                       "\rendstream\r\nendobj\r\n23 0 obj\r\n<<\r/Type /XObject\r/Subtype /Image\r/Name /Img4\r/Width 10\r"
                       "/Height 10\r\n/BitsPerComponent 8\r/ColorSpace [/Indexed /DeviceRGB 255 25 0 R]\r/Length 24 0 R\r\n>>\rstream\r" +
                       Rows(10, 10, 10) + "\rendstream\r\nendobj\r\n24 0 obj\r\n100\r\nendobj\r\n"
                       "25 0 obj\r\n<</Length 768 >>\rstream\r" + palette + "\rendstream\r\nendobj\r\n"),
              std::string::npos);
    EXPECT_TRUE(pdf.ends_with("trailer\r<<\r/Size 26\r/Info 1 0 R\r/Root 26 0 R\r>>\r\nstartxref\r" +
                              std::to_string(pdf.rfind("xref\r\n0 ")) + "\r\n%%EOF\r\r\n"));
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
