// Runs bytes of a BGL file through the decoders as the scan and the fetch do: the marker
// test, then the airport section and the boundary section.
#pragma once

#include <memory>

#include "airspace/boundary_walker.h"
#include "bgl/airport_walker.h"
#include "bgl_writer/bgl_writer.h"

namespace quilmark {

struct Decode_Input {
    const Magvar_Grid* grid = nullptr; // none: no variation anywhere
    bool add_airports = true;          // false: the database file is there
    Geo_Point_Rec airport{};           // the boundaries whose box holds it are kept
};

// What the decoders made of a file.
struct Decoded_Rec {
    Dyn_Array<Airport_Rec> airports;
    int32_t airport_count = 0;
    Dyn_Array<Airspace_Rec> airspaces;
    int32_t airspace_count = 0;
    int64_t airspace_bytes_left = Max_Airspace_Bytes_Per_Fetch;
};

inline std::unique_ptr<Decoded_Rec> Decode_Bgl_Bytes(const Bytes& bytes,
                                                     const Decode_Input& in = {}) {
    static const Magvar_Grid no_variation{};
    const Magvar_Grid& grid = in.grid != nullptr ? *in.grid : no_variation;
    auto out = std::make_unique<Decoded_Rec>();
    Bgl_Image image;
    Set_Bgl_Image(image, bytes);
    if (Has_Bgl_Marker(image)) {
        Read_Airport_Section(image, grid, in.add_airports, out->airports, out->airport_count);
        Boundary_Walk_Rec walk{
            image, grid, in.airport, out->airspaces, out->airspace_count, out->airspace_bytes_left};
        Read_Boundary_Section(walk);
    }
    return out;
}

// A file with one airport whose data block holds the given records.
inline Bytes One_Airport_File(const std::string& ident, const Bytes& stream) {
    Bgl_File_Layout layout;
    Airport_Entry entry;
    entry.ident = ident;
    entry.stream = stream;
    layout.groups.push_back({{entry}, std::nullopt, 0});
    return Build_Bgl(layout);
}

inline Bytes Concat(std::initializer_list<Bytes> parts) {
    return Concat_Bytes(parts);
}

} // namespace quilmark
