// Tiles of the running room, by id and by depth.

#include <algorithm>

#include "Files/Background/CBackground.h"
#include "Files/Base/Error.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Function/Function_Resource.h"
#include "Files/Room/Room_Main.h"

namespace {

VxVector<CTile>& Tiles()
{
    static VxVector<CTile> none;  // stays empty: what a process without a room has
    return Run_Room ? Run_Room->tiles : none;
}

// The tile of argument 0, or null after the report.
CTile* TileArgument(const RValue* args, int argc)
{
    const int32_t id = ArgInt(args, argc, 0, -1);
    for (CTile& tile : Tiles())
        if (tile.id == id) return &tile;
    Error_Show("Tile does not exist.", false);
    return nullptr;
}

float FloatArgument(const RValue* args, int argc, int i)
{
    return static_cast<float>(ArgReal(args, argc, i));
}

bool Holds(const CTile& tile, float x, float y)
{
    const float farX = tile.x + static_cast<float>(tile.width) * tile.xscale;
    const float farY = tile.y + static_cast<float>(tile.height) * tile.yscale;
    return !(x < std::min(tile.x, farX)) && !(x >= std::max(tile.x, farX)) &&
           !(y < std::min(tile.y, farY)) && !(y >= std::max(tile.y, farY));
}

template <class Test>
void EraseTiles(Test test)
{
    auto& tiles = Tiles();
    tiles.erase(std::remove_if(tiles.begin(), tiles.end(), test), tiles.end());
}

template <class Change>
void OnLayer(const RValue* args, int argc, Change change)
{
    const float depth = FloatArgument(args, argc, 0);
    for (CTile& tile : Tiles())
        if (tile.depth == depth) change(tile);
}

// Ids of the tiles that pass, as an array; an empty one is the number 0.
template <class Test>
void GiveIds(RValue& result, Test test)
{
    SetReal(result, 0);
    int32_t at = 0;
    for (const CTile& tile : Tiles()) {
        if (!test(tile)) continue;
        if (at == 0) RELEASE_RValue(&result);
        const RValue id(static_cast<double>(tile.id));
        SET_RValue(&result, &id, at++);
    }
}

// Getter and setter of one number of a tile.
template <auto Member>
void GetField(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    const CTile* tile = TileArgument(args, argc);
    SetReal(result, tile ? static_cast<double>(tile->*Member) : -1);
}

template <auto Member>
void SetField(RValue&, CInstance*, CInstance*, int argc, RValue* args)
{
    CTile* tile = TileArgument(args, argc);
    if (!tile) return;
    using Number = std::remove_reference_t<decltype(tile->*Member)>;
    if constexpr (std::is_same_v<Number, bool>)
        tile->*Member = ArgBool(args, argc, 1);
    else if constexpr (std::is_same_v<Number, float>)
        tile->*Member = FloatArgument(args, argc, 1);
    else
        tile->*Member = ArgInt(args, argc, 1);
}

}  // namespace

// background, left, top, width, height, x, y, depth
BUILTIN(tile_add)
{
    SetReal(result, -1);
    const int32_t background = ArgInt(args, argc, 0, -1);
    if (!Background_Data(background)) {
        Error_Show("Background does not exist.", false);
        return;
    }
    if (!Run_Room) return;
    CTile tile;
    tile.backgroundIndex = background;
    tile.sourceX = ArgInt(args, argc, 1);
    tile.sourceY = ArgInt(args, argc, 2);
    tile.width = ArgInt(args, argc, 3);
    tile.height = ArgInt(args, argc, 4);
    tile.x = FloatArgument(args, argc, 5);
    tile.y = FloatArgument(args, argc, 6);
    tile.depth = FloatArgument(args, argc, 7);
    tile.id = ++g_LastTileId;
    Tiles().push_back(tile);
    SetReal(result, tile.id);
}

BUILTIN(tile_delete)
{
    const CTile* found = TileArgument(args, argc);
    if (!found) return;
    const int32_t id = found->id;
    EraseTiles([id](const CTile& tile) { return tile.id == id; });
}

BUILTIN(tile_exists)
{
    const int32_t id = ArgInt(args, argc, 0, -1);
    const auto& tiles = Tiles();
    SetBool(result, std::any_of(tiles.begin(), tiles.end(),
                                [id](const CTile& tile) { return tile.id == id; }));
}

// tile, x, y
BUILTIN(tile_set_position)
{
    CTile* tile = TileArgument(args, argc);
    if (!tile) return;
    tile->x = FloatArgument(args, argc, 1);
    tile->y = FloatArgument(args, argc, 2);
}

// tile, left, top, width, height
BUILTIN(tile_set_region)
{
    CTile* tile = TileArgument(args, argc);
    if (!tile) return;
    tile->sourceX = ArgInt(args, argc, 1);
    tile->sourceY = ArgInt(args, argc, 2);
    tile->width = ArgInt(args, argc, 3);
    tile->height = ArgInt(args, argc, 4);
}

// tile, xscale, yscale
BUILTIN(tile_set_scale)
{
    CTile* tile = TileArgument(args, argc);
    if (!tile) return;
    tile->xscale = FloatArgument(args, argc, 1);
    tile->yscale = FloatArgument(args, argc, 2);
}

BUILTIN(tile_set_background)
{
    CTile* tile = TileArgument(args, argc);
    if (!tile) return;
    const int32_t background = ArgInt(args, argc, 1, -1);
    if (Background_Data(background))
        tile->backgroundIndex = background;
    else
        Error_Show("Background does not exist.", false);
}

BUILTIN(tile_get_count)
{
    SetReal(result, static_cast<double>(Tiles().size()));
}

// position in the room's array
BUILTIN(tile_get_id)
{
    const auto position = static_cast<size_t>(ArgInt(args, argc, 0, -1));
    const auto& tiles = Tiles();
    SetReal(result, position < tiles.size() ? tiles[position].id : -1);
}

BUILTIN(tile_get_ids)
{
    GiveIds(result, [](const CTile&) { return true; });
}

BUILTIN(tile_get_ids_at_depth)
{
    const float depth = FloatArgument(args, argc, 0);
    GiveIds(result, [depth](const CTile& tile) { return tile.depth == depth; });
}

BUILTIN(tile_layer_hide)
{
    OnLayer(args, argc, [](CTile& tile) { tile.visible = false; });
}

BUILTIN(tile_layer_show)
{
    OnLayer(args, argc, [](CTile& tile) { tile.visible = true; });
}

BUILTIN(tile_layer_delete)
{
    const float depth = FloatArgument(args, argc, 0);
    EraseTiles([depth](const CTile& tile) { return tile.depth == depth; });
}

// depth, x, y
BUILTIN(tile_layer_shift)
{
    const float dx = FloatArgument(args, argc, 1), dy = FloatArgument(args, argc, 2);
    OnLayer(args, argc, [dx, dy](CTile& tile) {
        tile.x += dx;
        tile.y += dy;
    });
}

// depth, x, y
BUILTIN(tile_layer_find)
{
    const float depth = FloatArgument(args, argc, 0);
    const float x = FloatArgument(args, argc, 1), y = FloatArgument(args, argc, 2);
    SetReal(result, -1);
    for (const CTile& tile : Tiles()) {
        if (tile.depth != depth || !Holds(tile, x, y)) continue;
        SetReal(result, tile.id);
        return;
    }
}

// depth, x, y
BUILTIN(tile_layer_delete_at)
{
    const float depth = FloatArgument(args, argc, 0);
    const float x = FloatArgument(args, argc, 1), y = FloatArgument(args, argc, 2);
    EraseTiles([=](const CTile& tile) { return tile.depth == depth && Holds(tile, x, y); });
}

// depth, new depth
BUILTIN(tile_layer_depth)
{
    const float depth = FloatArgument(args, argc, 1);
    OnLayer(args, argc, [depth](CTile& tile) { tile.depth = depth; });
}

static constexpr BuiltinRow kRows[] = {
    {"tile_add", tile_add, 8},
    {"tile_delete", tile_delete, 1},
    {"tile_exists", tile_exists, 1},
    {"tile_get_x", GetField<&CTile::x>, 1},
    {"tile_get_y", GetField<&CTile::y>, 1},
    {"tile_get_background", GetField<&CTile::backgroundIndex>, 1},
    {"tile_get_left", GetField<&CTile::sourceX>, 1},
    {"tile_get_top", GetField<&CTile::sourceY>, 1},
    {"tile_get_width", GetField<&CTile::width>, 1},
    {"tile_get_height", GetField<&CTile::height>, 1},
    {"tile_get_depth", GetField<&CTile::depth>, 1},
    {"tile_get_xscale", GetField<&CTile::xscale>, 1},
    {"tile_get_yscale", GetField<&CTile::yscale>, 1},
    {"tile_get_blend", GetField<&CTile::blend>, 1},
    {"tile_get_alpha", GetField<&CTile::alpha>, 1},
    {"tile_get_visible", GetField<&CTile::visible>, 1},
    {"tile_set_x", SetField<&CTile::x>, 2},
    {"tile_set_y", SetField<&CTile::y>, 2},
    {"tile_set_position", tile_set_position, 3},
    {"tile_set_background", tile_set_background, 2},
    {"tile_set_left", SetField<&CTile::sourceX>, 2},
    {"tile_set_top", SetField<&CTile::sourceY>, 2},
    {"tile_set_width", SetField<&CTile::width>, 2},
    {"tile_set_height", SetField<&CTile::height>, 2},
    {"tile_set_region", tile_set_region, 5},
    {"tile_set_depth", SetField<&CTile::depth>, 2},
    {"tile_set_xscale", SetField<&CTile::xscale>, 2},
    {"tile_set_yscale", SetField<&CTile::yscale>, 2},
    {"tile_set_scale", tile_set_scale, 3},
    {"tile_set_blend", SetField<&CTile::blend>, 2},
    {"tile_set_alpha", SetField<&CTile::alpha>, 2},
    {"tile_set_visible", SetField<&CTile::visible>, 2},
    {"tile_get_count", tile_get_count, 0},
    {"tile_get_id", tile_get_id, 1},
    {"tile_get_ids", tile_get_ids, 0},
    {"tile_get_ids_at_depth", tile_get_ids_at_depth, 1},
    {"tile_layer_hide", tile_layer_hide, 1},
    {"tile_layer_show", tile_layer_show, 1},
    {"tile_layer_delete", tile_layer_delete, 1},
    {"tile_layer_shift", tile_layer_shift, 3},
    {"tile_layer_find", tile_layer_find, 3},
    {"tile_layer_delete_at", tile_layer_delete_at, 3},
    {"tile_layer_depth", tile_layer_depth, 2},
};

void Function_Resource_RegisterTiles()
{
    Function_AddRows(kRows);
}
