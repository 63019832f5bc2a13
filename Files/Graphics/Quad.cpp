// Textured quads, drawn in the plane z = 0.

#include "Files/Graphics/Quad.h"

#include <algorithm>

#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/Quad_Emit.h"

bool g_CornerId;

namespace {

// Marks of the corners in the lowest bits of red and blue.
constexpr uint32_t kBlueBit = 0x1, kRedBit = 0x10000;
constexpr uint32_t kCornerMarks[4] = {0, kBlueBit, kRedBit, kBlueBit | kRedBit};
constexpr int16_t kEmptySlotSize = 8;

void MarkCorners(QuadColours* colours)
{
    if (!g_CornerId) return;
    for (int corner = 0; corner < 4; ++corner)
        colours->corner[corner] =
            (colours->corner[corner] & ~(kBlueBit | kRedBit)) | kCornerMarks[corner];
}

// White under the draw alpha.
QuadColours PlainColours()
{
    return Quad_OneColour(kWhiteVertex | static_cast<uint32_t>(drawAlpha) << 24);
}

QuadColours CornerColours(const uint32_t colours[4], float alpha)
{
    QuadColours made;
    for (int corner = 0; corner < 4; ++corner)
        made.corner[corner] = VertexColour(colours[corner], alpha);
    MarkCorners(&made);
    return made;
}

void MendSlot(TextureSlot* slot)
{
    if (slot->width != 0 && slot->height != 0) return;
    slot->width = slot->height = kEmptySlotSize;
    slot->invWidth = slot->invHeight = 1.0F / kEmptySlotSize;
}

// A part of an untrimmed image, and where its upper left corner is drawn.
struct Crop {
    float left, top, width, height, x, y;
};

// Moves the part into the space of the trimmed picture. What falls in the trimmed
// margin moves the corner along, turned and scaled as the part is.
Crop CropToEntry(const ArchivePageEntry& entry, Crop part, float xscale, float yscale, float angle)
{
    const float s = std::sin(angle), c = std::cos(angle);
    const auto targetX = static_cast<float>(entry.targetX);
    const auto targetY = static_cast<float>(entry.targetY);
    if (targetX > part.left) {
        const float d = targetX - part.left;
        part.x += std::trunc(d * c * xscale);
        part.y -= std::trunc(d * s * yscale);
        part.width -= d;
        part.left = 0;
    } else {
        part.left -= targetX;
    }
    if (targetY > part.top) {
        const float d = targetY - part.top;
        part.x += std::trunc(d * s * xscale);
        part.y += std::trunc(d * c * yscale);
        part.height -= d;
        part.top = 0;
    } else {
        part.top -= targetY;
    }
    return part;
}

// As Quad_Write, with the diagonal from top right to bottom left.
void WriteCrossed(VertexTextured* v, const QuadShape& shape, const QuadTexels& t,
                  const QuadColours& colours)
{
    const uint32_t* c = colours.corner;
    v[0] = {shape.x[0], shape.y[0], 0, c[0], t.uMin, t.vMin};
    v[1] = {shape.x[1], shape.y[1], 0, c[1], t.uMax, t.vMin};
    v[2] = {shape.x[3], shape.y[3], 0, c[3], t.uMin, t.vMax};
    v[3] = v[1];
    v[4] = {shape.x[2], shape.y[2], 0, c[2], t.uMax, t.vMax};
    v[5] = v[2];
}

QuadTexels SlotPartTexels(const TextureSlot& slot, float left, float top, float width, float height)
{
    return {left * slot.invWidth, top * slot.invHeight, (left + width) * slot.invWidth,
            (top + height) * slot.invHeight};
}

}  // namespace

uint32_t VertexColour(uint32_t colour, float alpha)
{
    const float scaled = alpha * 255.0F;
    const uint32_t top = scaled >= 255.0F ? 255U
                         : scaled > 0.0F  ? static_cast<uint32_t>(scaled)
                                          : 0U;
    return top << 24 | (colour & 0xFFU) << 16 | (colour & 0xFF00U) | (colour >> 16 & 0xFFU);
}

QuadColours Quad_OneColour(uint32_t vertexColour)
{
    QuadColours colours{{vertexColour, vertexColour, vertexColour, vertexColour}};
    MarkCorners(&colours);
    return colours;
}

bool Quad_Texture(int32_t slotIndex, float x, float y)
{
    TextureSlot* slot = Quad_Slot(slotIndex);
    if (!slot) return false;
    Quad_Emit(slot->texture,
              Quad_Upright(x, y, x + static_cast<float>(slot->width),
                           y + static_cast<float>(slot->height)),
              Quad_SlotTexels(*slot), PlainColours());
    return true;
}

bool Quad_Entry(ArchivePageEntry* entry, float x, float y)
{
    const TextureSlot* slot = entry ? Quad_Slot(entry->texture) : nullptr;
    if (!slot) return false;
    Quad_MendEntry(entry);
    const float left = x + static_cast<float>(entry->targetX);
    const float top = y + static_cast<float>(entry->targetY);
    Quad_Emit(slot->texture,
              Quad_Upright(left, top, left + static_cast<float>(entry->targetWidth),
                           top + static_cast<float>(entry->targetHeight)),
              Quad_EntryTexels(*entry, *slot), PlainColours());
    return true;
}

bool Quad_TextureExt(int32_t slotIndex, float xorigin, float yorigin, float x, float y,
                     float xscale, float yscale, float angle, uint32_t colour, float alpha)
{
    TextureSlot* slot = Quad_Slot(slotIndex);
    if (!slot) return false;
    MendSlot(slot);
    const float left = xorigin * -xscale, top = yorigin * -yscale;
    const float right = xscale * static_cast<float>(slot->width) + left;
    const float bottom = yscale * static_cast<float>(slot->height) + top;
    Quad_Emit(slot->texture, Quad_Turn(x, y, left, top, right, bottom, angle, kNoTurn),
              Quad_SlotTexels(*slot), Quad_OneColour(VertexColour(colour, alpha)));
    return true;
}

bool Quad_EntryExt(ArchivePageEntry* entry, float xorigin, float yorigin, float x, float y,
                   float xscale, float yscale, float angle, uint32_t colour, float alpha)
{
    const TextureSlot* slot = entry ? Quad_Slot(entry->texture) : nullptr;
    if (!slot) return false;
    Quad_MendEntry(entry);
    const float left = (xorigin - static_cast<float>(entry->targetX)) * -xscale;
    const float top = (yorigin - static_cast<float>(entry->targetY)) * -yscale;
    const float right = xscale * static_cast<float>(entry->targetWidth) + left;
    const float bottom = yscale * static_cast<float>(entry->targetHeight) + top;
    Quad_Emit(slot->texture, Quad_Turn(x, y, left, top, right, bottom, angle, kNoTurn),
              Quad_EntryTexels(*entry, *slot), Quad_OneColour(VertexColour(colour, alpha)));
    return true;
}

bool Quad_TexturePart(int32_t slotIndex, float left, float top, float width, float height, float x,
                      float y, float xscale, float yscale, float angle, uint32_t colour,
                      float alpha)
{
    const TextureSlot* slot = Quad_Slot(slotIndex);
    if (!slot) return false;
    Quad_Emit(slot->texture, Quad_Turn(x, y, 0, 0, width * xscale, height * yscale, angle, kNoTurn),
              SlotPartTexels(*slot, left, top, width, height),
              Quad_OneColour(VertexColour(colour, alpha)));
    return true;
}

bool Quad_EntryPart(ArchivePageEntry* entry, float left, float top, float width, float height,
                    float x, float y, float xscale, float yscale, float angle, uint32_t colour,
                    float alpha)
{
    const TextureSlot* slot = entry ? Quad_Slot(entry->texture) : nullptr;
    if (!slot) return false;
    Quad_MendEntry(entry);
    Crop part = CropToEntry(*entry, {left, top, width, height, x, y}, xscale, yscale, angle);
    const auto targetWidth = static_cast<float>(entry->targetWidth);
    const auto targetHeight = static_cast<float>(entry->targetHeight);
    part.width = std::min(part.width, targetWidth - part.left);
    part.height = std::min(part.height, targetHeight - part.top);
    if (!(part.width > 0) || !(part.height > 0)) return true;
    const float fx = static_cast<float>(entry->width) / targetWidth;
    const float fy = static_cast<float>(entry->height) / targetHeight;
    const float u = static_cast<float>(entry->x) + fx * part.left;
    const float v = static_cast<float>(entry->y) + fy * part.top;
    const QuadTexels texels{u * slot->invWidth, v * slot->invHeight,
                            (u + fx * part.width) * slot->invWidth,
                            (v + fy * part.height) * slot->invHeight};
    auto* vertices = static_cast<VertexTextured*>(
        Batch_Alloc(PRIMITIVE_TRIANGLES, slot->texture, kStrideTextured, 6));
    if (!vertices) return true;
    WriteCrossed(
        vertices,
        Quad_Turn(part.x, part.y, 0, 0, part.width * xscale, part.height * yscale, angle, kNoTurn),
        texels, Quad_OneColour(VertexColour(colour, alpha)));
    ++g_GraphicsStats.sprites;
    return true;
}

bool Quad_TextureGeneral(int32_t slotIndex, float left, float top, float width, float height,
                         float x, float y, float xscale, float yscale, float angle,
                         const uint32_t colours[4], float alpha)
{
    const TextureSlot* slot = Quad_Slot(slotIndex);
    if (!slot) return false;
    Quad_Emit(slot->texture,
              Quad_Turn(x, y, 0, 0, width * xscale, height * yscale, angle, kNoTurnGeneral),
              SlotPartTexels(*slot, left, top, width, height), CornerColours(colours, alpha));
    return true;
}

bool Quad_EntryGeneral(ArchivePageEntry* entry, float left, float top, float width, float height,
                       float x, float y, float xscale, float yscale, float angle,
                       const uint32_t colours[4], float alpha)
{
    const TextureSlot* slot = entry ? Quad_Slot(entry->texture) : nullptr;
    if (!slot) return false;
    Quad_MendEntry(entry);
    Crop part = CropToEntry(*entry, {left, top, width, height, x, y}, xscale, yscale, angle);
    part.width = std::min(part.width, static_cast<float>(entry->targetWidth));
    part.height = std::min(part.height, static_cast<float>(entry->targetHeight));
    Quad_Emit(slot->texture,
              Quad_Turn(part.x, part.y, 0, 0, part.width * xscale, part.height * yscale, angle,
                        kNoTurnGeneral),
              SlotPartTexels(*slot, static_cast<float>(entry->x) + part.left,
                             static_cast<float>(entry->y) + part.top, part.width, part.height),
              CornerColours(colours, alpha));
    return true;
}

bool Quad_EntryCorners(ArchivePageEntry* entry, const float corners[8], uint32_t colour,
                       float alpha)
{
    const TextureSlot* slot = entry ? Quad_Slot(entry->texture) : nullptr;
    if (!slot) return false;
    Quad_MendEntry(entry);
    const QuadShape shape{{corners[0], corners[2], corners[4], corners[6]},
                          {corners[1], corners[3], corners[5], corners[7]}};
    Quad_Emit(slot->texture, shape, Quad_EntryTexels(*entry, *slot),
              Quad_OneColour(VertexColour(colour, alpha)));
    return true;
}
