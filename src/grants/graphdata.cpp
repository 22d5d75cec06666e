#include "grants/graphdata.h"

#include "core/number.h"
#include "grants/amount.h"

#include <cmath>

GrantBar GrantBarOf(const GrantHead &grant)
{
    GrantBar bar;
    bar.grant = grant.grant;
    bar.name = grant.castka2.trimmed();
    bar.budget = AmountValue(AmountText(grant.castka1));
    bar.provided = AmountValue(AmountText(grant.poskytnute));
    bar.remainder = AmountValue(AmountText(grant.castka3));
    bar.drawdown = RoundHalfEven(bar.budget - bar.remainder, 2);
    return bar;
}

GroupBar GroupBarOf(const GroupRow &row)
{
    GroupBar bar;
    bar.name = row.nazev.trimmed();
    bar.accounts = row.ucet;
    bar.plan = AmountValue(AmountText(row.plan));
    bar.drawdown = AmountValue(AmountText(row.cerpani));
    bar.overspent = RoundHalfEven(bar.drawdown - bar.plan, 2) > 0;
    return bar;
}

QString CzechMoney(double value) { return FormatAmount(value) + QStringLiteral(" Kč"); }

QString ShareText(double part, double whole)
{
    if (whole <= 0)
        return QString();
    return FormatAmount(RoundHalfEven(part * 100.0 / whole, 1)).chopped(1) + QStringLiteral(" %");
}

QVector<AxisTick> MoneyAxis(double min, double max, int wanted)
{
    min = std::min(min, 0.0);
    max = std::max(max, 0.0);
    if (max - min < 1)
        max = min + 1;
    wanted = std::max(wanted, 2);
    // A round step: the raw step brought to 1, 2 or 5 times its power of ten.
    const double raw = (max - min) / wanted;
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    double step = power;
    for (const double f : {1.0, 2.0, 5.0, 10.0})
        if (raw <= f * power) {
            step = f * power;
            break;
        }
    QVector<AxisTick> ticks;
    const double first = std::floor(min / step) * step;
    const double last = std::ceil(max / step) * step;
    for (double v = first; v <= last + step / 2; v += step) {
        const double value = std::abs(v) < step / 2 ? 0.0 : v;
        QString text = FormatAmount(value);
        if (text.endsWith(QLatin1String(",00")))
            text.chop(3);
        ticks.append({value, text + QStringLiteral(" Kč")});
    }
    return ticks;
}

QStringList DefaultChosen(const QVector<GrantHead> &grants, int limit)
{
    QStringList chosen;
    for (const GrantHead &g : grants) {
        if (chosen.size() == limit)
            break;
        chosen << g.grant;
    }
    return chosen;
}

QString GrantBarTip(const GrantBar &bar, const QString &series, double value)
{
    return QStringLiteral("GRANT %1 · %2: %3").arg(bar.grant, series, CzechMoney(value));
}

QString GroupBarTip(const GroupBar &bar, const QString &series, double value)
{
    QString tip = QStringLiteral("%1 · %2: %3").arg(bar.name, series, CzechMoney(value));
    if (bar.overspent)
        tip += QStringLiteral(" (překročeno o %1)").arg(CzechMoney(bar.drawdown - bar.plan));
    return tip;
}

QString GroupCategory(const GroupBar &bar)
{
    const QString share = ShareText(bar.drawdown, bar.plan);
    if (share.isEmpty())
        return bar.name;
    return bar.overspent ? QStringLiteral("%1  ▲ %2").arg(bar.name, share) : QStringLiteral("%1  %2").arg(bar.name, share);
}
