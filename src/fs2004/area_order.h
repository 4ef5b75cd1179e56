// The scenery areas of an FS2004 world in the order the simulator lays them: the active
// areas (Active "TRUE"), from the lowest Layer to the highest. In FS2004 airports and
// airspace lie in the ordinary scenery areas, stock and add-on alike, so every active area
// counts, whatever its title.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/dyn_array.h"
#include "state/scenery_area.h"

namespace quilmark {

// Indexes of the active areas among areas 0 to count - 1, by ascending Layer; areas
// of the same Layer keep the order of scenery.cfg. A Layer that is no whole number counts
// as 0. Of several areas with the same folder (compared without regard to case) only the
// first in this order is kept: a folder's files are laid once.
std::vector<size_t> Fs2004_Area_Order(const Dyn_Array<Scenery_Area>& areas, int16_t count);

} // namespace quilmark
