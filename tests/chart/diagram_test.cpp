// The airport diagram and the trip kit, checked on what they draw (a recording surface)
// against the records and against the geodesy routines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <set>

#include "chart/diagram_layout.h"
#include "chart/diagram_style.h"
#include "chart/recording_surface.h"
#include "chart/trip_kit.h"
#include "chart_test_support.h"
#include "geo/geodesy.h"
#include "support/fetched_airports.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

// KSEA, KBFI and KPAE of the sample world as GET AIRPORT leaves them.
class Diagram : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        Work_Dir dir("diagram");
        grid = std::make_unique<Magvar_Grid>();
        airports = std::make_unique<std::vector<Kit_Airport_Rec>>(
            Fetch_Airports(Sample_World_Folder(),
                           {"KSEA (SEATTLE-TACOMA INTL)", "KBFI (BOEING FLD KING CO INTL)",
                            "KPAE (SNOHOMISH CO (PAINE FLD))"},
                           *grid));
    }
    static void TearDownTestSuite() {
        airports.reset();
        grid.reset();
    }
    static const Kit_Airport_Rec& Ksea() { return airports->front(); }

    // The view fitted to KSEA on 1280 by 800, then zoomed about its middle.
    static Diagram_View_Rec Ksea_View(double zoom) {
        Diagram_View_Rec view =
            Fit_Diagram_View(Ksea().airport, 1280, 800, Diagram_Frame_Insets(1280, 800));
        Zoom_Diagram_About(view, zoom, {640, 400});
        return view;
    }

    static Recording_Surface Draw(const Diagram_View_Rec& view, Diagram_Options_Rec options = {},
                                  Diagram_Aircraft_Rec aircraft = {}) {
        Recording_Surface s;
        Draw_Diagram(s, {Ksea().airport, Ksea().airspaces, *grid, aircraft}, view, options);
        return s;
    }

    static inline std::unique_ptr<Magvar_Grid> grid;
    static inline std::unique_ptr<std::vector<Kit_Airport_Rec>> airports;
};

double Distance(Point_F_Rec a, Point_F_Rec b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

// Metres between two points on the ground, by the great-circle routines.
double Ground_Metres(double lat1, double lon1, double lat2, double lon2) {
    return Central_Angle(lat1, lon1, lat2, lon2) * Radians_To_Nautical_Miles *
           Metres_Per_Nautical_Mile;
}

// A drawn text's box, by the recording surface's rule for its measures.
struct Drawn_Text {
    std::string text;
    std::array<Point_F_Rec, 4> corners;
};

std::vector<Drawn_Text> Drawn_Texts(const Recording_Surface& s) {
    std::vector<Drawn_Text> texts;
    for (const Surface_Op_Rec& op : s.ops) {
        if (op.op != Surface_Op::Text) {
            continue;
        }
        const Text_Extent_Rec e = s.Measure_Text(op.text, op.style.size_px, op.style.bold);
        const double a = op.size * Pi / 180;
        const Point_F_Rec along{std::cos(a) * e.width / 2, std::sin(a) * e.width / 2};
        const Point_F_Rec down{-std::sin(a) * e.Height() / 2, std::cos(a) * e.Height() / 2};
        const Point_F_Rec c = op.points[0];
        texts.push_back({op.text,
                         {Point_F_Rec{c.x - along.x - down.x, c.y - along.y - down.y},
                          Point_F_Rec{c.x + along.x - down.x, c.y + along.y - down.y},
                          Point_F_Rec{c.x + along.x + down.x, c.y + along.y + down.y},
                          Point_F_Rec{c.x - along.x + down.x, c.y - along.y + down.y}}});
    }
    return texts;
}

// Two text boxes overlap by more than a hair (a quarter of a pixel) unless the normal of
// an edge of one of them separates them.
bool Overlap(const Drawn_Text& x, const Drawn_Text& y) {
    for (const auto* box : {&x.corners, &y.corners}) {
        for (size_t i = 0; i < 2; ++i) {
            const Point_F_Rec a = (*box)[i], b = (*box)[i + 1];
            const double length = Distance(a, b);
            if (length == 0) {
                continue;
            }
            auto span = [&](const std::array<Point_F_Rec, 4>& corners) {
                std::pair<double, double> s{1e300, -1e300};
                for (const Point_F_Rec p : corners) {
                    const double d = (p.x * (a.y - b.y) + p.y * (b.x - a.x)) / length;
                    s = {std::min(s.first, d), std::max(s.second, d)};
                }
                return s;
            };
            const auto [x_low, x_high] = span(x.corners);
            const auto [y_low, y_high] = span(y.corners);
            if (x_high <= y_low + 0.25 || y_high <= x_low + 0.25) {
                return false;
            }
        }
    }
    return true;
}

std::set<std::string> Text_Set(const Recording_Surface& s) {
    std::set<std::string> texts;
    for (const Drawn_Text& t : Drawn_Texts(s)) {
        texts.insert(t.text);
    }
    return texts;
}

} // namespace

TEST_F(Diagram, ViewIsTrueToShapeAndZoomsAboutThePoint) {
    Diagram_View_Rec view = Ksea_View(1);
    // 1000 metres east and 1000 metres north of the airport are as far on the screen.
    const Airport_Rec& a = Ksea().airport;
    const Geo_Point_Rec east = Project_Point(a.lat, a.lon, 90, 1000);
    const Geo_Point_Rec north = Project_Point(a.lat, a.lon, 0, 1000);
    const Point_F_Rec o = Diagram_Geo_To_Pixel(view, a.lat, a.lon);
    EXPECT_NEAR(Distance(o, Diagram_Geo_To_Pixel(view, east.lat, east.lon)),
                Distance(o, Diagram_Geo_To_Pixel(view, north.lat, north.lon)), 0.01);
    // The whole airport is inside the view.
    for (size_t i = 0; i < static_cast<size_t>(a.taxi_point_count); ++i) {
        const Point_F_Rec p =
            Diagram_Geo_To_Pixel(view, a.taxi_points[i].lat, a.taxi_points[i].lon);
        EXPECT_TRUE(p.x > 0 && p.x < 1280 && p.y > 0 && p.y < 800) << i;
    }
    // Zooming, panning and centring keep the ground under the pixel they are about.
    for (Point_F_Rec at : {Point_F_Rec{100, 700}, Point_F_Rec{1100, 50}}) {
        double lat = 0, lon = 0;
        Diagram_Pixel_To_Geo(view, at, lat, lon);
        Diagram_View_Rec zoomed = view;
        Zoom_Diagram_About(zoomed, 3.7, at);
        const Point_F_Rec p = Diagram_Geo_To_Pixel(zoomed, lat, lon);
        EXPECT_NEAR(p.x, at.x, 0.05);
        EXPECT_NEAR(p.y, at.y, 0.05);
        EXPECT_NEAR(zoomed.px_per_metre, view.px_per_metre * 3.7, 1e-12);
        // (Off the middle, the east-west scale follows the new centre's latitude.)
        Pan_Diagram(zoomed, 25, -40);
        const Point_F_Rec moved = Diagram_Geo_To_Pixel(zoomed, lat, lon);
        EXPECT_NEAR(moved.x, at.x + 25, 0.2);
        EXPECT_NEAR(moved.y, at.y - 40, 0.2);
        Center_Diagram(zoomed, lat, lon);
        EXPECT_NEAR(Diagram_Geo_To_Pixel(zoomed, lat, lon).x, 640, 1e-6);
    }
}

TEST_F(Diagram, RunwaysAreDrawnAtTheirTrueLengthAndWidth) {
    const Airport_Rec& a = Ksea().airport;
    for (double zoom : {0.3, 1.0, 4.0}) {
        const Diagram_View_Rec view = Ksea_View(zoom);
        const Recording_Surface s = Draw(view);
        // The runways are the first figures in runway colour (the legend's comes last).
        std::vector<const Surface_Op_Rec*> runways;
        for (const Surface_Op_Rec& op : s.ops) {
            if (op.op == Surface_Op::Polygon && op.fill == Diagram_Day_Palette().runway &&
                runways.size() < static_cast<size_t>(a.runway_count)) {
                runways.push_back(&op);
            }
        }
        ASSERT_EQ(runways.size(), static_cast<size_t>(a.runway_count)) << zoom;
        for (size_t i = 0; i < runways.size(); ++i) {
            const Runway_Rec& r = a.runways[i];
            const auto& c = runways[i]->points;
            const double ft = view.px_per_metre * 0.3048;
            EXPECT_NEAR(Distance(c[0], c[1]), r.length_raw * ft, 1.0) << r.end1_name << zoom;
            EXPECT_NEAR(Distance(c[2], c[3]), r.length_raw * ft, 1.0) << r.end1_name << zoom;
            EXPECT_NEAR(Distance(c[1], c[2]), r.width_raw * ft, 1.0) << r.end1_name << zoom;
            EXPECT_NEAR(Distance(c[0], c[2]), std::hypot(r.length_raw, r.width_raw) * ft, 1.0);
            // Centred on the runway, along the line through its ends.
            const Point_F_Rec e1 = Diagram_Geo_To_Pixel(view, r.end1_lat, r.end1_lon);
            const Point_F_Rec e2 = Diagram_Geo_To_Pixel(view, r.end2_lat, r.end2_lon);
            const Point_F_Rec mid{(c[0].x + c[2].x) / 2, (c[0].y + c[2].y) / 2};
            EXPECT_LT(Distance(mid, {(e1.x + e2.x) / 2, (e1.y + e2.y) / 2}), 1.0);
            const Point_F_Rec end1_mid{(c[0].x + c[3].x) / 2, (c[0].y + c[3].y) / 2};
            EXPECT_LT(Distance(end1_mid, e1), Distance(end1_mid, e2));
        }
    }
}

TEST_F(Diagram, PlacedLabelsNeverOverlapAndComeBackCloser) {
    const Diagram_Aircraft_Rec aircraft{true, 47.4450, -122.3080, -20};
    size_t far_count = 0;
    for (double zoom : {0.05, 0.4, 1.0, 2.5, 8.0}) {
        for (bool night : {false, true}) {
            Diagram_Options_Rec options;
            options.night = night;
            const Recording_Surface s = Draw(Ksea_View(zoom), options, aircraft);
            const std::vector<Drawn_Text> texts = Drawn_Texts(s);
            for (size_t i = 0; i < texts.size(); ++i) {
                for (size_t j = i + 1; j < texts.size(); ++j) {
                    EXPECT_FALSE(Overlap(texts[i], texts[j]))
                        << "zoom " << zoom << ": \"" << texts[i].text << "\" and \""
                        << texts[j].text << "\"";
                }
            }
            if (zoom == 0.05) {
                far_count = texts.size();
            }
        }
    }
    // Fitted, every runway end has its number, and the taxiways and gates their names.
    const std::set<std::string> fitted = Text_Set(Draw(Ksea_View(1)));
    for (const char* text : {"16L", "34R", "16C", "34C", "16R", "34L", "A", "B", "K", "A9"}) {
        EXPECT_TRUE(fitted.contains(text)) << text;
    }
    EXPECT_GT(fitted.size(), far_count);
    // Closer in, every gate in the middle of the view has room for its name.
    const Diagram_View_Rec view = Ksea_View(4);
    const std::set<std::string> close = Text_Set(Draw(view));
    const std::set<std::string> farther = Text_Set(Draw(Ksea_View(0.4)));
    const Airport_Rec& a = Ksea().airport;
    size_t middle_gates = 0;
    size_t brought_back = 0;
    for (size_t i = 0; i < static_cast<size_t>(a.parking_count); ++i) {
        const Parking_Rec& p = a.parkings[i];
        const Point_F_Rec at = Diagram_Geo_To_Pixel(view, p.lat, p.lon);
        if (Is_Gate(p.spot_name) && at.x > 256 && at.x < 1024 && at.y > 160 && at.y < 640) {
            ++middle_gates;
            EXPECT_TRUE(close.contains(Spot_Label(p.spot_name))) << p.spot_name;
            brought_back += farther.contains(Spot_Label(p.spot_name)) ? 0 : 1;
        }
    }
    EXPECT_GE(middle_gates, 5u);
    EXPECT_GE(brought_back, 3u);
}

TEST_F(Diagram, ScaleBarIsAsLongAsTheDistanceItStates) {
    for (double zoom : {0.02, 1.0, 6.0}) {
        const Diagram_View_Rec view = Ksea_View(zoom);
        Diagram_Layout_Rec layout;
        Recording_Surface metrics;
        Layout_Diagram({Ksea().airport, Ksea().airspaces, *grid, {}}, view, {}, metrics, layout);
        ASSERT_EQ(layout.scale_bars.size(), 2u);
        for (const Diagram_Scale_Bar_Rec& bar : layout.scale_bars) {
            // The stated distance, read back from the text beside the bar.
            std::string stated;
            for (const Diagram_Text_Rec& t : layout.frame_texts) {
                if (t.role == Label_Role::Scale_Text && t.text.ends_with(" " + bar.unit)) {
                    stated = t.text.substr(0, t.text.size() - bar.unit.size() - 1);
                }
            }
            stated.erase(std::remove(stated.begin(), stated.end(), ','), stated.end());
            ASSERT_FALSE(stated.empty()) << bar.unit;
            const double metres = std::stod(stated) * (bar.unit == "FT"   ? 0.3048
                                                       : bar.unit == "M"  ? 1
                                                       : bar.unit == "KM" ? 1000
                                                                          : 1852);
            // The scale is true at the view's middle, where the bar's length is measured.
            double lat1 = 0, lon1 = 0, lat2 = 0, lon2 = 0;
            Diagram_Pixel_To_Geo(view, {640 - bar.length_px / 2, 400}, lat1, lon1);
            Diagram_Pixel_To_Geo(view, {640 + bar.length_px / 2, 400}, lat2, lon2);
            EXPECT_NEAR(Ground_Metres(lat1, lon1, lat2, lon2), metres, metres * 0.005)
                << "zoom " << zoom << ", " << stated << " " << bar.unit;
        }
        EXPECT_EQ(layout.scale_bars[0].unit, zoom < 0.1 ? "NM" : "FT");
        EXPECT_EQ(layout.scale_bars[1].unit, zoom < 0.1 ? "KM" : "M");
    }
}

TEST_F(Diagram, NorthArrowShowsTheGridsVariationAtTheAirport) {
    struct Case {
        int16_t grid_value; // at the airport's cell
        int variation;
        const char* text;
    };
    const Case cases[] = {{3459, 19,
                           "VAR 19\xB0"
                           "E"},
                          {-1000, -5, "VAR 5\xB0W"},
                          {100, 0, "VAR 0\xB0"}};
    const Airport_Rec& a = Ksea().airport;
    for (const Case& c : cases) {
        auto cell_grid = std::make_unique<Magvar_Grid>();
        // Latitude 47, longitude 238 east: the cell that holds KSEA.
        (*cell_grid)[181 * 238 + 90 + 47] = c.grid_value;
        Diagram_Layout_Rec layout;
        Recording_Surface metrics;
        Layout_Diagram({a, Ksea().airspaces, *cell_grid, {}}, Ksea_View(1), {}, metrics, layout);
        ASSERT_TRUE(layout.has_north_arrow);
        const Diagram_North_Arrow_Rec& n = layout.north_arrow;
        const double turn = std::atan2(n.magnetic_tip.x - n.base.x, n.base.y - n.magnetic_tip.y) -
                            std::atan2(n.true_tip.x - n.base.x, n.base.y - n.true_tip.y);
        EXPECT_NEAR(turn * 180 / Pi, c.variation, 0.01) << c.text;
        const bool shown = std::any_of(layout.frame_texts.begin(), layout.frame_texts.end(),
                                       [&](const Diagram_Text_Rec& t) { return t.text == c.text; });
        EXPECT_TRUE(shown) << c.text;
    }
}

TEST(DiagramText, HeadingsAreShownFrom0To359) {
    const std::pair<int, const char*> cases[] = {
        {-15, "345\xB0"}, {360, "000\xB0"}, {7, "007\xB0"}, {-375, "345\xB0"}, {725, "005\xB0"}};
    for (const auto& [heading, text] : cases) {
        EXPECT_EQ(Heading_Text(heading), text) << heading;
    }
}

TEST_F(Diagram, TripKitHasADiagramAndDataPagesThatMatchTheRecords) {
    Recording_Surface metrics;
    std::vector<Kit_Page_Rec> pages = Layout_Trip_Kit(*airports, *grid, metrics);
    ASSERT_EQ(pages.size(), 6u); // each airport's data fits one page
    for (size_t k = 0; k < airports->size(); ++k) {
        EXPECT_TRUE(pages[2 * k].diagram);
        EXPECT_FALSE(pages[2 * k + 1].diagram);
        EXPECT_EQ(pages[2 * k + 1].airport, k);
        Recording_Surface page;
        Draw_Kit_Page(page, pages[2 * k + 1], *airports, *grid);
        const std::set<std::string> shown = Text_Set(page);
        const Airport_Rec& a = (*airports)[k].airport;
        for (size_t i = 0; i < static_cast<size_t>(a.runway_count); ++i) {
            const Runway_Rec& r = a.runways[i];
            EXPECT_TRUE(shown.contains(r.end1_name + "/" + r.end2_name)) << a.ident;
            EXPECT_TRUE(
                shown.contains(Feet_Text(r.length_raw) + " \xD7 " + Feet_Text(r.width_raw)));
            EXPECT_TRUE(shown.contains(Heading_Text(r.end1_heading) + " / " +
                                       Heading_Text(r.end2_heading)));
            EXPECT_TRUE(shown.contains(Feet_Text(r.altitude_ft)));
        }
        for (size_t i = 0; i < static_cast<size_t>(a.ils_count); ++i) {
            EXPECT_TRUE(shown.contains(a.ils[i].ils_name));
            EXPECT_TRUE(shown.contains(Frequency_Text(a.ils[i].frequency)));
            EXPECT_TRUE(shown.contains(Heading_Text(a.ils[i].mag_heading)));
        }
        for (size_t i = 0; i < static_cast<size_t>(a.parking_count); ++i) {
            EXPECT_TRUE(shown.contains(a.parkings[i].spot_name)) << a.parkings[i].spot_name;
        }
        if (!a.tower_freq.empty()) {
            EXPECT_TRUE(shown.contains(Frequency_Text(a.tower_freq)));
        }
    }
    // A long parking list runs on over further data pages, and every spot is listed once.
    std::vector<Kit_Airport_Rec> big(1, airports->front());
    std::vector<Parking_Rec> spots;
    for (int i = 1; i <= 400; ++i) {
        spots.push_back({"GATE Z " + std::to_string(i), 47.45, -122.3, 50});
    }
    Set_Exact(big[0].airport.parkings, big[0].airport.parking_count, spots);
    std::vector<Kit_Page_Rec> long_kit = Layout_Trip_Kit(big, *grid, metrics);
    ASSERT_GE(long_kit.size(), 3u);
    std::multiset<std::string> listed;
    for (const Kit_Page_Rec& p : long_kit) {
        for (const Diagram_Text_Rec& t : p.texts) {
            if (t.text.starts_with("GATE Z ")) {
                listed.insert(t.text);
            }
        }
    }
    EXPECT_EQ(listed.size(), 400u);
    EXPECT_EQ(std::set<std::string>(listed.begin(), listed.end()).size(), 400u);
}

} // namespace quilmark
