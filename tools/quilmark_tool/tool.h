// quilmark-tool: command-line access to the program's pipeline, one subcommand a call.
#pragma once

#include <ostream>
#include <string>
#include <vector>

// Runs the tool with its arguments (without the program name). Returns the exit status.
int Run_Tool(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
