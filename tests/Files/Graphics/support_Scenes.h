#pragma once
// Named scenes, drawn with the operations that scripts have. The picture tests keep what
// they show on the soft device, the tests of the GL device draw them once more.

#include <span>
#include <type_traits>

#include "Files/Background/CBackground.h"
#include "Files/Base/Archive_Records.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics_API/Device.h"
#include "Files/Run/Run_State.h"
#include "Files/Sprite/CSprite.h"
#include "tests/Files/Graphics/support_Pictures.h"
#include "tests/Files/support_World.h"

class SceneStage;

struct SceneRow {
    const char* name;
    int32_t width, height;  // of the window
    void (*draw)(SceneStage& stage);
};
// All scenes, family by family.
std::span<const SceneRow> Scenes_Quads();
std::span<const SceneRow> Scenes_States();
std::span<const SceneRow> Scenes_Text();
std::span<const SceneRow> Scenes_Rooms();
std::span<const SceneRow> Scenes_Surfaces();
std::span<const SceneRow> Scenes_Particles();
std::vector<SceneRow> AllScenes();

// Colours as scripts write them.
inline constexpr uint32_t kRed = 0x0000FF, kGreen = 0x00C000, kBlue = 0xFF4020, kYellow = 0x20E0FF,
                          kWhite = 0xFFFFFF, kGrey = 0x808080, kBlack = 0, kOrange = 0x2080FF;

// A world with a window of the scene's size and a cast to draw with.
class SceneStage final : public World {
public:
    // The host that `useHost` picks stays behind the device.
    KeptPicture Draw(const SceneRow& row, const DeviceTable& device, void (*useHost)());
    Switches switches;  // of the command line

    // A built-in, called by the instance that draws, if one does; its result as a number.
    template <class... Arguments>
    double call(const char* name, Arguments... arguments)
    {
        RValue values[sizeof...(arguments) + 1];
        int32_t count = 0;
        (Set(&values[count++], arguments), ...);
        return Call(name, count, values);
    }
    // A small cross on the four pixels around (x, y), to show where a position lies.
    void mark(float x, float y);

    // ---- the cast
    // An F on four fields with a black rim, the last one half clear: 40 by 32 with the
    // origin in its middle, trimmed to 30 by 22 at (6, 5). All around it on its page is
    // magenta, but for a rim of two pixels that repeats its edge.
    int32_t card = -1;
    // A gradient with a hole, 24 by 20 with its origin at (4, 4), made at run time.
    int32_t made = -1;
    int32_t bricks = -1;  // a background of the archive's kind, 16 by 16
    int32_t weave = -1;   // one made at run time, 12 by 10
    int32_t font = -1;    // 11 pixels a character
    int32_t plain = -1;   // objects: without a Draw event,
    int32_t drawer = -1;  // with one,
    int32_t gui = -1;     // and with one of the GUI pass
    ArchivePageEntry* entry(int32_t sprite) { return Sprite_Data(sprite)->entries[0]; }

    // ---- rooms; room() starts one of that size, black and without views
    CRoom& room(int32_t width, int32_t height);
    CInstance* put(int32_t object, float depth, float x, float y, int32_t sprite = -1);
    CTile& tile(int32_t background, float depth, float x, float y);
    // What the Draw events do from now on.
    void draws(const Reaction& reaction) { React("drawer.Draw0", reaction); }
    void draws_gui(const Reaction& reaction) { React("gui.Draw64", reaction); }

    void TestBody() override {}

private:
    static void Set(RValue* value, const char* text);
    template <class Number>
    static void Set(RValue* value, Number number)
    {
        static_assert(std::is_arithmetic_v<Number>);
        *value = RValue(static_cast<double>(number));
    }
    double Call(const char* name, int32_t count, RValue* values);
    void React(const char* label, const Reaction& reaction);
    void Cast();
    int32_t MakeCard();
    int32_t MakeMade();
    int32_t MakeBackgrounds();
    int32_t MakeFont();
    CInstance* self_ = nullptr;  // that draws
};
