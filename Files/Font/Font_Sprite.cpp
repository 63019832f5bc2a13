// Fonts whose glyphs are the frames of a sprite.

#include <algorithm>

#include "Files/Base/Utf8.h"
#include "Files/Font/CFontSW.h"
#include "Files/Font/Font_Glyphs.h"
#include "Files/Sprite/CSprite.h"

namespace {

constexpr uint32_t kUnits = 0x10000;  // characters that fit a glyph
constexpr int32_t kMostPixels = 0x7FFF;

struct Columns {
    int32_t first, count;
};

// The columns of a frame that show something; all of them for an empty frame, so that
// a blank keeps its room.
Columns ShownColumns(CSprite* sprite, int32_t frame)
{
    const int32_t width = sprite->width;
    int32_t left = width, right = -1;
    if (uint32_t* pixels = sprite->FramePixels(frame)) {
        for (int32_t y = 0; y < sprite->height; ++y)
            for (int32_t x = 0; x < width; ++x) {
                if (pixels[static_cast<ptrdiff_t>(y) * width + x] >> 24 == 0) continue;
                left = std::min(left, x);
                right = std::max(right, x);
            }
        MemoryManager::Free(pixels);
    }
    return right < 0 ? Columns{0, width} : Columns{left, right - left + 1};
}

uint16_t Pixels(int32_t count)
{
    return static_cast<uint16_t>(std::clamp(count, 0, kMostPixels));
}

class Maker {
public:
    Maker(int32_t index, CSprite* sprite, bool proportional, int32_t separation)
        : index_(index), sprite_(sprite), proportional_(proportional), separation_(separation)
    {
    }

    void Add(uint32_t character)
    {
        const int32_t frame = frames_++;
        if (character == 0 || character >= kUnits) return;
        Columns columns{0, sprite_->width};
        if (proportional_) columns = ShownColumns(sprite_, frame);
        RunTimeGlyph glyph{};
        glyph.character = static_cast<uint16_t>(character);
        glyph.x = Pixels(columns.first);
        glyph.width = Pixels(columns.count);
        glyph.height = Pixels(sprite_->height);
        glyph.shift = Pixels(columns.count + std::clamp(separation_, -kMostPixels, kMostPixels));
        glyph.frame = frame;
        made_.push_back(glyph);
    }
    bool Full() const { return frames_ >= sprite_->frameCount; }

    CFontSW* Finish()
    {
        AddBlank();
        auto* font = VxNew<CFontSW>();
        font->TakeGlyphs(std::move(made_));
        font->spriteIndex = index_;
        font->first = font->ownGlyphs.front().character;
        font->last = font->ownGlyphs.back().character;
        return font;
    }

private:
    // A sprite without a blank gets one as wide as itself, so that words stand apart.
    void AddBlank()
    {
        for (const RunTimeGlyph& glyph : made_)
            if (glyph.character == ' ') return;
        RunTimeGlyph blank{};
        blank.character = ' ';
        blank.width = blank.shift = Pixels(sprite_->width);
        blank.height = Pixels(sprite_->height);
        blank.frame = -1;
        made_.push_back(blank);
    }

    int32_t index_;
    CSprite* sprite_;
    bool proportional_;
    int32_t separation_, frames_ = 0;
    VxVector<RunTimeGlyph> made_;
};

}  // namespace

CFontSW* Font_FromSprite(int32_t index, int32_t first, bool proportional, int32_t separation)
{
    CSprite* sprite = Sprite_Data(index);
    if (!sprite) return nullptr;
    Maker maker(index, sprite, proportional, separation);
    for (int64_t number = first; !maker.Full(); ++number)
        maker.Add(number < 0 || number >= kUnits
                      ? 0U
                      : Font_FrameCharacter(static_cast<int32_t>(number)));
    return maker.Finish();
}

CFontSW* Font_FromSpriteText(int32_t index, const char* characters, bool proportional,
                             int32_t separation)
{
    CSprite* sprite = Sprite_Data(index);
    if (!sprite) return nullptr;
    Maker maker(index, sprite, proportional, separation);
    while (*characters != '\0' && !maker.Full()) maker.Add(Utf8_Next(&characters));
    return maker.Finish();
}
