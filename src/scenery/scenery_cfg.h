// The reader of scenery.cfg, the simulator's list of scenery areas.
//
// It is not a line-by-line key parser. It collects the section headers ("[area.001]"),
// holds the whole file as one text whose lines are joined by CR LF, cuts each area's block
// out of that text by searching for its header and the next header, and finds each key by
// searching the block for "key=" without regard to case. So a key name that also stands
// inside a longer key or a comment above the real one is found there, two sections with
// the same header both get the block of the first, and values keep their case, blanks,
// quotes and any "=" they hold.
#pragma once

#include <string>
#include <string_view>

#include "state/module1.h"

namespace quilmark {

enum class Scenery_Cfg_Status {
    Ok,
    Unreadable, // the file could not be opened or read, or is over 256 MiB; nothing was added
    // The areas' values would take more memory than any real scenery.cfg needs (only a
    // file with repeated headers whose blocks overlap gets there); the areas read until
    // then are kept.
    Too_Large,
};

// Appends one Scenery_Area for every section whose header, in lower case, contains
// "[area.", to scenery_areas (keeping its spare empty top slot) and scenery_area_count.
// The caller resets both before the read. Lines end at CR, CR LF or a lone LF. At most
// 32767 sections are taken.
Scenery_Cfg_Status Read_Scenery_Cfg(Module1& m, const std::string& native_path);

// The same for the file's bytes already in memory.
Scenery_Cfg_Status Read_Scenery_Cfg_Text(Module1& m, std::string_view file_bytes);

// An area is one the database build reads (title "Airport and Facilities Data"), or the
// one the airport fetch reads airspace from ("Additional Facility Data"), if Required is
// "TRUE"; both compared without regard to case.
bool Is_Airport_Area(const Scenery_Area& area);
bool Is_Atc_Area(const Scenery_Area& area);

// The value of key in block: the text after the first "key=" (found in lower case) up to
// the end of its line, case kept, nothing trimmed. Empty if the key is not there.
std::string Get_Cfg_Value(std::string_view block, std::string_view key);

} // namespace quilmark
