// Fonts, text state and text drawing.

#include "pdf/pdfcreator.h"
#include "pdf/pdfformat.h"

#include <algorithm>
#include <charconv>
#include <cctype>
#include <cmath>

namespace {

// WinAnsi turned into the Windows-1250 layout; letters both pages hold at the
// same code (š, ž, á, é, ...) need no entry.
const char *const kEncoding1 =
    "<<\r/Type/Encoding\r/BaseEncoding/WinAnsiEncoding\r/Differences [\r140/Sacute/Tcaron\r"
    "143/Zacute\r156/sacute/tcaron\r159/zacute\r161/caron/breve/Lslash\r165/Aogonek\r"
    "170/Scedilla\r175/Zdotaccent\r178/ogonek/lslash\r185/aogonek/scedilla\r"
    "188/Lcaron/hungarumlaut/lcaron/zdotaccent/Racute\r195/Abreve\r197/Lacute/Cacute\r"
    "200/Ccaron\r202/Eogonek\r204/Ecaron\r207/Dcaron/Dcroat/Nacute/Ncaron\r213/Ohungarumlaut\r"
    "216/Rcaron/Uring\r219/Uhungarumlaut\r222/Tcedilla";
const char *const kEncoding2 =
    "224/racute\r227/abreve\r229/lacute/cacute\r232/ccaron\r234/eogonek\r236/ecaron\r"
    "239/dcaron/dcroat/nacute/ncaron\r245/ohungarumlaut\r248/rcaron/uring\r251/uhungarumlaut\r"
    "254/tcedilla/dotaccent\r]\r>>";

bool EqualNoCase(char a, char b)
{
    return std::tolower(uint8_t(a)) == std::tolower(uint8_t(b));
}

} // namespace

void clsPDFCreator::LoadFont(std::string_view Key, double FontObject, std::string_view FontName,
                             int32_t Style)
{
    // The count goes up even when the table routine fails below.
    fonts_.emplace_back();
    pdf::FontRecord &font = fonts_.back();
    pdf::FillFontRecord(pdf::ToCP1250(FontName), Style, font);
    const std::string key = pdf::ToCP1250(Key);

    int32_t n = 0;
    WriteObjHeader(n);
    WriteLine("[");
    std::string line;
    for (int c = font.FirstChar; c <= font.LastChar; ++c) {
        line += pdf::FormatNum(font.Widths[std::size_t(c - 1)], 3) + " ";
        if ((c - font.FirstChar + 1) % 16 == 0 || c == font.LastChar) {
            WriteLine(line);
            line.clear();
        }
    }
    WriteLine("]");
    WriteObjEnd();

    fontsList_ += "/" + key + " " + pdf::NumText(FontObject) + " 0 R \r";
    const std::string number = "0000" + std::to_string(fonts_.size());
    fontIndex_ += "<" + key + ">" + number.substr(number.size() - 4) + ";";

    n = 0;
    WriteObjHeader(n);
    WriteLine("<<\r/Type/FontDescriptor\r/FontName/" + font.BaseName + "\r" + font.Descriptor + "\r>>");
    WriteObjEnd();

    n = 0;
    WriteObjHeader(n);
    WriteLine(kEncoding1);
    WriteLine(kEncoding2);
    WriteObjEnd();

    // Every font dictionary names the metrics objects 5, 6 and 7 of the first
    // font and the range 30..255; Length works from the right record anyway.
    n = 0;
    WriteObjHeader(n);
    WriteLine("<<\r/Type/Font\r/Subtype/TrueType\r/Name/" + key + "\r/BaseFont/" + font.BaseName +
              "\r/Encoding 7 0 R\r/FirstChar 30\r/LastChar 255\r/Widths 5 0 R\r"
              "/FontDescriptor 6 0 R\r>>");
    WriteObjEnd();
}

void clsPDFCreator::LoadFontStandard(std::string_view Key, std::string_view BaseName, int32_t Style)
{
    std::string base = pdf::ToCP1250(BaseName);
    base.erase(std::remove(base.begin(), base.end(), ' '), base.end());
    const std::string key = pdf::ToCP1250(Key);
    int32_t n = 0;
    WriteObjHeader(n);
    WriteLine("<< /Type /Font /Subtype /Type1 /Name /" + key + " /BaseFont /" + base +
              pdf::StyleSuffix(Style) + " /Encoding /WinAnsiEncoding >>");
    WriteObjEnd();
    fontsList_ += "/" + key + " " + std::to_string(n) + " 0 R \r";
}

const pdf::FontRecord *clsPDFCreator::FindFont(std::string_view Key) const
{
    const std::string needle = "<" + std::string(Key) + ">";
    const auto at = std::search(fontIndex_.begin(), fontIndex_.end(), needle.begin(), needle.end(),
                                EqualNoCase);
    const auto pos = std::size_t(at - fontIndex_.begin()) + needle.size();
    if (at == fontIndex_.end() || pos + 4 > fontIndex_.size())
        return nullptr;
    std::size_t number = 0;
    std::from_chars(fontIndex_.data() + pos, fontIndex_.data() + pos + 4, number);
    return number >= 1 && number <= fonts_.size() ? &fonts_[number - 1] : nullptr;
}

float clsPDFCreator::Length(std::string_view Text, std::string_view Key, float Size)
{
    const pdf::FontRecord *font = FindFont(pdf::ToCP1250(Key));
    if (!font)
        return 0;
    const std::string text = pdf::ToCP1250(Text);
    int64_t widths = 0;
    int64_t blanks = 0;
    for (char ch : text) {
        const auto c = uint8_t(ch);
        widths += c >= font->FirstChar && c <= font->LastChar ? font->Widths[c - 1u]
                                                               : font->MissingWidth;
        blanks += c == ' ';
    }
    // Measuring forgets any horizontal scaling, so the factor below is 1.
    horizontalScaling_ = 100;
    return FromPoints(double(widths) * Size / 1000 + double(blanks) * wordSpacing_ +
                      double(text.size()) * charSpacing_);
}

// The five lines of a text object, joined by CR LF, without the last line end.
// The binary form rounds the size to a whole number, the position to two
// places and the first two matrix values to two places; the others are kept
// as they are, which is how the two forms differ in print.
std::string clsPDFCreator::TextBlock(float X, float Y, std::string_view Text, std::string_view Key,
                                     float Size, float Rotation, bool Binary) const
{
    using pdf::FormatNum;
    using pdf::RoundHalfEven;
    auto coord = [&](float v) {
        return Binary ? FormatNum(RoundHalfEven(ToPoints(v), 2), 3) : Pt(v);
    };
    std::string block = "BT\r\n/" + pdf::ToCP1250(Key) + " " +
                        FormatNum(Binary ? RoundHalfEven(Size, 0) : Size, 3) + " Tf\r\n";
    if (Rotation == 0) {
        block += coord(X) + " " + coord(Y) + " Td";
    } else {
        const double angle = Rotation * (3.141592 / 180);
        const double s = std::sin(angle), c = std::cos(angle);
        block += FormatNum(Binary ? RoundHalfEven(c, 2) : c, 3) + " " +
                 FormatNum(Binary ? RoundHalfEven(s, 2) : s, 3) + " " + FormatNum(-s, 3) + " " +
                 FormatNum(c, 3) + " " + coord(X) + " " + coord(Y) + " Tm";
    }
    block += "\r\n(" + pdf::EscapeText(pdf::ToCP1250(Text)) + ") Tj\r\nET";
    return block;
}

// Right and centre alignment move the caller's own X.
void clsPDFCreator::AlignX(float &X, std::string_view Text, std::string_view Key, float Size,
                           int32_t Align)
{
    if (Align == 1)
        X -= Length(Text, Key, Size);
    else if (Align == 2)
        X -= Length(Text, Key, Size) / 2;
}

void clsPDFCreator::DrawText(float &X, float Y, std::string_view Text, std::string_view Key,
                             float Size, int32_t Align, float Rotation)
{
    AlignX(X, Text, Key, Size, Align);
    WriteLine(TextBlock(X, Y, Text, Key, Size, Rotation, false));
}

void clsPDFCreator::DrawBinaryText(float &X, float Y, std::string_view Text, std::string_view Key,
                                   float Size, int32_t Align, float Rotation, bool Measure,
                                   int32_t &Length)
{
    AlignX(X, Text, Key, Size, Align);
    // The measure is exactly the bytes written: the block and its line end.
    WriteOrMeasure(TextBlock(X, Y, Text, Key, Size, Rotation, true), Measure, Length, 2);
}

void clsPDFCreator::SetTextState(float &Field, float Value, const char *Op)
{
    Field = Value;
    WriteLine(pdf::FormatNum(Value, 3) + Op);
}

void clsPDFCreator::SetCharSpacing(float Value) { SetTextState(charSpacing_, Value, " Tc"); }
void clsPDFCreator::SetWordSpacing(float Value) { SetTextState(wordSpacing_, Value, " Tw"); }

void clsPDFCreator::SetTextHorizontalScaling(float Value)
{
    SetTextState(horizontalScaling_, Value, " Tz");
}

void clsPDFCreator::SetTextRenderingMode(float Mode)
{
    if (Mode >= 0 && Mode < 2)
        WriteLine(pdf::FormatNum(Mode, 3) + " Tr");
}
