#pragma once
// Floors by chance, in the manner of each world. All lie in the map's rows 3 to 9 and
// hold the exit and the start in the gate's column.
//
//   1 grass   rounded clearings that run into each other, with bushes
//   2 sand    halls behind doors, courtyards with pillars
//   3 candy   rings, discs and lobes, alike on both sides
//   4 patch   a quilt of squares of three by three, each sewn from one of a few patterns
//   5 pixel   drawings

#include <string>

#include "tools/levels/Board.h"
#include "tools/levels/Random.h"

namespace levels {

struct ShapeSettings {
    int world = 1, area = 30;  // area: cells, roughly
    int gateRow = 2, startRow = 9;
    std::string drawing;  // of world 5, by its name; empty for any
};

struct Shape {
    Bits floor = 0;
    std::string name;  // of a drawing or a form, for the level's title
};

// Empty floor when this throw of the dice gave none.
Shape Shape_Make(const ShapeSettings& settings, Random& random);

// One of the drawings of world 5, seven rows high, its middle in the gate's column: the
// one of a name, or one by chance. For an area that no drawing has, a creature by chance.
bool Shape_IsDrawing(const std::string& name);
Shape Shape_Drawing(const std::string& name, int area, Random& random);

}  // namespace levels
