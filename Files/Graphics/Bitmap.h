#pragma once
// Images from bytes and back: PNG through libpng, JPEG through libjpeg.

#include <cstdint>

// Only the header; both sizes -1 and false when it is not a PNG.
bool ReadPNG_Header(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height,
                    bool scale);
// Rows top first, bytes blue, green, red, alpha; a block of MemoryManager that the
// caller frees, or null with both sizes -1.
uint8_t* ReadPNG_Pixels(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height,
                        bool scale);
// Pixels in the order red, green, blue, alpha. `path` is a host path.
bool WritePNG(const char* path, const uint8_t* pixels, int32_t width, int32_t height);

class CBitmap32 {
public:
    CBitmap32(int32_t bitmapWidth, int32_t bitmapHeight);  // zeroed
    ~CBitmap32();
    CBitmap32(const CBitmap32&) = delete;
    CBitmap32& operator=(const CBitmap32&) = delete;
    int32_t width, height;
    uint32_t* data;  // 0xAARRGGBB
};
