// Numbers, ASCII85 and the code page conversion.

#include "pdf/pdfformat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace pdf;

TEST(FormatNum, RoundsHalfToEvenAndDropsTrailingZeros)
{
    EXPECT_EQ(FormatNum(12.50, 3), "12.5");
    EXPECT_EQ(FormatNum(12, 3), "12");
    EXPECT_EQ(FormatNum(8.5, 0), "8");
    EXPECT_EQ(FormatNum(9.5, 0), "10");
    EXPECT_EQ(FormatNum(-1.5, 0), "-2");
    EXPECT_EQ(FormatNum(0.125, 2), "0.12");
    EXPECT_EQ(FormatNum(1234567.8914, 3), "1234567.891");
    EXPECT_EQ(FormatNum(-0.0001, 3), "0"); // never "-0"
    // The quick integer form must print what the general one does.
    std::mt19937_64 rng(11);
    std::uniform_real_distribution<double> unit(-1, 1);
    for (int i = 0; i < 20000; ++i) {
        const double value = unit(rng) * std::pow(10.0, int(rng() % 18) - 4);
        const auto digits = int16_t(rng() % 5);
        EXPECT_EQ(FormatNum(value, digits), NumText(RoundHalfEven(value, digits))) << value << " " << digits;
    }
}

TEST(ASCII85, ShortFormOnlyForTheLastWholeZeroGroup)
{
    auto encode = [](const std::string &bytes) {
        return ASCII85(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    };
    EXPECT_EQ(encode(std::string(4, '\0')), "z~>");
    EXPECT_EQ(encode(std::string(8, '\0')), "!!!!!z~>");
    EXPECT_EQ(encode(std::string(5, '\0')), "!!!!!!!~>");
    EXPECT_EQ(encode("Man sure"), "9jqo^F*2M7~>");
    EXPECT_EQ(encode("M"), "9`~>");
    EXPECT_EQ(encode("\xFF\xFF\xFF\xFF\xFF\xFF\xFF"), "s8W-!s8W*~>");
    EXPECT_EQ(encode(""), "~>");
}

TEST(ToCP1250, GivesTheBytesOfWindows1250AndMarksTheRest)
{
    EXPECT_EQ(ToCP1250("čěřšžůČŘŠŽ"), "\xE8\xEC\xF8\x9A\x9E\xF9\xC8\xD8\x8A\x8E");
    EXPECT_EQ(ToCP1250("ťŤňďľĺ€ Kč"), "\x9D\x8D\xF2\xEF\xBE\xE5\x80 K\xE8");
    EXPECT_EQ(ToCP1250("日😀"), "??");
    EXPECT_EQ(ToCP1250("a\xE2\x82z\xC3"), "a??z?");
    EXPECT_EQ(ToCP1250("\xC0\xAF"), "??");      // overlong "/"
    EXPECT_EQ(ToCP1250("\xED\xA0\x80"), "???"); // a lone surrogate
}
