#pragma once
// The families of the second pass of built-in variables.

void Variable_RegisterRoomRows();  // room, backgrounds, views, transitions
void Variable_RegisterGameRows();  // score, clock, event, errors, names and folders
