// The chart redraw on the QPainter surface, for the bench tool; no Qt types here, so that
// the tool builds without Qt too.
#pragma once

#include "chart/chart_view.h"

struct Module1;

// Starts the Qt application (offscreen platform unless QT_QPA_PLATFORM says otherwise)
// that fonts need; once per process.
void Start_Qt_For_Bench();

// Draws the chart as the chart window does, iterations times: a fresh QImage of the view's
// pixel size, a QPainter on it, Redraw_Chart through a Qt_Surface. Returns the mean
// milliseconds of one redraw.
double Qt_Redraw_Ms(const Chart_View& view, Module1& module, int iterations);
