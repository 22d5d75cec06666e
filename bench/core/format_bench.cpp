// Speed of the amount format and of the number scanner over a million mixed amounts,
// as report cells give them. Goal: 2 million formatted amounts a second on one core.

#include "core/number.h"
#include "core/text.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdio>
#include <random>

namespace {

constexpr int Count = 1000000;
constexpr double Goal = 2e6;

QStringList mixedAmounts()
{
    std::mt19937_64 random(20240101);
    std::uniform_int_distribution<int> kind(0, 99);
    std::uniform_int_distribution<long long> cents(0, 99999999);
    std::uniform_int_distribution<int> small(0, 999);
    QStringList amounts;
    amounts.reserve(Count);
    for (int i = 0; i < Count; ++i) {
        const long long c = cents(random);
        const QString whole = QString::number(c / 100);
        const QString hundredths = QString::number(c % 100).rightJustified(2, QLatin1Char('0'));
        const int k = kind(random);
        if (k < 40) {
            amounts << whole + QLatin1Char(',') + hundredths;                        // "123456,78"
        } else if (k < 55) {
            amounts << QLatin1Char('-') + whole + QLatin1Char(',') + hundredths;     // debit
        } else if (k < 65) {
            QString grouped = whole;                                               // "1 234 567,89"
            for (qsizetype at = grouped.size() - 3; at > 0; at -= 3)
                grouped.insert(at, QLatin1Char(' '));
            amounts << grouped + QLatin1Char(',') + hundredths;
        } else if (k < 75) {
            amounts << whole;                                                      // whole crowns
        } else if (k < 82) {
            amounts << QString::number(small(random)) + QStringLiteral(",5");        // one decimal
        } else if (k < 88) {
            amounts << whole + QLatin1Char('.') + hundredths;                        // point form
        } else if (k < 93) {
            amounts << (k % 2 ? QString() : QStringLiteral("0,00"));                // empty cells
        } else if (k < 96) {
            amounts << QStringLiteral("123456789012345,67");                         // beyond 1e13
        } else {
            amounts << QStringLiteral("n/a");                                        // garbage
        }
    }
    return amounts;
}

template <typename Work>
double perSecond(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    return Count / took.count();
}

} // namespace

int main()
{
    const QStringList amounts = mixedAmounts();

    qsizetype length = 0;
    const double formatted = perSecond([&] {
        for (const QString &a : amounts) {
            QString value = a;
            short width = 14;
            length += FormatCastka(value, width).size();
        }
    });

    double sum = 0;
    const double scanned = perSecond([&] {
        for (const QString &a : amounts)
            sum += ScanNumber(a);
    });

    std::printf("amounts:        %d mixed (check %lld, %.2f)\n", Count, static_cast<long long>(length), sum);
    std::printf("FormatCastka:   %.0f amounts/s, %.2f x the goal of %.0f/s\n", formatted, formatted / Goal, Goal);
    std::printf("ScanNumber:     %.0f amounts/s, %.2f x the goal of %.0f/s\n", scanned, scanned / Goal, Goal);
    return 0;
}
