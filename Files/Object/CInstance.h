#pragma once
// One live thing of a room. Positions are pixels, angles degrees (0 to the
// right, counter-clockwise, y growing downward), speeds pixels a step.

#include <cstdint>

#include "Files/Base/VXObjectBase.h"

class CObjectSW;
struct CCode;
class VarRef;
struct InstanceVar;
struct BuiltinVar;

inline constexpr int32_t kFirstInstanceId = 100000;
inline constexpr int kAlarmCount = 12;

// Numbers that name instances.
enum InstanceNumber : int32_t {
    INSTANCE_SELF = -1,
    INSTANCE_OTHER = -2,
    INSTANCE_ALL = -3,
    INSTANCE_NOONE = -4,
    INSTANCE_GLOBAL = -5,
    INSTANCE_LOCAL = -7,
};

// Bits of mouseState.
enum MouseState : int32_t {
    MOUSE_INSIDE = 1,
    MOUSE_OUTSIDE = 2,
    MOUSE_ENTERED = 4,  // bit 2: the inside bit changed in this step
    MOUSE_LEFT = 8,     // bit 3: the outside bit changed in this step
};

class CInstanceBase : public VXObjectBase {};

class CInstance : public CInstanceBase {
public:
    // Enters no room list and no id table; with addToObjectLists it joins the
    // lists of its object. createCounter takes g_PhaseCounter.
    CInstance(float atX, float atY, int32_t instanceId, int32_t objectIndex, bool addToObjectLists);
    // Leaves the object lists (when in them) and the table of instances.
    ~CInstance() override;

    // Takes the object's values: mask, depth, solid, visible, persistent, sprite.
    // An index of -1 is taken as 0. Touches no list.
    void SetObject(int32_t objectIndex);
    void SetSprite(int32_t sprite);
    void SetPosition(float toX, float toY);  // marks the box stale only on a change
    void ComputeSpeedFromDirection();
    void ComputeDirectionFromSpeed();
    int32_t ImageNumber() const;  // frames of the sprite, 0 for no sprite
    int32_t CollisionSprite() const { return mask_index >= 0 ? mask_index : sprite_index; }
    bool Alive() const { return !marked && !deactivated; }
    // Copies every field and the user variables of `from` but id, createCounter, list
    // links and the places in lists: a copy made in a walk sits it out like any other
    // new instance.
    void CopyFrom(const CInstance& from);
    void AddToObjectLists();
    void RemoveFromObjectLists();

    // Typed access of game code; see Files/Code/Seam.h.
    VarRef var(InstanceVar variable);
    VarRef var(BuiltinVar variable);

    bool bboxDirty = true;
    bool visible = true, solid = false, persistent = false;
    bool marked = false;  // dead, waits for the purge
    bool deactivated = false;
    bool destroyed = false;  // the Destroy event has run
    bool carried = false;    // came over from the last room
    bool created = false;    // the Create event has run
    uint64_t createCounter = 0;
    int32_t id = 0;
    int32_t object_index = 0;
    CObjectSW* object = nullptr;
    void* physics = nullptr;
    void* skeleton = nullptr;
    int32_t sprite_index = -1;
    float image_index = 0, image_speed = 1;
    float image_xscale = 1, image_yscale = 1;
    float image_angle = 0, image_alpha = 1;
    int32_t image_blend = 0xFFFFFF;
    int32_t mask_index = -1;
    bool preciseMask = false;
    float x = 0, y = 0, xstart = 0, ystart = 0, xprevious = 0, yprevious = 0;
    float direction = 0, speed = 0, friction = 0;
    float gravity_direction = 270, gravity = 0;
    float hspeed = 0, vspeed = 0;
    int32_t bbox_left = 0, bbox_top = 0, bbox_right = 0, bbox_bottom = 0;  // both ends inside
    int32_t alarm[kAlarmCount] = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    int32_t path_index = -1;
    float path_position = 0, path_positionprevious = 0, path_speed = 0, path_scale = 1,
          path_orientation = 0;
    int32_t path_endaction = 0;
    float pathStartX = 0, pathStartY = 0;
    int32_t timeline_index = -1;
    float timelinePrevious = 0, timeline_position = 0, timeline_speed = 1;
    bool timeline_running = false, timeline_loop = false;
    bool outsideRoom = false;  // Outside Room fires at the change
    CCode* creationCode = nullptr;
    CCode* preCreateCode = nullptr;
    CObjectSW* changedFrom = nullptr;
    int32_t mouseState = MOUSE_OUTSIDE;
    int32_t layer = -1;
    bool inLayer = false;
    CInstance* next = nullptr;
    CInstance* previous = nullptr;
    float depth = 0;
    float sortedDepth = 0;
    int32_t tableSlot = -1;      // place in the global table of instances
    bool inObjectLists = false;  // of changedFrom while a change is pending, else of object
    bool depthPending = false;   // stands in g_DepthChanges
};
