#pragma once
// A table of values, each of its cells named by column and row.

#include "Files/Data/DS_Values.h"

// Cells of a grid: a rectangle, or those of it that lie within a disk.
struct GridArea {
    int32_t left, top, right, bottom;  // all inside the grid; empty when right < left
    bool disk = false;
    double x = 0, y = 0, radius = 0;

    bool Holds(int32_t column, int32_t row) const;
};

struct GridCell {
    int32_t x, y;  // -1, -1 for none
};

class CDS_Grid {
public:
    static constexpr int64_t kMostCells = 1 << 26;

    CDS_Grid(int32_t width, int32_t height) { Resize(width, height); }

    int32_t Width() const { return width_; }
    int32_t Height() const { return height_; }
    bool Holds(int32_t x, int32_t y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }
    const DSValue& At(int32_t x, int32_t y) const { return cells_[Index(x, y)]; }
    DSValue& At(int32_t x, int32_t y) { return cells_[Index(x, y)]; }
    void CopyFrom(const CDS_Grid& from) { *this = from; }
    // Keeps the cells that stay inside; new ones hold real 0. Negative sides count as 0.
    // False, and no change, above kMostCells.
    bool Resize(int32_t width, int32_t height);

    // Corners in any order, clipped to the grid.
    GridArea Region(double x1, double y1, double x2, double y2) const;
    GridArea Disk(double x, double y, double radius) const;
    // Visits the cells of an area, row by row: visit(x, y).
    template <class Visit>
    static void Walk(const GridArea& area, Visit visit)
    {
        for (int32_t y = area.top; y <= area.bottom; ++y)
            for (int32_t x = area.left; x <= area.right; ++x)
                if (area.Holds(x, y)) visit(x, y);
    }
    GridCell Find(const GridArea& area, const RValue& value) const;
    void Shuffle();
    void Sort(int32_t column, bool ascending);  // whole rows, by the values of a column

    void Write(CStream* stream) const;
    bool Read(CStream* stream);  // false, and no change, when the stream is damaged

private:
    size_t Index(int32_t x, int32_t y) const
    {
        return static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x);
    }

    int32_t width_ = 0, height_ = 0;
    VxVector<DSValue> cells_;  // row by row
};
