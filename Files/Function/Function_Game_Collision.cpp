// Built-ins that ask what touches what: places, points and shapes.

#include <algorithm>
#include <cmath>

#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Object/Collision.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Sprite/CSprite.h"

void Function_Game_RegisterCollision();

namespace {

constexpr double kNowhere = 1000000.0;  // distance to an object without instances, pixels

void SetId(RValue& result, const CInstance* instance)
{
    SetReal(result, instance ? instance->id : INSTANCE_NOONE);
}

// ---- the caller at a place: x, y, target
CInstance* AtPlace(CInstance* self, CInstance* other, const RValue* args)
{
    return Place_Find(self, other, VXGetFloat(args, 0), VXGetFloat(args, 1), VXGetInt32(args, 2));
}
BUILTIN(F_PlaceFree)
{
    SetBool(result, Place_Free(self, VXGetFloat(args, 0), VXGetFloat(args, 1)));
}
BUILTIN(F_PlaceEmpty)
{
    SetBool(result, Place_Empty(self, VXGetFloat(args, 0), VXGetFloat(args, 1)));
}
BUILTIN(F_PlaceMeeting)
{
    SetBool(result, AtPlace(self, other, args) != nullptr);
}
BUILTIN(F_InstancePlace)
{
    SetId(result, AtPlace(self, other, args));
}
BUILTIN(F_PlaceSnapped)
{
    SetBool(result, Place_Snapped(self, VXGetReal(args, 0), VXGetReal(args, 1)));
}
BUILTIN(F_MoveSnap)
{
    const double hsnap = VXGetReal(args, 0), vsnap = VXGetReal(args, 1);
    const double x = hsnap > 0 ? RoundToGrid(self->x, hsnap) : static_cast<double>(self->x);
    const double y = vsnap > 0 ? RoundToGrid(self->y, vsnap) : static_cast<double>(self->y);
    self->SetPosition(static_cast<float>(x), static_cast<float>(y));
}

// ---- points: x, y, target
CInstance* AtPoint(CInstance* self, CInstance* other, const RValue* args)
{
    return Position_Find(self, other, VXGetFloat(args, 0), VXGetFloat(args, 1),
                         VXGetInt32(args, 2));
}
BUILTIN(F_PositionEmpty)
{
    SetBool(result,
            !Position_Find(self, other, VXGetFloat(args, 0), VXGetFloat(args, 1), INSTANCE_ALL));
}
BUILTIN(F_PositionMeeting)
{
    SetBool(result, AtPoint(self, other, args) != nullptr);
}
BUILTIN(F_InstancePosition)
{
    SetId(result, AtPoint(self, other, args));
}

// ---- distances
// Between the nearest pixels of two boxes, so that boxes side by side are 1 apart.
double Gap(int32_t leftA, int32_t rightA, int32_t leftB, int32_t rightB)
{
    if (leftB > rightA) return static_cast<double>(leftB) - rightA;
    return leftA > rightB ? static_cast<double>(leftA) - rightB : 0.0;
}
BUILTIN(F_DistanceToObject)
{
    double nearest = kNowhere;
    EnsureBoundingBox(self);
    InstanceIterator named(VXGetInt32(args, 0), self, other);
    while (CInstance* with = named.Next()) {
        if (!with->Alive()) continue;
        EnsureBoundingBox(with);
        const double dx = Gap(self->bbox_left, self->bbox_right, with->bbox_left, with->bbox_right);
        const double dy = Gap(self->bbox_top, self->bbox_bottom, with->bbox_top, with->bbox_bottom);
        nearest = std::min(nearest, std::hypot(dx, dy));
    }
    SetReal(result, nearest);
}
BUILTIN(F_DistanceToPoint)
{
    const double x = VXGetReal(args, 0), y = VXGetReal(args, 1);
    EnsureBoundingBox(self);
    const double dx = std::max({self->bbox_left - x, x - self->bbox_right, 0.0});
    const double dy = std::max({self->bbox_top - y, y - self->bbox_bottom, 0.0});
    SetReal(result, std::hypot(dx, dy));
}

// ---- shapes
// Each tells whether it meets an instance's box, taken with its right and bottom
// edges, and whether it covers a set pixel of a mask inside that box.
struct Box {
    double left, top, right, bottom;
    explicit Box(const CInstance& instance)
        : left(instance.bbox_left),
          top(instance.bbox_top),
          right(instance.bbox_right + 1.0),
          bottom(instance.bbox_bottom + 1.0)
    {
    }
    Box(double x1, double y1, double x2, double y2)
        : left(std::min(x1, x2)),
          top(std::min(y1, y2)),
          right(std::max(x1, x2)),
          bottom(std::max(y1, y2))
    {
    }
};

int32_t Pixel(double value)
{
    return RoundToEven(std::floor(value));
}

// Visits the pixels that two boxes share until one answers true.
template <class Test>
bool AnyShared(const Box& instance, const Box& shape, Test test)
{
    const int32_t left = Pixel(std::max(instance.left, shape.left)),
                  right = Pixel(std::min(instance.right - 1, shape.right)),
                  top = Pixel(std::max(instance.top, shape.top)),
                  bottom = Pixel(std::min(instance.bottom - 1, shape.bottom));
    for (int32_t y = top; y <= bottom; ++y)
        for (int32_t x = left; x <= right; ++x)
            if (test(x, y)) return true;
    return false;
}

struct Rectangle {
    Box area;
    bool Meets(const Box& box) const
    {
        return area.left < box.right && area.right >= box.left && area.top < box.bottom &&
               area.bottom >= box.top;
    }
    bool Covers(const Box& box, const MaskView& mask) const
    {
        return AnyShared(box, area, [&](int32_t x, int32_t y) { return mask.Holds(x, y); });
    }
};

struct Ellipse {
    Box area;
    // From the middle, in radii.
    double Distance(double x, double y) const
    {
        const double rx = std::max((area.right - area.left) / 2, 0.5),
                     ry = std::max((area.bottom - area.top) / 2, 0.5);
        return std::hypot((x - (area.left + area.right) / 2) / rx,
                          (y - (area.top + area.bottom) / 2) / ry);
    }
    bool Meets(const Box& box) const
    {
        const double x = std::clamp((area.left + area.right) / 2, box.left, box.right);
        const double y = std::clamp((area.top + area.bottom) / 2, box.top, box.bottom);
        return Distance(x, y) <= 1;
    }
    bool Covers(const Box& box, const MaskView& mask) const
    {
        return AnyShared(box, area, [&](int32_t x, int32_t y) {
            return Distance(x + 0.5, y + 0.5) <= 1 && mask.Holds(x, y);
        });
    }
};

struct Line {
    double x1, y1, x2, y2;
    // The part of the line inside the box, as fractions of its length. Liang and
    // Barsky, "A New Concept and Method for Line Clipping", 1984.
    bool Clip(const Box& box, double* from, double* to) const
    {
        const double dx = x2 - x1, dy = y2 - y1;
        const double step[] = {-dx, dx, -dy, dy};
        const double room[] = {x1 - box.left, box.right - x1, y1 - box.top, box.bottom - y1};
        *from = 0;
        *to = 1;
        for (int edge = 0; edge < 4; ++edge) {
            if (step[edge] == 0) {
                if (room[edge] < 0) return false;
                continue;
            }
            const double at = room[edge] / step[edge];
            if (step[edge] < 0)
                *from = std::max(*from, at);
            else
                *to = std::min(*to, at);
        }
        return *from <= *to;
    }
    bool Meets(const Box& box) const
    {
        double from, to;
        return Clip(box, &from, &to);
    }
    bool Covers(const Box& box, const MaskView& mask) const
    {
        double from, to;
        if (!Clip(box, &from, &to)) return false;
        const double length = std::max(std::fabs(x2 - x1), std::fabs(y2 - y1)) * (to - from);
        const int32_t steps = std::max(RoundToEven(std::ceil(length)), 1);
        for (int32_t i = 0; i <= steps; ++i) {
            const double at = from + (to - from) * i / steps;
            if (mask.Holds(Pixel(x1 + (x2 - x1) * at), Pixel(y1 + (y2 - y1) * at))) return true;
        }
        return false;
    }
};

template <class Shape>
bool Touches(CInstance* instance, const Shape& shape, bool precise)
{
    EnsureBoundingBox(instance);
    const Box box(*instance);
    if (!shape.Meets(box)) return false;
    CSprite* sprite = Collision_Sprite(*instance);
    if (!sprite) return false;
    if (!precise || !sprite->precise) return true;
    return shape.Covers(box, MaskView(*instance, *sprite, kLeastPointAngle));
}

// The last arguments of all shapes: target, precise, and whether to leave the caller out.
struct Wanted {
    int32_t target;
    bool precise, notSelf;
    Wanted(const RValue* args, int first)
        : target(VXGetInt32(args, first)),
          precise(VXGetBool(args, first + 1)),
          notSelf(VXGetBool(args, first + 2))
    {
    }
};

template <class Test>
CInstance* FirstTouched(CInstance* self, CInstance* other, const Wanted& wanted, Test test)
{
    InstanceIterator named(wanted.target, self, other);
    while (CInstance* instance = named.Next())
        if (instance->Alive() && !(wanted.notSelf && instance == self) && test(instance))
            return instance;
    return nullptr;
}

template <class Shape>
void FindShape(RValue& result, CInstance* self, CInstance* other, const Wanted& wanted,
               const Shape& shape)
{
    SetId(result, FirstTouched(self, other, wanted, [&](CInstance* instance) {
              return Touches(instance, shape, wanted.precise);
          }));
}

Box BoxOf(const RValue* args)
{
    return Box(VXGetReal(args, 0), VXGetReal(args, 1), VXGetReal(args, 2), VXGetReal(args, 3));
}

BUILTIN(F_CollisionPoint)
{
    const float x = VXGetFloat(args, 0), y = VXGetFloat(args, 1);
    const Wanted wanted(args, 2);
    SetId(result, FirstTouched(self, other, wanted, [&](CInstance* instance) {
              return CollisionPoint(instance, x, y, wanted.precise);
          }));
}
BUILTIN(F_CollisionRectangle)
{
    FindShape(result, self, other, Wanted(args, 4), Rectangle{BoxOf(args)});
}
BUILTIN(F_CollisionEllipse)
{
    FindShape(result, self, other, Wanted(args, 4), Ellipse{BoxOf(args)});
}
BUILTIN(F_CollisionCircle)
{
    const double x = VXGetReal(args, 0), y = VXGetReal(args, 1), radius = VXGetReal(args, 2);
    FindShape(result, self, other, Wanted(args, 3),
              Ellipse{Box(x - radius, y - radius, x + radius, y + radius)});
}
BUILTIN(F_CollisionLine)
{
    FindShape(result, self, other, Wanted(args, 4),
              Line{VXGetReal(args, 0), VXGetReal(args, 1), VXGetReal(args, 2), VXGetReal(args, 3)});
}

constexpr BuiltinRow kRows[] = {
    {"place_free", F_PlaceFree, 2},
    {"place_empty", F_PlaceEmpty, 2},
    {"place_meeting", F_PlaceMeeting, 3},
    {"place_snapped", F_PlaceSnapped, 2},
    {"move_snap", F_MoveSnap, 2},
    {"instance_place", F_InstancePlace, 3},
    {"position_empty", F_PositionEmpty, 2},
    {"position_meeting", F_PositionMeeting, 3},
    {"instance_position", F_InstancePosition, 3},
    {"distance_to_object", F_DistanceToObject, 1},
    {"distance_to_point", F_DistanceToPoint, 2},
    {"collision_point", F_CollisionPoint, 5},
    {"collision_rectangle", F_CollisionRectangle, 7},
    {"collision_ellipse", F_CollisionEllipse, 7},
    {"collision_circle", F_CollisionCircle, 6},
    {"collision_line", F_CollisionLine, 7},
};

}  // namespace

void Function_Game_RegisterCollision()
{
    Function_AddRows(kRows);
}
