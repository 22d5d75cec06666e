#pragma once
// The one rule by which the program reads numbers out of text, and its rounding.

#include <QString>

// Reads from the left, skipping blanks, tabs and line feeds: optional sign, digits,
// one ".", an exponent; stops at the first character that cannot continue the number.
// No digits give 0. "1 234.50" reads 1234.5, "1 234,50" reads 1234.
double ScanNumber(QStringView text);

// Round to n decimal places, a tie going to the even digit.
double RoundHalfEven(double value, int places);
