// quilmark-tool: command-line access to the program's pipeline, one subcommand a call.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <cstdint>
#include <functional>
#include <span>

#include "geo/magnetic_variation.h"

namespace quilmark {

class Surface;
struct Kit_Airport_Rec;

// Writes a chart image (PNG, SVG or PDF by the path's extension) of width by height pixels,
// drawn by paint; returns "" or a message. The tool's main plugs in the Qt side's writer;
// without one, chart --out reports that images cannot be written.
using Chart_Image_Writer =
    std::function<std::string(const std::string& path, int32_t width, int32_t height,
                              const std::function<void(Surface&)>& paint)>;
void Set_Chart_Image_Writer(Chart_Image_Writer writer);

// Writes the trip kit of the airports as a PDF; returns "" or a message. Plugged in the
// same way, for the kit command.
using Trip_Kit_Writer = std::function<std::string(
    const std::string& path, std::span<const Kit_Airport_Rec> airports, const Magvar_Grid& grid)>;
void Set_Trip_Kit_Writer(Trip_Kit_Writer writer);

// Runs the tool with its arguments (without the program name). Returns the exit status.
int Run_Tool(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

} // namespace quilmark
