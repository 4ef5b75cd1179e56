#include "fs2004/bgl_file.h"

#include <algorithm>
#include <vector>

#include "platform/native_paths.h"
#include "platform/rounding.h"

namespace quilmark {

bool Is_Fs2004_File(const Bgl_Image& image) {
    return Bgl_File_Length(image) >= Fs2004_Section_Table && Read_U32(image, 0) == Fs2004_Magic;
}

int64_t Fs2004_Section_Count(const Bgl_Image& image) {
    if (!Is_Fs2004_File(image)) {
        return 0;
    }
    // The header's size field is not used: the pointers begin at 0x38 in every file the
    // sources describe, also where an early description gives 0x34.
    const int64_t declared = Read_U32(image, 20);
    const int64_t fitting =
        (Bgl_File_Length(image) - Fs2004_Section_Table) / Fs2004_Section_Pointer_Size;
    return declared < fitting ? declared : fitting;
}

Fs2004_Section_Rec Read_Fs2004_Section(const Bgl_Image& image, int64_t index) {
    const int64_t p = Fs2004_Section_Table + index * Fs2004_Section_Pointer_Size;
    Fs2004_Section_Rec section;
    section.type = Read_U32(image, p);
    // Bit 16 of the second word marks the 20-byte subsection entries of later simulators.
    section.entry_size = (Read_U32(image, p + 4) & 0x10000u) != 0 ? 20 : 16;
    section.subsection_count = Read_U32(image, p + 8);
    section.table_position = Read_U32(image, p + 12);
    section.table_size = Read_U32(image, p + 16);
    return section;
}

bool Declares_Fs2004_Section(const Bgl_Image& image, uint32_t type) {
    const int64_t count = Fs2004_Section_Count(image);
    for (int64_t i = 0; i < count; ++i) {
        if (Read_Fs2004_Section(image, i).type == type) {
            return true;
        }
    }
    return false;
}

bool Fs2004_File_May_Hold(const std::string& native_path, std::initializer_list<uint32_t> types) {
    // Room for the header and some 3,000 section pointers; a real file has a handful.
    constexpr uint64_t Head_Size = 64 * 1024;
    File_Part_Reader file;
    if (!file.Open(native_path, static_cast<uint64_t>(Max_Bgl_File_Size))) {
        return false; // a whole read would refuse it too
    }
    std::vector<uint8_t> head(static_cast<size_t>(std::min(file.Size(), Head_Size)));
    if (!file.Take(head.data(), head.size())) {
        return false;
    }
    Bgl_Image image;
    Set_Bgl_Image(image, std::move(head));
    if (!Is_Fs2004_File(image)) {
        return false;
    }
    const int64_t table_end =
        Fs2004_Section_Table + int64_t{Read_U32(image, 20)} * Fs2004_Section_Pointer_Size;
    if (table_end > Bgl_File_Length(image) && file.Size() > Head_Size) {
        return true;
    }
    for (const uint32_t type : types) {
        if (Declares_Fs2004_Section(image, type)) {
            return true;
        }
    }
    return false;
}

double Fs2004_Longitude(uint32_t raw) {
    return static_cast<double>(raw) * 360.0 / 805306368.0 - 180.0;
}

double Fs2004_Latitude(uint32_t raw) {
    return 90.0 - static_cast<double>(raw) * 180.0 / 536870912.0;
}

std::string Fs2004_Icao(uint32_t value, bool shifted) {
    if (shifted) {
        value >>= 5;
    }
    // The last character is the lowest digit; blanks and the unused code 1 drop out.
    std::string reversed;
    for (; value > 0; value /= 38) {
        const uint32_t code = value % 38;
        if (code >= 2 && code <= 11) {
            reversed.push_back(static_cast<char>('0' + (code - 2)));
        } else if (code >= 12) {
            reversed.push_back(static_cast<char>('A' + (code - 12)));
        }
    }
    return std::string(reversed.rbegin(), reversed.rend());
}

std::string Read_Fs2004_Text(const Bgl_Image& image, int64_t position, int64_t length) {
    std::string text;
    const int64_t end = position + (length < 32767 ? length : 32767);
    for (int64_t p = position; p >= 0 && p < end && p < Bgl_File_Length(image); ++p) {
        const uint8_t b = Read_Byte(image, p);
        if (b == 0) {
            break;
        }
        text.push_back(static_cast<char>(b));
    }
    return text;
}

std::string Fs2004_Frequency_Text(uint32_t hz) {
    return Frequency_Text(hz / 1000000.0);
}

int32_t Millimetres_To_Feet(int64_t mm) {
    return To_I32(static_cast<double>(mm) / 304.8);
}

} // namespace quilmark
