#pragma once
// Number and text forms shared by every part of the PDF writer. They hold no
// state, so they live outside the class and can be checked on their own.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pdf {

// Rounds to Digits places, a half going to the even neighbour like the
// platform's round function; never gives a negative zero.
double RoundHalfEven(double Value, int Digits);

// A number as the platform prints a double: up to 15 significant digits,
// full stop as decimal separator, no trailing zeros.
std::string NumText(double Value);

// The rounded value as the shortest text, full stop as decimal separator,
// no padding and no trailing zeros: 12.50 -> "12.5", 12 -> "12".
std::string FormatNum(double Value, int16_t Digits);

// "\" -> "\\", "(" -> "\(", ")" -> "\)", in that order.
std::string EscapeText(std::string_view Text);

// ASCII85 with its terminator "~>". A group of four zero bytes becomes "z"
// only when it is the last whole group of the data.
std::string ASCII85(const uint8_t *Data, std::size_t Count);

// UTF-8 to the bytes of Windows-1250, one byte a character. A character the
// code page lacks, and every byte of a broken sequence, becomes "?".
std::string ToCP1250(std::string_view Utf8);

} // namespace pdf
