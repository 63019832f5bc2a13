// What a running level costs, and what a run leaves behind.

#include <gtest/gtest.h>

#include <algorithm>

#include "Files/Base/Archive_Writer.h"
#include "Files/Graphics/Batch.h"
#include "Names.h"
#include "Platform/MemoryManager.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

TEST(Idle, AFrameOfAnIdleLevelAllocatesNothing)
{
    for (const char* mode : {"onePlayer", "twoPlayersOne"})
        for (const char* level : {"room_level1", "room_level8"}) {
            Stage stage;
            playerMode = mode;
            stage.room(level).frames(40);  // every page and mask has been needed once
            const uint64_t before = MemoryManager::GetStats().calls;
            stage.frames(200);
            EXPECT_EQ(MemoryManager::GetStats().calls, before) << level << ' ' << mode;
        }
}

TEST(Idle, AFrameOfTheScreensBeforeItAllocatesNothing)
{
    const struct {
        const char* room;
        int seen;  // frames after which each picture was shown once
    } screens[] = {{"room_intro", 112}, {"room_idioma", 4}, {"room_titulo", 260}};
    for (const auto& screen : screens) {
        Stage stage;
        stage.room(screen.room).frames(screen.seen);
        const uint64_t before = MemoryManager::GetStats().calls;
        stage.frames(60);
        EXPECT_EQ(MemoryManager::GetStats().calls, before) << screen.room;
    }
}

TEST(Idle, AFrameOfAMenuThatIsUpAllocatesNothing)
{
    const struct {
        const char* room;
        int seen;
        std::initializer_list<int> keys;
        Object up;
    } menus[] = {{"room_level1", 3, {'\r'}, oMenuPauseNovo},
                 {"room_titulo", 260, {40, '\r'}, oMenuOptionsNovo},
                 {"room_titulo", 260, {38, '\r'}, oMenuSair},
                 {"room_personagem", 3, {'\r'}, oMenuGameMode}};
    for (const auto& menu_ : menus) {
        Stage stage;
        stage.room(menu_.room).frames(menu_.seen);
        for (const int key : menu_.keys) stage.tap(key).frames(1);
        stage.frames(90);
        ASSERT_EQ(stage.count(menu_.up), 1);
        const uint64_t before = MemoryManager::GetStats().calls;
        stage.frames(60);
        EXPECT_EQ(MemoryManager::GetStats().calls, before) << menu_.room << ' ' << menu_.up.index;
    }
}

TEST(Idle, ALevelIsAHandfulOfDrawCalls)
{
    Stage stage;
    stage.room("room_level1").frames(5);
    EXPECT_GT(g_GraphicsStats.drawCalls, 0);
    EXPECT_LE(g_GraphicsStats.drawCalls, 12);
}

// What stands between the start and the first picture must not grow with the archive.
TEST(Idle, TheFirstFrameDecodesOnlyThePagesThatItShows)
{
    archive::Content content;
    std::string fault;
    ASSERT_TRUE(archive::Read(Stage::game_archive(), &content, &fault)) << fault;
    const size_t pages = content.pages.size();
    int32_t decodes = 0;
    for (const size_t more : {0, 32}) {
        content.pages.resize(pages + more, content.pages[0]);
        Stage::Options options;
        options.archiveBytes = archive::Write(content);
        Stage stage(options);
        EXPECT_EQ(Texture_Decodes(), 0);
        stage.frames(1);
        EXPECT_GE(Texture_Count(), static_cast<int32_t>(pages + more));
        EXPECT_LT(Texture_Decodes(), static_cast<int32_t>(pages));
        if (more) {
            EXPECT_EQ(Texture_Decodes(), decodes);
        }
        decodes = Texture_Decodes();
    }
}

// The pages are few, and well filled by what is drawn from them.
TEST(Idle, ThePagesAreFewAndFull)
{
    archive::Content content;
    std::string fault;
    ASSERT_TRUE(archive::Read(Stage::game_archive(), &content, &fault)) << fault;
    ASSERT_FALSE(content.pages.empty());
    EXPECT_LE(content.pages.size(), 39U);
    constexpr size_t side = 1024;
    std::vector<bool> used(content.pages.size() * side * side);
    const auto use = [&](const archive::PageEntry& entry) {
        for (size_t y = entry.y; y < size_t{entry.y} + entry.height; ++y)
            for (size_t x = entry.x; x < size_t{entry.x} + entry.width; ++x)
                used[(static_cast<size_t>(entry.page) * side + y) * side + x] = true;
    };
    for (const archive::Sprite& sprite : content.sprites)
        for (const archive::PageEntry& frame : sprite.frames) use(frame);
    for (const archive::Background& background : content.backgrounds)
        if (background.hasEntry) use(background.entry);
    for (const archive::Font& font : content.fonts) use(font.entry);
    const auto area = static_cast<double>(std::count(used.begin(), used.end(), true));
    EXPECT_GE(area / static_cast<double>(used.size()), 0.8) << content.pages.size() << " pages";
}

// Nothing of a run shows whether a thread decodes pages ahead of it, and none outlives it.
TEST(Idle, WithAThreadForItsPagesARunIsTheSame)
{
    const auto play = [](Stage& stage) {
        stage.room("room_level1").frames(10).hold('D').frames(20).release('D');
        return stage.state_hash();
    };
    uint64_t state = 0;
    std::vector<uint32_t> pixels;
    {
        Stage alone;
        state = play(alone);
        pixels = alone.picture().pixels;
    }
    const size_t live = MemoryManager::GetStats().blocks;
    for (int run = 0; run < 3; ++run) {
        {
            Stage::Options options;
            options.threads = true;
            Stage stage(options);
            if (run > 0) {  // the first one ends while its thread is at work
                EXPECT_EQ(play(stage), state);
                EXPECT_EQ(stage.picture().pixels, pixels);
            }
        }
        EXPECT_EQ(MemoryManager::GetStats().blocks, live) << run;
    }
}

TEST(Idle, ARunLeavesNoMemoryBehindAndTheNextOneIsTheSame)
{
    size_t live = 0;
    uint64_t state = 0;
    for (int run = 0; run < 4; ++run) {
        {
            Stage stage;
            stage.room("room_level1").frames(19).hold('A').frames(45).release('A').frames(5);
            if (run > 0) {
                EXPECT_EQ(stage.state_hash(), state);
            }
            state = stage.state_hash();
        }
        if (run > 1) {
            EXPECT_EQ(MemoryManager::GetStats().blocks, live);
        }
        live = MemoryManager::GetStats().blocks;
    }
}

}  // namespace
