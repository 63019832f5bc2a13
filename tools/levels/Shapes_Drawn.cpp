// The drawings of world 5: a dot is floor. Seven rows; the middle column is the gate's.

#include <algorithm>
#include <array>

#include "tools/levels/Shapes.h"

namespace levels {
namespace {

struct Drawing {
    const char* name;
    std::array<const char*, 7> rows;
};

constexpr Drawing kDrawings[] = {
    {"heart", {".. . ..", ".......", ".......", ".......", " ..... ", "  ...  ", "   .   "}},
    {"invader",
     {"  .  .  .  ", "   .....   ", "  .. . ..  ", " ......... ", " . ..... . ", " . . . . . ",
      "   .....   "}},
    {"key",
     {"    .    ", "  .....  ", "  .. ..  ", "  .....  ", "    .    ", "    ...  ", "    ...  "}},
    {"ghost", {"   .   ", " ..... ", ".......", ". . . .", ".......", ".......", ". . . ."}},
    {"skull",
     {"  .....  ", " ....... ", " .  .  . ", " .  .  . ", " ....... ", "  .. ..  ", "  .....  "}},
    {"cup",
     {" ....... ", " ....... ", " ....... ", "  .....  ", "    .    ", "   ...   ", "  .....  "}},
    {"cross",
     {"   ...   ", "   ...   ", " ....... ", " ....... ", " ....... ", "   ...   ", "   ...   "}},
    {"arrow",
     {"    .    ", "   ...   ", "  .....  ", " ....... ", "   ...   ", "   ...   ", "   ...   "}},
    {"crown",
     {" .  .  . ", " .  .  . ", " .. . .. ", " ....... ", " ....... ", " . ... . ", " ....... "}},
    {"letter A",
     {"   ...   ", "  .....  ", " ... ... ", " ..   .. ", " ....... ", " ....... ", " ..  ... "}},
    {"letter B",
     {" ......  ", " ....... ", " ..   .. ", " ......  ", " ..   .. ", " ....... ", " ......  "}},
    {"letter E",
     {" ....... ", " ....... ", " ..      ", " .....   ", " ..      ", " ....... ", " ....... "}},
    {"letter H",
     {" ..  ... ", " ..   .. ", " ....... ", " ....... ", " ....... ", " ..   .. ", " ..  ... "}},
    {"letter S",
     {" ....... ", " ....... ", " ..      ", " ....... ", "      .. ", " ....... ", " ....... "}},
    {"letter M",
     {" .. . .. ", " ....... ", " ....... ", " .. . .. ", " .. . .. ", " .. . .. ", " .. . .. "}},
    {"letter X",
     {" ..   .. ", " ... ... ", "  .....  ", "   ...   ", "  .....  ", " ... ... ", " ..   .. "}},
    {"eight",
     {"  .....  ", " ....... ", " ..   .. ", "  .....  ", " ..   .. ", " ....... ", "  .....  "}},
    {"robot",
     {"    .    ", "  .....  ", "  . . .  ", " ....... ", " ....... ", "  .. ..  ", "  .. ..  "}},
    {"mushroom",
     {"   ...   ", "  .....  ", " ....... ", " .. . .. ", " ....... ", "   ...   ", "   ...   "}},
    {"rocket",
     {"    .    ", "   ...   ", "   ...   ", "  .. ..  ", "  .....  ", " ....... ", " . ... . "}},
    {"cat",
     {" .     . ", " ..   .. ", " ....... ", " . ... . ", " ....... ", "  . . .  ", "  .....  "}},
    {"anchor",
     {"   ...   ", "   . .   ", "   ...   ", " .  .  . ", " .. . .. ", " ....... ", "   ...   "}},
    {"sword",
     {"    .    ", "   ...   ", "   ...   ", "   ...   ", " ....... ", " . ... . ", "   ...   "}},
    {"tree",
     {"    .    ", "   ...   ", "  .....  ", "   ...   ", " ....... ", "  .....  ", "   ...   "}},
    {"face",
     {"  .....  ", " ....... ", " .. . .. ", " ....... ", " . ... . ", " ..   .. ", "  .....  "}},
    {"house",
     {"    .    ", "   ...   ", "  .....  ", " ....... ", " .. . .. ", " ....... ", " ..  ... "}},
    {"umbrella",
     {"    .    ", "  .....  ", " ....... ", " ....... ", " . ... . ", "   ...   ", "   ...   "}},
    {"bug",
     {" .  .  . ", "  .....  ", " .. . .. ", "  .....  ", " .. . .. ", "  .....  ", " .  .. . "}},
    {"fish",
     {"    .     .", "  .....  ..", " .. .......", " ..........", " ....... ..", "  .....   .",
      "    ..     "}},
    {"dragonfly",
     {"    .    ", " ... ... ", " ....... ", "   ...   ", " ....... ", " ... ... ", "    ..   "}},
    {"gem",
     {"   ...   ", "  .. ..  ", " ....... ", " .. . .. ", " ....... ", "  .. ..  ", "   ...   "}},
    {"wide eyes",
     {"  ...   ...  ", " ..... ..... ", " .. ..... .. ", " ..... ..... ", "  ... . ...  ",
      "     ...     ", "     ...     "}},
    {"crab",
     {" ..   .   .. ", " . ....... . ", " ... ... ... ", "  .........  ", "  ... . ...  ",
      " .  .....  . ", "    .. ..    "}},
    {"saucer",
     {"      .      ", "    .....    ", "   .. . ..   ", " ........... ", " .. ..... .. ",
      "  .........  ", "    ..  .    "}},
    {"bat",
     {"   . . .   ", " .. ... .. ", " ......... ", "...........", ". ....... .", "   .. ..   ",
      "    ...    "}},
    {"train",
     {"      .      ", " .... . .... ", " .. ....... .", " ........... ", " ... ... ... ",
      " ........... ", "  .  ...  .  "}},
    // From here on for whoever asks by name.
    {"home",
     {"    .    ", "   ... . ", "  ...... ", " ....... ", " .. . .. ", " ....... ", "   ...   "}},
    {"toadstool",
     {"   ...   ", " ....... ", "... . ...", ".........", "   . .   ", "   ...   ", "   ...   "}},
    {"spook",
     {"   ...   ", " ....... ", " .. . .. ", " ....... ", " ... ... ", " ....... ", " . ... . "}},
    {"bighead",
     {"  .....  ", " ....... ", " .  .  . ", " .  .  . ", " ....... ", "  .. ..  ", "   ...   "}},
    {"valentine",
     {"... . ...", ".........", "... . ...", " ....... ", "  .. ..  ", "   ...   ", "   ...   "}},
    {"diamond",
     {"   .....   ", "  .. . ..  ", " ......... ", " ... . ... ", "  .......  ", "   .. ..   ",
      "    ...    "}},
    {"smile",
     {"    ...    ", " ......... ", " .. ... .. ", " .... .... ", " .. ... .. ", "  .......  ",
      "    ...    "}},
    {"boss",
     {"   .......   ", " ........... ", "...  ...  ...", ".............", "  .... ....  ",
      " ... ... ... ", "..   ...   .."}},
    {"sweetheart",
     {"  ... . ...  ", " ........... ", "...... ......", "... ..... ...", " ..... ..... ",
      "  .... ....  ", "     ...     "}},
};
// The dice choose among the first ones only: levels made by them are made again as long
// as a new drawing goes to the end.
constexpr int kThrown = 36;

}  // namespace

namespace {

// A creature of no name, alike on both sides: its body, then pixels beside it.
Shape Sprite(int area, Random& random)
{
    auto both = [](int column, int row) {
        return Bit(CellAt(8 + column, row)) | Bit(CellAt(8 - column, row));
    };
    Shape shape;
    shape.name = "creature";
    const int wide = random.Between(3, 4);
    for (int row = 4; row <= 8; ++row) {
        for (int column = 0; column <= wide; ++column) shape.floor |= both(column, row);
    }
    for (int tries = 0; tries < 200 && Count(shape.floor) < area; ++tries) {
        const int column = random.Between(1, 6), row = random.Between(3, 9);
        const Bits pixel = both(column, row);
        if (Beside(pixel) & shape.floor) shape.floor |= pixel;
    }
    for (int eyes = random.Between(2, 4); eyes > 0; --eyes) {
        shape.floor &= ~both(random.Between(1, wide), random.Between(5, 7));
    }
    shape.floor |= both(0, 3) | both(0, 4) | both(0, 8);
    return shape;
}

}  // namespace

bool Shape_IsDrawing(const std::string& name)
{
    return std::any_of(std::begin(kDrawings), std::end(kDrawings),
                       [&](const Drawing& drawing) { return name == drawing.name; });
}

Shape Shape_Drawing(const std::string& name, int area, Random& random)
{
    constexpr int kLargest = 50;  // cells of a drawing that the dice choose, about
    if (name.empty() && area >= kLargest) return Sprite(area, random);
    const Drawing* drawing = nullptr;
    if (name.empty()) drawing = &kDrawings[random.Below(kThrown)];
    for (const Drawing& one : kDrawings) {
        if (name == one.name) drawing = &one;
    }
    Shape shape;
    if (!drawing) return shape;
    const bool mirrored = random.Chance(50);
    shape.name = drawing->name;
    int row = 3;
    for (const char* line : drawing->rows) {
        const std::string text = line;
        const int width = static_cast<int>(text.size());
        for (int i = 0; i < width; ++i) {
            if (text[static_cast<size_t>(i)] != '.') continue;
            const int x = mirrored ? width - 1 - i : i;
            shape.floor |= Bit(CellAt(8 - width / 2 + x, row));
        }
        ++row;
    }
    shape.floor |= Bit(CellAt(8, 4)) | Bit(CellAt(8, 8));
    return shape;
}

}  // namespace levels
