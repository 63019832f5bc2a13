#pragma once
// The four ways to go.

#include "game/Rules.h"

// A picture for each of the two characters.
struct Pictures {
    Sprite menino, menina;
};

// Offsets in pixels of the tests that foretell a step.
struct Ahead {
    double nextX, nextY;    // just inside the next cell
    double freeX, freeY;    // the cell beyond, for walls
    double pointX, pointY;  // the cell beyond, for a box
};

struct Direction {
    double x, y;          // one pixel that way
    const char* pattern;  // for action_move
    const char* word;     // of the history and of the console's lines
    InstanceVar name;     // holds the word
    InstanceVar blocked;  // a push that way is stopped by player two
    Pictures walking, pushing;
    Ahead ahead;
};

inline constexpr Direction up = {0,
                                 -1,
                                 "000000010",
                                 "cima",
                                 dirCima,
                                 colidiuCima,
                                 {sPlayerAndandoCima, sPlayerAndandoCima2},
                                 {sPlayerAndandoCimaEmpurrando, sPlayerAndandoCimaEmpurrando2},
                                 {0, -1, 0, -53, 0, -53}};
inline constexpr Direction down = {
    0,
    1,
    "010000000",
    "baixo",
    dirBaixo,
    colidiuBaixo,
    {sPlayerAndandoFrente, sPlayerAndandoFrente2},
    {sPlayerAndandoFrenteEmpurrando, sPlayerAndandoFrenteEmpurrando2},
    {0, 1, 0, 53, 0, 105}};
inline constexpr Direction left = {
    -1,
    0,
    "000100000",
    "esquerda",
    dirEsquerda,
    colidiuEsquerda,
    {sPlayerAndandoEsquerda, sPlayerAndandoEsquerda2},
    {sPlayerAndandoEsquerdaEmpurrando, sPlayerAndandoEsquerdaEmpurrando2},
    {-1, 0, -53, 0, -53, 0}};
inline constexpr Direction right = {
    1,
    0,
    "000001000",
    "direita",
    dirDireita,
    colidiuDireita,
    {sPlayerAndandoDireita, sPlayerAndandoDireita2},
    {sPlayerAndandoDireitaEmpurrando, sPlayerAndandoDireitaEmpurrando2},
    {1, 0, 53, 0, 105, 0}};

inline constexpr int ways = 4;
inline constexpr Direction directions[ways] = {up, down, left, right};
enum Way { wayUp, wayDown, wayLeft, wayRight };  // places in `directions`

inline constexpr char stop[] = "000010000";  // for action_move
