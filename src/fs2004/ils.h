// The ILS of an FS2004 world. They are not part of the airport record: each is a record of
// the VOR/ILS section (type 0x13, record id 0x0013, type 4) in the airport's file or in
// another one, and a runway names the ILS of each of its ends by ident. The table
// collects them from every file so that the airports can be joined to them at the end.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "bgl/bgl_image.h"

namespace quilmark {

constexpr uint16_t Fs2004_Id_Navaid = 0x0013;
constexpr uint16_t Fs2004_Id_Localizer = 0x0014;
constexpr uint8_t Fs2004_Navaid_Ils = 4;

struct Fs2004_Ils_Rec {
    std::string ident;
    std::string airport_ident; // the airport that owns it; may be empty
    std::string name;          // empty without a name sub-record
    double lat = 0;            // the localizer transmitter
    double lon = 0;
    double heading = 0; // localizer, true
    uint32_t hz = 0;
    bool secondary_end = false; // serves the runway's secondary end
    bool operator==(const Fs2004_Ils_Rec&) const = default;
};

struct Fs2004_Ils_Table {
    std::vector<Fs2004_Ils_Rec> records;
    std::unordered_multimap<std::string, size_t> by_ident;
};

// Appends the file's ILS (navaid records of type 4 with a localizer) to the table.
void Decode_Fs2004_Ils(Bgl_Image& image, Fs2004_Ils_Table& table);

// The ILS of this ident that serves an end of this airport at (lat, lon): of the records
// with the ident whose owning airport is this one or unnamed, the one nearest the end (of
// the first 64 with the ident). Null if there is none.
const Fs2004_Ils_Rec* Find_Fs2004_Ils(const Fs2004_Ils_Table& table, const std::string& ident,
                                      const std::string& airport_ident, double lat, double lon);

} // namespace quilmark
