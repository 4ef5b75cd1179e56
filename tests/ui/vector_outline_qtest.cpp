// A figure drawn as its outline alone stays hollow in vector files too, where the
// surface draws through QPainter rather than into pixels.
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <gtest/gtest.h>

#include "chart/qt_export.h"
#include "support/work_dir.h"

namespace quilmark {

TEST(VectorOutline, AnOutlinedPanelIsHollowInAnSvg) {
    Work_Dir dir("vector-outline");
    const Point_F_Rec panel[4] = {{10, 10}, {90, 10}, {90, 90}, {10, 90}};
    ASSERT_EQ(Export_Chart_Image(
                  dir.Sub("panel.svg"), 100, 100,
                  [&](Surface& s) {
                      s.Draw_Polygon(panel, {0, 0, 0, 0}, {{90, 90, 96, 255}, 1, {}, false});
                  }),
              "");
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QSvgRenderer(QString::fromStdString(dir.Sub("panel.svg"))).render(&painter);
    painter.end();
    EXPECT_EQ(image.pixel(50, 50), qRgb(255, 255, 255));
}

} // namespace quilmark
