// The one entry into the decoding of a loaded BGL file, for the scan and the fetch: the
// header names the positions of the airport section and the boundary section, each handed
// to its walker with the parts of the program's state that the walker fills.
#pragma once

namespace quilmark {

struct Form3_Data;
struct Module1;

// The airport section of form.bgl_image adds airports to module.airports unless
// form.database_present; its boundary section adds the boundaries around
// module.current_airport to module.airspaces, within form.airspace_bytes_left. A file
// whose layout word is not 1 is passed over.
void Read_BGL_Sections(Form3_Data& form, Module1& module);
// Its second half, the boundary section alone, for a file whose airport section has been
// decoded already (in the same image, whose walk budget that decoding has charged).
void Read_Boundary_Part(Form3_Data& form, Module1& module);

} // namespace quilmark
