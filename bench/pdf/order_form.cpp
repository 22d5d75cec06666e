// Writes a one-page order form again and again to one file and prints how
// many documents a second one core manages: two fonts, 60 lines of text and
// a 600 x 100 24-bit logo read from its BMP file each time, as the order
// forms do. Goal: 2,000 documents a second or more. The rate is counted on
// the process's own CPU time, so that other work on the machine does not
// change it; the wall-clock rate is printed beside it.
//
// Usage: bench_pdf_order_form [seconds]

#include "pdf/pdfcreator.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {

void Put32(std::string &s, uint32_t v)
{
    for (int i = 0; i < 4; ++i)
        s += char(v >> (8 * i) & 0xFF);
}

// A 600 x 100 picture in 24 bits: header, then rows of 1800 bytes.
void WriteLogo(const fs::path &path)
{
    const int width = 600, height = 100, rowBytes = width * 3;
    std::string bmp = "BM";
    Put32(bmp, uint32_t(54 + rowBytes * height));
    Put32(bmp, 0);
    Put32(bmp, 54);
    Put32(bmp, 40);
    Put32(bmp, width);
    Put32(bmp, height);
    Put32(bmp, 1 | 24 << 16); // planes, bits
    for (int i = 0; i < 6; ++i)
        Put32(bmp, 0);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            bmp += {char(x), char(y * 2), char(200)};
    std::ofstream(path, std::ios::binary) << bmp;
}

int32_t Page(clsPDFCreator &pdf, bool measure)
{
    int32_t total = 0, len = 0;
    pdf.Rectangle(2, 2, 17.2f, 24, 1, 0, measure, len);
    total += len + 3;
    float x = 3;
    pdf.DrawBinaryText(x, 25, "ŽÁDANKA - č.", "Fnt1b", 10, 0, 0, measure, len);
    total += len;
    for (int line = 0; line < 60; ++line) {
        x = 3;
        const std::string text = "Řádek " + std::to_string(line + 1) +
                                 ": Příliš žluťoučký kůň úpěl ďábelské ódy, 12 ks, kat. č. 4711";
        pdf.DrawBinaryText(x, 24 - 0.35f * float(line), text, "Fnt1a", 10, 0, 0, measure, len);
        total += len;
    }
    pdf.DrawImg("Img1", 2.5f, 26.2f, 17.2f, 2.7f, measure, len);
    return total + len - 1;
}

void Document(const std::string &file, const std::string &logo)
{
    clsPDFCreator pdf;
    pdf.Title("OBJEDNAVKA");
    pdf.ScaleMode(3);
    pdf.PaperSize(0);
    if (!pdf.InitPDFFile(file)) {
        std::fprintf(stderr, "cannot write %s\n", file.c_str());
        std::exit(1);
    }
    const int32_t length = Page(pdf, true);
    pdf.LoadFont("Fnt1a", 8, "Times New Roman", 0);
    pdf.LoadFont("Fnt1b", 12, "Times New Roman", 1);
    pdf.LoadStrem(length);
    Page(pdf, false);
    pdf.EndStrem();
    int16_t content = 0;
    pdf.TypePage(content);
    bool ok = false;
    pdf.LoadImgFromBMPFile("Img1", logo, false, "", ok);
    pdf.SetPages(1);
    pdf.CreatePDFZaver(pdf);
    pdf.ClosePDFFile({});
}

} // namespace

int main(int argc, char **argv)
{
    const double seconds = argc > 1 ? std::atof(argv[1]) : 3;
    const fs::path dir = fs::temp_directory_path() / "fondarix-bench-pdf";
    fs::create_directories(dir);
    const std::string logo = (dir / "logo.bmp").string();
    const std::string file = (dir / "order.pdf").string();
    WriteLogo(logo);

    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const std::clock_t cpuStart = std::clock();
    long documents = 0;
    double elapsed = 0;
    do {
        Document(file, logo);
        ++documents;
        elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    } while (elapsed < seconds);

    const double cpu = double(std::clock() - cpuStart) / CLOCKS_PER_SEC;
    const double rate = documents / cpu;
    std::printf("order form PDF, %ju bytes: %ld documents, %.2f s CPU, %.2f s wall\n",
                std::uintmax_t(fs::file_size(file)), documents, cpu, elapsed);
    std::printf("%.0f documents/s on one core (goal 2000), %.0f documents/s wall clock\n", rate,
                documents / elapsed);
    std::printf("%s\n", rate >= 2000 ? "goal met" : "goal NOT met");
    return 0;
}
