#pragma once
// Money as the grant tables keep it: text with a decimal comma ("1 250 000,00"), never a
// number column. Every calculation reads amounts through these functions and writes them
// through FormatAmount (core/text.h).

#include "core/text.h"

#include <QString>
#include <QVariant>

#include <string_view>

// A stored amount as text: null or blank becomes "0,00", anything else is trimmed.
QString AmountText(const QVariant &stored);
QString AmountText(const QString &stored);

// The number in an amount text: "," read as ".", then the program's number scanner
// (which stops at the first character that cannot continue a number). Empty gives 0.
double AmountValue(QStringView text);

// Castka of a movement as the drawdown sum reads it, from the bytes the server sent (UTF-8):
// false when IsNumberView does not accept the text (the sum skips the row), else *value is
// AmountValue of the trimmed text.
bool MovementAmount(std::string_view bytes, double *value);
