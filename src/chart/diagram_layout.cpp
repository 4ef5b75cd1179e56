#include "chart/diagram_layout.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "chart/chart_records.h"
#include "chart/diagram_frame.h"
#include "chart/diagram_style.h"
#include "geo/geodesy.h"
#include "geo/magnetic_variation.h"
#include "state/airport_model.h"
#include "state/airspace_model.h"

namespace quilmark {

namespace {

// Room between a label's text and what it labels, and kept free around every label's text.
constexpr double Gap_Px = 4;
constexpr double Label_Pad_Px = 1;
// Nominal widths on the ground of what the records give no width for.
constexpr double Taxiway_Width_M = 75 * Metres_Per_Foot;
constexpr double Parking_Lane_Width_M = 35 * Metres_Per_Foot;
// How far an ILS feather reaches back along the approach, and its half opening.
constexpr double Feather_Length_M = 2500 * Metres_Per_Foot;
constexpr double Min_Feather_Px = 60;
constexpr double Feather_Half_Angle_Deg = 3;
// Airspace outlines are cut this far outside the view.
constexpr double Clip_Margin_Px = 16;

// Owners of obstacles, so that a label may lie over what it names.
constexpr int64_t Spot_Owner_Base = 1 << 20;
constexpr int64_t Aircraft_Owner = 1 << 30;

Point_F_Rec Add(Point_F_Rec a, Point_F_Rec b) {
    return {a.x + b.x, a.y + b.y};
}
Point_F_Rec Sub(Point_F_Rec a, Point_F_Rec b) {
    return {a.x - b.x, a.y - b.y};
}
Point_F_Rec Mul(Point_F_Rec a, double k) {
    return {a.x * k, a.y * k};
}
double Length(Point_F_Rec a) {
    return std::hypot(a.x, a.y);
}
// The direction on the screen of a true course: north up, east right.
Point_F_Rec Course_Direction(double course_deg) {
    const double a = course_deg * Degrees_To_Radians;
    return {std::sin(a), -std::cos(a)};
}
double Angle_Of(Point_F_Rec d) {
    return std::atan2(d.y, d.x) * Radians_To_Degrees;
}
// An angle turned by half a turn where needed so that text along it reads from left to
// right: within -90 (exclusive) to 90 (inclusive).
double Readable(double angle_deg) {
    while (angle_deg > 90) {
        angle_deg -= 180;
    }
    while (angle_deg <= -90) {
        angle_deg += 180;
    }
    return angle_deg;
}

// The angle at which text stands upright for someone looking along direction d: the
// letters' tops point along d.
double Upright_Along(Point_F_Rec d) {
    return std::atan2(d.x, -d.y) * Radians_To_Degrees;
}

// True when a figure's upright bounds, grown by reach, can touch the view.
bool In_View(const Diagram_View_Rec& view, double min_x, double min_y, double max_x, double max_y,
             double reach) {
    return max_x + reach >= 0 && min_x - reach <= view.width && max_y + reach >= 0 &&
           min_y - reach <= view.height;
}

struct Layout_State {
    const Diagram_Source_Rec& source;
    const Diagram_View_Rec& view;
    const Diagram_Options_Rec& options;
    const Text_Metrics& metrics;
    Diagram_Layout_Rec& layout;
    Label_Placer placer;

    Point_F_Rec Pixel(double lat, double lon) const { return Diagram_Geo_To_Pixel(view, lat, lon); }

    // Tries the centres in order and keeps the block at the first that is free.
    bool Place_Block(const Text_Block_Rec& block, const std::vector<Point_F_Rec>& centres,
                     double angle_deg, int64_t owner = -1) {
        for (const Point_F_Rec& c : centres) {
            const Label_Box_Rec box = Block_Box(block, c, angle_deg, Label_Pad_Px);
            if (placer.Place(box, owner)) {
                Emit_Block(block, c, angle_deg, layout.texts);
                layout.label_boxes.push_back(box);
                return true;
            }
        }
        return false;
    }
};

// ---------------------------------------------------------------- runways

struct Runway_Geometry {
    Point_F_Rec mid;
    Point_F_Rec dir; // from end 1 toward end 2
    size_t index;
};

void Layout_Runways(Layout_State& s, std::vector<Runway_Geometry>& geometry) {
    const Airport_Rec& airport = s.source.airport;
    const double ppm = s.view.px_per_metre;
    const size_t count = Filled_Count(airport.runways, airport.runway_count);
    for (size_t i = 0; i < count; ++i) {
        const Runway_Rec& r = airport.runways[i];
        const Point_F_Rec p1 = s.Pixel(r.end1_lat, r.end1_lon);
        const Point_F_Rec p2 = s.Pixel(r.end2_lat, r.end2_lon);
        const double ends_px = Length(Sub(p2, p1));
        Point_F_Rec dir;
        if (ends_px > 1e-9) {
            dir = Mul(Sub(p2, p1), 1 / ends_px);
        } else {
            dir = Course_Direction(
                Magnetic_To_True(s.source.grid, r.end1_heading, r.end1_lat, r.end1_lon));
        }
        // The decoded ends stop short of a long runway's real ends; the record's length is
        // the runway itself.
        double length_m = ends_px / ppm;
        if (r.length_raw > 0 && r.length_raw < 60000) {
            length_m = r.length_raw * Metres_Per_Foot;
        }
        const double length_px = length_m * ppm;
        const double width_px = std::max(
            r.width_raw > 0 && r.width_raw < 2000 ? r.width_raw * Metres_Per_Foot * ppm : 0.0, 1.5);
        const Point_F_Rec mid = Mul(Add(p1, p2), 0.5);
        const Point_F_Rec across{-dir.y * width_px / 2, dir.x * width_px / 2};
        Diagram_Runway_Rec shape;
        shape.threshold1 = Sub(mid, Mul(dir, length_px / 2));
        shape.threshold2 = Add(mid, Mul(dir, length_px / 2));
        shape.corners = {Add(shape.threshold1, across), Add(shape.threshold2, across),
                         Sub(shape.threshold2, across), Sub(shape.threshold1, across)};
        shape.width_px = width_px;
        shape.length_px = length_px;
        const double reach = length_px / 2 + width_px + 80;
        if (!In_View(s.view, mid.x, mid.y, mid.x, mid.y, reach)) {
            continue;
        }
        s.layout.runways.push_back(shape);
        geometry.push_back({mid, dir, i});
        s.placer.Add_Obstacle({mid, length_px / 2 + 1, width_px / 2 + 1, Angle_Of(dir)},
                              static_cast<int64_t>(i));
    }
}

void Place_Runway_Numbers(Layout_State& s, const std::vector<Runway_Geometry>& geometry) {
    const Airport_Rec& airport = s.source.airport;
    for (size_t k = 0; k < geometry.size(); ++k) {
        const Runway_Rec& r = airport.runways[geometry[k].index];
        const Diagram_Runway_Rec& shape = s.layout.runways[k];
        for (int end = 1; end <= 2; ++end) {
            // The number stands beyond its threshold, upright for the pilot who lands on
            // it: its letters' tops point along the landing direction.
            const Point_F_Rec landing = end == 1 ? geometry[k].dir : Mul(geometry[k].dir, -1);
            const Point_F_Rec threshold = end == 1 ? shape.threshold1 : shape.threshold2;
            const std::string& name = end == 1 ? r.end1_name : r.end2_name;
            const int heading = end == 1 ? r.end1_heading : r.end2_heading;
            std::vector<std::pair<std::string, Label_Role>> lines;
            if (!name.empty()) {
                lines.emplace_back(name, Label_Role::Runway_Number);
            }
            lines.emplace_back(Heading_Text(heading), Label_Role::Runway_Heading);
            const Text_Block_Rec block = Measure_Block(s.metrics, std::move(lines));
            const double out = Gap_Px + Label_Pad_Px + block.height / 2;
            s.Place_Block(block,
                          {Sub(threshold, Mul(landing, out)),
                           Sub(threshold, Mul(landing, out + block.height))},
                          Upright_Along(landing), static_cast<int64_t>(geometry[k].index));
        }
    }
}

void Place_Runway_Sizes(Layout_State& s, const std::vector<Runway_Geometry>& geometry) {
    const Airport_Rec& airport = s.source.airport;
    for (size_t k = 0; k < geometry.size(); ++k) {
        const Runway_Rec& r = airport.runways[geometry[k].index];
        if (r.length_raw <= 0) {
            continue;
        }
        const Diagram_Runway_Rec& shape = s.layout.runways[k];
        const Text_Block_Rec block = Measure_Block(
            s.metrics, {{Runway_Size_Text(r.length_raw, r.width_raw), Label_Role::Runway_Size}});
        const Point_F_Rec dir = geometry[k].dir;
        const Point_F_Rec side{-dir.y, dir.x};
        const double off = shape.width_px / 2 + Gap_Px + Label_Pad_Px + block.height / 2;
        std::vector<Point_F_Rec> centres;
        for (double along : {0.0, 0.25, -0.25, 0.4, -0.4}) {
            const Point_F_Rec at = Add(geometry[k].mid, Mul(dir, along * shape.length_px));
            centres.push_back(Add(at, Mul(side, off)));
            centres.push_back(Sub(at, Mul(side, off)));
        }
        s.Place_Block(block, centres, Readable(Angle_Of(dir)));
    }
}

// ---------------------------------------------------------------- taxiways

struct Segment_Px {
    Point_F_Rec a;
    Point_F_Rec b;
    int32_t start;
    int32_t end;
};

// The ends of a taxi path: a parking path ends on a parking spot, the others on a taxi
// point. False when an index lies outside its list.
bool Path_Ends(const Airport_Rec& airport, const Taxi_Path_Rec& path, Geo_Point_Rec& start,
               Geo_Point_Rec& end) {
    const size_t points = Filled_Count(airport.taxi_points, airport.taxi_point_count);
    const size_t spots = Filled_Count(airport.parkings, airport.parking_count);
    if (path.start_point < 0 || static_cast<size_t>(path.start_point) >= points) {
        return false;
    }
    const Taxi_Point_Rec& from = airport.taxi_points[static_cast<size_t>(path.start_point)];
    start = {from.lat, from.lon};
    const size_t limit = path.path_kind == Path_Parking ? spots : points;
    if (path.end_point < 0 || static_cast<size_t>(path.end_point) >= limit) {
        return false;
    }
    const auto e = static_cast<size_t>(path.end_point);
    end = path.path_kind == Path_Parking
              ? Geo_Point_Rec{airport.parkings[e].lat, airport.parkings[e].lon}
              : Geo_Point_Rec{airport.taxi_points[e].lat, airport.taxi_points[e].lon};
    return true;
}

// A straight stretch of one named taxiway, where its name can stand.
struct Stretch {
    Point_F_Rec a;
    Point_F_Rec b;
    double length;
};

// The straight stretches of one connected run of a taxiway: segments joined end to end
// through points where the run neither forks nor bends by more than a few degrees.
std::vector<Stretch> Straight_Stretches(const std::vector<Segment_Px>& segments,
                                        const std::vector<size_t>& run) {
    // Each end of each segment (by its place in the run), sorted by point.
    std::vector<std::pair<int32_t, size_t>> ends_at;
    ends_at.reserve(2 * run.size());
    for (size_t r = 0; r < run.size(); ++r) {
        ends_at.emplace_back(segments[run[r]].start, r);
        ends_at.emplace_back(segments[run[r]].end, r);
    }
    std::sort(ends_at.begin(), ends_at.end());
    // The other segment at a point where exactly two of the run meet; none elsewhere.
    auto other_at = [&](int32_t point, size_t from) -> std::optional<size_t> {
        const auto first =
            std::lower_bound(ends_at.begin(), ends_at.end(), std::pair<int32_t, size_t>{point, 0});
        if (first == ends_at.end() || first->first != point || first + 1 == ends_at.end() ||
            (first + 1)->first != point ||
            (first + 2 != ends_at.end() && (first + 2)->first == point)) {
            return std::nullopt;
        }
        return first->second == from ? (first + 1)->second : first->second;
    };
    std::vector<bool> used(run.size(), false);
    std::vector<Stretch> stretches;
    constexpr double Max_Bend = 0.985; // cosine of about 10 degrees
    for (size_t r0 = 0; r0 < run.size(); ++r0) {
        if (used[r0]) {
            continue;
        }
        used[r0] = true;
        const Segment_Px& f = segments[run[r0]];
        const double len = Length(Sub(f.b, f.a));
        if (len < 1e-9) {
            continue;
        }
        const Point_F_Rec dir = Mul(Sub(f.b, f.a), 1 / len);
        Point_F_Rec ends[2] = {f.a, f.b};
        int32_t points[2] = {f.start, f.end};
        size_t last[2] = {r0, r0};
        // Extend backward from a (side 0) and forward from b (side 1).
        for (int side = 0; side < 2; ++side) {
            for (size_t steps = 0; steps < run.size(); ++steps) {
                const std::optional<size_t> next = other_at(points[side], last[side]);
                if (!next || used[*next]) {
                    break;
                }
                const Segment_Px& n = segments[run[*next]];
                const bool forward = n.start == points[side];
                const Point_F_Rec far = forward ? n.b : n.a;
                const Point_F_Rec step = Sub(far, ends[side]);
                const double step_len = Length(step);
                if (step_len >= 1e-9 &&
                    std::abs(step.x * dir.x + step.y * dir.y) / step_len < Max_Bend) {
                    break;
                }
                used[*next] = true;
                last[side] = *next;
                if (step_len >= 1e-9) {
                    ends[side] = far;
                }
                points[side] = forward ? n.end : n.start;
            }
        }
        stretches.push_back({ends[0], ends[1], Length(Sub(ends[1], ends[0]))});
    }
    std::sort(stretches.begin(), stretches.end(),
              [](const Stretch& x, const Stretch& y) { return x.length > y.length; });
    return stretches;
}

void Layout_Taxiways(Layout_State& s, std::vector<Segment_Px>& named,
                     std::vector<std::string_view>& names) {
    const Airport_Rec& airport = s.source.airport;
    const double ppm = s.view.px_per_metre;
    s.layout.taxiway_px = std::max(1.0, Taxiway_Width_M * ppm);
    s.layout.parking_lane_px = std::max(1.0, Parking_Lane_Width_M * ppm);
    const size_t count = Filled_Count(airport.taxi_paths, airport.taxi_path_count);
    for (size_t i = 0; i < count; ++i) {
        const Taxi_Path_Rec& path = airport.taxi_paths[i];
        if (path.path_kind == Path_Runway) {
            continue; // the runway itself shows it
        }
        Geo_Point_Rec start;
        Geo_Point_Rec end;
        if (!Path_Ends(airport, path, start, end)) {
            continue;
        }
        const Point_F_Rec a = s.Pixel(start.lat, start.lon);
        const Point_F_Rec b = s.Pixel(end.lat, end.lon);
        const bool taxiway = path.path_kind == Path_Taxiway;
        if (In_View(s.view, std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x),
                    std::max(a.y, b.y), s.layout.taxiway_px)) {
            auto& list = taxiway ? s.layout.taxiways : s.layout.parking_lanes;
            list.push_back(a);
            list.push_back(b);
        }
        if (taxiway && s.options.show_taxiway_ids && !path.path_label.empty() &&
            path.path_label != " ") {
            named.push_back({a, b, path.start_point, path.end_point});
            names.push_back(path.path_label);
        }
    }
}

void Place_Taxiway_Names(Layout_State& s, const std::vector<Segment_Px>& named,
                         const std::vector<std::string_view>& names) {
    // Runs: segments of one name joined through shared points (union-find).
    std::vector<size_t> parent(named.size());
    std::iota(parent.begin(), parent.end(), 0);
    auto root = [&](size_t k) {
        while (parent[k] != k) {
            parent[k] = parent[parent[k]];
            k = parent[k];
        }
        return k;
    };
    // Segments of the same name that share a point join one run: names become numbers,
    // and each end is looked up by its name's number and its point.
    std::unordered_map<std::string_view, uint64_t> name_ids;
    std::unordered_map<uint64_t, size_t> first_at;
    name_ids.reserve(64);
    first_at.reserve(2 * named.size());
    for (size_t k = 0; k < named.size(); ++k) {
        const uint64_t id = name_ids.emplace(names[k], name_ids.size()).first->second;
        for (int32_t point : {named[k].start, named[k].end}) {
            const auto [at, fresh] = first_at.emplace(id << 32 | static_cast<uint32_t>(point), k);
            if (!fresh) {
                parent[root(k)] = root(at->second);
            }
        }
    }
    // The runs in the order of their first segment.
    std::vector<std::vector<size_t>> runs;
    std::vector<size_t> run_of(named.size(), SIZE_MAX);
    for (size_t k = 0; k < named.size(); ++k) {
        size_t& slot = run_of[root(k)];
        if (slot == SIZE_MAX) {
            slot = runs.size();
            runs.emplace_back();
        }
        runs[slot].push_back(k);
    }
    for (const std::vector<size_t>& run : runs) {
        // A run shorter than its name has no room for it anywhere.
        double run_px = 0;
        for (size_t k : run) {
            run_px += Length(Sub(named[k].b, named[k].a));
        }
        const std::string name(names[run.front()]);
        const Text_Block_Rec block = Measure_Block(s.metrics, {{name, Label_Role::Taxiway_Name}});
        if (run_px < block.width + 2 * Gap_Px) {
            continue;
        }
        int tries = 0;
        for (const Stretch& stretch : Straight_Stretches(named, run)) {
            if (stretch.length < block.width + 2 * Gap_Px || ++tries > 8) {
                break; // the longest stretches come first
            }
            // The middle of the stretch, or nearer either end on a long one.
            std::vector<Point_F_Rec> centres;
            for (double t : {0.5, 0.3, 0.7}) {
                if (t == 0.5 || stretch.length >= 2.5 * block.width) {
                    centres.push_back(Add(stretch.a, Mul(Sub(stretch.b, stretch.a), t)));
                }
            }
            if (s.Place_Block(block, centres, Readable(Angle_Of(Sub(stretch.b, stretch.a))))) {
                break;
            }
        }
    }
}

// ---------------------------------------------------------------- parking

void Layout_Spots(Layout_State& s, std::vector<size_t>& spot_index) {
    const Airport_Rec& airport = s.source.airport;
    const size_t count = Filled_Count(airport.parkings, airport.parking_count);
    for (size_t i = 0; i < count; ++i) {
        const Parking_Rec& p = airport.parkings[i];
        const Point_F_Rec c = s.Pixel(p.lat, p.lon);
        const double r =
            std::max(std::clamp(p.radius_ft, 0, 1000) * Metres_Per_Foot * s.view.px_per_metre, 1.5);
        if (!In_View(s.view, c.x, c.y, c.x, c.y, r)) {
            continue;
        }
        s.layout.spots.push_back({c, r, Is_Gate(p.spot_name)});
        spot_index.push_back(i);
        s.placer.Add_Obstacle({c, r, r, 0}, Spot_Owner_Base + static_cast<int64_t>(i));
    }
}

// Spots that are large enough on the screen to carry a name.
constexpr double Min_Named_Spot_Px = 3;

void Place_Spot_Names(Layout_State& s, const std::vector<size_t>& spot_index, bool gates) {
    const Airport_Rec& airport = s.source.airport;
    for (size_t k = 0; k < s.layout.spots.size(); ++k) {
        const Diagram_Spot_Rec& spot = s.layout.spots[k];
        if (spot.gate != gates || spot.radius_px < Min_Named_Spot_Px) {
            continue;
        }
        const std::string label = Spot_Label(airport.parkings[spot_index[k]].spot_name);
        if (label.empty()) {
            continue;
        }
        const int64_t owner = Spot_Owner_Base + static_cast<int64_t>(spot_index[k]);
        const Text_Block_Rec block = Measure_Block(
            s.metrics, {{label, gates ? Label_Role::Gate_Name : Label_Role::Parking_Name}});
        const Point_F_Rec c = spot.centre;
        const double r = spot.radius_px;
        // Inside the circle when it is large enough, in colours that stand out on its fill.
        if (block.width <= 1.6 * r && block.height <= 1.6 * r) {
            Text_Block_Rec inside = block;
            inside.lines[0].role =
                gates ? Label_Role::Gate_Name_Inside : Label_Role::Parking_Name_Inside;
            if (s.Place_Block(inside, {c}, 0, owner)) {
                continue;
            }
        }
        const double dx = r + Gap_Px / 2 + Label_Pad_Px + block.width / 2;
        const double dy = r + Gap_Px / 2 + Label_Pad_Px + block.height / 2;
        s.Place_Block(block, {Add(c, {dx, 0}), Add(c, {-dx, 0}), Add(c, {0, -dy}), Add(c, {0, dy})},
                      0, owner);
    }
}

// ---------------------------------------------------------------- ILS

struct Feather_Geometry {
    Point_F_Rec apex;
    Point_F_Rec back; // unit, from the apex out along the approach
    double length;
    double half_width;
    size_t index;
};

void Layout_Feathers(Layout_State& s, std::vector<Feather_Geometry>& geometry) {
    const Airport_Rec& airport = s.source.airport;
    const size_t count = Filled_Count(airport.ils, airport.ils_count);
    for (size_t i = 0; i < count; ++i) {
        const ILS_Rec& ils = airport.ils[i];
        // The localizer's true course: its magnetic course plus the variation.
        const int16_t course = Magnetic_To_True(s.source.grid, ils.mag_heading, ils.lat, ils.lon);
        const Point_F_Rec back = Mul(Course_Direction(course), -1);
        const Point_F_Rec apex = s.Pixel(ils.lat, ils.lon);
        const double length = std::max(Feather_Length_M * s.view.px_per_metre, Min_Feather_Px);
        const double half = length * std::tan(Feather_Half_Angle_Deg * Degrees_To_Radians);
        const Point_F_Rec far = Add(apex, Mul(back, length));
        const Point_F_Rec notch = Add(apex, Mul(back, length * 0.85));
        const Point_F_Rec side{-back.y * half, back.x * half};
        if (!In_View(s.view, std::min(apex.x, far.x), std::min(apex.y, far.y),
                     std::max(apex.x, far.x), std::max(apex.y, far.y), half + 60)) {
            continue;
        }
        s.layout.feathers.push_back(
            {apex, {apex, Add(far, side), notch}, {apex, notch, Sub(far, side)}});
        geometry.push_back({apex, back, length, half, i});
    }
}

void Place_ILS_Texts(Layout_State& s, const std::vector<Feather_Geometry>& geometry) {
    const Airport_Rec& airport = s.source.airport;
    for (const Feather_Geometry& f : geometry) {
        const ILS_Rec& ils = airport.ils[f.index];
        const std::string ident = ils.ils_name.empty() ? std::string("ILS") : ils.ils_name;
        const Text_Block_Rec block =
            Measure_Block(s.metrics, {{ident + ' ' + Frequency_Text(ils.frequency) + "  CRS " +
                                           Heading_Text(ils.mag_heading),
                                       Label_Role::ILS_Text}});
        const Point_F_Rec side{-f.back.y, f.back.x};
        // Along the feather beside its outer half, on either side, then beyond its end.
        std::vector<Point_F_Rec> centres;
        const double off = f.half_width * 0.8 + Gap_Px + Label_Pad_Px + block.height / 2;
        for (double along : {0.6, 0.4, 0.8}) {
            const Point_F_Rec at = Add(f.apex, Mul(f.back, f.length * along));
            centres.push_back(Add(at, Mul(side, off)));
            centres.push_back(Sub(at, Mul(side, off)));
        }
        centres.push_back(
            Add(f.apex, Mul(f.back, f.length + Gap_Px + Label_Pad_Px + block.width / 2)));
        if (s.Place_Block(block, centres, Readable(Angle_Of(f.back)))) {
            continue;
        }
        // Level, to the side of the feather, where the view's edge leaves no room along it.
        centres.clear();
        for (double along : {0.5, 0.25}) {
            const Point_F_Rec at = Add(f.apex, Mul(f.back, f.length * along));
            const double level = block.width / 2 + f.half_width + Gap_Px + Label_Pad_Px;
            centres.push_back({at.x + level, at.y});
            centres.push_back({at.x - level, at.y});
        }
        s.Place_Block(block, centres, 0);
    }
}

// ---------------------------------------------------------------- airspace

Airspace_Style Style_Of(const std::string& class_text) {
    if (class_text == "Airspace Class B") {
        return Airspace_Style::Class_B;
    }
    if (class_text == "Airspace Class C") {
        return Airspace_Style::Class_C;
    }
    if (class_text == "Airspace Class D") {
        return Airspace_Style::Class_D;
    }
    if (class_text == "ARTCC/FIR") {
        return Airspace_Style::Centre;
    }
    if (class_text == "TRACON (Departure/Approach)") {
        return Airspace_Style::Terminal;
    }
    return Airspace_Style::Other;
}

std::string Class_Words(Airspace_Style style, const std::string& class_text) {
    switch (style) {
    case Airspace_Style::Class_B:
        return "CLASS B";
    case Airspace_Style::Class_C:
        return "CLASS C";
    case Airspace_Style::Class_D:
        return "CLASS D";
    case Airspace_Style::Centre:
        return "ARTCC/FIR";
    case Airspace_Style::Terminal:
        return "TRACON";
    case Airspace_Style::Other:
        break;
    }
    return class_text;
}

// Metres east and north of the view's centre.
struct Local_Point {
    double east;
    double north;
};

Local_Point Local_Of(const Diagram_View_Rec& view, double lat, double lon) {
    const Point_F_Rec p = Diagram_Geo_To_Pixel(view, lat, lon);
    return {(p.x - view.width / 2.0) / view.px_per_metre,
            (view.height / 2.0 - p.y) / view.px_per_metre};
}

// The outline's figures, each a ring of local points: lines straight, arcs and circles
// followed at a few degrees a step, an arc's radius changing evenly from its start to its
// end when the two differ.
std::vector<std::vector<Local_Point>> Airspace_Rings(const Diagram_View_Rec& view,
                                                     const Airspace_Rec& airspace) {
    std::vector<std::vector<Local_Point>> rings;
    Local_Point fix = Local_Of(view, airspace.center_lat, airspace.center_lon);
    bool have_last = false;
    Local_Point last{0, 0};
    constexpr double Step = 3 * Degrees_To_Radians;
    const size_t count = Filled_Count(airspace.points, airspace.point_count);
    for (size_t i = 0; i < count; ++i) {
        const Boundary_Point_Rec& p = airspace.points[i];
        switch (p.kind) {
        case Point_Start:
            last = Local_Of(view, p.lat, p.lon);
            have_last = true;
            rings.push_back({last});
            break;
        case Point_Fix:
            fix = Local_Of(view, p.lat, p.lon);
            break;
        case Point_Circle: {
            const double r = std::clamp(p.radius, 1, 32767) * Metres_Per_Nautical_Mile;
            std::vector<Local_Point> circle;
            for (int k = 0; k < 120; ++k) {
                const double a = k * (Two_Pi / 120);
                circle.push_back({fix.east + r * std::sin(a), fix.north + r * std::cos(a)});
            }
            rings.push_back(std::move(circle));
            break;
        }
        case Point_Arc_CW:
        case Point_Arc_CCW: {
            const Local_Point to = Local_Of(view, p.lat, p.lon);
            if (!have_last) {
                rings.push_back({to});
                last = to;
                have_last = true;
                break;
            }
            // Bearings from the centre, clockwise from north.
            const double r1 = std::hypot(last.east - fix.east, last.north - fix.north);
            const double r2 = std::hypot(to.east - fix.east, to.north - fix.north);
            const double b1 = std::atan2(last.east - fix.east, last.north - fix.north);
            const double b2 = std::atan2(to.east - fix.east, to.north - fix.north);
            double sweep = p.kind == Point_Arc_CW ? b2 - b1 : b1 - b2;
            while (sweep <= 0) {
                sweep += Two_Pi;
            }
            const int steps = std::max(1, static_cast<int>(std::ceil(sweep / Step)));
            const double sign = p.kind == Point_Arc_CW ? 1 : -1;
            for (int k = 1; k <= steps; ++k) {
                const double t = static_cast<double>(k) / steps;
                const double b = b1 + sign * sweep * t;
                const double r = r1 + (r2 - r1) * t;
                rings.back().push_back({fix.east + r * std::sin(b), fix.north + r * std::cos(b)});
            }
            last = to;
            break;
        }
        case Point_Line:
            last = Local_Of(view, p.lat, p.lon);
            if (!have_last) {
                rings.push_back({});
                have_last = true;
            }
            rings.back().push_back(last);
            break;
        default:
            break;
        }
    }
    return rings;
}

// The part of a closed ring inside a rectangle (Sutherland and Hodgman), so that a
// boundary hundreds of miles round costs no more to fill than the view.
std::vector<Point_F_Rec> Clip_Ring(std::vector<Point_F_Rec> ring, double left, double top,
                                   double right, double bottom) {
    auto clip = [&](auto inside, auto cross) {
        std::vector<Point_F_Rec> out;
        for (size_t i = 0; i < ring.size(); ++i) {
            const Point_F_Rec& a = ring[i];
            const Point_F_Rec& b = ring[(i + 1) % ring.size()];
            const bool ia = inside(a);
            const bool ib = inside(b);
            if (ia) {
                out.push_back(a);
            }
            if (ia != ib) {
                out.push_back(cross(a, b));
            }
        }
        ring = std::move(out);
    };
    auto at_x = [](Point_F_Rec a, Point_F_Rec b, double x) {
        return Point_F_Rec{x, a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x)};
    };
    auto at_y = [](Point_F_Rec a, Point_F_Rec b, double y) {
        return Point_F_Rec{a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y), y};
    };
    clip([&](Point_F_Rec p) { return p.x >= left; },
         [&](Point_F_Rec a, Point_F_Rec b) { return at_x(a, b, left); });
    clip([&](Point_F_Rec p) { return p.x <= right; },
         [&](Point_F_Rec a, Point_F_Rec b) { return at_x(a, b, right); });
    clip([&](Point_F_Rec p) { return p.y >= top; },
         [&](Point_F_Rec a, Point_F_Rec b) { return at_y(a, b, top); });
    clip([&](Point_F_Rec p) { return p.y <= bottom; },
         [&](Point_F_Rec a, Point_F_Rec b) { return at_y(a, b, bottom); });
    return ring;
}

// The ring moved inward by d pixels, each point along the mean of its two edges' inward
// normals, point for point, closed by repeating its first point.
std::vector<Point_F_Rec> Inner_Line(const std::vector<Point_F_Rec>& pts, double d) {
    const size_t n = pts.size();
    if (n < 3) {
        return {};
    }
    double area2 = 0;
    for (size_t i = 0; i < n; ++i) {
        area2 += pts[i].x * pts[(i + 1) % n].y - pts[(i + 1) % n].x * pts[i].y;
    }
    // With y growing downward a positive area runs clockwise on the screen, and the
    // inside lies to the right of each edge.
    const double side = area2 > 0 ? 1 : -1;
    // Each edge's inward normal; an edge of no length takes the one before it.
    std::vector<Point_F_Rec> normals(n);
    Point_F_Rec last{0, 0};
    for (size_t k = 0; k < 2 * n; ++k) {
        const size_t i = k % n;
        const Point_F_Rec e = Sub(pts[(i + 1) % n], pts[i]);
        const double len = Length(e);
        if (len > 1e-9) {
            last = {-e.y / len * side, e.x / len * side};
        }
        normals[i] = last;
    }
    std::vector<Point_F_Rec> line;
    line.reserve(n + 1);
    for (size_t i = 0; i < n; ++i) {
        const Point_F_Rec after = normals[i];
        Point_F_Rec normal = Add(normals[(i + n - 1) % n], after);
        const double len = Length(normal);
        normal = len > 1e-9 ? Mul(normal, 1 / len) : after;
        const double cos_half = std::max(0.5, normal.x * after.x + normal.y * after.y);
        line.push_back(Add(pts[i], Mul(normal, d / cos_half)));
    }
    line.push_back(line.front());
    return line;
}

// Splits a cut ring (and its band, point for point) into the open lines that can show:
// every edge but those the cut laid along the cutting rectangle, outside the view.
void Visible_Pieces(const std::vector<Point_F_Rec>& ring, const std::vector<Point_F_Rec>& band,
                    const Diagram_View_Rec& view, Diagram_Airspace_Rec& shape) {
    const size_t n = ring.size();
    auto on_cut = [&](const Point_F_Rec& a, const Point_F_Rec& b) {
        const double left = -Clip_Margin_Px;
        const double top = -Clip_Margin_Px;
        const double right = view.width + Clip_Margin_Px;
        const double bottom = view.height + Clip_Margin_Px;
        auto near = [](double u, double v) { return std::abs(u - v) < 1e-6; };
        return (near(a.x, left) && near(b.x, left)) || (near(a.x, right) && near(b.x, right)) ||
               (near(a.y, top) && near(b.y, top)) || (near(a.y, bottom) && near(b.y, bottom));
    };
    // Start just after an edge on the cut, so that no piece wraps round the ring's start.
    size_t start = 0;
    for (size_t i = 0; i < n; ++i) {
        if (on_cut(ring[i], ring[(i + 1) % n])) {
            start = (i + 1) % n;
            break;
        }
    }
    const bool with_band = band.size() == n + 1;
    std::vector<Point_F_Rec> piece;
    std::vector<Point_F_Rec> band_piece;
    auto finish = [&] {
        if (piece.size() >= 2) {
            shape.outline.push_back(std::move(piece));
            if (with_band) {
                shape.band.push_back(std::move(band_piece));
            }
        }
        piece.clear();
        band_piece.clear();
    };
    for (size_t k = 0; k < n; ++k) {
        const size_t i = (start + k) % n;
        const size_t j = (i + 1) % n;
        if (on_cut(ring[i], ring[j])) {
            finish();
            continue;
        }
        if (piece.empty()) {
            piece.push_back(ring[i]);
            if (with_band) {
                band_piece.push_back(band[i]);
            }
        }
        piece.push_back(ring[j]);
        if (with_band) {
            band_piece.push_back(band[j]);
        }
    }
    finish();
}

// The width of the shading inside class B, C and D outlines.
constexpr double Airspace_Band_Px = 10;

struct Airspace_Label_Site {
    std::vector<Point_F_Rec> ring; // unclipped, pixels
    size_t index;
};

void Layout_Airspaces(Layout_State& s, std::vector<Airspace_Label_Site>& sites) {
    const Diagram_View_Rec& view = s.view;
    for (size_t i = 0; i < s.source.airspaces.size(); ++i) {
        const Airspace_Rec& airspace = s.source.airspaces[i];
        const Airspace_Style style = Style_Of(airspace.class_text);
        for (const std::vector<Local_Point>& local : Airspace_Rings(view, airspace)) {
            if (local.size() < 3) {
                continue;
            }
            std::vector<Point_F_Rec> ring;
            ring.reserve(local.size());
            for (const Local_Point& p : local) {
                ring.push_back(Diagram_Metres_To_Pixel(view, p.east, p.north));
            }
            std::vector<Point_F_Rec> clipped =
                Clip_Ring(ring, -Clip_Margin_Px, -Clip_Margin_Px, view.width + Clip_Margin_Px,
                          view.height + Clip_Margin_Px);
            if (clipped.size() < 3) {
                continue;
            }
            Diagram_Airspace_Rec shape{style, {}, {}, 0};
            std::vector<Point_F_Rec> band;
            if (style == Airspace_Style::Class_B || style == Airspace_Style::Class_C ||
                style == Airspace_Style::Class_D) {
                band = Inner_Line(clipped, Airspace_Band_Px / 2);
                shape.band_px = Airspace_Band_Px;
            }
            Visible_Pieces(clipped, band, view, shape);
            if (!shape.outline.empty()) {
                s.layout.airspaces.push_back(std::move(shape));
            }
            sites.push_back({std::move(ring), i});
        }
    }
}

void Place_Airspace_Texts(Layout_State& s, const std::vector<Airspace_Label_Site>& sites) {
    std::vector<bool> labelled(s.source.airspaces.size(), false);
    const double inset = 24;
    for (const Airspace_Label_Site& site : sites) {
        if (labelled[site.index]) {
            continue;
        }
        const Airspace_Rec& a = s.source.airspaces[site.index];
        const Airspace_Style style = Style_Of(a.class_text);
        std::vector<std::pair<std::string, Label_Role>> lines;
        lines.emplace_back(Class_Words(style, a.class_text), Label_Role::Airspace_Text);
        const std::string& name = a.region_name.empty() ? a.facility_name : a.region_name;
        if (!name.empty()) {
            lines.emplace_back(name, Label_Role::Airspace_Text);
        }
        lines.emplace_back(Band_Text(a.floor_alt, a.ceiling_alt), Label_Role::Airspace_Text);
        if (std::string freqs = Airspace_Frequencies(a.freq_text); !freqs.empty()) {
            lines.emplace_back(freqs, Label_Role::Airspace_Text);
        }
        const Text_Block_Rec block = Measure_Block(s.metrics, std::move(lines));
        // The ring's middle, to tell inside from outside near the outline.
        Point_F_Rec middle{0, 0};
        for (const Point_F_Rec& p : site.ring) {
            middle = Add(middle, p);
        }
        middle = Mul(middle, 1.0 / static_cast<double>(site.ring.size()));
        // Points of the outline well inside the view, a dozen spread along it.
        std::vector<size_t> seen;
        for (size_t k = 0; k < site.ring.size(); ++k) {
            const Point_F_Rec& p = site.ring[k];
            if (p.x > inset && p.x < s.view.width - inset && p.y > inset &&
                p.y < s.view.height - inset) {
                seen.push_back(k);
            }
        }
        std::vector<Point_F_Rec> centres;
        const size_t step = std::max<size_t>(1, seen.size() / 12);
        const double reach = std::hypot(block.width, block.height) / 2 + Gap_Px + Label_Pad_Px;
        for (size_t k = 0; k < seen.size(); k += step) {
            const Point_F_Rec p = site.ring[seen[k]];
            const Point_F_Rec inward = Sub(middle, p);
            const double len = Length(inward);
            if (len > 1e-9) {
                centres.push_back(Add(p, Mul(inward, reach / len)));
            }
        }
        labelled[site.index] = s.Place_Block(block, centres, 0);
    }
}

// ---------------------------------------------------------------- aircraft

void Layout_Aircraft(Layout_State& s) {
    const Diagram_Aircraft_Rec& aircraft = s.source.aircraft;
    if (!aircraft.shown) {
        return;
    }
    // An aeroplane seen from above, nose up, 34 pixels from nose to tail and as wide across
    // its wings.
    static const Point_F_Rec shape[] = {{0, -17}, {2.2, -14}, {2.5, -5},  {17, 2},   {17, 5.5},
                                        {2.5, 2}, {1.8, 11},  {7, 15},    {7, 17},   {0, 15.5},
                                        {-7, 17}, {-7, 15},   {-1.8, 11}, {-2.5, 2}, {-17, 5.5},
                                        {-17, 2}, {-2.5, -5}, {-2.2, -14}};
    const Point_F_Rec c = s.Pixel(aircraft.lat, aircraft.lon);
    // A heading past 180 comes negative; the sine and cosine take it as it is.
    const double a = aircraft.heading * Degrees_To_Radians;
    const double cs = std::cos(a);
    const double sn = std::sin(a);
    for (const Point_F_Rec& p : shape) {
        s.layout.aircraft.push_back({c.x + p.x * cs - p.y * sn, c.y + p.x * sn + p.y * cs});
    }
    s.placer.Add_Obstacle({c, 18, 18, 0}, Aircraft_Owner);
}

} // namespace

// ---------------------------------------------------------------- text blocks

double Role_Size(Label_Role role) {
    switch (role) {
    case Label_Role::Runway_Number:
        return Runway_Number_Px;
    case Label_Role::Runway_Heading:
        return Heading_Px;
    case Label_Role::Taxiway_Name:
        return Taxiway_Name_Px;
    case Label_Role::Gate_Name:
    case Label_Role::Parking_Name:
    case Label_Role::Gate_Name_Inside:
    case Label_Role::Parking_Name_Inside:
        return Spot_Name_Px;
    case Label_Role::Title:
        return Title_Px;
    case Label_Role::Subtitle:
        return Subtitle_Px;
    case Label_Role::Panel_Text:
        return Panel_Px;
    case Label_Role::Tick_Text:
        return Tick_Px;
    case Label_Role::Kit_Heading:
        return Kit_Heading_Px;
    case Label_Role::Kit_Column:
    case Label_Role::Kit_Cell:
        return Kit_Text_Px;
    default:
        return Detail_Px;
    }
}

bool Role_Bold(Label_Role role) {
    return role == Label_Role::Runway_Number || role == Label_Role::Taxiway_Name ||
           role == Label_Role::Title || role == Label_Role::Gate_Name ||
           role == Label_Role::Gate_Name_Inside || role == Label_Role::Kit_Heading ||
           role == Label_Role::Kit_Column;
}

Text_Style_Rec Diagram_Text_Style(Label_Role role, const Diagram_Palette_Rec& palette) {
    Text_Style_Rec style;
    style.size_px = Role_Size(role);
    style.bold = Role_Bold(role);
    const bool muted = role == Label_Role::Runway_Size || role == Label_Role::Tick_Text ||
                       role == Label_Role::Runway_Heading || role == Label_Role::Parking_Name ||
                       role == Label_Role::Kit_Column;
    style.color = role == Label_Role::ILS_Text           ? palette.ils
                  : role == Label_Role::Gate_Name_Inside ? palette.gate_text
                  : muted                                ? palette.muted_text
                                                         : palette.text;
    // Labels on the chart stand out from what lies under them; the frame's texts sit on
    // their panels, and a name inside its spot on the spot's fill, and need no halo.
    const bool on_chart =
        (role <= Label_Role::Airspace_Text && role != Label_Role::Gate_Name_Inside &&
         role != Label_Role::Parking_Name_Inside) ||
        role == Label_Role::Tick_Text;
    if (on_chart) {
        style.halo = palette.halo;
        style.halo_px = Halo_Px;
    }
    return style;
}

Text_Block_Rec Measure_Block(const Text_Metrics& metrics,
                             std::vector<std::pair<std::string, Label_Role>> lines) {
    Text_Block_Rec block;
    for (auto& [text, role] : lines) {
        const Text_Extent_Rec extent = metrics.Measure_Text(text, Role_Size(role), Role_Bold(role));
        block.width = std::max(block.width, extent.width);
        block.height += extent.Height();
        block.lines.push_back({std::move(text), role, extent});
    }
    return block;
}

Label_Box_Rec Block_Box(const Text_Block_Rec& block, Point_F_Rec centre, double angle_deg,
                        double pad) {
    return {centre, block.width / 2 + pad, block.height / 2 + pad, angle_deg};
}

void Emit_Block(const Text_Block_Rec& block, Point_F_Rec centre, double angle_deg,
                std::vector<Diagram_Text_Rec>& texts) {
    const double a = angle_deg * Degrees_To_Radians;
    const Point_F_Rec down{-std::sin(a), std::cos(a)};
    double y = -block.height / 2;
    for (const Text_Block_Rec::Line& line : block.lines) {
        const double h = line.extent.Height();
        texts.push_back({line.text, Add(centre, Mul(down, y + h / 2)), angle_deg, line.role});
        y += h;
    }
}

void Layout_Diagram(const Diagram_Source_Rec& source, const Diagram_View_Rec& view,
                    const Diagram_Options_Rec& options, const Text_Metrics& metrics,
                    Diagram_Layout_Rec& layout) {
    layout = Diagram_Layout_Rec{};
    layout.view = view;
    layout.night = options.night;
    if (!(view.px_per_metre > 0) || view.width <= 0 || view.height <= 0) {
        return;
    }
    Layout_State s{source,  view,   options,
                   metrics, layout, Label_Placer(1, 1, view.width - 1, view.height - 1)};

    if (options.show_frame) {
        Layout_Diagram_Frame(source, view, metrics, s.placer, layout);
    }
    std::vector<Airspace_Label_Site> airspace_sites;
    if (options.show_airspace) {
        Layout_Airspaces(s, airspace_sites);
    }
    std::vector<Segment_Px> named;
    std::vector<std::string_view> names;
    if (options.show_taxiways) {
        Layout_Taxiways(s, named, names);
    }
    std::vector<size_t> spot_index;
    if (options.show_gates) {
        Layout_Spots(s, spot_index);
    }
    std::vector<Runway_Geometry> runways;
    Layout_Runways(s, runways);
    std::vector<Feather_Geometry> feathers;
    if (options.show_ils) {
        Layout_Feathers(s, feathers);
    }
    Layout_Aircraft(s);

    // Labels by importance: runway numbers, taxiway names, gates, then the rest.
    Place_Runway_Numbers(s, runways);
    Place_Taxiway_Names(s, named, names);
    Place_Spot_Names(s, spot_index, true);
    Place_Runway_Sizes(s, runways);
    Place_ILS_Texts(s, feathers);
    Place_Spot_Names(s, spot_index, false);
    Place_Airspace_Texts(s, airspace_sites);
}

void Draw_Diagram(Surface& surface, const Diagram_Source_Rec& source, const Diagram_View_Rec& view,
                  const Diagram_Options_Rec& options) {
    Diagram_Layout_Rec layout;
    Layout_Diagram(source, view, options, surface, layout);
    Paint_Diagram(layout, surface);
}

} // namespace quilmark
