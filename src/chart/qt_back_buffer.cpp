#include "chart/qt_back_buffer.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "chart/chart_draw.h"
#include "chart/diagram_layout.h"

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

void Redraw_Diagram_Back_Buffer(QImage& back_buffer, Qt_Sprite_Cache& sprites,
                                const Diagram_Source_Rec& source, const Diagram_View_Rec& view,
                                const Diagram_Options_Rec& options, double pixel_ratio) {
    const int width = std::max(1, view.width);
    const int height = std::max(1, view.height);
    const double ratio = pixel_ratio > 0 ? pixel_ratio : 1;
    const QSize device(static_cast<int>(std::ceil(width * ratio)),
                       static_cast<int>(std::ceil(height * ratio)));
    // The diagram paints its whole background, so the buffer is drawn over in place.
    if (back_buffer.size() != device || back_buffer.devicePixelRatio() != ratio) {
        back_buffer = QImage(device, QImage::Format_RGB32);
        back_buffer.setDevicePixelRatio(ratio);
    }
    QPainter painter(&back_buffer);
    painter.setRenderHint(QPainter::TextAntialiasing);
    Qt_Surface surface(painter, width, height, &sprites);
    Draw_Diagram(surface, source, view, options);
}

} // namespace quilmark
