// Great-circle routines on a unit sphere, distances as central angles, one nautical mile
// one minute of arc. pi is the 15-digit constant everywhere, and every factor below is
// derived from it once, so that the program's numbers agree to the last bit.
#pragma once

#include <cstdint>

#include "geo/magnetic_variation.h"

namespace quilmark {

constexpr double Pi = 3.14159265358979;
constexpr double Two_Pi = 6.28318530717958;
constexpr double Degrees_To_Radians = Pi / 180;
constexpr double Radians_To_Degrees = 180 / Pi;
constexpr double Nautical_Miles_To_Radians = Pi / 10800;
constexpr double Radians_To_Nautical_Miles = 10800 / Pi;
constexpr double Metres_Per_Nautical_Mile = 1852;

// A position, degrees, north and east positive.
struct Geo_Point_Rec {
    double lat = 0;
    double lon = 0;
    bool operator==(const Geo_Point_Rec&) const = default;
};

// Arc sine and arc cosine that give 0 for an argument outside -1..1.
double Asin(double x);
double Acos(double x);
// a - b * floor(a / b), lifted by b when below 0.
double Fmod(double a, double b);

// Position reached from lat, lon on a course (true degrees). Results are rounded to 6
// decimals (Project_Point) or 5 decimals (the other two).
Geo_Point_Rec Project_Point(double lat, double lon, int16_t course, double distance_metres);
Geo_Point_Rec Great_Circle_Destination(double lat, double lon, int16_t course, int16_t distance_nm);
Geo_Point_Rec Destination_Feet(double lat, double lon, int16_t course, int16_t distance_ft);

// A reference point from which many short offsets along the four cardinal courses are
// projected, as the taxi points and parking spots of an airport are: the sines and
// cosines that every projection from it shares are taken once. Each coordinate comes out
// exactly, to the last bit, as that coordinate of Project_Point from the reference on
// course 0 or 180 (north, south) or 90 or 270 (east, west) over the offset's length; an
// offset of 0 (or not a number) gives the reference's own coordinate.
struct Offset_Frame_Rec {
    double lat = 0;
    double lon = 0;
    double sin_phi1 = 0; // of the reference latitude
    double cos_phi1 = 0;
    double lambda1 = 0;        // the reference longitude in radians, positive to the west
    double sin_course[4] = {}; // courses 0, 90, 180, 270
    double cos_course[4] = {};
};
Offset_Frame_Rec Make_Offset_Frame(double lat, double lon);
double Offset_Latitude(const Offset_Frame_Rec& frame, double north_metres);
double Offset_Longitude(const Offset_Frame_Rec& frame, double east_metres);

// Central angle between two points, radians.
double Central_Angle(double lat1, double lon1, double lat2, double lon2);
int16_t Great_Circle_Distance(double lat1, double lon1, double lat2, double lon2);
int16_t Distance_Feet(double lat1, double lon1, double lat2, double lon2);
// Bearing from the first point to the second as a whole magnetic heading, with the
// variation taken at the first point.
int16_t Great_Circle_Bearing(const Magvar_Grid& grid, double lat1, double lon1, double lat2,
                             double lon2);

} // namespace quilmark
