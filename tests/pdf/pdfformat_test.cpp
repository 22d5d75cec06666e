// Numbers, escapes, ASCII85 and the code page conversion.

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
    EXPECT_EQ(FormatNum(0.375, 2), "0.38");
    EXPECT_EQ(FormatNum(2 * 72 / 2.54, 3), "56.693");
    EXPECT_EQ(FormatNum(1234567.8914, 3), "1234567.891");
    // A tiny negative value must not print as "-0".
    EXPECT_EQ(FormatNum(-0.0001, 3), "0");
}

TEST(FormatNum, QuickFormAgreesWithTheGeneralOne)
{
    std::mt19937_64 rng(11);
    std::uniform_real_distribution<double> unit(-1, 1);
    for (int i = 0; i < 20000; ++i) {
        const double value = unit(rng) * std::pow(10.0, int(rng() % 18) - 4);
        const auto digits = int16_t(rng() % 5);
        EXPECT_EQ(FormatNum(value, digits), NumText(RoundHalfEven(value, digits))) << value << " " << digits;
    }
}

TEST(EscapeText, EscapesBackslashFirstThenParentheses)
{
    EXPECT_EQ(EscapeText("a(b)\\c"), "a\\(b\\)\\\\c");
    EXPECT_EQ(EscapeText(""), "");
}

namespace {

// Plain ASCII85 decoding, "z" included, to read back what the encoder gives.
std::string Decode85(const std::string &text)
{
    std::string out;
    std::string group;
    auto flush = [&](std::size_t chars) {
        uint64_t acc = 0;
        for (std::size_t i = 0; i < 5; ++i)
            acc = acc * 85 + (i < chars ? uint8_t(group[i]) - 33 : 84);
        for (std::size_t i = 0; i + 1 < chars; ++i)
            out += char(acc >> (24 - 8 * i) & 0xFF);
        group.clear();
    };
    for (std::size_t i = 0; i + 2 <= text.size() && text.compare(i, 2, "~>") != 0; ++i) {
        if (text[i] == 'z') {
            out.append(4, '\0');
            continue;
        }
        group += text[i];
        if (group.size() == 5)
            flush(5);
    }
    if (!group.empty())
        flush(group.size());
    return out;
}

std::string Encode(const std::string &bytes)
{
    return ASCII85(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
}

} // namespace

TEST(ASCII85, ShortFormOnlyForTheLastWholeZeroGroup)
{
    EXPECT_EQ(Encode(std::string(4, '\0')), "z~>");
    EXPECT_EQ(Encode(std::string(8, '\0')), "!!!!!z~>");
    EXPECT_EQ(Encode(std::string(5, '\0')), "!!!!!!!~>");
    EXPECT_EQ(Encode("Man "), "9jqo^~>");
    EXPECT_EQ(Encode("M"), "9`~>");
    EXPECT_EQ(Encode(""), "~>");
}

TEST(ASCII85, DecodesBackToTheInput)
{
    std::mt19937 rng(7);
    for (std::size_t n = 0; n < 64; ++n) {
        std::string bytes(n, '\0');
        for (char &b : bytes)
            b = rng() % 3 ? char(rng()) : '\0';
        const std::string text = Encode(bytes);
        EXPECT_EQ(Decode85(text), bytes) << n;
        EXPECT_EQ(text.find_first_not_of("!\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                         "[\\]^_`abcdefghijklmnopqrstuz~"),
                  std::string::npos);
    }
}

TEST(ToCP1250, GivesTheBytesOfWindows1250)
{
    EXPECT_EQ(ToCP1250("čěřšžůČŘŠŽ"), "\xE8\xEC\xF8\x9A\x9E\xF9\xC8\xD8\x8A\x8E");
    EXPECT_EQ(ToCP1250("ťŤňďľĺ€"), "\x9D\x8D\xF2\xEF\xBE\xE5\x80");
    EXPECT_EQ(ToCP1250("Kč 100,-"), "K\xE8 100,-");
}

TEST(ToCP1250, MarksWhatThePageLacksAndBrokenSequences)
{
    EXPECT_EQ(ToCP1250("日本"), "??");
    EXPECT_EQ(ToCP1250("a😀b"), "a?b");
    EXPECT_EQ(ToCP1250("a\xC3"), "a?");
    EXPECT_EQ(ToCP1250("a\xE2\x82z"), "a??z");
    EXPECT_EQ(ToCP1250("\xC0\xAF"), "??");         // overlong "/"
    EXPECT_EQ(ToCP1250("\xED\xA0\x80"), "???");    // a lone surrogate
    EXPECT_EQ(ToCP1250(std::string("a\0b", 3)), std::string("a\0b", 3));
}
