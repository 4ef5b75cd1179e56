#include <QGuiApplication>
#include <iostream>
#include <memory>

#include "chart/qt_export.h"
#include "tool.h"

int main(int argc, char** argv) {
    using namespace quilmark;
    // Writing an image needs a Qt application for the labels' fonts; it is made only then,
    // on the offscreen platform unless QT_QPA_PLATFORM names another, and goes at the end.
    std::unique_ptr<QGuiApplication> application;
    auto need_application = [&application] {
        if (application == nullptr && QCoreApplication::instance() == nullptr) {
            if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
                qputenv("QT_QPA_PLATFORM", "offscreen");
            }
            static int application_argc = 1;
            static char name[] = "quilmark-tool";
            static char* application_argv[] = {name, nullptr};
            application = std::make_unique<QGuiApplication>(application_argc, application_argv);
        }
    };
    Set_Chart_Image_Writer([&need_application](const std::string& path, int32_t width,
                                               int32_t height,
                                               const std::function<void(Surface&)>& paint) {
        need_application();
        return Export_Chart_Image(path, width, height, paint);
    });
    Set_Trip_Kit_Writer([&need_application](const std::string& path,
                                            std::span<const Kit_Airport_Rec> airports,
                                            const Magvar_Grid& grid) {
        need_application();
        return Export_Trip_Kit(path, airports, grid);
    });
    std::vector<std::string> args(argv + 1, argv + argc);
    return Run_Tool(args, std::cout, std::cerr);
}
