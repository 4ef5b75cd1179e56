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
    int32_t width = 0, height = 0;
    Recording_Surface drawn;
    Set_Chart_Image_Writer(
        [&](const std::string&, int32_t w, int32_t h, const std::function<void(Surface&)>& paint) {
            width = w;
            height = h;
            drawn.ops.clear();
            paint(drawn);
            return std::string();
        });
    std::vector<std::string> kit_idents;
    Set_Trip_Kit_Writer(
        [&](const std::string&, std::span<const Kit_Airport_Rec> airports, const Magvar_Grid&) {
            for (const Kit_Airport_Rec& a : airports) {
                kit_idents.push_back(a.airport.ident);
            }
            return std::string();
        });
    auto background = [&] {
        for (const Surface_Op_Rec& op : drawn.ops) {
            if (op.op == Surface_Op::Polygon) {
                return op.fill; // the first figure fills the whole view
            }
        }
        return Rgba_Rec{};
    };

    Tool_Run night = Run_Quilmark_Tool(
        {"chart", ksea, "--style", "diagram", "--night", "--size", "640x480", "--out", "k.png"});
    ASSERT_EQ(night.status, 0) << night.err;
    EXPECT_EQ(width, 640);
    EXPECT_EQ(height, 480);
    EXPECT_EQ(background(), Diagram_Night_Palette().background);
    bool titled = false;
    for (const Surface_Op_Rec& op : drawn.ops) {
        titled = titled || (op.op == Surface_Op::Text && op.text.find("KSEA") == 0);
    }
    EXPECT_TRUE(titled);

    ASSERT_EQ(Run_Quilmark_Tool({"chart", ksea, "--style", "diagram", "--out", "k.svg"}).status, 0);
    EXPECT_EQ(width, 1280); // the diagram's own size when none is given
    EXPECT_EQ(background(), Diagram_Day_Palette().background);

    Tool_Run kit = Run_Quilmark_Tool({"kit", ksea, "KOLM (OLYMPIA)", "--out", "trip.pdf"});
    ASSERT_EQ(kit.status, 0) << kit.err;
    EXPECT_EQ(kit_idents, (std::vector<std::string>{"KSEA", "KOLM"}));

    // Misuse, answered before any scan.
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"chart", ksea, "--style", "diagram", "--ops"},
             {"chart", ksea, "--style", "diagram", "--zoom", "12", "--out", "k.png"},
             {"chart", ksea, "--night", "--out", "k.png"},
             {"chart", ksea, "--style", "fancy", "--out", "k.png"},
             {"kit", ksea},
             {"kit", "--out", "trip.pdf"}}) {
        EXPECT_EQ(Run_Quilmark_Tool(args).status, 2) << args[2];
    }
    EXPECT_EQ(Run_Quilmark_Tool({"kit", "NOWHERE (NO SUCH AIRPORT)", "--out", "t.pdf"}).status, 2);
    Set_Chart_Image_Writer(nullptr);
    Set_Trip_Kit_Writer(nullptr);
}

} // namespace quilmark
