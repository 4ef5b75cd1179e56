#include "chart/trip_kit.h"

#include <algorithm>
#include <array>

#include "chart/chart_records.h"
#include "chart/diagram_style.h"
#include "geo/magnetic_variation.h"

namespace quilmark {

std::vector<Kit_Table_Rec> Airport_Data_Tables(const Airport_Rec& airport,
                                               const Magvar_Grid& grid) {
    (void)grid;
    std::vector<Kit_Table_Rec> tables;
    Kit_Table_Rec runways{
        "RUNWAYS", {"RUNWAY", "LENGTH \xD7 WIDTH (FT)", "HEADINGS (MAG)", "ELEVATION (FT)"}, {}};
    for (size_t i = 0; i < Filled_Count(airport.runways, airport.runway_count); ++i) {
        const Runway_Rec& r = airport.runways[i];
        runways.rows.push_back({r.end1_name + "/" + r.end2_name,
                                Runway_Size_Text(r.length_raw, r.width_raw),
                                Heading_Text(r.end1_heading) + " / " + Heading_Text(r.end2_heading),
                                Feet_Text(r.altitude_ft)});
    }
    Kit_Table_Rec ils{"ILS", {"IDENT", "FREQUENCY (MHZ)", "COURSE (MAG)"}, {}};
    for (size_t i = 0; i < Filled_Count(airport.ils, airport.ils_count); ++i) {
        const ILS_Rec& l = airport.ils[i];
        ils.rows.push_back({l.ils_name, Frequency_Text(l.frequency), Heading_Text(l.mag_heading)});
    }
    Kit_Table_Rec frequencies{"FREQUENCIES", {"SERVICE", "MHZ"}, {}};
    const std::pair<const char*, const std::string*> services[] = {
        {"ATIS", &airport.atis_freq},           {"CLEARANCE DELIVERY", &airport.clearance_freq},
        {"GROUND", &airport.ground_freq},       {"TOWER", &airport.tower_freq},
        {"DEPARTURE", &airport.departure_freq}, {"APPROACH", &airport.approach_freq},
        {"CENTER", &airport.center_freq}};
    for (const auto& [service, value] : services) {
        if (!value->empty()) {
            frequencies.rows.push_back({service, Frequency_Text(*value)});
        }
    }
    Kit_Table_Rec parking{"PARKING", {"SPOT", "RADIUS (FT)"}, {}};
    for (size_t i = 0; i < Filled_Count(airport.parkings, airport.parking_count); ++i) {
        const Parking_Rec& p = airport.parkings[i];
        parking.rows.push_back({p.spot_name, std::to_string(p.radius_ft)});
    }
    for (Kit_Table_Rec* t : {&runways, &ils, &frequencies, &parking}) {
        if (!t->rows.empty()) {
            tables.push_back(std::move(*t));
        }
    }
    return tables;
}

namespace {

// Where column c begins, from the left of its table.
double Column_Offset(const std::vector<double>& widths, size_t c, double gap) {
    double x = 0;
    for (size_t k = 0; k < c && k < widths.size(); ++k) {
        x += widths[k] + gap;
    }
    return x;
}

constexpr double Page_Margin_Px = 48;
constexpr double Column_Gap_Px = 28;
constexpr double Row_Gap_Px = 5;
constexpr double Table_Gap_Px = 18;

// Lays out the data pages of one airport, starting a new page whenever the next row
// would run past the bottom margin.
struct Data_Pages {
    const Text_Metrics& metrics;
    size_t airport_index;
    std::vector<Kit_Page_Rec>& pages;
    double y = 0;
    const double bottom = Kit_Page_Height - Page_Margin_Px;
    const double right = Kit_Page_Width - Page_Margin_Px;

    double Height(Label_Role role) const {
        return metrics.Measure_Text("Ag", Role_Size(role), Role_Bold(role)).Height();
    }
    double Width(const std::string& text, Label_Role role) const {
        return metrics.Measure_Text(text, Role_Size(role), Role_Bold(role)).width;
    }
    void Text(const std::string& text, Label_Role role, double x, double top) {
        pages.back().texts.push_back(
            {text, {x + Width(text, role) / 2, top + Height(role) / 2}, 0, role});
    }
    void Rule(double x0, double x1, double at) {
        pages.back().rules.push_back({x0, at});
        pages.back().rules.push_back({x1, at});
    }

    void New_Page(const Airport_Rec& airport, const Magvar_Grid& grid) {
        pages.push_back({airport_index, false, {}, {}});
        y = Page_Margin_Px;
        const std::string title =
            airport.name.empty() ? airport.ident : airport.ident + "  " + airport.name;
        Text(title, Label_Role::Title, Page_Margin_Px, y);
        y += Height(Label_Role::Title);
        Text("AIRPORT DATA   ELEV " + Feet_Text(Field_Elevation(airport)) + " FT   VAR " +
                 Variation_Text(Variation_Degrees(grid, airport.lat, airport.lon)),
             Label_Role::Subtitle, Page_Margin_Px, y);
        y += Height(Label_Role::Subtitle) + 6;
        Rule(Page_Margin_Px, right, y);
        y += Table_Gap_Px;
    }

    void Table(const Kit_Table_Rec& table, bool wide_list, const Airport_Rec& airport,
               const Magvar_Grid& grid) {
        std::vector<double> widths(table.columns.size(), 0);
        for (size_t c = 0; c < table.columns.size(); ++c) {
            widths[c] = Width(table.columns[c], Label_Role::Kit_Column);
            for (const auto& row : table.rows) {
                if (c < row.size()) {
                    widths[c] = std::max(widths[c], Width(row[c], Label_Role::Kit_Cell));
                }
            }
        }
        double unit = 0;
        for (double w : widths) {
            unit += w + Column_Gap_Px;
        }
        // A long list of two short columns goes across the page in several groups.
        const int groups =
            wide_list ? std::max(1, static_cast<int>((right - Page_Margin_Px + Column_Gap_Px) /
                                                     (unit + Column_Gap_Px)))
                      : 1;
        const double row_h = Height(Label_Role::Kit_Cell) + Row_Gap_Px;
        const double head_h =
            Height(Label_Role::Kit_Heading) + 4 + Height(Label_Role::Kit_Column) + Row_Gap_Px + 3;
        size_t next = 0;
        bool continued = false;
        while (next < table.rows.size()) {
            if (y + head_h + row_h > bottom) {
                New_Page(airport, grid);
            }
            Text(continued ? table.title + " (CONTINUED)" : table.title, Label_Role::Kit_Heading,
                 Page_Margin_Px, y);
            y += Height(Label_Role::Kit_Heading) + 4;
            const auto rows_fit = std::max<size_t>(
                1, static_cast<size_t>(
                       (bottom - y - Height(Label_Role::Kit_Column) - Row_Gap_Px - 3) / row_h));
            const size_t left = table.rows.size() - next;
            const size_t per_group = std::min(rows_fit, (left + groups - 1) / groups);
            double used_rows = 0;
            for (int g = 0; g < groups && next < table.rows.size(); ++g) {
                double x = Page_Margin_Px + g * (unit + Column_Gap_Px);
                double row_y = y;
                for (size_t c = 0; c < table.columns.size(); ++c) {
                    Text(table.columns[c], Label_Role::Kit_Column,
                         x + Column_Offset(widths, c, Column_Gap_Px), row_y);
                }
                row_y += Height(Label_Role::Kit_Column) + Row_Gap_Px;
                Rule(x, x + unit - Column_Gap_Px, row_y - Row_Gap_Px / 2);
                row_y += 3;
                size_t n = 0;
                for (; n < per_group && next < table.rows.size(); ++n, ++next) {
                    const auto& row = table.rows[next];
                    for (size_t c = 0; c < row.size() && c < widths.size(); ++c) {
                        Text(row[c], Label_Role::Kit_Cell,
                             x + Column_Offset(widths, c, Column_Gap_Px), row_y);
                    }
                    row_y += row_h;
                }
                used_rows = std::max(used_rows, static_cast<double>(n));
            }
            y += Height(Label_Role::Kit_Column) + Row_Gap_Px + 3 + used_rows * row_h + Table_Gap_Px;
            continued = true;
        }
    }
};

} // namespace

std::vector<Kit_Page_Rec> Layout_Trip_Kit(std::span<const Kit_Airport_Rec> airports,
                                          const Magvar_Grid& grid, const Text_Metrics& metrics) {
    std::vector<Kit_Page_Rec> pages;
    for (size_t i = 0; i < airports.size(); ++i) {
        const Airport_Rec& airport = airports[i].airport;
        pages.push_back({i, true, {}, {}});
        Data_Pages data{metrics, i, pages};
        data.New_Page(airport, grid);
        for (const Kit_Table_Rec& table : Airport_Data_Tables(airport, grid)) {
            data.Table(table, table.title == "PARKING", airport, grid);
        }
    }
    return pages;
}

void Draw_Kit_Page(Surface& surface, const Kit_Page_Rec& page,
                   std::span<const Kit_Airport_Rec> airports, const Magvar_Grid& grid) {
    if (page.airport >= airports.size()) {
        return;
    }
    const Kit_Airport_Rec& kit = airports[page.airport];
    if (page.diagram) {
        const Diagram_Source_Rec source{kit.airport, kit.airspaces, grid, {}};
        const Diagram_View_Rec view =
            Fit_Diagram_View(kit.airport, Kit_Page_Width, Kit_Page_Height,
                             Diagram_Frame_Insets(Kit_Page_Width, Kit_Page_Height));
        Draw_Diagram(surface, source, view, Diagram_Options_Rec{});
        return;
    }
    const Diagram_Palette_Rec& palette = Diagram_Day_Palette();
    const std::array<Point_F_Rec, 4> whole = {Point_F_Rec{0, 0}, Point_F_Rec{Kit_Page_Width, 0},
                                              Point_F_Rec{Kit_Page_Width, Kit_Page_Height},
                                              Point_F_Rec{0, Kit_Page_Height}};
    surface.Draw_Polygon(whole, palette.background, Stroke_Rec{});
    surface.Draw_Segments(page.rules, Stroke_Rec{palette.panel_edge, 1, {}, false});
    for (const Diagram_Text_Rec& t : page.texts) {
        surface.Draw_Text(t.centre, t.angle_deg, t.text, Diagram_Text_Style(t.role, palette));
    }
}

} // namespace quilmark
