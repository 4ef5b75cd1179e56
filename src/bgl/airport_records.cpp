#include "bgl/airport_fields.h"
#include "bgl/airport_stream.h"
#include "bgl/airport_walker.h"
#include "platform/rounding.h"
#include "platform/text1252.h"

namespace quilmark {

namespace {

bool Is_Stream_Record(int32_t type) {
    switch (type) {
    case Record_Reference_Point:
    case Record_Runway:
    case Record_Unused_3:
    case Record_Navaid:
    case Record_Unused_5:
    case Record_Name:
    case Record_Taxiway_Block:
    case Record_Comm:
        return true;
    default:
        return false;
    }
}

} // namespace

void Read_Airport_Records(Bgl_Image& image, const Magvar_Grid& grid, int64_t block_position,
                          Airport_Rec& airport) {
    Airport_Walk_State state{image, grid, 0, 0, {}, {}, {}};
    int64_t offset = 0;
    for (;;) {
        const int64_t rec = block_position + 16 + offset;
        const int32_t type = Read_Int32(image, rec);
        if (!Is_Stream_Record(type)) {
            return; // the first record outside the table ends the stream
        }
        const int32_t size = Read_Int32(image, rec + 4);
        const int64_t length = static_cast<int64_t>(size) + 8;
        if (!Take_Record_Step(image, rec, length)) {
            return;
        }
        switch (type) {
        case Record_Reference_Point:
            airport.lat = Decode_Latitude(Read_Int32(image, rec + 12));
            airport.lon = Decode_Reference_Longitude(Read_Int32(image, rec + 20));
            state.position_ref_lat = airport.lat;
            state.position_ref_lon = airport.lon;
            break;
        case Record_Runway: {
            int64_t next = Decode_Runway_And_Navaids(state, rec, airport);
            if (next < 0) {
                return;
            }
            offset += next;
            continue;
        }
        case Record_Name:
            airport.name = Upper_1252(Read_Text(image, rec + 8, Clamp_I16(size)));
            break;
        case Record_Taxiway_Block:
            Decode_Taxiway_Block(state, rec, airport);
            break;
        case Record_Comm: {
            std::string Airport_Rec::*field = Frequency_Field(Read_Int32(image, rec + 12));
            if (field != nullptr && (airport.*field).empty()) {
                airport.*field = Frequency_Text(Decode_Frequency(Read_Int32(image, rec + 8)));
            }
            break;
        }
        default:
            break; // records stepped over by their size
        }
        offset += length;
    }
}

} // namespace quilmark
