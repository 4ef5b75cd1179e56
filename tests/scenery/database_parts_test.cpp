#include <gtest/gtest.h>

#include <cstdio>

#include "platform/native_paths.h"
#include "scenery/airport_database.h"
#include "support/work_dir.h"

namespace quilmark {
namespace {

// The file is written record by record through a buffer of about a megabyte: records that
// straddle its end, and a record larger than it, must come out as the bytes of the whole
// list encoded at once.
TEST(DatabaseParts, WrittenFileHasTheBytesOfTheWholeEncoding) {
    Dyn_Array<Airport_Rec> airports;
    airports.Release();
    int32_t count = 0;
    for (int i = 0; i < 3000; ++i) {
        Airport_Rec& a = Append(airports, count);
        a.ident = "K" + std::to_string(i);
        a.name = std::string(static_cast<size_t>(i % 300), 'N');
        a.taxi_points.Allocate(static_cast<size_t>(i % 40));
        if (i == 1500) {
            a.taxi_points.Allocate(70000); // 1.4 MB of points
            a.taxi_points[69999].lat = 47.5;
        }
    }
    const std::string path = Temp_File("parts.dat");
    const std::optional<Pending_File_Rec> pending = Write_Pending_Airport_Database(path, airports);
    ASSERT_TRUE(pending && Commit_Pending_File(*pending));
    const std::optional<std::vector<uint8_t>> written = Read_Whole_File_Bytes(path, 1 << 30);
    std::remove(path.c_str());
    ASSERT_TRUE(written);
    const std::vector<uint8_t> whole = Encode_Airport_Database(airports);
    ASSERT_GT(whole.size(), 3u << 20);
    EXPECT_TRUE(*written == whole);
}

} // namespace
} // namespace quilmark
