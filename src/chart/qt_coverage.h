// Smoothed lines and circles painted straight into the pixels of an image, for the many
// small figures of an airport diagram (taxiway lines, parking spots): each pixel takes the
// figure's colour in proportion to how much of it the figure covers, worked out from the
// pixel centre's distance to the figure's edge. That is what QPainter's smoothing does
// too, without the cost of stroking and rasterizing each figure as a path.
#pragma once

#include <QImage>
#include <QPainter>
#include <QPointF>
#include <optional>

namespace quilmark {

class Qt_Coverage_Painter {
  public:
    // A painter for the image that painter draws on, in the painter's coordinates; none
    // when the painter draws on something else, clips, composes other than source over,
    // or maps its coordinates other than by a uniform scale and a move.
    static std::optional<Qt_Coverage_Painter> For(QPainter& painter);

    // Colours are opaque (the alpha of QRgb is not read); opacity, where given, from 0 to
    // 1, is the figure's.
    // A line from a to b half_width to either side, with round ends.
    void Capsule(QPointF a, QPointF b, double half_width, QRgb color);
    // A line through the points half_width to either side, its corners mitred (a sharp
    // corner's tip cut at twice the line's width), its ends square; closed, it goes back
    // to the first point. Each pixel takes the colour once, so a translucent line stays
    // even at its corners.
    void Polyline(const QPointF* points, size_t count, bool closed, double half_width, QRgb color,
                  double opacity);
    // A filled convex polygon (either way round).
    void Convex(const QPointF* points, size_t count, QRgb color, double opacity);
    // A filled circle.
    void Disc(QPointF centre, double radius, QRgb color);
    // A ring half_width to either side of a circle of radius.
    void Ring(QPointF centre, double radius, double half_width, QRgb color);

  private:
    Qt_Coverage_Painter(QImage& image, double scale, double dx, double dy);
    // One stretch of a polyline, in device pixels: from a to b along the unit direction
    // d, cut at a by the line through a across start_cut and at b by the line through b
    // across end_cut (pixels on the far side of either are left to the next stretch), and
    // at each corner square across the unit direction of its tip (zero: no tip).
    void Stretch(QPointF a, QPointF b, QPointF d, QPointF start_cut, QPointF end_cut,
                 QPointF start_tip, QPointF end_tip, double h, QRgb color, double opacity);
    QPointF Device(QPointF p) const { return {p.x() * scale_ + dx_, p.y() * scale_ + dy_}; }
    QRgb* Row(int y) const;

    uchar* bits_;
    qsizetype stride_;
    int width_;
    int height_;
    double scale_;
    double dx_;
    double dy_;
};

} // namespace quilmark
