#pragma once
// A writer of PDF 1.3 files straight to disk. It never goes back in the file:
// every number a stream's dictionary needs must be known before the stream
// starts, which is why the drawing operations of the pages can be run twice,
// first to measure (Measure true) and then to write.
//
// Calling order: properties, InitPDFFile, LoadFont for each font, then per
// page a dry run, LoadStrem, the real run, EndStrem and TypePage (or BeginPage,
// drawing, EndPage), the images, CreatePDFZaver, ClosePDFFile.
//
// Texts come in as UTF-8 and reach the file as Windows-1250 bytes. Lengths and
// coordinates are in the unit of ScaleMode, Y counted from the bottom.
// Nothing guards the order of calls. A failed write throws std::system_error,
// a write with no open file std::runtime_error; the partial file stays, as it
// does when a writer goes before ClosePDFFile.

#include "pdf/fonttables.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

class clsPDFCreator {
public:
    clsPDFCreator();
    ~clsPDFCreator();
    clsPDFCreator(const clsPDFCreator &) = delete;
    clsPDFCreator &operator=(const clsPDFCreator &) = delete;

    // Properties.
    void Title(std::string_view Value);
    void ScaleMode(int32_t Value);      // 0 points, 1 inches, 2 mm, 3 cm
    void PaperSize(int32_t Value);      // 0 A4, 1 A3, 2 letter, 3 612 x 864
    void PaperWidth(float Value);
    void PaperHeight(float Value);
    void Margin(float Value);
    void Orientation(int32_t Value);
    void EncodeASCII85(bool Value);
    int16_t Pages() const { return pagesOpened_; }
    int16_t MaxObjects() const { return int16_t(maxObject_); }
    int16_t SetPages() const { return pagesDeclared_; }
    void SetPages(int16_t Value) { pagesDeclared_ = Value; }
    // Folder of the files that InitPDFFile names itself; by default
    // $FONDARIX_TEMP, else the system's temporary folder.
    void TempDir(std::string Value) { tempDir_ = std::move(Value); }

    // Document structure.
    bool InitPDFFile(std::string FileName);
    void LoadStrem(int32_t Length);
    void EndStrem();
    void TypePage(int16_t &ContentObject);
    void BeginPage();
    void EndPage();
    // Self is the writer itself, handed in by the callers; it does not shape
    // the output.
    void CreatePDFZaver(const clsPDFCreator &Self);
    // Kids[i - 1] is the page object of page i; with fewer than two the single
    // page of a two-font document, "14 0 R", is named.
    void ClosePDFFile(const std::vector<int32_t> &Kids);

    // Fonts and text.
    void LoadFont(std::string_view Key, double FontObject, std::string_view FontName, int32_t Style);
    void LoadFontStandard(std::string_view Key, std::string_view BaseName, int32_t Style);
    float Length(std::string_view Text, std::string_view Key, float Size);
    // Align 1 right, 2 centre, else left; right and centre move the caller's X.
    void DrawText(float &X, float Y, std::string_view Text, std::string_view Key, float Size,
                  int32_t Align, float Rotation);
    void DrawBinaryText(float &X, float Y, std::string_view Text, std::string_view Key, float Size,
                        int32_t Align, float Rotation, bool Measure, int32_t &Length);
    void SetCharSpacing(float Value);
    void SetWordSpacing(float Value);
    void SetTextHorizontalScaling(float Value);
    void SetTextRenderingMode(float Mode);

    // Graphics state and paths. Colour -255..0 is a gray level, any other value
    // packs red in the low byte, then green, then blue. Path options: 1 stroke,
    // 2 close, 4 fill.
    void SetColorStroke(int32_t Color);
    void SetColorFill(int32_t Color);
    void SetDash(float On, float Off);
    void SetLineWidth(float Width);
    void SetLineCap(int16_t Style);
    void SetLineJoin(int16_t Style);
    void SetMiterLimit(float Limit);
    void MoveTo(float X, float Y, bool Measure, int32_t &Length);
    void LineTo(float X, float Y, int32_t Options, bool Measure, int32_t &Length);
    void Curve(float X1, float Y1, float X2, float Y2, float X3, float Y3, int32_t Options);
    void Path(int32_t Options);
    void Rectangle(float X, float Y, float Width, float Height, int32_t Options, float Radius,
                   bool Measure, int32_t &Length);
    void DrawCircle(float X, float Y, float Radius, int32_t Options);
    // A Step of 0 would never reach End; it draws no points.
    void Arc(float X, float Y, float Radius, float Start, float End, float Ratio, bool Pie,
             float Rotation, int16_t Step, int32_t Options);

    // Images and form objects.
    void LoadImgFromBMPFile(std::string_view Name, const std::string &FileName, bool Gray,
                            std::string_view Encoded, bool &Ok);
    void LoadImgFromBuffer(std::string_view Name, const std::vector<uint8_t> &Data,
                           const std::vector<uint8_t> &Palette, int32_t Width, int32_t Height,
                           uint8_t Bits, bool Gray);
    void LoadImgFromArray(std::string_view Name, const std::vector<uint8_t> &Data,
                          const std::vector<uint8_t> &Palette, int32_t Width, int32_t Height,
                          uint8_t Bits, bool Gray, std::string_view Encoded);
    void LeggeBMP_new(const std::string &FileName, std::vector<uint8_t> &Data,
                      std::vector<uint8_t> &Palette, int32_t &Width, int32_t &Height, uint8_t &Bits,
                      bool Gray, bool &Ok);
    void DrawImg(std::string_view Name, float X, float Y, float Width, float Height, bool Measure,
                 int32_t &Length);
    // Flags place the object on pages that BeginPage opens: 2 even pages,
    // 4 odd pages, 8 not on the first, all of 1, 2 and 4 every page.
    void StartObject(std::string_view Name, int32_t Flags);
    void EndObject();
    void DrawObject(std::string_view Name);

private:
    struct FormObject {
        std::string Name;
        int32_t Flags;
    };

    int32_t WriteObjHeader(int32_t &Number);
    void WriteObjEnd();
    void WriteRaw(std::string_view Bytes);
    void WriteLine(std::string_view Text);
    float ToPoints(float Value) const;
    float FromPoints(double Value) const;
    std::string Pt(float Value) const; // ToPoints, then FormatNum to 3 places
    void SetStrokeOrFill(int32_t Color, const char *GrayOp, const char *RgbOp);
    void SetTextState(float &Field, float Value, const char *Op);
    void AlignX(float &X, std::string_view Text, std::string_view Key, float Size, int32_t Align);
    std::string TextBlock(float X, float Y, std::string_view Text, std::string_view Key, float Size,
                          float Rotation, bool Binary) const;
    void WriteOrMeasure(const std::string &Line, bool Measure, int32_t &Length, int32_t Extra);
    void EndMeasuredStream();
    void LeggeBMP(const std::string &FileName, std::vector<uint8_t> &Data,
                  std::vector<uint8_t> &Palette, int32_t &Width, int32_t &Height, uint8_t &Bits,
                  bool Gray, bool &Ok);
    void WriteImage(std::string_view Name, const std::vector<uint8_t> &Data,
                    const std::vector<uint8_t> &Palette, int32_t Width, int32_t Height, uint8_t Bits,
                    bool Gray, std::string_view Encoded, bool FromArray);
    const pdf::FontRecord *FindFont(std::string_view Key) const;

    std::FILE *file_ = nullptr;
    std::string title_ = "(senza titolo)";
    int32_t paperSize_ = 0;
    float paperWidth_ = 595.2f;
    float paperHeight_ = 842.0f;
    int32_t scaleMode_ = 3;
    int32_t orientation_ = 0; // kept for the callers' sake; no output depends on it
    int16_t pagesOpened_ = 0;
    float margin_ = 0;
    bool encodeASCII85_ = false;
    std::string fontsList_;
    std::string fontIndex_;
    std::string imageList_;
    std::string formList_;
    int32_t maxObject_ = 0;
    int64_t streamStart_ = 0;
    float charSpacing_ = 0;
    float wordSpacing_ = 0;
    float horizontalScaling_ = 100;
    // Byte offset of each object, index = object number; -1 while unwritten.
    std::vector<int64_t> xref_;
    std::vector<FormObject> formObjects_;
    std::vector<pdf::FontRecord> fonts_;
    int16_t pagesDeclared_ = 0;
    int64_t position_ = 0; // bytes written so far
    std::string tempDir_;
};
