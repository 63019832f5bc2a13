// The direct forms: native arguments in, the runtime's own operations behind.

#include "Files/Base/Error.h"
#include "Files/Base/Utf8.h"
#include "Files/Code/Seam.h"
#include "Files/Function/Function_Action.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Draw_Room.h"
#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/Surface.h"
#include "Files/Graphics/Text.h"
#include "Files/IO/IO.h"
#include "Files/IO/Ini_File.h"
#include "Files/Object/Collision.h"
#include "Files/Object/Instance_Main.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Sprite/CSprite.h"

namespace {

float F(double value)
{
    return static_cast<float>(value);
}

}  // namespace

bool place_free(CInstance* self, double px, double py, Here line)
{
    Frame::Line(line);
    return Place_Free(self, F(px), F(py));
}

bool place_meeting(CInstance* self, double px, double py, Target what, Here line)
{
    Frame::Line(line);
    return Place_Find(self, Frame::Other(), F(px), F(py), what.number) != nullptr;
}

bool position_meeting(CInstance* self, double px, double py, Target what, Here line)
{
    Frame::Line(line);
    return Position_Find(self, Frame::Other(), F(px), F(py), what.number) != nullptr;
}

bool action_if_aligned(CInstance* self, double hsnap, double vsnap, Here line)
{
    Frame::Line(line);
    return Place_Snapped(self, hsnap, vsnap);
}

bool action_if_empty(CInstance* self, Place place, bool allObjects, Here line)
{
    Frame::Line(line);
    g_ActionRelative = place.relative;
    return Action_IfEmpty(self, place.x, place.y, allObjects);
}

bool action_if_object(CInstance* self, Object object, Place place, Here line)
{
    Frame::Line(line);
    g_ActionRelative = place.relative;
    return Action_IfObject(self, Frame::Other(), object.index, place.x, place.y);
}

CInstance* action_create_object(CInstance* self, Object object, Place place, Here line)
{
    Frame::Line(line);
    g_ActionRelative = place.relative;
    return Action_CreateObject(self, object.index, place.x, place.y);
}

void action_kill_object(CInstance* self, Here line)
{
    Frame::Line(line);
    Instance_Destroy(self, true);
}

void action_set_relative(bool relative, Here line)
{
    Frame::Line(line);
    g_ActionRelative = relative;
}

void action_move(CInstance* self, const char* directions, double speedPixels, Here line)
{
    Frame::Line(line);
    g_ActionRelative = false;
    Action_Move(self, directions, speedPixels);
}

CInstance* instance_create(double px, double py, Object object, Here line)
{
    Frame::Line(line);
    return Room_CreateInstance(F(px), F(py), object.index);
}

void instance_destroy(CInstance* instance, Here line)
{
    Frame::Line(line);
    if (instance->Alive()) Instance_Destroy(instance, true);
}

void instance_destroy(CInstance* self, Object object, Here line)
{
    Frame::Line(line);
    InstanceIterator walk(object.index, self, Frame::Other());
    while (CInstance* instance = walk.Next())
        if (instance->Alive()) Instance_Destroy(instance, true);
}

bool instance_exists(CInstance* self, Target what, Here line)
{
    Frame::Line(line);
    return Instance_ExistsDirect(self, Frame::Other(), what.number);
}

void draw_self(CInstance* self, Here line)
{
    Frame::Line(line);
    DrawSelf(self);
}

void draw_sprite(CInstance* self, Sprite sprite, double frame, double px, double py, Here line)
{
    Frame::Line(line);
    CSprite* drawn = Sprite_Data(sprite.index);
    if (!drawn) {
        Error_Show("Trying to draw non-existing sprite.", false);
        return;
    }
    if (frame < 0) frame = self->image_index;
    drawn->Draw(static_cast<int32_t>(frame), F(px), F(py));
}

void draw_set_colour(uint32_t colour, Here line)
{
    Frame::Line(line);
    Draw_SetColour(colour);
}

void draw_set_alpha(double alpha, Here line)
{
    Frame::Line(line);
    Draw_SetAlpha(alpha);
}

void draw_set_font(Font font, Here line)
{
    Frame::Line(line);
    Text_SetFont(font.index);
}

void draw_set_halign(int32_t align, Here line)
{
    Frame::Line(line);
    Text_SetHAlign(align);
}

void draw_set_valign(int32_t align, Here line)
{
    Frame::Line(line);
    Text_SetVAlign(align);
}

void draw_text(double px, double py, const char* text, Here line)
{
    Frame::Line(line);
    Text_Draw(text, TextPlace{F(px), F(py)});
}

void draw_rectangle(double x1, double y1, double x2, double y2, bool outline, Here line)
{
    Frame::Line(line);
    Draw_Rectangle(F(x1), F(y1), F(x2), F(y2), outline);
}

bool surface_set_target(int32_t surface, Here line)
{
    Frame::Line(line);
    return Surface_SetTarget(0, surface);
}

bool surface_reset_target(Here line)
{
    Frame::Line(line);
    return Surface_ResetTarget();
}

bool keyboard_check(int32_t key, Here line)
{
    Frame::Line(line);
    return IO_KeyCheck(key);
}

double irandom(double n, Here line)
{
    Frame::Line(line);
    return static_cast<double>(Random_Integer(static_cast<int64_t>(n)));
}

double choose(std::initializer_list<double> values, Here line)
{
    Frame::Line(line);
    return values.size() > 0 ? values.begin()[Random_Word() % values.size()] : 0;
}

double ord(const char* text, Here line)
{
    Frame::Line(line);
    return Utf8_Next(&text);
}

void show_debug_message(const Value& value, Here line)
{
    Frame::Line(line);
    Console_DebugMessage(ToText(&value.raw()));
}

void show_debug_message(const char* text, Here line)
{
    Frame::Line(line);
    Console_DebugMessage(text);
}

void game_end(Here line)
{
    Frame::Line(line);
    New_Room = ROOM_END_GAME;
}

void ini_open(const char* name, Here line)
{
    Frame::Line(line);
    Ini_Open(name);
}

double ini_read_real(const char* section, const char* key, double absent, Here line)
{
    Frame::Line(line);
    return Ini_ReadReal(section, key, absent);
}

void ini_write_real(const char* section, const char* key, double value, Here line)
{
    Frame::Line(line);
    Ini_WriteReal(section, key, value);
}
