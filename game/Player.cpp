// The figures of a level: how they come in, what they do in each frame, and which key
// leads where.

#include "game/Figure.h"
#include "game/Gamepad.h"
#include "game/Map.h"
#include "game/Pads.h"

namespace {

// How fast a level is played; the cell is a whole multiple of each speed.
struct GameSpeed {
    const char* word;
    double pixels;      // a frame
    double imageSpeed;  // pictures a frame while walking
    const char* next;
};
constexpr GameSpeed gameSpeeds[] = {
    {"fast", 13, 0.7, "slow"},
    {"normal", 4, 0.3, "fast"},
    {"slow", 2, 0.15, "normal"},
};

// A word that is none of the three leaves the speed as it was.
void take_speed_of_word()
{
    for (const GameSpeed& speed : gameSpeeds)
        if (gameType.is(speed.word)) movePlayerSpeed = speed.pixels;
}

void take_game_speed()
{
    ini_open("SaveGame.sav");
    gameType = ini_read_string("preferencias", "velocidade", "normal");
    ini_close();
    take_speed_of_word();
}

// The animation follows the game speed in every frame.
void set_walking_speed(CInstance* self)
{
    for (const GameSpeed& speed : gameSpeeds)
        if (gameType.is(speed.word)) self->var(image_speed) = speed.imageSpeed;
}

void take_touch_setting()
{
    touchControls = 0;
    if (!on_touch_platform()) return;
    ini_open("SaveGame.sav");
    touchControls = ini_read_string("preferencias", "touch", "true") == "true";
    ini_close();
}

void show_standing(CInstance* self, const Figure& figure)
{
    self->var(sprite_index) = picture(figure, standing);
    self->var(image_index) = 0;
    self->var(image_speed) = idleImageSpeed;
}

void forget_pad_keys(CInstance* self)
{
    for (const InstanceVar held :
         {controla_key_right, controla_key_left, controla_key_down, controla_key_up,
          controla_key_pause, controla_key_modo, controla_key_desfaz})
        self->var(held) = 0;
    self->var(key_voltar) = 0;
}

// Keys of an earlier room do not reach into this one.
void forget_keys()
{
    forget_movement_keys();
    io_clear();
    for (const Key key : {keyA, keyS, keyD, keyW, keyLeft, keyRight, keyDown, keyUp})
        keyboard_key_release(key);
}

// What the on-screen controls of a figure show.
void show_on_screen_controls(const Figure& figure)
{
    for (int way = 0; way < ways; ++way)
        oControl.var(figure.shownKeys[way]) = keyboard_check(figure.keys[way]);
    oControl.var(figure.shownUndo) = figure.undoReady > 0 && moveCaixa > 0 ? 0 : 2;
}

// Column 0 of the box table always holds the live box of each row; once it is
// filled, steps are recorded.
void note_boxes(CInstance* self, const Figure& figure)
{
    const double boxes = instance_number(oMonte);
    for (double row = 0; row < boxes; ++row) figure.boxes(row, 0) = instance_find(oMonte, row);
    if (boxes > 0) self->var(comecaJogo) = 1;
}

}  // namespace

void forget_movement_keys()
{
    for (const Key key : {keyLeft, keyRight, keyUp, keyDown, keyW, keyA, keyS, keyD})
        keyboard_clear(key);
}

// The next speed: slow, normal, fast, and slow again.
RValue& vxl_Script_scr_change_speed(CInstance* self, CInstance* other, RValue& result, int,
                                    RValue**)
{
    Frame frame(self, other);
    for (const GameSpeed& speed : gameSpeeds) {
        if (!gameType.is(speed.word)) continue;
        gameType = speed.next;
        break;
    }
    take_speed_of_word();
    ini_open("SaveGame.sav");
    ini_write_string("preferencias", "velocidade", gameType.ref().get().text());
    ini_close();
    return result;
}

// ==== player one, who stands in the room and brings player two in

void vxl_Object_oPlayerArrows_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    mudaSprite = 0;
    self->var(tocaSomFinal) = 0;
    moveCaixa = 1;
    take_game_speed();

    for (const Direction& direction : directions) self->var(direction.blocked) = 0;
    self->var(caixaVoltando) = 0;

    self->var(personagemSelecionado) = picture(playerOne, standing);
    show_standing(self, playerOne);

    habilitaUndo = 1;
    begin_history(self, playerOne);

    set_up_gamepad(self);

    take_touch_setting();
    self->var(comecaJogo) = 0;
    forget_pad_keys(self);
    forget_keys();
    gameOver = 0;
    oControl.var(s_p) = player_mode_icon();
    if (player_mode_icon() != 0) place_player_two(self);
}

void vxl_Object_oPlayerArrows_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    oControl.var(s_control) = touchControls ? 0 : 1;
    if (touchControls) {
        show_on_screen_controls(playerOne);
        oControl.var(s_t) = keyboard_check(keyT);
    }
    oControl.var(s_p) = player_mode_icon();
    pad_of_player_one(self);
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

// Restart of the level, at once.
void vxl_Object_oPlayerArrows_KeyRelease_T(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (gameOver == 0) click();
    action_current_room();
}

void vxl_Object_oPlayerArrows_Keyboard_Backspace(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    leave_level(self);
}

// ==== player two

void vxl_Object_oPlayerArrows2_Create(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    mudaSpriteDois = 0;
    self->var(tocaSomFinal) = 0;
    show_standing(self, playerTwo);
    if (habilitaUndo) begin_history(self, playerTwo);

    set_up_gamepad(self);
    self->var(padDois) = 1;
    set_up_slot(self->var(padDois));

    self->var(comecaJogo) = 0;
    forget_pad_keys(self);
    forget_keys();
}

void vxl_Object_oPlayerArrows2_Step(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    if (touchControls) show_on_screen_controls(playerTwo);
    pad_of_player_two(self);
    note_boxes(self, playerTwo);
    set_walking_speed(self);
}

void vxl_Object_oPlayerArrows2_Keyboard_Up(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    walk(self, playerTwo, up);
}

void vxl_Object_oPlayerArrows2_Keyboard_Down(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    walk(self, playerTwo, down);
}

void vxl_Object_oPlayerArrows2_Keyboard_Left(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    walk(self, playerTwo, left);
}

void vxl_Object_oPlayerArrows2_Keyboard_Right(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    walk(self, playerTwo, right);
}

// ==== both

void vxl_Object_oPlayerArrows_KeyPress_NoKey(CInstance* self, CInstance* other)
{
    Frame frame(self, other);
    rest(self, figure_of(self));
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
    push(self, other, figure_of(self));
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
