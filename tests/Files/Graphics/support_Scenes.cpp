#include "tests/Files/Graphics/support_Scenes.h"

#include "Files/Font/CFontSW.h"
#include "Files/Font/Font_Glyphs.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Quad.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/Text.h"
#include "Files/Graphics/Window.h"

namespace {

constexpr uint32_t kOpaque = 0xFF000000U, kClear = 0;

// The picture of the card, 0xAARRGGBB.
uint32_t CardPixel(int32_t x, int32_t y)
{
    constexpr int32_t kWidth = 30, kHeight = 22;
    if (x == 0 || y == 0 || x == kWidth - 1 || y == kHeight - 1) return kOpaque;
    const bool stem = x >= 4 && x < 7 && y >= 3 && y < 19;
    const bool arms =
        (x >= 4 && x < 14 && y >= 3 && y < 6) || (x >= 4 && x < 11 && y >= 9 && y < 12);
    if (stem || arms) return 0xFFFFFFFFU;
    if (y < kHeight / 2) return x < kWidth / 2 ? 0xFFD02020U : 0xFF20A030U;
    return x < kWidth / 2 ? 0xFF3050E0U : 0x80F0D020U;
}

uint32_t BrickPixel(int32_t x, int32_t y)
{
    const int32_t shifted = (x + (y / 8) * 8) % 16;
    if (y % 8 == 7 || shifted == 15) return 0xFF504840U;
    return y % 8 == 0 || shifted == 0 ? 0xFFD89070U : 0xFFB06048U;
}

uint32_t WeavePixel(int32_t x, int32_t y)
{
    if (x == 0 && y == 0) return 0xFFFFFFFFU;
    return (x / 3 + y / 5) % 2 == 0 ? 0xFF206080U : 0xC060C0A0U;
}

// A page of 64 by 64 with a picture on it and a rim of two pixels that repeats its edge.
template <class Pixel>
int32_t PageWith(const ArchivePageEntry& entry, Pixel pixel)
{
    constexpr int32_t kSide = 64, kRim = 2;
    std::vector<uint32_t> page(kSide * kSide, 0xFFFF00FFU);
    for (int32_t y = -kRim; y < entry.height + kRim; y++)
        for (int32_t x = -kRim; x < entry.width + kRim; x++)
            page[static_cast<size_t>((entry.y + y) * kSide + entry.x + x)] =
                pixel(std::clamp(x, 0, entry.width - 1), std::clamp(y, 0, entry.height - 1));
    return Texture_CreateFromPixels(kSide, kSide, page.data(),
                                    static_cast<uint32_t>(page.size() * 4));
}

ArchivePageEntry* NewEntry(const ArchivePageEntry& entry)
{
    auto* made = static_cast<ArchivePageEntry*>(MemoryManager::Alloc(sizeof(ArchivePageEntry)));
    *made = entry;
    return made;
}

void OpenDevice(const SceneRow& row, const DeviceTable& device)
{
    g_Display.windowWidth = g_Display.deviceWidth = row.width;
    g_Display.windowHeight = g_Display.deviceHeight = row.height;
    g_Display.clientWidth = g_Display.backbufferWidth = row.width;
    g_Display.clientHeight = g_Display.backbufferHeight = row.height;
    g_Display.interpolate = true;
    g_Display.keepAspect = true;
    g_Display.windowColour = kOpaque;
    char error[256];
    ASSERT_TRUE(device.Open({row.width, row.height, false, 0, 0}, error, sizeof error)) << error;
    g_Device = &device;
    Draw_Init();
    ASSERT_TRUE(Graphics_Start());
    device.BeginScene();
    View_SetWindow();
}

KeptPicture TakePicture(const SceneRow& row)
{
    KeptPicture picture{row.width, row.height, {}};
    picture.pixels.resize(static_cast<size_t>(row.width) * static_cast<size_t>(row.height));
    Batch_Flush();
    g_Device->ReadPixels(nullptr, {0, 0, row.width, row.height}, picture.pixels.data(),
                         row.width * 4);
    return picture;
}

}  // namespace

std::vector<SceneRow> AllScenes()
{
    std::vector<SceneRow> all;
    for (const auto& family : {Scenes_Quads(), Scenes_States(), Scenes_Text(), Scenes_Rooms(),
                               Scenes_Surfaces(), Scenes_Particles()})
        all.insert(all.end(), family.begin(), family.end());
    return all;
}

KeptPicture SceneStage::Draw(const SceneRow& row, const DeviceTable& device, void (*useHost)())
{
    World::SetUp();
    g_Switches = switches;
    g_IntelMode = switches.intel;
    Function_Graphic_Register();
    Function_Resource_Register();
    useHost();
    OpenDevice(row, device);
    DrawState_Init();
    Font_Init();
    Text_Init();
    Cast();
    row.draw(*this);
    const KeptPicture picture = TakePicture(row);
    device.EndScene();
    Font_Quit();
    Background_Quit();
    Sprite_Quit();
    Graphics_Stop();
    EXPECT_EQ(device.Counts().textures, 0) << row.name;
    EXPECT_EQ(device.Counts().buffers, 0) << row.name;
    device.Close();
    g_Device = nullptr;
    g_IntelMode = false;
    Function_Init();
    World::TearDown();
    return picture;
}

void SceneStage::Set(RValue* value, const char* text)
{
    VXCreateString(value, text);
}

double SceneStage::Call(const char* name, int32_t count, RValue* values)
{
    RValue result;
    const FunctionRecord* record = Function_Record(Function_Find(name));
    EXPECT_NE(record, nullptr) << name;
    if (!record) return 0;
    EXPECT_TRUE(record->argumentCount < 0 || record->argumentCount == count) << name;
    record->routine(result, self_, self_, count, values);
    for (int32_t i = 0; i < count; i++) FREE_RValue(&values[i]);
    const double number = result.Kind() == VALUE_UNSET ? 0 : REAL_RValue(&result);
    FREE_RValue(&result);
    return number;
}

void SceneStage::React(const char* label, const Reaction& reaction)
{
    On(label, [this, reaction](CInstance* self, CInstance* other) {
        self_ = self;
        reaction(self, other);
        self_ = nullptr;
    });
}

void SceneStage::mark(float x, float y)
{
    const uint32_t kept = Draw_GetColour();
    Draw_SetColour(kYellow);
    Draw_Rectangle(x - 3, y - 1, x + 2, y, false);
    Draw_Rectangle(x - 1, y - 3, x, y + 2, false);
    Draw_SetColour(kept);
}

int32_t SceneStage::MakeCard()
{
    auto* sprite = VxNew<CSprite>();
    sprite->name = "card";
    sprite->width = 40;
    sprite->height = 32;
    sprite->originX = 20;
    sprite->originY = 16;
    sprite->frameCount = 1;
    sprite->entriesOwned = true;
    sprite->entries = static_cast<ArchivePageEntry**>(MemoryManager::Alloc(sizeof(void*)));
    ArchivePageEntry entry{12, 20, 30, 22, 6, 5, 30, 22, 40, 32, -1};
    entry.texture = static_cast<int16_t>(PageWith(entry, CardPixel));
    sprite->entries[0] = NewEntry(entry);
    sprite->ComputeCullRadius();
    return Sprite_Add(sprite);
}

int32_t SceneStage::MakeMade()
{
    auto* bitmap = VxNew<CBitmap32>(24, 20);
    for (int32_t y = 0; y < 20; y++)
        for (int32_t x = 0; x < 24; x++) {
            const bool hole = x >= 14 && x < 20 && y >= 6 && y < 12;
            const auto red = static_cast<uint32_t>(x * 11), green = static_cast<uint32_t>(y * 13);
            bitmap->data[y * 24 + x] = hole ? kClear : kOpaque | red << 16 | green << 8 | 0x60;
        }
    auto* sprite = VxNew<CSprite>();
    sprite->name = "made";
    sprite->AddFrame(bitmap);
    sprite->originX = sprite->originY = 4;
    sprite->ComputeCullRadius();
    return Sprite_Add(sprite);
}

int32_t SceneStage::MakeBackgrounds()
{
    auto* paged = VxNew<CBackground>();
    paged->name = "bricks";
    paged->width = paged->height = 16;
    ArchivePageEntry entry{8, 8, 16, 16, 0, 0, 16, 16, 16, 16, -1};
    entry.texture = static_cast<int16_t>(PageWith(entry, BrickPixel));
    paged->entryOwned = true;
    paged->entry = NewEntry(entry);
    bricks = Background_Add(paged);
    auto* bitmap = VxNew<CBitmap32>(12, 10);
    for (int32_t i = 0; i < 120; i++) bitmap->data[i] = WeavePixel(i % 12, i / 12);
    auto* loose = VxNew<CBackground>();
    loose->name = "weave";
    loose->SetBitmap(bitmap);
    loose->width = 12;
    loose->height = 10;
    return Background_Add(loose);
}

// The default font with a narrower step: lines of an odd number of pixels.
int32_t SceneStage::MakeFont()
{
    static ArchivePageEntry page;
    CFontSW* letters = Font_Default();
    page = {0, 0, 256, 128, 0, 0, 256, 128, 256, 128, static_cast<int16_t>(letters->textureSlot)};
    VxVector<RunTimeGlyph> glyphs;
    for (uint16_t character = 32; character < 127; character++) {
        RunTimeGlyph glyph{};
        static_cast<ArchiveGlyph&>(glyph) = *letters->GlyphFor(character);
        glyph.shift = 11;
        glyphs.push_back(glyph);
    }
    auto* narrow = VxNew<CFontSW>();
    narrow->TakeGlyphs(std::move(glyphs));
    narrow->entry = &page;
    return Font_Add(narrow);
}

void SceneStage::Cast()
{
    card = MakeCard();
    made = MakeMade();
    weave = MakeBackgrounds();
    font = MakeFont();
    plain = AddObject("plain", {});
    drawer = AddObject("drawer", {{EVENT_DRAW, DRAW_NORMAL}});
    gui = AddObject("gui", {{EVENT_DRAW, DRAW_GUI}});
}

CRoom& SceneStage::room(int32_t width, int32_t height)
{
    const int32_t index = AddRoom("room");
    CRoom* shape = Room_Template(index);
    shape->width = width;
    shape->height = height;
    Begin();
    Run_Room->clearDisplayBuffer = Run_Room->clearViewBackground = Run_Room->showColour = true;
    g_AppSurface.appSurfaceWidth = width;
    g_AppSurface.appSurfaceHeight = height;
    return *Run_Room;
}

CInstance* SceneStage::put(int32_t object, float depth, float x, float y, int32_t sprite)
{
    CInstance* made_here = Room_CreateInstance(x, y, object);
    if (sprite >= 0) made_here->SetSprite(sprite);
    Instance_SetDepth(made_here, depth);
    ApplyPendingChanges();
    return made_here;
}

CTile& SceneStage::tile(int32_t background, float depth, float x, float y)
{
    CTile added;
    added.backgroundIndex = background;
    added.width = added.height = 16;
    added.depth = depth;
    added.x = x;
    added.y = y;
    added.id = ++g_LastTileId;
    Run_Room->tiles.push_back(added);
    return Run_Room->tiles.back();
}
