#pragma once

#include <array>
#include <cstdint>

// Magnetic variation by whole degrees: index 181 * longitude index (0..359, east of
// Greenwich) + latitude + 90. One count is 360/65536 degrees. Index 65160 stays 0.

namespace quilmark {

constexpr int Magvar_Grid_Size = 65161;
using Magvar_Grid = std::array<int16_t, Magvar_Grid_Size>;

} // namespace quilmark
