#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "bgl/airport_walker.h"
#include "scenery/airport_database.h"
#include "scenery/airport_file_decoder.h"
#include "support/work_dir.h"

namespace quilmark {
namespace {

// What a run makes of the files: the database bytes of all the airports, and each image's
// walk budget after its airport section (the boundary walk goes on from it). Workers
// below 0: one thread reading file after file, without the decoder.
struct Run_Result {
    std::vector<uint8_t> database;
    std::vector<int64_t> budgets;
};

Run_Result Decode_Run(const std::vector<std::string>& paths, const Magvar_Grid& grid, int workers) {
    Run_Result r;
    Dyn_Array<Airport_Rec> airports;
    airports.Release();
    int32_t count = 0;
    if (workers < 0) {
        Bgl_Image image;
        for (const std::string& path : paths) {
            if (Load_Bgl_Image(image, path) && Has_Bgl_Marker(image)) {
                Read_Airport_Section(image, grid, true, airports, count);
            }
            r.budgets.push_back(image.walk_budget);
        }
    } else {
        Airport_File_Decoder decoder(paths, grid, true, workers);
        for (size_t i = 0; i < paths.size(); ++i) {
            Decoded_Airport_File_Rec file = decoder.Take_Next();
            Append_Decoded_Airports(file, airports, count);
            r.budgets.push_back(file.image.walk_budget);
        }
    }
    r.database = Encode_Airport_Database(airports);
    return r;
}

// The sample world's files several times over, with a missing file and a file that is
// not a BGL among them, so that the workers run well ahead of the taker: however the
// files are shared out, the airports come back in the order of the run.
TEST(AirportFileDecoder, DecodingAheadGivesTheBytesOfReadingInTurn) {
    std::vector<std::string> world;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Sample_World_Folder())) {
        if (entry.is_regular_file()) {
            world.push_back(entry.path().string());
        }
    }
    std::sort(world.begin(), world.end());
    std::vector<std::string> paths;
    for (int round = 0; round < 6; ++round) {
        paths.insert(paths.end(), world.begin(), world.end());
        paths.push_back(Sample_World_Folder() + "/missing.bgl");
    }
    Magvar_Grid grid{};
    const Run_Result in_turn = Decode_Run(paths, grid, -1);
    ASSERT_GT(in_turn.database.size(), 10000u);
    for (int workers : {0, 1, 3}) {
        const Run_Result ahead = Decode_Run(paths, grid, workers);
        EXPECT_EQ(ahead.database, in_turn.database) << workers << " workers";
        EXPECT_EQ(ahead.budgets, in_turn.budgets) << workers << " workers";
    }
}

} // namespace
} // namespace quilmark
