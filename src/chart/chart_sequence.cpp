#include "chart/chart_sequence.h"

#include "chart/chart_draw.h"
#include "state/module1.h"

namespace quilmark {

void Open_Chart_View(Chart_View& view, Module1& module, int32_t width, int32_t height,
                     const Chart_Redraw& redraw) {
    Raise_Circle_Radii(module);
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

void Chart_Tick_Redraw(const Module1& module, const Chart_Redraw& redraw,
                       const Chart_Center& center) {
    if (module.follow_aircraft && module.fsuipc_connected) {
        center(module.aircraft_lon, module.aircraft_lat);
    } else if (redraw) {
        redraw();
    }
}

} // namespace quilmark
