// The header of a BGL file names where its airport section and its boundary section
// begin; each section is a chain of records that its walker follows.
#pragma once

#include <cstdint>

#include "bgl/bgl_image.h"

namespace quilmark {

// The first record of a section, and the walker's current record as it goes.
struct Section_Header {
    int32_t record_type = 0;
    int32_t record_size = 0;
};

// Header words of a BGL file.
constexpr int Bgl_Layout_Word = 144;     // sections are decoded only if this is 1
constexpr int Bgl_Airport_Section = 156; // absolute position, 0 or less: none
constexpr int Bgl_Boundary_Section = 164;

// Where the section that a header word names begins: the word's value, or 0 when the file's
// layout word is not 1 (then no section is decoded). A value of 0 or less means none.
int32_t Section_Position(const Bgl_Image& image, int header_word);
// The type and size words of the record at position.
Section_Header Read_Section_Header(const Bgl_Image& image, int64_t position);

} // namespace quilmark
