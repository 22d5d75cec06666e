#pragma once
// Shared helpers of the PDF writer's tests: files, BMP pictures made on the
// spot, and the PDF tools run as a reader would.

#include "pdf/pdfcreator.h"
#include "fondarix_paths.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace pdftest {

namespace fs = std::filesystem;

// Documents worth opening by hand stay here after the run.
inline fs::path SampleDir()
{
    const fs::path dir = fs::path(FONDARIX_BINARY_DIR) / "samples" / "pdf";
    fs::create_directories(dir);
    return dir;
}

// A file of the running test's own, so that tests may run side by side.
inline fs::path ScratchFile(const std::string &suffix)
{
    const fs::path dir = fs::path(FONDARIX_BINARY_DIR) / "pdf-scratch";
    fs::create_directories(dir);
    const auto *info = ::testing::UnitTest::GetInstance()->current_test_info();
    return dir / (std::string(info->test_suite_name()) + "." + info->name() + suffix);
}

inline std::string ReadFile(const fs::path &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

inline void WriteFile(const fs::path &path, const std::string &bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

// What a sequence of operations writes after the header and Info object of a
// fresh document (the writer closes the file when it goes).
inline std::string Written(const std::function<void(clsPDFCreator &)> &ops)
{
    const fs::path path = ScratchFile(".ops.pdf");
    {
        clsPDFCreator pdf;
        EXPECT_TRUE(pdf.InitPDFFile(path.string()));
        ops(pdf);
    }
    const std::string all = ReadFile(path);
    return all.substr(all.find("endobj\r\n") + 8);
}

// An uncompressed BMP: a 54-byte header, the palette (4 bytes an entry, blue
// green red zero) and the rows as given, each already padded by the caller.
inline std::string MakeBMP(uint16_t bits, int32_t width, int32_t height,
                           const std::vector<uint8_t> &palette, const std::string &rows)
{
    std::string s = "BM";
    auto put = [&s](uint32_t v, int bytes) {
        for (int i = 0; i < bytes; ++i)
            s += char(v >> (8 * i) & 0xFF);
    };
    const auto offset = uint32_t(54 + palette.size());
    for (uint32_t v : {uint32_t(offset + rows.size()), 0u, offset, 40u, uint32_t(width), uint32_t(height)})
        put(v, 4);
    put(1, 2);
    put(bits, 2);
    s.append(24, '\0');
    s.append(palette.begin(), palette.end());
    return s + rows;
}

// A 24-bit picture with proper row padding; Pixel gives blue, green, red.
inline std::string MakeBMP24(int32_t width, int32_t height,
                             const std::function<std::array<uint8_t, 3>(int x, int y)> &pixel)
{
    std::string rows;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto p = pixel(x, y);
            rows.append(reinterpret_cast<const char *>(p.data()), 3);
        }
        rows.append(std::size_t((4 - width * 3 % 4) % 4), '\xEE');
    }
    return MakeBMP(24, width, height, {}, rows);
}

// Rows of `bytes` bytes each, counting up, padded with 0xEE to `stride`.
inline std::string Rows(int height, int bytes, int stride)
{
    std::string rows;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < bytes; ++x)
            rows += char(y * 16 + x);
        rows.append(std::size_t(stride - bytes), '\xEE');
    }
    return rows;
}

// A palette of that many entries, each a little brighter than the one before.
inline std::vector<uint8_t> Palette(int entries)
{
    std::vector<uint8_t> palette;
    for (int e = 0; e < entries; ++e)
        palette.insert(palette.end(), {uint8_t(e), uint8_t(e + 1), uint8_t(e + 2), 0});
    return palette;
}

struct ToolResult {
    int status;
    std::string output;
};

// Runs a shell command and collects what it prints on both channels.
inline ToolResult RunTool(const std::string &command)
{
    ToolResult result{-1, {}};
    std::FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        return result;
    char buf[4096];
    for (std::size_t n; (n = std::fread(buf, 1, sizeof buf, pipe)) > 0;)
        result.output.append(buf, n);
    const int status = pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

inline bool HaveTool(const std::string &name) { return RunTool("command -v " + name).status == 0; }

// qpdf --check must find no error. It warns about what this format does on
// purpose, and about nothing else:
// - /Size is the highest object number, not one more;
// - the xref line of the reserved number 4 repeats that of 5, so qpdf finds
//   no "4 0 obj" there, calls the file damaged and rebuilds the table;
// - image streams start after a lone CR.
// A page stream whose /Length came from a dry run that counts more than it
// writes also makes qpdf look for "endstream" and recover the length; callers
// of that kind pass measuredLength.
inline void ExpectQpdfAccepts(const fs::path &path, bool measuredLength = false)
{
    if (!HaveTool("qpdf"))
        GTEST_SKIP() << "qpdf missing";
    const ToolResult r = RunTool("qpdf --check '" + path.string() + "'");
    EXPECT_TRUE(r.status == 0 || r.status == 3) << r.output;
    const std::regex allowed(
        "reported number of objects \\([0-9]+\\) is not one plus the highest object number"
        "|expected 4 0 obj|file is damaged|Attempting to reconstruct cross-reference table"
        "|object 4 0 not found in file after regenerating cross reference table"
        "|stream keyword followed by carriage return only" +
        std::string(measuredLength ? "|expected endstream|attempting to recover stream length"
                                     "|recovered stream length: [0-9]+"
                                   : ""));
    std::istringstream lines(r.output);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(line.find("error"), std::string::npos) << line;
        if (line.starts_with("WARNING")) {
            EXPECT_TRUE(std::regex_search(line, allowed)) << line;
        }
    }
}

} // namespace pdftest
