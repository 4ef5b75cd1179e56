#include <gtest/gtest.h>

#include <sstream>

#include "support/tool_run.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

size_t Count_Starting(const std::vector<std::string>& lines, const std::string& prefix) {
    size_t n = 0;
    for (const std::string& line : lines) {
        n += line.rfind(prefix, 0) == 0;
    }
    return n;
}

} // namespace

TEST(ToolChart, OpsOfOneRedrawAtTheLevelAskedFor) {
    Work_Dir dir("tool-chart");
    ASSERT_EQ(Run_Quilmark_Tool({"init", Sample_World_Folder()}).status, 0);
    const std::string entry = "KSEA (SEATTLE-TACOMA INTL)";

    Tool_Run level14 = Run_Quilmark_Tool({"chart", entry, "--zoom", "14", "--ops"});
    ASSERT_EQ(level14.status, 0) << level14.err;
    const auto ops = Lines(level14.out);
    ASSERT_FALSE(ops.empty());
    EXPECT_EQ(ops.front(), "Cls"); // one redraw, not the opening's as well
    EXPECT_EQ(Count_Starting(ops, "Cls"), 1u);
    EXPECT_GT(Count_Starting(ops, "TextOutA"), 10u); // runway, taxiway and gate names
    EXPECT_NE(level14.out.find("\"B\""), std::string::npos);

    // Hiding the gates takes their names away; the aircraft is drawn last.
    Tool_Run no_gates = Run_Quilmark_Tool({"chart", entry, "--zoom", "14", "--hide", "gates",
                                           "--aircraft", "47.45,-122.31,-90", "--ops"});
    ASSERT_EQ(no_gates.status, 0) << no_gates.err;
    EXPECT_EQ(no_gates.out.find("GATE"), std::string::npos);
    const auto with_aircraft = Lines(no_gates.out);
    EXPECT_EQ(with_aircraft.back().substr(0, 9), "TextOutA ");
    EXPECT_NE(with_aircraft.back().find("\"Your Plane\""), std::string::npos);

    // Level 9 on the default 271 by 228: the Class B's arcs.
    Tool_Run level9 = Run_Quilmark_Tool({"chart", entry, "--ops"});
    ASSERT_EQ(level9.status, 0);
    EXPECT_GE(Count_Starting(Lines(level9.out), "Arc "), 3u);
}

} // namespace quilmark
