#include "Host/Host.h"

#include "Host/Host_Audio.h"
#include "Host/Host_Pads.h"

Host g_Host{};
HostPadTable g_HostPads{};
HostAudioTable g_HostAudio{};
