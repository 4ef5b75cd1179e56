#include <charconv>
#include <cstdio>
#include <string>
#include <unordered_map>
#include <vector>

#include "bgl/airport_stream.h"
#include "geo/geodesy.h"
#include "platform/rounding.h"
#include "platform/text1252.h"
#include "state/airport_model.h"

namespace quilmark {

namespace {

// Element sizes tell what a list of the taxiway block holds.
constexpr int32_t Element_Point = 12;
constexpr int32_t Element_Parking = 20;
constexpr int32_t Element_Path = 32;
constexpr int32_t Element_Name = 8;

// Largest list a count field can hold: the counts are 16-bit.
constexpr int32_t Max_List_Count = 32767;

const char* Parking_Name_Text(int64_t code) {
    static const char* const Names[] = {
        nullptr,     "Parking",    "N Parking", "NE Parking", "E Parking", "SE Parking",
        "S Parking", "SW Parking", "W Parking", "NW Parking", "Gate",      "Dock",
        "Gate A",    "Gate B",     "Gate C",    "Gate D",     "Gate E",    "Gate F",
        "Gate G",    "Gate H",     "Gate I",    "Gate J",     "Gate K",    "Gate L",
        "Gate M",    "Gate N",     "Gate O",    "Gate P",     "Gate Q",    "Gate R",
        "Gate S",    "Gate T",     "Gate U",    "Gate V",     "Gate W",    "Gate X",
        "Gate Y",    "Gate Z"};
    if (code < 1 || code > 37) {
        return nullptr;
    }
    return Names[code];
}

// Metre offsets east (x) and north (y) of the airport's reference point become a
// position; each axis is projected on its own, and an offset of 0 keeps the reference's
// full precision.
Geo_Point_Rec Offset_Position(const Offset_Frame_Rec& frame, float x, float y) {
    return {Offset_Latitude(frame, y), Offset_Longitude(frame, x)};
}

float Float_At(const Bgl_Image& image, int64_t position) {
    return Read_Float(Read_Int32(image, position));
}

// The parking code word, as eight hexadecimal digits: digits 1-2 unused, digit 3 the
// spot's type, digits 4-8 a value V = 128 * number + name code.
void Decode_Spot_Name(Airport_Walk_State& state, int32_t code_word, Parking_Rec& spot) {
    const int64_t v = static_cast<uint32_t>(code_word) & 0xFFFFFu;
    const int64_t number = static_cast<int64_t>(Round_Half_Even(static_cast<double>(v) / 128));
    const int64_t name_code = v - 128 * number;
    if (const char* text = Parking_Name_Text(name_code)) {
        state.spot_text = text;
    }
    spot.spot_name = Upper_1252(state.spot_text) + " " + std::to_string(number);
}

// Taxiway segments carry the decimal text of their name index until the name list comes:
// then, for each name i in order, every taxiway segment labelled with the text of i takes
// the name. A label replaced earlier is compared again in the later rounds, so the
// segments are kept in buckets by their current label and a bucket moves as a whole.
void Resolve_Labels(const Bgl_Image& image, int64_t names, int32_t count, Airport_Rec& airport) {
    if (!airport.taxi_paths.allocated) {
        return;
    }
    std::unordered_map<std::string, std::vector<size_t>> buckets;
    for (size_t i = 0; i < static_cast<size_t>(airport.taxi_path_count); ++i) {
        const Taxi_Path_Rec& path = airport.taxi_paths[i];
        if (path.path_kind == Path_Taxiway) {
            buckets[path.path_label].push_back(i);
        }
    }
    for (int32_t i = 0; i < count; ++i) {
        std::string name = Read_Text(image, names + 8LL * i, Element_Name);
        std::string key = std::to_string(i);
        if (name == key) {
            continue;
        }
        auto from = buckets.find(key);
        if (from == buckets.end() || from->second.empty()) {
            continue;
        }
        std::vector<size_t> moving = std::move(from->second);
        buckets.erase(from);
        std::vector<size_t>& to = buckets[name];
        if (to.size() < moving.size()) {
            to.swap(moving);
        }
        to.insert(to.end(), moving.begin(), moving.end());
    }
    for (auto& [label, members] : buckets) {
        for (size_t i : members) {
            airport.taxi_paths[i].path_label = label;
        }
    }
    // Runway segments name the runway by its index: "Runway 27L".
    for (size_t i = 0; i < static_cast<size_t>(airport.taxi_path_count); ++i) {
        Taxi_Path_Rec& path = airport.taxi_paths[i];
        if (path.path_kind != Path_Runway) {
            continue;
        }
        long long k = -1;
        const char* begin = path.path_label.data();
        const char* end = begin + path.path_label.size();
        auto parsed = std::from_chars(begin, end, k);
        if (parsed.ec != std::errc{} || parsed.ptr != end) {
            continue; // not an index: a label resolved by an earlier name list
        }
        if (k >= 0 && static_cast<size_t>(k) < airport.runways.Slot_Count()) {
            path.path_label = "Runway " + airport.runways[static_cast<size_t>(k)].end1_name;
        }
    }
}

} // namespace

void Decode_Taxiway_Block(Airport_Walk_State& state, int64_t rec, Airport_Rec& airport) {
    Bgl_Image& image = state.image;
    const int64_t file_length = Bgl_File_Length(image);
    const Offset_Frame_Rec frame =
        Make_Offset_Frame(state.position_ref_lat, state.position_ref_lon);
    int64_t list = rec + 8;
    for (;;) {
        const int32_t n = Read_Int32(image, list);
        const int32_t element_size = Read_Int32(image, list + 4);
        const int64_t first = list + 8;
        if (element_size != Element_Point && element_size != Element_Parking &&
            element_size != Element_Path && element_size != Element_Name) {
            return; // a list of another size ends the block
        }
        // A count the 16-bit fields cannot hold, or a list that runs past the end of the
        // file, ends the block as well: its elements cannot be real.
        const int64_t bytes = static_cast<int64_t>(n) * element_size;
        if (n < 0 || n > Max_List_Count || first + bytes > file_length) {
            return;
        }
        if (!Charge_Walk(image, bytes + 8)) {
            return;
        }
        const auto count = static_cast<size_t>(n);
        switch (element_size) {
        case Element_Point:
            airport.taxi_points.Allocate(count);
            airport.taxi_point_count = n;
            for (size_t i = 0; i < count; ++i) {
                const int64_t e = first + 12 * static_cast<int64_t>(i);
                Taxi_Point_Rec& point = airport.taxi_points[i];
                point.point_kind = Read_Int32(image, e);
                Geo_Point_Rec p =
                    Offset_Position(frame, Float_At(image, e + 4), Float_At(image, e + 8));
                point.lat = p.lat;
                point.lon = p.lon;
            }
            break;
        case Element_Parking:
            airport.parkings.Allocate(count);
            airport.parking_count = n;
            for (size_t i = 0; i < count; ++i) {
                const int64_t e = first + 20 * static_cast<int64_t>(i);
                Parking_Rec& spot = airport.parkings[i];
                Geo_Point_Rec p =
                    Offset_Position(frame, Float_At(image, e), Float_At(image, e + 4));
                spot.lat = p.lat;
                spot.lon = p.lon;
                spot.radius_ft = To_I32(static_cast<double>(Float_At(image, e + 8)) / 0.3048);
                Decode_Spot_Name(state, Read_Int32(image, e + 16), spot);
            }
            break;
        case Element_Path:
            airport.taxi_paths.Allocate(count);
            airport.taxi_path_count = n;
            for (size_t i = 0; i < count; ++i) {
                const int64_t e = first + 32 * static_cast<int64_t>(i);
                Taxi_Path_Rec& path = airport.taxi_paths[i];
                path.path_kind = Read_Int32(image, e);
                path.start_point = Read_Int32(image, e + 12);
                path.end_point = Read_Int32(image, e + 16);
                path.path_label = std::to_string(Read_Int32(image, e + 28));
            }
            break;
        case Element_Name:
            Resolve_Labels(image, first, n, airport);
            return; // the name list ends the block
        }
        list = first + bytes;
    }
}

} // namespace quilmark
