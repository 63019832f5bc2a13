// The history of a figure's steps, and undo. Undo sets nothing back to a stored place:
// it reads the last step and lets the figure and its box walk it backwards.

#include "game/Figure.h"

namespace {

constexpr double touchUndoSpeed = 4;  // pixels a frame, whatever the game speed

// ---- foretelling a step, after action_move and before the figure leaves its cell

bool box_ahead(CInstance* self, const Ahead& ahead)
{
    return place_meeting(self, self->var(x) + ahead.nextX, self->var(y) + ahead.nextY, oMonte);
}

bool beyond_is_free(CInstance* self, const Ahead& ahead)
{
    return place_free(self, self->var(x) + ahead.freeX, self->var(y) + ahead.freeY) &&
           !position_meeting(self, self->var(x) + ahead.pointX, self->var(y) + ahead.pointY,
                             oMonte);
}

// What the step does to the figure: its direction, or "parada" when it is stopped.
void record_figure(CInstance* self, const Figure& figure, const Direction& direction)
{
    VarRef entry = figure.history[figure.step];
    const Ahead& ahead = direction.ahead;
    if (box_ahead(self, ahead)) {
        if (beyond_is_free(self, ahead)) {
            entry = self->var(direction.name);
            say("O personagem foi pra ", direction.word, " com caixa");
        } else {
            entry = self->var(dirParada);
            show_debug_message("O personagem ficou preso");
        }
    } else if (place_free(self, self->var(x) + ahead.nextX, self->var(y) + ahead.nextY)) {
        entry = self->var(direction.name);
        say("O personagem foi pra ", direction.word, " sem caixa");
    } else {
        entry = self->var(dirParada);
        show_debug_message("O personagem encostou na parede");
    }
}

// What the step does to each box.
void record_boxes(CInstance* self, const Figure& figure, const Direction& direction)
{
    const Ahead& ahead = direction.ahead;
    const double boxes = instance_number(oMonte);
    for (double row = 0; row < boxes; ++row) {
        VarRef entry = figure.boxes(row, figure.step);
        if (!place_meeting(self, self->var(x) + ahead.nextX, self->var(y) + ahead.nextY,
                           box_of_row(figure, row))) {
            entry = self->var(dirParada);
            show_debug_message("Uma caixa ficou parada");
        } else if (beyond_is_free(self, ahead)) {
            entry = self->var(direction.name);
            say("Uma caixa foi movida pra ", direction.word, "");
        } else {
            entry = self->var(dirParada);
            show_debug_message("Uma caixa não pode ser movida");
        }
    }
}

}  // namespace

Target box_of_row(const Figure& figure, double row)
{
    return Target(static_cast<int32_t>(double(figure.boxes(row, 0))));
}

// A level starts: only the index goes back, what stands above it is overwritten.
void begin_history(CInstance* self, const Figure& figure)
{
    figure.undoReady = 0;
    figure.step = 0;
    for (const Direction& direction : directions) self->var(direction.name) = direction.word;
    self->var(dirParada) = "parada";
    figure.history[figure.step] = "inicio";
}

void record_step(CInstance* self, const Figure& figure, const Direction& direction)
{
    figure.undoReady = 1;
    figure.step += 1;
    record_figure(self, figure, direction);
    record_boxes(self, figure, direction);
}

// The newest step came to nothing. Without a step the start marker and the boxes of
// the table stay as they are.
void cancel_step(CInstance* self, const Figure& figure)
{
    if (figure.step > 0) figure.history[figure.step] = self->var(dirParada);
}

void cancel_box(CInstance* self, const Figure& figure, double row)
{
    if (figure.step > 0) figure.boxes(row, figure.step) = self->var(dirParada);
}

// ---- undo

namespace {

bool may_undo(CInstance* self, const Figure& figure)
{
    if (is_moving(self, figure) || !place_snapped(self, cell, cell)) return false;
    // A solved level stays solved.
    if (!moveCaixa || !habilitaUndo) return false;
    if (figure.step <= 0) {
        figure.step = 0;
        return false;
    }
    // One undo for each step taken.
    return static_cast<bool>(figure.undoReady);
}

// Steps in which the figure stayed where it was are dropped.
void drop_pauses(const Figure& figure)
{
    while (figure.history[figure.step] == "parada") figure.step -= 1;
}

const Direction* direction_of(const Value& word)
{
    for (const Direction& direction : directions)
        if (word.is(direction.word)) return &direction;
    return nullptr;
}

void walk_back(CInstance* who, const Direction& direction, double speed)
{
    if (direction.x != 0)
        who->var(hspeed) = -direction.x * speed;
    else
        who->var(vspeed) = -direction.y * speed;
}

const Direction& opposite(const Direction& direction)
{
    for (const Direction& other : directions)
        if (other.x == -direction.x && other.y == -direction.y) return other;
    return direction;
}

// Whether a step that way would lead the figure out of its cell.
bool can_leave(CInstance* self, const Ahead& ahead)
{
    if (box_ahead(self, ahead)) return beyond_is_free(self, ahead);
    return place_free(self, self->var(x) + ahead.nextX, self->var(y) + ahead.nextY);
}

// The cell that the box goes back to may have been taken since, and the box itself may
// be on its way elsewhere: then it stays out of the undo.
bool may_go_back(CInstance* box, CInstance* self, const Figure& figure, const Direction& direction)
{
    if (!on_grid(box) || !is_still(box)) return false;
    const double toX = box->var(x) - direction.x * cell, toY = box->var(y) - direction.y * cell;
    // Boxes are of the walls' family.
    for (const Object& blocks : {oWall, oPortaoFechado, figure.partner})
        if (place_meeting(box, toX, toY, blocks)) return false;
    // The figure itself has to make room.
    return !place_meeting(box, toX, toY, Target(self->id)) ||
           can_leave(self, opposite(direction).ahead);
}

void undo_boxes(CInstance* self, const Figure& figure, double speed)
{
    const double boxes = instance_number(oMonte);
    for (double row = 0; row < boxes; ++row)
        if (const Direction* direction = direction_of(figure.boxes(row, figure.step).get()))
            for (CInstance* box : With(self, box_of_row(figure, row)))
                if (may_go_back(box, self, figure, *direction)) walk_back(box, *direction, speed);
}

// The picture is that of the step as it was taken: the figure walks backwards.
void undo_figure(CInstance* self, const Figure& figure, double speed)
{
    const Direction* direction = direction_of(figure.history[figure.step].get());
    self->var(ficouParado) = direction == nullptr;
    if (!direction) return;
    walk_back(self, *direction, speed);
    if (figure.walkingShown == 0) show_walking(self, figure, *direction);
}

void undo(CInstance* self, const Figure& figure, double speed)
{
    figure.undoReady = 0;
    figure.walkingShown = 0;
    drop_pauses(figure);
    self->var(ficouParado) = 0;
    if (figure.step <= 0) return;
    undo_figure(self, figure, speed);
    undo_boxes(self, figure, speed);
    if (self->var(ficouParado)) return;
    figure.step -= 1;
    drop_pauses(figure);
}

void undo_by_key(CInstance* self, const Figure& figure)
{
    if (gameOver != 0 || !on_grid(self)) return;
    if (may_undo(self, figure)) undo(self, figure, movePlayerSpeed);
}

bool mouse_on_undo_button(const Figure& figure)
{
    const double middle = display_get_gui_width() / 2, bottom = display_get_gui_height();
    return mouse_x >= middle + figure.undoLeft && mouse_x <= middle + figure.undoRight &&
           mouse_y >= bottom - 80 && mouse_y <= bottom - 10;
}

}  // namespace

void vxl_Object_oPlayerArrows_KeyPress_Z(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    undo_by_key(self, playerOne);
}

void vxl_Object_oPlayerArrows2_KeyPress_U(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    undo_by_key(self, playerTwo);
}

// The on-screen button.
void vxl_Object_oPlayerArrows_Mouse_GlobalLeftPressed(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    const Figure& figure = figure_of(self);
    if (!touchControls || gameOver != 0 || !on_grid(self)) return;
    if (!mouse_on_undo_button(figure)) return;
    if (may_undo(self, figure)) undo(self, figure, touchUndoSpeed);
}
