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

} // namespace quilmark
