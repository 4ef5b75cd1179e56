// Exports a small airport at levels 9 and 14 as PNG, SVG and PDF and checks the files.
// (scripts/chart_samples.sh writes the sample world's airport for a person to look at.)
#include <QDir>
#include <QFile>
#include <QImage>
#include <gtest/gtest.h>
#include <string>

#include "chart/chart_draw.h"
#include "chart/chart_sequence.h"
#include "chart/chart_test_support.h"
#include "chart/qt_export.h"

namespace quilmark {

namespace {

// An airport with a runway, an ILS, a taxiway, a gate, and a class B ring around it.
Module1 Sample_Module() {
    Module1 m;
    Airport_Rec& a = m.current_airport;
    a.lat = 47.449;
    a.lon = -122.309;
    Append(a.runways, a.runway_count) =
        Runway_Rec{"16L", "34R", 47.4638, -122.3079, 47.4316, -122.3081};
    Append(a.ils, a.ils_count) = ILS_Rec{"ISEA", 47.4310, -122.3081, 180, "110.30"};
    Set_Exact(a.taxi_points, a.taxi_point_count, {{0, 47.451, -122.305}, {0, 47.445, -122.305}});
    Set_Exact(a.taxi_paths, a.taxi_path_count, {{Path_Taxiway, 0, 1, "A"}});
    Set_Exact(a.parkings, a.parking_count, {{"GATE A 2", 47.451, -122.3025, 80}});
    Append(m.airspaces, m.airspace_count) = Make_Airspace(
        "Airspace Class B", {{Point_Fix, 47.449, -122.309}, {Point_Circle, 0, 0, 10}});
    m.fsuipc_connected = true;
    m.aircraft_lat = 47.4720;
    m.aircraft_lon = -122.3079;
    return m;
}

constexpr int32_t Width = 640;
constexpr int32_t Height = 540;

std::string Sample_Path(int level, const char* extension) {
    QDir().mkpath(QStringLiteral(QUILMARK_CHART_SAMPLES_DIR));
    return std::string(QUILMARK_CHART_SAMPLES_DIR) + "/export-test-level" + std::to_string(level) +
           "." + extension;
}

std::string Export_Sample(int level, const char* extension) {
    Module1 m = Sample_Module();
    Chart_View view;
    Open_Chart_View(view, m, Width, Height, nullptr);
    Zoom_To_Level(view, level);
    std::string path = Sample_Path(level, extension);
    QFile::remove(QString::fromStdString(path));
    std::string error =
        Export_Chart_Image(path, Width, Height, [&](Surface& s) { Redraw_Chart(s, view, m); });
    EXPECT_EQ(error, "") << path;
    return path;
}

int Count_Color(const QImage& image, QRgb color) {
    int n = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            n += image.pixel(x, y) == color ? 1 : 0;
        }
    }
    return n;
}

QByteArray Read_All(const std::string& path) {
    QFile file(QString::fromStdString(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return file.readAll();
}

} // namespace

TEST(ChartExport, PngSvgAndPdfShowTheLayersOfEachLevelAtTheChartSize) {
    for (int level : {9, 14}) {
        QImage image(QString::fromStdString(Export_Sample(level, "png")));
        ASSERT_FALSE(image.isNull());
        EXPECT_EQ(image.size(), QSize(Width, Height));
        EXPECT_GT(Count_Color(image, qRgb(0, 192, 0)), 0) << "runways and aircraft";
        EXPECT_EQ(Count_Color(image, qRgb(0, 0, 192)) > 0, level == 9) << "airspace";
        EXPECT_EQ(Count_Color(image, qRgb(128, 64, 64)) > 0, level == 14) << "parking";

        QByteArray svg = Read_All(Export_Sample(level, "svg"));
        EXPECT_TRUE(svg.contains("<svg"));
        EXPECT_TRUE(svg.contains("viewBox=\"0 0 640 540\""));
        EXPECT_TRUE(svg.contains("16L"));
        EXPECT_EQ(svg.contains("Position: GATE A 2"), level == 14);
        EXPECT_EQ(svg.contains("stroke=\"#c0c0c0\""), level == 14) << "taxiways";

        QByteArray pdf = Read_All(Export_Sample(level, "PDF"));
        EXPECT_TRUE(pdf.startsWith("%PDF-"));
        // 640 by 540 pixels at 96 dpi is 480 by 405 points.
        EXPECT_TRUE(pdf.contains("/MediaBox [0 0 480.000000 405.000000]")) << level;
    }
}

TEST(ChartExport, RefusesUnknownTypesAndEmptySizes) {
    std::string path = Sample_Path(0, "bmp");
    EXPECT_NE(Export_Chart_Image(path, Width, Height, nullptr), "");
    EXPECT_FALSE(QFile::exists(QString::fromStdString(path)));
    EXPECT_NE(Export_Chart_Image(Sample_Path(0, "png"), 0, Height, nullptr), "");
    EXPECT_NE(Export_Chart_Image("/nonexistent-folder/chart.png", 10, 10, nullptr), "");
}

} // namespace quilmark
