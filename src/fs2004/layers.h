// Scenery layers of an FS2004 world. The simulator loads its areas from the lowest layer
// to the highest, and an airport record lays itself over the airport of the same ident
// that the records before it built:
//
//  - its DeleteAirport sub-record first removes from what lies below what it names: by
//    flag all runways, all frequencies, or the whole ground network (points, parking,
//    paths); one by one, runways by the numbers and designators of both ends (the surface
//    is not compared) and frequencies by type and frequency;
//  - then its own runways, frequencies and ground network are added behind what is left;
//  - the reference point comes from the highest record, and the name from the highest
//    record that has a name sub-record.
//
// So an add-on airport made as the airport editors make them, deleting what it redraws,
// replaces the stock airport as a whole, and a deletion removes what it names and nothing
// else. An add-on that deletes nothing is drawn with the stock elements beside its own, as
// the simulator shows it. Records of one layer count as laid in the order given, the
// files of an area in their listing order.
#pragma once

#include <vector>

#include "fs2004/airports.h"

namespace quilmark {

// The airports of all layers, lowest layer first, laid over each other: one record per
// ident, in the order in which the idents first appear, with every deletion applied.
std::vector<Fs2004_Airport_Rec>
Layer_Fs2004_Airports(std::vector<std::vector<Fs2004_Airport_Rec>> layers);

} // namespace quilmark
