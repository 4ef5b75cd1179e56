// The airport section of a BGL file: a chain of group records (type 0x30001), each a list
// of directory entries; an airport entry (0x30002, kind 0x50001) points at the airport's
// data block elsewhere in the file.
#pragma once

#include <cstdint>

#include "bgl/bgl_image.h"
#include "bgl/sections.h"
#include "geo/magnetic_variation.h"
#include "platform/dyn_array.h"
#include "state/airport_model.h"

namespace quilmark {

constexpr int32_t Group_Record = 0x30001;
constexpr int32_t Directory_Entry = 0x30002;
constexpr int32_t Entry_Kind_Airport = 0x50001;

// The whole simulated world has about 24,000 airports, and a scenery file a few hundred or
// thousand of them; a file with more is hostile (entries that all point at one block, say),
// and the walk stops taking airports from it there.
constexpr int32_t Max_Airports_Per_File = 100000;

// Appends an Airport_Rec to airports (keeping its spare empty top slot; airport_count
// counts them) for every accepted entry and decodes it, at most Max_Airports_Per_File of
// them; with add_airports false (the database file is there) it walks the same entries
// and changes nothing.
void Walk_Airport_Section(Bgl_Image& image, const Magvar_Grid& grid, bool add_airports,
                          Dyn_Array<Airport_Rec>& airports, int32_t& airport_count,
                          int64_t section_position, Section_Header header);

// The airport section of a loaded file, where its header names one: Walk_Airport_Section
// from its first record.
void Read_Airport_Section(Bgl_Image& image, const Magvar_Grid& grid, bool add_airports,
                          Dyn_Array<Airport_Rec>& airports, int32_t& airport_count);

// Fills one airport in place from the record stream of its data block, headings made
// magnetic by the grid.
void Read_Airport_Records(Bgl_Image& image, const Magvar_Grid& grid, int64_t block_position,
                          Airport_Rec& airport);

} // namespace quilmark
