#include <gtest/gtest.h>

#include <cstdio>

#include "platform/native_paths.h"
#include "scenery/airport_database.h"
#include "support/work_dir.h"

namespace quilmark {
namespace {

// The file is written, and read back, record by record through buffers of about a
// megabyte: records that straddle a buffer's end, and a record larger than a buffer, must
// come out as the bytes of the whole list encoded at once, and back as the same list.
TEST(DatabaseParts, WrittenAndReadInPartsAsTheWholeEncoding) {
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
    Dyn_Array<Airport_Rec> back;
    const Database_Read_Result read = Read_Airport_Database(path, count, back);
    const bool same_list = back == airports;
    const Database_Read_Result one_more = Read_Airport_Database(path, count + 1, back);
    std::remove(path.c_str());
    ASSERT_TRUE(written);
    const std::vector<uint8_t> whole = Encode_Airport_Database(airports);
    ASSERT_GT(whole.size(), 3u << 20);
    EXPECT_TRUE(*written == whole);
    EXPECT_EQ(read, Database_Read_Result::Ok);
    EXPECT_TRUE(same_list);
    EXPECT_EQ(one_more, Database_Read_Result::Damaged);
}

} // namespace
} // namespace quilmark
