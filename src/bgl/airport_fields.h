// What the airport decoders of both simulators share: where a runway's drawn ends lie, and
// which field of Airport_Rec a frequency of each kind fills.
#pragma once

#include <cstdint>
#include <string>

#include "state/airport_model.h"

namespace quilmark {

struct Runway_Ends_Rec {
    double end1_lat = 0;
    double end1_lon = 0;
    double end2_lat = 0;
    double end2_lon = 0;
};

// The ends of a runway as the chart draws it, from its centre, the true heading of its
// primary end and its length: a runway over 300 m stops 30 m short at either end, the
// primary end lies half the length behind the centre against the heading and the other
// end half the length ahead, on a sphere of 40,007 km. Longitudes are folded once into
// -180..180.
Runway_Ends_Rec Drawn_Runway_Ends(double lat, double lon, double true_heading, double length_m);

// The field that a frequency of a kind fills: 1 ATIS, 5 ground, 6 tower, 7 clearance,
// 8 approach, 9 departure, 10 centre. Both formats number their kinds so; any other kind
// (multicom, unicom, CTAF, FSS, AWOS, ASOS) has none.
std::string Airport_Rec::*Frequency_Field(int32_t kind);

} // namespace quilmark
