// The boundary section of a BGL file: a chain of groups (record type 1) two levels deep. A
// group of kind 4 is a list of boundaries; inside it each group of kind 5 is one boundary,
// whose records say where it lies and what it is. The boundaries whose box holds the
// current airport are appended to the airspace list.
#pragma once

#include <cstdint>

#include "bgl/sections.h"

namespace quilmark {

struct Form3_Data;
struct Module1;

constexpr int32_t Boundary_Group_Record = 1;
constexpr int32_t Boundary_Skipped_Record = 0x30001;
constexpr int32_t Group_Kind_Boundary_List = 4;
constexpr int32_t Group_Kind_Boundary = 5;

// Child records of a boundary.
constexpr int32_t Boundary_Box = 0x1000B;
constexpr int32_t Boundary_Name = 0x10006;
constexpr int32_t Boundary_Fix = 0x12001;
constexpr int32_t Boundary_Start = 0x12002;
constexpr int32_t Boundary_Skip = 0x12003;
constexpr int32_t Boundary_Line = 0x12005;
constexpr int32_t Boundary_Arc_CW = 0x12006;
constexpr int32_t Boundary_Arc_CCW = 0x12007;
constexpr int32_t Boundary_Circle = 0x12008;
constexpr int32_t Boundary_Com = 0x20001;

void Walk_Boundary_Section(Form3_Data& form, Module1& module, int64_t section_position,
                           Section_Header header);
void Walk_Boundary_List(Form3_Data& form, Module1& module, int64_t list_position,
                        Section_Header header);
// position: the boundary's group record itself; its children begin 16 bytes behind it.
void Read_Boundary_Records(Form3_Data& form, Module1& module, int64_t position);

} // namespace quilmark
