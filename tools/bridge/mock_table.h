// What the mock module serves: a module new enough for the client, FS2002, and an aircraft
// near London Heathrow. The values are chosen so that the chart's conversions meet their
// halfway cases: the heading is exactly 112.5 degrees and the altimeter 1012.5 millibars,
// both of which go to the even neighbour.
#pragma once

#include <cstdint>

struct Mock_Value_Rec {
    uint32_t offset;
    uint32_t size;
    uint32_t value;
};

constexpr int32_t mock_lat_raw = 5719983;           // 51.4708396... degrees north
constexpr int32_t mock_lon_raw = -5504630;          // 0.4613927... degrees west
constexpr int32_t mock_heading_raw = 5 * (1 << 28); // 112.5 degrees
constexpr uint16_t mock_altimeter_raw = 16200;      // 1012.5 millibars, in sixteenths

constexpr Mock_Value_Rec mock_table[] = {
    {0x3304, 4, 0x36200000}, // module version
    {0x3308, 4, 0xFADE0006}, // check pattern and FS2002
    {0x0564, 4, static_cast<uint32_t>(mock_lat_raw)},
    {0x056C, 4, static_cast<uint32_t>(mock_lon_raw)},
    {0x0580, 4, static_cast<uint32_t>(mock_heading_raw)},
    {0x0EC6, 2, mock_altimeter_raw},
};
