#pragma once
// Metrics the writer carries for the fonts it names but never embeds.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace pdf {

struct FontRecord {
    std::string BaseName;      // /BaseFont and /FontName, style suffix included
    uint8_t FirstChar = 0;
    uint8_t LastChar = 0;
    std::string Descriptor;    // the entries of the font descriptor, one line
    std::array<int32_t, 255> Widths{}; // index c - 1 holds the width of code c
    int32_t MissingWidth = 0;
};

// ",Bold", ",Italic", ",BoldItalic" for styles 1, 2, 3; nothing for others.
const char *StyleSuffix(int32_t Style);

// Fills Rec from the table of the family that FontName selects (Times New
// Roman, Courier New, Symbol, anything else Arial) for Style 0..3.
//
// A style outside 0..3, and every Arial style, ends in std::out_of_range:
// the Arial tables hold two values fewer than their range of 30..255, so the
// copy runs off their end at code 254. Rec is then left as far as it got, and
// the caller's LoadFont stops before writing anything.
void FillFontRecord(std::string_view FontName, int32_t Style, FontRecord &Rec);

} // namespace pdf
