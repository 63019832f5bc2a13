#pragma once
// The two figures of a level. They play by the same rules; what differs between them
// is told here.

#include "game/Direction.h"

struct Figure {
    Object partner;

    Global character;  // "menino" or "menina"
    // Only this word has pictures of its own; any other shows the other character's.
    const char* knownCharacter;
    bool knownIsGirl;

    Key keys[ways];  // as `directions`

    Global walkingShown;  // the walking picture of the present step is set
    InstanceVar moving;   // worked out when it is asked for

    Global undoReady;  // a step can be undone
    Global step;       // newest entry of the history, 0 for none
    Global history;    // the figure's direction by step
    Global boxes;      // by box and step: column 0 the box, then its direction

    // The on-screen controls: what shows the keys, and the undo button's sides, in
    // pixels from the middle of the GUI.
    InstanceVar shownKeys[ways], shownUndo;
    double undoLeft, undoRight;
};

inline constexpr Figure playerOne = {
    oPlayerArrows2,
    jogadorUm,
    "menino",
    false,
    {keyW, keyS, keyA, keyD},
    mudaSprite,
    movendoUm,
    liberaUndo,
    undoAtual,
    playerUmPos,
    caixa,
    {s_up, s_down, s_left, s_right},
    s_z,
    -165,
    -95,
};
inline constexpr Figure playerTwo = {
    oPlayerArrows,
    jogadorDois,
    "menina",
    true,
    {keyUp, keyDown, keyLeft, keyRight},
    mudaSpriteDois,
    movendoDois,
    liberaUndoDois,
    undoAtualDois,
    playerDoisPos,
    caixaDois,
    {s_upTwo, s_downTwo, s_leftTwo, s_rightTwo},
    s_zDois,
    95,
    165,
};

inline const Figure& figure_of(const CInstance* self)
{
    return self->object_index == oPlayerArrows2.index ? playerTwo : playerOne;
}

inline constexpr Pictures standing = {sPlayer, sPlayer2};
inline constexpr double idleImageSpeed = 0.3;  // pictures a frame

// The picture of the character that a figure plays.
Sprite picture(const Figure& figure, const Pictures& pictures);

bool is_still(CInstance* who);  // has no speed of its own
bool is_moving(CInstance* self, const Figure& figure);
bool a_movement_key_is_held();  // of either figure

// Where someone who walks is headed: -1, 0 or 1 in each axis.
struct Heading {
    double x, y;
};
Heading heading_of(CInstance* who);
void set_speed(CInstance* who, double h, double v);
// How far the other stands in front, in pixels; behind below 0.
double in_front(CInstance* who, const Heading& to, CInstance* other);
// In the row or column that `who` walks along.
bool in_line(CInstance* who, const Heading& to, CInstance* other);
// A box in the figure's way stops and stands right before it.
void stop_before(CInstance* who, const Heading& to, CInstance* box);

// Starts to show the steps that lead in a direction.
void show_walking(CInstance* self, const Figure& figure, const Direction& direction);

// ---- walking and pushing (Walking.cpp)
void walk(CInstance* self, const Figure& figure, const Direction& direction);
void rest(CInstance* self, const Figure& figure);
void push(CInstance* self, CInstance* box, const Figure& figure);

// ---- the history and its way back (History.cpp)
void begin_history(CInstance* self, const Figure& figure);
void record_step(CInstance* self, const Figure& figure, const Direction& direction);
void cancel_step(CInstance* self, const Figure& figure);
void cancel_box(CInstance* self, const Figure& figure, double row);
// The box of a row of the table.
Target box_of_row(const Figure& figure, double row);

// ---- two figures together (TwoPlayers.cpp)
void place_player_two(CInstance* self);
double player_mode_icon();
void push_against_player_two(CInstance* self);
void turn_round(CInstance* who, const Figure& figure);

// A line of the console with a direction's word in it.
void say(const char* start, const char* word, const char* end);

// Keys of an earlier room or screen do not reach into this one.
void forget_movement_keys();
