// The state the whole program shares. The application owns one instance and hands a
// reference to each form and sequence; a test makes its own.
#pragma once

#include <cstdint>
#include <string>

#include "geo/magnetic_variation.h"
#include "platform/dyn_array.h"
#include "state/airport_model.h"
#include "state/airspace_model.h"
#include "state/config_rec.h"
#include "state/scenery_area.h"

namespace quilmark {

struct Module1 {
    // Configuration file and its working copies.
    Config_Rec config;
    uint8_t fs_version = 0;
    std::string fs_path;
    int32_t airport_count = 0;

    // Scenery inventory.
    Magvar_Grid magvar_grid{};
    Dyn_Array<Scenery_Area> scenery_areas; // spare empty top slot
    int16_t scenery_area_count = 0;
    std::string atc_data_path;

    // Airports: the filled entries are 0 to airport_count - 1; one spare slot on top.
    Dyn_Array<Airport_Rec> airports;
    Airport_Rec current_airport;

    // Airspace around current_airport.
    Dyn_Array<Airspace_Rec> airspaces;
    int32_t airspace_count = 0;

    // Display options of the chart; the chart's load sets them all on.
    bool follow_aircraft = false;
    bool show_ils = false;
    bool show_taxiways = false;
    bool show_taxiway_ids = false;
    bool show_gates = false;
    bool show_airspace = false;
    uint8_t altimeter_units = 0; // 0 millibars, 1 inches of mercury

    // The user's aircraft, live from the simulator link.
    bool fsuipc_connected = false;
    double aircraft_lat = 0;
    double aircraft_lon = 0;
    int16_t aircraft_heading = 0; // true, whole degrees; negative past 180
    double altimeter_value = 0;
};

} // namespace quilmark
