// Rows of an instance. Most are plain reads and writes of a field; the setters that
// keep two fields in agreement stand first.

#include "Files/Function/Motion.h"
#include "Files/Object/Collision.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Sprite/CSprite.h"
#include "Files/Variable/Variable_Rows.h"

namespace {

using namespace rows;

float Single(const RValue* value)
{
    return static_cast<float>(REAL_RValue(value));
}

// ---- position and motion
bool Set_x(CInstance* self, int32_t, const RValue* value)
{
    if (self) self->SetPosition(Single(value), self->y);
    return self != nullptr;
}
bool Set_y(CInstance* self, int32_t, const RValue* value)
{
    if (self) self->SetPosition(self->x, Single(value));
    return self != nullptr;
}

template <float CInstance::*Field>
bool SetVelocity(CInstance* self, int32_t, const RValue* value)
{
    if (!self) return false;
    const float velocity = Single(value);
    if (velocity == self->*Field) return true;
    self->*Field = velocity;
    self->ComputeDirectionFromSpeed();
    return true;
}

bool Set_speed(CInstance* self, int32_t, const RValue* value)
{
    if (self) Motion_SetSpeed(self, Single(value));
    return self != nullptr;
}
bool Set_direction(CInstance* self, int32_t, const RValue* value)
{
    if (self) Motion_SetDirection(self, Single(value));
    return self != nullptr;
}

// ---- state
bool Get_alarm(CInstance* self, int32_t index, RValue* out)
{
    return self && Put(out, self->alarm[Slot(index, kAlarmCount)]);
}
bool Set_alarm(CInstance* self, int32_t index, const RValue* value)
{
    if (self) self->alarm[Slot(index, kAlarmCount)] = Integer(value);
    return self != nullptr;
}

bool Set_depth(CInstance* self, int32_t, const RValue* value)
{
    if (self) Instance_SetDepth(self, Single(value));
    return self != nullptr;
}

template <int32_t CInstance::*Side>
bool GetBox(CInstance* self, int32_t, RValue* out)
{
    if (!self) return false;
    EnsureBoundingBox(self);
    return Put(out, self->*Side);
}

bool Get_layer(CInstance*, int32_t, RValue* out)
{
    return Put(out, -1);
}

// ---- image
bool Set_sprite_index(CInstance* self, int32_t, const RValue* value)
{
    if (self) self->SetSprite(Integer(value));
    return self != nullptr;
}

bool Get_image_single(CInstance* self, int32_t, RValue* out)
{
    return self && Put(out, self->image_speed == 0 ? static_cast<double>(self->image_index) : -1.0);
}
bool Set_image_single(CInstance* self, int32_t, const RValue* value)
{
    if (!self) return false;
    const float frame = Single(value);
    self->image_speed = frame < 0 ? 1.0F : 0.0F;
    if (frame >= 0) self->image_index = frame;
    return true;
}

bool Get_image_number(CInstance* self, int32_t, RValue* out)
{
    return self && Put(out, self->ImageNumber());
}

// A length of the sprite, scaled; 0 with no sprite.
template <int32_t CSprite::*Length, float CInstance::*Scale>
bool GetScaled(CInstance* self, int32_t, RValue* out)
{
    if (!self) return false;
    const CSprite* sprite = Sprite_Data(self->sprite_index);
    return Put(out, sprite ? static_cast<double>(sprite->*Length) * (self->*Scale) : 0.0);
}

bool Get_image_blend(CInstance* self, int32_t, RValue* out)
{
    return self && PutColour(out, self->image_blend);
}

// A plain field that can be written.
#define FIELD(name) ReadWrite(#name, Get<&CInstance::name>, Set<&CInstance::name>)
#define TRUTH(name) ReadWrite(#name, Get<&CInstance::name>, SetTruth<&CInstance::name>)
#define SHAPE(name) ReadWrite(#name, Get<&CInstance::name>, SetShape<&CInstance::name>)
#define BOX(name) ReadOnly(#name, GetBox<&CInstance::name>)

constexpr VariableRow kRows[] = {
    ReadWrite("x", Get<&CInstance::x>, Set_x),
    ReadWrite("y", Get<&CInstance::y>, Set_y),
    FIELD(xprevious),
    FIELD(yprevious),
    FIELD(xstart),
    FIELD(ystart),
    ReadWrite("hspeed", Get<&CInstance::hspeed>, SetVelocity<&CInstance::hspeed>),
    ReadWrite("vspeed", Get<&CInstance::vspeed>, SetVelocity<&CInstance::vspeed>),
    ReadWrite("speed", Get<&CInstance::speed>, Set_speed),
    ReadWrite("direction", Get<&CInstance::direction>, Set_direction),
    FIELD(friction),
    FIELD(gravity),
    FIELD(gravity_direction),
    ReadOnly("object_index", Get<&CInstance::object_index>),
    ReadOnly("id", Get<&CInstance::id>),
    ReadWrite("alarm", Get_alarm, Set_alarm),
    TRUTH(solid),
    TRUTH(visible),
    TRUTH(persistent),
    ReadWrite("depth", Get<&CInstance::depth>, Set_depth),
    BOX(bbox_left),
    BOX(bbox_right),
    BOX(bbox_top),
    BOX(bbox_bottom),
    ReadWrite("sprite_index", Get<&CInstance::sprite_index>, Set_sprite_index),
    FIELD(image_index),
    ReadWrite("image_single", Get_image_single, Set_image_single),
    ReadOnly("image_number", Get_image_number),
    ReadOnly("sprite_width", GetScaled<&CSprite::width, &CInstance::image_xscale>),
    ReadOnly("sprite_height", GetScaled<&CSprite::height, &CInstance::image_yscale>),
    ReadOnly("sprite_xoffset", GetScaled<&CSprite::originX, &CInstance::image_xscale>),
    ReadOnly("sprite_yoffset", GetScaled<&CSprite::originY, &CInstance::image_yscale>),
    SHAPE(image_xscale),
    SHAPE(image_yscale),
    SHAPE(image_angle),
    FIELD(image_alpha),
    FIELD(image_speed),
    ReadWrite("image_blend", Get_image_blend, Set<&CInstance::image_blend>),
    SHAPE(mask_index),
    ReadOnly("path_index", Get<&CInstance::path_index>),
    FIELD(path_position),
    FIELD(path_positionprevious),
    FIELD(path_speed),
    FIELD(path_scale),
    FIELD(path_orientation),
    FIELD(path_endaction),
    FIELD(timeline_index),
    FIELD(timeline_position),
    FIELD(timeline_speed),
    TRUTH(timeline_running),
    TRUTH(timeline_loop),
    ReadOnly("layer", Get_layer),
};

}  // namespace

void Variable_RegisterInstanceRows()
{
    Variable_AddRows(kRows);
}
