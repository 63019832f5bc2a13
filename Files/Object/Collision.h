#pragma once
// Bounding boxes, pixel masks and the place tests. A box covers whole pixels, both
// ends inside. Positions are pixels of the room.

#include <cmath>
#include <limits>

#include "Files/Object/CInstance.h"

class CSprite;

// ---- rounding
// Nearest integer, halves to even: the rounding of every box and mask sum. Values
// beyond 32 bits give the nearest end, NaN gives 0.
inline int32_t RoundToEven(double value)
{
    constexpr double kLeast = std::numeric_limits<int32_t>::min(),
                     kMost = std::numeric_limits<int32_t>::max();
    if (!(value > kLeast && value < kMost))
        return value >= kMost    ? std::numeric_limits<int32_t>::max()
               : value <= kLeast ? std::numeric_limits<int32_t>::min()
                                 : 0;
    // Adding 1.5 * 2^52 leaves no bits below the unit, so the addition itself rounds.
    constexpr double kShift = 6755399441055744.0;
    return static_cast<int32_t>((value + kShift) - kShift);
}
// The nearest multiple of `step`, which is above 0.
inline double RoundToGrid(double value, double step)
{
    return std::nearbyint(value / step) * step;
}

// ---- boxes
void ComputeBoundingBox(CInstance* instance);
inline void EnsureBoundingBox(CInstance* instance)
{
    if (instance->bboxDirty) ComputeBoundingBox(instance);
}

// ---- pairs
// Two instances whose boxes overlap: false when one has nothing to collide with;
// with `precise` and a precise sprite among them, by pixels.
bool CollisionShapes(const CInstance* a, const CInstance* b, bool precise);
inline bool CollisionInstance(CInstance* a, CInstance* b, bool precise)
{
    if (a == b || a->marked || b->marked) return false;
    EnsureBoundingBox(a);
    EnsureBoundingBox(b);
    if (b->bbox_left > a->bbox_right || a->bbox_left > b->bbox_right ||
        b->bbox_top > a->bbox_bottom || a->bbox_top > b->bbox_bottom)
        return false;
    return CollisionShapes(a, b, precise);
}
bool CollisionPoint(CInstance* instance, float x, float y, bool precise);

// ---- the pixels of one instance
// Where pixels of the room lie on the mask of an instance's present frame. A sprite
// without masks has every pixel of its rectangle set.
class MaskView {
public:
    // An angle below `leastAngle` degrees, either way, is taken as none.
    MaskView(const CInstance& instance, CSprite& sprite, float leastAngle);
    bool HasMask() const { return mask != nullptr; }
    bool Set(int32_t mx, int32_t my) const { return !mask || mask[my * width + mx] != 0; }
    // Rounded down: the test of points and shapes.
    bool Holds(int32_t px, int32_t py) const;
    // Upright, truncated: what lies less than a pixel before the mask counts.
    bool HoldsTruncated(int32_t px, int32_t py) const;
    // Turned, with the range tested before the truncation.
    bool HoldsTurned(int32_t px, int32_t py) const;

    const uint8_t* mask;  // null for a sprite without masks
    int32_t width, height, originX, originY;
    int32_t atX, atY;  // the instance, on whole pixels

private:
    float xscale_, yscale_, sine_ = 0, cosine_ = 1;
};
// The collision sprite when it exists and has frames, else null.
CSprite* Collision_Sprite(const CInstance& instance);
inline constexpr float kLeastPointAngle = 0.0001F;

// ---- place tests
// The caller is only lent to the point; its position is restored in any case.
// Against the active list: one deactivated in this phase still blocks, a marked one
// never does.
bool Place_Free(CInstance* self, float x, float y);   // against solid instances
bool Place_Empty(CInstance* self, float x, float y);  // against all
// The instance found, neither marked nor deactivated, or null. `target` is an instance number; -1
// and -2 mean self and other.
CInstance* Place_Find(CInstance* self, CInstance* other, float x, float y, int32_t target);
CInstance* Position_Find(CInstance* self, CInstance* other, float x, float y, int32_t target);
// Aligned to the grid to within 0.001 pixels; a snap of 0 or less passes.
bool Place_Snapped(const CInstance* self, double hsnap, double vsnap);
