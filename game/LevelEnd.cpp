// The end of a level: a figure walked out through the open gate. All book-keeping of
// the campaign happens here, in one event.

#include "game/Figure.h"
#include "game/Map.h"
#include "game/Milestones.h"

namespace {

constexpr int worlds = levels / levelsOfWorld;

constexpr InstanceVar levelTimes[levelsOfWorld] = {
    tempo0,  tempo1,  tempo2,  tempo3,  tempo4,  tempo5,  tempo6,  tempo7,  tempo8,  tempo9,
    tempo10, tempo11, tempo12, tempo13, tempo14, tempo15, tempo16, tempo17, tempo18, tempo19};

// The score boards: one for each world, and one for the whole game.
struct Board {
    InstanceVar ranking;
    int entry;
    InstanceVar time;
};
constexpr Board worldBoards[worlds] = {
    {rankingMundo1, 17, tempoMundo1}, {rankingMundo2, 18, tempoMundo2},
    {rankingMundo3, 19, tempoMundo3}, {rankingMundo4, 20, tempoMundo4},
    {rankingMundo5, 21, tempoMundo5},
};
constexpr int wholeGameEntry = 22;

// The level just finished stays finished, and the next one opens. One that is open or
// finished already keeps its state.
void unlock_next_level(CInstance* self)
{
    const int level = level_of(room);
    if (level == 0) return;
    const LevelKey thisLevel(level), nextLevel(level + 1);
    ini_open("SaveGame.sav");
    self->var(status) = ini_read_real("Levels", nextLevel.text, 0);
    ini_close();
    ini_open("SaveGame.sav");
    ini_write_real("Levels", thisLevel.text, levelFinished);
    if (self->var(status) == 0) ini_write_real("Levels", nextLevel.text, levelOpen);
    ini_close();
    post_level_milestones(level);
}

// The newest time of a level replaces an earlier one, better or not.
void store_times()
{
    const Value level = room_get_name(room);
    ini_open("SaveGame.sav");
    ini_write_real("Tempo", "Segundos", oClock.var(seconds));
    ini_write_real("Tempo", "Minutos", oClock.var(minutes));
    ini_write_real("Tempo", "Horas", oClock.var(hours));
    ini_write_real("Tempo", "Total", oClock.var(totalTime));
    ini_write_real("Tempo", level.text(), oClock.var(levelTime));
    ini_close();
}

void name_boards(CInstance* self)
{
    for (const Board& board : worldBoards) self->var(board.ranking) = EntryId(board.entry).text;
    self->var(rankingGeral) = EntryId(wholeGameEntry).text;
}

// What is stored of the world's last level, of the last of all, and of the world's
// times. `first` and `last` are the world's levels.
void read_world(CInstance* self, int level, int first, int last)
{
    ini_open("SaveGame.sav");
    if (level != last) self->var(mundoFim) = ini_read_real("Levels", LevelKey(last).text, 0);
    if (level != levels) self->var(jogoFim) = ini_read_real("Levels", LevelKey(levels).text, 0);
    for (int i = 0; i < levelsOfWorld; ++i) {
        const Value name = room_get_name(room_level1.index + first - 1 + i);
        self->var(levelTimes[i]) = ini_read_real("Tempo", name.text(), 0);
    }
    ini_close();
}

double sum_of_times(CInstance* self)
{
    double sum = 0;
    for (const InstanceVar time : levelTimes) sum += self->var(time);
    return sum;
}

// A world's board takes part once its last level has been finished, the whole game's
// once the last of all has.
void post_scores(CInstance* self)
{
    name_boards(self);
    const int level = level_of(room);
    if (level == 0) return;
    const int world = (level - 1) / levelsOfWorld;
    const int first = world * levelsOfWorld + 1, last = first + levelsOfWorld - 1;
    read_world(self, level, first, last);
    if (level == last || self->var(mundoFim) == levelFinished) {
        const Board& board = worldBoards[world];
        self->var(board.time) = sum_of_times(self);
        if (achievement_available())
            achievement_post_score(self->var(board.ranking).get().text(),
                                   self->var(board.time) * thousandths);
    }
    if (level == levels || self->var(jogoFim) == levelFinished) {
        if (achievement_available())
            achievement_post_score(self->var(rankingGeral).get().text(),
                                   oClock.var(totalTime) * thousandths);
    }
}

void play_fanfare(CInstance* self)
{
    if (!music_plays() || self->var(tocaSomFinal) != 0) return;
    audio_play_sound(xFimFase, 1, false);
    self->var(tocaSomFinal) = 1;
}

}  // namespace

RValue& vxl_Script_scr_passou_fase(CInstance* self, CInstance* other, RValue& result, int, RValue**)
{
    Frame frame(self, other);
    unlock_next_level(self);
    return result;
}

// Whoever comes out first ends the level for both.
void vxl_Object_oPlayerArrows_Collision_oFinal(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    const Figure& figure = figure_of(self);
    if (!on_grid(other)) return;
    gameOver = 1;
    action_create_object(self, oFimFase, at(room_width / 2, room_height / 2));
    unlock_next_level(self);
    contaTempo = 0;
    forget_movement_keys();
    store_times();
    post_time_milestones(oClock.var(totalTime));
    self->var(sprite_index) = picture(figure, standing);
    play_fanfare(self);
    instance_destroy(self, oSeta);
    for (const Object row : {oProximo, oRecomecarPause, oVoltarMenu}) instance_create(0, 0, row);
    forget_movement_keys();
    io_clear();
    instance_destroy(self, figure.partner);
    instance_destroy(self);
    post_scores(self);
}
