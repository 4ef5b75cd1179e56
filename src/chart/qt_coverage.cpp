#include "chart/qt_coverage.h"

#include <QPaintDevice>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <vector>

namespace quilmark {

std::optional<Qt_Coverage_Painter> Qt_Coverage_Painter::For(QPainter& painter) {
    QPaintDevice* device = painter.device();
    if (device == nullptr || device->devType() != QInternal::Image || painter.hasClipping() ||
        painter.compositionMode() != QPainter::CompositionMode_SourceOver) {
        return std::nullopt;
    }
    auto* image = static_cast<QImage*>(device);
    if (image->format() != QImage::Format_RGB32 &&
        image->format() != QImage::Format_ARGB32_Premultiplied) {
        return std::nullopt;
    }
    const QTransform t = painter.combinedTransform();
    if (t.type() > QTransform::TxScale || t.m11() != t.m22() || !(t.m11() > 0)) {
        return std::nullopt;
    }
    return Qt_Coverage_Painter(*image, t.m11(), t.dx(), t.dy());
}

Qt_Coverage_Painter::Qt_Coverage_Painter(QImage& image, double scale, double dx, double dy)
    : bits_(image.bits()), stride_(image.bytesPerLine()), width_(image.width()),
      height_(image.height()), scale_(scale), dx_(dx), dy_(dy) {}

namespace {

// Source over with an opaque colour: each channel (alpha too) moves toward the colour's
// by the coverage.
inline void Blend_Pixel(QRgb& pixel, float coverage, QRgb color) {
    if (coverage <= 0) {
        return;
    }
    if (coverage >= 1) {
        pixel = color;
        return;
    }
    const auto a = static_cast<uint>(coverage * 256);
    const uint d = pixel;
    const uint rb = ((color & 0xFF00FFu) * a + (d & 0xFF00FFu) * (256 - a)) >> 8;
    const uint ag = (((color >> 8) & 0xFF00FFu) * a + ((d >> 8) & 0xFF00FFu) * (256 - a)) >> 8;
    pixel = (rb & 0xFF00FFu) | ((ag & 0xFF00FFu) << 8);
}

} // namespace

QRgb* Qt_Coverage_Painter::Row(int y) const {
    return reinterpret_cast<QRgb*>(bits_ + y * stride_);
}

namespace {

// Calls row(y, first_x, last_x) for each row of pixels of a width by height image near
// the line from a to b (d its unit direction, or zero for a point): the pixels within
// reach across the line, no further than grow beyond its ends.
template <class Row_Fn>
void Band_Rows(QPointF a, QPointF b, QPointF d, double reach, double grow, int width, int height,
               Row_Fn row) {
    const int y0 = std::max(0, static_cast<int>(std::floor(std::min(a.y(), b.y()) - grow)));
    const int y1 = std::min(height - 1, static_cast<int>(std::ceil(std::max(a.y(), b.y()) + grow)));
    const double min_x = std::min(a.x(), b.x()) - grow;
    const double max_x = std::max(a.x(), b.x()) + grow;
    if (y0 > y1 || max_x < 0 || min_x > width) {
        return;
    }
    for (int y = y0; y <= y1; ++y) {
        const double py = y + 0.5;
        double x_from = min_x;
        double x_to = max_x;
        if (std::abs(d.y()) > 1e-9) {
            // Distance across the line, |(p - a) x d|, within reach: an interval of x.
            const double c = d.x() * (py - a.y());
            const double u = (c - reach) / d.y();
            const double v = (c + reach) / d.y();
            x_from = std::max(x_from, a.x() + std::min(u, v));
            x_to = std::min(x_to, a.x() + std::max(u, v));
        } else if (std::abs(d.x()) > 1e-9 && std::abs(py - a.y()) > reach) {
            continue; // a line along the rows, and this row beyond its reach
        }
        row(y, std::max(0, static_cast<int>(std::floor(x_from))),
            std::min(width - 1, static_cast<int>(std::ceil(x_to))));
    }
}

} // namespace

void Qt_Coverage_Painter::Capsule(QPointF from, QPointF to, double half_width, QRgb color) {
    const QPointF a = Device(from);
    const QPointF b = Device(to);
    const double h = half_width * scale_;
    // A pixel is covered in full within h - 0.5 of the line, and not at all beyond h + 0.5.
    const double reach = h + 0.5;
    const double ex = b.x() - a.x();
    const double ey = b.y() - a.y();
    const double length2 = ex * ex + ey * ey;
    const double length = std::sqrt(length2);
    const QPointF d = length > 1e-9 ? QPointF(ex, ey) / length : QPointF(0, 0);
    const double inverse2 = length2 > 0 ? 1 / length2 : 0;
    const double reach2 = reach * reach;
    // A line thinner than a pixel covers at most its width of a pixel.
    const double full = std::min(1.0, 2 * h);
    // The pixels' own work in single precision: thousands of lines a redraw, and a
    // coverage needs no more than a 256th. Beside the line the distance is the one across
    // it, which needs no square root; only the round ends do.
    const auto fx = static_cast<float>(ex);
    const auto fy = static_cast<float>(ey);
    const auto f_inverse2 = static_cast<float>(inverse2);
    const auto f_reach = static_cast<float>(reach);
    const auto f_reach2 = static_cast<float>(reach2);
    const auto f_full = static_cast<float>(full);
    const auto across_x = static_cast<float>(length > 0 ? ey / length : 0);
    const auto across_y = static_cast<float>(length > 0 ? -ex / length : 0);
    Band_Rows(a, b, d, reach, reach, width_, height_, [&](int y, int xs, int xe) {
        QRgb* row = Row(y);
        const auto qy = static_cast<float>(y + 0.5 - a.y());
        const auto px0 = static_cast<float>(xs + 0.5 - a.x());
        for (int x = xs; x <= xe; ++x) {
            const float px = px0 + static_cast<float>(x - xs);
            const float t = (px * fx + qy * fy) * f_inverse2;
            float distance;
            if (t >= 0 && t <= 1) {
                distance = std::abs(px * across_x + qy * across_y);
            } else {
                const float dx = t < 0 ? px : px - fx;
                const float dy = t < 0 ? qy : qy - fy;
                const float d2 = dx * dx + dy * dy;
                if (d2 >= f_reach2) {
                    continue;
                }
                distance = std::sqrt(d2);
            }
            Blend_Pixel(row[x], std::min(f_full, f_reach - distance), color);
        }
    });
}

void Qt_Coverage_Painter::Disc(QPointF centre, double radius, QRgb color) {
    const QPointF c = Device(centre);
    const double r = radius * scale_;
    const double reach = r + 0.5;
    const int y0 = std::max(0, static_cast<int>(std::floor(c.y() - reach)));
    const int y1 = std::min(height_ - 1, static_cast<int>(std::ceil(c.y() + reach)));
    const int x0 = std::max(0, static_cast<int>(std::floor(c.x() - reach)));
    const int x1 = std::min(width_ - 1, static_cast<int>(std::ceil(c.x() + reach)));
    for (int y = y0; y <= y1; ++y) {
        const double dy = y + 0.5 - c.y();
        QRgb* row = Row(y);
        for (int x = x0; x <= x1; ++x) {
            const double dx = x + 0.5 - c.x();
            Blend_Pixel(row[x], reach - std::sqrt(dx * dx + dy * dy), color);
        }
    }
}

void Qt_Coverage_Painter::Ring(QPointF centre, double radius, double half_width, QRgb color) {
    const QPointF c = Device(centre);
    const double r = radius * scale_;
    const double h = half_width * scale_;
    const double outer = r + h + 0.5;
    const int y0 = std::max(0, static_cast<int>(std::floor(c.y() - outer)));
    const int y1 = std::min(height_ - 1, static_cast<int>(std::ceil(c.y() + outer)));
    const int x0 = std::max(0, static_cast<int>(std::floor(c.x() - outer)));
    const int x1 = std::min(width_ - 1, static_cast<int>(std::ceil(c.x() + outer)));
    // A ring thinner than a pixel covers at most its width of a pixel.
    const double full = std::min(1.0, 2 * h);
    for (int y = y0; y <= y1; ++y) {
        const double dy = y + 0.5 - c.y();
        QRgb* row = Row(y);
        for (int x = x0; x <= x1; ++x) {
            const double dx = x + 0.5 - c.x();
            const double across = std::abs(std::sqrt(dx * dx + dy * dy) - r);
            Blend_Pixel(row[x], std::min(full, h + 0.5 - across), color);
        }
    }
}

namespace {

QPointF Unit(QPointF v) {
    const double len = std::hypot(v.x(), v.y());
    return len > 1e-12 ? v / len : QPointF(0, 0);
}

double Dot(QPointF a, QPointF b) {
    return a.x() * b.x() + a.y() * b.y();
}

} // namespace

void Qt_Coverage_Painter::Stretch(QPointF a, QPointF b, QPointF d, QPointF start_cut,
                                  QPointF end_cut, QPointF start_tip, QPointF end_tip, double h,
                                  QRgb color, double opacity) {
    // A sharp corner's mitre is cut square across its tip twice the line's width from the
    // corner.
    const double limit = 4 * h;
    const double reach = h + 0.5;
    const double grow = limit + reach + 1;
    const double full = std::min(1.0, 2 * h) * opacity;
    Band_Rows(a, b, d, reach, grow, width_, height_, [&](int y, int xs, int xe) {
        QRgb* row = Row(y);
        const double py = y + 0.5;
        for (int x = xs; x <= xe; ++x) {
            const QPointF p(x + 0.5 - a.x(), py - a.y());
            const double across = std::abs(p.x() * d.y() - p.y() * d.x());
            double coverage = std::min(full, (reach - across) * opacity);
            coverage = std::min(coverage, std::clamp(0.5 + Dot(p, start_cut), 0.0, 1.0) * opacity);
            coverage =
                std::min(coverage, std::clamp(0.5 - Dot(p - (b - a), end_cut), 0.0, 1.0) * opacity);
            coverage =
                std::min(coverage, std::clamp(limit + 0.5 - Dot(p, start_tip), 0.0, 1.0) * opacity);
            coverage = std::min(
                coverage, std::clamp(limit + 0.5 - Dot(p - (b - a), end_tip), 0.0, 1.0) * opacity);
            Blend_Pixel(row[x], coverage, color);
        }
    });
}

void Qt_Coverage_Painter::Polyline(const QPointF* points, size_t count, bool closed,
                                   double half_width, QRgb color, double opacity) {
    // The corners in device pixels, without repeats.
    std::vector<QPointF> p;
    p.reserve(count + 1);
    for (size_t i = 0; i < count; ++i) {
        const QPointF q = Device(points[i]);
        if (p.empty() || std::hypot(q.x() - p.back().x(), q.y() - p.back().y()) > 1e-9) {
            p.push_back(q);
        }
    }
    if (closed && p.size() > 2 &&
        std::hypot(p.front().x() - p.back().x(), p.front().y() - p.back().y()) <= 1e-9) {
        p.pop_back();
    }
    const size_t n = p.size();
    if (n < 2) {
        return;
    }
    const size_t stretches = closed ? n : n - 1;
    auto direction = [&](size_t i) { return Unit(p[(i + 1) % n] - p[i % n]); };
    const double h = half_width * scale_;
    for (size_t i = 0; i < stretches; ++i) {
        const QPointF d = direction(i);
        // Two stretches meet on the line that halves their corner; an open end is square.
        const bool first = !closed && i == 0;
        const bool last = !closed && i + 1 == stretches;
        const QPointF before = first ? d : direction((i + n - 1) % n);
        const QPointF after = last ? d : direction((i + 1) % n);
        const QPointF start_cut = Unit(before + d);
        const QPointF end_cut = Unit(d + after);
        // Each corner's tip lies out along the line that halves it, away from the corner's
        // inside; a square end or a straight run has none.
        Stretch(p[i], p[(i + 1) % n], d, start_cut.isNull() ? d : start_cut,
                end_cut.isNull() ? d : end_cut, Unit(before - d), Unit(d - after), h, color,
                opacity);
    }
}

void Qt_Coverage_Painter::Convex(const QPointF* points, size_t count, QRgb color, double opacity) {
    std::vector<QPointF> p;
    p.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        p.push_back(Device(points[i]));
    }
    const size_t n = p.size();
    if (n < 3) {
        return;
    }
    double area2 = 0;
    for (size_t i = 0; i < n; ++i) {
        area2 += p[i].x() * p[(i + 1) % n].y() - p[(i + 1) % n].x() * p[i].y();
    }
    if (std::abs(area2) < 1e-12) {
        return;
    }
    // Each edge's inward unit normal and offset: inside where n.p + c > 0.
    std::vector<QPointF> normals(n);
    std::vector<double> offsets(n);
    const double side = area2 > 0 ? 1 : -1;
    double top = p[0].y(), bottom = p[0].y();
    for (size_t i = 0; i < n; ++i) {
        const QPointF e = p[(i + 1) % n] - p[i];
        normals[i] = Unit(QPointF(-e.y(), e.x()) * side);
        offsets[i] = -Dot(normals[i], p[i]);
        top = std::min(top, p[i].y());
        bottom = std::max(bottom, p[i].y());
    }
    const int y0 = std::max(0, static_cast<int>(std::floor(top - 1)));
    const int y1 = std::min(height_ - 1, static_cast<int>(std::ceil(bottom + 1)));
    for (int y = y0; y <= y1; ++y) {
        // The figure's extent across this row of pixels, from its edges at the row's top
        // and bottom and its corners within the row, grown by a pixel for the smoothing.
        double x_from = 1e300, x_to = -1e300;
        for (size_t i = 0; i < n; ++i) {
            const QPointF a = p[i];
            const QPointF b = p[(i + 1) % n];
            for (double line : {static_cast<double>(y), y + 1.0}) {
                if ((a.y() <= line && b.y() >= line) || (b.y() <= line && a.y() >= line)) {
                    const double x =
                        std::abs(b.y() - a.y()) < 1e-12
                            ? std::min(a.x(), b.x())
                            : a.x() + (b.x() - a.x()) * (line - a.y()) / (b.y() - a.y());
                    const double x2 = std::abs(b.y() - a.y()) < 1e-12 ? std::max(a.x(), b.x()) : x;
                    x_from = std::min(x_from, x);
                    x_to = std::max(x_to, x2);
                }
            }
            if (a.y() >= y && a.y() <= y + 1) {
                x_from = std::min(x_from, a.x());
                x_to = std::max(x_to, a.x());
            }
        }
        if (x_from > x_to) {
            continue;
        }
        const int xs = std::max(0, static_cast<int>(std::floor(x_from - 1)));
        const int xe = std::min(width_ - 1, static_cast<int>(std::ceil(x_to + 1)));
        QRgb* row = Row(y);
        const double py = y + 0.5;
        for (int x = xs; x <= xe; ++x) {
            double inside = 1e300;
            for (size_t i = 0; i < n; ++i) {
                inside =
                    std::min(inside, normals[i].x() * (x + 0.5) + normals[i].y() * py + offsets[i]);
            }
            Blend_Pixel(row[x], std::clamp(inside + 0.5, 0.0, 1.0) * opacity, color);
        }
    }
}

} // namespace quilmark
