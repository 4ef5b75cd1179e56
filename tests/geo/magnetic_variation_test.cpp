#include <gtest/gtest.h>

#include <memory>

#include "geo/magnetic_variation.h"

namespace quilmark {

namespace {

std::unique_ptr<Magvar_Grid> Grid_With(int index, int16_t value) {
    auto grid = std::make_unique<Magvar_Grid>();
    (*grid)[static_cast<size_t>(index)] = value;
    return grid;
}

} // namespace

TEST(MagneticVariation, PositionsRoundToTheirGridIndex) {
    struct Case {
        double lat, lon;
        int index;
    } cases[] = {
        {89.6, 179.6, 32760},        // 90 N, 180 E
        {0, -179.6, 181 * 180 + 90}, // -180 meets +180
        {0, -0.4, 90},               // rounds to 0: no 360 added
        {0.5, 0.5, 90},              // halves go to the even neighbour
        {1.5, -1.5, 181 * 358 + 90 + 2},
    };
    for (const Case& c : cases) {
        auto grid = Grid_With(c.index, 1821); // 10.0 degrees
        EXPECT_EQ(True_To_Magnetic(*grid, 100, c.lat, c.lon), 90) << c.lat << "," << c.lon;
        EXPECT_EQ(Magnetic_To_True(*grid, 100, c.lat, c.lon), 110) << c.lat << "," << c.lon;
    }
}

TEST(MagneticVariation, VariationInWholeDegreesAndOneFold) {
    struct Case {
        int16_t grid_value;
        double heading;
        int16_t magnetic;
    } cases[] = {
        {182, 100, 100},  // 0.9997 degrees: none
        {-183, 100, 101}, // -1.005: -1
        {1821, 5, 355},   // 5 - 10
        {-1821, 355, 5},  // 365 folded
        {0, 360, 360},    // 360 stays
        {0, 359.5, 360},  // the heading is rounded half to even first
        {0, 358.5, 358},
    };
    for (const Case& c : cases) {
        auto grid = Grid_With(90, c.grid_value);
        EXPECT_EQ(True_To_Magnetic(*grid, c.heading, 0, 0), c.magnetic)
            << c.grid_value << " " << c.heading;
    }
    auto grid = Grid_With(90, 1821);
    EXPECT_EQ(True_To_Magnetic(*grid, 10, 0, 400), 10); // off the world: no variation
}

TEST(MagneticVariation, NormalizeFoldsOnceAtMost) {
    const std::pair<int16_t, int16_t> cases[] = {{360, 360}, {361, 1},   {-1, 359}, {-361, -1},
                                                 {0, 0},     {721, 361}, {720, 360}};
    for (auto [in, out] : cases) {
        EXPECT_EQ(Normalize_Degrees(in), out) << in;
    }
}

} // namespace quilmark
