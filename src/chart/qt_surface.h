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
#include <string>
#include <unordered_map>

#include "chart/surface.h"

namespace quilmark {

// The font of every label on the chart: DejaVu Sans at 11 pixels (about 8 points on a
// 96 dpi screen). Its size is given in pixels so that it is the same on every device,
// whatever the device's resolution. The desktop program also makes it the application
// font.
QFont Chart_Label_Font();

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

    size_t Count() const { return sprites.size(); }
    size_t Bytes() const { return bytes; }

    static constexpr size_t Max_Bytes = 8u << 20;

  private:
    const Sprite* Keep(std::string&& key, Sprite&& sprite);

    QFont font = Chart_Label_Font();
    // The font's measures, taken at the first label.
    double ascent = 0;
    double line_height = 0;
    std::array<double, 256> advances{}; // each Windows-1252 letter's, once it is needed
    QImage scratch;                     // where new labels are drawn before they are cut out
    std::unordered_map<std::string, Sprite> sprites;
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

  private:
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
