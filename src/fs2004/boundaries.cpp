#include "fs2004/boundaries.h"

#include <algorithm>

#include "fs2004/airports.h"
#include "fs2004/bgl_file.h"
#include "geo/geodesy.h"
#include "platform/rounding.h"

namespace quilmark {

namespace {

constexpr int64_t Boundary_Fixed_Part = 32;
constexpr int64_t Boundary_Point_Size = 10;

// Point types of an outline (the low 3 bits of the point's type word).
constexpr uint16_t Outline_Start = 1;
constexpr uint16_t Outline_Line = 2;
constexpr uint16_t Outline_Origin = 3;
constexpr uint16_t Outline_Arc_CW = 4;
constexpr uint16_t Outline_Arc_CCW = 5;
constexpr uint16_t Outline_Circle = 6;

bool Is_Boundary_Area_Record(uint16_t id) {
    return id == Fs2004_Id_Boundary || id == Fs2004_Id_Geopol;
}

double Rounded_Latitude(uint32_t raw) {
    return Round_Decimals(Fs2004_Latitude(raw), 4);
}
double Rounded_Longitude(uint32_t raw) {
    return Round_Decimals(Fs2004_Longitude(raw), 4);
}

// Where the boundary records begin. The section's table holds an entry per grid cell and
// then an (offset, length) pair per record; the records themselves lie one after another
// in one run, so the smallest offset that reaches one is its start. A table without such
// a pair is taken to be followed directly by the records.
int64_t Boundary_Records_Start(Bgl_Image& image, const Fs2004_Section_Rec& section) {
    const int64_t file_end = Bgl_File_Length(image);
    const int64_t table_end = std::min(section.table_position + section.table_size, file_end);
    int64_t start = -1;
    for (int64_t q = section.table_position + 16 * section.subsection_count; q + 8 <= table_end;
         q += 8) {
        if (q < 0 || !Charge_Walk(image, 8)) {
            break;
        }
        const int64_t offset = Read_U32(image, q);
        if ((start < 0 || offset < start) && offset + Fs2004_Record_Header <= file_end &&
            Is_Boundary_Area_Record(Read_U16(image, offset))) {
            start = offset;
        }
    }
    return start >= 0 ? start : section.table_position + section.table_size;
}

void Add_Point(Airspace_Rec& airspace, uint8_t kind, double lat, double lon, int32_t radius) {
    Append(airspace.points, airspace.point_count) = {kind, lat, lon, radius};
}

// The outline: latitude before longitude in each point, a circle's radius in metres where
// the longitude would be.
void Add_Outline(const Bgl_Image& image, int64_t sub, int64_t size, Airspace_Rec& airspace) {
    const int64_t declared = Read_U16(image, sub + 6);
    const int64_t count = std::min(declared, (size - 8) / Boundary_Point_Size);
    for (int64_t i = 0; i < count; ++i) {
        const int64_t e = sub + 8 + Boundary_Point_Size * i;
        const uint16_t type = Read_U16(image, e) & 0x7;
        const double lat = Rounded_Latitude(Read_U32(image, e + 2));
        const double lon = Rounded_Longitude(Read_U32(image, e + 6));
        switch (type) {
        case Outline_Start:
            Add_Point(airspace, Point_Start, lat, lon, 0);
            break;
        case Outline_Line:
            Add_Point(airspace, Point_Line, lat, lon, 0);
            break;
        case Outline_Origin:
            Add_Point(airspace, Point_Fix, lat, lon, 0);
            break;
        case Outline_Arc_CW:
            Add_Point(airspace, Point_Arc_CW, lat, lon, 0);
            break;
        case Outline_Arc_CCW:
            Add_Point(airspace, Point_Arc_CCW, lat, lon, 0);
            break;
        case Outline_Circle:
            Add_Point(airspace, Point_Circle, 0, 0,
                      To_I32(Read_F32(image, e + 6) / Metres_Per_Nautical_Mile));
            break;
        default:
            break;
        }
    }
}

void Decode_Boundary(Bgl_Image& image, int64_t rec, int64_t size, double lat, double lon,
                     Dyn_Array<Airspace_Rec>& airspaces, int32_t& airspace_count) {
    // Which corner of the box is which is not told: both are taken as they convert.
    const double lat_1 = Rounded_Latitude(Read_U32(image, rec + 12));
    const double lat_2 = Rounded_Latitude(Read_U32(image, rec + 24));
    const double lon_1 = Rounded_Longitude(Read_U32(image, rec + 8));
    const double lon_2 = Rounded_Longitude(Read_U32(image, rec + 20));
    const double south = std::min(lat_1, lat_2);
    const double north = std::max(lat_1, lat_2);
    const double west = std::min(lon_1, lon_2);
    const double east = std::max(lon_1, lon_2);
    if (!(south < lat && lat < north && west < lon && lon < east)) {
        return;
    }
    Airspace_Rec& airspace = Append(airspaces, airspace_count);
    airspace.boundary_type = Read_Byte(image, rec + 6);
    airspace.center_lat = Round_Decimals((south + north) / 2, 5);
    airspace.center_lon = Round_Decimals((west + east) / 2, 5);
    airspace.floor_alt = Millimetres_To_Feet(Read_Int32(image, rec + 16));
    airspace.ceiling_alt = Millimetres_To_Feet(Read_Int32(image, rec + 28));
    Walk_Fs2004_Subrecords(
        image, rec + Boundary_Fixed_Part, rec + size,
        [&](int64_t sub, uint16_t id, int64_t length) {
            if (id == Fs2004_Id_Name) {
                std::string name = Read_Fs2004_Text(image, sub + 6, length - 6);
                airspace.region_name =
                    airspace.region_name.empty() ? name : airspace.region_name + "  " + name;
            } else if (id == Fs2004_Id_Boundary_Points) {
                Add_Outline(image, sub, length, airspace);
            } else if (id == Fs2004_Id_Com && length >= 12) {
                airspace.freq_text += Fs2004_Frequency_Text(Read_U32(image, sub + 8)) + " Mhz  ";
                airspace.facility_name = Read_Fs2004_Text(image, sub + 12, length - 12);
            }
        });
}

} // namespace

void Decode_Fs2004_Boundaries(Bgl_Image& image, double airport_lat, double airport_lon,
                              Dyn_Array<Airspace_Rec>& airspaces, int32_t& airspace_count) {
    const int64_t file_end = Bgl_File_Length(image);
    const int64_t sections = Fs2004_Section_Count(image);
    for (int64_t s = 0; s < sections; ++s) {
        const Fs2004_Section_Rec section = Read_Fs2004_Section(image, s);
        if (section.type != Fs2004_Section_Boundaries) {
            continue;
        }
        for (int64_t p = Boundary_Records_Start(image, section);
             p >= 0 && p + Fs2004_Record_Header <= file_end;) {
            const uint16_t id = Read_U16(image, p);
            const int64_t size = Read_U32(image, p + 2);
            if (!Is_Boundary_Area_Record(id) || size < Fs2004_Record_Header ||
                size > file_end - p || !Charge_Walk(image, size)) {
                break;
            }
            if (id == Fs2004_Id_Boundary && size >= Boundary_Fixed_Part) {
                Decode_Boundary(image, p, size, airport_lat, airport_lon, airspaces,
                                airspace_count);
            }
            p += size;
        }
    }
}

std::string Fs2004_Class_Text(uint8_t boundary_type) {
    switch (boundary_type) {
    case Fs2004_Boundary_Center:
        return "ARTCC/FIR";
    case Fs2004_Boundary_Class_B:
        return "Airspace Class B";
    case Fs2004_Boundary_Class_C:
        return "Airspace Class C";
    case Fs2004_Boundary_Class_D:
        return "Airspace Class D";
    default:
        return "";
    }
}

} // namespace quilmark
