#include <gtest/gtest.h>

#include "chart/aircraft_overlay.h"
#include "chart/chart_draw.h"
#include "chart_test_support.h"

namespace {

// An airport with one of everything, a class B circle around it and the aircraft on
// final; every display flag on and the link open.
Module1 Full_Module() {
    Module1 m;
    Airport_Rec& a = m.current_airport;
    a.ident = "KTST";
    a.lat = 47.45;
    a.lon = -122.30;
    Runway_Rec rw;
    rw.end1_name = "16L";
    rw.end2_name = "34R";
    rw.end1_lat = 47.4638;
    rw.end1_lon = -122.3079;
    rw.end2_lat = 47.4316;
    rw.end2_lon = -122.3080;
    Append(a.runways, a.runway_count, rw);
    ILS_Rec ils;
    ils.lat = 47.4300;
    ils.lon = -122.3080;
    ils.mag_heading = 340;
    Append(a.ils, a.ils_count, ils);
    Set_Exact(a.taxi_points, a.taxi_point_count,
              {Taxi_Point_Rec{0, 47.445, -122.305}, Taxi_Point_Rec{0, 47.450, -122.305}});
    Set_Exact(a.parkings, a.parking_count, {Parking_Rec{"GATE A 1", 47.447, -122.302, 60}});
    Set_Exact(a.taxi_paths, a.taxi_path_count,
              {Taxi_Path_Rec{Path_Taxiway, 0, 1, "A"}, Taxi_Path_Rec{Path_Parking, 0, 0, ""}});
    Append(m.airspaces, m.airspace_count,
           Make_Airspace("Airspace Class B",
                         {Boundary(Point_Fix, 47.45, -122.30), Boundary(Point_Circle, 0, 0, 10)}));
    m.follow_aircraft = m.show_ils = m.show_taxiways = m.show_taxiway_ids = m.show_gates =
        m.show_airspace = true;
    m.fsuipc_connected = true;
    m.aircraft_lat = 47.40;
    m.aircraft_lon = -122.30;
    m.aircraft_heading = 160;
    return m;
}

Recording_Surface Redraw_At(Module1& m, int level) {
    Chart_View v;
    Open_Chart_View(v, m, 300, 250, nullptr);
    Zoom_To_Level(v, level);
    Recording_Surface s;
    Redraw_Chart(s, v, m);
    return s;
}

using Names = std::vector<std::string>;

} // namespace

TEST(DrawChart, LayersOfEachBandOfZoomLevelsInDrawingOrder) {
    struct Case {
        int level;
        Names layers;
    };
    const Names airport_band = {"airspace", "runways", "ils", "aircraft"};
    const Names ground_band = {"parkings", "taxiways", "runways", "ils", "aircraft"};
    const Case cases[] = {
        {1, {"airspace", "aircraft"}},
        {8, {"airspace", "aircraft"}},
        {9, airport_band},
        {12, airport_band},
        {13, ground_band},
        {20, ground_band},
    };
    for (const Case& c : cases) {
        Module1 m = Full_Module();
        Recording_Surface s = Redraw_At(m, c.level);
        EXPECT_EQ(Layer_Names(s), c.layers) << "level " << c.level;
        ASSERT_FALSE(s.ops.empty());
        EXPECT_EQ(s.ops.front().op, Surface_Op::Cls);
    }
}

TEST(DrawChart, DisplayFlagsAndEmptyListsDropTheirLayers) {
    struct Case {
        const char* what;
        int level;
        void (*change)(Module1&);
        Names layers;
    };
    const Case cases[] = {
        {"airspace off", 8, [](Module1& m) { m.show_airspace = false; }, {"aircraft"}},
        {"no airspace",
         9,
         [](Module1& m) { m.airspace_count = 0; },
         {"runways", "ils", "aircraft"}},
        {"ils off", 9, [](Module1& m) { m.show_ils = false; }, {"airspace", "runways", "aircraft"}},
        {"no ils",
         9,
         [](Module1& m) { m.current_airport.ils_count = 0; },
         {"airspace", "runways", "aircraft"}},
        {"gates off",
         13,
         [](Module1& m) { m.show_gates = false; },
         {"taxiways", "runways", "ils", "aircraft"}},
        {"taxiways off",
         13,
         [](Module1& m) { m.show_taxiways = false; },
         {"parkings", "runways", "ils", "aircraft"}},
        {"no runways",
         13,
         [](Module1& m) { m.current_airport.runway_count = 0; },
         {"parkings", "taxiways", "ils", "aircraft"}},
        {"link closed",
         9,
         [](Module1& m) { m.fsuipc_connected = false; },
         {"airspace", "runways", "ils"}},
        {"follow off",
         9,
         [](Module1& m) { m.follow_aircraft = false; },
         {"airspace", "runways", "ils", "aircraft"}},
    };
    for (const Case& c : cases) {
        Module1 m = Full_Module();
        Chart_View v;
        Open_Chart_View(v, m, 300, 250, nullptr);
        Zoom_To_Level(v, c.level);
        c.change(m);
        Recording_Surface s;
        Redraw_Chart(s, v, m);
        EXPECT_EQ(Layer_Names(s), c.layers) << c.what;
    }
}

TEST(DrawChart, PenAndBrushEachLayerStartsWith) {
    struct Case {
        int level;
        const char* layer;
        Pen_State_Rec state;
    };
    const Case cases[] = {
        {9, "airspace", {Chart_Dark_Blue, 1, Draw_Style_Dash, Chart_Dark_Blue, Fill_Style_Hollow}},
        {9, "runways", {Chart_Green, 2, Draw_Style_Solid, Chart_Black, Fill_Style_Hollow}},
        {9, "ils", {Chart_Yellow, 1, Draw_Style_Solid, Chart_Black, Fill_Style_Hollow}},
        {9, "aircraft", {Chart_Green, 1, Draw_Style_Solid, Chart_Green, Fill_Style_Solid}},
        {13, "parkings", {Chart_Brown_Red, 2, Draw_Style_Solid, Chart_Brown_Red, Fill_Style_Solid}},
        {13, "taxiways", {Chart_Light_Grey, 2, Draw_Style_Solid, Chart_Black, Fill_Style_Hollow}},
        {13, "runways", {Chart_Green, 2, Draw_Style_Solid, Chart_Black, Fill_Style_Hollow}},
        {13, "ils", {Chart_Yellow, 1, Draw_Style_Solid, Chart_Black, Fill_Style_Hollow}},
        {13, "aircraft", {Chart_Green, 1, Draw_Style_Solid, Chart_Green, Fill_Style_Solid}},
    };
    for (const Case& c : cases) {
        Module1 m = Full_Module();
        Recording_Surface s = Redraw_At(m, c.level);
        bool found = false;
        for (const Layer_Run_Rec& run : Layer_Runs(s)) {
            if (run.layer == c.layer) {
                EXPECT_EQ(Pen_State_At(s, run.first_op), c.state) << c.layer << " at " << c.level;
                found = true;
            }
        }
        EXPECT_TRUE(found) << c.layer << " at " << c.level;
    }
}

TEST(DrawChart, WithNothingToDrawSetsOnlyTheStepStates) {
    Module1 m;
    Chart_View v;
    Open_Chart_View(v, m, 271, 228, nullptr);
    Zoom_To_Level(v, 13);
    m.airspace_count = 0;
    Recording_Surface s;
    Redraw_Chart(s, v, m);
    const std::vector<std::string> expected = {
        "Cls",         "ForeColor 0 192 0", "DrawWidth 4", "DrawStyle 0",       "FillColor 0 0 0",
        "FillStyle 1", "DrawWidth 2",       "DrawStyle 0", "ForeColor 0 192 0", "DrawWidth 1",
        "DrawStyle 0", "FillColor 0 0 0",   "FillStyle 1", "ForeColor 0 192 0", "DrawWidth 1",
        "DrawStyle 0", "FillColor 0 0 0",   "FillStyle 1",
    };
    EXPECT_EQ(Recorded_Op_Lines(s), expected);
}

TEST(DrawChart, AircraftIsDrawnLastWithItsLabel) {
    Module1 m = Full_Module();
    Recording_Surface s = Redraw_At(m, 14);
    ASSERT_FALSE(s.ops.empty());
    EXPECT_EQ(s.ops.back().op, Surface_Op::TextOutA);
    EXPECT_EQ(s.ops.back().text, "Your Plane");
    EXPECT_EQ(Layer_Names(s).back(), "aircraft");
}
