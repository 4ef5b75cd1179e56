// Lays out BGL files byte by byte from the record descriptions, for tests, fuzz seeds and
// generated worlds. Everything is little-endian; positions are absolute file offsets.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quilmark {

using Bytes = std::vector<uint8_t>;

struct Byte_Writer {
    Bytes bytes;
    size_t Size() const { return bytes.size(); }
    void I16(int16_t v);
    void I32(int32_t v);
    void F32(float v);
    // The text's bytes, then 0 bytes up to padded_length (no padding if it is shorter).
    void Text(std::string_view text, size_t padded_length = 0);
    void Zeros(size_t n);
    void Append(const Bytes& more);
    void Patch_I32(size_t at, int32_t v);
};

// Inverses of the decoders' number encodings.
int32_t Encode_Latitude(double degrees);            // degrees * 10001750 / 90
int32_t Encode_Longitude(double degrees);           // runway, navaid: degrees * 2^32 / 360
int32_t Encode_Reference_Longitude(double degrees); // reference point: 2^32 + 1
int32_t Encode_Heading(double degrees);             // 32-bit angle, 65536 * 65536 a turn
int32_t Encode_Frequency(double mhz);               // 118.75 -> 0x01187500
int32_t Float_Bits(float v);

void Append_Bytes(Bytes& to, const Bytes& more);
Bytes Concat_Bytes(std::initializer_list<Bytes> parts);

// A record: type, size (the payload's length), payload.
Bytes Record(int32_t type, const Bytes& payload);

// Records of an airport's stream.
Bytes Reference_Point_Record(int32_t lat_raw, int32_t lon_raw);
Bytes Name_Record(std::string_view name, size_t padded_length = 0);
Bytes Comm_Record(int32_t frequency_word, int32_t kind);

struct Runway_Fields {
    int32_t lat_raw = 0;
    int32_t lon_raw = 0;
    int32_t elevation_m = 0;
    int32_t heading_raw = 0;
    int32_t length_ft = 0;
    int32_t width_ft = 0;
    int32_t designator_code = 0; // 0 none, 1 L, 2 R, 3 C, 4 H
    int32_t number = 0;
};
Bytes Runway_Record(const Runway_Fields& f);

struct Navaid_Fields {
    int32_t lat_raw = 0;
    int32_t lon_raw = 0;
    int32_t heading_raw = 0;
    int32_t frequency_word = 0;
    int32_t kind = 4; // 4: ILS
    std::string name;
    size_t name_padded_length = 0;
};
Bytes Navaid_Record(const Navaid_Fields& f);

// The taxiway block's lists.
struct Taxi_Point_Element {
    int32_t kind = 0;
    float x = 0; // metres east of the reference point
    float y = 0; // metres north
};
struct Parking_Element {
    float x = 0;
    float y = 0;
    float radius_m = 0;
    int32_t code_word = 0;
};
struct Taxi_Path_Element {
    int32_t kind = 0; // 0 taxiway, 1 runway, 2 to a parking spot
    int32_t start = 0;
    int32_t end = 0;
    int32_t name_index = 0;
};
// The parking code word: type in digit 3, then 128 * number + name code.
int32_t Parking_Code_Word(int32_t type, int32_t number, int32_t name_code);

// A list: header (count, element size) and elements.
Bytes Point_List(const std::vector<Taxi_Point_Element>& points);
Bytes Parking_List(const std::vector<Parking_Element>& spots);
Bytes Path_List(const std::vector<Taxi_Path_Element>& paths);
Bytes Name_List(const std::vector<std::string>& names);
Bytes List_Header(int32_t count, int32_t element_size);
Bytes Taxiway_Block_Record(const std::vector<Bytes>& lists);

// One directory entry of the airport section and the data block it points at.
struct Airport_Entry {
    std::string ident;
    Bytes stream; // the records of the block; a record of type 0 is added behind them
    int32_t entry_type = 0x30002;
    int32_t entry_kind = 0x50001;
    int32_t block_word_0 = 1;
    int32_t block_word_8 = 1;
    std::optional<int32_t> block_position; // replaces the real position when set
    size_t ident_padded_length = 8;
};

struct Airport_Group {
    std::vector<Airport_Entry> entries;
    std::optional<int32_t> last_index; // default: entries.size() - 1
    size_t gap_after_entries = 0;      // bytes inside the group behind its last entry
};

struct Bgl_File_Layout {
    uint32_t marker = 0x87654321u;
    int32_t layout_word = 1;
    std::vector<Airport_Group> groups;                // the airport section; none: no section
    Bytes boundary_section;                           // laid out as given; empty: no section
    std::optional<int32_t> airport_section_position;  // replaces the real one when set
    std::optional<int32_t> boundary_section_position; // likewise
};

// Header (marker at 118, layout word at 144, section positions at 156 and 164), the airport
// section's groups ended by a record of another type, the data blocks, then the boundary
// section.
Bytes Build_Bgl(const Bgl_File_Layout& layout);

// magdec.bgl: the grid position at 110, an 8-byte record head, then 360 * 181 values, the
// latitudes of one meridian south to north, meridians eastward from Greenwich.
Bytes Build_Magdec(const std::vector<int16_t>& values, int32_t grid_position = 128);
// Grid values in file order from a function of (latitude -90..90, longitude index 0..359).
template <class F> std::vector<int16_t> Magdec_Values(F value_at) {
    std::vector<int16_t> values(65160);
    for (int lon = 0; lon < 360; ++lon) {
        for (int lat = -90; lat <= 90; ++lat) {
            values[static_cast<size_t>(181 * lon + 90 + lat)] = value_at(lat, lon);
        }
    }
    return values;
}

// Writes the bytes to a file, creating the folders above it.
void Write_File(const std::string& path, const Bytes& bytes);

// The little-endian word at a position of a byte vector.
int32_t Read_Int32_Le(const Bytes& bytes, size_t at);

// The boundary section: groups (record type 1) of kind 4 holding groups of kind 5, each a
// boundary with its child records. Positions are raw values (Encode_Latitude and
// Encode_Longitude).
Bytes Boundary_Group(int32_t group_kind, const Bytes& children);
Bytes Boundary_Box_Record(int32_t south, int32_t west, int32_t north, int32_t east);
Bytes Boundary_Name_Record(std::string_view name, size_t padded_length = 0);
// Fix 0x12001, Line 0x12005, Arc CW 0x12006, Arc CCW 0x12007: a position.
Bytes Boundary_Point_Record(int32_t type, int32_t lat_raw, int32_t lon_raw);
Bytes Boundary_Start_Record(int32_t lat_raw, int32_t lon_raw, int32_t floor, int32_t ceiling);
Bytes Boundary_Circle_Record(int32_t radius, int32_t floor, int32_t ceiling);
Bytes Boundary_Com_Record(int32_t frequency_word, std::string_view facility_name,
                          size_t padded_length = 0);
// A whole section: one list group per entry of lists, each holding boundary groups with
// the given children, and a record of type 0 behind the last list.
Bytes Boundary_Section(const std::vector<std::vector<Bytes>>& lists);

} // namespace quilmark
