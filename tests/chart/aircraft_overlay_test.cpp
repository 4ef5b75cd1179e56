#include <gtest/gtest.h>

#include "chart/aircraft_overlay.h"
#include "chart_test_support.h"
#include "geo/geodesy.h"
#include "support/fake_module.h"

namespace quilmark {

namespace {

// A module that answers a number of exchanges and then refuses every one.
struct Tiring_Module : Fake_Module_Transport {
    uint32_t answers_left = 0;
    bool Send_Message_Timeout(uint64_t window, uint32_t message, uint64_t wparam, int64_t lparam,
                              uint32_t flags, uint32_t timeout_ms,
                              uint64_t& message_result) override {
        answer = answers_left > 0 ? 1 : 0;
        answers_left -= answers_left > 0 ? 1 : 0;
        return Fake_Module_Transport::Send_Message_Timeout(window, message, wparam, lparam, flags,
                                                           timeout_ms, message_result);
    }
};

} // namespace

TEST(ReadAircraft, FourExchangesInOrderAndTheValuesBeforeAFailureStay) {
    for (uint32_t answered : {4u, 0u, 1u, 2u, 3u}) {
        Tiring_Module module;
        module.space.Set_U32(0x0564, 5273034);                            // 47.4490 N
        module.space.Set_U32(0x056C, static_cast<uint32_t>(-1459206787)); // 122.3093 W
        module.space.Set_U32(0x0580, static_cast<uint32_t>(-1073741824)); // 270: -90
        module.space.Set_U16(0x0EC6, 16212);
        Fsuipc_Rec link;
        link.transport = &module;
        Link_Reset(link);
        Link_Result result = Link_Result::Ok;
        module.answers_left = 100;
        ASSERT_TRUE(Link_Open(link, Fsuipc_Fs2002, result));
        module.answers_left = answered;
        Module1 m;
        m.altimeter_units = 1;
        EXPECT_EQ(Read_Aircraft(link, m, result), answered == 4) << answered;
        EXPECT_EQ(result, answered == 4 ? Link_Result::Ok : Link_Result::Refused);
        EXPECT_EQ(m.aircraft_lat, answered > 0 ? 5273034 * 90.0 / 10001750 : 0) << answered;
        EXPECT_EQ(m.aircraft_lon, answered > 1 ? -1459206787 * 360.0 / 4294967296.0 : 0);
        EXPECT_EQ(m.aircraft_heading, answered > 2 ? -90 : 0);
        EXPECT_EQ(m.altimeter_value, answered > 3 ? 29.92 : 0);
        Link_Close(link);
    }
}

TEST(Altimeter, ValueByUnitsAndItsShortestText) {
    struct Case {
        uint16_t raw;
        uint8_t units;
        double value;
        const char* text;
    };
    const Case cases[] = {
        {16212, 0, 1013, "Altimeter: 1013"}, {16212, 1, 29.92, "Altimeter: 29.92"},
        {16216, 0, 1014, "Altimeter: 1014"}, // 1013.5 goes to the even 1014
        {16200, 0, 1012, "Altimeter: 1012"}, // 1012.5 goes to the even 1012
        {16307, 1, 30.1, "Altimeter: 30.1"}, {0, 1, 0, "Altimeter: 0"},
    };
    for (const Case& c : cases) {
        double value = Altimeter_Value(c.raw, c.units);
        EXPECT_DOUBLE_EQ(value, c.value) << c.raw << " in units " << int(c.units);
        EXPECT_EQ(Altimeter_Text(value), c.text);
    }
}

TEST(DrawAircraft, GreenDiscHeadingLineAndLabel) {
    // 0.01 degrees on 300 pixels: the aircraft at (90, 120), a disc of 1% of 300, and
    // 500 feet (0.00137 degrees) of heading line, 41 pixels.
    const std::pair<int16_t, const char*> cases[] = {{0, "LineTo 90 79"},
                                                     {90, "LineTo 131 120"},
                                                     {180, "LineTo 90 161"},
                                                     {-90, "LineTo 49 120"}};
    for (const auto& [heading, line] : cases) {
        Module1 m;
        m.aircraft_lat = 0.001;
        m.aircraft_lon = -0.002;
        m.aircraft_heading = heading;
        m.fsuipc_connected = true;
        Recording_Surface s;
        Draw_Aircraft(s, Make_View(0, 0, 0.01, 0.01, 300, 300), m);
        EXPECT_EQ(Ops(s),
                  "ForeColor 0 192 0; FillColor 0 192 0; FillStyle 0; Ellipse 87 123 93 117; "
                  "MoveToEx 90 120; " +
                      std::string(line) + "; TextOutA 90 120 \"Your Plane\"")
            << "heading " << heading;
    }
}

} // namespace quilmark
