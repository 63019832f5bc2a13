#pragma once
// The attachment of the compiled game: its code table and slots. Filled by the
// packer in generated/CodeTable.cpp; the archive's bytes are added by the program.

#include "Files/Code/CCode.h"

RunnerData Game_Attachment();
