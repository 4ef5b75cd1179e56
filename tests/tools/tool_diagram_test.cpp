// The diagram and the trip kit from the command line, with writers that keep what they
// are given instead of writing files.
#include <gtest/gtest.h>

#include "chart/diagram_style.h"
#include "chart/recording_surface.h"
#include "chart/trip_kit.h"
#include "support/tool_run.h"
#include "support/work_dir.h"

namespace quilmark {

TEST(ToolDiagram, ChartStyleDiagramAndKitHandTheWritersWhatTheyAskFor) {
    Work_Dir dir("tool-diagram");
    ASSERT_EQ(Run_Quilmark_Tool({"init", Sample_World_Folder()}).status, 0);
    const std::string ksea = "KSEA (SEATTLE-TACOMA INTL)";
    int32_t width = 0;
    Recording_Surface drawn;
    Set_Chart_Image_Writer(
        [&](const std::string&, int32_t w, int32_t, const std::function<void(Surface&)>& paint) {
            width = w;
            paint(drawn);
            return std::string();
        });
    std::vector<std::string> kit;
    Set_Trip_Kit_Writer(
        [&](const std::string&, std::span<const Kit_Airport_Rec> airports, const Magvar_Grid&) {
            for (const Kit_Airport_Rec& a : airports) {
                kit.push_back(a.airport.ident);
            }
            return std::string();
        });
    Tool_Run night = Run_Quilmark_Tool(
        {"chart", ksea, "--style", "diagram", "--night", "--size", "640x480", "--out", "k.png"});
    ASSERT_EQ(night.status, 0) << night.err;
    EXPECT_EQ(width, 640);
    ASSERT_FALSE(drawn.ops.empty());
    EXPECT_EQ(drawn.ops[0].fill, Diagram_Night_Palette().background); // the whole view
    ASSERT_EQ(Run_Quilmark_Tool({"kit", ksea, "KOLM (OLYMPIA)", "--out", "t.pdf"}).status, 0);
    EXPECT_EQ(kit, (std::vector<std::string>{"KSEA", "KOLM"}));
    Set_Chart_Image_Writer(nullptr);
    Set_Trip_Kit_Writer(nullptr);
}

} // namespace quilmark
