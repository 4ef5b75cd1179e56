#include "world_writer.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "bgl_writer/bgl_writer.h"
#include "description.h"
#include "platform/text1252.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

// The ground network of one airport, nodes shared by position.
struct Network {
    std::vector<Taxi_Point_Element> points;
    Network_Index index_of;
    std::vector<Parking_Element> spots;
    std::vector<Taxi_Path_Element> paths;

    bool Empty() const { return points.empty() && spots.empty() && paths.empty(); }

    int32_t Node(double x, double y) {
        const auto [index, fresh] = index_of.Node(x, y, points.size());
        if (fresh) {
            points.push_back({0, static_cast<float>(x), static_cast<float>(y)});
        }
        return static_cast<int32_t>(index);
    }
    int32_t Name(const std::string& name) { return static_cast<int32_t>(index_of.Name(name)); }
    void Line(int32_t kind, int32_t name_index, std::pair<double, double> a,
              std::pair<double, double> b, int segments) {
        if (segments < 1) {
            throw Fault("a line needs at least one segment");
        }
        int32_t previous = Node(a.first, a.second);
        for (int i = 1; i <= segments; ++i) {
            double t = static_cast<double>(i) / segments;
            int32_t next =
                Node(a.first + (b.first - a.first) * t, a.second + (b.second - a.second) * t);
            paths.push_back({kind, previous, next, name_index});
            previous = next;
        }
    }
    Bytes Block() const {
        return Taxiway_Block_Record(
            {Point_List(points), Parking_List(spots), Path_List(paths), Name_List(index_of.names)});
    }
};

struct Airport_Being_Built {
    Airport_Entry entry;
    Bytes stream;
    Network network;
    int runways = 0;
};

struct Bgl_File_Being_Built {
    std::string path;
    std::vector<Airport_Entry> airports;
    std::vector<Bytes> boundaries; // the children of each boundary group
};

struct World {
    std::vector<Area_Fields> areas;
    std::vector<Bgl_File_Being_Built> files;
    std::vector<std::string> junk;
};

// One airspace boundary: its records, and the box that its outline needs, which is worked
// out from the points (and the reach of the arcs and circles about their centre).
struct Boundary_Being_Built : Outline_Box {
    Bytes names;
    Bytes records;

    Bytes Children() const {
        const double margin = 0.005;
        return Concat_Bytes(
            {Boundary_Box_Record(Encode_Latitude(south - margin), Encode_Longitude(west - margin),
                                 Encode_Latitude(north + margin), Encode_Longitude(east + margin)),
             names, records});
    }
};

void Apply_Boundary_Line(Boundary_Being_Built& b, const std::vector<std::string>& w) {
    const std::string& what = w[0];
    auto number_at = [&](size_t i) { return Number(w.at(i)); };
    if (what == "start") {
        b.Cover(number_at(1), number_at(2));
        Append_Bytes(b.records, Boundary_Start_Record(Encode_Latitude(number_at(1)),
                                                      Encode_Longitude(number_at(2)),
                                                      static_cast<int32_t>(number_at(3)),
                                                      static_cast<int32_t>(number_at(4))));
    } else if (what == "line" || what == "fix" || what == "arc_cw" || what == "arc_ccw") {
        const int32_t type = what == "line"     ? 0x12005
                             : what == "fix"    ? 0x12001
                             : what == "arc_cw" ? 0x12006
                                                : 0x12007;
        if (what == "fix") {
            b.fix_lat = number_at(1);
            b.fix_lon = number_at(2);
        } else {
            b.Cover(number_at(1), number_at(2));
            if (what != "line") {
                b.Cover_Around_Fix(b.Nm_From_Fix(number_at(1), number_at(2)));
            }
        }
        Append_Bytes(b.records, Boundary_Point_Record(type, Encode_Latitude(number_at(1)),
                                                      Encode_Longitude(number_at(2))));
    } else if (what == "circle") {
        b.Cover_Around_Fix(number_at(1));
        Append_Bytes(b.records, Boundary_Circle_Record(static_cast<int32_t>(number_at(1)),
                                                       static_cast<int32_t>(number_at(2)),
                                                       static_cast<int32_t>(number_at(3))));
    } else if (what == "com") {
        std::string name = w.at(2);
        Append_Bytes(b.records, Boundary_Com_Record(Encode_Frequency(number_at(1)), name,
                                                    (name.size() + 4) & ~size_t{3}));
    } else if (what == "name") {
        Append_Bytes(b.names, Boundary_Name_Record(w.at(1), (w.at(1).size() + 4) & ~size_t{3}));
    } else {
        throw Fault("unknown boundary line " + what);
    }
}

int32_t Comm_Kind(const std::string& name) {
    static const std::map<std::string, int32_t> kinds = {
        {"atis", 1},     {"ground", 5},    {"tower", 6},  {"clearance", 7},
        {"approach", 8}, {"departure", 9}, {"center", 10}};
    auto it = kinds.find(name);
    if (it == kinds.end()) {
        throw Fault("unknown comm kind " + name);
    }
    return it->second;
}

Runway_Fields Runway_From(const std::vector<std::string>& w) {
    if (w.size() != 8) {
        throw Fault("runway DESIGNATOR lat lon heading length_ft width_ft elevation_m");
    }
    Runway_Fields f;
    std::string designator = w[1];
    f.designator_code = 0;
    const std::string suffixes = "LRCH";
    if (!designator.empty() && suffixes.find(designator.back()) != std::string::npos) {
        f.designator_code = static_cast<int32_t>(suffixes.find(designator.back())) + 1;
        designator.pop_back();
    }
    f.number = static_cast<int32_t>(Number(designator));
    f.lat_raw = Encode_Latitude(Number(w[2]));
    f.lon_raw = Encode_Longitude(Number(w[3]));
    f.heading_raw = Encode_Heading(Number(w[4]));
    f.length_ft = static_cast<int32_t>(Number(w[5]));
    f.width_ft = static_cast<int32_t>(Number(w[6]));
    f.elevation_m = static_cast<int32_t>(Number(w[7]));
    return f;
}

void Finish_Airport(World& world, Airport_Being_Built* airport) {
    if (airport == nullptr) {
        return;
    }
    airport->entry.stream = airport->stream;
    if (!airport->network.Empty()) {
        Bytes block = airport->network.Block();
        airport->entry.stream.insert(airport->entry.stream.end(), block.begin(), block.end());
    }
    world.files.back().airports.push_back(airport->entry);
}

World Read_World(const std::string& path) {
    World world;
    std::unique_ptr<Airport_Being_Built> airport;
    std::unique_ptr<Boundary_Being_Built> boundary;
    auto finish = [&] {
        Finish_Airport(world, airport.get());
        airport.reset();
        if (boundary != nullptr) {
            world.files.back().boundaries.push_back(boundary->Children());
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
            world.files.push_back({w.at(1), {}, {}});
        } else if (what == "boundary") {
            if (world.files.empty()) {
                throw Fault("a boundary needs a bgl line before it");
            }
            finish();
            boundary = std::make_unique<Boundary_Being_Built>();
            Append_Bytes(boundary->names,
                         Boundary_Name_Record(w.at(1), (w.at(1).size() + 4) & ~size_t{3}));
        } else if (boundary != nullptr) {
            Apply_Boundary_Line(*boundary, w);
        } else if (what == "junk") {
            world.junk.push_back(w.at(1));
        } else if (what == "airport") {
            if (world.files.empty()) {
                throw Fault("an airport needs a bgl line before it");
            }
            finish();
            airport = std::make_unique<Airport_Being_Built>();
            airport->entry.ident = w.at(1);
            airport->stream =
                Concat_Bytes({Reference_Point_Record(Encode_Latitude(Number(w.at(3))),
                                                     Encode_Reference_Longitude(Number(w.at(4)))),
                              Name_Record(w.at(2), (w.at(2).size() + 4) & ~size_t{3})});
        } else if (airport == nullptr) {
            throw Fault(what + " outside an airport");
        } else if (what == "comm") {
            Append_Bytes(airport->stream,
                         Comm_Record(Encode_Frequency(Number(w.at(2))), Comm_Kind(w.at(1))));
        } else if (what == "runway") {
            Append_Bytes(airport->stream, Runway_Record(Runway_From(w)));
            ++airport->runways;
        } else if (what == "ils" || what == "vor") {
            bool ils = what == "ils";
            Navaid_Fields f;
            f.name = w.at(1) == "-" ? "" : w.at(1);
            f.name_padded_length = (f.name.size() + 4) & ~size_t{3};
            f.frequency_word = Encode_Frequency(Number(w.at(2)));
            f.kind = ils ? 4 : 2;
            f.heading_raw = ils ? Encode_Heading(Number(w.at(3))) : 0;
            f.lat_raw = Encode_Latitude(Number(w.at(ils ? 4 : 3)));
            f.lon_raw = Encode_Longitude(Number(w.at(ils ? 5 : 4)));
            Append_Bytes(airport->stream, Navaid_Record(f));
        } else if (what == "taxiway") {
            airport->network.Line(0, airport->network.Name(w.at(1)), Pair(w.at(2)), Pair(w.at(3)),
                                  static_cast<int>(Number(w.at(4))));
        } else if (what == "runway_path") {
            int32_t runway = static_cast<int32_t>(Number(w.at(1)));
            if (runway < 0 || runway >= airport->runways) {
                throw Fault("runway_path names a runway not yet given");
            }
            airport->network.Line(1, runway, Pair(w.at(2)), Pair(w.at(3)),
                                  static_cast<int>(Number(w.at(4))));
        } else if (what == "gates") {
            if (w.size() != 11) {
                throw Fault("gates \"NAME\" first count x,y dx,dy radius type lane_x LANE join_x");
            }
            Network& n = airport->network;
            int32_t code = Parking_Name_Code(w[1]);
            int32_t first = static_cast<int32_t>(Number(w[2]));
            int count = static_cast<int>(Number(w[3]));
            auto [x, y] = Pair(w[4]);
            auto [dx, dy] = Pair(w[5]);
            float radius = static_cast<float>(Number(w[6]));
            int32_t type = static_cast<int32_t>(Number(w[7]));
            double lane_x = Number(w[8]);
            int32_t lane = n.Name(w[9]);
            double join_x = Number(w[10]);
            for (int i = 0; i < count; ++i) {
                double sx = x + dx * i, sy = y + dy * i;
                int32_t spot = static_cast<int32_t>(n.spots.size());
                n.spots.push_back({static_cast<float>(sx), static_cast<float>(sy), radius,
                                   Parking_Code_Word(type, first + i, code)});
                int32_t node = n.Node(lane_x, sy);
                n.paths.push_back({2, node, spot, 0});
                if (i > 0) {
                    n.paths.push_back({0, n.Node(lane_x, sy - dy), node, lane});
                }
            }
            n.paths.push_back({0, n.Node(join_x, y), n.Node(lane_x, y), lane});
        } else {
            throw Fault("unknown line " + what);
        }
    });
    if (!world.files.empty()) {
        finish();
    }
    return world;
}

} // namespace

bool Write_Sample_World(const std::string& description_path, const std::string& out_folder,
                        std::string& error) {
    try {
        World world = Read_World(description_path);
        fs::path root(out_folder);
        fs::create_directories(root);
        Write_Text_File(root / "scenery.cfg",
                        Scenery_Cfg(world.areas, "FS2002 World Scenery", "FS2002 Scenery Data"));
        Create_Area_Folders(root, world.areas);
        Write_File((root / "Scenery" / "magdec.bgl").string(),
                   Build_Magdec(Magdec_Values(Variation_Counts)));
        for (const auto& file : world.files) {
            Bgl_File_Layout layout;
            if (!file.airports.empty()) {
                layout.groups.push_back({file.airports, std::nullopt, 0});
            }
            if (!file.boundaries.empty()) {
                layout.boundary_section = Boundary_Section({file.boundaries});
            }
            Write_File((root / file.path).string(), Build_Bgl(layout));
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
