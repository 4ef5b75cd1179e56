#include "chart/diagram_style.h"

namespace quilmark {

const Diagram_Palette_Rec& Diagram_Day_Palette() {
    static const Diagram_Palette_Rec palette{
        .background = {255, 255, 255, 255},
        .runway = {58, 58, 62, 255},
        .runway_marking = {255, 255, 255, 255},
        .taxiway = {196, 198, 202, 255},
        .taxiway_edge = {150, 152, 158, 255},
        .parking_lane = {214, 216, 220, 255},
        .gate_fill = {150, 70, 60, 255},
        .gate_edge = {100, 40, 34, 255},
        .gate_text = {255, 255, 255, 255},
        .parking_fill = {238, 214, 160, 255},
        .parking_edge = {160, 120, 50, 255},
        .ils = {0, 128, 72, 255},
        .class_b = {0, 60, 200, 255},
        .class_c = {200, 0, 170, 255},
        .class_d = {0, 60, 200, 255},
        .centre = {128, 128, 128, 255},
        .terminal = {0, 140, 150, 255},
        .other_airspace = {160, 100, 0, 255},
        .airspace_fill_alpha = 40,
        .text = {20, 20, 24, 255},
        .muted_text = {70, 70, 78, 255},
        .halo = {255, 255, 255, 255},
        .panel = {255, 255, 255, 235},
        .panel_edge = {90, 90, 96, 255},
        .aircraft = {0, 170, 0, 255},
        .aircraft_edge = {0, 70, 0, 255},
    };
    return palette;
}

const Diagram_Palette_Rec& Diagram_Night_Palette() {
    static const Diagram_Palette_Rec palette{
        .background = {16, 20, 28, 255},
        .runway = {150, 152, 160, 255},
        .runway_marking = {40, 44, 52, 255},
        .taxiway = {64, 70, 82, 255},
        .taxiway_edge = {96, 104, 118, 255},
        .parking_lane = {48, 54, 64, 255},
        .gate_fill = {205, 120, 100, 255},
        .gate_edge = {240, 170, 150, 255},
        .gate_text = {16, 20, 28, 255},
        .parking_fill = {90, 76, 50, 255},
        .parking_edge = {210, 175, 110, 255},
        .ils = {90, 210, 140, 255},
        .class_b = {100, 150, 255, 255},
        .class_c = {235, 100, 225, 255},
        .class_d = {100, 150, 255, 255},
        .centre = {150, 150, 156, 255},
        .terminal = {70, 200, 205, 255},
        .other_airspace = {220, 160, 60, 255},
        .airspace_fill_alpha = 50,
        .text = {228, 230, 236, 255},
        .muted_text = {170, 174, 184, 255},
        .halo = {16, 20, 28, 255},
        .panel = {26, 31, 42, 240},
        .panel_edge = {120, 126, 140, 255},
        .aircraft = {80, 235, 80, 255},
        .aircraft_edge = {16, 20, 28, 255},
    };
    return palette;
}

} // namespace quilmark
