#include <gtest/gtest.h>

#include <sstream>

#include "chart/recording_surface.h"

namespace quilmark {

TEST(RecordingSurface, EachCallIsOneLineInItsFixedForm) {
    Recording_Surface s;
    s.Cls();
    s.Set_ForeColor({0, 192, 0});
    s.Set_DrawWidth(2);
    s.Set_DrawStyle(0);
    s.Set_FillColor({0, 0, 0});
    s.Set_FillStyle(1);
    s.MoveToEx(120, 84);
    s.LineTo(131, 97);
    s.Ellipse(10, 24, 16, 18);
    s.Arc(5, 5, 40, 40, 30, 5, 5, 20);
    s.TextOutA(120, 84, "16L");
    s.LineTo(-3, -40000);
    std::ostringstream out;
    Write_Recorded_Ops(s, out);
    EXPECT_EQ(out.str(), "Cls\n"
                         "ForeColor 0 192 0\n"
                         "DrawWidth 2\n"
                         "DrawStyle 0\n"
                         "FillColor 0 0 0\n"
                         "FillStyle 1\n"
                         "MoveToEx 120 84\n"
                         "LineTo 131 97\n"
                         "Ellipse 10 24 16 18\n"
                         "Arc 5 5 40 40 30 5 5 20\n"
                         "TextOutA 120 84 \"16L\"\n"
                         "LineTo -3 -40000\n");
}

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
