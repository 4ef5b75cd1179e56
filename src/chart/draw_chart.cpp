#include "chart/aircraft_overlay.h"
#include "chart/chart_draw.h"
#include "state/module1.h"

namespace quilmark {

namespace {

// Zoom levels from which the airport itself is drawn, and from which its ground
// layout (parking, taxiways) replaces the airspace.
constexpr int16_t Airport_Zoom_Level = 9;
constexpr int16_t Ground_Zoom_Level = 13;

void Set_Pen_And_Brush(Surface& surface, Rgb_Rec fore_color, int32_t draw_width,
                       Rgb_Rec fill_color) {
    surface.Set_ForeColor(fore_color);
    surface.Set_DrawWidth(draw_width);
    surface.Set_DrawStyle(Draw_Style_Solid);
    surface.Set_FillColor(fill_color);
    surface.Set_FillStyle(Fill_Style_Hollow);
}

} // namespace

void Draw_Chart(Surface& surface, const Chart_View& view, const Module1& module) {
    const Airport_Rec& airport = module.current_airport;
    const int16_t zoom = view.zoom_level;

    Set_Pen_And_Brush(surface, Chart_Green, 4, Chart_Black);
    if (zoom < Ground_Zoom_Level && module.show_airspace && module.airspace_count >= 1) {
        Draw_Airspaces(surface, view, module);
    }

    // Runways, taxiways and parking outlines share this 2-pixel solid pen.
    surface.Set_DrawWidth(2);
    surface.Set_DrawStyle(Draw_Style_Solid);
    if (zoom >= Ground_Zoom_Level && module.show_gates && airport.parking_count > 0) {
        Draw_Parkings(surface, view, module);
    }
    if (zoom >= Ground_Zoom_Level && module.show_taxiways && airport.taxi_path_count > 0) {
        Draw_Taxi_Paths(surface, view, module);
    }
    if (zoom >= Airport_Zoom_Level) {
        Draw_Runways(surface, view, module);
    }

    Set_Pen_And_Brush(surface, Chart_Green, 1, Chart_Black);
    if (zoom >= Airport_Zoom_Level && module.show_ils && airport.ils_count > 0) {
        Draw_ILS(surface, view, module);
    }
    Set_Pen_And_Brush(surface, Chart_Green, 1, Chart_Black);
}

void Redraw_Chart(Surface& surface, const Chart_View& view, const Module1& module) {
    surface.Cls();
    Draw_Chart(surface, view, module);
    Draw_Aircraft(surface, view, module);
}

} // namespace quilmark
