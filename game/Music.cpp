// The music director: every room has its track. A track that plays goes on through all
// rooms that share it; another one begins anew; and while the player has the sound off
// nothing begins, though the director still notes what would play.

#include "game/Rules.h"

namespace {

const Sound levelTracks[] = {xFase1, xFase2, xFase3, xFase4, xFase5, xFase6, xFase7};

constexpr double quietGain = 0.3;  // during a pause
constexpr double fadeIn = 1000;    // milliseconds
constexpr double priority = 1;

bool on_map_page()
{
    return room >= room_menu1.index && room <= room_menu10.index;
}

// A restart of the room keeps its track.
bool in_another_room()
{
    return !ondeEsta.is(room_get_name(room).text());
}

// The sound was heard when this room began; at the start of the program it is to begin.
bool sound_is_on()
{
    if (comeca) {
        show_debug_message("Música começou a tocar!");
        return true;
    }
    const bool on = music_plays();
    show_debug_message(on ? "Música tocando!" : "Música não tá tocando!");
    return on;
}

// Levels draw theirs afresh; rooms without a rule keep the one before.
void choose_track(CInstance* self)
{
    if (comeca) {
        musica = xCapa.index;
        return;
    }
    if (!in_another_room()) return;
    if (room == room_titulo.index) musica = xCapa.index;
    if (on_map_page()) musica = xMundo1.index;
    if (level_of(room) > 0) {
        randomize();
        musica = double(self->var(musicaFase)[irandom(self->var(numeroMusicasFase))]);
    }
}

void begin_track()
{
    audio_play_sound(musica, priority, true);
    auxiliarMusica = 0;
}

// A change of track ends every sound, a click too.
void change_track(CInstance* self)
{
    audio_stop_all();
    if (!self->var(musicaTocando)) return;
    if (!audio_is_playing(musica) && !audio_is_paused(musica) && auxiliarMusica) begin_track();
    if (music_plays() && auxiliarMusica) {
        begin_track();
        audio_sound_gain(musica, 1, fadeIn);
    }
}

}  // namespace

void vxl_Object_oMusica_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    self->var(musicaTocando) = sound_is_on();
    int tracks = 0;
    for (const Sound track : levelTracks) self->var(musicaFase)[tracks++] = track.index;
    self->var(numeroMusicasFase) = array_length_1d(self->var(musicaFase).get()) - 1;

    choose_track(self);
    if (comeca) {
        if (auxiliarMusica) begin_track();
    } else if (in_another_room() && !musicaAtual.is(audio_get_name(musica).text())) {
        change_track(self);
    }

    musicaAtual = audio_get_name(musica);
    show_debug_message(musicaAtual.ref().get().text());
    ondeEsta = room_get_name(room);
    comeca = 0;
    auxiliarMusica = 1;
}

// Quieter behind the pause screen, while this object still acts.
void vxl_Object_oMusica_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (!instance_exists(self, oPause)) return;
    audio_sound_gain(musica, oPause.var(paused) ? quietGain : 1, 1);
}
