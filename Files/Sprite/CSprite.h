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

    // Angles in degrees, colours 0x00BBGGRR. A subimage of any number is taken
    // modulo the frames. Positions are where the origin lands.
    void Draw(int32_t subimage, float x, float y);
    void DrawExt(int32_t subimage, float x, float y, float xscale, float yscale, float angle,
                 uint32_t colour, float alpha);
    // left and top in pixels of the untrimmed frame; the part's corner lands at (x, y).
    void DrawPart(int32_t subimage, float left, float top, float partWidth, float partHeight,
                  float x, float y, float xscale, float yscale, uint32_t colour, float alpha);
    void DrawStretched(int32_t subimage, float x, float y, float toWidth, float toHeight,
                       uint32_t colour, float alpha);
    void DrawTiled(int32_t subimage, float x, float y, float xscale, float yscale, bool htile,
                   bool vtile, uint32_t colour, float alpha);
    // colours: top left, top right, bottom right, bottom left.
    void DrawGeneral(int32_t subimage, float left, float top, float partWidth, float partHeight,
                     float x, float y, float xscale, float yscale, float angle,
                     const uint32_t colours[4], float alpha);
    // corners: x, y of top left, top right, bottom right, bottom left.
    void DrawPos(int32_t subimage, const float corners[8], float alpha);

    // One byte a pixel, maskCount masks of width * height bytes; null without masks.
    const uint8_t* ExpandedMasks();
    void ComputeCullRadius();

    // ---- frames
    int32_t Frame(int32_t subimage) const;         // 0 to frameCount - 1; -1 without frames
    ArchivePageEntry* Entry(int32_t frame) const;  // null for a sprite made at run time
    // Slot of a frame made at run time, made from its bitmap on first use; -1 for none.
    int32_t Texture(int32_t frame);
    // A block of width * height pixels 0xAARRGGBB for the caller to free; null when
    // the picture can't be read.
    uint32_t* FramePixels(int32_t frame);
    // Takes a bitmap as a further frame of a sprite made at run time; owned. The
    // first one gives the sprite its size.
    void AddFrame(CBitmap32* bitmap);
    void FreeFrames();
    // Masks and bounding box of a sprite made at run time, from its frames' alpha:
    // pixels above `tolerance` collide. Automatic box for bboxMode 0, all of the
    // frame for 1.
    void MakeMasks(bool separate, int32_t tolerance);

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
    int32_t kind = 0;  // 0 bitmap, 1 vector, 2 skeleton
    bool transparent = false, smooth = false, preload = true;
    int32_t bboxMode = 0;
    bool sepMasks = false;
    bool precise = false;  // collides by its masks
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
CSprite* Sprite_Data(int32_t index);  // null when there is none
bool Sprite_Exists(int32_t index);
int32_t Sprite_Find(const char* name);   // -1 when there is none
const char* Sprite_Name(int32_t index);  // "<undefined>" when there is none
// A sprite that stands without archive data, for tests and for sprites made at run time.
int32_t Sprite_Add(CSprite* sprite);  // owned; the new index
// Frees a sprite; its index answers as missing from then on. False when there is none.
bool Sprite_Delete(int32_t index);
// Puts a sprite in the place of another, whose name it takes over.
void Sprite_Replace(int32_t index, CSprite* sprite);  // owned
// "__newsprite" and the index, as sprites made at run time are called.
void Sprite_NameNew(int32_t index);
// A copy that owns its pictures; null when they can't be read.
CSprite* Sprite_Copy(const CSprite& from);
// A strip of `frames` equal pictures side by side; null after a message on the debug
// console. `removeBackground` clears the colour of the lower left pixel, `smoothEdges`
// softens the rim of what is left.
CSprite* Sprite_FromFile(const char* path, int32_t frames, bool removeBackground, bool smoothEdges);
CSprite* Sprite_FromSurface(int32_t surface, int32_t x, int32_t y, int32_t w, int32_t h,
                            bool removeBackground, bool smoothEdges);
