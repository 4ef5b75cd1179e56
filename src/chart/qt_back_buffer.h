// The chart window's drawing: the whole chart redrawn into a back buffer, which the window
// shows until the next redraw.
#pragma once

#include <QImage>

#include "chart/chart_view.h"
#include "chart/qt_surface.h"

namespace quilmark {

struct Module1;

// Redraw_Chart into the back buffer, made anew only when the view's pixel size changes,
// with the sprites the window keeps between redraws.
void Redraw_Back_Buffer(QImage& back_buffer, Qt_Sprite_Cache& sprites, const Chart_View& view,
                        const Module1& module);

} // namespace quilmark
