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

double AmountValue(const QString &text)
{
    QString copy = text;
    return ScanNumber(copy.replace(QLatin1Char(','), QLatin1Char('.')));
}
