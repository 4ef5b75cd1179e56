// An FS2004 world end to end: the generated sample world scanned, laid in layer order and
// fetched, and the order in which scenery.cfg's areas are laid.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "airspace/airport_fetch.h"
#include "fs2004/area_order.h"
#include "scenery/config_file.h"
#include "scenery/scan_sequence.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

std::string Fs2004_Sample_World() {
    return (std::filesystem::path(Sample_World_Folder()).parent_path().parent_path() /
            "sample-world-fs2004" / "FS2004")
        .string();
}

std::vector<std::string> Runway_Ends(const Airport_Rec& a) {
    std::vector<std::string> ends;
    for (int32_t i = 0; i < a.runway_count; ++i) {
        ends.push_back(a.runways[static_cast<size_t>(i)].end1_name + "/" +
                       a.runways[static_cast<size_t>(i)].end2_name);
    }
    return ends;
}

} // namespace

// A copy of the sample world, so that an add-on can be put in it afterwards.
TEST(Fs2004World, SampleWorldIsLaidByLayerFetchedAndANewAddOnNoticed) {
    Work_Dir dir("fs2004-world");
    const std::filesystem::path world = dir.Path() / "FS2004";
    std::filesystem::copy(Fs2004_Sample_World(), world, std::filesystem::copy_options::recursive);
    auto m = std::make_unique<Module1>();
    auto form = std::make_unique<Form3_Data>();
    ASSERT_EQ(Write_Chosen_Config(*m, Fs_Version_2004, world.string()), Config_Status::Ok);
    Recording_Chooser_Form scan;
    Run_Scenery_Scan(*m, *form, scan);
    // The same messages as an FS2002 world's first run: no CD folders in this scenery.cfg.
    ASSERT_EQ(scan.messages.size(), 2u);
    EXPECT_EQ(scan.messages[0].text.rfind("This is the first time you run this program.", 0), 0u);
    EXPECT_EQ(scan.progress_max, 8); // seven BGL files in the active areas, and one

    std::map<std::string, const Airport_Rec*> by_ident;
    for (int32_t i = 0; i < m->airport_count; ++i) {
        by_ident[m->airports[static_cast<size_t>(i)].ident] = &m->airports[static_cast<size_t>(i)];
    }
    EXPECT_EQ(by_ident.size(), 9u);
    EXPECT_EQ(by_ident.count("KXXX"), 0u); // its area is not active
    // The add-on Renton replaces the stock one whole; the closure at Olympia removes one
    // runway and keeps the rest.
    EXPECT_EQ(Runway_Ends(*by_ident.at("KRNT")), (std::vector<std::string>{"16/34"}));
    EXPECT_EQ(by_ident.at("KRNT")->parking_count, 6);
    EXPECT_EQ(Runway_Ends(*by_ident.at("KOLM")), (std::vector<std::string>{"17/35"}));
    EXPECT_EQ(by_ident.at("KOLM")->ils_count, 1);
    EXPECT_EQ(by_ident.at("KSEA")->ils_count, 3);           // ILS records of the same file, joined
    EXPECT_EQ(by_ident.at("KTIW")->name, "TACOMA NARROWS"); // from the name list

    Recording_Chooser_Form fetch;
    Get_Airport(*m, *form, fetch, std::string("KRNT (RENTON MUNI)"));
    std::vector<std::string> classes;
    for (int32_t i = 0; i < m->airspace_count; ++i) {
        classes.push_back(m->airspaces[static_cast<size_t>(i)].class_text);
    }
    EXPECT_EQ(classes,
              (std::vector<std::string>{"Airspace Class B", "ARTCC/FIR", "Airspace Class D"}));
    EXPECT_TRUE(fetch.handed_over);

    // The scenery's fingerprint takes the add-on areas' files too.
    std::filesystem::copy_file(world / "Addon Scenery/Renton/scenery/AF2_KRNT.bgl",
                               world / "Addon Scenery/Renton/scenery/AF2_KRNT2.bgl");
    auto later = std::make_unique<Module1>();
    ASSERT_EQ(Read_Config_File(*later, Config_File_Name), Config_Status::Ok);
    form = std::make_unique<Form3_Data>();
    Recording_Chooser_Form rescan;
    Run_Scenery_Scan(*later, *form, rescan);
    ASSERT_EQ(rescan.messages.size(), 2u); // the notice, then the database made
    EXPECT_NE(rescan.messages[0].text.find(": 1 file added."), std::string::npos);
}

TEST(Fs2004World, AreasAreLaidActiveOnlyByLayerEachFolderOnce) {
    Module1 m;
    const struct {
        const char* layer;
        const char* active;
        const char* local;
    } areas[] = {{"30", "TRUE", "c:\\fs\\a"},
                 {"5", "true", "c:\\fs\\b"},
                 {"5", "TRUE", "c:\\fs\\c"},
                 {"1", "FALSE", "c:\\fs\\d"},
                 {"x", "TRUE", "c:\\fs\\e"},
                 {"40", "TRUE", "C:\\FS\\B"},
                 {"2", "TRUE", ""}};
    for (const auto& a : areas) {
        Scenery_Area& area = Append(m.scenery_areas, m.scenery_area_count);
        area.Layer = a.layer;
        area.Active = a.active;
        area.Local = a.local;
    }
    // A Layer that is no number counts as 0; the same folder again is not laid twice.
    EXPECT_EQ(Fs2004_Area_Order(m.scenery_areas, m.scenery_area_count),
              (std::vector<size_t>{4, 1, 2, 0}));
    EXPECT_TRUE(Fs2004_Area_Order(m.scenery_areas, -1).empty());
}

} // namespace quilmark
