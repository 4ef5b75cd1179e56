#include "chart/diagram_frame.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "chart/chart_records.h"
#include "chart/diagram_style.h"
#include "geo/geodesy.h"
#include "geo/magnetic_variation.h"
#include "state/airport_model.h"
#include "state/airspace_model.h"

namespace quilmark {

namespace {

constexpr double Margin_Px = 8;
constexpr double Pad_Px = 6;
constexpr double Tick_Length_Px = 7;
constexpr double North_Arrow_Px = 46;
constexpr double Scale_Bar_Height_Px = 5;
// Ticks stand at least this far apart on the screen.
constexpr double Min_Tick_Spacing_Px = 110;

struct Frame_State {
    const Diagram_View_Rec& view;
    const Text_Metrics& metrics;
    Label_Placer& placer;
    Diagram_Layout_Rec& layout;

    Text_Extent_Rec Measure(const std::string& text, Label_Role role) const {
        return metrics.Measure_Text(text, Role_Size(role), Role_Bold(role));
    }
    // A line of the frame with its left end (or right end, or middle) at x and its box's
    // top at top.
    void Text_At(const std::string& text, Label_Role role, double x, double top, double align) {
        const Text_Extent_Rec e = Measure(text, role);
        layout.frame_texts.push_back(
            {text, {x + (0.5 - align) * e.width, top + e.Height() / 2}, 0, role});
    }
    // Keeps a panel if it finds room clear of the panels before it.
    bool Panel(double left, double top, double right, double bottom) {
        const Label_Box_Rec box{
            {(left + right) / 2, (top + bottom) / 2}, (right - left) / 2, (bottom - top) / 2, 0};
        if (!placer.Fits(box)) {
            return false;
        }
        placer.Add_Obstacle(box);
        layout.panels.push_back({left, top, right, bottom});
        return true;
    }
};

constexpr double Align_Left = 0;
constexpr double Align_Centre = 0.5;
constexpr double Align_Right = 1;

double Title_Panel(Frame_State& f, const Airport_Rec& airport) {
    const std::string title =
        airport.name.empty() ? airport.ident : airport.ident + "  " + airport.name;
    const std::string subtitle =
        "AIRPORT DIAGRAM   ELEV " + Feet_Text(Field_Elevation(airport)) + " FT";
    const Text_Extent_Rec t = f.Measure(title, Label_Role::Title);
    const Text_Extent_Rec s = f.Measure(subtitle, Label_Role::Subtitle);
    const double right = Margin_Px + 2 * Pad_Px + std::max(t.width, s.width);
    const double bottom = Margin_Px + 2 * Pad_Px + t.Height() + s.Height();
    if (!f.Panel(Margin_Px, Margin_Px, right, bottom)) {
        return Margin_Px;
    }
    f.Text_At(title, Label_Role::Title, Margin_Px + Pad_Px, Margin_Px + Pad_Px, Align_Left);
    f.Text_At(subtitle, Label_Role::Subtitle, Margin_Px + Pad_Px, Margin_Px + Pad_Px + t.Height(),
              Align_Left);
    return bottom;
}

void Frequency_Panel(Frame_State& f, const Airport_Rec& airport) {
    const std::pair<const char*, const std::string*> rows[] = {
        {"ATIS", &airport.atis_freq},           {"CLNC DEL", &airport.clearance_freq},
        {"GROUND", &airport.ground_freq},       {"TOWER", &airport.tower_freq},
        {"DEPARTURE", &airport.departure_freq}, {"APPROACH", &airport.approach_freq},
        {"CENTER", &airport.center_freq}};
    double label_w = 0;
    double value_w = 0;
    double row_h = 0;
    int count = 0;
    for (const auto& [label, value] : rows) {
        if (value->empty()) {
            continue;
        }
        const Text_Extent_Rec l = f.Measure(label, Label_Role::Panel_Text);
        const Text_Extent_Rec v = f.Measure(Frequency_Text(*value), Label_Role::Panel_Text);
        label_w = std::max(label_w, l.width);
        value_w = std::max(value_w, v.width);
        row_h = std::max(row_h, std::max(l.Height(), v.Height()));
        ++count;
    }
    if (count == 0) {
        return;
    }
    const double right = f.view.width - Margin_Px;
    const double left = right - 2 * Pad_Px - label_w - 16 - value_w;
    const double top = Margin_Px;
    if (!f.Panel(left, top, right, top + 2 * Pad_Px + count * row_h)) {
        return;
    }
    double y = top + Pad_Px;
    for (const auto& [label, value] : rows) {
        if (value->empty()) {
            continue;
        }
        f.Text_At(label, Label_Role::Panel_Text, left + Pad_Px, y, Align_Left);
        f.Text_At(Frequency_Text(*value), Label_Role::Panel_Text, right - Pad_Px, y, Align_Right);
        y += row_h;
    }
}

void North_Arrow(Frame_State& f, const Diagram_Source_Rec& source, double top) {
    const int variation = Variation_Degrees(source.grid, source.airport.lat, source.airport.lon);
    const std::string var_text = "VAR " + Variation_Text(variation);
    const Text_Extent_Rec n = f.Measure("N", Label_Role::Subtitle);
    const Text_Extent_Rec v = f.Measure(var_text, Label_Role::Panel_Text);
    const double width = std::max(64.0, v.width + 2 * Pad_Px);
    const double height = Pad_Px + n.Height() + North_Arrow_Px + 4 + v.Height() + Pad_Px;
    const double left = Margin_Px;
    top += Margin_Px;
    if (!f.Panel(left, top, left + width, top + height)) {
        return;
    }
    Diagram_North_Arrow_Rec& arrow = f.layout.north_arrow;
    arrow.variation = variation;
    arrow.length_px = North_Arrow_Px;
    arrow.base = {left + width / 2, top + Pad_Px + n.Height() + North_Arrow_Px};
    arrow.true_tip = {arrow.base.x, arrow.base.y - North_Arrow_Px};
    // Magnetic north lies east of true north by an east variation.
    const double a = variation * Degrees_To_Radians;
    arrow.magnetic_tip = {arrow.base.x + 0.85 * North_Arrow_Px * std::sin(a),
                          arrow.base.y - 0.85 * North_Arrow_Px * std::cos(a)};
    f.layout.has_north_arrow = true;
    f.Text_At("N", Label_Role::Subtitle, arrow.base.x, top + Pad_Px, Align_Centre);
    f.Text_At(var_text, Label_Role::Panel_Text, arrow.base.x, arrow.base.y + 4, Align_Centre);
}

// The largest of 1, 2 and 5 times a power of ten that is not above x.
double Round_Down_Nice(double x) {
    if (!(x > 0)) {
        return 0;
    }
    const double power = std::pow(10.0, std::floor(std::log10(x)));
    for (double k : {5.0, 2.0, 1.0}) {
        if (k * power <= x * (1 + 1e-9)) {
            return k * power;
        }
    }
    return power;
}

std::string Distance_Text(double distance, const std::string& unit) {
    if (distance >= 1 && distance == std::floor(distance)) {
        return Feet_Text(static_cast<int32_t>(distance)) + ' ' + unit;
    }
    char digits[32];
    std::snprintf(digits, sizeof digits, "%g", distance);
    return std::string(digits) + ' ' + unit;
}

void Scale_Bars(Frame_State& f) {
    const double ppm = f.view.px_per_metre;
    const double longest = std::clamp(f.view.width * 0.18, 70.0, 200.0);
    struct Unit {
        const char* name;
        double metres;
    };
    // Feet and metres near the ground; nautical miles and kilometres once a bar would
    // stand for more than a mile.
    const bool far = Round_Down_Nice(longest / ppm / Metres_Per_Foot) > 5000;
    const Unit units[2] = {far ? Unit{"NM", Metres_Per_Nautical_Mile} : Unit{"FT", Metres_Per_Foot},
                           far ? Unit{"KM", 1000.0} : Unit{"M", 1.0}};
    std::vector<Diagram_Scale_Bar_Rec> bars;
    double text_w = 0;
    double row_h = 0;
    double bar_w = 0;
    for (const Unit& u : units) {
        Diagram_Scale_Bar_Rec bar;
        bar.unit = u.name;
        bar.unit_metres = u.metres;
        bar.distance = Round_Down_Nice(longest / ppm / u.metres);
        bar.length_px = bar.distance * u.metres * ppm;
        const Text_Extent_Rec e =
            f.Measure(Distance_Text(bar.distance, bar.unit), Label_Role::Scale_Text);
        text_w = std::max(text_w, e.width);
        row_h = std::max(row_h, e.Height() + 2);
        bar_w = std::max(bar_w, bar.length_px);
        bars.push_back(bar);
    }
    const double left = Margin_Px;
    const double bottom = f.view.height - Margin_Px;
    const double top = bottom - 2 * Pad_Px - 2 * row_h;
    if (!f.Panel(left, top, left + 3 * Pad_Px + bar_w + text_w, bottom)) {
        return;
    }
    double y = top + Pad_Px;
    for (Diagram_Scale_Bar_Rec& bar : bars) {
        bar.start = {left + Pad_Px, y + row_h / 2 - Scale_Bar_Height_Px / 2};
        f.Text_At(Distance_Text(bar.distance, bar.unit), Label_Role::Scale_Text,
                  bar.start.x + bar.length_px + Pad_Px, y + 1, Align_Left);
        f.layout.scale_bars.push_back(bar);
        y += row_h;
    }
}

void Legend(Frame_State& f, const Diagram_Source_Rec& source) {
    const Airport_Rec& airport = source.airport;
    bool taxiway = false;
    for (size_t i = 0; i < Filled_Count(airport.taxi_paths, airport.taxi_path_count); ++i) {
        taxiway = taxiway || airport.taxi_paths[i].path_kind == Path_Taxiway;
    }
    bool gate = false;
    bool parking = false;
    for (size_t i = 0; i < Filled_Count(airport.parkings, airport.parking_count); ++i) {
        (Is_Gate(airport.parkings[i].spot_name) ? gate : parking) = true;
    }
    bool class_b = false, class_c = false, class_d = false;
    for (const Airspace_Rec& a : source.airspaces) {
        class_b = class_b || a.class_text == "Airspace Class B";
        class_c = class_c || a.class_text == "Airspace Class C";
        class_d = class_d || a.class_text == "Airspace Class D";
    }
    const std::pair<Legend_Symbol, const char*> all[] = {
        {Legend_Symbol::Runway, airport.runway_count > 0 ? "RUNWAY" : nullptr},
        {Legend_Symbol::Taxiway, taxiway ? "TAXIWAY" : nullptr},
        {Legend_Symbol::Gate, gate ? "GATE" : nullptr},
        {Legend_Symbol::Parking, parking ? "PARKING" : nullptr},
        {Legend_Symbol::ILS, airport.ils_count > 0 ? "ILS" : nullptr},
        {Legend_Symbol::Class_B, class_b ? "CLASS B" : nullptr},
        {Legend_Symbol::Class_C, class_c ? "CLASS C" : nullptr},
        {Legend_Symbol::Class_D, class_d ? "CLASS D" : nullptr}};
    double text_w = 0;
    double row_h = 0;
    int count = 0;
    for (const auto& [symbol, text] : all) {
        if (text != nullptr) {
            const Text_Extent_Rec e = f.Measure(text, Label_Role::Legend_Text);
            text_w = std::max(text_w, e.width);
            row_h = std::max(row_h, e.Height() + 3);
            ++count;
        }
    }
    if (count == 0) {
        return;
    }
    constexpr double Swatch_W = 22;
    const double right = f.view.width - Margin_Px;
    const double bottom = f.view.height - Margin_Px;
    const double left = right - 3 * Pad_Px - Swatch_W - text_w;
    const double top = bottom - 2 * Pad_Px - count * row_h;
    if (!f.Panel(left, top, right, bottom)) {
        return;
    }
    double y = top + Pad_Px;
    for (const auto& [symbol, text] : all) {
        if (text == nullptr) {
            continue;
        }
        const double mid = y + row_h / 2;
        f.layout.legend.push_back(
            {symbol, {left + Pad_Px, mid - 4, left + Pad_Px + Swatch_W, mid + 4}});
        f.Text_At(text, Label_Role::Legend_Text, left + 2 * Pad_Px + Swatch_W, y + 1.5, Align_Left);
        y += row_h;
    }
}

// A latitude or longitude given in minutes of arc: 47°27'N, 122°18.5'W.
std::string Minutes_Text(double minutes, bool latitude) {
    const char hemisphere = latitude ? (minutes < 0 ? 'S' : 'N') : (minutes < 0 ? 'W' : 'E');
    double m = std::abs(minutes);
    int degrees = static_cast<int>(std::floor(m / 60 + 1e-9));
    m = std::max(0.0, m - degrees * 60.0);
    char digits[48];
    if (std::abs(m - std::round(m)) < 1e-6) {
        std::snprintf(digits, sizeof digits, "%d\xB0%02d'%c", degrees,
                      static_cast<int>(std::round(m)), hemisphere);
    } else {
        const int decimals = std::abs(m * 2 - std::round(m * 2)) < 1e-6 ? 1 : 2;
        std::snprintf(digits, sizeof digits, "%d\xB0%0*.*f'%c", degrees, 3 + decimals, decimals, m,
                      hemisphere);
    }
    return digits;
}

// The tick spacing in minutes of arc for a number of pixels to a minute.
double Tick_Minutes(double px_per_minute) {
    for (double minutes : {0.25, 0.5, 1.0, 2.0, 5.0, 10.0, 15.0, 30.0, 60.0, 120.0, 300.0, 600.0}) {
        if (minutes * px_per_minute >= Min_Tick_Spacing_Px) {
            return minutes;
        }
    }
    return 1200;
}

void Ticks(Frame_State& f) {
    const Diagram_View_Rec& view = f.view;
    double top_lat = 0, left_lon = 0, bottom_lat = 0, right_lon = 0;
    Diagram_Pixel_To_Geo(view, {0, 0}, top_lat, left_lon);
    Diagram_Pixel_To_Geo(view, {static_cast<double>(view.width), static_cast<double>(view.height)},
                         bottom_lat, right_lon);
    if (right_lon < left_lon) {
        right_lon += 360; // across the date line
    }
    const double px_per_lat_minute = Metres_Per_Degree / 60 * view.px_per_metre;
    const double px_per_lon_minute =
        px_per_lat_minute * std::cos(view.center_lat * Degrees_To_Radians);
    auto place = [&](const std::string& text, Point_F_Rec centre) {
        const Text_Block_Rec block = Measure_Block(f.metrics, {{text, Label_Role::Tick_Text}});
        const Label_Box_Rec box = Block_Box(block, centre, 0, 1);
        if (f.placer.Place(box)) {
            Emit_Block(block, centre, 0, f.layout.frame_texts);
            f.layout.label_boxes.push_back(box);
        }
    };
    const double w = view.width;
    const double h = view.height;
    const double lat_step = Tick_Minutes(px_per_lat_minute);
    for (double m = std::ceil(bottom_lat * 60 / lat_step) * lat_step; m <= top_lat * 60 && h > 0;
         m += lat_step) {
        const double y = Diagram_Geo_To_Pixel(view, m / 60, view.center_lon).y;
        f.layout.ticks.insert(f.layout.ticks.end(),
                              {{0, y}, {Tick_Length_Px, y}, {w - Tick_Length_Px, y}, {w, y}});
        const std::string text = Minutes_Text(m, true);
        const double tw = f.Measure(text, Label_Role::Tick_Text).width;
        place(text, {Tick_Length_Px + 3 + tw / 2, y});
        place(text, {w - Tick_Length_Px - 3 - tw / 2, y});
    }
    const double lon_step = Tick_Minutes(px_per_lon_minute);
    for (double m = std::ceil(left_lon * 60 / lon_step) * lon_step; m <= right_lon * 60 && w > 0;
         m += lon_step) {
        double lon = m / 60;
        const double x = Diagram_Geo_To_Pixel(view, view.center_lat, lon).x;
        f.layout.ticks.insert(f.layout.ticks.end(),
                              {{x, 0}, {x, Tick_Length_Px}, {x, h - Tick_Length_Px}, {x, h}});
        if (lon >= 180) {
            lon -= 360;
        }
        const std::string text = Minutes_Text(lon * 60, false);
        const double th = f.Measure(text, Label_Role::Tick_Text).Height();
        place(text, {x, Tick_Length_Px + 3 + th / 2});
        place(text, {x, h - Tick_Length_Px - 3 - th / 2});
    }
}

} // namespace

Diagram_Insets_Rec Diagram_Frame_Insets(int32_t width, int32_t height) {
    // The title panel's height at the top; the ticks' labels and the scale at the other
    // edges. Small views keep little room for the frame.
    const double k = std::min(1.0, std::min(width, height) / 500.0);
    return {28 * k, 64 * k, 28 * k, 40 * k};
}

void Layout_Diagram_Frame(const Diagram_Source_Rec& source, const Diagram_View_Rec& view,
                          const Text_Metrics& metrics, Label_Placer& placer,
                          Diagram_Layout_Rec& layout) {
    Frame_State f{view, metrics, placer, layout};
    const double title_bottom = Title_Panel(f, source.airport);
    Frequency_Panel(f, source.airport);
    North_Arrow(f, source, title_bottom);
    Scale_Bars(f);
    Legend(f, source);
    Ticks(f);
}

} // namespace quilmark
