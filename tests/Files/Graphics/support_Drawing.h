#pragma once
// A world with the soft device behind a recorder: what was sent, in order, and what
// it looks like.

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "Files/Background/CBackground.h"
#include "Files/Base/Archive_Records.h"
#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Gui.h"
#include "Files/Graphics/Quad.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/Window.h"
#include "Files/Graphics_API/Device_Soft.h"
#include "Files/Sprite/CSprite.h"
#include "tests/Files/support_World.h"

struct Sent {
    std::string what;                      // "draw", "state", "discard", "append", "buffer"
    int32_t a = 0, b = 0;                  // primitive and vertices; state and value; bytes
    std::vector<VertexTextured> vertices;  // of a draw from system memory
};

class DrawingTest : public World {
protected:
    static constexpr int32_t kWidth = 100, kHeight = 80;
    static constexpr uint32_t kRed = 0xFFFF0000U, kGreen = 0xFF00FF00U, kBlue = 0xFF0000FFU;

    void SetUp() override
    {
        World::SetUp();
        OpenDevice(kWidth, kHeight);
    }
    void TearDown() override
    {
        if (g_Device) CloseDevice();
        Background_Quit();
        World::TearDown();
    }

    // Window and back buffer of that size; the application surface as the window.
    void OpenDevice(int32_t width, int32_t height)
    {
        g_Display.windowWidth = g_Display.deviceWidth = kWidth;
        g_Display.windowHeight = g_Display.deviceHeight = kHeight;
        g_Display.clientWidth = g_Display.backbufferWidth = width;
        g_Display.clientHeight = g_Display.backbufferHeight = height;
        g_Display.interpolate = false;
        g_Display.windowColour = 0xFF000000U;
        char error[256];
        ASSERT_TRUE(Device_Soft.Open({width, height, false, 0, 0}, error, sizeof error)) << error;
        Log().clear();
        Recorder() = Device_Soft;
        Recorder().Draw = RecordDraw;
        Recorder().DrawUp = RecordDrawUp;
        Recorder().SetRenderState = RecordState;
        Recorder().LockBuffer = RecordLock;
        Recorder().CreateBuffer = RecordCreate;
        g_Device = &Recorder();
        Draw_Init();
        ASSERT_TRUE(Graphics_Start());
        Log().clear();
    }
    void CloseDevice()
    {
        Graphics_Stop();
        g_Device->Close();
        g_Device = nullptr;
    }

    static std::vector<Sent>& Log()
    {
        static std::vector<Sent> log;
        return log;
    }
    static std::vector<Sent> Draws()
    {
        std::vector<Sent> draws;
        for (const Sent& sent : Log())
            if (sent.what == "draw") draws.push_back(sent);
        return draws;
    }

    // A page of raw pixels, all of one colour 0xAARRGGBB; the slot.
    int32_t Page(int32_t width, int32_t height, uint32_t colour)
    {
        const std::vector<uint32_t> pixels(static_cast<size_t>(width * height), colour);
        return Texture_CreateFromPixels(width, height, pixels.data(),
                                        static_cast<uint32_t>(pixels.size() * 4));
    }
    ArchivePageEntry Entry(int32_t slot, uint16_t size)
    {
        return {0, 0, size, size, 0, 0, size, size, size, size, static_cast<int16_t>(slot)};
    }
    // A sprite of one plain colour made at run time.
    int32_t PlainSprite(int32_t size, uint32_t colour, const char* name = "plain");

    static uint32_t BackBuffer(int32_t x, int32_t y)
    {
        Batch_Flush();
        int32_t width = 0, height = 0;
        const uint32_t* pixels = Device_Soft_BackBuffer(&width, &height);
        return pixels[y * width + x];
    }
    static uint32_t SurfacePixel(int32_t id, int32_t x, int32_t y)
    {
        uint32_t* pixels = Surface_Grab(id, x, y, 1, 1);
        const uint32_t pixel = pixels ? *pixels : 0;
        MemoryManager::Free(pixels);
        return pixel;
    }

private:
    static DeviceTable& Recorder()
    {
        static DeviceTable table;
        return table;
    }
    static void RecordDraw(DevicePrimitive primitive, int32_t stride, DeviceBuffer* buffer,
                           uint32_t offset, int32_t count)
    {
        Log().push_back({"draw", static_cast<int32_t>(primitive), count, {}});
        Device_Soft.Draw(primitive, stride, buffer, offset, count);
    }
    static void RecordDrawUp(DevicePrimitive primitive, int32_t stride, const void* vertices,
                             int32_t count)
    {
        Sent sent{"draw", static_cast<int32_t>(primitive), count, {}};
        const auto* first = static_cast<const VertexTextured*>(vertices);
        sent.vertices.assign(first, first + count);
        Log().push_back(sent);
        Device_Soft.DrawUp(primitive, stride, vertices, count);
    }
    static void RecordState(int32_t state, uint32_t value)
    {
        Log().push_back({"state", state, static_cast<int32_t>(value), {}});
        Device_Soft.SetRenderState(state, value);
    }
    static void* RecordLock(DeviceBuffer* buffer, uint32_t offset, uint32_t bytes, DeviceLock mode)
    {
        Log().push_back({mode == DeviceLock::Discard ? "discard" : "append",
                         static_cast<int32_t>(offset),
                         static_cast<int32_t>(bytes),
                         {}});
        return Device_Soft.LockBuffer(buffer, offset, bytes, mode);
    }
    static DeviceBuffer* RecordCreate(uint32_t bytes, bool dynamic)
    {
        Log().push_back({"buffer", static_cast<int32_t>(bytes), 0, {}});
        return Device_Soft.CreateBuffer(bytes, dynamic);
    }
};
