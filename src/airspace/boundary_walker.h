// The boundary section of a BGL file: the airspace boundaries whose box holds the
// current airport are appended to the airspace list.
#pragma once

#include <cstdint>

#include "bgl/sections.h"

struct Form3_Data;
struct Module1;

void Walk_Boundary_Section(Form3_Data& form, Module1& module, int64_t section_position,
                           Section_Header header);
