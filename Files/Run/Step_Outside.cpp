// Events of instances that leave the room or a view, or reach over its edge.

#include <cmath>

#include "Files/Object/Collision.h"
#include "Files/Room/Room_Main.h"
#include "Files/Run/Step.h"
#include "Files/Run/Walk.h"

namespace {

constexpr float kAngleEpsilon = 0.0001F;  // degrees
constexpr double kDegree = 3.14159265358979323846 / 180.0;

struct Point {
    double x, y;
};

// A rectangle of room pixels, turned by `angle` degrees about its centre.
struct Region {
    double left, top, right, bottom;
    double angle = 0;
};

Region RoomRegion()
{
    return {0, 0, static_cast<double>(Run_Room->width), static_cast<double>(Run_Room->height)};
}

Region ViewRegion(const CView& view)
{
    Region region{view.xview, view.yview, static_cast<double>(view.xview) + view.wview,
                  static_cast<double>(view.yview) + view.hview};
    if (view.angle > kAngleEpsilon) region.angle = view.angle;
    return region;
}

// A room point in the region's own upright coordinates.
Point Upright(const Region& region, Point point)
{
    if (region.angle == 0) return point;
    const double x = (region.left + region.right) / 2;
    const double y = (region.top + region.bottom) / 2;
    const double c = std::cos(-region.angle * kDegree);
    const double s = std::sin(-region.angle * kDegree);
    const double dx = point.x - x;
    const double dy = point.y - y;
    return {x + c * dx - s * dy, y + s * dx + c * dy};
}

bool HoldsPoint(const Region& region, Point point)
{
    const Point p = Upright(region, point);
    return p.x >= region.left && p.x <= region.right && p.y >= region.top && p.y <= region.bottom;
}

struct Extent {
    double left, top, right, bottom;
};

Extent ExtentOf(const Point corners[4])
{
    Extent extent{corners[0].x, corners[0].y, corners[0].x, corners[0].y};
    for (int i = 1; i < 4; ++i) {
        extent.left = std::fmin(extent.left, corners[i].x);
        extent.right = std::fmax(extent.right, corners[i].x);
        extent.top = std::fmin(extent.top, corners[i].y);
        extent.bottom = std::fmax(extent.bottom, corners[i].y);
    }
    return extent;
}

Extent BoxOf(const CInstance* instance)
{
    return {static_cast<double>(instance->bbox_left), static_cast<double>(instance->bbox_top),
            static_cast<double>(instance->bbox_right), static_cast<double>(instance->bbox_bottom)};
}

// The box's corners in the region's upright coordinates.
Extent UprightBox(const Region& region, const CInstance* instance)
{
    const Extent box = BoxOf(instance);
    if (region.angle == 0) return box;
    const Point corners[4] = {
        Upright(region, {box.left, box.top}), Upright(region, {box.right, box.top}),
        Upright(region, {box.right, box.bottom}), Upright(region, {box.left, box.bottom})};
    return ExtentOf(corners);
}

bool Overlap(const Extent& a, const Region& b)
{
    return a.right >= b.left && a.left <= b.right && a.bottom >= b.top && a.top <= b.bottom;
}

// The region's corners in room coordinates, as an extent: with the upright test the
// second pair of axes that could part two rectangles.
Extent RoomExtent(const Region& region)
{
    const Region back{region.left, region.top, region.right, region.bottom, -region.angle};
    const Point corners[4] = {
        Upright(back, {region.left, region.top}), Upright(back, {region.right, region.top}),
        Upright(back, {region.right, region.bottom}), Upright(back, {region.left, region.bottom})};
    return ExtentOf(corners);
}

bool HasNoShape(const CInstance* instance)
{
    return instance->sprite_index < 0 && instance->mask_index < 0;
}

bool Touches(const Region& region, CInstance* instance)
{
    if (HasNoShape(instance)) return HoldsPoint(region, {instance->x, instance->y});
    EnsureBoundingBox(instance);
    if (!Overlap(UprightBox(region, instance), region)) return false;
    if (region.angle == 0) return true;
    const Extent extent = RoomExtent(region);
    return Overlap(BoxOf(instance), {extent.left, extent.top, extent.right, extent.bottom});
}

bool LiesWithin(const Region& region, CInstance* instance)
{
    if (HasNoShape(instance)) return HoldsPoint(region, {instance->x, instance->y});
    EnsureBoundingBox(instance);
    const Extent box = UprightBox(region, instance);
    return box.left >= region.left && box.right <= region.right && box.top >= region.top &&
           box.bottom <= region.bottom;
}

void RunOutsideRoom(CInstance* instance)
{
    const bool outside = !Touches(RoomRegion(), instance);
    if (outside && !instance->outsideRoom)
        Perform_Event(instance, instance, EVENT_OTHER, OTHER_OUTSIDE);
    instance->outsideRoom = outside;
}

// Runs `subtype` on the responders that `Test` does not hold for.
template <class Test>
void RunUnless(int32_t subtype, const Region& region, Test test)
{
    Walk_Responders(Walk_Begin(), EVENT_OTHER, subtype, [&](CInstance* instance) {
        if (!test(region, instance)) Perform_Event(instance, instance, EVENT_OTHER, subtype);
    });
}

}  // namespace

void Step_OutsideAndBoundary()
{
    Walk_Responders(Walk_Begin(), EVENT_OTHER, OTHER_OUTSIDE, RunOutsideRoom);
    RunUnless(OTHER_BOUNDARY, RoomRegion(), LiesWithin);
    if (!Run_Room->viewsEnabled) return;
    for (int32_t i = 0; i < kRoomSlots; ++i) {
        if (!Run_Room->views[i].visible) continue;
        const Region region = ViewRegion(Run_Room->views[i]);
        RunUnless(OTHER_OUTSIDE_VIEW0 + i, region, Touches);
        RunUnless(OTHER_BOUNDARY_VIEW0 + i, region, LiesWithin);
    }
}
