// An FS2004 airport, laid over its layers, as the program's Airport_Rec: the same record
// that the FS2002 decoders fill, so that the chart, the list and the database file take
// an airport of either simulator alike.
#pragma once

#include "fs2004/airports.h"
#include "fs2004/ils.h"
#include "fs2004/name_list.h"
#include "geo/magnetic_variation.h"
#include "state/airport_model.h"

namespace quilmark {

// Largest list of the ground network the program's count fields hold.
constexpr size_t Max_Fs2004_Network_List = 32767;

// ident and name (upper case; from the name list when the airport has no name of its
// own), the reference point, the first frequency of each kind, the runways with their
// drawn ends and magnetic headings, the ILS that the runway ends name, and the ground
// network. A network with a list longer than the count fields hold is left out whole.
Airport_Rec Fs2004_Airport_Record(const Fs2004_Airport_Rec& airport, const Magvar_Grid& grid,
                                  const Fs2004_Ils_Table& ils, const Fs2004_Name_Table& names);

} // namespace quilmark
