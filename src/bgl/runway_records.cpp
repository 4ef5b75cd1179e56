#include <cmath>

#include "bgl/airport_fields.h"
#include "bgl/airport_stream.h"
#include "geo/magnetic_variation.h"
#include "platform/rounding.h"
#include "state/airport_model.h"

namespace quilmark {

namespace {

// Suffixes of the designator codes 0 to 4, as seen from the primary end; the reciprocal
// end swaps left and right.
constexpr const char* Primary_Suffix[] = {"", "L", "R", "C", "H"};
constexpr const char* Reciprocal_Suffix[] = {"", "R", "L", "C", "H"};

struct Runway_Geometry {
    double heading_1 = 0; // true heading of the primary end
    double heading_2 = 0; // of the reciprocal end: heading_1 - 180
    Runway_Ends_Rec ends;
};

void Decode_ILS(Airport_Walk_State& state, int64_t rec, const Runway_Geometry& runway,
                Airport_Rec& airport) {
    const Bgl_Image& image = state.image;
    double lat = Decode_Latitude(Read_Int32(image, rec + 12));
    double lon = Decode_Longitude(Read_Int32(image, rec + 20));
    double true_heading = (Read_Int32(image, rec + 32) / 65536.0) * 360 / 65536;
    int16_t whole_heading = To_I16(true_heading);
    int32_t size = Read_Int32(image, rec + 4);

    ILS_Rec& ils = Append(airport.ils, airport.ils_count);
    ils.ils_name = Read_Text(image, rec + 56, Clamp_I16(static_cast<int64_t>(size) + 8 - 56));
    ils.lat = lat;
    ils.lon = lon;
    ils.frequency = Frequency_Text(Decode_Frequency(Read_Int32(image, rec + 36)));
    // The magnetic heading is taken at the record's own position, before the seating.
    ils.mag_heading = True_To_Magnetic(state.grid, whole_heading, lat, lon);
    // No field links an ILS to its runway: it sits on the end whose heading it shares.
    if (whole_heading == To_I16(runway.heading_1)) {
        ils.lat = runway.ends.end1_lat;
        ils.lon = runway.ends.end1_lon;
    }
    if (whole_heading == To_I16(runway.heading_2)) {
        ils.lat = runway.ends.end2_lat;
        ils.lon = runway.ends.end2_lon;
    }
}

} // namespace

int64_t Decode_Runway_And_Navaids(Airport_Walk_State& state, int64_t rec, Airport_Rec& airport) {
    Bgl_Image& image = state.image;
    const double lat_c = Decode_Latitude(Read_Int32(image, rec + 12));
    const double lon_c = Decode_Longitude(Read_Int32(image, rec + 20));
    const int32_t elevation = Read_Int32(image, rec + 28);
    const double altitude = elevation / 0.3048;
    const double a = Read_Int32(image, rec + 32) / 65536.0;
    const int32_t length_raw = Read_Int32(image, rec + 40);
    const int32_t width_raw = Read_Int32(image, rec + 44);
    const int32_t code = Read_Int32(image, rec + 48);
    const int32_t number = Read_Int32(image, rec + 52);

    Runway_Geometry g;
    g.heading_1 = 360 * a / 65536;
    g.heading_2 = 360 * (a - 32768) / 65536;
    g.ends = Drawn_Runway_Ends(lat_c, lon_c, g.heading_1, length_raw * 0.3048);

    // Designators. A number of 37 or more, or an unknown code, keeps the texts of the
    // runway before.
    if (number < 37) {
        int32_t reciprocal = number + 18;
        if (reciprocal > 36) {
            reciprocal -= 36;
        }
        if (code >= 0 && code <= 4) {
            state.end1_text = std::to_string(number) + Primary_Suffix[code];
            state.end2_text = std::to_string(reciprocal) + Reciprocal_Suffix[code];
        }
    }

    Runway_Rec& runway = Append(airport.runways, airport.runway_count);
    runway.end1_name = state.end1_text;
    runway.end2_name = state.end2_text;
    runway.end1_lat = g.ends.end1_lat;
    runway.end1_lon = g.ends.end1_lon;
    runway.end2_lat = g.ends.end2_lat;
    runway.end2_lon = g.ends.end2_lon;
    runway.altitude_ft = To_I32(altitude);
    runway.end1_heading =
        True_To_Magnetic(state.grid, g.heading_1, runway.end1_lat, runway.end1_lon);
    runway.end2_heading =
        True_To_Magnetic(state.grid, g.heading_2, runway.end2_lat, runway.end2_lon);
    runway.length_raw = length_raw;
    runway.width_raw = width_raw;

    // The ILS of this runway stand directly behind it as navaid records.
    int64_t offset = static_cast<int64_t>(Read_Int32(image, rec + 4)) + 8;
    for (;;) {
        const int64_t nav = rec + offset;
        if (Read_Int32(image, nav) != Record_Navaid) {
            return offset; // the stream walk reads this record again
        }
        const int64_t length = static_cast<int64_t>(Read_Int32(image, nav + 4)) + 8;
        if (!Take_Record_Step(image, nav, length)) {
            return -1;
        }
        if (Read_Int32(image, nav + 40) == Navaid_Kind_ILS) {
            Decode_ILS(state, nav, g, airport);
        }
        offset += length;
    }
}

} // namespace quilmark
