#include <gtest/gtest.h>

#include "support/tool_run.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

size_t Count(const std::string& text, const std::string& part) {
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++n;
    }
    return n;
}

} // namespace

// The options reach the one redraw that is recorded; which layers each level and flag
// draws is the chart drawing's own test.
TEST(ToolChart, OpsOfOneRedrawWithTheOptionsAskedFor) {
    Work_Dir dir("tool-chart");
    ASSERT_EQ(Run_Quilmark_Tool({"init", Sample_World_Folder()}).status, 0);
    const std::string entry = "KSEA (SEATTLE-TACOMA INTL)";

    Tool_Run level14 = Run_Quilmark_Tool({"chart", entry, "--zoom", "14", "--ops"});
    ASSERT_EQ(level14.status, 0) << level14.err;
    EXPECT_EQ(level14.out.rfind("Cls\n", 0), 0u); // one redraw, not the opening's as well
    EXPECT_EQ(Count(level14.out, "Cls"), 1u);
    EXPECT_GT(Count(level14.out, "\"Position: GATE"), 10u);
    EXPECT_NE(level14.out.find("\"B\""), std::string::npos); // a taxiway's name

    Tool_Run no_gates = Run_Quilmark_Tool({"chart", entry, "--zoom", "14", "--hide", "gates",
                                           "--aircraft", "47.45,-122.31,-90", "--ops"});
    ASSERT_EQ(no_gates.status, 0) << no_gates.err;
    EXPECT_EQ(no_gates.out.find("GATE"), std::string::npos);
    EXPECT_TRUE(no_gates.out.ends_with("\"Your Plane\"\n")) << "the aircraft is drawn last";

    // Level 9 on the default 271 by 228: the Class B's arcs.
    Tool_Run level9 = Run_Quilmark_Tool({"chart", entry, "--ops"});
    ASSERT_EQ(level9.status, 0);
    EXPECT_GE(Count(level9.out, "\nArc "), 3u);
}

} // namespace quilmark
