// The QPainter surface against the pixels of a small image, drawn without smoothing.
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <random>

#include "chart/qt_surface.h"
#include "geo/geodesy.h"

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

// Whether a pixel within one of (x, y) is painted.
bool Painted_Near(const QImage& image, QPoint at) {
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            if (Painted(image, at.x() + dx, at.y() + dy)) {
                return true;
            }
        }
    }
    return false;
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

TEST(QtSurface, ArcsRunCounterClockwiseBetweenTheRadialsAndEllipsesFillByFillStyle) {
    // The middles of the quarters of the circle in the box 10..110: upper right, upper
    // left, lower left, lower right. The arcs' radials go through points outside it.
    const QPoint ur{95, 25}, ul{25, 25}, ll{25, 95}, lr{95, 95};
    // The point at parameter t on the ellipse in the box 0..112 by 30..90.
    auto on_ellipse = [](double t) {
        return QPoint(static_cast<int>(std::lround(56 + 56 * std::cos(t * Pi / 180))),
                      static_cast<int>(std::lround(60 - 30 * std::sin(t * Pi / 180))));
    };
    struct Case {
        const char* what;
        std::function<void(Qt_Surface&)> draw;
        std::vector<QPoint> painted, clear;
        QRgb centre = 0; // the colour at (60, 60), where asked for
    };
    const Case cases[] = {
        {"east to north",
         [](Qt_Surface& s) { s.Arc(10, 10, 110, 110, 115, 60, 60, 0); },
         {ur},
         {ul, ll, lr}},
        {"north to east",
         [](Qt_Surface& s) { s.Arc(10, 10, 110, 110, 60, 0, 115, 60); },
         {ul, ll, lr},
         {ur}},
        {"west to south",
         [](Qt_Surface& s) { s.Arc(10, 10, 110, 110, 0, 60, 60, 119); },
         {ll},
         {ur, ul, lr}},
        {"east to north, box upside down",
         [](Qt_Surface& s) { s.Arc(10, 110, 110, 10, 115, 60, 60, 0); },
         {ur},
         {ul, ll, lr}},
        {"start radial equals end radial",
         [](Qt_Surface& s) { s.Arc(10, 10, 110, 110, 100, 60, 115, 60); },
         {ur, ul, ll, lr},
         {}},
        // The radial through the box's top right corner meets the ellipse at its parameter
        // 45 degrees, (95.6, 38.8), not at (112, 30); the arc runs to the top, (56, 30).
        {"on an ellipse",
         [](Qt_Surface& s) { s.Arc(0, 30, 112, 90, 112, 30, 56, 30); },
         {on_ellipse(50), on_ellipse(70), on_ellipse(85)},
         {on_ellipse(35), on_ellipse(20), on_ellipse(110)}},
        {"solid ellipse, box upside down",
         [](Qt_Surface& s) {
             s.Set_FillColor({200, 0, 0});
             s.Set_FillStyle(Fill_Style_Solid);
             s.Ellipse(20, 90, 100, 30);
         },
         {{60, 30}, {20, 60}},
         {{60, 25}, {60, 95}, {15, 60}},
         qRgb(200, 0, 0)},
        {"hollow ellipse",
         [](Qt_Surface& s) {
             s.Set_FillColor({200, 0, 0});
             s.Set_FillStyle(Fill_Style_Hollow);
             s.Ellipse(20, 90, 100, 30);
         },
         {{60, 30}, {20, 60}},
         {{60, 25}, {60, 95}, {15, 60}},
         White},
        {"boxes of no size",
         [](Qt_Surface& s) {
             s.Set_FillStyle(Fill_Style_Solid);
             s.Ellipse(60, 60, 60, 60);
             s.Arc(60, 60, 60, 60, 0, 0, 10, 10);
         },
         {},
         {{60, 60}}},
    };
    for (const Case& k : cases) {
        Canvas c;
        c.surface.Set_ForeColor({0, 0, 0});
        c.surface.Set_DrawWidth(1);
        k.draw(c.surface);
        const QImage& image = c.Done();
        for (const QPoint& p : k.painted) {
            EXPECT_TRUE(Painted_Near(image, p)) << k.what << " at " << p.x() << ", " << p.y();
        }
        for (const QPoint& p : k.clear) {
            EXPECT_FALSE(Painted_Near(image, p)) << k.what << " at " << p.x() << ", " << p.y();
        }
        EXPECT_TRUE(k.centre == 0 || image.pixel(60, 60) == k.centre) << k.what;
    }
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
