#include <gtest/gtest.h>

#include "bgl/geodesy.h"
#include "chart/aircraft_overlay.h"
#include "chart_test_support.h"

TEST(Altimeter, ValueByUnitsAndItsShortestText) {
    struct Case {
        uint16_t raw;
        uint8_t units;
        double value;
        const char* text;
    };
    const Case cases[] = {
        {16212, 0, 1013, "Altimeter: 1013"},
        {16212, 1, 29.92, "Altimeter: 29.92"},
        {16216, 0, 1014, "Altimeter: 1014"}, // 1013.5 goes to the even 1014
        {16200, 0, 1012, "Altimeter: 1012"}, // 1012.5 goes to the even 1012
        {16300, 1, 30.09, "Altimeter: 30.09"},
        {16307, 1, 30.1, "Altimeter: 30.1"},
        {0, 1, 0, "Altimeter: 0"},
        {65535, 0, 4096, "Altimeter: 4096"},
    };
    for (const Case& c : cases) {
        double value = Altimeter_Value(c.raw, c.units);
        EXPECT_DOUBLE_EQ(value, c.value) << c.raw << " in units " << int(c.units);
        EXPECT_EQ(Altimeter_Text(value), c.text);
    }
}

TEST(DrawAircraft, NothingWithoutTheLink) {
    Module1 m;
    m.aircraft_lat = 0.001;
    Recording_Surface s;
    Draw_Aircraft(s, Make_View(0, 0, 0.01, 0.01, 300, 300), m);
    EXPECT_TRUE(s.ops.empty());
}

TEST(DrawAircraft, GreenDiscHeadingLineAndLabel) {
    struct Case {
        int16_t heading;
        int dx, dy; // direction of the heading line on the screen
    };
    const Case cases[] = {{0, 0, -1}, {90, 1, 0}, {180, 0, 1}, {-90, -1, 0}};
    for (const Case& c : cases) {
        Module1 m;
        m.fsuipc_connected = true;
        m.aircraft_lat = 0.001;
        m.aircraft_lon = -0.002;
        m.aircraft_heading = c.heading;
        // 0.01 degrees on 300 pixels: 500 feet (0.00137 degrees) is 41 pixels.
        Chart_View v = Make_View(0, 0, 0.01, 0.01, 300, 300);
        Recording_Surface s;
        Draw_Aircraft(s, v, m);
        // p = (90, 120); r = 1% of 300.
        Pixel_Rec tip{90 + 41 * c.dx, 120 + 41 * c.dy};
        const std::vector<std::string> expected = {
            "ForeColor 0 192 0",
            "FillColor 0 192 0",
            "FillStyle 0",
            "Ellipse 87 123 93 117",
            "MoveToEx 90 120",
            Line_Op("LineTo", tip),
            "TextOutA 90 120 \"Your Plane\"",
        };
        EXPECT_EQ(Recorded_Op_Lines(s), expected) << "heading " << c.heading;
    }
}
