// One pass over a room: backgrounds, and the merge of instances, tiles and
// particle systems by depth.

#include <algorithm>
#include <cmath>

#include "Files/Background/CBackground.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Passes.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Quad.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/CRoom.h"
#include "Files/Sprite/CSprite.h"

const ParticleLayers* g_ParticleLayers;

namespace {

bool TileBefore(const CTile& a, const CTile& b)
{
    return a.depth > b.depth;
}

void DrawBackground(const CRoomBackground& shown)
{
    CBackground* background = Background_Data(shown.index);
    if (!background) return;
    const auto colour = static_cast<uint32_t>(shown.blend);
    if (background->entry)
        Quad_EntryTiled(background->entry, 0, 0, shown.x, shown.y, shown.xscale, shown.yscale,
                        shown.htiled, shown.vtiled, colour, shown.alpha);
    else
        Quad_TextureTiled(background->Texture(), 0, 0, shown.x, shown.y, shown.xscale, shown.yscale,
                          shown.htiled, shown.vtiled, colour, shown.alpha);
}

void DrawBackgrounds(const CRoom* room, bool foreground)
{
    for (const CRoomBackground& shown : room->backgrounds)
        if (shown.visible && shown.foreground == foreground) DrawBackground(shown);
}

bool TileMeets(const CTile& tile, const DrawRect& rect)
{
    const float farX = tile.x + static_cast<float>(tile.width) * tile.xscale;
    const float farY = tile.y + static_cast<float>(tile.height) * tile.yscale;
    return std::min(tile.x, farX) <= rect.right && std::min(tile.y, farY) <= rect.bottom &&
           rect.left <= std::max(tile.x, farX) && rect.top <= std::max(tile.y, farY);
}

void DrawTile(const CTile& tile, const DrawRect& rect)
{
    CBackground* background = Background_Data(tile.backgroundIndex);
    if (!background || !TileMeets(tile, rect)) return;
    const auto left = static_cast<float>(tile.sourceX), top = static_cast<float>(tile.sourceY);
    const auto width = static_cast<float>(tile.width), height = static_cast<float>(tile.height);
    const auto colour = static_cast<uint32_t>(tile.blend);
    if (background->entry)
        Quad_EntryPart(background->entry, left, top, width, height, tile.x, tile.y, tile.xscale,
                       tile.yscale, 0, colour, tile.alpha);
    else
        Quad_TexturePart(background->Texture(), left, top, width, height, tile.x, tile.y,
                         tile.xscale, tile.yscale, 0, colour, tile.alpha);
}

// The three cursors of the merge. Draw events may add and remove tiles, so the tile
// cursor is a position and not an address.
class DepthCursors {
public:
    explicit DepthCursors(CRoom* room)
        : room_(room), instance_(room->activeTail), snapshot_(Walk_Begin())
    {
        particles_ = g_ParticleLayers ? g_ParticleLayers->FirstDepth() : kNoParticles;
    }
    // Moves past what takes no part; false when all three are exhausted.
    bool Settle()
    {
        while (instance_ && !(Draw_Takes(instance_) && Walk_Takes(instance_, snapshot_)))
            instance_ = instance_->previous;
        while (tile_ < room_->tiles.size() && !room_->tiles[tile_].visible) ++tile_;
        return instance_ || Tile() || particles_ > kNoParticles;
    }
    const CTile* Tile() const
    {
        return tile_ < room_->tiles.size() ? &room_->tiles[tile_] : nullptr;
    }
    // At equal depth: an instance, then a particle system, then a tile.
    bool ParticlesNext() const
    {
        if (particles_ <= kNoParticles) return false;
        if (instance_ && particles_ <= instance_->depth) return false;
        return !(Tile() && particles_ < Tile()->depth);
    }
    bool TileNext() const { return !instance_ || (Tile() && Tile()->depth > instance_->depth); }
    CInstance* TakeInstance()
    {
        CInstance* taken = instance_;
        instance_ = instance_->previous;
        return taken;
    }
    CTile TakeTile() { return room_->tiles[tile_++]; }
    float TakeParticles()
    {
        const float depth = particles_;
        particles_ = g_ParticleLayers->NextDepth(depth);
        return depth;
    }

private:
    CRoom* room_;
    CInstance* instance_;
    uint64_t snapshot_;
    size_t tile_ = 0;
    float particles_;
};

bool PlainImage(const CInstance& instance)
{
    return instance.image_xscale == 1.0F && instance.image_yscale == 1.0F &&
           instance.image_angle == 0.0F && instance.image_blend == 0xFFFFFF &&
           instance.image_alpha == 1.0F;
}

int32_t Frame(const CInstance& instance)
{
    return static_cast<int32_t>(std::floor(instance.image_index));
}

void DrawImage(const CInstance& instance, CSprite* sprite)
{
    sprite->DrawExt(Frame(instance), instance.x, instance.y, instance.image_xscale,
                    instance.image_yscale, instance.image_angle,
                    static_cast<uint32_t>(instance.image_blend), instance.image_alpha);
}

}  // namespace

void Draw_SortTiles(CRoom* room)
{
    auto& tiles = room->tiles;
    if (std::is_sorted(tiles.begin(), tiles.end(), TileBefore)) return;
    for (size_t i = 1; i < tiles.size(); ++i) {
        const CTile moving = tiles[i];
        size_t place = i;
        for (; place > 0 && TileBefore(moving, tiles[place - 1]); --place)
            tiles[place] = tiles[place - 1];
        tiles[place] = moving;
    }
}

void Draw_DepthMerge(CRoom* room, const DrawRect& rect)
{
    DepthCursors cursors(room);
    while (cursors.Settle()) {
        if (cursors.ParticlesNext())
            g_ParticleLayers->Draw(cursors.TakeParticles());
        else if (cursors.TileNext())
            DrawTile(cursors.TakeTile(), rect);
        else
            DrawInstance(cursors.TakeInstance());
    }
    Batch_Flush();
}

void DrawTheRoom(CRoom* room, const DrawRect& rect)
{
    if (room->showColour) Draw_Clear(static_cast<uint32_t>(room->colour), 255);
    Draw_RunEvents(room, DRAW_BEGIN, nullptr);
    DrawBackgrounds(room, false);
    Draw_DepthMerge(room, rect);
    DrawBackgrounds(room, true);
    Draw_RunEvents(room, DRAW_END, nullptr);
}

void DrawSelf(CInstance* instance)
{
    if (CSprite* sprite = Sprite_Data(instance->sprite_index)) DrawImage(*instance, sprite);
}

void DrawInstance(CInstance* instance)
{
    if (Draw_ObjectHas(instance->object, DRAW_NORMAL)) {
        Perform_Event(instance, instance, EVENT_DRAW, DRAW_NORMAL);
        return;
    }
    CSprite* sprite = Sprite_Data(instance->sprite_index);
    if (!sprite) return;
    if (PlainImage(*instance))
        sprite->Draw(Frame(*instance), instance->x, instance->y);
    else
        DrawImage(*instance, sprite);
}
