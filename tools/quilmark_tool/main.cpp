#include <iostream>

#include "chart/qt_export.h"
#include "tool.h"

int main(int argc, char** argv) {
    using namespace quilmark;
    Set_Chart_Image_Writer(Export_Chart_Image);
    std::vector<std::string> args(argv + 1, argv + argc);
    return Run_Tool(args, std::cout, std::cerr);
}
