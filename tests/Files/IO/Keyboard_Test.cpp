// Keys from the message to what a script sees in its frame.

#include "tests/Files/IO/support_Input.h"

namespace {

constexpr int32_t kShift = 16, kControl = 17, kAlt = 18, kEnter = 13;

class KeyboardTest : public InputTest {};

TEST_F(KeyboardTest, LatchesLiveForOneFrameAndNoPressIsLost)
{
    Stage_Key('A', true);
    Frame();
    EXPECT_EQ(Key('A'), "dp.");
    Frame();
    EXPECT_EQ(Key('A'), "d..");
    Stage_Key('A', false);
    Frame();
    EXPECT_EQ(Key('A'), "..r");
    Frame();
    EXPECT_EQ(Key('A'), "...");

    Stage_Key('B', true);
    Stage_Key('B', false);
    Frame();
    EXPECT_EQ(Key('B'), ".pr");
    // Between two frames the message side collects; no frame means nothing is seen.
    Stage_Key('C', true);
    Process_Messages();
    EXPECT_EQ(Key('C'), "...");
    Frame();
    EXPECT_EQ(Key('C'), "dp.");
}

TEST_F(KeyboardTest, RepeatsAreNoPresses)
{
    Stage_Key('A', true);
    Stage_Key('B', true);
    Frame();
    Repeat('A');
    Frame();
    EXPECT_EQ(Key('A'), "d..");
    EXPECT_EQ(Variable("keyboard_lastkey"), 'A');
    EXPECT_EQ(Variable("keyboard_key"), 'A');
    // A second down message without the repeat mark, of a key that is down, neither.
    g_IOMessage.keyDownMsg[65] = 1;
    Key_Down('A', false);
    IO_Update();
    EXPECT_EQ(Key('A'), "d..");
}

TEST_F(KeyboardTest, KeyGoesBackToTheOneStillHeld)
{
    Stage_Key('A', true);
    Stage_Key('B', true);
    Frame();
    EXPECT_EQ(Variable("keyboard_key"), 'B');
    Stage_Key('B', false);
    Frame();
    EXPECT_EQ(Variable("keyboard_key"), 'A');
    EXPECT_EQ(Variable("keyboard_lastkey"), 'B');
    Stage_Key('A', false);
    Frame();
    EXPECT_EQ(Variable("keyboard_key"), 0);

    Stage_Key('A', true);
    Stage_Key('B', true);
    Stage_Key('A', false);
    Frame();
    EXPECT_EQ(Variable("keyboard_key"), 'B');
}

TEST_F(KeyboardTest, AnyNumberWrittenAsTheCurrentKeyDoesNoHarm)
{
    for (const double written : {300.0, -4.0, 2e9}) {
        SetNumber("keyboard_key", written);
        Stage_Key('A', true);
        Stage_Key('A', false);
        Frame();
        EXPECT_EQ(Variable("keyboard_key"), 0);
        EXPECT_EQ(Key('A'), ".pr");
    }
    SetNumber("keyboard_lastkey", -1);
    Frame();
    EXPECT_EQ(Variable("keyboard_lastkey"), -1) << "stands until the next key";
}

TEST_F(KeyboardTest, NoneAnyAndNumbersThatAreNoKeys)
{
    Frame();
    EXPECT_TRUE(Check(0) && Pressed(0) && Released(0));
    EXPECT_FALSE(Check(1) || Pressed(1) || Released(1));
    Stage_Key('A', true);
    Frame();
    EXPECT_TRUE(Check(1) && Pressed(1) && Released(0));
    EXPECT_FALSE(Check(0) || Pressed(0));
    Frame();
    EXPECT_TRUE(Check(1) && Pressed(0));
    for (const int32_t key : {-1, 256, 100000}) EXPECT_EQ(Key(key), "...") << key;
}

TEST_F(KeyboardTest, ClearedKeyIsUpUntilItIsPressedAnew)
{
    Stage_Key('A', true);
    Stage_Key('B', true);
    Frame();
    Call("keyboard_clear", {double('A')});
    EXPECT_EQ(Key('A'), "...");
    EXPECT_EQ(Key('B'), "dp.");
    Frame();
    EXPECT_EQ(Key('A'), "...");
    // The key's repeat, since it is still held, brings it down but is no press.
    Repeat('A');
    Frame();
    EXPECT_EQ(Key('A'), "d..");
    Call("keyboard_clear", {-1.0});
    Call("keyboard_clear", {256.0});
    EXPECT_EQ(Key('A'), "d..");
}

TEST_F(KeyboardTest, ScriptedPressShowsInTheNextFrame)
{
    Frame();
    Call("keyboard_key_press", {double('Q')});
    EXPECT_EQ(Key('Q'), "...");
    Frame();
    EXPECT_EQ(Key('Q'), "dp.");
    EXPECT_EQ(Number("keyboard_check_direct", {double('Q')}), 1);
    Call("keyboard_key_release", {double('Q')});
    EXPECT_EQ(Key('Q'), "dp.");
    Frame();
    EXPECT_EQ(Key('Q'), "..r");
    EXPECT_EQ(Number("keyboard_check_direct", {double('Q')}), 0);

    EXPECT_EQ(Number("keyboard_get_numlock"), 0);
    Call("keyboard_set_numlock", {1.0});
    EXPECT_EQ(Number("keyboard_get_numlock"), 1);
    Call("keyboard_set_numlock", {1.0});
    EXPECT_EQ(Number("keyboard_get_numlock"), 1);
}

TEST_F(KeyboardTest, ScriptedPressTypes)
{
    const auto tap = [this](int32_t key) {
        Call("keyboard_key_press", {double(key)});
        Call("keyboard_key_release", {double(key)});
    };
    for (const int32_t key : {int('A'), int('B'), 8, 32, int('7'), 98, 37, kEnter}) tap(key);
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "a 72");
    EXPECT_EQ(VariableText("keyboard_lastchar"), "\r");
    Call("keyboard_key_press", {double(kShift)});
    tap('A');
    tap(20);  // Caps Lock
    tap('A');
    Call("keyboard_key_release", {double(kShift)});
    tap('A');
    Call("keyboard_key_press", {double(kControl)});
    tap('A');
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "a 72AaA");
    EXPECT_EQ(VariableText("keyboard_lastchar"), "\x01");
}

TEST_F(KeyboardTest, ScriptedPressOfAnOneSidedKeyIsAlsoThatOfBoth)
{
    for (const int32_t both : {kShift, kControl, kAlt}) {
        const int32_t left = 160 + 2 * (both - kShift);
        for (const int32_t pressed : {both, left, left + 1}) {
            Call("keyboard_key_press", {double(pressed)});
            Frame();
            EXPECT_EQ(Key(both), "dp.") << pressed;
            EXPECT_EQ(Key(left), pressed == left + 1 ? "..." : "dp.") << pressed;
            EXPECT_EQ(Key(left + 1), pressed == left + 1 ? "dp." : "...") << pressed;
            EXPECT_EQ(Number("keyboard_check_direct", {double(both)}), 1);
            Call("keyboard_key_release", {double(pressed)});
            Frame();
            EXPECT_TRUE(Check(0)) << pressed;
            Frame();
        }
    }
}

TEST_F(KeyboardTest, ScriptAndHandOnTheSameKey)
{
    const auto direct = [this] { return Number("keyboard_check_direct", {double('A')}); };
    Stage_Key('A', true);
    Frame();
    Call("keyboard_key_press", {double('A')});
    Frame();
    EXPECT_EQ(Key('A'), "d..") << "it was down already";
    Call("keyboard_key_release", {double('A')});
    Frame();
    EXPECT_EQ(Key('A'), "..r");
    EXPECT_EQ(direct(), 0) << "let go, though the finger is still there";
    Stage_Key('A', true);  // the desktop repeats what is held
    Frame();
    EXPECT_EQ(Key('A'), "dp.");
    EXPECT_EQ(direct(), 1);
    Call("keyboard_key_release", {double('A')});
    Stage_Key('A', false);
    Stage_Key('A', true);
    EXPECT_EQ(direct(), 1);
}

TEST_F(KeyboardTest, FocusChangeLetsGoOfEverything)
{
    Stage_Key('A', true);
    Type(u"hi");
    Button(1, true);
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "hi");
    Activate(false);
    Process_Messages();
    EXPECT_EQ(Key('A'), "...");
    EXPECT_EQ(MouseButton(1), "...");
    EXPECT_EQ(VariableText("keyboard_string"), "");
    EXPECT_EQ(Variable("keyboard_key"), 0);
    EXPECT_EQ(Variable("mouse_button"), 0);
    Activate(true);
    Frame();
    EXPECT_EQ(Key('A'), "...") << "a key held across the change must be pressed anew";
}

TEST_F(KeyboardTest, ManyKeysAtOnce)
{
    for (int32_t key = 'A'; key <= 'Z'; ++key) Stage_Key(key, true);
    for (int32_t key = '0'; key <= '9'; ++key) Stage_Key(key, true);
    Frame();
    for (int32_t key = 'A'; key <= 'Z'; ++key) EXPECT_EQ(Key(key), "dp.");
    for (int32_t key = '0'; key <= '9'; ++key) EXPECT_EQ(Key(key), "dp.");
}

TEST_F(KeyboardTest, SidesOfAltControlAndShift)
{
    HostMessage message{};
    for (const bool right : {false, true}) {
        message.type = HostMessageType::KeyDown;
        message.extended = right;
        message.key = kAlt;
        Stage_Post(message);
        message.key = kControl;
        Stage_Post(message);
        Frame();
        EXPECT_TRUE(Check(kAlt) && Check(kControl));
        EXPECT_EQ(Check(164), !right);
        EXPECT_EQ(Check(165), right);
        EXPECT_EQ(Check(162), !right);
        EXPECT_EQ(Check(163), right);
        message.type = HostMessageType::KeyUp;
        Stage_Post(message);
        message.key = kAlt;
        Stage_Post(message);
        Frame();
        for (const int32_t key : {kAlt, kControl, 162, 163, 164, 165}) EXPECT_FALSE(Check(key));
    }
    // Shift tells its side only when polled: the key state changes without a message.
    Stage_Key(161, true);
    g_QuitSeen = true;  // the pump stands still
    Frame();
    EXPECT_EQ(Key(161), "dp.");
    EXPECT_EQ(Key(160), "...");
    EXPECT_EQ(Key(kShift), "...");
    Frame();
    EXPECT_EQ(Key(161), "d..");
    Stage_Key(161, false);
    Frame();
    EXPECT_EQ(Key(161), "..r");
}

TEST_F(KeyboardTest, MapTurnsOneKeyIntoAnother)
{
    Call("keyboard_set_map", {double('W'), 38.0});
    EXPECT_EQ(Number("keyboard_get_map", {double('W')}), 38);
    EXPECT_EQ(Number("keyboard_get_map", {300.0}), 300);
    Stage_Key('W', true);
    Frame();
    EXPECT_EQ(Key('W'), "...");
    EXPECT_EQ(Key(38), "dp.");
    Stage_Key('W', false);
    Frame();
    EXPECT_EQ(Key(38), "..r");
    Call("keyboard_set_map", {double('W'), 999.0});  // mapped away
    Stage_Key('W', true);
    Frame();
    EXPECT_TRUE(Check(0));
    Call("keyboard_set_map", {999.0, 5.0});
    Call("keyboard_set_map", {-1.0, 5.0});
    Call("keyboard_unset_map");
    EXPECT_EQ(Number("keyboard_get_map", {double('W')}), 'W');
}

TEST_F(KeyboardTest, TypedText)
{
    Type(u"ab\bc\x01\r");
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "ac");
    EXPECT_EQ(VariableText("keyboard_lastchar"), "\r");
    Type(u"\b\b\b\b");
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "");
    Type(u"\u00e7\u20ac");
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "\u00e7\u20ac");

    SetText("keyboard_string", "s\u00e3o");
    Type(u"!");
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "s\u00e3o!");
    // Characters of two units go in and out whole.
    Type(u"\U0001F600");
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "s\u00e3o!\U0001F600");
    SetText("keyboard_string", "a\U0001F4E6\xC3\xA7");
    EXPECT_EQ(VariableText("keyboard_string"), "a\U0001F4E6\u00e7");
    Type(u"\b\b");
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "a");
    SetText("keyboard_string", (std::string(1022, 'x') + "\U0001F4E6y").c_str());
    EXPECT_EQ(VariableText("keyboard_string"), std::string(1022, 'x')) << "both halves or none";

    SetText("keyboard_lastchar", "xyz");
    EXPECT_EQ(VariableText("keyboard_lastchar"), "x");
}

TEST_F(KeyboardTest, FullTextStartsOverFromItsLastCharacter)
{
    Type(std::u16string(1022, u'a') + u"b");
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), std::string(1022, 'a') + "b");
    Type(u"c");
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "bc");
    SetText("keyboard_string", std::string(3000, 'x').c_str());
    EXPECT_EQ(VariableText("keyboard_string"), std::string(1023, 'x'));
    Type(u"y");
    Frame();
    EXPECT_EQ(VariableText("keyboard_string"), "xy");
}

TEST_F(KeyboardTest, WaitEndsWithAPressOrTheProgram)
{
    Stage_Key('A', true);
    Call("keyboard_wait");
    Frame();
    EXPECT_EQ(Key('A'), "dp.");
    Button(2, true);
    Call("mouse_wait");
    Frame();
    EXPECT_EQ(MouseButton(2), "dp.");

    // A press that the frame has seen arrive is not the one to wait for; a quick one is.
    Stage_Key('B', true);
    Button(1, true);
    Process_Messages();
    HostMessage quit{};
    quit.type = HostMessageType::Quit;
    Stage_Key('C', true);
    Stage_Key('C', false);
    Call("keyboard_wait");
    EXPECT_FALSE(g_QuitSeen);
    Button(3, true);
    Button(3, false);
    Stage_Key('C', true);
    Call("mouse_wait");
    Call("io_clear");
    Repeat('C');
    Stage_Post(quit);
    Stage_Key('Z', true);
    g_Running = true;
    Call("keyboard_wait");
    EXPECT_FALSE(g_Running);
    EXPECT_TRUE(g_QuitSeen);
    Frame();
    EXPECT_FALSE(Check('Z')) << "what is behind the quit stays in the queue";
}

TEST_F(KeyboardTest, AltWithEnterAndWithF4)
{
    HostMessage message{};
    message.type = HostMessageType::KeyDown;
    message.system = true;
    message.key = kEnter;
    Stage_Post(message);
    Frame();
    EXPECT_TRUE(g_Display.fullscreen);
    EXPECT_EQ(g_Display.resetCountdown, 1);
    message.repeat = true;  // held
    Stage_Post(message);
    Frame();
    EXPECT_TRUE(g_Display.fullscreen);
    message.repeat = false;
    g_Display.altEnterEnabled = false;
    Stage_Post(message);
    Frame();
    EXPECT_TRUE(g_Display.fullscreen);

    message.key = 115;
    g_Running = true;
    Stage_Post(message);
    Frame();
    EXPECT_FALSE(g_Running);
    EXPECT_FALSE(Check(115));
}

}  // namespace
