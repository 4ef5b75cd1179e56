// The one entry into the decoding of a loaded BGL file: the header names the positions
// of the airport section and the boundary section, each handed to its walker.
#pragma once

#include <cstdint>

namespace quilmark {

struct Form3_Data;
struct Module1;

// The first record of a section, and the walker's current record as it goes.
struct Section_Header {
    int32_t record_type = 0;
    int32_t record_size = 0;
};

// Header words of a BGL file.
constexpr int Bgl_Layout_Word = 144;     // sections are decoded only if this is 1
constexpr int Bgl_Airport_Section = 156; // absolute position, 0 or less: none
constexpr int Bgl_Boundary_Section = 164;

void Read_BGL_Sections(Form3_Data& form, Module1& module);

} // namespace quilmark
