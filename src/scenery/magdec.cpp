#include "scenery/magdec.h"

namespace quilmark {

bool Load_Magdec(Bgl_Image& image, Magvar_Grid& grid, const std::string& native_path) {
    if (!Load_Bgl_Image(image, native_path)) {
        return false;
    }
    int32_t grid_position = Read_Int32(image, 110);
    if (grid_position > 0) {
        Read_Magvar_Grid(image, grid, grid_position);
    }
    return true;
}

void Read_Magvar_Grid(const Bgl_Image& image, Magvar_Grid& grid, int32_t grid_position) {
    // Latitudes of one meridian from south to north, then the next meridian eastward.
    int64_t values = static_cast<int64_t>(grid_position) + 8;
    for (int lat = -90; lat <= 90; ++lat) {
        for (int lon = 0; lon <= 359; ++lon) {
            int index = 181 * lon + 90 + lat;
            grid[static_cast<size_t>(index)] = Read_Int16(image, values + 2LL * index);
        }
    }
}

} // namespace quilmark
