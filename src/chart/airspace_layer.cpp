// The airspace outlines are stored as a little plotter program: start, set centre,
// circle, clockwise arc, counter-clockwise arc, line. The layer plays it with two
// remembered positions: the fix (centre of arcs and circles), which carries over from
// one airspace to the next, and the last position, which every airspace starts afresh
// at 0, 0.
#include <cmath>
#include <string>

#include "chart/chart_draw.h"
#include "chart/chart_records.h"
#include "geo/geodesy.h"
#include "platform/rounding.h"
#include "state/module1.h"

namespace quilmark {

namespace {

// Only class B and class C are drawn; the match is exact.
bool Airspace_Color(const std::string& class_text, Rgb_Rec& color) {
    if (class_text == "Airspace Class B") {
        color = Chart_Dark_Blue;
        return true;
    }
    if (class_text == "Airspace Class C") {
        color = Chart_Magenta;
        return true;
    }
    return false;
}

constexpr int16_t North_West = 315;
constexpr int16_t South_East = 135;

// A radius of whole nautical miles times the square root of 2: the distance from the
// centre to the corner of the box of a circle of that radius.
int16_t Corner_Distance(int16_t radius) {
    double r = radius;
    return To_I16(std::sqrt(r * r + r * r));
}

// The box about a centre whose north west corner lies nw_nm and whose south east corner
// lies se_nm out along the diagonals, in pixels.
struct Pixel_Box_Rec {
    Pixel_Rec nw;
    Pixel_Rec se;
};

Pixel_Box_Rec Diagonal_Box(const Chart_View& view, const Geo_Point_Rec& centre, int16_t nw_nm,
                           int16_t se_nm) {
    Geo_Point_Rec nw = Great_Circle_Destination(centre.lat, centre.lon, North_West, nw_nm);
    Geo_Point_Rec se = Great_Circle_Destination(centre.lat, centre.lon, South_East, se_nm);
    return {Geo_To_Pixel(view, nw.lat, nw.lon), Geo_To_Pixel(view, se.lat, se.lon)};
}

} // namespace

void Raise_Circle_Radii(Module1& module) {
    size_t count = Filled_Count(module.airspaces, module.airspace_count);
    for (size_t i = 0; i < count; ++i) {
        Airspace_Rec& airspace = module.airspaces[i];
        Rgb_Rec color;
        if (!Airspace_Color(airspace.class_text, color)) {
            continue;
        }
        size_t point_count = Filled_Count(airspace.points, airspace.point_count);
        for (size_t j = 0; j < point_count; ++j) {
            Boundary_Point_Rec& point = airspace.points[j];
            if (point.kind == Point_Circle && point.radius < 1) {
                point.radius = 1;
            }
        }
    }
}

void Draw_Airspaces(Surface& surface, const Chart_View& view, const Module1& module) {
    Geo_Point_Rec fix_point{0, 0};
    size_t count = Filled_Count(module.airspaces, module.airspace_count);
    for (size_t i = 0; i < count; ++i) {
        const Airspace_Rec& airspace = module.airspaces[i];
        Geo_Point_Rec last_position{0, 0};
        Rgb_Rec color;
        if (!Airspace_Color(airspace.class_text, color)) {
            continue;
        }
        surface.Set_ForeColor(color);
        surface.Set_FillColor(color);
        surface.Set_DrawWidth(1);
        surface.Set_DrawStyle(Draw_Style_Dash);
        surface.Set_FillStyle(Fill_Style_Hollow);

        size_t point_count = Filled_Count(airspace.points, airspace.point_count);
        for (size_t j = 0; j < point_count; ++j) {
            const Boundary_Point_Rec& point = airspace.points[j];
            switch (point.kind) {
            case Point_Start: {
                Pixel_Rec p = Geo_To_Pixel(view, point.lat, point.lon);
                surface.MoveToEx(p.x, p.y);
                last_position = {point.lat, point.lon};
                break;
            }
            case Point_Fix:
                fix_point = {point.lat, point.lon};
                break;
            case Point_Circle: {
                // The corners lie the radius out along the diagonals, so the drawn
                // circle is smaller than the stored radius by the square root of 2.
                int16_t radius = Clamp_I16(point.radius);
                Pixel_Box_Rec box = Diagonal_Box(view, fix_point, radius, radius);
                surface.Ellipse(box.nw.x, box.nw.y, box.se.x, box.se.y);
                break;
            }
            case Point_Arc_CW:
            case Point_Arc_CCW: {
                // The box takes its north west corner from the radius at the arc's
                // beginning and its south east corner from the radius at its end, both
                // in whole nautical miles.
                int16_t r1 = Great_Circle_Distance(fix_point.lat, fix_point.lon, last_position.lat,
                                                   last_position.lon);
                int16_t r2 =
                    Great_Circle_Distance(fix_point.lat, fix_point.lon, point.lat, point.lon);
                Pixel_Box_Rec box =
                    Diagonal_Box(view, fix_point, Corner_Distance(r1), Corner_Distance(r2));
                Pixel_Rec plast = Geo_To_Pixel(view, last_position.lat, last_position.lon);
                Pixel_Rec pthis = Geo_To_Pixel(view, point.lat, point.lon);
                // The surface draws arcs counter-clockwise; a clockwise arc is the same
                // curve run backwards.
                if (point.kind == Point_Arc_CW) {
                    surface.Arc(box.nw.x, box.nw.y, box.se.x, box.se.y, pthis.x, pthis.y, plast.x,
                                plast.y);
                } else {
                    surface.Arc(box.nw.x, box.nw.y, box.se.x, box.se.y, plast.x, plast.y, pthis.x,
                                pthis.y);
                }
                // The next line starts from the exact end of the arc, so the outline
                // does not tear where the coarse arc misses it.
                surface.MoveToEx(pthis.x, pthis.y);
                last_position = {point.lat, point.lon};
                break;
            }
            case Point_Line: {
                Pixel_Rec p = Geo_To_Pixel(view, point.lat, point.lon);
                surface.LineTo(p.x, p.y);
                surface.MoveToEx(p.x, p.y);
                last_position = {point.lat, point.lon};
                break;
            }
            default:
                break;
            }
        }
    }
    Set_Colors(surface, Chart_Green, Chart_Black, Fill_Style_Hollow);
    surface.Set_DrawWidth(2);
    surface.Set_DrawStyle(Draw_Style_Solid);
}

} // namespace quilmark
