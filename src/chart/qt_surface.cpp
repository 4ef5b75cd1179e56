#include "chart/qt_surface.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QRectF>
#include <QStaticText>
#include <QString>
#include <QTransform>
#include <QVector>
#include <cmath>
#include <memory>
#include <string>

#include "chart/qt_coverage.h"
#include "geo/geodesy.h"
#include "platform/text1252.h"

namespace quilmark {

QFont Chart_Label_Font() {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(11);
    return font;
}

QFont Diagram_Font(double size_px, bool bold) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(size_px))));
    font.setBold(bold);
    return font;
}

namespace {

// A figure drawn as its outline alone. (An Rgba_Rec made with {} is opaque black.)
constexpr Rgba_Rec No_Fill{0, 0, 0, 0};

QColor To_QColor(Rgba_Rec color) {
    return QColor(color.red, color.green, color.blue, color.alpha);
}

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

// The fonts and measures of the diagram's text, by size and weight, made once per
// process: layouts measure hundreds of labels a redraw.
struct Diagram_Face {
    QFont font;
    QFontMetricsF metrics;
    double ascent;
    double descent;
    // Layouts measure the same labels at every redraw: the advances are kept, up to a
    // bound.
    std::unordered_map<std::string, double, Qt_Sprite_Cache::Text_Hash, std::equal_to<>> advances;
};

Diagram_Face& Face_For(double size_px, bool bold) {
    static std::unordered_map<int, std::unique_ptr<Diagram_Face>> faces;
    const int pixels = std::max(1, static_cast<int>(std::lround(size_px)));
    const int key = pixels * 2 + (bold ? 1 : 0);
    auto found = faces.find(key);
    if (found == faces.end()) {
        QFont font = Diagram_Font(pixels, bold);
        auto face =
            std::make_unique<Diagram_Face>(Diagram_Face{font, QFontMetricsF(font), 0, 0, {}});
        face->ascent = face->metrics.ascent();
        face->descent = face->metrics.descent();
        found = faces.emplace(key, std::move(face)).first;
    }
    return *found->second;
}

QPen Figure_Pen(const Stroke_Rec& stroke) {
    if (stroke.width <= 0 || stroke.color.alpha == 0) {
        return QPen(Qt::NoPen);
    }
    QPen pen(To_QColor(stroke.color));
    pen.setWidthF(stroke.width);
    pen.setCapStyle(stroke.round ? Qt::RoundCap : Qt::FlatCap);
    pen.setJoinStyle(stroke.round ? Qt::RoundJoin : Qt::MiterJoin);
    if (!stroke.dashes.empty()) {
        // Qt counts dash lengths in pen widths.
        QVector<qreal> pattern;
        for (double d : stroke.dashes) {
            pattern.push_back(std::max(0.01, d / stroke.width));
        }
        if (pattern.size() % 2 == 1) {
            pattern.push_back(pattern.back());
        }
        pen.setDashPattern(pattern);
    }
    return pen;
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

void Qt_Sprite_Cache::Make_Room(size_t sprite_bytes) {
    if (bytes + sprite_bytes > Max_Bytes) {
        sprites.clear();
        text_sprites.clear();
        text_sprite_count = 0;
        bytes = 0;
    }
    bytes += sprite_bytes;
}

const Qt_Sprite_Cache::Sprite* Qt_Sprite_Cache::Keep(std::string&& key, Sprite&& sprite) {
    // The key and the table's own entry count too, so that a stream of labels that
    // paint nothing is bounded like any other.
    constexpr size_t Entry_Bytes = 64;
    const size_t sprite_bytes =
        static_cast<size_t>(sprite.image.sizeInBytes()) + key.size() + Entry_Bytes;
    if (sprite_bytes > Max_Bytes / 16) {
        return nullptr;
    }
    Make_Room(sprite_bytes);
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

void Qt_Surface::Begin_Figure(const Stroke_Rec& stroke, Rgba_Rec fill) {
    figure_smoothing_added = !painter.testRenderHint(QPainter::Antialiasing);
    if (figure_smoothing_added) {
        painter.setRenderHint(QPainter::Antialiasing, true);
    }
    painter.setPen(Figure_Pen(stroke));
    painter.setBrush(fill.alpha == 0 ? QBrush(Qt::NoBrush) : QBrush(To_QColor(fill)));
}

void Qt_Surface::Figure_Done() {
    if (figure_smoothing_added) {
        painter.setRenderHint(QPainter::Antialiasing, false);
    }
    // The classic calls keep the painter's pen and brush between calls; they must set
    // theirs again after a figure.
    painter_has_pen = false;
    painter_has_brush = false;
}

bool Qt_Surface::Unseen(double min_x, double min_y, double max_x, double max_y, double reach) {
    return Skips_Unseen() && (max_x + reach < 0 || max_y + reach < 0 ||
                              min_x - reach > chart_width || min_y - reach > chart_height);
}

void Qt_Surface::Draw_Polygon(std::span<const Point_F_Rec> points, Rgba_Rec fill,
                              const Stroke_Rec& outline) {
    if (points.size() < 2) {
        return;
    }
    figure_points.clear();
    for (const Point_F_Rec& p : points) {
        figure_points.emplace_back(p.x, p.y);
    }
    std::optional<Qt_Coverage_Painter> direct = Qt_Coverage_Painter::For(painter);
    // An upright rectangle (a background, a panel, a scale bar's step) is a plain fill.
    if (points.size() == 4 && points[0].y == points[1].y && points[1].x == points[2].x &&
        points[2].y == points[3].y && points[3].x == points[0].x) {
        if (fill.alpha > 0) {
            painter.fillRect(
                QRectF(QPointF(points[0].x, points[0].y), QPointF(points[2].x, points[2].y))
                    .normalized(),
                To_QColor(fill));
        }
        if (outline.width > 0 && outline.color.alpha > 0) {
            Stroke_Figure(true, outline, direct);
        }
        return;
    }
    // Large smoothed figures are slow for QPainter's rasterizer; convex ones (runways,
    // feathers) and every outline go straight into an image's pixels where they can.
    if (fill.alpha > 0) {
        if (direct && Is_Convex(figure_points)) {
            direct->Convex(figure_points.data(), figure_points.size(), To_QColor(fill).rgb(),
                           fill.alpha / 255.0);
        } else {
            Begin_Figure({}, fill);
            painter.drawPolygon(figure_points.data(), static_cast<int>(figure_points.size()));
            Figure_Done();
        }
    }
    if (outline.width > 0 && outline.color.alpha > 0) {
        Stroke_Figure(true, outline, direct);
    }
}

void Qt_Surface::Draw_Polyline(std::span<const Point_F_Rec> points, const Stroke_Rec& stroke) {
    if (points.size() < 2 || stroke.width <= 0 || stroke.color.alpha == 0) {
        return;
    }
    figure_points.clear();
    for (const Point_F_Rec& p : points) {
        figure_points.emplace_back(p.x, p.y);
    }
    Stroke_Figure(false, stroke, Qt_Coverage_Painter::For(painter));
}

bool Qt_Surface::Is_Convex(const std::vector<QPointF>& points) {
    const size_t n = points.size();
    int sign = 0;
    for (size_t i = 0; i < n; ++i) {
        const QPointF a = points[(i + 1) % n] - points[i];
        const QPointF b = points[(i + 2) % n] - points[(i + 1) % n];
        const double cross = a.x() * b.y() - a.y() * b.x();
        if (std::abs(cross) < 1e-9) {
            continue;
        }
        const int s = cross > 0 ? 1 : -1;
        if (sign != 0 && s != sign) {
            return false;
        }
        sign = s;
    }
    return sign != 0;
}

void Qt_Surface::Stroke_Figure(bool closed, const Stroke_Rec& stroke,
                               std::optional<Qt_Coverage_Painter> direct) {
    if (!direct) {
        Begin_Figure(stroke, No_Fill);
        if (closed) {
            painter.drawPolygon(figure_points.data(), static_cast<int>(figure_points.size()));
        } else {
            painter.drawPolyline(figure_points.data(), static_cast<int>(figure_points.size()));
        }
        Figure_Done();
        return;
    }
    const QRgb color = To_QColor(stroke.color).rgb();
    const double opacity = stroke.color.alpha / 255.0;
    const double half = stroke.width / 2;
    if (stroke.round && stroke.color.alpha == 255 && stroke.dashes.empty()) {
        // Round corners and ends: a round-ended line for each stretch.
        const size_t n = figure_points.size();
        for (size_t i = 0; i + 1 < n + (closed ? 1 : 0); ++i) {
            direct->Capsule(figure_points[i], figure_points[(i + 1) % n], half, color);
        }
        return;
    }
    if (stroke.dashes.empty()) {
        direct->Polyline(figure_points.data(), figure_points.size(), closed, half, color, opacity);
        return;
    }
    // Dashes: the pieces of the line where the pattern is on, each drawn as a line.
    std::vector<QPointF> line = figure_points;
    if (closed) {
        line.push_back(line.front());
    }
    double total = 0;
    for (double d : stroke.dashes) {
        total += std::max(0.0, d);
    }
    if (!(total > 0.5)) {
        direct->Polyline(figure_points.data(), figure_points.size(), closed, half, color, opacity);
        return;
    }
    size_t k = 0;
    double left = std::max(0.0, stroke.dashes[0]);
    std::vector<QPointF> piece{line.front()};
    for (size_t i = 0; i + 1 < line.size(); ++i) {
        QPointF from = line[i];
        const QPointF to = line[i + 1];
        double length = std::hypot(to.x() - from.x(), to.y() - from.y());
        while (length > 0) {
            const double step = std::min(length, left);
            const QPointF at = from + (to - from) * (step / length);
            const bool on = k % 2 == 0;
            if (on) {
                piece.push_back(at);
            }
            length -= step;
            left -= step;
            from = at;
            if (left <= 1e-9) {
                if (on && piece.size() >= 2) {
                    direct->Polyline(piece.data(), piece.size(), false, half, color, opacity);
                }
                k = (k + 1) % stroke.dashes.size();
                left = std::max(0.0, stroke.dashes[k]);
                piece.assign(1, from);
            }
        }
        if (k % 2 == 0) {
            piece.push_back(to);
        }
    }
    if (k % 2 == 0 && piece.size() >= 2) {
        direct->Polyline(piece.data(), piece.size(), false, half, color, opacity);
    }
}

void Qt_Surface::Draw_Segments(std::span<const Point_F_Rec> ends, const Stroke_Rec& stroke) {
    if (ends.size() < 2 || stroke.width <= 0 || stroke.color.alpha == 0) {
        return;
    }
    // Thousands of taxiway lines a redraw: solid round-ended lines of an opaque colour go
    // straight into an image's pixels where they can.
    std::optional<Qt_Coverage_Painter> direct;
    if (stroke.dashes.empty() && stroke.round && stroke.color.alpha == 255) {
        direct = Qt_Coverage_Painter::For(painter);
    }
    if (direct) {
        const QRgb color = To_QColor(stroke.color).rgb();
        const double half = stroke.width / 2;
        for (size_t i = 0; i + 1 < ends.size(); i += 2) {
            const Point_F_Rec a = ends[i];
            const Point_F_Rec b = ends[i + 1];
            if (!Unseen(std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x),
                        std::max(a.y, b.y), half + 2)) {
                direct->Capsule({a.x, a.y}, {b.x, b.y}, half, color);
            }
        }
        return;
    }
    figure_points.clear();
    for (const Point_F_Rec& p : ends) {
        figure_points.emplace_back(p.x, p.y);
    }
    Begin_Figure(stroke, No_Fill);
    painter.drawLines(figure_points.data(), static_cast<int>(figure_points.size() / 2));
    Figure_Done();
}

void Qt_Surface::Draw_Circles(std::span<const Circle_F_Rec> circles, Rgba_Rec fill,
                              const Stroke_Rec& outline) {
    const bool has_outline = outline.width > 0 && outline.color.alpha > 0;
    std::optional<Qt_Coverage_Painter> direct;
    if ((fill.alpha == 0 || fill.alpha == 255) &&
        (!has_outline || (outline.color.alpha == 255 && outline.dashes.empty()))) {
        direct = Qt_Coverage_Painter::For(painter);
    }
    const double half = has_outline ? outline.width / 2 : 0;
    if (direct) {
        // The fill up to the outline's inner edge, then the outline as a ring over it.
        const QRgb inside_color = To_QColor(fill).rgb();
        const QRgb edge_color = To_QColor(outline.color).rgb();
        for (const Circle_F_Rec& c : circles) {
            if (!(c.radius > 0) ||
                Unseen(c.centre.x, c.centre.y, c.centre.x, c.centre.y, c.radius + half + 2)) {
                continue;
            }
            const QPointF centre(c.centre.x, c.centre.y);
            if (fill.alpha > 0 && c.radius > half) {
                direct->Disc(centre, c.radius - half, inside_color);
            }
            if (has_outline) {
                direct->Ring(centre, c.radius, half, edge_color);
            }
        }
        return;
    }
    Begin_Figure(outline, fill);
    for (const Circle_F_Rec& c : circles) {
        if (c.radius > 0 &&
            !Unseen(c.centre.x, c.centre.y, c.centre.x, c.centre.y, c.radius + half + 2)) {
            painter.drawEllipse(QPointF(c.centre.x, c.centre.y), c.radius, c.radius);
        }
    }
    Figure_Done();
}

Text_Extent_Rec Qt_Text_Metrics::Measure_Text(std::string_view text, double size_px,
                                              bool bold) const {
    Diagram_Face& face = Face_For(size_px, bold);
    const Text_Extent_Rec extent{0, face.ascent, face.descent};
    if (auto found = face.advances.find(text); found != face.advances.end()) {
        return {found->second, extent.ascent, extent.descent};
    }
    const double advance = face.metrics.horizontalAdvance(To_QString(text));
    if (face.advances.size() > 20000) {
        face.advances.clear();
    }
    face.advances.emplace(std::string(text), advance);
    return {advance, extent.ascent, extent.descent};
}

Text_Extent_Rec Qt_Surface::Measure_Text(std::string_view text, double size_px, bool bold) const {
    return Qt_Text_Metrics().Measure_Text(text, size_px, bold);
}

size_t Qt_Sprite_Cache::Text_Look_Hash::operator()(const Text_Look& look) const {
    std::string look_bytes;
    Append_Bytes(look_bytes, look.style.color);
    Append_Bytes(look_bytes, look.style.halo);
    Append_Bytes(look_bytes, look.style.halo_px);
    Append_Bytes(look_bytes, look.style.size_px);
    Append_Bytes(look_bytes, look.style.bold);
    Append_Bytes(look_bytes, look.pixel_ratio);
    Append_Bytes(look_bytes, look.angle_deg);
    return std::hash<std::string>()(look_bytes);
}

const Qt_Sprite_Cache::Text_Sprite*
Qt_Sprite_Cache::Keep_Text(const Text_Look& look, std::string_view text, Text_Sprite&& sprite) {
    Make_Room(static_cast<size_t>(sprite.image.sizeInBytes()) + text.size() + 64);
    ++text_sprite_count;
    return &text_sprites[look].emplace(std::string(text), std::move(sprite)).first->second;
}

const Qt_Sprite_Cache::Text_Sprite* Qt_Sprite_Cache::Diagram_Text(std::string_view text,
                                                                  const Text_Style_Rec& style,
                                                                  double pixel_ratio,
                                                                  double angle_deg) {
    // Turned labels are kept turned, to a tenth of a degree, so that placing one is a
    // plain copy: a layout turns its labels the same way at every redraw.
    angle_deg = std::round(std::fmod(angle_deg, 360.0) * 10) / 10;
    const Text_Look look{style, pixel_ratio, angle_deg == 0 ? 0.0 : angle_deg};
    if (auto kind = text_sprites.find(look); kind != text_sprites.end()) {
        if (auto found = kind->second.find(text); found != kind->second.end()) {
            return &found->second;
        }
    }
    if (look.angle_deg != 0) {
        const Text_Sprite* upright = Diagram_Text(text, style, pixel_ratio, 0);
        const QImage source = upright->image; // shared, not copied
        const QPointF middle = upright->middle;
        QTransform turn;
        turn.rotate(angle_deg);
        const QRectF bounds = turn.mapRect(QRectF(-middle, QSizeF(source.deviceIndependentSize())));
        Text_Sprite sprite;
        const double quarters = angle_deg / 90;
        if (quarters == std::round(quarters)) {
            // A quarter, half or three quarters of a turn moves the pixels as they are.
            sprite.image = source.transformed(turn);
            sprite.image.setDevicePixelRatio(pixel_ratio);
            sprite.middle = -bounds.topLeft();
            return Keep_Text(look, text, std::move(sprite));
        }
        sprite.image = QImage(static_cast<int>(std::ceil(bounds.width() * pixel_ratio)) + 2,
                              static_cast<int>(std::ceil(bounds.height() * pixel_ratio)) + 2,
                              QImage::Format_ARGB32_Premultiplied);
        sprite.image.setDevicePixelRatio(pixel_ratio);
        sprite.image.fill(Qt::transparent);
        sprite.middle = -bounds.topLeft() + QPointF(1 / pixel_ratio, 1 / pixel_ratio);
        {
            QPainter p(&sprite.image);
            p.setRenderHint(QPainter::SmoothPixmapTransform);
            p.translate(sprite.middle);
            p.rotate(angle_deg);
            p.drawImage(-middle, source);
        }
        return Keep_Text(look, text, std::move(sprite));
    }
    const Diagram_Face& face = Face_For(style.size_px, style.bold);
    const QString q = To_QString(text);
    const double width = face.metrics.horizontalAdvance(q);
    const double height = face.metrics.ascent() + face.metrics.descent();
    const double halo = style.halo.alpha > 0 ? std::max(0.0, style.halo_px) : 0;
    // Room for the halo, the glyphs' bearings and smoothing.
    const double pad = halo + 3;
    Text_Sprite sprite;
    sprite.image = QImage(static_cast<int>(std::ceil((width + 2 * pad) * pixel_ratio)),
                          static_cast<int>(std::ceil((height + 2 * pad) * pixel_ratio)),
                          QImage::Format_ARGB32_Premultiplied);
    sprite.image.setDevicePixelRatio(pixel_ratio);
    sprite.image.fill(Qt::transparent);
    sprite.middle = QPointF(pad + width / 2, pad + height / 2);
    {
        QPainter p(&sprite.image);
        p.setRenderHint(QPainter::TextAntialiasing);
        p.setFont(face.font);
        QStaticText laid_out(q);
        laid_out.setTextFormat(Qt::PlainText);
        laid_out.prepare(QTransform::fromScale(pixel_ratio, pixel_ratio), face.font);
        // drawStaticText places the text's top left corner.
        const QPointF top_left(pad, pad);
        if (halo > 0) {
            // The halo: the text drawn around its place in the halo colour.
            p.setPen(To_QColor(style.halo));
            const double d = halo * 0.7071;
            const QPointF around[] = {{halo, 0}, {-halo, 0}, {0, halo}, {0, -halo},
                                      {d, d},    {-d, d},    {d, -d},   {-d, -d}};
            for (const QPointF& offset : around) {
                p.drawStaticText(top_left + offset, laid_out);
            }
        }
        p.setPen(To_QColor(style.color));
        p.drawStaticText(top_left, laid_out);
    }
    return Keep_Text(look, text, std::move(sprite));
}

void Qt_Surface::Draw_Text(Point_F_Rec centre, double angle_deg, std::string_view text,
                           const Text_Style_Rec& style) {
    if (text.empty() || style.color.alpha == 0) {
        return;
    }
    const Diagram_Face& face = Face_For(style.size_px, style.bold);
    // A label wholly off the chart costs nothing; its box is within its advance and line
    // of its middle whichever way it is turned.
    const double reach = face.metrics.maxWidth() * static_cast<double>(text.size()) + 8;
    if (Unseen(centre.x, centre.y, centre.x, centre.y, reach)) {
        return;
    }
    const QTransform before = painter.transform();
    // On a raster device drawn at whole device pixels (possibly several to a unit), a kept
    // image of the label, turned as it is to stand, is placed on whole device pixels.
    const QPaintDevice* device = painter.device();
    const double ratio = device != nullptr ? device->devicePixelRatio() : 1;
    if (sprites != nullptr && Skips_Unseen() && before.type() <= QTransform::TxTranslate) {
        const Qt_Sprite_Cache::Text_Sprite* sprite =
            sprites->Diagram_Text(text, style, ratio, angle_deg);
        const QPointF corner = QPointF(centre.x, centre.y) - sprite->middle;
        const QPointF device_corner = (corner + QPointF(before.dx(), before.dy())) * ratio;
        painter.drawImage(QPointF(std::round(device_corner.x()) / ratio - before.dx(),
                                  std::round(device_corner.y()) / ratio - before.dy()),
                          sprite->image);
        return;
    }
    const QString q = To_QString(text);
    const double width = face.metrics.horizontalAdvance(q);
    // The box's middle on the centre: the baseline half the box's height below its top.
    const QPointF baseline(-width / 2, (face.metrics.ascent() - face.metrics.descent()) / 2);
    QTransform placed = before;
    placed.translate(centre.x, centre.y);
    placed.rotate(angle_deg);
    painter.setTransform(placed);
    figure_smoothing_added = !painter.testRenderHint(QPainter::TextAntialiasing);
    if (figure_smoothing_added) {
        painter.setRenderHint(QPainter::TextAntialiasing, true);
    }
    painter.setFont(face.font);
    if (style.halo_px > 0 && style.halo.alpha > 0) {
        if (Skips_Unseen()) {
            // The halo: the text drawn around its place in the halo colour.
            painter.setPen(To_QColor(style.halo));
            const double h = style.halo_px;
            const double d = h * 0.7071;
            const QPointF around[] = {{h, 0}, {-h, 0}, {0, h},  {0, -h},
                                      {d, d}, {-d, d}, {d, -d}, {-d, -d}};
            for (const QPointF& offset : around) {
                painter.drawText(baseline + offset, q);
            }
        } else {
            // In a vector file, one outline of the letters' shapes.
            QPainterPath outline;
            outline.addText(baseline, face.font, q);
            const bool smooth = painter.testRenderHint(QPainter::Antialiasing);
            painter.setRenderHint(QPainter::Antialiasing, true);
            const QPen halo_pen(To_QColor(style.halo), 2 * style.halo_px, Qt::SolidLine,
                                Qt::RoundCap, Qt::RoundJoin);
            painter.strokePath(outline, halo_pen);
            painter.setRenderHint(QPainter::Antialiasing, smooth);
        }
    }
    painter.setPen(To_QColor(style.color));
    painter.drawText(baseline, q);
    if (figure_smoothing_added) {
        painter.setRenderHint(QPainter::TextAntialiasing, false);
    }
    painter.setTransform(before);
    // The classic labels set the chart font once per surface; a figure's face replaces it.
    label_ascent = -1;
    painter_has_pen = false;
}

} // namespace quilmark
