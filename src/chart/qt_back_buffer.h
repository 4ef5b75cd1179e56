// The chart window's drawing: the whole chart redrawn into a back buffer, which the window
// shows until the next redraw.
#pragma once

#include <QImage>

#include "chart/chart_view.h"
#include "chart/diagram_records.h"
#include "chart/qt_surface.h"

namespace quilmark {

struct Module1;

// Redraw_Chart into the back buffer, made anew only when the view's pixel size changes,
// with the sprites the window keeps between redraws.
void Redraw_Back_Buffer(QImage& back_buffer, Qt_Sprite_Cache& sprites, const Chart_View& view,
                        const Module1& module);

// The airport diagram into its back buffer, a view's size in units at pixel_ratio device
// pixels to a unit (2 on a high-density screen), so that lines and text are drawn at the
// screen's own resolution. The buffer is made anew only when its size changes.
void Redraw_Diagram_Back_Buffer(QImage& back_buffer, Qt_Sprite_Cache& sprites,
                                const Diagram_Source_Rec& source, const Diagram_View_Rec& view,
                                const Diagram_Options_Rec& options, double pixel_ratio);

} // namespace quilmark
