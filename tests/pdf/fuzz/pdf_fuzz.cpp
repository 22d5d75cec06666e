// libFuzzer target over the PDF writer's BMP reader and text operations.
// Built and run by run_fuzz.sh with clang; not part of the main build.
//
// The first byte chooses: odd, the rest is a BMP file (bit 2: gray);
// even, the rest drives fonts and text. Besides "no crash, no leak, no
// huge allocation" it checks what must hold for any input: a BMP read as
// good has the sizes its header promises, both readers agree on it, and
// the dry run of a text page counts exactly the bytes the page gets.

#include "pdf/pdfcreator.h"
#include "pdf/pdfformat.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

std::string Scratch(const char *name)
{
    static const fs::path dir = [] {
        const char *base = std::getenv("PDF_FUZZ_SCRATCH");
        fs::path d = fs::path(base ? base : fs::temp_directory_path().string()) /
                     ("pdf-fuzz-" + std::to_string(getpid()));
        fs::create_directories(d);
        return d;
    }();
    return (dir / name).string();
}

std::string ReadAll(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void Check(bool condition, const char *what)
{
    if (!condition) {
        std::fprintf(stderr, "check failed: %s\n", what);
        std::abort();
    }
}

void FuzzBmp(const uint8_t *data, std::size_t size, bool gray)
{
    const std::string bmp = Scratch("in.bmp");
    std::ofstream(bmp, std::ios::binary).write(reinterpret_cast<const char *>(data), long(size));

    clsPDFCreator pdf;
    std::vector<uint8_t> pixels, palette;
    int32_t width = 0, height = 0;
    uint8_t bits = 0;
    bool ok = false;
    pdf.LeggeBMP_new(bmp, pixels, palette, width, height, bits, gray, ok);
    if (ok) {
        Check(width > 0 && height > 0, "positive size");
        Check(bits == 1 || bits == 4 || bits == 8 || bits == 24, "known depth");
        const std::size_t w = std::size_t(width), h = std::size_t(height);
        const std::size_t stride = (bits * w / 8 + 3) & ~std::size_t(3);
        const std::size_t expected = bits == 24 ? w * h * (gray ? 1 : 3) : bits == 8 && w % 4 ? w * h : stride * h;
        Check(pixels.size() == expected, "pixel bytes");
        Check(palette.size() == (bits == 24 ? 0 : std::size_t(gray ? 1 : 3) << bits), "palette bytes");
    }
    Check(pdf.InitPDFFile(Scratch("bmp.pdf")), "open");
    bool loaded = !ok;
    pdf.LoadImgFromBMPFile("Img1", bmp, gray, "", loaded);
    Check(loaded == ok, "both readers agree");
}

void FuzzText(const uint8_t *data, std::size_t size)
{
    FuzzedDataProvider in(data, size);
    const std::string path = Scratch("text.pdf");
    int32_t expected = 0;
    std::string streamHead;
    {
        clsPDFCreator pdf;
        pdf.ScaleMode(in.ConsumeIntegralInRange(-1, 4));
        Check(pdf.InitPDFFile(path), "open");
        static const char *const families[] = {"Times New Roman", "Courier New", "Symbol", "Arial", "x"};
        for (const char *key : {"Fnt1a", "Fnt1b"}) {
            try {
                pdf.LoadFont(key, 8, families[in.ConsumeIntegralInRange(0, 4)], in.ConsumeIntegralInRange(-1, 5));
            } catch (const std::out_of_range &) {
                // Arial's short tables and styles outside 0..3.
            }
        }
        struct Line {
            float x, y, size, rotation;
            int32_t align;
            std::string text, key;
        };
        std::vector<Line> lines(in.ConsumeIntegralInRange(0, 8));
        for (Line &l : lines) {
            l.x = in.ConsumeFloatingPointInRange(-1e4f, 1e4f);
            l.y = in.ConsumeFloatingPointInRange(-1e4f, 1e4f);
            l.size = in.ConsumeFloatingPointInRange(-100.f, 1000.f);
            l.rotation = in.ConsumeBool() ? 0 : in.ConsumeFloatingPointInRange(-720.f, 720.f);
            l.align = in.ConsumeIntegralInRange(-1, 3);
            l.key = in.ConsumeBool() ? "FNT1A" : in.ConsumeRandomLengthString(8);
            l.text = in.ConsumeRandomLengthString(200);
        }
        auto page = [&](bool measure) {
            int32_t total = 0, len = 0;
            for (const Line &l : lines) {
                float x = l.x;
                pdf.DrawBinaryText(x, l.y, l.text, l.key, l.size, l.align, l.rotation, measure, len);
                total += len;
            }
            return total;
        };
        expected = page(true);
        pdf.LoadStrem(expected);
        streamHead = std::to_string(pdf.MaxObjects()) + " 0 obj\r\n<<\r/Length " + std::to_string(expected) +
                     "\r>>\rstream\r\n";
        page(false);
        pdf.EndStrem();

        // Everything else only has to survive.
        const std::string text = in.ConsumeRandomLengthString(200);
        float x = in.ConsumeFloatingPointInRange(-1e4f, 1e4f);
        pdf.SetCharSpacing(in.ConsumeFloatingPointInRange(-10.f, 10.f));
        pdf.SetWordSpacing(in.ConsumeFloatingPointInRange(-10.f, 10.f));
        pdf.SetTextHorizontalScaling(in.ConsumeFloatingPointInRange(0.f, 200.f));
        pdf.SetTextRenderingMode(in.ConsumeFloatingPointInRange(-1.f, 3.f));
        pdf.Length(text, in.ConsumeRandomLengthString(8), in.ConsumeFloatingPointInRange(-100.f, 100.f));
        pdf.DrawText(x, 1, text, "Fnt1b", in.ConsumeFloatingPointInRange(-100.f, 100.f),
                     in.ConsumeIntegralInRange(0, 2), in.ConsumeFloatingPointInRange(-360.f, 360.f));
        pdf::FormatNum(in.ConsumeFloatingPoint<double>(), in.ConsumeIntegralInRange<int16_t>(-2, 20));
    }
    // Only fixed texts stand before the page stream's head.
    const std::string file = ReadAll(path);
    const std::size_t start = file.find(streamHead) + streamHead.size();
    Check(file.compare(start + std::size_t(expected), 19, "endstream\r\nendobj\r\n") == 0, "measured length");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    if (data[0] & 1)
        FuzzBmp(data + 1, size - 1, data[0] & 2);
    else
        FuzzText(data + 1, size - 1);
    return 0;
}
