#include "Files/Graphics/Bitmap.h"

#include <algorithm>
#include <cstring>

#include "Platform/MemoryManager.h"

namespace {

// A block: words at these offsets of its header, then the pixels.
constexpr uint32_t kBlockHeader = 52, kPixelsAt = 8, kWidthAt = 16, kHeightAt = 20;
// A "BM" file.
constexpr uint32_t kFileHeader = 54;

uint32_t Word(const uint8_t* bytes, uint32_t offset)
{
    uint32_t word;
    std::memcpy(&word, bytes + offset, sizeof(word));
    return word;
}

void PutWord(uint8_t* bytes, uint32_t offset, uint32_t word)
{
    std::memcpy(bytes + offset, &word, sizeof(word));
}

bool GoodSize(int64_t width, int64_t height)
{
    return width > 0 && height > 0 && width <= kMaxPictureSize && height <= kMaxPictureSize;
}

struct FileBM {
    uint32_t pixels, pitch, bytes;  // offset, bytes a row, bytes a pixel
    int32_t width, height;
    bool upward;  // the first row is the bottom one
};

bool ReadFileHeader(const uint8_t* stream, uint32_t size, FileBM* out)
{
    if (!stream || size < kFileHeader || stream[0] != 'B' || stream[1] != 'M') return false;
    const auto width = static_cast<int32_t>(Word(stream, 18));
    const int64_t height = static_cast<int32_t>(Word(stream, 22));
    const uint32_t bits = Word(stream, 28) & 0xFFFF, compression = Word(stream, 30);
    if ((bits != 24 && bits != 32) || compression != 0) return false;
    out->upward = height > 0;
    if (!GoodSize(width, out->upward ? height : -height)) return false;
    out->width = width;
    out->height = static_cast<int32_t>(out->upward ? height : -height);
    out->bytes = bits / 8;
    out->pitch = (static_cast<uint32_t>(width) * out->bytes + 3) & ~3U;
    out->pixels = Word(stream, 10);
    const uint64_t need = static_cast<uint64_t>(out->pitch) * static_cast<uint64_t>(out->height);
    return out->pixels <= size && need <= size - out->pixels;
}

void CopyRow(const FileBM& file, const uint8_t* row, uint8_t* out)
{
    for (int32_t x = 0; x < file.width; x++, row += file.bytes, out += 4) {
        std::memcpy(out, row, 3);
        out[3] = file.bytes == 4 ? row[3] : 0xFF;
    }
}

}  // namespace

TBitmap::~TBitmap()
{
    MemoryManager::Free(block);
}

void TBitmap::SetWidth(int32_t value)
{
    if (value == width) return;
    Clear();
    width = value;
}

void TBitmap::SetHeight(int32_t value)
{
    if (value == height) return;
    Clear();
    height = value;
}

// Drops the pixels; the size stays.
void TBitmap::Clear()
{
    MemoryManager::Free(block);
    block = nullptr;
    blockSize = 0;
}

bool TBitmap::Allocate()
{
    if (block) return true;
    if (!GoodSize(width, height)) return false;
    blockSize = kBlockHeader + static_cast<uint32_t>(width) * static_cast<uint32_t>(height) * 4;
    block = static_cast<uint8_t*>(MemoryManager::Alloc(blockSize, true));
    PutWord(block, kPixelsAt, kBlockHeader);
    PutWord(block, kWidthAt, static_cast<uint32_t>(width));
    PutWord(block, kHeightAt, static_cast<uint32_t>(height));
    return true;
}

bool TBitmap::Lock(int32_t frame, int32_t* pitch, uint8_t** pixels)
{
    *pitch = 0;
    *pixels = nullptr;
    if (frame != 0 || !Allocate()) return false;
    *pitch = width * 4;
    *pixels = block + Word(block, kPixelsAt);
    return true;
}

bool TBitmap::Load(const uint8_t* stream, uint32_t size)
{
    FileBM file;
    if (!ReadFileHeader(stream, size, &file)) return false;
    Clear();
    width = file.width;
    height = file.height;
    format = kBitmapFormat32;
    int32_t pitch;
    uint8_t* pixels;
    if (!Lock(0, &pitch, &pixels)) return false;
    for (int32_t y = 0; y < height; y++) {
        const int64_t row = file.upward ? height - 1 - y : y;
        CopyRow(file, stream + file.pixels + row * file.pitch,
                pixels + static_cast<int64_t>(y) * pitch);
    }
    return true;
}

bool TBitmap::Assign(IBitmap* other)
{
    if (other == this) return true;
    Clear();
    width = other->GetWidth();
    height = other->GetHeight();
    format = other->GetFormat();
    int32_t pitch, fromPitch;
    uint8_t *pixels, *from;
    if (!other->Lock(0, &fromPitch, &from) || !Lock(0, &pitch, &pixels)) return false;
    for (int64_t y = 0; y < height; y++)
        std::memcpy(pixels + y * pitch, from + y * fromPitch, static_cast<size_t>(pitch));
    other->Unlock();
    return true;
}

bool TBitmap::SetData(const uint8_t* data, uint32_t size)
{
    if (!data || size < kBlockHeader) return false;
    const uint32_t pixels = Word(data, kPixelsAt);
    const uint64_t columns = Word(data, kWidthAt), rows = Word(data, kHeightAt);
    if (columns > kMaxPictureSize || rows > kMaxPictureSize || columns == 0 || rows == 0)
        return false;
    if (pixels < kBlockHeader || pixels > size || columns * rows * 4 > size - pixels) return false;
    Clear();
    width = static_cast<int32_t>(columns);
    height = static_cast<int32_t>(rows);
    block = static_cast<uint8_t*>(MemoryManager::Alloc(size));
    blockSize = size;
    std::memcpy(block, data, size);
    return true;
}

BitmapLoader::BitmapLoader(const uint8_t* source, uint32_t size)
{
    if (bitmap.Load(source, size)) return;
    int32_t width, height, pitch;
    uint8_t* decoded = IsPNG(source, size) ? ReadPNG_Pixels(source, size, &width, &height, false)
                                           : ReadJPEG_Pixels(source, size, &width, &height);
    if (!decoded) return;
    bitmap.SetWidth(width);
    bitmap.SetHeight(height);
    uint8_t* pixels;
    if (bitmap.Lock(0, &pitch, &pixels))
        std::memcpy(pixels, decoded, static_cast<size_t>(pitch) * static_cast<size_t>(height));
    MemoryManager::Free(decoded);
}

TBitmap* BitmapLoader::GetBitmap(int32_t frame) const
{
    if (frame < 0 || frame >= GetFrameCount()) return nullptr;
    TBitmap* copy = VxNew<TBitmap>();
    copy->SetData(bitmap.Block(), bitmap.GetDataSize());
    return copy;
}

CBitmap32::CBitmap32(int32_t bitmapWidth, int32_t bitmapHeight)
    : width(std::max(bitmapWidth, 0)), height(std::max(bitmapHeight, 0))
{
    data = static_cast<uint32_t*>(
        MemoryManager::Alloc(static_cast<size_t>(width) * static_cast<size_t>(height) * 4, true));
}

CBitmap32::CBitmap32(IBitmap* bitmap) : CBitmap32(bitmap->GetWidth(), bitmap->GetHeight())
{
    int32_t pitch;
    uint8_t* pixels;
    if (!bitmap->Lock(0, &pitch, &pixels)) return;
    for (int64_t y = 0; y < height; y++)
        std::memcpy(data + y * width, pixels + y * pitch, static_cast<size_t>(width) * 4);
    bitmap->Unlock();
}

CBitmap32::~CBitmap32()
{
    MemoryManager::Free(data);
}

CBitmap32* CBitmap32::FromBytes(const uint8_t* source, uint32_t size)
{
    const BitmapLoader loader(source, size);
    TBitmap* bitmap = loader.GetBitmap(0);
    if (!bitmap) return nullptr;
    CBitmap32* made = VxNew<CBitmap32>(bitmap);
    VxDelete(bitmap);
    return made;
}
