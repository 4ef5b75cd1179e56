// One redraw of the chart: which layers are drawn at which zoom level, in which order,
// with which pen and brush each one starts, and the layers themselves.
//
// The layers read current_airport, airspaces and the display flags of the module and
// draw through a Surface; every redraw is the same three steps (Cls, Draw_Chart,
// Draw_Aircraft) with no partial update. Nothing is culled: every record of a chosen
// layer is drawn, inside the view or not, and the surface clips.
#pragma once

#include "chart/chart_view.h"
#include "chart/surface.h"

namespace quilmark {

struct Module1;

// Cls, Draw_Chart, Draw_Aircraft. This is the redraw to hand to Open_Chart_View,
// Center_Airport and Chart_Tick_Redraw (wrapped in a lambda that captures the surface,
// the view and the module).
void Redraw_Chart(Surface& surface, const Chart_View& view, const Module1& module);

// The layers in three bands of zoom levels, bottom to top:
//   1 to 8:   airspace
//   9 to 12:  airspace, runways, ILS
//   13 to 20: parking and gates, taxiways, runways, ILS
// Airspace, parking, taxiways and ILS also need their display flag and a non-empty list.
// Leaves the pen solid, green and 1 pixel wide, the brush black and hollow.
void Draw_Chart(Surface& surface, const Chart_View& view, const Module1& module);

// Each runway as a line between its drawn ends, its end designators in black with their
// top left corners on the ends. Keeps the pen's width and style.
void Draw_Runways(Surface& surface, const Chart_View& view, const Module1& module);
// Each taxi path as a light grey line; taxiway segments (kind 0) with a label at their
// middle when show_taxiway_ids is on.
void Draw_Taxi_Paths(Surface& surface, const Chart_View& view, const Module1& module);
// Each parking spot as a brown-red disc of 1% of the chart's width and the label
// "Position: " plus its name at the centre.
void Draw_Parkings(Surface& surface, const Chart_View& view, const Module1& module);
// Each ILS as a yellow localizer feather: an open-mouthed triangle from the ILS position
// 1800 feet back along the approach, 10 degrees wide.
void Draw_ILS(Surface& surface, const Chart_View& view, const Module1& module);
// The outlines of the class B and class C airspaces, dashed. Leaves the pen solid, green
// and 2 pixels wide, the brush black and hollow.
void Draw_Airspaces(Surface& surface, const Chart_View& view, const Module1& module);
// The stored radius of every circle that Draw_Airspaces plays (those of the class B and
// class C airspaces) raised to 1 nautical mile where it is less: a circle is drawn at
// least that big, and its record says so from the chart's opening on.
void Raise_Circle_Radii(Module1& module);

} // namespace quilmark
