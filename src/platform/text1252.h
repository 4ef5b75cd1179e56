// Text as the simulator's files have it: bytes of the Windows-1252 code page, kept in
// std::string exactly as read. UTF-8 appears only at the edges (screen, terminal, JSON,
// native file names).
#pragma once

#include <string>
#include <string_view>

namespace quilmark {

// Upper and lower case by the letters of Windows-1252 (ASCII, the accented letters of
// 0xC0 to 0xFE, and the pairs š/Š, œ/Œ, ž/Ž, ÿ/Ÿ); every other byte stays as it is.
char Upper_1252_Char(char c);
char Lower_1252_Char(char c);
std::string Upper_1252(std::string_view text);
std::string Lower_1252(std::string_view text);

// Compare or search without regard to case, by Windows-1252 upper case.
bool Equal_No_Case(std::string_view a, std::string_view b);
bool Contains_No_Case(std::string_view haystack, std::string_view needle);

// Ordering of a list sorted without regard to case: by Windows-1252 upper case first,
// and texts equal but for case by their bytes. Negative, zero or positive.
int Compare_No_Case(std::string_view a, std::string_view b);

// Conversions at the edges. Undefined bytes of the code page (0x81, 0x8D, 0x8F, 0x90,
// 0x9D) pass as the C1 control characters of the same value, as Windows does.
std::string Ansi_To_Utf8(std::string_view ansi);
// A character that Windows-1252 cannot hold, or a broken UTF-8 sequence, becomes '?'.
std::string Utf8_To_Ansi(std::string_view utf8);

} // namespace quilmark
