#include "core/number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace {
// Blanks, tabs and line feeds; a carriage return ends the number like any other character.
bool isBlank(char16_t c) { return c == u' ' || c == u'\t' || c == u'\n'; }
bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// The characters of the number, blanks left out; small numbers stay on the stack.
class NumberText {
public:
    void add(char c)
    {
        if (m_size < int(sizeof m_small))
            m_small[m_size] = c;
        else {
            if (m_size == int(sizeof m_small))
                m_large.assign(m_small, m_small + m_size);
            m_large += c;
        }
        ++m_size;
    }
    double read() const
    {
        const char *first = m_size <= int(sizeof m_small) ? m_small : m_large.data();
        double v = 0.0;
        std::from_chars(first, first + m_size, v);
        return std::isfinite(v) ? v : 0.0;
    }

private:
    char m_small[64];
    std::string m_large;
    int m_size = 0;
};
} // namespace

double ScanNumber(QStringView text)
{
    NumberText number;
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && isBlank(text[i].unicode()))
        ++i;
    bool negative = false;
    if (i < n && (text[i] == u'-' || text[i] == u'+'))
        negative = text[i++] == u'-';
    bool digits = false;
    bool point = false;
    for (; i < n; ++i) {
        const char16_t c = text[i].unicode();
        if (isDigit(c)) {
            number.add(char(c));
            digits = true;
        } else if (c == u'.' && !point) {
            number.add('.');
            point = true;
        } else if (!isBlank(c)) {
            break;
        }
    }
    if (!digits)
        return 0.0;
    // Exponent: "E" or "D", optional sign, at least one digit; blanks are skipped here too.
    if (i < n && (text[i] == u'e' || text[i] == u'E' || text[i] == u'd' || text[i] == u'D')) {
        qsizetype j = i + 1;
        auto skipBlanks = [&] {
            while (j < n && isBlank(text[j].unicode()))
                ++j;
        };
        skipBlanks();
        char sign = '+';
        if (j < n && (text[j] == u'-' || text[j] == u'+')) {
            sign = char(text[j++].unicode());
            skipBlanks();
        }
        if (j < n && isDigit(text[j].unicode())) {
            // Leading zeros do not count; beyond four digits the number is out of range anyway.
            int exponent = 0;
            for (; j < n && (isDigit(text[j].unicode()) || isBlank(text[j].unicode())); ++j)
                if (isDigit(text[j].unicode()))
                    exponent = std::min(exponent * 10 + (text[j].unicode() - u'0'), 99999);
            char digits[8];
            const auto end = std::to_chars(digits, digits + sizeof digits, exponent).ptr;
            number.add('e');
            number.add(sign);
            for (const char *d = digits; d != end; ++d)
                number.add(*d);
        }
    }
    const double v = number.read();
    return negative ? -v : v;
}

double RoundHalfEven(double value, int places)
{
    if (!std::isfinite(value))
        return 0.0;
    static constexpr double powers[] = {1.0, 10.0, 100.0, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10};
    const double scale = places >= 0 && places <= 10 ? powers[places] : std::pow(10.0, places);
    const double scaled = value * scale;
    if (std::fabs(scaled) >= 4.5e15)
        return value;   // beyond the places a double can tell apart
    // A product that lies within a hair of .5 counts as a tie, so that 0.125 * 100 and
    // 2.675 * 100 = 267.49999... are both ties, as their decimal texts are. The text of a
    // number has fifteen significant digits: where the digit after the places is one of
    // them, the hair is half a unit of the fifteenth digit, so that 290766.915 is a tie as
    // well as 0.915, although its product lies further from .5 than 1e-9.
    const double floorPart = std::floor(scaled);
    const double diff = scaled - floorPart;
    const double off = std::fabs(diff - 0.5);
    double eps = 1e-9;
    if (off < 0.05 && off >= eps && value != 0.0 && places >= 0) {
        const double exponent = std::floor(std::log10(std::fabs(value)));
        if (exponent <= 13 - places)
            eps = std::max(eps, 0.5 * std::pow(10.0, exponent - 14) * scale);
    }
    double result;
    if (off < eps)
        result = std::fmod(floorPart, 2.0) == 0.0 ? floorPart : floorPart + 1.0;
    else
        result = std::round(scaled);
    return result / scale;
}
