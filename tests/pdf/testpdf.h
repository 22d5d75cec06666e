#pragma once
// Shared helpers of the PDF writer's tests: files, BMP pictures made on the
// spot, and the PDF tools run as a reader would.

#include "pdf/pdfcreator.h"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <iterator>
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
    const std::size_t end = all.find("endobj\r\n");
    return end == std::string::npos ? all : all.substr(end + 8);
}

inline void Put16(std::string &s, uint16_t v) { s += char(v & 0xFF), s += char(v >> 8); }
inline void Put32(std::string &s, uint32_t v) { Put16(s, uint16_t(v & 0xFFFF)), Put16(s, uint16_t(v >> 16)); }

// An uncompressed BMP: a 54-byte header, the palette (4 bytes an entry, blue
// green red zero) and the rows as given, each already padded by the caller.
inline std::string MakeBMP(uint16_t bits, int32_t width, int32_t height,
                           const std::vector<uint8_t> &palette, const std::string &rows)
{
    std::string s = "BM";
    const uint32_t offset = uint32_t(54 + palette.size());
    Put32(s, uint32_t(offset + rows.size()));
    Put32(s, 0);
    Put32(s, offset);
    Put32(s, 40);
    Put32(s, uint32_t(width));
    Put32(s, uint32_t(height));
    Put16(s, 1);
    Put16(s, bits);
    for (int i = 0; i < 6; ++i)
        Put32(s, 0);
    s.append(palette.begin(), palette.end());
    return s + rows;
}

// A 24-bit picture with proper row padding; Pixel gives blue, green, red.
inline std::string MakeBMP24(int32_t width, int32_t height,
                             const std::function<std::array<uint8_t, 3>(int x, int y)> &pixel)
{
    std::string rows;
    const int pad = (4 - width * 3 % 4) % 4;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto p = pixel(x, y);
            rows.append(reinterpret_cast<const char *>(p.data()), 3);
        }
        rows.append(std::size_t(pad), '\xEE');
    }
    return MakeBMP(24, width, height, {}, rows);
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

inline bool HaveTool(const std::string &name)
{
    return RunTool("command -v " + name).status == 0;
}

// Byte offsets of the "n 0 obj" lines, in the order of the file.
inline std::vector<std::pair<int, std::size_t>> ObjectsInOrder(const std::string &pdf)
{
    std::vector<std::pair<int, std::size_t>> objects;
    for (std::size_t at = pdf.find(" 0 obj\r\n"); at != std::string::npos;
         at = pdf.find(" 0 obj\r\n", at + 1)) {
        std::size_t start = at;
        while (start > 0 && std::isdigit(uint8_t(pdf[start - 1])))
            --start;
        if (start == 0 || pdf[start - 1] == '\n')
            objects.emplace_back(std::stoi(pdf.substr(start, at - start)), start);
    }
    return objects;
}

// The offsets the xref table gives, index = object number (0 the free entry).
inline std::vector<std::size_t> XrefOffsets(const std::string &pdf)
{
    const std::size_t xref = pdf.rfind("\r\nxref\r\n");
    std::istringstream in(pdf.substr(xref + 8));
    std::string first;
    int count = 0;
    in >> first >> count;
    std::vector<std::size_t> offsets;
    for (int i = 0; i < count; ++i) {
        std::size_t offset;
        std::string generation, kind;
        in >> offset >> generation >> kind;
        offsets.push_back(offset);
    }
    return offsets;
}

// qpdf --check must find no error. It warns about what this format does on
// purpose, and about nothing else:
// - /Size is the highest object number, not one more;
// - the xref line of the reserved number 4 repeats that of 5, so qpdf finds
//   no "4 0 obj" there, calls the file damaged and rebuilds the table;
// - image streams start after a lone CR.
inline void ExpectQpdfAccepts(const fs::path &path)
{
    if (!HaveTool("qpdf"))
        GTEST_SKIP() << "qpdf missing";
    const ToolResult r = RunTool("qpdf --check '" + path.string() + "'");
    EXPECT_TRUE(r.status == 0 || r.status == 3) << r.output;
    const std::regex allowed(
        "reported number of objects \\([0-9]+\\) is not one plus the highest object number"
        "|expected 4 0 obj|file is damaged|Attempting to reconstruct cross-reference table"
        "|object 4 0 not found in file after regenerating cross reference table"
        "|stream keyword followed by carriage return only");
    std::istringstream lines(r.output);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(line.find("error"), std::string::npos) << line;
        if (line.starts_with("WARNING")) {
            EXPECT_TRUE(std::regex_search(line, allowed)) << line;
        }
    }
}

} // namespace pdftest
