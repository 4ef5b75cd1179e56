// The BGL file of Microsoft Flight Simulator 2004 (FS9): a 56-byte header that opens with
// the magic 0x19920201, a table of 20-byte section pointers behind it, and for each
// section a table of subsections that say where its records lie. Every record opens with
// a 16-bit id and a 32-bit size that counts the whole record: its 6 header bytes and all
// the sub-records nested in it. Positions are absolute file offsets, as in the image.
//
// This folder holds the decoders of that format, beside the FS2002 ones of src/bgl and on
// the same floor: they stand on the image and its readers, the airport and airspace
// records of src/state and the geodesy, and never on the program's shared state.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "bgl/bgl_image.h"

namespace quilmark {

constexpr uint32_t Fs2004_Magic = 0x19920201u;
constexpr int64_t Fs2004_Section_Table = 0x38; // the section pointers follow the header
constexpr int64_t Fs2004_Section_Pointer_Size = 20;
constexpr int64_t Fs2004_Record_Header = 6;

// Section types this program reads.
constexpr uint32_t Fs2004_Section_Airports = 0x03;
constexpr uint32_t Fs2004_Section_Navaids = 0x13; // VOR and ILS
constexpr uint32_t Fs2004_Section_Boundaries = 0x20;
constexpr uint32_t Fs2004_Section_Names = 0x27;

struct Fs2004_Section_Rec {
    uint32_t type = 0;
    int64_t entry_size = 16; // of one subsection entry
    int64_t subsection_count = 0;
    int64_t table_position = 0;
    int64_t table_size = 0;
};

inline uint32_t Read_U32(const Bgl_Image& image, int64_t position) {
    return static_cast<uint32_t>(Read_Int32(image, position));
}
inline uint16_t Read_U16(const Bgl_Image& image, int64_t position) {
    return static_cast<uint16_t>(Read_Int16(image, position));
}
inline double Read_F32(const Bgl_Image& image, int64_t position) {
    return Read_Float(Read_Int32(image, position));
}

bool Is_Fs2004_File(const Bgl_Image& image);

// Number of section pointers the file really holds: the header's count, cut to what fits
// between the table and the end of the file.
int64_t Fs2004_Section_Count(const Bgl_Image& image);
Fs2004_Section_Rec Read_Fs2004_Section(const Bgl_Image& image, int64_t index);
// True if the header declares a section of this type.
bool Declares_Fs2004_Section(const Bgl_Image& image, uint32_t type);

// Whether the file at native_path may be read for sections of these types: false when its
// first bytes show a file that is not of this format, or a section table that declares
// none of them; true when it does, or when the table runs past the bytes read first (the
// whole file then decides). The scenery areas of an FS2004 world hold large terrain and
// object files; these are not read whole to learn that they hold no airport or boundary.
bool Fs2004_File_May_Hold(const std::string& native_path, std::initializer_list<uint32_t> types);

// Calls visit(first_record, record_count) for each subsection entry of every section of
// the given type (any type but the boundaries, whose index differs). visit returns false
// to end the whole walk.
template <class Visit>
void Walk_Fs2004_Subsections(Bgl_Image& image, uint32_t section_type, Visit visit);

// Calls visit(record_position, id, size) for the top-level records of every section of the
// given type: each subsection entry names a count of records that follow each other from
// its first record. A record that would not move the walk forward or runs past the end of
// the file ends its subsection; an exhausted walk budget ends the whole walk.
template <class Visit>
void Walk_Fs2004_Records(Bgl_Image& image, uint32_t section_type, Visit visit);

// Calls visit(position, id, size) for the records nested between first and end, each
// inside that span; the first that is not ends the walk.
template <class Visit>
void Walk_Fs2004_Subrecords(Bgl_Image& image, int64_t first, int64_t end, Visit visit);

// Packed positions: one u32 each, longitude raw * 360 / (3 * 2^28) - 180, latitude
// 90 - raw * 180 / 2^29 (the raw latitude grows southward).
double Fs2004_Longitude(uint32_t raw);
double Fs2004_Latitude(uint32_t raw);

// An ICAO identifier in base 38 (0 blank, 2-11 digits, 12-37 letters), built left to
// right. Airport and navaid idents are stored shifted left by 5 bits; the ILS idents of a
// runway, region codes and the airport ident inside an ILS record are not.
std::string Fs2004_Icao(uint32_t value, bool shifted);

// Single-byte text of a field of at most length bytes, ending at its first 0 byte. Longer
// texts are cut to 32767 bytes, what the program's text fields hold.
std::string Read_Fs2004_Text(const Bgl_Image& image, int64_t position, int64_t length);

// A frequency in Hz as the program writes frequencies: MHz with no trailing zeros.
std::string Fs2004_Frequency_Text(uint32_t hz);
// Millimetres to whole feet, halves to even.
int32_t Millimetres_To_Feet(int64_t mm);

// ---------------------------------------------------------------------------------------

template <class Visit>
void Walk_Fs2004_Subrecords(Bgl_Image& image, int64_t first, int64_t end, Visit visit) {
    const int64_t file_end = Bgl_File_Length(image);
    if (end > file_end) {
        end = file_end;
    }
    for (int64_t p = first; p >= 0 && p + Fs2004_Record_Header <= end;) {
        const uint16_t id = Read_U16(image, p);
        const int64_t size = Read_U32(image, p + 2);
        if (size < Fs2004_Record_Header || size > end - p || !Charge_Walk(image, size)) {
            return;
        }
        visit(p, id, size);
        p += size;
    }
}

template <class Visit>
void Walk_Fs2004_Subsections(Bgl_Image& image, uint32_t section_type, Visit visit) {
    const int64_t file_end = Bgl_File_Length(image);
    const int64_t sections = Fs2004_Section_Count(image);
    for (int64_t s = 0; s < sections; ++s) {
        const Fs2004_Section_Rec section = Read_Fs2004_Section(image, s);
        if (section.type != section_type) {
            continue;
        }
        for (int64_t i = 0; i < section.subsection_count; ++i) {
            const int64_t entry = section.table_position + i * section.entry_size;
            if (entry + 16 > file_end || !Charge_Walk(image, section.entry_size)) {
                break;
            }
            if (!visit(static_cast<int64_t>(Read_U32(image, entry + 8)),
                       static_cast<int64_t>(Read_U32(image, entry + 4)))) {
                return;
            }
        }
    }
}

template <class Visit>
void Walk_Fs2004_Records(Bgl_Image& image, uint32_t section_type, Visit visit) {
    const int64_t file_end = Bgl_File_Length(image);
    Walk_Fs2004_Subsections(image, section_type, [&](int64_t p, int64_t count) {
        for (; count > 0 && p + Fs2004_Record_Header <= file_end; --count) {
            const uint16_t id = Read_U16(image, p);
            const int64_t size = Read_U32(image, p + 2);
            if (size < Fs2004_Record_Header || size > file_end - p) {
                break;
            }
            if (!Charge_Walk(image, size)) {
                return false;
            }
            visit(p, id, size);
            p += size;
        }
        return true;
    });
}

} // namespace quilmark
