// What the benchmarks need to know of a simulator folder: the files each long operation
// reads, found as the program finds them, and the airport whose chart costs the most.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/dyn_array.h"
#include "state/airport_model.h"

namespace quilmark {

struct World_Files {
    std::vector<std::string> airport_files; // the airport areas' BGL files
    std::vector<std::string> atc_files;
    std::string scenery_cfg;
    std::string magdec;
};

// The files of the simulator folder at fs_path (a native absolute path).
World_Files Find_World_Files(const std::string& fs_path);

// The same for an FS2004 folder: every BGL file of the active areas as airport files (the
// scan reads them all), the boundary files among them as ATC files.
World_Files Find_Fs2004_World_Files(const std::string& fs_path);

// The index of the airport with the most taxi paths among the first count.
size_t Largest_Airport_Index(const Dyn_Array<Airport_Rec>& airports, int32_t count);

} // namespace quilmark
