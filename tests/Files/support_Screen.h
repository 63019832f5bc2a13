#pragma once
// A world with the stage's window and the soft device: whole rounds of the main loop.

#include "Files/Graphics/Surface.h"
#include "Files/Graphics/Window.h"
#include "Files/Graphics_API/Device_Soft.h"
#include "Files/IO/IO.h"
#include "Files/Run/Run_Modules.h"
#include "Host/Host_Stage.h"
#include "tests/Files/support_World.h"

class ScreenWorld : public World {
protected:
    static constexpr uint32_t kFlags = INFO_INTERPOLATE | INFO_KEEP_ASPECT | INFO_CURSOR;

    void SetUp() override
    {
        World::SetUp();
        RunState_Reset();
        g_QuitSeen = false;
        g_Running = true;
    }
    void TearDown() override
    {
        CloseWindow();
        RunState_Reset();
        RunState_Free();
        World::TearDown();
    }

    bool OpenWindow(uint32_t flags = kFlags, int32_t width = 854, int32_t height = 480)
    {
        Window_Init();
        Window_SetHeader(width, height, flags, "test");
        if (!Window_Create(width, height) || !GR_D3D_Init(width, height, flags)) return false;
        IO_Init();
        return true;
    }
    void CloseWindow()
    {
        IO_Quit();
        GR_D3D_Quit();
        Window_Destroy();
    }
    // The first room of the world with its window, ready for rounds.
    void Start(uint32_t flags = kFlags)
    {
        ASSERT_TRUE(OpenWindow(flags));
        if (Room_Count() == 0) AddRoom("room");
        Begin();
        g_LastFrameStart = g_FpsClock = Clock_Micros();
    }
    void Rounds(int count)
    {
        for (int i = 0; i < count && g_Running; ++i) Runner_Round();
    }
    std::string Client()
    {
        int32_t width, height;
        g_Host.window.ClientSize(&width, &height);
        return std::to_string(width) + "x" + std::to_string(height);
    }
    std::string Corner()
    {
        int32_t x, y;
        g_Host.window.ClientPosition(&x, &y);
        return std::to_string(x) + "," + std::to_string(y);
    }
};
