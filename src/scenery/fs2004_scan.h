// The database build of an FS2004 world. Its airports lie in the ordinary scenery areas,
// in files known by the sections their headers declare, not by their names; the areas are
// read in layer order, and an airport of a higher layer lays itself over the airport of
// the same ident below it, as the simulator does. The result goes into the same airport
// list, and from there into the same database file, as an FS2002 world's.
#pragma once

#include <cstdint>
#include <string>

#include <vector>

#include "fs2004/airports.h"
#include "fs2004/ils.h"
#include "fs2004/name_list.h"
#include "geo/magnetic_variation.h"
#include "platform/drives.h"
#include "platform/dyn_array.h"
#include "state/airport_model.h"

namespace quilmark {

class Chooser_Form;
struct Form3_Data;
struct Module1;

// What the files of an FS2004 world have given so far: the airports of each layer, lowest
// first, and the ILS and airport names of every file, which are looked up only when the
// airports are converted, since an airport's ILS may lie in another file.
struct Fs2004_Reading_Rec {
    std::vector<std::vector<Fs2004_Airport_Rec>> layers;
    Fs2004_Ils_Table ils;
    Fs2004_Name_Table names;
};

// Adds what the file in the image holds to the top layer. False, and nothing is read, if
// it is no FS2004 file: terrain and object files of the older format, and magdec.bgl,
// are told apart by their headers.
bool Read_Fs2004_File(Bgl_Image& image, Fs2004_Reading_Rec& reading);

// Lays the airports over each other and appends them, converted, to airports.
void Append_Fs2004_Airports(Fs2004_Reading_Rec reading, const Magvar_Grid& grid,
                            Dyn_Array<Airport_Rec>& airports, int32_t& airport_count);

// The variation table: FS2004 keeps it with the base scenery, not in "scenery" itself.
std::string Fs2004_Magdec_Path(const std::string& fs_path);

// How many "*.bgl" files the active areas hold (each folder counted once).
int32_t Count_Fs2004_Area_Files(const Module1& m, const Drive_List& drives);

// Reads every BGL file of the active areas in layer order, the progress bar advancing by
// one a file and the area's title shown while it is read; then lays the airports over
// each other and appends them to m.airports.
void Scan_Fs2004_Areas(Module1& m, Form3_Data& form, Chooser_Form& ui);

} // namespace quilmark
