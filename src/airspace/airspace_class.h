// The class of an FS2002 boundary, which its record does not hold: told from its
// frequencies, its facility name and its altitude band.
#pragma once

#include <string>

namespace quilmark {

struct Airspace_Rec;

// "ARTCC/FIR" for a centre (a frequency and a facility name), else class D, C or B by the
// band: up to 2,500 ft, up to 4,000 ft, above.
std::string Airspace_Class(const Airspace_Rec& airspace);

} // namespace quilmark
