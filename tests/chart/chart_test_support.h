// Helpers for the chart tests: building airports and airspaces in code, and reading a
// recorded drawing back as pen states and layers.
#pragma once

#include <string>
#include <vector>

#include "chart/chart_view.h"
#include "chart/recording_surface.h"
#include "state/module1.h"

namespace quilmark {

// The taxiway lists hold exactly their count.
template <class T> void Set_Exact(Dyn_Array<T>& list, int32_t& count, std::vector<T> items) {
    list.Allocate(items.size());
    list.items = std::move(items);
    count = static_cast<int32_t>(list.items.size());
}

inline Airspace_Rec Make_Airspace(const std::string& class_text,
                                  std::vector<Boundary_Point_Rec> points) {
    Airspace_Rec a;
    a.class_text = class_text;
    for (const Boundary_Point_Rec& p : points) {
        Append(a.points, a.point_count) = p;
    }
    return a;
}

// A view of the given extent in degrees about a centre, on a chart of the given size.
inline Chart_View Make_View(double center_lat, double center_lon, double width_deg,
                            double height_deg, int32_t px_width, int32_t px_height,
                            int16_t zoom = 9) {
    Chart_View v;
    v.view_left = center_lon - width_deg / 2;
    v.view_right = center_lon + width_deg / 2;
    v.view_top = center_lat + height_deg / 2;
    v.view_bottom = center_lat - height_deg / 2;
    v.chart_px_width = px_width;
    v.chart_px_height = px_height;
    v.zoom_level = zoom;
    return v;
}

// The pen and brush in force at an operation, by replaying the setters before it.
struct Pen_State_Rec {
    Rgb_Rec fore_color{};
    int32_t draw_width = -1;
    int32_t draw_style = -1;
    Rgb_Rec fill_color{};
    int32_t fill_style = -1;
    bool operator==(const Pen_State_Rec&) const = default;
};

inline Pen_State_Rec Pen_State_At(const Recording_Surface& s, size_t index) {
    Pen_State_Rec state;
    for (size_t i = 0; i < index && i < s.ops.size(); ++i) {
        const Surface_Op_Rec& op = s.ops[i];
        switch (op.op) {
        case Surface_Op::ForeColor:
            state.fore_color = op.color;
            break;
        case Surface_Op::DrawWidth:
            state.draw_width = op.args[0];
            break;
        case Surface_Op::DrawStyle:
            state.draw_style = op.args[0];
            break;
        case Surface_Op::FillColor:
            state.fill_color = op.color;
            break;
        case Surface_Op::FillStyle:
            state.fill_style = op.args[0];
            break;
        default:
            break;
        }
    }
    return state;
}

// The layers in the order they drew, each named once per run (told by the pen and brush
// it drew with), with the index of the first drawing operation of each run.
struct Layer_Run_Rec {
    std::string layer;
    size_t first_op = 0;
};

inline std::vector<Layer_Run_Rec> Layer_Runs(const Recording_Surface& s) {
    std::vector<Layer_Run_Rec> runs;
    for (size_t i = 0; i < s.ops.size(); ++i) {
        Surface_Op op = s.ops[i].op;
        if (op != Surface_Op::LineTo && op != Surface_Op::Ellipse && op != Surface_Op::Arc) {
            continue;
        }
        const Pen_State_Rec state = Pen_State_At(s, i);
        const Rgb_Rec c = state.fore_color;
        const std::string layer = c == Chart_Dark_Blue || c == Chart_Magenta ? "airspace"
                                  : c == Chart_Brown_Red                     ? "parkings"
                                  : c == Chart_Light_Grey                    ? "taxiways"
                                  : c == Chart_Yellow                        ? "ils"
                                  : c != Chart_Green                         ? "?"
                                  : state.fill_style == Fill_Style_Solid     ? "aircraft"
                                                                             : "runways";
        if (runs.empty() || runs.back().layer != layer) {
            runs.push_back({layer, i});
        }
    }
    return runs;
}

// The recorded calls on one line, separated by "; ".
inline std::string Ops(const Recording_Surface& s) {
    std::string text;
    for (const std::string& line : Recorded_Op_Lines(s)) {
        text += (text.empty() ? "" : "; ") + line;
    }
    return text;
}

// Formatted lines for the pixel arguments of a call, to compare whole call lists.
inline std::string Line_Op(const char* name, Pixel_Rec a) {
    return std::string(name) + " " + std::to_string(a.x) + " " + std::to_string(a.y);
}

} // namespace quilmark
