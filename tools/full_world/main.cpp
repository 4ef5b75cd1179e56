// quilmark-full-world OUT_FOLDER [SEED]: writes the full-size world and prints what it holds.
#include <cstdlib>
#include <iostream>
#include <string>

#include "full_world.h"

int main(int argc, char** argv) {
    using namespace quilmark;
    if (argc != 2 && argc != 3) {
        std::cerr << "usage: quilmark-full-world OUT_FOLDER [SEED]\n";
        return 2;
    }
    const uint64_t seed = argc == 3 ? std::strtoull(argv[2], nullptr, 10) : Full_World_Seed;
    Full_World_Summary s;
    std::string error;
    if (!Write_Full_World(argv[1], seed, s, error)) {
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
