#include "bgl/airport_walker.h"

#include "platform/rounding.h"

namespace quilmark {

namespace {

bool Accepts_Airport(const Bgl_Image& image, bool add_airports, int32_t kind, int32_t block) {
    return kind == Entry_Kind_Airport && block > 0 && Read_Int32(image, block) == 1 &&
           Read_Int32(image, static_cast<int64_t>(block) + 8) == 1 && add_airports;
}

} // namespace

void Walk_Airport_Section(Bgl_Image& image, const Magvar_Grid& grid, bool add_airports,
                          Dyn_Array<Airport_Rec>& airports, int32_t& airport_count,
                          int64_t section_position, Section_Header header) {
    const int64_t file_length = Bgl_File_Length(image);
    int64_t group_offset = 0;
    int32_t airports_taken = 0;
    while (header.record_type == Group_Record) {
        const int64_t g = section_position + group_offset;
        if (!Charge_Walk(image, 24)) {
            return;
        }
        // The entries run from index 0 up to and including the last entry index.
        const int32_t last_index = Read_Int32(image, g + 20);
        int64_t entry_offset = 0;
        for (int64_t index = 0; index <= last_index; ++index) {
            const int64_t e = g + 24 + entry_offset;
            if (e < 0 || e >= file_length) {
                break; // nothing but zeros from here on
            }
            const int32_t type = Read_Int32(image, e);
            const int64_t length = static_cast<int64_t>(Read_Int32(image, e + 4)) + 8;
            // Unlike the steps of the other walks, an entry is read even when its length
            // would not move the walk on; the walk leaves the group after it.
            if (!Charge_Walk(image, length < file_length - e ? length : file_length - e)) {
                return;
            }
            if (type == Directory_Entry) {
                std::string ident = Read_Text(image, e + 16, Clamp_I16(length - 16));
                const int32_t kind = Read_Int32(image, e + 8);
                const int32_t block = Read_Int32(image, e + 12);
                if (Accepts_Airport(image, add_airports, kind, block)) {
                    Airport_Rec& airport = Append(airports, airport_count);
                    airport.ident = std::move(ident);
                    Read_Airport_Records(image, grid, block, airport);
                    if (++airports_taken == Max_Airports_Per_File) {
                        return;
                    }
                }
            }
            if (length <= 0) {
                break; // an entry that would not move the walk forward
            }
            entry_offset += length;
        }
        // The next group begins behind this one, wherever its last entry ended.
        const int64_t step = static_cast<int64_t>(header.record_size) + 8;
        if (step <= 0) {
            return;
        }
        group_offset += step;
        header = Read_Section_Header(image, section_position + group_offset);
    }
}

void Read_Airport_Section(Bgl_Image& image, const Magvar_Grid& grid, bool add_airports,
                          Dyn_Array<Airport_Rec>& airports, int32_t& airport_count) {
    const int32_t section = Section_Position(image, Bgl_Airport_Section);
    if (section > 0) {
        Walk_Airport_Section(image, grid, add_airports, airports, airport_count, section,
                             Read_Section_Header(image, section));
    }
}

} // namespace quilmark
