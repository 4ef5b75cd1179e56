// The chart's surface on a QPainter: the window, and PNG (QImage), SVG (QSvgGenerator)
// and PDF (QPdfWriter) export.
#pragma once

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPen>
#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <array>
#include <optional>
#include <string>
#include <unordered_map>

#include "chart/qt_coverage.h"
#include "chart/surface.h"

namespace quilmark {

// The font of every label on the chart: DejaVu Sans at 11 pixels (about 8 points on a
// 96 dpi screen). Its size is given in pixels so that it is the same on every device,
// whatever the device's resolution. The desktop program also makes it the application
// font.
QFont Chart_Label_Font();

// The diagram's face: DejaVu Sans, plain or bold, at a whole number of pixels to the em
// (size_px rounded, at least 1), the same on every device.
QFont Diagram_Font(double size_px, bool bold);

// The diagram's text measures from the real fonts, for laying out labels before there is
// anything to draw on; fonts need a Qt application. A Qt_Surface measures the same way.
class Qt_Text_Metrics final : public Text_Metrics {
  public:
    Text_Extent_Rec Measure_Text(std::string_view text, double size_px, bool bold) const override;
};

// Small pieces of a chart, its labels and parking discs, drawn once into transparent
// images and kept, for a window that redraws the same chart every second and at every
// zoom: placing a kept image costs a fraction of laying out text or flattening an
// ellipse again. A piece's image depends only on what it shows (text and colour; a
// disc's size, pen and brush) and on the painter's smoothing hints, never on where it
// goes; it is placed on whole pixels, so it lands on the pixels that drawing the piece
// directly would cover. What is kept is bounded: past the limit the cache starts again
// from empty.
class Qt_Sprite_Cache {
  public:
    struct Sprite {
        QImage image; // null when the piece paints no pixel (a label of spaces)
        // Where the image's top left corner goes, from the piece's own reference point
        // (a label's top left corner, a disc's box corner).
        QPoint offset;
        bool as_text = false; // a label kept out, drawn as text each time
    };

    // A label in the chart label font, text in Windows-1252; null for a label that is
    // to be drawn as text: one too long to keep, or one whose glyphs spread further than
    // a sprite's room for them.
    const Sprite* Label(std::string_view text, QRgb color, QPainter::RenderHints hints);
    // An unsmoothed ellipse in a box of width by height pixels, outlined by pen and
    // filled by brush.
    const Sprite* Disc(int32_t width, int32_t height, const QPen& pen, const QBrush& brush);

    // A label of the diagram: the text in its style, with its halo, turned by angle_deg
    // (to a tenth of a degree) about its middle, at pixel_ratio device pixels to a unit.
    // middle is where the text box's middle lies in the image (in units).
    struct Text_Sprite {
        QImage image;
        QPointF middle;
    };
    const Text_Sprite* Diagram_Text(std::string_view text, const Text_Style_Rec& style,
                                    double pixel_ratio, double angle_deg);

    // Texts looked up by view, without making a string of them.
    struct Text_Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>()(text);
        }
    };

    size_t Count() const { return sprites.size() + text_sprite_count; }
    size_t Bytes() const { return bytes; }

    static constexpr size_t Max_Bytes = 8u << 20;

  private:
    // The diagram's labels are kept by their style, turn and device pixel ratio, and then
    // by text.
    struct Text_Look {
        Text_Style_Rec style;
        double pixel_ratio;
        double angle_deg;
        bool operator==(const Text_Look&) const = default;
    };
    struct Text_Look_Hash {
        size_t operator()(const Text_Look& look) const;
    };
    using Text_Sprites = std::unordered_map<std::string, Text_Sprite, Text_Hash, std::equal_to<>>;

    // Counts a new piece's bytes, starting again from empty past the bound.
    void Make_Room(size_t sprite_bytes);
    const Sprite* Keep(std::string&& key, Sprite&& sprite);
    const Text_Sprite* Keep_Text(const Text_Look& look, std::string_view text,
                                 Text_Sprite&& sprite);

    QFont font = Chart_Label_Font();
    // The font's measures, taken at the first label.
    double ascent = 0;
    double line_height = 0;
    std::array<double, 256> advances{}; // each Windows-1252 letter's, once it is needed
    QImage scratch;                     // where new labels are drawn before they are cut out
    std::unordered_map<std::string, Sprite> sprites;
    std::unordered_map<Text_Look, Text_Sprites, Text_Look_Hash> text_sprites;
    size_t text_sprite_count = 0;
    size_t bytes = 0;
};

class Qt_Surface final : public Surface {
  public:
    // Draws through painter onto the chart area 0, 0 to width, height (chart pixels in
    // the painter's coordinates). The painter must stay active for the surface's
    // lifetime. With the Antialiasing hint set, pen work is shifted by half a pixel so
    // that a 1-pixel line on whole coordinates covers whole pixels, as on a screen
    // without smoothing; text is never shifted.
    //
    // With a sprite cache, labels (and small discs when lines aren't smoothed) are placed
    // as kept images when the painter draws on an image under a plain translation by
    // whole pixels (the chart window's back buffer); other devices (SVG, PDF) always get
    // the figures themselves.
    Qt_Surface(QPainter& target, int32_t width, int32_t height,
               Qt_Sprite_Cache* sprite_cache = nullptr);

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

    // The diagram's figures, always smoothed whatever the painter's hints say (which they
    // leave as they found them), and text in Diagram_Font.
    void Draw_Polygon(std::span<const Point_F_Rec> points, Rgba_Rec fill,
                      const Stroke_Rec& outline) override;
    void Draw_Polyline(std::span<const Point_F_Rec> points, const Stroke_Rec& stroke) override;
    void Draw_Segments(std::span<const Point_F_Rec> ends, const Stroke_Rec& stroke) override;
    // Solid opaque round-ended segments and opaque circles go straight into the pixels of
    // an image (Qt_Coverage_Painter) where the painter allows it.
    void Draw_Circles(std::span<const Circle_F_Rec> circles, Rgba_Rec fill,
                      const Stroke_Rec& outline) override;
    void Draw_Text(Point_F_Rec centre, double angle_deg, std::string_view text,
                   const Text_Style_Rec& style) override;
    // From the real font's measures.
    Text_Extent_Rec Measure_Text(std::string_view text, double size_px, bool bold) const override;

  private:
    // The painter made ready for a figure of the diagram: smoothing on, pen and brush
    // set; Figure_Done puts the hints back and makes the classic pen be set again.
    void Begin_Figure(const Stroke_Rec& stroke, Rgba_Rec fill);
    void Figure_Done();
    static bool Is_Convex(const std::vector<QPointF>& points);
    // The line through figure_points (back to the first point if closed) in the stroke,
    // straight into the image's pixels when direct is given, else by QPainter.
    void Stroke_Figure(bool closed, const Stroke_Rec& stroke,
                       std::optional<Qt_Coverage_Painter> direct);
    // True when nothing about the upright box, grown by reach, can show and the device
    // skips what is unseen.
    bool Unseen(double min_x, double min_y, double max_x, double max_y, double reach);
    bool figure_smoothing_added = false;
    std::vector<QPointF> figure_points; // kept to spare an allocation per figure

    // The pen that fore colour, width and style make, built again only after a change.
    const QPen& Pen();
    void Apply_Pen(bool with_brush);
    QPointF Pen_Point(int32_t x, int32_t y) const;
    // True on a raster device (image, pixmap, window), where a figure that can't reach
    // the chart area is left out; vector files (SVG, PDF) keep every figure.
    bool Skips_Unseen();
    // True when nothing the pen draws about box can reach the chart area and the device
    // skips what is unseen.
    bool Off_Chart(QRectF box);

    QPainter& painter;
    int32_t chart_width;
    int32_t chart_height;
    Qt_Sprite_Cache* sprites = nullptr; // null when every figure is drawn as itself
    int skips_unseen = -1;              // Skips_Unseen, once the painter has a device
    QFont label_font;
    // The label font's measures on the painter's device, taken at the first label.
    double label_ascent = -1;
    double label_height = 0;
    double label_max_advance = 0;
    // A chart sets its colours thousands of times a redraw, mostly to what they were: the
    // pen is built again only when it changes, and the painter is told only then.
    QPen pen;
    bool pen_built = false;
    bool painter_has_pen = false;
    bool painter_has_brush = false;
    bool painter_brush_solid = false;
    QColor painter_brush_color;
    // The chart form's resting state: green pen 1 pixel wide, solid; black hollow brush.
    QColor fore_color{0, 192, 0};
    int32_t draw_width = 1;
    int32_t draw_style = Draw_Style_Solid;
    QColor fill_color{0, 0, 0};
    int32_t fill_style = Fill_Style_Hollow;
    QPointF current_point{0, 0};
};

} // namespace quilmark
