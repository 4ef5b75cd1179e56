#include <gtest/gtest.h>

#include "bgl/geodesy.h"
#include "chart/chart_draw.h"
#include "chart_test_support.h"

namespace {

const char* const Class_B = "Airspace Class B";
const char* const Class_C = "Airspace Class C";

// 2 degrees square about 0, 0 on 1000 pixels: one nautical mile is about 8.3 pixels.
Chart_View Area_View() {
    return Make_View(0, 0, 2, 2, 1000, 1000, 9);
}

std::string Box_Op(const char* name, Pixel_Rec nw, Pixel_Rec se) {
    return std::string(name) + " " + std::to_string(nw.x) + " " + std::to_string(nw.y) + " " +
           std::to_string(se.x) + " " + std::to_string(se.y);
}

// The box of a circle about the centre whose corners lie nw_nm and se_nm out along the
// diagonals.
std::string Circle_Box(const Chart_View& v, double lat, double lon, int16_t nw_nm, int16_t se_nm,
                       const char* name = "Ellipse") {
    Geo_Point_Rec nw = Great_Circle_Destination(lat, lon, 315, nw_nm);
    Geo_Point_Rec se = Great_Circle_Destination(lat, lon, 135, se_nm);
    return Box_Op(name, Geo_To_Pixel(v, nw.lat, nw.lon), Geo_To_Pixel(v, se.lat, se.lon));
}

std::string Geo_Op(const char* name, const Chart_View& v, double lat, double lon) {
    return Line_Op(name, Geo_To_Pixel(v, lat, lon));
}

const std::vector<std::string> Final_State = {"ForeColor 0 192 0", "FillColor 0 0 0", "FillStyle 1",
                                              "DrawWidth 2", "DrawStyle 0"};

std::vector<std::string> Drawn_Ops(const Recording_Surface& s) {
    std::vector<std::string> lines;
    for (const Surface_Op_Rec& op : s.ops) {
        if (op.op == Surface_Op::MoveToEx || op.op == Surface_Op::LineTo ||
            op.op == Surface_Op::Ellipse || op.op == Surface_Op::Arc) {
            lines.push_back(Format_Surface_Op(op));
        }
    }
    return lines;
}

} // namespace

TEST(DrawAirspaces, OnlyClassBAndCAreDrawnEachWithItsDashedPen) {
    struct Case {
        const char* class_text;
        std::vector<std::string> pen;
    };
    const Case cases[] = {
        {Class_B,
         {"ForeColor 0 0 192", "FillColor 0 0 192", "DrawWidth 1", "DrawStyle 1", "FillStyle 1"}},
        {Class_C,
         {"ForeColor 255 0 255", "FillColor 255 0 255", "DrawWidth 1", "DrawStyle 1",
          "FillStyle 1"}},
        {"Airspace Class D", {}},
        {"ARTCC/FIR", {}},
        {"TRACON (Departure/Approach)", {}},
        {"airspace class b", {}},
    };
    for (const Case& c : cases) {
        Module1 m;
        // No outline at all: only the colours are set.
        Append(m.airspaces, m.airspace_count, Make_Airspace(c.class_text, {}));
        Recording_Surface s;
        Draw_Airspaces(s, Area_View(), m);
        std::vector<std::string> expected = c.pen;
        expected.insert(expected.end(), Final_State.begin(), Final_State.end());
        EXPECT_EQ(Recorded_Op_Lines(s), expected) << c.class_text;
    }
}

TEST(DrawAirspaces, CircleBoxFromTheRadiusAlongTheDiagonalsAndRadiusRaisedToOne) {
    struct Case {
        int32_t radius;
        int32_t stored;
    };
    const Case cases[] = {{0, 1}, {-4, 1}, {1, 1}, {12, 12}};
    for (const Case& c : cases) {
        Module1 m;
        Append(m.airspaces, m.airspace_count,
               Make_Airspace(Class_C, {Boundary(Point_Fix, 0.1, -0.2),
                                       Boundary(Point_Circle, 0, 0, c.radius)}));
        Chart_View v = Area_View();
        Recording_Surface s;
        Draw_Airspaces(s, v, m);
        int16_t r = static_cast<int16_t>(c.stored);
        EXPECT_EQ(Drawn_Ops(s), std::vector<std::string>{Circle_Box(v, 0.1, -0.2, r, r)});
        EXPECT_EQ(m.airspaces[0].points[1].radius, c.stored);
    }
    // The box of a 12-mile radius is 2 * 12 / sqrt(2) miles across, about 141 pixels.
    Module1 m;
    Append(m.airspaces, m.airspace_count,
           Make_Airspace(Class_B, {Boundary(Point_Fix, 0, 0), Boundary(Point_Circle, 0, 0, 12)}));
    Recording_Surface s;
    Draw_Airspaces(s, Area_View(), m);
    ASSERT_EQ(s.ops[5].op, Surface_Op::Ellipse);
    EXPECT_NEAR(s.ops[5].args[2] - s.ops[5].args[0], 141, 1);
    EXPECT_NEAR(s.ops[5].args[3] - s.ops[5].args[1], 141, 1);
}

TEST(DrawAirspaces, ArcsRunCounterClockwiseOnTheSurfaceWithStartAndEndByDirection) {
    // Centre 0, 0; from 30 miles east (0.5 degrees) to 20 miles north (1/3 degree).
    const double east_lon = 0.5;
    const double north_lat = 1.0 / 3;
    struct Case {
        uint8_t kind;
        bool from_last;
    };
    const Case cases[] = {{Point_Arc_CCW, true}, {Point_Arc_CW, false}};
    for (const Case& c : cases) {
        Module1 m;
        Append(
            m.airspaces, m.airspace_count,
            Make_Airspace(Class_B, {Boundary(Point_Start, 0, east_lon), Boundary(Point_Fix, 0, 0),
                                    Boundary(c.kind, north_lat, 0), Boundary(Point_Line, 0, 0)}));
        Chart_View v = Area_View();
        Recording_Surface s;
        Draw_Airspaces(s, v, m);
        Pixel_Rec plast = Geo_To_Pixel(v, 0, east_lon);
        Pixel_Rec pthis = Geo_To_Pixel(v, north_lat, 0);
        Pixel_Rec start = c.from_last ? plast : pthis;
        Pixel_Rec end = c.from_last ? pthis : plast;
        // r1 30 and r2 20 miles: corners 42 and 28 miles out.
        std::string arc = Circle_Box(v, 0, 0, 42, 28, "Arc") + " " + std::to_string(start.x) + " " +
                          std::to_string(start.y) + " " + std::to_string(end.x) + " " +
                          std::to_string(end.y);
        const std::vector<std::string> expected = {
            Line_Op("MoveToEx", plast),  arc, Line_Op("MoveToEx", pthis), Geo_Op("LineTo", v, 0, 0),
            Geo_Op("MoveToEx", v, 0, 0),
        };
        EXPECT_EQ(Drawn_Ops(s), expected) << int(c.kind);
    }
}

TEST(DrawAirspaces, FixCarriesOverBetweenAirspacesAndLastPositionDoesNot) {
    Module1 m;
    // B sets the fix. D's own fix is never read, since D is passed over whole. C then
    // draws a circle about B's fix, and an arc that starts from 0, 0 for want of a start.
    Append(
        m.airspaces, m.airspace_count,
        Make_Airspace(Class_B, {Boundary(Point_Start, 0.5, 0.5), Boundary(Point_Fix, 0.2, 0.3)}));
    Append(m.airspaces, m.airspace_count,
           Make_Airspace("Airspace Class D", {Boundary(Point_Fix, -0.6, -0.6)}));
    Append(m.airspaces, m.airspace_count,
           Make_Airspace(Class_C,
                         {Boundary(Point_Circle, 0, 0, 5), Boundary(Point_Arc_CCW, 0.2, 0.4)}));
    Chart_View v = Area_View();
    Recording_Surface s;
    Draw_Airspaces(s, v, m);
    std::vector<std::string> drawn = Drawn_Ops(s);
    ASSERT_EQ(drawn.size(), 4u);
    EXPECT_EQ(drawn[0], Geo_Op("MoveToEx", v, 0.5, 0.5));
    EXPECT_EQ(drawn[1], Circle_Box(v, 0.2, 0.3, 5, 5));
    // r1 from the fix to 0, 0: 21.6 miles, so 22 and a corner 31 out; r2 6 miles, 8.
    int16_t r1 = Great_Circle_Distance(0.2, 0.3, 0, 0);
    EXPECT_EQ(r1, 22);
    Pixel_Rec origin = Geo_To_Pixel(v, 0, 0);
    Pixel_Rec pthis = Geo_To_Pixel(v, 0.2, 0.4);
    EXPECT_EQ(drawn[2], Circle_Box(v, 0.2, 0.3, 31, 8, "Arc") + " " + std::to_string(origin.x) +
                            " " + std::to_string(origin.y) + " " + std::to_string(pthis.x) + " " +
                            std::to_string(pthis.y));
    EXPECT_EQ(drawn[3], Line_Op("MoveToEx", pthis));
}

TEST(DrawAirspaces, LinesMoveThePenAndUnknownKindsAndOpenOutlinesAddNothing) {
    Module1 m;
    Append(m.airspaces, m.airspace_count,
           Make_Airspace(Class_B, {Boundary(Point_Start, 0.5, -0.5), Boundary(Point_Line, 0.5, 0.5),
                                   Boundary(9, 0.9, 0.9), Boundary(Point_Line, -0.5, 0.5)}));
    Chart_View v = Area_View();
    Recording_Surface s;
    Draw_Airspaces(s, v, m);
    const std::vector<std::string> expected = {
        Geo_Op("MoveToEx", v, 0.5, -0.5), Geo_Op("LineTo", v, 0.5, 0.5),
        Geo_Op("MoveToEx", v, 0.5, 0.5),  Geo_Op("LineTo", v, -0.5, 0.5),
        Geo_Op("MoveToEx", v, -0.5, 0.5),
    };
    EXPECT_EQ(Drawn_Ops(s), expected);
    std::vector<std::string> lines = Recorded_Op_Lines(s);
    EXPECT_EQ(std::vector<std::string>(lines.end() - 5, lines.end()), Final_State);
}
