#include "fs2004/ils.h"

#include "fs2004/airports.h"
#include "fs2004/bgl_file.h"
#include "geo/geodesy.h"

namespace quilmark {

namespace {

constexpr int64_t Navaid_Fixed_Part = 40;
constexpr int64_t Localizer_Size = 16;
// Records of one ident that a lookup weighs. A world has a handful at most; the cap keeps
// a file full of one ident from making the joining quadratic.
constexpr int Max_Ils_Candidates = 64;

} // namespace

void Decode_Fs2004_Ils(Bgl_Image& image, Fs2004_Ils_Table& table) {
    Walk_Fs2004_Records(image, Fs2004_Section_Navaids, [&](int64_t rec, uint16_t id, int64_t size) {
        if (id != Fs2004_Id_Navaid || size < Navaid_Fixed_Part ||
            Read_Byte(image, rec + 6) != Fs2004_Navaid_Ils) {
            return;
        }
        Fs2004_Ils_Rec ils;
        ils.lon = Fs2004_Longitude(Read_U32(image, rec + 8));
        ils.lat = Fs2004_Latitude(Read_U32(image, rec + 12));
        ils.hz = Read_U32(image, rec + 20);
        ils.ident = Fs2004_Icao(Read_U32(image, rec + 32), true);
        // Bits 0-10 hold the region, bits 11-31 the owning airport, neither shifted.
        ils.airport_ident = Fs2004_Icao(Read_U32(image, rec + 36) >> 11, false);
        bool localizer = false;
        Walk_Fs2004_Subrecords(image, rec + Navaid_Fixed_Part, rec + size,
                               [&](int64_t sub, uint16_t sub_id, int64_t length) {
                                   if (sub_id == Fs2004_Id_Localizer && length >= Localizer_Size) {
                                       localizer = true;
                                       ils.secondary_end = (Read_Byte(image, sub + 6) & 0x10) != 0;
                                       ils.heading = Read_F32(image, sub + 8);
                                   } else if (sub_id == Fs2004_Id_Name) {
                                       ils.name = Read_Fs2004_Text(image, sub + 6, length - 6);
                                   }
                               });
        if (localizer && !ils.ident.empty()) {
            table.by_ident.emplace(ils.ident, table.records.size());
            table.records.push_back(std::move(ils));
        }
    });
}

const Fs2004_Ils_Rec* Find_Fs2004_Ils(const Fs2004_Ils_Table& table, const std::string& ident,
                                      const std::string& airport_ident, double lat, double lon) {
    const Fs2004_Ils_Rec* best = nullptr;
    double best_angle = 0;
    int candidates = 0;
    for (auto it = table.by_ident.find(ident);
         it != table.by_ident.end() && it->first == ident && candidates < Max_Ils_Candidates;
         ++it, ++candidates) {
        const Fs2004_Ils_Rec& ils = table.records[it->second];
        if (!ils.airport_ident.empty() && ils.airport_ident != airport_ident) {
            continue;
        }
        const double angle = Central_Angle(ils.lat, ils.lon, lat, lon);
        if (best == nullptr || angle < best_angle) {
            best = &ils;
            best_angle = angle;
        }
    }
    return best;
}

} // namespace quilmark
