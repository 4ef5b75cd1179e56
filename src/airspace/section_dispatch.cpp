#include "airspace/section_dispatch.h"

#include "airspace/boundary_walker.h"
#include "bgl/airport_walker.h"
#include "state/form3_data.h"
#include "state/module1.h"

namespace quilmark {

void Read_BGL_Sections(Form3_Data& form, Module1& module) {
    Read_Airport_Section(form.bgl_image, module.magvar_grid, !form.database_present,
                         module.airports, module.airport_count);
    Read_Boundary_Part(form, module);
}

void Read_Boundary_Part(Form3_Data& form, Module1& module) {
    Boundary_Walk_Rec walk{form.bgl_image,
                           module.magvar_grid,
                           {module.current_airport.lat, module.current_airport.lon},
                           module.airspaces,
                           module.airspace_count,
                           form.airspace_bytes_left};
    Read_Boundary_Section(walk);
}

} // namespace quilmark
