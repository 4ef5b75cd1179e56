#include "fs2004_world.h"

#include <cmath>
#include <fstream>
#include <map>
#include <memory>

#include "bgl_writer/fs2004_writer.h"
#include "description.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

constexpr double Metres_Per_Degree = 1852.0 * 60;
constexpr double Metres_Per_Foot = 0.3048;

// The ground network of one airport. Nodes are placed in metres east and north of the
// airport's point, shared by position, and written at their absolute positions.
struct Network {
    double lat0 = 0, lon0 = 0;
    std::vector<Fs9_Taxi_Point> points;
    Network_Index index_of{{}, {""}}; // name 0: paths without a name
    std::vector<Fs9_Parking> spots;
    std::vector<Fs9_Taxi_Path> paths;

    double Lat(double y) const { return lat0 + y / Metres_Per_Degree; }
    double Lon(double x) const {
        return lon0 + x / (Metres_Per_Degree * std::cos(lat0 * 3.14159265358979 / 180));
    }
    uint16_t Node(double x, double y) {
        const auto [index, fresh] = index_of.Node(x, y, points.size());
        if (fresh) {
            points.push_back({1, Lat(y), Lon(x)});
        }
        return static_cast<uint16_t>(index);
    }
    uint8_t Name(const std::string& name) { return static_cast<uint8_t>(index_of.Name(name)); }
    void Line(Fs9_Taxi_Path kind, std::pair<double, double> a, std::pair<double, double> b,
              int segments) {
        if (segments < 1) {
            throw Fault("a line needs at least one segment");
        }
        uint16_t previous = Node(a.first, a.second);
        for (int i = 1; i <= segments; ++i) {
            double t = static_cast<double>(i) / segments;
            uint16_t next =
                Node(a.first + (b.first - a.first) * t, a.second + (b.second - a.second) * t);
            kind.start = previous;
            kind.end = next;
            paths.push_back(kind);
            previous = next;
        }
    }
    void Add_To(std::vector<Bytes>& subrecords) const {
        if (!points.empty()) {
            subrecords.push_back(Fs9_Taxi_Points_Record(points));
        }
        if (!spots.empty()) {
            subrecords.push_back(Fs9_Parking_Record(spots));
        }
        if (!paths.empty()) {
            subrecords.push_back(Fs9_Taxi_Paths_Record(paths));
            subrecords.push_back(Fs9_Taxi_Names_Record(index_of.names));
        }
    }
};

struct Airport_Being_Built {
    Fs9_Airport record;
    std::string name;
    bool own_name = true; // else only in the file's name list
    std::vector<Fs9_Runway> runways;
    std::vector<Bytes> subrecords;
    Fs9_Deletion deletion;
    Network network;
};

struct File_Being_Built {
    std::string path;
    std::vector<Bytes> airports;
    std::vector<std::pair<std::string, std::string>> names; // ident, name
    std::vector<Bytes> ils;
    std::vector<Bytes> boundaries;
};

struct Boundary_Being_Built : Outline_Box {
    Fs9_Boundary record;
    std::vector<Fs9_Boundary_Point> points;
    std::vector<Bytes> coms;

    Bytes Record() const {
        const double margin = 0.005;
        Fs9_Boundary b = record;
        b.south = south - margin;
        b.west = west - margin;
        b.north = north + margin;
        b.east = east + margin;
        b.subrecords.push_back(Fs9_Boundary_Points_Record(points));
        b.subrecords.insert(b.subrecords.end(), coms.begin(), coms.end());
        return Fs9_Boundary_Record(b);
    }
};

struct World {
    std::vector<Area_Fields> areas;
    std::vector<File_Being_Built> files;
    std::vector<std::string> junk;
};

int32_t Feet_To_Mm(double feet) {
    return static_cast<int32_t>(std::lround(feet * Metres_Per_Foot * 1000));
}

uint16_t Com_Type(const std::string& name) {
    static const std::map<std::string, uint16_t> types = {
        {"atis", 1},  {"multicom", 2},  {"unicom", 3},   {"ctaf", 4},      {"ground", 5},
        {"tower", 6}, {"clearance", 7}, {"approach", 8}, {"departure", 9}, {"center", 10},
        {"fss", 11},  {"awos", 12},     {"asos", 13}};
    auto it = types.find(name);
    if (it == types.end()) {
        throw Fault("unknown comm kind " + name);
    }
    return it->second;
}

uint8_t Boundary_Type(const std::string& name) {
    static const std::map<std::string, uint8_t> types = {
        {"center", 1},      {"class_a", 2},    {"class_b", 3},   {"class_c", 4}, {"class_d", 5},
        {"class_e", 6},     {"class_f", 7},    {"class_g", 8},   {"tower", 9},   {"clearance", 10},
        {"ground", 11},     {"departure", 12}, {"approach", 13}, {"moa", 14},    {"restricted", 15},
        {"prohibited", 16}, {"warning", 17},   {"alert", 18},    {"danger", 19}};
    auto it = types.find(name);
    if (it == types.end()) {
        throw Fault("unknown boundary type " + name);
    }
    return it->second;
}

// "16L" as number and designator: L 1, R 2, C 3, W 4 (water).
std::pair<uint8_t, uint8_t> Runway_End(const std::string& text) {
    std::string digits = text;
    uint8_t designator = 0;
    const std::string suffixes = "LRCW";
    if (!digits.empty() && suffixes.find(digits.back()) != std::string::npos) {
        designator = static_cast<uint8_t>(suffixes.find(digits.back()) + 1);
        digits.pop_back();
    }
    return {static_cast<uint8_t>(Number(digits)), designator};
}

// The far end: the number 18 on, left and right swapped.
std::pair<uint8_t, uint8_t> Reciprocal(std::pair<uint8_t, uint8_t> end) {
    const uint8_t number = static_cast<uint8_t>((end.first + 17) % 36 + 1);
    const uint8_t designator = end.second == 1 ? 2 : end.second == 2 ? 1 : end.second;
    return {number, designator};
}

void Apply_Boundary_Line(Boundary_Being_Built& b, const std::vector<std::string>& w) {
    const std::string& what = w[0];
    auto number_at = [&](size_t i) { return Number(w.at(i)); };
    if (what == "start" || what == "line" || what == "arc_cw" || what == "arc_ccw") {
        const uint16_t type = what == "start" ? 1 : what == "line" ? 2 : what == "arc_cw" ? 4 : 5;
        b.Cover(number_at(1), number_at(2));
        if (type >= 4) {
            b.Cover_Around_Fix(b.Nm_From_Fix(number_at(1), number_at(2)));
        }
        b.points.push_back({type, number_at(1), number_at(2), 0});
    } else if (what == "fix") {
        b.fix_lat = number_at(1);
        b.fix_lon = number_at(2);
        b.points.push_back({3, b.fix_lat, b.fix_lon, 0});
    } else if (what == "circle") {
        b.Cover_Around_Fix(number_at(1));
        b.points.push_back({6, 0, 0, static_cast<float>(number_at(1) * 1852)});
    } else if (what == "com") {
        b.coms.push_back(Fs9_Com_Record(
            Com_Type("center"), static_cast<uint32_t>(std::lround(number_at(1) * 1e6)), w.at(2)));
    } else {
        throw Fault("unknown boundary line " + what);
    }
}

Fs9_Runway Runway_From(const std::vector<std::string>& w) {
    if (w.size() != 8) {
        throw Fault("runway END centre_lat centre_lon true_heading length_ft width_ft "
                    "elevation_m");
    }
    Fs9_Runway r;
    std::tie(r.primary_number, r.primary_designator) = Runway_End(w[1]);
    std::tie(r.secondary_number, r.secondary_designator) =
        Reciprocal({r.primary_number, r.primary_designator});
    r.lat = Number(w[2]);
    r.lon = Number(w[3]);
    r.heading = static_cast<float>(Number(w[4]));
    r.length_m = static_cast<float>(Number(w[5]) * Metres_Per_Foot);
    r.width_m = static_cast<float>(Number(w[6]) * Metres_Per_Foot);
    r.elevation_mm = static_cast<int32_t>(Number(w[7]) * 1000);
    return r;
}

void Apply_Deletion(Fs9_Deletion& d, const std::vector<std::string>& w) {
    const std::string& what = w.at(1);
    if (what == "all_runways") {
        d.flags |= 1u << 5;
    } else if (what == "all_frequencies") {
        d.flags |= 1u << 3;
    } else if (what == "all_taxiways") {
        d.flags |= 1u << 7;
    } else if (what == "runway") {
        const auto primary = Runway_End(w.at(2));
        const auto secondary = Reciprocal(primary);
        d.runways.push_back({primary.first, secondary.first, primary.second, secondary.second});
    } else if (what == "comm") {
        d.frequencies.push_back(
            {Com_Type(w.at(2)), static_cast<uint32_t>(std::lround(Number(w.at(3)) * 1e6))});
    } else {
        throw Fault("unknown deletion " + what);
    }
}

void Apply_Airport_Line(Airport_Being_Built& a, File_Being_Built& file,
                        const std::vector<std::string>& w) {
    const std::string& what = w[0];
    if (what == "comm") {
        a.subrecords.push_back(Fs9_Com_Record(
            Com_Type(w.at(1)), static_cast<uint32_t>(std::lround(Number(w.at(2)) * 1e6))));
    } else if (what == "runway") {
        a.runways.push_back(Runway_From(w));
    } else if (what == "ils") {
        if (a.runways.empty()) {
            throw Fault("an ils follows its runway");
        }
        Fs9_Ils ils;
        ils.ident = w.at(1);
        ils.airport_ident = a.record.ident;
        ils.hz = static_cast<uint32_t>(std::lround(Number(w.at(2)) * 1e6));
        ils.heading = static_cast<float>(Number(w.at(3)));
        ils.lat = Number(w.at(4));
        ils.lon = Number(w.at(5));
        ils.secondary_end = w.at(6) == "secondary";
        ils.name = w.size() > 7 ? w[7] : "";
        (ils.secondary_end ? a.runways.back().secondary_ils : a.runways.back().primary_ils) =
            ils.ident;
        file.ils.push_back(Fs9_Ils_Record(ils));
    } else if (what == "taxiway") {
        Fs9_Taxi_Path kind;
        kind.type = 1;
        kind.name_or_number = a.network.Name(w.at(1));
        a.network.Line(kind, Pair(w.at(2)), Pair(w.at(3)), static_cast<int>(Number(w.at(4))));
    } else if (what == "runway_path") {
        Fs9_Taxi_Path kind;
        kind.type = 2;
        std::tie(kind.name_or_number, kind.designator) = Runway_End(w.at(1));
        a.network.Line(kind, Pair(w.at(2)), Pair(w.at(3)), static_cast<int>(Number(w.at(4))));
    } else if (what == "gates") {
        if (w.size() != 11) {
            throw Fault("gates \"NAME\" first count x,y dx,dy radius type lane_x LANE join_x");
        }
        Network& n = a.network;
        const auto code = static_cast<uint32_t>(Parking_Name_Code(w[1]));
        const auto first = static_cast<uint32_t>(Number(w[2]));
        const int count = static_cast<int>(Number(w[3]));
        const auto [x, y] = Pair(w[4]);
        const auto [dx, dy] = Pair(w[5]);
        const auto radius = static_cast<float>(Number(w[6]));
        const auto type = static_cast<uint32_t>(Number(w[7]));
        const double lane_x = Number(w[8]);
        const uint8_t lane = n.Name(w[9]);
        const double join_x = Number(w[10]);
        for (int i = 0; i < count; ++i) {
            const double sx = x + dx * i, sy = y + dy * i;
            const auto spot = static_cast<uint16_t>(n.spots.size());
            n.spots.push_back(
                {code, type, first + static_cast<uint32_t>(i), radius, n.Lat(sy), n.Lon(sx), {}});
            const uint16_t node = n.Node(lane_x, sy);
            n.paths.push_back({node, spot, 3, 0, 0});
            if (i > 0) {
                n.paths.push_back({n.Node(lane_x, sy - dy), node, 1, lane, 0});
            }
        }
        n.paths.push_back({n.Node(join_x, y), n.Node(lane_x, y), 1, lane, 0});
    } else if (what == "delete") {
        Apply_Deletion(a.deletion, w);
    } else {
        throw Fault("unknown line " + what);
    }
}

void Finish_Airport(File_Being_Built& file, Airport_Being_Built& a) {
    Fs9_Airport record = a.record;
    if (a.deletion.flags != 0 || !a.deletion.runways.empty() || !a.deletion.frequencies.empty()) {
        record.subrecords.push_back(Fs9_Delete_Record(a.deletion));
    }
    if (a.own_name) {
        record.subrecords.push_back(Fs9_Name_Record(a.name));
    }
    record.subrecords.insert(record.subrecords.end(), a.subrecords.begin(), a.subrecords.end());
    for (const Fs9_Runway& r : a.runways) {
        record.subrecords.push_back(Fs9_Runway_Record(r));
    }
    a.network.Add_To(record.subrecords);
    file.airports.push_back(Fs9_Airport_Record(record));
    file.names.push_back({a.record.ident, a.name});
}

World Read_World(const std::string& path) {
    World world;
    std::unique_ptr<Airport_Being_Built> airport;
    std::unique_ptr<Boundary_Being_Built> boundary;
    auto finish = [&] {
        if (airport != nullptr) {
            Finish_Airport(world.files.back(), *airport);
            airport.reset();
        }
        if (boundary != nullptr) {
            world.files.back().boundaries.push_back(boundary->Record());
            boundary.reset();
        }
    };
    Read_Description(path, [&](const std::vector<std::string>& w) {
        const std::string& what = w[0];
        if (what == "area") {
            world.areas.push_back(Area_From(w));
        } else if (what == "bgl") {
            if (!world.files.empty()) {
                finish();
            }
            world.files.push_back({w.at(1), {}, {}, {}, {}});
        } else if (what == "junk") {
            world.junk.push_back(w.at(1));
        } else if (world.files.empty()) {
            throw Fault(what + " needs a bgl line before it");
        } else if (what == "airport") {
            finish();
            if (w.size() < 6) {
                throw Fault("airport IDENT \"NAME\" lat lon elevation_m [name_list_only]");
            }
            airport = std::make_unique<Airport_Being_Built>();
            airport->record.ident = w[1];
            airport->name = w[2];
            airport->record.lat = airport->network.lat0 = Number(w[3]);
            airport->record.lon = airport->network.lon0 = Number(w[4]);
            airport->record.elevation_mm = static_cast<int32_t>(Number(w[5]) * 1000);
            airport->own_name = !(w.size() > 6 && w[6] == "name_list_only");
        } else if (what == "boundary") {
            finish();
            if (w.size() != 5) {
                throw Fault("boundary \"NAME\" TYPE floor_ft ceiling_ft");
            }
            boundary = std::make_unique<Boundary_Being_Built>();
            boundary->record.type = Boundary_Type(w[2]);
            boundary->record.min_mm = Feet_To_Mm(Number(w[3]));
            boundary->record.max_mm = Feet_To_Mm(Number(w[4]));
            boundary->record.subrecords.push_back(Fs9_Name_Record(w[1]));
        } else if (boundary != nullptr) {
            Apply_Boundary_Line(*boundary, w);
        } else if (airport != nullptr) {
            Apply_Airport_Line(*airport, world.files.back(), w);
        } else {
            throw Fault(what + " outside an airport");
        }
    });
    if (!world.files.empty()) {
        finish();
    }
    return world;
}

Bytes File_Bytes(const File_Being_Built& file) {
    std::vector<Fs9_Section> sections;
    if (!file.airports.empty()) {
        sections.push_back({0x03, {file.airports}});
        sections.push_back({0x27, {{Fs9_Name_List_Record(file.names)}}});
    }
    if (!file.ils.empty()) {
        sections.push_back({0x13, {file.ils}});
    }
    if (!file.boundaries.empty()) {
        sections.push_back({0x20, {file.boundaries}});
    }
    return Build_Fs2004(sections);
}

} // namespace

bool Write_Fs2004_Sample_World(const std::string& description_path, const std::string& out_folder,
                               std::string& error) {
    try {
        World world = Read_World(description_path);
        fs::path root(out_folder);
        fs::create_directories(root);
        Write_Text_File(root / "scenery.cfg",
                        Scenery_Cfg(world.areas, "FS9 World Scenery", "FS9 Scenery Data"));
        Create_Area_Folders(root, world.areas);
        // The same table as FS2002's, with the few bytes of text that FS2004's carries
        // behind the grid.
        Bytes magdec = Build_Magdec(Magdec_Values(Variation_Counts));
        magdec.resize(magdec.size() + 12, 0);
        // In the base area's own folder, which the area lines have made in lower case.
        Write_File((root / "Scenery" / "Base" / "scenery" / "magdec.bgl").string(), magdec);
        for (const auto& file : world.files) {
            Write_File((root / file.path).string(), File_Bytes(file));
        }
        for (const auto& file : world.junk) {
            Write_Text_File(root / file, "Not a scenery file.\r\n");
        }
        return true;
    } catch (const std::exception& e) {
        error = e.what();
        return false;
    }
}

} // namespace quilmark
