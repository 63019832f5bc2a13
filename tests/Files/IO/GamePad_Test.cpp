// Pads from the plug to what a script reads.

#include <fstream>

#include "Files/IO/GamePad.h"
#include "Files/Run/Services.h"
#include "Host/Host_Stage_Pads.h"
#include "tests/Files/IO/support_Input.h"

namespace {

constexpr double gp_face1 = 0x8001, gp_face2 = 0x8002, gp_shoulderlb = 0x8007, gp_select = 0x8009,
                 gp_start = 0x800A, gp_padu = 0x800D, gp_padr = 0x8010, gp_axislh = 0x8011,
                 gp_axislv = 0x8012, gp_axisrh = 0x8013;
constexpr char kGuid[] = "0300000000000000000000000000beef";

std::vector<std::string> g_heard;

class GamePadTest : public InputTest {
protected:
    void SetUp() override
    {
        InputTest::SetUp();
        g_GameHeader.functionClasses = 4;
        g_DebugConsole = g_ErrorConsole;
        g_heard.clear();
        GamePad_SetNews([](const char* eventType, int32_t slot) {
            g_heard.push_back(eventType + (" " + std::to_string(slot)));
        });
    }
    void TearDown() override
    {
        GamePad_Quit();
        GamePad_SetNews(nullptr);
        g_GameHeader.functionClasses = 0;
        InputTest::TearDown();
    }
    void Start(bool standardPad = true)
    {
        if (standardPad) Stage_PlugPad(0, true);
        GamePad_Init();
        Lines().clear();
    }
    static std::vector<std::string> Heard() { return std::exchange(g_heard, {}); }
    // As support_Input's: "d" down, "p" pressed, "r" released.
    std::string PadButton(double button, double slot = 0)
    {
        return std::string(Number("gamepad_button_check", {slot, button}) != 0 ? "d" : ".") +
               (Number("gamepad_button_check_pressed", {slot, button}) != 0 ? "p" : ".") +
               (Number("gamepad_button_check_released", {slot, button}) != 0 ? "r" : ".");
    }
    double Value(double button, double slot = 0)
    {
        return Number("gamepad_button_value", {slot, button});
    }
    double Axis(double axis, double slot = 0) { return Number("gamepad_axis_value", {slot, axis}); }
};

TEST_F(GamePadTest, EachButtonHasItsPlaceAndOneFrameOfBeingPressed)
{
    Start();
    constexpr uint16_t kBits[] = {0x1000, 0x2000, 0x4000, 0x8000, 0x0100, 0x0200, 0,      0,
                                  0x0020, 0x0010, 0x0040, 0x0080, 0x0001, 0x0002, 0x0004, 0x0008};
    int before = -1;
    for (int i = 0; i < 16; ++i) {
        if (kBits[i] == 0) continue;
        Stage_Pad(0).buttons = kBits[i];
        Frame();
        for (int other = 0; other < 16; ++other) {
            const char* expected = other == i ? "dp." : other == before ? "..r" : "...";
            EXPECT_EQ(PadButton(gp_face1 + other), expected) << i << " " << other;
        }
        before = i;
    }
    Frame();
    EXPECT_EQ(PadButton(gp_padr), "d..");
    Stage_Pad(0).buttons = 0;
    Frame();
    EXPECT_EQ(PadButton(gp_padr), "..r");
    Frame();
    EXPECT_EQ(PadButton(gp_padr), "...");
    for (const double none : {-1.0, 16.0, 0x8000 + 500.0, 4095.0})
        EXPECT_EQ(PadButton(none), "...");
}

TEST_F(GamePadTest, TriggerCountsFromTheThresholdOn)
{
    Start();
    Stage_Pad(0).leftTrigger = 77;  // about 0.3
    Frame();
    EXPECT_EQ(PadButton(gp_shoulderlb), "...") << "one half until the game sets it";
    Call("gamepad_set_button_threshold", {0.0, 0.1});
    EXPECT_NEAR(Number("gamepad_get_button_threshold", {0.0}), 0.1, 1e-6);
    EXPECT_EQ(PadButton(gp_shoulderlb), "dp.");
    Frame();
    EXPECT_EQ(PadButton(gp_shoulderlb), "d..");
    EXPECT_FLOAT_EQ(static_cast<float>(Value(gp_shoulderlb)), 77 / 256.0F);
    Stage_Pad(0).leftTrigger = 255;
    Frame();
    EXPECT_LT(Value(gp_shoulderlb), 1);
    Call("gamepad_set_button_threshold", {0.0, 1.5});
    Call("gamepad_set_axis_deadzone", {0.0, -0.1});
    const std::vector<std::string> reports = Reports();
    ASSERT_EQ(reports.size(), 2U);
    EXPECT_NE(reports[0].find("gamepad_set_button_threshold"), std::string::npos);
    EXPECT_NE(reports[1].find("gamepad_set_axis_deadzone"), std::string::npos);
    EXPECT_NEAR(Number("gamepad_get_button_threshold", {0.0}), 0.1, 1e-6);
    EXPECT_EQ(Number("gamepad_get_axis_deadzone", {0.0}), 0);
}

TEST_F(GamePadTest, DeadzoneStartsFromZeroAtItsEdge)
{
    Start();
    Call("gamepad_set_axis_deadzone", {0.0, 0.5});
    struct {
        double pushed, read;
    } const rows[] = {{0.49, 0}, {0.5, 0}, {0.75, 0.5}, {-0.75, -0.5}, {-1, -1}, {0.2, 0}};
    for (const auto& row : rows) {
        Stage_Pad(0).leftX = static_cast<int16_t>(row.pushed * 32768);
        Frame();
        EXPECT_NEAR(Axis(gp_axislh), row.read, 1e-4) << row.pushed;
    }
    Call("gamepad_set_axis_deadzone", {0.0, 1.0});
    Stage_Pad(0).leftX = -32768;
    Frame();
    EXPECT_EQ(Axis(gp_axislh), -1);
    Call("gamepad_set_axis_deadzone", {0.0, 0.0});
    Stage_Pad(0).leftY = 32767;
    Stage_Pad(0).rightX = 16384;
    Frame();
    EXPECT_LT(Axis(gp_axislv), -0.99) << "up is below 0";
    EXPECT_GT(Axis(1), 0.99) << "the plain axis as it stands";
    EXPECT_EQ(Axis(gp_axisrh), 0.5);
    EXPECT_EQ(Axis(77), 0);
    // Flags: an axis as a button, whole and its negative half; a button as an axis.
    Stage_Pad(0).rightX = -32768;
    Stage_Pad(0).buttons = 0x1000;
    Frame();
    EXPECT_EQ(Value(0x1000 + 2), 0);
    EXPECT_EQ(Value(0x3000 + 2), 1);
    EXPECT_EQ(PadButton(0x3000 + 2), "dp.");
    EXPECT_EQ(Axis(0x1000 + 12), 1);
}

TEST_F(GamePadTest, ComesWithTheDeviceChangeAndGoesWithThePoll)
{
    Start(false);
    EXPECT_EQ(Number("gamepad_get_device_count"), 12);
    EXPECT_EQ(Number("gamepad_is_supported"), 1);
    Stage_PlugPad(1, true, HostPadShape::Wheel);
    IO_Update();
    EXPECT_EQ(Heard(), std::vector<std::string>{}) << "polling finds nothing new";
    Frame();
    EXPECT_EQ(Heard(), std::vector<std::string>{"gamepad discovered 1"});
    EXPECT_EQ(Number("gamepad_is_connected", {1.0}), 1);
    EXPECT_EQ(Number("gamepad_button_count", {1.0}), 16);
    RValue text = Call("gamepad_get_description", {1.0});
    EXPECT_NE(std::string(VXGetText(&text)).find("WHEEL)"), std::string::npos);
    FREE_RValue(&text);
    Services_PostGamepads();
    EXPECT_EQ(Heard(), std::vector<std::string>{"gamepad discovered 1"}) << "a game starts over";

    Call("gamepad_set_button_threshold", {1.0, 0.1});
    Call("gamepad_set_vibration", {1.0, 2.0, -3.0});
    Stage_Pad(1).buttons = 0x1000;
    Frame();
    EXPECT_EQ(PadButton(gp_face1, 1), "dp.");
    EXPECT_EQ(Stage_PadVibration(1), 0xFFFF0000U);
    Stage_PlugPad(1, false);
    Frame();
    Frame();
    EXPECT_EQ(Heard(), std::vector<std::string>{"gamepad lost 1"});
    EXPECT_EQ(PadButton(gp_face1, 1), "...");
    EXPECT_EQ(Number("gamepad_axis_count", {1.0}), 0);
    EXPECT_NEAR(Number("gamepad_get_button_threshold", {1.0}), 0.1, 1e-6) << "the setting stays";
    for (const double outside : {-1.0, 12.0}) {
        Call("gamepad_set_vibration", {outside, 1.0, 1.0});
        EXPECT_EQ(PadButton(gp_face1, outside), "...");
        EXPECT_EQ(Number("gamepad_is_connected", {outside}), 0);
    }
}

TEST_F(GamePadTest, SystemWithoutPadsSaysSoOnce)
{
    Stage_MissPads();
    Start(false);
    EXPECT_EQ(PadButton(gp_face1) + PadButton(gp_face2), "......");
    EXPECT_EQ(Axis(gp_axislh), 0);
    ASSERT_EQ(Lines().size(), 1U);
    EXPECT_NE(Lines()[0].find("Gamepad support disabled"), std::string::npos);
    EXPECT_EQ(Number("gamepad_is_supported"), 0);
    Frame();
}

TEST_F(GamePadTest, OtherControllersTakeTheSlotsBehind)
{
    Start();
    HostJoystickState* state = Stage_PlugJoystick({70, kGuid, "Stick", 2, 3, 1});
    state->axes[1] = 500;
    state->buttons[2] = 1;
    state->hats[0] = 4;  // down
    Frame();
    EXPECT_EQ(Number("gamepad_button_count", {4.0}), 7);
    EXPECT_EQ(Number("gamepad_axis_count", {4.0}), 2);
    EXPECT_EQ(PadButton(0x8003, 4), "dp.") << "the constants are the plain indices";
    EXPECT_EQ(PadButton(5, 4), "dp.") << "the hat's third direction";
    EXPECT_EQ(Axis(gp_axislv, 4), 0.5) << "as it stands";
    Stage_PullJoystick(70);
    Frame();
    EXPECT_EQ(PadButton(5, 4), "...");
    EXPECT_EQ(Heard().back(), "gamepad lost 4");
    for (int32_t id = 100; id < 110; ++id) Stage_PlugJoystick({id, kGuid, "One of many", 2, 2, 0});
    Frame();
    EXPECT_EQ(Number("gamepad_is_connected", {11.0}), 1);

    GamePad_Quit();
    g_Switches.noDirectInput = true;
    Start();
    EXPECT_EQ(Number("gamepad_get_device_count"), 4);
    Frame();
}

TEST_F(GamePadTest, MappingTellsWhichButtonIsWhich)
{
    Start(false);
    const auto add = [this](const std::string& text) {
        Lines().clear();
        Call("gamepad_add_hardware_mapping_from_string", {text.c_str()});
        return Lines().size();
    };
    const std::string guid = kGuid;
    EXPECT_EQ(add(guid + ",Old,platform:linux,a:b0"), 0U);
    EXPECT_EQ(add(guid + ",Other,platform:windows,a:b3"), 0U);
    EXPECT_EQ(add(guid + ",Mine,platform:linux,a:b1,dpright:h0.2,start:a0,leftx:a1,misc:b7"), 0U);
    EXPECT_EQ(add("no record"), 1U);
    EXPECT_EQ(add("BEEF,Short,a:b1"), 1U);
    EXPECT_EQ(add(guid + ",Wrong,a:q1"), 2U) << "the value and the string";
    EXPECT_EQ(add(guid + ",Wrong,a:b1x"), 2U);
    EXPECT_EQ(add(guid + ",Far,platform:windows,a:b99999999999,dpup:h9.1"), 0U);
    HostJoystickState* state = Stage_PlugJoystick({70, guid.c_str(), "Stick", 2, 3, 1});
    state->buttons[1] = 1;
    state->hats[0] = 2;
    state->axes[0] = 1000;
    state->axes[1] = -250;
    Frame();
    RValue text = Call("gamepad_get_description", {4.0});
    EXPECT_STREQ(VXGetText(&text), "Mine");
    FREE_RValue(&text);
    EXPECT_EQ(PadButton(gp_face1, 4) + PadButton(gp_padr, 4) + PadButton(gp_start, 4), "dp.dp.dp.");
    EXPECT_EQ(PadButton(gp_face2, 4) + PadButton(gp_select, 4) + PadButton(gp_padu, 4),
              ".........");
    EXPECT_EQ(Axis(gp_axislh, 4), -0.25);
    RValue list = Call("gamepad_get_hardware_mappings");
    EXPECT_EQ(list.Kind(), VALUE_ARRAY);
    FREE_RValue(&list);
}

}  // namespace
