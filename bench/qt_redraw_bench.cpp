#include "qt_redraw_bench.h"

#include <QGuiApplication>
#include <QImage>
#include <chrono>
#include <functional>

#include "chart/qt_back_buffer.h"
#include "chart/qt_surface.h"
#include "state/module1.h"

namespace quilmark {

void Start_Qt_For_Bench() {
    if (QCoreApplication::instance() != nullptr) {
        return;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    static int argc = 1;
    static char name[] = "quilmark-bench";
    static char* argv[] = {name, nullptr};
    new QGuiApplication(argc, argv); // lives until the process ends
}

namespace {

// What a chart window keeps from one redraw to the next: its back buffer and its sprites.
struct Window_State {
    QImage back_buffer;
    Qt_Sprite_Cache sprites;
};

// The mean milliseconds of one redraw, as the window makes them: after one untimed redraw
// that makes the window's state, or each from a fresh state.
double Mean_Redraw_Ms(int iterations, bool first_redraw,
                      const std::function<void(Window_State&)>& redraw) {
    Window_State kept;
    if (!first_redraw) {
        redraw(kept);
    }
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < iterations; ++i) {
        if (first_redraw) {
            Window_State fresh;
            redraw(fresh);
        } else {
            redraw(kept);
        }
    }
    const std::chrono::duration<double, std::milli> spent =
        std::chrono::steady_clock::now() - start;
    return spent.count() / iterations;
}

} // namespace

double Qt_Redraw_Ms(const Chart_View& view, const Module1& module, int iterations,
                    bool first_redraw) {
    return Mean_Redraw_Ms(iterations, first_redraw, [&](Window_State& window) {
        Redraw_Back_Buffer(window.back_buffer, window.sprites, view, module);
    });
}

double Qt_Diagram_Redraw_Ms(const Diagram_Source_Rec& source, const Diagram_View_Rec& view,
                            int iterations, bool first_redraw) {
    return Mean_Redraw_Ms(iterations, first_redraw, [&](Window_State& window) {
        if (window.back_buffer.size() != QSize(view.width, view.height)) {
            window.back_buffer = QImage(view.width, view.height, QImage::Format_RGB32);
        }
        QPainter painter(&window.back_buffer);
        Qt_Surface surface(painter, view.width, view.height, &window.sprites);
        Draw_Diagram(surface, source, view, Diagram_Options_Rec{});
    });
}

} // namespace quilmark
