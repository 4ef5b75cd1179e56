// What the mock module serves: a module new enough for the client, FS2002, and an aircraft
// near London Heathrow. The values are chosen so that the chart's conversions meet their
// halfway cases: the heading is exactly 112.5 degrees and the altimeter 1012.5 millibars,
// both of which go to the even neighbour.
#pragma once

#include <cstdint>

namespace quilmark {

struct Mock_Value_Rec {
    uint32_t offset;
    uint32_t size;
    uint32_t value;
};

constexpr int32_t Mock_Lat_Raw = 5719983;           // 51.4708396... degrees north
constexpr int32_t Mock_Lon_Raw = -5504630;          // 0.4613927... degrees west
constexpr int32_t Mock_Heading_Raw = 5 * (1 << 28); // 112.5 degrees
constexpr uint16_t Mock_Altimeter_Raw = 16200;      // 1012.5 millibars, in sixteenths

constexpr Mock_Value_Rec Mock_Table[] = {
    {0x3304, 4, 0x36200000}, // module version
    {0x3308, 4, 0xFADE0006}, // check pattern and FS2002
    {0x0564, 4, static_cast<uint32_t>(Mock_Lat_Raw)},
    {0x056C, 4, static_cast<uint32_t>(Mock_Lon_Raw)},
    {0x0580, 4, static_cast<uint32_t>(Mock_Heading_Raw)},
    {0x0EC6, 2, Mock_Altimeter_Raw},
};

} // namespace quilmark
