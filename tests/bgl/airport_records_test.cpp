// The record stream of an airport: reference point, name, comm, runways with their ILS,
// and the taxiway block.
#include <gtest/gtest.h>

#include "geo/geodesy.h"
#include "support/decode.h"

namespace quilmark {

namespace {

// Decodes one airport whose stream holds the given records; a grid may be given.
Airport_Rec Decode(const Bytes& stream, const Magvar_Grid* grid = nullptr) {
    auto m = Decode_Bgl_Bytes(One_Airport_File("TEST", stream), {grid});
    EXPECT_EQ(m->airport_count, 1);
    return m->airport_count == 1 ? m->airports[0] : Airport_Rec{};
}

Runway_Fields Runway(int32_t number, int32_t code, double heading = 45) {
    Runway_Fields f;
    f.lat_raw = Encode_Latitude(47.5);
    f.lon_raw = Encode_Longitude(-122.3);
    f.heading_raw = Encode_Heading(heading);
    f.length_ft = 3000;
    f.number = number;
    f.designator_code = code;
    return f;
}

Navaid_Fields Ils(double heading, const std::string& name = "ITST") {
    return {Encode_Latitude(47.0),
            Encode_Longitude(-122.0),
            Encode_Heading(heading),
            0x01109000,
            4,
            name,
            8};
}

} // namespace

TEST(AirportRecords, StreamEndsAtTheFirstUnknownRecord) {
    Airport_Rec a = Decode(Concat({Record(0x10007, {}), Name_Record("Lost")}));
    Airport_Rec only_ident;
    only_ident.ident = "TEST";
    EXPECT_EQ(a, only_ident);
}

TEST(AirportRecords, UninterpretedRecordsAreSteppedOver) {
    Bytes filler(20, 0xEE);
    Airport_Rec a = Decode(Concat({Record(0x10003, filler), Record(0x10005, filler),
                                   Navaid_Record(Ils(10)), // not behind a runway: no ILS
                                   Name_Record("Kept")}));
    EXPECT_EQ(a.name, "KEPT");
    EXPECT_EQ(a.ils_count, 0);
    EXPECT_FALSE(a.ils.allocated);
}

TEST(AirportRecords, ReferencePointAndNameLaterOnesOverwrite) {
    Airport_Rec a = Decode(Concat({Reference_Point_Record(1000, 2000), Name_Record("first"),
                                   Reference_Point_Record(5000875, 1 << 30),
                                   Name_Record(std::string("s\xE9ville\0x", 9), 12)}));
    EXPECT_EQ(a.lat, 45.0);
    EXPECT_EQ(a.lon, 1073741824.0 * 360 / 4294967297.0);
    EXPECT_EQ(a.name, "S\xC9VILLEX"); // upper case by the code page, 0 bytes dropped
}

TEST(RunwayRecords, Designators) {
    struct Case {
        int32_t number, code;
        const char *end1, *end2;
    } cases[] = {
        {9, 1, "9L", "27R"},   {27, 2, "27R", "9L"}, {18, 0, "18", "36"},
        {36, 3, "36C", "18C"}, {1, 4, "1H", "19H"},  {0, 0, "0", "18"},
    };
    for (const Case& c : cases) {
        Airport_Rec a = Decode(Runway_Record(Runway(c.number, c.code)));
        ASSERT_EQ(a.runway_count, 1);
        EXPECT_EQ(a.runways[0].end1_name, c.end1) << c.number << "/" << c.code;
        EXPECT_EQ(a.runways[0].end2_name, c.end2) << c.number << "/" << c.code;
    }
}

TEST(RunwayRecords, UnnamableRunwaysKeepTheTextsBeforeThem) {
    Airport_Rec a = Decode(Concat({Runway_Record(Runway(40, 0)), Runway_Record(Runway(16, 1)),
                                   Runway_Record(Runway(37, 2)), Runway_Record(Runway(5, 9))}));
    ASSERT_EQ(a.runway_count, 4);
    EXPECT_EQ(a.runways.Slot_Count(), 5u); // one spare slot
    EXPECT_EQ(a.runways[0].end1_name, ""); // nothing before it
    EXPECT_EQ(a.runways[1].end1_name, "16L");
    EXPECT_EQ(a.runways[2].end1_name, "16L"); // 37 forms no designator
    EXPECT_EQ(a.runways[2].end2_name, "34R");
    EXPECT_EQ(a.runways[3].end1_name, "16L"); // code 9 is outside the table
    EXPECT_NE(a.runways[2].end1_lat, 0.0);    // the runway still exists with its ends
}

TEST(RunwayRecords, DrawnEndsGeometry) {
    // Heading 0: both ends on the centre's meridian, the primary end to the south.
    Runway_Fields north = Runway(36, 0, 0);
    north.length_ft = 984; // 299.92 m: under 300, drawn at full length
    Airport_Rec a = Decode(Runway_Record(north));
    const Runway_Rec& r = a.runways[0];
    EXPECT_EQ(r.end1_lon, r.end2_lon);
    EXPECT_LT(r.end1_lat, r.end2_lat);
    double half_lat = 360 * (984 * 0.3048) * 0.5 / 40007000;
    EXPECT_NEAR(r.end2_lat - r.end1_lat, 2 * half_lat, 1e-12);

    north.length_ft = 985; // 300.23 m: 60 m shorter when drawn
    const Runway_Rec longer = Decode(Runway_Record(north)).runways[0];
    double shortened = 360 * (985 * 0.3048 - 60) * 0.5 / 40007000;
    EXPECT_NEAR(longer.end2_lat - longer.end1_lat, 2 * shortened, 1e-12);
    EXPECT_EQ(longer.length_raw, 985);
}

TEST(RunwayRecords, EndsAcrossTheAntimeridianStayInRange) {
    Runway_Fields f = Runway(9, 0, 90);
    f.lon_raw = Encode_Longitude(179.999);
    f.length_ft = 10000;
    const Runway_Rec r = Decode(Runway_Record(f)).runways[0];
    EXPECT_GT(r.end1_lon, 179.9);
    EXPECT_LE(r.end1_lon, 180.0);
    EXPECT_LT(r.end2_lon, -179.9);
    EXPECT_GE(r.end2_lon, -180.0);
}

TEST(RunwayRecords, MagneticHeadingsUseEachEndsOwnPosition) {
    // 10 degrees east of variation west of 122.5 W, none east of it (grid by whole degrees).
    auto grid = std::make_unique<Magvar_Grid>();
    for (int lat = -90; lat <= 90; ++lat) {
        (*grid)[static_cast<size_t>(181 * (360 - 123) + 90 + lat)] = 1821; // 10.0 degrees
    }
    Runway_Fields f = Runway(9, 0, 90);
    f.lon_raw = Encode_Longitude(-122.5);
    f.lat_raw = Encode_Latitude(47.0);
    f.length_ft = 12000;
    const Runway_Rec r = Decode(Runway_Record(f), grid.get()).runways[0];
    EXPECT_LT(r.end1_lon, -122.5);
    EXPECT_EQ(r.end1_heading, 80);  // 90 true - 10 at the western end
    EXPECT_EQ(r.end2_heading, 270); // -90 with no variation at the eastern end
}

TEST(IlsRecords, MagneticHeadingTakenAtTheRecordsOwnPosition) {
    auto grid = std::make_unique<Magvar_Grid>();
    // Variation of -15 at the ILS's own place (47 N, 122 W), none at the runway's ends.
    (*grid)[static_cast<size_t>(181 * (360 - 122) + 90 + 47)] = -2731;
    Runway_Fields f = Runway(4, 0, 45);
    f.lat_raw = Encode_Latitude(50.0);
    Navaid_Fields unnamed = Ils(45, "");
    unnamed.name_padded_length = 0; // a name field of length 0
    Airport_Rec a = Decode(Concat({Runway_Record(f), Navaid_Record(unnamed)}), grid.get());
    ASSERT_EQ(a.ils_count, 1);
    EXPECT_EQ(a.ils[0].mag_heading, 60);
    EXPECT_EQ(a.ils[0].ils_name, "");
    EXPECT_EQ(a.ils[0].lat, a.runways[0].end1_lat); // and then seated
}

TEST(TaxiwayBlock, ParkingNamesAndRadii) {
    // Points and their positions: the hand-checked fixture of tool_bgl_test.cpp.
    Airport_Rec a = Decode(Taxiway_Block_Record({Parking_List({
        {0, 0, 30, 0x00221002},
        {0, 0, 0.4572f, Parking_Code_Word(1, 3, 50)},
        {0, 0, 1, Parking_Code_Word(1, 5, 37)},
        {0, 0, 1, 0x0A81}, // fewer than 8 digits
    })}));
    ASSERT_EQ(a.parking_count, 4);
    EXPECT_EQ(a.parkings[0].spot_name, "N PARKING 1056");
    EXPECT_EQ(a.parkings[0].radius_ft, 98);            // 98.43 ft
    EXPECT_EQ(a.parkings[1].spot_name, "N PARKING 3"); // unknown code: the text before
    EXPECT_EQ(a.parkings[1].radius_ft, 1);             // the single 0.4572 is just below 1.5
    EXPECT_EQ(a.parkings[2].spot_name, "GATE Z 5");
    EXPECT_EQ(a.parkings[3].spot_name, "PARKING 21"); // 0x00000A81 = 21 * 128 + 1
    // An unknown code on the first spot has no text before it: the number alone.
    a = Decode(Taxiway_Block_Record({Parking_List({{0, 0, 1, Parking_Code_Word(1, 4, 0)}})}));
    EXPECT_EQ(a.parkings[0].spot_name, " 4");
}

TEST(TaxiwayBlock, LabelsResolvedWhenTheNameListComes) {
    Runway_Fields r27 = Runway(27, 1);
    Airport_Rec a = Decode(Concat({
        Runway_Record(Runway(9, 0)),
        Runway_Record(Runway(18, 0)),
        Runway_Record(r27),
        Taxiway_Block_Record({Path_List({{0, 0, 1, 0},   // name 0 is "1" ...
                                         {0, 1, 2, 1},   // ... so both end up as "B"
                                         {1, 0, 2, 2},   // runway index 2: 27L
                                         {2, 2, 0, 1},   // parking path: keeps its number
                                         {0, 2, 3, 9},   // no such name: keeps its number
                                         {1, 1, 1, 3},   // the spare runway slot: no designator
                                         {1, 1, 1, 8}}), // outside the runways: unchanged
                              Name_List({"1", "B", "C"})}),
        Name_Record("after"),
    }));
    ASSERT_EQ(a.taxi_path_count, 7);
    const char* expected[] = {"B", "B", "Runway 27L", "1", "9", "Runway ", "8"};
    for (size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(a.taxi_paths[i].path_label, expected[i]) << i;
    }
    EXPECT_EQ(a.name, "AFTER"); // the stream goes on behind the block
}

TEST(TaxiwayBlock, UnknownListSizeEndsTheBlockWithDecimalLabels) {
    Airport_Rec a = Decode(Concat({
        Taxiway_Block_Record(
            {Path_List({{0, 0, 1, 0}}), List_Header(1, 16), Bytes(16, 0), Name_List({"A"})}),
        Name_Record("next"),
    }));
    EXPECT_EQ(a.taxi_paths[0].path_label, "0");
    EXPECT_EQ(a.name, "NEXT");
}

TEST(TaxiwayBlock, ASecondListOfASizeReplacesTheFirst) {
    Airport_Rec a = Decode(Taxiway_Block_Record(
        {Point_List({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}), Point_List({{9, 0, 0}})}));
    ASSERT_EQ(a.taxi_point_count, 1);
    EXPECT_EQ(a.taxi_points.Slot_Count(), 1u);
    EXPECT_EQ(a.taxi_points[0].point_kind, 9);
}

} // namespace quilmark
