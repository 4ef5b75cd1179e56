#include <gtest/gtest.h>

#include <map>

#include "chart/aircraft_overlay.h"
#include "chart/chart_draw.h"
#include "chart/chart_sequence.h"
#include "chart_test_support.h"

namespace quilmark {

namespace {

// An airport with one of everything, a class B circle around it and the aircraft on
// final; every display flag on and the link open.
Module1 Full_Module() {
    Module1 m;
    Airport_Rec& a = m.current_airport;
    a.lat = 47.45;
    a.lon = -122.30;
    Append(a.runways, a.runway_count) =
        Runway_Rec{"16L", "34R", 47.4638, -122.3079, 47.4316, -122.3080};
    Append(a.ils, a.ils_count) = ILS_Rec{"", 47.4300, -122.3080, 340, ""};
    Set_Exact(a.taxi_points, a.taxi_point_count, {{0, 47.445, -122.305}, {0, 47.450, -122.305}});
    Set_Exact(a.parkings, a.parking_count, {{"GATE A 1", 47.447, -122.302, 60}});
    Set_Exact(a.taxi_paths, a.taxi_path_count,
              {{Path_Taxiway, 0, 1, "A"}, {Path_Parking, 0, 0, ""}});
    Append(m.airspaces, m.airspace_count) =
        Make_Airspace("Airspace Class B", {{Point_Fix, 47.45, -122.30}, {Point_Circle, 0, 0, 10}});
    m.follow_aircraft = m.show_ils = m.show_taxiways = m.show_taxiway_ids = m.show_gates =
        m.show_airspace = true;
    m.fsuipc_connected = true;
    m.aircraft_lat = 47.40;
    m.aircraft_lon = -122.30;
    m.aircraft_heading = 160;
    return m;
}

// The pen and brush in force at a drawing operation.
struct Pen_State_Rec {
    Rgb_Rec fore_color{};
    int32_t draw_width = -1;
    int32_t draw_style = -1;
    Rgb_Rec fill_color{};
    int32_t fill_style = -1;
    bool operator==(const Pen_State_Rec&) const = default;
};

// The layers in the order they drew, each named once per run (told by the pen and brush
// it drew with), with the pen and brush its first drawing operation had.
struct Layer_Run_Rec {
    std::string layer;
    Pen_State_Rec pen;
};

std::vector<Layer_Run_Rec> Layer_Runs(const Recording_Surface& s) {
    std::vector<Layer_Run_Rec> runs;
    Pen_State_Rec pen;
    for (const Surface_Op_Rec& op : s.ops) {
        switch (op.op) {
        case Surface_Op::ForeColor:
            pen.fore_color = op.color;
            continue;
        case Surface_Op::DrawWidth:
            pen.draw_width = op.args[0];
            continue;
        case Surface_Op::DrawStyle:
            pen.draw_style = op.args[0];
            continue;
        case Surface_Op::FillColor:
            pen.fill_color = op.color;
            continue;
        case Surface_Op::FillStyle:
            pen.fill_style = op.args[0];
            continue;
        case Surface_Op::LineTo:
        case Surface_Op::Ellipse:
        case Surface_Op::Arc:
            break;
        default:
            continue;
        }
        const Rgb_Rec c = pen.fore_color;
        const std::string layer = c == Chart_Dark_Blue || c == Chart_Magenta ? "airspace"
                                  : c == Chart_Brown_Red                     ? "parkings"
                                  : c == Chart_Light_Grey                    ? "taxiways"
                                  : c == Chart_Yellow                        ? "ils"
                                  : c != Chart_Green                         ? "?"
                                  : pen.fill_style == Fill_Style_Solid       ? "aircraft"
                                                                             : "runways";
        if (runs.empty() || runs.back().layer != layer) {
            runs.push_back({layer, pen});
        }
    }
    return runs;
}

// The chart opened on m, at a level, then changed by change, then redrawn.
Recording_Surface Redraw_At(Module1& m, int level, void (*change)(Module1&) = nullptr) {
    Chart_View v;
    Open_Chart_View(v, m, 300, 250, nullptr);
    Zoom_To_Level(v, level);
    if (change != nullptr) {
        change(m);
    }
    Recording_Surface s;
    Redraw_Chart(s, v, m);
    return s;
}

} // namespace

// The layers of each band of zoom levels in drawing order, the aircraft last; display flags
// and empty lists drop their layers. Each layer starts with its own pen and brush.
TEST(DrawChart, LayersByZoomBandFlagsAndListsWithTheirPens) {
    struct Case {
        int level;
        void (*change)(Module1&);
        const char* layers;
    };
    using M = Module1;
    const Case cases[] = {
        {8, nullptr, "airspace aircraft"},
        {9, nullptr, "airspace runways ils aircraft"},
        {12, nullptr, "airspace runways ils aircraft"},
        {13, nullptr, "parkings taxiways runways ils aircraft"},
        {8, [](M& m) { m.show_airspace = false; }, "aircraft"},
        {9, [](M& m) { m.airspace_count = 0; }, "runways ils aircraft"},
        {9, [](M& m) { m.show_ils = false; }, "airspace runways aircraft"},
        {9, [](M& m) { m.current_airport.ils_count = 0; }, "airspace runways aircraft"},
        {13, [](M& m) { m.show_gates = false; }, "taxiways runways ils aircraft"},
        {13, [](M& m) { m.show_taxiways = false; }, "parkings runways ils aircraft"},
        {13, [](M& m) { m.current_airport.runway_count = 0; }, "parkings taxiways ils aircraft"},
        {9, [](M& m) { m.fsuipc_connected = false; }, "airspace runways ils"},
        {9, [](M& m) { m.follow_aircraft = false; }, "airspace runways ils aircraft"},
    };
    const std::map<std::string, Pen_State_Rec> pens = {
        {"airspace", {Chart_Dark_Blue, 1, Draw_Style_Dash, Chart_Dark_Blue, Fill_Style_Hollow}},
        {"runways", {Chart_Green, 2, Draw_Style_Solid, Chart_Black, Fill_Style_Hollow}},
        {"ils", {Chart_Yellow, 1, Draw_Style_Solid, Chart_Black, Fill_Style_Hollow}},
        {"aircraft", {Chart_Green, 1, Draw_Style_Solid, Chart_Green, Fill_Style_Solid}},
        {"parkings", {Chart_Brown_Red, 2, Draw_Style_Solid, Chart_Brown_Red, Fill_Style_Solid}},
        {"taxiways", {Chart_Light_Grey, 2, Draw_Style_Solid, Chart_Black, Fill_Style_Hollow}},
    };
    for (const Case& c : cases) {
        Module1 m = Full_Module();
        Recording_Surface s = Redraw_At(m, c.level, c.change);
        ASSERT_FALSE(s.ops.empty());
        EXPECT_EQ(s.ops.front().op, Surface_Op::Cls);
        std::string layers;
        for (const Layer_Run_Rec& run : Layer_Runs(s)) {
            layers += (layers.empty() ? "" : " ") + run.layer;
            EXPECT_EQ(run.pen, pens.at(run.layer)) << run.layer << " at " << c.level;
        }
        EXPECT_EQ(layers, c.layers) << "level " << c.level;
    }
}

} // namespace quilmark
