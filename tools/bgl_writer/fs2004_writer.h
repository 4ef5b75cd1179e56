// Lays out FS2004 (FS9) BGL files byte by byte from the record tables of the format:
// the header and its section pointers, the subsection tables, the airport record with its
// sub-records, the ILS records, the name list and the boundary records. For tests, fuzz
// seeds and generated worlds. Positions in degrees are packed by the writer.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "bgl_writer/bgl_writer.h"

namespace quilmark {

// Inverses of the decoder's encodings.
uint32_t Pack_Latitude(double degrees);  // (90 - degrees) * 2^29 / 180
uint32_t Pack_Longitude(double degrees); // (degrees + 180) * 3 * 2^28 / 360
uint32_t Pack_Icao(std::string_view text, bool shifted);

// A record: u16 id, u32 total size (6 + the payload), the payload.
Bytes Fs9_Record(uint16_t id, const Bytes& payload);

// Little-endian pieces of a payload.
struct Fs9_Bytes {
    Bytes bytes;
    Fs9_Bytes& U8(uint8_t v);
    Fs9_Bytes& U16(uint16_t v);
    Fs9_Bytes& U32(uint32_t v);
    Fs9_Bytes& F32(float v);
    Fs9_Bytes& Lon_Lat(double lat, double lon); // longitude first, as nearly everywhere
    Fs9_Bytes& Text(std::string_view text, size_t padded_length = 0);
    Fs9_Bytes& Append(const Bytes& more);
};

// Airport sub-records.
Bytes Fs9_Name_Record(std::string_view name); // 0x19, zero-terminated
Bytes Fs9_Com_Record(uint16_t type, uint32_t hz, std::string_view name = "");

struct Fs9_Runway {
    uint16_t surface = 4; // asphalt
    uint8_t primary_number = 16;
    uint8_t primary_designator = 0;
    uint8_t secondary_number = 34;
    uint8_t secondary_designator = 0;
    std::string primary_ils;
    std::string secondary_ils;
    double lat = 0;
    double lon = 0;
    int32_t elevation_mm = 0;
    float length_m = 1000;
    float width_m = 45;
    float heading = 0;
};
Bytes Fs9_Runway_Record(const Fs9_Runway& r);

struct Fs9_Taxi_Point {
    uint8_t type = 1;
    double lat = 0;
    double lon = 0;
};
Bytes Fs9_Taxi_Points_Record(const std::vector<Fs9_Taxi_Point>& points);

// The parking bit field: name, push-back, type, number, number of airline codes.
uint32_t Fs9_Parking_Bits(uint32_t name, uint32_t push_back, uint32_t type, uint32_t number,
                          uint32_t airline_codes);
struct Fs9_Parking {
    uint32_t name = 10; // GATE
    uint32_t type = 9;  // GATE_MEDIUM
    uint32_t number = 1;
    float radius_m = 20;
    double lat = 0;
    double lon = 0;
    std::vector<std::string> airlines;
};
Bytes Fs9_Parking_Record(const std::vector<Fs9_Parking>& spots);

struct Fs9_Taxi_Path {
    uint16_t start = 0;
    uint16_t end = 0; // 12 bits
    uint8_t type = 1; // 1 taxi, 2 runway, 3 parking, 4 path, 5 closed
    uint8_t name_or_number = 0;
    uint8_t designator = 0; // of a runway path
};
Bytes Fs9_Taxi_Paths_Record(const std::vector<Fs9_Taxi_Path>& paths);
Bytes Fs9_Taxi_Names_Record(const std::vector<std::string>& names);

struct Fs9_Deleted_Runway {
    uint8_t primary_number = 0;
    uint8_t secondary_number = 0;
    uint8_t primary_designator = 0;
    uint8_t secondary_designator = 0;
};
struct Fs9_Deletion {
    uint16_t flags = 0;
    std::vector<Fs9_Deleted_Runway> runways;
    std::vector<uint32_t> starts;                           // four bytes each, as stored
    std::vector<std::pair<uint16_t, uint32_t>> frequencies; // type, Hz
};
Bytes Fs9_Delete_Record(const Fs9_Deletion& d);

struct Fs9_Airport {
    std::string ident;
    double lat = 0;
    double lon = 0;
    int32_t elevation_mm = 0;
    float magvar = 0;
    std::vector<Bytes> subrecords;
};
Bytes Fs9_Airport_Record(const Fs9_Airport& a);

struct Fs9_Ils {
    std::string ident;
    std::string airport_ident;
    std::string name; // no name sub-record if empty
    double lat = 0;
    double lon = 0;
    uint32_t hz = 110300000;
    float heading = 0;
    bool secondary_end = false;
    uint8_t type = 4;
    bool localizer = true;
};
Bytes Fs9_Ils_Record(const Fs9_Ils& ils);

// A name list: airport ident and airport name for each entry (one city, state, country and
// region shared by all).
Bytes Fs9_Name_List_Record(const std::vector<std::pair<std::string, std::string>>& airports);

struct Fs9_Boundary_Point {
    uint16_t type = 2; // 1 start, 2 line, 3 origin, 4 arc cw, 5 arc ccw, 6 circle
    double lat = 0;
    double lon = 0;
    float radius_m = 0; // of a circle, in place of the longitude
};
Bytes Fs9_Boundary_Points_Record(const std::vector<Fs9_Boundary_Point>& points);
struct Fs9_Boundary {
    uint8_t type = 5; // CLASS_D
    uint8_t altitude_types = 0x12;
    double south = 0, west = 0, north = 0, east = 0; // the box, first corner south west
    int32_t min_mm = 0;
    int32_t max_mm = 0;
    std::vector<Bytes> subrecords;
};
Bytes Fs9_Boundary_Record(const Fs9_Boundary& b);

// A section: its type and, for each subsection, the records that lie in it.
struct Fs9_Section {
    uint32_t type = 0;
    std::vector<std::vector<Bytes>> subsections;
};
// Header, section pointers, then each section's subsection table followed by its records.
// A boundary section's table has an entry per subsection and an (offset, length) pair per
// record.
Bytes Build_Fs2004(const std::vector<Fs9_Section>& sections);

} // namespace quilmark
