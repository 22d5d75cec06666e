// Colours, line styles, paths, the image placement and the page structure
// of both page paths.

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

TEST(Graphics, ColoursAreGrayUpToZeroAndPackedRgbOtherwise)
{
    EXPECT_EQ(Written([](clsPDFCreator &pdf) {
                  pdf.SetColorStroke(0);
                  pdf.SetColorStroke(-255);
                  pdf.SetColorStroke(-128);
                  pdf.SetColorStroke(0x0000FF);
                  pdf.SetColorFill(0x00FF00);
                  pdf.SetColorFill(0xFF0000);
                  pdf.SetColorFill(-256);
              }),
              "0 G\r\n1 G\r\n0.502 G\r\n1 0 0 RG\r\n0 1 0 rg\r\n0 0 1 rg\r\n0 1 1 rg\r\n");
}

TEST(Graphics, LineStylesWriteOnlyValidValues)
{
    EXPECT_EQ(Written([](clsPDFCreator &pdf) {
                  pdf.SetDash(0, 0);
                  pdf.SetDash(0.1f, 0);
                  pdf.SetLineWidth(0.1f);
                  pdf.SetLineCap(3);
                  pdf.SetLineCap(1);
                  pdf.SetLineJoin(-1);
                  pdf.SetLineJoin(2);
                  pdf.SetMiterLimit(0.5f);
                  pdf.SetMiterLimit(2); // not scaled
              }),
              "[ ] 0 d\r\n[2.835 0] 0 d\r\n2.835 w\r\n1 J\r\n2 j\r\n2 M\r\n");
}

TEST(Graphics, PathOptions)
{
    EXPECT_EQ(Written([](clsPDFCreator &pdf) { pdf.Path(3); }), "h\r\nS\r\n");
    EXPECT_EQ(Written([](clsPDFCreator &pdf) { pdf.Path(6); }), "f\r\n");
    EXPECT_EQ(Written([](clsPDFCreator &pdf) { pdf.Path(5); }), "B\r\n");
    EXPECT_EQ(Written([](clsPDFCreator &pdf) { pdf.Path(7); }), "b\r\n");
    EXPECT_EQ(Written([](clsPDFCreator &pdf) { pdf.Path(0); }), "");
}

TEST(Graphics, RectangleIsOneUnitWiderAndMeasuresItsReLine)
{
    int32_t measured = -1, real = -1;
    EXPECT_EQ(Written([&](clsPDFCreator &pdf) {
                  pdf.Rectangle(2, 2, 17.2f, 24, 1, 0, true, measured);
                  pdf.Rectangle(2, 2, 17.2f, 24, 1, 0, false, real);
              }),
              "n\r\n56.69 56.69 515.91 680.31 re\r\nS\r\n");
    EXPECT_EQ(measured, int32_t(std::string("56.69 56.69 515.91 680.31 re").size()) + 5);
    EXPECT_EQ(real, 0);
}

TEST(Graphics, RoundedRectangleClampsItsRadiusAndLeavesThePathOpen)
{
    const std::string out = InPoints([](clsPDFCreator &pdf) {
        int32_t len;
        pdf.Rectangle(0, 0, 20, 10, 1, 8, false, len);
    });
    // Radius 8 is cut to half the height, 5; k = 2.75.
    EXPECT_TRUE(out.starts_with("n\r\n5 0 m\r\n15 0 l\r\n17.75 0 20 2.25 20 5 c\r\n20 5 l\r\n")) << out;
    EXPECT_TRUE(out.ends_with("\r\n0 5 l\r\n0 2.25 2.25 0 5 0 c\r\n")) << out;
}

TEST(Graphics, MoveLineAndImageMeasures)
{
    int32_t move, line, image;
    const std::string measured = InPoints([&](clsPDFCreator &pdf) {
        pdf.MoveTo(1, 2, true, move);
        pdf.LineTo(3.25f, 4, 0, true, line);
        pdf.DrawImg("Img1", 10, 20, 100.004f, 50, true, image);
    });
    EXPECT_EQ(measured, "");
    const std::string out = InPoints([&](clsPDFCreator &pdf) {
        int32_t len;
        pdf.MoveTo(1, 2, false, len);
        pdf.LineTo(3.25f, 4, 0, false, len);
        pdf.DrawImg("Img1", 10, 20, 100.004f, 50, false, len);
        EXPECT_EQ(len, 0);
    });
    EXPECT_EQ(out, "1 2 m\r\n3.25 4 l\r\nq\r100 0 0 50 10 20 cm\r/Img1 Do\rQ\r\n");
    // MoveTo and LineTo count one byte short, DrawImg one over.
    EXPECT_EQ(move, 6);
    EXPECT_EQ(line, 9);
    EXPECT_EQ(image, 35);
}

TEST(Graphics, UnknownScaleModeTurnsEveryLengthToZero)
{
    EXPECT_EQ(Written([](clsPDFCreator &pdf) {
                  pdf.ScaleMode(7);
                  int32_t len;
                  pdf.MoveTo(5, 5, false, len);
                  pdf.SetLineWidth(3);
              }),
              "0 0 m\r\n0 w\r\n");
}

TEST(Graphics, ArcIsAPolygonOfStepDegrees)
{
    EXPECT_EQ(InPoints([](clsPDFCreator &pdf) { pdf.Arc(100, 100, 10, 0, 90, 1, false, 0, 45, 1); }),
              "n\r\n100 100 m\r\n110 100 m\r\n110 100 l\r\n107.071 107.071 l\r\n100 110 l\r\nS\r\n");
    // Fill forces the pie: no move to the start, a line back to the centre.
    EXPECT_EQ(InPoints([](clsPDFCreator &pdf) { pdf.Arc(0, 0, 10, 0, 90, 0.5f, false, 90, 90, 5); }),
              "n\r\n0 0 m\r\n0 10 l\r\n-5 0 l\r\n0 0 l\r\nB\r\n");
    EXPECT_EQ(InPoints([](clsPDFCreator &pdf) { pdf.Arc(0, 0, 10, 0, 90, 1, false, 0, 0, 1); }),
              "n\r\n0 0 m\r\nS\r\n");
}

TEST(Pages, TypePageKeepsItsMediaBoxAndGivesTheContentNumber)
{
    int16_t content = 0;
    const std::string out = Written([&](clsPDFCreator &pdf) {
        pdf.PaperWidth(10);
        pdf.LoadStrem(0);
        pdf.EndStrem();
        pdf.TypePage(content);
    });
    EXPECT_EQ(out, "5 0 obj\r\n<<\r/Length 0\r>>\rstream\r\nendstream\r\nendobj\r\n"
                   "6 0 obj\r\n<<\r/Type/Page\r/Parent 2 0 R\r/MediaBox[ 0 0 595.276 841.89 ]\r"
                   "/Contents 5 0 R\r>>\r\nendobj\r\n");
    EXPECT_EQ(content, 5);
}

TEST(Pages, KidsAreNamedOnlyFromTwoPagesOn)
{
    for (const auto &kids : {std::vector<int32_t>{}, std::vector<int32_t>{99}}) {
        const std::string out = Written([&](clsPDFCreator &pdf) {
            pdf.CreatePDFZaver(pdf);
            pdf.ClosePDFFile(kids);
        });
        EXPECT_NE(out.find("/Kids[\r14 0 R\r]\r/Count 0\r"), std::string::npos);
        // Without fonts and images the resources are empty, /ProcSet too.
        EXPECT_NE(out.find("3 0 obj\r\n<<\r>>\r\nendobj\r\n"), std::string::npos);
        // The catalog 5 is the highest; 4 repeats its xref line.
        EXPECT_NE(out.find("/Size 5\r/Info 1 0 R\r/Root 5 0 R\r"), std::string::npos);
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
