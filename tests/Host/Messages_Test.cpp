// From the desktop's events to the runtime's messages.

#include <gtest/gtest.h>

#include <string>

#include "Host/Host_SDL.h"

namespace {

class MessagesTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        Host_UseSDL();
        SDL_SetHint(SDL_HINT_VIDEODRIVER, "dummy");  // the layout comes with a driver
        if (SDL_Init(SDL_INIT_VIDEO) != 0) GTEST_SKIP() << SDL_GetError();
        SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
        sdl::ForgetMessages();
    }
    void TearDown() override
    {
        sdl::ForgetMessages();
        SDL_Quit();
        SDL_ClearHints();
    }

    Uint32 now_ = 5000;  // milliseconds

    // As SDL_PushEvent, which would set the time.
    static void Add(SDL_Event* event) { SDL_PeepEvents(event, 1, SDL_ADDEVENT, 0, 0); }
    void Key(SDL_Scancode scan, bool down, Uint16 mod = 0, bool repeat = false)
    {
        SDL_Event event{};
        event.type = down ? SDL_KEYDOWN : SDL_KEYUP;
        event.key.keysym.scancode = scan;
        event.key.keysym.sym = SDL_GetKeyFromScancode(scan);
        event.key.keysym.mod = mod;
        event.key.repeat = repeat;
        event.key.timestamp = now_;
        Add(&event);
    }
    void Focus(bool gained)
    {
        SDL_Event event{};
        event.type = SDL_WINDOWEVENT;
        event.window.event = gained ? SDL_WINDOWEVENT_FOCUS_GAINED : SDL_WINDOWEVENT_FOCUS_LOST;
        event.window.timestamp = now_;
        Add(&event);
    }
    // "+65" down, "=65" repeated, "-65" up, "c97" typed, "focus", "away".
    static std::string Messages()
    {
        std::string seen;
        HostMessage message;
        while (g_Host.window.NextMessage(&message)) {
            const std::string key = std::to_string(message.key) + (message.extended ? "x " : " ");
            if (message.type == HostMessageType::KeyDown)
                seen += (message.repeat ? "=" : "+") + key;
            if (message.type == HostMessageType::KeyUp) seen += "-" + key;
            if (message.type == HostMessageType::Char)
                seen += "c" + std::to_string(message.unit) + " ";
            if (message.type == HostMessageType::ActivateApp)
                seen += message.flag ? "focus " : "away ";
        }
        return seen;
    }
};

TEST_F(MessagesTest, ControlCharacters)
{
    Key(SDL_SCANCODE_A, true, KMOD_LCTRL);
    Key(SDL_SCANCODE_Z, true, KMOD_RCTRL | KMOD_LSHIFT);
    Key(SDL_SCANCODE_A, true, KMOD_LCTRL | KMOD_RALT);
    EXPECT_EQ(Messages(), "+65 c1 +90 c26 +65 ");
    for (const SDL_Scancode scan :
         {SDL_SCANCODE_RETURN, SDL_SCANCODE_BACKSPACE, SDL_SCANCODE_TAB, SDL_SCANCODE_ESCAPE}) {
        Key(scan, true);
        Key(scan, true, KMOD_LCTRL);
    }
    EXPECT_EQ(Messages(), "+13 c13 +13 c10 +8 c8 +8 c127 +9 c9 +9 +27 c27 +27 c27 ");
}

TEST_F(MessagesTest, KeyHeldWhileTheFocusIsAwayMustBePressedAnew)
{
    Focus(true);
    Key(SDL_SCANCODE_A, true);
    Key(SDL_SCANCODE_B, true);
    now_ += 1000;
    Key(SDL_SCANCODE_B, false);
    now_ += 100;
    Key(SDL_SCANCODE_A, false);  // SDL lets go of it, the finger does not
    Focus(false);
    now_ += 5000;
    Focus(true);
    EXPECT_EQ(Messages(), "focus +65 +66 -66 -65 away focus ");
    now_ += 650;
    Key(SDL_SCANCODE_A, true);
    Key(SDL_SCANCODE_A, true, 0, true);
    Key(SDL_SCANCODE_B, true);
    EXPECT_EQ(Messages(), "=65 =65 +66 ");
    Key(SDL_SCANCODE_A, false);
    Key(SDL_SCANCODE_A, true);
    EXPECT_EQ(Messages(), "-65 +65 ");

    // Long after the focus came back no held key is silent any more.
    Key(SDL_SCANCODE_A, false);
    Focus(false);
    Focus(true);
    now_ += 800;
    Key(SDL_SCANCODE_A, true);
    EXPECT_EQ(Messages(), "-65 away focus +65 ");
}

TEST_F(MessagesTest, SidesAndWhatAScriptDoesWithAHeldKey)
{
    Key(SDL_SCANCODE_RSHIFT, true);
    Key(SDL_SCANCODE_RCTRL, true);
    Key(SDL_SCANCODE_RCTRL, false);
    EXPECT_EQ(Messages(), "+16 +17x -17x ");
    g_Host.window.SendKey(163, true);
    EXPECT_EQ(Messages(), "+17x ");
    EXPECT_TRUE(g_Host.window.KeyState(17) && g_Host.window.KeyState(163));
    EXPECT_FALSE(g_Host.window.KeyState(162));
    Key(SDL_SCANCODE_RCTRL, true);
    EXPECT_EQ(Messages(), "=17x ") << "it was down already";
    EXPECT_FALSE(g_Host.window.KeyState(17)) << "the hand has it now, and SDL saw no hand";
    g_Host.window.SendKey('A', true);
    EXPECT_EQ(Messages(), "+65 c97 ");
}

}  // namespace
