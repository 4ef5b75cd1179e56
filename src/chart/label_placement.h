// Placing labels so that none covers another: each label asks for a rectangle of the
// screen, turned with its text, and gets it only if that rectangle lies inside the area
// and clear of every rectangle granted before and of the obstacles (the frame's panels,
// the runways, the parking spots). Labels asked for first win, so the caller asks in
// order of importance, and a label that finds no room is left out.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "chart/surface.h"

namespace quilmark {

// A rectangle with its middle on centre, half_width along its text and half_height
// across it, turned by angle_deg clockwise on the screen.
struct Label_Box_Rec {
    Point_F_Rec centre;
    double half_width = 0;
    double half_height = 0;
    double angle_deg = 0;
};

// The four corners, in order round the rectangle.
std::array<Point_F_Rec, 4> Box_Corners(const Label_Box_Rec& box);
// True when the two rectangles share more than their edges.
bool Boxes_Overlap(const Label_Box_Rec& a, const Label_Box_Rec& b);

class Label_Placer {
  public:
    // Labels must lie inside left..right by top..bottom (pixels).
    Label_Placer(double left, double top, double right, double bottom);

    // Something labels must keep off. A label of the same owner (the spot that a name
    // belongs to) may lie over it; -1 belongs to nothing.
    void Add_Obstacle(const Label_Box_Rec& box, int64_t owner = -1);
    // Grants the room if it is free: inside the area, clear of all granted rooms and of
    // every obstacle not of the same owner. True if granted.
    bool Place(const Label_Box_Rec& box, int64_t owner = -1);
    // The same test without granting.
    bool Fits(const Label_Box_Rec& box, int64_t owner = -1) const;

  private:
    struct Entry {
        Label_Box_Rec box;
        double min_x, min_y, max_x, max_y; // the box's upright bounds
        int64_t owner;
        bool obstacle;
    };
    void Add(const Label_Box_Rec& box, int64_t owner, bool obstacle);
    // The grid's cells that an upright rectangle touches.
    void Cell_Range(double min_x, double min_y, double max_x, double max_y, int& x0, int& y0,
                    int& x1, int& y1) const;

    double left_, top_, right_, bottom_;
    std::vector<Entry> entries_;
    // A coarse grid over the area, each cell with the entries that touch it, so that a
    // test looks at the neighbours only.
    static constexpr double Cell_Px = 64;
    int columns_ = 1;
    int rows_ = 1;
    std::vector<std::vector<uint32_t>> cells_;
    mutable std::vector<uint32_t> seen_; // the test that last looked at each entry
    mutable uint32_t test_stamp_ = 0;
};

} // namespace quilmark
