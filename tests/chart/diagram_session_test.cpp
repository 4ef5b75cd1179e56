// The printed page's view of what the chart window's diagram shows.
#include <gtest/gtest.h>

#include "chart/diagram_frame.h"
#include "chart/diagram_session.h"

namespace quilmark {

TEST(DiagramSession, APageShowsTheWindowsGroundAsLargeAsItsRoomAllows) {
    for (const auto& [w, h, page_w, page_h] :
         {std::array{1280, 800, 1056, 816}, std::array{400, 900, 816, 1056},
          std::array{271, 228, 816, 1056}}) {
        const Diagram_View_Rec shown{47.45, -122.31, 0.3, w, h};
        const Diagram_View_Rec page = Diagram_Page_View(shown, page_w, page_h);
        const Diagram_Insets_Rec room = Diagram_Frame_Insets(page_w, page_h);
        // The window's corners on the page: inside the room, touching it on one axis.
        Point_F_Rec corner[2];
        for (int i = 0; i < 2; ++i) {
            double lat = 0, lon = 0;
            Diagram_Pixel_To_Geo(shown, {i * double(w), i * double(h)}, lat, lon);
            corner[i] = Diagram_Geo_To_Pixel(page, lat, lon);
        }
        const double gaps[4] = {corner[0].x - room.left, corner[0].y - room.top,
                                page_w - room.right - corner[1].x,
                                page_h - room.bottom - corner[1].y};
        for (double gap : gaps) {
            EXPECT_GT(gap, -0.5) << w << "x" << h;
        }
        EXPECT_TRUE((gaps[0] < 0.5 && gaps[2] < 0.5) || (gaps[1] < 0.5 && gaps[3] < 0.5));
    }
}

} // namespace quilmark
