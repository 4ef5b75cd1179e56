#include <gtest/gtest.h>

#include "bgl_writer/bgl_writer.h"
#include "scenery/airport_database.h"
#include "support/decode.h"
#include "support/example_field.h"
#include "support/work_dir.h"

#include <filesystem>

namespace quilmark {

namespace {

Bytes Le16(uint16_t v) {
    return {static_cast<uint8_t>(v), static_cast<uint8_t>(v >> 8)};
}
Bytes Le32(uint32_t v) {
    return {static_cast<uint8_t>(v), static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v >> 16),
            static_cast<uint8_t>(v >> 24)};
}

// n bytes of a file from a position.
Bytes Slice(const Bytes& bytes, size_t at, size_t n) {
    return Bytes(bytes.begin() + static_cast<long>(at), bytes.begin() + static_cast<long>(at + n));
}

// The list the database build leaves for the Example Field file.
Dyn_Array<Airport_Rec> Decoded_Example() {
    return Decode_Bgl_Bytes(Example_Field())->airports;
}

} // namespace

TEST(AirportDatabase, EmptyWorldIsOneSixtyFourByteRecord) {
    Dyn_Array<Airport_Rec> airports;
    airports.Release();
    const Bytes bytes = Encode_Airport_Database(airports);
    // Nine empty texts (2 bytes each), two zero doubles, five unallocated arrays (2 bytes)
    // and their counts (4 bytes).
    EXPECT_EQ(bytes, Bytes(9 * 2 + 2 * 8 + 5 * 6, 0));

    Dyn_Array<Airport_Rec> back;
    EXPECT_EQ(Decode_Airport_Database(bytes, 0, back), Database_Read_Result::Ok);
    EXPECT_EQ(back.Slot_Count(), 1u);
    EXPECT_EQ(back[0], Airport_Rec{});
}

TEST(AirportDatabase, ArrayDescriptorsWithAndWithoutTaxiways) {
    Airport_Rec plain;
    plain.ident = "K1";
    plain.runway_count = 2;
    plain.runways.Resize_Keep(2); // two runways and the spare slot
    Dyn_Array<Airport_Rec> airports;
    airports.Resize_Keep(1);
    airports[0] = plain;
    const Bytes bytes = Encode_Airport_Database(airports);
    // ident, name, lat, lon, seven frequencies, then the runways' descriptor.
    size_t at = 2 + 2 + 2 + 16 + 7 * 2;
    EXPECT_EQ(Slice(bytes, at, 10), Concat({Le16(1), Le32(3), Le32(0)}));
    at += 10 + 3 * (4 + 48);
    EXPECT_EQ(Slice(bytes, at, 6), Concat({Le32(2), Le16(0)})); // runway_count, ILS unallocated
    // Three taxiway lists of dimension 0 with their zero counts close the record.
    EXPECT_EQ(Slice(bytes, bytes.size() - 64 - 18, 18), Bytes(18, 0));

    // With taxiway data: exactly the count, no spare slot.
    Dyn_Array<Airport_Rec> example = Decoded_Example();
    const Bytes full = Encode_Airport_Database(example);
    Dyn_Array<Airport_Rec> back;
    ASSERT_EQ(Decode_Airport_Database(full, 1, back), Database_Read_Result::Ok);
    EXPECT_EQ(back[0].taxi_points.Slot_Count(), 3u);
    EXPECT_EQ(back[0].runways.Slot_Count(), 3u);
    EXPECT_EQ(back[0].ils.Slot_Count(), 4u);
}

TEST(AirportDatabase, TextsKeepTheirCodePageBytes) {
    Dyn_Array<Airport_Rec> airports;
    airports.Resize_Keep(1);
    airports[0].name = "Z\xDCRICH \x80";
    const Bytes bytes = Encode_Airport_Database(airports);
    EXPECT_EQ(Slice(bytes, 0, 4), Concat({Le16(0), Le16(8)})); // empty ident, 8 bytes of name
    Dyn_Array<Airport_Rec> back;
    ASSERT_EQ(Decode_Airport_Database(bytes, 1, back), Database_Read_Result::Ok);
    EXPECT_EQ(back[0].name, "Z\xDCRICH \x80");
}

TEST(AirportDatabase, CountFromTheConfigurationDecidesHowMuchIsRead) {
    Dyn_Array<Airport_Rec> example = Decoded_Example();
    const Bytes bytes = Encode_Airport_Database(example);
    Dyn_Array<Airport_Rec> back;
    // A count of 0 beside a filled file reads one record: the first airport, never listed.
    ASSERT_EQ(Decode_Airport_Database(bytes, 0, back), Database_Read_Result::Ok);
    EXPECT_EQ(back.Slot_Count(), 1u);
    EXPECT_EQ(back[0].ident, "KXYZ");
    // A count larger than the file holds is damage.
    EXPECT_EQ(Decode_Airport_Database(bytes, 2, back), Database_Read_Result::Damaged);
    EXPECT_EQ(Decode_Airport_Database(bytes, -1, back), Database_Read_Result::Damaged);
    EXPECT_EQ(Decode_Airport_Database(bytes, 2000000000, back), Database_Read_Result::Damaged);
    EXPECT_EQ(back.Slot_Count(), 1u); // released, never half-read
}

TEST(AirportDatabase, EveryCutAndBadDescriptorIsDamage) {
    const Bytes bytes = Encode_Airport_Database(Decoded_Example());
    Dyn_Array<Airport_Rec> back;
    for (size_t length = 0; length < bytes.size(); ++length) {
        ASSERT_EQ(Decode_Airport_Database(Slice(bytes, 0, length), 1, back),
                  Database_Read_Result::Damaged)
            << length;
    }
    Bytes bad = bytes;
    // "KXYZ", "EXAMPLE FIELD", lat, lon, then "128.35" "121.7" "119.9" "126.05" "124.75"
    // "132.1" "118", each text behind its length.
    const size_t runways = 6 + 15 + 16 + 8 + 7 + 7 + 8 + 8 + 7 + 5;
    ASSERT_EQ(Slice(bad, runways, 2), Le16(1));
    bad[runways] = 2; // two dimensions
    EXPECT_EQ(Decode_Airport_Database(bad, 1, back), Database_Read_Result::Damaged);
    bad = bytes;
    bad[runways + 2] = 0xFF; // an element count far beyond the file
    bad[runways + 5] = 0x7F;
    EXPECT_EQ(Decode_Airport_Database(bad, 1, back), Database_Read_Result::Damaged);
}

TEST(AirportDatabase, WrittenThroughATemporaryFileAndNeverReadWhenHuge) {
    Work_Dir dir("database-file");
    Dyn_Array<Airport_Rec> example = Decoded_Example();
    std::optional<Pending_File_Rec> pending = Write_Pending_Airport_Database("db.dat", example);
    ASSERT_TRUE(pending);
    Dyn_Array<Airport_Rec> back;
    EXPECT_EQ(Read_Airport_Database("db.dat", 1, back), Database_Read_Result::Cannot_Open);
    ASSERT_TRUE(Commit_Pending_File(*pending));
    ASSERT_EQ(Read_Airport_Database("db.dat", 1, back), Database_Read_Result::Ok);
    EXPECT_EQ(back, example);
    // A folder that cannot take the file leaves nothing behind.
    EXPECT_FALSE(Write_Pending_Airport_Database("no/such/dir/x.dat", example));

    // A file far larger than the whole world's database is not read into memory. (Folders
    // and pipes: the tool's test of db.)
    std::filesystem::copy_file("db.dat", "huge.dat");
    std::filesystem::resize_file("huge.dat", Max_Database_File_Size + 1); // sparse
    EXPECT_EQ(Read_Airport_Database("huge.dat", 1, back), Database_Read_Result::Damaged);
    EXPECT_EQ(back.Slot_Count(), 1u);
}

} // namespace quilmark
