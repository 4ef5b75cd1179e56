// The simulator's table of magnetic variation, scenery\magdec.bgl: a BGL file whose header
// points at the grid of whole-degree variations.
#pragma once

#include <cstdint>
#include <string>

#include "bgl/bgl_image.h"
#include "geo/magnetic_variation.h"

namespace quilmark {

// Loads magdec.bgl (a native path) into the image and, if the file holds a grid, the
// grid from it. False if the file could not be read; the grid is then left as it was.
bool Load_Magdec(Bgl_Image& image, Magvar_Grid& grid, const std::string& native_path);
// Fills the grid from the image, the values starting 8 bytes behind grid_position.
void Read_Magvar_Grid(const Bgl_Image& image, Magvar_Grid& grid, int32_t grid_position);

} // namespace quilmark
