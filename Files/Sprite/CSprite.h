#pragma once
// Sprites: what drawing and collision read of them, and their draw operations.

#include <cstdint>

#include "Platform/MemoryManager.h"

struct ArchivePageEntry;
class CBitmap32;
class CInstance;

class CSprite {
public:
    CSprite() = default;
    ~CSprite();
    CSprite(const CSprite&) = delete;
    CSprite& operator=(const CSprite&) = delete;

    // Angles in degrees, colours 0x00BBGGRR.
    void Draw(int32_t subimage, float x, float y);
    void DrawExt(int32_t subimage, float x, float y, float xscale, float yscale, float angle,
                 uint32_t colour, float alpha);
    void DrawPart(int32_t subimage, float left, float top, float width, float height, float x,
                  float y, float xscale, float yscale, uint32_t colour, float alpha);
    void DrawStretched(int32_t subimage, float x, float y, float width, float height,
                       uint32_t colour, float alpha);
    void DrawTiled(int32_t subimage, float x, float y, float xscale, float yscale, bool htile,
                   bool vtile, uint32_t colour, float alpha);
    void DrawGeneral(int32_t subimage, float left, float top, float width, float height, float x,
                     float y, float xscale, float yscale, float angle, const uint32_t colours[4],
                     float alpha);
    void DrawPos(int32_t subimage, const float corners[8], float alpha);

    // One byte a pixel, maskCount masks of width * height bytes; null without masks.
    const uint8_t* ExpandedMasks();
    void ComputeCullRadius();

    const char* name = "";
    bool nameOwned = false;
    int32_t bboxLeft = 0, bboxTop = 0, bboxRight = 0, bboxBottom = 0;  // both ends inside
    int32_t frameCount = 0;
    int32_t width = 0, height = 0;
    int32_t originX = 0, originY = 0;
    int32_t cullRadius = 0;
    CBitmap32** bitmaps = nullptr;         // frames made at run time
    int32_t* textures = nullptr;           // slots of such frames, -1 when freed
    ArchivePageEntry** entries = nullptr;  // page entries of archive frames
    bool entriesOwned = false;
    int32_t kind = 0;                      // 0 bitmap, 1 vector, 2 skeleton
    bool transparent = false, smooth = false, preload = true;
    int32_t bboxMode = 0;
    bool sepMasks = false;
    bool precise = false;                  // collides by its masks
    int32_t maskCount = 0;
    const uint8_t* packedMasks = nullptr;  // in the archive
    uint8_t* expandedMasks = nullptr;
    bool masksExpanded = false;
};

void Sprite_Init();
void Sprite_Quit();
bool Sprite_Load(const uint8_t* chunk, uint32_t size, uint8_t* archiveBase);
bool Sprite_InitTextures();
int32_t Sprite_Count();
CSprite* Sprite_Data(int32_t index);    // null when there is none
bool Sprite_Exists(int32_t index);
int32_t Sprite_Find(const char* name);  // -1 when there is none
const char* Sprite_Name(int32_t index);
// A sprite that stands without archive data, for tests and for sprites made at run time.
int32_t Sprite_Add(CSprite* sprite);    // owned; the new index
