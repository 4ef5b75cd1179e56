// Export to files: the chart as PNG, SVG or PDF at its size, outlines hollow in vector
// files, the trip kit as a PDF of pages, and what is refused. The files stay in the
// samples folder for a person to look at.
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <gtest/gtest.h>
#include <string>

#include "chart/qt_export.h"
#include "support/fetched_airports.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

std::string Sample_File(const std::string& name) {
    QDir().mkpath(QStringLiteral(QUILMARK_CHART_SAMPLES_DIR));
    return std::string(QUILMARK_CHART_SAMPLES_DIR) + "/" + name;
}

QByteArray Read_All(const std::string& path) {
    QFile file(QString::fromStdString(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return file.readAll();
}

// A runway line with its name and a gate's disc with its name, as the classic chart
// draws them.
void Paint_Classic(Surface& s) {
    s.Set_ForeColor({0, 192, 0});
    s.Set_DrawWidth(2);
    s.MoveToEx(20, 500);
    s.LineTo(600, 40);
    s.Set_ForeColor({128, 64, 64});
    s.Set_FillColor({128, 64, 64});
    s.Set_FillStyle(Fill_Style_Solid);
    s.Ellipse(300, 280, 320, 260);
    s.TextOutA(300, 270, "Position: GATE A 2");
}

} // namespace

TEST(ChartExport, PngSvgAndPdfByTheExtensionAtTheChartSize) {
    for (const char* extension : {"png", "svg", "PDF"}) {
        ASSERT_EQ(
            Export_Chart_Image(Sample_File("export-test.") + extension, 640, 540, Paint_Classic),
            "")
            << extension;
    }
    const QImage png(QString::fromStdString(Sample_File("export-test.png")));
    EXPECT_EQ(png.size(), QSize(640, 540));
    EXPECT_EQ(png.pixel(310, 270), qRgb(128, 64, 64));
    const QByteArray svg = Read_All(Sample_File("export-test.svg"));
    EXPECT_TRUE(svg.contains("viewBox=\"0 0 640 540\""));
    EXPECT_TRUE(svg.contains("Position: GATE A 2"));
    const QByteArray pdf = Read_All(Sample_File("export-test.PDF"));
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    // 640 by 540 pixels at 96 dpi is 480 by 405 points.
    EXPECT_TRUE(pdf.contains("/MediaBox [0 0 480.000000 405.000000]"));
}

TEST(ChartExport, AnOutlinedPanelIsHollowInAnSvg) {
    const Point_F_Rec panel[4] = {{10, 10}, {90, 10}, {90, 90}, {10, 90}};
    const std::string path = Sample_File("outline-test.svg");
    ASSERT_EQ(Export_Chart_Image(
                  path, 100, 100,
                  [&](Surface& s) {
                      s.Draw_Polygon(panel, {0, 0, 0, 0}, {{90, 90, 96, 255}, 1, {}, false});
                  }),
              "");
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QSvgRenderer(QString::fromStdString(path)).render(&painter);
    painter.end();
    EXPECT_EQ(image.pixel(50, 50), qRgb(255, 255, 255));
}

TEST(ChartExport, TripKitIsAPdfOfItsPages) {
    Work_Dir dir("trip-kit-export");
    Magvar_Grid grid;
    const std::vector<Kit_Airport_Rec> kit = Fetch_Airports(
        QUILMARK_SAMPLE_WORLD_DIR, {"KSEA (SEATTLE-TACOMA INTL)", "KOLM (OLYMPIA)"}, grid);
    const std::string path = Sample_File("trip-kit.pdf");
    ASSERT_EQ(Export_Trip_Kit(path, kit, grid), "");
    const QString pdf = QString::fromLatin1(Read_All(path));
    EXPECT_EQ(pdf.count(QRegularExpression(QStringLiteral("/Type\\s*/Page[^s]"))), 4);
}

TEST(ChartExport, RefusesUnknownTypesEmptySizesMissingFoldersAndEmptyKits) {
    const std::string bmp = Sample_File("export-test.bmp");
    EXPECT_NE(Export_Chart_Image(bmp, 640, 540, nullptr), "");
    EXPECT_FALSE(QFile::exists(QString::fromStdString(bmp)));
    EXPECT_NE(Export_Chart_Image(Sample_File("empty.png"), 0, 540, nullptr), "");
    EXPECT_NE(Export_Chart_Image("/nonexistent-folder/chart.png", 10, 10, nullptr), "");
    EXPECT_NE(Export_Trip_Kit(Sample_File("no-airports.pdf"), {}, Magvar_Grid{}), "");
}

} // namespace quilmark
