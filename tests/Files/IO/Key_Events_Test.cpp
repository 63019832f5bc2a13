// Whole frames of a small world under the keys: what the events see, from the message
// to the step that follows.

#include "Files/IO/IO.h"
#include "Files/Run/Run_State.h"
#include "Host/Host_Stage.h"
#include "tests/Files/support_World.h"

namespace {

class KeyEvents : public World {
protected:
    void Round()
    {
        Process_Messages();
        StepOnly();
    }
    // An object that minds all three events of its keys, placed once.
    int32_t Minding(const std::vector<int32_t>& keys)
    {
        std::vector<EventKey> events = {{EVENT_STEP, STEP_NORMAL}};
        for (const int32_t key : keys)
            for (const int32_t type : {EVENT_KEYBOARD, EVENT_KEYPRESS, EVENT_KEYRELEASE})
                events.push_back({type, key});
        const int32_t object = AddObject("it", events);
        Place(AddRoom("room"), object);
        Begin();
        IO_Clear();
        Forget("it.Step");
        return object;
    }
};

TEST_F(KeyEvents, NoPressIsLostBetweenTwoFrames)
{
    Minding({'A'});
    Stage_Key('A', true);
    Stage_Key('A', false);
    bool pressedInStep = false, downInStep = true;
    On("it.Step", [&](CInstance*, CInstance*) {
        pressedInStep = IO_KeyPressed('A');
        downInStep = IO_KeyCheck('A');
    });
    Round();
    EXPECT_EQ(Take(), (Log{"it.Key65", "it.Press65", "it.Release65"}));
    EXPECT_TRUE(pressedInStep) << "the latch lives for the whole frame";
    EXPECT_FALSE(downInStep);
    Round();
    EXPECT_EQ(Take(), Log{});
    EXPECT_FALSE(pressedInStep);
}

TEST_F(KeyEvents, ThirtySixKeysAtOnceComeInTheOrderOfTheirNumbers)
{
    std::vector<int32_t> keys;
    for (int32_t key = '0'; key <= '9'; ++key) keys.push_back(key);
    for (int32_t key = 'A'; key <= 'Z'; ++key) keys.push_back(key);
    Minding(keys);
    Log down, held, up;
    for (const int32_t key : keys) {
        const std::string number = std::to_string(key);
        down.insert(down.end(), {"it.Key" + number, "it.Press" + number});
        held.push_back("it.Key" + number);
        up.push_back("it.Release" + number);
    }
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) Stage_Key(*key, true);
    Round();
    EXPECT_EQ(Take(), down);
    Round();
    EXPECT_EQ(Take(), held);
    for (const int32_t key : keys) Stage_Key(key, false);
    Round();
    EXPECT_EQ(Take(), up);
}

TEST_F(KeyEvents, KeyClearedInAnEventIsUpForTheRestOfTheFrame)
{
    Minding({'A', 'B'});
    On("it.Key65", [](CInstance*, CInstance*) {
        IO_KeyClear('A');
        IO_KeyClear('B');
    });
    Stage_Key('A', true);
    Stage_Key('B', true);
    Round();
    EXPECT_EQ(Take(), (Log{"it.Key65"}));
    Round();
    EXPECT_EQ(Take(), Log{}) << "held on, but no new message came";
}

TEST_F(KeyEvents, PressOfAScriptComesThroughTheQueueInTheNextFrame)
{
    Minding({'Q'});
    int step = 0;
    On("it.Step", [&](CInstance*, CInstance*) {
        if (++step <= 2) g_Host.window.SendKey('Q', step == 1);
        EXPECT_EQ(IO_KeyCheck('Q'), step == 2);
    });
    Round();
    EXPECT_EQ(Take(), Log{});
    Round();
    EXPECT_EQ(Take(), (Log{"it.Key81", "it.Press81"}));
    Round();
    EXPECT_EQ(Take(), (Log{"it.Release81"}));
}

TEST_F(KeyEvents, HeldThroughALossOfFocusItMustBePressedAnew)
{
    Minding({'A'});
    HostMessage away{};
    away.type = HostMessageType::ActivateApp;
    Stage_Key('A', true);
    Round();
    EXPECT_EQ(Take(), (Log{"it.Key65", "it.Press65"}));
    Stage_Post(away);
    Round();
    away.flag = true;  // and back
    Stage_Post(away);
    Round();
    EXPECT_EQ(Take(), Log{}) << "nor is it released: the game saw the last of it";
    Stage_Key('A', false);
    Stage_Key('A', true);
    Round();
    EXPECT_EQ(Take(), (Log{"it.Key65", "it.Press65", "it.Release65"}));
}

}  // namespace
