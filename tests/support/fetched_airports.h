// Airports of a simulator folder as the program fetches them, for the diagram's tests and
// pictures: the configuration written as the settings wizard writes it, a scan, and GET
// AIRPORT for each list entry in turn. Works in the current directory (a Work_Dir's).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "chart/trip_kit.h"
#include "geo/magnetic_variation.h"

namespace quilmark {

// Throws std::runtime_error when the folder can't be scanned or an entry isn't listed.
// The grid is the one the scan loaded.
// fs_version: the simulator the folder holds, as the wizard stores it.
std::vector<Kit_Airport_Rec> Fetch_Airports(const std::string& fs_path,
                                            const std::vector<std::string>& entries,
                                            Magvar_Grid& grid, uint8_t fs_version = 1);

} // namespace quilmark
