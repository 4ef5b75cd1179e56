#include "chart/recording_surface.h"

#include <cmath>
#include <cstdio>
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
    case Surface_Op::Polygon:
        return {"Polygon", 0, false, false};
    case Surface_Op::Polyline:
        return {"Polyline", 0, false, false};
    case Surface_Op::Segments:
        return {"Segments", 0, false, false};
    case Surface_Op::Circles:
        return {"Circles", 0, false, false};
    case Surface_Op::Text:
        return {"Text", 0, false, true};
    }
    return {"?", 0, false, false};
}

// A pixel number to 2 decimals, without trailing zeros: 12, 12.5, -0.25.
std::string Pixel_Text(double v) {
    if (!std::isfinite(v)) {
        return "nan";
    }
    char digits[64];
    std::snprintf(digits, sizeof digits, "%.2f", v);
    std::string text = digits;
    while (text.back() == '0') {
        text.pop_back();
    }
    if (text.back() == '.') {
        text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string Rgba_Text(Rgba_Rec c) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "#%02X%02X%02X%02X", c.red, c.green, c.blue, c.alpha);
    return digits;
}

std::string Stroke_Text(const Stroke_Rec& stroke) {
    std::string text = Rgba_Text(stroke.color) + ' ' + Pixel_Text(stroke.width);
    if (!stroke.dashes.empty()) {
        text += " dash ";
        for (size_t i = 0; i < stroke.dashes.size(); ++i) {
            if (i > 0) {
                text += ',';
            }
            text += Pixel_Text(stroke.dashes[i]);
        }
    }
    return stroke.round ? text + " round" : text;
}

std::string Points_Text(const std::vector<Point_F_Rec>& points) {
    std::string text = std::to_string(points.size());
    for (const Point_F_Rec& p : points) {
        text += ' ' + Pixel_Text(p.x) + ' ' + Pixel_Text(p.y);
    }
    return text;
}

Surface_Op_Rec Figure_Op(Surface_Op op, std::span<const Point_F_Rec> points, Rgba_Rec fill,
                         const Stroke_Rec& stroke) {
    Surface_Op_Rec rec;
    rec.op = op;
    rec.points.assign(points.begin(), points.end());
    rec.fill = fill;
    rec.stroke = stroke;
    return rec;
}

// The figure part of a line, after the name.
std::string Figure_Text(const Surface_Op_Rec& op) {
    switch (op.op) {
    case Surface_Op::Polygon:
        return Rgba_Text(op.fill) + ' ' + Stroke_Text(op.stroke) + ' ' + Points_Text(op.points);
    case Surface_Op::Polyline:
    case Surface_Op::Segments:
        return Stroke_Text(op.stroke) + ' ' + Points_Text(op.points);
    case Surface_Op::Circles: {
        std::string text = Rgba_Text(op.fill) + ' ' + Stroke_Text(op.stroke) + ' ' +
                           std::to_string(op.points.size());
        for (size_t i = 0; i < op.points.size() && i < op.radii.size(); ++i) {
            text += ' ' + Pixel_Text(op.points[i].x) + ' ' + Pixel_Text(op.points[i].y) + ' ' +
                    Pixel_Text(op.radii[i]);
        }
        return text;
    }
    case Surface_Op::Text: {
        std::string text = Pixel_Text(op.points.at(0).x) + ' ' + Pixel_Text(op.points.at(0).y) +
                           ' ' + Pixel_Text(op.size) + ' ' + Pixel_Text(op.style.size_px) +
                           (op.style.bold ? " bold " : " ") + Rgba_Text(op.style.color);
        if (op.style.halo_px > 0) {
            text += " halo " + Rgba_Text(op.style.halo) + ' ' + Pixel_Text(op.style.halo_px);
        }
        return text;
    }
    default:
        return "";
    }
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

void Recording_Surface::Draw_Polygon(std::span<const Point_F_Rec> points, Rgba_Rec fill,
                                     const Stroke_Rec& outline) {
    ops.push_back(Figure_Op(Surface_Op::Polygon, points, fill, outline));
}

void Recording_Surface::Draw_Polyline(std::span<const Point_F_Rec> points,
                                      const Stroke_Rec& stroke) {
    ops.push_back(Figure_Op(Surface_Op::Polyline, points, {}, stroke));
}

void Recording_Surface::Draw_Segments(std::span<const Point_F_Rec> ends, const Stroke_Rec& stroke) {
    ops.push_back(Figure_Op(Surface_Op::Segments, ends, {}, stroke));
}

void Recording_Surface::Draw_Circles(std::span<const Circle_F_Rec> circles, Rgba_Rec fill,
                                     const Stroke_Rec& outline) {
    Surface_Op_Rec rec = Figure_Op(Surface_Op::Circles, {}, fill, outline);
    for (const Circle_F_Rec& c : circles) {
        rec.points.push_back(c.centre);
        rec.radii.push_back(c.radius);
    }
    ops.push_back(std::move(rec));
}

void Recording_Surface::Draw_Text(Point_F_Rec centre, double angle_deg, std::string_view text,
                                  const Text_Style_Rec& style) {
    Surface_Op_Rec rec = Figure_Op(Surface_Op::Text, std::span(&centre, 1), {}, {});
    rec.size = angle_deg;
    rec.style = style;
    rec.text = std::string(text);
    ops.push_back(std::move(rec));
}

Text_Extent_Rec Recording_Surface::Measure_Text(std::string_view text, double size_px,
                                                bool bold) const {
    return {static_cast<double>(text.size()) * size_px * (bold ? 0.65 : 0.6), 0.8 * size_px,
            0.2 * size_px};
}

std::string Format_Surface_Op(const Surface_Op_Rec& op) {
    Op_Layout layout = Layout_Of(op.op);
    std::string line = layout.name;
    if (std::string figure = Figure_Text(op); !figure.empty()) {
        line += ' ' + figure;
    }
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
