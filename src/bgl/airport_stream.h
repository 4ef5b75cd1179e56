// Shared pieces of the airport record stream decoders (reference point, name, comm,
// runways with their ILS, taxiway block). Internal to the BGL decoders.
#pragma once

#include <cstdint>
#include <string>

#include "bgl/bgl_image.h"
#include "geo/magnetic_variation.h"

namespace quilmark {

struct Airport_Rec;

// Record types of an airport's stream.
constexpr int32_t Record_Reference_Point = 0x10001;
constexpr int32_t Record_Runway = 0x10002;
constexpr int32_t Record_Unused_3 = 0x10003;
constexpr int32_t Record_Navaid = 0x10004;
constexpr int32_t Record_Unused_5 = 0x10005;
constexpr int32_t Record_Name = 0x10006;
constexpr int32_t Record_Taxiway_Block = 0x11001;
constexpr int32_t Record_Comm = 0x20001;

constexpr int32_t Navaid_Kind_ILS = 4;

// Values that outlive one record within the decoding of one airport.
struct Airport_Walk_State {
    Bgl_Image& image;
    const Magvar_Grid& grid;
    double position_ref_lat = 0;
    double position_ref_lon = 0;
    std::string end1_text; // last runway designators
    std::string end2_text;
    std::string spot_text; // last parking name
};

// Decodes the runway record at rec and the navaid records directly behind it. Returns the
// offset from rec at which the stream goes on, or -1 if the walk has to end here.
int64_t Decode_Runway_And_Navaids(Airport_Walk_State& state, int64_t rec, Airport_Rec& airport);

// Decodes the taxiway block record at rec (its lists of points, parking spots, paths
// and names).
void Decode_Taxiway_Block(Airport_Walk_State& state, int64_t rec, Airport_Rec& airport);

} // namespace quilmark
