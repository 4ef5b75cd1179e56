// The name list of an FS2004 file (section type 0x27): one record that lists the region,
// country, state, city and airport names of the file's airports and, for each airport
// ident, which of them are its own. It gives an airport its name when the airport record
// has no name sub-record.
#pragma once

#include <string>
#include <unordered_map>

#include "bgl/bgl_image.h"

namespace quilmark {

// Airport ident to airport name, as the file has the name.
using Fs2004_Name_Table = std::unordered_map<std::string, std::string>;

// Adds the airport names of the file's name lists to the table; an ident already there
// takes the newer name, so files read in layer order leave the highest layer's name.
void Decode_Fs2004_Names(Bgl_Image& image, Fs2004_Name_Table& names);

} // namespace quilmark
