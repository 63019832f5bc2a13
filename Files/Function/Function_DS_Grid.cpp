// Grids: cells one by one, by rectangle, by disk, and from grid to grid.

#include <cmath>
#include <cstring>

#include "Files/Base/Console.h"
#include "Files/Function/Function_DS.h"

namespace {

using ds::ArgRaw;
using ds::ArgValue;
using GridCall = ds::Call<CDS_Grid>;

BUILTIN(F_ds_grid_create)
{
    auto* grid = VxNew<CDS_Grid>(0, 0);
    if (!grid->Resize(ArgInt(args, argc, 0), ArgInt(args, argc, 1)))
        Error_Show("ds_grid_create: the grid is too large", false);
    SetReal(result, DS_Table<CDS_Grid>().Put(grid));
}
BUILTIN(F_ds_grid_resize)
{
    const GridCall grid{result, args, argc};
    if (grid && !grid->Resize(ArgInt(args, argc, 1), ArgInt(args, argc, 2)))
        Error_Show("ds_grid_resize: the grid is too large", false);
}
BUILTIN(F_ds_grid_width)
{
    if (const GridCall grid{result, args, argc}) SetReal(result, grid->Width());
}
BUILTIN(F_ds_grid_height)
{
    if (const GridCall grid{result, args, argc}) SetReal(result, grid->Height());
}

// ---- areas named by arguments from the second on

GridArea RegionOf(const CDS_Grid& grid, const RValue* args, int argc, int first = 1)
{
    return grid.Region(ArgReal(args, argc, first), ArgReal(args, argc, first + 1),
                       ArgReal(args, argc, first + 2), ArgReal(args, argc, first + 3));
}
GridArea DiskOf(const CDS_Grid& grid, const RValue* args, int argc)
{
    return grid.Disk(ArgReal(args, argc, 1), ArgReal(args, argc, 2), ArgReal(args, argc, 3));
}
GridArea CellOf(const CDS_Grid& grid, const RValue* args, int argc)
{
    const double x = ArgInt(args, argc, 1), y = ArgInt(args, argc, 2);
    return grid.Region(x, y, x, y);
}
GridArea WholeOf(const CDS_Grid& grid)
{
    return grid.Region(0, 0, grid.Width(), grid.Height());
}

using Area = GridArea (*)(const CDS_Grid&, const RValue*, int);
GridArea Rectangle(const CDS_Grid& grid, const RValue* args, int argc)
{
    return RegionOf(grid, args, argc);
}

// ---- what is done to each cell of an area

using Change = void (*)(DSValue* cell, const DSValue& value);
void ToSet(DSValue* cell, const DSValue& value)
{
    *cell = value;
}
// Numbers are added and texts joined; cells of other kinds take the value.
void ToAdd(DSValue* cell, const DSValue& value)
{
    const bool texts = cell->Get().Kind() == VALUE_STRING && value.Get().Kind() == VALUE_STRING;
    if (!texts && (!cell->IsNumber() || !value.IsNumber())) return ToSet(cell, value);
    RValue sum = cell->Get() + value.Get();
    *cell = DSValue(sum);
    FREE_RValue(&sum);
}
// Only numbers by numbers.
void ToMultiply(DSValue* cell, const DSValue& value)
{
    if (cell->IsNumber() && value.IsNumber())
        *cell = DSValue(RValue(REAL_RValue(&cell->Get()) * REAL_RValue(&value.Get())));
}

// The value stands behind the area's `count` arguments.
template <Change change, Area area, int count>
BUILTIN(ChangeArea)
{
    const GridCall grid{result, args, argc};
    if (!grid) return;
    const DSValue value = ArgValue(args, argc, 1 + count);
    CDS_Grid::Walk(area(*grid, args, argc),
                   [&](int32_t x, int32_t y) { change(&grid->At(x, y), value); });
}

// From a region of another grid, or of the same, to a place.
template <Change change>
BUILTIN(ChangeFromGrid)
{
    const GridCall grid{result, args, argc};
    const CDS_Grid* named = grid ? ds::Named<CDS_Grid>(args, argc, 1) : nullptr;
    if (!named) return;
    const CDS_Grid source = *named;  // the two may be one, and overlap
    const double left = std::fmin(ArgReal(args, argc, 2), ArgReal(args, argc, 4));
    const double top = std::fmin(ArgReal(args, argc, 3), ArgReal(args, argc, 5));
    const double right = ArgInt(args, argc, 6) - left, down = ArgInt(args, argc, 7) - top;
    CDS_Grid::Walk(RegionOf(source, args, argc, 2), [&](int32_t x, int32_t y) {
        const double toX = x + right, toY = y + down;
        if (toX < 0 || toY < 0 || toX >= grid->Width() || toY >= grid->Height()) return;
        change(&grid->At(static_cast<int32_t>(toX), static_cast<int32_t>(toY)), source.At(x, y));
    });
}

BUILTIN(F_ds_grid_clear)
{
    const GridCall grid{result, args, argc};
    if (!grid) return;
    const DSValue value = ArgValue(args, argc, 1);
    CDS_Grid::Walk(WholeOf(*grid), [&](int32_t x, int32_t y) { grid->At(x, y) = value; });
}

BUILTIN(F_ds_grid_get)
{
    const GridCall grid{result, args, argc};
    if (!grid) return;
    const int32_t x = ArgInt(args, argc, 1), y = ArgInt(args, argc, 2);
    RELEASE_RValue(&result);
    if (grid->Holds(x, y)) grid->At(x, y).PutIn(result);
}

// ---- what is told of an area

// Numbers alone count for sums and means.
struct Sums {
    double sum = 0;
    int count = 0;
};
template <Area area>
Sums SumOf(const CDS_Grid& grid, const RValue* args, int argc)
{
    Sums sums;
    CDS_Grid::Walk(area(grid, args, argc), [&](int32_t x, int32_t y) {
        if (!grid.At(x, y).IsNumber()) return;
        sums.sum += REAL_RValue(&grid.At(x, y).Get());
        ++sums.count;
    });
    return sums;
}
template <Area area>
BUILTIN(Sum)
{
    if (const GridCall grid{result, args, argc})
        SetReal(result, SumOf<area>(*grid, args, argc).sum);
}
template <Area area>
BUILTIN(Mean)
{
    const GridCall grid{result, args, argc};
    if (!grid) return;
    const Sums sums = SumOf<area>(*grid, args, argc);
    SetReal(result, sums.count > 0 ? sums.sum / sums.count : 0);
}

// The least (-1) or greatest (1) cell; 0 for an empty area.
template <Area area, int sign>
BUILTIN(Extreme)
{
    const GridCall grid{result, args, argc};
    if (!grid) return;
    const DSValue* found = nullptr;
    bool mixed = false;
    CDS_Grid::Walk(area(*grid, args, argc), [&](int32_t x, int32_t y) {
        const DSValue& cell = grid->At(x, y);
        mixed |= found && found->IsNumber() != cell.IsNumber();
        if (!found || Compare(cell, found->Get()) == sign) found = &cell;
    });
    if (mixed)
        g_DebugConsole->Output(
            "Warning:: %s called on grid with mix of strings and numerical values\n",
            g_CurrentFunction ? g_CurrentFunction->name : "");
    SetReal(result, 0);
    if (found) found->PutIn(result);
}

template <Area area, int count>
GridCell CellWith(const CDS_Grid& grid, const RValue* args, int argc)
{
    return grid.Find(area(grid, args, argc), ArgRaw(args, argc, 1 + count));
}
template <Area area, int count>
BUILTIN(ValueExists)
{
    if (const GridCall grid{result, args, argc})
        SetBool(result, CellWith<area, count>(*grid, args, argc).x >= 0);
}
template <Area area, int count>
BUILTIN(ValueX)
{
    if (const GridCall grid{result, args, argc})
        SetReal(result, CellWith<area, count>(*grid, args, argc).x);
}
template <Area area, int count>
BUILTIN(ValueY)
{
    if (const GridCall grid{result, args, argc})
        SetReal(result, CellWith<area, count>(*grid, args, argc).y);
}

BUILTIN(F_ds_grid_shuffle)
{
    if (const GridCall grid{result, args, argc}) grid->Shuffle();
}
BUILTIN(F_ds_grid_sort)
{
    if (const GridCall grid{result, args, argc})
        grid->Sort(ArgInt(args, argc, 1), ArgBool(args, argc, 2));
}

constexpr BuiltinRow kRows[] = {
    {"ds_grid_create", F_ds_grid_create, 2},
    {"ds_grid_destroy", ds::Destroy<CDS_Grid>, 1},
    {"ds_grid_copy", ds::Copy<CDS_Grid>, 2},
    {"ds_grid_resize", F_ds_grid_resize, 3},
    {"ds_grid_width", F_ds_grid_width, 1},
    {"ds_grid_height", F_ds_grid_height, 1},
    {"ds_grid_clear", F_ds_grid_clear, 2},
    {"ds_grid_get", F_ds_grid_get, 3},
    {"ds_grid_set", ChangeArea<ToSet, CellOf, 2>, 4},
    {"ds_grid_add", ChangeArea<ToAdd, CellOf, 2>, 4},
    {"ds_grid_multiply", ChangeArea<ToMultiply, CellOf, 2>, 4},
    {"ds_grid_set_region", ChangeArea<ToSet, Rectangle, 4>, 6},
    {"ds_grid_add_region", ChangeArea<ToAdd, Rectangle, 4>, 6},
    {"ds_grid_multiply_region", ChangeArea<ToMultiply, Rectangle, 4>, 6},
    {"ds_grid_set_disk", ChangeArea<ToSet, DiskOf, 3>, 5},
    {"ds_grid_add_disk", ChangeArea<ToAdd, DiskOf, 3>, 5},
    {"ds_grid_multiply_disk", ChangeArea<ToMultiply, DiskOf, 3>, 5},
    {"ds_grid_set_grid_region", ChangeFromGrid<ToSet>, 8},
    {"ds_grid_add_grid_region", ChangeFromGrid<ToAdd>, 8},
    {"ds_grid_multiply_grid_region", ChangeFromGrid<ToMultiply>, 8},
    {"ds_grid_get_sum", Sum<Rectangle>, 5},
    {"ds_grid_get_max", Extreme<Rectangle, 1>, 5},
    {"ds_grid_get_min", Extreme<Rectangle, -1>, 5},
    {"ds_grid_get_mean", Mean<Rectangle>, 5},
    {"ds_grid_get_disk_sum", Sum<DiskOf>, 4},
    {"ds_grid_get_disk_max", Extreme<DiskOf, 1>, 4},
    {"ds_grid_get_disk_min", Extreme<DiskOf, -1>, 4},
    {"ds_grid_get_disk_mean", Mean<DiskOf>, 4},
    {"ds_grid_value_exists", ValueExists<Rectangle, 4>, 6},
    {"ds_grid_value_x", ValueX<Rectangle, 4>, 6},
    {"ds_grid_value_y", ValueY<Rectangle, 4>, 6},
    {"ds_grid_value_disk_exists", ValueExists<DiskOf, 3>, 5},
    {"ds_grid_value_disk_x", ValueX<DiskOf, 3>, 5},
    {"ds_grid_value_disk_y", ValueY<DiskOf, 3>, 5},
    {"ds_grid_shuffle", F_ds_grid_shuffle, 1},
    {"ds_grid_sort", F_ds_grid_sort, 3},
    {"ds_grid_write", ds::Write<CDS_Grid>, 1},
    {"ds_grid_read", ds::Read<CDS_Grid>, 2},
};

}  // namespace

void Function_DS_RegisterGrids()
{
    Function_AddRows(kRows);
}
