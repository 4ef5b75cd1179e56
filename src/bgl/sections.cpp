#include "bgl/sections.h"

#include "airspace/boundary_walker.h"
#include "bgl/airport_walker.h"
#include "state/form3_data.h"
#include "state/module1.h"

namespace quilmark {

void Read_BGL_Sections(Form3_Data& form, Module1& module) {
    const Bgl_Image& image = form.bgl_image;
    if (Read_Int32(image, Bgl_Layout_Word) != 1) {
        return;
    }
    int32_t airport_section = Read_Int32(image, Bgl_Airport_Section);
    int32_t boundary_section = Read_Int32(image, Bgl_Boundary_Section);
    if (airport_section > 0) {
        Section_Header header{Read_Int32(image, airport_section),
                              Read_Int32(image, static_cast<int64_t>(airport_section) + 4)};
        Walk_Airport_Section(form, module, airport_section, header);
    }
    if (boundary_section > 0) {
        Section_Header header{Read_Int32(image, boundary_section),
                              Read_Int32(image, static_cast<int64_t>(boundary_section) + 4)};
        Walk_Boundary_Section(form, module, boundary_section, header);
    }
}

} // namespace quilmark
