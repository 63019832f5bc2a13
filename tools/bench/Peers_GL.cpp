// The GL device beside SDL's renderer on GL, and beside the soft device. Each needs a
// display.

#include <SDL.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Page_Decoder.h"
#include "Files/Graphics/Quad.h"
#include "Files/Graphics/Window.h"
#include "Files/Graphics_API/Device.h"
#include "Files/Run/Run_State.h"
#include "tests/support/Stage.h"
#include "tools/bench/Peers.h"

namespace {

constexpr int kFrames = 60;  // of level 1 in a turn
constexpr uint32_t kWhite = 0xFFFFFFU;

bool HasDisplay()
{
    if (std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY")) return true;
    std::fprintf(stderr, "vexo-bench: no display, so nothing is measured on GL\n");
    return false;
}

Stage::Options Desktop(const char* device)
{
    Stage::Options options;
    options.switches.push_back(device);
    options.window = options.threads = true;
    options.windowPace = 0;
    return options;
}

// The runtime in a window of its own, with a sprite to draw.
class Ours {
public:
    Ours() : stage_(Desktop("-gl"))
    {
        if (!stage_.started() || std::strcmp(g_Device->name, Device_GL.name) != 0) return;
        stage_.frames(2);
        window_ = SDL_GL_GetCurrentWindow();
        context_ = SDL_GL_GetCurrentContext();
        const Pixels picture = Disc(kSprite);
        slot_ = Texture_CreateFromPixels(kSprite, kSprite, picture.data(),
                                         static_cast<uint32_t>(picture.size() * 4));
    }
    ~Ours()
    {
        if (context_) Enter();  // the run ends in its own context
    }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    bool Works() const { return context_ != nullptr; }
    void Enter() const { SDL_GL_MakeCurrent(window_, context_); }
    // A frame's worth: the picture's view, the sprites, and the end of the batch.
    void Sprites(const std::vector<Spot>& places) const
    {
        Frame_Begin();
        View_SetPort(0, 0, kPictureWidth, kPictureHeight);
        View_SetArea(0, 0, kPictureWidth, kPictureHeight, 0);
        for (const Spot& place : places)
            Quad_TextureExt(slot_, 0, 0, static_cast<float>(place.x), static_cast<float>(place.y),
                            1, 1, 0, kWhite, 1);
        Frame_End(false);
    }
    static void Finish()
    {
        uint32_t pixel;
        g_Device->ReadPixels(nullptr, {0, 0, 1, 1}, &pixel, 4);
    }

private:
    Stage stage_;
    SDL_Window* window_ = nullptr;
    SDL_GLContext context_ = nullptr;
    int32_t slot_ = -1;
};

// SDL's renderer on GL in a window beside.
class Sdl {
public:
    Sdl()
    {
        SDL_SetHint(SDL_HINT_RENDER_DRIVER, "opengl");
        window_ = SDL_CreateWindow("peer", 0, 0, kPictureWidth, kPictureHeight, SDL_WINDOW_OPENGL);
        renderer_ = SDL_CreateRenderer(window_, -1, 0);
        const Pixels picture = Disc(kSprite);
        texture_ = SDL_CreateTexture(renderer_, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STATIC,
                                     kSprite, kSprite);
        SDL_UpdateTexture(texture_, nullptr, picture.data(), kSprite * 4);
        SDL_SetTextureBlendMode(texture_, SDL_BLENDMODE_BLEND);
        SDL_SetTextureScaleMode(texture_, SDL_ScaleModeLinear);
    }
    ~Sdl()
    {
        SDL_DestroyTexture(texture_);
        SDL_DestroyRenderer(renderer_);
        SDL_DestroyWindow(window_);
    }
    Sdl(const Sdl&) = delete;
    Sdl& operator=(const Sdl&) = delete;

    bool Works() const { return texture_ != nullptr; }
    void Enter() const
    {
        SDL_RenderClear(renderer_);
        SDL_RenderFlush(renderer_);
    }
    void Geometry(const std::vector<Spot>& places) const
    {
        const SDL_Color white = {255, 255, 255, 255};
        const int order[6] = {0, 1, 2, 2, 3, 0};
        for (const Spot& place : places) {
            const auto left = static_cast<float>(place.x), top = static_cast<float>(place.y);
            const float right = left + kSprite, bottom = top + kSprite;
            const SDL_Vertex corner[4] = {{{left, top}, white, {0, 0}},
                                          {{right, top}, white, {1, 0}},
                                          {{right, bottom}, white, {1, 1}},
                                          {{left, bottom}, white, {0, 1}}};
            SDL_RenderGeometry(renderer_, texture_, corner, 4, order, 6);
        }
        SDL_RenderFlush(renderer_);
    }
    // The same sprites in one call, which a program can make that knows them all before.
    void GeometryAtOnce(const std::vector<Spot>& places)
    {
        const SDL_Color white = {255, 255, 255, 255};
        vertices_.clear();
        for (const Spot& place : places)
            for (const int corner : {0, 1, 2, 2, 3, 0}) {
                const auto u = static_cast<float>(corner == 1 || corner == 2);
                const auto v = static_cast<float>(corner >= 2);
                vertices_.push_back({{static_cast<float>(place.x) + u * kSprite,
                                      static_cast<float>(place.y) + v * kSprite},
                                     white,
                                     {u, v}});
            }
        SDL_RenderGeometry(renderer_, texture_, vertices_.data(),
                           static_cast<int>(vertices_.size()), nullptr, 0);
        SDL_RenderFlush(renderer_);
    }
    void Copies(const std::vector<Spot>& places) const
    {
        for (const Spot& place : places) {
            const SDL_FRect to = {static_cast<float>(place.x), static_cast<float>(place.y), kSprite,
                                  kSprite};
            SDL_RenderCopyF(renderer_, texture_, nullptr, &to);
        }
        SDL_RenderFlush(renderer_);
    }
    void Finish() const
    {
        uint32_t pixel;
        const SDL_Rect corner = {0, 0, 1, 1};
        SDL_RenderReadPixels(renderer_, &corner, SDL_PIXELFORMAT_ARGB8888, &pixel, 4);
    }

private:
    SDL_Window* window_;
    SDL_Renderer* renderer_;
    SDL_Texture* texture_;
    std::vector<SDL_Vertex> vertices_;
};

// All ways to send the sprites; with `finish` they are drawn, too.
void FightSprites(const PeerOptions& options, const std::string& prefix, bool finish,
                  ScoreList* scores)
{
    static const std::vector<Spot> places = Spots();
    Ours ours;
    if (!ours.Works()) {
        std::fprintf(stderr, "vexo-bench: no GL, so nothing is measured on it\n");
        return;
    }
    Sdl sdl;
    if (!sdl.Works()) {
        std::fprintf(stderr, "vexo-bench: SDL's renderer has no GL: %s\n", SDL_GetError());
        return;
    }
    struct Way {
        const char *name, *peer;
        std::function<void()> draw;
    };
    const Way ways[] = {
        {"geometry", "SDL_RenderGeometry", [&] { sdl.Geometry(places); }},
        {"copy", "SDL_RenderCopyF", [&] { sdl.Copies(places); }},
        {"at_once", "SDL_RenderGeometry x1", [&] { sdl.GeometryAtOnce(places); }},
    };
    std::vector<Duel> duels;
    for (const Way& way : ways)
        duels.push_back({prefix + way.name, way.peer,
                         [&ours, finish] {
                             ours.Sprites(places);
                             if (finish) Ours::Finish();
                         },
                         [&sdl, &way, finish] {
                             way.draw();
                             if (finish) sdl.Finish();
                         },
                         [&ours] { ours.Enter(); }, [&sdl] { sdl.Enter(); }, finish});
    FightAll(duels, options, scores);
}

std::string ThisProgram()
{
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    return length > 0 ? std::string(path, static_cast<size_t>(length)) : "vexo-bench";
}

// Processor time of a frame of level 1, of all threads, in a run of its own.
double FrameSeconds(const char* device)
{
    Stage stage(Desktop(device));
    if (!stage.started()) return 0;
    stage.room("room_level1").frames(10);
    PageDecoder_Settle();
    g_TimingOn = false;
    Ours::Finish();
    const double start = ProcessSeconds();
    stage.frames(kFrames);
    Ours::Finish();
    return (ProcessSeconds() - start) / kFrames;
}

bool Asked(const PeerOptions& options, const std::string& prefix)
{
    return options.only.compare(0, prefix.size(), prefix) == 0 || options.only.empty();
}

}  // namespace

int SubmitProcess(const PeerOptions& options)
{
    ScoreList scores;
    FightSprites(options, "submit_", false, &scores);
    for (const Score& score : scores)
        std::printf("%s\t%s\t%.9f\t%.9f\n", score.name.c_str(), score.peer.c_str(), score.ours,
                    score.theirs);
    return 0;
}

void PeersSubmit(const PeerOptions& options, ScoreList* scores)
{
    if (!Asked(options, "submit_") || !HasDisplay()) return;
    const std::string command = "GALLIUM_NOOP=1 LIBGL_ALWAYS_SOFTWARE=1 '" + ThisProgram() +
                                "' --submit --rounds " + std::to_string(options.repeats) +
                                (options.only.empty() ? "" : " --only " + options.only);
    std::FILE* lines = popen(command.c_str(), "r");
    if (!lines) return;
    char line[256], name[64], peer[64];
    Score score;
    while (std::fgets(line, sizeof line, lines))
        if (std::sscanf(line, "%63[^\t]\t%63[^\t]\t%lf\t%lf", name, peer, &score.ours,
                        &score.theirs) == 4) {
            score.name = name;
            score.peer = peer;
            scores->push_back(score);
        }
    pclose(lines);
}

void PeersGL(const PeerOptions& options, ScoreList* scores)
{
    if (Asked(options, "gl_") && HasDisplay()) FightSprites(options, "gl_", true, scores);
}

void PeersFrame(const PeerOptions& options, ScoreList* scores)
{
    if (!Asked(options, "frame_level1") || !HasDisplay()) return;
    Score score{"frame_level1", "the same through GL", 1e9, 1e9};
    for (int i = 0; i < options.repeats; ++i) {
        score.ours = std::min(score.ours, FrameSeconds("-software"));
        score.theirs = std::min(score.theirs, FrameSeconds("-gl"));
    }
    scores->push_back(score);
}
