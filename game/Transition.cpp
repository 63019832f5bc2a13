// The fade from room to room: the screen darkens, the room changes under the black, and
// the new one comes out of it. A level shows its world and number meanwhile. The fade is
// persistent: it is the one thing that lives on from the old room into the new one.

#include "game/Transition.h"

#include <cstdio>

namespace {

// What fadeState adds, times fadeSpeed, to the opacity of the black in each frame.
constexpr double darkening = 1, holding = 0, clearing = -1;

constexpr double secondsOfTitle = 2;

constexpr Colour teal = 8421376;

constexpr InstanceVar worldNames[] = {mundo1, mundo2, mundo3, mundo4, mundo5};

// The old room has gone dark: it stops, and gives way to the new one once the black
// has stood long enough.
void hold_black(CInstance* self)
{
    if (self->var(liberaFadeOut)) {
        room_goto(targetRoom);
        instance_activate_all();
        self->var(fadeState) = clearing;
    } else {
        self->var(fadeState) = holding;
        instance_deactivate_all(self, true);
    }
}

const char* level_word()
{
    if (idioma == "ingles") return "Level";
    if (idioma == "portugues") return "Fase";
    return nullptr;
}

void draw_level_title(CInstance* self, int level)
{
    draw_set_colour(Colour(self->var(cor1)));
    const InstanceVar world = worldNames[(level - 1) / levelsOfWorld];
    draw_text(self->var(xTexto1), self->var(yTexto1), self->var(world).get().text());

    draw_set_colour(Colour(self->var(cor2)));
    if (const char* word = level_word()) {
        char text[24];
        snprintf(text, sizeof text, "%s %d", word, level);
        draw_text(self->var(xTexto2), self->var(yTexto2), text);
    }
}

}  // namespace

void fade_to(double target)
{
    CInstance* fade = instance_create(0, 0, oTransicao);
    targetRoom = target;
    fade->var(ownTargetRoom) = target;
}

bool fading(CInstance* self)
{
    return instance_exists(self, oTransicao);
}

void draw_black_over_view(double opacity)
{
    draw_set_colour(black);
    draw_set_alpha(opacity);
    draw_rectangle(view_xview[0], view_yview[0], view_xview[0] + view_wview[0],
                   view_yview[0] + view_hview[0], false);
}

void vxl_Object_oTransicao_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(fadeAlpha) = 0;
    self->var(fadeState) = darkening;
    self->var(fadeSpeed) = 0.08;
    self->var(liberaFadeOut) = 0;
    self->var(io) = 1;
    self->var(tempoEspera) = secondsOfTitle;
    self->var(cor1) = teal;
    self->var(cor2) = white;
    self->var(xTexto1) = room_width / 2;
    self->var(yTexto1) = room_height / 2 - 50;
    self->var(xTexto2) = room_width / 2;
    self->var(yTexto2) = room_height / 2;
    self->var(mundo1) = "Grass land";
    self->var(mundo2) = "Sand land";
    self->var(mundo3) = "Candy land";
    self->var(mundo4) = "Patch land";
    self->var(mundo5) = "Pixel land";
    display_set_gui_size(view_wview[0], view_hview[0]);
}

void vxl_Object_oTransicao_Alarm_0(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(liberaFadeOut) = 1;
}

void vxl_Object_oTransicao_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(fadeAlpha) =
        clamp(self->var(fadeAlpha) + self->var(fadeState) * self->var(fadeSpeed), 0, 1);
    if (self->var(fadeAlpha) == 1) hold_black(self);
    if (self->var(fadeAlpha) == 0 && self->var(fadeState) == clearing) instance_destroy(self);

    draw_black_over_view(self->var(fadeAlpha));
    draw_set_font(fInterface);
    draw_set_halign(fa_center);
    draw_set_valign(fa_middle);
    // The wait begins with the first frame of the fade, not with full black.
    if (const int level = level_of(targetRoom)) {
        draw_level_title(self, level);
        if (self->var(io)) {
            self->var(alarm)[0] = room_speed * self->var(tempoEspera);
            self->var(io) = 0;
        }
    } else {
        self->var(alarm)[0] = 1;
    }
    draw_set_alpha(1);
}
