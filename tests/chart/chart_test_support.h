// Helpers for the chart tests: building airports, airspaces and views in code, and
// reading a recorded drawing back as text.
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
