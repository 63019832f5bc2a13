// Sound output of the stage: as many samples as the stage's clock has moved on.

#include "Host/Host_Stage_Audio.h"

#include "Host/Host.h"

namespace {

struct Output {
    bool unplugged = false, open = false, started = false, keep = false;
    HostAudioRequest request{};
    int64_t start = 0, pulled = 0;  // microseconds; frames since then
    VxVector<int16_t> piece, kept;
};
Output* g_output;

Output& Out()
{
    if (!g_output) g_output = VxNew<Output>();
    return *g_output;
}

bool Open(int32_t, const HostAudioRequest& request)
{
    Output& out = Out();
    if (out.unplugged) return false;
    out.open = true;
    out.request = request;
    out.piece.resize(static_cast<size_t>(request.frames) * static_cast<size_t>(request.channels));
    return true;
}

void Start()
{
    Output& out = Out();
    out.started = true;
    out.start = g_Host.clock.Micros();
    out.pulled = 0;
}

void Close()
{
    if (g_output) g_output->open = g_output->started = false;
}

bool Step()
{
    Output& out = Out();
    if (!out.started) return false;
    const int64_t due = (g_Host.clock.Micros() - out.start) * out.request.rate / 1000000;
    if (due - out.pulled < out.request.frames) return false;
    out.request.Pull(out.request.context, out.piece.data(), out.request.frames);
    out.pulled += out.request.frames;
    if (out.keep) out.kept.insert(out.kept.end(), out.piece.begin(), out.piece.end());
    return true;
}

}  // namespace

const HostAudioTable kStageAudio = {
    .stepped = true,
    .DeviceCount = []() -> int32_t { return Out().unplugged ? 0 : 1; },
    .DeviceName = [](int32_t) { return "Stage"; },
    .DriverName = [] { return "stage"; },
    .Open = Open,
    .Start = Start,
    .Close = Close,
    .LastError = [] { return "it is not plugged in"; },
    .Step = Step,
};

void Stage_ResetAudio()
{
    VxDelete(g_output);
    g_output = nullptr;
}

void Stage_PlugAudio(bool plugged)
{
    Out().unplugged = !plugged;
}

void Stage_KeepSound(bool keep)
{
    Out().keep = keep;
    Out().kept.clear();
}

const VxVector<int16_t>& Stage_Sound()
{
    return Out().kept;
}

bool Stage_AudioOpen()
{
    return g_output && g_output->open;
}
