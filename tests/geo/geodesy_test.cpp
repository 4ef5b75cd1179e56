#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "geo/geodesy.h"

namespace quilmark {

TEST(Geodesy, ArcFunctionsGiveZeroOutsideTheirDomain) {
    const double above = std::nextafter(1.0, 2.0);
    const double below = std::nextafter(-1.0, -2.0);
    EXPECT_EQ(Asin(above), 0);
    EXPECT_EQ(Asin(below), 0);
    EXPECT_EQ(Acos(above), 0);
    EXPECT_EQ(Acos(below), 0);
    EXPECT_EQ(Acos(1), 0);
    EXPECT_EQ(Acos(-1), Pi);
    EXPECT_NEAR(Asin(0.5), std::asin(0.5), 1e-15);
    EXPECT_NEAR(Acos(-0.5), std::acos(-0.5), 1e-14);
    EXPECT_EQ(Fmod(-1, 360), 359);
    EXPECT_EQ(Fmod(725, 360), 5);
}

TEST(Geodesy, BearingsRoundTheirFractionUpwards) {
    auto grid = std::make_unique<Magvar_Grid>();
    EXPECT_EQ(Great_Circle_Bearing(*grid, 10, 10, 10, 11), 90);  // exact course 89.9
    EXPECT_EQ(Great_Circle_Bearing(*grid, 10, 11, 10, 10), 271); // 270.1
    EXPECT_EQ(Great_Circle_Bearing(*grid, 10, 10, 11, 10), 0);   // due north
    EXPECT_EQ(Great_Circle_Bearing(*grid, 10, 10, 9, 10), 180);  // due south
    // Due south again, but the arc cosine's argument comes out a rounding step below -1,
    // which the arc cosine takes as 0: the course comes out as north.
    EXPECT_EQ(Great_Circle_Bearing(*grid, 11, 10, 10, 10), 0);
    EXPECT_EQ(Great_Circle_Bearing(*grid, 10, 10, 10, 10), 360); // equal points
    // The variation is taken at the first point.
    (*grid)[static_cast<size_t>(181 * 10 + 90 + 10)] = 1821; // 10 degrees east
    EXPECT_EQ(Great_Circle_Bearing(*grid, 10, 10, 10, 11), 80);
    EXPECT_EQ(Great_Circle_Bearing(*grid, 10, 10, 10, 10), 350);
}

TEST(Geodesy, DestinationsAndDistances) {
    // Distance signs: Project_Point drops it, the others stay on the spot.
    EXPECT_EQ(Project_Point(45, 10, 0, -1852), Project_Point(45, 10, 0, 1852));
    EXPECT_EQ(Project_Point(45, 10, 0, 1852).lat, 45.016667);
    EXPECT_EQ(Great_Circle_Destination(45, 10, 90, -5), (Geo_Point_Rec{45, 10}));
    EXPECT_EQ(Destination_Feet(45.123456, 10.654321, 90, -100),
              (Geo_Point_Rec{45.12346, 10.65432}));
    Geo_Point_Rec east = Great_Circle_Destination(0, 179.9, 90, 60); // one degree on the equator
    EXPECT_EQ(east.lat, 0);
    EXPECT_EQ(east.lon, -179.1); // across the antimeridian, back in range
    EXPECT_EQ(Great_Circle_Distance(0, 0, 0, 1), 60);
    EXPECT_EQ(Great_Circle_Distance(0, 0, 0, 90), 5400); // the spherical-law branch
    EXPECT_EQ(Great_Circle_Distance(0, 0, 90, 0), 5400);
    EXPECT_EQ(Distance_Feet(0, 0, 0, 1.0 / 60), 6080); // feet of the chart's nautical mile
    EXPECT_EQ(Distance_Feet(0, 0, 0, 1), 32767);       // capped
}

} // namespace quilmark
