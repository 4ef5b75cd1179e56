#include "bgl/airport_walker.h"

#include "platform/rounding.h"
#include "state/form3_data.h"
#include "state/module1.h"

namespace quilmark {

namespace {

bool Accepts_Airport(const Form3_Data& form, int32_t kind, int32_t block) {
    const Bgl_Image& image = form.bgl_image;
    return kind == Entry_Kind_Airport && block > 0 && Read_Int32(image, block) == 1 &&
           Read_Int32(image, static_cast<int64_t>(block) + 8) == 1 && !form.database_present;
}

} // namespace

void Walk_Airport_Section(Form3_Data& form, Module1& module, int64_t section_position,
                          Section_Header header) {
    Bgl_Image& image = form.bgl_image;
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
            if (!Charge_Walk(image, length < file_length - e ? length : file_length - e)) {
                return;
            }
            if (type == Directory_Entry) {
                std::string ident = Read_Text(image, e + 16, Clamp_I16(length - 16));
                const int32_t kind = Read_Int32(image, e + 8);
                const int32_t block = Read_Int32(image, e + 12);
                if (Accepts_Airport(form, kind, block)) {
                    module.airport_count += 1;
                    module.airports.Resize_Keep(static_cast<size_t>(module.airport_count));
                    Airport_Rec& airport =
                        module.airports[static_cast<size_t>(module.airport_count - 1)];
                    airport.ident = std::move(ident);
                    Read_Airport_Records(form, module, block, airport);
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
        const int64_t next = section_position + group_offset;
        header.record_type = Read_Int32(image, next);
        header.record_size = Read_Int32(image, next + 4);
    }
}

} // namespace quilmark
