// PNG, read from memory and written to a host stream.
#include <png.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <utility>

#include "Files/Base/Console.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/TextureSlots.h"
#include "Host/Host.h"
#include "Platform/MemoryManager.h"

namespace {

constexpr size_t kSignature = 8;
// The densest stream of the format's compression gives 1032 bytes for one.
constexpr uint64_t kMostPerByte = 1032;

// A decode under way. Several threads may have one each.
struct PNGLoad {
    const uint8_t* source;
    uint32_t sourceSize;
    uint32_t cursor;
    uint32_t headSize, headCheck;  // bytes read so far, and a sum over them
    int32_t width, height;
    png_structp reader;
    png_infop info, endInfo;
    uint8_t* pixels;
    png_bytep* rows;
};
// The decode that waits, after a header query, for its pixels to be asked for.
std::mutex s_waitingLock;
PNGLoad* s_waiting = nullptr;

constexpr char kNotPNG[] = "Not a PNG";
constexpr char kError[] = "ReadPNG :: a PNG error occured";

png_voidp Allocate(png_structp, png_alloc_size_t size)
{
    return MemoryManager::Alloc(size);
}

void Release(png_structp, png_voidp block)
{
    MemoryManager::Free(block);
}

void Ignore(png_structp, png_const_charp) {}

[[noreturn]] void Fail(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void ReadBytes(png_structp png, png_bytep out, png_size_t count)
{
    auto* load = static_cast<PNGLoad*>(png_get_io_ptr(png));
    if (count > load->sourceSize - load->cursor) png_error(png, "the file breaks off");
    std::memcpy(out, load->source + load->cursor, count);
    load->cursor += static_cast<uint32_t>(count);
}

uint32_t CheckOf(const uint8_t* bytes, uint32_t count)
{
    uint32_t sum = 2166136261U;
    for (uint32_t i = 0; i < count; i++) sum = (sum ^ bytes[i]) * 16777619U;
    return sum;
}

void Drop(PNGLoad* load)
{
    if (!load) return;
    png_destroy_read_struct(&load->reader, &load->info, &load->endInfo);
    MemoryManager::Free(load->rows);
    MemoryManager::Free(load->pixels);
    VxDelete(load);
}

// All kinds of picture become four channels of 8 bits: blue, green, red, alpha.
void AskForPixels(PNGLoad* load)
{
    png_structp png = load->reader;
    const int colourType = png_get_color_type(png, load->info);
    const bool palette = colourType == PNG_COLOR_TYPE_PALETTE;
    const bool grey = colourType == PNG_COLOR_TYPE_GRAY;
    const bool clearColours = palette && png_get_valid(png, load->info, PNG_INFO_tRNS);
    png_set_strip_16(png);
    if (grey && png_get_bit_depth(png, load->info) < 8) png_set_expand_gray_1_2_4_to_8(png);
    if (grey || colourType == PNG_COLOR_TYPE_GRAY_ALPHA) png_set_gray_to_rgb(png);
    if (grey || colourType == PNG_COLOR_TYPE_RGB || (palette && !clearColours))
        png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    if (palette) png_set_palette_to_rgb(png);
    if (palette || colourType == PNG_COLOR_TYPE_RGB || colourType == PNG_COLOR_TYPE_RGB_ALPHA)
        png_set_bgr(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, load->info);
}

bool ReadInfo(PNGLoad* load)
{
    png_structp png = load->reader;
    if (setjmp(png_jmpbuf(png))) return false;
    png_set_read_fn(png, load, ReadBytes);
    png_set_sig_bytes(png, kSignature);
    png_set_user_limits(png, kMaxPictureSize, kMaxPictureSize);
    load->cursor = kSignature;
    png_read_info(png, load->info);
    load->width = static_cast<int32_t>(png_get_image_width(png, load->info));
    load->height = static_cast<int32_t>(png_get_image_height(png, load->info));
    // A header that promises more than the bytes can hold is not worth the memory.
    const uint64_t raw = png_get_rowbytes(png, load->info);
    if (raw * static_cast<uint64_t>(load->height) > kMostPerByte * load->sourceSize)
        png_error(png, "the picture is larger than its data");
    return true;
}

bool ReadImage(PNGLoad* load)
{
    png_structp png = load->reader;
    if (setjmp(png_jmpbuf(png))) return false;
    AskForPixels(load);
    const size_t pitch = static_cast<size_t>(load->width) * 4;
    if (png_get_rowbytes(png, load->info) != pitch) png_error(png, "not 32 bits a pixel");
    const auto height = static_cast<size_t>(load->height);
    load->pixels = static_cast<uint8_t*>(MemoryManager::Alloc(pitch * height));
    load->rows = static_cast<png_bytep*>(MemoryManager::Alloc(height * sizeof(png_bytep)));
    for (size_t y = 0; y < height; y++) load->rows[y] = load->pixels + y * pitch;
    png_read_image(png, load->rows);
    return true;
}

// The decode that waits for these very bytes, or null; it is the caller's now.
PNGLoad* TakeWaiting(const uint8_t* source, uint32_t size)
{
    const std::lock_guard<std::mutex> lock(s_waitingLock);
    const PNGLoad* load = s_waiting;
    if (!load || load->source != source || load->sourceSize != size ||
        load->headCheck != CheckOf(source, load->headSize))
        return nullptr;
    return std::exchange(s_waiting, nullptr);
}

// One decode waits at most; null frees it.
void LetWait(PNGLoad* load)
{
    {
        const std::lock_guard<std::mutex> lock(s_waitingLock);
        std::swap(s_waiting, load);
    }
    Drop(load);
}

PNGLoad* NewLoad(const uint8_t* source, uint32_t size)
{
    PNGLoad* load = VxNew<PNGLoad>(PNGLoad{});
    load->source = source;
    load->sourceSize = size;
    load->reader = png_create_read_struct_2(PNG_LIBPNG_VER_STRING, nullptr, Fail, Ignore, nullptr,
                                            Allocate, Release);
    if (!load->reader) return load;
    load->info = png_create_info_struct(load->reader);
    load->endInfo = png_create_info_struct(load->reader);
    return load;
}

// The decode of these bytes with its header read, or null and what is wrong with them.
PNGLoad* Begin(const uint8_t* source, uint32_t size, const char** fault)
{
    if (PNGLoad* waiting = TakeWaiting(source, size)) return waiting;
    *fault = kNotPNG;
    if (!IsPNG(source, size)) return nullptr;
    *fault = kError;
    PNGLoad* load = NewLoad(source, size);
    if (!load->info || !load->endInfo || !ReadInfo(load)) {
        Drop(load);
        return nullptr;
    }
    load->headSize = load->cursor;
    load->headCheck = CheckOf(source, load->headSize);
    return load;
}

// Each pixel of the half is the mean of four, channel by channel.
void Halve(uint8_t* pixels, int32_t width, int32_t height, int32_t toWidth, int32_t toHeight)
{
    const int32_t stepX = (width << 16) / toWidth, stepY = (height << 16) / toHeight;
    for (int64_t y = 0; y < toHeight; y++) {
        const uint8_t* above = pixels + ((y * stepY) >> 16) * width * 4;
        const uint8_t* below = above + static_cast<ptrdiff_t>(width) * 4;
        uint8_t* out = pixels + y * toWidth * 4;
        for (int64_t x = 0; x < toWidth; x++) {
            const int64_t at = ((x * stepX) >> 16) * 4;
            for (int64_t c = at; c < at + 4; c++)
                *out++ =
                    static_cast<uint8_t>((above[c] + above[c + 4] + below[c] + below[c + 4]) >> 2);
        }
    }
}

// ---- writing

struct PNGWriter {
    void* stream;
    png_structp writer;
    png_infop info;
    png_bytep* rows;
};

void WriteBytes(png_structp png, png_bytep bytes, png_size_t count)
{
    void* stream = png_get_io_ptr(png);
    const auto size = static_cast<uint32_t>(count);
    if (g_Host.files.WriteStream(stream, bytes, size) != size) png_error(png, "disk full");
}

void FlushBytes(png_structp) {}

// One guarded step; false when the library jumped out of it.
template <class Step>
bool Guard(PNGWriter* out, const char* message, Step step)
{
    if (setjmp(png_jmpbuf(out->writer))) {
        g_DebugConsole->Output("%s", message);
        return false;
    }
    step();
    return true;
}

bool WriteAll(PNGWriter* out, const uint8_t* pixels, int32_t width, int32_t height)
{
    png_structp png = out->writer;
    const auto columns = static_cast<png_uint_32>(width), rows = static_cast<png_uint_32>(height);
    if (!Guard(out, "[write_png_file] Error during init_io\n",
               [&] { png_set_write_fn(png, out->stream, WriteBytes, FlushBytes); }))
        return false;
    if (!Guard(out, "[write_png_file] Error during writing header\n", [&] {
            png_set_IHDR(png, out->info, columns, rows, 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
                         PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE);
            png_write_info(png, out->info);
        }))
        return false;
    for (png_uint_32 y = 0; y < rows; y++)
        out->rows[y] = const_cast<png_bytep>(pixels) + static_cast<size_t>(y) * columns * 4;
    return Guard(out, "[write_png_file] Error during writing bytes",
                 [&] { png_write_image(png, out->rows); }) &&
           Guard(out, "[write_png_file] Error during end of write",
                 [&] { png_write_end(png, nullptr); });
}

bool WriteTo(PNGWriter* out, const uint8_t* pixels, int32_t width, int32_t height)
{
    out->writer = png_create_write_struct_2(PNG_LIBPNG_VER_STRING, nullptr, Fail, Ignore, nullptr,
                                            Allocate, Release);
    if (!out->writer) {
        g_DebugConsole->Output("[write_png_file] png_create_write_struct failed\n");
        return false;
    }
    out->info = png_create_info_struct(out->writer);
    if (!out->info) {
        g_DebugConsole->Output("[write_png_file] png_create_info_struct failed\n");
        return false;
    }
    out->rows = static_cast<png_bytep*>(
        MemoryManager::Alloc(static_cast<size_t>(height) * sizeof(png_bytep)));
    return WriteAll(out, pixels, width, height);
}

}  // namespace

bool IsPNG(const uint8_t* source, uint32_t size)
{
    return source && size >= kSignature && png_sig_cmp(source, 0, kSignature) == 0;
}

bool ReadPNG_Header(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height,
                    bool scale)
{
    const char* fault = nullptr;
    PNGLoad* load = Begin(source, size, &fault);
    *width = load ? load->width : -1;
    *height = load ? load->height : -1;
    if (!load) {
        g_DebugConsole->Output("%s", fault);
        return false;
    }
    if (scale && g_TextureGlobalScale > 1) {
        *width = std::max(*width / g_TextureGlobalScale, 1);
        *height = std::max(*height / g_TextureGlobalScale, 1);
    }
    LetWait(load);
    return true;
}

uint8_t* DecodePNG(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height,
                   const char** fault)
{
    *width = *height = -1;
    PNGLoad* load = Begin(source, size, fault);
    if (!load) return nullptr;
    uint8_t* pixels = nullptr;
    if (ReadImage(load)) {
        pixels = std::exchange(load->pixels, nullptr);
        *width = load->width;
        *height = load->height;
    } else {
        *fault = kError;
    }
    Drop(load);
    return pixels;
}

void Picture_ScaleDown(uint8_t* pixels, int32_t* width, int32_t* height)
{
    for (int32_t factor = g_TextureGlobalScale; factor > 1 && *width > 1 && *height > 1;
         factor /= 2) {
        Halve(pixels, *width, *height, *width / 2, *height / 2);
        *width /= 2;
        *height /= 2;
    }
}

uint8_t* ReadPNG_Pixels(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height,
                        bool scale)
{
    const char* fault = nullptr;
    uint8_t* pixels = DecodePNG(source, size, width, height, &fault);
    if (!pixels) g_DebugConsole->Output("%s", fault);
    if (pixels && scale) Picture_ScaleDown(pixels, width, height);
    return pixels;
}

bool WritePNG(const char* path, const uint8_t* pixels, int32_t width, int32_t height)
{
    if (!pixels || width < 1 || height < 1) return false;
    PNGWriter out = {};
    out.stream = g_Host.files.OpenStream(path, "wb");
    if (!out.stream) {
        g_DebugConsole->Output("[write_png_file] File %s could not be opened for writing\n", path);
        return false;
    }
    const bool written = WriteTo(&out, pixels, width, height);
    if (out.writer) png_destroy_write_struct(&out.writer, &out.info);
    MemoryManager::Free(out.rows);
    g_Host.files.CloseStream(out.stream);
    if (!written) g_Host.files.Delete(path);
    return written;
}

void Bitmap_Quit()
{
    LetWait(nullptr);
}
