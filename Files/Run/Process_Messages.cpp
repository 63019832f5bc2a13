#include <thread>

#include "Files/Graphics/Window.h"
#include "Files/Run/Run_State.h"
#include "Host/Host.h"

bool g_QuitSeen;

namespace {
const std::thread::id g_mainThread = std::this_thread::get_id();
}

// All waiting messages, on the main thread only. A quit ends the pump and leaves
// the rest in the queue.
void Process_Messages()
{
    if (std::this_thread::get_id() != g_mainThread) return;
    HostMessage message;
    while (!g_QuitSeen && g_Host.window.NextMessage(&message)) {
        if (message.type == HostMessageType::Quit) {
            g_QuitSeen = true;
            g_Running = false;
            return;
        }
        Window_Proc(message);
    }
}
