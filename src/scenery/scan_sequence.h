// The scenery scan of the airport chooser: from the simulator's folder to a filled airport
// list. It loads the variation grid, reads scenery.cfg, turns the areas into folders,
// chooses the folder of the ATC data, and then reads the airport database file or, if
// there is none (or it is damaged), builds it from every BGL file of the airport areas.
#pragma once

#include "platform/drives.h"
#include "state/scenery_area.h"

namespace quilmark {

class Chooser_Form;
struct Form3_Data;
struct Module1;
struct Scenery_Changes_Rec;

// A usual run, or one that makes the airport list again whatever the scenery's fingerprint
// says (the chooser's "Rebuild airport list").
enum class Scan_Request { Usual, Rebuild };

// One run, as the chooser's timer starts it once per load of the form. The program's two
// files are looked for in the process's current directory. A missing magdec.bgl or
// scenery.cfg is reported; without scenery.cfg no database is built or replaced. Running
// out of memory is reported too, and leaves an empty list. A database whose scenery has
// changed since it was built is built again; what changed goes to changes if given.
void Run_Scenery_Scan(Module1& m, Form3_Data& form, Chooser_Form& ui,
                      Scan_Request request = Scan_Request::Usual,
                      Scenery_Changes_Rec* changes = nullptr);

// The database build: every BGL file of the areas "Airport and Facilities Data" with
// Required "TRUE", decoded into m.airports; the progress bar advances by one a file.
void Scan_Airport_Areas(Module1& m, Form3_Data& form, Chooser_Form& ui);

// Adds the list text of airports 0 to airport_count - 1 to the chooser's list.
void Fill_Airport_List(const Module1& m, Chooser_Form& ui);

constexpr const char* Database_Damaged_Text =
    "The airport database file all_fs_airports.dat is damaged or does not match the "
    "settings file. This program will now create it again from the scenery files. This "
    "process can take a few minutes, please wait.";

} // namespace quilmark
