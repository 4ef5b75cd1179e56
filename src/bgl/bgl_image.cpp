#include "bgl/bgl_image.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>

#include "platform/native_paths.h"

namespace quilmark {

bool Load_Bgl_Image(Bgl_Image& image, const std::string& native_path) {
    Release_Bgl_Image(image);
    std::optional<std::vector<uint8_t>> bytes =
        Read_Whole_File_Bytes(native_path, static_cast<uint64_t>(Max_Bgl_File_Size), 1);
    if (!bytes) {
        return false;
    }
    image.bytes = std::move(*bytes);
    image.walk_budget = 8 * Bgl_File_Length(image) + 65536;
    return true;
}

void Set_Bgl_Image(Bgl_Image& image, std::vector<uint8_t> file_bytes) {
    file_bytes.push_back(0);
    image.bytes = std::move(file_bytes);
    image.walk_budget = 8 * Bgl_File_Length(image) + 65536;
}

void Release_Bgl_Image(Bgl_Image& image) {
    image.bytes.assign(1, 0);
    image.bytes.shrink_to_fit();
    image.walk_budget = 0;
}

int64_t Bgl_File_Length(const Bgl_Image& image) {
    return image.bytes.empty() ? 0 : static_cast<int64_t>(image.bytes.size()) - 1;
}

bool Charge_Walk(Bgl_Image& image, int64_t bytes) {
    if (bytes < 8) {
        bytes = 8; // every step costs at least a record header
    }
    if (image.walk_budget < bytes) {
        image.walk_budget = 0;
        return false;
    }
    image.walk_budget -= bytes;
    return true;
}

bool Take_Record_Step(Bgl_Image& image, int64_t position, int64_t length, Step_Charge charge) {
    const int64_t file_length = Bgl_File_Length(image);
    if (length <= 0 || position >= file_length) {
        return false;
    }
    if (charge == Step_Charge::Header) {
        return Charge_Walk(image, 8);
    }
    return Charge_Walk(image, length < file_length - position ? length : file_length - position);
}

uint8_t Read_Byte(const Bgl_Image& image, int64_t position) {
    if (position < 0 || position >= static_cast<int64_t>(image.bytes.size())) {
        return 0;
    }
    return image.bytes[static_cast<size_t>(position)];
}

int16_t Read_Int16(const Bgl_Image& image, int64_t position) {
    uint16_t v;
    if (position >= 0 && position <= static_cast<int64_t>(image.bytes.size()) - 2) {
        const uint8_t* p = image.bytes.data() + position;
        v = static_cast<uint16_t>(p[0] | (p[1] << 8));
    } else {
        bool second_inside = position < static_cast<int64_t>(image.bytes.size()) - 1;
        v = static_cast<uint16_t>(Read_Byte(image, position) |
                                  ((second_inside ? Read_Byte(image, position + 1) : 0) << 8));
    }
    return static_cast<int16_t>(v);
}

int32_t Read_Int32(const Bgl_Image& image, int64_t position) {
    uint32_t v;
    if (position >= 0 && position <= static_cast<int64_t>(image.bytes.size()) - 4) {
        const uint8_t* p = image.bytes.data() + position;
        v = static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) |
            (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[3]) << 24);
    } else {
        v = 0;
        for (int i = 3; i >= 0; --i) {
            bool inside = position >= -i && position < static_cast<int64_t>(image.bytes.size()) - i;
            v = (v << 8) | (inside ? Read_Byte(image, position + i) : 0u);
        }
    }
    return static_cast<int32_t>(v);
}

std::string Read_Text(const Bgl_Image& image, int64_t position, int32_t length) {
    std::string text;
    int64_t size = static_cast<int64_t>(image.bytes.size());
    if (length <= 0 || position >= size) {
        return text;
    }
    // Only the part inside the image can hold anything but 0.
    int64_t first = position < 0 ? 0 : position;
    int64_t last = position + length; // one past
    if (last > size) {
        last = size;
    }
    for (int64_t p = first; p < last; ++p) {
        uint8_t b = image.bytes[static_cast<size_t>(p)];
        if (b != 0) {
            text.push_back(static_cast<char>(b));
        }
    }
    return text;
}

float Read_Float(int32_t word) {
    if (word == 0) {
        return 0.0f;
    }
    auto bits = static_cast<uint32_t>(word);
    double sign = (bits & 0x80000000u) ? -1.0 : 1.0;
    int exponent = static_cast<int>((bits >> 23) & 0xFF);
    if (exponent == 255) {
        return 0.0f; // the arithmetic overflows: no infinities, no NaN
    }
    // The mantissa always carries its leading bit, also for exponent 0.
    double mantissa = static_cast<double>((bits & 0x7FFFFFu) | 0x800000u);
    double factor = 2.0 * mantissa / 16777216.0;
    double value = sign * factor * std::ldexp(1.0, exponent - 127);
    return static_cast<float>(value);
}

bool Has_Bgl_Marker(const Bgl_Image& image) {
    return static_cast<uint32_t>(Read_Int32(image, 118)) == 0x87654321u;
}

double Decode_Latitude(int32_t raw) {
    return static_cast<double>(raw) * 90.0 / 10001750.0;
}

double Decode_Longitude(int32_t raw) {
    return static_cast<double>(raw) * 360.0 / 4294967296.0;
}

double Decode_Reference_Longitude(int32_t raw) {
    return static_cast<double>(raw) * 360.0 / 4294967297.0;
}

double Decode_Frequency(int32_t word) {
    // Written in hexadecimal digits and read back as a decimal number; the reading stops
    // at the first digit that is not decimal, as a frequency has none.
    char hex[16];
    std::snprintf(hex, sizeof hex, "%X", static_cast<unsigned>(static_cast<uint32_t>(word)));
    double value = 0;
    for (const char* p = hex; *p >= '0' && *p <= '9'; ++p) {
        value = value * 10.0 + (*p - '0');
    }
    return value / 10000.0;
}

std::string Frequency_Text(double mhz) {
    char buffer[64];
    auto result =
        std::to_chars(buffer, buffer + sizeof buffer, mhz, std::chars_format::general, 15);
    return std::string(buffer, result.ptr);
}

} // namespace quilmark
