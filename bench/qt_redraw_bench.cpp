#include "qt_redraw_bench.h"

#include <QGuiApplication>
#include <QImage>
#include <chrono>

#include "chart/qt_back_buffer.h"
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

void Redraw_Once(const Chart_View& view, const Module1& module, Window_State& window) {
    Redraw_Back_Buffer(window.back_buffer, window.sprites, view, module);
}

} // namespace

double Qt_Redraw_Ms(const Chart_View& view, const Module1& module, int iterations,
                    bool first_redraw) {
    Window_State kept;
    if (!first_redraw) {
        Redraw_Once(view, module, kept);
    }
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < iterations; ++i) {
        if (first_redraw) {
            Window_State fresh;
            Redraw_Once(view, module, fresh);
        } else {
            Redraw_Once(view, module, kept);
        }
    }
    const std::chrono::duration<double, std::milli> spent =
        std::chrono::steady_clock::now() - start;
    return spent.count() / iterations;
}

} // namespace quilmark
