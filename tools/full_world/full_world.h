// A simulator folder of the size of the real world, for benchmarks: about 24,000 airports
// over the BGL files of several airport areas, a ground network at about one in ten, and
// about 5,000 airspace boundaries in the ATC folder. The same seed gives the same bytes.
// A size factor multiplies the airports of each region, and with them the files, the ground
// networks and the busy airports' airspace, and the other boundaries; the areas, the
// variation table and the largest airport stay as they are.
#pragma once

#include <cstdint>
#include <string>

namespace quilmark {

struct Full_World_Summary {
    int64_t airports = 0;
    int64_t runways = 0;
    int64_t ils = 0;
    int64_t comm_records = 0;
    int64_t airports_with_ground = 0;
    int64_t taxi_paths = 0;
    int64_t parking_spots = 0;
    int64_t largest_paths = 0; // the largest ground network
    int64_t largest_spots = 0;
    int64_t boundaries = 0;
    int64_t airport_files = 0;
    int64_t atc_files = 0;
    int64_t airport_bytes = 0;
    int64_t atc_bytes = 0;
};

// Writes scenery.cfg (CR LF), Scenery/magdec.bgl, the airport files below
// Scenery/<REGION>/scenery and the boundary files below Scenery/ATC/scenery into
// out_folder, at factor times the size of the full world (1 to Full_World_Max_Factor).
// False with a message in error if a file cannot be written.
bool Write_Full_World(const std::string& out_folder, uint64_t seed, int factor,
                      Full_World_Summary& summary, std::string& error);

// The seed the benchmarks use.
constexpr uint64_t Full_World_Seed = 20020101;
// Each copy of the world beyond the first takes idents of letters of its own.
constexpr int Full_World_Max_Factor = 5;

} // namespace quilmark
