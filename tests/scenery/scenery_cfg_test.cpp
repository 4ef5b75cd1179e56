// scenery.cfg by cases. (Random files against a plain step-by-step reader: the scenery_cfg
// fuzz target.)
#include <gtest/gtest.h>

#include <chrono>

#include "scenery/scenery_cfg.h"

namespace quilmark {

namespace {

Module1 Read_Text(std::string_view text) {
    Module1 m;
    m.scenery_areas.Release();
    EXPECT_EQ(Read_Scenery_Cfg_Text(m, text), Scenery_Cfg_Status::Ok);
    return m;
}

std::vector<Scenery_Area> Areas(std::string_view text) {
    Module1 m = Read_Text(text);
    // The filled entries and one empty slot on top.
    EXPECT_EQ(m.scenery_areas.Slot_Count(), static_cast<size_t>(m.scenery_area_count) + 1);
    EXPECT_EQ(m.scenery_areas.items.back(), Scenery_Area{});
    m.scenery_areas.items.pop_back();
    return m.scenery_areas.items;
}

} // namespace

TEST(SceneryCfg, ReadsAreasAsTheFileHasThem) {
    const std::string text =
        "\r\n[General]\r\nTitle=FS2002 World Scenery\r\nCleanup_Cache=FALSE\r\n"
        "\r\n[Area.001]\r\nTitle=Default Terrain\r\nTexture_ID=1\r\n"
        "Remote=[FS2002 Disk2]\\Scenery\r\nLocal=Scenery\\World\r\nLayer=1\r\n"
        "Active=TRUE\r\nRequired=TRUE\r\n"
        "\r\n[AREA.002] ; airports\r\ntitle=Airport and Facilities Data\r\n"
        "LOCAL = Scenery\\APT\r\nlocal=\"Scenery\\Airports \"\r\n"
        "ACTIVE=false\r\nRequired=TRUE=yes";
    std::vector<Scenery_Area> areas = Areas(text);
    ASSERT_EQ(areas.size(), 2u);
    EXPECT_EQ(areas[0], (Scenery_Area{"Default Terrain", "1", "TRUE", "1", "TRUE",
                                      "[FS2002 Disk2]\\Scenery", "Scenery\\World"}));
    // Keys in any case, values with their case, quotes, blanks and "=" kept; the last line
    // without a line break ends the value. "LOCAL =" is no "local=".
    EXPECT_EQ(areas[1], (Scenery_Area{"Airport and Facilities Data", "", "false", "", "TRUE=yes",
                                      "", "\"Scenery\\Airports \""}));
}

TEST(SceneryCfg, BlocksAreCutBySearchingForTheHeaders) {
    struct Case {
        const char* name;
        std::string text;
        std::vector<std::string> titles;
    };
    const Case cases[] = {
        {"key inside a longer key and a comment above the real one",
         "[Area.1]\r\n;Title=old\r\nTitle=new\r\n[Area.2]\r\nSubTitle=sub\r\nTitle=real\r\n",
         {"old", "sub"}},
        {"an area ends where the next section of any kind begins",
         "[Area.1]\r\nLocal=a\r\n[Other]\r\nTitle=not mine\r\n",
         {""}},
        {"two sections with one header both start at the first",
         "[Area.1]\r\nTitle=A\r\n[Area.2]\r\nTitle=B\r\n[Area.1]\r\nTitle=C\r\n[Area.3]\r\n",
         {"A", "", "A", ""}},
        {"a header text met earlier, inside a value, is where blocks are cut",
         "[Area.0]\r\nTitle=see [Area.9]\r\n[Area.9]\r\nTitle=nine\r\n",
         {"see ", "nine"}},
        {"lines that only look like headers",
         "[Area.1]\r\n [Area.2]\r\n;[Area.3]\r\n[Area.4\r\nTitle=one\r\n[area.5]x]\r\nTitle=five",
         {"one", "five"}},
        {"no area sections", "[General]\r\nTitle=x\r\n[Layers]\r\n", {}},
        {"no sections", "Title=x\r\n", {}},
        {"empty file", "", {}},
    };
    for (const Case& c : cases) {
        std::vector<std::string> titles;
        for (const Scenery_Area& area : Areas(c.text)) {
            titles.push_back(area.Title);
        }
        EXPECT_EQ(titles, c.titles) << c.name;
    }
}

TEST(SceneryCfg, LinesEndAtCrLfCrOrLf) {
    const std::vector<Scenery_Area> expected = {{"T1", "", "", "", "", "", "L1"},
                                                {"", "", "", "", "TRUE", "", "L2"}};
    for (std::string end : {"\r\n", "\n", "\r"}) {
        std::string text;
        for (const char* line : {"", "", "[Area.001]", "Title=T1", "Local=L1", "", "[Area.002]",
                                 "Required=TRUE", "Local=L2"}) {
            text += line + end;
        }
        EXPECT_EQ(Areas(text), expected);
        EXPECT_EQ(Areas(text.substr(0, text.size() - end.size())), expected); // no final break
    }
}

TEST(SceneryCfg, LargeAndHostileFilesStayBounded) {
    auto started = std::chrono::steady_clock::now();
    // More sections than the 16-bit count holds.
    std::string many;
    for (int i = 0; i < 40000; ++i) {
        many += "[Area." + std::to_string(i) + "]\nTitle=t" + std::to_string(i) + "\n";
    }
    Module1 m = Read_Text(many);
    EXPECT_EQ(m.scenery_area_count, 32767);
    EXPECT_EQ(m.scenery_areas[32766].Title, "t32766");

    // One line of many megabytes, brackets without end, NUL bytes.
    std::string hostile = "[Area.1]" + std::string(4'000'000, '[') + std::string("\0\0]title=", 9);
    hostile += std::string(4'000'000, 'v');
    EXPECT_EQ(Read_Text(hostile).scenery_area_count, 1);

    // Repeated headers whose blocks all overlap one huge value.
    std::string overlap;
    for (int i = 0; i < 3000; ++i) {
        overlap += "[Area.a" + std::to_string(i) + "]\n";
    }
    overlap += "Title=" + std::string(1'000'000, 't') + "\n";
    for (int i = 0; i < 3000; ++i) {
        overlap += "[Area.a" + std::to_string(i) + "]\n[Area.z" + std::to_string(i) + "]\n";
    }
    Module1 big;
    EXPECT_EQ(Read_Scenery_Cfg_Text(big, overlap), Scenery_Cfg_Status::Too_Large);
    EXPECT_GT(big.scenery_area_count, 200);
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(20));
}

} // namespace quilmark
