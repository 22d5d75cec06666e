#include "grants/amount.h"

#include "core/number.h"

#include <algorithm>
#include <charconv>

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

bool MovementAmount(std::string_view bytes, double *value)
{
    // The usual amount ("  -12 345,67") is read from its bytes, a million times per
    // recalculation; anything else (a no-break space, a letter, a long text) as text.
    constexpr size_t Short = 64;
    const bool plain = bytes.size() <= Short && std::all_of(bytes.cbegin(), bytes.cend(), [](char c) {
        return (c >= '0' && c <= '9') || c == ' ' || c == ',' || c == '.' || c == '-';
    });
    if (!plain) {
        const QString text = QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
        if (!IsNumberView(text))
            return false;
        *value = AmountValue(QStringView(text).trimmed());
        return true;
    }
    // A number: not blank, at most one decimal mark. Its value as the scanner reads it: a
    // leading "-", then digits and the mark with blanks between them, up to a further "-".
    if (std::count(bytes.cbegin(), bytes.cend(), ',') + std::count(bytes.cbegin(), bytes.cend(), '.') > 1 ||
        bytes.find_first_not_of(' ') == std::string_view::npos)
        return false;
    size_t i = bytes.find_first_not_of(' ');
    const bool negative = bytes[i] == '-';
    if (negative)
        ++i;
    char number[Short];
    size_t n = 0;
    bool digits = false;
    for (; i < bytes.size() && bytes[i] != '-'; ++i) {
        if (bytes[i] == ' ')
            continue;
        digits = digits || (bytes[i] != ',' && bytes[i] != '.');
        number[n++] = bytes[i] == ',' ? '.' : bytes[i];
    }
    double v = 0;
    if (digits)
        std::from_chars(number, number + n, v);
    *value = digits && negative ? -v : v;
    return true;
}
