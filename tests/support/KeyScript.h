#pragma once
// Scripts of keys: what is held for how many frames.
//
//   D*40 . W*60      hold D for 40 frames, one frame without keys, hold W for 60
//   D+W*3            hold both for 3 frames
//   .*12             12 frames without keys
//   Left Right Up Down Enter Escape Back Space F1 to F12   named keys
// A key without "*n" is held for one frame. Blanks separate.

#include <cstdint>
#include <string>
#include <vector>

struct KeyHold {
    std::vector<int32_t> keys;  // virtual-key numbers
    int frames = 1;
};

// False with a sentence in `error` that names the piece that can't be read.
bool KeyScript_Parse(const std::string& text, std::vector<KeyHold>* holds, std::string* error);
