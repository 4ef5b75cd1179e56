// Painting a laid-out diagram through the surface, bottom to top.
#include <array>
#include <cmath>
#include <vector>

#include "chart/diagram_layout.h"
#include "chart/diagram_style.h"

namespace quilmark {

namespace {

Stroke_Rec Line(Rgba_Rec color, double width, std::vector<double> dashes = {}, bool round = false) {
    return {color, width, std::move(dashes), round};
}

const Stroke_Rec No_Line{};
constexpr Rgba_Rec No_Fill{0, 0, 0, 0};

Rgba_Rec With_Alpha(Rgba_Rec c, uint8_t alpha) {
    c.alpha = alpha;
    return c;
}

Stroke_Rec Airspace_Stroke(Airspace_Style style, const Diagram_Palette_Rec& p) {
    switch (style) {
    case Airspace_Style::Class_B:
        return Line(p.class_b, 2.2);
    case Airspace_Style::Class_C:
        return Line(p.class_c, 2.2);
    case Airspace_Style::Class_D:
        return Line(p.class_d, 1.6, {9, 5});
    case Airspace_Style::Centre:
        return Line(p.centre, 1.4);
    case Airspace_Style::Terminal:
        return Line(p.terminal, 1.4, {3, 4});
    case Airspace_Style::Other:
        break;
    }
    return Line(p.other_airspace, 1.4, {10, 4, 2, 4});
}

void Paint_Runway(const Diagram_Runway_Rec& r, const Diagram_Palette_Rec& p, Surface& s) {
    s.Draw_Polygon(r.corners, p.runway, No_Line);
    if (r.width_px < 8 || r.length_px <= 0) {
        return;
    }
    // The centre line: dashes a little shorter than the runway is wide, from a little inside
    // each end.
    const Point_F_Rec d{(r.threshold2.x - r.threshold1.x) / r.length_px,
                        (r.threshold2.y - r.threshold1.y) / r.length_px};
    const double inset = std::min(r.length_px * 0.08, r.width_px * 2);
    const std::array<Point_F_Rec, 2> line = {
        Point_F_Rec{r.threshold1.x + d.x * inset, r.threshold1.y + d.y * inset},
        Point_F_Rec{r.threshold2.x - d.x * inset, r.threshold2.y - d.y * inset}};
    const double stripe = std::max(4.0, r.width_px * 0.8);
    s.Draw_Polyline(
        line, Line(p.runway_marking, std::max(1.0, r.width_px * 0.035), {stripe, stripe * 0.67}));
}

void Paint_Legend_Symbol(const Diagram_Legend_Row_Rec& row, const Diagram_Palette_Rec& p,
                         Surface& s) {
    const Diagram_Panel_Rec& b = row.swatch;
    const double mid = (b.top + b.bottom) / 2;
    const std::array<Point_F_Rec, 2> across = {Point_F_Rec{b.left, mid}, Point_F_Rec{b.right, mid}};
    const std::array<Point_F_Rec, 4> box = {Point_F_Rec{b.left, b.top}, Point_F_Rec{b.right, b.top},
                                            Point_F_Rec{b.right, b.bottom},
                                            Point_F_Rec{b.left, b.bottom}};
    const Point_F_Rec centre{(b.left + b.right) / 2, mid};
    switch (row.symbol) {
    case Legend_Symbol::Runway:
        s.Draw_Polygon(box, p.runway, No_Line);
        break;
    case Legend_Symbol::Taxiway:
        s.Draw_Polyline(across, Line(p.taxiway_edge, 6, {}, true));
        s.Draw_Polyline(across, Line(p.taxiway, 4, {}, true));
        break;
    case Legend_Symbol::Gate:
        s.Draw_Circles(std::array{Circle_F_Rec{centre, 4.5}}, p.gate_fill, Line(p.gate_edge, 1));
        break;
    case Legend_Symbol::Parking:
        s.Draw_Circles(std::array{Circle_F_Rec{centre, 4.5}}, p.parking_fill,
                       Line(p.parking_edge, 1.2));
        break;
    case Legend_Symbol::ILS: {
        const std::array<Point_F_Rec, 3> half1 = {Point_F_Rec{b.left, mid},
                                                  Point_F_Rec{b.right, b.top + 1},
                                                  Point_F_Rec{b.right - 3, mid}};
        const std::array<Point_F_Rec, 3> half2 = {Point_F_Rec{b.left, mid},
                                                  Point_F_Rec{b.right - 3, mid},
                                                  Point_F_Rec{b.right, b.bottom - 1}};
        s.Draw_Polygon(half1, p.ils, Line(p.ils, 1));
        s.Draw_Polygon(half2, No_Fill, Line(p.ils, 1));
        break;
    }
    case Legend_Symbol::Class_B:
        s.Draw_Polyline(across, Airspace_Stroke(Airspace_Style::Class_B, p));
        break;
    case Legend_Symbol::Class_C:
        s.Draw_Polyline(across, Airspace_Stroke(Airspace_Style::Class_C, p));
        break;
    case Legend_Symbol::Class_D:
        s.Draw_Polyline(across, Airspace_Stroke(Airspace_Style::Class_D, p));
        break;
    }
}

void Paint_North_Arrow(const Diagram_North_Arrow_Rec& a, const Diagram_Palette_Rec& p, Surface& s) {
    // True north: a shaft with a filled head.
    const std::array<Point_F_Rec, 2> shaft = {a.base, a.true_tip};
    s.Draw_Polyline(shaft, Line(p.text, 1.5));
    const std::array<Point_F_Rec, 3> head = {a.true_tip,
                                             Point_F_Rec{a.true_tip.x - 5, a.true_tip.y + 12},
                                             Point_F_Rec{a.true_tip.x + 5, a.true_tip.y + 12}};
    s.Draw_Polygon(head, p.text, No_Line);
    // Magnetic north: a thinner shaft with a half head, turned by the variation.
    const Point_F_Rec d{a.magnetic_tip.x - a.base.x, a.magnetic_tip.y - a.base.y};
    const double len = std::hypot(d.x, d.y);
    if (len <= 0) {
        return;
    }
    const Point_F_Rec u{d.x / len, d.y / len};
    const std::array<Point_F_Rec, 2> magnetic = {a.base, a.magnetic_tip};
    s.Draw_Polyline(magnetic, Line(p.muted_text, 1.2, {4, 2}));
    const std::array<Point_F_Rec, 3> half = {
        a.magnetic_tip,
        Point_F_Rec{a.magnetic_tip.x - u.x * 10 - u.y * 4, a.magnetic_tip.y - u.y * 10 + u.x * 4},
        Point_F_Rec{a.magnetic_tip.x - u.x * 10, a.magnetic_tip.y - u.y * 10}};
    s.Draw_Polygon(half, p.muted_text, No_Line);
}

void Paint_Scale_Bar(const Diagram_Scale_Bar_Rec& bar, const Diagram_Palette_Rec& p, Surface& s) {
    const double h = 5;
    const double step = bar.length_px / bar.divisions;
    for (int k = 0; k < bar.divisions; ++k) {
        const double x0 = bar.start.x + k * step;
        const std::array<Point_F_Rec, 4> cell = {
            Point_F_Rec{x0, bar.start.y}, Point_F_Rec{x0 + step, bar.start.y},
            Point_F_Rec{x0 + step, bar.start.y + h}, Point_F_Rec{x0, bar.start.y + h}};
        s.Draw_Polygon(cell, k % 2 == 0 ? p.text : p.background, No_Line);
    }
    const std::array<Point_F_Rec, 4> outline = {
        bar.start, Point_F_Rec{bar.start.x + bar.length_px, bar.start.y},
        Point_F_Rec{bar.start.x + bar.length_px, bar.start.y + h},
        Point_F_Rec{bar.start.x, bar.start.y + h}};
    s.Draw_Polygon(outline, No_Fill, Line(p.text, 0.8));
}

} // namespace

void Paint_Diagram(const Diagram_Layout_Rec& layout, Surface& surface) {
    const Diagram_Palette_Rec& p = layout.night ? Diagram_Night_Palette() : Diagram_Day_Palette();
    const double w = layout.view.width;
    const double h = layout.view.height;
    const std::array<Point_F_Rec, 4> whole = {Point_F_Rec{0, 0}, Point_F_Rec{w, 0},
                                              Point_F_Rec{w, h}, Point_F_Rec{0, h}};
    surface.Draw_Polygon(whole, p.background, No_Line);

    for (const Diagram_Airspace_Rec& a : layout.airspaces) {
        const Stroke_Rec stroke = Airspace_Stroke(a.style, p);
        const Stroke_Rec band = Line(With_Alpha(stroke.color, p.airspace_fill_alpha), a.band_px);
        for (const std::vector<Point_F_Rec>& piece : a.band) {
            surface.Draw_Polyline(piece, band);
        }
        for (const std::vector<Point_F_Rec>& piece : a.outline) {
            surface.Draw_Polyline(piece, stroke);
        }
    }

    surface.Draw_Segments(layout.parking_lanes,
                          Line(p.parking_lane, layout.parking_lane_px, {}, true));
    if (layout.taxiway_px >= 3) {
        surface.Draw_Segments(layout.taxiways,
                              Line(p.taxiway_edge, layout.taxiway_px + 1.5, {}, true));
        surface.Draw_Segments(layout.taxiways, Line(p.taxiway, layout.taxiway_px, {}, true));
    } else {
        surface.Draw_Segments(layout.taxiways, Line(p.taxiway_edge, layout.taxiway_px, {}, true));
    }
    std::vector<Circle_F_Rec> gates;
    std::vector<Circle_F_Rec> parking;
    for (const Diagram_Spot_Rec& spot : layout.spots) {
        (spot.gate ? gates : parking).push_back({spot.centre, spot.radius_px});
    }
    surface.Draw_Circles(gates, p.gate_fill, Line(p.gate_edge, 1));
    surface.Draw_Circles(parking, p.parking_fill, Line(p.parking_edge, 1.2));
    for (const Diagram_Runway_Rec& r : layout.runways) {
        Paint_Runway(r, p, surface);
    }
    for (const Diagram_Feather_Rec& f : layout.feathers) {
        surface.Draw_Polygon(f.filled, p.ils, Line(p.ils, 1));
        surface.Draw_Polygon(f.open, No_Fill, Line(p.ils, 1));
    }
    for (const Diagram_Text_Rec& t : layout.texts) {
        surface.Draw_Text(t.centre, t.angle_deg, t.text, Diagram_Text_Style(t.role, p));
    }
    if (!layout.aircraft.empty()) {
        surface.Draw_Polygon(layout.aircraft, p.aircraft, Line(p.aircraft_edge, 1.5));
    }

    // The frame, over everything: a border, the ticks, the panels and their contents.
    for (const std::array<Point_F_Rec, 4>& edge :
         {std::array<Point_F_Rec, 4>{Point_F_Rec{0, 0}, {w, 0}, {w, 2}, {0, 2}},
          std::array<Point_F_Rec, 4>{Point_F_Rec{0, h - 2}, {w, h - 2}, {w, h}, {0, h}},
          std::array<Point_F_Rec, 4>{Point_F_Rec{0, 0}, {2, 0}, {2, h}, {0, h}},
          std::array<Point_F_Rec, 4>{Point_F_Rec{w - 2, 0}, {w, 0}, {w, h}, {w - 2, h}}}) {
        surface.Draw_Polygon(edge, p.panel_edge, No_Line); // the border, 2 pixels wide
    }
    surface.Draw_Segments(layout.ticks, Line(p.muted_text, 1));
    for (const Diagram_Panel_Rec& panel : layout.panels) {
        const std::array<Point_F_Rec, 4> box = {
            Point_F_Rec{panel.left, panel.top}, Point_F_Rec{panel.right, panel.top},
            Point_F_Rec{panel.right, panel.bottom}, Point_F_Rec{panel.left, panel.bottom}};
        surface.Draw_Polygon(box, p.panel, Line(p.panel_edge, 1));
    }
    if (layout.has_north_arrow) {
        Paint_North_Arrow(layout.north_arrow, p, surface);
    }
    for (const Diagram_Scale_Bar_Rec& bar : layout.scale_bars) {
        Paint_Scale_Bar(bar, p, surface);
    }
    for (const Diagram_Legend_Row_Rec& row : layout.legend) {
        Paint_Legend_Symbol(row, p, surface);
    }
    for (const Diagram_Text_Rec& t : layout.frame_texts) {
        surface.Draw_Text(t.centre, t.angle_deg, t.text, Diagram_Text_Style(t.role, p));
    }
}

} // namespace quilmark
