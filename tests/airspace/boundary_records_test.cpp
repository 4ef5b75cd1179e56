// The boundary section walker and the boundary records, through Read_BGL_Sections.
#include <gtest/gtest.h>

#include "airspace/airspace_class.h"
#include "support/decode.h"

namespace quilmark {

namespace {

int32_t Lat(double degrees) {
    return Encode_Latitude(degrees);
}
int32_t Lon(double degrees) {
    return Encode_Longitude(degrees);
}

// A box around (47.5, -122.3) unless told otherwise.
Bytes Box(double south = 47, double west = -123, double north = 48, double east = -122) {
    return Boundary_Box_Record(Lat(south), Lon(west), Lat(north), Lon(east));
}

// Airspaces found for an airport at lat, lon in a file with this boundary section.
std::unique_ptr<Decoded_Rec> Airspaces_For(const Bytes& section, double lat = 47.5,
                                           double lon = -122.3, bool database_present = true) {
    Bgl_File_Layout layout;
    layout.boundary_section = section;
    return Decode_Bgl_Bytes(Build_Bgl(layout), {nullptr, !database_present, {lat, lon}});
}

std::unique_ptr<Decoded_Rec> One_Boundary(const Bytes& children, double lat = 47.5,
                                          double lon = -122.3) {
    return Airspaces_For(Boundary_Section({{children}}), lat, lon);
}

} // namespace

TEST(BoundaryRecords, BoxTestIsStrictAgainstRoundedEdges) {
    struct Case {
        double south, lat, lon;
        bool inside;
    } cases[] = {
        {47, 47.5, -122.3, true},           {47, 47.0, -122.3, false}, // on the south edge
        {47, 47.00001, -122.3, true},                                  // just north of it
        {47, 47.5, -122.0, false},                                     // on the east edge
        {47, 48.1, -122.3, false},                                     // north of the box
        {47.20004, 47.20002, -122.3, true}, // the edge is rounded to 47.2 first
    };
    for (const Case& c : cases) {
        auto m = One_Boundary(Box(c.south, -123, 48, -122), c.lat, c.lon);
        EXPECT_EQ(m->airspace_count, c.inside ? 1 : 0) << c.lat << ", " << c.lon;
    }
    // Across the 180th meridian west lies above east: no airport is ever inside.
    EXPECT_EQ(One_Boundary(Box(50, 179, 52, -179), 51, 179.5)->airspace_count, 0);
    EXPECT_EQ(One_Boundary(Box(50, 179, 52, -179), 51, -179.5)->airspace_count, 0);
}

TEST(BoundaryRecords, OutlineNamesBandAndFrequencies) {
    auto m = One_Boundary(Concat(
        {Boundary_Name_Record("LOST"), // in front of the box: lost
         Box(), Boundary_Name_Record("SEATTLE", 8), Boundary_Name_Record("CLASS B"),
         Boundary_Start_Record(Lat(47.61234567), Lon(-122.3), 0, 3000),
         Boundary_Point_Record(0x12005, Lat(47.6), Lon(-122.1)),
         Record(0x12003, Bytes(12, 0xAA)), // Boundary_Skip leaves no trace
         Boundary_Point_Record(0x12001, Lat(47.45), Lon(-122.3)),
         Boundary_Point_Record(0x12006, Lat(47.3), Lon(-122.1)),
         Boundary_Point_Record(0x12007, Lat(47.3), Lon(-122.5)),
         Boundary_Circle_Record(0, 100, 10000), // the last band record wins
         Boundary_Com_Record(0x01190500, "SEA APP"), Boundary_Com_Record(0x01234500, "SEA CTR"),
         Record(0x12004, {}), // ends the boundary
         Boundary_Point_Record(0x12005, Lat(47.7), Lon(-122.1))}));
    ASSERT_EQ(m->airspace_count, 1);
    const Airspace_Rec& a = m->airspaces[0];
    EXPECT_EQ(a.region_name, "SEATTLE  CLASS B");
    EXPECT_EQ(a.floor_alt, 100);
    EXPECT_EQ(a.ceiling_alt, 10000);
    EXPECT_EQ(a.freq_text, "119.05 Mhz  123.45 Mhz  ");
    EXPECT_EQ(a.facility_name, "SEA CTR");
    EXPECT_EQ(a.class_text, ""); // classes are given by the fetch
    ASSERT_EQ(a.point_count, 6);
    EXPECT_EQ(a.points.Slot_Count(), 7u);
    const uint8_t kinds[] = {Point_Start,  Point_Line,    Point_Fix,
                             Point_Arc_CW, Point_Arc_CCW, Point_Circle};
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(a.points[i].kind, kinds[i]) << i;
    }
    EXPECT_EQ(a.points[0].lat, 47.6123); // 4 decimals
    EXPECT_EQ(a.points[5].lat, 0);       // a circle has no position of its own
    EXPECT_EQ(a.points[5].radius, 0);    // stored as it is
}

TEST(BoundaryRecords, SecondBoxOpensASecondAirspaceOnlyIfWanted) {
    auto wanted =
        One_Boundary(Concat({Box(), Boundary_Name_Record("ONE"), Box(47.4, -122.4, 47.6, -122.2),
                             Boundary_Name_Record("TWO")}));
    ASSERT_EQ(wanted->airspace_count, 2);
    EXPECT_EQ(wanted->airspaces[0].region_name, "ONE");
    EXPECT_EQ(wanted->airspaces[1].region_name, "TWO");
    // Each at the centre of its box's diagonal, without points of its own.
    EXPECT_NEAR(wanted->airspaces[0].center_lat, 47.5, 0.02);
    EXPECT_NEAR(wanted->airspaces[0].center_lon, -122.5, 0.02);
    EXPECT_FALSE(wanted->airspaces[0].points.allocated);

    auto unwanted = One_Boundary(Concat(
        {Box(), Boundary_Name_Record("ONE"), Box(10, 10, 11, 11), Boundary_Name_Record("TWO")}));
    ASSERT_EQ(unwanted->airspace_count, 1);
    EXPECT_EQ(unwanted->airspaces[0].region_name, "ONE  TWO");

    auto none = One_Boundary(Concat({Box(10, 10, 11, 11), Boundary_Name_Record("X")}));
    EXPECT_EQ(none->airspace_count, 0);
    EXPECT_FALSE(none->airspaces.allocated);
}

TEST(BoundaryWalker, GroupKindsAtTheWrongLevelArePassedOver) {
    Bytes boundary = Concat({Box(), Boundary_Name_Record("FOUND")});
    // A boundary (kind 5) directly in the section, a list (kind 4) inside a list, and a
    // skipped record between two lists: only the boundary of the second list is read.
    Bytes section = Concat({
        Boundary_Group(5, boundary),
        Record(0x30001, Bytes(20, 0x01)),
        Boundary_Group(
            4, Concat({Boundary_Group(4, Boundary_Group(5, boundary)), Record(0x30001, {}),
                       Boundary_Group(5, boundary), Boundary_Group(7, boundary), Record(0, {})})),
        Record(0, {}),
    });
    auto m = Airspaces_For(section);
    ASSERT_EQ(m->airspace_count, 1);
    EXPECT_EQ(m->airspaces[0].region_name, "FOUND");
}

TEST(BoundaryWalker, RunsInBothDatabaseStatesAndLeavesAirportsAlone) {
    Bgl_File_Layout layout;
    Airport_Entry entry;
    entry.ident = "KAAA";
    layout.groups.push_back({{entry}, std::nullopt, 0});
    layout.boundary_section = Boundary_Section({{Box()}});
    for (bool present : {false, true}) {
        auto m = Decode_Bgl_Bytes(Build_Bgl(layout), {nullptr, !present, {47.5, -122.3}});
        EXPECT_EQ(m->airspace_count, 1) << present;
        EXPECT_EQ(m->airport_count, present ? 0 : 1);
    }
    // A boundary section alone leaves the airport list alone.
    auto m = Airspaces_For(Boundary_Section({{Box()}}), 47.5, -122.3, false);
    EXPECT_EQ(m->airport_count, 0);
}

TEST(AirspaceClass, RuleAtItsLimits) {
    struct Case {
        const char* freq;
        const char* facility;
        int32_t floor, ceiling;
        const char* expected;
    } cases[] = {
        {"125.1 Mhz  ", "SEATTLE CENTER", 0, 2000, "ARTCC/FIR"},
        {"125.1 Mhz  ", "", 0, 2000, "Airspace Class D"},
        {"", "SEATTLE CENTER", 0, 2000, "Airspace Class D"},
        {"", "", 0, 2500, "Airspace Class D"},
        {"", "", 0, 2501, "Airspace Class C"},
        {"", "", 0, 4000, "Airspace Class C"},
        {"", "", 0, 4001, "Airspace Class B"},
        {"", "", 2600, 2400, "Airspace Class C"}, // the floor counts too
    };
    for (const Case& c : cases) {
        Airspace_Rec a;
        a.freq_text = c.freq;
        a.facility_name = c.facility;
        a.floor_alt = c.floor;
        a.ceiling_alt = c.ceiling;
        EXPECT_EQ(Airspace_Class(a), c.expected) << c.floor << ".." << c.ceiling;
    }
}

} // namespace quilmark
