// The user's aircraft on the chart, and the altimeter setting shown above it: read from the
// simulator once a second, and drawn over the chart.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "chart/chart_view.h"
#include "chart/surface.h"
#include "link/fsuipc.h"

namespace quilmark {

struct Module1;

// A value of the simulator's that the chart reads: where it lies in the FSUIPC module's
// table, and how many bytes it takes.
struct Aircraft_Value_Rec {
    const char* name;
    int32_t offset;
    int32_t size;
};

// In the order the chart reads them. The latitude and longitude are the high halves of the
// simulator's 64-bit values; the heading is a fraction of the whole circle in 32 bits, as
// a longitude is; the altimeter is in sixteenths of a millibar.
constexpr std::array<Aircraft_Value_Rec, 4> Aircraft_Values = {{{"latitude", 0x0564, 4},
                                                                {"longitude", 0x056C, 4},
                                                                {"heading", 0x0580, 4},
                                                                {"altimeter", 0x0EC6, 2}}};

// Reads the value Aircraft_Values[index] in an exchange of its own (Link_Read, then
// Link_Process), keeps it in raw as the module gave it (the altimeter's 16 bits without
// sign), and stores it converted in module: aircraft_lat and aircraft_lon in degrees,
// aircraft_heading in whole degrees (negative past 180), altimeter_value in the module's
// altimeter_units. False, with result saying why, if either call fails; module is then
// unchanged.
bool Read_Aircraft_Value(Fsuipc_Rec& link, size_t index, Module1& module, int32_t& raw,
                         Link_Result& result);
// The four values in order, each stored as soon as it is in. The first that fails ends the
// reading (false); the values stored before it stay.
bool Read_Aircraft(Fsuipc_Rec& link, Module1& module, Link_Result& result);

// The altimeter setting from the simulator's raw value, in sixteenths of a millibar:
// whole millibars for units 0, inches of mercury to 2 decimals (33.86 millibars to the
// inch) for units 1. Halves go to the even neighbour. Any other units value is taken as
// millibars.
double Altimeter_Value(uint16_t raw, uint8_t altimeter_units);
// The label's text: "Altimeter: " and the shortest decimal form of the value, with no
// unit ("Altimeter: 1013", "Altimeter: 29.92", "Altimeter: 30.1").
std::string Altimeter_Text(double altimeter_value);

// With the link open, the aircraft as a green disc of 1% of the chart's width, a line
// to the point 500 feet ahead on its heading, and the text "Your Plane" at the disc's
// centre. Uses the pen that Draw_Chart left. Without the link it draws nothing.
void Draw_Aircraft(Surface& surface, const Chart_View& view, const Module1& module);

} // namespace quilmark
