// JPEG, read from memory.
#include <csetjmp>
#include <cstdio>
#include <utility>

#include <jerror.h>
#include <jpeglib.h>

#include "Files/Base/Console.h"
#include "Files/Graphics/Bitmap.h"
#include "Platform/MemoryManager.h"

namespace {

struct JPEGLoad {
    jpeg_decompress_struct reader;
    jpeg_error_mgr errors;
    std::jmp_buf away;
    uint8_t* pixels;
    uint8_t* row;
};

[[noreturn]] void Fail(j_common_ptr reader)
{
    std::longjmp(static_cast<JPEGLoad*>(reader->client_data)->away, 1);
}

// The library would fill what is missing with grey; a file that breaks off is refused.
void Note(j_common_ptr reader, int level)
{
    if (level < 0 && reader->err->msg_code == JWRN_JPEG_EOF) Fail(reader);
}

void Spread(const uint8_t* row, uint8_t* out, uint32_t count)
{
    for (uint32_t x = 0; x < count; x++, row += 3, out += 4) {
        out[0] = row[2];
        out[1] = row[1];
        out[2] = row[0];
        out[3] = 0xFF;
    }
}

bool ReadHead(JPEGLoad* load, const uint8_t* source, uint32_t size)
{
    jpeg_decompress_struct& reader = load->reader;
    if (setjmp(load->away)) return false;
    jpeg_create_decompress(&reader);
    jpeg_mem_src(&reader, source, size);
    jpeg_read_header(&reader, TRUE);
    constexpr auto kMost = static_cast<JDIMENSION>(kMaxPictureSize);
    return reader.image_width <= kMost && reader.image_height <= kMost;
}

bool ReadRows(JPEGLoad* load)
{
    jpeg_decompress_struct& reader = load->reader;
    if (setjmp(load->away)) return false;
    reader.out_color_space = JCS_RGB;
    jpeg_start_decompress(&reader);
    const size_t pitch = static_cast<size_t>(reader.output_width) * 4;
    load->pixels = static_cast<uint8_t*>(MemoryManager::Alloc(pitch * reader.output_height));
    load->row = static_cast<uint8_t*>(MemoryManager::Alloc(pitch));
    while (reader.output_scanline < reader.output_height) {
        uint8_t* out = load->pixels + reader.output_scanline * pitch;
        JSAMPROW row = load->row;
        jpeg_read_scanlines(&reader, &row, 1);
        Spread(load->row, out, reader.output_width);
    }
    jpeg_finish_decompress(&reader);
    return true;
}

JPEGLoad* Begin(const uint8_t* source, uint32_t size)
{
    if (!source || size == 0) return nullptr;
    JPEGLoad* load = VxNew<JPEGLoad>(JPEGLoad{});
    load->reader.err = jpeg_std_error(&load->errors);
    load->errors.error_exit = Fail;
    load->errors.emit_message = Note;
    load->reader.client_data = load;
    return load;
}

void End(JPEGLoad* load)
{
    jpeg_destroy_decompress(&load->reader);
    MemoryManager::Free(load->pixels);
    MemoryManager::Free(load->row);
    VxDelete(load);
}

void TellError()
{
    g_DebugConsole->Output("ReadJPEG :: a JPEG error occured");
}

}  // namespace

bool IsJPEG(const uint8_t* source, uint32_t size)
{
    return source && size > 2 && source[0] == 0xFF && source[1] == 0xD8;
}

bool ReadJPEG_Header(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height)
{
    *width = *height = -1;
    JPEGLoad* load = Begin(source, size);
    if (!load) return false;
    const bool read = ReadHead(load, source, size);
    if (read) {
        *width = static_cast<int32_t>(load->reader.image_width);
        *height = static_cast<int32_t>(load->reader.image_height);
    } else {
        TellError();
    }
    End(load);
    return read;
}

uint8_t* ReadJPEG_Pixels(const uint8_t* source, uint32_t size, int32_t* width, int32_t* height)
{
    *width = *height = -1;
    JPEGLoad* load = Begin(source, size);
    if (!load) return nullptr;
    uint8_t* pixels = nullptr;
    if (ReadHead(load, source, size) && ReadRows(load)) {
        pixels = std::exchange(load->pixels, nullptr);
        *width = static_cast<int32_t>(load->reader.output_width);
        *height = static_cast<int32_t>(load->reader.output_height);
    } else {
        TellError();
    }
    End(load);
    return pixels;
}
