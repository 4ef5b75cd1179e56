#include "chart/chart_view.h"

#include <cmath>

#include "platform/rounding.h"
#include "state/module1.h"

namespace quilmark {

Pixel_Rec Geo_To_Pixel(const Chart_View& view, double lat, double lon) {
    Pixel_Rec p;
    p.x = To_I32((lon - view.view_left) / (view.view_right - view.view_left) * view.chart_px_width);
    p.y = To_I32((view.view_top - lat) / (view.view_top - view.view_bottom) * view.chart_px_height);
    return p;
}

int32_t Percent_To_Pixels(const Chart_View& view, float percent) {
    double whole = Round_Half_Even(percent);
    return To_I32(whole * view.chart_px_width / 100);
}

void Zoom_In_View(Chart_View& view) {
    if (view.zoom_level < 1 || view.zoom_level > 19) {
        return;
    }
    double dx = std::fabs(view.view_right - view.view_left) / 4;
    double dy = std::fabs(view.view_bottom - view.view_top) / 4;
    view.view_left += dx;
    view.view_right -= dx;
    view.view_top -= dy;
    view.view_bottom += dy;
    view.zoom_level += 1;
}

void Zoom_Out_View(Chart_View& view) {
    if (view.zoom_level < 2 || view.zoom_level > 20) {
        return;
    }
    double dx = std::fabs(view.view_right - view.view_left) / 2;
    double dy = std::fabs(view.view_bottom - view.view_top) / 2;
    view.view_left -= dx;
    view.view_right += dx;
    view.view_top += dy;
    view.view_bottom -= dy;
    view.zoom_level -= 1;
}

void Zoom_To_Level(Chart_View& view, int n) {
    int target = n < Min_Zoom_Level ? Min_Zoom_Level : n > Max_Zoom_Level ? Max_Zoom_Level : n;
    while (view.zoom_level != target) {
        int16_t before = view.zoom_level;
        if (view.zoom_level < target) {
            Zoom_In_View(view);
        } else {
            Zoom_Out_View(view);
        }
        if (view.zoom_level == before) {
            return; // a level outside 1..20 that neither step moves
        }
    }
}

void Center_View(Chart_View& view, double airpt_loc_x, double airpt_loc_y) {
    double hw = std::fabs(view.view_right - view.view_left) / 2;
    double hh = std::fabs(view.view_top - view.view_bottom) / 2;
    view.view_left = airpt_loc_x - hw;
    view.view_right = airpt_loc_x + hw;
    view.view_top = airpt_loc_y + hh;
    view.view_bottom = airpt_loc_y - hh;
}

void Center_Airport(Chart_View& view, double airpt_loc_x, double airpt_loc_y,
                    const Chart_Redraw& redraw) {
    Center_View(view, airpt_loc_x, airpt_loc_y);
    if (redraw) {
        redraw();
    }
}

void Open_Chart_View(Chart_View& view, Module1& module, int32_t width, int32_t height,
                     const Chart_Redraw& redraw) {
    view.chart_px_width = width;
    view.chart_px_height = height;
    // The whole world, a hair inside the poles and the date line.
    view.view_left = -179.9999;
    view.view_top = 89.9999;
    view.view_right = 179.9999;
    view.view_bottom = -89.9999;
    view.zoom_level = 1;
    double lon = module.current_airport.lon;
    double lat = module.current_airport.lat;
    Center_View(view, lon, lat);
    // The first redraw still shows the world at level 1, with the display flags as
    // they were before the chart opened.
    Center_Airport(view, lon, lat, redraw);
    for (int i = 1; i < Opening_Zoom_Level; ++i) {
        Zoom_In_View(view);
    }
    module.follow_aircraft = true;
    module.show_ils = true;
    module.show_taxiways = true;
    module.show_taxiway_ids = true;
    module.show_gates = true;
    module.show_airspace = true;
    module.altimeter_units = 1;
}

void Chart_Tick_Redraw(Chart_View& view, const Module1& module, const Chart_Redraw& redraw) {
    if (module.follow_aircraft && module.fsuipc_connected) {
        Center_Airport(view, module.aircraft_lon, module.aircraft_lat, redraw);
    } else if (redraw) {
        redraw();
    }
}

} // namespace quilmark
