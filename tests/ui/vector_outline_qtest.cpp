// A figure drawn as its outline alone stays hollow in vector files too, where the
// surface draws through QPainter rather than into pixels.
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <gtest/gtest.h>

#include "chart/qt_export.h"
#include "support/work_dir.h"

namespace quilmark {

TEST(VectorOutline, AnOutlinedFigureIsHollowInAnSvg) {
    Work_Dir dir("vector-outline");
    const Stroke_Rec edge{{90, 90, 96, 255}, 1, {}, false};
    const std::string svg = dir.Sub("outline.svg");
    ASSERT_EQ(Export_Chart_Image(
                  svg, 100, 100,
                  [&](Surface& s) {
                      const Point_F_Rec square[4] = {{10, 10}, {90, 10}, {90, 90}, {10, 90}};
                      const Point_F_Rec diamond[4] = {{50, 20}, {80, 50}, {50, 80}, {20, 50}};
                      s.Draw_Polygon(square, {0, 0, 0, 0}, edge);
                      s.Draw_Polygon(diamond, {0, 0, 0, 0}, edge);
                      s.Draw_Polyline(diamond, edge);
                  }),
              "");
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QSvgRenderer(QString::fromStdString(svg)).render(&painter);
    painter.end();
    for (const QPoint inside : {QPoint(50, 50), QPoint(15, 50), QPoint(50, 85)}) {
        EXPECT_EQ(image.pixel(inside), qRgb(255, 255, 255)) << inside.x() << "," << inside.y();
    }
}

} // namespace quilmark
