// What a running level costs, and what a run leaves behind.

#include <gtest/gtest.h>

#include "Files/Graphics/Batch.h"
#include "Names.h"
#include "Platform/MemoryManager.h"
#include "tests/support/Stage.h"

using namespace names;

namespace {

TEST(Idle, AFrameOfAnIdleLevelAllocatesNothing)
{
    for (const char* level : {"room_level1", "room_level8"}) {
        Stage stage;
        stage.room(level).frames(40);  // every page and mask has been needed once
        const uint64_t before = MemoryManager::GetStats().calls;
        stage.frames(200);
        EXPECT_EQ(MemoryManager::GetStats().calls, before) << level;
    }
}

TEST(Idle, ALevelIsAHandfulOfDrawCalls)
{
    Stage stage;
    stage.room("room_level1").frames(5);
    EXPECT_GT(g_GraphicsStats.drawCalls, 0);
    EXPECT_LE(g_GraphicsStats.drawCalls, 12);
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
