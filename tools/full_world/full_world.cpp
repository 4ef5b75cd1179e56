#include "full_world.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "bgl_writer/bgl_writer.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

// splitmix64: the same numbers on every machine and standard library.
struct Random {
    uint64_t state;

    uint64_t Next() {
        uint64_t z = (state += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    double Unit() { return static_cast<double>(Next() >> 11) / 9007199254740992.0; }
    double Range(double low, double high) { return low + (high - low) * Unit(); }
    int Int(int low, int high) { // inclusive
        return low + static_cast<int>(Next() % static_cast<uint64_t>(high - low + 1));
    }
    bool Chance(double p) { return Unit() < p; }
};

struct Region {
    const char* folder;
    double south, north, west, east;
    int airports;
};

// About the share of the simulator's airports in each part of the world.
constexpr Region Regions[] = {
    {"NAmW", 30, 70, -168, -100, 5200}, {"NAmE", 25, 60, -100, -55, 7300},
    {"SAme", -55, 12, -82, -35, 2100},  {"EurW", 36, 70, -10, 15, 3000},
    {"EurE", 36, 70, 15, 45, 1900},     {"Afri", -35, 35, -17, 50, 1400},
    {"Asia", 0, 70, 45, 150, 2300},     {"Ocea", -47, 0, 110, 179, 900},
};
constexpr int Airports_Per_File = 80;
constexpr int Boundaries_Per_File = 100;
constexpr int Boundaries_Per_List = 20;
constexpr int Boundary_Count = 5000;
// One in ten airports has a ground network; the first of them is the largest.
constexpr double Ground_Share = 0.1;
constexpr int Largest_Paths = 1500;
constexpr int Largest_Spots = 300;

const char* const Syllables[] = {"al",  "ba",  "cor", "del", "en",  "fal", "gra", "hol",  "is",
                                 "jun", "kel", "lin", "mor", "nor", "os",  "pal", "quin", "ros",
                                 "san", "tor", "ul",  "ver", "wes", "yor", "zan"};
const char* const Kinds[] = {"Intl", "Rgnl", "Muni", "County", "Field", "Airpark", "Fld", ""};

std::string Place_Name(Random& r) {
    std::string name;
    int syllables = r.Int(2, 4);
    for (int i = 0; i < syllables; ++i) {
        name += Syllables[r.Int(0, 24)];
    }
    name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return name;
}

std::string Airport_Name(Random& r) {
    std::string name = Place_Name(r);
    if (r.Chance(0.3)) {
        name += ' ';
        name += Place_Name(r);
    }
    const char* kind = Kinds[r.Int(0, 7)];
    if (*kind != '\0') {
        name += std::string(" ") + kind;
    }
    return name;
}

size_t Padded(const std::string& text) {
    return (text.size() + 4) & ~size_t{3};
}

struct Airport_Plan {
    std::string ident;
    double lat = 0, lon = 0;
    int runways = 1;
    int ground_paths = 0; // 0: no ground network
    int ground_spots = 0;
};

// A ground network: taxiway lines of numbered nodes, a runway line, and lanes of parking
// spots each reached by a parking path from a lane node.
Bytes Ground_Block(Random& r, int path_target, int spot_target, int runways) {
    std::vector<Taxi_Point_Element> points;
    std::vector<Parking_Element> spots;
    std::vector<Taxi_Path_Element> paths;
    std::vector<std::string> names;
    auto node = [&](double x, double y) {
        points.push_back({r.Int(1, 3), static_cast<float>(x), static_cast<float>(y)});
        return static_cast<int32_t>(points.size() - 1);
    };
    // Parking lanes: a lane of nodes, each with its spot beside it.
    int spot_names = 0;
    for (int placed = 0; placed < spot_target;) {
        int lane_length = std::min(spot_target - placed, r.Int(8, 30));
        const double x = r.Range(-1500, 1500);
        const double y0 = r.Range(-1500, 1000);
        const int32_t name_code = 10 + spot_names++ % 28; // Gate, Dock, Gate A...
        for (int i = 0; i < lane_length; ++i) {
            const double y = y0 + 45.0 * i;
            int32_t lane_node = node(x, y);
            spots.push_back({static_cast<float>(x + 40), static_cast<float>(y),
                             static_cast<float>(r.Range(12, 35)),
                             Parking_Code_Word(r.Int(1, 10), i + 1, name_code)});
            paths.push_back({2, lane_node, static_cast<int32_t>(spots.size() - 1), 0});
        }
        placed += lane_length;
    }
    // Runway lines, then taxiways until the target is reached.
    int remaining = std::max(0, path_target - static_cast<int>(paths.size()));
    int runway_segments = std::min(remaining, 6 * runways);
    for (int k = 0; k < runway_segments;) {
        const int32_t runway = static_cast<int32_t>(k % runways);
        const double x = -200.0 * runway;
        int32_t previous = node(x, -1800);
        for (int i = 1; i <= 6 && k < runway_segments; ++i, ++k) {
            int32_t next = node(x, -1800 + 600.0 * i);
            paths.push_back({1, previous, next, runway});
            previous = next;
        }
    }
    remaining -= runway_segments;
    while (remaining > 0) {
        const int segments = std::min(remaining, r.Int(6, 40));
        const auto name_index = static_cast<int32_t>(names.size());
        std::string name(1, static_cast<char>('A' + name_index % 26));
        if (name_index >= 26) {
            name += std::to_string(name_index / 26);
        }
        names.push_back(std::move(name));
        double x = r.Range(-2000, 2000), y = r.Range(-2000, 2000);
        const double angle = r.Range(0, 6.283);
        int32_t previous = node(x, y);
        for (int i = 0; i < segments; ++i) {
            x += 60 * std::cos(angle);
            y += 60 * std::sin(angle);
            int32_t next = node(x, y);
            paths.push_back({0, previous, next, name_index});
            previous = next;
        }
        remaining -= segments;
    }
    if (names.empty()) {
        names.push_back("A");
    }
    return Taxiway_Block_Record(
        {Point_List(points), Parking_List(spots), Path_List(paths), Name_List(names)});
}

Bytes Airport_Stream(Random& r, const Airport_Plan& plan, Full_World_Summary& summary) {
    Bytes stream = Concat_Bytes(
        {Reference_Point_Record(Encode_Latitude(plan.lat), Encode_Reference_Longitude(plan.lon)),
         [&] {
             std::string name = Airport_Name(r);
             return Name_Record(name, Padded(name));
         }()});
    // Comm records: busier airports have more of them.
    for (int32_t kind : {1, 5, 6, 7, 8, 9, 10}) {
        if (r.Chance(0.25 + 0.15 * plan.runways)) {
            Append_Bytes(stream, Comm_Record(Encode_Frequency(118 + 0.025 * r.Int(0, 760)), kind));
            ++summary.comm_records;
        }
    }
    const double first_heading = r.Range(0, 180);
    for (int i = 0; i < plan.runways; ++i) {
        // Pairs of parallels, then a crossing pair.
        const bool parallel = i % 2 == 1;
        const double heading = std::fmod(first_heading + (i >= 2 ? 60 : 0), 360);
        Runway_Fields f;
        f.lat_raw = Encode_Latitude(plan.lat + 0.002 * i);
        f.lon_raw = Encode_Longitude(plan.lon - 0.003 * i);
        f.elevation_m = r.Int(0, 1500);
        f.heading_raw = Encode_Heading(heading);
        f.length_ft = r.Int(20, 120) * 100;
        f.width_ft = r.Int(50, 200);
        f.number = std::max(1, static_cast<int32_t>(std::lround(heading / 10)));
        f.designator_code = plan.runways >= 2 && i < 2 ? (parallel ? 2 : 1) : 0;
        Append_Bytes(stream, Runway_Record(f));
        ++summary.runways;
        // ILS on the longer runways, some on both ends.
        if (f.length_ft >= 5000 && r.Chance(0.5)) {
            const int ends = r.Chance(0.3) ? 2 : 1;
            for (int e = 0; e < ends; ++e) {
                Navaid_Fields ils;
                ils.lat_raw = f.lat_raw;
                ils.lon_raw = f.lon_raw;
                ils.heading_raw = Encode_Heading(std::fmod(heading + 180.0 * e, 360));
                ils.frequency_word = Encode_Frequency(108.1 + 0.2 * r.Int(0, 19));
                ils.name = std::string("I").append(plan.ident, 1, 3);
                ils.name_padded_length = Padded(ils.name);
                Append_Bytes(stream, Navaid_Record(ils));
                ++summary.ils;
            }
        }
    }
    if (plan.ground_paths > 0) {
        Append_Bytes(stream, Ground_Block(r, plan.ground_paths, plan.ground_spots, plan.runways));
        ++summary.airports_with_ground;
        summary.taxi_paths += plan.ground_paths;
        summary.parking_spots += plan.ground_spots;
        summary.largest_paths = std::max<int64_t>(summary.largest_paths, plan.ground_paths);
        summary.largest_spots = std::max<int64_t>(summary.largest_spots, plan.ground_spots);
    }
    return stream;
}

// The first letter of an airport's ident: the region's own for the first copy of the world,
// and for each further copy a letter of its own, so that no letter runs out of idents.
char Ident_Letter(char region_letter, int copy) {
    if (copy == 0) {
        return region_letter;
    }
    constexpr std::string_view Region_Letters = "NSEAO";
    constexpr std::string_view Spare_Letters = "BCDFGHIJKLMPQRTUVWXYZ";
    const size_t index =
        static_cast<size_t>(copy - 1) * Region_Letters.size() + Region_Letters.find(region_letter);
    return Spare_Letters[index];
}

std::string Unique_Ident(Random& r, char first, std::set<std::string>& taken) {
    const char* const letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    for (;;) {
        std::string ident(1, first);
        for (int i = 0; i < 3; ++i) {
            ident += letters[r.Int(0, i == 0 ? 25 : 35)];
        }
        if (taken.insert(ident).second) {
            return ident;
        }
    }
}

void Write_Bytes(const fs::path& path, const Bytes& bytes, int64_t& total) {
    Write_File(path.string(), bytes);
    total += static_cast<int64_t>(bytes.size());
}

// One boundary: its box, names, and an outline about a centre of a given size.
Bytes Boundary(Random& r, double lat, double lon, double radius_deg, int32_t floor, int32_t ceiling,
               bool centre) {
    const double cos_lat = std::max(0.2, std::cos(lat * 3.14159265358979 / 180));
    const double dlon = radius_deg / cos_lat;
    Bytes b = Boundary_Box_Record(Encode_Latitude(lat - radius_deg), Encode_Longitude(lon - dlon),
                                  Encode_Latitude(lat + radius_deg), Encode_Longitude(lon + dlon));
    std::string name = Place_Name(r);
    for (char& c : name) {
        c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    }
    name += centre ? " CENTER" : floor == 0 && ceiling <= 2500 ? " CLASS D" : " CLASS B";
    Append_Bytes(b, Boundary_Name_Record(name, Padded(name)));
    if (centre) {
        std::string facility = name.substr(0, name.size() - 7) + " CTR";
        Append_Bytes(b, Boundary_Com_Record(Encode_Frequency(118 + 0.025 * r.Int(0, 760)), facility,
                                            Padded(facility)));
    }
    if (!centre && r.Chance(0.6)) {
        Append_Bytes(b,
                     Boundary_Point_Record(0x12001, Encode_Latitude(lat), Encode_Longitude(lon)));
        Append_Bytes(b,
                     Boundary_Circle_Record(static_cast<int32_t>(radius_deg * 60), floor, ceiling));
        return b;
    }
    // A polygon of lines with an arc about the centre on every third side.
    const int sides = r.Int(5, 14);
    auto at = [&](int i) {
        const double a = 6.283185307 * i / sides;
        return std::pair<int32_t, int32_t>{Encode_Latitude(lat + 0.9 * radius_deg * std::sin(a)),
                                           Encode_Longitude(lon + 0.9 * dlon * std::cos(a))};
    };
    Append_Bytes(b, Boundary_Start_Record(at(0).first, at(0).second, floor, ceiling));
    Append_Bytes(b, Boundary_Point_Record(0x12001, Encode_Latitude(lat), Encode_Longitude(lon)));
    for (int i = 1; i <= sides; ++i) {
        const int32_t type = i % 3 == 0 ? (r.Chance(0.5) ? 0x12006 : 0x12007) : 0x12005;
        Append_Bytes(b, Boundary_Point_Record(type, at(i).first, at(i).second));
    }
    return b;
}

void Write_Scenery_Cfg(const fs::path& root) {
    std::string cfg = "[General]\r\nTitle=FS2002 World Scenery\r\nDescription=FS2002 Scenery "
                      "Data\r\nClean_on_Exit=TRUE\r\n";
    int index = 1;
    auto area = [&](const std::string& title, const std::string& local, bool required) {
        char header[32];
        std::snprintf(header, sizeof header, "[Area.%03d]", index);
        cfg += std::string("\r\n") + header + "\r\nTitle=" + title + "\r\nTexture_ID=\r\n" +
               "Remote=\r\nLocal=" + local + "\r\nLayer=" + std::to_string(index) +
               "\r\nActive=TRUE\r\nRequired=" + (required ? "TRUE" : "FALSE") + "\r\n";
        ++index;
    };
    area("Default Terrain", "Scenery\\World", true);
    area("Default Scenery", "Scenery\\Global", true);
    for (const Region& region : Regions) {
        area("Airport and Facilities Data", std::string("Scenery\\") + region.folder, true);
    }
    area("Additional Facility Data", "Scenery\\ATC", true);
    area("Addon Scenery", "Addon Scenery", false);
    std::ofstream out(root / "scenery.cfg", std::ios::binary);
    out << cfg;
    if (!out) {
        throw std::runtime_error("cannot write scenery.cfg");
    }
}

// Variation in whole degrees east: a smooth field of up to 25 degrees either way.
int16_t Variation_Counts(int lat, int lon_index) {
    const double lon = lon_index > 180 ? lon_index - 360 : lon_index;
    const double degrees = 25 * std::sin((lon + 100) * 3.14159265358979 / 180) *
                           std::cos(lat * 3.14159265358979 / 360);
    return static_cast<int16_t>(std::lround(degrees * 65536 / 360));
}

} // namespace

bool Write_Full_World(const std::string& out_folder, uint64_t seed, int factor,
                      Full_World_Summary& summary, std::string& error) {
    if (factor < 1 || factor > Full_World_Max_Factor) {
        error = "the size factor must be 1 to " + std::to_string(Full_World_Max_Factor);
        return false;
    }
    try {
        summary = {};
        Random r{seed};
        const fs::path root(out_folder);
        fs::create_directories(root);
        Write_Scenery_Cfg(root);
        Write_File((root / "Scenery" / "magdec.bgl").string(),
                   Build_Magdec(Magdec_Values(Variation_Counts)));

        std::set<std::string> idents;
        std::vector<Airport_Plan> busiest; // centres of the larger airspaces
        bool largest_placed = false;
        for (const Region& region : Regions) {
            std::vector<Airport_Plan> plans(static_cast<size_t>(region.airports * factor));
            for (size_t i = 0; i < plans.size(); ++i) {
                Airport_Plan& p = plans[i];
                const int copy = static_cast<int>(i) / region.airports;
                p.ident = Unique_Ident(r, Ident_Letter(region.folder[0], copy), idents);
                p.lat = r.Range(region.south, region.north);
                p.lon = r.Range(region.west, region.east);
                const double u = r.Unit();
                p.runways = u < 0.55 ? 1 : u < 0.85 ? 2 : u < 0.95 ? 3 : 4;
                if (r.Chance(Ground_Share)) {
                    if (!largest_placed) {
                        p.runways = 4;
                        p.ground_paths = Largest_Paths;
                        p.ground_spots = Largest_Spots;
                        largest_placed = true;
                    } else {
                        const double v = r.Unit();
                        p.ground_paths = 20 + static_cast<int>(650 * v * v * v * v);
                        p.ground_spots = std::max(2, p.ground_paths / 5);
                    }
                }
                if (p.ground_paths >= 300) {
                    busiest.push_back(p);
                }
            }
            // Files of neighbouring airports: bands of latitude, west to east in each.
            std::sort(plans.begin(), plans.end(), [](const Airport_Plan& a, const Airport_Plan& b) {
                const int band_a = static_cast<int>(std::floor(a.lat / 5));
                const int band_b = static_cast<int>(std::floor(b.lat / 5));
                return band_a != band_b ? band_a < band_b : a.lon < b.lon;
            });
            for (size_t first = 0; first < plans.size(); first += Airports_Per_File) {
                Airport_Group group;
                for (size_t i = first; i < std::min(plans.size(), first + Airports_Per_File); ++i) {
                    Airport_Entry entry;
                    entry.ident = plans[i].ident;
                    entry.stream = Airport_Stream(r, plans[i], summary);
                    group.entries.push_back(std::move(entry));
                    ++summary.airports;
                }
                Bgl_File_Layout layout;
                layout.groups.push_back(std::move(group));
                char name[32];
                std::snprintf(name, sizeof name, "AP%06lld.BGL",
                              static_cast<long long>(summary.airport_files));
                Write_Bytes(root / "Scenery" / region.folder / "scenery" / name, Build_Bgl(layout),
                            summary.airport_bytes);
                ++summary.airport_files;
            }
        }

        // Airspace: class B and C about the busiest airports, centres over wide areas, and
        // class D circles about random places of the airport regions.
        std::vector<Bytes> boundaries;
        for (const Airport_Plan& p : busiest) {
            boundaries.push_back(Boundary(r, p.lat, p.lon, 0.5, 0, 10000, false));
            boundaries.push_back(Boundary(r, p.lat, p.lon, 0.25, 1200, 4000, false));
        }
        const int centres = 400 * factor;
        for (int i = 0; i < centres; ++i) {
            const Region& region = Regions[i % std::size(Regions)];
            boundaries.push_back(Boundary(r, r.Range(region.south, region.north),
                                          r.Range(region.west, region.east), r.Range(3, 8), 18000,
                                          60000, true));
        }
        while (boundaries.size() < static_cast<size_t>(Boundary_Count * factor)) {
            const Region& region = Regions[r.Int(0, std::size(Regions) - 1)];
            boundaries.push_back(Boundary(r, r.Range(region.south, region.north),
                                          r.Range(region.west, region.east), r.Range(0.05, 0.15), 0,
                                          2500, false));
        }
        summary.boundaries = static_cast<int64_t>(boundaries.size());
        for (size_t first = 0; first < boundaries.size(); first += Boundaries_Per_File) {
            std::vector<std::vector<Bytes>> lists;
            const size_t end = std::min(boundaries.size(), first + Boundaries_Per_File);
            for (size_t i = first; i < end; i += Boundaries_Per_List) {
                lists.emplace_back(boundaries.begin() + static_cast<long>(i),
                                   boundaries.begin() +
                                       static_cast<long>(std::min(end, i + Boundaries_Per_List)));
            }
            Bgl_File_Layout layout;
            layout.boundary_section = Boundary_Section(lists);
            char name[32];
            std::snprintf(name, sizeof name, "BN%04lld.BGL",
                          static_cast<long long>(summary.atc_files));
            Write_Bytes(root / "Scenery" / "ATC" / "scenery" / name, Build_Bgl(layout),
                        summary.atc_bytes);
            ++summary.atc_files;
        }
        fs::create_directories(root / "Scenery" / "World" / "scenery");
        fs::create_directories(root / "Scenery" / "Global" / "scenery");
        return true;
    } catch (const std::exception& e) {
        error = e.what();
        return false;
    }
}

} // namespace quilmark
