// Steps from cell to cell. A new direction is chosen only on the grid, and a step that
// was started always runs on to the next cell.

#include <cmath>
#include <cstdio>

#include "game/Figure.h"

Sprite picture(const Figure& figure, const Pictures& pictures)
{
    const bool known = figure.character.is(figure.knownCharacter);
    return known == figure.knownIsGirl ? pictures.menina : pictures.menino;
}

bool is_still(CInstance* who)
{
    return who->var(hspeed) == 0 && who->var(vspeed) == 0;
}

bool is_moving(CInstance* self, const Figure& figure)
{
    const bool moves = !is_still(self);
    self->var(figure.moving) = moves;
    return moves;
}

bool a_movement_key_is_held()
{
    for (const Figure* figure : {&playerOne, &playerTwo})
        for (const Key key : figure->keys)
            if (keyboard_check(key)) return true;
    return false;
}

Heading heading_of(CInstance* who)
{
    const double h = who->var(hspeed), v = who->var(vspeed);
    return {double((h > 0) - (h < 0)), double((v > 0) - (v < 0))};
}

void set_speed(CInstance* who, double h, double v)
{
    who->var(hspeed) = h;
    who->var(vspeed) = v;
}

double in_front(CInstance* who, const Heading& to, CInstance* other)
{
    return (other->var(x) - who->var(x)) * to.x + (other->var(y) - who->var(y)) * to.y;
}

bool in_line(CInstance* who, const Heading& to, CInstance* other)
{
    return to.x != 0 ? other->var(y) == who->var(y) : other->var(x) == who->var(x);
}

void stop_before(CInstance* who, const Heading& to, CInstance* box)
{
    set_speed(box, 0, 0);
    box->var(x) = who->var(x) + to.x * cell;
    box->var(y) = who->var(y) + to.y * cell;
}

void say(const char* start, const char* word, const char* end)
{
    char line[80];
    snprintf(line, sizeof line, "%s%s%s", start, word, end);
    show_debug_message(line);
}

void show_walking(CInstance* self, const Figure& figure, const Direction& direction)
{
    self->var(sprite_index) = picture(figure, direction.walking);
    self->var(image_index) = 0;
    self->var(image_speed) = idleImageSpeed;
    figure.walkingShown = 1;
}

// A movement key is down.
void walk(CInstance* self, const Figure& figure, const Direction& direction)
{
    // The level is over.
    if (gameOver != 0) return;
    if (figure.walkingShown == 0) show_walking(self, figure, direction);
    // Between two cells the figure keeps its way.
    if (!on_grid(self)) return;
    action_move(self, direction.pattern, movePlayerSpeed);
    figure.walkingShown = 0;
    // The first frame of a level is not recorded: the table of boxes is not filled yet.
    if (self->var(comecaJogo) && habilitaUndo && place_snapped(self, cell, cell))
        record_step(self, figure, direction);
}

// No key went down in this frame: a figure whose keys are all up stops on its cell.
void rest(CInstance* self, const Figure& figure)
{
    for (const Key key : figure.keys)
        if (keyboard_check(key)) return;
    if (is_still(self)) self->var(sprite_index) = picture(figure, standing);
    self->var(image_speed) = idleImageSpeed;
    if (on_grid(self)) action_move(self, stop, 0);
}

namespace {

// The figure stays behind the box that it pushes and shows the effort.
void show_pushing(CInstance* self, const Figure& figure)
{
    const double shown = self->var(sprite_index);
    for (const Direction& direction : directions)
        if (shown == picture(figure, direction.walking).index)
            self->var(sprite_index) = picture(figure, direction.pushing);
}

// Between two cells, and as it sets out on its way back, a box keeps to the line that it
// moves along.
bool keeps_its_line(CInstance* box, double stepX, double stepY)
{
    if (stepX == 0 ? box->var(hspeed) != 0 : box->var(vspeed) != 0) return false;
    return place_snapped(box, stepX == 0 ? cell : 0, stepY == 0 ? cell : 0);
}

// A figure that has walked into something is put back to where it was in the last frame.
bool walked_into_something(CInstance* who)
{
    const double atX = who->var(x), atY = who->var(y);
    return !place_free(who, atX, atY) || place_meeting(who, atX, atY, oMonte);
}

// The place that the other figure will be put back to is still taken.
bool other_figure_comes_back_to(CInstance* box, double toX, double toY, const Figure& figure)
{
    for (CInstance* other : With(box, figure.partner))
        if (walked_into_something(other) && std::abs(toX - other->var(xprevious)) < cell &&
            std::abs(toY - other->var(yprevious)) < cell)
            return true;
    return false;
}

// The box moves by the figure's speed when neither anything solid nor another box
// stands in the way.
void push_box(CInstance* box, double stepX, double stepY, const Figure& figure)
{
    if (!keeps_its_line(box, stepX, stepY)) return;
    if (!action_if_empty(box, beside(stepX, stepY), false)) return;
    if (action_if_object(box, oMonte, beside(stepX, stepY))) return;
    const double toX = box->var(x) + stepX, toY = box->var(y) + stepY;
    if (other_figure_comes_back_to(box, toX, toY, figure)) return;
    box->var(x) = toX;
    box->var(y) = toY;
}

// The box walks back behind the figure, on the same way.
bool follows(CInstance* box, CInstance* self)
{
    const Heading to = heading_of(self);
    return box->var(hspeed) * to.x + box->var(vspeed) * to.y > 0 && in_front(self, to, box) < 0;
}

// The box walks back towards the figure.
bool comes_towards(CInstance* box, CInstance* self)
{
    const Heading to = heading_of(self);
    return box->var(hspeed) * to.x + box->var(vspeed) * to.y < 0 && in_line(self, to, box) &&
           in_front(self, to, box) > 0;
}

// The box walks back into a figure that stands on its cell.
bool walks_into(CInstance* box, CInstance* self)
{
    const Heading to = heading_of(box);
    return !is_still(box) && is_still(self) && on_grid(self) && in_line(box, to, self) &&
           in_front(box, to, self) > 0;
}

// Takes back the move by its speed that it is about to make.
void wait_a_frame(CInstance* who)
{
    who->var(x) -= double(who->var(hspeed));
    who->var(y) -= double(who->var(vspeed));
}

// Between two cells the box has met another, which the other figure pushes towards it, and
// no key drives the push any more.
bool is_held_up_by_a_box(CInstance* self, CInstance* box)
{
    if (on_grid(self) || a_movement_key_is_held()) return false;
    return in_front(self, heading_of(self), box) > 0 &&
           action_if_object(box, oMonte, beside(self->var(hspeed), self->var(vspeed)));
}

}  // namespace

// Both were put back to where they were in the last frame. The box goes first; then
// the figure is moved on into the place that the box has left, or put back again.
void push(CInstance* self, CInstance* box, const Figure& figure)
{
    // The level is over, or solved: boxes stand still.
    if (gameOver != 0 || moveCaixa == 0) return;
    // The other figure holds this one up: its box waits behind it.
    if (follows(box, self)) {
        wait_a_frame(self);
        wait_a_frame(box);
        return;
    }
    // The figure could not go back, and neither can its box.
    if (walks_into(box, self)) {
        const Heading back = heading_of(box);
        stop_before(self, {-back.x, -back.y}, box);
        return;
    }
    if (&figure == &playerOne && instance_exists(self, oPlayerArrows2))
        push_against_player_two(self);
    show_pushing(self, figure);
    if (comes_towards(box, self)) stop_before(self, heading_of(self), box);
    const double fromX = box->var(x), fromY = box->var(y);
    push_box(box, 0, self->var(vspeed), figure);
    push_box(box, self->var(hspeed), 0, figure);
    const bool moved = box->var(x) != fromX || box->var(y) != fromY;
    if (!moved && is_held_up_by_a_box(self, box)) turn_round(self, figure);
}
