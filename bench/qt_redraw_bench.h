// The chart redraw on the QPainter surface, for the bench tool; no Qt types here, so that
// the tool builds without Qt too.
#pragma once

#include "chart/chart_view.h"

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

} // namespace quilmark
