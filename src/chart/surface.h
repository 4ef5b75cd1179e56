// The drawing surface of the chart: a current pen and brush, and the few GDI-like calls
// that the layers make. Coordinates are whole pixels from the top left corner of the
// chart, y growing downward; points far outside the chart are legal and get clipped.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/rounding.h"

namespace quilmark {

struct Rgb_Rec {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    bool operator==(const Rgb_Rec&) const = default;
};

// The chart's palette.
constexpr Rgb_Rec Chart_Green{0, 192, 0};          // runways, the aircraft, resting pen
constexpr Rgb_Rec Chart_Black{0, 0, 0};            // labels, resting brush
constexpr Rgb_Rec Chart_Yellow{255, 255, 0};       // ILS feathers
constexpr Rgb_Rec Chart_Light_Grey{192, 192, 192}; // taxiways
constexpr Rgb_Rec Chart_Brown_Red{128, 64, 64};    // parking spots and gates
constexpr Rgb_Rec Chart_Dark_Blue{0, 0, 192};      // class B airspace
constexpr Rgb_Rec Chart_Magenta{255, 0, 255};      // class C airspace
constexpr Rgb_Rec Chart_White{255, 255, 255};      // the background that Cls paints

// DrawStyle values.
constexpr int32_t Draw_Style_Solid = 0;
constexpr int32_t Draw_Style_Dash = 1;
// FillStyle values.
constexpr int32_t Fill_Style_Solid = 0;
constexpr int32_t Fill_Style_Hollow = 1;

// What the diagram style draws with, beside the pen and brush above: colours with
// opacity, positions in fractions of a pixel (for crisp shapes on high-density screens and
// in vector files), and each figure carrying its own stroke and fill, so that these calls
// neither read nor change the pen, the brush or the current point.
struct Rgba_Rec {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    uint8_t alpha = 255; // 0 transparent (nothing is painted) to 255 opaque
    bool operator==(const Rgba_Rec&) const = default;
};

struct Point_F_Rec {
    double x = 0;
    double y = 0;
    bool operator==(const Point_F_Rec&) const = default;
};

struct Circle_F_Rec {
    Point_F_Rec centre;
    double radius = 0;
    bool operator==(const Circle_F_Rec&) const = default;
};

// A line's look. Width 0 (or a transparent colour) draws no line. dashes holds the
// lengths of dash, gap, dash, gap... in pixels; empty is a solid line. Round ends and
// corners suit lines that meet other lines (taxiways); square-cut ones suit outlines.
struct Stroke_Rec {
    Rgba_Rec color{};
    double width = 0;
    std::vector<double> dashes;
    bool round = false;
    bool operator==(const Stroke_Rec&) const = default;
};

// Text of the diagram: the sans-serif face at size_px pixels (the height of its line),
// plain or bold. A halo is a band of halo_px pixels around every letter in halo colour,
// drawn first so that the text stays readable over lines and fills.
struct Text_Style_Rec {
    double size_px = 12;
    bool bold = false;
    Rgba_Rec color{};
    Rgba_Rec halo{};
    double halo_px = 0;
    bool operator==(const Text_Style_Rec&) const = default;
};

// How much room a line of text takes, in pixels: its advance from the first letter to the
// end of the last, and how far the face reaches above and below its baseline.
struct Text_Extent_Rec {
    double width = 0;
    double ascent = 0;
    double descent = 0;
    double Height() const { return ascent + descent; }
};

// Text measures for laying out labels before anything is drawn. A surface answers from
// the font it will draw with; the layout code can also be handed one on its own.
class Text_Metrics {
  public:
    virtual ~Text_Metrics() = default;
    // text in Windows-1252, in the face and size (bold or not) of style.
    virtual Text_Extent_Rec Measure_Text(std::string_view text, double size_px,
                                         bool bold) const = 0;
};

class Surface : public Text_Metrics {
  public:
    ~Surface() override = default;

    // Clears the whole surface to the white background. The pen, the brush and the
    // current point stay as they are.
    virtual void Cls() = 0;

    // Pen and brush. ForeColor is the colour of the pen and of text; DrawWidth the pen
    // width in pixels; DrawStyle solid (0) or dashed (1); FillColor the brush colour;
    // FillStyle solid (0) or hollow (1).
    virtual void Set_ForeColor(Rgb_Rec color) = 0;
    virtual void Set_DrawWidth(int32_t width) = 0;
    virtual void Set_DrawStyle(int32_t style) = 0;
    virtual void Set_FillColor(Rgb_Rec color) = 0;
    virtual void Set_FillStyle(int32_t style) = 0;

    // Moves the current point without drawing.
    virtual void MoveToEx(int32_t x, int32_t y) = 0;
    // A line with the pen from the current point to x, y, which becomes the current point.
    virtual void LineTo(int32_t x, int32_t y) = 0;
    // The ellipse inscribed in the box, outlined with the pen and filled with the brush.
    // A box given with its top below its bottom (or its left right of its right) is the
    // same box.
    virtual void Ellipse(int32_t left, int32_t top, int32_t right, int32_t bottom) = 0;
    // The part of the box's ellipse that runs counter-clockwise, as seen on the screen,
    // from the radial through the start point to the radial through the end point,
    // drawn with the pen. The current point does not move.
    virtual void Arc(int32_t left, int32_t top, int32_t right, int32_t bottom, int32_t x_start,
                     int32_t y_start, int32_t x_end, int32_t y_end) = 0;
    // Text (Windows-1252 bytes) in ForeColor with its top left corner at x, y.
    virtual void TextOutA(int32_t x, int32_t y, std::string_view text) = 0;

    // The diagram's figures. Coordinates are pixels as above, in fractions of a pixel;
    // figures are smoothed. None of them reads or changes the pen, the brush or the
    // current point.
    //
    // A closed figure through the points, filled (unless fill is transparent) and then
    // outlined with outline.
    virtual void Draw_Polygon(std::span<const Point_F_Rec> points, Rgba_Rec fill,
                              const Stroke_Rec& outline) = 0;
    // An open line through the points.
    virtual void Draw_Polyline(std::span<const Point_F_Rec> points, const Stroke_Rec& stroke) = 0;
    // Separate lines, each between two successive points: 0 to 1, 2 to 3... (an odd last
    // point is left alone).
    virtual void Draw_Segments(std::span<const Point_F_Rec> ends, const Stroke_Rec& stroke) = 0;
    // Circles, each filled and then outlined like a polygon, all in one style.
    virtual void Draw_Circles(std::span<const Circle_F_Rec> circles, Rgba_Rec fill,
                              const Stroke_Rec& outline) = 0;
    // One line of text (Windows-1252) whose box, its advance wide and ascent plus descent
    // high as Measure_Text gives them, has its middle on centre, turned about it by
    // angle_deg clockwise as seen on the screen (0 reads left to right).
    virtual void Draw_Text(Point_F_Rec centre, double angle_deg, std::string_view text,
                           const Text_Style_Rec& style) = 0;
};

// ForeColor, FillColor and FillStyle in that order: how each drawn element of the chart
// takes its colours.
inline void Set_Colors(Surface& surface, Rgb_Rec fore_color, Rgb_Rec fill_color,
                       int32_t fill_style) {
    surface.Set_ForeColor(fore_color);
    surface.Set_FillColor(fill_color);
    surface.Set_FillStyle(fill_style);
}

// A disc of radius r about the pixel (x, y): Ellipse(x - r, y + r, x + r, y - r). A pixel
// far off the chart stands at the end of the integer range, so the box's edges saturate
// there instead of wrapping round to the other side.
inline void Ellipse_About(Surface& surface, int32_t x, int32_t y, int32_t r) {
    surface.Ellipse(Clamp_I32(int64_t{x} - r), Clamp_I32(int64_t{y} + r), Clamp_I32(int64_t{x} + r),
                    Clamp_I32(int64_t{y} - r));
}

} // namespace quilmark
