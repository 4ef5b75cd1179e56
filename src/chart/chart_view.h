// The chart's view: an equirectangular plot of the rectangle view_left..view_right
// (longitude) by view_bottom..view_top (latitude), stretched over chart_px_width by
// chart_px_height pixels with no correction for the latitude and no kept aspect ratio.
// Longitudes are not wrapped: near the date line the view simply runs past +-180.
//
// The chart form owns one Chart_View; the command-line tool and the tests make their own.
// Redraws are injected as a callback, so the same sequences serve the window (which
// also stops and restarts its timer around them) and headless callers.
#pragma once

#include <cstdint>
#include <functional>

#include "geo/geodesy.h"

namespace quilmark {

// Pixels from the top left corner of the chart, y growing downward.
struct Pixel_Rec {
    int32_t x = 0;
    int32_t y = 0;
    bool operator==(const Pixel_Rec&) const = default;
};

struct Chart_View {
    double view_left = 0;   // longitude at the left edge, degrees
    double view_top = 0;    // latitude at the top edge
    double view_right = 0;  // longitude at the right edge
    double view_bottom = 0; // latitude at the bottom edge
    // The chart form's outer size in pixels (frame, title bar and menu bar included):
    // the projection spreads the view over this size, so its right and bottom edges lie
    // slightly beyond the visible client area.
    int32_t chart_px_width = 0;
    int32_t chart_px_height = 0;
    int16_t zoom_level = 1; // 1 (the whole world) to 20; each level halves the extent
};

constexpr int16_t Min_Zoom_Level = 1;
constexpr int16_t Max_Zoom_Level = 20;
// Where every opening of the chart ends up.
constexpr int16_t Opening_Zoom_Level = 9;

// One whole redraw of the chart: Cls, Draw_Chart, Draw_Aircraft (see Redraw_Chart).
using Chart_Redraw = std::function<void()>;

// Latitude and longitude (degrees) to the chart pixel, rounded halves to even. Points
// outside the view give pixels outside the chart, negative ones too.
Pixel_Rec Geo_To_Pixel(const Chart_View& view, double lat, double lon);
// The inverse, for the mouse: the position under pixel x, y of a client area of
// client_width by client_height pixels (each taken as at least 1), over which the view's
// extent is spread. The position comes in single precision, as the form's scale gives it.
Geo_Point_Rec Pixel_To_Geo(const Chart_View& view, int32_t x, int32_t y, int32_t client_width,
                           int32_t client_height);
// percent of the chart's width, the percent first rounded to a whole number: 0.8 and
// 1.0 both give 1% of chart_px_width.
int32_t Percent_To_Pixels(const Chart_View& view, float percent);

// Halve (in) or double (out) the view about its centre and step zoom_level. Zooming in
// acts only at levels 1 to 19, zooming out only at 2 to 20; otherwise nothing changes.
void Zoom_In_View(Chart_View& view);
void Zoom_Out_View(Chart_View& view);
// Steps in or out until zoom_level is n (held to 1..20). Draws nothing.
void Zoom_To_Level(Chart_View& view, int n);

// Moves the view, keeping its size, so that the point lies in its middle. Draws nothing.
void Center_View(Chart_View& view, double airpt_loc_x, double airpt_loc_y);
// Center_Airport of the chart form without the form: centre the view on the point
// (airpt_loc_x a longitude, airpt_loc_y a latitude) and redraw. The window stops its
// timer before and starts it after.
void Center_Airport(Chart_View& view, double airpt_loc_x, double airpt_loc_y,
                    const Chart_Redraw& redraw);

} // namespace quilmark
