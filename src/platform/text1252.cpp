#include "platform/text1252.h"

#include <array>
#include <cstdint>

namespace quilmark {

namespace {

// Unicode code points of the bytes 0x80 to 0x9F of Windows-1252.
constexpr std::array<uint16_t, 32> High_Controls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

uint32_t Code_Point_Of(unsigned char b) {
    if (b >= 0x80 && b <= 0x9F) {
        return High_Controls[b - 0x80];
    }
    return b;
}

void Append_Utf8(std::string& out, uint32_t cp) {
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

int Byte_From_Code_Point(uint32_t cp) {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) {
        return static_cast<int>(cp);
    }
    for (size_t i = 0; i < High_Controls.size(); ++i) {
        if (High_Controls[i] == cp) {
            return static_cast<int>(0x80 + i);
        }
    }
    return -1;
}

} // namespace

char Upper_1252_Char(char c) {
    auto b = static_cast<unsigned char>(c);
    if (b >= 'a' && b <= 'z') {
        return static_cast<char>(b - 0x20);
    }
    if (b >= 0xE0 && b <= 0xFE && b != 0xF7) {
        return static_cast<char>(b - 0x20);
    }
    switch (b) {
    case 0x9A:
        return static_cast<char>(0x8A);
    case 0x9C:
        return static_cast<char>(0x8C);
    case 0x9E:
        return static_cast<char>(0x8E);
    case 0xFF:
        return static_cast<char>(0x9F);
    default:
        return c;
    }
}

char Lower_1252_Char(char c) {
    auto b = static_cast<unsigned char>(c);
    if (b >= 'A' && b <= 'Z') {
        return static_cast<char>(b + 0x20);
    }
    if (b >= 0xC0 && b <= 0xDE && b != 0xD7) {
        return static_cast<char>(b + 0x20);
    }
    switch (b) {
    case 0x8A:
        return static_cast<char>(0x9A);
    case 0x8C:
        return static_cast<char>(0x9C);
    case 0x8E:
        return static_cast<char>(0x9E);
    case 0x9F:
        return static_cast<char>(0xFF);
    default:
        return c;
    }
}

std::string Upper_1252(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        c = Upper_1252_Char(c);
    }
    return out;
}

std::string Lower_1252(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        c = Lower_1252_Char(c);
    }
    return out;
}

bool Equal_No_Case(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (size_t i = 0; i < a.size(); ++i) {
        if (Upper_1252_Char(a[i]) != Upper_1252_Char(b[i])) {
            return false;
        }
    }
    return true;
}

bool Contains_No_Case(std::string_view haystack, std::string_view needle) {
    if (needle.empty()) {
        return true;
    }
    if (needle.size() > haystack.size()) {
        return false;
    }
    for (size_t start = 0; start + needle.size() <= haystack.size(); ++start) {
        size_t i = 0;
        while (i < needle.size() &&
               Upper_1252_Char(haystack[start + i]) == Upper_1252_Char(needle[i])) {
            ++i;
        }
        if (i == needle.size()) {
            return true;
        }
    }
    return false;
}

int Compare_No_Case(std::string_view a, std::string_view b) {
    size_t n = a.size() < b.size() ? a.size() : b.size();
    for (size_t i = 0; i < n; ++i) {
        auto ua = static_cast<unsigned char>(Upper_1252_Char(a[i]));
        auto ub = static_cast<unsigned char>(Upper_1252_Char(b[i]));
        if (ua != ub) {
            return ua < ub ? -1 : 1;
        }
    }
    if (a.size() != b.size()) {
        return a.size() < b.size() ? -1 : 1;
    }
    int raw = a.compare(b);
    return raw < 0 ? -1 : (raw > 0 ? 1 : 0);
}

std::string Ansi_To_Utf8(std::string_view ansi) {
    std::string out;
    out.reserve(ansi.size());
    for (char c : ansi) {
        Append_Utf8(out, Code_Point_Of(static_cast<unsigned char>(c)));
    }
    return out;
}

std::string Utf8_To_Ansi(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    size_t i = 0;
    while (i < utf8.size()) {
        auto b = static_cast<unsigned char>(utf8[i]);
        uint32_t cp = 0;
        size_t len = 0;
        if (b < 0x80) {
            cp = b;
            len = 1;
        } else if ((b & 0xE0) == 0xC0) {
            cp = b & 0x1F;
            len = 2;
        } else if ((b & 0xF0) == 0xE0) {
            cp = b & 0x0F;
            len = 3;
        } else if ((b & 0xF8) == 0xF0) {
            cp = b & 0x07;
            len = 4;
        } else {
            out.push_back('?');
            ++i;
            continue;
        }
        bool ok = i + len <= utf8.size();
        for (size_t k = 1; ok && k < len; ++k) {
            auto cont = static_cast<unsigned char>(utf8[i + k]);
            if ((cont & 0xC0) != 0x80) {
                ok = false;
            } else {
                cp = (cp << 6) | (cont & 0x3F);
            }
        }
        if (!ok) {
            out.push_back('?');
            ++i;
            continue;
        }
        int byte = Byte_From_Code_Point(cp);
        out.push_back(byte < 0 ? '?' : static_cast<char>(byte));
        i += len;
    }
    return out;
}

} // namespace quilmark
