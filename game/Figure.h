#pragma once
// What differs between the two figures of a level.

#include "game/Rules.h"

struct Figure {
    Global character;     // "menino" or another word
    Global walkingShown;  // the walking picture of the present step is set
    Global undoReady;     // a step can be undone
    Global step;          // newest entry of the history
    Global history;       // the figure's direction by step
    Global boxes;         // by box and step: column 0 the box, then its direction
};

inline constexpr Figure playerOne = {jogadorUm, mudaSprite,  liberaUndo,
                                     undoAtual, playerUmPos, caixa};
