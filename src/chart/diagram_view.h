// The airport diagram's view: north up and true to shape. Around the view's centre the
// earth is taken as flat: a degree of latitude is a fixed number of metres, and a degree
// of longitude that number times the cosine of the centre's latitude, so that east-west
// distances are drawn at the same scale as north-south ones. The scale is continuous.
//
// All of it is arithmetic on a small record that the window (mouse wheel, keys, drag,
// double click), the exports and the tests call alike; nothing here draws.
#pragma once

#include <cstdint>

#include "chart/surface.h"
#include "geo/geodesy.h"

namespace quilmark {

struct Airport_Rec;

// Metres to a degree of latitude: the earth's circumference of 40,007,000 metres over 360,
// the figure the runway decoder places the runway ends with.
constexpr double Metres_Per_Degree = 40007000.0 / 360.0;
constexpr double Metres_Per_Foot = 0.3048;

struct Diagram_View_Rec {
    double center_lat = 0; // degrees, at the middle of the view
    double center_lon = 0;
    double px_per_metre = 0.1; // the scale, pixels to a metre on the ground
    int32_t width = 0;         // the view's size in pixels
    int32_t height = 0;
};

// The limits of the scale: from a region some hundreds of nautical miles across to 20
// pixels a metre, where a parking spot fills the window.
constexpr double Min_Px_Per_Metre = 0.002;
constexpr double Max_Px_Per_Metre = 20.0;

// Latitude and longitude to the view's pixel, and back. A point east of the centre by
// longitude difference d lies d * Metres_Per_Degree * cos(center_lat) * px_per_metre
// pixels to the right of the middle; longitudes are taken the short way round the earth.
Point_F_Rec Diagram_Geo_To_Pixel(const Diagram_View_Rec& view, double lat, double lon);
void Diagram_Pixel_To_Geo(const Diagram_View_Rec& view, Point_F_Rec p, double& lat, double& lon);
// Metres east and north of the view's centre to its pixel.
Point_F_Rec Diagram_Metres_To_Pixel(const Diagram_View_Rec& view, double east, double north);

// The rectangle that an airport covers: its runways (with their width), taxi points,
// parking spots (with their radius) and reference point, in metres east and north of
// the reference point. Empty records give the reference point alone.
struct Diagram_Extent_Rec {
    double west = 0;
    double east = 0;
    double south = 0;
    double north = 0;
};
Diagram_Extent_Rec Airport_Extent(const Airport_Rec& airport);

// A view of width by height pixels that shows the whole airport with room to spare: the
// airport's extent in the middle of the area inside the insets (pixels kept free at
// each edge, for the frame), with a margin of a tenth all round. A small airport (a
// single short runway) is shown no closer than about a nautical mile across.
struct Diagram_Insets_Rec {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};
Diagram_View_Rec Fit_Diagram_View(const Airport_Rec& airport, int32_t width, int32_t height,
                                  const Diagram_Insets_Rec& insets = {});

// Multiplies the scale by factor (above 1 closer, below 1 further), held to the limits,
// keeping the ground under the pixel at where.
void Zoom_Diagram_About(Diagram_View_Rec& view, double factor, Point_F_Rec where);
// The factor of one step of the + and - keys, and of one notch of a mouse wheel.
constexpr double Diagram_Zoom_Step = 1.25;
// Moves the view with the hand: the ground under a pixel moves by dx, dy pixels.
void Pan_Diagram(Diagram_View_Rec& view, double dx, double dy);
// Puts a point in the middle of the view, keeping the scale (a double click, the
// aircraft followed).
void Center_Diagram(Diagram_View_Rec& view, double lat, double lon);
// A new window size: the middle and the scale stay.
void Resize_Diagram(Diagram_View_Rec& view, int32_t width, int32_t height);

} // namespace quilmark
