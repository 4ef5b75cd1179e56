#include "chart/diagram_view.h"

#include <algorithm>
#include <cmath>

#include "chart/chart_records.h"
#include "geo/geodesy.h"
#include "state/airport_model.h"

namespace quilmark {

namespace {

double Lon_Difference(double lon, double from) {
    double d = lon - from;
    if (d >= 180 || d < -180) {
        d = std::fmod(d + 180, 360);
        d += d < 0 ? 180 : -180;
    }
    return d;
}

double Metres_Per_Lon_Degree(double lat) {
    return Metres_Per_Degree * std::max(0.01, std::cos(lat * Degrees_To_Radians));
}

// A position in metres east and north of a reference point, flat about it.
void Local_Metres(double ref_lat, double ref_lon, double lat, double lon, double& east,
                  double& north) {
    east = Lon_Difference(lon, ref_lon) * Metres_Per_Lon_Degree(ref_lat);
    north = (lat - ref_lat) * Metres_Per_Degree;
}

} // namespace

Point_F_Rec Diagram_Metres_To_Pixel(const Diagram_View_Rec& view, double east, double north) {
    return {view.width / 2.0 + east * view.px_per_metre,
            view.height / 2.0 - north * view.px_per_metre};
}

Point_F_Rec Diagram_Geo_To_Pixel(const Diagram_View_Rec& view, double lat, double lon) {
    double east = 0;
    double north = 0;
    Local_Metres(view.center_lat, view.center_lon, lat, lon, east, north);
    return Diagram_Metres_To_Pixel(view, east, north);
}

void Diagram_Pixel_To_Geo(const Diagram_View_Rec& view, Point_F_Rec p, double& lat, double& lon) {
    const double east = (p.x - view.width / 2.0) / view.px_per_metre;
    const double north = (view.height / 2.0 - p.y) / view.px_per_metre;
    lat = view.center_lat + north / Metres_Per_Degree;
    lon = view.center_lon + east / Metres_Per_Lon_Degree(view.center_lat);
    if (lon >= 180) {
        lon -= 360;
    } else if (lon < -180) {
        lon += 360;
    }
}

Diagram_Extent_Rec Airport_Extent(const Airport_Rec& airport) {
    Diagram_Extent_Rec extent;
    auto take = [&](double lat, double lon, double reach) {
        double east = 0;
        double north = 0;
        Local_Metres(airport.lat, airport.lon, lat, lon, east, north);
        extent.west = std::min(extent.west, east - reach);
        extent.east = std::max(extent.east, east + reach);
        extent.south = std::min(extent.south, north - reach);
        extent.north = std::max(extent.north, north + reach);
    };
    for (size_t i = 0; i < Filled_Count(airport.runways, airport.runway_count); ++i) {
        const Runway_Rec& r = airport.runways[i];
        // The drawn runway reaches past its decoded ends by up to 30 metres, and its
        // half width to either side.
        const double reach = 30 + std::max(0, r.width_raw) * Metres_Per_Foot / 2;
        take(r.end1_lat, r.end1_lon, reach);
        take(r.end2_lat, r.end2_lon, reach);
    }
    for (size_t i = 0; i < Filled_Count(airport.taxi_points, airport.taxi_point_count); ++i) {
        take(airport.taxi_points[i].lat, airport.taxi_points[i].lon, 0);
    }
    for (size_t i = 0; i < Filled_Count(airport.parkings, airport.parking_count); ++i) {
        const Parking_Rec& p = airport.parkings[i];
        take(p.lat, p.lon, std::clamp(p.radius_ft, 0, 1000) * Metres_Per_Foot);
    }
    return extent;
}

namespace {

// Nothing of an airport lies further than this from its reference point; a record
// beyond it (a damaged one) would shrink the airport to a dot.
constexpr double Max_Airport_Reach_M = 20000;
// The smallest ground a fitted view shows across.
constexpr double Min_Fitted_Span_M = 1800;

} // namespace

Diagram_View_Rec Fit_Diagram_View(const Airport_Rec& airport, int32_t width, int32_t height,
                                  const Diagram_Insets_Rec& insets) {
    Diagram_Extent_Rec e = Airport_Extent(airport);
    e.west = std::max(e.west, -Max_Airport_Reach_M);
    e.east = std::min(e.east, Max_Airport_Reach_M);
    e.south = std::max(e.south, -Max_Airport_Reach_M);
    e.north = std::min(e.north, Max_Airport_Reach_M);
    const double span_x = std::max(e.east - e.west, Min_Fitted_Span_M);
    const double span_y = std::max(e.north - e.south, Min_Fitted_Span_M);
    const double room_x = std::max(1.0, width - insets.left - insets.right);
    const double room_y = std::max(1.0, height - insets.top - insets.bottom);
    Diagram_View_Rec view;
    view.width = width;
    view.height = height;
    view.px_per_metre = std::clamp(std::min(room_x / span_x, room_y / span_y) / 1.2,
                                   Min_Px_Per_Metre, Max_Px_Per_Metre);
    // The extent's middle goes to the middle of the room inside the insets.
    const double mid_east =
        (e.west + e.east) / 2 - (insets.left - insets.right) / 2 / view.px_per_metre;
    const double mid_north =
        (e.south + e.north) / 2 + (insets.top - insets.bottom) / 2 / view.px_per_metre;
    view.center_lat = airport.lat + mid_north / Metres_Per_Degree;
    view.center_lon = airport.lon + mid_east / Metres_Per_Lon_Degree(airport.lat);
    if (view.center_lon >= 180) {
        view.center_lon -= 360;
    } else if (view.center_lon < -180) {
        view.center_lon += 360;
    }
    return view;
}

void Zoom_Diagram_About(Diagram_View_Rec& view, double factor, Point_F_Rec where) {
    if (!(factor > 0)) {
        return;
    }
    double lat = 0;
    double lon = 0;
    Diagram_Pixel_To_Geo(view, where, lat, lon);
    view.px_per_metre = std::clamp(view.px_per_metre * factor, Min_Px_Per_Metre, Max_Px_Per_Metre);
    // The same ground back under the pixel: move the centre by the pixel's offset from
    // the middle at the new scale.
    Center_Diagram(view, lat, lon);
    Pan_Diagram(view, where.x - view.width / 2.0, where.y - view.height / 2.0);
}

void Pan_Diagram(Diagram_View_Rec& view, double dx, double dy) {
    double lat = 0;
    double lon = 0;
    Diagram_Pixel_To_Geo(view, {view.width / 2.0 - dx, view.height / 2.0 - dy}, lat, lon);
    Center_Diagram(view, lat, lon);
}

void Center_Diagram(Diagram_View_Rec& view, double lat, double lon) {
    view.center_lat = std::clamp(lat, -89.0, 89.0);
    view.center_lon = lon;
}

void Resize_Diagram(Diagram_View_Rec& view, int32_t width, int32_t height) {
    view.width = width;
    view.height = height;
}

} // namespace quilmark
