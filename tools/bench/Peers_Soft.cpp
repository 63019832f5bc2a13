// The soft device beside SDL's software renderer, SDL's blits and pixman, one thread each.

#include <SDL.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#if BENCH_PIXMAN
#include <pixman.h>
#endif

#include "Files/Graphics/Batch.h"
#include "Files/Graphics_API/Device.h"
#include "Files/Graphics_API/Device_Soft.h"
#include "Host/Host.h"
#include "tools/bench/Peers.h"

namespace {

constexpr int kWidth = kPictureWidth, kHeight = kPictureHeight;
constexpr int kPitch = kWidth * 4;

// ---- our device

class Ours {
public:
    Ours()
    {
        Host_UseStage();
        char error[256];
        if (!Device_Soft.Open({kWidth, kHeight, false, 0, 0}, error, sizeof(error))) std::abort();
        const float projection[16] = {
            2.0F / kWidth, 0, 0, -1, 0, -2.0F / kHeight, 0, 1, 0, 0, 1.0F / 32000.0F,
            0.5F,          0, 0, 0,  1};
        Device_Soft.SetMatrix(DeviceMatrix::Projection, projection);
        Device_Soft.SetRenderState(STATE_ALPHA_BLEND, 1);
        Device_Soft.SetRenderState(STATE_SRC_BLEND, static_cast<uint32_t>(DeviceBlend::SrcAlpha));
        Device_Soft.SetRenderState(STATE_DEST_BLEND,
                                   static_cast<uint32_t>(DeviceBlend::InvSrcAlpha));
        Device_Soft.SetSamplerState(0, SAMPLER_MAG, 1);
        Device_Soft.SetSamplerState(0, SAMPLER_MIN, 1);
        Device_Soft.Clear(CLEAR_COLOUR, 0xFF406080, 1, 0);
    }
    ~Ours() { Device_Soft.Close(); }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    DeviceTexture* Texture(int width, int height, const Pixels& pixels) const
    {
        DeviceTexture* texture =
            Device_Soft.CreateTexture(width, height, DeviceFormat::Argb8888, true, false);
        Device_Soft.UpdateTexture(texture, {0, 0, width, height}, pixels.data(), width * 4);
        return texture;
    }

    void Quad(float x, float y, float width, float height, uint32_t colour, float u0 = 0,
              float v0 = 0, float u1 = 1, float v1 = 1)
    {
        const VertexTextured corner[4] = {{x, y, 0, colour, u0, v0},
                                          {x + width, y, 0, colour, u1, v0},
                                          {x + width, y + height, 0, colour, u1, v1},
                                          {x, y + height, 0, colour, u0, v1}};
        Corners(corner);
    }

    // Corners in their turn around the shape.
    void Corners(const VertexTextured corner[4])
    {
        for (const int i : {0, 1, 2, 2, 3, 0}) vertices_.push_back(corner[i]);
    }

    void Send(DeviceTexture* texture)
    {
        Device_Soft.SetTexture(0, texture);
        Device_Soft.DrawUp(DevicePrimitive::TriangleList, sizeof(VertexTextured), vertices_.data(),
                           static_cast<int32_t>(vertices_.size()));
        vertices_.clear();
    }

private:
    std::vector<VertexTextured> vertices_;
};

// ---- SDL's software renderer, on a target of our own format

class Sdl {
public:
    Sdl() : pixels_(static_cast<size_t>(kWidth * kHeight), 0xFF406080)
    {
        surface_ = SDL_CreateRGBSurfaceWithFormatFrom(pixels_.data(), kWidth, kHeight, 32, kPitch,
                                                      SDL_PIXELFORMAT_ARGB8888);
        renderer_ = SDL_CreateSoftwareRenderer(surface_);
    }
    ~Sdl()
    {
        for (SDL_Texture* texture : textures_) SDL_DestroyTexture(texture);
        SDL_DestroyRenderer(renderer_);
        SDL_FreeSurface(surface_);
    }
    Sdl(const Sdl&) = delete;
    Sdl& operator=(const Sdl&) = delete;

    SDL_Texture* Texture(int width, int height, const Pixels& pixels)
    {
        SDL_Texture* texture = SDL_CreateTexture(renderer_, SDL_PIXELFORMAT_ARGB8888,
                                                 SDL_TEXTUREACCESS_STATIC, width, height);
        SDL_UpdateTexture(texture, nullptr, pixels.data(), width * 4);
        SDL_SetTextureBlendMode(texture, SDL_BLENDMODE_BLEND);
        textures_.push_back(texture);
        return texture;
    }

    void Copy(SDL_Texture* texture, int x, int y, int width, int height)
    {
        const SDL_Rect to = {x, y, width, height};
        SDL_RenderCopy(renderer_, texture, nullptr, &to);
    }

    void CopyPart(SDL_Texture* texture, const SDL_Rect& part, int x, int y)
    {
        const SDL_Rect to = {x, y, part.w, part.h};
        SDL_RenderCopy(renderer_, texture, &part, &to);
    }

    // The sprite as two triangles.
    void Geometry(SDL_Texture* texture, int x, int y, int size)
    {
        const auto left = static_cast<float>(x), top = static_cast<float>(y);
        const auto right = static_cast<float>(x + size), bottom = static_cast<float>(y + size);
        const SDL_Color white = {255, 255, 255, 255};
        const SDL_Vertex corner[4] = {{{left, top}, white, {0, 0}},
                                      {{right, top}, white, {1, 0}},
                                      {{right, bottom}, white, {1, 1}},
                                      {{left, bottom}, white, {0, 1}}};
        const int order[6] = {0, 1, 2, 2, 3, 0};
        SDL_RenderGeometry(renderer_, texture, corner, 4, order, 6);
    }

    void Blit(SDL_Surface* from, int x, int y)
    {
        SDL_Rect to = {x, y, 0, 0};
        SDL_BlitSurface(from, nullptr, surface_, &to);
    }

    void CopyTurned(SDL_Texture* texture, int x, int y, int size, double angle)
    {
        const SDL_Rect to = {x, y, size, size};
        SDL_RenderCopyEx(renderer_, texture, nullptr, &to, angle, nullptr, SDL_FLIP_NONE);
    }

    void Flush() { SDL_RenderFlush(renderer_); }

private:
    Pixels pixels_;
    SDL_Surface* surface_;
    SDL_Renderer* renderer_;
    std::vector<SDL_Texture*> textures_;
};

// ---- comparisons

SDL_Surface* SurfaceOf(int width, int height, const Pixels& pixels)
{
    SDL_Surface* surface =
        SDL_CreateRGBSurfaceWithFormat(0, width, height, 32, SDL_PIXELFORMAT_ARGB8888);
    for (int y = 0; y < height; y++)
        std::memcpy(static_cast<uint8_t*>(surface->pixels) + y * surface->pitch,
                    pixels.data() + static_cast<ptrdiff_t>(y) * width,
                    static_cast<size_t>(width) * 4);
    SDL_SetSurfaceBlendMode(surface, SDL_BLENDMODE_BLEND);
    return surface;
}

void AddSprites(std::vector<Duel>& duels, Ours& ours, Sdl& sdl)
{
    static const std::vector<Spot> places = Spots();
    for (const bool disc : {true, false}) {
        const Pixels picture = disc ? Disc(kSprite) : Noise(kSprite, kSprite);
        DeviceTexture* texture = ours.Texture(kSprite, kSprite, picture);
        SDL_Texture* peer = sdl.Texture(kSprite, kSprite, picture);
        SDL_Surface* surface = SurfaceOf(kSprite, kSprite, picture);
        const auto mine = [&ours, texture] {
            for (const Spot& place : places)
                ours.Quad(static_cast<float>(place.x), static_cast<float>(place.y), kSprite,
                          kSprite, 0xFFFFFFFF);
            ours.Send(texture);
        };
        const std::string name = disc ? "sprites_2000" : "sprites_2000_mixed";
        duels.push_back({name, "SDL software", mine, [&sdl, peer] {
                             for (const Spot& place : places)
                                 sdl.Copy(peer, place.x, place.y, kSprite, kSprite);
                             sdl.Flush();
                         }});
        duels.push_back({name + "_blit", "SDL blits", mine, [&sdl, surface] {
                             for (const Spot& place : places) sdl.Blit(surface, place.x, place.y);
                         }});
        if (!disc) continue;
        duels.push_back({name + "_geometry", "SDL software geometry", mine, [&sdl, peer] {
                             for (const Spot& place : places)
                                 sdl.Geometry(peer, place.x, place.y, kSprite);
                             sdl.Flush();
                         }});
    }
}

// A background tile repeated over the picture, solid.
void AddTiles(std::vector<Duel>& duels, Ours& ours, Sdl& sdl)
{
    constexpr int kTile = 64;
    Pixels picture = Noise(kTile, kTile);
    for (uint32_t& pixel : picture) pixel |= 0xFF000000;
    DeviceTexture* texture = ours.Texture(kTile, kTile, picture);
    SDL_Texture* peer = sdl.Texture(kTile, kTile, picture);
    duels.push_back({"tiles", "SDL software",
                     [&ours, texture] {
                         for (int y = 0; y < kHeight; y += kTile)
                             for (int x = 0; x < kWidth; x += kTile)
                                 ours.Quad(static_cast<float>(x), static_cast<float>(y), kTile,
                                           kTile, 0xFFFFFFFF);
                         ours.Send(texture);
                     },
                     [&sdl, peer] {
                         for (int y = 0; y < kHeight; y += kTile)
                             for (int x = 0; x < kWidth; x += kTile)
                                 sdl.Copy(peer, x, y, kTile, kTile);
                         sdl.Flush();
                     }});
}

// Two thousand letters of a page of 16 by 16 letters of 12 by 16, coloured.
void AddText(std::vector<Duel>& duels, Ours& ours, Sdl& sdl)
{
    constexpr int kWide = 12, kHigh = 16, kColumns = 16;
    static const std::vector<Spot> places = Spots();
    const Pixels page = Noise(kWide * kColumns, kHigh * kColumns);
    DeviceTexture* texture = ours.Texture(kWide * kColumns, kHigh * kColumns, page);
    SDL_Texture* peer = sdl.Texture(kWide * kColumns, kHigh * kColumns, page);
    SDL_SetTextureColorMod(peer, 0x20, 0x40, 0x80);
    duels.push_back({"text_2000", "SDL software",
                     [&ours, texture] {
                         constexpr float kPart = 1.0F / kColumns;
                         for (size_t i = 0; i < places.size(); i++) {
                             const float u = static_cast<float>(i % kColumns) * kPart;
                             const float v = static_cast<float>(i / kColumns % kColumns) * kPart;
                             ours.Quad(static_cast<float>(places[i].x),
                                       static_cast<float>(places[i].y), kWide, kHigh, 0xFF204080, u,
                                       v, u + kPart, v + kPart);
                         }
                         ours.Send(texture);
                     },
                     [&sdl, peer] {
                         for (size_t i = 0; i < places.size(); i++) {
                             const auto number = static_cast<int>(i);
                             sdl.CopyPart(peer,
                                          {number % kColumns * kWide,
                                           number / kColumns % kColumns * kHigh, kWide, kHigh},
                                          places[i].x, places[i].y);
                         }
                         sdl.Flush();
                     }});
}

void AddFills(std::vector<Duel>& duels, Ours& ours, Sdl& sdl)
{
    static const Pixels noise = Noise(kWidth, kHeight);
    DeviceTexture* texture = ours.Texture(kWidth, kHeight, noise);
    struct Tint {
        const char* name;
        uint32_t colour;
    };
    for (const Tint tint : {Tint{"fill_tinted", 0xFFFF8040}, Tint{"fill_alpha", 0x80FFFFFF},
                            Tint{"fill_tinted_alpha", 0x80FF8040}}) {
        SDL_Texture* peer = sdl.Texture(kWidth, kHeight, noise);
        const auto channel = [&](int shift) {
            return static_cast<uint8_t>((tint.colour >> shift) & 255);
        };
        SDL_SetTextureColorMod(peer, channel(16), channel(8), channel(0));
        SDL_SetTextureAlphaMod(peer, channel(24));
        duels.push_back({tint.name, "SDL software",
                         [&ours, texture, tint] {
                             ours.Quad(0, 0, kWidth, kHeight, tint.colour);
                             ours.Send(texture);
                         },
                         [&sdl, peer] {
                             sdl.Copy(peer, 0, 0, kWidth, kHeight);
                             sdl.Flush();
                         }});
    }
}

#if BENCH_PIXMAN

pixman_image_t* Image(int width, int height, Pixels& pixels)
{
    return pixman_image_create_bits(PIXMAN_a8r8g8b8, width, height, pixels.data(), width * 4);
}

// Pixman blends colours that are already multiplied by their alpha: less work than
// ours, which multiplies them too.
void AddPixmanFill(std::vector<Duel>& duels, Ours& ours)
{
    static Pixels noise = Noise(kWidth, kHeight), target(noise.size(), 0xFF406080);
    static Pixels multiplied = noise;
    for (uint32_t& pixel : multiplied) {
        const uint32_t alpha = pixel >> 24;
        uint32_t made = alpha << 24;
        for (int shift = 0; shift < 24; shift += 8)
            made |= ((((pixel >> shift) & 255) * alpha + 127) / 255) << shift;
        pixel = made;
    }
    DeviceTexture* texture = ours.Texture(kWidth, kHeight, noise);
    pixman_image_t* from = Image(kWidth, kHeight, multiplied);
    pixman_image_t* to = Image(kWidth, kHeight, target);
    for (const char* loops : {"avx2", "sse2"}) {
        if (!Device_Soft_SetLoops(loops)) continue;
        duels.push_back({std::string("fill_blended_") + loops, "pixman",
                         [&ours, texture, loops] {
                             Device_Soft_SetLoops(loops);
                             ours.Quad(0, 0, kWidth, kHeight, 0xFFFFFFFF);
                             ours.Send(texture);
                             Device_Soft_SetLoops("");
                         },
                         [from, to] {
                             pixman_image_composite32(PIXMAN_OP_OVER, from, nullptr, to, 0, 0, 0, 0,
                                                      0, 0, kWidth, kHeight);
                         }});
    }
    Device_Soft_SetLoops("");
}

void AddStretch(std::vector<Duel>& duels, const Ours& ours, const char* name, int width, int height,
                int wide, int high)
{
    static std::vector<Pixels> kept;
    kept.reserve(32);
    kept.push_back(Noise(width, height));
    Pixels& source = kept.back();
    kept.emplace_back(static_cast<size_t>(wide) * static_cast<size_t>(high));
    DeviceTexture* texture = ours.Texture(width, height, source);
    DeviceTexture* target = ours.Texture(wide, high, kept.back());
    pixman_image_t* from = Image(width, height, source);
    pixman_image_t* to = Image(wide, high, kept.back());
    pixman_transform_t scale;
    pixman_transform_init_scale(&scale, pixman_double_to_fixed(width / static_cast<double>(wide)),
                                pixman_double_to_fixed(height / static_cast<double>(high)));
    pixman_image_set_transform(from, &scale);
    pixman_image_set_filter(from, PIXMAN_FILTER_BILINEAR, nullptr, 0);
    pixman_image_set_repeat(from, PIXMAN_REPEAT_PAD);
    duels.push_back({name, "pixman",
                     [=] {
                         Device_Soft.StretchRect(texture, {0, 0, width, height}, target,
                                                 {0, 0, wide, high}, true);
                     },
                     [=] {
                         pixman_image_composite32(PIXMAN_OP_SRC, from, nullptr, to, 0, 0, 0, 0, 0,
                                                  0, wide, high);
                     }});
}

#endif

void AddTurned(std::vector<Duel>& duels, Ours& ours, Sdl& sdl)
{
    static const std::vector<Spot> places = Spots();
    const Pixels picture = Disc(kSprite);
    DeviceTexture* texture = ours.Texture(kSprite, kSprite, picture);
    SDL_Texture* peer = sdl.Texture(kSprite, kSprite, picture);
    SDL_SetTextureScaleMode(peer, SDL_ScaleModeLinear);
    duels.push_back({"sprites_turned_200", "SDL software",
                     [&ours, texture] {
                         for (int i = 0; i < 200; i++) {
                             const float x = static_cast<float>(places[static_cast<size_t>(i)].x);
                             const float y = static_cast<float>(places[static_cast<size_t>(i)].y);
                             const auto size = static_cast<float>(kSprite);
                             const float c = 0.8F * size, s = 0.6F * size;
                             const VertexTextured corner[4] = {
                                 {x, y, 0, 0xFFFFFFFF, 0, 0},
                                 {x + c, y + s, 0, 0xFFFFFFFF, 1, 0},
                                 {x + c - s, y + s + c, 0, 0xFFFFFFFF, 1, 1},
                                 {x - s, y + c, 0, 0xFFFFFFFF, 0, 1}};
                             ours.Corners(corner);
                         }
                         ours.Send(texture);
                     },
                     [&sdl, peer] {
                         for (int i = 0; i < 200; i++) {
                             const Spot& place = places[static_cast<size_t>(i)];
                             sdl.CopyTurned(peer, place.x, place.y, kSprite, 36.869897645844);
                         }
                         sdl.Flush();
                     }});
}

}  // namespace

void PeersSoft(const PeerOptions& options, ScoreList* scores)
{
    Ours ours;
    Sdl sdl;
    std::vector<Duel> duels;
    AddSprites(duels, ours, sdl);
    AddTurned(duels, ours, sdl);
    AddFills(duels, ours, sdl);
    AddTiles(duels, ours, sdl);
    AddText(duels, ours, sdl);
#if BENCH_PIXMAN
    AddPixmanFill(duels, ours);
    AddStretch(duels, ours, "stretch_2x", 427, 240, 854, 480);
    AddStretch(duels, ours, "stretch_1.5x", 854, 480, 1280, 720);
    AddStretch(duels, ours, "stretch_2.25x", 854, 480, 1920, 1080);
    AddStretch(duels, ours, "stretch_0.8x", 854, 480, 683, 384);
#endif
    FightAll(duels, options, scores);
}
