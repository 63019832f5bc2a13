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

// The order in which blocked pushes are looked at.
constexpr Way blockedOrder[ways] = {wayRight, wayLeft, wayUp, wayDown};

// Player two stands right behind the box that player one pushes.
void note_blocked_pushes(CInstance* self)
{
    if (place_snapped(self, cell, cell)) return;
    for (const Way each : blockedOrder) {
        const Direction& way = directions[each];
        if (!keyboard_check(playerOne.keys[each]) && !points(self, way)) continue;
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

// The box walks against the figure's own way.
void send_back(CInstance* who, const Direction& way, Target box)
{
    for (CInstance* sent : With(who, box)) {
        if (way.x != 0)
            sent->var(hspeed) = who->var(hspeed) * -1;
        else
            sent->var(vspeed) = who->var(vspeed) * -1;
    }
}

// The box that a figure had pushed before it turned, left between two cells, comes along.
void take_box_behind_along(CInstance* who, const Figure& figure, const Heading& to)
{
    for_touched_boxes(who, figure, -to.x, -to.y, [&](double, Target touched) {
        for (CInstance* box : With(who, touched))
            if (in_front(who, to, box) < 0 && !on_grid(box) && is_still(box))
                set_speed(box, who->var(hspeed), who->var(vspeed));
    });
}

// A box on its way back that the figure has turned towards is pushed again, from where
// the figure stands.
void push_box_in_front_again(CInstance* who, const Figure& figure, const Heading& to)
{
    for_touched_boxes(who, figure, to.x, to.y, [&](double, Target touched) {
        for (CInstance* box : With(who, touched)) {
            if (in_front(who, to, box) <= 0 || !in_line(who, to, box)) continue;
            if (box->var(to.x != 0 ? hspeed : vspeed) == 0) continue;
            stop_before(who, to, box);
        }
    });
}

}  // namespace

// The figure walks back to the cell that it came from, and its step did not happen.
void turn_round(CInstance* who, const Figure& figure)
{
    set_speed(who, who->var(hspeed) * -1, who->var(vspeed) * -1);
    if (!is_still(who)) {
        const Heading back = heading_of(who);
        take_box_behind_along(who, figure, back);
        push_box_in_front_again(who, figure, back);
    }
    cancel_step(who, figure);
}

namespace {

// The box goes against player one's way; where player two touches it too, he has the last
// word.
void turn_boxes_of_player_one(CInstance* one, const Direction& way)
{
    for_touched_boxes(one, playerOne, way.x, way.y, [&](double row, Target box) {
        if (!one->var(caixaVoltando)) send_back(one, way, box);
        cancel_box(one, playerOne, row);
        show_debug_message("Caixa bateu no jogador 2 e está voltando");
    });
}

// A box between both goes with player two, who comes last.
void turn_boxes_of_player_two(CInstance* one, CInstance* two, const Direction& way)
{
    for_touched_boxes(two, playerTwo, -way.x, -way.y, [&](double row, Target box) {
        const bool sends = !one->var(caixaVoltando);
        if (sends) send_back(two, way, box);
        two->var(caixaVoltando) = sends;
        cancel_box(two, playerTwo, row);
        show_debug_message("Caixa bateu no jogador 1 e está voltando");
    });
}

// A blocked push is called off: both figures turn back to the cells that they came from.
void call_off(CInstance* one, const Direction& way)
{
    turn_boxes_of_player_one(one, way);
    for (CInstance* two : With(one, oPlayerArrows2)) turn_boxes_of_player_two(one, two, way);
    turn_round(one, playerOne);
    for (CInstance* two : With(one, oPlayerArrows2)) turn_round(two, playerTwo);
    one->var(way.blocked) = 0;
}

}  // namespace

void push_against_player_two(CInstance* self)
{
    note_blocked_pushes(self);
    if (a_movement_key_is_held()) return;
    for (const Way each : blockedOrder)
        if (self->var(directions[each].blocked)) call_off(self, directions[each]);
}

// ==== the figures against each other

namespace {

// The other figure has run into this one from behind.
bool walks_away_from(CInstance* self, CInstance* other)
{
    const Heading to = heading_of(self);
    return in_line(self, to, other) && in_front(self, to, other) < 0;
}

// Each is a wall for the other. One that was stopped between two cells walks back once
// no key drives it any more.
void meet(CInstance* self, CInstance* other, const Figure& figure)
{
    if (on_grid(self) || a_movement_key_is_held()) return;
    if (walks_away_from(self, other)) return;
    turn_round(self, figure);
}

}  // namespace

void vxl_Object_oPlayerArrows_Collision_oPlayerArrows2(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    meet(self, other, playerOne);
}

void vxl_Object_oPlayerArrows2_Collision_oPlayerArrows(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    meet(self, other, playerTwo);
}
