// Exports a sample airport at levels 9 and 14 as PNG, SVG and PDF into the build folder
// (chart-samples/), for a person to look at, and checks what can be checked by program.
#include <QDir>
#include <QFile>
#include <QImage>
#include <gtest/gtest.h>
#include <string>

#include "chart/chart_draw.h"
#include "chart/qt_export.h"
#include "shell/module1.h"

namespace {

template <class T> void Add(Dyn_Array<T>& list, int32_t& count, T item) {
    list.Resize_Keep(static_cast<size_t>(count) + 1);
    list[static_cast<size_t>(count)] = std::move(item);
    ++count;
}

// A three-runway airport shaped like Seattle-Tacoma: parallel north-south runways, a
// parallel taxiway with connectors, a terminal's gates, ILS on two runways, a class B
// ring around it and a class D nearby that the chart leaves out.
Module1 Sample_Module() {
    Module1 m;
    Airport_Rec& a = m.current_airport;
    a.ident = "KSEA";
    a.name = "SEATTLE-TACOMA INTL";
    a.lat = 47.449;
    a.lon = -122.309;
    Add(a.runways, a.runway_count,
        Runway_Rec{"16L", "34R", 47.4638, -122.3079, 47.4316, -122.3081});
    Add(a.runways, a.runway_count,
        Runway_Rec{"16C", "34C", 47.4638, -122.3110, 47.4375, -122.3110});
    Add(a.runways, a.runway_count,
        Runway_Rec{"16R", "34L", 47.4632, -122.3182, 47.4405, -122.3183});
    Add(a.ils, a.ils_count, ILS_Rec{"ISEA", 47.4310, -122.3081, 180, "110.30"});
    Add(a.ils, a.ils_count, ILS_Rec{"ISZI", 47.4644, -122.3079, 360, "111.70"});

    // Taxiway A east of 16L in five segments, connectors A1..A5 to the runway, the
    // runway's own segments, and a gate off each of the middle three connectors.
    std::vector<Taxi_Point_Rec> points;
    std::vector<Taxi_Path_Rec> paths;
    std::vector<Parking_Rec> parkings;
    for (int i = 0; i <= 5; ++i) {
        double lat = 47.4630 - i * 0.0060;
        points.push_back({0, lat, -122.3050}); // taxiway A: 2i
        points.push_back({0, lat, -122.3080}); // on runway 16L: 2i + 1
    }
    for (int i = 0; i < 5; ++i) {
        paths.push_back({Path_Taxiway, 2 * i, 2 * i + 2, "A"});
        paths.push_back({Path_Runway, 2 * i + 1, 2 * i + 3, "16L"});
    }
    for (int i = 0; i <= 5; ++i) {
        paths.push_back({Path_Taxiway, 2 * i, 2 * i + 1, "A" + std::to_string(i + 1)});
    }
    for (int i = 1; i <= 3; ++i) {
        parkings.push_back({"GATE A " + std::to_string(i), 47.4630 - i * 0.0060, -122.3025, 80});
        paths.push_back({Path_Parking, 2 * i, i - 1, ""});
    }
    a.taxi_points.Allocate(points.size());
    a.taxi_points.items = points;
    a.taxi_point_count = static_cast<int32_t>(points.size());
    a.taxi_paths.Allocate(paths.size());
    a.taxi_paths.items = paths;
    a.taxi_path_count = static_cast<int32_t>(paths.size());
    a.parkings.Allocate(parkings.size());
    a.parkings.items = parkings;
    a.parking_count = static_cast<int32_t>(parkings.size());

    Airspace_Rec b;
    b.class_text = "Airspace Class B";
    Add(b.points, b.point_count, Boundary_Point_Rec{Point_Fix, 47.449, -122.309, 0});
    Add(b.points, b.point_count, Boundary_Point_Rec{Point_Circle, 0, 0, 10});
    Add(b.points, b.point_count, Boundary_Point_Rec{Point_Start, 47.75, -122.309, 0});
    Add(b.points, b.point_count, Boundary_Point_Rec{Point_Arc_CW, 47.449, -121.865, 0});
    Add(b.points, b.point_count, Boundary_Point_Rec{Point_Line, 47.449, -121.700, 0});
    Add(m.airspaces, m.airspace_count, b);
    Airspace_Rec d;
    d.class_text = "Airspace Class D";
    Add(d.points, d.point_count, Boundary_Point_Rec{Point_Fix, 47.53, -122.30, 0});
    Add(d.points, d.point_count, Boundary_Point_Rec{Point_Circle, 0, 0, 4});
    Add(m.airspaces, m.airspace_count, d);

    m.fsuipc_connected = true;
    m.aircraft_lat = 47.4720;
    m.aircraft_lon = -122.3079;
    m.aircraft_heading = 180;
    return m;
}

constexpr int32_t Width = 640;
constexpr int32_t Height = 540;

std::string Sample_Path(int level, const char* extension) {
    QDir().mkpath(QStringLiteral(QUILMARK_CHART_SAMPLES_DIR));
    return std::string(QUILMARK_CHART_SAMPLES_DIR) + "/ksea-level" + std::to_string(level) + "." +
           extension;
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

TEST(ChartExport, PngShowsTheLayersOfEachLevel) {
    struct Case {
        int level;
        bool airspace, parking;
    };
    const Case cases[] = {{9, true, false}, {14, false, true}};
    for (const Case& c : cases) {
        QImage image(QString::fromStdString(Export_Sample(c.level, "png")));
        ASSERT_FALSE(image.isNull());
        EXPECT_EQ(image.width(), Width);
        EXPECT_EQ(image.height(), Height);
        EXPECT_GT(Count_Color(image, qRgb(0, 192, 0)), 0) << "runways and aircraft";
        EXPECT_EQ(Count_Color(image, qRgb(0, 0, 192)) > 0, c.airspace) << c.level;
        EXPECT_EQ(Count_Color(image, qRgb(128, 64, 64)) > 0, c.parking) << c.level;
    }
}

TEST(ChartExport, SvgAndPdfAreWrittenAtTheChartSize) {
    for (int level : {9, 14}) {
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
