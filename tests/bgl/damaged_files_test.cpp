// Damaged and hostile airport files: every walk ends, nothing is read outside the file,
// and what is decoded stays in proportion to the file's size.
#include <gtest/gtest.h>

#include <limits>

#include "support/decode.h"
#include "support/example_field.h"

namespace {

struct Totals {
    int64_t airports = 0;
    int64_t elements = 0; // runways, ILS, points, spots and paths
};

Totals Decode_Totals(const Bytes& bytes) {
    auto m = std::make_unique<Module1>();
    Decode_Bgl_Bytes(*m, bytes);
    Totals t;
    t.airports = m->airport_count;
    for (int32_t i = 0; i < m->airport_count; ++i) {
        const Airport_Rec& a = m->airports[static_cast<size_t>(i)];
        t.elements +=
            a.runway_count + a.ils_count + a.taxi_point_count + a.parking_count + a.taxi_path_count;
    }
    return t;
}

void Put_I32(Bytes& bytes, size_t at, int32_t v) {
    for (size_t i = 0; i < 4; ++i) {
        bytes.at(at + i) = static_cast<uint8_t>(static_cast<uint32_t>(v) >> (8 * i));
    }
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

TEST(DamagedFiles, RandomByteDamageDecodesWithoutFault) {
    const Bytes whole = Example_Field();
    uint64_t state = 0x5eed;
    auto next = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return state >> 33;
    };
    for (int round = 0; round < 3000; ++round) {
        Bytes damaged = whole;
        int hits = 1 + static_cast<int>(next() % 4);
        for (int h = 0; h < hits; ++h) {
            size_t at = 200 + next() % (damaged.size() - 200); // keep the header's marker
            switch (next() % 3) {
            case 0:
                damaged[at] = static_cast<uint8_t>(next());
                break;
            case 1: // a word of an extreme value
                if (at + 4 <= damaged.size()) {
                    const int32_t extremes[] = {0,
                                                -1,
                                                -8,
                                                std::numeric_limits<int32_t>::max(),
                                                std::numeric_limits<int32_t>::min(),
                                                32768};
                    Put_I32(damaged, at & ~size_t{3}, extremes[next() % 6]);
                }
                break;
            default:
                damaged[at] ^= 0x80;
            }
        }
        Totals t = Decode_Totals(damaged);
        ASSERT_LE(t.elements, static_cast<int64_t>(damaged.size())) << round;
    }
}

TEST(DamagedFiles, RecordsThatWouldNotMoveTheWalkEndIt) {
    // A record of length 0 (size -8) in the stream, an entry of length 0, a group of length 0.
    Bytes stream = Concat({Name_Record("first"), Record(0x20001, {})});
    Put_I32(stream, Name_Record("first").size() + 4, -8);
    Totals t = Decode_Totals(One_Airport_File("KAAA", stream));
    EXPECT_EQ(t.airports, 1);

    Bgl_File_Spec spec;
    Airport_Entry e;
    e.ident = "KAAA";
    spec.groups.push_back({{e, e}, std::nullopt, 0});
    Bytes file = Build_Bgl(spec);
    Put_I32(file, 200 + 24 + 4, -8); // first entry's size
    EXPECT_EQ(Decode_Totals(file).airports, 1);
    file = Build_Bgl(spec);
    Put_I32(file, 200 + 4, -8); // the group's size: it would begin again where it stands
    EXPECT_EQ(Decode_Totals(file).airports, 2);
}

TEST(DamagedFiles, HugeCountsAndFarPositions) {
    Bgl_File_Spec spec;
    Airport_Entry e;
    e.ident = "KAAA";
    e.stream = Taxiway_Block_Record({List_Header(1000000, 12), Point_List({{1, 0, 0}})});
    spec.groups.push_back({{e}, std::numeric_limits<int32_t>::max(), 0});
    Totals t = Decode_Totals(Build_Bgl(spec));
    EXPECT_EQ(t.airports, 1);
    EXPECT_EQ(t.elements, 0); // a million points cannot be in the file: the block ends

    e.stream = Taxiway_Block_Record({List_Header(32767, 32)});
    spec.groups[0].entries[0] = e;
    EXPECT_EQ(Decode_Totals(Build_Bgl(spec)).elements, 0);

    for (int32_t far :
         {std::numeric_limits<int32_t>::max() - 3, std::numeric_limits<int32_t>::max()}) {
        Bgl_File_Spec out_of_file;
        out_of_file.groups.push_back({{e}, std::nullopt, 0});
        out_of_file.airport_section_position = far;
        out_of_file.groups[0].entries[0].block_position = far;
        EXPECT_EQ(Decode_Totals(Build_Bgl(out_of_file)).airports, 0);
    }
}

TEST(DamagedFiles, EntriesSharingOneBlockCannotMultiplyTheWork) {
    // 20,000 entries all point at one block of 2,000 runways: decoded fully, that would be
    // forty million runways from a file of about two megabytes.
    Runway_Fields r;
    r.number = 9;
    Bytes runways;
    for (int i = 0; i < 2000; ++i) {
        Bytes one = Runway_Record(r);
        runways.insert(runways.end(), one.begin(), one.end());
    }
    Bgl_File_Spec spec;
    Airport_Entry first;
    first.ident = "KAAA";
    first.stream = runways;
    spec.groups.push_back({{first}, std::nullopt, 0});
    Bytes probe = Build_Bgl(spec);
    const int32_t shared_block = Read_Int32_Le(probe, 200 + 24 + 12);
    Airport_Group group;
    for (int i = 0; i < 20000; ++i) {
        Airport_Entry copy;
        copy.ident = "K" + std::to_string(i);
        copy.block_position = shared_block;
        group.entries.push_back(copy);
    }
    spec.groups.push_back(group);
    Bytes file = Build_Bgl(spec);
    Totals t = Decode_Totals(file);
    EXPECT_GE(t.elements, 2000); // the first airport is whole
    EXPECT_LE(t.elements, static_cast<int64_t>(file.size()) / 4);
}
