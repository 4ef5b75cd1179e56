// The chart's surface on a QPainter: the window, and PNG (QImage), SVG (QSvgGenerator)
// and PDF (QPdfWriter) export.
#pragma once

#include <QColor>
#include <QFont>
#include <QPointF>

#include "chart/surface.h"

class QPainter;

// The font of every label on the chart: DejaVu Sans at 11 pixels (about 8 points on a
// 96 dpi screen). Its size is given in pixels so that it is the same on every device,
// whatever the device's resolution. The desktop program also makes it the application
// font.
QFont Chart_Label_Font();

class Qt_Surface final : public Surface {
  public:
    // Draws through painter onto the chart area 0, 0 to width, height (chart pixels in
    // the painter's coordinates). The painter must stay active for the surface's
    // lifetime. With the Antialiasing hint set, pen work is shifted by half a pixel so
    // that a 1-pixel line on whole coordinates covers whole pixels, as on a screen
    // without smoothing; text is never shifted.
    Qt_Surface(QPainter& target, int32_t width, int32_t height);

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
    void Apply_Pen(bool with_brush);
    QPointF Pen_Point(int32_t x, int32_t y) const;

    QPainter& painter;
    int32_t chart_width;
    int32_t chart_height;
    // The chart form's resting state: green pen 1 pixel wide, solid; black hollow brush.
    QColor fore_color{0, 192, 0};
    int32_t draw_width = 1;
    int32_t draw_style = Draw_Style_Solid;
    QColor fill_color{0, 0, 0};
    int32_t fill_style = Fill_Style_Hollow;
    QPointF current_point{0, 0};
};
