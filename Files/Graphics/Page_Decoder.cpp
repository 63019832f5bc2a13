#include "Files/Graphics/Page_Decoder.h"

#include <condition_variable>
#include <mutex>

#include "Files/Graphics/Bitmap.h"
#include "Host/Host.h"

namespace {

// Decoded pixels that may lie ready: 16 pages of 1024 by 1024.
constexpr size_t kMostReady = size_t{64} << 20;

enum class PageState { Waiting, Decoding, Ready, Gone };

struct Page {
    PageSource source;
    PageState state;
    uint8_t* pixels;
    int32_t width, height;
    size_t Bytes() const { return static_cast<size_t>(width) * static_cast<size_t>(height) * 4; }
};

struct Decoder {
    std::mutex lock;  // guards all below; a decode itself runs without it
    std::condition_variable changed;
    VxVector<Page> pages;  // does not grow while the thread runs
    size_t readyBytes = 0;
    bool ending = false, resting = false;
    void* thread = nullptr;
};
Decoder* s_decoder;  // null where no thread runs

// The next page to decode, or null when the thread is to end. Waits while enough lies ready.
Page* NextPage(Decoder* decoder, std::unique_lock<std::mutex>& lock)
{
    for (;;) {
        Page* next = nullptr;
        for (Page& page : decoder->pages)
            if (!next && page.state == PageState::Waiting) next = &page;
        if (decoder->ending || !next) return nullptr;
        if (decoder->readyBytes < kMostReady) return next;
        decoder->resting = true;
        decoder->changed.notify_all();
        decoder->changed.wait(lock);
        decoder->resting = false;
    }
}

void DecodePages(void* context)
{
    auto* decoder = static_cast<Decoder*>(context);
    std::unique_lock<std::mutex> lock(decoder->lock);
    while (Page* page = NextPage(decoder, lock)) {
        page->state = PageState::Decoding;
        lock.unlock();
        const char* fault = nullptr;  // the one who needs the page meets it again, and tells
        int32_t width = 0, height = 0;
        uint8_t* pixels = DecodePNG(page->source.data, page->source.size, &width, &height, &fault);
        lock.lock();
        page->pixels = pixels;
        page->width = width;
        page->height = height;
        page->state = pixels ? PageState::Ready : PageState::Gone;
        if (pixels) decoder->readyBytes += page->Bytes();
        decoder->changed.notify_all();
    }
    decoder->resting = true;
    decoder->changed.notify_all();
}

// The first page of these bytes that was not taken yet.
Page* FindPage(const uint8_t* data)
{
    for (Page& page : s_decoder->pages)
        if (page.source.data == data && page.state != PageState::Gone) return &page;
    return nullptr;
}

}  // namespace

void PageDecoder_Start(const VxVector<PageSource>& pages)
{
    PageDecoder_Stop();
    if (g_Host.process.Cores() < 2) return;
    auto* decoder = VxNew<Decoder>();
    for (const PageSource& source : pages)
        if (IsPNG(source.data, source.size))
            decoder->pages.push_back({source, PageState::Waiting, nullptr, 0, 0});
    if (!decoder->pages.empty()) decoder->thread = g_Host.process.StartThread(DecodePages, decoder);
    if (decoder->thread)
        s_decoder = decoder;
    else
        VxDelete(decoder);
}

uint8_t* PageDecoder_Take(const uint8_t* data, int32_t* width, int32_t* height)
{
    if (!s_decoder) return nullptr;
    std::unique_lock<std::mutex> lock(s_decoder->lock);
    Page* page = FindPage(data);
    if (!page) return nullptr;
    while (page->state == PageState::Decoding) s_decoder->changed.wait(lock);
    if (page->state == PageState::Ready) s_decoder->readyBytes -= page->Bytes();
    page->state = PageState::Gone;
    s_decoder->changed.notify_all();
    *width = page->width;
    *height = page->height;
    return std::exchange(page->pixels, nullptr);
}

void PageDecoder_Settle()
{
    if (!s_decoder) return;
    std::unique_lock<std::mutex> lock(s_decoder->lock);
    while (!s_decoder->resting) s_decoder->changed.wait(lock);
}

int32_t PageDecoder_Ready()
{
    if (!s_decoder) return 0;
    const std::lock_guard<std::mutex> lock(s_decoder->lock);
    int32_t count = 0;
    for (const Page& page : s_decoder->pages) count += page.state == PageState::Ready;
    return count;
}

void PageDecoder_Stop()
{
    if (!s_decoder) return;
    {
        const std::lock_guard<std::mutex> lock(s_decoder->lock);
        s_decoder->ending = true;
        s_decoder->changed.notify_all();
    }
    g_Host.process.JoinThread(s_decoder->thread);
    for (const Page& page : s_decoder->pages) MemoryManager::Free(page.pixels);
    VxDelete(s_decoder);
    s_decoder = nullptr;
}
