#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "geo/geodesy.h"

namespace quilmark {
namespace {

uint64_t Bits(double v) {
    uint64_t b;
    std::memcpy(&b, &v, sizeof b);
    return b;
}

// The frame must give each coordinate exactly as a full projection on the matching
// course: the database stores these doubles, so one differing bit changes its bytes.
void Expect_Same_As_Projection(double lat, double lon, float east, float north) {
    const Offset_Frame_Rec frame = Make_Offset_Frame(lat, lon);
    double want_lat = lat;
    double want_lon = lon;
    if (north != 0 && north == north) {
        want_lat = Project_Point(lat, lon, north > 0 ? 0 : 180, north).lat;
    }
    if (east != 0 && east == east) {
        want_lon = Project_Point(lat, lon, east > 0 ? 90 : 270, east).lon;
    }
    EXPECT_EQ(Bits(Offset_Latitude(frame, north)), Bits(want_lat))
        << lat << " " << lon << " north " << north;
    EXPECT_EQ(Bits(Offset_Longitude(frame, east)), Bits(want_lon))
        << lat << " " << lon << " east " << east;
}

TEST(OffsetFrame, EachCoordinateIsBitIdenticalToTheFullProjection) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const double edges[][4] = {
        {0, 0, 0, 0},         {90, 180, 500, -500},     {-90, -180, -1, 1},
        {89.9999, 0, 2e7, 0}, {47.4, -122.3, nan, nan}, {-33.9, 151.2, 1e-6, -1e-6}};
    for (const auto& e : edges) {
        Expect_Same_As_Projection(e[0], e[1], static_cast<float>(e[2]), static_cast<float>(e[3]));
    }
    std::mt19937_64 random(19);
    std::uniform_real_distribution<double> lat(-90, 90);
    std::uniform_real_distribution<double> lon(-180, 180);
    std::uniform_real_distribution<float> metres(-5000, 5000);
    for (int i = 0; i < 20000; ++i) {
        Expect_Same_As_Projection(lat(random), lon(random), metres(random), metres(random));
    }
}

} // namespace
} // namespace quilmark
