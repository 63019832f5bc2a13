#pragma once
// Images from bytes and back: PNG through libpng, JPEG through libjpeg.

#include <cstdint>

// Larger pictures, in pixels a side, are refused.
inline constexpr int32_t kMaxPictureSize = 16384;

bool IsPNG(const uint8_t* source, uint32_t size);  // by its signature
// Only the header; both sizes -1 and false when it is not a PNG. With `scale` the
// sizes are divided by texture_global_scale.
bool ReadPNG_Header(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height,
                    bool scale);
// Rows top first, bytes blue, green, red, alpha; a block of MemoryManager that the
// caller frees, or null with both sizes -1. With `scale` the picture is halved until
// texture_global_scale is used up or a side is 1.
uint8_t* ReadPNG_Pixels(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height,
                        bool scale);
// ReadPNG_Pixels without scaling and without a word: what is wrong goes to `fault`. Any
// number of threads may decode at once.
uint8_t* DecodePNG(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height,
                   const char** fault);
// Halves a picture in its place as ReadPNG_Pixels does.
void Picture_ScaleDown(uint8_t* pixels, int32_t* width, int32_t* height);
bool IsJPEG(const uint8_t* source, uint32_t size);  // by its first bytes
bool ReadJPEG_Header(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height);
// Pixels as ReadPNG_Pixels gives them, from a JPEG; alpha is 255.
uint8_t* ReadJPEG_Pixels(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height);
// Pixels in the order red, green, blue, alpha. `path` is a host path. False with a
// line on the debug console when the file can not be written.
bool WritePNG(const char* path, const uint8_t* pixels, int32_t width, int32_t height);
// Frees what a header query without a decode has kept.
void Bitmap_Quit();

inline constexpr int32_t kBitmapFormat32 = 7;  // alpha in the top byte

// A picture in memory. Rows go from the top.
class IBitmap {
public:
    virtual ~IBitmap() = default;
    // A file that begins with "BM", 24 or 32 bits a pixel, not compressed.
    virtual bool Load(const uint8_t* stream, uint32_t size) = 0;
    virtual void SetWidth(int32_t width) = 0;
    virtual int32_t GetWidth() const = 0;
    virtual void SetHeight(int32_t height) = 0;
    virtual int32_t GetHeight() const = 0;
    virtual void SetFormat(int32_t format) = 0;
    virtual int32_t GetFormat() const = 0;
    // The pixels and their pitch in bytes, zeroed on first use; false for a picture
    // without a size. A bitmap has one frame, 0.
    virtual bool Lock(int32_t frame, int32_t* pitch, uint8_t** pixels) = 0;
    virtual void Unlock() = 0;
    virtual bool Assign(IBitmap* other) = 0;
    virtual void Clear() = 0;
    virtual uint32_t GetDataSize() const = 0;
    // Takes a copy of a block: a header of 52 bytes whose words at offsets 8, 16 and 20
    // give the pixels' offset, width and height, and the pixels. False when they do not fit.
    virtual bool SetData(const uint8_t* block, uint32_t size) = 0;
};

class TBitmap final : public IBitmap {
public:
    TBitmap() = default;
    ~TBitmap() override;
    TBitmap(const TBitmap&) = delete;
    TBitmap& operator=(const TBitmap&) = delete;
    bool Load(const uint8_t* stream, uint32_t size) override;
    void SetWidth(int32_t value) override;
    int32_t GetWidth() const override { return width; }
    void SetHeight(int32_t value) override;
    int32_t GetHeight() const override { return height; }
    void SetFormat(int32_t value) override { format = value; }
    int32_t GetFormat() const override { return format; }
    bool Lock(int32_t frame, int32_t* pitch, uint8_t** pixels) override;
    void Unlock() override {}
    bool Assign(IBitmap* other) override;
    void Clear() override;
    uint32_t GetDataSize() const override { return blockSize; }
    bool SetData(const uint8_t* data, uint32_t size) override;
    const uint8_t* Block() const { return block; }  // null before the first Lock

private:
    bool Allocate();

    int32_t width = 0, height = 0, format = kBitmapFormat32;
    uint8_t* block = nullptr;
    uint32_t blockSize = 0;
};

class IBitmapLoader {
public:
    virtual ~IBitmapLoader() = default;
    virtual bool IsAnimated() const = 0;
    virtual int32_t GetFrameCount() const = 0;
    // A new bitmap that the caller deletes with VxDelete, or null past the end.
    virtual TBitmap* GetBitmap(int32_t frame) const = 0;
};

// The frames of an image file: PNG, JPEG or BM, told by its first bytes.
class BitmapLoader final : public IBitmapLoader {
public:
    BitmapLoader(const uint8_t* source, uint32_t size);
    bool IsAnimated() const override { return false; }
    int32_t GetFrameCount() const override { return bitmap.Block() ? 1 : 0; }
    TBitmap* GetBitmap(int32_t frame) const override;

private:
    TBitmap bitmap;
};

class CBitmap32 {
public:
    CBitmap32(int32_t bitmapWidth, int32_t bitmapHeight);  // zeroed
    explicit CBitmap32(IBitmap* bitmap);
    ~CBitmap32();
    CBitmap32(const CBitmap32&) = delete;
    CBitmap32& operator=(const CBitmap32&) = delete;
    // The picture in the bytes of an image file, PNG, JPEG or BM; null when they can not
    // be read. The caller deletes it with VxDelete.
    static CBitmap32* FromBytes(const uint8_t* source, uint32_t size);
    int32_t width, height;
    uint32_t* data;  // 0xAARRGGBB
};
