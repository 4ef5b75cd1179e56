#include <iostream>

#include "tool.h"

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    return Run_Tool(args, std::cout, std::cerr);
}
