#pragma once
// Textured quads. Angles are radians; colours 0x00BBGGRR; alpha 0 to 1. All
// return false when the slot or entry is invalid, and then draw nothing.

#include <cstdint>

struct ArchivePageEntry;

bool Quad_Texture(int32_t slot, float x, float y);
bool Quad_Entry(ArchivePageEntry* entry, float x, float y);
bool Quad_TextureExt(int32_t slot, float xorigin, float yorigin, float x, float y, float xscale,
                     float yscale, float angle, uint32_t colour, float alpha);
bool Quad_EntryExt(ArchivePageEntry* entry, float xorigin, float yorigin, float x, float y,
                   float xscale, float yscale, float angle, uint32_t colour, float alpha);
bool Quad_TexturePart(int32_t slot, float left, float top, float width, float height, float x,
                      float y, float xscale, float yscale, float angle, uint32_t colour,
                      float alpha);
bool Quad_EntryPart(ArchivePageEntry* entry, float left, float top, float width, float height,
                    float x, float y, float xscale, float yscale, float angle, uint32_t colour,
                    float alpha);
// colours: top left, top right, bottom right, bottom left.
bool Quad_TextureGeneral(int32_t slot, float left, float top, float width, float height, float x,
                         float y, float xscale, float yscale, float angle,
                         const uint32_t colours[4], float alpha);
bool Quad_EntryGeneral(ArchivePageEntry* entry, float left, float top, float width, float height,
                       float x, float y, float xscale, float yscale, float angle,
                       const uint32_t colours[4], float alpha);
// corners: x, y of top left, top right, bottom right, bottom left.
bool Quad_EntryCorners(ArchivePageEntry* entry, const float corners[8], uint32_t colour,
                       float alpha);
bool Quad_EntryTiled(ArchivePageEntry* entry, float xorigin, float yorigin, float x, float y,
                     float xscale, float yscale, bool htile, bool vtile, uint32_t colour,
                     float alpha);
bool Quad_TextureTiled(int32_t slot, float xorigin, float yorigin, float x, float y, float xscale,
                       float yscale, bool htile, bool vtile, uint32_t colour, float alpha);

extern bool g_CornerId;
// Script colour and alpha to a vertex word.
uint32_t VertexColour(uint32_t colour, float alpha);
