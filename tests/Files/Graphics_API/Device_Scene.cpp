#include "tests/Files/Graphics_API/Device_Scene.h"

#include <cmath>
#include <cstring>

#include "Host/Host.h"

Scene::Scene(const DeviceTable& device, int32_t width, int32_t height)
    : device_(device), width_(width), height_(height), error_{}
{
    const DeviceParams params = {width, height, false, 0, 0};
    open_ = device_.Open(params, error_, sizeof(error_));
    if (!open_) return;
    Project(width, height);
    device_.Clear(CLEAR_COLOUR | CLEAR_DEPTH | CLEAR_STENCIL, 0xFF000000, 1.0F, 0);
}

Scene::~Scene()
{
    if (!open_) return;
    for (DeviceTexture* texture : textures_) device_.FreeTexture(texture);
    device_.Close();
}

void Scene::Project(int32_t width, int32_t height)
{
    const float w = static_cast<float>(width), h = static_cast<float>(height);
    const float view[16] = {1, 0, 0, -w / 2, 0, 1, 0, -h / 2, 0, 0, 1, 16000, 0, 0, 0, 1};
    const float projection[16] = {2 / w,         0, 0, 0, 0, -2 / h, 0, 0, 0, 0, 1.0F / 31999,
                                  -1.0F / 31999, 0, 0, 0, 1};
    device_.SetMatrix(DeviceMatrix::View, view);
    device_.SetMatrix(DeviceMatrix::Projection, projection);
}

DeviceTexture* Scene::Texture(int32_t width, int32_t height, const Pixels& pixels)
{
    DeviceTexture* texture =
        device_.CreateTexture(width, height, DeviceFormat::Argb8888, false, false);
    device_.UpdateTexture(texture, {0, 0, width, height}, pixels.data(), width * 4);
    textures_.push_back(texture);
    return texture;
}

DeviceTexture* Scene::Target(int32_t width, int32_t height, bool depth)
{
    textures_.push_back(device_.CreateTexture(width, height, DeviceFormat::Argb8888, true, depth));
    return textures_.back();
}

void Scene::Filter(bool linear, bool clamp)
{
    device_.SetSamplerState(0, SAMPLER_MAG, linear);
    device_.SetSamplerState(0, SAMPLER_MIN, linear);
    device_.SetSamplerState(0, SAMPLER_ADDRESS_U, clamp);
    device_.SetSamplerState(0, SAMPLER_ADDRESS_V, clamp);
}

void Scene::Blend(DeviceBlend source, DeviceBlend dest)
{
    State(STATE_SRC_BLEND, static_cast<uint32_t>(source));
    State(STATE_DEST_BLEND, static_cast<uint32_t>(dest));
}

void Scene::Rect(double x0, double y0, double x1, double y1, uint32_t colour, double u0, double v0,
                 double u1, double v1)
{
    const VertexTextured a = At(x0, y0, colour, u0, v0), b = At(x1, y0, colour, u1, v0);
    const VertexTextured c = At(x1, y1, colour, u1, v1), d = At(x0, y1, colour, u0, v1);
    Send(DevicePrimitive::TriangleList, {a, b, c, c, d, a});
}

void Scene::Send(DevicePrimitive primitive, const std::vector<VertexTextured>& vertices)
{
    device_.DrawUp(primitive, kStrideTextured, vertices.data(),
                   static_cast<int32_t>(vertices.size()));
}

Pixels Scene::Read(DeviceTexture* target)
{
    Pixels pixels(static_cast<size_t>(width_) * static_cast<size_t>(height_));
    device_.ReadPixels(target, {0, 0, width_, height_}, pixels.data(), width_ * 4);
    return pixels;
}

uint32_t Scene::Pixel(int32_t x, int32_t y)
{
    uint32_t pixel = 0;
    device_.ReadPixels(nullptr, {x, y, x + 1, y + 1}, &pixel, 4);
    return pixel;
}

void Scene::RandomStates(std::mt19937& random)
{
    const auto pick = [&](uint32_t count) { return static_cast<uint32_t>(random() % count); };
    const bool linear = pick(2) == 1;
    Filter(linear, pick(2) == 1);
    const auto source = static_cast<DeviceBlend>(1 + pick(10));
    const auto dest = static_cast<DeviceBlend>(1 + pick(10));
    if (pick(3) == 0)
        Blend(source, dest);
    else
        Blend(DeviceBlend::SrcAlpha, pick(2) ? DeviceBlend::InvSrcAlpha : DeviceBlend::One);
    State(STATE_ALPHA_BLEND, pick(5) != 0);
    State(STATE_ALPHA_TEST, pick(6) == 0);
    State(STATE_ALPHA_REF, 100);
    State(STATE_COLOUR_WRITE, pick(6) == 0 ? pick(16) : 15);
    device_.SetModulate(pick(5) != 0);
}

void Scene::RandomShape(std::mt19937& random)
{
    const auto real = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(random()) / 4294967296.0;
    };
    const double x = real(-20, width_), y = real(-20, height_);
    const double w = real(1, width_ * 0.7), h = real(1, height_ * 0.7);
    const auto colour = static_cast<uint32_t>(random());
    const auto other = static_cast<uint32_t>(random());
    const double left = real(-1, 0.5), right = real(0.6, 2), lean = real(-9, 9);
    switch (random() % 5) {
        case 0:
            Rect(x, y, x + w, y + h, colour, left, 0, right, 0.7);
            break;
        case 1:
            Rect(static_cast<int>(x), static_cast<int>(y), static_cast<int>(x) + 32,
                 static_cast<int>(y) + 32, 0xFFFFFFFF);
            break;
        case 2:
            Send(DevicePrimitive::TriangleList,
                 {At(x, y, colour, 0, 0), At(x + w, y + lean, ~colour, 1, 0.2),
                  At(x + lean * 3, y + h, other, 0.3, 1.4)});
            break;
        case 3:
            Send(DevicePrimitive::LineStrip,
                 {At(x, y, colour), At(x + w, y + h, ~colour), At(x + w / 2, y - h, colour)});
            break;
        default:
            Rect(x + w, y + h, x, y, 0xFF000000 | colour);
            break;
    }
}

void Scene::Random(uint32_t seed)
{
    std::mt19937 random(seed);
    DeviceTexture* textures[3] = {Texture(32, 32, Noise(32, 32, seed)),
                                  Texture(7, 5, Noise(7, 5, seed + 1)),
                                  Texture(1, 1, {0xFFFFFFFF})};
    for (int32_t i = 0; i < 60; i++) {
        device_.SetTexture(0, textures[random() % 3]);
        RandomStates(random);
        RandomShape(random);
    }
}

void Scene::Sprites(uint32_t seed)
{
    std::mt19937 random(seed);
    const auto real = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(random()) / 4294967296.0;
    };
    Pixels smooth(48 * 48);
    for (uint32_t i = 0; i < smooth.size(); i++) {
        const uint32_t x = i % 48, y = i / 48;
        smooth[i] = ((x * 5) << 24) | ((y * 5) << 16) | ((255 - x * 5) << 8) | (x * 2 + y * 2);
    }
    device_.SetTexture(0, Texture(48, 48, smooth));
    for (int32_t i = 0; i < 30; i++) {
        Filter(i % 3 != 0, i % 2 == 0);
        Blend(DeviceBlend::SrcAlpha, i % 5 == 0 ? DeviceBlend::One : DeviceBlend::InvSrcAlpha);
        const double x = real(0, width_), y = real(0, height_), angle = real(0, 6.28);
        const double half = i % 4 == 0 ? 24 : real(4, 60);
        const double c = i % 4 == 0 ? 1 : std::cos(angle), s = i % 4 == 0 ? 0 : std::sin(angle);
        const auto corner = [&](double u, double v) {
            const double px = (u * 2 - 1) * half, py = (v * 2 - 1) * half;
            return At(x + c * px + s * py, y - s * px + c * py, 0xC0FFE0A0, u, v);
        };
        const VertexTextured a = corner(0, 0), b = corner(1, 0), e = corner(1, 1), d = corner(0, 1);
        Send(DevicePrimitive::TriangleList, {a, b, e, e, d, a});
    }
}

Pixels Noise(int32_t width, int32_t height, uint32_t seed)
{
    std::mt19937 random(seed);
    Pixels pixels(static_cast<size_t>(width) * static_cast<size_t>(height));
    for (uint32_t& pixel : pixels) {
        pixel = static_cast<uint32_t>(random());
        const auto kind = static_cast<uint32_t>(random() % 3);
        if (kind == 0) pixel |= 0xFF000000;
        if (kind == 1) pixel &= 0x00FFFFFF;
    }
    return pixels;
}
