#include "Files/Object/CInstance.h"

#include <cmath>

#include "Files/Function/Function_Registry.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Sprite/CSprite.h"

namespace {

constexpr double kDegree = kScriptPi / 180.0;
constexpr double kSnap = 0.0001;  // a speed or an angle this near to an integer becomes it

float Snap(double value)
{
    const double nearest = std::nearbyint(value);
    return static_cast<float>(std::fabs(value - nearest) < kSnap ? nearest : value);
}

void CopyMotion(CInstance* to, const CInstance& from)
{
    to->x = from.x;
    to->y = from.y;
    to->xstart = from.xstart;
    to->ystart = from.ystart;
    to->xprevious = from.xprevious;
    to->yprevious = from.yprevious;
    to->direction = from.direction;
    to->speed = from.speed;
    to->friction = from.friction;
    to->gravity_direction = from.gravity_direction;
    to->gravity = from.gravity;
    to->hspeed = from.hspeed;
    to->vspeed = from.vspeed;
}

void CopyImage(CInstance* to, const CInstance& from)
{
    to->sprite_index = from.sprite_index;
    to->image_index = from.image_index;
    to->image_speed = from.image_speed;
    to->image_xscale = from.image_xscale;
    to->image_yscale = from.image_yscale;
    to->image_angle = from.image_angle;
    to->image_alpha = from.image_alpha;
    to->image_blend = from.image_blend;
    to->mask_index = from.mask_index;
    to->preciseMask = from.preciseMask;
    to->bboxDirty = from.bboxDirty;
    to->bbox_left = from.bbox_left;
    to->bbox_top = from.bbox_top;
    to->bbox_right = from.bbox_right;
    to->bbox_bottom = from.bbox_bottom;
}

void CopyPathAndTimeline(CInstance* to, const CInstance& from)
{
    to->path_index = from.path_index;
    to->path_position = from.path_position;
    to->path_positionprevious = from.path_positionprevious;
    to->path_speed = from.path_speed;
    to->path_scale = from.path_scale;
    to->path_orientation = from.path_orientation;
    to->path_endaction = from.path_endaction;
    to->pathStartX = from.pathStartX;
    to->pathStartY = from.pathStartY;
    to->timeline_index = from.timeline_index;
    to->timelinePrevious = from.timelinePrevious;
    to->timeline_position = from.timeline_position;
    to->timeline_speed = from.timeline_speed;
    to->timeline_running = from.timeline_running;
    to->timeline_loop = from.timeline_loop;
}

void CopyState(CInstance* to, const CInstance& from)
{
    to->visible = from.visible;
    to->solid = from.solid;
    to->persistent = from.persistent;
    to->marked = from.marked;
    to->deactivated = from.deactivated;
    to->destroyed = from.destroyed;
    to->carried = from.carried;
    to->created = from.created;
    to->object_index = from.object_index;
    to->object = from.object;
    to->physics = from.physics;
    to->skeleton = from.skeleton;
    for (int i = 0; i < kAlarmCount; ++i) to->alarm[i] = from.alarm[i];
    to->outsideRoom = from.outsideRoom;
    to->creationCode = from.creationCode;
    to->preCreateCode = from.preCreateCode;
    to->mouseState = from.mouseState;
    to->layer = from.layer;
    to->inLayer = from.inLayer;
    to->depth = from.depth;
}

}  // namespace

CInstance::CInstance(float atX, float atY, int32_t instanceId, int32_t objectIndex,
                     bool addToObjectLists)
    : createCounter(g_PhaseCounter),
      id(instanceId),
      x(atX),
      y(atY),
      xstart(atX),
      ystart(atY),
      xprevious(atX),
      yprevious(atY)
{
    tableSlot = Instance_TakeSlot(this);
    SetObject(objectIndex);
    if (addToObjectLists) AddToObjectLists();
}

CInstance::~CInstance()
{
    RemoveFromObjectLists();
    Instance_GiveSlot(tableSlot);
}

void CInstance::SetObject(int32_t objectIndex)
{
    object_index = objectIndex == -1 ? 0 : objectIndex;
    object = Object_Data(object_index);
    if (!object) return;
    mask_index = object->maskIndex;
    depth = static_cast<float>(object->depth);
    solid = object->Solid();
    visible = object->Visible();
    persistent = object->Persistent();
    SetSprite(object->spriteIndex);
}

int32_t CInstance::ImageNumber() const
{
    const CSprite* sprite = Sprite_Data(sprite_index);
    return sprite ? sprite->frameCount : 0;
}

void CInstance::SetSprite(int32_t sprite)
{
    sprite_index = sprite;
    if (std::trunc(image_index) >= static_cast<float>(ImageNumber())) image_index = 0;
    bboxDirty = true;
}

void CInstance::SetPosition(float toX, float toY)
{
    if (toX == x && toY == y) return;
    x = toX;
    y = toY;
    bboxDirty = true;
}

void CInstance::ComputeSpeedFromDirection()
{
    const double angle = static_cast<double>(direction) * kDegree;
    hspeed = Snap(std::cos(angle) * static_cast<double>(speed));
    vspeed = Snap(-std::sin(angle) * static_cast<double>(speed));
    bboxDirty = true;
}

void CInstance::ComputeDirectionFromSpeed()
{
    const double across = hspeed, down = vspeed;
    if (hspeed == 0) {
        direction = vspeed > 0 ? 270.0F : vspeed < 0 ? 90.0F : 0.0F;
    } else {
        const double angle = std::atan2(down, across) / kDegree;
        direction = std::fmod(Snap(angle > 0 ? 360.0 - angle : -angle), 360.0F);
    }
    speed = Snap(std::sqrt(across * across + down * down));
    bboxDirty = true;
}

void CInstance::CopyFrom(const CInstance& from)
{
    CopyState(this, from);
    CopyImage(this, from);
    CopyMotion(this, from);
    CopyPathAndTimeline(this, from);
    CopyVarsFrom(from);
}

void CInstance::AddToObjectLists()
{
    if (inObjectLists || !object) return;
    object->instances.Add(this);
    for (CObjectSW* up = object; up; up = up->parent) up->instancesRecursive.Add(this);
    inObjectLists = true;
}

void CInstance::RemoveFromObjectLists()
{
    CObjectSW* lists = changedFrom ? changedFrom : object;
    changedFrom = nullptr;
    if (!inObjectLists) return;
    inObjectLists = false;
    lists->instances.Remove(this);
    for (CObjectSW* up = lists; up; up = up->parent) up->instancesRecursive.Remove(this);
}
