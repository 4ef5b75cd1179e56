#include <gtest/gtest.h>

#include "chart/recording_surface.h"

namespace quilmark {

TEST(RecordingSurface, TextIsQuotedEscapedAndConvertedToUtf8) {
    struct Case {
        std::string ansi;
        std::string line;
    };
    const Case cases[] = {
        {"", "TextOutA 1 2 \"\""},
        {"say \"hi\"", "TextOutA 1 2 \"say \\\"hi\\\"\""},
        {"C:\\fs", "TextOutA 1 2 \"C:\\\\fs\""},
        {"Position: Z\xDCRICH \x80", "TextOutA 1 2 \"Position: Z\xC3\x9CRICH \xE2\x82\xAC\""},
    };
    for (const Case& c : cases) {
        Recording_Surface s;
        s.TextOutA(1, 2, c.ansi);
        ASSERT_EQ(s.ops.size(), 1u);
        EXPECT_EQ(s.ops[0].text, c.ansi) << "the log keeps the bytes as given";
        EXPECT_EQ(Format_Surface_Op(s.ops[0]), c.line);
    }
}

TEST(RecordingSurface, DiagramFiguresAreOneLineEachWithTheirStyle) {
    Recording_Surface s;
    const std::vector<Point_F_Rec> square = {{0, 0}, {10.5, 0}, {10.5, 10.25}, {0, 10.25}};
    s.Draw_Polygon(square, {255, 255, 255, 128}, {});
    s.Draw_Polyline(square, {{0, 60, 200, 255}, 1.6, {9, 5}, false});
    s.Draw_Segments(square, {{196, 198, 202, 255}, 2.594, {}, true});
    s.Draw_Circles(std::vector<Circle_F_Rec>{{{1, 2}, 3.333}}, {150, 70, 60, 255},
                   {{0, 0, 0, 255}, 1, {}, false});
    s.Draw_Text({-0.004, 7}, 90, "\"16L\"",
                {14, true, {20, 20, 24, 255}, {255, 255, 255, 255}, 1.5});
    EXPECT_EQ(Recorded_Op_Lines(s),
              (std::vector<std::string>{
                  "Polygon #FFFFFF80 #000000FF 0 4 0 0 10.5 0 10.5 10.25 0 10.25",
                  "Polyline #003CC8FF 1.6 dash 9,5 4 0 0 10.5 0 10.5 10.25 0 10.25",
                  "Segments #C4C6CAFF 2.59 round 4 0 0 10.5 0 10.5 10.25 0 10.25",
                  "Circles #96463CFF #000000FF 1 1 1 2 3.33",
                  "Text 0 7 90 14 bold #141418FF halo #FFFFFFFF 1.5 \"\\\"16L\\\"\""}));
    // Measures by the fixed rule: 0.6 of the size a byte (0.65 bold), ascent 0.8, descent 0.2.
    const Text_Extent_Rec e = s.Measure_Text("16L", 10, true);
    EXPECT_DOUBLE_EQ(e.width, 19.5);
    EXPECT_DOUBLE_EQ(e.Height(), 10);
}

} // namespace quilmark
