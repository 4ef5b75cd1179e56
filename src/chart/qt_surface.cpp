#include "chart/qt_surface.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <QRectF>
#include <QString>
#include <QVector>
#include <cmath>
#include <string>

#include "bgl/geodesy.h"
#include "platform/text1252.h"

QFont Chart_Label_Font() {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(11);
    return font;
}

namespace {

QColor To_QColor(Rgb_Rec color) {
    return QColor(color.red, color.green, color.blue);
}

// The box as given by its two corners, whichever way round they come.
QRectF Normal_Box(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    return QRectF(QPointF(left, top), QPointF(right, bottom)).normalized();
}

// Angle of the ellipse point on the radial from the box's centre through (x, y), in
// degrees counter-clockwise from 3 o'clock as seen on the screen. The radial is scaled
// into the unit circle first, so the angle is the ellipse's own parameter, which is what
// QPainter's arc angles measure.
double Radial_Angle(const QRectF& box, double x, double y) {
    double u = (x - box.center().x()) / (box.width() / 2);
    double v = (box.center().y() - y) / (box.height() / 2);
    return std::atan2(v, u) * radians_to_degrees;
}

} // namespace

Qt_Surface::Qt_Surface(QPainter& target, int32_t width, int32_t height)
    : painter(target), chart_width(width), chart_height(height) {}

void Qt_Surface::Cls() {
    painter.fillRect(QRectF(0, 0, chart_width, chart_height), To_QColor(Chart_White));
}

void Qt_Surface::Set_ForeColor(Rgb_Rec color) {
    fore_color = To_QColor(color);
}
void Qt_Surface::Set_DrawWidth(int32_t width) {
    draw_width = width < 1 ? 1 : width;
}
void Qt_Surface::Set_DrawStyle(int32_t style) {
    draw_style = style;
}
void Qt_Surface::Set_FillColor(Rgb_Rec color) {
    fill_color = To_QColor(color);
}
void Qt_Surface::Set_FillStyle(int32_t style) {
    fill_style = style;
}

void Qt_Surface::Apply_Pen(bool with_brush) {
    QPen pen(fore_color);
    pen.setWidth(draw_width);
    pen.setJoinStyle(Qt::RoundJoin);
    if (draw_style == Draw_Style_Dash) {
        // Long dashes with short gaps, in units of the pen's width.
        pen.setCapStyle(Qt::FlatCap);
        pen.setDashPattern(QVector<qreal>{18, 6});
    } else {
        pen.setCapStyle(Qt::RoundCap);
    }
    painter.setPen(pen);
    if (with_brush && fill_style == Fill_Style_Solid) {
        painter.setBrush(fill_color);
    } else {
        painter.setBrush(Qt::NoBrush);
    }
}

QPointF Qt_Surface::Pen_Point(int32_t x, int32_t y) const {
    double shift = painter.testRenderHint(QPainter::Antialiasing) ? 0.5 : 0.0;
    return QPointF(x + shift, y + shift);
}

void Qt_Surface::MoveToEx(int32_t x, int32_t y) {
    current_point = Pen_Point(x, y);
}

void Qt_Surface::LineTo(int32_t x, int32_t y) {
    QPointF to = Pen_Point(x, y);
    Apply_Pen(false);
    painter.drawLine(current_point, to);
    current_point = to;
}

void Qt_Surface::Ellipse(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    QRectF box = Normal_Box(left, top, right, bottom);
    if (box.width() == 0 || box.height() == 0) {
        return; // an empty box holds no ellipse
    }
    Apply_Pen(true);
    painter.drawEllipse(box.translated(Pen_Point(0, 0)));
}

void Qt_Surface::Arc(int32_t left, int32_t top, int32_t right, int32_t bottom, int32_t x_start,
                     int32_t y_start, int32_t x_end, int32_t y_end) {
    QRectF box = Normal_Box(left, top, right, bottom);
    if (box.width() == 0 || box.height() == 0) {
        return; // an empty box, as when an arc lies within a mile of its centre
    }
    double start = Radial_Angle(box, x_start, y_start);
    double end = Radial_Angle(box, x_end, y_end);
    // Counter-clockwise from start to end; the same radial twice is the whole ellipse.
    double span = end - start;
    while (span <= 0) {
        span += 360;
    }
    Apply_Pen(false);
    painter.drawArc(box.translated(Pen_Point(0, 0)), static_cast<int>(std::lround(start * 16)),
                    static_cast<int>(std::lround(span * 16)));
}

void Qt_Surface::TextOutA(int32_t x, int32_t y, std::string_view text) {
    if (text.empty()) {
        return;
    }
    std::string utf8 = Ansi_To_Utf8(text);
    painter.setFont(Chart_Label_Font());
    painter.setPen(fore_color);
    QFontMetricsF metrics(painter.font(), painter.device());
    // drawText places the baseline at the point; the label's top left corner goes there.
    painter.drawText(QPointF(x, y + metrics.ascent()),
                     QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size())));
}
