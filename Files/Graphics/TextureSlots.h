#pragma once
// The table of texture slots. A texture handle anywhere in the runtime is an
// index into it.

#include <cstdint>

#include "Files/Graphics_API/Device.h"

// Bits of GpuTexture::flags.
enum GpuTextureFlags : uint32_t {
    TEXTURE_COPY_FIRST = 1,   // a target whose picture must be copied before sampling
    TEXTURE_POOL = 1U << 16,  // device default pool
    TEXTURE_MANAGED = 1U << 17,
    TEXTURE_TARGET = 1U << 18,  // a render target
    TEXTURE_FAILED = 1U << 19,  // its picture can't be read; it draws nothing
    TEXTURE_SCALED = 1U << 20,  // the device holds it smaller than it is stored
};

struct GpuTexture {
    int32_t format;
    int32_t width, height;  // as stored
    int32_t levels;
    uint32_t flags;
    DeviceTexture* deviceTexture;  // null until the first bind of an encoded picture
    DeviceTexture* colourSurface;  // a render target's own picture
    DeviceTexture* depthSurface;
    void* shadowRaw;
    uint32_t* shadow;           // pixels to make the texture anew, in on-demand mode
    const uint8_t* sourceData;  // encoded image in the archive
    uint32_t sourceSize;
    GpuTexture* next;
};

struct TextureSlot {
    GpuTexture* texture;
    int16_t width, height;  // image size used for UV scaling
    float invWidth, invHeight;
    bool inUse;
};

extern bool g_TexturesOnDemand;       // "CreateTexturesOnDemand" of options.ini
extern bool g_CompressTextures;       // -compresstextures, on a device that has DXT5
extern int32_t g_TextureGlobalScale;  // a power of two; sizes are divided by it in on-demand mode

void Texture_Init();  // an empty table and the white texture; the device is open
void Texture_FreeAll();
void Texture_Quit();  // all slots and the white texture
int32_t TextureSlot_Find();
// From a PNG, JPEG or raw-pixel image. Only the header is read here and the pixels
// at the first bind, so `data` must stay until the slot is freed. The slot comes
// back in any case; one whose picture is unreadable has no texture.
int32_t Texture_CreateFromFile(const uint8_t* data, uint32_t size);
// Sizes 1 to the device's limit. -1 when the device refuses.
int32_t Texture_CreateEmpty(int32_t width, int32_t height, bool renderTarget, bool depth,
                            int32_t format);
// `size` of width * height * 4: rows of 0xAARRGGBB words, copied at once. Any other:
// an encoded image, as in Texture_CreateFromFile.
int32_t Texture_CreateFromPixels(int32_t width, int32_t height, const void* pixels, uint32_t size);
// White pixels with one alpha byte each; -1 when the device refuses.
int32_t Texture_CreateAlpha(int32_t width, int32_t height, const uint8_t* bytes);
// Writes new pixels (0xAARRGGBB, rows of the area's width) into an area inside the
// image. What the open batch draws of that area shows the new ones.
bool Texture_Update(int32_t index, const DeviceRect& area, const uint32_t* pixels);
void Texture_Free(int32_t index);
bool Texture_Exists(int32_t index);
TextureSlot* Texture_Get(int32_t index);  // null for a bad or free index
int32_t Texture_Count();                  // slots, free ones included
int32_t Texture_Decodes();                // pictures that binds have decoded since Texture_Init
// Pages of the archive; rewrites the entries' texture fields to slot indices.
bool Textures_Load(const uint8_t* chunk, uint32_t size, uint8_t* archiveBase, uint8_t* tpagChunk,
                   uint32_t tpagSize);
// Makes the device's texture when it is missing, and binds it. False when there is
// none: then nothing may be drawn with it. Null clears the stage.
bool Texture_Bind(int32_t stage, GpuTexture* texture);
// In on-demand mode: gives the device's textures back; each is made anew at its bind.
void Texture_ReleaseAll();
GpuTexture* Texture_White();  // one white pixel
// The pixels of a slot's picture as the device has them; the area lies inside the
// image. False when there is no picture.
bool Texture_ReadPixels(int32_t index, const DeviceRect& area, uint32_t* pixels);

// ---- for the units of this table
// The picture of an encoded image as rows of 0xAARRGGBB words: a block of
// MemoryManager, or null. The sizes are those of the picture.
uint32_t* TextureSource_Decode(const uint8_t* data, uint32_t size, int32_t* width, int32_t* height);
// -compresstextures reaches it: all but raw pixels.
bool TextureSource_Compresses(const uint8_t* data, uint32_t size);
bool TextureSource_Header(const uint8_t* data, uint32_t size, int32_t* width, int32_t* height);
