#include "chart/label_placement.h"

#include <algorithm>
#include <cmath>

#include "geo/geodesy.h"

namespace quilmark {

namespace {

struct Axes {
    Point_F_Rec along; // unit vector along the text
    Point_F_Rec up;    // unit vector across it
};

Axes Axes_Of(const Label_Box_Rec& box) {
    const double a = box.angle_deg * Degrees_To_Radians;
    const double c = std::cos(a);
    const double s = std::sin(a);
    return {{c, s}, {-s, c}};
}

// Half the extent of a box projected onto a unit axis.
double Projected_Radius(const Label_Box_Rec& box, const Axes& axes, Point_F_Rec axis) {
    return box.half_width * std::abs(axes.along.x * axis.x + axes.along.y * axis.y) +
           box.half_height * std::abs(axes.up.x * axis.x + axes.up.y * axis.y);
}

// Touching edges don't count: a hair's breadth of room is enough.
constexpr double Touch = 1e-6;

} // namespace

std::array<Point_F_Rec, 4> Box_Corners(const Label_Box_Rec& box) {
    const Axes axes = Axes_Of(box);
    const double w = box.half_width;
    const double h = box.half_height;
    auto corner = [&](double sw, double sh) {
        return Point_F_Rec{box.centre.x + sw * w * axes.along.x + sh * h * axes.up.x,
                           box.centre.y + sw * w * axes.along.y + sh * h * axes.up.y};
    };
    return {corner(-1, -1), corner(1, -1), corner(1, 1), corner(-1, 1)};
}

bool Boxes_Overlap(const Label_Box_Rec& a, const Label_Box_Rec& b) {
    // Two convex rectangles are apart when one of their four edge directions separates
    // them.
    const Axes axes_a = Axes_Of(a);
    const Axes axes_b = Axes_Of(b);
    const Point_F_Rec d{b.centre.x - a.centre.x, b.centre.y - a.centre.y};
    for (Point_F_Rec axis : {axes_a.along, axes_a.up, axes_b.along, axes_b.up}) {
        const double distance = std::abs(d.x * axis.x + d.y * axis.y);
        if (distance >=
            Projected_Radius(a, axes_a, axis) + Projected_Radius(b, axes_b, axis) - Touch) {
            return false;
        }
    }
    return true;
}

Label_Placer::Label_Placer(double left, double top, double right, double bottom)
    : left_(left), top_(top), right_(right), bottom_(bottom) {
    columns_ = std::clamp(static_cast<int>(std::ceil((right - left) / Cell_Px)), 1, 1024);
    rows_ = std::clamp(static_cast<int>(std::ceil((bottom - top) / Cell_Px)), 1, 1024);
    cells_.resize(static_cast<size_t>(columns_) * static_cast<size_t>(rows_));
}

void Label_Placer::Cell_Range(double min_x, double min_y, double max_x, double max_y, int& x0,
                              int& y0, int& x1, int& y1) const {
    auto cell = [](double v, double origin, int count) {
        const double c = std::floor((v - origin) / Cell_Px);
        return static_cast<int>(std::clamp(c, 0.0, static_cast<double>(count - 1)));
    };
    x0 = cell(min_x, left_, columns_);
    x1 = cell(max_x, left_, columns_);
    y0 = cell(min_y, top_, rows_);
    y1 = cell(max_y, top_, rows_);
}

void Label_Placer::Add(const Label_Box_Rec& box, int64_t owner, bool obstacle) {
    Entry e{box, 0, 0, 0, 0, owner, obstacle};
    const auto corners = Box_Corners(box);
    e.min_x = e.max_x = corners[0].x;
    e.min_y = e.max_y = corners[0].y;
    for (const Point_F_Rec& c : corners) {
        e.min_x = std::min(e.min_x, c.x);
        e.max_x = std::max(e.max_x, c.x);
        e.min_y = std::min(e.min_y, c.y);
        e.max_y = std::max(e.max_y, c.y);
    }
    if (!(e.max_x > left_ && e.min_x < right_ && e.max_y > top_ && e.min_y < bottom_)) {
        return; // wholly outside the area: no label can meet it
    }
    const auto index = static_cast<uint32_t>(entries_.size());
    entries_.push_back(e);
    seen_.push_back(0);
    int x0, y0, x1, y1;
    Cell_Range(e.min_x, e.min_y, e.max_x, e.max_y, x0, y0, x1, y1);
    for (int y = y0; y <= y1; ++y) {
        for (int x = x0; x <= x1; ++x) {
            cells_[static_cast<size_t>(y) * static_cast<size_t>(columns_) + static_cast<size_t>(x)]
                .push_back(index);
        }
    }
}

void Label_Placer::Add_Obstacle(const Label_Box_Rec& box, int64_t owner) {
    Add(box, owner, true);
}

bool Label_Placer::Fits(const Label_Box_Rec& box, int64_t owner) const {
    if (!(box.half_width >= 0 && box.half_height >= 0 && std::isfinite(box.centre.x) &&
          std::isfinite(box.centre.y))) {
        return false;
    }
    const auto corners = Box_Corners(box);
    double min_x = corners[0].x, max_x = corners[0].x;
    double min_y = corners[0].y, max_y = corners[0].y;
    for (const Point_F_Rec& c : corners) {
        min_x = std::min(min_x, c.x);
        max_x = std::max(max_x, c.x);
        min_y = std::min(min_y, c.y);
        max_y = std::max(max_y, c.y);
    }
    if (min_x < left_ || max_x > right_ || min_y < top_ || max_y > bottom_) {
        return false;
    }
    if (++test_stamp_ == 0) {
        std::fill(seen_.begin(), seen_.end(), 0);
        test_stamp_ = 1;
    }
    int x0, y0, x1, y1;
    Cell_Range(min_x, min_y, max_x, max_y, x0, y0, x1, y1);
    for (int y = y0; y <= y1; ++y) {
        for (int x = x0; x <= x1; ++x) {
            for (uint32_t i : cells_[static_cast<size_t>(y) * static_cast<size_t>(columns_) +
                                     static_cast<size_t>(x)]) {
                if (seen_[i] == test_stamp_) {
                    continue;
                }
                seen_[i] = test_stamp_;
                const Entry& e = entries_[i];
                if (e.obstacle && owner >= 0 && e.owner == owner) {
                    continue;
                }
                if (e.max_x <= min_x || e.min_x >= max_x || e.max_y <= min_y || e.min_y >= max_y) {
                    continue;
                }
                if (Boxes_Overlap(box, e.box)) {
                    return false;
                }
            }
        }
    }
    return true;
}

bool Label_Placer::Place(const Label_Box_Rec& box, int64_t owner) {
    if (!Fits(box, owner)) {
        return false;
    }
    Add(box, owner, false);
    return true;
}

} // namespace quilmark
