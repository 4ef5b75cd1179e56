// The simulator's table of magnetic variation (scenery\magdec.bgl) and the conversions
// between true and magnetic headings.
#pragma once

#include <cstdint>
#include <string>

#include "bgl/bgl_image.h"
#include "scenery/magvar_grid.h"

// Loads magdec.bgl (a native path) into the image and, if the file holds a grid, the
// grid from it. False if the file could not be read; the grid is then left as it was.

namespace quilmark {

bool Load_Magdec(Bgl_Image& image, Magvar_Grid& grid, const std::string& native_path);
// Fills the grid from the image, the values starting 8 bytes behind grid_position.
void Read_Magvar_Grid(const Bgl_Image& image, Magvar_Grid& grid, int32_t grid_position);

// Whole-degree variation at a position: the grid value in degrees, cut toward 0.
int Variation_Degrees(const Magvar_Grid& grid, double lat, double lon);
int16_t True_To_Magnetic(const Magvar_Grid& grid, double heading, double lat, double lon);
int16_t Magnetic_To_True(const Magvar_Grid& grid, double heading, double lat, double lon);
// One fold at most: above 360 loses 360, then below 0 gains 360. 360 stays 360.
int16_t Normalize_Degrees(int16_t h);

} // namespace quilmark
