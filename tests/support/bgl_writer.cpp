#include "support/bgl_writer.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

void Byte_Writer::U8(uint8_t v) {
    bytes.push_back(v);
}

void Byte_Writer::I16(int16_t v) {
    auto u = static_cast<uint16_t>(v);
    bytes.push_back(static_cast<uint8_t>(u & 0xFF));
    bytes.push_back(static_cast<uint8_t>(u >> 8));
}

void Byte_Writer::I32(int32_t v) {
    auto u = static_cast<uint32_t>(v);
    for (int i = 0; i < 4; ++i) {
        bytes.push_back(static_cast<uint8_t>((u >> (8 * i)) & 0xFF));
    }
}

void Byte_Writer::F32(float v) {
    I32(Float_Bits(v));
}

void Byte_Writer::F64(double v) {
    uint64_t u;
    std::memcpy(&u, &v, 8);
    for (int i = 0; i < 8; ++i) {
        bytes.push_back(static_cast<uint8_t>((u >> (8 * i)) & 0xFF));
    }
}

void Byte_Writer::Text(std::string_view text, size_t padded_length) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    if (padded_length > text.size()) {
        Zeros(padded_length - text.size());
    }
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
    Byte_Writer w;
    w.I32(type);
    w.I32(static_cast<int32_t>(payload.size()));
    w.Append(payload);
    return w.bytes;
}

Bytes Reference_Point_Record(int32_t lat_raw, int32_t lon_raw) {
    Byte_Writer w;
    w.I32(0); // offset 8, not read
    w.I32(lat_raw);
    w.I32(0); // offset 16, not read
    w.I32(lon_raw);
    w.I32(0); // altitude, not read
    return Record(0x10001, w.bytes);
}

Bytes Name_Record(std::string_view name, size_t padded_length) {
    Byte_Writer w;
    w.Text(name, padded_length);
    return Record(0x10006, w.bytes);
}

Bytes Comm_Record(int32_t frequency_word, int32_t kind) {
    Byte_Writer w;
    w.I32(frequency_word);
    w.I32(kind);
    return Record(0x20001, w.bytes);
}

Bytes Runway_Record(const Runway_Fields& f) {
    Byte_Writer w;
    w.I32(0); // 8
    w.I32(f.lat_raw);
    w.I32(0); // 16
    w.I32(f.lon_raw);
    w.I32(0); // 24
    w.I32(f.elevation_m);
    w.I32(f.heading_raw);
    w.I32(0); // 36
    w.I32(f.length_ft);
    w.I32(f.width_ft);
    w.I32(f.designator_code);
    w.I32(f.number);
    return Record(0x10002, w.bytes);
}

Bytes Navaid_Record(const Navaid_Fields& f) {
    Byte_Writer w;
    w.I32(0); // 8
    w.I32(f.lat_raw);
    w.I32(0); // 16
    w.I32(f.lon_raw);
    w.I32(0); // 24
    w.I32(0); // 28
    w.I32(f.heading_raw);
    w.I32(f.frequency_word);
    w.I32(f.kind);
    w.I32(0); // 44
    w.I32(0); // 48
    w.I32(0); // 52
    w.Text(f.name, f.name_padded_length);
    return Record(0x10004, w.bytes);
}

int32_t Parking_Code_Word(int32_t type, int32_t number, int32_t name_code) {
    return static_cast<int32_t>((static_cast<uint32_t>(type) << 20) |
                                static_cast<uint32_t>(number * 128 + name_code));
}

Bytes List_Header(int32_t count, int32_t element_size) {
    Byte_Writer w;
    w.I32(count);
    w.I32(element_size);
    return w.bytes;
}

Bytes Point_List(const std::vector<Taxi_Point_Element>& points) {
    Byte_Writer w;
    w.Append(List_Header(static_cast<int32_t>(points.size()), 12));
    for (const auto& p : points) {
        w.I32(p.kind);
        w.F32(p.x);
        w.F32(p.y);
    }
    return w.bytes;
}

Bytes Parking_List(const std::vector<Parking_Element>& spots) {
    Byte_Writer w;
    w.Append(List_Header(static_cast<int32_t>(spots.size()), 20));
    for (const auto& s : spots) {
        w.F32(s.x);
        w.F32(s.y);
        w.F32(s.radius_m);
        w.I32(0);
        w.I32(s.code_word);
    }
    return w.bytes;
}

Bytes Path_List(const std::vector<Taxi_Path_Element>& paths) {
    Byte_Writer w;
    w.Append(List_Header(static_cast<int32_t>(paths.size()), 32));
    for (const auto& p : paths) {
        w.I32(p.kind);
        w.Zeros(8);
        w.I32(p.start);
        w.I32(p.end);
        w.Zeros(8);
        w.I32(p.name_index);
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

constexpr size_t kHeaderSize = 200;
constexpr int32_t kEndOfSection = 0x7FFF0000; // any type outside the walkers' tables

size_t Entry_Size(const Airport_Entry& e) {
    return 16 + std::max(e.ident.size(), e.ident_padded_length);
}

size_t Section_Size(const Bgl_File_Spec& spec) {
    if (spec.groups.empty()) {
        return 0;
    }
    size_t size = 8; // end record
    for (const auto& g : spec.groups) {
        size += 24 + g.gap_after_entries;
        for (const auto& e : g.entries) {
            size += Entry_Size(e);
        }
    }
    return size;
}

size_t Blocks_Size(const Bgl_File_Spec& spec) {
    size_t size = 0;
    for (const auto& g : spec.groups) {
        for (const auto& e : g.entries) {
            size += 16 + e.stream.size() + 8;
        }
    }
    return size;
}

} // namespace

int32_t Boundary_Section_Position(const Bgl_File_Spec& spec) {
    return static_cast<int32_t>(kHeaderSize + Section_Size(spec) + Blocks_Size(spec));
}

Bytes Build_Bgl(const Bgl_File_Spec& spec) {
    Byte_Writer w;
    w.Zeros(kHeaderSize);
    w.Patch_I32(118, static_cast<int32_t>(spec.marker));
    w.Patch_I32(144, spec.layout_word);

    const size_t section = kHeaderSize;
    size_t block = section + Section_Size(spec);
    std::vector<size_t> entry_block_fields;
    if (!spec.groups.empty()) {
        for (const auto& g : spec.groups) {
            size_t entries = 0;
            for (const auto& e : g.entries) {
                entries += Entry_Size(e);
            }
            w.I32(0x30001);
            w.I32(static_cast<int32_t>(16 + entries + g.gap_after_entries));
            w.Zeros(12);
            w.I32(g.last_index.value_or(static_cast<int32_t>(g.entries.size()) - 1));
            for (const auto& e : g.entries) {
                size_t pad = std::max(e.ident.size(), e.ident_padded_length);
                w.I32(e.entry_type);
                w.I32(static_cast<int32_t>(8 + pad));
                w.I32(e.entry_kind);
                w.I32(e.block_position.value_or(static_cast<int32_t>(block)));
                w.Text(e.ident, pad);
                block += 16 + e.stream.size() + 8;
            }
            w.Zeros(g.gap_after_entries);
        }
        w.I32(kEndOfSection);
        w.I32(0);
        for (const auto& g : spec.groups) {
            for (const auto& e : g.entries) {
                w.I32(e.block_word_0);
                w.I32(0);
                w.I32(e.block_word_8);
                w.I32(0);
                w.Append(e.stream);
                w.I32(0); // a record of type 0 ends the stream
                w.I32(0);
            }
        }
    }
    int32_t boundary = 0;
    if (!spec.boundary_section.empty()) {
        boundary = static_cast<int32_t>(w.Size());
        w.Append(spec.boundary_section);
    }
    w.Patch_I32(156, spec.airport_section_position.value_or(
                         spec.groups.empty() ? 0 : static_cast<int32_t>(section)));
    w.Patch_I32(164, spec.boundary_section_position.value_or(boundary));
    return w.bytes;
}

Bytes Build_Magdec(const std::vector<int16_t>& values, int32_t grid_position) {
    Byte_Writer w;
    w.Zeros(static_cast<size_t>(grid_position));
    w.Patch_I32(110, grid_position);
    w.I32(0x5a5a); // record head, passed over
    w.I32(static_cast<int32_t>(values.size() * 2));
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
    Byte_Writer w;
    w.I32(1);
    w.I32(static_cast<int32_t>(8 + children.size()));
    w.I32(group_kind);
    w.I32(0);
    w.Append(children);
    return w.bytes;
}

Bytes Boundary_Box_Record(int32_t south, int32_t west, int32_t north, int32_t east) {
    Byte_Writer w;
    w.I32(south);
    w.I32(west);
    w.I32(north);
    w.I32(east);
    return Record(0x1000B, w.bytes);
}

Bytes Boundary_Name_Record(std::string_view name, size_t padded_length) {
    Byte_Writer w;
    w.Text(name, padded_length);
    return Record(0x10006, w.bytes);
}

Bytes Boundary_Point_Record(int32_t type, int32_t lat_raw, int32_t lon_raw) {
    Byte_Writer w;
    w.I32(0);
    w.I32(lat_raw);
    w.I32(0);
    w.I32(lon_raw);
    return Record(type, w.bytes);
}

Bytes Boundary_Start_Record(int32_t lat_raw, int32_t lon_raw, int32_t floor, int32_t ceiling) {
    Byte_Writer w;
    w.I32(0);
    w.I32(lat_raw);
    w.I32(0);
    w.I32(lon_raw);
    w.I32(floor);
    w.I32(ceiling);
    return Record(0x12002, w.bytes);
}

Bytes Boundary_Circle_Record(int32_t radius, int32_t floor, int32_t ceiling) {
    Byte_Writer w;
    w.I32(radius);
    w.I32(0);
    w.I32(floor);
    w.I32(ceiling);
    return Record(0x12008, w.bytes);
}

Bytes Boundary_Com_Record(int32_t frequency_word, std::string_view facility_name,
                          size_t padded_length) {
    Byte_Writer w;
    w.I32(frequency_word);
    w.I32(0);
    w.Text(facility_name, padded_length);
    return Record(0x20001, w.bytes);
}

Bytes Boundary_Section(const std::vector<std::vector<Bytes>>& lists) {
    Byte_Writer w;
    for (const auto& boundaries : lists) {
        Byte_Writer children;
        for (const Bytes& boundary : boundaries) {
            children.Append(Boundary_Group(5, boundary));
        }
        children.I32(0); // ends the chain of boundaries
        children.I32(0);
        w.Append(Boundary_Group(4, children.bytes));
    }
    w.I32(0);
    w.I32(0);
    return w.bytes;
}
