// The BMP reader, image objects from buffers and arrays, and BMP files that lie.

#include "testpdf.h"

#include <atomic>
#include <cstdlib>
#include <new>

using namespace pdftest;

// The largest single allocation since the last reset, to show that a header
// claiming a huge picture does not make the reader reserve it.
static std::atomic<std::size_t> gLargestAllocation{0};

void *operator new(std::size_t size)
{
    std::size_t seen = gLargestAllocation.load();
    while (size > seen && !gLargestAllocation.compare_exchange_weak(seen, size)) {
    }
    if (void *p = std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}
void operator delete(void *p) noexcept { std::free(p); }
void operator delete(void *p, std::size_t) noexcept { std::free(p); }

namespace {

struct Picture {
    bool ok = false;
    std::vector<uint8_t> data, palette;
    int32_t width = 0, height = 0;
    uint8_t bits = 0;
};

Picture ReadNew(const std::string &bmp, bool gray = false)
{
    const fs::path path = ScratchFile(".bmp");
    WriteFile(path, bmp);
    Picture p;
    clsPDFCreator pdf;
    pdf.LeggeBMP_new(path.string(), p.data, p.palette, p.width, p.height, p.bits, gray, p.ok);
    return p;
}

// What LoadImgFromBMPFile writes for the picture, after the Info object.
std::string LoadedObjects(const std::string &bmp, bool gray, bool &ok)
{
    const fs::path path = ScratchFile(".bmp");
    WriteFile(path, bmp);
    return Written([&](clsPDFCreator &pdf) { pdf.LoadImgFromBMPFile("Img1", path.string(), gray, "", ok); });
}

std::vector<uint8_t> Bytes(const std::string &s) { return {s.begin(), s.end()}; }

} // namespace

// The new reader; the old one, which LoadImgFromBMPFile uses, differs only in
// the palette and is read back in the document test.
TEST(Bmp, RowsOfEveryDepthAndThePaletteOfTheNewReader)
{
    // bits, width, bytes of pixels and of the whole row, bytes kept a row:
    // only 8-bit rows lose their padding.
    for (const auto &[bits, width, bytes, stride, kept] : std::vector<std::array<int, 5>>{
             {8, 10, 10, 12, 10}, {8, 8, 8, 8, 8}, {1, 10, 2, 4, 4}, {1, 32, 4, 4, 4}, {4, 6, 3, 4, 4}, {4, 8, 4, 4, 4}}) {
        const Picture p = ReadNew(MakeBMP(uint16_t(bits), width, 3, Palette(1 << bits), Rows(3, bytes, stride)));
        ASSERT_TRUE(p.ok) << bits << " bits, width " << width;
        EXPECT_EQ(p.data, Bytes(Rows(3, bytes, kept))) << bits << " bits, width " << width;
        EXPECT_EQ((std::array<int32_t, 3>{p.width, p.height, p.bits}), (std::array<int32_t, 3>{width, 3, bits}));
        EXPECT_EQ(p.palette.size(), 3u << bits);
    }
    // 24 bits turn to red, green, blue and skip the padding.
    auto pixel = [](int x, int y) { return std::array<uint8_t, 3>{uint8_t(x), uint8_t(y), uint8_t(100 + x)}; };
    for (int width : {10, 8, 7}) {
        const Picture p = ReadNew(MakeBMP24(width, 2, pixel));
        ASSERT_TRUE(p.ok);
        std::vector<uint8_t> rgb;
        for (int y = 0; y < 2; ++y)
            for (int x = 0; x < width; ++x)
                rgb.insert(rgb.end(), {uint8_t(100 + x), uint8_t(y), uint8_t(x)});
        EXPECT_EQ(p.data, rgb) << width;
    }
    // Gray weights are truncated and capped.
    const std::vector<std::array<uint8_t, 3>> bgr = {{0, 0, 255}, {255, 255, 255}, {100, 200, 50}};
    EXPECT_EQ(ReadNew(MakeBMP24(3, 1, [&](int x, int) { return bgr[std::size_t(x)]; }), true).data,
              (std::vector<uint8_t>{84, 255, 145}));
    // Entry 0 is blue 1, green 2, red 3; entry 1 blue 201, green 101, red 1.
    const std::string bmp = MakeBMP(1, 32, 1, {1, 2, 3, 0, 201, 101, 1, 0}, std::string(4, '\x55'));
    EXPECT_EQ(ReadNew(bmp).palette, (std::vector<uint8_t>{3, 2, 1, 1, 101, 201}));
    EXPECT_EQ(ReadNew(bmp, true).palette, (std::vector<uint8_t>{2, 82}));
}

TEST(Images, Ascii85StreamsAndJpegArrays)
{
    const std::string encoded = Written([](clsPDFCreator &pdf) {
        pdf.EncodeASCII85(true);
        pdf.LoadImgFromBuffer("I", {0, 0, 0, 0, 1, 2}, {}, 2, 1, 24, false);
        pdf.LoadImgFromBuffer("P", {0}, {9, 9, 9, 8, 8, 8}, 1, 1, 1, false);
    });
    // The end mark "~>" is left out of the lengths.
    EXPECT_TRUE(encoded.starts_with(
              "5 0 obj\r\n<<\r/Type /XObject\r/Subtype /Image\r/Name /I\r/Width 2\r/Height 1\r/Filter /ASCII85Decode\r\n"
              "/BitsPerComponent 8\r/ColorSpace /DeviceRGB\r/Length 6 0 R\r\n>>\rstream\r!!!!!!<N~>\rendstream\r\n"
              "endobj\r\n6 0 obj\r\n8\r\nendobj\r\n7 0 obj\r\n"));
    EXPECT_TRUE(encoded.ends_with("9 0 obj\r\n<</Filter /ASCII85Decode\r/Length 8 >>\rstream\r#mgnD#RC~>\rendstream\r\nendobj\r\n"));
    // An encoded array is JPEG under ASCII85, with its length given directly.
    EXPECT_EQ(Written([](clsPDFCreator &pdf) {
                  pdf.LoadImgFromArray("J", {}, {}, 4, 4, 24, false, "s8W-!~>");
                  bool ok = true;
                  pdf.LoadImgFromBMPFile("X", "/nonexistent.bmp", false, "", ok);
                  EXPECT_FALSE(ok);
              }),
              "5 0 obj\r\n<<\r/Type /XObject\r/Subtype /Image\r/Name /J\r/Width 4\r/Height 4\r\n"
              "/BitsPerComponent 8\r/ColorSpace /DeviceRGB\r/Length 8\r/Filter[/ASCII85Decode/DCTDecode]\r\n"
              ">>\rstream\rs8W-!~>\rendstream\r\nendobj\r\n6 0 obj\r\n7\r\nendobj\r\n");
}

TEST(Images, BadBmpGivesNotOkNothingWrittenAndNoLargeAllocation)
{
    auto header = [](uint16_t bits, int32_t width, int32_t height, std::size_t dataBytes) {
        return MakeBMP(bits, width, height, Palette(bits <= 8 ? 1 << bits : 0), std::string(dataBytes, '\x11'));
    };
    std::string farOffset = header(24, 4, 4, 48);
    farOffset[10] = farOffset[11] = farOffset[12] = '\xF0', farOffset[13] = '\x7F';
    const std::vector<std::pair<const char *, std::string>> cases = {
        {"not BM", "XY" + header(24, 4, 4, 48).substr(2)},
        {"header cut", header(24, 4, 4, 48).substr(0, 30)},
        {"data cut", header(24, 100, 100, 10)},
        {"palette cut", header(8, 4, 4, 16).substr(0, 300)},
        {"huge width", header(24, 0x7FFFFFFF, 1, 16)},
        {"huge height", header(24, 1, 0x7FFFFFFF, 16)},
        {"huge both", header(8, 0x7FFFFFFF, 0x7FFFFFFF, 16)},
        {"negative height", header(24, 4, -4, 48)},
        {"negative width", header(24, -4, 4, 48)},
        {"zero width", header(24, 0, 4, 48)},
        {"16 bits", header(16, 4, 4, 48)},
        {"32 bits", header(32, 4, 4, 64)},
        {"2 bits", header(2, 4, 4, 16)},
        {"offset past the end", farOffset},
        {"empty file", ""},
    };
    for (const auto &[what, bmp] : cases) {
        gLargestAllocation = 0;
        bool ok = true;
        EXPECT_EQ(LoadedObjects(bmp, false, ok), "") << what;
        EXPECT_FALSE(ok) << what;
        EXPECT_FALSE(ReadNew(bmp).ok) << what;
        EXPECT_LT(gLargestAllocation.load(), std::size_t(1) << 20) << what;
    }
}
