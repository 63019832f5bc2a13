#pragma once
// The units of the file family: each adds the rows of its table. Function_File.cpp
// calls them all.

void Function_File_RegisterNames();   // filename_*
void Function_File_RegisterText();    // file_text_*
void Function_File_RegisterBinary();  // file_bin_*
void Function_File_RegisterLegacy();  // file_open_* and what goes with them
void Function_File_RegisterIni();     // ini_*

// Frees what scripts left open, unwritten.
void Function_File_CloseText();
void Function_File_CloseBinary();
void Function_File_CloseLegacy();
