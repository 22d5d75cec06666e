#pragma once
// What the graph screen draws, as plain figures: per grant its budget, the money provided,
// the drawdown and the remainder; per group of one grant its plan against its drawdown.
// Money labels in the Czech form of the amount texts, with "Kč".

#include "grants/drawdown.h"

#include <QString>
#include <QStringList>
#include <QVector>

struct GrantBar {
    QString grant, name;
    double budget = 0;      // Castka1
    double provided = 0;    // Poskytnute
    double drawdown = 0;    // Castka1 - Castka3, as the drawdown screen shows it
    double remainder = 0;   // Castka3
};
GrantBar GrantBarOf(const GrantHead &grant);

struct GroupBar {
    QString name, accounts;
    double plan = 0, drawdown = 0;
    bool overspent = false;   // drawn more than planned, to the cent
};
GroupBar GroupBarOf(const GroupRow &row);

// "1 234,50 Kč", "-12 000,00 Kč".
QString CzechMoney(double value);
// The share of part in whole to one decimal: "57,4 %"; empty when whole is not above zero.
QString ShareText(double part, double whole);

// Ticks of a money axis from min to max (zero always inside): round steps of 1, 2 or 5
// times a power of ten, about `wanted` of them, labelled "2 500 000 Kč".
struct AxisTick {
    double value = 0;
    QString label;
};
QVector<AxisTick> MoneyAxis(double min, double max, int wanted = 6);

// The grants a chart starts with: all of them up to `limit`, else the first `limit`.
QStringList DefaultChosen(const QVector<GrantHead> &grants, int limit = 12);

// The hover text of a bar: "GRANT 1201 · Čerpání: 782 533,31 Kč", for a group also how
// much it is overspent.
QString GrantBarTip(const GrantBar &bar, const QString &series, double value);
QString GroupBarTip(const GroupBar &bar, const QString &series, double value);
// A group's category text: its name and the share drawn, marked when overspent.
QString GroupCategory(const GroupBar &bar);
