#include <iostream>
#include <string>

#include "fs2004_world.h"
#include "world_writer.h"

int main(int argc, char** argv) {
    using namespace quilmark;
    const bool fs2004 = argc == 4 && std::string(argv[1]) == "--fs2004";
    if (argc != 3 && !fs2004) {
        std::cerr << "usage: quilmark-sample-world [--fs2004] DESCRIPTION OUT_FOLDER\n";
        return 2;
    }
    std::string error;
    const bool written = fs2004 ? Write_Fs2004_Sample_World(argv[2], argv[3], error)
                                : Write_Sample_World(argv[1], argv[2], error);
    if (!written) {
        std::cerr << "quilmark-sample-world: " << error << "\n";
        return 1;
    }
    return 0;
}
