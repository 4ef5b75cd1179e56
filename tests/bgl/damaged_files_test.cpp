// Damaged and hostile airport files: every walk ends, nothing is read outside the file,
// and what is decoded stays in proportion to the file's size. (Random damage: the
// airport_section fuzz target.)
#include <gtest/gtest.h>

#include <limits>

#include "bgl/airport_walker.h"
#include "support/decode.h"
#include "support/example_field.h"

namespace quilmark {

namespace {

struct Totals {
    int64_t airports = 0;
    int64_t elements = 0; // runways, ILS, points, spots and paths
};

Totals Decode_Totals(const Bytes& bytes) {
    auto m = Decode_Bgl_Bytes(bytes);
    Totals t;
    t.airports = m->airport_count;
    for (int32_t i = 0; i < m->airport_count; ++i) {
        const Airport_Rec& a = m->airports[static_cast<size_t>(i)];
        t.elements +=
            a.runway_count + a.ils_count + a.taxi_point_count + a.parking_count + a.taxi_path_count;
    }
    return t;
}

// A file with one group of entries; blocks hold the given stream.
Bgl_File_Layout Layout_Of(std::vector<std::string> idents, const Bytes& stream = {}) {
    Bgl_File_Layout layout;
    layout.groups.emplace_back();
    for (const std::string& ident : idents) {
        Airport_Entry& e = layout.groups[0].entries.emplace_back();
        e.ident = ident;
        e.stream = stream;
    }
    return layout;
}

// A built file with one word replaced.
Bytes Patched(const Bgl_File_Layout& layout, size_t at, int32_t word) {
    Byte_Writer w{Build_Bgl(layout)};
    w.Patch_I32(at, word);
    return w.bytes;
}

// A file whose entries all point at the block of its first airport, which holds the stream.
Bytes Shared_Block_File(int entries, const Bytes& stream) {
    Bgl_File_Layout layout = Layout_Of({"KAAA"}, stream);
    Airport_Group& group = layout.groups.emplace_back();
    for (int i = 1; i < entries; ++i) {
        Airport_Entry& e = group.entries.emplace_back();
        e.ident = std::string("K").append(std::to_string(i));
        e.block_position = 0;
    }
    // The layout does not depend on where the entries point: the first airport's block in
    // the finished file is where they all go.
    const int32_t shared_block = Read_Int32_Le(Build_Bgl(layout), 200 + 24 + 12);
    for (Airport_Entry& e : group.entries) {
        e.block_position = shared_block;
    }
    Bytes file = Build_Bgl(layout);
    EXPECT_EQ(Read_Int32_Le(file, 200 + 24 + 12), shared_block);
    return file;
}

} // namespace

TEST(DamagedFiles, EveryTruncationDecodesWithoutFault) {
    const Bytes whole = Example_Field();
    for (size_t length = 0; length <= whole.size(); ++length) {
        Totals t = Decode_Totals(Bytes(whole.begin(), whole.begin() + static_cast<long>(length)));
        ASSERT_LE(t.airports, 1) << length;
        ASSERT_LE(t.elements, 20) << length;
    }
}

TEST(DamagedFiles, RecordsThatWouldNotMoveTheWalkEndIt) {
    // A record of length 0 (type 0x20001, size -8) in the stream, an entry of length 0, a
    // group of length 0 (it would begin again where it stands).
    Bytes stream = Concat({Name_Record("first"), {0x01, 0x00, 0x02, 0x00, 0xF8, 0xFF, 0xFF, 0xFF}});
    EXPECT_EQ(Decode_Totals(One_Airport_File("KAAA", stream)).airports, 1);
    EXPECT_EQ(Decode_Totals(Patched(Layout_Of({"KAAA", "KBBB"}), 200 + 24 + 4, -8)).airports, 1);
    EXPECT_EQ(Decode_Totals(Patched(Layout_Of({"KAAA", "KBBB"}), 200 + 4, -8)).airports, 2);
}

TEST(DamagedFiles, HugeCountsAndFarPositions) {
    // A million points cannot be in the file, nor 32767 paths: the block ends.
    Bgl_File_Layout layout = Layout_Of(
        {"KAAA"}, Taxiway_Block_Record({List_Header(1000000, 12), Point_List({{1, 0, 0}})}));
    layout.groups[0].last_index = std::numeric_limits<int32_t>::max();
    Totals t = Decode_Totals(Build_Bgl(layout));
    EXPECT_EQ(t.airports, 1);
    EXPECT_EQ(t.elements, 0);
    layout.groups[0].entries[0].stream = Taxiway_Block_Record({List_Header(32767, 32)});
    EXPECT_EQ(Decode_Totals(Build_Bgl(layout)).elements, 0);

    for (int32_t far :
         {std::numeric_limits<int32_t>::max() - 3, std::numeric_limits<int32_t>::max()}) {
        Bgl_File_Layout out_of_file = Layout_Of({"KAAA"});
        out_of_file.airport_section_position = far;
        out_of_file.groups[0].entries[0].block_position = far;
        EXPECT_EQ(Decode_Totals(Build_Bgl(out_of_file)).airports, 0);
    }
}

TEST(DamagedFiles, EntriesSharingOneBlockCannotMultiplyTheWorkOrTheAirports) {
    // 20,000 entries all point at one block of 2,000 runways: decoded fully, that would be
    // forty million runways from a file of about two megabytes.
    Runway_Fields r;
    r.number = 9;
    Bytes runways;
    for (int i = 0; i < 2000; ++i) {
        Append_Bytes(runways, Runway_Record(r));
    }
    Bytes file = Shared_Block_File(20000, runways);
    Totals t = Decode_Totals(file);
    EXPECT_GT(t.airports, 1);     // entries are decoded until the budget runs out ...
    EXPECT_LT(t.airports, 20001); // ... but not all of them
    EXPECT_LE(t.elements, static_cast<int64_t>(file.size()) / 4);

    // A block small enough for the budget to take every entry: the file still gives no more
    // airports than any real scenery file could hold.
    EXPECT_EQ(Decode_Totals(Shared_Block_File(120000, Name_Record("x"))).airports,
              Max_Airports_Per_File);
}

} // namespace quilmark
