#include <gtest/gtest.h>

#include "chart/chart_draw.h"
#include "chart_test_support.h"
#include "geo/geodesy.h"

namespace quilmark {

namespace {

const char* const Class_B = "Airspace Class B";
const char* const Class_C = "Airspace Class C";

// 2 degrees square about 0, 0 on 1000 pixels: one nautical mile is about 8.3 pixels.
const Chart_View Area_View = Make_View(0, 0, 2, 2, 1000, 1000, 9);

std::string Geo_Op(const char* name, double lat, double lon) {
    return Line_Op(name, Geo_To_Pixel(Area_View, lat, lon));
}

// The box of a circle about the centre whose corners lie nw_nm and se_nm out along the
// diagonals, and for an arc its start and end.
std::string Circle_Box(double lat, double lon, int16_t nw_nm, int16_t se_nm,
                       const char* name = "Ellipse", std::vector<Pixel_Rec> ends = {}) {
    Geo_Point_Rec nw = Great_Circle_Destination(lat, lon, 315, nw_nm);
    Geo_Point_Rec se = Great_Circle_Destination(lat, lon, 135, se_nm);
    std::string op = Line_Op(name, Geo_To_Pixel(Area_View, nw.lat, nw.lon)) +
                     Line_Op("", Geo_To_Pixel(Area_View, se.lat, se.lon));
    for (Pixel_Rec p : ends) {
        op += Line_Op("", p);
    }
    return op;
}

const std::vector<std::string> Final_State = {"ForeColor 0 192 0", "FillColor 0 0 0", "FillStyle 1",
                                              "DrawWidth 2", "DrawStyle 0"};

// The airspace layer drawn for the given airspaces, with the circles raised as the chart's
// opening raises them.
struct Drawing {
    Module1 m;
    Recording_Surface s;
    explicit Drawing(std::vector<Airspace_Rec> airspaces) {
        for (Airspace_Rec& a : airspaces) {
            Append(m.airspaces, m.airspace_count) = std::move(a);
        }
        Raise_Circle_Radii(m);
        Draw_Airspaces(s, Area_View, m);
    }
    // The calls that draw, without the pen's.
    std::vector<std::string> Shapes() const {
        std::vector<std::string> lines;
        for (const Surface_Op_Rec& op : s.ops) {
            if (op.op == Surface_Op::MoveToEx || op.op == Surface_Op::LineTo ||
                op.op == Surface_Op::Ellipse || op.op == Surface_Op::Arc) {
                lines.push_back(Format_Surface_Op(op));
            }
        }
        return lines;
    }
};

} // namespace

TEST(DrawAirspaces, OnlyClassBAndCAreDrawnEachWithItsDashedPen) {
    const std::pair<const char*, const char*> cases[] = {
        {Class_B, "ForeColor 0 0 192|FillColor 0 0 192"},
        {Class_C, "ForeColor 255 0 255|FillColor 255 0 255"},
        {"Airspace Class D", ""},
        {"airspace class b", ""},
    };
    for (const auto& [class_text, colours] : cases) {
        Drawing d({Make_Airspace(class_text, {})}); // no outline: only the pen is set
        std::vector<std::string> expected;
        if (*colours != '\0') {
            std::string c = colours;
            expected = {c.substr(0, c.find('|')), c.substr(c.find('|') + 1), "DrawWidth 1",
                        "DrawStyle 1", "FillStyle 1"};
        }
        expected.insert(expected.end(), Final_State.begin(), Final_State.end());
        EXPECT_EQ(Recorded_Op_Lines(d.s), expected) << class_text;
    }
}

TEST(DrawAirspaces, CircleBoxFromTheRadiusAlongTheDiagonalsAndRadiusRaisedToOne) {
    for (auto [radius, stored] : {std::pair{0, 1}, {-4, 1}, {12, 12}}) {
        Drawing d({Make_Airspace(Class_C, {{Point_Fix, 0.1, -0.2}, {Point_Circle, 0, 0, radius}}),
                   Make_Airspace("Airspace Class D", {{Point_Circle, 0, 0, radius}})});
        EXPECT_EQ(d.m.airspaces[0].points[1].radius, stored);
        EXPECT_EQ(d.m.airspaces[1].points[0].radius, radius); // not drawn, not raised
        auto r = static_cast<int16_t>(stored);
        EXPECT_EQ(d.Shapes(), std::vector<std::string>{Circle_Box(0.1, -0.2, r, r)});
    }
    // The box of a 12-mile radius is 2 * 12 / sqrt(2) miles across, about 141 pixels.
    Drawing d({Make_Airspace(Class_B, {{Point_Fix, 0, 0}, {Point_Circle, 0, 0, 12}})});
    const Surface_Op_Rec& box = d.s.ops[5];
    ASSERT_EQ(box.op, Surface_Op::Ellipse);
    EXPECT_NEAR(box.args[2] - box.args[0], 141, 1);
    EXPECT_NEAR(box.args[3] - box.args[1], 141, 1);
}

TEST(DrawAirspaces, ArcsRunCounterClockwiseOnTheSurfaceWithStartAndEndByDirection) {
    // Centre 0, 0; from 30 miles east (0.5 degrees) to 20 miles north (1/3 degree).
    const double east_lon = 0.5;
    const double north_lat = 1.0 / 3;
    for (uint8_t kind : {Point_Arc_CCW, Point_Arc_CW}) {
        Pixel_Rec last = Geo_To_Pixel(Area_View, 0, east_lon);
        Pixel_Rec here = Geo_To_Pixel(Area_View, north_lat, 0);
        // r1 30 and r2 20 miles: corners 42 and 28 miles out. A counter-clockwise arc runs
        // from the last point, a clockwise one towards it.
        std::vector<Pixel_Rec> ends = {last, here};
        if (kind == Point_Arc_CW) {
            std::swap(ends[0], ends[1]);
        }
        const std::vector<std::string> expected = {
            Line_Op("MoveToEx", last), Circle_Box(0, 0, 42, 28, "Arc", ends),
            Line_Op("MoveToEx", here), Geo_Op("LineTo", 0, 0), Geo_Op("MoveToEx", 0, 0)};
        Drawing d({Make_Airspace(Class_B, {{Point_Start, 0, east_lon},
                                           {Point_Fix, 0, 0},
                                           {kind, north_lat, 0},
                                           {Point_Line, 0, 0}})});
        EXPECT_EQ(d.Shapes(), expected) << int(kind);
    }
}

TEST(DrawAirspaces, FixCarriesOverBetweenAirspacesAndLastPositionDoesNot) {
    // B sets the fix. D's own fix is never read, since D is passed over whole. C then
    // draws a circle about B's fix, and an arc that starts from 0, 0 for want of a start.
    // r1 from the fix to 0, 0 is 21.6 miles, so 22 and a corner 31 out; r2 6 miles, 8.
    EXPECT_EQ(Great_Circle_Distance(0.2, 0.3, 0, 0), 22);
    Pixel_Rec here = Geo_To_Pixel(Area_View, 0.2, 0.4);
    const std::vector<std::string> expected = {
        Geo_Op("MoveToEx", 0.5, 0.5),
        Circle_Box(0.2, 0.3, 5, 5),
        Circle_Box(0.2, 0.3, 31, 8, "Arc", {Geo_To_Pixel(Area_View, 0, 0), here}),
        Line_Op("MoveToEx", here),
    };
    Drawing d({
        Make_Airspace(Class_B, {{Point_Start, 0.5, 0.5}, {Point_Fix, 0.2, 0.3}}),
        Make_Airspace("Airspace Class D", {{Point_Fix, -0.6, -0.6}}),
        Make_Airspace(Class_C, {{Point_Circle, 0, 0, 5}, {Point_Arc_CCW, 0.2, 0.4}}),
    });
    EXPECT_EQ(d.Shapes(), expected);
}

TEST(DrawAirspaces, LinesMoveThePenAndUnknownKindsAndOpenOutlinesAddNothing) {
    const std::vector<std::string> expected = {
        Geo_Op("MoveToEx", 0.5, -0.5), Geo_Op("LineTo", 0.5, 0.5),    Geo_Op("MoveToEx", 0.5, 0.5),
        Geo_Op("LineTo", -0.5, 0.5),   Geo_Op("MoveToEx", -0.5, 0.5),
    };
    Drawing d({Make_Airspace(Class_B, {{Point_Start, 0.5, -0.5},
                                       {Point_Line, 0.5, 0.5},
                                       {9, 0.9, 0.9},
                                       {Point_Line, -0.5, 0.5}})});
    EXPECT_EQ(d.Shapes(), expected);
    std::vector<std::string> lines = Recorded_Op_Lines(d.s);
    EXPECT_EQ(std::vector<std::string>(lines.end() - 5, lines.end()), Final_State);
}

} // namespace quilmark
