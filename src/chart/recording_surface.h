// A surface that draws nothing and logs every call, for tests and for the command-line
// tool's listing of a chart's drawing operations.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "chart/surface.h"

namespace quilmark {

enum class Surface_Op {
    Cls,
    ForeColor,
    DrawWidth,
    DrawStyle,
    FillColor,
    FillStyle,
    MoveToEx,
    LineTo,
    Ellipse,
    Arc,
    TextOutA,
};

struct Surface_Op_Rec {
    Surface_Op op = Surface_Op::Cls;
    // The numeric arguments in call order (DrawWidth: 1, MoveToEx: 2, Arc: 8...); the
    // rest stay 0.
    std::array<int32_t, 8> args{};
    Rgb_Rec color{};  // ForeColor, FillColor
    std::string text; // TextOutA, Windows-1252 bytes as given
    bool operator==(const Surface_Op_Rec&) const = default;
};

class Recording_Surface final : public Surface {
  public:
    std::vector<Surface_Op_Rec> ops;

    void Cls() override;
    void Set_ForeColor(Rgb_Rec color) override;
    void Set_DrawWidth(int32_t width) override;
    void Set_DrawStyle(int32_t style) override;
    void Set_FillColor(Rgb_Rec color) override;
    void Set_FillStyle(int32_t style) override;
    void MoveToEx(int32_t x, int32_t y) override;
    void LineTo(int32_t x, int32_t y) override;
    void Ellipse(int32_t left, int32_t top, int32_t right, int32_t bottom) override;
    void Arc(int32_t left, int32_t top, int32_t right, int32_t bottom, int32_t x_start,
             int32_t y_start, int32_t x_end, int32_t y_end) override;
    void TextOutA(int32_t x, int32_t y, std::string_view text) override;
};

// One operation as a line of text, without the line end:
//   Cls | ForeColor r g b | DrawWidth n | DrawStyle n | FillColor r g b | FillStyle n
//   MoveToEx x y | LineTo x y | Ellipse l t r b | Arc l t r b xs ys xe ye
//   TextOutA x y "text"
// Numbers are decimal; text is converted to UTF-8 and quoted, with `"` and `\` escaped
// by a backslash.
std::string Format_Surface_Op(const Surface_Op_Rec& op);
// All recorded operations, one line each, every line ending in '\n'.
void Write_Recorded_Ops(const Recording_Surface& surface, std::ostream& out);
std::vector<std::string> Recorded_Op_Lines(const Recording_Surface& surface);

} // namespace quilmark
