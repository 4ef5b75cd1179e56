// The airspace of GET AIRPORT in an FS2004 world. Boundaries are no longer kept in one ATC
// folder: any file of any active area may hold a boundary section, so every such file is
// looked at by its header, and its boundaries whose box holds the airport are taken.
#pragma once

namespace quilmark {

class Chooser_Form;
struct Form3_Data;
struct Module1;

// Fills m.airspaces with the boundaries around m.current_airport, each with its class
// text: from the record's type where the classic chart has a text for it (centre, B, C,
// D), else by the class rule of the FS2002 airspace. The progress bar runs over the files
// of the active areas.
void Read_Fs2004_Airspace(Module1& m, Form3_Data& form, Chooser_Form& ui);

} // namespace quilmark
