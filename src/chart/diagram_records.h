// The records of the airport diagram's layout, and the texts it prints: what the layout
// is drawn from (Diagram_Source_Rec), what it makes (Diagram_Layout_Rec), and the small
// pieces the frame and the trip kit share with it.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "chart/diagram_view.h"
#include "chart/label_placement.h"
#include "chart/surface.h"
#include "geo/magnetic_variation.h"

namespace quilmark {

struct Airport_Rec;
struct Airspace_Rec;
struct Diagram_Palette_Rec;

// The user's aircraft: its position and true heading (whole degrees, negative past 180
// as the simulator gives it). Drawn only when shown.
struct Diagram_Aircraft_Rec {
    bool shown = false;
    double lat = 0;
    double lon = 0;
    int16_t heading = 0;
};

// What the diagram is drawn from.
struct Diagram_Source_Rec {
    const Airport_Rec& airport;
    std::span<const Airspace_Rec> airspaces; // the filled entries only
    const Magvar_Grid& grid;
    Diagram_Aircraft_Rec aircraft;
};

struct Diagram_Options_Rec {
    bool night = false;
    bool show_ils = true;
    bool show_taxiways = true;
    bool show_taxiway_ids = true;
    bool show_gates = true;
    bool show_airspace = true;
    bool show_frame = true; // title, frequencies, north arrow, scale, ticks, legend
};

// What a label names; it chooses the label's size and colour and its turn in placing.
enum class Label_Role : uint8_t {
    Runway_Number,
    Runway_Heading,
    Taxiway_Name,
    Gate_Name,
    Parking_Name,
    Gate_Name_Inside, // a name that fits inside its spot's circle
    Parking_Name_Inside,
    Runway_Size,
    ILS_Text,
    Airspace_Text,
    Title,
    Subtitle,
    Panel_Text,
    Tick_Text,
    Legend_Text,
    Scale_Text,
    Kit_Heading, // the trip kit's data page: a table's title, its column heads, its cells
    Kit_Column,
    Kit_Cell,
};

// One line of text, ready to draw: its box's middle, its turn and its words.
struct Diagram_Text_Rec {
    std::string text;
    Point_F_Rec centre;
    double angle_deg = 0;
    Label_Role role = Label_Role::Title;
};

struct Diagram_Runway_Rec {
    std::array<Point_F_Rec, 4> corners; // end 1 left, end 2 left, end 2 right, end 1 right
    Point_F_Rec threshold1;             // the middle of each end
    Point_F_Rec threshold2;
    double width_px = 0;
    double length_px = 0;
};

struct Diagram_Spot_Rec {
    Point_F_Rec centre;
    double radius_px = 0;
    bool gate = false;
};

// An ILS feather: a narrow arrow from the localizer's point back along the approach,
// one half filled and one half open, as on approach charts.
struct Diagram_Feather_Rec {
    Point_F_Rec apex;
    std::array<Point_F_Rec, 3> filled; // apex, one far corner, the notch on the axis
    std::array<Point_F_Rec, 3> open;   // apex, the notch, the other far corner
};

enum class Airspace_Style : uint8_t { Class_B, Class_C, Class_D, Centre, Terminal, Other };

// One figure of an airspace's outline, cut to a little beyond the view. Only the parts
// of the outline that can show are kept, as open lines: where the cut runs along the
// edge of the view, nothing is drawn.
struct Diagram_Airspace_Rec {
    Airspace_Style style = Airspace_Style::Other;
    std::vector<std::vector<Point_F_Rec>> outline;
    // The light shading along the inside of the outline: lines band_px wide, half that
    // inside the outline, in the same parts. Empty for the classes drawn without one.
    std::vector<std::vector<Point_F_Rec>> band;
    double band_px = 0;
};

// The scale bar: its left end, its drawn length and the distance that length stands for.
struct Diagram_Scale_Bar_Rec {
    Point_F_Rec start;
    double length_px = 0;
    double distance = 0;    // in unit
    std::string unit;       // "FT", "M", "NM" or "KM"
    double unit_metres = 0; // metres to one unit
    int divisions = 4;
};

struct Diagram_North_Arrow_Rec {
    Point_F_Rec base; // where both arrows start
    double length_px = 0;
    int variation = 0; // whole degrees, east positive
    Point_F_Rec true_tip;
    Point_F_Rec magnetic_tip;
};

// A panel of the frame: a filled rectangle behind its texts.
struct Diagram_Panel_Rec {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

// A legend row's symbol, drawn in a small box left of its text.
enum class Legend_Symbol : uint8_t {
    Runway,
    Taxiway,
    Gate,
    Parking,
    ILS,
    Class_B,
    Class_C,
    Class_D
};
struct Diagram_Legend_Row_Rec {
    Legend_Symbol symbol;
    Diagram_Panel_Rec swatch;
};

struct Diagram_Layout_Rec {
    Diagram_View_Rec view;
    bool night = false;
    std::vector<Diagram_Airspace_Rec> airspaces;
    std::vector<Point_F_Rec> parking_lanes; // pairs of ends
    std::vector<Point_F_Rec> taxiways;      // pairs of ends
    double parking_lane_px = 0;
    double taxiway_px = 0;
    std::vector<Diagram_Spot_Rec> spots;
    std::vector<Diagram_Runway_Rec> runways;
    std::vector<Diagram_Feather_Rec> feathers;
    std::vector<Point_F_Rec> aircraft; // the symbol's outline, empty when not shown
    // Frame.
    std::vector<Diagram_Panel_Rec> panels;
    std::vector<Point_F_Rec> ticks; // pairs of ends
    std::vector<Diagram_Legend_Row_Rec> legend;
    std::vector<Diagram_Scale_Bar_Rec> scale_bars;
    bool has_north_arrow = false;
    Diagram_North_Arrow_Rec north_arrow;
    // The chart's labels, and the frame's texts drawn over its panels, in the order they
    // are drawn; and the rooms the labels were given.
    std::vector<Diagram_Text_Rec> texts;
    std::vector<Diagram_Text_Rec> frame_texts;
    std::vector<Label_Box_Rec> label_boxes;
};

// The text size (pixels to the em) and weight of a role, and its whole style in a palette.
double Role_Size(Label_Role role);
bool Role_Bold(Label_Role role);
Text_Style_Rec Diagram_Text_Style(Label_Role role, const Diagram_Palette_Rec& palette);

// Texts of the diagram, also used by the trip kit's data page.
// A heading in whole degrees, folded into 0 to 359, as three digits and a degree sign
// (Windows-1252): -15 gives "345°", 360 gives "000°".
std::string Heading_Text(int heading);
// Feet with a thousands separator: 11901 gives "11,901".
std::string Feet_Text(int32_t feet);
// A runway's length by width in feet: "11,901 × 150" (Windows-1252 multiplication sign).
std::string Runway_Size_Text(int32_t length_ft, int32_t width_ft);
// A variation in whole degrees: "19°E", "3°W", "0°".
std::string Variation_Text(int variation);
// A frequency's text as a radio shows it, with at least one decimal: "118" gives
// "118.0", "121.75" stays.
std::string Frequency_Text(const std::string& mhz);
// An airspace's altitude band: "SFC-10000", "1300-4000".
std::string Band_Text(int32_t floor_alt, int32_t ceiling_alt);
// The frequencies of an airspace's freq_text ("119.2 Mhz  120 Mhz  "), as
// "119.2 120.0".
std::string Airspace_Frequencies(const std::string& freq_text);
// The highest runway elevation, the airport's field elevation; 0 without runways.
int32_t Field_Elevation(const Airport_Rec& airport);
// True for a gate: a spot whose name begins with "GATE".
bool Is_Gate(const std::string& spot_name);
// A spot's name as the diagram prints it: "GATE A 4" gives "A4", "GATE 12" gives "12",
// "N PARKING 3" gives "N PKG 3"; others as they are.
std::string Spot_Label(const std::string& spot_name);

} // namespace quilmark
