// Everything the program knows about one airport: filled by the BGL decoders, stored
// whole in the airport database file, drawn by the chart.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dyn_array.h"

namespace quilmark {

struct Runway_Rec {
    std::string end1_name; // designator of the primary end: "9L", "27"
    std::string end2_name; // designator of the reciprocal end
    double end1_lat = 0;   // drawn ends, degrees
    double end1_lon = 0;
    double end2_lat = 0;
    double end2_lon = 0;
    int32_t altitude_ft = 0;
    int16_t end1_heading = 0; // magnetic, whole degrees
    int16_t end2_heading = 0;
    int32_t length_raw = 0; // feet, as the record gives it
    int32_t width_raw = 0;
    bool operator==(const Runway_Rec&) const = default;
};

struct ILS_Rec {
    std::string ils_name;
    double lat = 0;
    double lon = 0;
    int16_t mag_heading = 0;
    std::string frequency; // MHz as decimal text
    bool operator==(const ILS_Rec&) const = default;
};

struct Taxi_Point_Rec {
    int32_t point_kind = 0; // stored unchanged from the BGL element
    double lat = 0;
    double lon = 0;
    bool operator==(const Taxi_Point_Rec&) const = default;
};

struct Parking_Rec {
    std::string spot_name; // "GATE B 12", "N PARKING 3"
    double lat = 0;
    double lon = 0;
    int32_t radius_ft = 0;
    bool operator==(const Parking_Rec&) const = default;
};

// path_kind values
constexpr int32_t Path_Taxiway = 0;
constexpr int32_t Path_Runway = 1;
constexpr int32_t Path_Parking = 2;

struct Taxi_Path_Rec {
    int32_t path_kind = 0;
    int32_t start_point = 0; // index into taxi_points
    int32_t end_point = 0;   // into taxi_points, or into parkings for a parking path
    std::string path_label;
    bool operator==(const Taxi_Path_Rec&) const = default;
};

struct Airport_Rec {
    std::string ident;
    std::string name; // upper case
    double lat = 0;
    double lon = 0;
    std::string clearance_freq; // comm kind 7
    std::string ground_freq;    // 5
    std::string tower_freq;     // 6
    std::string departure_freq; // 9
    std::string approach_freq;  // 8
    std::string center_freq;    // 10
    std::string atis_freq;      // 1
    // runways and ils keep a spare empty top slot once allocated: slots 0..count.
    Dyn_Array<Runway_Rec> runways;
    int32_t runway_count = 0;
    Dyn_Array<ILS_Rec> ils;
    int32_t ils_count = 0;
    // The taxiway lists hold exactly their count, or stay unallocated.
    Dyn_Array<Taxi_Point_Rec> taxi_points;
    int32_t taxi_point_count = 0;
    Dyn_Array<Parking_Rec> parkings;
    int32_t parking_count = 0;
    Dyn_Array<Taxi_Path_Rec> taxi_paths;
    int32_t taxi_path_count = 0;
    bool operator==(const Airport_Rec&) const = default;
};

// The text of an airport in the chooser's list: "KSEA (SEATTLE-TACOMA INTL)".
std::string Airport_List_Text(const Airport_Rec& airport);

} // namespace quilmark
