// Pictures repeated over the area that is shown.

#include <algorithm>
#include <cmath>

#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Quad_Emit.h"

namespace {

constexpr float kLeastScale = 0.0001F;
constexpr int32_t kMostTiles = 1 << 12;  // along one axis; more than a screen has pixels

// Where the tiles of one axis start and how many there are.
struct TileRun {
    float start;
    int32_t count;
};

TileRun RunOver(float position, float size, bool tiled, float viewStart, float viewSize)
{
    if (!tiled) return {position, static_cast<int32_t>(std::trunc(size) / size)};
    const float span = std::trunc(((viewSize + size - 1) / size + 2) * size);
    const float start = std::fmod(position - viewStart, size) + viewStart - size;
    return {start, static_cast<int32_t>(std::min(span / size, static_cast<float>(kMostTiles)))};
}

// One request of vertices is at most this many.
int32_t PieceVertices(int64_t wanted)
{
    const int64_t most = Batch_MaxVertices();
    return static_cast<int32_t>(std::min(wanted, most - most % 6));
}

// A field of equal tiles, row by row from its top left.
struct TileField {
    GpuTexture* texture;
    QuadTexels texels;
    QuadColours colours;
    float left, top, width, height;  // of the first tile
    float stepX, stepY;
    int32_t columns, rows;
};

void SendField(const TileField& field)
{
    int64_t rest = int64_t{6} * field.columns * field.rows;
    VertexTextured* v = nullptr;
    int32_t piece = 0;
    for (int32_t row = 0; row < field.rows; ++row)
        for (int32_t column = 0; column < field.columns; ++column, v += 6, piece -= 6) {
            if (piece == 0) {
                piece = PieceVertices(rest);
                rest -= piece;
                v = static_cast<VertexTextured*>(
                    Batch_Alloc(PRIMITIVE_TRIANGLES, field.texture, kStrideTextured, piece));
                if (!v) return;
            }
            const float x = field.left + static_cast<float>(column) * field.stepX;
            const float y = field.top + static_cast<float>(row) * field.stepY;
            Quad_Write(v, Quad_Upright(x, y, x + field.width, y + field.height), field.texels,
                       field.colours);
            ++g_GraphicsStats.sprites;
        }
}

// Where a pixel-tiled axis starts: at or left of the area's edge when tiled.
int32_t PixelStart(float position, int32_t size, bool tiled, float viewStart)
{
    auto start = static_cast<int32_t>(std::lrint(std::clamp(position, -1e9F, 1e9F)));
    if (!tiled) return start;
    start %= size;
    if (start > 0) start -= size;
    const auto edge = static_cast<int64_t>(std::floor(viewStart));
    // The next tile is still left of the edge: step as often as that holds.
    if (edge > int64_t{start} + size)
        start += static_cast<int32_t>((edge - start - 1) / size * size);
    while (static_cast<float>(start) > viewStart) start -= size;
    return start;
}

// How many tiles from `start` on begin before `end`.
int32_t PixelTilesTo(float end, int32_t start, int32_t size)
{
    const float count = std::ceil((end - static_cast<float>(start)) / static_cast<float>(size));
    return count > 0 ? static_cast<int32_t>(std::min(count, static_cast<float>(kMostTiles))) : 0;
}

// What all tiles of one draw share.
struct PixelTiles {
    GpuTexture* texture;
    QuadTexels texels;
    QuadColours colours;
    float offsetX, offsetY;
    int32_t width, height;
};

void FanTile(const PixelTiles& tiles, int32_t x, int32_t y)
{
    auto* v = static_cast<VertexTextured*>(
        Batch_Alloc(PRIMITIVE_TRIANGLE_FAN, tiles.texture, kStrideTextured, 4));
    if (!v) return;
    const float left = static_cast<float>(x) + tiles.offsetX;
    const float top = static_cast<float>(y) + tiles.offsetY;
    const float right = left + static_cast<float>(tiles.width);
    const float bottom = top + static_cast<float>(tiles.height);
    const QuadTexels& t = tiles.texels;
    const uint32_t* c = tiles.colours.corner;
    v[0] = {left, top, 0, c[0], t.uMin, t.vMin};
    v[1] = {right, top, 0, c[1], t.uMax, t.vMin};
    v[2] = {right, bottom, 0, c[2], t.uMax, t.vMax};
    v[3] = {left, bottom, 0, c[3], t.uMin, t.vMax};
    ++g_GraphicsStats.sprites;
}

}  // namespace

bool Quad_EntryTiled(ArchivePageEntry* entry, float xorigin, float yorigin, float x, float y,
                     float xscale, float yscale, bool htile, bool vtile, uint32_t colour,
                     float alpha)
{
    if (xscale < kLeastScale || yscale < kLeastScale) return false;
    if (!htile && !vtile)
        return Quad_EntryExt(entry, xorigin, yorigin, x, y, xscale, yscale, 0, colour, alpha);
    const TextureSlot* slot = entry ? Quad_Slot(entry->texture) : nullptr;
    if (!slot) return false;
    Quad_MendEntry(entry);
    const float tileW = static_cast<float>(entry->sourceWidth) * xscale;
    const float tileH = static_cast<float>(entry->sourceHeight) * yscale;
    if (!(tileW > 0) || !(tileH > 0)) return false;
    const TileRun across =
        RunOver(x - xorigin * xscale, tileW, htile, g_ViewArea.x, g_ViewArea.width);
    const TileRun down =
        RunOver(y - yorigin * yscale, tileH, vtile, g_ViewArea.y, g_ViewArea.height);
    const float left = across.start + static_cast<float>(entry->targetX) * xscale;
    const float top = down.start + static_cast<float>(entry->targetY) * yscale;
    SendField({slot->texture, Quad_EntryTexels(*entry, *slot),
               Quad_OneColour(VertexColour(colour, alpha)), left, top,
               static_cast<float>(entry->targetWidth) * xscale,
               static_cast<float>(entry->targetHeight) * yscale, tileW, tileH, across.count,
               down.count});
    return true;
}

bool Quad_TextureTiled(int32_t slotIndex, float xorigin, float yorigin, float x, float y,
                       float xscale, float yscale, bool htile, bool vtile, uint32_t colour,
                       float alpha)
{
    const TextureSlot* slot = Quad_Slot(slotIndex);
    if (!slot) return false;
    const PixelTiles tiles{slot->texture,
                           Quad_SlotTexels(*slot),
                           Quad_OneColour(VertexColour(colour, alpha)),
                           -xscale * xorigin,
                           -yscale * yorigin,
                           static_cast<int32_t>(static_cast<float>(slot->width) * xscale),
                           static_cast<int32_t>(static_cast<float>(slot->height) * yscale)};
    if (tiles.width <= 0 || tiles.height <= 0) return true;
    // The origin moves the tiles back, so the run starts that much further on.
    const int32_t startX =
        PixelStart(x, tiles.width, htile, g_ViewArea.x - std::max(tiles.offsetX, 0.0F));
    const int32_t startY =
        PixelStart(y, tiles.height, vtile, g_ViewArea.y - std::max(tiles.offsetY, 0.0F));
    const int32_t columns =
        htile ? PixelTilesTo(g_ViewArea.x + g_ViewArea.width - std::min(tiles.offsetX, 0.0F),
                             startX, tiles.width)
              : 1;
    const int32_t rows =
        vtile ? PixelTilesTo(g_ViewArea.y + g_ViewArea.height - std::min(tiles.offsetY, 0.0F),
                             startY, tiles.height)
              : 1;
    for (int32_t column = 0; column < columns; ++column)
        for (int32_t row = 0; row < rows; ++row)
            FanTile(tiles, startX + column * tiles.width, startY + row * tiles.height);
    return true;
}
