// Runs bytes of a BGL file through the decoders as the database build does: the marker
// test, then the sections.
#pragma once

#include <memory>

#include "bgl/sections.h"
#include "state/form3_data.h"
#include "state/module1.h"
#include "support/bgl_writer.h"

namespace quilmark {

inline void Decode_Bgl_Bytes(Module1& module, const Bytes& bytes, bool database_present = false) {
    auto form = std::make_unique<Form3_Data>();
    form->database_present = database_present;
    Set_Bgl_Image(form->bgl_image, bytes);
    if (Has_Bgl_Marker(form->bgl_image)) {
        Read_BGL_Sections(*form, module);
    }
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
