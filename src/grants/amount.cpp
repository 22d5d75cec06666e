#include "grants/amount.h"

#include "core/number.h"

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
