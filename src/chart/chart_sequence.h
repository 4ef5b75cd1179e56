// The chart form's two sequences, without the form: its opening and the tick of its timer.
// The window runs them with its own redraw; the command-line tool and the tests with
// theirs.
#pragma once

#include <cstdint>
#include <functional>

#include "chart/chart_view.h"

namespace quilmark {

struct Module1;

// Centres the chart on a point and redraws, as Center_Airport does (a window also stops
// its timer around it).
using Chart_Center = std::function<void(double airpt_loc_x, double airpt_loc_y)>;

// The view part of opening the chart: raise the radius of the airspace circles the chart
// draws to at least 1 (Raise_Circle_Radii), size the chart, take the whole world at level
// 1, centre it on current_airport, redraw once at level 1, zoom in eight times without a
// redraw (to level 9), then set all six display flags of the module on and the altimeter
// to inches of mercury. The link and the form's caption are the caller's;
// so is the timer, whose first tick shows the chart at level 9.
void Open_Chart_View(Chart_View& view, Module1& module, int32_t width, int32_t height,
                     const Chart_Redraw& redraw);

// What a tick of the chart's timer draws once the aircraft's values are in: with the
// link open and follow_aircraft on, centre on the aircraft (which redraws); otherwise
// just redraw.
void Chart_Tick_Redraw(const Module1& module, const Chart_Redraw& redraw,
                       const Chart_Center& center);

} // namespace quilmark
