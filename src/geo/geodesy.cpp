#include "geo/geodesy.h"

#include <cmath>

#include "geo/magnetic_variation.h"
#include "platform/rounding.h"

namespace quilmark {

double Asin(double x) {
    if (x < -1 || x > 1) {
        return 0;
    }
    return 2 * std::atan(x / (1 + std::sqrt(1 - x * x)));
}

double Acos(double x) {
    if (x < -1 || x > 1) {
        return 0;
    }
    if (x >= 0) {
        return 2 * std::atan(std::sqrt((1 - x) / (1 + x)));
    }
    return Pi - 2 * std::atan(std::sqrt((1 + x) / (1 - x)));
}

double Fmod(double a, double b) {
    double r = a - b * std::floor(a / b);
    if (r < 0) {
        r += b;
    }
    return r;
}

namespace {

// The pieces of the destination formula, shared by the single projections and by the
// offset frame, so that both take the same operations in the same order.
double Destination_Phi2(double sin_delta, double cos_delta, double sin_phi1, double cos_phi1,
                        double cos_tc) {
    return Asin(sin_delta * cos_phi1 * cos_tc + cos_delta * sin_phi1);
}

// Longitude reached, in radians positive to the west.
double Destination_Lambda2(double lambda1, double phi2, double sin_tc, double sin_delta) {
    if (std::cos(phi2) == 0) {
        return lambda1;
    }
    return Fmod(lambda1 - Asin(sin_tc * sin_delta / std::cos(phi2)) + Pi, Two_Pi) - Pi;
}

// The routine works with longitudes positive to the west.
Geo_Point_Rec Destination(double lat, double lon, int16_t course, double distance_nm,
                          int decimals) {
    double phi1 = lat * Degrees_To_Radians;
    double lambda1 = -lon * Degrees_To_Radians;
    double tc = course * Degrees_To_Radians;
    double delta = distance_nm * Nautical_Miles_To_Radians;
    double phi2 = Destination_Phi2(std::sin(delta), std::cos(delta), std::sin(phi1), std::cos(phi1),
                                   std::cos(tc));
    double lambda2 = Destination_Lambda2(lambda1, phi2, std::sin(tc), std::sin(delta));
    Geo_Point_Rec result;
    result.lat = Round_Decimals(phi2 * Radians_To_Degrees, decimals);
    result.lon = Round_Decimals(-lambda2 * Radians_To_Degrees, decimals);
    return result;
}

double Metres_To_Radians(double distance_metres) {
    return std::fabs(distance_metres) / Metres_Per_Nautical_Mile * Nautical_Miles_To_Radians;
}

} // namespace

Offset_Frame_Rec Make_Offset_Frame(double lat, double lon) {
    Offset_Frame_Rec frame;
    frame.lat = lat;
    frame.lon = lon;
    const double phi1 = lat * Degrees_To_Radians;
    frame.sin_phi1 = std::sin(phi1);
    frame.cos_phi1 = std::cos(phi1);
    frame.lambda1 = -lon * Degrees_To_Radians;
    const int16_t courses[4] = {0, 90, 180, 270};
    for (int i = 0; i < 4; ++i) {
        const double tc = courses[i] * Degrees_To_Radians;
        frame.sin_course[i] = std::sin(tc);
        frame.cos_course[i] = std::cos(tc);
    }
    return frame;
}

double Offset_Latitude(const Offset_Frame_Rec& frame, double north_metres) {
    if (!(north_metres > 0) && !(north_metres < 0)) {
        return frame.lat;
    }
    const int course = north_metres > 0 ? 0 : 2;
    const double delta = Metres_To_Radians(north_metres);
    const double phi2 = Destination_Phi2(std::sin(delta), std::cos(delta), frame.sin_phi1,
                                         frame.cos_phi1, frame.cos_course[course]);
    return Round_Decimals(phi2 * Radians_To_Degrees, 6);
}

double Offset_Longitude(const Offset_Frame_Rec& frame, double east_metres) {
    if (!(east_metres > 0) && !(east_metres < 0)) {
        return frame.lon;
    }
    const int course = east_metres > 0 ? 1 : 3;
    const double delta = Metres_To_Radians(east_metres);
    const double sin_delta = std::sin(delta);
    const double phi2 = Destination_Phi2(sin_delta, std::cos(delta), frame.sin_phi1, frame.cos_phi1,
                                         frame.cos_course[course]);
    const double lambda2 =
        Destination_Lambda2(frame.lambda1, phi2, frame.sin_course[course], sin_delta);
    return Round_Decimals(-lambda2 * Radians_To_Degrees, 6);
}

Geo_Point_Rec Project_Point(double lat, double lon, int16_t course, double distance_metres) {
    return Destination(lat, lon, course, std::fabs(distance_metres) / Metres_Per_Nautical_Mile, 6);
}

Geo_Point_Rec Great_Circle_Destination(double lat, double lon, int16_t course,
                                       int16_t distance_nm) {
    double nm = distance_nm < 0 ? 0.0 : static_cast<double>(distance_nm);
    return Destination(lat, lon, course, nm, 5);
}

Geo_Point_Rec Destination_Feet(double lat, double lon, int16_t course, int16_t distance_ft) {
    double nm = distance_ft < 0 ? 0.0 : distance_ft / 6080.0;
    return Destination(lat, lon, course, nm, 5);
}

double Central_Angle(double lat1, double lon1, double lat2, double lon2) {
    double la1 = lat1 * Degrees_To_Radians;
    double lo1 = lon1 * Degrees_To_Radians;
    double la2 = lat2 * Degrees_To_Radians;
    double lo2 = lon2 * Degrees_To_Radians;
    if (std::trunc(la1 - la2) == 0 && std::trunc(lo2 - lo1) == 0) {
        // Haversine: accurate for short distances.
        double s_lat = std::sin((la1 - la2) / 2);
        double s_lon = std::sin((lo1 - lo2) / 2);
        double a = s_lat * s_lat + std::cos(la1) * std::cos(la2) * s_lon * s_lon;
        return 2 * Asin(std::sqrt(a));
    }
    return Acos(std::sin(la1) * std::sin(la2) +
                std::cos(la1) * std::cos(la2) * std::cos(lo1 - lo2));
}

int16_t Great_Circle_Distance(double lat1, double lon1, double lat2, double lon2) {
    return To_I16(Central_Angle(lat1, lon1, lat2, lon2) * Radians_To_Nautical_Miles);
}

int16_t Distance_Feet(double lat1, double lon1, double lat2, double lon2) {
    double nm =
        Round_Decimals(Central_Angle(lat1, lon1, lat2, lon2) * Radians_To_Nautical_Miles, 5);
    // 6080 feet to the nautical mile, the chart's round figure.
    double feet = Round_Decimals(nm * 6080, 5);
    if (feet > 32767) {
        feet = 32767;
    }
    return To_I16(feet);
}

int16_t Great_Circle_Bearing(const Magvar_Grid& grid, double lat1, double lon1, double lat2,
                             double lon2) {
    double d = Central_Angle(lat1, lon1, lat2, lon2);
    double la1 = lat1 * Degrees_To_Radians;
    double la2 = lat2 * Degrees_To_Radians;
    double dlon = lon2 * Degrees_To_Radians - lon1 * Degrees_To_Radians;
    double crs = 0;
    if (d != 0) {
        double c =
            Acos((std::sin(la2) - std::cos(d) * std::sin(la1)) / (std::cos(la1) * std::sin(d)));
        crs = std::sin(dlon) < 0 ? c : Two_Pi - c;
    }
    // crs runs counter-clockwise; the clockwise bearing has its fraction rounded upwards.
    double r = 360 - std::floor(crs * 180 / Pi);
    int16_t bearing = Normalize_Degrees(To_I16(r));
    return True_To_Magnetic(grid, bearing, lat1, lon1);
}

} // namespace quilmark
