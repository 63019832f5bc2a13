#include "Files/IO/VirtualKeys.h"

#include "Files/Run/Services.h"

namespace {

SWVirtualKey g_keys[kVirtualKeys];

void ClearAll()
{
    for (SWVirtualKey& key : g_keys) key = SWVirtualKey{};
}

}  // namespace

void VirtualKeys_Init()
{
    ClearAll();
    Service_Hook(ServicePlace::ClearRoom, ClearAll);
}

void VirtualKeys_Quit()
{
    Service_Unhook(ServicePlace::ClearRoom, ClearAll);
}

int32_t VirtualKeys_Add(int32_t x, int32_t y, int32_t width, int32_t height, int32_t key)
{
    for (int32_t i = 0; i < kVirtualKeys; ++i) {
        if (g_keys[i].inUse || g_keys[i].visible) continue;
        g_keys[i] = {true, false, x, y, x + width, y + height, width, height, key, 0};
        return i + 1;
    }
    return -1;
}

SWVirtualKey* VirtualKeys_Find(int32_t handle)
{
    return handle >= 1 && handle <= kVirtualKeys ? &g_keys[handle - 1] : nullptr;
}
