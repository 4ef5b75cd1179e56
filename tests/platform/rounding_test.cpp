#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "platform/rounding.h"

namespace quilmark {

TEST(RoundHalfEven, WholeNumbersGoToTheEvenNeighbourOnlyOnExactHalves) {
    const struct {
        double in, out;
    } cases[] = {{0.5, 0},   {1.5, 2},    {2.5, 2},    {-0.5, -0},    {-1.5, -2},
                 {-2.5, -2}, {2.4999, 2}, {2.5001, 3}, {1e300, 1e300}};
    for (const auto& c : cases) {
        EXPECT_EQ(Round_Half_Even(c.in), c.out) << c.in;
    }
}

TEST(RoundDecimals, DecidesTiesOnTheExactBinaryValue) {
    const struct {
        double in;
        int decimals;
        double out;
    } cases[] = {
        {0.125, 2, 0.12},          // exactly representable tie: to even
        {0.375, 2, 0.38},          // tie, odd below
        {2.675, 2, 2.67},          // really 2.67499999..., not a tie
        {1.005, 2, 1.0},           // really 1.00499999...
        {1.015, 2, 1.01},          // really 1.01499999999999990230...
        {-0.125, 2, -0.12},        // symmetric
        {47.4489849, 4, 47.449},   // plain rounding
        {122.309305, 5, 122.3093}, // really 122.30930499999999483...
        {0.5, 0, 0},
        {123456.1234565, 6, 123456.123457}, // really 123456.12345650000497...
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Round_Decimals(c.in, c.decimals), c.out) << c.in << " at " << c.decimals;
    }
}

TEST(RoundDecimals, AgreesWithTheCLibrarysExactFormattingOnManyValues) {
    // glibc's printf rounds the exact binary value, ties to even.
    uint64_t state = 12345;
    for (int i = 0; i < 20000; ++i) {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        double x = static_cast<double>(state >> 11) / 9007199254740992.0 * 360.0 - 180.0;
        if (i % 3 == 0) {
            x = std::round(x * 1e5) / 1e5 + 5e-7; // near ties at 6 decimals
        }
        for (int d : {4, 5, 6}) {
            char text[64];
            std::snprintf(text, sizeof text, "%.*f", d, x);
            ASSERT_EQ(Round_Decimals(x, d), std::strtod(text, nullptr)) << x << " at " << d;
        }
    }
}

TEST(IntegerConversions, RoundHalfEvenAndSaturate) {
    EXPECT_EQ(To_I16(2.5), 2);
    EXPECT_EQ(To_I16(3.5), 4);
    EXPECT_EQ(To_I16(-2.5), -2);
    EXPECT_EQ(To_I16(40000.0), 32767);
    EXPECT_EQ(To_I16(-40000.0), -32768);
    EXPECT_EQ(To_I16(std::nan("")), 0);
    EXPECT_EQ(To_I32(1e12), 2147483647);
    EXPECT_EQ(To_I32(-1e12), -2147483647 - 1);
    EXPECT_EQ(To_I32(1442.5), 1442);
    EXPECT_EQ(Clamp_I16(-32769), -32768);
}

} // namespace quilmark
