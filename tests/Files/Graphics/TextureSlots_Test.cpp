// Pages and pictures: what a slot knows before its pixels are read, and what happens
// to those that can't be.

#include "Files/Base/Console.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Run/Run_State.h"
#include "Host/Host_Stage.h"
#include "tests/Files/Graphics/support_Drawing.h"

namespace {

using Bytes = std::vector<uint8_t>;

void PutWord(Bytes* bytes, uint32_t word)
{
    for (int i = 0; i < 4; ++i) bytes->push_back(static_cast<uint8_t>(word >> (8 * i)));
}

Bytes RawPage(uint32_t width, uint32_t height, uint32_t kind, const Bytes& pixels)
{
    Bytes bytes;
    for (const uint32_t word : {0x20574152U, width, height, kind}) PutWord(&bytes, word);
    bytes.insert(bytes.end(), pixels.begin(), pixels.end());
    return bytes;
}

std::vector<std::string> s_lines;

class TextureTest : public DrawingTest {
protected:
    void SetUp() override
    {
        DrawingTest::SetUp();
        s_lines.clear();
        Console_SetSink([](void*, const char* text) { s_lines.emplace_back(text); }, nullptr);
    }
    uint32_t Shown(int32_t slot, int32_t x, int32_t y)
    {
        View_SetWindow();
        View_Clear(CLEAR_COLOUR, 0xFF000000U);
        Quad_Texture(slot, 0, 0);
        return BackBuffer(x, y);
    }
};

}  // namespace

TEST_F(TextureTest, RawPagesOfBothKinds)
{
    // Red, green, blue, alpha in memory.
    const Bytes full = RawPage(2, 1, 0, {255, 0, 0, 255, 0, 0, 255, 255});
    const int32_t first = Texture_CreateFromFile(full.data(), static_cast<uint32_t>(full.size()));
    EXPECT_EQ(Texture_Get(first)->width, 2);
    EXPECT_EQ(Shown(first, 0, 0), kRed);
    EXPECT_EQ(Shown(first, 1, 0), kBlue);
    // A nibble each, red on top.
    const Bytes small = RawPage(1, 2, 1, {0x0F, 0xF0, 0x0F, 0x0F});
    const int32_t second =
        Texture_CreateFromFile(small.data(), static_cast<uint32_t>(small.size()));
    EXPECT_EQ(Shown(second, 0, 0), kRed);
    EXPECT_EQ(Shown(second, 0, 1), kGreen);
    EXPECT_FLOAT_EQ(Texture_Get(second)->invHeight, 0.5F);
}

TEST_F(TextureTest, WhatCannotBeReadHasASlotAndDrawsNothing)
{
    Bytes pages[] = {RawPage(2, 2, 0, Bytes(15, 255)),
                     RawPage(2, 2, 3, Bytes(16, 255)),
                     RawPage(0, 2, 0, {}),
                     RawPage(0x8000, 0x8000, 0, Bytes(16, 0)),
                     Bytes{'n', 'o', 't', ' ', 'a', ' ', 'p', 'i', 'c', 't', 'u', 'r', 'e'},
                     Bytes{}};
    for (const Bytes& page : pages) {
        // A copy of the exact size, so that a read past it is seen.
        uint8_t* exact = new uint8_t[page.size()];
        std::copy(page.begin(), page.end(), exact);
        const int32_t slot = Texture_CreateFromFile(exact, static_cast<uint32_t>(page.size()));
        ASSERT_TRUE(Texture_Exists(slot));
        EXPECT_EQ(Texture_Get(slot)->texture, nullptr);
        EXPECT_FLOAT_EQ(Texture_Get(slot)->invWidth, 1.0F);
        EXPECT_FALSE(Quad_Texture(slot, 0, 0));
        delete[] exact;
    }
}

TEST_F(TextureTest, APngIsReadAtItsFirstBindAndABrokenOneDrawsNothing)
{
    const std::string path = testing::TempDir() + "texture_slots_page.png";
    Bytes pixels(64 * 64 * 4);
    for (size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<uint8_t>(i % 4 == 3 ? 255 : (i * 7919) >> 8);
    pixels[0] = 255;
    pixels[1] = pixels[2] = 0;
    ASSERT_TRUE(WritePNG(path.c_str(), pixels.data(), 64, 64));
    uint32_t size = 0;
    uint8_t* png = g_Host.files.ReadAll(path.c_str(), &size);
    ASSERT_NE(png, nullptr);
    const int32_t slot = Texture_CreateFromFile(png, size);
    EXPECT_EQ(Texture_Get(slot)->width, 64);
    EXPECT_EQ(Texture_Get(slot)->texture->deviceTexture, nullptr);
    EXPECT_EQ(Shown(slot, 0, 0), kRed);
    EXPECT_NE(Texture_Get(slot)->texture->deviceTexture, nullptr);
    // Its header is whole and its pixels are not.
    const int32_t broken = Texture_CreateFromFile(png, size / 2);
    EXPECT_EQ(Texture_Get(broken)->width, 64);
    Draw_SetColour(0);
    EXPECT_EQ(Shown(broken, 0, 0), 0xFF000000U);
    EXPECT_FALSE(Quad_Texture(broken, 0, 0));
    MemoryManager::Free(png);
    Texture_Free(slot);
    g_Host.files.Delete(path.c_str());
}

TEST_F(TextureTest, SlotsAreUsedAgainAndCreatedSizesAreRoundedUp)
{
    const int32_t first = Page(5, 3, kRed);
    EXPECT_EQ(Texture_Get(first)->texture->width, 8);
    EXPECT_EQ(Texture_Get(first)->texture->height, 4);
    EXPECT_FLOAT_EQ(Texture_Get(first)->invWidth, 1.0F / 8);
    EXPECT_EQ(Shown(first, 4, 2), kRed);
    EXPECT_EQ(Shown(first, 5, 2), 0xFF000000U);
    const int32_t target = Texture_CreateEmpty(5, 3, true, false, 0);
    EXPECT_EQ(Texture_Get(target)->texture->width, 5);
    Texture_Free(first);
    Texture_Free(first);
    EXPECT_EQ(TextureSlot_Find(), first);
    EXPECT_EQ(Texture_CreateEmpty(0, 5, true, false, 0), -1);
    EXPECT_EQ(Texture_CreateEmpty(5, 20000, true, false, 0), -1);
    const uint8_t alpha[4] = {0, 128, 255, 64};
    const int32_t font = Texture_CreateAlpha(2, 2, alpha);
    uint32_t read[4];
    ASSERT_TRUE(Texture_ReadPixels(font, {0, 0, 2, 2}, read));
    EXPECT_EQ(read[1], 0x80FFFFFFU);
}

TEST_F(TextureTest, OnDemandTexturesComeBackAfterAFlush)
{
    g_TexturesOnDemand = true;
    const int32_t slot = Page(5, 3, kGreen);
    EXPECT_EQ(Texture_Get(slot)->texture->width, 5);  // exact sizes in this mode
    EXPECT_EQ(Shown(slot, 4, 2), kGreen);
    Texture_ReleaseAll();
    EXPECT_EQ(Texture_Get(slot)->texture->deviceTexture, nullptr);
    EXPECT_EQ(Shown(slot, 4, 2), kGreen);
}

// Every kind of source is made smaller on the device, drawn in its full size, and read
// as it was stored.
TEST_F(TextureTest, TheGlobalScaleMakesDeviceTexturesSmaller)
{
    g_TexturesOnDemand = true;
    g_TextureGlobalScale = 2;
    Bytes pixels;
    for (int i = 0; i < 16; ++i)  // columns of red and of blue
        for (const int value : {i % 2 ? 0 : 255, 0, i % 2 ? 255 : 0, 255})
            pixels.push_back(static_cast<uint8_t>(value));
    const Bytes raw = RawPage(4, 4, 0, pixels);
    const int32_t encoded = Texture_CreateFromFile(raw.data(), static_cast<uint32_t>(raw.size()));
    std::vector<uint32_t> words;
    for (int i = 0; i < 16; ++i) words.push_back(i % 2 ? kBlue : kRed);
    const int32_t kept = Texture_CreateFromPixels(4, 4, words.data(), 64);
    for (const int32_t slot : {encoded, kept}) {
        EXPECT_EQ(Shown(slot, 0, 0), 0xFF7F007FU) << "the mean of its four";
        EXPECT_EQ(Shown(slot, 3, 3), 0xFF7F007FU);
        EXPECT_EQ(Shown(slot, 4, 3), 0xFF000000U);
        uint32_t pixel = 0;
        ASSERT_TRUE(Texture_ReadPixels(slot, {1, 2, 2, 3}, &pixel));
        EXPECT_EQ(pixel, kBlue);
    }
    ASSERT_TRUE(Texture_Update(kept, {0, 0, 4, 4}, std::vector<uint32_t>(16, kGreen).data()));
    EXPECT_EQ(Shown(kept, 3, 3), kGreen);
    Draw_SetColour(0);
}

TEST_F(TextureTest, CompressionThatTheDeviceLacksIsToldAndLeftOut)
{
    Graphics_Stop();
    Console_SetFiles(nullptr, "");
    g_Switches.compressTextures = true;
    ASSERT_TRUE(Graphics_Start());
    g_Switches.compressTextures = false;
    EXPECT_FALSE(g_CompressTextures);
    EXPECT_EQ(std::count(s_lines.begin(), s_lines.end(),
                         "Textures are not compressed: the plain format is used\n"),
              1);
    Console_Init();
}

TEST_F(TextureTest, EntriesTakeTheSlotsOfTheirPages)
{
    // Two chunks side by side: pages, then entries; offsets count from the start.
    const Bytes page = RawPage(1, 1, 0, {1, 2, 3, 255});
    Bytes archive;
    PutWord(&archive, 2);
    PutWord(&archive, 12);
    PutWord(&archive, 20);
    for (const uint32_t data : {28U, 0U}) {
        PutWord(&archive, 0);
        PutWord(&archive, data);
    }
    archive.insert(archive.end(), page.begin(), page.end());
    const auto pagesSize = static_cast<uint32_t>(archive.size());
    PutWord(&archive, 3);
    for (uint32_t i = 0; i < 3; ++i) PutWord(&archive, pagesSize + 16 + i * 22);
    for (const int16_t texture : {int16_t{1}, int16_t{-1}, int16_t{2}}) {
        ArchivePageEntry entry = Entry(texture, 1);
        const auto* bytes = reinterpret_cast<const uint8_t*>(&entry);
        archive.insert(archive.end(), bytes, bytes + sizeof entry);
    }
    Page(1, 1, kRed);  // slots and pages are not the same numbers
    ASSERT_TRUE(Textures_Load(archive.data(), pagesSize, archive.data(), archive.data() + pagesSize,
                              static_cast<uint32_t>(archive.size()) - pagesSize));
    const auto* entries =
        reinterpret_cast<const ArchivePageEntry*>(archive.data() + pagesSize + 16);
    EXPECT_EQ(entries[0].texture, 2);
    EXPECT_EQ(entries[1].texture, -1);
    EXPECT_EQ(entries[2].texture, 2);
    EXPECT_EQ(std::count(s_lines.begin(), s_lines.end(), "what!!!!\n"), 2);
    EXPECT_NE(Texture_Get(1)->texture, nullptr);
    EXPECT_EQ(Texture_Get(2)->texture, nullptr);  // a page without data
}
