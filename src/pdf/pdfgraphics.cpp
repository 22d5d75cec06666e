// Graphics state, paths and form objects.

#include "pdf/pdfcreator.h"
#include "pdf/pdfformat.h"

#include <cmath>

using pdf::FormatNum;

void clsPDFCreator::SetStrokeOrFill(int32_t Color, const char *GrayOp, const char *RgbOp)
{
    if (Color >= -255 && Color <= 0) {
        WriteLine(FormatNum(-Color / 255.0, 3) + GrayOp);
        return;
    }
    const auto packed = uint32_t(Color);
    WriteLine(FormatNum((packed & 0xFF) / 255.0, 3) + " " + FormatNum((packed >> 8 & 0xFF) / 255.0, 3) +
              " " + FormatNum((packed >> 16 & 0xFF) / 255.0, 3) + RgbOp);
}

void clsPDFCreator::SetColorStroke(int32_t Color) { SetStrokeOrFill(Color, " G", " RG"); }
void clsPDFCreator::SetColorFill(int32_t Color) { SetStrokeOrFill(Color, " g", " rg"); }

void clsPDFCreator::SetDash(float On, float Off)
{
    WriteLine(On == 0 && Off == 0 ? std::string("[ ] 0 d") : "[" + Pt(On) + " " + Pt(Off) + "] 0 d");
}

void clsPDFCreator::SetLineWidth(float Width) { WriteLine(Pt(Width) + " w"); }

void clsPDFCreator::SetLineCap(int16_t Style)
{
    if (Style >= 0 && Style <= 2)
        WriteLine(std::to_string(Style) + " J");
}

void clsPDFCreator::SetLineJoin(int16_t Style)
{
    if (Style >= 0 && Style <= 2)
        WriteLine(std::to_string(Style) + " j");
}

void clsPDFCreator::SetMiterLimit(float Limit)
{
    if (Limit >= 1)
        WriteLine(FormatNum(Limit, 3) + " M");
}

// The measure of MoveTo and LineTo is one byte short of what they write;
// callers' constants rely on these figures.
void clsPDFCreator::MoveTo(float X, float Y, bool Measure, int32_t &Length)
{
    WriteOrMeasure(Pt(X) + " " + Pt(Y) + " m", Measure, Length, 1);
}

void clsPDFCreator::LineTo(float X, float Y, [[maybe_unused]] int32_t Options, bool Measure,
                           int32_t &Length)
{
    WriteOrMeasure(Pt(X) + " " + Pt(Y) + " l", Measure, Length, 1);
}

void clsPDFCreator::Curve(float X1, float Y1, float X2, float Y2, float X3, float Y3, int32_t Options)
{
    WriteLine(Pt(X1) + " " + Pt(Y1) + " " + Pt(X2) + " " + Pt(Y2) + " " + Pt(X3) + " " + Pt(Y3) + " c");
    Path(Options);
}

void clsPDFCreator::Path(int32_t Options)
{
    if ((Options & 7) == 7) {
        WriteLine("b");
    } else if ((Options & 5) == 5) {
        WriteLine("B");
    } else if (Options & 4) {
        WriteLine("f");
    } else {
        if (Options & 2)
            WriteLine("h");
        if (Options & 1)
            WriteLine("S");
    }
}

void clsPDFCreator::Rectangle(float X, float Y, float Width, float Height, int32_t Options,
                              float Radius, bool Measure, int32_t &Length)
{
    if (!Measure)
        WriteLine("n");
    Length = 0;
    if (Radius > 0) {
        // The rounded form is drawn even in a dry run and left unpainted for
        // the caller's own Path.
        float r = Radius;
        if (r > Width / 2)
            r = Width / 2;
        if (r > Height / 2)
            r = Height / 2;
        const float k = r * 0.55f;
        const float W = Width, H = Height;
        int32_t unused;
        MoveTo(X + r, Y, false, unused);
        LineTo(X + W - r, Y, 0, false, unused);
        Curve(X + W - r + k, Y, X + W, Y + r - k, X + W, Y + r, 0);
        LineTo(X + W, Y + H - r, 0, false, unused);
        Curve(X + W, Y + H - r + k, X + W - r + k, Y + H, X + W - r, Y + H, 0);
        LineTo(X + r, Y + H, 0, false, unused);
        Curve(X + r - k, Y + H, X, Y + H - r + k, X, Y + H - r, 0);
        LineTo(X, Y + r, 0, false, unused);
        Curve(X, Y + r - k, X + r - k, Y, X + r, Y, 0);
        return;
    }
    // One unit more than the width asked for, on purpose: frames rely on it.
    auto num = [this](float v) { return FormatNum(pdf::RoundHalfEven(ToPoints(v), 2), 3); };
    WriteOrMeasure(num(X) + " " + num(Y) + " " + num(Width + 1) + " " + num(Height) + " re", Measure,
                   Length, 5);
    if (!Measure)
        Path(Options);
}

void clsPDFCreator::DrawCircle(float X, float Y, float Radius, int32_t Options)
{
    const float R = Radius, k = Radius * 0.55f;
    int32_t unused;
    MoveTo(X, Y - R, false, unused);
    Curve(X + k, Y - R, X + R, Y - k, X + R, Y, 0);
    Curve(X + R, Y + k, X + k, Y + R, X, Y + R, 0);
    Curve(X - k, Y + R, X - R, Y + k, X - R, Y, 0);
    Curve(X - R, Y - k, X - k, Y - R, X, Y - R, 0);
    Path(Options);
}

// A polygon of Step degrees; Ratio squeezes the circle into an ellipse.
void clsPDFCreator::Arc(float X, float Y, float Radius, float Start, float End, float Ratio, bool Pie,
                        float Rotation, int16_t Step, int32_t Options)
{
    int32_t unused;
    WriteLine("n");
    MoveTo(X, Y, false, unused);
    if (Options & 4)
        Pie = true;
    const double d = 3.141592 / 180;
    const double sr = std::sin(-d * Rotation), cr = std::cos(-d * Rotation);
    for (float a = Start; Step != 0 && (Step > 0 ? a <= End : a >= End); a += Step) {
        const double u = Radius * std::cos(d * a);
        const double v = Ratio * Radius * std::sin(d * a);
        const double x = cr * u + sr * v;
        const double y = -u * sr + cr * v;
        if (!Pie && a == Start)
            MoveTo(float(X + x), float(Y + y), false, unused);
        LineTo(float(X + x), float(Y + y), 0, false, unused);
    }
    if (Pie)
        LineTo(X, Y, 0, false, unused);
    Path(Options);
}

void clsPDFCreator::DrawImg(std::string_view Name, float X, float Y, float Width, float Height,
                            bool Measure, int32_t &Length)
{
    auto num = [this](float v) { return Pt(float(pdf::RoundHalfEven(v, 2))); };
    // The measure counts " 0 0 -" for " 0 0 ": one byte more than is written.
    WriteOrMeasure("q\r" + num(Width) + " 0 0 " + num(Height) + " " + num(X) + " " + num(Y) +
                       " cm\r/" + pdf::ToCP1250(Name) + " Do\rQ",
                   Measure, Length, 3);
}

void clsPDFCreator::StartObject(std::string_view Name, int32_t Flags)
{
    const std::string name = pdf::ToCP1250(Name);
    int32_t n = 0;
    WriteObjHeader(n);
    const float m = margin_;
    WriteLine("<<\r/Type /XObject\r/Subtype /Form\r/FormType 1\r/Name /" + name + "\r/BBox [" +
              FormatNum(m, 3) + " " + FormatNum(m, 3) + " " + FormatNum(paperWidth_ - m, 3) + " " +
              FormatNum(paperHeight_ - m, 3) + "]\r/Matrix [1 0 0 1 0 0]\r/Length " +
              std::to_string(n + 1) + " 0 R >>\rstream");
    streamStart_ = position_;
    formList_ += "/" + name + " " + std::to_string(n) + " 0 R \r";
    formObjects_.push_back({std::string(Name), Flags});
}

void clsPDFCreator::EndObject() { EndMeasuredStream(); }

void clsPDFCreator::DrawObject(std::string_view Name) { WriteLine("/" + pdf::ToCP1250(Name) + " Do"); }
