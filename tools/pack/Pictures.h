#pragma once
// The pictures of the game, rendered from content/art. A table, pictures.txt,
// names for each sprite and background the drawing that it comes from:
//
//   sMonte              svg=things/box.svg
//   sFechado, sAberto   one row each, group=<id of a group>[,<id> for the next frame]...
//   sPlayerAndandoCima  svg=figures/boy-back.svg cut=figures/back.cut animation=walk
//
// "{1..100}" in a name makes a row for each number, which then stands for "{n}".
// Further keys of a row: view=x,y,width,height (the area of the drawing that is
// shown, in its own units; the whole drawing by default) and flip=x (mirrored).
// Pictures render to the same bytes on every run. Words are drawn as paths: a text
// element would look different with the fonts of each machine.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pack {

// A picture of width * height pixels, top row first, 4 bytes a pixel in the order
// blue, green, red, alpha; the colours are not multiplied by alpha.
struct Image {
    int width = 0, height = 0;
    std::vector<uint8_t> bgra;
};

// pictures.txt and what was loaded for it. Copies share one state.
class PictureLibrary {
public:
    struct State;
    std::shared_ptr<State> state;
};

// Reads pictures.txt in `artFolder` and every cut-out table that it names.
// False with "file:line: what was expected" in `error`.
bool Pictures_Load(const std::string& artFolder, PictureLibrary& out, std::string& error);

// Whether a row of pictures.txt draws this sprite or background.
bool Pictures_Has(const PictureLibrary& library, const std::string& name);

// The names in pictures.txt, in its order.
std::vector<std::string> Pictures_Names(const PictureLibrary& library);

// Files that the pictures are made from, for a build's dependency list.
std::vector<std::string> Pictures_Files(const PictureLibrary& library);

// Renders `frames` pictures of width by height pixels (each 1..8192) into `out`.
// A name without a row comes out as a placeholder. A cut-out animation is sampled
// at `frames` even steps; a drawing needs one group for each frame. False with
// "file:line: what was expected" in `error`.
bool Pictures_Render(const PictureLibrary& library, const std::string& name, int width, int height,
                     int frames, std::vector<Image>& out, std::string& error);

// A number that changes with all that Pictures_Render makes a picture from; 0 for a name
// without a row.
uint64_t Pictures_Key(const PictureLibrary& library, const std::string& name, int width, int height,
                      int frames);

// A flat box with the name written into it, as large as fits.
Image Pictures_Placeholder(const std::string& name, int width, int height);

}  // namespace pack
