// The trip kit: the pages a pilot prints for a flight, two or more for each airport: the
// airport's diagram fitted to the page with its frame, then its data (runways with their
// sizes, headings and elevation; ILS; frequencies; parking), continued on further pages
// when the parking list is long. The pages are laid out here; a file writer draws them
// one by one through a surface.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "chart/diagram_layout.h"
#include "state/airport_model.h"
#include "state/airspace_model.h"

namespace quilmark {

// One airport of the kit with the airspace around it, as GET AIRPORT leaves them.
struct Kit_Airport_Rec {
    Airport_Rec airport;
    std::vector<Airspace_Rec> airspaces;
};

// A US letter page (8.5 by 11 inches) at 96 pixels to the inch.
constexpr int32_t Kit_Page_Width = 816;
constexpr int32_t Kit_Page_Height = 1056;

// A table of the data page: its title, column heads and rows of cells.
struct Kit_Table_Rec {
    std::string title;
    std::vector<std::string> columns;
    std::vector<std::vector<std::string>> rows;
};

// The airport's data as tables: RUNWAYS (designators, length × width, magnetic headings,
// elevation), ILS (ident, frequency, magnetic course), FREQUENCIES, PARKING (name and
// radius). A table without rows is left out.
std::vector<Kit_Table_Rec> Airport_Data_Tables(const Airport_Rec& airport, const Magvar_Grid& grid);

// One page of the kit.
struct Kit_Page_Rec {
    size_t airport = 0;   // index into the kit's airports
    bool diagram = false; // the diagram, or a page of data
    // A data page's texts and rules (pairs of ends), laid out on the page.
    std::vector<Diagram_Text_Rec> texts;
    std::vector<Point_F_Rec> rules;
};

// All pages, in order: for each airport its diagram and its data pages.
std::vector<Kit_Page_Rec> Layout_Trip_Kit(std::span<const Kit_Airport_Rec> airports,
                                          const Magvar_Grid& grid, const Text_Metrics& metrics);

// Draws one page on a surface of Kit_Page_Width by Kit_Page_Height pixels.
void Draw_Kit_Page(Surface& surface, const Kit_Page_Rec& page,
                   std::span<const Kit_Airport_Rec> airports, const Magvar_Grid& grid);

} // namespace quilmark
