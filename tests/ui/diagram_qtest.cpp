// The diagram's figures on the QPainter surface.
#include <QImage>
#include <QPainter>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "chart/qt_surface.h"

namespace quilmark {

namespace {

const Stroke_Rec Taxiway{{90, 90, 90, 255}, 2.6, {}, true};
const Stroke_Rec Edge{{20, 20, 20, 255}, 1.2, {}, false};
constexpr Rgba_Rec Fill{200, 60, 40, 255};

// Random taxiway-like lines and spots, the same every run.
struct Figures {
    std::vector<Point_F_Rec> ends;
    std::vector<Circle_F_Rec> circles;
    Figures() {
        std::mt19937 random(7);
        std::uniform_real_distribution<double> x(-10, 210), angle(0, 6.283), length(0, 40);
        for (int i = 0; i < 60; ++i) {
            const Point_F_Rec a{x(random), x(random)};
            const double t = angle(random), l = length(random);
            ends.push_back(a);
            ends.push_back({a.x + l * std::cos(t), a.y + l * std::sin(t)});
        }
        for (int i = 0; i < 30; ++i) {
            circles.push_back({{x(random), x(random)}, 1 + length(random) / 5});
        }
    }
};

QImage Blank(int size, double ratio = 1) {
    QImage image(static_cast<int>(size * ratio), static_cast<int>(size * ratio),
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    return image;
}

std::vector<QPointF> Q_Points(const std::vector<Point_F_Rec>& points) {
    std::vector<QPointF> q;
    for (const Point_F_Rec& p : points) {
        q.emplace_back(p.x, p.y);
    }
    return q;
}

// The largest difference of a channel between two images, and the mean over all channels.
std::pair<int, double> Difference(const QImage& a, const QImage& b) {
    int most = 0;
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            for (int d : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)}) {
                most = std::max(most, std::abs(d));
                sum += std::abs(d);
            }
        }
    }
    return {most, sum / (3.0 * a.width() * a.height())};
}

} // namespace

TEST(DiagramSurface, FiguresPaintedByCoverageMatchQPainter) {
    // Straight into the pixels, as a redraw does, against QPainter's own smoothing; on a
    // plain image and on one of two device pixels to a unit. A runway-like turned
    // rectangle, an outline with a sharp and a shallow corner, taxiway lines, spots.
    const Figures f;
    const std::vector<Point_F_Rec> runway = {{20, 30}, {170, 140}, {163, 150}, {13, 40}};
    const std::vector<Point_F_Rec> outline = {{30, 180}, {100, 120}, {60, 190}, {190, 185}};
    const Stroke_Rec line{{0, 60, 200, 255}, 2.2, {}, false};
    for (double ratio : {1.0, 2.0}) {
        QImage direct = Blank(200, ratio);
        {
            QPainter painter(&direct);
            Qt_Surface surface(painter, 200, 200);
            surface.Draw_Polygon(runway, {58, 58, 62, 255}, {});
            surface.Draw_Polyline(outline, line);
            surface.Draw_Segments(f.ends, Taxiway);
            surface.Draw_Circles(f.circles, Fill, Edge);
        }
        QImage reference = Blank(200, ratio);
        {
            QPainter painter(&reference);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(58, 58, 62));
            painter.drawPolygon(Q_Points(runway).data(), 4);
            painter.setPen(
                QPen(QColor(0, 60, 200), line.width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
            painter.drawPolyline(Q_Points(outline).data(), 4);
            painter.setPen(QPen(QColor(90, 90, 90), Taxiway.width, Qt::SolidLine, Qt::RoundCap));
            painter.drawLines(Q_Points(f.ends).data(), static_cast<int>(f.ends.size() / 2));
            painter.setPen(QPen(QColor(20, 20, 20), Edge.width));
            painter.setBrush(QColor(200, 60, 40));
            for (const Circle_F_Rec& c : f.circles) {
                painter.drawEllipse(QPointF(c.centre.x, c.centre.y), c.radius, c.radius);
            }
        }
        const auto [most, mean] = Difference(direct, reference);
        // A shade apart at smoothed edges, sharp tips and where figures cross; a line half
        // a pixel too wide or out of place would move the mean several times as far.
        EXPECT_LT(most, 110) << "ratio " << ratio;
        EXPECT_LT(mean, 1.5) << "ratio " << ratio;
    }
}

TEST(DiagramSurface, ClassicDrawingIsUntouchedByTheFiguresBeforeIt) {
    // The classic calls on the right half, with and without diagram figures drawn on the
    // left half first: the right halves are the same to the pixel, unsmoothed.
    auto classic = [](Qt_Surface& s) {
        s.Set_ForeColor({0, 192, 0});
        s.Set_DrawWidth(2);
        s.MoveToEx(110, 10);
        s.LineTo(190, 170);
        s.Set_FillStyle(0);
        s.Set_FillColor({128, 64, 64});
        s.Ellipse(120, 120, 150, 150);
        s.Set_ForeColor({0, 0, 0});
        s.TextOutA(120, 60, "Position: GATE A 4");
    };
    QImage alone = Blank(200);
    {
        QPainter painter(&alone);
        Qt_Surface s(painter, 200, 200);
        classic(s);
    }
    QImage after = Blank(200);
    {
        QPainter painter(&after);
        Qt_Surface s(painter, 200, 200);
        const Figures f;
        std::vector<Point_F_Rec> left;
        for (const Point_F_Rec& p : f.ends) {
            left.push_back({std::clamp(p.x, 0.0, 90.0) * 0.9, p.y});
        }
        s.Draw_Segments(left, {{200, 0, 0, 128}, 3, {4, 2}, false});
        s.Draw_Polygon(std::vector<Point_F_Rec>{{5, 5}, {80, 20}, {40, 90}}, {0, 0, 200, 100},
                       {{0, 0, 0, 255}, 1.5, {}, false});
        s.Draw_Circles(std::vector<Circle_F_Rec>{{{40, 150}, 20}}, Fill, Edge);
        s.Draw_Text({45, 180}, 30, "16L", {14, true, {0, 0, 0, 255}, {255, 255, 255, 255}, 1.5});
        EXPECT_FALSE(painter.testRenderHint(QPainter::Antialiasing));
        classic(s);
    }
    EXPECT_EQ(alone.copy(100, 0, 100, 200), after.copy(100, 0, 100, 200));
}

TEST(DiagramSurface, KeptLabelsLandWhereDrawnTextDoes) {
    // A label placed as a kept image covers the same pixels, within one, as the label
    // drawn as text, upright and turned.
    const Text_Style_Rec style{14, true, {0, 0, 0, 255}, {255, 255, 255, 255}, 1.5};
    Qt_Sprite_Cache sprites;
    for (double angle : {0.0, 90.0, -33.0}) {
        QRect boxes[2];
        for (int kept = 0; kept < 2; ++kept) {
            QImage image = Blank(120);
            {
                QPainter painter(&image);
                Qt_Surface s(painter, 120, 120, kept == 1 ? &sprites : nullptr);
                s.Draw_Text({60.3, 59.6}, angle, "34R", style);
            }
            for (int y = 0; y < 120; ++y) {
                for (int x = 0; x < 120; ++x) {
                    if (qGray(image.pixel(x, y)) < 128) {
                        boxes[kept] |= QRect(x, y, 1, 1);
                    }
                }
            }
        }
        ASSERT_FALSE(boxes[0].isNull());
        EXPECT_LE(std::abs(boxes[0].left() - boxes[1].left()), 1) << angle;
        EXPECT_LE(std::abs(boxes[0].right() - boxes[1].right()), 1) << angle;
        EXPECT_LE(std::abs(boxes[0].top() - boxes[1].top()), 1) << angle;
        EXPECT_LE(std::abs(boxes[0].bottom() - boxes[1].bottom()), 1) << angle;
    }
    EXPECT_EQ(sprites.Count(), 3u); // the upright image and one for each turn
}

} // namespace quilmark
