// FS2004 boundaries: which ones hold the airport, and how each becomes an airspace.
#include <gtest/gtest.h>

#include "bgl_writer/fs2004_writer.h"
#include "fs2004/bgl_file.h"
#include "fs2004/boundaries.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

constexpr double Airport_Lat = 47.5;
constexpr double Airport_Lon = -122.3;

Bytes Boundary_File() {
    // The format's own bytes of two points: START at 47.60 N 122.50 W, and a CIRCLE of
    // 92 600 m, its radius where the longitude would be.
    const Bytes worked = {0x02, 0x00, 0x01, 0x00, 0xCE, 0xAB, 0x89, 0x07, 0xAB, 0xAA, 0xAA,
                          0x07, 0x06, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xDC, 0xB4, 0x47};
    // A class B box given with its north east corner first.
    Fs9_Boundary class_b{3, 0x11, 47.7, -122.0, 47.3, -122.6, 0, 3048000, {}};
    class_b.subrecords = {Fs9_Name_Record("SEATTLE"),
                          Fs9_Record(0x21, worked),
                          Fs9_Boundary_Points_Record({{2, 47.4, -122.2},
                                                      {3, 47.5, -122.3},
                                                      {4, 47.6, -122.3},
                                                      {5, 47.4, -122.3},
                                                      {7, 47.4, -122.3}}), // no such type: left out
                          Fs9_Name_Record("CLASS B"),
                          Fs9_Com_Record(8, 119200000, "SEATTLE APPROACH"),
                          Fs9_Com_Record(9, 120400000, "SEATTLE DEPARTURE")};
    Fs9_Boundary class_d{5, 0x12, 47.45, -122.35, 47.55, -122.25, 0, 762000, {}};
    class_d.subrecords = {Fs9_Name_Record("SEATTLE CLASS D"),
                          Fs9_Boundary_Points_Record({{3, 47.5, -122.3}, {6, 0, 0, 9260}})};
    Fs9_Boundary moa{14, 0x11, 47.0, -123.0, 48.0, -122.0, 152400, 5486400, {}};
    Fs9_Boundary centre_elsewhere{1, 0x11, 48.0, -123.0, 49.0, -122.0, 0, 18288000, {}};
    Fs9_Boundary on_the_edge{4, 0x11, 47.5, -122.4, 47.6, -122.2, 0, 1219200, {}};
    const Bytes geopol = Fs9_Record(0x23, Fs9_Bytes{}.U8(1).U8(0).Lon_Lat(47, -123).bytes);
    return Build_Fs2004({{0x20,
                          {{geopol, Fs9_Boundary_Record(class_b)},
                           {Fs9_Boundary_Record(class_d), Fs9_Boundary_Record(centre_elsewhere),
                            Fs9_Boundary_Record(moa), Fs9_Boundary_Record(on_the_edge)}}}});
}

} // namespace

TEST(Fs2004Boundaries, TheBoundariesAroundTheAirportBecomeAirspaces) {
    const Bytes file = Boundary_File();
    // The same records found through the table's record pairs and, with the pairs
    // zeroed, right behind the table.
    Bytes no_pairs = file;
    const auto table = static_cast<size_t>(Read_Int32_Le(file, 0x38 + 12));
    for (size_t q = table + 16 * 2; q < table + 16 * 2 + 8 * 6; q += 8) {
        no_pairs[q] = no_pairs[q + 1] = no_pairs[q + 2] = no_pairs[q + 3] = 0;
    }
    for (const Bytes& bytes : {file, no_pairs}) {
        Bgl_Image image;
        Set_Bgl_Image(image, bytes);
        Dyn_Array<Airspace_Rec> airspaces;
        int32_t count = 0;
        Decode_Fs2004_Boundaries(image, Airport_Lat, Airport_Lon, airspaces, count);
        ASSERT_EQ(count, 3); // not the one elsewhere, nor the one whose edge the airport is on
        EXPECT_EQ(airspaces.Slot_Count(), 4u);

        const Airspace_Rec& b = airspaces[0];
        EXPECT_EQ(b.boundary_type, 3);
        EXPECT_EQ(b.region_name, "SEATTLE  CLASS B");
        EXPECT_EQ(b.freq_text, "119.2 Mhz  120.4 Mhz  ");
        EXPECT_EQ(b.facility_name, "SEATTLE DEPARTURE");
        EXPECT_EQ(b.floor_alt, 0);
        EXPECT_EQ(b.ceiling_alt, 10000);
        EXPECT_EQ(b.center_lat, 47.5);
        EXPECT_EQ(b.center_lon, -122.3);
        EXPECT_EQ(b.class_text, "");
        ASSERT_EQ(b.point_count, 6);
        EXPECT_EQ(b.points.Slot_Count(), 7u);
        const Boundary_Point_Rec outline[] = {
            {Point_Start, 47.6, -122.5, 0},  {Point_Circle, 0, 0, 50},
            {Point_Line, 47.4, -122.2, 0},   {Point_Fix, 47.5, -122.3, 0},
            {Point_Arc_CW, 47.6, -122.3, 0}, {Point_Arc_CCW, 47.4, -122.3, 0}};
        for (size_t i = 0; i < 6; ++i) {
            EXPECT_EQ(b.points[i], outline[i]) << i;
        }

        const Airspace_Rec& d = airspaces[1];
        EXPECT_EQ(d.boundary_type, 5);
        EXPECT_EQ(d.ceiling_alt, 2500);
        ASSERT_EQ(d.point_count, 2);
        EXPECT_EQ(d.points[1], (Boundary_Point_Rec{Point_Circle, 0, 0, 5}));
        EXPECT_EQ(d.freq_text, "");

        EXPECT_EQ(airspaces[2].boundary_type, 14);
        EXPECT_EQ(airspaces[2].floor_alt, 500);
        EXPECT_EQ(airspaces[2].point_count, 0);
        EXPECT_FALSE(airspaces[2].points.allocated);
    }
}

TEST(Fs2004Boundaries, ClassTextsOfTheClassicChart) {
    // Types 1 and 3 to 5 have a text; every other type, none.
    const char* texts[] = {
        "", "ARTCC/FIR", "", "Airspace Class B", "Airspace Class C", "Airspace Class D"};
    for (int type = 0; type <= 255; ++type) {
        EXPECT_EQ(Fs2004_Class_Text(static_cast<uint8_t>(type)), type <= 5 ? texts[type] : "")
            << type;
    }
}

TEST(Fs2004Files, OnlyFilesDeclaringAWantedSectionAreReadWhole) {
    const std::string path = Temp_File("head.bgl");
    auto may_hold = [&](const Bytes& bytes, std::initializer_list<uint32_t> types) {
        Write_File(path, bytes);
        return Fs2004_File_May_Hold(path, types);
    };
    const Bytes boundaries = Build_Fs2004({{0x20, {{}}}});
    EXPECT_TRUE(may_hold(boundaries, {0x03, 0x20}));
    EXPECT_FALSE(may_hold(boundaries, {0x03}));
    EXPECT_FALSE(may_hold(Bytes(0x38, 0), {0x20})); // not of this format
    // A table of 4,000 pointers runs past the bytes read first: the whole file decides.
    Bytes long_table = boundaries;
    long_table[20] = 0xA0, long_table[21] = 0x0F;
    long_table.resize(0x38 + 4000 * 20);
    EXPECT_TRUE(may_hold(long_table, {0x03}));
    EXPECT_FALSE(Fs2004_File_May_Hold(path + ".missing", {0x20}));
}

} // namespace quilmark
