#pragma once
// Recording and playback of the input of every frame, so that a session replays.
// One record a frame, little-endian, in this order: last char (2 bytes), string
// (2050), last key (4), current key (4), key down, released, pressed (256 each),
// last button and button of 10 devices (40 each), button down, released, pressed
// of 10 devices (30 each), wheel up and down (10 each), cursor in screen pixels
// (8), mouse x (4), mouse y (4).

void Record_Open(const char* recordPath, const char* playbackPath);  // empty for none
void Record_Close();
bool Record_Playing();  // a playback file is open
// True while a playback gives the frame side; at the file's end play goes on from
// live input.
bool Record_ReadFrame();
void Record_WriteFrame();
