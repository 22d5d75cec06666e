#include "pdf/pdfformat.h"

#include <charconv>
#include <cmath>
#include <iconv.h>
#include <stdexcept>
#include <vector>

namespace pdf {

namespace {
constexpr double kScale[] = {1, 10, 100, 1000, 10000};
constexpr long long kPower[] = {1, 10, 100, 1000, 10000};
} // namespace

double RoundHalfEven(double Value, int Digits)
{
    const double scale = Digits >= 0 && Digits <= 4 ? kScale[Digits] : std::pow(10.0, Digits);
    // nearbyint follows the default rounding mode: to nearest, ties to even.
    return std::nearbyint(Value * scale) / scale + 0.0;
}

std::string NumText(double Value)
{
    char buf[40];
    const auto res = std::to_chars(buf, buf + sizeof buf, Value, std::chars_format::general, 15);
    return std::string(buf, res.ptr);
}

std::string FormatNum(double Value, int16_t Digits)
{
    const double scaled = Digits >= 0 && Digits <= 4 ? std::nearbyint(Value * kScale[Digits]) : 0;
    if (Digits < 0 || Digits > 4 || !(std::fabs(scaled) < 1e15))
        return NumText(RoundHalfEven(Value, Digits));
    // Fewer than 16 digits: the decimal text of the scaled integer is what
    // NumText would print, and much quicker to make.
    auto units = (long long)scaled;
    std::string out = units < 0 ? "-" : "";
    units = units < 0 ? -units : units;
    out += std::to_string(units / kPower[Digits]);
    long long fraction = units % kPower[Digits];
    if (fraction != 0) {
        int places = Digits;
        for (; fraction % 10 == 0; fraction /= 10)
            --places;
        const std::string digits = std::to_string(fraction);
        out += '.';
        out.append(std::size_t(places) - digits.size(), '0');
        out += digits;
    }
    return out;
}

std::string EscapeText(std::string_view Text)
{
    std::string out;
    out.reserve(Text.size() + 8);
    for (char ch : Text) {
        if (ch == '\\' || ch == '(' || ch == ')')
            out += '\\';
        out += ch;
    }
    return out;
}

std::string ASCII85(const uint8_t *Data, std::size_t Count)
{
    std::string out;
    out.reserve(Count / 4 * 5 + 7);
    for (std::size_t i = 0; i < Count; i += 4) {
        const std::size_t remaining = Count - i;
        uint32_t acc = 0;
        for (std::size_t k = 0; k < 4 && k < remaining; ++k)
            acc |= uint32_t(Data[i + k]) << (24 - 8 * k);
        // "remaining" counts every byte left, so only the last whole group
        // can be exactly four: earlier zero groups are spelled out.
        if (acc == 0 && remaining == 4) {
            out += 'z';
            continue;
        }
        char group[5];
        for (int j = 4; j >= 0; --j) {
            group[j] = char(acc % 85 + 33);
            acc /= 85;
        }
        out.append(group, remaining < 4 ? remaining + 1 : 5);
    }
    out += "~>";
    return out;
}

namespace {

// Byte of each code point that Windows-1250 holds, 0 where it holds none.
// Built once from iconv's table; the highest code point of the page is U+2122.
class Cp1250Map {
public:
    Cp1250Map() : byCode_(0x2123, 0)
    {
        iconv_t cd = iconv_open("UTF-32LE", "CP1250");
        if (cd == iconv_t(-1))
            throw std::runtime_error("iconv: no CP1250 conversion");
        for (int b = 0x80; b <= 0xFF; ++b) {
            char in = char(b);
            char32_t code = 0;
            char *ip = &in, *op = reinterpret_cast<char *>(&code);
            std::size_t il = 1, ol = sizeof code;
            if (iconv(cd, &ip, &il, &op, &ol) != std::size_t(-1) && code < byCode_.size())
                byCode_[code] = uint8_t(b);
        }
        iconv_close(cd);
    }
    char Byte(char32_t code) const
    {
        if (code < 0x80)
            return char(code);
        const uint8_t b = code < byCode_.size() ? byCode_[code] : 0;
        return b ? char(b) : '?';
    }

private:
    std::vector<uint8_t> byCode_;
};

// Decodes one UTF-8 sequence at s[i]; gives the length used, 0 if broken.
std::size_t DecodeUtf8(std::string_view s, std::size_t i, char32_t &code)
{
    const auto b0 = uint8_t(s[i]);
    std::size_t len;
    char32_t min;
    if (b0 < 0x80) {
        code = b0;
        return 1;
    } else if ((b0 & 0xE0) == 0xC0) {
        len = 2, min = 0x80, code = b0 & 0x1F;
    } else if ((b0 & 0xF0) == 0xE0) {
        len = 3, min = 0x800, code = b0 & 0x0F;
    } else if ((b0 & 0xF8) == 0xF0) {
        len = 4, min = 0x10000, code = b0 & 0x07;
    } else {
        return 0;
    }
    if (i + len > s.size())
        return 0;
    for (std::size_t k = 1; k < len; ++k) {
        const auto b = uint8_t(s[i + k]);
        if ((b & 0xC0) != 0x80)
            return 0;
        code = code << 6 | (b & 0x3F);
    }
    if (code < min || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return 0;
    return len;
}

} // namespace

std::string ToCP1250(std::string_view Utf8)
{
    static const Cp1250Map map;
    std::string out;
    out.reserve(Utf8.size());
    for (std::size_t i = 0; i < Utf8.size();) {
        char32_t code;
        const std::size_t len = DecodeUtf8(Utf8, i, code);
        out += len ? map.Byte(code) : '?';
        i += len ? len : 1;
    }
    return out;
}

} // namespace pdf
