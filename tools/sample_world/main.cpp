#include <iostream>

#include "world_writer.h"

int main(int argc, char** argv) {
    using namespace quilmark;
    if (argc != 3) {
        std::cerr << "usage: quilmark-sample-world DESCRIPTION OUT_FOLDER\n";
        return 2;
    }
    std::string error;
    if (!Write_Sample_World(argv[1], argv[2], error)) {
        std::cerr << "quilmark-sample-world: " << error << "\n";
        return 1;
    }
    return 0;
}
