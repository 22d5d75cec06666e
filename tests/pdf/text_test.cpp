// Fonts, the measure of text and the text lines written.

#include "testpdf.h"

#include <stdexcept>

using namespace pdftest;

namespace {

void TimesFonts(clsPDFCreator &pdf)
{
    pdf.LoadFont("Fnt1a", 8, "Times New Roman", 0);
    pdf.LoadFont("Fnt1b", 12, "times new  roman", 1);
}

// What text operations write after two Times fonts.
std::string TextOut(const std::function<void(clsPDFCreator &)> &op)
{
    const std::string all = Written([&](clsPDFCreator &pdf) {
        TimesFonts(pdf);
        op(pdf);
    });
    return all.substr(all.rfind("endobj\r\n") + 8);
}

} // namespace

TEST(Text, BinaryAndPlainFormsRoundDifferentlyAndTheMeasureIsWhatIsWritten)
{
    int32_t measured = 0;
    const std::string out = TextOut([&](clsPDFCreator &pdf) {
        int32_t len;
        float x = 2;
        // Each binary line is measured first; the real run then counts nothing.
        for (const auto &[text, size, rotation] : std::vector<std::tuple<const char *, float, float>>{
                 {"a(b)\\c", 8.5f, 0}, {"a", 12, 90}, {"a", 12, 45}, {"Věc", 12, 33.3f}, {"", 12, 0}}) {
            pdf.DrawBinaryText(x, 1.5f, text, "Fnt1a", size, 0, rotation, true, len);
            measured += len;
            pdf.DrawBinaryText(x, 1.5f, text, "Fnt1a", size, 0, rotation, false, len);
            EXPECT_EQ(len, 0);
        }
        pdf.DrawText(x, 1.5f, "a", "Fnt1a", 8.5f, 0, 0);
        pdf.DrawText(x, 1.5f, "a", "Fnt1a", 12, 0, 45);
    });
    EXPECT_EQ(std::size_t(measured), out.find("BT\r\n/Fnt1a 8.5 Tf"));
    // The binary form rounds the size to whole points and the position to two places;
    // of a rotation's matrix only the first two values are rounded to two places.
    EXPECT_EQ(out, "BT\r\n/Fnt1a 8 Tf\r\n56.69 42.52 Td\r\n(a\\(b\\)\\\\c) Tj\r\nET\r\n"
                   "BT\r\n/Fnt1a 12 Tf\r\n0 1 -1 0 56.69 42.52 Tm\r\n(a) Tj\r\nET\r\n"
                   "BT\r\n/Fnt1a 12 Tf\r\n0.71 0.71 -0.707 0.707 56.69 42.52 Tm\r\n(a) Tj\r\nET\r\n"
                   "BT\r\n/Fnt1a 12 Tf\r\n0.84 0.55 -0.549 0.836 56.69 42.52 Tm\r\n(V\xEC" "c) Tj\r\nET\r\n"
                   "BT\r\n/Fnt1a 12 Tf\r\n56.69 42.52 Td\r\n() Tj\r\nET\r\n"
                   "BT\r\n/Fnt1a 8.5 Tf\r\n56.693 42.52 Td\r\n(a) Tj\r\nET\r\n"
                   "BT\r\n/Fnt1a 12 Tf\r\n0.707 0.707 -0.707 0.707 56.693 42.52 Tm\r\n(a) Tj\r\nET\r\n");
}

TEST(Text, LengthAlignmentAndState)
{
    const std::string out = TextOut([](clsPDFCreator &pdf) {
        pdf.ScaleMode(0);
        EXPECT_FLOAT_EQ(pdf.Length("A", "Fnt1a", 10), 7.22f);
        // Key found without regard to case; code 29 lies below the table: 333.
        EXPECT_FLOAT_EQ(pdf.Length("A\x1D", "FNT1A", 10), 7.22f + 3.33f);
        EXPECT_EQ(pdf.Length("A", "Fnt1", 10), 0);
        float right = 100, centre = 100;
        int32_t len;
        pdf.DrawBinaryText(right, 10, "AA", "fnt1a", 10, 1, 0, false, len);
        pdf.DrawText(centre, 10, "AA", "Fnt1b", 10, 2, 0);
        EXPECT_FLOAT_EQ(right, 100 - 14.44f);
        EXPECT_FLOAT_EQ(centre, 100 - 7.22f);
        pdf.SetWordSpacing(2);
        pdf.SetCharSpacing(1);
        pdf.SetTextHorizontalScaling(90);
        for (float mode : {1.f, 2.f, -1.f})
            pdf.SetTextRenderingMode(mode);
        EXPECT_FLOAT_EQ(pdf.Length("A A", "Fnt1a", 10), 16.94f + 2 + 3);
        pdf.ScaleMode(3);
        EXPECT_NEAR(pdf.Length("A A", "Fnt1a", 10), 21.94 * 2.54 / 72, 1e-6);
        pdf.ScaleMode(7);
        EXPECT_EQ(pdf.Length("A", "Fnt1a", 10), 0);
    });
    // The key is written as given, whatever case found the font.
    EXPECT_EQ(out, "BT\r\n/fnt1a 10 Tf\r\n85.56 10 Td\r\n(AA) Tj\r\nET\r\n"
                   "BT\r\n/Fnt1b 10 Tf\r\n92.78 10 Td\r\n(AA) Tj\r\nET\r\n"
                   "2 Tw\r\n1 Tc\r\n90 Tz\r\n1 Tr\r\n");
}

TEST(Fonts, TimesWritesWidthsDescriptorEncodingAndDictionary)
{
    const std::string out = Written(TimesFonts);
    EXPECT_TRUE(out.starts_with("5 0 obj\r\n[\r\n778 778 250 333 555 500 500 1000 832 278 333 333 500 570 250 333 \r\n"));
    // 226 widths: 14 full lines of 16 and one of 2.
    EXPECT_NE(out.find(" 556 556 556 556 500 \r\n333 333 \r\n]\r\nendobj\r\n6 0 obj\r\n"), std::string::npos);
    EXPECT_EQ(std::count(out.begin(), out.begin() + long(out.find("]\r\n")), '\n'), 17);
    EXPECT_NE(out.find("10 0 obj\r\n<<\r/Type/FontDescriptor\r/FontName/Times#20New#20Roman,Bold\r"
                       "/Flags 16418 /FontBBox [-250 -216 1201 1000] /MissingWidth 333 /StemV 136 "
                       "/StemH 136 /ItalicAngle 0 /CapHeight 891 /XHeight 446 /Ascent 891 /Descent -216 "
                       "/Leading 149 /MaxWidth 1001 /AvgWidth 401\r>>\r\nendobj\r\n"),
              std::string::npos);
    EXPECT_NE(out.find("7 0 obj\r\n<<\r/Type/Encoding\r/BaseEncoding/WinAnsiEncoding\r/Differences [\r"
                       "140/Sacute/Tcaron\r"),
              std::string::npos);
    EXPECT_NE(out.find("\r222/Tcedilla\r\n224/racute\r"), std::string::npos);
    EXPECT_NE(out.find("\r254/tcedilla/dotaccent\r]\r>>\r\nendobj\r\n8 0 obj\r\n"), std::string::npos);
    // The second font's dictionary names the first font's metrics.
    EXPECT_NE(out.find("12 0 obj\r\n<<\r/Type/Font\r/Subtype/TrueType\r/Name/Fnt1b\r/BaseFont/Times#20New#20Roman,Bold\r"
                       "/Encoding 7 0 R\r/FirstChar 30\r/LastChar 255\r/Widths 5 0 R\r/FontDescriptor 6 0 R\r>>\r\n"),
              std::string::npos);
}

TEST(Fonts, ArialAndUnknownStylesFailBeforeWritingAnything)
{
    const std::string out = Written([](clsPDFCreator &pdf) {
        EXPECT_THROW(pdf.LoadFont("A", 8, "Arial", 0), std::out_of_range);
        EXPECT_THROW(pdf.LoadFont("V", 8, "Verdana", 1), std::out_of_range);
        EXPECT_THROW(pdf.LoadFont("T", 8, "Times New Roman", 4), std::out_of_range);
        EXPECT_EQ(pdf.MaxObjects(), 4);
        EXPECT_EQ(pdf.Length("x", "A", 10), 0);
        // The failed loads still count: the next font works under its own key.
        pdf.LoadFont("Fnt1a", 8, "Courier New", 0);
        pdf.ScaleMode(0);
        EXPECT_FLOAT_EQ(pdf.Length("A\x1F", "Fnt1a", 10), 12); // 31 lies below Courier's table
    });
    // Courier's 224 widths from code 32 fill exactly 14 lines, no empty one.
    EXPECT_EQ(std::count(out.begin(), out.begin() + long(out.find("]\r\n")), '\n'), 16);
    EXPECT_NE(out.find("\r\n]\r\nendobj\r\n6 0 obj\r\n"), std::string::npos);
}

TEST(Fonts, StandardFontHasNoMetrics)
{
    const std::string out = Written([](clsPDFCreator &pdf) {
        pdf.LoadFontStandard("F9", "Courier New", 3);
        pdf.LoadFontStandard("F8", "Helvetica", 7);
        EXPECT_EQ(pdf.Length("abc", "F9", 10), 0);
        pdf.CreatePDFZaver(pdf);
        pdf.ClosePDFFile({});
    });
    EXPECT_TRUE(out.starts_with("5 0 obj\r\n<< /Type /Font /Subtype /Type1 /Name /F9 /BaseFont /CourierNew,BoldItalic "
                                "/Encoding /WinAnsiEncoding >>\r\nendobj\r\n6 0 obj\r\n<< /Type /Font /Subtype /Type1 "
                                "/Name /F8 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>\r\n"));
    EXPECT_NE(out.find("/Font <<\r/F9 5 0 R \r/F8 6 0 R \r>>\r>>\r\n"), std::string::npos);
}
