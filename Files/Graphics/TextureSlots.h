#pragma once
// The table of texture slots. A texture handle anywhere in the runtime is an
// index into it.

#include <cstdint>

#include "Files/Graphics_API/Device.h"

struct GpuTexture {
    int32_t format;
    int32_t width, height;  // as stored
    int32_t levels;
    uint32_t flags;         // bit 0 target must be copied before sampling, 16 default pool, 17 managed
    DeviceTexture* deviceTexture;
    DeviceTexture* colourSurface;
    DeviceTexture* depthSurface;
    void* shadowRaw;
    uint32_t* shadow;
    const uint8_t* sourceData;  // encoded image in the archive, for on-demand creation
    uint32_t sourceSize;
    GpuTexture* next;
};

struct TextureSlot {
    GpuTexture* texture;
    int16_t width, height;  // image size used for UV scaling
    float invWidth, invHeight;
    bool inUse;
};

extern bool g_TexturesOnDemand;
extern int32_t g_TextureGlobalScale;

void Texture_Init();
void Texture_FreeAll();
int32_t TextureSlot_Find();
int32_t Texture_CreateFromFile(const uint8_t* data, uint32_t size);
int32_t Texture_CreateEmpty(int32_t width, int32_t height, bool renderTarget, bool depth,
                            int32_t format);
int32_t Texture_CreateFromPixels(int32_t width, int32_t height, const void* pixels, uint32_t size);
int32_t Texture_CreateAlpha(int32_t width, int32_t height, const uint8_t* bytes);
void Texture_Free(int32_t index);
bool Texture_Exists(int32_t index);
TextureSlot* Texture_Get(int32_t index);  // null for a bad or free index
// Pages of the archive; rewrites the entries' texture fields to slot indices.
bool Textures_Load(const uint8_t* chunk, uint32_t size, uint8_t* archiveBase, uint8_t* tpagChunk,
                   uint32_t tpagSize);
void Texture_Bind(int32_t stage, GpuTexture* texture);
GpuTexture* Texture_White();
