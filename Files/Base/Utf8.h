#pragma once
// UTF-8 by code points. Bytes that are no UTF-8 stand for themselves, so that no
// text is ever refused or lost.

#include <cstdint>

// The code point at `*at`, which moves behind it; 0 at the end, without moving.
inline uint32_t Utf8_Next(const char** at)
{
    const unsigned char* const bytes = reinterpret_cast<const unsigned char*>(*at);
    const uint32_t first = bytes[0];
    if (first == 0) return 0;
    const int more = first >= 0xF0 && first < 0xF8   ? 3
                     : first >= 0xE0 && first < 0xF0 ? 2
                     : first >= 0xC0 && first < 0xE0 ? 1
                                                     : 0;
    uint32_t point = more == 0 ? first : first & (0x3FU >> more);
    for (int i = 1; i <= more; ++i) {
        if ((bytes[i] & 0xC0) != 0x80) {
            *at += 1;
            return first;
        }
        point = point << 6 | (bytes[i] & 0x3FU);
    }
    *at += more + 1;
    return point;
}

// Writes the code point's bytes, at most 4 and no zero byte behind them; their count.
inline int Utf8_Put(uint32_t point, char* out)
{
    if (point < 0x80) {
        out[0] = static_cast<char>(point);
        return 1;
    }
    const int more = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    for (int i = more; i > 0; --i, point >>= 6) out[i] = static_cast<char>(0x80 | (point & 0x3F));
    out[0] = static_cast<char>((0xFF00 >> (more + 1) & 0xFF) | point);
    return more + 1;
}

// Code points of the text.
inline int32_t Utf8_Length(const char* text)
{
    int32_t count = 0;
    while (Utf8_Next(&text)) ++count;
    return count;
}

// The place of a code point, counted from 0; the end of the text when it is shorter.
inline const char* Utf8_At(const char* text, int32_t position)
{
    while (position-- > 0 && Utf8_Next(&text)) {
    }
    return text;
}
