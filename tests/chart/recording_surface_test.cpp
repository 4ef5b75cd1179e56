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

} // namespace quilmark
