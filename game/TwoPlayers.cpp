// Two figures in one level: how the second one joins and leaves, and what happens when
// they are in each other's way.

#include "game/Figure.h"
#include "game/TouchKeys.h"

namespace {

// The modes in the order in which they follow each other.
struct Mode {
    const char* word;
    const char* next;
};
constexpr Mode modes[] = {
    {"onePlayer", "twoPlayersOne"},
    {"twoPlayersOne", "twoPlayersTwo"},
    {"twoPlayersTwo", "onePlayer"},
};

bool fits(CInstance* self, double px, double py)
{
    return place_free(self, px, py) && !place_meeting(self, px, py, oMonte);
}

}  // namespace

double player_mode_icon()
{
    if (playerMode == "twoPlayersOne") return 1;
    if (playerMode == "twoPlayersTwo") return 2;
    return 0;
}

// Player two comes in beside player one, in the first cell that is free; with none
// player one stays alone.
void place_player_two(CInstance* self)
{
    if (instance_exists(self, oPlayerArrows2)) return;
    for (const Direction& side : {right, left, down, up}) {
        const double px = self->var(x) + side.x * cell, py = self->var(y) + side.y * cell;
        if (!fits(self, px, py)) continue;
        instance_create(px, py, oPlayerArrows2);
        return;
    }
}

// ==== change of mode in a level

namespace {

// A figure that joins late has stood still in all the steps taken so far.
void begin_late_history()
{
    playerDoisPos[0] = "inicio";
    for (double step = 1; step <= undoAtual; ++step) playerDoisPos[step] = "parada";
}

void join(CInstance* self)
{
    begin_late_history();
    place_player_two(self);
    if (!touchControls) return;
    display_set_gui_size(view_wview[0], view_hview[0]);
    add_touch_keys_of_player_two();
}

void leave(CInstance* self)
{
    instance_destroy(self, oPlayerArrows2);
    if (touchControls) delete_touch_keys_of_player_two();
}

void set_player_mode(const char* word)
{
    playerMode = word;
    oControl.var(s_p) = player_mode_icon();
}

bool someone_walks(CInstance* self)
{
    bool walks = is_moving(self, playerOne);
    for (CInstance* second : With(self, oPlayerArrows2))
        walks = is_moving(second, playerTwo) || walks;
    return walks;
}

}  // namespace

void vxl_Object_oPlayerArrows_KeyPress_P(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (someone_walks(self)) return;
    for (const Mode& mode : modes) {
        if (!playerMode.is(mode.word)) continue;
        set_player_mode(mode.next);
        if (playerMode == "twoPlayersOne") join(self);
        if (playerMode == "onePlayer") leave(self);
        ini_open("SaveGame.sav");
        ini_write_string("preferencias", "modo", mode.next);
        ini_close();
        return;
    }
}

// ==== a push of player one that is stopped by player two

namespace {

bool points(CInstance* who, const Direction& way)
{
    return way.x * who->var(hspeed) > 0 || way.y * who->var(vspeed) > 0;
}

// The order in which blocked pushes are looked at: right, left, up, down.
constexpr int blockedOrder[ways] = {3, 2, 0, 1};

// Player two stands right behind the box that player one pushes.
void note_blocked_pushes(CInstance* self)
{
    if (place_snapped(self, cell, cell)) return;
    for (const int i : blockedOrder) {
        const Direction& way = directions[i];
        if (!keyboard_check(playerOne.keys[i]) && !points(self, way)) continue;
        const double reach = cell + 1;
        if (!place_meeting(self, self->var(x) + way.x * reach, self->var(y) + way.y * reach,
                           oPlayerArrows2))
            continue;
        self->var(way.blocked) = 1;
        say("Caixa indo pra ", way.word, " bloqueada");
    }
}

// The boxes that a figure touches on the side of (towardsX, towardsY).
template <class Act>
void for_touched_boxes(CInstance* who, const Figure& figure, double towardsX, double towardsY,
                       Act act)
{
    const double boxes = instance_number(oMonte);
    for (double row = 0; row < boxes; ++row) {
        const Target box = box_of_row(figure, row);
        if (place_meeting(who, who->var(x) + towardsX, who->var(y) + towardsY, box)) act(row, box);
    }
}

// The box walks against the figure's own way; one that has not left its cell stays.
void send_back(CInstance* who, const Direction& way, Target box)
{
    for (CInstance* sent : With(who, box)) {
        if (on_grid(sent)) continue;
        if (way.x != 0)
            sent->var(hspeed) = who->var(hspeed) * -1;
        else
            sent->var(vspeed) = who->var(vspeed) * -1;
    }
}

void set_speed(CInstance* who, double h, double v)
{
    who->var(hspeed) = h;
    who->var(vspeed) = v;
}

// What a figure that has turned does with its boxes. One that it had pushed stays
// behind between two cells: it comes along. One that it walks towards, and that has
// the same line, is pushed again from where the figure stands.
void take_boxes_along(CInstance* who, const Figure& figure)
{
    const double h = who->var(hspeed), v = who->var(vspeed);
    const double toX = (h > 0) - (h < 0), toY = (v > 0) - (v < 0);
    const auto ahead = [&](CInstance* box) {
        return (box->var(x) - who->var(x)) * toX + (box->var(y) - who->var(y)) * toY;
    };
    for_touched_boxes(who, figure, -toX, -toY, [&](double, Target box) {
        for (CInstance* taken : With(who, box))
            if (ahead(taken) < 0 && !on_grid(taken) && is_still(taken)) set_speed(taken, h, v);
    });
    for_touched_boxes(who, figure, toX, toY, [&](double, Target box) {
        for (CInstance* pushed : With(who, box)) {
            if (ahead(pushed) <= 0 || pushed->var(h != 0 ? hspeed : vspeed) == 0) continue;
            if (pushed->var(h != 0 ? y : x) != who->var(h != 0 ? y : x)) continue;
            set_speed(pushed, 0, 0);
            pushed->var(x) = who->var(x) + toX * cell;
            pushed->var(y) = who->var(y) + toY * cell;
        }
    });
}

void turn_round(CInstance* who, const Figure& figure)
{
    who->var(vspeed) = who->var(vspeed) * -1;
    who->var(hspeed) = who->var(hspeed) * -1;
    if (!is_still(who)) take_boxes_along(who, figure);
    cancel_step(who, figure);
}

// Both figures turn back to the cells that they came from. A box between them has both
// at its sides; player two comes last and takes it along.
void turn_back(CInstance* self, const Direction& way)
{
    for_touched_boxes(self, playerOne, way.x, way.y, [&](double row, Target box) {
        if (!self->var(caixaVoltando)) send_back(self, way, box);
        cancel_box(self, playerOne, row);
        show_debug_message("Caixa bateu no jogador 2 e está voltando");
    });
    for (CInstance* second : With(self, oPlayerArrows2)) {
        for_touched_boxes(second, playerTwo, -way.x, -way.y, [&](double row, Target box) {
            const bool sends = !self->var(caixaVoltando);
            if (sends) send_back(second, way, box);
            second->var(caixaVoltando) = sends;
            cancel_box(second, playerTwo, row);
            show_debug_message("Caixa bateu no jogador 1 e está voltando");
        });
    }
    turn_round(self, playerOne);
    for (CInstance* second : With(self, oPlayerArrows2)) turn_round(second, playerTwo);
    self->var(way.blocked) = 0;
}

}  // namespace

void push_against_player_two(CInstance* self)
{
    note_blocked_pushes(self);
    if (a_movement_key_is_held()) return;
    for (const int i : blockedOrder)
        if (self->var(directions[i].blocked)) turn_back(self, directions[i]);
}

// ==== the figures against each other

namespace {

// Each is a wall for the other. One that was stopped between two cells walks back once
// no key drives it any more.
void meet(CInstance* self, const Figure& figure)
{
    if (on_grid(self) || a_movement_key_is_held()) return;
    turn_round(self, figure);
}

}  // namespace

void vxl_Object_oPlayerArrows_Collision_oPlayerArrows2(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    meet(self, playerOne);
}

void vxl_Object_oPlayerArrows2_Collision_oPlayerArrows(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    meet(self, playerTwo);
}
