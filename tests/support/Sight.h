#pragma once
// How a picture looks to an eye: light, contrast, and eyes that do not tell red from green.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

// Shares of red, green and blue light, linear, 0 to 1.
struct Light {
    double red, green, blue;
};

// Of a pixel 0xAARRGGBB, by the sRGB standard; its alpha is passed over.
inline Light LightOf(uint32_t pixel)
{
    static const std::array<double, 256> shares = [] {
        std::array<double, 256> made;
        for (size_t i = 0; i < made.size(); ++i) {
            const double v = static_cast<double>(i) / 255;
            made[i] = v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        }
        return made;
    }();
    return {shares[pixel >> 16 & 255], shares[pixel >> 8 & 255], shares[pixel & 255]};
}

inline double Luminance(const Light& light)
{
    return 0.2126 * light.red + 0.7152 * light.green + 0.0722 * light.blue;
}

// 1 for equal luminances to 21 for black and white (WCAG 2).
inline double Contrast(double a, double b)
{
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

// Three pairs of eyes: the usual ones, and those that lack one kind of cone, after
// Machado, Oliveira and Fernandes, "A Physiologically-based Model for Simulation of Color
// Vision Deficiency" (2009), full severity.
struct Eyes {
    const char* name;
    std::array<double, 9> matrix;
};
inline constexpr Eyes kEyes[] = {
    {"usual", {1, 0, 0, 0, 1, 0, 0, 0, 1}},
    {"protanopia",
     {0.152286, 1.052583, -0.204868, 0.114503, 0.786281, 0.099216, -0.003882, -0.048116, 1.051998}},
    {"deuteranopia",
     {0.367322, 0.860646, -0.227968, 0.280085, 0.672501, 0.047413, -0.011820, 0.042940, 0.968881}}};

// The luminance that a pixel has to a pair of eyes.
inline double Seen(const Eyes& eyes, uint32_t pixel)
{
    const Light light = LightOf(pixel);
    const auto& m = eyes.matrix;
    const auto mix = [&](size_t row) {
        const double v = m[row] * light.red + m[row + 1] * light.green + m[row + 2] * light.blue;
        return std::clamp(v, 0.0, 1.0);
    };
    return Luminance({mix(0), mix(3), mix(6)});
}
