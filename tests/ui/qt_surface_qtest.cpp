// The QPainter surface against the pixels of a small image, drawn without smoothing.
#include <QImage>
#include <QPainter>
#include <cmath>
#include <gtest/gtest.h>

#include "chart/qt_surface.h"

namespace {

constexpr int Size = 120;
const QRgb White = qRgb(255, 255, 255);

struct Canvas {
    QImage image{Size, Size, QImage::Format_RGB32};
    QPainter painter;
    Qt_Surface surface{painter, Size, Size};
    Canvas() {
        image.fill(Qt::black);
        painter.begin(&image);
        surface.Cls();
    }
    const QImage& Done() {
        painter.end();
        return image;
    }
};

bool Painted(const QImage& image, int x, int y) {
    return image.pixel(x, y) != White;
}

// Painted pixels in each quarter about (cx, cy), screen quadrants in the order
// upper right, upper left, lower left, lower right.
std::array<int, 4> Quadrant_Counts(const QImage& image, int cx, int cy) {
    std::array<int, 4> counts{};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            // Keep clear of the axes, where the arc's ends and pen caps fall.
            if (std::abs(x - cx) < 4 || std::abs(y - cy) < 4 || !Painted(image, x, y)) {
                continue;
            }
            int q = y < cy ? (x > cx ? 0 : 1) : (x < cx ? 2 : 3);
            ++counts[static_cast<size_t>(q)];
        }
    }
    return counts;
}

// The smallest rectangle holding every painted pixel (null when none is).
QRect Painted_Box(const QImage& image) {
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            box |= Painted(image, x, y) ? QRect(x, y, 1, 1) : QRect();
        }
    }
    return box;
}

} // namespace

TEST(QtSurface, ArcRunsCounterClockwiseFromTheStartRadialToTheEndRadial) {
    // Box 10..110 about (60, 60); radials through points well outside the circle.
    struct Case {
        const char* what;
        bool upside_down; // the box given with its top below its bottom
        int xs, ys, xe, ye;
        std::array<bool, 4> quadrants; // upper right, upper left, lower left, lower right
    };
    const Case cases[] = {
        {"east to north", false, 115, 60, 60, 0, {true, false, false, false}},
        {"north to east", false, 60, 0, 115, 60, {false, true, true, true}},
        {"west to south", false, 0, 60, 60, 119, {false, false, true, false}},
        {"east to north, box upside down", true, 115, 60, 60, 0, {true, false, false, false}},
        {"start radial equals end radial", false, 100, 60, 115, 60, {true, true, true, true}},
    };
    for (const Case& k : cases) {
        Canvas c;
        c.surface.Set_ForeColor({0, 0, 0});
        c.surface.Set_DrawWidth(1);
        if (k.upside_down) {
            c.surface.Arc(10, 110, 110, 10, k.xs, k.ys, k.xe, k.ye);
        } else {
            c.surface.Arc(10, 10, 110, 110, k.xs, k.ys, k.xe, k.ye);
        }
        std::array<int, 4> counts = Quadrant_Counts(c.Done(), 60, 60);
        for (size_t q = 0; q < 4; ++q) {
            EXPECT_EQ(counts[q] > 20, k.quadrants[q]) << k.what << ", quadrant " << q;
        }
    }
}

TEST(QtSurface, ArcOnAnEllipseStartsWhereTheRadialMeetsIt) {
    // Box 0..112 by 30..90, centre (56, 60). The radial through the box's top right
    // corner meets the ellipse at its parameter 45 degrees, (95.6, 38.8); the arc runs
    // from there counter-clockwise to the top (56, 30).
    Canvas c;
    c.surface.Arc(0, 30, 112, 90, 112, 30, 56, 30);
    const QImage& image = c.Done();
    auto near_painted = [&](double x, double y) {
        for (int dy = -1; dy <= 1; ++dy) {
            for (int dx = -1; dx <= 1; ++dx) {
                if (Painted(image, int(std::lround(x)) + dx, int(std::lround(y)) + dy)) {
                    return true;
                }
            }
        }
        return false;
    };
    auto on_ellipse = [](double t_deg) {
        double t = t_deg * 3.14159265358979 / 180;
        return std::pair<double, double>{56 + 56 * std::cos(t), 60 - 30 * std::sin(t)};
    };
    for (double t : {50.0, 70.0, 85.0}) {
        auto [x, y] = on_ellipse(t);
        EXPECT_TRUE(near_painted(x, y)) << "parameter " << t;
    }
    for (double t : {35.0, 20.0, 110.0}) {
        auto [x, y] = on_ellipse(t);
        EXPECT_FALSE(near_painted(x, y)) << "parameter " << t;
    }
}

TEST(QtSurface, EllipseBoxMayComeUpsideDownAndFillsByFillStyle) {
    struct Case {
        int32_t fill_style;
        bool centre_filled;
    };
    const Case cases[] = {{Fill_Style_Solid, true}, {Fill_Style_Hollow, false}};
    for (const Case& k : cases) {
        Canvas c;
        c.surface.Set_ForeColor({0, 0, 0});
        c.surface.Set_FillColor({200, 0, 0});
        c.surface.Set_FillStyle(k.fill_style);
        c.surface.Ellipse(20, 90, 100, 30); // top below bottom
        const QImage& image = c.Done();
        EXPECT_EQ(image.pixel(60, 60) == qRgb(200, 0, 0), k.centre_filled);
        EXPECT_NE(image.pixel(60, 60), qRgb(0, 0, 0));
        EXPECT_TRUE(Painted(image, 60, 30) || Painted(image, 60, 31)) << "top of the outline";
        EXPECT_TRUE(Painted(image, 20, 60) || Painted(image, 21, 60)) << "left of the outline";
        EXPECT_FALSE(Painted(image, 60, 25));
        EXPECT_FALSE(Painted(image, 60, 95));
        EXPECT_FALSE(Painted(image, 15, 60));
    }
}

// Also shows that Cls left the whole chart white.
TEST(QtSurface, EmptyBoxDrawsNothing) {
    Canvas c;
    c.surface.Set_FillStyle(Fill_Style_Solid);
    c.surface.Ellipse(60, 60, 60, 60);
    c.surface.Arc(60, 60, 60, 60, 0, 0, 10, 10);
    EXPECT_TRUE(Painted_Box(c.Done()).isNull());
}

TEST(QtSurface, LinesTakeWidthAndStyleAndMoveTheCurrentPoint) {
    struct Case {
        int32_t width;
        int32_t style;
        int thickness;
        bool gaps;
    };
    const Case cases[] = {{1, Draw_Style_Solid, 1, false},
                          {4, Draw_Style_Solid, 4, false},
                          {1, Draw_Style_Dash, 1, true}};
    for (const Case& k : cases) {
        Canvas c;
        c.surface.Set_ForeColor({0, 0, 255});
        c.surface.Set_DrawWidth(k.width);
        c.surface.Set_DrawStyle(k.style);
        c.surface.MoveToEx(5, 60);
        c.surface.LineTo(60, 60);
        c.surface.LineTo(115, 60); // continues from where the last line ended
        const QImage& image = c.Done();
        int gaps = 0;
        for (int x = 8; x <= 112; ++x) {
            bool any = false;
            for (int y = 55; y <= 65; ++y) {
                any = any || Painted(image, x, y);
            }
            gaps += any ? 0 : 1;
        }
        EXPECT_EQ(gaps > 0, k.gaps) << "width " << k.width << " style " << k.style;
        int thickness = 0;
        for (int y = 50; y <= 70; ++y) {
            thickness += image.pixel(30, y) == qRgb(0, 0, 255) ? 1 : 0;
        }
        if (!k.gaps) {
            EXPECT_EQ(thickness, k.thickness) << "width " << k.width;
        }
    }
}

TEST(QtSurface, TextHangsFromItsTopLeftCornerInForeColor) {
    Canvas c;
    c.surface.Set_ForeColor({0, 0, 0});
    c.surface.TextOutA(30, 40, "HIGH");
    QRect text = Painted_Box(c.Done());
    ASSERT_FALSE(text.isNull()) << "no text drawn";
    EXPECT_GE(text.top(), 40);
    EXPECT_LE(text.top(), 44) << "capitals start just below the point";
    EXPECT_LE(text.bottom(), 40 + 14);
    EXPECT_GE(text.left(), 30);
    EXPECT_LE(text.left(), 32);
}
