#include "tools/pack/Pages.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <random>

using namespace pack;

namespace {

struct Colour {
    uint8_t b, g, r, a;
    bool operator==(const Colour&) const = default;
};

Image Plain(int width, int height, Colour colour)
{
    Image image;
    image.width = width;
    image.height = height;
    for (int i = 0; i < width * height; ++i)
        image.bgra.insert(image.bgra.end(), {colour.b, colour.g, colour.r, colour.a});
    return image;
}

Colour At(const Image& image, int x, int y)
{
    const uint8_t* p = &image.bgra[static_cast<size_t>(y * image.width + x) * 4];
    return {p[0], p[1], p[2], p[3]};
}

void Put(Image& image, int x, int y, Colour colour)
{
    uint8_t* p = &image.bgra[static_cast<size_t>(y * image.width + x) * 4];
    p[0] = colour.b, p[1] = colour.g, p[2] = colour.r, p[3] = colour.a;
}

// A box of one colour in a clear picture.
Image Boxed(int width, int height, int left, int top, int boxWidth, int boxHeight, Colour colour)
{
    Image image = Plain(width, height, {0, 0, 0, 0});
    for (int y = top; y < top + boxHeight; ++y)
        for (int x = left; x < left + boxWidth; ++x) Put(image, x, y, colour);
    return image;
}

Image Decode(const std::vector<uint8_t>& file)
{
    png_image reader{};
    reader.version = PNG_IMAGE_VERSION;
    EXPECT_TRUE(png_image_begin_read_from_memory(&reader, file.data(), file.size()));
    reader.format = PNG_FORMAT_BGRA;
    Image image = Plain(static_cast<int>(reader.width), static_cast<int>(reader.height), {});
    EXPECT_TRUE(png_image_finish_read(&reader, nullptr, image.bgra.data(), 0, nullptr));
    return image;
}

constexpr Colour kRed{20, 30, 200, 255}, kGreen{40, 180, 60, 255};

Cache none{""};  // keeps nothing

}  // namespace

TEST(Pages, TrimsClearBordersAndRemembersWhereThePictureStood)
{
    PageFiller filler;
    std::string error;
    const int box = filler.Add(Boxed(104, 104, 15, 15, 74, 74, kRed), "");
    const int whole = filler.Add(Boxed(104, 104, 15, 15, 74, 74, kRed), "", Trim::nothing);
    const int clear = filler.Add(Plain(30, 20, {0, 0, 0, 0}), "");
    ASSERT_TRUE(filler.Fill(error)) << error;

    const archive::PageEntry& entry = filler.Entry(box);
    EXPECT_EQ(entry.width, 74);
    EXPECT_EQ(entry.height, 74);
    EXPECT_EQ(entry.targetX, 15);
    EXPECT_EQ(entry.targetY, 15);
    EXPECT_EQ(entry.targetWidth, 74);
    EXPECT_EQ(entry.targetHeight, 74);
    EXPECT_EQ(entry.sourceWidth, 104);
    EXPECT_EQ(entry.sourceHeight, 104);
    EXPECT_EQ(filler.Entry(whole).width, 104);
    EXPECT_EQ(filler.Entry(whole).targetX, 0);
    // A clear picture keeps a pixel, so that its entry stays drawable.
    EXPECT_EQ(filler.Entry(clear).width, 1);
    EXPECT_EQ(filler.Entry(clear).sourceHeight, 20);

    const Image page = Decode(filler.Encode(none)[0].png);
    EXPECT_EQ(page.width, kPageSize);
    EXPECT_EQ(At(page, entry.x, entry.y), kRed);
    EXPECT_EQ(At(page, entry.x + 73, entry.y + 73), kRed);
}

TEST(Pages, BleedsSoThatFilteringShowsNoSeamAndNoDarkFringe)
{
    PageFiller filler;
    std::string error;
    Image tile = Plain(16, 16, kGreen);
    for (int y = 0; y < 16; ++y) Put(tile, 15, y, kRed);
    const int full = filler.Add(tile, "", Trim::nothing);
    const int loose = filler.Add(Boxed(40, 40, 10, 10, 9, 9, kRed), "");
    // One side at the border of its picture, the others trimmed.
    const int edge = filler.Add(Boxed(40, 40, 0, 10, 12, 7, kGreen), "");
    // A hole: the clear pixels inside must carry the colour of the shape too.
    Image ring = Boxed(20, 20, 2, 2, 16, 16, kRed);
    for (int y = 8; y < 12; ++y)
        for (int x = 8; x < 12; ++x) Put(ring, x, y, {0, 0, 0, 0});
    const int hole = filler.Add(ring, "");
    ASSERT_TRUE(filler.Fill(error)) << error;
    const Image page = Decode(filler.Encode(none)[0].png);

    const archive::PageEntry& a = filler.Entry(full);
    for (int i = 1; i <= kPageBleed; ++i) {
        EXPECT_EQ(At(page, a.x - i, a.y + 5), kGreen) << "left of a tile, " << i;
        EXPECT_EQ(At(page, a.x + 15 + i, a.y + 5), kRed) << "right of a tile, " << i;
        EXPECT_EQ(At(page, a.x - i, a.y - i), kGreen) << "corner of a tile, " << i;
    }
    const archive::PageEntry& b = filler.Entry(loose);
    for (int i = 1; i <= kPageBleed; ++i) {
        EXPECT_EQ(At(page, b.x - i, b.y), (Colour{kRed.b, kRed.g, kRed.r, 0}));
        EXPECT_EQ(At(page, b.x + 8 + i, b.y + 8 + i), (Colour{kRed.b, kRed.g, kRed.r, 0}));
    }
    const archive::PageEntry& c = filler.Entry(edge);
    EXPECT_EQ(At(page, c.x - 1, c.y + 3), kGreen);
    EXPECT_EQ(At(page, c.x + 12, c.y + 3).a, 0);
    EXPECT_EQ(At(page, c.x - 1, c.y - 1).a, 0);
    const archive::PageEntry& d = filler.Entry(hole);
    EXPECT_EQ(At(page, d.x + 7, d.y + 7), (Colour{kRed.b, kRed.g, kRed.r, 0}));
}

TEST(Pages, PlacesNeverOverlapAndFillThePages)
{
    std::mt19937 random(7);
    PageFiller filler;
    std::string error;
    std::vector<std::pair<int, int>> sizes;
    for (int i = 0; i < 500; ++i) {
        const int width = 8 + static_cast<int>(random() % 120);
        const int height = 8 + static_cast<int>(random() % 120);
        const auto shade = static_cast<uint8_t>(i % 251);
        filler.Add(Plain(width, height, {shade, static_cast<uint8_t>(i / 251), 9, 255}), "");
        sizes.emplace_back(width, height);
    }
    ASSERT_TRUE(filler.Fill(error)) << error;

    std::vector<std::vector<bool>> taken(static_cast<size_t>(filler.PageCount()),
                                         std::vector<bool>(kPageSize * kPageSize));
    for (int i = 0; i < 500; ++i) {
        const archive::PageEntry& entry = filler.Entry(i);
        ASSERT_GE(entry.page, 0);
        ASSERT_LT(entry.page, filler.PageCount());
        ASSERT_EQ(entry.width, sizes[static_cast<size_t>(i)].first);
        ASSERT_GE(entry.x, kPageBleed);
        ASSERT_GE(entry.y, kPageBleed);
        ASSERT_LE(entry.x + entry.width + kPageBleed, kPageSize);
        ASSERT_LE(entry.y + entry.height + kPageBleed, kPageSize);
        for (int y = entry.y - kPageBleed; y < entry.y + entry.height + kPageBleed; ++y) {
            for (int x = entry.x - kPageBleed; x < entry.x + entry.width + kPageBleed; ++x) {
                auto pixel = taken[static_cast<size_t>(entry.page)].begin() + (y * kPageSize + x);
                ASSERT_FALSE(*pixel) << "picture " << i;
                *pixel = true;
            }
        }
    }
    ASSERT_GT(filler.PageCount(), 1);
    for (size_t page = 0; page + 1 < taken.size(); ++page)
        EXPECT_GE(std::count(taken[page].begin(), taken[page].end(), true),
                  0.85 * kPageSize * kPageSize)
            << "page " << page;
    EXPECT_GT(filler.Usage(), 0.5);
    EXPECT_LE(filler.Usage(), 1.0);
}

TEST(Pages, KeepsAGroupOnOnePageAndSplitsOneThatIsTooLarge)
{
    PageFiller filler;
    std::string error;
    std::vector<int> small, large;
    for (int i = 0; i < 12; ++i) {
        const auto shade = static_cast<uint8_t>(i);
        filler.Add(Plain(300, 300, {shade, 1, 1, 255}), "");
        small.push_back(filler.Add(Plain(200, 150, {shade, 2, 2, 255}), "walk"));
        large.push_back(filler.Add(Plain(480, 480, {shade, 3, 3, 255}), "screens"));
    }
    ASSERT_TRUE(filler.Fill(error)) << error;
    for (int index : small) EXPECT_EQ(filler.Entry(index).page, filler.Entry(small[0]).page);
    for (int index : large) EXPECT_GE(filler.Entry(index).page, 0);

    PageFiller tooWide;
    tooWide.Add(Plain(1100, 20, kRed), "banner");
    EXPECT_FALSE(tooWide.Fill(error));
    EXPECT_NE(error.find("\"banner\" is 1100 by 20 pixels: expected at most 1020"),
              std::string::npos)
        << error;
}

TEST(Pages, EqualPicturesShareAPlaceWithTheirOwnOffsets)
{
    PageFiller filler;
    std::string error;
    const int a = filler.Add(Boxed(60, 60, 10, 12, 20, 20, kRed), "x");
    const int b = filler.Add(Boxed(60, 60, 30, 5, 20, 20, kRed), "y");
    const int other = filler.Add(Boxed(60, 60, 30, 5, 20, 20, kGreen), "y");
    // The same pixels, but reaching the border of their picture: another bled edge.
    const int border = filler.Add(Plain(20, 20, kRed), "");
    ASSERT_TRUE(filler.Fill(error)) << error;
    EXPECT_EQ(filler.Entry(a).x, filler.Entry(b).x);
    EXPECT_EQ(filler.Entry(a).y, filler.Entry(b).y);
    EXPECT_EQ(filler.Entry(b).targetX, 30);
    EXPECT_EQ(filler.Entry(b).targetY, 5);
    for (int index : {other, border})
        EXPECT_FALSE(filler.Entry(index).x == filler.Entry(a).x &&
                     filler.Entry(index).y == filler.Entry(a).y);
}

TEST(Pages, TheSamePicturesGiveTheSameBytes)
{
    const auto pages = [] {
        PageFiller filler;
        std::string error;
        for (int i = 0; i < 60; ++i)
            filler.Add(
                Boxed(90, 70, i % 7, i % 5, 40 + i, 30, {static_cast<uint8_t>(i), 5, 6, 200}),
                i % 2 ? "even" : "");
        EXPECT_TRUE(filler.Fill(error));
        return filler.Encode(none);
    };
    const auto first = pages(), second = pages();
    ASSERT_EQ(first.size(), second.size());
    for (size_t i = 0; i < first.size(); ++i) EXPECT_EQ(first[i].png, second[i].png);
}

TEST(Pages, MasksAndBoxes)
{
    Image image = Plain(10, 2, {0, 0, 0, 0});
    Put(image, 0, 0, kRed);
    Put(image, 9, 0, {1, 1, 1, 1});
    Put(image, 7, 1, kRed);
    EXPECT_EQ(Pages_Mask(image), (std::vector<uint8_t>{0x80, 0x40, 0x01, 0x00}));
    EXPECT_EQ(Pages_Mask(10, 3, 7, 1, 40, 1), (std::vector<uint8_t>{0, 0, 0x01, 0xC0, 0, 0}));

    int left = 0, top = 0, right = 0, bottom = 0;
    EXPECT_TRUE(Pages_Box({Boxed(30, 30, 4, 9, 3, 3, kRed), Boxed(30, 30, 20, 2, 5, 6, kRed)}, left,
                          top, right, bottom));
    EXPECT_EQ((std::vector<int>{left, top, right, bottom}), (std::vector<int>{4, 2, 24, 11}));
    EXPECT_FALSE(Pages_Box({Plain(5, 5, {0, 0, 0, 0})}, left, top, right, bottom));
    EXPECT_EQ((std::vector<int>{left, top, right, bottom}), (std::vector<int>{0, 0, 0, 0}));
}
