// The user's aircraft on the chart, and the altimeter setting shown above it.
#pragma once

#include <cstdint>
#include <string>

#include "chart/chart_view.h"
#include "chart/surface.h"

namespace quilmark {

struct Module1;

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
