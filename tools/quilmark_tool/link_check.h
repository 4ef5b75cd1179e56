// quilmark-tool link: the aircraft link as the chart sees it, step by step, in plain words.
// Is a bridge listening; does it find the module's window; what version and simulator the
// module reports; the four values the chart reads, converted as the chart converts them.
#pragma once

#include <ostream>

#include "command_line.h"

namespace quilmark {

// args: [--port N], the bridge's port (20020 unless given). Exit status 0 only when the chart
// would show the aircraft, 1 when it wouldn't, 2 for arguments it doesn't take.
int Command_Link(const Command_Args& args, std::ostream& out, std::ostream& err);

} // namespace quilmark
