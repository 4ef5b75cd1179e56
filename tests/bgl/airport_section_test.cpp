// The header dispatch and the airport directory walker.
#include <gtest/gtest.h>

#include "support/decode.h"

namespace quilmark {

namespace {

Airport_Entry Entry(const std::string& ident, const std::string& name = "") {
    Airport_Entry e;
    e.ident = ident;
    e.stream = name.empty() ? Bytes{} : Name_Record(name);
    return e;
}

std::vector<std::string> Decoded_Idents(const Bgl_File_Layout& layout) {
    auto m = Decode_Bgl_Bytes(Build_Bgl(layout));
    std::vector<std::string> out;
    for (int32_t i = 0; i < m->airport_count; ++i) {
        out.push_back(m->airports[static_cast<size_t>(i)].ident);
    }
    return out;
}

using Idents_List = std::vector<std::string>;

} // namespace

TEST(BglSections, LayoutWordMustBeOne) {
    for (int32_t word : {0, 2, -1, 1}) {
        Bgl_File_Layout layout;
        layout.layout_word = word;
        layout.groups.push_back({{Entry("KAAA")}, std::nullopt, 0});
        EXPECT_EQ(Decoded_Idents(layout).size(), word == 1 ? 1u : 0u) << word;
    }
}

TEST(BglSections, MissingMarkerOrSectionsAddNothing) {
    Bgl_File_Layout layout;
    layout.groups.push_back({{Entry("KAAA")}, std::nullopt, 0});
    layout.marker = 0x87654320u;
    EXPECT_TRUE(Decoded_Idents(layout).empty());
    layout.marker = 0x87654321u;
    for (int32_t position : {0, -200, 1 << 30}) { // none, negative, far beyond the file
        layout.airport_section_position = position;
        EXPECT_TRUE(Decoded_Idents(layout).empty()) << position;
    }
}

TEST(BglSections, DatabasePresentWalksButAddsNothing) {
    Bgl_File_Layout layout;
    layout.groups.push_back({{Entry("KAAA"), Entry("KBBB")}, std::nullopt, 0});
    auto m = Decode_Bgl_Bytes(Build_Bgl(layout), {nullptr, false});
    EXPECT_EQ(m->airport_count, 0);
    EXPECT_FALSE(m->airports.allocated);
}

TEST(AirportWalker, AcceptanceTest) {
    struct Case {
        const char* what;
        void (*spoil)(Airport_Entry&);
        bool accepted;
    };
    const Case cases[] = {
        {"airport", [](Airport_Entry&) {}, true},
        {"other kind", [](Airport_Entry& e) { e.entry_kind = 0x50002; }, false},
        {"block at 0", [](Airport_Entry& e) { e.block_position = 0; }, false},
        {"negative block", [](Airport_Entry& e) { e.block_position = -16; }, false},
        {"first test word", [](Airport_Entry& e) { e.block_word_0 = 2; }, false},
        {"second test word", [](Airport_Entry& e) { e.block_word_8 = 0; }, false},
        // Another type, stepped over by its size though it holds what looks like an entry.
        {"other type", [](Airport_Entry& e) { e.entry_type = 0x30003; }, false},
    };
    for (const Case& c : cases) {
        Bgl_File_Layout layout;
        Airport_Entry e = Entry("KAAA");
        c.spoil(e);
        layout.groups.push_back({{e, Entry("KZZZ")}, std::nullopt, 0});
        Idents_List expected = c.accepted ? Idents_List{"KAAA", "KZZZ"} : Idents_List{"KZZZ"};
        EXPECT_EQ(Decoded_Idents(layout), expected) << c.what;
    }
}

TEST(AirportWalker, LastEntryIndexCountsOneMorePass) {
    Bgl_File_Layout layout;
    layout.groups.push_back({{Entry("KAAA"), Entry("KBBB"), Entry("KCCC")}, 0, 0});
    EXPECT_EQ(Decoded_Idents(layout), (Idents_List{"KAAA"}));
    layout.groups[0].last_index = 1;
    EXPECT_EQ(Decoded_Idents(layout), (Idents_List{"KAAA", "KBBB"}));
}

TEST(AirportWalker, NextGroupStartsBehindTheGroupNotBehindItsLastEntry) {
    Bgl_File_Layout layout;
    // The gap behind the first group's entries would read as entries if the walk went on.
    layout.groups.push_back({{Entry("KAAA")}, std::nullopt, 32});
    layout.groups.push_back({{Entry("KBBB"), Entry("KAAA")}, std::nullopt, 0});
    EXPECT_EQ(Decoded_Idents(layout), (Idents_List{"KAAA", "KBBB", "KAAA"})); // no de-duplication
}

TEST(AirportWalker, IdentifierIsTheEntryTextWithoutPadding) {
    Bgl_File_Layout layout;
    Airport_Entry e = Entry("EG");
    e.ident_padded_length = 12;
    layout.groups.push_back({{e}, std::nullopt, 0});
    auto m = Decode_Bgl_Bytes(Build_Bgl(layout));
    ASSERT_EQ(m->airport_count, 1);
    EXPECT_EQ(m->airports[0].ident, "EG");
    // airports keeps one empty slot above its count.
    EXPECT_EQ(m->airports.Slot_Count(), 2u);
    EXPECT_EQ(m->airports[1], Airport_Rec{});
}

} // namespace quilmark
