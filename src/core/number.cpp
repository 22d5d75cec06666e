#include "core/number.h"

#include <cmath>
#include <cstdlib>
#include <string>

double ScanNumber(QStringView text)
{
    // Collect the characters of the number into a plain buffer, leaving out the
    // blanks that may stand anywhere in it, then let strtod read them.
    std::string buf;
    buf.reserve(32);
    qsizetype i = 0;
    const qsizetype n = text.size();
    auto skipBlanks = [&] {
        while (i < n) {
            const char16_t c = text[i].unicode();
            if (c != u' ' && c != u'\t' && c != u'\n' && c != u'\r')
                break;
            ++i;
        }
    };
    skipBlanks();
    if (i < n && (text[i] == u'-' || text[i] == u'+')) {
        buf += char(text[i].unicode());
        ++i;
    }
    bool digits = false;
    bool point = false;
    for (; i < n; ++i) {
        const char16_t c = text[i].unicode();
        if (c >= u'0' && c <= u'9') {
            buf += char(c);
            digits = true;
        } else if (c == u'.' && !point) {
            buf += '.';
            point = true;
        } else if (c == u' ' || c == u'\t' || c == u'\n' || c == u'\r') {
            continue;
        } else {
            break;
        }
    }
    if (!digits)
        return 0.0;
    // Exponent: "E" or "D", optional sign, at least one digit.
    if (i < n && (text[i] == u'e' || text[i] == u'E' || text[i] == u'd' || text[i] == u'D')) {
        std::string exp = "e";
        qsizetype j = i + 1;
        if (j < n && (text[j] == u'-' || text[j] == u'+'))
            exp += char(text[j++].unicode());
        bool expDigits = false;
        while (j < n && text[j] >= u'0' && text[j] <= u'9' && exp.size() < 8) {
            exp += char(text[j++].unicode());
            expDigits = true;
        }
        if (expDigits)
            buf += exp;
    }
    const double v = std::strtod(buf.c_str(), nullptr);
    return std::isfinite(v) ? v : 0.0;
}

double RoundHalfEven(double value, int places)
{
    if (!std::isfinite(value))
        return 0.0;
    const double scale = std::pow(10.0, places);
    const double scaled = value * scale;
    if (std::fabs(scaled) >= 4.5e15)
        return value;   // beyond the places a double can tell apart
    // Decide on the decimal text of the product so that 2.675 * 100 = 267.49999... does not
    // count as a tie while 0.125 * 100 = 12.5 does.
    const double floorPart = std::floor(scaled);
    const double diff = scaled - floorPart;
    constexpr double eps = 1e-9;
    double result;
    if (std::fabs(diff - 0.5) < eps)
        result = std::fmod(floorPart, 2.0) == 0.0 ? floorPart : floorPart + 1.0;
    else
        result = std::round(scaled);
    return result / scale;
}
