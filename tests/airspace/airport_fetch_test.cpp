#include <gtest/gtest.h>

#include <filesystem>

#include "airspace/airport_fetch.h"
#include "platform/drives.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "state/module1.h"
#include "support/decode.h"
#include "support/hooked_form.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

Airport_Rec Airport(const std::string& ident, const std::string& name, double lat, double lon) {
    Airport_Rec a;
    a.ident = ident;
    a.name = name;
    a.lat = lat;
    a.lon = lon;
    return a;
}

Bytes Boundary_File(double south, double west, double north, double east, const std::string& name) {
    Bgl_File_Layout layout;
    layout.boundary_section = Boundary_Section(
        {{Concat({Boundary_Box_Record(Encode_Latitude(south), Encode_Longitude(west),
                                      Encode_Latitude(north), Encode_Longitude(east)),
                  Boundary_Name_Record(name), Boundary_Circle_Record(5, 0, 2500)})}});
    return Build_Bgl(layout);
}

struct Fetch_Fixture {
    std::unique_ptr<Module1> m = std::make_unique<Module1>();
    std::unique_ptr<Form3_Data> form = std::make_unique<Form3_Data>();

    // The list as the scan leaves it.
    void Fill(const std::vector<Airport_Rec>& airports) {
        m->airports.Resize_Keep(airports.size());
        for (size_t i = 0; i < airports.size(); ++i) {
            m->airports[i] = airports[i];
        }
        m->airport_count = static_cast<int32_t>(airports.size());
    }
    Recording_Chooser_Form Fetch(const std::optional<std::string>& entry) {
        Recording_Chooser_Form ui;
        Get_Airport(*m, *form, ui, entry);
        return ui;
    }
};

} // namespace

TEST(AirportFetch, FindsTheRecordBuildsAirspaceAndHandsOver) {
    Work_Dir dir("fetch");
    Write_File(dir.Sub("atc/scenery/a.bgl"), Boundary_File(47, -123, 48, -122, "SEA D"));
    Write_File(dir.Sub("atc/scenery/b.BGL"), Boundary_File(40, -80, 41, -79, "FAR AWAY"));
    Write_File(dir.Sub("atc/scenery/c.bgl"), Bytes(50, 1)); // no marker: passed over, counted
    Fetch_Fixture f;
    f.form->drives = Plain_Drive_List();
    f.m->atc_data_path = dir.Sub("atc") + "\\SCENERY"; // the program's path; case ignored
    Airport_Rec first = Airport("KSEA", "SEATTLE", 10, 10);
    Airport_Rec later = Airport("KSEA", "SEATTLE", 47.45, -122.31);
    later.approach_freq = "119.2";
    f.Fill({first, Airport("KBFI", "BOEING", 47.53, -122.3), later});

    Recording_Chooser_Form ui = f.Fetch(std::string("KSEA (SEATTLE)"));
    EXPECT_EQ(f.m->current_airport, later); // the later of two equal texts
    EXPECT_EQ(f.m->airports.Slot_Count(), 1u);
    EXPECT_EQ(f.m->airport_count, 3);
    EXPECT_EQ(ui.status_texts, (std::vector<std::string>{"Getting Airport's Info...",
                                                         "Looking for Airspace...", "Done"}));
    EXPECT_EQ(ui.control_changes, (std::vector<bool>{false, true}));
    EXPECT_EQ(ui.form_repaints, 6); // three while counting, three while reading
    EXPECT_EQ(ui.progress_max, 100);
    EXPECT_EQ(ui.progress_value, 0);
    EXPECT_TRUE(ui.handed_over);

    ASSERT_EQ(f.m->airspace_count, 2);
    EXPECT_EQ(f.m->airspaces[0].region_name, "SEA D");
    EXPECT_EQ(f.m->airspaces[0].class_text, "Airspace Class D");
    const Airspace_Rec& terminal = f.m->airspaces[1]; // always last
    EXPECT_EQ(terminal.class_text, "TRACON (Departure/Approach)");
    EXPECT_EQ(terminal.freq_text, "119.2 Mhz  ");
    EXPECT_EQ(terminal.ceiling_alt, 10000);
    ASSERT_EQ(terminal.point_count, 2);
    EXPECT_EQ(terminal.points[0], (Boundary_Point_Rec{Point_Fix, 47.45, -122.31, 0}));
    EXPECT_EQ(terminal.points[1], (Boundary_Point_Rec{Point_Circle, 0, 0, 20}));
    EXPECT_EQ(f.m->airspaces.Slot_Count(), 3u);

    // Back at the chooser, another airport: only its own airspace remains.
    Airport_Rec boeing = Airport("KBFI", "BOEING", 47.53, -122.3);
    boeing.departure_freq = "120.4";
    boeing.approach_freq = "119.2";
    f.Fill({boeing});
    f.form->airspace_bytes_left = 0; // spent by the last fetch: each fetch has its own
    f.Fetch(std::string("KBFI (BOEING)"));
    ASSERT_EQ(f.m->airspace_count, 2);
    EXPECT_EQ(f.m->airspaces[0].region_name, "SEA D");
    EXPECT_EQ(f.m->airspaces[1].freq_text, "120.4 Mhz  119.2 Mhz  ");
    EXPECT_EQ(f.m->current_airport.ident, "KBFI");
}

TEST(AirportFetch, NothingChosenChangesNothing) {
    Fetch_Fixture f;
    f.Fill({Airport("KSEA", "SEATTLE", 47, -122)});
    Recording_Chooser_Form ui = f.Fetch(std::nullopt);
    EXPECT_TRUE(ui.status_texts.empty());
    EXPECT_TRUE(ui.control_changes.empty());
    EXPECT_FALSE(ui.handed_over);
    EXPECT_EQ(f.m->airports.Slot_Count(), 2u);
}

TEST(AirportFetch, MissingFolderGivesNoAirspaceAndStillHandsOver) {
    Fetch_Fixture f;
    f.form->drives = Plain_Drive_List();
    f.m->atc_data_path = "/no/such/folder";
    f.Fill({Airport("KXXX", "NOWHERE", 47, -122)});
    Recording_Chooser_Form ui = f.Fetch(std::string("KXXX (NOWHERE)"));
    EXPECT_EQ(f.m->airspace_count, 0);
    EXPECT_FALSE(f.m->airspaces.allocated);
    EXPECT_TRUE(ui.handed_over);
    EXPECT_EQ(ui.status_texts.back(), "Done");
}

TEST(AirportFetch, AirspaceMemoryIsBoundedPerFetch) {
    // 80,000 circles that all hold the airport: far more than any world has.
    Work_Dir dir("fetch-bounded");
    std::vector<Bytes> circles(
        80000, Concat({Boundary_Box_Record(Encode_Latitude(47), Encode_Longitude(-123),
                                           Encode_Latitude(48), Encode_Longitude(-122)),
                       Boundary_Circle_Record(5, 0, 2500)}));
    Bgl_File_Layout layout;
    layout.boundary_section = Boundary_Section({circles});
    Write_File(dir.Sub("atc/many.bgl"), Build_Bgl(layout));
    Fetch_Fixture f;
    f.form->drives = Plain_Drive_List();
    f.m->atc_data_path = dir.Sub("atc");
    f.Fill({Airport("KSEA", "SEATTLE", 47.45, -122.31)});
    f.Fetch(std::string("KSEA (SEATTLE)"));
    constexpr int64_t Bytes_Each = sizeof(Airspace_Rec) + sizeof(Boundary_Point_Rec);
    EXPECT_EQ(f.m->airspace_count, Max_Airspace_Bytes_Per_Fetch / Bytes_Each);
}

TEST(AirportFetch, RunningOutOfMemoryIsReported) {
    struct Case {
        const char* at_status;
        const char* message;
        bool chart_opens; // with the airport and no airspace
    };
    const Case cases[] = {
        {"Getting Airport's Info...", "There is not enough memory to open this airport.", false},
        {"Looking for Airspace...",
         "There is not enough memory to read the airspace around this airport, so the chart "
         "will show no airspace.",
         true},
    };
    for (const Case& c : cases) {
        Fetch_Fixture f;
        Airport_Rec sea = Airport("KSEA", "SEATTLE", 47.45, -122.31);
        sea.approach_freq = "119.2";
        f.Fill({sea});
        Hooked_Chooser_Form ui(c.at_status, [] { throw std::bad_alloc(); });
        Get_Airport(*f.m, *f.form, ui, std::string("KSEA (SEATTLE)"));
        EXPECT_EQ(ui.messages, (std::vector<Shown_Message>{
                                   {c.message, "Quilmark Message", Message_Icon::Exclamation}}));
        EXPECT_EQ(ui.handed_over, c.chart_opens);
        EXPECT_TRUE(ui.controls_enabled);
        EXPECT_EQ(ui.status_texts.back(), "Done");
        EXPECT_EQ(f.m->airspace_count, 0);
        // Either the chart has the airport, or the chooser still has its list.
        EXPECT_EQ(f.m->current_airport.ident, c.chart_opens ? "KSEA" : "");
        EXPECT_EQ(f.m->airports.Slot_Count(), c.chart_opens ? 1u : 2u);
    }
}

} // namespace quilmark
