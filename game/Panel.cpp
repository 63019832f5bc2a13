#include "game/Panel.h"

namespace {

constexpr double veil = 0.8;               // opacity
constexpr Spot bannerSpot{0.5, 0, 0, 70};  // its middle
constexpr Object sharedButtons[] = {oSons,       oIdioma,   oAjuda,    oCreditos,
                                    oConquistas, oRankings, oGameSpeed};

// The music goes to a share of its loudness within half a second.
void fade_music(double share)
{
    if (!music_plays()) return;
    audio_play_sound(xPause, 1, false);
    audio_sound_gain(musica, share, 500);
}

}  // namespace

void freeze(CInstance* self)
{
    self->var(sprite) = sprite_create_from_surface(application_surface, 0, 0, room_width,
                                                   room_height, false, false, 0, 0);
    instance_deactivate_all(self, true);
}

void forget_picture(CInstance* self)
{
    if (sprite_exists(self->var(sprite))) sprite_delete(self->var(sprite));
    self->var(sprite) = -1;
}

void turn_music_down()
{
    fade_music(0.3);
}

void turn_music_up()
{
    fade_music(1);
}

void wake_or_create(CInstance* self, Object object, const Spot& spot)
{
    instance_activate_object(self, object);
    if (!instance_exists(self, object)) instance_create(spot.x(), spot.y(), object);
}

void bring_buttons(CInstance* self, MenuEntries entries)
{
    for (const MenuEntry& entry : entries)
        if (entry.button.index >= 0) wake_or_create(self, entry.button, entry.spot);
}

void put_buttons_away(CInstance* self)
{
    for (const Object button : sharedButtons) instance_deactivate_object(self, button);
}

void draw_panel(CInstance* self)
{
    if (sprite_exists(self->var(sprite)))
        draw_sprite(self, Sprite{static_cast<int32_t>(double(self->var(sprite)))}, 0, 0, 0);
    draw_set_colour(black);
    draw_set_alpha(veil);
    draw_rectangle(0, 0, room_width, room_height, false);
    draw_set_alpha(1);
    draw_sprite(self, sBarraPause, 0, 0, room_height);
}

void draw_banner(CInstance* self, Sprite banner)
{
    draw_sprite(self, banner, in_language(0, 1), bannerSpot.x(), bannerSpot.y());
}

void steer_panel(CInstance* self, const Steering& steering)
{
    steer(self, menu_steps(self, menuUp, menuDown), steering.up, steering.down);
    steer(self, menu_steps(self, menuLeft, menuRight), steering.left, steering.right);
}

bool panel_confirmed(CInstance* self)
{
    return keyboard_check_pressed(keySpace) ||
           gamepad_button_check_pressed(self->var(pad), gp_face1);
}

void use_button(CInstance* self, Object button)
{
    RValue nothing;
    if (button.index == oConquistas.index) show_achievements(self);
    if (button.index == oRankings.index) show_score_boards(self);
    if (button.index == oAjuda.index || button.index == oCreditos.index) open_screen(self, button);
    if (button.index == oSons.index) switch_sound();
    if (button.index == oIdioma.index) switch_language();
    if (button.index == oGameSpeed.index)
        vxl_Script_scr_change_speed(self, self, nothing, 0, nullptr);
}

void point_at(CInstance* self)
{
    const bool options_ = room == room_titulo.index;
    const MenuEntries entries = options_ ? entries_of_options() : entries_of_pause();
    for (size_t i = 0; i < entries.size(); ++i)
        if (entries[i].button.index == self->object_index)
            put_cursor(self, options_ ? oMenuOptionsNovo : oMenuPauseNovo, static_cast<double>(i));
}

// ==== the buttons that both panels show

void vxl_Object_oSons_Mouse_LeftReleased(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    use_button(self, Object{self->object_index});
}

void vxl_Object_oSons_Mouse_Enter(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    point_at(self);
}
