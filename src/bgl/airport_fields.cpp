#include "bgl/airport_fields.h"

#include <cmath>

#include "geo/geodesy.h"

namespace quilmark {

namespace {

constexpr double Earth_Circumference_M = 40007000;

double Fold_Longitude(double lon) {
    if (lon > 180) {
        lon -= 360;
    }
    if (lon < -180) {
        lon += 360;
    }
    return lon;
}

} // namespace

Runway_Ends_Rec Drawn_Runway_Ends(double lat, double lon, double true_heading, double length_m) {
    if (length_m > 300) {
        length_m -= 60;
    }
    const double dy = std::cos(Degrees_To_Radians * true_heading) * length_m;
    const double dx = std::sin(Degrees_To_Radians * true_heading) * length_m;
    const double half_lat = (360 * dy * 0.5) / Earth_Circumference_M;
    const double half_lon =
        (360 * dx * 0.5) / (std::cos(Degrees_To_Radians * lat) * Earth_Circumference_M);
    return {lat - half_lat, Fold_Longitude(lon - half_lon), lat + half_lat,
            Fold_Longitude(lon + half_lon)};
}

std::string Airport_Rec::*Frequency_Field(int32_t kind) {
    switch (kind) {
    case 1:
        return &Airport_Rec::atis_freq;
    case 5:
        return &Airport_Rec::ground_freq;
    case 6:
        return &Airport_Rec::tower_freq;
    case 7:
        return &Airport_Rec::clearance_freq;
    case 8:
        return &Airport_Rec::approach_freq;
    case 9:
        return &Airport_Rec::departure_freq;
    case 10:
        return &Airport_Rec::center_freq;
    default:
        return nullptr;
    }
}

} // namespace quilmark
