// magdec.bgl from memory: the grid position at 110 and the grid behind it, as
// Load_Magdec reads a file, then the heading conversions over the grid it gave (the
// sanitizers watch every conversion of a grid value).
#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"
#include "geo/geodesy.h"
#include "scenery/magdec.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quilmark;
    static Bgl_Image image;
    static Magvar_Grid grid;
    grid.fill(0);
    Set_Bgl_Image(image, std::vector<uint8_t>(data, data + size));
    const int32_t grid_position = Read_Int32(image, 110);
    if (grid_position > 0) {
        Read_Magvar_Grid(image, grid, grid_position);
    }
    Fuzz_Check(grid[Magvar_Grid_Size - 1] == 0, "the slot above the grid stays 0");

    // Corners and edges of the grid, both signs of the date line, a position off the world.
    const double positions[][2] = {{-90, 0},     {90, 359.4}, {0, -180},      {0, 180},
                                   {47.5, -0.4}, {-0.5, 0.5}, {89.5, -179.5}, {1e9, -1e9}};
    for (const auto& p : positions) {
        for (double heading : {0.0, 359.6, -720.0, 40000.0}) {
            const int16_t magnetic = True_To_Magnetic(grid, heading, p[0], p[1]);
            (void)Magnetic_To_True(grid, magnetic, p[0], p[1]);
        }
        (void)Great_Circle_Bearing(grid, p[0], p[1], 47.45, -122.31);
    }
    return 0;
}
