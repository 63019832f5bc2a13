#pragma once
// What the device tests draw with: a target whose units are pixels, vertices and
// shapes in the layouts of the batch, and random scenes that meet every state.

#include <cstdint>
#include <random>
#include <vector>

#include "Files/Graphics/Batch.h"
#include "Files/Graphics_API/Device.h"

using Pixels = std::vector<uint32_t>;

inline VertexTextured At(double x, double y, uint32_t colour = 0xFFFFFFFF, double u = 0,
                         double v = 0)
{
    return {static_cast<float>(x), static_cast<float>(y), 0.0F, colour,
            static_cast<float>(u), static_cast<float>(v)};
}

class Scene {
public:
    Scene(const DeviceTable& device, int32_t width, int32_t height);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    bool open() const { return open_; }
    const char* error() const { return error_; }
    // One unit a pixel, y down, for targets of this size.
    void Project(int32_t width, int32_t height);
    DeviceTexture* Texture(int32_t width, int32_t height, const Pixels& pixels);
    DeviceTexture* Target(int32_t width, int32_t height, bool depth = false);
    void Filter(bool linear, bool clamp);
    void Blend(DeviceBlend source, DeviceBlend dest);
    void State(int32_t state, uint32_t value) { device_.SetRenderState(state, value); }
    // Both triangles of a rectangle, as the quad operations send them.
    void Rect(double x0, double y0, double x1, double y1, uint32_t colour = 0xFFFFFFFF,
              double u0 = 0, double v0 = 0, double u1 = 1, double v1 = 1);
    void Send(DevicePrimitive primitive, const std::vector<VertexTextured>& vertices);
    Pixels Read(DeviceTexture* target = nullptr);
    uint32_t Pixel(int32_t x, int32_t y);
    // 60 shapes with textures, filters, blends, tests and masks drawn by `seed`.
    void Random(uint32_t seed);
    // What a game draws, smooth textures turned, scaled, tinted and blended, so that
    // two devices can be compared within a tolerance.
    void Sprites(uint32_t seed);

private:
    void RandomStates(std::mt19937& random);
    void RandomShape(std::mt19937& random);

    const DeviceTable& device_;
    int32_t width_, height_;
    bool open_;
    char error_[256];
    std::vector<DeviceTexture*> textures_;
};

Pixels Noise(int32_t width, int32_t height, uint32_t seed);
