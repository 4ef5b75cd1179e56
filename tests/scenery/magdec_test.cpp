#include <gtest/gtest.h>

#include <memory>

#include "scenery/magdec.h"
#include "support/bgl_writer.h"

namespace quilmark {

namespace {

std::unique_ptr<Magvar_Grid> Grid_With(int index, int16_t value) {
    auto grid = std::make_unique<Magvar_Grid>();
    (*grid)[static_cast<size_t>(index)] = value;
    return grid;
}

// The grid after loading a magdec.bgl of these bytes over a grid holding 42 at index 7.
std::unique_ptr<Magvar_Grid> Loaded(const Bytes& bytes) {
    const std::string path = ::testing::TempDir() + "/magdec.bgl";
    Write_File(path, bytes);
    auto grid = Grid_With(7, 42);
    Bgl_Image image;
    EXPECT_TRUE(Load_Magdec(image, *grid, path));
    return grid;
}

} // namespace

TEST(Magdec, GridIsLoadedInFileOrder) {
    // Each value names its own place: 1000 * longitude index + latitude.
    auto grid = Loaded(Build_Magdec(Magdec_Values([](int lat, int lon) {
                                        return static_cast<int16_t>((lon % 30) * 1000 + lat);
                                    }),
                                    300));
    EXPECT_EQ((*grid)[181 * 0 + 90 - 90], -90);
    EXPECT_EQ((*grid)[181 * 5 + 90 + 47], 5047);
    EXPECT_EQ((*grid)[181 * 359 + 90 + 90], 29090);
    EXPECT_EQ((*grid)[65160], 0); // never filled
}

TEST(Magdec, MissingFileOrGridLeavesTheGridAloneAndACutGridReadsZeros) {
    Bytes no_grid = Build_Magdec(std::vector<int16_t>(65160, 5));
    no_grid[110] = no_grid[111] = no_grid[112] = no_grid[113] = 0;
    EXPECT_EQ((*Loaded(no_grid))[7], 42);
    auto grid = Grid_With(7, 42);
    Bgl_Image image;
    EXPECT_FALSE(Load_Magdec(image, *grid, ::testing::TempDir() + "/magdec.missing"));
    EXPECT_EQ((*grid)[7], 42);

    Bytes cut = Build_Magdec(std::vector<int16_t>(65160, 9));
    cut.resize(128 + 8 + 2 * 100);
    grid = Loaded(cut);
    EXPECT_EQ((*grid)[99], 9);
    EXPECT_EQ((*grid)[100], 0);
}

TEST(Magdec, PositionsRoundToTheirGridIndex) {
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

TEST(Magdec, VariationInWholeDegreesAndOneFold) {
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

} // namespace quilmark
