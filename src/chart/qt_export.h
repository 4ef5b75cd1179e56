// Writing a chart to an image file. The header holds no Qt types, so that a command-line
// front end can call it without Qt on its include path; the code is in the Qt library.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "chart/surface.h"
#include "chart/trip_kit.h"

namespace quilmark {

// Draws one chart onto the surface it is given, for example
//   [&](Surface& s) { Redraw_Chart(s, view, module); }
using Chart_Paint = std::function<void(Surface&)>;

// Renders the chart into a file of width by height pixels, in the format that the
// file's extension names (case does not matter): ".png", ".svg" or ".pdf". SVG and PDF
// are vector files of the same size at 96 dpi. The path is a native path in UTF-8.
// Returns an empty string on success, otherwise a message for the user. The labels' fonts
// need a Qt GUI application (QGuiApplication or QApplication) in the process; the caller
// makes it.
std::string Export_Chart_Image(const std::string& path, int32_t width, int32_t height,
                               const Chart_Paint& paint);

// Draws page number page (from 0) of a document onto the surface.
using Page_Paint = std::function<void(Surface&, int page)>;

// Writes a PDF of page_count pages, each width by height pixels at 96 dpi, drawn one after
// the other by paint. The path, the result and the Qt application as above.
std::string Export_Pdf_Pages(const std::string& path, int32_t width, int32_t height, int page_count,
                             const Page_Paint& paint);

// The trip kit of the airports as a PDF: for each airport its diagram page and its data
// pages, laid out with the real fonts' measures.
std::string Export_Trip_Kit(const std::string& path, std::span<const Kit_Airport_Rec> airports,
                            const Magvar_Grid& grid);

} // namespace quilmark
