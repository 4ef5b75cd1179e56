// quilmark-full-world OUT_FOLDER [SEED] [--factor N]: writes the full-size world, or one N
// times its size, and prints what it holds.
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "full_world.h"

int main(int argc, char** argv) {
    using namespace quilmark;
    std::vector<std::string> words;
    int factor = 1;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--factor" && i + 1 < argc) {
            factor = std::atoi(argv[++i]);
        } else {
            words.push_back(arg);
        }
    }
    if (words.empty() || words.size() > 2) {
        std::cerr << "usage: quilmark-full-world OUT_FOLDER [SEED] [--factor N]\n";
        return 2;
    }
    const uint64_t seed =
        words.size() == 2 ? std::strtoull(words[1].c_str(), nullptr, 10) : Full_World_Seed;
    Full_World_Summary s;
    std::string error;
    if (!Write_Full_World(words[0], seed, factor, s, error)) {
        std::cerr << "quilmark-full-world: " << error << "\n";
        return 1;
    }
    std::cout << "airports " << s.airports << " in " << s.airport_files << " files ("
              << s.airport_bytes << " bytes)\n"
              << "runways " << s.runways << ", ILS " << s.ils << ", comm records " << s.comm_records
              << "\n"
              << "ground networks " << s.airports_with_ground << ": " << s.taxi_paths << " paths, "
              << s.parking_spots << " parking spots; largest " << s.largest_paths << " paths, "
              << s.largest_spots << " spots\n"
              << "boundaries " << s.boundaries << " in " << s.atc_files << " files (" << s.atc_bytes
              << " bytes)\n";
    return 0;
}
