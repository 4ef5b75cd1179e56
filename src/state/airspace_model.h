// The airspace around the airport on the chart: boundaries of the ATC data whose box
// holds the airport, plus the terminal airspace made from the airport's frequencies.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dyn_array.h"

namespace quilmark {

// Boundary_Point_Rec::kind
constexpr uint8_t Point_Start = 0;   // begins a figure
constexpr uint8_t Point_Fix = 1;     // centre for the arcs and circles that follow
constexpr uint8_t Point_Circle = 2;  // circle of radius about the centre
constexpr uint8_t Point_Arc_CW = 3;  // clockwise arc to this point
constexpr uint8_t Point_Arc_CCW = 4; // counter-clockwise arc to this point
constexpr uint8_t Point_Line = 5;    // straight line to this point

// Memory the airspace of one fetch may take. The boundary files of a whole world come to
// about a megabyte, and the boundaries around one airport to a few kilobytes; only a
// hostile file (two million circles that all hold the airport, say) comes near this.
constexpr int64_t Max_Airspace_Bytes_Per_Fetch = 16LL * 1024 * 1024;

struct Boundary_Point_Rec {
    uint8_t kind = 0;
    double lat = 0;
    double lon = 0;
    int32_t radius = 0; // nautical miles
    bool operator==(const Boundary_Point_Rec&) const = default;
};

struct Airspace_Rec {
    Dyn_Array<Boundary_Point_Rec> points; // spare empty top slot once allocated
    int32_t point_count = 0;
    double center_lat = 0;
    double center_lon = 0;
    int32_t floor_alt = 0;
    int32_t ceiling_alt = 0;
    std::string freq_text;
    std::string class_text;
    std::string region_name;
    std::string facility_name;
    // The type of an FS2004 boundary record (1 centre, 2-8 classes A-G, 9 tower ... 23
    // training), kept for a chart style that shows it; 0 for FS2002 airspace, whose
    // records have no type. The database and the tool's output do not carry it.
    uint8_t boundary_type = 0;
    bool operator==(const Airspace_Rec&) const = default;
};

} // namespace quilmark
