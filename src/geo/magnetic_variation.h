// Magnetic variation, and headings between true and magnetic. The simulator's table gives
// the variation by whole degrees of latitude and longitude; loading it from magdec.bgl is
// the scenery scan's work.
#pragma once

#include <array>
#include <cstdint>

namespace quilmark {

// Magnetic variation by whole degrees: index 181 * longitude index (0..359, east of
// Greenwich) + latitude + 90. One count is 360/65536 degrees. Index 65160 stays 0.
constexpr int Magvar_Grid_Size = 65161;
using Magvar_Grid = std::array<int16_t, Magvar_Grid_Size>;

// Whole-degree variation at a position: the grid value in degrees, cut toward 0.
int Variation_Degrees(const Magvar_Grid& grid, double lat, double lon);
int16_t True_To_Magnetic(const Magvar_Grid& grid, double heading, double lat, double lon);
int16_t Magnetic_To_True(const Magvar_Grid& grid, double heading, double lat, double lon);
// One fold at most: above 360 loses 360, then below 0 gains 360. 360 stays 360.
int16_t Normalize_Degrees(int16_t h);

} // namespace quilmark
