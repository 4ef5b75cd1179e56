// The colours and text sizes of the airport diagram, by day (a white chart as printed)
// and by night (a dark chart that keeps the eyes adapted in a dim cockpit).
#pragma once

#include "chart/surface.h"

namespace quilmark {

struct Diagram_Palette_Rec {
    Rgba_Rec background;
    Rgba_Rec runway;
    Rgba_Rec runway_marking; // centre line
    Rgba_Rec taxiway;
    Rgba_Rec taxiway_edge;
    Rgba_Rec parking_lane;
    Rgba_Rec gate_fill;
    Rgba_Rec gate_edge;
    Rgba_Rec gate_text; // a name inside a gate's circle
    Rgba_Rec parking_fill;
    Rgba_Rec parking_edge;
    Rgba_Rec ils;
    Rgba_Rec class_b;
    Rgba_Rec class_c;
    Rgba_Rec class_d;
    Rgba_Rec centre;
    Rgba_Rec terminal;
    Rgba_Rec other_airspace;
    uint8_t airspace_fill_alpha; // of the shading inside an outline
    Rgba_Rec text;
    Rgba_Rec muted_text; // lengths, tick labels, the legend
    Rgba_Rec halo;       // around text, the background's colour
    Rgba_Rec panel;      // the frame's panels, nearly opaque
    Rgba_Rec panel_edge;
    Rgba_Rec aircraft;
    Rgba_Rec aircraft_edge;
};

const Diagram_Palette_Rec& Diagram_Day_Palette();
const Diagram_Palette_Rec& Diagram_Night_Palette();

// Text sizes in pixels to the em, chosen to read at arm's length on a screen and on a
// kneeboard page.
constexpr double Runway_Number_Px = 14;
constexpr double Heading_Px = 10;
constexpr double Taxiway_Name_Px = 12;
constexpr double Spot_Name_Px = 10;
constexpr double Detail_Px = 10; // runway sizes, ILS, airspace
constexpr double Title_Px = 18;
constexpr double Subtitle_Px = 11;
constexpr double Panel_Px = 11;
constexpr double Tick_Px = 9;
constexpr double Kit_Heading_Px = 13;
constexpr double Kit_Text_Px = 11;
// The band of background colour around every label.
constexpr double Halo_Px = 1.5;

} // namespace quilmark
