#include "grants/amount.h"

#include "core/number.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

QString AmountText(const QVariant &stored)
{
    return stored.isNull() ? QStringLiteral("0,00") : AmountText(stored.toString());
}

QString AmountText(const QString &stored)
{
    const QString text = stored.trimmed();
    return text.isEmpty() ? QStringLiteral("0,00") : text;
}

double AmountValue(QStringView text)
{
    // Short texts are read from a copy on the stack: the recalculation reads a million of them.
    constexpr qsizetype StackLen = 64;
    if (text.size() > StackLen)
        return ScanNumber(text.toString().replace(QLatin1Char(','), QLatin1Char('.')));
    char16_t buf[StackLen];
    for (qsizetype i = 0; i < text.size(); ++i)
        buf[i] = text[i] == QLatin1Char(',') ? u'.' : text[i].unicode();
    return ScanNumber(QStringView(buf, text.size()));
}

namespace {
bool MovementAmountAsText(std::string_view bytes, double *value)
{
    const QString text = QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
    if (!IsNumberView(text))
        return false;
    *value = AmountValue(QStringView(text).trimmed());
    return true;
}
} // namespace

bool MovementAmount(std::string_view bytes, double *value)
{
    // The usual amount ("  -12 345,67") is read from its bytes in one pass, a million times per
    // recalculation; anything else (a no-break space, a letter, a long text) as text.
    constexpr size_t Short = 64;
    if (bytes.size() > Short)
        return MovementAmountAsText(bytes, value);
    // As the scanner reads it: a leading "-", then digits and one mark with blanks between
    // them, up to a further "-". The rest of the text still decides whether it is a number.
    char number[Short];
    size_t n = 0;
    int marks = 0, digits = 0, decimals = 0;
    bool started = false, negative = false, stopped = false;
    std::uint64_t mantissa = 0;
    for (const char c : bytes) {
        if (c == ' ')
            continue;
        const bool digit = c >= '0' && c <= '9', mark = c == ',' || c == '.';
        if (!digit && !mark && c != '-')
            return MovementAmountAsText(bytes, value);
        marks += mark;
        if (stopped)
            continue;
        if (c == '-') {
            // A leading minus is the sign; any other ends the number.
            (started ? stopped : negative) = true;
            started = true;
            continue;
        }
        started = true;
        number[n++] = mark ? '.' : c;
        if (digit) {
            mantissa = mantissa * 10 + std::uint64_t(c - '0');
            ++digits;
            decimals += marks > 0;
        }
    }
    if (!started || marks > 1)
        return false;
    // Up to 15 digits both numbers are exact doubles, and their quotient is the nearest double
    // to the decimal, as the full reading gives it.
    static constexpr double Powers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    double v = 0;
    if (digits > 0 && digits <= 15)
        v = double(mantissa) / Powers[decimals];
    else if (digits > 0)
        std::from_chars(number, number + n, v);
    *value = digits > 0 && negative ? -v : v;
    return true;
}
