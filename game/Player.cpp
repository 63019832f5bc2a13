// The figures: a step leads from cell to cell. A new direction is chosen only on
// the grid, and a step that was started always runs on to the next cell.

#include <cstdio>
#include <initializer_list>

#include "game/Figure.h"
#include "game/Gamepad.h"

namespace {

constexpr double idleImageSpeed = 0.3;  // pictures a frame

// ---- how fast a level is played; the cell is a whole multiple of each speed
struct GameSpeed {
    const char* word;
    double pixels;      // a frame
    double imageSpeed;  // pictures a frame while walking
};
constexpr GameSpeed gameSpeeds[] = {
    {"fast", 13, 0.7},
    {"normal", 4, 0.3},
    {"slow", 2, 0.15},
};

constexpr Pictures standing = {sPlayer, sPlayer2};

// Offsets in pixels of the tests that foretell a step.
struct Ahead {
    double nextX, nextY;    // just inside the next cell
    double freeX, freeY;    // the cell beyond, for walls
    double pointX, pointY;  // the cell beyond, for a box
};

// The four ways to go.
struct Direction {
    const char* pattern;  // for action_move
    const char* word;     // of the history and of the console's lines
    InstanceVar name;     // holds the word
    Pictures walking, pushing;
    Ahead ahead;
};

constexpr Direction up = {"000000010",
                          "cima",
                          dirCima,
                          {sPlayerAndandoCima, sPlayerAndandoCima2},
                          {sPlayerAndandoCimaEmpurrando, sPlayerAndandoCimaEmpurrando2},
                          {0, -1, 0, -53, 0, -53}};
constexpr Direction down = {"010000000",
                            "baixo",
                            dirBaixo,
                            {sPlayerAndandoFrente, sPlayerAndandoFrente2},
                            {sPlayerAndandoFrenteEmpurrando, sPlayerAndandoFrenteEmpurrando2},
                            {0, 1, 0, 53, 0, 105}};
constexpr Direction right = {"000001000",
                             "direita",
                             dirDireita,
                             {sPlayerAndandoDireita, sPlayerAndandoDireita2},
                             {sPlayerAndandoDireitaEmpurrando, sPlayerAndandoDireitaEmpurrando2},
                             {1, 0, 53, 0, 105, 0}};
constexpr Direction left = {"000100000",
                            "esquerda",
                            dirEsquerda,
                            {sPlayerAndandoEsquerda, sPlayerAndandoEsquerda2},
                            {sPlayerAndandoEsquerdaEmpurrando, sPlayerAndandoEsquerdaEmpurrando2},
                            {-1, 0, -53, 0, -53, 0}};
constexpr Direction directions[] = {up, down, right, left};

constexpr char stop[] = "000010000";

void say(const char* start, const char* word, const char* end)
{
    char line[80];
    snprintf(line, sizeof line, "%s%s%s", start, word, end);
    show_debug_message(line);
}

// A word that is none of the three leaves the speed as it was.
void take_game_speed()
{
    ini_open("SaveGame.sav");
    gameType = ini_read_string("preferencias", "velocidade", "normal");
    ini_close();
    for (const GameSpeed& speed : gameSpeeds)
        if (gameType.is(speed.word)) movePlayerSpeed = speed.pixels;
}

// Keys of an earlier room do not reach into this one.
void forget_keys()
{
    for (const Key key : {keyLeft, keyRight, keyUp, keyDown, keyW, keyA, keyS, keyD})
        keyboard_clear(key);
    io_clear();
    for (const Key key : {keyA, keyS, keyD, keyW, keyLeft, keyRight, keyDown, keyUp})
        keyboard_key_release(key);
}

void take_touch_setting()
{
    touchControls = 0;
    if (!on_touch_platform()) return;
    ini_open("SaveGame.sav");
    touchControls = ini_read_string("preferencias", "touch", "true") == "true";
    ini_close();
}

double player_mode_icon()
{
    if (playerMode == "twoPlayersOne") return 1;
    if (playerMode == "twoPlayersTwo") return 2;
    return 0;
}

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
        const Target box{static_cast<int32_t>(double(figure.boxes(row, 0)))};
        VarRef entry = figure.boxes(row, figure.step);
        if (!place_meeting(self, self->var(x) + ahead.nextX, self->var(y) + ahead.nextY, box)) {
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

void record_step(CInstance* self, const Figure& figure, const Direction& direction)
{
    figure.undoReady = 1;
    figure.step += 1;
    record_figure(self, figure, direction);
    record_boxes(self, figure, direction);
}

// ---- walking

void show_walking(CInstance* self, const Figure& figure, const Direction& direction)
{
    self->var(sprite_index) = of(direction.walking, figure.character);
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
    if (!action_if_aligned(self, cell, cell)) return;
    action_move(self, direction.pattern, movePlayerSpeed);
    figure.walkingShown = 0;
    // The first frame of a level is not recorded: the table of boxes is not filled yet.
    if (self->var(comecaJogo) && habilitaUndo && place_snapped(self, cell, cell))
        record_step(self, figure, direction);
}

// No key went down in this frame: a figure whose keys are all up stops on its cell.
void rest(CInstance* self, const Figure& figure, std::initializer_list<Key> keys)
{
    for (const Key key : keys)
        if (keyboard_check(key)) return;
    if (self->var(hspeed) == 0 && self->var(vspeed) == 0)
        self->var(sprite_index) = of(standing, figure.character);
    self->var(image_speed) = idleImageSpeed;
    if (action_if_aligned(self, cell, cell)) action_move(self, stop, 0);
}

// The figure stays behind the box that it pushes and shows the effort.
void show_pushing(CInstance* self, const Figure& figure)
{
    const double shown = self->var(sprite_index);
    for (const Direction& direction : directions)
        if (shown == of(direction.walking, figure.character).index)
            self->var(sprite_index) = of(direction.pushing, figure.character);
}

// The box moves by the figure's speed when neither anything solid nor another box
// stands in the way.
void push_box(CInstance* box, double stepX, double stepY)
{
    if (!action_if_empty(box, beside(stepX, stepY), false)) return;
    if (action_if_object(box, oMonte, beside(stepX, stepY))) return;
    box->var(x) += stepX;
    box->var(y) += stepY;
}

// Both were put back to where they were in the last frame. The box goes first; then
// the figure is moved on into the place that the box has left, or put back again.
void push(CInstance* self, CInstance* box, const Figure& figure)
{
    // The level is over, or solved: boxes stand still.
    if (gameOver != 0 || moveCaixa == 0) return;
    show_pushing(self, figure);
    push_box(box, 0, self->var(vspeed));
    push_box(box, self->var(hspeed), 0);
}

void show_on_screen_controls()
{
    oControl.var(s_control) = touchControls ? 0 : 1;
    if (!touchControls) return;
    oControl.var(s_left) = keyboard_check(keyA);
    oControl.var(s_right) = keyboard_check(keyD);
    oControl.var(s_up) = keyboard_check(keyW);
    oControl.var(s_down) = keyboard_check(keyS);
    oControl.var(s_t) = keyboard_check(keyT);
    oControl.var(s_z) = liberaUndo > 0 && moveCaixa > 0 ? 0 : 2;
    oControl.var(s_p) = player_mode_icon();
}

// Column 0 of the box table always holds the live box of each row; once it is
// filled, steps are recorded.
void note_boxes(CInstance* self, const Figure& figure)
{
    const double boxes = instance_number(oMonte);
    for (double row = 0; row < boxes; ++row) figure.boxes(row, 0) = instance_find(oMonte, row);
    if (boxes > 0) self->var(comecaJogo) = 1;
}

// The animation follows the game speed in every frame.
void set_walking_speed(CInstance* self)
{
    for (const GameSpeed& speed : gameSpeeds)
        if (gameType.is(speed.word)) self->var(image_speed) = speed.imageSpeed;
}

}  // namespace

// ==== player one

void vxl_Object_oPlayerArrows_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    mudaSprite = 0;
    self->var(tocaSomFinal) = 0;
    moveCaixa = 1;
    take_game_speed();

    for (const InstanceVar flag : {colidiuDireita, colidiuEsquerda, colidiuCima, colidiuBaixo})
        self->var(flag) = 0;
    self->var(caixaVoltando) = 0;

    self->var(personagemSelecionado) = of(standing, jogadorUm);
    self->var(sprite_index) = self->var(personagemSelecionado);
    self->var(image_index) = 0;
    self->var(image_speed) = idleImageSpeed;

    habilitaUndo = 1;
    liberaUndo = 0;
    undoAtual = 0;
    for (const Direction& direction : directions) self->var(direction.name) = direction.word;
    self->var(dirParada) = "parada";
    playerUmPos[undoAtual] = "inicio";

    set_up_gamepad(self);

    take_touch_setting();
    self->var(comecaJogo) = 0;
    for (const InstanceVar edge :
         {controla_key_right, controla_key_left, controla_key_down, controla_key_up,
          controla_key_pause, controla_key_modo, controla_key_desfaz})
        self->var(edge) = 0;
    forget_keys();
    gameOver = 0;
    oControl.var(s_p) = player_mode_icon();
}

void vxl_Object_oPlayerArrows_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    show_on_screen_controls();
    note_boxes(self, playerOne);
    set_walking_speed(self);
}

void vxl_Object_oPlayerArrows_Keyboard_W(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    walk(self, playerOne, up);
}

void vxl_Object_oPlayerArrows_Keyboard_S(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    walk(self, playerOne, down);
}

void vxl_Object_oPlayerArrows_Keyboard_D(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    walk(self, playerOne, right);
}

void vxl_Object_oPlayerArrows_Keyboard_A(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    walk(self, playerOne, left);
}

void vxl_Object_oPlayerArrows_KeyPress_NoKey(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    rest(self, playerOne, {keyW, keyA, keyS, keyD});
}

// The figure was put back before the wall; it stops there.
void vxl_Object_oPlayerArrows_Collision_oWall(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    action_move(self, stop, 0);
}

void vxl_Object_oPlayerArrows_Collision_oMonte(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    push(self, other, playerOne);
}

// Nothing to do but to be there: the gate is solid and holds the figure back.
void vxl_Object_oPlayerArrows_Collision_oPortaoFechado(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
}

// The figure is solid, and so the lower gate holds it back too.
void vxl_Object_oPlayerArrows_Collision_oPortaoFechadoBaixo(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
}

void vxl_Object_oPlayerArrows_Draw(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    draw_sprite(self, sSombra, 0, self->var(x) + cell / 2, self->var(y) + cell);
    draw_self(self);
}
