// Images: the BMP readers and the image objects.

#include "pdf/pdfcreator.h"
#include "pdf/pdfformat.h"

#include <memory>

namespace {

uint16_t U16(const uint8_t *p) { return uint16_t(p[0] | p[1] << 8); }
uint32_t U32(const uint8_t *p) { return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24; }

uint8_t Gray(double value) { return value >= 255 ? 255 : uint8_t(value); }

struct FileCloser {
    void operator()(std::FILE *f) const { std::fclose(f); }
};

bool ReadAt(std::FILE *f, long offset, uint8_t *to, std::size_t count)
{
    return std::fseek(f, offset, SEEK_SET) == 0 && std::fread(to, 1, count, f) == count;
}

// Reads an uncompressed BMP of 1, 4, 8 or 24 bits, bottom row first as stored.
// The two readers differ in the palette only: the new one turns each entry's
// blue, green, red into red, green, blue and weighs gray accordingly; the old
// one copies the entries as they stand.
//
// Anything else the header could claim (another depth, a width or height of
// zero or below, more data than the file holds) is refused before anything
// of its size is allocated.
bool ReadBMP(const std::string &fileName, bool newReader, bool gray, std::vector<uint8_t> &data,
             std::vector<uint8_t> &palette, int32_t &width, int32_t &height, uint8_t &bits)
{
    data.clear();
    palette.clear();
    const std::unique_ptr<std::FILE, FileCloser> f(std::fopen(fileName.c_str(), "rb"));
    uint8_t h[54];
    if (!f || std::fread(h, 1, sizeof h, f.get()) != sizeof h || h[0] != 'B' || h[1] != 'M')
        return false;
    const uint32_t dataOffset = U32(h + 10);
    const auto w = int32_t(U32(h + 18));
    const auto ht = int32_t(U32(h + 22));
    const uint16_t depth = U16(h + 28);
    if ((depth != 1 && depth != 4 && depth != 8 && depth != 24) || w <= 0 || ht <= 0)
        return false;
    if (std::fseek(f.get(), 0, SEEK_END) != 0)
        return false;
    const long fileSize = std::ftell(f.get());

    // Palette entries follow the header directly, 4 bytes each.
    if (depth <= 8) {
        const std::size_t entries = std::size_t(1) << depth;
        std::vector<uint8_t> raw(entries * 4);
        if (!ReadAt(f.get(), 54, raw.data(), raw.size()))
            return false;
        const double w1 = newReader ? 0.11 : 0.33, w3 = newReader ? 0.33 : 0.11;
        for (std::size_t e = 0; e < entries; ++e) {
            const uint8_t *p = &raw[e * 4];
            if (gray)
                palette.push_back(Gray(w1 * p[0] + 0.59 * p[1] + w3 * p[2]));
            else if (newReader)
                palette.insert(palette.end(), {p[2], p[1], p[0]});
            else
                palette.insert(palette.end(), p, p + 3);
        }
    }

    // Whole bytes of the row plus 3, low two bits cleared. For 1 and 4 bits a
    // fraction of a byte is dropped first, so some widths get a stride short
    // of the row; the pictures this program prints are 24-bit and unaffected.
    const int64_t stride = (int64_t(depth) * w / 8 + 3) & ~int64_t(3);
    if (stride > 0 && (dataOffset > uint64_t(fileSize) || ht > (fileSize - int64_t(dataOffset)) / stride))
        return false;
    std::vector<uint8_t> src(std::size_t(ht * stride));
    if (!src.empty() && !ReadAt(f.get(), long(dataOffset), src.data(), src.size()))
        return false;

    if (depth == 24) {
        data.resize(std::size_t(ht) * std::size_t(w) * (gray ? 1 : 3));
        const uint8_t *p = src.data();
        uint8_t *out = data.data();
        for (int32_t y = 0; y < ht; ++y) {
            for (int32_t x = 0; x < w; ++x, p += 3) {
                if (gray) {
                    *out++ = Gray(0.59 * p[1] + 0.33 * p[2] + 0.11 * p[0]);
                } else {
                    *out++ = p[2];
                    *out++ = p[1];
                    *out++ = p[0];
                }
            }
            p += w % 4;
        }
    } else if (depth == 8 && w % 4 != 0) {
        // Only 8-bit rows lose their padding; 1- and 4-bit rows keep it.
        data.reserve(std::size_t(ht) * std::size_t(w));
        for (int32_t y = 0; y < ht; ++y)
            data.insert(data.end(), src.begin() + y * stride, src.begin() + y * stride + w);
    } else {
        data = std::move(src);
    }
    width = w;
    height = ht;
    bits = uint8_t(depth);
    return true;
}

} // namespace

void clsPDFCreator::LeggeBMP(const std::string &FileName, std::vector<uint8_t> &Data,
                             std::vector<uint8_t> &Palette, int32_t &Width, int32_t &Height,
                             uint8_t &Bits, bool Gray, bool &Ok)
{
    Ok = ReadBMP(FileName, false, Gray, Data, Palette, Width, Height, Bits);
}

void clsPDFCreator::LeggeBMP_new(const std::string &FileName, std::vector<uint8_t> &Data,
                                 std::vector<uint8_t> &Palette, int32_t &Width, int32_t &Height,
                                 uint8_t &Bits, bool Gray, bool &Ok)
{
    Ok = ReadBMP(FileName, true, Gray, Data, Palette, Width, Height, Bits);
}

void clsPDFCreator::LoadImgFromBMPFile(std::string_view Name, const std::string &FileName, bool Gray,
                                       std::string_view Encoded, bool &Ok)
{
    std::vector<uint8_t> data, palette;
    int32_t width = 0, height = 0;
    uint8_t bits = 0;
    LeggeBMP(FileName, data, palette, width, height, bits, Gray, Ok);
    if (Encoded.empty() && Ok)
        LoadImgFromBuffer(Name, data, palette, width, height, bits, Gray);
}

void clsPDFCreator::LoadImgFromBuffer(std::string_view Name, const std::vector<uint8_t> &Data,
                                      const std::vector<uint8_t> &Palette, int32_t Width,
                                      int32_t Height, uint8_t Bits, bool Gray)
{
    WriteImage(Name, Data, Palette, Width, Height, Bits, Gray, {}, false);
}

void clsPDFCreator::LoadImgFromArray(std::string_view Name, const std::vector<uint8_t> &Data,
                                     const std::vector<uint8_t> &Palette, int32_t Width,
                                     int32_t Height, uint8_t Bits, bool Gray,
                                     std::string_view Encoded)
{
    WriteImage(Name, Data, Palette, Width, Height, Bits, Gray, Encoded, true);
}

// The image object n, its length as object n + 1 and, up to 8 bits, the
// palette as object n + 2. From an array, a 24-bit image is taken for JPEG
// under ASCII85 (Encoded holds that text) and carries its length directly.
void clsPDFCreator::WriteImage(std::string_view Name, const std::vector<uint8_t> &Data,
                               const std::vector<uint8_t> &Palette, int32_t Width, int32_t Height,
                               uint8_t Bits, bool Gray, std::string_view Encoded, bool FromArray)
{
    const std::string name = pdf::ToCP1250(Name);
    const std::string cs = Gray ? "DeviceGray" : "DeviceRGB";
    // Unencoded bytes go out as they are, without a copy.
    auto streamText = [this](const std::vector<uint8_t> &bytes, std::string &encoded) -> std::string_view {
        if (!encodeASCII85_)
            return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
        encoded = pdf::ASCII85(bytes.data(), bytes.size());
        return encoded;
    };
    // What an encoded length leaves out: the "~>" at the end.
    const int64_t cut = encodeASCII85_ ? 2 : 0;

    int32_t n = 0;
    WriteObjHeader(n);
    WriteLine("<<\r/Type /XObject\r/Subtype /Image\r/Name /" + name + "\r/Width " +
              std::to_string(Width) + "\r/Height " + std::to_string(Height) +
              (encodeASCII85_ ? "\r/Filter /ASCII85Decode" : ""));
    std::string text = FromArray ? pdf::ToCP1250(Encoded) : std::string();
    const std::string_view stream = text.empty() ? streamText(Data, text) : text;
    const std::string lengthRef = "/Length " + std::to_string(n + 1) + " 0 R";
    if (Bits == 24 && FromArray)
        WriteLine("/BitsPerComponent 8\r/ColorSpace /" + cs + "\r/Length " +
                  std::to_string(stream.size() + 1) + "\r/Filter[/ASCII85Decode/DCTDecode]");
    else if (Bits == 24)
        WriteLine("/BitsPerComponent 8\r/ColorSpace /" + cs + "\r" + lengthRef);
    else if (Bits == 8 || Bits == 4 || Bits == 1)
        WriteLine("/BitsPerComponent " + std::to_string(Bits) + "\r/ColorSpace [/Indexed /" + cs + " " +
                  std::to_string((1 << Bits) - 1) + " " + std::to_string(n + 2) + " 0 R]\r" + lengthRef);
    WriteRaw(">>\rstream\r");
    WriteRaw(stream);
    WriteLine("\rendstream");
    WriteObjEnd();
    imageList_ += "/" + name + " " + std::to_string(n) + " 0 R \r";

    n = 0;
    WriteObjHeader(n);
    WriteLine(std::to_string(int64_t(stream.size()) - cut));
    WriteObjEnd();

    if (Bits < 9) {
        std::string encodedPalette;
        const std::string_view palette = streamText(Palette, encodedPalette);
        n = 0;
        WriteObjHeader(n);
        WriteLine(std::string("<<") + (encodeASCII85_ ? "/Filter /ASCII85Decode\r" : "") + "/Length " +
                  std::to_string(int64_t(palette.size()) - cut) + " >>\rstream\r" + std::string(palette) +
                  "\rendstream");
        WriteObjEnd();
    }
}
