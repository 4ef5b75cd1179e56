// The boundary section of a BGL file: a chain of groups (record type 1) two levels deep. A
// group of kind 4 is a list of boundaries; inside it each group of kind 5 is one boundary,
// whose records say where it lies and what it is. The boundaries whose box holds the
// airport are appended to the airspace list.
#pragma once

#include <cstdint>

#include "bgl/bgl_image.h"
#include "bgl/sections.h"
#include "geo/geodesy.h"
#include "platform/dyn_array.h"
#include "state/airspace_model.h"

namespace quilmark {

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

// What a boundary walk reads and what it fills.
struct Boundary_Walk_Rec {
    Bgl_Image& image;
    const Magvar_Grid& grid; // for the bearing that places an airspace's centre
    Geo_Point_Rec airport;   // a boundary is kept when its box holds this position
    // The list the kept boundaries are appended to, with its spare empty top slot.
    Dyn_Array<Airspace_Rec>& airspaces;
    int32_t& airspace_count;
    // What is left of the fetch's airspace memory (Max_Airspace_Bytes_Per_Fetch): a record
    // it can no longer pay for is passed over.
    int64_t& bytes_left;
};

// The boundary section of the loaded file, where its header names one: Walk_Boundary_Section
// from its first record.
void Read_Boundary_Section(Boundary_Walk_Rec& walk);
void Walk_Boundary_Section(Boundary_Walk_Rec& walk, int64_t section_position,
                           Section_Header header);
void Walk_Boundary_List(Boundary_Walk_Rec& walk, int64_t list_position, Section_Header header);
// position: the boundary's group record itself; its children begin 16 bytes behind it.
void Read_Boundary_Records(Boundary_Walk_Rec& walk, int64_t position);

} // namespace quilmark
