#pragma once
// Recording and playback of the input of every frame, so that a session replays.
// One record a frame, little-endian, in this order: last char (2 bytes), string
// (2050), last key (4), current key (4), key down, released, pressed (256 each),
// last button and button of 10 devices (40 each), button down, released, pressed
// of 10 devices (30 each), wheel up and down (10 each), cursor in screen pixels
// (8), mouse x (4), mouse y (4).
//
// A recording holds the hands alone: `randomize`, `current_time` and the dates ask the
// clock of the run. With the same clock the same world comes back.

#include <cstdint>

// Empty for none; a playback leaves the recording out.
void Record_Open(const char* recordPath, const char* playbackPath);
void Record_Close();
// True while a playback gives the frame side; at the file's end play goes on from
// live input.
bool Record_ReadFrame();
void Record_WriteFrame();  // a full disk ends the recording, with one line on the console
void Record_Cursor(int32_t* x, int32_t* y);  // in screen pixels, the recorded one in a playback
