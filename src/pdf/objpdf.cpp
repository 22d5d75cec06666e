#include "pdf/objpdf.h"

#include <vector>

namespace {
// Byte offsets at which the characters of a UTF-8 text begin, and its end.
std::vector<size_t> charStarts(std::string_view text)
{
    std::vector<size_t> starts;
    for (size_t i = 0; i < text.size(); ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
            starts.push_back(i);
    starts.push_back(text.size());
    return starts;
}

void wrapLine(std::string_view line, size_t width, std::string &out)
{
    const std::vector<size_t> starts = charStarts(line);
    const size_t chars = starts.size() - 1;
    size_t first = 0;   // character that begins the rest still to place
    while (width > 0 && chars - first > width) {
        size_t cut = first + width;   // the blank at this character ends the line
        while (cut > first && line[starts[cut]] != ' ')
            --cut;
        if (cut == first) {   // no blank to break at
            out.append(line.substr(starts[first], starts[first + width] - starts[first]));
            first += width;
        } else {
            out.append(line.substr(starts[first], starts[cut] - starts[first]));
            first = cut + 1;
        }
        out.push_back('~');
    }
    out.append(line.substr(starts[first]));
}
} // namespace

bool ObjPdfOpen(clsPDFCreator &Pdf, const std::string &FileName, std::string_view Title)
{
    Pdf.Title(Title);
    Pdf.ScaleMode(3);
    Pdf.PaperSize(0);
    Pdf.Margin(0);
    Pdf.Orientation(0);
    Pdf.EncodeASCII85(false);
    return Pdf.InitPDFFile(FileName);
}

std::string WrapText(std::string_view Text, int16_t Width)
{
    std::string out;
    out.reserve(Text.size() + Text.size() / 16);
    const size_t width = Width > 0 ? size_t(Width) : 0;
    size_t from = 0;
    for (;;) {
        const size_t tilde = Text.find('~', from);
        wrapLine(Text.substr(from, tilde == std::string_view::npos ? std::string_view::npos : tilde - from),
                 width, out);
        if (tilde == std::string_view::npos)
            return out;
        out.push_back('~');
        from = tilde + 1;
    }
}
