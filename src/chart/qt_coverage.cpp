#include "chart/qt_coverage.h"

#include <QPaintDevice>
#include <QTransform>
#include <algorithm>
#include <cmath>

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

void Qt_Coverage_Painter::Blend(int x, int y, double coverage, QRgb color) {
    if (coverage <= 0) {
        return;
    }
    auto* pixel = reinterpret_cast<QRgb*>(bits_ + y * stride_) + x;
    if (coverage >= 1) {
        *pixel = color;
        return;
    }
    // Source over with an opaque colour: each channel (alpha too) moves toward the
    // colour's by the coverage.
    const uint a = static_cast<uint>(coverage * 256);
    const uint d = *pixel;
    const uint rb = ((color & 0xFF00FFu) * a + (d & 0xFF00FFu) * (256 - a)) >> 8;
    const uint ag = (((color >> 8) & 0xFF00FFu) * a + ((d >> 8) & 0xFF00FFu) * (256 - a)) >> 8;
    *pixel = (rb & 0xFF00FFu) | ((ag & 0xFF00FFu) << 8);
}

void Qt_Coverage_Painter::Capsule(QPointF from, QPointF to, double half_width, QRgb color) {
    const QPointF a = Device(from);
    const QPointF b = Device(to);
    const double h = half_width * scale_;
    // A pixel is covered in full within h - 0.5 of the line, and not at all beyond h + 0.5.
    const double reach = h + 0.5;
    const int y0 = std::max(0, static_cast<int>(std::floor(std::min(a.y(), b.y()) - reach)));
    const int y1 =
        std::min(height_ - 1, static_cast<int>(std::ceil(std::max(a.y(), b.y()) + reach)));
    const double min_x = std::min(a.x(), b.x()) - reach;
    const double max_x = std::max(a.x(), b.x()) + reach;
    if (y0 > y1 || max_x < 0 || min_x > width_) {
        return;
    }
    const double ex = b.x() - a.x();
    const double ey = b.y() - a.y();
    const double length2 = ex * ex + ey * ey;
    const double length = std::sqrt(length2);
    // A line thinner than a pixel covers at most its width of a pixel.
    const double full = std::min(1.0, 2 * h);
    for (int y = y0; y <= y1; ++y) {
        const double py = y + 0.5;
        // On this row the line's band lies where the distance across the line is within
        // reach: an interval of x, unless the line runs along the row.
        double x_from = min_x;
        double x_to = max_x;
        if (length > 1e-9 && std::abs(ey) > 1e-9) {
            // Distance across: |(p - a) x e| / |e| <= reach, linear in x.
            const double k = ey / length;
            const double c = (ex * (py - a.y())) / length;
            const double u = (c - reach) / k;
            const double v = (c + reach) / k;
            x_from = std::max(x_from, a.x() + std::min(u, v));
            x_to = std::min(x_to, a.x() + std::max(u, v));
        }
        const int xs = std::max(0, static_cast<int>(std::floor(x_from)));
        const int xe = std::min(width_ - 1, static_cast<int>(std::ceil(x_to)));
        for (int x = xs; x <= xe; ++x) {
            const double px = x + 0.5 - a.x();
            const double qy = py - a.y();
            double t = length2 > 0 ? (px * ex + qy * ey) / length2 : 0;
            t = std::clamp(t, 0.0, 1.0);
            const double dx = px - t * ex;
            const double dy = qy - t * ey;
            Blend(x, y, std::min(full, reach - std::sqrt(dx * dx + dy * dy)), color);
        }
    }
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
        for (int x = x0; x <= x1; ++x) {
            const double dx = x + 0.5 - c.x();
            Blend(x, y, reach - std::sqrt(dx * dx + dy * dy), color);
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
        for (int x = x0; x <= x1; ++x) {
            const double dx = x + 0.5 - c.x();
            const double across = std::abs(std::sqrt(dx * dx + dy * dy) - r);
            Blend(x, y, std::min(full, h + 0.5 - across), color);
        }
    }
}
