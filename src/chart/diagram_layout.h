// The airport diagram: a true-scale chart of one airport as a pilot would print it. The
// layout works out, from the records alone, every shape and label in pixels of a view
// (Diagram_View_Rec): runways at their true length and width with their designators at
// the thresholds, taxiways and parking to scale, ILS feathers, the airspace around, the
// aircraft, and the frame (title, frequencies, north arrow, scale, ticks, legend). Labels
// are placed by importance and left out where they would cover one another. Painting the
// layout through a Surface is a separate step, so that the tests read the layout itself.
//
// It reads its inputs only: the airport, the airspace list, the variation grid and the
// aircraft's values.
#pragma once

#include "chart/diagram_frame.h"
#include "chart/diagram_records.h"
#include "chart/surface.h"

namespace quilmark {

// Lays the diagram out in the view, with the sizes of text as metrics measures them.
void Layout_Diagram(const Diagram_Source_Rec& source, const Diagram_View_Rec& view,
                    const Diagram_Options_Rec& options, const Text_Metrics& metrics,
                    Diagram_Layout_Rec& layout);
// Paints a layout: background, airspace, taxiways, parking, runways, ILS, labels, the
// aircraft, then the frame on top.
void Paint_Diagram(const Diagram_Layout_Rec& layout, Surface& surface);
// Both, measuring with the surface's own font.
void Draw_Diagram(Surface& surface, const Diagram_Source_Rec& source, const Diagram_View_Rec& view,
                  const Diagram_Options_Rec& options);

} // namespace quilmark
