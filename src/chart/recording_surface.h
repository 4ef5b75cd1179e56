// A surface that draws nothing and logs every call, for tests and for the command-line
// tool's listing of a chart's drawing operations.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "chart/surface.h"

namespace quilmark {

enum class Surface_Op {
    Cls,
    ForeColor,
    DrawWidth,
    DrawStyle,
    FillColor,
    FillStyle,
    MoveToEx,
    LineTo,
    Ellipse,
    Arc,
    TextOutA,
    Polygon,
    Polyline,
    Segments,
    Circles,
    Text,
};

struct Surface_Op_Rec {
    Surface_Op op = Surface_Op::Cls;
    // The numeric arguments in call order (DrawWidth: 1, MoveToEx: 2, Arc: 8...); the
    // rest stay 0.
    std::array<int32_t, 8> args{};
    Rgb_Rec color{};  // ForeColor, FillColor
    std::string text; // TextOutA, Text: Windows-1252 bytes as given
    // The diagram's figures: their points (circles' centres, a text's middle), fill,
    // stroke, text style, circles' radii, and a text's angle.
    std::vector<Point_F_Rec> points;
    Rgba_Rec fill{};
    Stroke_Rec stroke;
    Text_Style_Rec style;
    std::vector<double> radii;
    double size = 0;
    bool operator==(const Surface_Op_Rec&) const = default;
};

class Recording_Surface final : public Surface {
  public:
    std::vector<Surface_Op_Rec> ops;

    void Cls() override;
    void Set_ForeColor(Rgb_Rec color) override;
    void Set_DrawWidth(int32_t width) override;
    void Set_DrawStyle(int32_t style) override;
    void Set_FillColor(Rgb_Rec color) override;
    void Set_FillStyle(int32_t style) override;
    void MoveToEx(int32_t x, int32_t y) override;
    void LineTo(int32_t x, int32_t y) override;
    void Ellipse(int32_t left, int32_t top, int32_t right, int32_t bottom) override;
    void Arc(int32_t left, int32_t top, int32_t right, int32_t bottom, int32_t x_start,
             int32_t y_start, int32_t x_end, int32_t y_end) override;
    void TextOutA(int32_t x, int32_t y, std::string_view text) override;
    void Draw_Polygon(std::span<const Point_F_Rec> points, Rgba_Rec fill,
                      const Stroke_Rec& outline) override;
    void Draw_Polyline(std::span<const Point_F_Rec> points, const Stroke_Rec& stroke) override;
    void Draw_Segments(std::span<const Point_F_Rec> ends, const Stroke_Rec& stroke) override;
    void Draw_Circles(std::span<const Circle_F_Rec> circles, Rgba_Rec fill,
                      const Stroke_Rec& outline) override;
    void Draw_Text(Point_F_Rec centre, double angle_deg, std::string_view text,
                   const Text_Style_Rec& style) override;

    // A fixed rule instead of a font, so that a recorded layout is the same on every
    // machine: each byte is 0.6 of the size wide (0.65 bold), the ascent 0.8 of the size
    // and the descent 0.2.
    Text_Extent_Rec Measure_Text(std::string_view text, double size_px, bool bold) const override;
};

// One operation as a line of text, without the line end:
//   Cls | ForeColor r g b | DrawWidth n | DrawStyle n | FillColor r g b | FillStyle n
//   MoveToEx x y | LineTo x y | Ellipse l t r b | Arc l t r b xs ys xe ye
//   TextOutA x y "text"
// and the diagram's figures, with colours as #RRGGBBAA and a stroke as its colour, width,
// "dash" and its lengths joined by commas if dashed, and "round" if round:
//   Polygon FILL STROKE n x y x y ... | Polyline STROKE n x y ... | Segments STROKE n x y ...
//   Circles FILL STROKE n x y radius x y radius ...
//   Text x y angle size [bold] COLOR [halo COLOR width] "text"
// Pixel numbers of the figures are given to 2 decimals, trailing zeros dropped.
// Numbers are decimal; text is converted to UTF-8 and quoted, with `"` and `\` escaped
// by a backslash.
std::string Format_Surface_Op(const Surface_Op_Rec& op);
// All recorded operations, one line each, every line ending in '\n'.
void Write_Recorded_Ops(const Recording_Surface& surface, std::ostream& out);
std::vector<std::string> Recorded_Op_Lines(const Recording_Surface& surface);

} // namespace quilmark
