// Document skeleton: properties, object numbering, pages, cross-reference
// table and trailer.
//
// Fixed object numbers that callers count on: 1 Info, 2 Pages (written at
// the close), 3 resources (at the close), 4 reserved and never written,
// 5..8 widths, descriptor, encoding and dictionary of the first font,
// 9..12 those of the second, so a two-font page has its content at 13 and
// its page object at 14.

#include "pdf/pdfcreator.h"
#include "pdf/pdfformat.h"

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <system_error>

namespace {

const char *const kCreator = "KS4 PDFCreator";
const char *const kAuthor = "Fondarix MySQL";
const char *const kProducer = "KS4 PDFCreator, (c) Fondarix MySQL";

double ScaleFactor(int32_t mode)
{
    switch (mode) {
    case 0: return 1;
    case 1: return 72;
    case 2: return 72 / 25.4;
    case 3: return 72 / 2.54;
    default: return 0;
    }
}

std::string LocalTime(const char *format)
{
    const std::time_t now = std::time(nullptr);
    char buf[32];
    return std::string(buf, std::strftime(buf, sizeof buf, format, std::localtime(&now)));
}

// "~", the hexadecimal form of day, hour, minute, second and a random digit.
std::string TempFileName()
{
    static std::minstd_rand rng{std::random_device{}()};
    const long number = std::strtol(LocalTime("%d%H%M%S").c_str(), nullptr, 10) * 10 + long(rng() % 10);
    char buf[32];
    std::snprintf(buf, sizeof buf, "~%lX.pdf", number);
    return buf;
}

std::filesystem::path DefaultTempDir()
{
    if (const char *dir = std::getenv("FONDARIX_TEMP"); dir && *dir)
        return dir;
    return std::filesystem::temp_directory_path();
}

} // namespace

clsPDFCreator::clsPDFCreator() = default;

clsPDFCreator::~clsPDFCreator()
{
    if (file_)
        std::fclose(file_);
}

void clsPDFCreator::Title(std::string_view Value) { title_ = pdf::ToCP1250(Value); }
void clsPDFCreator::ScaleMode(int32_t Value) { scaleMode_ = Value; }
void clsPDFCreator::Orientation(int32_t Value) { orientation_ = Value; }
void clsPDFCreator::EncodeASCII85(bool Value) { encodeASCII85_ = Value; }
void clsPDFCreator::Margin(float Value) { margin_ = ToPoints(Value); }

void clsPDFCreator::PaperSize(int32_t Value)
{
    static const float sizes[4][2] = {{595.2f, 842}, {842, 1190.5f}, {612, 792}, {612, 864}};
    paperSize_ = Value;
    if (Value >= 0 && Value <= 3) {
        paperWidth_ = sizes[Value][0];
        paperHeight_ = sizes[Value][1];
    }
}

void clsPDFCreator::PaperWidth(float Value)
{
    paperWidth_ = ToPoints(Value);
    paperSize_ = 255;
}

void clsPDFCreator::PaperHeight(float Value)
{
    paperHeight_ = ToPoints(Value);
    paperSize_ = 255;
}

float clsPDFCreator::ToPoints(float Value) const
{
    return float(double(Value) * ScaleFactor(scaleMode_));
}

float clsPDFCreator::FromPoints(double Value) const
{
    const double factor = ScaleFactor(scaleMode_);
    return factor == 0 ? 0 : float(Value / factor);
}

std::string clsPDFCreator::Pt(float Value) const { return pdf::FormatNum(ToPoints(Value), 3); }

void clsPDFCreator::WriteRaw(std::string_view Bytes)
{
    if (!file_)
        throw std::runtime_error("PDF: no file is open");
    if (std::fwrite(Bytes.data(), 1, Bytes.size(), file_) != Bytes.size())
        throw std::system_error(errno, std::generic_category(), "PDF: write failed");
    position_ += int64_t(Bytes.size());
}

void clsPDFCreator::WriteLine(std::string_view Text)
{
    WriteRaw(Text);
    WriteRaw("\r\n");
}

void clsPDFCreator::WriteObjEnd() { WriteLine("endobj"); }

int32_t clsPDFCreator::WriteObjHeader(int32_t &Number)
{
    if (Number == 0)
        Number = maxObject_ + 1;
    if (Number > maxObject_)
        maxObject_ = Number;
    xref_.resize(std::size_t(maxObject_) + 1, -1);
    xref_[std::size_t(Number)] = position_;
    WriteLine(std::to_string(Number) + " 0 obj");
    return Number;
}

void clsPDFCreator::WriteOrMeasure(const std::string &Line, bool Measure, int32_t &Length,
                                   int32_t Extra)
{
    if (Measure) {
        Length = int32_t(Line.size()) + Extra;
    } else {
        WriteLine(Line);
        Length = 0;
    }
}

bool clsPDFCreator::InitPDFFile(std::string FileName)
{
    if (file_) {
        std::fclose(file_);
        file_ = nullptr;
    }
    try {
        if (FileName.empty())
            FileName = ((tempDir_.empty() ? DefaultTempDir() : std::filesystem::path(tempDir_)) /
                        TempFileName()).string();
        std::error_code ec;
        if (!std::filesystem::is_directory(FileName, ec))
            std::filesystem::remove(FileName, ec);
        file_ = std::fopen(FileName.c_str(), "wb");
        if (!file_)
            return false;
        std::setvbuf(file_, nullptr, _IOFBF, 1 << 16);
        position_ = 0;
        WriteLine("%PDF-1.3");
        maxObject_ = 0;
        int32_t info = 1;
        WriteObjHeader(info);
        // Two blanks after /Creator, and one zone for the whole year.
        WriteLine("<<\r/Title (" + pdf::EscapeText(title_) + ")\r/Author (" +
                  pdf::EscapeText(kAuthor) + ")\r/Creator  (" + pdf::EscapeText(kCreator) +
                  ")\r/Producer (" + pdf::EscapeText(kProducer) + ")\r/CreationDate (D:" +
                  LocalTime("%Y%m%d%H%M%S") + "+01'00')\r>>");
        WriteObjEnd();
    } catch (const std::exception &) {
        if (file_)
            std::fclose(file_);
        file_ = nullptr;
        return false;
    }
    maxObject_ = 4; // 2 pages, 3 resources, 4 never written
    return true;
}

void clsPDFCreator::LoadStrem(int32_t Length)
{
    int32_t n = 0;
    WriteObjHeader(n);
    WriteLine("<<\r/Length " + std::to_string(Length) + "\r>>\rstream");
}

void clsPDFCreator::EndStrem()
{
    WriteLine("endstream");
    WriteObjEnd();
}

void clsPDFCreator::TypePage(int16_t &ContentObject)
{
    if (ContentObject == 0)
        ContentObject = int16_t(maxObject_);
    int32_t n = 0;
    WriteObjHeader(n);
    // The media box is A4 whatever PaperSize says.
    WriteLine("<<\r/Type/Page\r/Parent 2 0 R\r/MediaBox[ 0 0 595.276 841.89 ]\r/Contents " +
              std::to_string(ContentObject) + " 0 R\r>>");
    WriteObjEnd();
    ContentObject = int16_t(maxObject_ - 1);
}

void clsPDFCreator::BeginPage()
{
    ++pagesOpened_;
    int32_t n = 0;
    WriteObjHeader(n);
    // Parent 3, contents 9 and the missing "endobj" are this path's own form;
    // the order forms and protocols never take it.
    WriteLine("<<\r/Type /Page\r/Parent 3 0 R\r/Contents 9 0 R\r>>");
    int32_t stream = n + 1;
    WriteObjHeader(stream);
    WriteLine("<< /Length " + std::to_string(n + 2) + " 0 R >>\rstream");
    streamStart_ = position_;
    const int32_t page = pagesOpened_;
    const bool even = page % 2 == 0;
    for (const FormObject &form : formObjects_) {
        const int32_t f = form.Flags;
        if ((even && (f & 2)) || (f & 7) == 7 || (!even && (f & 4) && !((f & 8) && page == 1)))
            DrawObject(form.Name);
    }
    charSpacing_ = 0;
    wordSpacing_ = 0;
    horizontalScaling_ = 100;
}

void clsPDFCreator::EndPage() { EndMeasuredStream(); }

void clsPDFCreator::EndMeasuredStream()
{
    const int64_t length = position_ - streamStart_;
    WriteLine("endstream");
    WriteObjEnd();
    int32_t n = 0;
    WriteObjHeader(n);
    WriteLine(std::to_string(length));
    WriteObjEnd();
}

void clsPDFCreator::CreatePDFZaver([[maybe_unused]] const clsPDFCreator &Self)
{
    int32_t n = 0;
    WriteObjHeader(n);
    WriteLine("<<\r/Type /Catalog\r/Pages 2 0 R\r>>");
    WriteObjEnd();
}

void clsPDFCreator::ClosePDFFile(const std::vector<int32_t> &Kids)
{
    std::string kids;
    if (Kids.size() > 1) {
        for (int32_t kid : Kids)
            kids += std::to_string(kid) + " 0 R\r";
    } else {
        kids = "14 0 R";
    }
    int32_t n = 2;
    WriteObjHeader(n);
    WriteLine("<<\r/Type/Pages\r/Kids[\r" + kids + "\r]\r/Count " + std::to_string(pagesDeclared_) +
              "\r/Resources 3 0 R\r>>");
    WriteObjEnd();

    n = 3;
    WriteObjHeader(n);
    std::string resources = "<<\r";
    if (!fontsList_.empty())
        resources += "/ProcSet[/PDF/Text /ImageB /ImageC /ImageI ]\r/Font <<\r" + fontsList_ + ">>\r";
    if (!imageList_.empty() || !formList_.empty())
        resources += "/XObject <<\r" + imageList_ + "\r" + formList_ + ">>\r";
    WriteLine(resources + ">>");
    WriteObjEnd();

    const int64_t xrefPosition = position_;
    WriteLine("xref");
    WriteLine("0 " + std::to_string(maxObject_ + 1));
    WriteLine("0000000000 65535 f");
    auto entry = [this](int32_t i) -> std::string {
        const int64_t offset = xref_[std::size_t(i)];
        if (offset < 0)
            return {};
        const std::string digits = "0000000000" + std::to_string(offset);
        return digits.substr(digits.size() - 10) + " 00000 n";
    };
    // A number never written repeats the entry after it: that is the line of
    // the reserved number 4.
    for (int32_t i = 1; i <= maxObject_; ++i) {
        if (xref_[std::size_t(i)] >= 0)
            WriteLine(entry(i));
        else if (i < maxObject_)
            WriteLine(entry(i + 1));
    }
    // /Size is the highest number, one less than the count of the xref section.
    const std::string highest = std::to_string(maxObject_);
    WriteLine("trailer\r<<\r/Size " + highest + "\r/Info 1 0 R\r/Root " + highest + " 0 R\r>>");
    WriteLine("startxref\r" + std::to_string(xrefPosition));
    WriteLine("%%EOF\r");
    const int closed = std::fclose(file_);
    file_ = nullptr;
    if (closed != 0)
        throw std::system_error(errno, std::generic_category(), "PDF: close failed");
}
