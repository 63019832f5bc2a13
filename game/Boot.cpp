// The start of the program: the logo of its makers, under which their name is put together.

#include "game/Gamepad.h"
#include "game/Transition.h"

namespace {

constexpr double logoSeconds = 6;
constexpr double nameDrop = 86;         // pixels from the middle of the logo to that of the name
constexpr double nameImageSpeed = 0.6;  // pictures a frame
constexpr double lastOfName = 63;       // the name is whole in its last picture

// The language is asked for once, before the first title.
void leave_logo(CInstance* self)
{
    if (fading(self)) return;
    ini_open("SaveGame.sav");
    const bool firstTime = ini_read_string("preferencias", "tutorial", "true") == "true";
    ini_close();
    fade_to(firstTime ? room_idioma : room_titulo);
}

}  // namespace

void vxl_Room_room_intro_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (os_type == desktop) display_reset(2, true);
    roomAnterior = room_get_name(room);
    ini_open("SaveGame.sav");
    const double soundOn = ini_read_real("preferencias", "musicas", 1);
    ini_close();
    comeca = 1;
    if (soundOn == 1) auxiliarMusica = 1;
    if (soundOn == 0) auxiliarMusica = 0;
}

void vxl_Object_oFundoLogo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    display_set_gui_size(view_wview[0], view_hview[0]);
    self->var(fadeAlpha) = 1;
    self->var(fadeState) = -1;
    self->var(fadeSpeed) = 0.03;
    ini_open("SaveGame.sav");
    self->var(firstRun) = ini_read_string("preferencias", "tutorial", "true");
    ini_close();
    self->var(alarm)[0] = room_speed * logoSeconds;
    set_up_gamepad(self);
}

// Three ways lead on: waiting, a click, and the keys that accept.
void vxl_Object_oFundoLogo_Alarm_0(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    leave_logo(self);
}

void vxl_Object_oFundoLogo_Mouse_GlobalLeftPressed(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    leave_logo(self);
}

void vxl_Object_oFundoLogo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(key_inicio) =
        keyboard_check(keySpace) || keyboard_check(keyEnter) || pad_accepts(self);
    if (self->var(key_inicio)) leave_logo(self);
}

void vxl_Object_oFundoLogo_Draw(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_self(self);
}

// The logo comes out of the black.
void vxl_Object_oFundoLogo_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!(self->var(fadeAlpha) > 0)) return;
    self->var(fadeAlpha) =
        clamp(self->var(fadeAlpha) + self->var(fadeState) * self->var(fadeSpeed), 0, 1);
    draw_black_over_view(self->var(fadeAlpha));
    draw_set_alpha(1);
}

void vxl_Object_oLogo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!instance_exists(self, oNome))
        instance_create(room_width / 2, room_height / 2 + nameDrop, oNome);
}

void vxl_Object_oLogo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(x) = room_width / 2;
    self->var(y) = room_height / 2;
}

void vxl_Object_oNome_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = nameImageSpeed;
    self->var(image_index) = 0;
}

void vxl_Object_oNome_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(x) = room_width / 2;
    self->var(y) = room_height / 2 + nameDrop;
}

void vxl_Object_oNome_Other_AnimationEnd(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = lastOfName;
}
