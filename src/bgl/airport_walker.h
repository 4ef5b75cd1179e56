// The airport section of a BGL file: a chain of group records (type 0x30001), each a list
// of directory entries; an airport entry (0x30002, kind 0x50001) points at the airport's
// data block elsewhere in the file.
#pragma once

#include <cstdint>

#include "bgl/sections.h"

namespace quilmark {

struct Airport_Rec;
struct Form3_Data;
struct Module1;

constexpr int32_t Group_Record = 0x30001;
constexpr int32_t Directory_Entry = 0x30002;
constexpr int32_t Entry_Kind_Airport = 0x50001;

// The whole simulated world has about 24,000 airports, and a scenery file a few hundred or
// thousand of them; a file with more is hostile (entries that all point at one block, say),
// and the walk stops taking airports from it there.
constexpr int32_t Max_Airports_Per_File = 100000;

// Appends an Airport_Rec to module.airports for every accepted entry and decodes it, at
// most Max_Airports_Per_File of them; with form.database_present true it walks the same
// entries and changes nothing.
void Walk_Airport_Section(Form3_Data& form, Module1& module, int64_t section_position,
                          Section_Header header);

// Fills one airport in place from the record stream of its data block.
void Read_Airport_Records(Form3_Data& form, const Module1& module, int64_t block_position,
                          Airport_Rec& airport);

} // namespace quilmark
