#include "chart/qt_back_buffer.h"

#include <QPainter>
#include <algorithm>

#include "chart/chart_draw.h"

namespace quilmark {

void Redraw_Back_Buffer(QImage& back_buffer, Qt_Sprite_Cache& sprites, const Chart_View& view,
                        const Module1& module) {
    const int width = std::max(1, view.chart_px_width);
    const int height = std::max(1, view.chart_px_height);
    // The back buffer is drawn over in place while its size holds: Cls paints all of it.
    if (back_buffer.size() != QSize(width, height)) {
        back_buffer = QImage(width, height, QImage::Format_RGB32);
    }
    QPainter painter(&back_buffer);
    Qt_Surface surface(painter, width, height, &sprites);
    Redraw_Chart(surface, view, module);
}

} // namespace quilmark
