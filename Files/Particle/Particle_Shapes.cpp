// The built-in shapes: white on clear, painted by their distances. Lengths are pixels
// from the middle of the picture. Distances to plain figures after I. Quilez,
// "2D distance functions"; the cloudy ones are sums of value noise in octaves (K. Perlin,
// "An Image Synthesizer", 1985).

#include <algorithm>
#include <cmath>

#include "Files/Particle/Particle_Internal.h"

namespace {

constexpr float kPi = 3.1415927F;
constexpr float kMiddle = static_cast<float>(kParticleShapeSize) / 2;

// Share of a pixel that a figure covers whose rim is `distance` away, below 0 inside.
float Cover(float distance)
{
    return std::clamp(0.5F - distance, 0.0F, 1.0F);
}

// 1 at `from`, 0 at `to`, with soft ends.
float Falloff(float value, float from, float to)
{
    const float t = std::clamp((to - value) / (to - from), 0.0F, 1.0F);
    return t * t * (3 - 2 * t);
}

// To the stroke from (0, 0) to `length` along the x axis.
float ToStroke(float x, float y, float length)
{
    return std::hypot(x - std::clamp(x, 0.0F, length), y);
}

// The angle of a point folded into one sector of a figure of `points` equal points.
float Fold(float x, float y, int points)
{
    const float sector = 2 * kPi / static_cast<float>(points);
    const float turned = std::atan2(x, -y);
    return std::fabs(turned - sector * std::round(turned / sector));
}

float Lattice(int32_t x, int32_t y)
{
    uint32_t h = static_cast<uint32_t>(x) * 0x9E3779B1U ^ static_cast<uint32_t>(y) * 0x85EBCA77U;
    h = (h ^ h >> 15) * 0xC2B2AE3DU;
    return static_cast<float>(h >> 8) / 16777216.0F;
}

float Noise(float x, float y)
{
    const float left = std::floor(x), top = std::floor(y);
    const auto column = static_cast<int32_t>(left), row = static_cast<int32_t>(top);
    const float a = Falloff(x - left, 1, 0), b = Falloff(y - top, 1, 0);
    const float upper = std::lerp(Lattice(column, row), Lattice(column + 1, row), a);
    const float lower = std::lerp(Lattice(column, row + 1), Lattice(column + 1, row + 1), a);
    return std::lerp(upper, lower, b);
}

// 0 to 1.
float Billows(float x, float y)
{
    return (Noise(x, y) * 4 + Noise(x * 2 + 17, y * 2) * 2 + Noise(x * 4, y * 4 + 31)) / 7;
}

// ---- the shapes: alpha at a point, 0 to 1

float Pixel(float x, float y)
{
    return x > 0 && x < 1 && y > 0 && y < 1 ? 1.0F : 0.0F;
}
float Disk(float x, float y)
{
    return Cover(std::hypot(x, y) - 30);
}
float Square(float x, float y)
{
    return Cover(std::max(std::fabs(x), std::fabs(y)) - 30);
}
float Line(float x, float y)
{
    return Cover(ToStroke(x + 25, y, 50) - 3);
}
float Star(float x, float y)
{
    constexpr float kOuter = 31, kInner = 12.5F;  // radii of the points and of the notches
    const float angle = Fold(x, y, 5), radius = std::hypot(x, y);
    const float notchX = kInner * std::cos(kPi / 5), notchY = kInner * std::sin(kPi / 5);
    const float edge = std::hypot(notchX - kOuter, notchY);
    const float px = radius * std::cos(angle) - kOuter, py = radius * std::sin(angle);
    return Cover((px * notchY - py * (notchX - kOuter)) / edge);
}
float Circle(float x, float y)
{
    return Cover(std::fabs(std::hypot(x, y) - 29) - 1);
}
float Ring(float x, float y)
{
    const float off = (std::hypot(x, y) - 23) / 4;
    return std::exp(-off * off);
}
float Sphere(float x, float y)
{
    const float radius = std::hypot(x, y);
    const float lit = Falloff(std::hypot(x + 9, y + 9), 0, 42);  // from the upper left
    return Cover(radius - 30) * (0.25F + 0.75F * lit);
}
float Flare(float x, float y)
{
    const float out = 1 - std::min(std::hypot(x, y) / 32, 1.0F);
    return std::min(out * out + out * out * out * out, 1.0F);
}
// A beam along the x axis that thins out.
float Beam(float x, float y, float length)
{
    const float left = 1 - std::min(std::fabs(x) / length, 1.0F);
    return left * left * std::exp(-std::fabs(y) / (0.4F + 2 * left));
}
float Spark(float x, float y)
{
    constexpr float kEighth = 0.70710678F;
    const float p = (x + y) * kEighth, q = (x - y) * kEighth;
    const float slanted = Beam(p, q, 18) + Beam(q, p, 18);
    return std::min(Beam(x, y, 31) + Beam(y, x, 31) + slanted * 0.6F, 1.0F);
}
float Explosion(float x, float y)
{
    const float radius = std::hypot(x, y);
    const float ragged = radius + (Billows(x / 7 + 40, y / 7 + 40) - 0.5F) * 26;
    return Falloff(ragged, 8, 28) * Falloff(radius, 24, 32);
}
float Cloud(float x, float y)
{
    float body = 0;
    constexpr float kPuffs[4][3] = {{-14, 5, 15}, {0, -3, 18}, {15, 5, 14}, {2, 8, 14}};
    for (const auto& puff : kPuffs)
        body =
            std::max(body, Falloff(std::hypot(x - puff[0], y - puff[1]), puff[2] * 0.3F, puff[2]));
    return body * (0.65F + 0.35F * Billows(x / 9 + 3, y / 9 + 8));
}
float Smoke(float x, float y)
{
    return Falloff(std::hypot(x, y), 2, 31) * (0.35F + 0.65F * Billows(x / 8 + 90, y / 8 + 5));
}
float Snow(float x, float y)
{
    const float angle = Fold(x, y, 6), radius = std::hypot(x, y);
    const float along = radius * std::cos(angle), aside = radius * std::sin(angle);
    float nearest = ToStroke(along, aside, 28);
    constexpr float kSlant = 0.5F, kRise = 0.8660254F;  // twigs leave at 60 degrees
    for (const float joint : {12.0F, 20.0F}) {
        const float px = along - joint;
        nearest = std::min(nearest, ToStroke(px * kSlant + aside * kRise,
                                             aside * kSlant - px * kRise, (31 - joint) * 0.45F));
    }
    return Cover(nearest - 1.4F);
}

constexpr float (*kShapes[kParticleShapes])(float, float) = {Pixel,     Disk,  Square, Line,  Star,
                                                             Circle,    Ring,  Sphere, Flare, Spark,
                                                             Explosion, Cloud, Smoke,  Snow};

}  // namespace

void Particle_PaintShape(int32_t shape, uint8_t* alpha)
{
    for (int32_t row = 0; row < kParticleShapeSize; ++row)
        for (int32_t column = 0; column < kParticleShapeSize; ++column) {
            const float x = static_cast<float>(column) + 0.5F - kMiddle;
            const float y = static_cast<float>(row) + 0.5F - kMiddle;
            *alpha++ = static_cast<uint8_t>(std::lrint(kShapes[shape](x, y) * 255));
        }
}
