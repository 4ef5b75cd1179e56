#include "chart/qt_surface.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainter>
#include <QPen>
#include <QRectF>
#include <QString>
#include <QTransform>
#include <QVector>
#include <cmath>
#include <string>

#include "geo/geodesy.h"
#include "platform/text1252.h"

namespace quilmark {

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
    return std::atan2(v, u) * Radians_To_Degrees;
}

QString To_QString(std::string_view ansi) {
    std::string utf8 = Ansi_To_Utf8(ansi);
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
}

QPen Make_Pen(const QColor& color, int32_t width, int32_t style) {
    QPen pen(color);
    pen.setWidth(width);
    pen.setJoinStyle(Qt::RoundJoin);
    if (style == Draw_Style_Dash) {
        // Long dashes with short gaps, in units of the pen's width.
        pen.setCapStyle(Qt::FlatCap);
        pen.setDashPattern(QVector<qreal>{18, 6});
    } else {
        pen.setCapStyle(Qt::RoundCap);
    }
    return pen;
}

// True when an image placed at whole coordinates lands on whole device pixels: the
// painter draws on an image at one device pixel per unit, moved (if at all) by whole
// pixels.
bool Places_Whole_Pixels(const QPainter& painter) {
    const QPaintDevice* device = painter.device();
    if (device == nullptr || device->devType() != QInternal::Image ||
        device->devicePixelRatio() != 1) {
        return false;
    }
    const QTransform t = painter.combinedTransform();
    return t.type() <= QTransform::TxTranslate && t.dx() == std::floor(t.dx()) &&
           t.dy() == std::floor(t.dy());
}

// Room left around a piece's outline for smoothing that spills past it.
constexpr int Sprite_Margin = 2;

// Discs larger than this (airspace rings) are drawn directly.
constexpr int32_t Max_Disc_Size = 64;

// The key bytes of a value, appended.
template <class T> void Append_Bytes(std::string& key, const T& value) {
    key.append(reinterpret_cast<const char*>(&value), sizeof value);
}

} // namespace

const Qt_Sprite_Cache::Sprite* Qt_Sprite_Cache::Keep(std::string&& key, Sprite&& sprite) {
    // The key and the table's own entry count too, so that a stream of labels that
    // paint nothing is bounded like any other.
    constexpr size_t Entry_Bytes = 64;
    const size_t sprite_bytes =
        static_cast<size_t>(sprite.image.sizeInBytes()) + key.size() + Entry_Bytes;
    if (sprite_bytes > Max_Bytes / 16) {
        return nullptr;
    }
    if (bytes + sprite_bytes > Max_Bytes) {
        sprites.clear();
        bytes = 0;
    }
    bytes += sprite_bytes;
    return &sprites.emplace(std::move(key), std::move(sprite)).first->second;
}

const Qt_Sprite_Cache::Sprite* Qt_Sprite_Cache::Label(std::string_view text, QRgb color,
                                                      QPainter::RenderHints hints) {
    // Text smoothing is the only hint that changes a label's pixels.
    const bool smooth = hints.testFlag(QPainter::TextAntialiasing);
    std::string key(1, smooth ? 'L' : 'l');
    Append_Bytes(key, color);
    key.append(text);
    if (auto found = sprites.find(key); found != sprites.end()) {
        return found->second.as_text ? nullptr : &found->second;
    }

    if (line_height == 0) {
        const QFontMetricsF metrics(font);
        ascent = metrics.ascent();
        line_height = metrics.height();
        advances.fill(-1);
    }
    // The label is drawn into a scratch image a few pixels larger all round than its
    // advance and line, for bearings, kerning, accents and smoothing, and the sprite is
    // cut out around the pixels it painted. A label whose glyphs reach the scratch
    // region's edge may have lost some to it; it is drawn as text instead, from then on.
    double advance = 0;
    for (char c : text) {
        double& a = advances[static_cast<unsigned char>(c)];
        if (a < 0) {
            const QFontMetricsF metrics(font);
            a = std::max(0.0, metrics.horizontalAdvance(To_QString(std::string_view(&c, 1))));
        }
        advance += a;
    }
    constexpr int Pad = Sprite_Margin + 1;
    const double longest = advance + 2.0 * Pad;
    const int height = static_cast<int>(std::ceil(line_height)) + 2 * Pad;
    if (longest * height * sizeof(QRgb) > Max_Bytes / 16.0) {
        return nullptr; // a label this long is drawn as text, not kept
    }
    const int width = static_cast<int>(std::ceil(longest));
    if (scratch.width() < width || scratch.height() < height) {
        scratch = QImage(std::max(width, scratch.width()), std::max(height, scratch.height()),
                         QImage::Format_ARGB32_Premultiplied);
    }
    {
        QPainter p(&scratch);
        p.setCompositionMode(QPainter::CompositionMode_Source);
        p.fillRect(0, 0, width, height, Qt::transparent);
        p.setCompositionMode(QPainter::CompositionMode_SourceOver);
        p.setRenderHint(QPainter::TextAntialiasing, smooth);
        p.setFont(font);
        p.setPen(QColor::fromRgb(color));
        // The label's top left corner at (Pad, Pad); the baseline an ascent below.
        p.drawText(QPointF(Pad, Pad + ascent), To_QString(text));
    }
    QRect painted;
    for (int y = 0; y < height; ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(scratch.constScanLine(y));
        int first = 0;
        while (first < width && line[first] == 0) {
            ++first;
        }
        if (first == width) {
            continue;
        }
        int last = width - 1;
        while (line[last] == 0) {
            --last;
        }
        painted |= QRect(first, y, last - first + 1, 1);
    }
    Sprite sprite;
    if (!painted.isNull() && !QRect(1, 1, width - 2, height - 2).contains(painted)) {
        sprite.as_text = true;
    } else if (!painted.isNull()) {
        sprite.image = scratch.copy(painted);
        sprite.offset = painted.topLeft() - QPoint(Pad, Pad);
    }
    const Sprite* kept = Keep(std::move(key), std::move(sprite));
    return kept == nullptr || kept->as_text ? nullptr : kept;
}

const Qt_Sprite_Cache::Sprite* Qt_Sprite_Cache::Disc(int32_t width, int32_t height, const QPen& pen,
                                                     const QBrush& brush) {
    std::string key(1, 'd');
    Append_Bytes(key, width);
    Append_Bytes(key, height);
    Append_Bytes(key, pen.color().rgb());
    Append_Bytes(key, pen.width());
    Append_Bytes(key, pen.style());
    Append_Bytes(key, pen.capStyle());
    Append_Bytes(key, brush.style());
    Append_Bytes(key, brush.color().rgb());
    for (qreal dash : pen.dashPattern()) {
        Append_Bytes(key, dash);
    }
    if (auto found = sprites.find(key); found != sprites.end()) {
        return &found->second;
    }

    // The pen reaches half its width past the box.
    const int edge = (pen.width() + 1) / 2 + Sprite_Margin;
    Sprite sprite{QImage(width + 2 * edge, height + 2 * edge, QImage::Format_ARGB32_Premultiplied),
                  QPoint(-edge, -edge)};
    sprite.image.fill(Qt::transparent);
    {
        QPainter p(&sprite.image);
        p.setPen(pen);
        p.setBrush(brush);
        p.drawEllipse(QRectF(edge, edge, width, height));
    }
    return Keep(std::move(key), std::move(sprite));
}

Qt_Surface::Qt_Surface(QPainter& target, int32_t width, int32_t height,
                       Qt_Sprite_Cache* sprite_cache)
    : painter(target), chart_width(width), chart_height(height), sprites(sprite_cache),
      label_font(Chart_Label_Font()) {}

void Qt_Surface::Cls() {
    painter.fillRect(QRectF(0, 0, chart_width, chart_height), To_QColor(Chart_White));
}

void Qt_Surface::Set_ForeColor(Rgb_Rec color) {
    QColor c = To_QColor(color);
    if (c != fore_color) {
        fore_color = c;
        pen_built = false;
    }
}
void Qt_Surface::Set_DrawWidth(int32_t width) {
    width = width < 1 ? 1 : width;
    if (width != draw_width) {
        draw_width = width;
        pen_built = false;
    }
}
void Qt_Surface::Set_DrawStyle(int32_t style) {
    if (style != draw_style) {
        draw_style = style;
        pen_built = false;
    }
}
void Qt_Surface::Set_FillColor(Rgb_Rec color) {
    fill_color = To_QColor(color);
}
void Qt_Surface::Set_FillStyle(int32_t style) {
    fill_style = style;
}

const QPen& Qt_Surface::Pen() {
    if (!pen_built) {
        pen = Make_Pen(fore_color, draw_width, draw_style);
        pen_built = true;
        painter_has_pen = false;
    }
    return pen;
}

void Qt_Surface::Apply_Pen(bool with_brush) {
    const QPen& p = Pen();
    if (!painter_has_pen) {
        painter.setPen(p);
        painter_has_pen = true;
    }
    const bool solid = with_brush && fill_style == Fill_Style_Solid;
    if (!painter_has_brush || painter_brush_solid != solid ||
        (solid && painter_brush_color != fill_color)) {
        painter.setBrush(solid ? QBrush(fill_color) : QBrush(Qt::NoBrush));
        painter_has_brush = true;
        painter_brush_solid = solid;
        painter_brush_color = fill_color;
    }
}

QPointF Qt_Surface::Pen_Point(int32_t x, int32_t y) const {
    double shift = painter.testRenderHint(QPainter::Antialiasing) ? 0.5 : 0.0;
    return QPointF(x + shift, y + shift);
}

bool Qt_Surface::Skips_Unseen() {
    if (skips_unseen < 0) {
        const QPaintDevice* device = painter.device();
        const int type = device == nullptr ? QInternal::UnknownDevice : device->devType();
        skips_unseen =
            type == QInternal::Image || type == QInternal::Pixmap || type == QInternal::Widget;
    }
    return skips_unseen == 1;
}

bool Qt_Surface::Off_Chart(QRectF box) {
    // The pen reaches half its width past the figure's outline, a pixel more with
    // smoothing; two pixels cover both.
    const double reach = draw_width / 2.0 + 2;
    return Skips_Unseen() && (box.right() + reach < 0 || box.bottom() + reach < 0 ||
                              box.left() - reach > chart_width || box.top() - reach > chart_height);
}

void Qt_Surface::MoveToEx(int32_t x, int32_t y) {
    current_point = Pen_Point(x, y);
}

void Qt_Surface::LineTo(int32_t x, int32_t y) {
    QPointF to = Pen_Point(x, y);
    if (!Off_Chart(QRectF(current_point, to).normalized())) {
        Apply_Pen(false);
        painter.drawLine(current_point, to);
    }
    current_point = to;
}

void Qt_Surface::Ellipse(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    QRectF box = Normal_Box(left, top, right, bottom);
    if (box.width() == 0 || box.height() == 0 || Off_Chart(box)) {
        return; // an empty box holds no ellipse
    }
    const double shift = Pen_Point(0, 0).x();
    // Only unsmoothed discs are kept: their pixels are wholly painted or untouched, so
    // placing them is exact. Smoothed edges would blend twice, first with the clear
    // image and then with the chart, and come out a shade off.
    if (sprites != nullptr && !painter.testRenderHint(QPainter::Antialiasing) &&
        box.width() <= Max_Disc_Size && box.height() <= Max_Disc_Size &&
        Places_Whole_Pixels(painter)) {
        const QBrush brush =
            fill_style == Fill_Style_Solid ? QBrush(fill_color) : QBrush(Qt::NoBrush);
        if (const Qt_Sprite_Cache::Sprite* disc =
                sprites->Disc(static_cast<int32_t>(box.width()), static_cast<int32_t>(box.height()),
                              Pen(), brush)) {
            painter.drawImage(box.topLeft().toPoint() + disc->offset, disc->image);
            return;
        }
    }
    Apply_Pen(true);
    painter.drawEllipse(box.translated(shift, shift));
}

void Qt_Surface::Arc(int32_t left, int32_t top, int32_t right, int32_t bottom, int32_t x_start,
                     int32_t y_start, int32_t x_end, int32_t y_end) {
    QRectF box = Normal_Box(left, top, right, bottom);
    if (box.width() == 0 || box.height() == 0) {
        return; // an empty box, as when an arc lies within a mile of its centre
    }
    if (Off_Chart(box)) {
        return;
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
    if (label_ascent < 0) {
        const QFontMetricsF metrics(label_font, painter.device());
        label_ascent = metrics.ascent();
        label_height = metrics.height();
        label_max_advance = metrics.maxWidth();
        painter.setFont(label_font);
    }
    // A label lies within its line's height below its top left corner, and within the
    // widest glyph's advance per letter to its right, give or take a few pixels of
    // bearing and smoothing. One wholly off the chart costs nothing more.
    constexpr double Bearing = 4;
    if (Skips_Unseen() && (x - Bearing > chart_width || y - Bearing > chart_height ||
                           x + static_cast<double>(text.size()) * label_max_advance + Bearing < 0 ||
                           y + label_height + Bearing < 0)) {
        return;
    }
    if (sprites != nullptr && Places_Whole_Pixels(painter)) {
        if (const Qt_Sprite_Cache::Sprite* label =
                sprites->Label(text, fore_color.rgb(), painter.renderHints())) {
            const QPoint at = QPoint(x, y) + label->offset;
            if (!label->image.isNull() && at.x() + label->image.width() > 0 &&
                at.y() + label->image.height() > 0) {
                painter.drawImage(at, label->image);
            }
            return;
        }
    }
    painter.setPen(fore_color);
    painter_has_pen = false; // the line pen must be set again
    // drawText places the baseline at the point; the label's top left corner goes there.
    painter.drawText(QPointF(x, y + label_ascent), To_QString(text));
}

} // namespace quilmark
