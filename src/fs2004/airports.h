// The airport section of an FS2004 BGL file (section type 0x03): one airport record (id
// 0x0003) per airport, its runways, frequencies, ground network, name and deletions nested
// inside it as sub-records. The decoder keeps what the chart and the layering need, in
// decoded units; the ground network is already in the program's own records, since its
// positions are absolute and its labels resolve within the one record.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bgl/bgl_image.h"
#include "state/airport_model.h"

namespace quilmark {

// Record ids of the airport section: the airport and its sub-records.
constexpr uint16_t Fs2004_Id_Airport = 0x0003;
constexpr uint16_t Fs2004_Id_Runway = 0x0004;
constexpr uint16_t Fs2004_Id_Com = 0x0012;
constexpr uint16_t Fs2004_Id_Name = 0x0019; // also the name of an ILS or a boundary
constexpr uint16_t Fs2004_Id_Taxi_Points = 0x001A;
constexpr uint16_t Fs2004_Id_Parking = 0x001B;
constexpr uint16_t Fs2004_Id_Taxi_Paths = 0x001C;
constexpr uint16_t Fs2004_Id_Taxi_Names = 0x001D;
constexpr uint16_t Fs2004_Id_Delete_Airport = 0x0033;

// Runway designators of the format: 0 none, 1 left, 2 right, 3 centre, 4 water.
constexpr uint8_t Fs2004_Designator_Water = 4;

struct Fs2004_Runway_Rec {
    uint8_t primary_number = 0; // 1-36, or 37-44 for N, NE ... NW
    uint8_t primary_designator = 0;
    uint8_t secondary_number = 0;
    uint8_t secondary_designator = 0;
    std::string primary_ils; // ident of the ILS serving each end, empty if none
    std::string secondary_ils;
    double lat = 0; // centre
    double lon = 0;
    int32_t elevation_mm = 0;
    double length_m = 0;
    double width_m = 0;
    double heading = 0; // true, of the primary end
    bool operator==(const Fs2004_Runway_Rec&) const = default;
};

struct Fs2004_Com_Rec {
    uint16_t type = 0; // 1 ATIS ... 10 CENTER, 11 FSS, 12 AWOS, 13 ASOS
    uint32_t hz = 0;
    bool operator==(const Fs2004_Com_Rec&) const = default;
};

// Flags of a DeleteAirport sub-record that this program acts on.
constexpr uint16_t Delete_All_Frequencies = 1u << 3;
constexpr uint16_t Delete_All_Runways = 1u << 5;
constexpr uint16_t Delete_All_Taxiways = 1u << 7;

// What an airport record removes from the same airport of lower layers.
struct Fs2004_Deletion_Rec {
    uint16_t flags = 0;
    std::vector<Fs2004_Runway_Rec> runways; // numbers and designators of both ends
    std::vector<Fs2004_Com_Rec> frequencies;
    bool operator==(const Fs2004_Deletion_Rec&) const = default;
};

struct Fs2004_Airport_Rec {
    std::string ident;
    std::string name; // as the name sub-record has it; empty without one
    double lat = 0;   // reference point
    double lon = 0;
    std::vector<Fs2004_Runway_Rec> runways;
    std::vector<Fs2004_Com_Rec> coms;
    std::vector<Taxi_Point_Rec> taxi_points;
    std::vector<Parking_Rec> parkings;
    std::vector<Taxi_Path_Rec> taxi_paths; // labels resolved, kinds as the chart's
    Fs2004_Deletion_Rec deletion;
    bool operator==(const Fs2004_Airport_Rec&) const = default;
};

// Appends every airport record of the file's airport sections, in file order.
void Decode_Fs2004_Airports(Bgl_Image& image, std::vector<Fs2004_Airport_Rec>& airports);

// A runway end as pilots read it: "16L", "9", "NE", "36W" (a water runway).
std::string Fs2004_Runway_End_Text(uint8_t number, uint8_t designator);
// A parking spot's name and number as pilots read them, from the spot's bit field:
// "GATE B 12", "N PARKING 3"; a spot without a name is its number alone.
std::string Fs2004_Parking_Text(uint32_t bits);

} // namespace quilmark
