// The title: the word is put together again and again, and after the first time the two
// characters rise beside it and bring the main menu.

#include "game/Gamepad.h"

namespace {

constexpr double lastOfTitle = 64;  // the word is whole in the last picture
constexpr double titleSeconds = 5;  // for which it stands then

constexpr double riseSpeed = -8;  // pixels a frame, upward
constexpr double riseEnd = 195;   // the first y at or above it ends the rise
constexpr double characterImageSpeed = 0.2;
constexpr double lastOfCharacter = 11;

void start_title(CInstance* self)
{
    self->var(image_index) = 0;
    self->var(image_speed) = 1;
}

// The two do not move in step.
void start_rise(CInstance* self, double lean)
{
    randomize();
    self->var(image_index) = irandom(lastOfCharacter);
    self->var(image_speed) = characterImageSpeed;
    self->var(image_angle) = lean;
    self->var(vspeed) = riseSpeed;
}

bool risen(CInstance* self)
{
    return self->var(y) <= riseEnd;
}

void bring_main_menu()
{
    instance_create(room_width - 75, 15, oConfiguracoes);
    instance_create(0, 0, oMenuNovo);
    if (on_touch_platform()) {
        instance_create(10, 15, oGooglePlus);
        instance_create(10, 90, oFacebook);
    }
    passaTela = 1;
}

// Not under the options, which a visit to the help leaves with the title awake.
void ask_to_leave(CInstance* self)
{
    if (!passaTela || oConfiguracoes.var(paused)) return;
    RValue nothing;
    vxl_Script_scr_sair(self, self, nothing, 0, nullptr);
}

}  // namespace

void vxl_Room_room_titulo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    ini_open("SaveGame.sav");
    idioma = ini_read_string("preferencias", "idioma", "ingles");
    ini_close();
}

void vxl_Object_oTitulo_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    start_title(self);
    passaTela = 0;
    self->var(criaPersonagem) = 1;
    set_up_gamepad(self);
}

void vxl_Object_oTitulo_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(key_voltar) = gamepad_button_check_pressed(self->var(pad), gp_select);
    if (self->var(key_voltar)) ask_to_leave(self);
}

void vxl_Object_oTitulo_Keyboard_Backspace(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    ask_to_leave(self);
}

void vxl_Object_oTitulo_Other_AnimationEnd(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = lastOfTitle;
    self->var(alarm)[0] = room_speed * titleSeconds;
    if (!self->var(criaPersonagem)) return;
    instance_create(-35, room_height - 20, oPersonagemCapa);
    instance_create(room_width - 335, room_height - 20, oPersonagemCapa2);
    self->var(criaPersonagem) = 0;
}

void vxl_Object_oTitulo_Alarm_0(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    start_title(self);
}

void vxl_Object_oPersonagemCapa_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    start_rise(self, 3);
}

void vxl_Object_oPersonagemCapa2_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    start_rise(self, -3);
}

void vxl_Object_oPersonagemCapa_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!risen(self)) return;
    self->var(vspeed) = 0;
    self->var(alarm)[0] = 30;
    if (!passaTela) bring_main_menu();
}

void vxl_Object_oPersonagemCapa2_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (risen(self)) self->var(vspeed) = 0;
}

// The same pair stands over the end of the last level.
void vxl_Object_oPersonagemFinal_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    start_rise(self, 3);
    self->var(image_index) = 0;
}

void vxl_Object_oPersonagemFinal2_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    start_rise(self, -3);
    self->var(image_index) = 0;
}
