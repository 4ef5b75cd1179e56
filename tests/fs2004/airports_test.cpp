// FS2004 airports: the format's encodings, a file with every sub-record kind through to the
// program's Airport_Rec, the ILS joined from another file, the name list, and layering.
#include <gtest/gtest.h>

#include <memory>

#include "bgl_writer/fs2004_writer.h"
#include "fs2004/airport_convert.h"
#include "fs2004/bgl_file.h"
#include "fs2004/layers.h"
#include "geo/magnetic_variation.h"

namespace quilmark {

namespace {

struct Decoded {
    std::vector<Fs2004_Airport_Rec> airports;
    Fs2004_Ils_Table ils;
    Fs2004_Name_Table names;
};

void Read_Into(Decoded& d, const Bytes& file) {
    Bgl_Image image;
    Set_Bgl_Image(image, file);
    Decode_Fs2004_Airports(image, d.airports);
    Decode_Fs2004_Ils(image, d.ils);
    Decode_Fs2004_Names(image, d.names);
}

Bytes Airport_File(const std::vector<Fs9_Airport>& airports) {
    std::vector<Bytes> records;
    for (const Fs9_Airport& a : airports) {
        records.push_back(Fs9_Airport_Record(a));
    }
    return Build_Fs2004({{0x03, {records}}});
}

// 18 degrees east everywhere: 3277 counts of 360/65536 degree.
const Magvar_Grid& East_18() {
    static const auto grid = [] {
        auto g = std::make_unique<Magvar_Grid>();
        g->fill(3277);
        return g;
    }();
    return *grid;
}

Fs9_Airport Airport(std::string ident, double lat, double lon, std::vector<Bytes> subrecords) {
    return {std::move(ident), lat, lon, 0, 0, std::move(subrecords)};
}

// A runway whose secondary end swaps left and right: 1 gives 16L/34R.
Fs9_Runway Runway(uint8_t primary, uint8_t secondary, uint8_t designator = 0) {
    Fs9_Runway r;
    r.primary_number = primary;
    r.secondary_number = secondary;
    r.primary_designator = designator;
    r.secondary_designator = designator == 1 ? 2 : designator == 2 ? 1 : designator;
    r.lat = 47.5;
    r.lon = -122.3;
    return r;
}

} // namespace

TEST(Fs2004Encodings, WorkedExamples) {
    const struct {
        uint32_t lat_raw, lon_raw;
        double lat, lon;
    } positions[] = {{0x079080B9, 0x07B11760, 47.449889, -122.311778},
                     {0x1608ECDC, 0x2C282EB9, -33.946111, 151.177222},
                     {0x10000000, 0x18000000, 0, 0}};
    for (const auto& p : positions) {
        EXPECT_NEAR(Fs2004_Latitude(p.lat_raw), p.lat, 5e-7);
        EXPECT_NEAR(Fs2004_Longitude(p.lon_raw), p.lon, 5e-7);
    }
    const struct {
        uint32_t value;
        bool shifted;
        const char* text;
    } idents[] = {{0x0262E680, true, "KSEA"},
                  {0x01B9D120, true, "EGLL"},
                  {0x013EEB60, true, "9WA1"},
                  {0x00116BEA, false, "ISNQ"},
                  {0x347, false, "K1"},
                  {0x0262E69F, true, "KSEA"}, // low bits ignored
                  {0, true, ""}};
    for (const auto& i : idents) {
        EXPECT_EQ(Fs2004_Icao(i.value, i.shifted), i.text) << std::hex << i.value;
    }
    EXPECT_EQ(Fs2004_Frequency_Text(118750000), "118.75");
    EXPECT_EQ(Fs2004_Frequency_Text(0x06A86820), "111.7");
    EXPECT_EQ(Millimetres_To_Feet(131978), 433);
    EXPECT_EQ(Millimetres_To_Feet(762000), 2500);

    const struct {
        uint32_t bits;
        const char* text;
    } spots[] = {{0x0100C90D, "GATE B 12"},
                 {0x00003282, "N PARKING 3"},
                 {Fs9_Parking_Bits(9, 0, 2, 40, 0), "NW PARKING 40"},
                 {Fs9_Parking_Bits(10, 0, 8, 4, 0), "GATE 4"},
                 {Fs9_Parking_Bits(11, 0, 11, 1, 0), "DOCK 1"},
                 {Fs9_Parking_Bits(37, 3, 10, 4095, 2), "GATE Z 4095"},
                 {Fs9_Parking_Bits(0, 0, 1, 7, 0), "7"}, // no name: the number alone
                 {Fs9_Parking_Bits(38, 0, 1, 8, 0), "8"}};
    for (const auto& s : spots) {
        EXPECT_EQ(Fs2004_Parking_Text(s.bits), s.text) << std::hex << s.bits;
    }
    const struct {
        uint8_t number, designator;
        const char* text;
    } ends[] = {{16, 1, "16L"}, {34, 2, "34R"}, {9, 0, "9"},  {1, 3, "1C"},  {36, 4, "36W"},
                {37, 0, "N"},   {38, 0, "NE"},  {43, 0, "W"}, {44, 0, "NW"}, {9, 6, "9"}};
    for (const auto& e : ends) {
        EXPECT_EQ(Fs2004_Runway_End_Text(e.number, e.designator), e.text);
    }
}

TEST(Fs2004Airports, EverySubRecordKindIntoTheChartsRecord) {
    Fs9_Runway main_runway = Runway(16, 34);
    main_runway.primary_designator = 1;
    main_runway.secondary_designator = 2;
    main_runway.primary_ils = "ISNQ";
    main_runway.secondary_ils = "IBEJ";
    main_runway.lat = 47.4490;
    main_runway.lon = -122.3110;
    main_runway.heading = 179.9f;
    main_runway.length_m = 3627;
    main_runway.elevation_mm = 131978;
    // Both ends name one ILS: it serves the end its localizer names.
    Fs9_Runway compass = Runway(37, 41);
    compass.primary_ils = compass.secondary_ils = "ISHD";
    Fs9_Airport ksea{"KSEA", 47.449889, -122.311778, 131978, 342, {}};
    ksea.subrecords = {
        Fs9_Record(0x77, Bytes(10, 0xEE)), // unknown: stepped over
        Fs9_Taxi_Names_Record({"", "A", "B"}),
        Fs9_Com_Record(6, 119900000, "SEATTLE TOWER"),
        Fs9_Com_Record(6, 120950000),
        Fs9_Com_Record(2, 122900000),
        Fs9_Com_Record(12, 135450000),
        Fs9_Com_Record(1, 118000000),
        Fs9_Com_Record(5, 121700000),
        Fs9_Com_Record(7, 128000000),
        Fs9_Com_Record(8, 119200000),
        Fs9_Com_Record(9, 120400000),
        Fs9_Com_Record(10, 124200000),
        Fs9_Runway_Record(main_runway),
        Fs9_Runway_Record(Runway(36, 18, 4)),
        Fs9_Runway_Record(compass),
        Fs9_Record(0x11, Fs9_Bytes{}.U8(16).U8(0x11).Lon_Lat(47.46, -122.31).U32(0).F32(180).bytes),
        Fs9_Taxi_Points_Record({{1, 47.45, -122.30}, {2, 47.46, -122.31}, {4, 47.44, -122.32}}),
        Fs9_Parking_Record(
            {{13, 9, 12, 20, 47.447, -122.305, {"ASA"}}, {2, 2, 3, 10, 47.448, -122.306, {}}}),
        Fs9_Taxi_Paths_Record({{0, 1, 1, 1, 0},
                               {0, 2, 2, 34, 2},
                               {1, 1, 3, 0, 0},
                               {2, 0, 5, 2, 0},
                               {0, 1, 9, 1, 0},   // a type outside the table: left out
                               {1, 2, 1, 7, 0}}), // a name index past the list
        Fs9_Name_Record("Seattle-Tacoma Intl")};
    Fs9_Airport kbfi{"KBFI", 47.53, -122.30, 6400, 342, {Fs9_Runway_Record(Runway(13, 31))}};
    Bytes airport_file = Build_Fs2004(
        {{0x03, {{Fs9_Airport_Record(ksea)}, {Fs9_Airport_Record(kbfi)}}},
         {0x27,
          {{Fs9_Name_List_Record({{"KSEA", "Sea-Tac"}, {"KBFI", "Boeing Field/King Co Intl"}})}}}});
    // The ILS lie in another file, among a VOR and an ILS of the same ident that another
    // airport owns, though it stands nearer.
    Fs9_Ils vor{"SEA", "", "SEATTLE", 47.43, -122.31, 116800000, 0, false, 3, true};
    Fs9_Ils snq{"ISNQ", "KSEA", "ILS RWY 16L", 47.4327, -122.3110, 110300000, 179.9f, false};
    Fs9_Ils bej{"IBEJ", "KSEA", "", 47.4653, -122.3110, 110900000, 359.9f, true};
    Fs9_Ils other{"ISNQ", "KPDX", "", 47.4651, -122.3110, 111100000, 100, false};
    Fs9_Ils shared{"ISHD", "KSEA", "", 47.5, -122.3, 109900000, 0, true};
    Bytes ils_file =
        Build_Fs2004({{0x13,
                       {{Fs9_Ils_Record(vor), Fs9_Ils_Record(other)},
                        {Fs9_Ils_Record(snq), Fs9_Ils_Record(bej), Fs9_Ils_Record(shared)}}}});
    Decoded d;
    Read_Into(d, airport_file);
    Read_Into(d, ils_file);
    ASSERT_EQ(d.airports.size(), 2u);
    EXPECT_EQ(d.ils.records.size(), 4u); // the VOR is no ILS

    Airport_Rec a = Fs2004_Airport_Record(d.airports[0], East_18(), d.ils, d.names);
    EXPECT_EQ(a.ident, "KSEA");
    EXPECT_EQ(a.name, "SEATTLE-TACOMA INTL"); // its own name before the name list's
    EXPECT_NEAR(a.lat, 47.449889, 1e-6);
    EXPECT_NEAR(a.lon, -122.311778, 1e-6);
    EXPECT_EQ(a.atis_freq + " " + a.ground_freq + " " + a.tower_freq + " " + a.clearance_freq +
                  " " + a.approach_freq + " " + a.departure_freq + " " + a.center_freq,
              "118 121.7 119.9 128 119.2 120.4 124.2");

    ASSERT_EQ(a.runway_count, 3);
    EXPECT_EQ(a.runways.Slot_Count(), 4u);
    const Runway_Rec& r = a.runways[0];
    EXPECT_EQ(r.end1_name, "16L");
    EXPECT_EQ(r.end2_name, "34R");
    // The ends of the full length lie at 47.46532 and 47.43268; drawn, 30 m short of each.
    const double thirty_m = 30 * 360.0 / 40007000;
    EXPECT_NEAR(r.end1_lat, 47.46532 - thirty_m, 2e-5);
    EXPECT_NEAR(r.end2_lat, 47.43268 + thirty_m, 2e-5);
    EXPECT_NEAR(r.end1_lon, -122.31104, 2e-5);
    EXPECT_NEAR(r.end2_lon, -122.31096, 2e-5);
    EXPECT_EQ(r.end1_heading, 162); // 179.9 true less 18 east
    EXPECT_EQ(r.end2_heading, 342);
    EXPECT_EQ(r.altitude_ft, 433);
    EXPECT_EQ(r.length_raw, 11900);
    EXPECT_EQ(r.width_raw, 148);
    EXPECT_EQ(a.runways[1].end1_name + "/" + a.runways[1].end2_name, "36W/18W");
    EXPECT_EQ(a.runways[2].end1_name + "/" + a.runways[2].end2_name, "N/S");

    // Each ILS seated on the end that names it; the one at Portland of the same ident not.
    ASSERT_EQ(a.ils_count, 3);
    EXPECT_EQ(a.ils.Slot_Count(), 4u);
    EXPECT_EQ(a.ils[0], (ILS_Rec{"ILS RWY 16L", r.end1_lat, r.end1_lon, 162, "110.3"}));
    EXPECT_EQ(a.ils[1], (ILS_Rec{"IBEJ", r.end2_lat, r.end2_lon, 342, "110.9"}));
    EXPECT_EQ(a.ils[2].lat, a.runways[2].end2_lat);

    ASSERT_EQ(a.taxi_point_count, 3);
    EXPECT_EQ(a.taxi_points.Slot_Count(), 3u);
    EXPECT_EQ(a.taxi_points[1].point_kind, 2);
    EXPECT_NEAR(a.taxi_points[2].lat, 47.44, 1e-6);
    EXPECT_NEAR(a.taxi_points[2].lon, -122.32, 1e-6);
    ASSERT_EQ(a.parking_count, 2);
    EXPECT_EQ(a.parkings[0].spot_name, "GATE B 12");
    EXPECT_EQ(a.parkings[1].spot_name, "N PARKING 3"); // found behind the airline code
    EXPECT_EQ(a.parkings[1].radius_ft, 33);
    EXPECT_NEAR(a.parkings[1].lat, 47.448, 1e-6);
    ASSERT_EQ(a.taxi_path_count, 5);
    const Taxi_Path_Rec paths[] = {{Path_Taxiway, 0, 1, "A"},
                                   {Path_Runway, 0, 2, "Runway 34R"},
                                   {Path_Parking, 1, 1, ""},
                                   {Path_Taxiway, 2, 0, "B"},
                                   {Path_Taxiway, 1, 2, ""}};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(a.taxi_paths[static_cast<size_t>(i)], paths[i]) << i;
    }

    // Without a name sub-record the name list names the airport.
    Airport_Rec b = Fs2004_Airport_Record(d.airports[1], East_18(), d.ils, d.names);
    EXPECT_EQ(b.name, "BOEING FIELD/KING CO INTL");
    EXPECT_EQ(b.ils_count, 0);
    EXPECT_FALSE(b.ils.allocated);
    EXPECT_FALSE(b.taxi_points.allocated);
}

TEST(Fs2004Layers, HigherLayersDeleteWhatTheyNameAndAddTheirOwn) {
    const Fs9_Airport stock =
        Airport("KSEA", 47.45, -122.31,
                {Fs9_Name_Record("Seattle-Tacoma"), Fs9_Runway_Record(Runway(16, 34, 1)),
                 Fs9_Runway_Record(Runway(16, 34, 2)), Fs9_Com_Record(6, 119900000),
                 Fs9_Com_Record(5, 121700000),
                 Fs9_Taxi_Points_Record({{1, 47.45, -122.30}, {1, 47.46, -122.30}}),
                 Fs9_Parking_Record({{10, 9, 1, 20, 47.45, -122.29, {}}}),
                 Fs9_Taxi_Paths_Record({{0, 1, 1, 0, 0}, {1, 0, 3, 0, 0}})});
    const Fs9_Airport stock_bfi =
        Airport("KBFI", 47.53, -122.30,
                {Fs9_Name_Record("Boeing Field"), Fs9_Runway_Record(Runway(13, 31)),
                 Fs9_Com_Record(6, 120600000)});
    // The add-on deletes runway 16R/34L and the stock tower, and adds its own of each (its
    // 16R/34L survives its own deletion) and a piece of ground network, which stands behind
    // the stock one.
    Fs9_Deletion some;
    some.runways = {{16, 34, 2, 1}};
    some.frequencies = {{6, 119900000}};
    const Fs9_Airport addon =
        Airport("KSEA", 47.4502, -122.3093,
                {Fs9_Delete_Record(some), Fs9_Runway_Record(Runway(16, 34, 3)),
                 Fs9_Runway_Record(Runway(16, 34, 2)), Fs9_Com_Record(6, 120950000),
                 Fs9_Taxi_Points_Record({{1, 47.44, -122.30}, {1, 47.43, -122.30}}),
                 Fs9_Parking_Record({{12, 9, 5, 20, 47.44, -122.29, {}}}),
                 Fs9_Taxi_Paths_Record({{0, 1, 1, 0, 0}, {1, 0, 3, 0, 0}})});
    // A second add-on replaces Boeing Field whole.
    Fs9_Deletion all;
    all.flags = Delete_All_Runways | Delete_All_Frequencies | Delete_All_Taxiways;
    const Fs9_Airport new_bfi = Airport(
        "KBFI", 47.54, -122.31, {Fs9_Delete_Record(all), Fs9_Runway_Record(Runway(14, 32))});
    const Fs9_Airport kpae = Airport("KPAE", 47.91, -122.28, {Fs9_Name_Record("Snohomish Co")});

    std::vector<std::vector<Fs2004_Airport_Rec>> layers(3);
    for (const auto& [layer, file] :
         {std::pair{0, Airport_File({stock, stock_bfi})}, std::pair{1, Airport_File({addon, kpae})},
          std::pair{2, Airport_File({new_bfi})}}) {
        Bgl_Image image;
        Set_Bgl_Image(image, file);
        Decode_Fs2004_Airports(image, layers[static_cast<size_t>(layer)]);
    }
    const std::vector<Fs2004_Airport_Rec> world = Layer_Fs2004_Airports(std::move(layers));
    ASSERT_EQ(world.size(), 3u);
    Decoded none;
    const auto record = [&](size_t i) {
        return Fs2004_Airport_Record(world[i], East_18(), none.ils, none.names);
    };

    Airport_Rec sea = record(0);
    EXPECT_EQ(sea.ident, "KSEA");
    EXPECT_EQ(sea.name, "SEATTLE-TACOMA"); // the add-on has no name of its own
    EXPECT_NEAR(sea.lat, 47.4502, 1e-6);   // the reference point is the add-on's
    std::string runways;
    for (int i = 0; i < sea.runway_count; ++i) {
        runways += sea.runways[static_cast<size_t>(i)].end1_name + " ";
    }
    EXPECT_EQ(runways, "16L 16C 16R ");
    EXPECT_EQ(sea.tower_freq, "120.95");
    EXPECT_EQ(sea.ground_freq, "121.7");
    ASSERT_EQ(sea.taxi_point_count, 4);
    ASSERT_EQ(sea.parking_count, 2);
    ASSERT_EQ(sea.taxi_path_count, 4);
    EXPECT_EQ(sea.taxi_paths[2], (Taxi_Path_Rec{Path_Taxiway, 2, 3, ""}));
    EXPECT_EQ(sea.taxi_paths[3], (Taxi_Path_Rec{Path_Parking, 3, 1, ""}));
    EXPECT_EQ(sea.parkings[1].spot_name, "GATE A 5");

    Airport_Rec bfi = record(1);
    EXPECT_EQ(bfi.name, "BOEING FIELD");
    ASSERT_EQ(bfi.runway_count, 1);
    EXPECT_EQ(bfi.runways[0].end1_name, "14");
    EXPECT_EQ(bfi.tower_freq, "");
    EXPECT_EQ(record(2).name, "SNOHOMISH CO");
}

TEST(Fs2004Files, DamagedFilesEndEveryWalkWithinTheirBytes) {
    Fs9_Airport a{"KSEA", 47.45, -122.31, 0, 0, {}};
    a.subrecords = {Fs9_Name_Record("Sea"),
                    Fs9_Runway_Record(Runway(16, 34)),
                    Fs9_Taxi_Points_Record({{1, 47.45, -122.30}}),
                    Fs9_Parking_Record({{10, 9, 1, 20, 47.45, -122.29, {"AB", "CD"}}}),
                    Fs9_Taxi_Paths_Record({{0, 0, 1, 0, 0}}),
                    Fs9_Delete_Record({0xFF, {{1, 19, 0, 0}}, {7}, {{6, 1}}})};
    const Bytes good = Build_Fs2004({{0x03, {{Fs9_Airport_Record(a)}}},
                                     {0x13, {{Fs9_Ils_Record({"ISEA", "KSEA", "I", 47, -122})}}},
                                     {0x27, {{Fs9_Name_List_Record({{"KSEA", "Sea"}})}}}});
    // Every cut, and every byte set to 0xFF in turn: the decoders end, and what they find
    // stays in proportion to the file.
    for (size_t i = 0; i <= good.size(); ++i) {
        for (const Bytes& damaged :
             {Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(i)), [&] {
                  Bytes b = good;
                  b[i % good.size()] = 0xFF;
                  return b;
              }()}) {
            Decoded d;
            Read_Into(d, damaged);
            size_t elements = d.ils.records.size() + d.names.size();
            for (const Fs2004_Airport_Rec& airport : d.airports) {
                elements += 1 + airport.runways.size() + airport.coms.size() +
                            airport.taxi_points.size() + airport.parkings.size() +
                            airport.taxi_paths.size() + airport.deletion.runways.size() +
                            airport.deletion.frequencies.size();
            }
            EXPECT_LE(elements, damaged.size()) << i;
        }
    }
}

} // namespace quilmark
