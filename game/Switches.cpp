// The switches of the pause and the options: sound, language, game speed. Each stores
// what it was set to at once.

#include "game/Panel.h"

namespace {

void store_sound(double on)
{
    ini_open("SaveGame.sav");
    ini_write_real("preferencias", "musicas", on);
    ini_close();
}

void show_sound(bool on)
{
    clicaSom = on ? 0 : 1;
    tocaSom = on ? 1 : 0;
    oSons.var(image_index) = on ? 0 : 1;
}

void turn_sound_off()
{
    audio_pause_all();
    show_sound(false);
    show_debug_message("Parou de tocar música!!");
    store_sound(0);
}

// The track of this room starts, if it is another one than that which was silenced.
void turn_sound_on()
{
    show_sound(true);
    if (audio_is_paused(musica) && audio_is_playing(musica)) {
        audio_resume_all();
        show_debug_message("Continuou a tocar música!!");
    }
    if (!audio_is_paused(musica) && !audio_is_playing(musica)) {
        audio_play_sound(musica, 10, true);
        audio_sound_gain(musica, 1, 0);
        show_debug_message("Começou a tocar música!!");
    }
    store_sound(1);
}

// The music is quiet while a panel is open.
void follow_panel(Object panel)
{
    audio_sound_gain(musica, panel.var(paused) ? 0.3 : 1, 500);
}

constexpr int showsPortuguese = 0, showsEnglish = 1;  // pictures of the language button

struct SpeedPicture {
    const char* word;
    int english, portuguese;
};
constexpr SpeedPicture speedPictures[] = {{"slow", 0, 3}, {"normal", 1, 4}, {"fast", 2, 5}};

void show_speed(CInstance* self)
{
    for (const SpeedPicture& each : speedPictures)
        if (gameType.is(each.word))
            self->var(image_index) = in_language(each.english, each.portuguese);
}

}  // namespace

// ==== sound

void vxl_Object_oSons_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    show_sound(music_plays());
}

void vxl_Object_oSons_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    for (const Object panel : {oPause, oConfiguracoes})
        if (instance_exists(self, panel)) follow_panel(panel);
}

void switch_sound()
{
    if (clicaSom == 0)
        turn_sound_off();
    else
        turn_sound_on();
}

// ==== language

void vxl_Object_oIdioma_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(image_speed) = 0;
    self->var(image_index) = in_language(showsEnglish, showsPortuguese);
}

void switch_language()
{
    const bool toEnglish = oIdioma.var(image_index) == showsPortuguese;
    idioma = toEnglish ? "ingles" : "portugues";
    oIdioma.var(image_index) = toEnglish ? showsEnglish : showsPortuguese;
    ini_open("SaveGame.sav");
    ini_write_string("preferencias", "idioma", toEnglish ? "ingles" : "portugues");
    ini_close();
}

// ==== game speed; scr_change_speed moves it on

void vxl_Object_oGameSpeed_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    ini_open("SaveGame.sav");
    self->var(velocidade) = ini_read_string("preferencias", "velocidade", "normal");
    ini_close();
    gameType = self->var(velocidade).get();
    self->var(image_speed) = 0;
    show_speed(self);
}

void vxl_Object_oGameSpeed_Draw_Gui(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    show_speed(self);
}
