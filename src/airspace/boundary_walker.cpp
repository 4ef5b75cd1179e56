#include "airspace/boundary_walker.h"

#include "platform/rounding.h"

namespace quilmark {

namespace {

// Positions of the boundary records, converted and rounded to 4 decimals.
double Boundary_Latitude(int32_t raw) {
    return Round_Decimals(Decode_Latitude(raw), 4);
}
double Boundary_Longitude(int32_t raw) {
    return Round_Decimals(Decode_Longitude(raw), 4);
}

// One level of the chain of groups. A group of the wanted kind is handed to open_group
// with its position; records of type 0x30001 are passed over; any other type ends the chain.
template <class Open_Group>
void Walk_Group_Chain(Bgl_Image& image, int64_t start, Section_Header header, int32_t wanted_kind,
                      Open_Group open_group) {
    int64_t record_offset = 0;
    for (;;) {
        const int64_t p = start + record_offset;
        if (header.record_type == Boundary_Group_Record) {
            if (Read_Int32(image, p + 8) == wanted_kind) {
                open_group(p);
            }
        } else if (header.record_type != Boundary_Skipped_Record) {
            return;
        }
        const int64_t length = static_cast<int64_t>(header.record_size) + 8;
        if (!Take_Record_Step(image, p, length, Step_Charge::Header)) {
            return;
        }
        record_offset += length;
        header = Read_Section_Header(image, start + record_offset);
    }
}

bool Is_Boundary_Child(int32_t type) {
    switch (type) {
    case Boundary_Box:
    case Boundary_Name:
    case Boundary_Fix:
    case Boundary_Start:
    case Boundary_Skip:
    case Boundary_Line:
    case Boundary_Arc_CW:
    case Boundary_Arc_CCW:
    case Boundary_Circle:
    case Boundary_Com:
        return true;
    default:
        return false;
    }
}

// Takes bytes of the fetch's airspace memory. False when they are not there: the record is
// then passed over.
bool Take_Airspace_Bytes(Boundary_Walk_Rec& walk, int64_t bytes) {
    if (walk.bytes_left < bytes) {
        return false;
    }
    walk.bytes_left -= bytes;
    return true;
}

void Add_Point(Boundary_Walk_Rec& walk, Airspace_Rec& airspace, uint8_t kind, double lat,
               double lon, int32_t radius) {
    if (!Take_Airspace_Bytes(walk, sizeof(Boundary_Point_Rec))) {
        return;
    }
    Boundary_Point_Rec& point = Append(airspace.points, airspace.point_count);
    point.kind = kind;
    point.lat = lat;
    point.lon = lon;
    point.radius = radius;
}

// A new airspace for a wanted boundary, its centre in the middle of the box's diagonal.
// False if the fetch has no memory left for it.
bool Open_Airspace(Boundary_Walk_Rec& walk, double south, double west, double north, double east) {
    if (!Take_Airspace_Bytes(walk, sizeof(Airspace_Rec))) {
        return false;
    }
    Airspace_Rec& airspace = Append(walk.airspaces, walk.airspace_count);
    int16_t d = Great_Circle_Distance(north, west, south, east);
    int16_t k = Great_Circle_Bearing(walk.grid, north, west, south, east);
    int16_t h = To_I16(d / 2.0);
    Geo_Point_Rec centre = Great_Circle_Destination(north, west, k, h);
    airspace.center_lat = centre.lat;
    airspace.center_lon = centre.lon;
    return true;
}

void Apply_Record(Boundary_Walk_Rec& walk, int64_t c, int32_t type, int32_t size,
                  Airspace_Rec& airspace) {
    const Bgl_Image& image = walk.image;
    switch (type) {
    case Boundary_Name: {
        std::string text = Read_Text(image, c + 8, Clamp_I16(size));
        if (!Take_Airspace_Bytes(walk, static_cast<int64_t>(text.size()) + 2)) {
            break;
        }
        // Appended in place: many names in one boundary must not copy the whole text each.
        if (!airspace.region_name.empty()) {
            airspace.region_name += "  ";
        }
        airspace.region_name += text;
        break;
    }
    case Boundary_Fix:
    case Boundary_Line:
    case Boundary_Arc_CW:
    case Boundary_Arc_CCW:
    case Boundary_Start: {
        uint8_t kind = type == Boundary_Fix       ? Point_Fix
                       : type == Boundary_Line    ? Point_Line
                       : type == Boundary_Arc_CW  ? Point_Arc_CW
                       : type == Boundary_Arc_CCW ? Point_Arc_CCW
                                                  : Point_Start;
        Add_Point(walk, airspace, kind, Boundary_Latitude(Read_Int32(image, c + 12)),
                  Boundary_Longitude(Read_Int32(image, c + 20)), 0);
        if (type == Boundary_Start) {
            airspace.floor_alt = Read_Int32(image, c + 24);
            airspace.ceiling_alt = Read_Int32(image, c + 28);
        }
        break;
    }
    case Boundary_Circle:
        Add_Point(walk, airspace, Point_Circle, 0, 0, Read_Int32(image, c + 8));
        airspace.floor_alt = Read_Int32(image, c + 16);
        airspace.ceiling_alt = Read_Int32(image, c + 20);
        break;
    case Boundary_Com: {
        std::string item = Frequency_Text(Decode_Frequency(Read_Int32(image, c + 8))) + " Mhz  ";
        std::string facility = Read_Text(image, c + 16, Clamp_I16(static_cast<int64_t>(size) - 8));
        if (Take_Airspace_Bytes(walk, static_cast<int64_t>(item.size() + facility.size()))) {
            airspace.freq_text += item;
            airspace.facility_name = std::move(facility);
        }
        break;
    }
    default:
        break;
    }
}

} // namespace

void Read_Boundary_Section(Boundary_Walk_Rec& walk) {
    const int32_t section = Section_Position(walk.image, Bgl_Boundary_Section);
    if (section > 0) {
        Walk_Boundary_Section(walk, section, Read_Section_Header(walk.image, section));
    }
}

void Walk_Boundary_Section(Boundary_Walk_Rec& walk, int64_t section_position,
                           Section_Header header) {
    Walk_Group_Chain(walk.image, section_position, header, Group_Kind_Boundary_List,
                     [&](int64_t p) {
                         Walk_Boundary_List(walk, p + 16, Read_Section_Header(walk.image, p + 16));
                     });
}

void Walk_Boundary_List(Boundary_Walk_Rec& walk, int64_t list_position, Section_Header header) {
    Walk_Group_Chain(walk.image, list_position, header, Group_Kind_Boundary,
                     [&](int64_t p) { Read_Boundary_Records(walk, p); });
}

void Read_Boundary_Records(Boundary_Walk_Rec& walk, int64_t position) {
    Bgl_Image& image = walk.image;
    const int64_t first = position + 16;
    int64_t record_offset = 0;
    bool boundary_wanted = false;
    for (;;) {
        const int64_t c = first + record_offset;
        const int32_t type = Read_Int32(image, c);
        const int32_t size = Read_Int32(image, c + 4);
        if (!Is_Boundary_Child(type)) {
            return;
        }
        const int64_t length = static_cast<int64_t>(size) + 8;
        if (!Take_Record_Step(image, c, length)) {
            return;
        }
        if (type == Boundary_Box) {
            // Strictly inside, against edges rounded to 4 decimals; the airport's own
            // position is taken as it is. A box across the 180th meridian holds nothing.
            const double south = Boundary_Latitude(Read_Int32(image, c + 8));
            const double west = Boundary_Longitude(Read_Int32(image, c + 12));
            const double north = Boundary_Latitude(Read_Int32(image, c + 16));
            const double east = Boundary_Longitude(Read_Int32(image, c + 20));
            const double lat = walk.airport.lat;
            const double lon = walk.airport.lon;
            if (south < lat && lat < north && west < lon && lon < east) {
                boundary_wanted = Open_Airspace(walk, south, west, north, east);
            }
        } else if (type != Boundary_Skip && boundary_wanted) {
            Apply_Record(walk, c, type, size,
                         walk.airspaces[static_cast<size_t>(walk.airspace_count - 1)]);
        }
        record_offset += length;
    }
}

} // namespace quilmark
