#include "chart/diagram_session.h"

#include <algorithm>

#include "chart/chart_records.h"
#include "chart/diagram_frame.h"
#include "state/module1.h"

namespace quilmark {

Diagram_Source_Rec Module_Diagram_Source(const Module1& module) {
    Diagram_Aircraft_Rec aircraft;
    aircraft.shown = module.fsuipc_connected;
    aircraft.lat = module.aircraft_lat;
    aircraft.lon = module.aircraft_lon;
    aircraft.heading = module.aircraft_heading;
    return {module.current_airport, Filled_Span(module.airspaces, module.airspace_count),
            module.magvar_grid, aircraft};
}

Diagram_Options_Rec Module_Diagram_Options(const Module1& module, bool night) {
    Diagram_Options_Rec options;
    options.night = night;
    options.show_ils = module.show_ils;
    options.show_taxiways = module.show_taxiways;
    options.show_taxiway_ids = module.show_taxiway_ids;
    options.show_gates = module.show_gates;
    options.show_airspace = module.show_airspace;
    return options;
}

void Diagram_Tick(Diagram_View_Rec& view, const Module1& module) {
    if (module.fsuipc_connected && module.follow_aircraft) {
        Center_Diagram(view, module.aircraft_lat, module.aircraft_lon);
    }
}

Diagram_View_Rec Diagram_Page_View(const Diagram_View_Rec& shown, int32_t width, int32_t height) {
    const Diagram_Insets_Rec insets = Diagram_Frame_Insets(width, height);
    const double room_x = std::max(1.0, width - insets.left - insets.right);
    const double room_y = std::max(1.0, height - insets.top - insets.bottom);
    const double ground_x = std::max(1, shown.width) / shown.px_per_metre;
    const double ground_y = std::max(1, shown.height) / shown.px_per_metre;
    Diagram_View_Rec page = shown;
    page.width = width;
    page.height = height;
    page.px_per_metre = std::clamp(std::min(room_x / ground_x, room_y / ground_y), Min_Px_Per_Metre,
                                   Max_Px_Per_Metre);
    // The shown middle to the middle of the room inside the frame.
    Pan_Diagram(page, (insets.left - insets.right) / 2, (insets.top - insets.bottom) / 2);
    return page;
}

} // namespace quilmark
