#include <gtest/gtest.h>

#include <memory>

#include "bgl_writer/bgl_writer.h"
#include "scenery/magdec.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

std::unique_ptr<Magvar_Grid> Grid_With(int index, int16_t value) {
    auto grid = std::make_unique<Magvar_Grid>();
    (*grid)[static_cast<size_t>(index)] = value;
    return grid;
}

// The grid after loading a magdec.bgl of these bytes over a grid holding 42 at index 7.
std::unique_ptr<Magvar_Grid> Loaded(const Bytes& bytes) {
    const std::string path = Temp_File("magdec.bgl");
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
    EXPECT_FALSE(Load_Magdec(image, *grid, Temp_File("magdec.missing")));
    EXPECT_EQ((*grid)[7], 42);

    Bytes cut = Build_Magdec(std::vector<int16_t>(65160, 9));
    cut.resize(128 + 8 + 2 * 100);
    grid = Loaded(cut);
    EXPECT_EQ((*grid)[99], 9);
    EXPECT_EQ((*grid)[100], 0);
}

} // namespace quilmark
