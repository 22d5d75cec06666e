// Colours, line styles, paths and the page structure of both page paths;
// rectangles, lines and images as placed on a page are in the document test.

#include "testpdf.h"

using namespace pdftest;

namespace {

// Operations in points, so that the figures read as written.
std::string InPoints(const std::function<void(clsPDFCreator &)> &ops)
{
    return Written([&](clsPDFCreator &pdf) {
        pdf.ScaleMode(0);
        ops(pdf);
    });
}

} // namespace

TEST(Graphics, StateOperatorsAndPathOptions)
{
    EXPECT_EQ(Written([](clsPDFCreator &pdf) {
                  for (int32_t colour : {0, -255, -128, 0x0000FF})
                      pdf.SetColorStroke(colour);
                  for (int32_t colour : {0x00FF00, 0xFF0000, -256})
                      pdf.SetColorFill(colour);
                  pdf.SetDash(0, 0);
                  pdf.SetDash(0.1f, 0);
                  pdf.SetLineWidth(0.1f);
                  pdf.SetLineCap(3);
                  pdf.SetLineCap(1);
                  pdf.SetLineJoin(-1);
                  pdf.SetLineJoin(2);
                  pdf.SetMiterLimit(0.5f);
                  pdf.SetMiterLimit(2); // not scaled
                  for (int32_t options : {3, 6, 5, 7, 0})
                      pdf.Path(options);
                  pdf.ScaleMode(7); // every length turns to 0
                  pdf.SetLineWidth(3);
              }),
              "0 G\r\n1 G\r\n0.502 G\r\n1 0 0 RG\r\n0 1 0 rg\r\n0 0 1 rg\r\n0 1 1 rg\r\n"
              "[ ] 0 d\r\n[2.835 0] 0 d\r\n2.835 w\r\n1 J\r\n2 j\r\n2 M\r\n"
              "h\r\nS\r\nf\r\nB\r\nb\r\n0 w\r\n");
}

TEST(Graphics, RoundedRectangleAndArcsInPoints)
{
    // Radius 8 is cut to half the height, 5; k = 2.75. The path is left open.
    EXPECT_EQ(InPoints([](clsPDFCreator &pdf) {
                  int32_t len;
                  pdf.Rectangle(0, 0, 20, 10, 1, 8, false, len);
              }),
              "n\r\n5 0 m\r\n15 0 l\r\n17.75 0 20 2.25 20 5 c\r\n20 5 l\r\n20 7.75 17.75 10 15 10 c\r\n5 10 l\r\n"
              "2.25 10 0 7.75 0 5 c\r\n0 5 l\r\n0 2.25 2.25 0 5 0 c\r\n");
    // An arc is a polygon of step degrees.
    EXPECT_EQ(InPoints([](clsPDFCreator &pdf) { pdf.Arc(100, 100, 10, 0, 90, 1, false, 0, 45, 1); }),
              "n\r\n100 100 m\r\n110 100 m\r\n110 100 l\r\n107.071 107.071 l\r\n100 110 l\r\nS\r\n");
    // Fill forces the pie: no move to the start, a line back to the centre.
    EXPECT_EQ(InPoints([](clsPDFCreator &pdf) { pdf.Arc(0, 0, 10, 0, 90, 0.5f, false, 90, 90, 5); }),
              "n\r\n0 0 m\r\n0 10 l\r\n-5 0 l\r\n0 0 l\r\nB\r\n");
    EXPECT_EQ(InPoints([](clsPDFCreator &pdf) { pdf.Arc(0, 0, 10, 0, 90, 1, false, 0, 0, 1); }),
              "n\r\n0 0 m\r\nS\r\n");
}

TEST(Pages, TypePageKeepsItsMediaBoxAndKidsAreNamedFromTwoPagesOn)
{
    int16_t content = 0;
    for (const auto &kids : {std::vector<int32_t>{}, std::vector<int32_t>{99}}) {
        EXPECT_TRUE(Written([&](clsPDFCreator &pdf) {
                      pdf.PaperWidth(10);
                      pdf.LoadStrem(0);
                      pdf.EndStrem();
                      content = 0;
                      pdf.TypePage(content);
                      pdf.CreatePDFZaver(pdf);
                      pdf.ClosePDFFile(kids);
                  }).starts_with(
                  "5 0 obj\r\n<<\r/Length 0\r>>\rstream\r\nendstream\r\nendobj\r\n"
                  "6 0 obj\r\n<<\r/Type/Page\r/Parent 2 0 R\r/MediaBox[ 0 0 595.276 841.89 ]\r"
                  "/Contents 5 0 R\r>>\r\nendobj\r\n7 0 obj\r\n<<\r/Type /Catalog\r/Pages 2 0 R\r>>\r\nendobj\r\n"
                  "2 0 obj\r\n<<\r/Type/Pages\r/Kids[\r14 0 R\r]\r/Count 0\r/Resources 3 0 R\r>>\r\nendobj\r\n"
                  // Without fonts and images the resources are empty, /ProcSet too.
                  "3 0 obj\r\n<<\r>>\r\nendobj\r\nxref\r\n0 8\r\n"));
        EXPECT_EQ(content, 5);
    }
}

TEST(Pages, BeginPageDrawsFormObjectsByTheirFlagsAndEndPageMeasures)
{
    const fs::path path = ScratchFile(".pdf");
    clsPDFCreator pdf;
    ASSERT_TRUE(pdf.InitPDFFile(path.string()));
    pdf.StartObject("Even", 2);
    pdf.EndObject();
    pdf.StartObject("OddNotFirst", 4 | 8);
    pdf.SetLineCap(1);
    pdf.EndObject();
    pdf.StartObject("Every", 7);
    pdf.EndObject();
    for (int page = 0; page < 3; ++page) {
        pdf.BeginPage();
        pdf.EndPage();
    }
    EXPECT_EQ(pdf.Pages(), 3);
    pdf.CreatePDFZaver(pdf);
    pdf.ClosePDFFile({});
    const std::string out = ReadFile(path);
    EXPECT_NE(out.find("5 0 obj\r\n<<\r/Type /XObject\r/Subtype /Form\r/FormType 1\r/Name /Even\r"
                       "/BBox [0 0 595.2 842]\r/Matrix [1 0 0 1 0 0]\r/Length 6 0 R >>\rstream\r\n"
                       "endstream\r\nendobj\r\n6 0 obj\r\n0\r\nendobj\r\n"),
              std::string::npos);
    EXPECT_NE(out.find("stream\r\n1 J\r\nendstream\r\nendobj\r\n8 0 obj\r\n5\r\nendobj\r\n"), std::string::npos);
    // Page objects 11, 14, 17: no "endobj" after the dictionary.
    EXPECT_NE(out.find("11 0 obj\r\n<<\r/Type /Page\r/Parent 3 0 R\r/Contents 9 0 R\r>>\r\n"
                       "12 0 obj\r\n<< /Length 13 0 R >>\rstream\r\n/Every Do\r\nendstream\r\nendobj\r\n"
                       "13 0 obj\r\n11\r\nendobj\r\n"),
              std::string::npos);
    EXPECT_NE(out.find("<< /Length 16 0 R >>\rstream\r\n/Even Do\r\n/Every Do\r\nendstream"), std::string::npos);
    EXPECT_NE(out.find("<< /Length 19 0 R >>\rstream\r\n/OddNotFirst Do\r\n/Every Do\r\nendstream"),
              std::string::npos);
    EXPECT_NE(out.find("/XObject <<\r\r/Even 5 0 R \r/OddNotFirst 7 0 R \r/Every 9 0 R \r>>\r"), std::string::npos);
}
