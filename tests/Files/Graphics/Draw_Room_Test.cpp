// One frame of a room: the order of the passes, and what lies over what.

#include "Files/IO/IO.h"
#include "Host/Host_Stage.h"
#include "tests/Files/Graphics/support_Drawing.h"

namespace {

constexpr int32_t kSize = 16;

class DrawRoomTest : public DrawingTest {
protected:
    void SetUp() override
    {
        DrawingTest::SetUp();
        object_ = AddObject("oPlain", {});
        room_ = AddRoom("room");
    }
    void Start()
    {
        Begin();
        Run_Room->width = g_Display.deviceWidth = kWidth;
        Run_Room->height = g_Display.deviceHeight = kHeight;
        Run_Room->clearDisplayBuffer = true;
        Run_Room->colour = 0;
    }
    CInstance* Make(int32_t object, float depth, uint32_t colour, float x = 0, float y = 0)
    {
        CInstance* made = Room_CreateInstance(x, y, object);
        if (colour) made->SetSprite(PlainSprite(kSize, colour));
        Instance_SetDepth(made, depth);
        ApplyPendingChanges();
        return made;
    }
    int32_t PlainBackground(uint32_t colour)
    {
        auto* background = VxNew<CBackground>();
        background->width = background->height = kSize;
        background->entryOwned = true;
        background->entry =
            static_cast<ArchivePageEntry*>(MemoryManager::Alloc(sizeof(ArchivePageEntry)));
        *background->entry = Entry(Page(kSize, kSize, colour), kSize);
        return Background_Add(background);
    }
    CTile& AddTile(int32_t background, float depth, float x = 0, float y = 0)
    {
        CTile tile;
        tile.backgroundIndex = background;
        tile.width = tile.height = kSize;
        tile.depth = depth;
        tile.x = x;
        tile.y = y;
        tile.id = ++g_LastTileId;
        Run_Room->tiles.push_back(tile);
        return Run_Room->tiles.back();
    }
    uint32_t Drawn(int32_t x = 2, int32_t y = 2)
    {
        DrawRoom();
        return BackBuffer(x, y);
    }
    int32_t object_ = -1, room_ = -1;
};

std::vector<float> s_systems;
float HighestBelow(float limit)
{
    float best = -1e9F;
    for (const float depth : s_systems)
        if (depth < limit && depth > best) best = depth;
    return best;
}
const ParticleLayers kBlueLayers = {[] { return HighestBelow(1e9F); }, HighestBelow,
                                    [](float) {
                                        Draw_SetColour(0xFF0000);
                                        Draw_Rectangle(0, 0, 9, 9, false);
                                    }};

}  // namespace

TEST_F(DrawRoomTest, PassesComeInOrderEachFromTheHighestDepth)
{
    std::vector<EventKey> all;
    for (const int32_t subtype : {DRAW_NORMAL, DRAW_GUI, DRAW_BEGIN, DRAW_END, DRAW_GUI_BEGIN,
                                  DRAW_GUI_END, DRAW_PRE, DRAW_POST})
        all.push_back({EVENT_DRAW, subtype});
    const int32_t low = AddObject("low", all), high = AddObject("high", {{EVENT_DRAW, 0}}, -1);
    Start();
    Make(low, -5, 0);
    Make(high, 5, 0);
    Make(low, 0, 0)->visible = false;
    Instance_Deactivate(Make(low, 0, 0));
    Take();
    DrawRoom();
    EXPECT_EQ(Take(), (::Log{"low.Draw76", "low.Draw72", "high.Draw0", "low.Draw0", "low.Draw73",
                             "low.Draw77", "low.Draw74", "low.Draw64", "low.Draw75"}));
    for (int i : {0, 1}) {
        Run_Room->views[i].visible = true;
        Run_Room->views[i].wview = Run_Room->views[i].wport = kWidth;
        Run_Room->views[i].hview = Run_Room->views[i].hport = kHeight;
    }
    Run_Room->viewsEnabled = true;
    std::vector<int32_t> views;
    On("high.Draw0", [&](CInstance*, CInstance*) { views.push_back(view_current); });
    DrawRoom();
    EXPECT_EQ(views, (std::vector<int32_t>{0, 1}));
}

// An instance that a Draw event makes waits for the next frame.
TEST_F(DrawRoomTest, WhatADrawEventMakesOrKillsCountsAtOnce)
{
    const int32_t maker = AddObject("maker", {{EVENT_DRAW, 0}});
    const int32_t made = AddObject("made", {{EVENT_DRAW, 0}});
    Start();
    Make(maker, 5, 0);
    CInstance* victim = Make(made, 4, 0);
    Take();
    On("maker.Draw0", [&](CInstance*, CInstance*) {
        if (victim) Instance_Destroy(victim, true);
        victim = nullptr;
        Room_CreateInstance(0, 0, made);
    });
    DrawRoom();
    EXPECT_EQ(Take(), (::Log{"maker.Draw0"}));
    Forget("maker.Draw0");
    DrawRoom();
    EXPECT_EQ(Take(), (::Log{"made.Draw0"}));
}

TEST_F(DrawRoomTest, DepthDecidesAndEqualDepthsHaveTheirOrder)
{
    Start();
    const int32_t green = PlainBackground(kGreen);
    CInstance* red = Make(object_, 5, kRed);
    AddTile(green, 5);
    EXPECT_EQ(Drawn(), kGreen);  // an instance goes before a tile of its depth
    Run_Room->tiles[0].depth = 6;
    EXPECT_EQ(Drawn(), kRed);
    Make(object_, 5, kBlue);
    EXPECT_EQ(Drawn(), kRed);  // of one depth the first made lies on top
    s_systems = {5};
    g_ParticleLayers = &kBlueLayers;
    EXPECT_EQ(Drawn(), kBlue);  // and a particle system comes after instances
    Run_Room->tiles[0].depth = 5;
    EXPECT_EQ(Drawn(), kGreen);  // and before tiles
    Instance_SetDepth(red, -20000);
    ApplyPendingChanges();
    EXPECT_EQ(Drawn(), kRed);
    CRoomBackground& shown = Run_Room->backgrounds[3];
    shown.visible = shown.foreground = true;
    shown.index = PlainBackground(kBlue);
    EXPECT_EQ(Drawn(90, 70), kBlue);
    EXPECT_EQ(Drawn(), kBlue);  // a foreground lies over every depth
    shown.foreground = false;
    EXPECT_EQ(Drawn(), kRed);
    EXPECT_EQ(Drawn(90, 70), kBlue);
}

TEST_F(DrawRoomTest, TilesAreSortedStablyAndClippedToTheView)
{
    Start();
    const int32_t green = PlainBackground(kGreen);
    const float depths[] = {10, 30, 10, 20, 30};
    for (const float depth : depths) AddTile(green, depth, 500, 0);
    const int32_t first = Run_Room->tiles[0].id;
    g_GraphicsStats = GraphicsStats{};
    DrawRoom();
    std::vector<int32_t> order;
    for (const CTile& tile : Run_Room->tiles) order.push_back(tile.id - first);
    EXPECT_EQ(order, (std::vector<int32_t>{1, 4, 3, 0, 2}));
    EXPECT_EQ(g_GraphicsStats.sprites, 1);  // the application surface alone
    Run_Room->tiles[0].x = kWidth + kSize;
    Run_Room->tiles[0].xscale = -1;  // mirrored: it touches the view's edge
    Run_Room->tiles[1].visible = false;
    Run_Room->tiles[2].backgroundIndex = 99;
    DrawRoom();
    EXPECT_EQ(g_GraphicsStats.sprites, 3);
}

TEST_F(DrawRoomTest, DefaultDrawingPicksTheFrameAndTheAlpha)
{
    Start();
    CInstance* shown = Make(object_, 0, kRed);
    CSprite* sprite = Sprite_Data(shown->sprite_index);
    MemoryManager::SetLength(&sprite->entries, 3 * sizeof(void*));
    for (int frame : {1, 2}) {
        sprite->entries[frame] =
            static_cast<ArchivePageEntry*>(MemoryManager::Alloc(sizeof(ArchivePageEntry)));
        *sprite->entries[frame] = Entry(Page(kSize, kSize, frame == 1 ? kGreen : kBlue), kSize);
    }
    sprite->frameCount = 3;
    for (const auto& [index, colour] :
         {std::pair{2.7F, kBlue}, {3.2F, kRed}, {-1.0F, kBlue}, {1.0F, kGreen}}) {
        shown->image_index = index;
        EXPECT_EQ(Drawn(), colour) << index;
    }
    Draw_SetAlpha(0);
    EXPECT_EQ(Drawn(), 0xFF000000U);  // the plain path follows the draw alpha
    shown->image_blend = 0xFFFFFE;
    EXPECT_EQ(Drawn() & 0xFF00U, 0xFF00U);  // the other takes image_alpha
    Draw_SetAlpha(1);
    shown->image_alpha = 0.5F;
    EXPECT_EQ(Drawn() >> 8 & 0xFFU, 127U);
}

TEST_F(DrawRoomTest, SpritesOutsideTheViewAreLeftOutButNotOnASurface)
{
    Start();
    const int32_t sprite = PlainSprite(kSize, kRed);
    View_SetArea(0, 0, kWidth, kHeight, 0);
    g_GraphicsStats = GraphicsStats{};
    Sprite_Data(sprite)->Draw(0, -23, 10);  // 16 by 16 reaches 23 pixels from its origin
    EXPECT_EQ(g_GraphicsStats.sprites, 1);
    Sprite_Data(sprite)->Draw(0, -24, 10);
    Sprite_Data(sprite)->DrawExt(0, 10, kHeight + 47, 2, 1, 0, 0xFFFFFF, 1);
    EXPECT_EQ(g_GraphicsStats.sprites, 1);
    Sprite_Data(sprite)->DrawExt(0, 10, kHeight + 46, 2, 1, 0, 0xFFFFFF, 1);
    EXPECT_EQ(g_GraphicsStats.sprites, 2);
    const int32_t surface = Surface_Create(8, 8);
    ASSERT_TRUE(Surface_SetTarget(0, surface));
    Sprite_Data(sprite)->Draw(0, -200, 10);
    EXPECT_EQ(g_GraphicsStats.sprites, 3);
    Surface_ResetTarget();
    Sprite_Data(sprite)->Draw(0, -200, 10);
    EXPECT_EQ(g_GraphicsStats.sprites, 3);
}

TEST_F(DrawRoomTest, TheSurfaceIsScaledIntoTheWindowWithBars)
{
    CloseDevice();
    OpenDevice(240, 160);  // twice the surface, and 20 pixels of bar on each side
    g_Display.keepAspect = true;
    g_Display.windowColour = 0xFF0000FFU;  // red as a script writes it
    Start();
    Make(object_, 0, kGreen, 50, 40);
    EXPECT_EQ(Drawn(119, 80), 0xFF000000U);
    EXPECT_EQ(BackBuffer(120, 80), kGreen);
    EXPECT_EQ(BackBuffer(151, 111), kGreen);
    EXPECT_EQ(BackBuffer(152, 80), 0xFF000000U);
    EXPECT_EQ(BackBuffer(19, 80), kRed);
    EXPECT_EQ(BackBuffer(220, 80), kRed);
    // The GUI's units are the picture's pixels.
    const int32_t gui = AddObject("gui", {{EVENT_DRAW, DRAW_GUI}});
    Gui_SetSize(kWidth, kHeight);
    Make(gui, 0, 0);
    On("gui.Draw64", [](CInstance*, CInstance*) {
        Draw_SetColour(0xFF0000);
        Draw_Rectangle(10, 10, 19, 19, false);
        Sprite_Data(0)->Draw(0, 120, 10);  // wholly outside the GUI's rectangle
    });
    Sprite_Data(0)->cullRadius = 1;
    g_GraphicsStats = GraphicsStats{};
    EXPECT_EQ(Drawn(40, 20), kBlue);
    EXPECT_EQ(BackBuffer(59, 39), kBlue);
    EXPECT_EQ(BackBuffer(60, 20), 0xFF000000U);
    EXPECT_EQ(BackBuffer(39, 20), 0xFF000000U);
    EXPECT_EQ(Gui_Width(), kWidth);
    // The inverse takes window pixels to GUI units.
    EXPECT_FLOAT_EQ(g_Gui.guiInverse[0] * 40 + g_Gui.guiInverse[3], 10);
    Gui_SetSize(-1, -1);
    EXPECT_EQ(Gui_Width(), 240);
}

TEST_F(DrawRoomTest, PortsFillTheSurfaceWhateverTheirSize)
{
    Start();
    Run_Room->viewsEnabled = true;
    CView& view = Run_Room->views[0];
    view.visible = true;
    view.wview = view.hview = 40;
    view.xview = 20;
    view.wport = kWidth / 2;
    view.hport = kHeight / 2;
    Make(object_, 0, kRed, 20, 0);
    EXPECT_EQ(Drawn(0, 0), kRed);
    EXPECT_FLOAT_EQ(portScaleX, 2);
    EXPECT_EQ(BackBuffer(39, 31), kRed);  // 16 of 40 units on 100 by 80 pixels
    EXPECT_EQ(BackBuffer(41, 1), 0xFF000000U);
    EXPECT_TRUE(g_MouseViews[0].active);
    // A second port beside the first: each is cleared and filled on its own.
    CView& right = Run_Room->views[1];
    right = view;
    right.xport = kWidth / 2;
    right.xview = 0;
    view.wport = right.wport = kWidth / 2;
    view.hport = right.hport = kHeight;
    DrawRoom();
    EXPECT_FLOAT_EQ(portScaleX, 1);
    EXPECT_EQ(BackBuffer(2, 2), kRed);
    EXPECT_EQ(BackBuffer(52, 2), 0xFF000000U);
    EXPECT_EQ(BackBuffer(78, 2), kRed);
    Run_Room->viewsEnabled = false;
    DrawRoom();
    EXPECT_FALSE(g_MouseViews[0].active);
    // A view turned by a half shows its picture upside down.
    Run_Room->viewsEnabled = true;
    right.visible = false;
    view = CView{};
    view.visible = true;
    view.wview = view.wport = kWidth;
    view.hview = view.hport = kHeight;
    view.angle = 180;
    First(object_)->SetPosition(0, 0);
    EXPECT_EQ(Drawn(kWidth - 1, kHeight - 1), kRed);
    EXPECT_EQ(BackBuffer(0, 0), 0xFF000000U);
}

TEST_F(DrawRoomTest, WithoutTheApplicationSurfaceTheRoomGoesToTheBackBuffer)
{
    Start();
    CInstance* shown = Make(object_, 0, kRed);
    EXPECT_EQ(Drawn(), kRed);
    const int32_t id = g_AppSurface.appSurfaceId;
    EXPECT_GE(id, 0);
    AppSurface_Enable(false);
    shown->x = 40;
    EXPECT_EQ(Drawn(42, 2), kRed);
    EXPECT_EQ(g_AppSurface.appSurfaceId, kNoAppSurface);
    AppSurface_Enable(true);
    EXPECT_EQ(Drawn(42, 2), kRed);
    EXPECT_NE(g_AppSurface.appSurfaceId, id);
    Surface_LoseAll();  // as a device reset does
    EXPECT_EQ(g_AppSurface.appSurfaceId, kNoAppSurface);
    EXPECT_EQ(Drawn(42, 2), kRed);
    Run_Room->showColour = false;
    shown->x = 60;
    DrawRoom();
    EXPECT_EQ(BackBuffer(42, 2), kRed);  // what the last frame left
    EXPECT_EQ(BackBuffer(62, 2), kRed);
}

TEST_F(DrawRoomTest, ATargetThatIsNotResetIsReportedAndLeft)
{
    const int32_t loose = AddObject("loose", {{EVENT_DRAW, 0}, {EVENT_DRAW, DRAW_GUI}});
    Start();
    Make(loose, 0, 0);
    Take();
    On("loose.Draw0", [](CInstance*, CInstance*) { Surface_SetTarget(0, Surface_Create(4, 4)); });
    DrawRoom();
    ASSERT_EQ(Stage_ErrorTexts().size(), 1U);
    EXPECT_NE(Stage_ErrorTexts()[0].find("Unbalanced surface stack. You MUST use "
                                         "surface_reset_target() for each set."),
              VxString::npos);
    EXPECT_EQ(Take(), (::Log{"loose.Draw0"}));  // no GUI pass in that frame
    EXPECT_EQ(Surface_StackDepth(), 0);
}

TEST_F(DrawRoomTest, TheCursorIsDrawnInWindowPixels)
{
    Start();
    g_CursorSprite = PlainSprite(kSize, kGreen);
    g_IOFrame.mouseX[0] = 30;
    g_IOFrame.mouseY[0] = 40;
    EXPECT_EQ(Drawn(30, 40), kGreen);
    EXPECT_EQ(BackBuffer(29, 40), 0xFF000000U);
    const int32_t frame = g_CursorFrame;
    StepOnly();  // with drawing switched off
    EXPECT_EQ(g_CursorFrame, frame + 1);
}

TEST_F(DrawRoomTest, AFrameInTheSteadyStateAllocatesNothing)
{
    Start();
    const int32_t green = PlainBackground(kGreen);
    for (int i = 0; i < 40; ++i) {
        AddTile(green, static_cast<float>(i % 3), static_cast<float>(i * 2), 10);
        Make(object_, static_cast<float>(i % 5), 0, static_cast<float>(i), 20)
            ->SetSprite(i == 0 ? PlainSprite(kSize, kRed) : Sprite_Count() - 1);
    }
    const auto frame = [] {
        DrawRoom();
        Batch_Flush();
        Batch_EndFrame();
        Log().clear();
    };
    for (int i = 0; i < 3; ++i) frame();
    const uint64_t before = MemoryManager::GetStats().calls;
    g_GraphicsStats = GraphicsStats{};
    frame();
    EXPECT_EQ(MemoryManager::GetStats().calls, before);
    EXPECT_GE(g_GraphicsStats.sprites, 80);
}
