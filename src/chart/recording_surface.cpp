#include "chart/recording_surface.h"

#include <initializer_list>

#include "platform/text1252.h"

namespace quilmark {

namespace {

Surface_Op_Rec Numbers_Op(Surface_Op op, std::initializer_list<int32_t> numbers) {
    Surface_Op_Rec rec;
    rec.op = op;
    size_t i = 0;
    for (int32_t n : numbers) {
        rec.args[i++] = n;
    }
    return rec;
}

Surface_Op_Rec Color_Op(Surface_Op op, Rgb_Rec color) {
    Surface_Op_Rec rec;
    rec.op = op;
    rec.color = color;
    return rec;
}

struct Op_Layout {
    const char* name;
    size_t number_count;
    bool has_color;
    bool has_text;
};

Op_Layout Layout_Of(Surface_Op op) {
    switch (op) {
    case Surface_Op::Cls:
        return {"Cls", 0, false, false};
    case Surface_Op::ForeColor:
        return {"ForeColor", 0, true, false};
    case Surface_Op::DrawWidth:
        return {"DrawWidth", 1, false, false};
    case Surface_Op::DrawStyle:
        return {"DrawStyle", 1, false, false};
    case Surface_Op::FillColor:
        return {"FillColor", 0, true, false};
    case Surface_Op::FillStyle:
        return {"FillStyle", 1, false, false};
    case Surface_Op::MoveToEx:
        return {"MoveToEx", 2, false, false};
    case Surface_Op::LineTo:
        return {"LineTo", 2, false, false};
    case Surface_Op::Ellipse:
        return {"Ellipse", 4, false, false};
    case Surface_Op::Arc:
        return {"Arc", 8, false, false};
    case Surface_Op::TextOutA:
        return {"TextOutA", 2, false, true};
    }
    return {"?", 0, false, false};
}

} // namespace

void Recording_Surface::Cls() {
    ops.push_back(Numbers_Op(Surface_Op::Cls, {}));
}

void Recording_Surface::Set_ForeColor(Rgb_Rec color) {
    ops.push_back(Color_Op(Surface_Op::ForeColor, color));
}

void Recording_Surface::Set_DrawWidth(int32_t width) {
    ops.push_back(Numbers_Op(Surface_Op::DrawWidth, {width}));
}

void Recording_Surface::Set_DrawStyle(int32_t style) {
    ops.push_back(Numbers_Op(Surface_Op::DrawStyle, {style}));
}

void Recording_Surface::Set_FillColor(Rgb_Rec color) {
    ops.push_back(Color_Op(Surface_Op::FillColor, color));
}

void Recording_Surface::Set_FillStyle(int32_t style) {
    ops.push_back(Numbers_Op(Surface_Op::FillStyle, {style}));
}

void Recording_Surface::MoveToEx(int32_t x, int32_t y) {
    ops.push_back(Numbers_Op(Surface_Op::MoveToEx, {x, y}));
}

void Recording_Surface::LineTo(int32_t x, int32_t y) {
    ops.push_back(Numbers_Op(Surface_Op::LineTo, {x, y}));
}

void Recording_Surface::Ellipse(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    ops.push_back(Numbers_Op(Surface_Op::Ellipse, {left, top, right, bottom}));
}

void Recording_Surface::Arc(int32_t left, int32_t top, int32_t right, int32_t bottom,
                            int32_t x_start, int32_t y_start, int32_t x_end, int32_t y_end) {
    ops.push_back(
        Numbers_Op(Surface_Op::Arc, {left, top, right, bottom, x_start, y_start, x_end, y_end}));
}

void Recording_Surface::TextOutA(int32_t x, int32_t y, std::string_view text) {
    Surface_Op_Rec rec = Numbers_Op(Surface_Op::TextOutA, {x, y});
    rec.text = std::string(text);
    ops.push_back(std::move(rec));
}

std::string Format_Surface_Op(const Surface_Op_Rec& op) {
    Op_Layout layout = Layout_Of(op.op);
    std::string line = layout.name;
    if (layout.has_color) {
        line += ' ' + std::to_string(op.color.red) + ' ' + std::to_string(op.color.green) + ' ' +
                std::to_string(op.color.blue);
    }
    for (size_t i = 0; i < layout.number_count; ++i) {
        line += ' ' + std::to_string(op.args[i]);
    }
    if (layout.has_text) {
        line += " \"";
        for (char c : Ansi_To_Utf8(op.text)) {
            if (c == '"' || c == '\\') {
                line += '\\';
            }
            line += c;
        }
        line += '"';
    }
    return line;
}

void Write_Recorded_Ops(const Recording_Surface& surface, std::ostream& out) {
    for (const Surface_Op_Rec& op : surface.ops) {
        out << Format_Surface_Op(op) << '\n';
    }
}

std::vector<std::string> Recorded_Op_Lines(const Recording_Surface& surface) {
    std::vector<std::string> lines;
    lines.reserve(surface.ops.size());
    for (const Surface_Op_Rec& op : surface.ops) {
        lines.push_back(Format_Surface_Op(op));
    }
    return lines;
}

} // namespace quilmark
