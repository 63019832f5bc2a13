// The archive from a content folder of its own: the same bytes on each run, fonts and
// sounds that hold what they say.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "Files/Base/Archive_Writer.h"
#include "tools/pack/Build.h"
#include "tools/pack/Fonts.h"
#include "tools/pack/Sounds.h"

using namespace pack;

namespace {

// A folder with a small game, gone at the end of the test.
class Folder {
public:
    Folder()
    {
        char name[] = "/tmp/pack_test_XXXXXX";
        path_ = mkdtemp(name);
        std::filesystem::create_directories(path_ + "/art");
        std::filesystem::create_directories(path_ + "/levels");
        Put("art/pictures.txt", "# none\n");
        Put("game.txt", "name Small\nwindow 854x480\nversion 1.2.3.4\nconstant \"@@A\" \"1\"\n");
        Put("sprites.txt",
            "sBox size=52x65 frames=3 box=0,13,51,64\nsScreen size=854x480 mask=none\n");
        Put("backgrounds.txt", "bGround size=416x208\n");
        Put("sounds.txt", "xSong file=xSong.ogg\nxPing tones=0:0.1:440:0.5\n");
        Put("fonts.txt", "fText face=F size=12 file=truetype/open-sans/OpenSans-Bold.ttf\n");
        Put("scripts.txt", "scr_a\nscr_b later\n");
        Put("objects.txt", "oA sprite=sBox\n  Step\n  Create later\n");
        Put("rooms.txt", "room_a\n  oA 52,104\nroom_b level=none\n");
        Put("variables.txt", "global g\ninstance i\nbuiltin x\nroom room\n");
        Put("functions.txt", "place_free direct\nfloor=floor_real : real (real number)\n");
        Put("tilesets.txt", "\n");
        Put("scenery.txt", "\n");
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    void Put(const std::string& file, const std::string& text)
    {
        std::ofstream(path_ + "/" + file) << text;
    }
    const std::string& Path() const { return path_; }

    Built Build() const
    {
        Tables tables = Tables_Read(path_);
        return Build_Archive(path_, tables, Code_Plan(tables));
    }

private:
    std::string path_;
};

}  // namespace

TEST(PackBuild, SameContentGivesTheSameBytes)
{
    Folder folder;
    Built built = folder.Build();
    std::vector<uint8_t> bytes = archive::Write(built.content);
    EXPECT_EQ(bytes, archive::Write(folder.Build().content));
    archive::Content read;
    std::string error;
    ASSERT_TRUE(archive::Read(bytes, &read, &error)) << error;
    EXPECT_EQ(read.general.build, 4U);
    EXPECT_EQ(read.sprites[0].frames.size(), 3U);
    EXPECT_EQ(read.objects[0].events[3][0].codeId, 1) << "behind the one script that has code";
    EXPECT_EQ(read.objects[0].events[0][0].codeId, -1);
    EXPECT_EQ(read.scripts[1].codeId, -1);
}

// What the cache gives back is what would be rendered; a changed drawing, a changed row
// and a damaged entry are rendered anew, and what is no longer used is forgotten.
TEST(PackBuild, TheCacheChangesNothing)
{
    Folder folder;
    const std::string cache = folder.Path() + "/cache";
    const auto draw = [&](const std::string& colour) {
        folder.Put("art/box.svg",
                   "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'><rect x='1' y='1' "
                   "width='7' height='7' fill='" +
                       colour + "'/></svg>");
    };
    const auto bytes = [&](const std::string& kept) {
        const Tables tables = Tables_Read(folder.Path());
        return archive::Write(
            Build_Archive(folder.Path(), tables, Code_Plan(tables), kept).content);
    };
    const auto entries = [&] {
        return std::distance(std::filesystem::directory_iterator(cache), {});
    };
    folder.Put("art/pictures.txt", "sScreen svg=box.svg\n");
    draw("#ff0000");
    const std::vector<uint8_t> red = bytes("");
    EXPECT_EQ(bytes(cache), red);
    const auto held = entries();
    EXPECT_GE(held, 2) << "a picture and a page";
    EXPECT_EQ(bytes(cache), red);
    for (const auto& entry : std::filesystem::directory_iterator(cache)) {
        std::filesystem::resize_file(entry.path(), std::filesystem::file_size(entry.path()) / 2);
    }
    EXPECT_EQ(bytes(cache), red) << "damaged entries";
    draw("#0000ff");
    EXPECT_EQ(bytes(cache), bytes(""));
    EXPECT_NE(bytes(cache), red);
    EXPECT_EQ(entries(), held) << "the red one is forgotten";
    folder.Put("art/pictures.txt", "sScreen svg=box.svg view=0,0,4,4\n");
    EXPECT_EQ(bytes(cache), bytes(""));
}

TEST(PackBuild, PlaceholdersAreTheWholePictureAndAreListed)
{
    Folder folder;
    Built built = folder.Build();
    EXPECT_EQ(built.placeholders, (std::vector<std::string>{"sBox", "sScreen", "bGround"}));
    EXPECT_EQ(built.emptyLevels, std::vector<std::string>{"room_b"});
    const archive::PageEntry& box = built.content.sprites[0].frames[0];
    EXPECT_EQ(box.sourceWidth, 52);
    EXPECT_EQ(box.sourceHeight, 65);
    EXPECT_EQ(std::memcmp(&box, &built.content.sprites[0].frames[2], sizeof box), 0)
        << "equal frames share their place";
    const archive::PageEntry& screen = built.content.sprites[1].frames[0];
    EXPECT_EQ(screen.sourceWidth, 854);
    EXPECT_LT(screen.width, 300) << "a large placeholder fills no page";
    ASSERT_EQ(built.content.sprites[0].masks.size(), 1U);
    const std::vector<uint8_t>& mask = built.content.sprites[0].masks[0];
    ASSERT_EQ(mask.size(), 65U * 7U);
    EXPECT_EQ(mask[12 * 7], 0);
    EXPECT_EQ(mask[13 * 7], 0xFF);
    EXPECT_EQ(mask[13 * 7 + 6], 0xF0) << "52 pixels end in the middle of a byte";
}

TEST(PackBuild, AFontThatIsNotThereIsNamed)
{
    Folder folder;
    folder.Put("fonts.txt", "\nfText face=F size=12 file=truetype/none.ttf\n");
    try {
        folder.Build();
        FAIL() << "a font without a face";
    } catch (const ContentError& error) {
        EXPECT_EQ(std::string(error.what()).find("fonts.txt:2: expected a face at "), 0U);
    }
}

TEST(PackFonts, LettersStandInBoxesOfOneHeight)
{
    FontRow row;
    row.file = "truetype/open-sans/OpenSans-Bold.ttf";
    archive::Font font;
    font.size = 24;
    font.first = 32;
    font.last = 255;
    Image picture;
    Fonts_Bake(row, font, picture);
    int inked = 0;
    bool accent = false;
    for (size_t i = 0; i < font.glyphs.size(); ++i) {
        const archive::Glyph& glyph = font.glyphs[i];
        if (i) {
            EXPECT_LT(font.glyphs[i - 1].character, glyph.character);
        }
        EXPECT_EQ(glyph.height, font.glyphs[0].height);
        EXPECT_LE(glyph.x + glyph.width, picture.width);
        EXPECT_LE(glyph.y + glyph.height, picture.height);
        accent = accent || glyph.character == 0xE3;
        for (int y = glyph.y; y < glyph.y + glyph.height; ++y) {
            size_t at = (static_cast<size_t>(y) * picture.width + glyph.x) * 4;
            for (int x = 0; x < glyph.width; ++x) inked += picture.bgra[at + 4 * x + 3] > 127;
        }
    }
    EXPECT_TRUE(accent) << "the texts have a tilde";
    EXPECT_GT(font.glyphs.size(), 180U);
    EXPECT_GT(inked, 10000);
    // 24 points at 96 dots an inch are 32 pixels.
    EXPECT_GE(font.glyphs[0].height, 32);
    EXPECT_LE(font.glyphs[0].height, 48);
    EXPECT_GT(font.glyphs[0].shift, 0) << "a blank moves the pen";
}

TEST(PackSounds, WavesAreHeardAndEndInSilence)
{
    std::vector<uint8_t> wave = Sounds_Wave({{0, 0.5, 440, 880, 0.8}, {0.25, 0.5, 660, 660, 0.8}});
    uint32_t bytes = 0;
    std::memcpy(&bytes, &wave[40], 4);
    ASSERT_EQ(wave.size(), 44U + bytes);
    EXPECT_EQ(bytes, 2U * static_cast<uint32_t>(0.25 * kSampleRate + 0.5 * kSampleRate));
    auto sample = [&](size_t i) {
        int16_t value = 0;
        std::memcpy(&value, &wave[44 + 2 * i], 2);
        return std::abs(static_cast<int>(value));
    };
    int loudest = 0;
    for (size_t i = 0; i < bytes / 2; ++i) loudest = std::max(loudest, sample(i));
    EXPECT_GT(loudest, 12000);
    EXPECT_LT(sample(0), 500);
    EXPECT_LT(sample(bytes / 2 - 1), 200);
}
