// The boundary section of an FS2004 file (section type 0x20): one record (id 0x0020) per
// airspace, with its type, altitude band and bounding box in the fixed part and its name,
// outline and frequencies as sub-records. The boundaries whose box holds the airport
// become Airspace_Rec entries as the FS2002 boundary decoder makes them.
#pragma once

#include <cstdint>
#include <string>

#include "bgl/bgl_image.h"
#include "platform/dyn_array.h"
#include "state/airspace_model.h"

namespace quilmark {

constexpr uint16_t Fs2004_Id_Boundary = 0x0020;
constexpr uint16_t Fs2004_Id_Geopol = 0x0023; // coastlines and borders, mixed in and skipped
constexpr uint16_t Fs2004_Id_Boundary_Points = 0x0021;

// Boundary types the classic chart has a class text for.
constexpr uint8_t Fs2004_Boundary_Center = 1;
constexpr uint8_t Fs2004_Boundary_Class_B = 3;
constexpr uint8_t Fs2004_Boundary_Class_C = 4;
constexpr uint8_t Fs2004_Boundary_Class_D = 5;

// Appends an airspace for every boundary of the file whose box holds the airport strictly
// inside (edges rounded to 4 decimals, as the FS2002 boundaries are): the outline's
// elements as Point_* entries (circle radius in whole nautical miles), the names joined
// by two blanks, the frequencies as the FS2002 text, the last COM's facility name, the
// altitude band in whole feet, the centre of the box, and the record's type in
// boundary_type. class_text stays empty, to be given by Fs2004_Class_Text.
void Decode_Fs2004_Boundaries(Bgl_Image& image, double airport_lat, double airport_lon,
                              Dyn_Array<Airspace_Rec>& airspaces, int32_t& airspace_count);

// The classic chart's class text of a boundary type: "ARTCC/FIR" for a centre, "Airspace
// Class B", "C" or "D" for those classes; empty for every other type, which the classic
// class rule then decides.
std::string Fs2004_Class_Text(uint8_t boundary_type);

} // namespace quilmark
