#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "chart/chart_sequence.h"
#include "chart_test_support.h"

namespace quilmark {

namespace {

// 0 to 4 degrees both ways.
Chart_View Unit_View(int32_t w, int32_t h) {
    return Make_View(2, 2, 4, 4, w, h);
}

} // namespace

TEST(GeoToPixel, MapsLinearlyAndRoundsHalvesToEven) {
    Chart_View v = Unit_View(10, 10); // 2.5 pixels a degree both ways
    struct Case {
        double lat, lon;
        Pixel_Rec p;
    };
    const Case cases[] = {
        {4, 0, {0, 0}},
        {0, 4, {10, 10}},
        {3, 1, {2, 2}},    // 2.5 goes down to 2
        {1, 3, {8, 8}},    // 7.5 goes up to 8
        {5, -1, {-2, -2}}, // outside the view: negative pixels, -2.5 to -2
        {-400, 404, {1010, 1010}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Geo_To_Pixel(v, c.lat, c.lon), c.p) << c.lat << ", " << c.lon;
    }
}

TEST(PixelToGeo, TheInverseOverTheClientAreaInSinglePrecision) {
    Chart_View v = Unit_View(10, 10);
    // A client area as large as the chart gives back what Geo_To_Pixel placed there.
    for (const Geo_Point_Rec& p : std::vector<Geo_Point_Rec>{{4, 0}, {0, 4}, {1.2, 2.8}}) {
        const Pixel_Rec px = Geo_To_Pixel(v, p.lat, p.lon);
        EXPECT_EQ(Geo_To_Pixel(v, Pixel_To_Geo(v, px.x, px.y, 10, 10).lat,
                               Pixel_To_Geo(v, px.x, px.y, 10, 10).lon),
                  px);
    }
    // A client area half the size spans the same extent; an empty one counts as 1 pixel.
    EXPECT_EQ(Pixel_To_Geo(v, 5, 5, 5, 5), (Geo_Point_Rec{0, 4}));
    EXPECT_EQ(Pixel_To_Geo(v, 1, 1, 0, -3), (Geo_Point_Rec{0, 4}));
    // Single precision: a third of a degree comes back as the float nearest to it.
    EXPECT_EQ(Pixel_To_Geo(Make_View(0.5, 0.5, 1, 1, 3, 3), 1, 0, 3, 3).lon,
              static_cast<double>(static_cast<float>(1.0 / 3)));
}

TEST(Zoom, EachStepHalvesOrDoublesAboutTheCentreWithinTheLevels) {
    Chart_View v = Unit_View(100, 100);
    v.zoom_level = 3;
    Zoom_In_View(v);
    EXPECT_EQ(v.zoom_level, 4);
    EXPECT_EQ(std::tie(v.view_left, v.view_right, v.view_top, v.view_bottom),
              std::make_tuple(1.0, 3.0, 3.0, 1.0));
    Zoom_Out_View(v);
    Zoom_Out_View(v);
    EXPECT_EQ(v.zoom_level, 2);
    EXPECT_EQ(std::tie(v.view_left, v.view_right, v.view_top, v.view_bottom),
              std::make_tuple(-2.0, 6.0, 6.0, -2.0));

    // Outside their levels the steps change nothing.
    struct Limit {
        int16_t level;
        void (*step)(Chart_View&);
    };
    const Limit limits[] = {
        {20, Zoom_In_View}, {0, Zoom_In_View}, {1, Zoom_Out_View}, {21, Zoom_Out_View}};
    for (const Limit& c : limits) {
        Chart_View at_limit = Unit_View(100, 100);
        at_limit.zoom_level = c.level;
        c.step(at_limit);
        EXPECT_EQ(at_limit.zoom_level, c.level);
        EXPECT_DOUBLE_EQ(at_limit.view_right, 4);
    }
}

TEST(OpenChartView, RedrawsOnceAtLevelOneThenZoomsToNineAndSetsTheOptions) {
    Module1 m;
    m.current_airport.lat = 47.5;
    m.current_airport.lon = 179.5;
    m.show_gates = false;
    m.altimeter_units = 0;
    Chart_View v;
    std::vector<Chart_View> redraws;
    bool flags_at_redraw = true;
    Open_Chart_View(v, m, 300, 250, [&] {
        redraws.push_back(v);
        flags_at_redraw = m.show_gates;
    });

    ASSERT_EQ(redraws.size(), 1u);
    const Chart_View& first = redraws[0];
    EXPECT_EQ(first.zoom_level, 1);
    EXPECT_EQ(first.chart_px_width, 300);
    EXPECT_EQ(first.chart_px_height, 250);
    // The whole world, centred on the airport and not wrapped at the date line.
    EXPECT_DOUBLE_EQ(first.view_right, 359.4999);
    EXPECT_NEAR(first.view_left, -0.4999, 1e-9);
    EXPECT_NEAR(first.view_top, 137.4999, 1e-9);
    EXPECT_FALSE(flags_at_redraw) << "the options are set after the first redraw";

    EXPECT_EQ(v.zoom_level, 9);
    EXPECT_NEAR(v.view_right - v.view_left, 1.40624921875, 1e-11);
    EXPECT_NEAR(v.view_top - v.view_bottom, 0.70312421875, 1e-11);
    EXPECT_NEAR((v.view_left + v.view_right) / 2, 179.5, 1e-11);
    EXPECT_NEAR((v.view_top + v.view_bottom) / 2, 47.5, 1e-11);
    EXPECT_TRUE(m.follow_aircraft && m.show_ils && m.show_taxiways && m.show_taxiway_ids &&
                m.show_gates && m.show_airspace);
    EXPECT_EQ(m.altimeter_units, 1);
}

TEST(ZoomToLevel, ReachesTheExtentOfEachLevel) {
    struct Case {
        int asked;
        int16_t level;
        double width, height;
    };
    const Case cases[] = {
        {13, 13, 0.087890576171875, 0.043945263671875},
        {25, 20, 0.00068664512634277, 0.00034332237243652},
        {-3, 1, 359.9998, 179.9998},
    };
    for (const Case& c : cases) {
        Module1 m;
        Chart_View v;
        Open_Chart_View(v, m, 271, 228, nullptr);
        Zoom_To_Level(v, c.asked);
        EXPECT_EQ(v.zoom_level, c.level);
        EXPECT_NEAR(v.view_right - v.view_left, c.width, 1e-12) << c.asked;
        EXPECT_NEAR(v.view_top - v.view_bottom, c.height, 1e-12) << c.asked;
    }
}

TEST(ChartTickRedraw, FollowsTheAircraftOnlyWithTheLinkOpenAndFollowOn) {
    struct Case {
        bool follow, connected, moves;
    };
    const Case cases[] = {
        {true, true, true}, {true, false, false}, {false, true, false}, {false, false, false}};
    for (const Case& c : cases) {
        Module1 m;
        m.follow_aircraft = c.follow;
        m.fsuipc_connected = c.connected;
        m.aircraft_lat = 10;
        m.aircraft_lon = 20;
        Chart_View v = Unit_View(100, 100);
        int redraws = 0;
        const Chart_Redraw redraw = [&] { ++redraws; };
        Chart_Tick_Redraw(m, redraw, [&](double x, double y) { Center_Airport(v, x, y, redraw); });
        EXPECT_EQ(redraws, 1);
        // Centred on the aircraft with the size kept, or left alone.
        EXPECT_EQ(v.view_left == 18 && v.view_right == 22 && v.view_top == 12 && v.view_bottom == 8,
                  c.moves)
            << c.follow << c.connected;
    }
}

} // namespace quilmark
