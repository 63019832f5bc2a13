#include "Files/Data/DS_Grid.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Files/Data/DS_Streams.h"
#include "Files/Function/Function_Registry.h"

namespace {

// The number, rounded and held within the limits; the lower one for what is no number.
int32_t Within(double number, int32_t low, int32_t high)
{
    if (!(number > low)) return low;
    return number >= high ? high : static_cast<int32_t>(number);
}

}  // namespace

bool GridArea::Holds(int32_t column, int32_t row) const
{
    const double across = column - x, down = row - y;
    return !disk || across * across + down * down <= radius * radius;
}

bool CDS_Grid::Resize(int32_t width, int32_t height)
{
    width = std::max(width, 0);
    height = std::max(height, 0);
    if (int64_t{width} * height > kMostCells) return false;
    VxVector<DSValue> cells(static_cast<size_t>(width) * static_cast<size_t>(height));
    for (int32_t y = 0; y < std::min(height, height_); ++y)
        for (int32_t x = 0; x < std::min(width, width_); ++x)
            cells[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)] =
                std::move(At(x, y));
    width_ = width;
    height_ = height;
    cells_.swap(cells);
    return true;
}

// Limits that lie beside the grid on one side make an empty area.
GridArea CDS_Grid::Region(double x1, double y1, double x2, double y2) const
{
    return {Within(std::ceil(std::min(x1, x2)), 0, width_),
            Within(std::ceil(std::min(y1, y2)), 0, height_),
            Within(std::floor(std::max(x1, x2)), -1, width_ - 1),
            Within(std::floor(std::max(y1, y2)), -1, height_ - 1)};
}

GridArea CDS_Grid::Disk(double x, double y, double radius) const
{
    GridArea area = Region(x - radius, y - radius, x + radius, y + radius);
    area.disk = true;
    area.x = x;
    area.y = y;
    area.radius = radius;
    return area;
}

GridCell CDS_Grid::Find(const GridArea& area, const RValue& value) const
{
    GridCell found{-1, -1};
    Walk(area, [&](int32_t x, int32_t y) {
        if (found.x < 0 && Compare(At(x, y), value) == 0) found = {x, y};
    });
    return found;
}

// Fisher and Yates, in the form of Durstenfeld (1964).
void CDS_Grid::Shuffle()
{
    for (size_t left = cells_.size(); left > 1; --left) {
        const auto chosen = static_cast<size_t>(Random_Real(static_cast<double>(left)));
        std::swap(cells_[std::min(chosen, left - 1)], cells_[left - 1]);
    }
}

void CDS_Grid::Sort(int32_t column, bool ascending)
{
    if (column < 0 || column >= width_) return;
    for (int32_t i = 1; i < height_; ++i)
        for (int32_t j = i; j > 0; --j) {
            const int order = Compare(At(column, j - 1), At(column, j).Get());
            if (ascending ? order <= 0 : order >= 0) break;
            for (int32_t x = 0; x < width_; ++x) std::swap(At(x, j - 1), At(x, j));
        }
}

void CDS_Grid::Write(CStream* stream) const
{
    stream->Write32(STREAM_GRID);
    stream->Write32(static_cast<uint32_t>(width_));
    stream->Write32(static_cast<uint32_t>(height_));
    for (int32_t x = 0; x < width_; ++x)
        for (int32_t y = 0; y < height_; ++y) stream->WriteValue(At(x, y).Get());
}

bool CDS_Grid::Read(CStream* stream)
{
    uint32_t width = 0, height = 0;
    if (!TakeVersion(stream, STREAM_GRID) || !stream->Read32(&width) || !stream->Read32(&height) ||
        width > kMostCells || height > kMostCells ||
        uint64_t{width} * height > static_cast<uint64_t>(kMostCells))
        return false;
    VxVector<DSValue> columns;
    if (!stream->ReadValues(&columns, width * height)) return false;
    CDS_Grid read(static_cast<int32_t>(width), static_cast<int32_t>(height));
    auto from = columns.begin();
    for (int32_t x = 0; x < read.width_; ++x)
        for (int32_t y = 0; y < read.height_; ++y) read.At(x, y) = std::move(*from++);
    std::swap(*this, read);
    return true;
}
