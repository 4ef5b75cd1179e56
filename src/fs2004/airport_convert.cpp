#include "fs2004/airport_convert.h"

#include "bgl/airport_fields.h"
#include "fs2004/bgl_file.h"
#include "geo/magnetic_variation.h"
#include "platform/rounding.h"
#include "platform/text1252.h"

namespace quilmark {

namespace {

// The drawn runway, as the chart draws every runway.
Runway_Rec Drawn_Runway(const Fs2004_Runway_Rec& r, const Magvar_Grid& grid) {
    const Runway_Ends_Rec ends = Drawn_Runway_Ends(r.lat, r.lon, r.heading, r.length_m);
    Runway_Rec runway;
    runway.end1_name = Fs2004_Runway_End_Text(r.primary_number, r.primary_designator);
    runway.end2_name = Fs2004_Runway_End_Text(r.secondary_number, r.secondary_designator);
    runway.end1_lat = ends.end1_lat;
    runway.end1_lon = ends.end1_lon;
    runway.end2_lat = ends.end2_lat;
    runway.end2_lon = ends.end2_lon;
    runway.altitude_ft = Millimetres_To_Feet(r.elevation_mm);
    runway.end1_heading = True_To_Magnetic(grid, r.heading, runway.end1_lat, runway.end1_lon);
    runway.end2_heading = True_To_Magnetic(grid, r.heading - 180, runway.end2_lat, runway.end2_lon);
    runway.length_raw = To_I32(r.length_m / 0.3048);
    runway.width_raw = To_I32(r.width_m / 0.3048);
    return runway;
}

// The ILS seated on the runway end it serves: the magnetic heading is taken at the
// transmitter, the position is the end's.
ILS_Rec Seated_Ils(const Fs2004_Ils_Rec& ils, const Magvar_Grid& grid, double end_lat,
                   double end_lon) {
    ILS_Rec seated;
    seated.ils_name = ils.name.empty() ? ils.ident : ils.name;
    seated.mag_heading = True_To_Magnetic(grid, ils.heading, ils.lat, ils.lon);
    seated.frequency = Fs2004_Frequency_Text(ils.hz);
    seated.lat = end_lat;
    seated.lon = end_lon;
    return seated;
}

// The ILS that the ends of one runway name, primary end first. An ILS named by both ends
// serves the end its localizer names.
void Join_Ils(const Fs2004_Runway_Rec& r, const Runway_Rec& drawn, const std::string& airport,
              const Magvar_Grid& grid, const Fs2004_Ils_Table& table, std::vector<ILS_Rec>& out) {
    const bool shared = r.primary_ils == r.secondary_ils;
    const struct {
        const std::string& ident;
        bool secondary;
        double lat, lon;
    } ends[] = {{r.primary_ils, false, drawn.end1_lat, drawn.end1_lon},
                {r.secondary_ils, true, drawn.end2_lat, drawn.end2_lon}};
    for (const auto& end : ends) {
        if (end.ident.empty()) {
            continue;
        }
        const Fs2004_Ils_Rec* ils = Find_Fs2004_Ils(table, end.ident, airport, end.lat, end.lon);
        if (ils != nullptr && (!shared || ils->secondary_end == end.secondary)) {
            out.push_back(Seated_Ils(*ils, grid, end.lat, end.lon));
        }
    }
}

// A list that grows one slot at a time keeps a spare empty slot above its count.
template <class T> void Fill_Growing(Dyn_Array<T>& list, int32_t& count, std::vector<T>&& items) {
    count = static_cast<int32_t>(items.size());
    if (!items.empty()) {
        items.emplace_back();
        list.allocated = true;
        list.items = std::move(items);
    }
}

// The ground network's lists hold exactly their count, or stay unallocated.
template <class T>
void Fill_Exact(Dyn_Array<T>& list, int32_t& count, const std::vector<T>& items) {
    count = static_cast<int32_t>(items.size());
    if (!items.empty()) {
        list.allocated = true;
        list.items = items;
    }
}

} // namespace

Airport_Rec Fs2004_Airport_Record(const Fs2004_Airport_Rec& airport, const Magvar_Grid& grid,
                                  const Fs2004_Ils_Table& ils, const Fs2004_Name_Table& names) {
    Airport_Rec a;
    a.ident = airport.ident;
    a.name = Upper_1252(airport.name);
    if (a.name.empty()) {
        if (auto listed = names.find(airport.ident); listed != names.end()) {
            a.name = Upper_1252(listed->second);
        }
    }
    a.lat = airport.lat;
    a.lon = airport.lon;
    for (const Fs2004_Com_Rec& com : airport.coms) {
        if (std::string Airport_Rec::*field = Frequency_Field(com.type)) {
            if ((a.*field).empty()) {
                a.*field = Fs2004_Frequency_Text(com.hz);
            }
        }
    }
    std::vector<Runway_Rec> runways;
    std::vector<ILS_Rec> joined;
    runways.reserve(airport.runways.size() + 1);
    for (const Fs2004_Runway_Rec& r : airport.runways) {
        runways.push_back(Drawn_Runway(r, grid));
        Join_Ils(r, runways.back(), airport.ident, grid, ils, joined);
    }
    Fill_Growing(a.runways, a.runway_count, std::move(runways));
    Fill_Growing(a.ils, a.ils_count, std::move(joined));
    if (airport.taxi_points.size() <= Max_Fs2004_Network_List &&
        airport.parkings.size() <= Max_Fs2004_Network_List &&
        airport.taxi_paths.size() <= Max_Fs2004_Network_List) {
        Fill_Exact(a.taxi_points, a.taxi_point_count, airport.taxi_points);
        Fill_Exact(a.parkings, a.parking_count, airport.parkings);
        Fill_Exact(a.taxi_paths, a.taxi_path_count, airport.taxi_paths);
    }
    return a;
}

} // namespace quilmark
