// The diagram in the chart window: the printed page's view, and following the aircraft.
#include <gtest/gtest.h>

#include <memory>

#include "chart/diagram_frame.h"
#include "chart/diagram_session.h"
#include "state/module1.h"

namespace quilmark {

TEST(DiagramSession, APageShowsTheWindowsGroundAsLargeAsItsRoomAllows) {
    struct Case {
        int32_t window_w, window_h, page_w, page_h;
    };
    for (const Case c :
         {Case{1280, 800, 816, 1056}, Case{400, 900, 1056, 816}, Case{271, 228, 816, 1056}}) {
        Diagram_View_Rec shown;
        shown.center_lat = 47.45;
        shown.center_lon = -122.31;
        shown.px_per_metre = 0.3;
        shown.width = c.window_w;
        shown.height = c.window_h;
        const Diagram_View_Rec page = Diagram_Page_View(shown, c.page_w, c.page_h);
        const Diagram_Insets_Rec room = Diagram_Frame_Insets(c.page_w, c.page_h);
        // The window's corners land inside the room, and touch it on one axis.
        double lat = 0, lon = 0;
        Diagram_Pixel_To_Geo(shown, {0, 0}, lat, lon);
        const Point_F_Rec top_left = Diagram_Geo_To_Pixel(page, lat, lon);
        Diagram_Pixel_To_Geo(shown, {double(c.window_w), double(c.window_h)}, lat, lon);
        const Point_F_Rec bottom_right = Diagram_Geo_To_Pixel(page, lat, lon);
        EXPECT_GE(top_left.x, room.left - 0.5);
        EXPECT_GE(top_left.y, room.top - 0.5);
        EXPECT_LE(bottom_right.x, c.page_w - room.right + 0.5);
        EXPECT_LE(bottom_right.y, c.page_h - room.bottom + 0.5);
        const bool fills_width = std::abs(top_left.x - room.left) < 0.5 &&
                                 std::abs(bottom_right.x - (c.page_w - room.right)) < 0.5;
        const bool fills_height = std::abs(top_left.y - room.top) < 0.5 &&
                                  std::abs(bottom_right.y - (c.page_h - room.bottom)) < 0.5;
        EXPECT_TRUE(fills_width || fills_height) << c.window_w << "x" << c.window_h;
    }
}

TEST(DiagramSession, TheTickFollowsTheAircraftOnlyWithTheLinkOpenAndFollowOn) {
    auto m = std::make_unique<Module1>();
    m->aircraft_lat = 47.5;
    m->aircraft_lon = -122.2;
    for (const auto& [connected, follow] :
         {std::pair{true, true}, std::pair{true, false}, std::pair{false, true}}) {
        m->fsuipc_connected = connected;
        m->follow_aircraft = follow;
        Diagram_View_Rec view;
        view.center_lat = 47.45;
        view.center_lon = -122.31;
        Diagram_Tick(view, *m);
        const bool moved = view.center_lat == 47.5 && view.center_lon == -122.2;
        EXPECT_EQ(moved, connected && follow);
        EXPECT_EQ(Module_Diagram_Source(*m).aircraft.shown, connected);
    }
}

} // namespace quilmark
