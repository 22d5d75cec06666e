#pragma once
// Money as the grant tables keep it: text with a decimal comma ("1 250 000,00"), never a
// number column. Every calculation reads amounts through these functions and writes them
// through FormatAmount (core/text.h).

#include "core/text.h"

#include <QString>
#include <QVariant>

// A stored amount as text: null or blank becomes "0,00", anything else is trimmed.
QString AmountText(const QVariant &stored);
QString AmountText(const QString &stored);

// The number in an amount text: "," read as ".", then the program's number scanner
// (which stops at the first character that cannot continue a number). Empty gives 0.
double AmountValue(QStringView text);
