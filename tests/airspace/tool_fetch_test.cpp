#include <gtest/gtest.h>

#include "support/json_value.h"
#include "support/tool_run.h"
#include "support/work_dir.h"

namespace quilmark {

TEST(ToolFetch, SeattleGetsItsClassBAndTheTerminalAirspaceLast) {
    Work_Dir dir("tool-fetch");
    ASSERT_EQ(Run_Quilmark_Tool({"init", Sample_World_Folder()}).status, 0);
    Tool_Run run = Run_Quilmark_Tool({"fetch", "KSEA (SEATTLE-TACOMA INTL)"});
    ASSERT_EQ(run.status, 0) << run.err;
    Json_Value json = Parse_Json(run.out);
    EXPECT_EQ(json["current_airport"]["ident"].text, "KSEA");
    EXPECT_EQ(json["current_airport"]["runway_count"].number, 3);

    const Json_Value& airspaces = json["airspaces"];
    ASSERT_EQ(json["airspace_count"].number, static_cast<double>(airspaces.Size()));
    ASSERT_GE(airspaces.Size(), 2u);
    const Json_Value& class_b = airspaces[0];
    EXPECT_EQ(class_b["class_text"].text, "Airspace Class B");
    EXPECT_EQ(class_b["region_name"].text, "SEATTLE CLASS B  SEA");
    std::vector<int> kinds;
    for (const Json_Value& p : class_b["points"].items) {
        kinds.push_back(static_cast<int>(p["kind"].number));
    }
    // Start, centre, clockwise arc, line, clockwise arc, centre, counter-clockwise arc.
    EXPECT_EQ(kinds, (std::vector<int>{0, 1, 3, 5, 3, 1, 4}));
    const Json_Value& terminal = airspaces[airspaces.Size() - 1];
    EXPECT_EQ(terminal["class_text"].text, "TRACON (Departure/Approach)");
    EXPECT_EQ(terminal["freq_text"].text, "120.4 Mhz  119.2 Mhz  ");
    // Portland's Class C lies in the same files but far from Seattle.
    for (const Json_Value& a : airspaces.items) {
        EXPECT_NE(a["region_name"].text, "PORTLAND CLASS C");
    }
}

} // namespace quilmark
