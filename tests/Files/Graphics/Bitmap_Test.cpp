// Pictures from bytes: every kind of PNG, JPEG and BM against the colours that went
// in, and broken files at every place that a byte can be missing or wrong.
#include "Files/Graphics/Bitmap.h"

#include <gtest/gtest.h>
#include <png.h>
// libjpeg's header needs FILE first.
#include <cstdio>

#include <jpeglib.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Files/Base/Console.h"
#include "Files/Graphics/Picture_Files.h"
#include "Files/Graphics/TextureSlots.h"
#include "Host/Host.h"
#include "Host/Host_Stage.h"
#include "Platform/MemoryManager.h"

namespace {

using Bytes = std::vector<uint8_t>;

class Bitmap : public testing::Test {
protected:
    void SetUp() override
    {
        Host_UseStage();
        g_TextureGlobalScale = 1;
        blocks_ = MemoryManager::GetStats().blocks;
    }
    void TearDown() override
    {
        g_TextureGlobalScale = 1;
        Bitmap_Quit();
        EXPECT_EQ(MemoryManager::GetStats().blocks, blocks_);
    }
    size_t blocks_ = 0;
};

struct Picture {
    int32_t width = 0, height = 0;
    std::vector<uint32_t> pixels;  // 0xAARRGGBB
};

Picture Take(uint8_t* pixels, int32_t width, int32_t height)
{
    Picture picture = {width, height, {}};
    if (pixels) {
        picture.pixels.resize(static_cast<size_t>(width * height));
        std::memcpy(picture.pixels.data(), pixels, picture.pixels.size() * 4);
    }
    MemoryManager::Free(pixels);
    return picture;
}

Picture Decode(const Bytes& bytes, bool scale = false)
{
    int32_t width = 0, height = 0;
    uint8_t* pixels =
        ReadPNG_Pixels(bytes.data(), static_cast<uint32_t>(bytes.size()), &width, &height, scale);
    return Take(pixels, width, height);
}

void Append(png_structp png, png_bytep data, png_size_t size)
{
    auto* out = static_cast<Bytes*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + size);
}

// A PNG of 8 by 8 whose samples count up; a palette of 64 colours, the first ones clear.
Bytes MakePNG(int type, int depth, bool interlaced, bool clearColours = false)
{
    Bytes out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &out, Append, nullptr);
    png_set_IHDR(png, info, 8, 8, depth, type,
                 interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, 0, 0);
    if (type == PNG_COLOR_TYPE_PALETTE) {
        png_color colours[64];
        for (uint32_t i = 0; i < 64; i++)
            colours[i] = {static_cast<png_byte>(i * 4), static_cast<png_byte>(255 - i), 7};
        png_set_PLTE(png, info, colours, 64);
        const png_byte alpha[3] = {0, 100, 200};
        if (clearColours) png_set_tRNS(png, info, alpha, 3, nullptr);
    }
    png_write_info(png, info);
    const size_t pitch = png_get_rowbytes(png, info);
    Bytes data(pitch * 8);
    const bool palette = type == PNG_COLOR_TYPE_PALETTE;
    for (size_t i = 0; i < data.size(); i++)
        data[i] = static_cast<uint8_t>(palette ? i % 64 : i * 5);
    std::vector<png_bytep> rows;
    for (size_t y = 0; y < 8; y++) rows.push_back(&data[y * pitch]);
    png_write_image(png, rows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return out;
}

uint32_t Argb(uint32_t a, uint32_t r, uint32_t g, uint32_t b)
{
    return (a << 24) | ((r & 255) << 16) | ((g & 255) << 8) | (b & 255);
}

TEST_F(Bitmap, EveryKindOfPNGComesOutAsBlueGreenRedAlpha)
{
    for (const bool interlaced : {false, true}) {
        const Picture rgb = Decode(MakePNG(PNG_COLOR_TYPE_RGB, 8, interlaced));
        ASSERT_EQ(rgb.pixels.size(), 64U);
        EXPECT_EQ(rgb.pixels[9], Argb(255, 27 * 5, 28 * 5, 29 * 5));
        const Picture rgba = Decode(MakePNG(PNG_COLOR_TYPE_RGBA, 8, interlaced));
        EXPECT_EQ(rgba.pixels[10], Argb(43 * 5 & 255, 40 * 5, 41 * 5, 42 * 5));
        const Picture grey = Decode(MakePNG(PNG_COLOR_TYPE_GRAY, 8, interlaced));
        EXPECT_EQ(grey.pixels[20], Argb(255, 100, 100, 100));
        const Picture greyAlpha = Decode(MakePNG(PNG_COLOR_TYPE_GRAY_ALPHA, 8, interlaced));
        EXPECT_EQ(greyAlpha.pixels[20], Argb(41 * 5, 200, 200, 200));
        const Picture palette = Decode(MakePNG(PNG_COLOR_TYPE_PALETTE, 8, interlaced));
        EXPECT_EQ(palette.pixels[1], Argb(255, 4, 254, 7));
        const Picture clear = Decode(MakePNG(PNG_COLOR_TYPE_PALETTE, 8, interlaced, true));
        EXPECT_EQ(clear.pixels[1], Argb(100, 4, 254, 7));
        EXPECT_EQ(clear.pixels[3], Argb(255, 12, 252, 7));
    }
    const Picture deep = Decode(MakePNG(PNG_COLOR_TYPE_RGB, 16, false));
    EXPECT_EQ(deep.pixels[1], Argb(255, 30, 40, 50));
    const Picture bits = Decode(MakePNG(PNG_COLOR_TYPE_GRAY, 1, false));
    EXPECT_EQ(bits.pixels[8 + 5], 0xFFFFFFFFU);  // the second row's byte is 00000101
    EXPECT_EQ(bits.pixels[8 + 6], 0xFF000000U);
}

TEST_F(Bitmap, AHeaderQueryThenADecodeAndChangedBytesInThePlace)
{
    Bytes bytes = MakePNG(PNG_COLOR_TYPE_PALETTE, 8, false);
    int32_t width = 0, height = 0;
    ASSERT_TRUE(
        ReadPNG_Header(bytes.data(), static_cast<uint32_t>(bytes.size()), &width, &height, false));
    EXPECT_EQ(width * 100 + height, 808);
    EXPECT_EQ(Decode(bytes).pixels[1], Argb(255, 4, 254, 7));
    ReadPNG_Header(bytes.data(), static_cast<uint32_t>(bytes.size()), &width, &height, false);
    const Bytes other = MakePNG(PNG_COLOR_TYPE_GRAY, 8, false);
    bytes.resize(std::max(bytes.size(), other.size()));
    std::memcpy(bytes.data(), other.data(), other.size());
    EXPECT_EQ(Decode(bytes).pixels[20], Argb(255, 100, 100, 100));
    const uint8_t text[] = "no picture at all";
    EXPECT_FALSE(ReadPNG_Header(text, sizeof(text), &width, &height, false));
    EXPECT_EQ(width, -1);
    EXPECT_EQ(height, -1);
}

// A file that breaks off anywhere before its last chunk gives no picture.
TEST_F(Bitmap, BrokenPNGs)
{
    const Bytes whole = MakePNG(PNG_COLOR_TYPE_RGBA, 8, true);
    for (size_t size = 0; size + 24 < whole.size(); size++) {
        const Picture picture =
            Decode(Bytes(whole.begin(), whole.begin() + static_cast<long>(size)));
        EXPECT_EQ(picture.width, -1) << size;
    }
    for (size_t i = 0; i < whole.size(); i++) {
        for (const uint8_t bit : {0x01, 0x80, 0xFF}) {
            Bytes wrong = whole;
            wrong[i] = static_cast<uint8_t>(wrong[i] ^ bit);
            Decode(wrong);  // any answer, no read outside, no leak
        }
    }
}

// The header's size with its checksum made right again.
Bytes WithSize(Bytes bytes, uint32_t width, uint32_t height)
{
    for (size_t i = 0; i < 4; i++) {
        bytes[16 + i] = static_cast<uint8_t>(width >> (24 - 8 * i));
        bytes[20 + i] = static_cast<uint8_t>(height >> (24 - 8 * i));
    }
    uint32_t crc = 0xFFFFFFFF;
    for (size_t i = 12; i < 29; i++) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; bit++) crc = (crc >> 1) ^ (crc & 1 ? 0xEDB88320U : 0);
    }
    for (size_t i = 0; i < 4; i++) bytes[29 + i] = static_cast<uint8_t>(~crc >> (24 - 8 * i));
    return bytes;
}

TEST_F(Bitmap, PNGsThatLieAboutTheirSize)
{
    const Bytes honest = MakePNG(PNG_COLOR_TYPE_RGBA, 8, false);
    EXPECT_EQ(Decode(WithSize(honest, 8, 8)).width, 8);
    for (const uint32_t side : {9U, 100U, 16384U, 16385U, 0x7FFFFFFFU, 0U}) {
        const size_t before = MemoryManager::GetStats().total;
        EXPECT_EQ(Decode(WithSize(honest, side, side)).width, -1) << side;
        EXPECT_LT(MemoryManager::GetStats().total - before, 4000000U) << side;
    }
}

TEST_F(Bitmap, ScalingHalvesByMeansOfFour)
{
    const Bytes bytes = MakePNG(PNG_COLOR_TYPE_GRAY, 8, false);
    const auto grey = [](uint32_t i) { return i * 5 % 256; };
    g_TextureGlobalScale = 2;
    const Picture half = Decode(bytes, true);
    ASSERT_EQ(half.width * 10 + half.height, 44);
    EXPECT_EQ(half.pixels[5] & 255, (grey(18) + grey(19) + grey(26) + grey(27)) / 4);
    EXPECT_EQ(Decode(bytes, false).width, 8);
    g_TextureGlobalScale = 64;
    EXPECT_EQ(Decode(bytes, true).width, 1);
    int32_t width = 0, height = 0;
    g_TextureGlobalScale = 4;
    ReadPNG_Header(bytes.data(), static_cast<uint32_t>(bytes.size()), &width, &height, true);
    EXPECT_EQ(width, 2);
}

TEST_F(Bitmap, WrittenPNGsReadBack)
{
    Host_UseSDL();  // real files
    const std::string path = testing::TempDir() + "bitmap_test.png";
    const uint8_t rgba[3 * 2 * 4] = {1,  2,  3,  255, 4,  5,  6,  128, 7,  8,  9,  0,
                                     10, 11, 12, 13,  14, 15, 16, 17,  18, 19, 20, 21};
    ASSERT_TRUE(WritePNG(path.c_str(), rgba, 3, 2));
    uint32_t size = 0;
    uint8_t* bytes = g_Host.files.ReadAll(path.c_str(), &size);
    ASSERT_NE(bytes, nullptr);
    const Picture picture = Decode(Bytes(bytes, bytes + size));
    MemoryManager::Free(bytes);
    EXPECT_EQ(picture.width, 3);
    EXPECT_EQ(picture.pixels[1], Argb(128, 4, 5, 6));
    EXPECT_EQ(picture.pixels[5], Argb(21, 18, 19, 20));
    g_Host.files.Delete(path.c_str());
    EXPECT_FALSE(WritePNG((testing::TempDir() + "no/such/folder.png").c_str(), rgba, 3, 2));
}

Bytes MakeJPEG()
{
    jpeg_compress_struct writer;
    jpeg_error_mgr errors;
    writer.err = jpeg_std_error(&errors);
    jpeg_create_compress(&writer);
    unsigned char* data = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&writer, &data, &size);
    writer.image_width = writer.image_height = 32;
    writer.input_components = 3;
    writer.in_color_space = JCS_RGB;
    jpeg_set_defaults(&writer);
    jpeg_set_quality(&writer, 95, TRUE);
    jpeg_start_compress(&writer, TRUE);
    Bytes row;
    for (int i = 0; i < 32; i++) row.insert(row.end(), {200, 100, 50});
    while (writer.next_scanline < 32) {
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&writer, &rows, 1);
    }
    jpeg_finish_compress(&writer);
    Bytes out(data, data + size);
    jpeg_destroy_compress(&writer);
    std::free(data);
    return out;
}

TEST_F(Bitmap, JPEGsWholeAndBroken)
{
    const Bytes bytes = MakeJPEG();
    const auto decode = [](const Bytes& source) {
        int32_t width, height;
        uint8_t* pixels =
            ReadJPEG_Pixels(source.data(), static_cast<uint32_t>(source.size()), &width, &height);
        return Take(pixels, width, height);
    };
    const Picture picture = decode(bytes);
    ASSERT_EQ(picture.width * 100 + picture.height, 3232);
    const uint32_t pixel = picture.pixels[500];
    EXPECT_EQ(pixel >> 24, 255U);
    EXPECT_NEAR((pixel >> 16) & 255, 200, 3);
    EXPECT_NEAR(pixel & 255, 50, 3);
    for (size_t size = 0; size + 2 < bytes.size(); size += 7)
        EXPECT_EQ(decode(Bytes(bytes.begin(), bytes.begin() + static_cast<long>(size))).width, -1);
}

// What scripts load: JPEGs as they are, and GIFs not at all, which is told.
TEST_F(Bitmap, PictureFilesOfScripts)
{
    const std::string folder = testing::TempDir() + "bitmap_pictures/";
    g_Host.files.MakeFolder(folder.c_str(), 0700);
    Stage_SetFolder(folder.c_str());
    Stage_SetDataFolder(folder.c_str());
    static std::string told;
    told.clear();
    Console_Init();
    Console_SetFiles(nullptr, "");
    Console_SetSink([](void*, const char* text) { told += text; }, nullptr);
    const auto write = [&](const char* name, const Bytes& bytes) {
        g_Host.files.WriteAll((folder + name).c_str(), bytes.data(),
                              static_cast<uint32_t>(bytes.size()));
    };
    write("photo.jpg", MakeJPEG());
    write("moving.gif", {'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0, 0, 0});
    write("text.png", Bytes(40, 'x'));
    CBitmap32* photo = Picture_Load("photo.jpg");
    ASSERT_NE(photo, nullptr) << told;
    EXPECT_EQ(photo->width * 100 + photo->height, 3232);
    EXPECT_EQ(photo->data[99] >> 24, 255U);
    VxDelete(photo);
    EXPECT_EQ(told.find("Picture file"), std::string::npos) << told;
    EXPECT_EQ(Picture_Load("moving.gif"), nullptr);
    EXPECT_NE(told.find("Picture file moving.gif is a GIF, which is not read: save it as a PNG\n"),
              std::string::npos)
        << told;
    told.clear();
    EXPECT_EQ(Picture_Load("text.png"), nullptr);
    EXPECT_NE(told.find("can't be read: a PNG or JPEG is expected"), std::string::npos) << told;
    Console_SetSink(nullptr, nullptr);
    Console_Quit();
    for (const char* name : {"photo.jpg", "moving.gif", "text.png"})
        g_Host.files.Delete((folder + name).c_str());
    g_Host.files.RemoveFolder(folder.c_str());
    Stage_Reset();
}

// "BM" files of two rows of 24 bits, the bottom one first.
Bytes MakeBM(uint32_t width, uint32_t height)
{
    Bytes bytes(54, 0);
    const auto put = [&](size_t at, uint32_t word) { std::memcpy(&bytes[at], &word, 4); };
    bytes[0] = 'B';
    bytes[1] = 'M';
    put(10, 54);
    put(18, width);
    put(22, height);
    put(26, 1 | (24U << 16));
    const Bytes rows = {1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0};
    bytes.insert(bytes.end(), rows.begin(), rows.end());
    return bytes;
}

TEST_F(Bitmap, LoadersTellTheKindByTheFirstBytes)
{
    for (const Bytes& bytes : {MakeBM(2, 2), MakeJPEG(), MakePNG(PNG_COLOR_TYPE_RGB, 8, false)}) {
        const BitmapLoader loader(bytes.data(), static_cast<uint32_t>(bytes.size()));
        ASSERT_EQ(loader.GetFrameCount(), 1);
        EXPECT_EQ(loader.GetBitmap(1), nullptr);
        TBitmap* frame = loader.GetBitmap(0);
        EXPECT_EQ(frame->GetFormat(), 7);
        VxDelete(frame);
    }
    const Bytes bm = MakeBM(2, 2);
    CBitmap32* picture = CBitmap32::FromBytes(bm.data(), static_cast<uint32_t>(bm.size()));
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->data[0], Argb(255, 9, 8, 7));
    EXPECT_EQ(picture->data[3], Argb(255, 6, 5, 4));
    VxDelete(picture);
    for (const Bytes& bad : {MakeBM(2, 3), MakeBM(3, 2), MakeBM(0x40000000, 2), Bytes(60, 'B')})
        EXPECT_EQ(CBitmap32::FromBytes(bad.data(), static_cast<uint32_t>(bad.size())), nullptr);
}

TEST_F(Bitmap, BlocksCarryTheirSizeAndAreChecked)
{
    TBitmap bitmap, copy;
    bitmap.SetWidth(3);
    bitmap.SetHeight(2);
    int32_t pitch = 0;
    uint8_t* pixels = nullptr;
    EXPECT_FALSE(bitmap.Lock(1, &pitch, &pixels));
    ASSERT_TRUE(bitmap.Lock(0, &pitch, &pixels));
    EXPECT_EQ(pitch, 12);
    EXPECT_EQ(pixels - bitmap.Block(), 52);
    pixels[23] = 99;
    ASSERT_TRUE(copy.SetData(bitmap.Block(), bitmap.GetDataSize()));
    ASSERT_TRUE(copy.Lock(0, &pitch, &pixels));
    EXPECT_EQ(pixels[23], 99);
    Bytes block(copy.Block(), copy.Block() + copy.GetDataSize());
    for (const size_t at : {8, 16, 20}) {
        Bytes wrong = block;
        wrong[at + 2] = 1;
        EXPECT_FALSE(copy.SetData(wrong.data(), static_cast<uint32_t>(wrong.size()))) << at;
    }
    EXPECT_FALSE(copy.SetData(block.data(), static_cast<uint32_t>(block.size() - 1)));
    EXPECT_EQ(copy.GetWidth(), 3);  // a refused block leaves the bitmap
}

}  // namespace
