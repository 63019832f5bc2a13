// An output without hardware: sounds run and end in real time, and nothing is heard.

#include "Files/Sound/VXOpenAL/ALu.h"
#include "Host/Host.h"

namespace {

struct ALCdevice_null final : ALCdevice_struct {
    VxVector<int16_t> block;
    int64_t startTime = 0, rendered = 0;  // microseconds; frames since then
    std::atomic<bool> stopping{false};
    void* thread = nullptr;

    void open(const char*) override {}
    void close() override {}
    void reset() override;
    void start() override;
    void stop() override;
    bool pump() override { return !thread && RenderDue(); }
    bool RenderDue();
};

void ALCdevice_null::reset()
{
    block.assign(size_t{updateSize} * static_cast<size_t>(channels), 0);
    scratch.resize(block.size());
}

// Where no thread can be had the program's own frames render.
void ALCdevice_null::start()
{
    startTime = g_Host.clock.Micros();
    rendered = 0;
    stopping = false;
    thread = g_Host.process.StartThread(
        [](void* context) {
            auto* device = static_cast<ALCdevice_null*>(context);
            while (!device->stopping)
                if (!device->RenderDue()) g_Host.clock.Block(1);
        },
        this);
}

void ALCdevice_null::stop()
{
    stopping = true;
    g_Host.process.JoinThread(thread);
    thread = nullptr;
}

bool ALCdevice_null::RenderDue()
{
    const int64_t due = (g_Host.clock.Micros() - startTime) * frequency / 1000000;
    if (due - rendered < updateSize) return false;
    ALu_Block(this, block.data(), updateSize);
    rendered += updateSize;
    return true;
}

}  // namespace

ALCdevice_struct* ALCdevice_MakeNull()
{
    return VxNew<ALCdevice_null>();
}
