// The airport diagram drawn from the program's shared state: the chart window's second
// style and the command line's diagram take the chosen airport, its airspace, the
// variation grid, the display flags and the aircraft from the module, and keep a view of
// their own beside the classic chart's.
#pragma once

#include <cstdint>

#include "chart/diagram_records.h"

namespace quilmark {

struct Module1;

// The current airport with its filled airspace entries and the module's grid; the
// aircraft is shown while the simulator link is open.
Diagram_Source_Rec Module_Diagram_Source(const Module1& module);

// The module's display flags (the Preferences dialog's) as the diagram's options.
Diagram_Options_Rec Module_Diagram_Options(const Module1& module, bool night);

// What a tick of the chart's timer does to the diagram's view once the aircraft's values
// are in: with the link open and follow_aircraft on, the aircraft goes to the middle.
void Diagram_Tick(Diagram_View_Rec& view, const Module1& module);

// The view of a page of width by height pixels that shows the ground a window's view
// shows, as large as the page's room inside the frame allows, its middle in the middle
// of that room.
Diagram_View_Rec Diagram_Page_View(const Diagram_View_Rec& shown, int32_t width, int32_t height);

} // namespace quilmark
