#include "chart/chart_draw.h"
#include "chart/chart_records.h"
#include "geo/geodesy.h"
#include "geo/magnetic_variation.h"
#include "platform/rounding.h"
#include "state/module1.h"

namespace quilmark {

void Draw_Runways(Surface& surface, const Chart_View& view, const Module1& module) {
    const Airport_Rec& airport = module.current_airport;
    size_t count = Filled_Count(airport.runways, airport.runway_count);
    for (size_t i = 0; i < count; ++i) {
        const Runway_Rec& runway = airport.runways[i];
        Set_Colors(surface, Chart_Green, Chart_Black, Fill_Style_Hollow);
        Pixel_Rec p1 = Geo_To_Pixel(view, runway.end1_lat, runway.end1_lon);
        Pixel_Rec p2 = Geo_To_Pixel(view, runway.end2_lat, runway.end2_lon);
        surface.MoveToEx(p1.x, p1.y);
        surface.LineTo(p2.x, p2.y);
        surface.Set_ForeColor(Chart_Black);
        surface.TextOutA(p1.x, p1.y, runway.end1_name);
        surface.TextOutA(p2.x, p2.y, runway.end2_name);
    }
}

namespace {

// The two ends of a taxi path: a parking path ends on a parking spot, every other kind
// on a taxi point. False when an index lies outside its list.
bool Taxi_Path_Ends(const Airport_Rec& airport, const Taxi_Path_Rec& path, Geo_Point_Rec& start,
                    Geo_Point_Rec& end) {
    size_t point_count = Filled_Count(airport.taxi_points, airport.taxi_point_count);
    size_t parking_count = Filled_Count(airport.parkings, airport.parking_count);
    if (path.start_point < 0 || static_cast<size_t>(path.start_point) >= point_count) {
        return false;
    }
    const Taxi_Point_Rec& from = airport.taxi_points[static_cast<size_t>(path.start_point)];
    start = {from.lat, from.lon};
    size_t end_limit = path.path_kind == Path_Parking ? parking_count : point_count;
    if (path.end_point < 0 || static_cast<size_t>(path.end_point) >= end_limit) {
        return false;
    }
    size_t e = static_cast<size_t>(path.end_point);
    if (path.path_kind == Path_Parking) {
        end = {airport.parkings[e].lat, airport.parkings[e].lon};
    } else {
        end = {airport.taxi_points[e].lat, airport.taxi_points[e].lon};
    }
    return true;
}

} // namespace

void Draw_Taxi_Paths(Surface& surface, const Chart_View& view, const Module1& module) {
    const Airport_Rec& airport = module.current_airport;
    size_t count = Filled_Count(airport.taxi_paths, airport.taxi_path_count);
    for (size_t i = 0; i < count; ++i) {
        const Taxi_Path_Rec& path = airport.taxi_paths[i];
        Set_Colors(surface, Chart_Light_Grey, Chart_Black, Fill_Style_Hollow);
        Geo_Point_Rec start;
        Geo_Point_Rec end;
        if (!Taxi_Path_Ends(airport, path, start, end)) {
            continue;
        }
        // The label's place: half the segment's length out from its start along the
        // whole magnetic bearing, taken as if it were true. So the label stands beside
        // the segment's middle by the local variation.
        int16_t d = Distance_Feet(start.lat, start.lon, end.lat, end.lon);
        int16_t b =
            Great_Circle_Bearing(module.magvar_grid, start.lat, start.lon, end.lat, end.lon);
        Geo_Point_Rec m = Destination_Feet(start.lat, start.lon, b, To_I16(d / 2.0));
        Pixel_Rec p_start = Geo_To_Pixel(view, start.lat, start.lon);
        Pixel_Rec p_end = Geo_To_Pixel(view, end.lat, end.lon);
        Pixel_Rec p_mid = Geo_To_Pixel(view, m.lat, m.lon);
        surface.MoveToEx(p_start.x, p_start.y);
        surface.LineTo(p_end.x, p_end.y);
        if (module.show_taxiway_ids && path.path_kind == Path_Taxiway && !path.path_label.empty() &&
            path.path_label != " ") {
            surface.Set_ForeColor(Chart_Black);
            surface.TextOutA(p_mid.x, p_mid.y, path.path_label);
        }
    }
}

void Draw_Parkings(Surface& surface, const Chart_View& view, const Module1& module) {
    const Airport_Rec& airport = module.current_airport;
    size_t count = Filled_Count(airport.parkings, airport.parking_count);
    for (size_t i = 0; i < count; ++i) {
        const Parking_Rec& parking = airport.parkings[i];
        Set_Colors(surface, Chart_Brown_Red, Chart_Brown_Red, Fill_Style_Solid);
        Pixel_Rec p = Geo_To_Pixel(view, parking.lat, parking.lon);
        // A fixed size on the screen, whatever the spot's real size and the zoom.
        int32_t r = Percent_To_Pixels(view, 1.0f);
        Ellipse_About(surface, p.x, p.y, r);
        surface.Set_ForeColor(Chart_Black);
        surface.TextOutA(p.x, p.y, "Position: " + parking.spot_name);
    }
}

namespace {

// Length of the localizer feather on the ground, and its half opening in degrees.
constexpr int16_t Feather_Length_Ft = 1800;
constexpr int16_t Feather_Half_Angle = 5;

} // namespace

void Draw_ILS(Surface& surface, const Chart_View& view, const Module1& module) {
    const Airport_Rec& airport = module.current_airport;
    size_t count = Filled_Count(airport.ils, airport.ils_count);
    for (size_t i = 0; i < count; ++i) {
        const ILS_Rec& ils = airport.ils[i];
        int16_t t = Magnetic_To_True(module.magvar_grid, ils.mag_heading, ils.lat, ils.lon);
        // The feather opens away from the runway: along the reciprocal of the course.
        int16_t back = Normalize_Degrees(Clamp_I16(t - 180));
        int16_t course1 = Normalize_Degrees(Clamp_I16(back - Feather_Half_Angle));
        Geo_Point_Rec a = Destination_Feet(ils.lat, ils.lon, course1, Feather_Length_Ft);
        int16_t course2 = Normalize_Degrees(Clamp_I16(back + Feather_Half_Angle));
        Geo_Point_Rec b = Destination_Feet(ils.lat, ils.lon, course2, Feather_Length_Ft);
        Pixel_Rec p = Geo_To_Pixel(view, ils.lat, ils.lon);
        Pixel_Rec pa = Geo_To_Pixel(view, a.lat, a.lon);
        Pixel_Rec pb = Geo_To_Pixel(view, b.lat, b.lon);
        surface.Set_ForeColor(Chart_Yellow);
        surface.MoveToEx(p.x, p.y);
        surface.LineTo(pa.x, pa.y);
        surface.MoveToEx(pa.x, pa.y);
        surface.LineTo(pb.x, pb.y);
        surface.MoveToEx(pb.x, pb.y);
        surface.LineTo(p.x, p.y);
    }
}

} // namespace quilmark
