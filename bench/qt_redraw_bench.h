// The chart redraw on the QPainter surface, for the bench tool; no Qt types here, so that
// the tool builds without Qt too.
#pragma once

#include "chart/chart_view.h"
#include "chart/diagram_layout.h"

namespace quilmark {

struct Module1;

// Starts the Qt application (offscreen platform unless QT_QPA_PLATFORM says otherwise)
// that fonts need; once per process.
void Start_Qt_For_Bench();

// Draws the chart as the chart window does, iterations times: a QPainter on a back
// buffer of the view's pixel size, Redraw_Chart through a Qt_Surface with a sprite cache.
// The window keeps its back buffer and sprites from one redraw to the next, so the timed
// redraws come after one untimed redraw that makes them; with first_redraw, each timed
// redraw starts with neither, as a window's first does. Returns the mean milliseconds of
// one redraw.
double Qt_Redraw_Ms(const Chart_View& view, const Module1& module, int iterations,
                    bool first_redraw);

// The airport diagram's redraw as a window would make it: Draw_Diagram (layout with label
// placement, then painting) through a Qt_Surface with a sprite cache on a QPainter over a
// back buffer of the view's size. Back buffer and sprites are kept from an untimed redraw
// before, or, with first_redraw, made anew for every timed redraw. Returns the mean
// milliseconds of one.
double Qt_Diagram_Redraw_Ms(const Diagram_Source_Rec& source, const Diagram_View_Rec& view,
                            int iterations, bool first_redraw);

} // namespace quilmark
