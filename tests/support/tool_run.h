// Runs quilmark-tool in-process and keeps what it printed.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "quilmark_tool/tool.h"

namespace quilmark {

struct Tool_Run {
    int status = 0;
    std::string out;
    std::string err;
};

inline Tool_Run Run_Quilmark_Tool(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    Tool_Run run;
    run.status = Run_Tool(args, out, err);
    run.out = out.str();
    run.err = err.str();
    return run;
}

} // namespace quilmark
