// Bounding boxes and the two tests of an instance: against another, and against a point.

#include "Files/Object/Collision.h"

#include <algorithm>
#include <cstring>

#include "Files/Function/Function_Registry.h"
#include "Files/Sprite/CSprite.h"

namespace {

constexpr double kDegree = kScriptPi / 180.0;
constexpr double kFarthest = 1.0e9;  // sides of boxes stay within, so that sums fit 32 bits

int32_t Side(double value)
{
    return RoundToEven(std::clamp(value, -kFarthest, kFarthest));
}

int32_t Whole(float value)
{
    return static_cast<int32_t>(std::clamp(static_cast<double>(value), -kFarthest, kFarthest));
}

void UprightBox(CInstance* instance, const CSprite& sprite)
{
    const double xscale = instance->image_xscale, yscale = instance->image_yscale;
    const int32_t width = sprite.bboxRight - sprite.bboxLeft + 1;
    const int32_t height = sprite.bboxBottom - sprite.bboxTop + 1;
    int32_t left = Side((sprite.bboxLeft - sprite.originX) * xscale + instance->x);
    int32_t right = Side(width * xscale + left);
    if (right < left) std::swap(left, right);
    int32_t top = Side((sprite.bboxTop - sprite.originY) * yscale + instance->y);
    int32_t bottom = Side(height * yscale + top);
    if (bottom < top) std::swap(top, bottom);
    instance->bbox_left = left;
    instance->bbox_right = right - 1;
    instance->bbox_top = top;
    instance->bbox_bottom = bottom - 1;
}

void TurnedBox(CInstance* instance, const CSprite& sprite)
{
    const double angle = static_cast<double>(instance->image_angle) * kDegree;
    const double c = std::cos(angle), n = std::sin(angle);
    const double xscale = instance->image_xscale, yscale = instance->image_yscale;
    const double a = (std::min(sprite.bboxLeft, sprite.bboxRight) - sprite.originX) * xscale;
    const double b = (std::max(sprite.bboxLeft, sprite.bboxRight) + 1 - sprite.originX) * xscale;
    const double p = (std::min(sprite.bboxTop, sprite.bboxBottom) - sprite.originY) * yscale;
    const double q = (std::max(sprite.bboxTop, sprite.bboxBottom) + 1 - sprite.originY) * yscale;
    const double x = instance->x, y = instance->y;
    instance->bbox_left = Side(x + std::min(c * a, c * b) + std::min(n * p, n * q));
    instance->bbox_right = Side(x + std::max(c * a, c * b) + std::max(n * p, n * q)) - 1;
    instance->bbox_top = Side(y + std::min(c * p, c * q) - std::max(n * a, n * b));
    instance->bbox_bottom = Side(y + std::max(c * p, c * q) - std::min(n * a, n * b)) - 1;
}

// The mask of the frame that is shown.
const uint8_t* FrameMask(const CInstance& instance, CSprite& sprite)
{
    const uint8_t* masks = sprite.ExpandedMasks();
    if (!masks || sprite.maskCount <= 0) return nullptr;
    int32_t frame = Whole(instance.image_index) % sprite.maskCount;
    if (frame < 0) frame += sprite.maskCount;
    return masks + static_cast<size_t>(frame) * static_cast<size_t>(sprite.width) *
                       static_cast<size_t>(sprite.height);
}

struct Region {
    int32_t left, top, right, bottom;  // both ends inside
};

// Two rows of masks have a pixel in common. Mask bytes are 0 or 1.
bool RowsMeet(const uint8_t* a, const uint8_t* b, int32_t count)
{
    int32_t i = 0;
    for (; i + 8 <= count; i += 8) {
        uint64_t ofA, ofB;
        std::memcpy(&ofA, a + i, 8);
        std::memcpy(&ofB, b + i, 8);
        if (ofA & ofB) return true;
    }
    for (; i < count; ++i)
        if (a[i] & b[i]) return true;
    return false;
}

bool RowSet(const uint8_t* row, int32_t count)
{
    return std::memchr(row, 1, static_cast<size_t>(count)) != nullptr;
}

// Unscaled and upright: whole rows of both masks side by side.
bool MeetUnscaled(const MaskView& a, const MaskView& b, Region region)
{
    for (const MaskView* side : {&a, &b}) {
        const int32_t left = side->atX - side->originX, top = side->atY - side->originY;
        region.left = std::max(region.left, left);
        region.top = std::max(region.top, top);
        region.right = std::min(region.right, left + side->width - 1);
        region.bottom = std::min(region.bottom, top + side->height - 1);
    }
    const int32_t count = region.right - region.left + 1;
    if (count <= 0 || region.bottom < region.top) return false;
    if (!a.mask && !b.mask) return true;
    for (int32_t y = region.top; y <= region.bottom; ++y) {
        const auto row = [&](const MaskView& side) {
            return side.mask +
                   static_cast<std::ptrdiff_t>(side.originY + y - side.atY) * side.width +
                   (side.originX + region.left - side.atX);
        };
        if (!a.mask || !b.mask) {
            if (RowSet(a.mask ? row(a) : row(b), count)) return true;
        } else if (RowsMeet(row(a), row(b), count)) {
            return true;
        }
    }
    return false;
}

template <bool (MaskView::*Holds)(int32_t, int32_t) const>
bool MeetByPixel(const MaskView& a, const MaskView& b, const Region& region)
{
    for (int32_t y = region.top; y <= region.bottom; ++y)
        for (int32_t x = region.left; x <= region.right; ++x)
            if ((a.*Holds)(x, y) && (b.*Holds)(x, y)) return true;
    return false;
}

bool Unscaled(const CInstance& instance)
{
    return instance.image_xscale == 1 && instance.image_yscale == 1;
}

}  // namespace

CSprite* Collision_Sprite(const CInstance& instance)
{
    CSprite* sprite = Sprite_Data(instance.CollisionSprite());
    return sprite && sprite->frameCount > 0 ? sprite : nullptr;
}

void ComputeBoundingBox(CInstance* instance)
{
    instance->bboxDirty = false;
    const CSprite* sprite = Sprite_Data(instance->CollisionSprite());
    if (!sprite) {
        instance->bbox_left = instance->bbox_right = Whole(instance->x);
        instance->bbox_top = instance->bbox_bottom = Whole(instance->y);
        instance->preciseMask = false;
        return;
    }
    instance->preciseMask = sprite->precise;
    if (instance->image_angle == 0)
        UprightBox(instance, *sprite);
    else
        TurnedBox(instance, *sprite);
}

bool CollisionShapes(const CInstance* a, const CInstance* b, bool precise)
{
    CSprite* ofA = Collision_Sprite(*a);
    CSprite* ofB = Collision_Sprite(*b);
    if (!ofA || !ofB) return false;
    if (!precise || !(ofA->precise || ofB->precise)) return true;
    const MaskView viewA(*a, *ofA, 0), viewB(*b, *ofB, 0);
    const Region region{std::max(a->bbox_left, b->bbox_left), std::max(a->bbox_top, b->bbox_top),
                        std::min(a->bbox_right, b->bbox_right),
                        std::min(a->bbox_bottom, b->bbox_bottom)};
    if (a->image_angle != 0 || b->image_angle != 0)
        return MeetByPixel<&MaskView::HoldsTurned>(viewA, viewB, region);
    if (Unscaled(*a) && Unscaled(*b)) return MeetUnscaled(viewA, viewB, region);
    return MeetByPixel<&MaskView::HoldsTruncated>(viewA, viewB, region);
}

MaskView::MaskView(const CInstance& instance, CSprite& sprite, float leastAngle)
    : mask(FrameMask(instance, sprite)),
      width(sprite.width),
      height(sprite.height),
      originX(sprite.originX),
      originY(sprite.originY),
      atX(Side(instance.x)),
      atY(Side(instance.y)),
      xscale_(instance.image_xscale),
      yscale_(instance.image_yscale)
{
    if (instance.image_angle == 0 || std::fabs(instance.image_angle) < leastAngle) return;
    // Counter-clockwise with y growing downward is the negative sense of the sums below,
    // so that the mask turns the way the box and the picture do.
    const double angle = -static_cast<double>(instance.image_angle) * kDegree;
    sine_ = static_cast<float>(std::sin(angle));
    cosine_ = static_cast<float>(std::cos(angle));
}

// The sums are in single precision: a quotient that is whole comes out whole.
bool MaskView::Holds(int32_t px, int32_t py) const
{
    const auto dx = static_cast<float>(px - atX), dy = static_cast<float>(py - atY);
    const float mx =
        std::floor((dy * sine_ + dx * cosine_) / xscale_ + static_cast<float>(originX));
    const float my =
        std::floor((dy * cosine_ - dx * sine_) / yscale_ + static_cast<float>(originY));
    return mx >= 0 && my >= 0 && mx < static_cast<float>(width) &&
           my < static_cast<float>(height) &&
           Set(static_cast<int32_t>(mx), static_cast<int32_t>(my));
}

bool MaskView::HoldsTruncated(int32_t px, int32_t py) const
{
    const float mx = static_cast<float>(px - atX) / xscale_ + static_cast<float>(originX);
    const float my = static_cast<float>(py - atY) / yscale_ + static_cast<float>(originY);
    return mx > -1 && my > -1 && mx < static_cast<float>(width) &&
           my < static_cast<float>(height) &&
           Set(static_cast<int32_t>(mx), static_cast<int32_t>(my));
}

bool MaskView::HoldsTurned(int32_t px, int32_t py) const
{
    const auto dx = static_cast<float>(px - atX), dy = static_cast<float>(py - atY);
    const float mx = (dy * sine_ + dx * cosine_) / xscale_ + static_cast<float>(originX);
    const float my = (dy * cosine_ - dx * sine_) / yscale_ + static_cast<float>(originY);
    return mx >= 0 && my >= 0 && mx < static_cast<float>(width) &&
           my < static_cast<float>(height) &&
           Set(static_cast<int32_t>(mx), static_cast<int32_t>(my));
}

bool CollisionPoint(CInstance* instance, float x, float y, bool precise)
{
    if (instance->marked) return false;
    EnsureBoundingBox(instance);
    const double px = x, py = y;
    if (!(px < instance->bbox_right + 1.0 && px >= instance->bbox_left &&
          py < instance->bbox_bottom + 1.0 && py >= instance->bbox_top))
        return false;
    CSprite* sprite = Collision_Sprite(*instance);
    if (!sprite) return false;
    if (!precise || !sprite->precise) return true;
    const MaskView view(*instance, *sprite, kLeastPointAngle);
    return !view.HasMask() || view.Holds(Side(px), Side(py));
}
