// The parts of the diagram's layout that share its working state: the text blocks that
// labels are made of, and the frame around the chart.
#pragma once

#include <string>
#include <vector>

#include "chart/diagram_records.h"

namespace quilmark {

// One or more lines of text that stand together as one label, stacked from the first
// (top) down, each line centred.
struct Text_Block_Rec {
    struct Line {
        std::string text;
        Label_Role role;
        Text_Extent_Rec extent;
    };
    std::vector<Line> lines;
    double width = 0;
    double height = 0;
};

Text_Block_Rec Measure_Block(const Text_Metrics& metrics,
                             std::vector<std::pair<std::string, Label_Role>> lines);
// The room a block takes with its middle on centre, turned by angle_deg, with pad pixels
// all round.
Label_Box_Rec Block_Box(const Text_Block_Rec& block, Point_F_Rec centre, double angle_deg,
                        double pad);
// The block's lines as texts to draw, with the block's middle on centre.
void Emit_Block(const Text_Block_Rec& block, Point_F_Rec centre, double angle_deg,
                std::vector<Diagram_Text_Rec>& texts);

// The pixels the frame keeps at each edge of a view of this size, for Fit_Diagram_View.
Diagram_Insets_Rec Diagram_Frame_Insets(int32_t width, int32_t height);

// Lays out the frame (title, frequency panel, north arrow, scale bars, legend, and the
// latitude and longitude ticks) and hands its panels to the placer as obstacles and its
// tick labels as placed labels.
void Layout_Diagram_Frame(const Diagram_Source_Rec& source, const Diagram_View_Rec& view,
                          const Text_Metrics& metrics, Label_Placer& placer,
                          Diagram_Layout_Rec& layout);

} // namespace quilmark
