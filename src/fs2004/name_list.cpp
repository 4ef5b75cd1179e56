#include "fs2004/name_list.h"

#include "fs2004/bgl_file.h"

namespace quilmark {

namespace {

constexpr int64_t Icao_Entry_Size = 20;
// Names are short; a longer run of bytes without a 0 is cut here.
constexpr int64_t Max_Name_Length = 256;

// One name list record at rec. Its size field is not to be relied on (files with zeros
// there are known), so the lists are bounded by the file alone.
void Decode_Name_List(Bgl_Image& image, int64_t rec, Fs2004_Name_Table& names) {
    const int64_t file_end = Bgl_File_Length(image);
    const int64_t airport_names = Read_U16(image, rec + 14);
    const int64_t icao_count = Read_U16(image, rec + 16);
    // The airport names: an index of offsets, each counted from the end of the index.
    const int64_t index = rec + Read_U32(image, rec + 34);
    const int64_t texts = index + 4 * airport_names;
    const int64_t icao_list = rec + Read_U32(image, rec + 38);
    for (int64_t i = 0; i < icao_count; ++i) {
        const int64_t e = icao_list + Icao_Entry_Size * i;
        if (e + Icao_Entry_Size > file_end || !Charge_Walk(image, Icao_Entry_Size)) {
            return;
        }
        const int64_t name_index = Read_U16(image, e + 6);
        if (name_index >= airport_names) {
            continue;
        }
        std::string name = Read_Fs2004_Text(image, texts + Read_U32(image, index + 4 * name_index),
                                            Max_Name_Length);
        if (!Charge_Walk(image, static_cast<int64_t>(name.size()))) {
            return;
        }
        std::string ident = Fs2004_Icao(Read_U32(image, e + 8), true);
        if (!name.empty() && !ident.empty()) {
            names[std::move(ident)] = std::move(name);
        }
    }
}

} // namespace

void Decode_Fs2004_Names(Bgl_Image& image, Fs2004_Name_Table& names) {
    Walk_Fs2004_Subsections(image, Fs2004_Section_Names, [&](int64_t rec, int64_t) {
        Decode_Name_List(image, rec, names);
        return true;
    });
}

} // namespace quilmark
