#include "qt_redraw_bench.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <chrono>

#include "chart/chart_draw.h"
#include "chart/qt_surface.h"
#include "shell/module1.h"

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

double Qt_Redraw_Ms(const Chart_View& view, Module1& module, int iterations) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < iterations; ++i) {
        QImage image(view.chart_px_width, view.chart_px_height, QImage::Format_RGB32);
        QPainter painter(&image);
        Qt_Surface surface(painter, view.chart_px_width, view.chart_px_height);
        Redraw_Chart(surface, view, module);
    }
    const std::chrono::duration<double, std::milli> spent =
        std::chrono::steady_clock::now() - start;
    return spent.count() / iterations;
}
