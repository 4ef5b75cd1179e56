// Writes the seed corpora of the fuzz targets, one folder per target below OUT_FOLDER,
// every seed laid out by the BGL writer or the encoders of the files it stands for.
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "bgl/airport_walker.h"
#include "bgl_writer/bgl_writer.h"
#include "bgl_writer/fs2004_writer.h"
#include "fuzz_support.h"
#include "scenery/airport_database.h"
#include "scenery/config_file.h"
#include "support/example_field.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

fs::path out_root;

void Seed(const std::string& target, const std::string& name, const Bytes& bytes) {
    Write_File((out_root / target / name).string(), bytes);
}

void Seed_Text(const std::string& target, const std::string& name, const std::string& text) {
    Seed(target, name, Bytes(text.begin(), text.end()));
}

// A busy airport near 47.45 N 122.31 W: runways with ILS on both ends, comm records, and a
// ground network whose names arrive after the paths.
Bytes Busy_Airport_Stream() {
    Bytes stream = Concat_Bytes(
        {Reference_Point_Record(Encode_Latitude(47.449), Encode_Reference_Longitude(-122.309)),
         Name_Record("Seattle-Tacoma Intl", 20), Comm_Record(Encode_Frequency(118.0), 1),
         Comm_Record(Encode_Frequency(121.7), 5), Comm_Record(Encode_Frequency(119.9), 6),
         Comm_Record(Encode_Frequency(119.2), 8), Comm_Record(Encode_Frequency(120.4), 9)});
    const char* designators[] = {"16L", "16C", "16R"};
    for (int i = 0; i < 3; ++i) {
        Runway_Fields r;
        r.lat_raw = Encode_Latitude(47.449 + 0.001 * i);
        r.lon_raw = Encode_Longitude(-122.308 - 0.004 * i);
        r.elevation_m = 132;
        r.heading_raw = Encode_Heading(179.9);
        r.length_ft = 9000 + 1000 * i;
        r.width_ft = 150;
        r.designator_code = i + 1;
        r.number = 16;
        Append_Bytes(stream, Runway_Record(r));
        Navaid_Fields ils;
        ils.lat_raw = Encode_Latitude(47.463);
        ils.lon_raw = Encode_Longitude(-122.308 - 0.004 * i);
        ils.heading_raw = Encode_Heading(179.9);
        ils.frequency_word = Encode_Frequency(110.3 + i);
        ils.name = std::string("I") + designators[i];
        ils.name_padded_length = 8;
        Append_Bytes(stream, Navaid_Record(ils));
    }
    std::vector<Taxi_Point_Element> points;
    std::vector<Taxi_Path_Element> paths;
    std::vector<Parking_Element> spots;
    for (int i = 0; i < 12; ++i) {
        points.push_back({i % 3, 230.0f, -1900.0f + 300.0f * static_cast<float>(i)});
        if (i > 0) {
            paths.push_back({0, i - 1, i, i % 2});
        }
        spots.push_back({470.0f, -1900.0f + 300.0f * static_cast<float>(i), 22.0f,
                         Parking_Code_Word(9, i + 1, 12 + i % 4)});
        paths.push_back({2, i, i, 0});
    }
    paths.push_back({1, 0, 11, 2});
    Append_Bytes(stream, Taxiway_Block_Record({Point_List(points), Parking_List(spots),
                                               Path_List(paths), Name_List({"A", "B", "C"})}));
    return stream;
}

// A boundary with its box about the given centre: circles, a polygon with arcs, or an
// outer centre with a frequency and a facility name.
Bytes Boundary_Around(double lat, double lon, int shape) {
    const double half = 0.5 + 0.25 * shape;
    Bytes box = Boundary_Box_Record(Encode_Latitude(lat - half), Encode_Longitude(lon - half),
                                    Encode_Latitude(lat + half), Encode_Longitude(lon + half));
    switch (shape) {
    case 0:
        return Concat_Bytes(
            {box, Boundary_Name_Record("SEATTLE CLASS D", 16),
             Boundary_Point_Record(0x12001, Encode_Latitude(lat), Encode_Longitude(lon)),
             Boundary_Circle_Record(5, 0, 2500)});
    case 1:
        return Concat_Bytes(
            {box, Boundary_Name_Record("SEATTLE CLASS B", 16), Boundary_Name_Record("AREA A", 8),
             Boundary_Start_Record(Encode_Latitude(lat - 0.2), Encode_Longitude(lon - 0.2), 0,
                                   10000),
             Boundary_Point_Record(0x12005, Encode_Latitude(lat + 0.2),
                                   Encode_Longitude(lon - 0.2)),
             Boundary_Point_Record(0x12001, Encode_Latitude(lat), Encode_Longitude(lon)),
             Boundary_Point_Record(0x12006, Encode_Latitude(lat + 0.2),
                                   Encode_Longitude(lon + 0.2)),
             Record(0x12003, Bytes(8, 0)),
             Boundary_Point_Record(0x12007, Encode_Latitude(lat - 0.2),
                                   Encode_Longitude(lon + 0.2)),
             Boundary_Point_Record(0x12005, Encode_Latitude(lat - 0.2),
                                   Encode_Longitude(lon - 0.2))});
    default:
        return Concat_Bytes(
            {box, Boundary_Name_Record("SEATTLE CENTER", 16),
             Boundary_Com_Record(Encode_Frequency(124.2), "SEATTLE CTR", 12),
             Boundary_Start_Record(Encode_Latitude(lat - 1), Encode_Longitude(lon - 1), 18000,
                                   60000),
             Boundary_Point_Record(0x12005, Encode_Latitude(lat + 1), Encode_Longitude(lon + 1))});
    }
}

Bytes Airport_File(const std::vector<std::pair<std::string, Bytes>>& airports) {
    Bgl_File_Layout layout;
    Airport_Group group;
    for (const auto& [ident, stream] : airports) {
        Airport_Entry entry;
        entry.ident = ident;
        entry.stream = stream;
        group.entries.push_back(entry);
    }
    layout.groups.push_back(group);
    return Build_Bgl(layout);
}

void Airport_Seeds() {
    Seed("airport_section", "example_field.bgl", Example_Field());
    Seed("airport_section", "busy_airport.bgl", Airport_File({{"KSEA", Busy_Airport_Stream()}}));
    Bytes small = Concat_Bytes(
        {Reference_Point_Record(Encode_Latitude(47.53), Encode_Reference_Longitude(-122.30)),
         Name_Record("Boeing Fld", 12), Comm_Record(Encode_Frequency(120.6), 6)});
    Seed("airport_section", "three_airports.bgl",
         Airport_File({{"KBFI", small}, {"KRNT", small}, {"KPAE", Busy_Airport_Stream()}}));
    // Two groups, a gap behind the entries, an entry of another kind.
    Bgl_File_Layout layout;
    Airport_Entry other;
    other.ident = "VOR1";
    other.entry_kind = 0x50002;
    Airport_Entry plain;
    plain.ident = "KTIW";
    plain.stream = small;
    layout.groups.push_back({{other, plain}, std::nullopt, 12});
    layout.groups.push_back({{plain}, std::nullopt, 0});
    Seed("airport_section", "two_groups.bgl", Build_Bgl(layout));

    // Entries that all point at one block of runways: the walk runs out of its budget.
    Runway_Fields runway;
    runway.number = 9;
    Bytes runways;
    for (int i = 0; i < 100; ++i) {
        Append_Bytes(runways, Runway_Record(runway));
    }
    Bgl_File_Layout shared;
    Airport_Entry first;
    first.ident = "KAAA";
    first.stream = runways;
    Airport_Group copies;
    for (int i = 0; i < 200; ++i) {
        Airport_Entry copy;
        copy.ident = "K" + std::to_string(i);
        copies.entries.push_back(copy);
    }
    shared.groups = {{{first}, std::nullopt, 0}, copies};
    // The copies' positions do not change the layout: take the first block's from a build.
    const int32_t block = Read_Int32_Le(Build_Bgl(shared), 200 + 24 + 12);
    for (Airport_Entry& copy : shared.groups[1].entries) {
        copy.block_position = block;
    }
    Seed("airport_section", "shared_block.bgl", Build_Bgl(shared));

    // A second taxiway block whose name list meets runway segments already named.
    Runway_Fields r16;
    r16.number = 16;
    r16.designator_code = 1;
    Bytes twice =
        Concat_Bytes({Runway_Record(r16),
                      Taxiway_Block_Record({Point_List({{1, 0, 0}, {1, 100, 0}, {1, 200, 50}}),
                                            Path_List({{1, 0, 1, 0}, {0, 1, 2, 1}, {0, 2, 0, 0}}),
                                            Name_List({"A", "B"})}),
                      Taxiway_Block_Record({Name_List({"B", "0"})})});
    Seed("airport_section", "two_name_lists.bgl", Airport_File({{"KTWO", twice}}));
}

void Boundary_Seeds() {
    Bgl_File_Layout layout;
    layout.boundary_section =
        Boundary_Section({{Boundary_Around(47.45, -122.31, 0), Boundary_Around(47.45, -122.31, 1)},
                          {Boundary_Around(47.45, -122.31, 2), Boundary_Around(40.0, -80.0, 0)}});
    Seed("boundary_section", "seattle_airspace.bgl", Build_Bgl(layout));
    Bgl_File_Layout both;
    Airport_Entry sea;
    sea.ident = "KSEA";
    sea.stream = Busy_Airport_Stream();
    both.groups.push_back({{sea}, std::nullopt, 0});
    both.boundary_section = Boundary_Section({{Boundary_Around(47.45, -122.31, 1)}});
    Bytes file = Build_Bgl(both);
    Seed("boundary_section", "airport_and_airspace.bgl", file);
    Seed("airport_section", "airport_and_airspace.bgl", file);
}

void Magdec_Seeds() {
    auto smooth = [](int lat, int lon) {
        return static_cast<int16_t>(((lon * 7 + lat * 3) % 61 - 30) * 65536 / 360);
    };
    Seed("magdec", "smooth.bgl", Build_Magdec(Magdec_Values(smooth)));
    Seed("magdec", "extremes.bgl", Build_Magdec(Magdec_Values([](int lat, int lon) {
             return static_cast<int16_t>((lat + lon) % 2 == 0 ? 32767 : -32768);
         })));
    Bytes cut = Build_Magdec(Magdec_Values(smooth), 300);
    cut.resize(300 + 8 + 2 * 500);
    Seed("magdec", "truncated.bgl", cut);
    Bytes header_only(128, 0);
    header_only[110] = 0x78;
    Seed("magdec", "header_only.bgl", header_only);
}

void Scenery_Cfg_Seeds() {
    Seed_Text("scenery_cfg", "world.cfg",
              "[General]\r\nTitle=FS2002 World Scenery\r\nClean_on_Exit=TRUE\r\n\r\n"
              "[Area.001]\r\nTitle=Default Terrain\r\nTexture_ID=1\r\nRemote=\r\n"
              "Local=Scenery\\World\r\nLayer=1\r\nActive=TRUE\r\nRequired=TRUE\r\n\r\n"
              "[Area.002]\r\nTitle=Airport and Facilities Data\r\nLocal=Scenery\\NAmW\r\n"
              "Layer=3\r\nActive=TRUE\r\nRequired=TRUE\r\n\r\n"
              "[Area.003]\r\nTitle=Additional Facility Data\r\nLocal=Scenery\\ATC\r\n"
              "Layer=5\r\nActive=TRUE\r\nRequired=TRUE\r\n\r\n"
              "[Area.004]\r\nTitle=Mesh Detail\r\nRemote=[FS2002 Disk2]\\Scenery\\Mesh\r\n"
              "Local=Scenery\\Mesh\r\nLayer=6\r\nActive=TRUE\r\nRequired=FALSE\r\n");
    Seed_Text("scenery_cfg", "odd.cfg",
              "\n\n[AREA.1] ; comment\nTITLE=Airport and Facilities Data\rlocal=D:\\Addon\n"
              "[area.2]\r\n;Title=old\r\nSubTitle=x\r\nTitle=see [AREA.1]\r\n[Other]x]\r\n"
              "Local=[FS2002 Disk2]\\Scenery\r\n[Area.1]\r\nRequired=TRUE=yes");
}

void Config_Seeds() {
    Config_Rec config;
    config.title = Config_Title;
    config.format_mark = 1;
    config.fs_version = 1;
    config.fs_path = "C:\\Program Files\\Microsoft Games\\FS2002";
    config.airport_count = 24118;
    std::string bytes = Encode_Config(config);
    Seed_Text("config_file", "config.cfg", bytes);
    Seed_Text("config_file", "config_with_tail.cfg", bytes + "left over");
    Seed_Text("config_file", "config_cut.cfg", bytes.substr(0, bytes.size() - 3));
}

void Database_Seeds() {
    // The airports of the airport seeds, as the build would store them.
    Dyn_Array<Airport_Rec> airports;
    int32_t airport_count = 0;
    airports.Release();
    Bgl_Image image;
    for (const Bytes& file : {Example_Field(), Airport_File({{"KSEA", Busy_Airport_Stream()}})}) {
        Set_Bgl_Image(image, file);
        Read_Airport_Section(image, Fuzz_Grid(), true, airports, airport_count);
    }
    const std::vector<uint8_t> database = Encode_Airport_Database(airports);
    for (int32_t count : {airport_count, airport_count - 1, airport_count + 1}) {
        Byte_Writer w;
        w.I32(count);
        w.Append(database);
        Seed("database_file", "count_" + std::to_string(count) + ".dat", w.bytes);
    }
    Dyn_Array<Airport_Rec> empty;
    empty.Release();
    Byte_Writer none;
    none.I32(0);
    none.Append(Encode_Airport_Database(empty));
    Seed("database_file", "empty.dat", none.bytes);
}

} // namespace

// FS2004 files: an airport with every sub-record kind, the ILS its runways name, a name
// list and boundaries of every point type around 47.45 N 122.31 W; an ident laid again with
// deletions; and subsection entries that all point at one large airport record.
Bytes Fs2004_Busy_Airport(const std::string& ident, uint16_t deleted) {
    Fs9_Runway r16;
    r16.primary_designator = 1;
    r16.secondary_designator = 2;
    r16.primary_ils = "ISNQ";
    r16.secondary_ils = "IBEJ";
    r16.lat = 47.449;
    r16.lon = -122.311;
    r16.heading = 179.9f;
    r16.length_m = 3627;
    Fs9_Runway north = r16;
    north.primary_number = 37;
    north.secondary_number = 41;
    north.primary_designator = north.secondary_designator = 4;
    Fs9_Deletion deletion;
    deletion.flags = deleted;
    deletion.runways = {{16, 34, 1, 2}};
    deletion.starts = {0x00011210};
    deletion.frequencies = {{6, 119900000}};
    std::vector<Fs9_Taxi_Point> points;
    std::vector<Fs9_Parking> spots;
    std::vector<Fs9_Taxi_Path> paths;
    for (uint16_t i = 0; i < 12; ++i) {
        points.push_back({static_cast<uint8_t>(1 + i % 2), 47.44 + 0.002 * i, -122.30});
        spots.push_back({static_cast<uint32_t>(i * 3 % 38), 9, i, 20, 47.44 + 0.002 * i, -122.299,
                         std::vector<std::string>(i % 3, "ASA")});
        paths.push_back({static_cast<uint16_t>(i), static_cast<uint16_t>((i + 1) % 12),
                         static_cast<uint8_t>(1 + i % 5), static_cast<uint8_t>(i % 4), 0});
        paths.push_back({i, i, 3, 0, 0});
    }
    paths.push_back({0, 11, 2, 34, 2});
    Fs9_Airport a{ident, 47.449889, -122.311778, 131978, 342, {}};
    a.subrecords = {Fs9_Name_Record("Seattle-Tacoma Intl"),
                    Fs9_Delete_Record(deletion),
                    Fs9_Runway_Record(r16),
                    Fs9_Runway_Record(north),
                    Fs9_Com_Record(6, 119900000, "SEATTLE TOWER"),
                    Fs9_Com_Record(1, 118000000),
                    Fs9_Com_Record(13, 135450000),
                    Fs9_Taxi_Names_Record({"", "A", "B", "C"}),
                    Fs9_Taxi_Points_Record(points),
                    Fs9_Parking_Record(spots),
                    Fs9_Taxi_Paths_Record(paths),
                    Fs9_Record(0x26, Bytes(30, 0))};
    return Fs9_Airport_Record(a);
}

void Fs2004_Seeds() {
    Fs9_Ils snq{"ISNQ", "KSEA", "ILS RWY 16L", 47.4327, -122.311, 110300000, 179.9f, false};
    Fs9_Ils bej{"IBEJ", "KSEA", "", 47.4653, -122.311, 110900000, 359.9f, true};
    Fs9_Boundary outline{3, 0x11, 47.0, -123.0, 48.0, -122.0, 0, 3048000, {}};
    outline.subrecords = {Fs9_Name_Record("SEATTLE CLASS B"),
                          Fs9_Boundary_Points_Record({{1, 47.3, -122.6},
                                                      {2, 47.7, -122.6},
                                                      {3, 47.45, -122.31},
                                                      {4, 47.7, -122.0},
                                                      {5, 47.3, -122.0},
                                                      {2, 47.3, -122.6}}),
                          Fs9_Com_Record(8, 119200000, "SEATTLE APPROACH")};
    Fs9_Boundary circle{5, 0x12, 47.35, -122.45, 47.55, -122.15, 0, 762000, {}};
    circle.subrecords = {Fs9_Boundary_Points_Record({{3, 47.45, -122.31}, {6, 0, 0, 9260}})};
    Fs9_Boundary centre{1, 0x11, 49.0, -124.0, 45.0, -117.0, 5486400, 18288000, {}};
    centre.subrecords = {Fs9_Name_Record("SEATTLE CENTER"),
                         Fs9_Com_Record(10, 124200000, "SEATTLE CTR")};
    const Bytes geopol = Fs9_Record(0x23, Bytes(20, 0));
    Seed("fs2004", "seattle.bgl",
         Build_Fs2004({{0x03, {{Fs2004_Busy_Airport("KSEA", 0)}}},
                       {0x13, {{Fs9_Ils_Record(snq), Fs9_Ils_Record(bej)}}},
                       {0x27, {{Fs9_Name_List_Record({{"KSEA", "Sea-Tac"}, {"KBFI", "Boeing"}})}}},
                       {0x20,
                        {{Fs9_Boundary_Record(outline), geopol},
                         {Fs9_Boundary_Record(circle), Fs9_Boundary_Record(centre)}}}}));
    Seed("fs2004", "layered.bgl",
         Build_Fs2004({{0x03,
                        {{Fs2004_Busy_Airport("KSEA", 0), Fs2004_Busy_Airport("KBFI", 0)},
                         {Fs2004_Busy_Airport("KSEA", 0x00A8)}}}}));
    // Every subsection entry points at the same airport record: the walk runs out of its
    // budget.
    Bytes shared = Build_Fs2004({{0x03, {{Fs2004_Busy_Airport("KSEA", 0)}}}});
    const uint32_t table = static_cast<uint32_t>(Read_Int32_Le(shared, 0x38 + 12));
    Bytes entries;
    for (int i = 0; i < 300; ++i) {
        entries.insert(entries.end(), shared.begin() + table, shared.begin() + table + 16);
    }
    Byte_Writer w;
    w.Append(shared);
    w.Patch_I32(0x38 + 8, 300);
    w.Patch_I32(0x38 + 12, static_cast<int32_t>(w.Size()));
    w.Append(entries);
    Seed("fs2004", "shared_record.bgl", w.bytes);
}

} // namespace quilmark

int main(int argc, char** argv) {
    using namespace quilmark;
    if (argc != 2) {
        std::fprintf(stderr, "usage: fuzz_seed_writer OUT_FOLDER\n");
        return 2;
    }
    out_root = argv[1];
    fs::remove_all(out_root);
    Airport_Seeds();
    Boundary_Seeds();
    Magdec_Seeds();
    Scenery_Cfg_Seeds();
    Config_Seeds();
    Database_Seeds();
    Fs2004_Seeds();
    return 0;
}
