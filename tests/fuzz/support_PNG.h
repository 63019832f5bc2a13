#pragma once
// PNGs for the fuzz targets: seeds of every kind, and checksums that are right, so that
// the bytes reach the reader behind them.

#include <png.h>
#include <zlib.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

// Walks the chunks and writes the checksum of each.
inline void MendChecksums(uint8_t* bytes, size_t size)
{
    const auto word = [&](size_t at) {
        return static_cast<size_t>(bytes[at]) << 24 | static_cast<size_t>(bytes[at + 1]) << 16 |
               static_cast<size_t>(bytes[at + 2]) << 8 | bytes[at + 3];
    };
    for (size_t at = 8; at + 12 <= size;) {
        const size_t length = word(at);
        if (length > size - at - 12) return;
        const uLong sum = crc32(0, bytes + at + 4, static_cast<uInt>(length + 4));
        for (size_t i = 0; i < 4; ++i)
            bytes[at + 8 + length + i] = static_cast<uint8_t>(sum >> (24 - 8 * i));
        at += length + 12;
    }
}

// A picture of 9 by 7 of counting samples.
inline std::vector<uint8_t> SmallPNG(int type, int depth, bool interlaced)
{
    std::vector<uint8_t> out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &out,
        [](png_structp writer, png_bytep data, png_size_t size) {
            auto* bytes = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(writer));
            bytes->insert(bytes->end(), data, data + size);
        },
        nullptr);
    png_set_IHDR(png, info, 9, 7, depth, type,
                 interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, 0, 0);
    const png_color colours[4] = {{1, 2, 3}, {40, 50, 60}, {7, 80, 9}, {255, 0, 128}};
    const png_byte alpha[2] = {0, 100};
    if (type == PNG_COLOR_TYPE_PALETTE) {
        png_set_PLTE(png, info, colours, 4);
        png_set_tRNS(png, info, alpha, 2, nullptr);
    }
    png_write_info(png, info);
    const size_t pitch = png_get_rowbytes(png, info);
    std::vector<uint8_t> samples(pitch * 7);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<uint8_t>(type == PNG_COLOR_TYPE_PALETTE ? i % 4 : i * 37);
    std::vector<png_bytep> rows;
    for (size_t y = 0; y < 7; ++y) rows.push_back(&samples[y * pitch]);
    png_write_image(png, rows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return out;
}

inline std::vector<std::vector<uint8_t>> SmallPNGs()
{
    std::vector<std::vector<uint8_t>> pictures;
    for (const bool interlaced : {false, true})
        for (const int type : {PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_RGB, PNG_COLOR_TYPE_PALETTE,
                               PNG_COLOR_TYPE_GRAY_ALPHA, PNG_COLOR_TYPE_RGBA})
            pictures.push_back(SmallPNG(type, 8, interlaced));
    pictures.push_back(SmallPNG(PNG_COLOR_TYPE_RGB, 16, false));
    pictures.push_back(SmallPNG(PNG_COLOR_TYPE_GRAY, 1, false));
    return pictures;
}

inline void WriteSeed(const std::string& path, const std::vector<uint8_t>& bytes)
{
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

// One file each, with the byte behind it that says how it is read.
inline void WritePictures(const std::string& folder)
{
    int number = 0;
    for (std::vector<uint8_t> picture : SmallPNGs()) {
        picture.push_back(static_cast<uint8_t>(number % 3 * 2));
        WriteSeed(folder + "/png" + std::to_string(number++), picture);
    }
}
