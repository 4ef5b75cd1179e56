// The QPainter surface against the pixels of a small image, drawn without smoothing.
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "chart/qt_surface.h"

namespace quilmark {

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

TEST(QtSurface, EllipseBoxMayComeUpsideDownAndFillsByFillStyleAnEmptyBoxDrawsNothing) {
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
    // Cls leaves the whole chart white, and a box of no size draws nothing.
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

namespace {

// A busy chart's worth of drawing in one sequence, from a fixed seed: labels (some with
// Windows-1252 letters, some repeated), small discs outlined and filled, wide and dashed
// lines and arcs, many of them across or beyond the edges of a width by height chart.
// Every coordinate is moved by shift, so that the same drawing can be made inside a
// larger chart, where nothing of it is near an edge.
void Draw_Busy_Chart(Surface& s, int width, int height, int shift) {
    std::mt19937 random(20021);
    auto pick = [&random](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    const Rgb_Rec colors[] = {{0, 0, 0}, {128, 64, 64}, {0, 192, 0}, {0, 0, 192}, {10, 200, 250}};
    const char* texts[] = {"16L", "Position: GATE A 12", "B", "Caf\xE9 \xB0", "jQ|gy", "A 7"};
    auto color = [&] { return colors[pick(0, 4)]; };
    auto line = [&](int x0, int y0, int x1, int y1) {
        s.MoveToEx(x0 + shift, y0 + shift);
        s.LineTo(x1 + shift, y1 + shift);
    };
    auto ellipse = [&](int left, int top, int right, int bottom) {
        s.Ellipse(left + shift, top + shift, right + shift, bottom + shift);
    };
    auto text = [&](int x, int y, const char* t) { s.TextOutA(x + shift, y + shift, t); };
    for (int i = 0; i < 400; ++i) {
        const int x = pick(-60, width + 20);
        const int y = pick(-30, height + 20);
        switch (pick(0, 3)) {
        case 0:
            s.Set_ForeColor(color());
            text(x, y, texts[pick(0, 5)]);
            break;
        case 1: {
            s.Set_ForeColor(color());
            s.Set_FillColor(color());
            s.Set_FillStyle(pick(0, 1) == 0 ? Fill_Style_Solid : Fill_Style_Hollow);
            s.Set_DrawWidth(pick(1, 4));
            const int r = pick(1, 9);
            ellipse(x - r, y + r, x + r, y - r); // as the chart gives its boxes
            break;
        }
        case 2:
            s.Set_ForeColor(color());
            s.Set_DrawWidth(pick(1, 4));
            s.Set_DrawStyle(pick(0, 3) == 0 ? Draw_Style_Dash : Draw_Style_Solid);
            line(x, y, x + pick(-120, 120), y + pick(-120, 120));
            s.Set_DrawStyle(Draw_Style_Solid);
            break;
        default:
            s.Set_DrawWidth(2);
            s.Arc(x - 40 + shift, y - 30 + shift, x + 40 + shift, y + 30 + shift, x + 50 + shift,
                  y + shift, x + shift, y - 50 + shift);
            break;
        }
    }
    // Figures just outside each edge, whose pen or glyphs may still reach in.
    s.Set_DrawWidth(4);
    s.Set_FillStyle(Fill_Style_Solid);
    for (int d = -5; d <= 5; ++d) {
        s.Set_ForeColor(color());
        line(20 + 8 * d, -3 + d, 60 + 8 * d, -3 + d);
        line(width + 2 + d, 100 + 6 * d, width + 2 + d, 110 + 6 * d);
        ellipse(150 + 12 * d, height + 2 + d, 158 + 12 * d, height + 10 + d);
        text(width - 2 + d, 100 + 15 * d, "jW");
        text(-14 + d, 100 + 15 * d, "jW");
    }
}

constexpr int Busy_Width = 320;
constexpr int Busy_Height = 200;
constexpr int Margin = 100;

// The busy chart, with or without kept sprites, cut out of the middle of a larger image,
// the painter moved as a window's painter may be. Unclipped, the same figures land on
// the same device pixels but as the middle of a chart larger by the margin all round,
// far from the edges where the surface leaves figures out.
QImage Busy_Chart(QPainter::RenderHints hints, Qt_Sprite_Cache* sprites, bool unclipped = false) {
    const int move = unclipped ? Margin / 2 : Margin;
    const int grow = unclipped ? 2 * Margin : 0;
    QImage image(Busy_Width + 2 * Margin, Busy_Height + 2 * Margin, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHints(hints, true);
    painter.translate(move, move);
    Qt_Surface surface(painter, Busy_Width + grow, Busy_Height + grow, sprites);
    surface.Cls();
    Draw_Busy_Chart(surface, Busy_Width, Busy_Height, Margin - move);
    painter.end();
    return image.copy(Margin, Margin, Busy_Width, Busy_Height);
}

// Pixels that differ, and the largest difference in any channel.
std::pair<int, int> Difference(const QImage& a, const QImage& b) {
    int pixels = 0;
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            if (p != q) {
                ++pixels;
                most = std::max({most, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                 std::abs(qBlue(p) - qBlue(q))});
            }
        }
    }
    return {pixels, most};
}

} // namespace

// Leaving out what lies off the chart, and placing kept labels and discs, must give the
// pixels of drawing every figure directly: the first time (sprites kept as they are
// drawn) and every time after. Smoothed edges come out a shade different wherever a
// figure lies relative to the device, so under smoothing the chart is held to a shade
// of the unclipped drawing; a figure left out wrongly would differ by far more.
TEST(QtSurface, ShortcutsDrawTheSamePixelsAsDirectDrawing) {
    struct Case {
        const char* what;
        QPainter::RenderHints hints;
        int shade; // the largest channel difference allowed from the unclipped drawing
    };
    const Case cases[] = {
        {"the window's painter: text smoothed only", QPainter::TextAntialiasing, 0},
        {"no smoothing", {}, 0},
        {"smoothed, as the PNG export", QPainter::Antialiasing | QPainter::TextAntialiasing, 24},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.what);
        const QImage plain = Busy_Chart(k.hints, nullptr);
        EXPECT_LE(Difference(plain, Busy_Chart(k.hints, nullptr, true)).second, k.shade);
        Qt_Sprite_Cache sprites;
        for (const char* pass : {"sprites made", "sprites kept"}) {
            auto [pixels, most] = Difference(plain, Busy_Chart(k.hints, &sprites));
            EXPECT_EQ(pixels, 0) << pass << "; largest channel difference " << most;
        }
        EXPECT_GT(sprites.Count(), 10u);
    }
}

// However many different labels a chart shows, the kept sprites stay within their bound;
// a label too long to keep and one that paints nothing are still handled.
TEST(QtSurface, KeptSpritesStayBounded) {
    QImage image(200, 100, QImage::Format_RGB32);
    QPainter painter(&image);
    Qt_Sprite_Cache sprites;
    Qt_Surface surface(painter, 200, 100, &sprites);
    surface.Cls();
    surface.Set_ForeColor({0, 0, 0});
    size_t most = 0;
    for (int i = 0; i < 5000; ++i) {
        surface.TextOutA(5, 5, "Position: GATE " + std::to_string(i));
        most = std::max(most, sprites.Bytes());
    }
    EXPECT_LE(most, Qt_Sprite_Cache::Max_Bytes);
    EXPECT_LT(sprites.Count(), 5000u) << "the cache started again at its bound";

    surface.Cls();
    const size_t kept = sprites.Count();
    surface.TextOutA(5, 40, std::string(100000, 'W'));
    surface.TextOutA(5, 60, "   ");
    painter.end();
    EXPECT_EQ(sprites.Count(), kept + 1) << "only the spaces are kept";
    EXPECT_EQ(Painted_Box(image.copy(0, 40, 200, 20)).width(), 195)
        << "the long label is drawn as text, to the chart's edge";
}

} // namespace quilmark
