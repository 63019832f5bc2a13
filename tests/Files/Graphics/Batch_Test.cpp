// What goes to the device together, and under which states.

#include "tests/Files/Graphics/support_Drawing.h"

namespace {

class BatchTest : public DrawingTest, public ::testing::WithParamInterface<int32_t> {
protected:
    void SetUp() override
    {
        DrawingTest::SetUp();
        Batch_SetMethod(GetParam());
        page_ = Page(8, 8, kRed);
        entry_ = Entry(page_, 8);
    }
    void AddVertices(int32_t primitive, int32_t count)
    {
        auto* v = static_cast<VertexTextured*>(
            Batch_Alloc(primitive, Texture_White(), kStrideTextured, count));
        ASSERT_NE(v, nullptr);
        for (int32_t i = 0; i < count; ++i) v[i] = {0, 0, 0, kRed, 0, 0};
    }
    int32_t page_ = -1;
    ArchivePageEntry entry_{};
};

}  // namespace

TEST_P(BatchTest, SpritesOfOnePageAreOneCallAndAnotherPageBreaksIt)
{
    ArchivePageEntry other = Entry(Page(8, 8, kBlue), 8);
    Quad_Entry(&entry_, 0, 0);
    Quad_EntryExt(&entry_, 4, 4, 20, 20, 2, 2, 1.0F, 0xFFFFFF, 0.5F);
    EXPECT_TRUE(Draws().empty());  // nothing is sent before it must be
    Quad_Entry(&other, 40, 0);
    Batch_Flush();
    ASSERT_EQ(Draws().size(), 2U);
    EXPECT_EQ(Draws()[0].b, 12);
    EXPECT_EQ(Draws()[1].b, 6);
    EXPECT_EQ(g_GraphicsStats.drawCalls, 2);
    EXPECT_EQ(BackBuffer(1, 1), kRed);
    EXPECT_EQ(BackBuffer(41, 1), kBlue);
}

// A change of state between two sprites must not touch the first one.
TEST_P(BatchTest, StatesWaitUntilWhatWasDrawnBeforeIsSent)
{
    Quad_Entry(&entry_, 0, 0);
    GpuState_Set(STATE_DEST_BLEND, static_cast<uint32_t>(DeviceBlend::One));
    Quad_Entry(&entry_, 20, 0);
    GpuState_Set(STATE_SRC_BLEND, static_cast<uint32_t>(DeviceBlend::Zero));
    GpuState_Set(STATE_SRC_BLEND, static_cast<uint32_t>(DeviceBlend::SrcAlpha));  // back again
    Quad_Entry(&entry_, 40, 0);
    Batch_Flush();
    std::vector<std::string> order;
    for (const Sent& sent : Log())
        if (sent.what == "draw" || sent.what == "state") order.push_back(sent.what);
    EXPECT_EQ(order, (std::vector<std::string>{"draw", "state", "draw"}));
    EXPECT_EQ(Draws()[1].b, 12);
}

TEST_P(BatchTest, StripsAndFansNeverTakeASecondAllocation)
{
    for (const int32_t primitive :
         {PRIMITIVE_LINE_STRIP, PRIMITIVE_TRIANGLE_STRIP, PRIMITIVE_TRIANGLE_FAN}) {
        Log().clear();
        AddVertices(primitive, 4);
        AddVertices(primitive, 4);
        Batch_Flush();
        EXPECT_EQ(Draws().size(), 2U) << primitive;
    }
    Log().clear();
    AddVertices(PRIMITIVE_LINES, 2);
    AddVertices(PRIMITIVE_LINES, 2);
    AddVertices(PRIMITIVE_POINTS, 1);
    Batch_Flush();
    EXPECT_EQ(Draws().size(), 2U);
}

TEST_P(BatchTest, LargeAllocationsAndGivebackKeepTheCounts)
{
    AddVertices(PRIMITIVE_TRIANGLES, 60);
    AddVertices(PRIMITIVE_TRIANGLES, 30000);  // more than the first buffer holds
    Batch_Giveback(3);
    Batch_Flush();
    ASSERT_EQ(Draws().size(), 2U);
    EXPECT_EQ(Draws()[0].b, 60);
    EXPECT_EQ(Draws()[1].b, 29997);
    EXPECT_EQ(
        Batch_Alloc(PRIMITIVE_TRIANGLES, Texture_White(), kStrideTextured, Batch_MaxVertices() + 1),
        nullptr);
    AddVertices(PRIMITIVE_TRIANGLES, 6);
    Batch_Giveback(6);
    Batch_Flush();
    EXPECT_EQ(Draws().size(), 2U);  // nothing is left to draw
}

TEST_P(BatchTest, AFrameOfSpritesAllocatesNothing)
{
    const auto frame = [this] {
        for (int i = 0; i < 300; ++i) {
            Quad_Entry(&entry_, static_cast<float>(i % 90), 10);
            if (i % 50 == 0) Draw_Rectangle(0, 0, 5, 5, (i & 1) != 0);
        }
        Batch_Flush();
        Batch_EndFrame();
        Log().clear();
    };
    for (int i = 0; i < 8; ++i) frame();
    // The log grows on the standard heap, so the counter sees the runtime alone.
    const uint64_t before = MemoryManager::GetStats().calls;
    for (int i = 0; i < 20; ++i) frame();
    EXPECT_EQ(MemoryManager::GetStats().calls, before);
}

INSTANTIATE_TEST_SUITE_P(Methods, BatchTest,
                         ::testing::Values(BATCH_DYNAMIC, BATCH_POOL, BATCH_MEMORY));

class BufferTest : public DrawingTest {
protected:
    void Triangles(int32_t count)
    {
        auto* v = static_cast<VertexTextured*>(
            Batch_Alloc(PRIMITIVE_TRIANGLES, Texture_White(), kStrideTextured, count));
        ASSERT_NE(v, nullptr);
        for (int32_t i = 0; i < count; ++i) v[i] = {0, 0, 0, kRed, 0, 0};
        Batch_Flush();
    }
    std::vector<Sent> Only(const std::string& what)
    {
        std::vector<Sent> found;
        for (const Sent& sent : Log())
            if (sent.what == what) found.push_back(sent);
        return found;
    }
};

TEST_F(BufferTest, TheByteBufferGoesOnWhereItStoppedAndDoublesOnDemand)
{
    Triangles(3);
    Batch_EndFrame();
    Triangles(3);
    ASSERT_EQ(Only("append").size(), 1U);
    EXPECT_EQ(Only("append")[0].a, 3 * kStrideTextured);
    Triangles(12288);  // all of the 294912 bytes: back to the start
    EXPECT_EQ(Only("discard").size(), 2U);
    EXPECT_EQ(Only("buffer").size(), 1U);
    Triangles(12291);
    ASSERT_EQ(Only("buffer").size(), 2U);
    EXPECT_EQ(Only("buffer")[1].a, 2 * 294912);
}

TEST_F(BufferTest, APooledBufferRestsFourFramesAfterItsUse)
{
    Batch_SetMethod(BATCH_POOL);
    Triangles(3);
    Triangles(3);
    EXPECT_EQ(Only("buffer").size(), 1U);
    for (int frame = 0; frame < 12; ++frame) {
        Batch_EndFrame();
        Triangles(3);
    }
    // Used in frame 0, free again in frame 5: five buffers take turns.
    EXPECT_EQ(Only("buffer").size(), 5U);
}

TEST_F(BufferTest, TheStateStackHoldsThirtyTwo)
{
    GpuState_Set(STATE_ALPHA_REF, 7);
    for (int i = 0; i < 33; ++i) GpuState_Push();  // the last one is refused
    GpuState_Set(STATE_ALPHA_REF, 9);
    GpuState_SetRepeat(true);
    for (int i = 0; i < 32; ++i) GpuState_Pop();
    EXPECT_EQ(GpuState_Get(STATE_ALPHA_REF), 7U);
    EXPECT_EQ(GpuState_GetSampler(0, SAMPLER_ADDRESS_U), 1U);
    GpuState_Set(STATE_ALPHA_REF, 11);
    GpuState_Pop();  // below the bottom: the bottom's values come back
    EXPECT_EQ(GpuState_Get(STATE_ALPHA_REF), 7U);
}

TEST_F(BufferTest, AfterAResetEveryStateIsSentAgain)
{
    Log().clear();
    Batch_Flush();
    EXPECT_TRUE(Log().empty());
    Graphics_AfterReset();
    EXPECT_EQ(Only("state").size(), 31U);
}

TEST_F(BufferTest, AResetBringsBackTheStageTheBlendingAndTheSavedFilter)
{
    GpuState_SetInterpolation(true);
    GpuState_SetRepeat(true);
    GpuState_SetSampler(3, SAMPLER_MAG, 0);  // of one stage: not saved
    GpuState_SetModulate(false);
    GpuState_Set(STATE_ALPHA_BLEND, 0);
    GpuState_Set(STATE_ALPHA_REF, 40);
    g_TextureStage = 3;
    Graphics_AfterReset();
    EXPECT_EQ(g_TextureStage, 0);
    EXPECT_TRUE(GpuState_Modulate());
    EXPECT_EQ(GpuState_Get(STATE_ALPHA_BLEND), 1U);
    EXPECT_EQ(GpuState_Get(STATE_ALPHA_REF), 40U);
    EXPECT_EQ(GpuState_GetSampler(3, SAMPLER_MAG), 1U);
    EXPECT_EQ(GpuState_GetSampler(0, SAMPLER_ADDRESS_U), 0U);
}
