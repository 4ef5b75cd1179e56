// quilmark-full-world-fs2004 OUT_FOLDER: an FS2004 folder of the size of the real world,
// for the benchmarks beside the FS2002 one: about 24,000 airports in the stock regional
// areas (with name lists, ILS records in files of their own, a ground network at about one
// in ten), an add-on area that replaces a hundred of them, and about 5,000 boundaries in
// the base terrain area. The same bytes every time.
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "bgl_writer/fs2004_writer.h"

namespace quilmark {

namespace {

namespace fs = std::filesystem;

// splitmix64: the same numbers on every machine and standard library.
struct Random {
    uint64_t state = 20040101;
    uint64_t Next() {
        uint64_t z = (state += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    double Range(double low, double high) {
        return low + (high - low) * static_cast<double>(Next() >> 11) / 9007199254740992.0;
    }
    int Int(int low, int high) {
        return low + static_cast<int>(Next() % static_cast<uint64_t>(high - low + 1));
    }
};

struct Region {
    const char* title;
    const char* folder;
    double south, north, west, east;
    int airports;
};

// About the share of the simulator's airports in each part of the world.
constexpr Region Regions[] = {
    {"Western North America", "NAMW", 30, 70, -168, -100, 5200},
    {"Eastern North America", "NAME", 25, 60, -100, -55, 7300},
    {"South America", "SAME", -55, 12, -82, -35, 2100},
    {"Western Europe", "EURW", 36, 70, -10, 15, 3000},
    {"Eastern Europe", "EURE", 36, 70, 15, 45, 1900},
    {"Africa", "AFRI", -35, 35, -17, 50, 1400},
    {"Asia", "ASIA", 0, 70, 45, 150, 2300},
    {"Oceania", "OCEN", -47, 0, 110, 179, 900},
};
constexpr int Airports_Per_File = 80;
constexpr int Boundaries_Per_File = 100;
constexpr int Boundary_Count = 5000;
constexpr int Addon_Airports = 100;

// Four letters, a different ident for each n below 26^4.
std::string Ident(int n) {
    std::string ident(4, 'A');
    for (int i = 3; i >= 0; --i, n /= 26) {
        ident[static_cast<size_t>(i)] = static_cast<char>('A' + n % 26);
    }
    return ident;
}

// A ground network of a grid of taxiways with gates along one side, in the record kinds
// of the format.
void Add_Ground(std::vector<Bytes>& subrecords, Random& r, double lat, double lon, int size) {
    std::vector<Fs9_Taxi_Point> points;
    std::vector<Fs9_Parking> spots;
    std::vector<Fs9_Taxi_Path> paths;
    const double step = 0.0015;
    for (int i = 0; i < size; ++i) {
        points.push_back({1, lat + step * i, lon});
        points.push_back({1, lat + step * i, lon + step});
        const auto a = static_cast<uint16_t>(2 * i);
        paths.push_back({a, static_cast<uint16_t>(a + 1), 1, static_cast<uint8_t>(1 + i % 4), 0});
        if (i > 0) {
            paths.push_back({static_cast<uint16_t>(a - 2), a, 1, 1, 0});
            paths.push_back({static_cast<uint16_t>(a - 1), static_cast<uint16_t>(a + 1), 1, 2, 0});
        }
        spots.push_back({static_cast<uint32_t>(12 + i % 20),
                         9,
                         static_cast<uint32_t>(i + 1),
                         static_cast<float>(r.Range(12, 30)),
                         lat + step * i,
                         lon + 1.5 * step,
                         {"ABC"}});
        paths.push_back({static_cast<uint16_t>(a + 1), static_cast<uint16_t>(i), 3, 0, 0});
    }
    subrecords.push_back(Fs9_Taxi_Points_Record(points));
    subrecords.push_back(Fs9_Parking_Record(spots));
    subrecords.push_back(Fs9_Taxi_Paths_Record(paths));
    subrecords.push_back(Fs9_Taxi_Names_Record({"", "A", "B", "C", "D"}));
}

struct Airport_Made {
    Bytes record;
    std::vector<Bytes> ils;
};

Airport_Made Make_Airport(Random& r, const std::string& ident, double lat, double lon, bool ground,
                          bool addon) {
    Fs9_Airport a{ident, lat, lon, r.Int(0, 1500) * 1000, 0, {}};
    if (addon) {
        a.subrecords.push_back(Fs9_Delete_Record({0xA8, {}, {}, {}})); // runways, COM, taxiways
    }
    a.subrecords.push_back(Fs9_Name_Record("Airport " + ident));
    for (uint16_t type : {1, 5, 6}) {
        a.subrecords.push_back(Fs9_Com_Record(type, 118000000 + 25000 * r.Int(0, 760)));
    }
    Airport_Made made;
    const int runways = r.Int(1, 3);
    for (int i = 0; i < runways; ++i) {
        Fs9_Runway rw;
        rw.primary_number = static_cast<uint8_t>(r.Int(1, 18));
        rw.secondary_number = static_cast<uint8_t>(rw.primary_number + 18);
        rw.lat = lat + 0.002 * i;
        rw.lon = lon;
        rw.heading = static_cast<float>(rw.primary_number * 10);
        rw.length_m = static_cast<float>(r.Range(600, 3800));
        if (i == 0 && r.Int(0, 3) == 0) {
            rw.primary_ils = std::string(1, 'I').append(ident, 1);
            made.ils.push_back(Fs9_Ils_Record(
                {rw.primary_ils, ident, "", lat, lon, 110300000, rw.heading, false, 4, true}));
        }
        a.subrecords.push_back(Fs9_Runway_Record(rw));
    }
    if (ground) {
        Add_Ground(a.subrecords, r, lat, lon, r.Int(10, 60));
    }
    made.record = Fs9_Airport_Record(a);
    return made;
}

void Write(const fs::path& path, const Bytes& bytes) {
    fs::create_directories(path.parent_path());
    Write_File(path.string(), bytes);
}

} // namespace

} // namespace quilmark

int main(int argc, char** argv) {
    using namespace quilmark;
    if (argc != 2) {
        std::cerr << "usage: quilmark-full-world-fs2004 OUT_FOLDER\n";
        return 2;
    }
    try {
        const fs::path root(argv[1]);
        Random r;
        std::string cfg = "[General]\r\nTitle=FS9 World Scenery\r\nDescription=FS9 Scenery "
                          "Data\r\nClean_on_Exit=TRUE\r\n";
        int area = 0;
        auto add_area = [&](const std::string& title, const std::string& local, int layer) {
            char header[32];
            std::snprintf(header, sizeof header, "[Area.%03d]", ++area);
            cfg += std::string("\r\n") + header + "\r\nTitle=" + title +
                   "\r\nTexture_ID=\r\nRemote=\r\nLocal=" + local +
                   "\r\nLayer=" + std::to_string(layer) + "\r\nActive=TRUE\r\nRequired=FALSE\r\n";
        };
        add_area("Default Terrain", "Scenery\\World", 0);
        add_area("Default Scenery", "Scenery\\Base", 1);
        Bytes magdec = Build_Magdec(Magdec_Values([](int lat, int lon) {
            return static_cast<int16_t>(std::lround((lon % 60 - 30 + lat / 10.0) * 182));
        }));
        magdec.resize(magdec.size() + 12, 0);
        Write(root / "Scenery" / "Base" / "scenery" / "magdec.bgl", magdec);

        int n = 0, airports = 0, files = 0;
        std::vector<std::string> addon_idents;
        for (const Region& region : Regions) {
            add_area(region.title, std::string("Scenery\\") + region.folder, 30);
            for (int first = 0; first < region.airports; first += Airports_Per_File, ++files) {
                std::vector<Bytes> records, ils;
                std::vector<std::pair<std::string, std::string>> names;
                for (int i = first; i < std::min(region.airports, first + Airports_Per_File);
                     ++i, ++n) {
                    const std::string ident = Ident(n);
                    Airport_Made a =
                        Make_Airport(r, ident, r.Range(region.south, region.north),
                                     r.Range(region.west, region.east), n % 10 == 0, false);
                    records.push_back(std::move(a.record));
                    ils.insert(ils.end(), a.ils.begin(), a.ils.end());
                    names.push_back({ident, "Airport " + ident});
                    if (n % (24000 / Addon_Airports) == 1) {
                        addon_idents.push_back(ident);
                    }
                }
                airports += static_cast<int>(records.size());
                char name[32];
                std::snprintf(name, sizeof name, "AP%06d.BGL", files);
                const fs::path folder = root / "Scenery" / region.folder / "scenery";
                Write(folder / name,
                      Build_Fs2004({{0x03, {records}}, {0x27, {{Fs9_Name_List_Record(names)}}}}));
                name[0] = 'N';
                name[1] = 'V';
                Write(folder / name, Build_Fs2004({{0x13, {ils}}}));
            }
        }
        add_area("Addon Scenery", "Addon Scenery", 100);
        std::vector<Bytes> addon;
        for (const std::string& ident : addon_idents) {
            addon.push_back(Make_Airport(r, ident, 47, -122, true, true).record);
        }
        Write(root / "Addon Scenery" / "scenery" / "AF2_ADDON.bgl",
              Build_Fs2004({{0x03, {addon}}}));

        for (int f = 0; f < Boundary_Count / Boundaries_Per_File; ++f) {
            std::vector<Bytes> boundaries;
            for (int i = 0; i < Boundaries_Per_File; ++i) {
                const double lat = r.Range(-50, 65), lon = r.Range(-170, 175), d = r.Range(0.1, 2);
                Fs9_Boundary b{static_cast<uint8_t>(r.Int(1, 16)),
                               0x12,
                               lat - d,
                               lon - d,
                               lat + d,
                               lon + d,
                               0,
                               3048000,
                               {}};
                b.subrecords.push_back(Fs9_Name_Record("AIRSPACE " + std::to_string(f * 100 + i)));
                b.subrecords.push_back(Fs9_Boundary_Points_Record({{1, lat - d, lon - d, 0},
                                                                   {2, lat + d, lon - d, 0},
                                                                   {2, lat + d, lon + d, 0},
                                                                   {2, lat - d, lon + d, 0},
                                                                   {2, lat - d, lon - d, 0}}));
                boundaries.push_back(Fs9_Boundary_Record(b));
            }
            char name[32];
            std::snprintf(name, sizeof name, "AT%06d.BGL", f);
            Write(root / "Scenery" / "World" / "scenery" / name,
                  Build_Fs2004({{0x20, {boundaries}}}));
        }
        std::ofstream(root / "scenery.cfg", std::ios::binary) << cfg;
        std::cout << "airports " << airports << " in " << files << " files, " << addon_idents.size()
                  << " replaced by an add-on; boundaries " << Boundary_Count << "\n";
    } catch (const std::exception& e) {
        std::cerr << "quilmark-full-world-fs2004: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
