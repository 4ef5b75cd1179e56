#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "chart/chart_draw.h"
#include "chart_test_support.h"
#include "geo/geodesy.h"

namespace quilmark {

namespace {

// 0.01 degrees square about 0, 0 on 1000 pixels: 100 pixels to the thousandth degree.
const Chart_View Small_View = Make_View(0, 0, 0.01, 0.01, 1000, 1000, 14);

// A magnetic variation of about 10 degrees east everywhere.
void Set_Variation_10_East(Module1& m) {
    m.magvar_grid.fill(1821); // 1821 * 360 / 65536 = 10.003 degrees
    m.magvar_grid[Magvar_Grid_Size - 1] = 0;
}

} // namespace

TEST(DrawRunways, EachRunwayIsALineWithBothDesignatorsBeforeTheNext) {
    Module1 m;
    Airport_Rec& a = m.current_airport;
    Append(a.runways, a.runway_count) = Runway_Rec{"16L", "34R", 0.004, -0.001, -0.004, -0.001};
    Append(a.runways, a.runway_count) = Runway_Rec{"", "", 0.001, -0.003, 0.001, 0.003};
    Recording_Surface s;
    Draw_Runways(s, Small_View, m);
    EXPECT_EQ(Ops(s), "ForeColor 0 192 0; FillColor 0 0 0; FillStyle 1; MoveToEx 400 100; "
                      "LineTo 400 900; ForeColor 0 0 0; TextOutA 400 100 \"16L\"; "
                      "TextOutA 400 900 \"34R\"; "
                      "ForeColor 0 192 0; FillColor 0 0 0; FillStyle 1; MoveToEx 200 400; "
                      "LineTo 800 400; ForeColor 0 0 0; TextOutA 200 400 \"\"; "
                      "TextOutA 800 400 \"\"");
}

TEST(DrawTaxiPaths, EveryKindIsALineButOnlyTaxiwaysCarryLabels) {
    struct Case {
        int32_t kind;
        const char* label;
        bool ids_on;
        bool labelled;
    };
    const Case cases[] = {
        {Path_Taxiway, "B", true, true},   {Path_Taxiway, "B", false, false},
        {Path_Taxiway, "", true, false},   {Path_Taxiway, " ", true, false},
        {Path_Taxiway, "  ", true, true},  {Path_Runway, "16L", true, false},
        {Path_Parking, "G1", true, false},
    };
    for (const Case& c : cases) {
        Module1 m;
        m.show_taxiway_ids = c.ids_on;
        Airport_Rec& a = m.current_airport;
        Set_Exact(a.taxi_points, a.taxi_point_count, {{0, 0, -0.002}, {0, 0, 0.002}});
        Set_Exact(a.parkings, a.parking_count, {{"G1", 0.003, 0.002, 50}});
        // A parking path ends at parking spot 0, not at taxi point 1.
        int32_t end = c.kind == Path_Parking ? 0 : 1;
        Set_Exact(a.taxi_paths, a.taxi_path_count, {{c.kind, 0, end, c.label}});
        Recording_Surface s;
        Draw_Taxi_Paths(s, Small_View, m);
        const std::string line = std::string("ForeColor 192 192 192; FillColor 0 0 0; "
                                             "FillStyle 1; MoveToEx 300 500; LineTo 700 ") +
                                 (c.kind == Path_Parking ? "200" : "500");
        const std::string label = "; ForeColor 0 0 0; TextOutA 500 503 \"" + std::string(c.label);
        EXPECT_EQ(Ops(s), line + (c.labelled ? label + "\"" : ""))
            << c.kind << " '" << c.label << "'";
    }
}

TEST(DrawTaxiPaths, LabelStandsHalfwayAlongTheMagneticBearing) {
    // A taxiway 0.004 degrees due north, about 1459 feet.
    Module1 m;
    m.show_taxiway_ids = true;
    Airport_Rec& a = m.current_airport;
    Set_Exact(a.taxi_points, a.taxi_point_count,
              {{0, -0.002, 0.0}, {0, 0.002, 0.0}, {0, 0.001, 0.001}});
    Set_Exact(a.taxi_paths, a.taxi_path_count,
              {{Path_Taxiway, 0, 1, "N"}, {Path_Taxiway, 2, 2, "Z"}});

    Recording_Surface plain;
    Draw_Taxi_Paths(plain, Small_View, m);
    ASSERT_EQ(plain.ops.size(), 14u);
    // No variation: on the segment, at its middle.
    EXPECT_EQ(plain.ops[6].args[0], 500);
    EXPECT_NEAR(plain.ops[6].args[1], 500, 1);
    // A segment whose ends coincide: the label on that point.
    EXPECT_EQ(Format_Surface_Op(plain.ops[13]), "TextOutA 600 400 \"Z\"");

    // 10 degrees east: the bearing 350 is used as if true, so the label moves west of
    // the segment by sin(10 degrees) of half its length (about 127 feet, 0.00035 deg).
    Set_Variation_10_East(m);
    Recording_Surface varied;
    Draw_Taxi_Paths(varied, Small_View, m);
    ASSERT_EQ(varied.ops.size(), 14u);
    EXPECT_NEAR(varied.ops[6].args[0], 500 - 35, 1);
    EXPECT_NEAR(varied.ops[6].args[1], 500 + 3, 1);
    EXPECT_EQ(Format_Surface_Op(varied.ops[4]), "LineTo 500 300") << "the line itself stays";
}

TEST(DrawTaxiPaths, LongSegmentIsDrawnWholeWithItsLabelAtMost16384FeetOut) {
    Module1 m;
    m.show_taxiway_ids = true;
    Airport_Rec& a = m.current_airport;
    // 0.2 degrees of longitude at the equator: 12 nautical miles, far above 32767 feet.
    Set_Exact(a.taxi_points, a.taxi_point_count, {{0, 0, 0}, {0, 0, 0.2}});
    Set_Exact(a.taxi_paths, a.taxi_path_count, {{Path_Taxiway, 0, 1, "L"}});
    Chart_View v = Make_View(0, 0.1, 0.4, 0.4, 1000, 1000, 14);
    Recording_Surface s;
    Draw_Taxi_Paths(s, v, m);
    ASSERT_EQ(s.ops.size(), 7u);
    EXPECT_EQ(Format_Surface_Op(s.ops[3]), "MoveToEx 250 500");
    EXPECT_EQ(Format_Surface_Op(s.ops[4]), "LineTo 750 500");
    // 16384 feet is 0.04491 degrees: 112 pixels from the start.
    EXPECT_EQ(s.ops[6].args[0], 250 + 112);
}

TEST(DrawParkings, DiscOfOnePercentOfTheWidthWithHalvesToEven) {
    // Radius 3 pixels of 300; 2.5 of 250 goes to 2 and 3.5 of 350 to 4. A spot at an infinite
    // position stands at the end of the pixel range, and its disc stops there.
    struct Case {
        int32_t width;
        double lat, lon;
        const char* ops;
    };
    const double inf = std::numeric_limits<double>::infinity();
    const Case cases[] = {
        {300, 0, 0, "Ellipse 147 53 153 47; ForeColor 0 0 0; TextOutA 150 50"},
        {250, 0, 0, "Ellipse 123 52 127 48; ForeColor 0 0 0; TextOutA 125 50"},
        {350, 0, 0, "Ellipse 171 54 179 46; ForeColor 0 0 0; TextOutA 175 50"},
        {300, -inf, inf,
         "Ellipse 2147483644 2147483647 2147483647 2147483644; ForeColor 0 0 0; "
         "TextOutA 2147483647 2147483647"},
        {300, inf, -inf,
         "Ellipse -2147483648 -2147483645 -2147483645 -2147483648; ForeColor 0 0 0; "
         "TextOutA -2147483648 -2147483648"}};
    for (const Case& c : cases) {
        Module1 m;
        Set_Exact(m.current_airport.parkings, m.current_airport.parking_count,
                  {{"GATE 4", c.lat, c.lon, 80}});
        Recording_Surface s;
        Draw_Parkings(s, Make_View(0, 0, 0.01, 0.01, c.width, 100, 14), m);
        EXPECT_EQ(Ops(s), "ForeColor 128 64 64; FillColor 128 64 64; FillStyle 0; " +
                              std::string(c.ops) + " \"Position: GATE 4\"");
    }
}

TEST(DrawILS, FeatherOpensTenDegreesAboutTheTrueReciprocal) {
    struct Case {
        int16_t mag_heading;
        bool variation_10_east;
        int16_t course1, course2;
    };
    const Case cases[] = {
        {360, false, 175, 185}, // pointing to 180 true
        {182, false, 357, 7},   // reciprocal 2 wraps through north
        {90, true, 275, 285},   // 100 true, reciprocal 280
    };
    for (const Case& c : cases) {
        Module1 m;
        if (c.variation_10_east) {
            Set_Variation_10_East(m);
        }
        Airport_Rec& a = m.current_airport;
        Append(a.ils, a.ils_count) = ILS_Rec{"IKTST", 0.001, -0.001, c.mag_heading, "110.30"};
        const Chart_View& v = Small_View;
        Recording_Surface s;
        Draw_ILS(s, v, m);
        Pixel_Rec p = Geo_To_Pixel(v, 0.001, -0.001);
        Geo_Point_Rec ga = Destination_Feet(0.001, -0.001, c.course1, 1800);
        Geo_Point_Rec gb = Destination_Feet(0.001, -0.001, c.course2, 1800);
        Pixel_Rec pa = Geo_To_Pixel(v, ga.lat, ga.lon);
        Pixel_Rec pb = Geo_To_Pixel(v, gb.lat, gb.lon);
        const std::vector<std::string> expected = {
            "ForeColor 255 255 0",   Line_Op("MoveToEx", p), Line_Op("LineTo", pa),
            Line_Op("MoveToEx", pa), Line_Op("LineTo", pb),  Line_Op("MoveToEx", pb),
            Line_Op("LineTo", p),
        };
        EXPECT_EQ(Recorded_Op_Lines(s), expected) << c.mag_heading;
        // 1800 feet is about 0.00493 degrees: a feather some 490 pixels long.
        EXPECT_GT(std::hypot(pa.x - p.x, pa.y - p.y), 480);
    }
}

} // namespace quilmark
