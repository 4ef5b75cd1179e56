#include "geo/magnetic_variation.h"

#include <cmath>

#include "platform/rounding.h"

namespace quilmark {

int Variation_Degrees(const Magvar_Grid& grid, double lat, double lon) {
    double lat_r = Round_Half_Even(lat);
    double lon_r = Round_Half_Even(lon);
    if (lon_r < 0) {
        lon_r += 360;
    }
    double index = 181 * lon_r + 90 + lat_r;
    // A position outside the world has no variation.
    if (!(index >= 0 && index < Magvar_Grid_Size)) {
        return 0;
    }
    float degrees = static_cast<float>(grid[static_cast<size_t>(index)] * (360.0 / 65536.0));
    return static_cast<int>(std::trunc(degrees));
}

int16_t True_To_Magnetic(const Magvar_Grid& grid, double heading, double lat, double lon) {
    int variation = Variation_Degrees(grid, lat, lon);
    return Normalize_Degrees(Clamp_I16(static_cast<int64_t>(To_I16(heading)) - variation));
}

int16_t Magnetic_To_True(const Magvar_Grid& grid, double heading, double lat, double lon) {
    int variation = Variation_Degrees(grid, lat, lon);
    return Normalize_Degrees(Clamp_I16(static_cast<int64_t>(To_I16(heading)) + variation));
}

int16_t Normalize_Degrees(int16_t h) {
    int v = h;
    if (v > 360) {
        v -= 360;
    }
    if (v < 0) {
        v += 360;
    }
    return static_cast<int16_t>(v);
}

} // namespace quilmark
