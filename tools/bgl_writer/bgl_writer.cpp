#include "bgl_writer/bgl_writer.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace quilmark {

void Byte_Writer::I16(int16_t v) {
    auto u = static_cast<uint16_t>(v);
    bytes.insert(bytes.end(), {static_cast<uint8_t>(u & 0xFF), static_cast<uint8_t>(u >> 8)});
}

void Byte_Writer::I32(int32_t v) {
    bytes.resize(bytes.size() + 4);
    Patch_I32(bytes.size() - 4, v);
}

void Byte_Writer::F32(float v) {
    I32(Float_Bits(v));
}

void Byte_Writer::Text(std::string_view text, size_t padded_length) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    Zeros(padded_length > text.size() ? padded_length - text.size() : 0);
}

void Byte_Writer::Zeros(size_t n) {
    bytes.insert(bytes.end(), n, 0);
}

void Byte_Writer::Append(const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

void Byte_Writer::Patch_I32(size_t at, int32_t v) {
    auto u = static_cast<uint32_t>(v);
    for (size_t i = 0; i < 4; ++i) {
        bytes.at(at + i) = static_cast<uint8_t>((u >> (8 * i)) & 0xFF);
    }
}

namespace {

// Little-endian words, then the text padded as Byte_Writer::Text pads it.
Bytes Words(std::initializer_list<int32_t> words, std::string_view text = {}, size_t padded = 0) {
    Byte_Writer w;
    for (int32_t v : words) {
        w.I32(v);
    }
    w.Text(text, padded);
    return w.bytes;
}

} // namespace

int32_t Encode_Latitude(double degrees) {
    return static_cast<int32_t>(std::llround(degrees * 10001750.0 / 90.0));
}

int32_t Encode_Longitude(double degrees) {
    return static_cast<int32_t>(std::llround(degrees * 4294967296.0 / 360.0));
}

int32_t Encode_Reference_Longitude(double degrees) {
    return static_cast<int32_t>(std::llround(degrees * 4294967297.0 / 360.0));
}

int32_t Encode_Heading(double degrees) {
    long long h = std::llround(degrees * 65536.0 * 65536.0 / 360.0);
    return static_cast<int32_t>(static_cast<uint32_t>(h));
}

int32_t Encode_Frequency(double mhz) {
    // 118.75 -> digits 1187500 -> read as hexadecimal digits
    long long digits = std::llround(mhz * 10000);
    uint32_t word = 0;
    uint32_t shift = 0;
    while (digits > 0) {
        word |= static_cast<uint32_t>(digits % 10) << shift;
        digits /= 10;
        shift += 4;
    }
    return static_cast<int32_t>(word);
}

int32_t Float_Bits(float v) {
    int32_t bits;
    std::memcpy(&bits, &v, 4);
    return bits;
}

void Append_Bytes(Bytes& to, const Bytes& more) {
    to.insert(to.end(), more.begin(), more.end());
}

Bytes Concat_Bytes(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& p : parts) {
        Append_Bytes(out, p);
    }
    return out;
}

Bytes Record(int32_t type, const Bytes& payload) {
    return Concat_Bytes({Words({type, static_cast<int32_t>(payload.size())}), payload});
}

// The zero words are fields the decoders don't read.
Bytes Reference_Point_Record(int32_t lat_raw, int32_t lon_raw) {
    return Record(0x10001, Words({0, lat_raw, 0, lon_raw, 0}));
}

Bytes Name_Record(std::string_view name, size_t padded_length) {
    return Record(0x10006, Words({}, name, padded_length));
}

Bytes Comm_Record(int32_t frequency_word, int32_t kind) {
    return Record(0x20001, Words({frequency_word, kind}));
}

Bytes Runway_Record(const Runway_Fields& f) {
    return Record(0x10002, Words({0, f.lat_raw, 0, f.lon_raw, 0, f.elevation_m, f.heading_raw, 0,
                                  f.length_ft, f.width_ft, f.designator_code, f.number}));
}

Bytes Navaid_Record(const Navaid_Fields& f) {
    return Record(0x10004, Words({0, f.lat_raw, 0, f.lon_raw, 0, 0, f.heading_raw, f.frequency_word,
                                  f.kind, 0, 0, 0},
                                 f.name, f.name_padded_length));
}

int32_t Parking_Code_Word(int32_t type, int32_t number, int32_t name_code) {
    return static_cast<int32_t>((static_cast<uint32_t>(type) << 20) |
                                static_cast<uint32_t>(number * 128 + name_code));
}

Bytes List_Header(int32_t count, int32_t element_size) {
    return Words({count, element_size});
}

Bytes Point_List(const std::vector<Taxi_Point_Element>& points) {
    Byte_Writer w;
    w.Append(List_Header(static_cast<int32_t>(points.size()), 12));
    for (const auto& p : points) {
        w.Append(Words({p.kind, Float_Bits(p.x), Float_Bits(p.y)}));
    }
    return w.bytes;
}

Bytes Parking_List(const std::vector<Parking_Element>& spots) {
    Byte_Writer w;
    w.Append(List_Header(static_cast<int32_t>(spots.size()), 20));
    for (const auto& s : spots) {
        w.Append(Words({Float_Bits(s.x), Float_Bits(s.y), Float_Bits(s.radius_m), 0, s.code_word}));
    }
    return w.bytes;
}

Bytes Path_List(const std::vector<Taxi_Path_Element>& paths) {
    Byte_Writer w;
    w.Append(List_Header(static_cast<int32_t>(paths.size()), 32));
    for (const auto& p : paths) {
        w.Append(Words({p.kind, 0, 0, p.start, p.end, 0, 0, p.name_index}));
    }
    return w.bytes;
}

Bytes Name_List(const std::vector<std::string>& names) {
    Byte_Writer w;
    w.Append(List_Header(static_cast<int32_t>(names.size()), 8));
    for (const auto& n : names) {
        if (n.size() > 8) {
            throw std::invalid_argument("taxiway name longer than 8 bytes: " + n);
        }
        w.Text(n, 8);
    }
    return w.bytes;
}

Bytes Taxiway_Block_Record(const std::vector<Bytes>& lists) {
    Byte_Writer w;
    for (const auto& list : lists) {
        w.Append(list);
    }
    return Record(0x11001, w.bytes);
}

namespace {

constexpr size_t Header_Size = 200;
constexpr int32_t End_Of_Section = 0x7FFF0000; // any type outside the walkers' tables

size_t Entry_Size(const Airport_Entry& e) {
    return 16 + std::max(e.ident.size(), e.ident_padded_length);
}

size_t Section_Size(const Bgl_File_Layout& layout) {
    if (layout.groups.empty()) {
        return 0;
    }
    size_t size = 8; // end record
    for (const auto& g : layout.groups) {
        size += 24 + g.gap_after_entries;
        for (const auto& e : g.entries) {
            size += Entry_Size(e);
        }
    }
    return size;
}

} // namespace

Bytes Build_Bgl(const Bgl_File_Layout& layout) {
    Byte_Writer w;
    w.Zeros(Header_Size);
    w.Patch_I32(118, static_cast<int32_t>(layout.marker));
    w.Patch_I32(144, layout.layout_word);

    const size_t section = Header_Size;
    size_t block = section + Section_Size(layout);
    if (!layout.groups.empty()) {
        for (const auto& g : layout.groups) {
            size_t entries = 0;
            for (const auto& e : g.entries) {
                entries += Entry_Size(e);
            }
            w.Append(Words({0x30001, static_cast<int32_t>(16 + entries + g.gap_after_entries), 0, 0,
                            0, g.last_index.value_or(static_cast<int32_t>(g.entries.size()) - 1)}));
            for (const auto& e : g.entries) {
                size_t pad = std::max(e.ident.size(), e.ident_padded_length);
                w.Append(Words({e.entry_type, static_cast<int32_t>(8 + pad), e.entry_kind,
                                e.block_position.value_or(static_cast<int32_t>(block))},
                               e.ident, pad));
                block += 16 + e.stream.size() + 8;
            }
            w.Zeros(g.gap_after_entries);
        }
        w.Append(Words({End_Of_Section, 0}));
        for (const auto& g : layout.groups) {
            for (const auto& e : g.entries) {
                w.Append(Words({e.block_word_0, 0, e.block_word_8, 0}));
                w.Append(e.stream);
                w.Append(Words({0, 0})); // a record of type 0 ends the stream
            }
        }
    }
    int32_t boundary = 0;
    if (!layout.boundary_section.empty()) {
        boundary = static_cast<int32_t>(w.Size());
        w.Append(layout.boundary_section);
    }
    w.Patch_I32(156, layout.airport_section_position.value_or(
                         layout.groups.empty() ? 0 : static_cast<int32_t>(section)));
    w.Patch_I32(164, layout.boundary_section_position.value_or(boundary));
    return w.bytes;
}

Bytes Build_Magdec(const std::vector<int16_t>& values, int32_t grid_position) {
    Byte_Writer w;
    w.Zeros(static_cast<size_t>(grid_position));
    w.Patch_I32(110, grid_position);
    w.Append(Words({0x5a5a, static_cast<int32_t>(values.size() * 2)})); // record head, passed over
    for (int16_t v : values) {
        w.I16(v);
    }
    return w.bytes;
}

void Write_File(const std::string& path, const Bytes& bytes) {
    std::filesystem::path parent = std::filesystem::path(path).parent_path();
    if (!parent.empty()) {
        std::filesystem::create_directories(parent);
    }
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    if (!out) {
        throw std::runtime_error("cannot write " + path);
    }
}

int32_t Read_Int32_Le(const Bytes& bytes, size_t at) {
    uint32_t v = 0;
    for (size_t i = 0; i < 4; ++i) {
        v |= static_cast<uint32_t>(bytes.at(at + i)) << (8 * i);
    }
    return static_cast<int32_t>(v);
}

Bytes Boundary_Group(int32_t group_kind, const Bytes& children) {
    return Concat_Bytes(
        {Words({1, static_cast<int32_t>(8 + children.size()), group_kind, 0}), children});
}

Bytes Boundary_Box_Record(int32_t south, int32_t west, int32_t north, int32_t east) {
    return Record(0x1000B, Words({south, west, north, east}));
}

Bytes Boundary_Name_Record(std::string_view name, size_t padded_length) {
    return Name_Record(name, padded_length);
}

Bytes Boundary_Point_Record(int32_t type, int32_t lat_raw, int32_t lon_raw) {
    return Record(type, Words({0, lat_raw, 0, lon_raw}));
}

Bytes Boundary_Start_Record(int32_t lat_raw, int32_t lon_raw, int32_t floor, int32_t ceiling) {
    return Record(0x12002, Words({0, lat_raw, 0, lon_raw, floor, ceiling}));
}

Bytes Boundary_Circle_Record(int32_t radius, int32_t floor, int32_t ceiling) {
    return Record(0x12008, Words({radius, 0, floor, ceiling}));
}

Bytes Boundary_Com_Record(int32_t frequency_word, std::string_view facility_name,
                          size_t padded_length) {
    return Record(0x20001, Words({frequency_word, 0}, facility_name, padded_length));
}

Bytes Boundary_Section(const std::vector<std::vector<Bytes>>& lists) {
    Byte_Writer w;
    for (const auto& boundaries : lists) {
        Byte_Writer children;
        for (const Bytes& boundary : boundaries) {
            children.Append(Boundary_Group(5, boundary));
        }
        children.Append(Words({0, 0})); // ends the chain of boundaries
        w.Append(Boundary_Group(4, children.bytes));
    }
    w.Append(Words({0, 0}));
    return w.bytes;
}

} // namespace quilmark
