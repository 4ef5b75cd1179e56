#include "fs2004/airports.h"

#include "fs2004/bgl_file.h"
#include "platform/rounding.h"

namespace quilmark {

namespace {

constexpr int64_t Airport_Fixed_Part = 52;
constexpr int64_t Runway_Fixed_Part = 52;
constexpr int64_t Taxi_Point_Size = 12;
constexpr int64_t Parking_Size = 20; // and 4 bytes per airline code behind it
constexpr int64_t Taxi_Path_Size = 20;
constexpr int64_t Taxi_Name_Size = 8;

constexpr const char* Compass_Points[] = {"N", "NE", "E", "SE", "S", "SW", "W", "NW"};

// Taxi path types of the format, in the low nibble of the path's type byte.
constexpr uint8_t Path_Type_Taxi = 1;
constexpr uint8_t Path_Type_Runway = 2;
constexpr uint8_t Path_Type_Parking = 3;
constexpr uint8_t Path_Type_Path = 4;
constexpr uint8_t Path_Type_Closed = 5;

// A path before its label is resolved: the byte at +5 is a runway number for a runway
// path and an index into the taxiway names for every other.
struct Pending_Path {
    Taxi_Path_Rec path;
    uint8_t number_or_name = 0;
    uint8_t designator = 0;
};

// Elements of a list sub-record: the count at +6, cut to what the sub-record holds.
int64_t List_Count(const Bgl_Image& image, int64_t rec, int64_t size, int64_t element_size) {
    const int64_t declared = Read_U16(image, rec + 6);
    const int64_t fitting = (size - 8) / element_size;
    return declared < fitting ? declared : fitting;
}

Fs2004_Runway_Rec Decode_Runway(const Bgl_Image& image, int64_t rec) {
    Fs2004_Runway_Rec r;
    r.primary_number = Read_Byte(image, rec + 8);
    r.primary_designator = Read_Byte(image, rec + 9);
    r.secondary_number = Read_Byte(image, rec + 10);
    r.secondary_designator = Read_Byte(image, rec + 11);
    r.primary_ils = Fs2004_Icao(Read_U32(image, rec + 12), false);
    r.secondary_ils = Fs2004_Icao(Read_U32(image, rec + 16), false);
    r.lon = Fs2004_Longitude(Read_U32(image, rec + 20));
    r.lat = Fs2004_Latitude(Read_U32(image, rec + 24));
    r.elevation_mm = Read_Int32(image, rec + 28);
    r.length_m = Read_F32(image, rec + 32);
    r.width_m = Read_F32(image, rec + 36);
    r.heading = Read_F32(image, rec + 40);
    return r;
}

std::vector<Taxi_Point_Rec> Decode_Taxi_Points(const Bgl_Image& image, int64_t rec, int64_t size) {
    std::vector<Taxi_Point_Rec> points(
        static_cast<size_t>(List_Count(image, rec, size, Taxi_Point_Size)));
    for (size_t i = 0; i < points.size(); ++i) {
        const int64_t e = rec + 8 + Taxi_Point_Size * static_cast<int64_t>(i);
        points[i].point_kind = Read_Byte(image, e); // 1 normal, 2 hold short, 4 ILS hold short
        points[i].lon = Fs2004_Longitude(Read_U32(image, e + 4));
        points[i].lat = Fs2004_Latitude(Read_U32(image, e + 8));
    }
    return points;
}

std::vector<Parking_Rec> Decode_Parking(const Bgl_Image& image, int64_t rec, int64_t size) {
    std::vector<Parking_Rec> spots;
    const int64_t end = rec + size;
    int64_t e = rec + 8;
    for (int64_t left = Read_U16(image, rec + 6); left > 0 && e + Parking_Size <= end; --left) {
        const uint32_t bits = Read_U32(image, e);
        Parking_Rec& spot = spots.emplace_back();
        spot.spot_name = Fs2004_Parking_Text(bits);
        spot.radius_ft = To_I32(Read_F32(image, e + 4) / 0.3048);
        spot.lon = Fs2004_Longitude(Read_U32(image, e + 12));
        spot.lat = Fs2004_Latitude(Read_U32(image, e + 16));
        e += Parking_Size + 4 * static_cast<int64_t>(bits >> 24); // the airline codes
    }
    return spots;
}

// Kinds of the chart's taxi paths: closed taxiways and plain paths are drawn as
// taxiways; a type outside the format's table leaves the path out.
bool Path_Kind(uint8_t type, int32_t& kind) {
    switch (type) {
    case Path_Type_Taxi:
    case Path_Type_Path:
    case Path_Type_Closed:
        kind = Path_Taxiway;
        return true;
    case Path_Type_Runway:
        kind = Path_Runway;
        return true;
    case Path_Type_Parking:
        kind = Path_Parking;
        return true;
    default:
        return false;
    }
}

std::vector<Pending_Path> Decode_Taxi_Paths(const Bgl_Image& image, int64_t rec, int64_t size) {
    std::vector<Pending_Path> paths;
    const int64_t count = List_Count(image, rec, size, Taxi_Path_Size);
    for (int64_t i = 0; i < count; ++i) {
        const int64_t e = rec + 8 + Taxi_Path_Size * i;
        Pending_Path pending;
        if (!Path_Kind(Read_Byte(image, e + 4) & 0x0F, pending.path.path_kind)) {
            continue;
        }
        const uint16_t end_word = Read_U16(image, e + 2);
        pending.path.start_point = Read_U16(image, e);
        pending.path.end_point = end_word & 0x0FFF;
        pending.designator = static_cast<uint8_t>(end_word >> 12);
        pending.number_or_name = Read_Byte(image, e + 5);
        paths.push_back(std::move(pending));
    }
    return paths;
}

Fs2004_Deletion_Rec Decode_Deletion(const Bgl_Image& image, int64_t rec, int64_t size) {
    Fs2004_Deletion_Rec d;
    d.flags = Read_U16(image, rec + 6);
    const int64_t end = rec + size;
    int64_t e = rec + 12;
    for (int left = Read_Byte(image, rec + 8); left > 0 && e + 4 <= end; --left, e += 4) {
        Fs2004_Runway_Rec& r = d.runways.emplace_back();
        r.primary_number = Read_Byte(image, e + 1);
        r.secondary_number = Read_Byte(image, e + 2);
        r.primary_designator = Read_Byte(image, e + 3) & 0x0F;
        r.secondary_designator = static_cast<uint8_t>(Read_Byte(image, e + 3) >> 4);
    }
    e += 4 * static_cast<int64_t>(Read_Byte(image, rec + 9)); // starts: not drawn
    for (int left = Read_Byte(image, rec + 10); left > 0 && e + 4 <= end; --left, e += 4) {
        const uint32_t word = Read_U32(image, e);
        d.frequencies.push_back({static_cast<uint16_t>(word >> 28), word & 0x0FFFFFFFu});
    }
    return d;
}

// Labels as the chart prints them: a taxiway's name from the record's name list (none
// for an index without a name), "Runway " and the end for a runway path.
void Resolve_Paths(std::vector<Pending_Path>& pending, const std::vector<std::string>& names,
                   std::vector<Taxi_Path_Rec>& paths) {
    paths.clear();
    paths.reserve(pending.size());
    for (Pending_Path& p : pending) {
        if (p.path.path_kind == Path_Runway) {
            p.path.path_label = "Runway " + Fs2004_Runway_End_Text(p.number_or_name, p.designator);
        } else if (p.number_or_name < names.size()) {
            p.path.path_label = names[p.number_or_name];
        }
        paths.push_back(std::move(p.path));
    }
}

void Decode_Airport(Bgl_Image& image, int64_t rec, int64_t size, Fs2004_Airport_Rec& airport) {
    airport.lon = Fs2004_Longitude(Read_U32(image, rec + 12));
    airport.lat = Fs2004_Latitude(Read_U32(image, rec + 16));
    airport.ident = Fs2004_Icao(Read_U32(image, rec + 40), true);
    // The sub-records come in any order: the paths' labels are resolved at the end.
    std::vector<Pending_Path> paths;
    std::vector<std::string> names;
    Walk_Fs2004_Subrecords(
        image, rec + Airport_Fixed_Part, rec + size, [&](int64_t sub, uint16_t id, int64_t length) {
            switch (id) {
            case Fs2004_Id_Name:
                airport.name = Read_Fs2004_Text(image, sub + 6, length - 6);
                break;
            case Fs2004_Id_Runway:
                if (length >= Runway_Fixed_Part) {
                    airport.runways.push_back(Decode_Runway(image, sub));
                }
                break;
            case Fs2004_Id_Com:
                if (length >= 12) {
                    airport.coms.push_back({Read_U16(image, sub + 6), Read_U32(image, sub + 8)});
                }
                break;
            case Fs2004_Id_Taxi_Points:
                airport.taxi_points = Decode_Taxi_Points(image, sub, length);
                break;
            case Fs2004_Id_Parking:
                airport.parkings = Decode_Parking(image, sub, length);
                break;
            case Fs2004_Id_Taxi_Paths:
                paths = Decode_Taxi_Paths(image, sub, length);
                break;
            case Fs2004_Id_Taxi_Names: {
                names.assign(static_cast<size_t>(List_Count(image, sub, length, Taxi_Name_Size)),
                             {});
                for (size_t i = 0; i < names.size(); ++i) {
                    names[i] = Read_Fs2004_Text(image, sub + 8 + 8 * static_cast<int64_t>(i),
                                                Taxi_Name_Size);
                }
                break;
            }
            case Fs2004_Id_Delete_Airport:
                if (length >= 12) {
                    airport.deletion = Decode_Deletion(image, sub, length);
                }
                break;
            default:
                break; // starts, helipads, aprons, approaches: not drawn
            }
        });
    Resolve_Paths(paths, names, airport.taxi_paths);
}

} // namespace

void Decode_Fs2004_Airports(Bgl_Image& image, std::vector<Fs2004_Airport_Rec>& airports) {
    Walk_Fs2004_Records(image, Fs2004_Section_Airports,
                        [&](int64_t rec, uint16_t id, int64_t size) {
                            if (id == Fs2004_Id_Airport && size >= Airport_Fixed_Part) {
                                Decode_Airport(image, rec, size, airports.emplace_back());
                            }
                        });
}

std::string Fs2004_Runway_End_Text(uint8_t number, uint8_t designator) {
    static const char* const Suffix[] = {"", "L", "R", "C", "W"};
    std::string text =
        number >= 37 && number <= 44 ? Compass_Points[number - 37] : std::to_string(number);
    if (designator < 5) {
        text += Suffix[designator];
    }
    return text;
}

std::string Fs2004_Parking_Text(uint32_t bits) {
    // b0-5 name, b6-7 push-back, b8-11 type, b12-23 number, b24-31 airline code count.
    const uint32_t code = bits & 0x3F;
    const std::string number = std::to_string((bits >> 12) & 0xFFF);
    std::string name;
    if (code == 1) {
        name = "PARKING";
    } else if (code >= 2 && code <= 9) {
        name = std::string(Compass_Points[code - 2]) + " PARKING";
    } else if (code == 10) {
        name = "GATE";
    } else if (code == 11) {
        name = "DOCK";
    } else if (code >= 12 && code <= 37) {
        name = std::string("GATE ") + static_cast<char>('A' + (code - 12));
    }
    return name.empty() ? number : name + " " + number;
}

} // namespace quilmark
