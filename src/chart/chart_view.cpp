#include "chart/chart_view.h"

#include <algorithm>
#include <cmath>

#include "platform/rounding.h"

namespace quilmark {

Pixel_Rec Geo_To_Pixel(const Chart_View& view, double lat, double lon) {
    Pixel_Rec p;
    p.x = To_I32((lon - view.view_left) / (view.view_right - view.view_left) * view.chart_px_width);
    p.y = To_I32((view.view_top - lat) / (view.view_top - view.view_bottom) * view.chart_px_height);
    return p;
}

Geo_Point_Rec Pixel_To_Geo(const Chart_View& view, int32_t x, int32_t y, int32_t client_width,
                           int32_t client_height) {
    const double w = std::max(1, client_width);
    const double h = std::max(1, client_height);
    // Kept in memory as floats: GCC 12's vectorizer drops the narrowing of the two values
    // when they stay in registers, and the chart would then centre a hair elsewhere.
    volatile float lon =
        static_cast<float>(view.view_left + x * (view.view_right - view.view_left) / w);
    volatile float lat =
        static_cast<float>(view.view_top - y * (view.view_top - view.view_bottom) / h);
    return {lat, lon};
}

int32_t Percent_To_Pixels(const Chart_View& view, float percent) {
    double whole = Round_Half_Even(percent);
    return To_I32(whole * view.chart_px_width / 100);
}

void Zoom_In_View(Chart_View& view) {
    if (view.zoom_level < 1 || view.zoom_level > 19) {
        return;
    }
    double dx = std::fabs(view.view_right - view.view_left) / 4;
    double dy = std::fabs(view.view_bottom - view.view_top) / 4;
    view.view_left += dx;
    view.view_right -= dx;
    view.view_top -= dy;
    view.view_bottom += dy;
    view.zoom_level += 1;
}

void Zoom_Out_View(Chart_View& view) {
    if (view.zoom_level < 2 || view.zoom_level > 20) {
        return;
    }
    double dx = std::fabs(view.view_right - view.view_left) / 2;
    double dy = std::fabs(view.view_bottom - view.view_top) / 2;
    view.view_left -= dx;
    view.view_right += dx;
    view.view_top += dy;
    view.view_bottom -= dy;
    view.zoom_level -= 1;
}

void Zoom_To_Level(Chart_View& view, int n) {
    int target = n < Min_Zoom_Level ? Min_Zoom_Level : n > Max_Zoom_Level ? Max_Zoom_Level : n;
    while (view.zoom_level != target) {
        int16_t before = view.zoom_level;
        if (view.zoom_level < target) {
            Zoom_In_View(view);
        } else {
            Zoom_Out_View(view);
        }
        if (view.zoom_level == before) {
            return; // a level outside 1..20 that neither step moves
        }
    }
}

void Center_View(Chart_View& view, double airpt_loc_x, double airpt_loc_y) {
    double hw = std::fabs(view.view_right - view.view_left) / 2;
    double hh = std::fabs(view.view_top - view.view_bottom) / 2;
    view.view_left = airpt_loc_x - hw;
    view.view_right = airpt_loc_x + hw;
    view.view_top = airpt_loc_y + hh;
    view.view_bottom = airpt_loc_y - hh;
}

void Center_Airport(Chart_View& view, double airpt_loc_x, double airpt_loc_y,
                    const Chart_Redraw& redraw) {
    Center_View(view, airpt_loc_x, airpt_loc_y);
    if (redraw) {
        redraw();
    }
}

} // namespace quilmark
