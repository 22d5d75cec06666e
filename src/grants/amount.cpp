#include "grants/amount.h"

#include "core/number.h"
#include "core/text.h"

QString AmountText(const QVariant &stored)
{
    return stored.isNull() ? QStringLiteral("0,00") : AmountText(stored.toString());
}

QString AmountText(const QString &stored)
{
    const QString text = stored.trimmed();
    return text.isEmpty() ? QStringLiteral("0,00") : text;
}

double AmountValue(const QString &text)
{
    QString copy = text;
    return ScanNumber(copy.replace(QLatin1Char(','), QLatin1Char('.')));
}

QString FormatAmount(double value)
{
    // Fifteen significant digits, as the formatter's own reading expects a plain number;
    // width 0 asks for no padding.
    QString text = QString::number(value, 'g', 15);
    short width = 0;
    return FormatCastka(text, width).trimmed();
}
