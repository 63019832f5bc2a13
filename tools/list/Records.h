#pragma once
// An archive as a tree of its chunks and records.

#include <cstdint>
#include <string>
#include <vector>

#include "tools/list/Value.h"

namespace list {

// One field for each chunk, in the order of the archive: its tag, with "offset" and
// "size" of its body, and what it holds. An empty slot of a list is null. Fields
// have the names of the record structs; beside an index stands the name that it
// leads to. False with a message when the archive is damaged.
bool Describe(const std::vector<uint8_t>& archive, Value* tree, std::string* error);

// The archive inside the bytes of a file: the file itself, or the archive that is
// linked into a program. Empty when there is none.
std::vector<uint8_t> FindArchive(const std::vector<uint8_t>& file);

}  // namespace list
