#pragma once
// Turns content into the bytes of an archive: the same content gives the same bytes.

#include <cstdint>
#include <string>
#include <vector>

#include "Files/Base/Archive_Content.h"

namespace archive {

std::vector<uint8_t> Write(const Content& content);

// The reader that the lister, the tests and the round trip use: all records back
// into content. False with a message that names chunk and offset.
bool Read(const std::vector<uint8_t>& bytes, Content* content, std::string* error);

// The first chunk or record that leads outside the archive, loops or overlaps its
// bounds: false with "chunk XXXX at offset N: what is wrong". The runtime checks
// with this before it walks.
bool Check(const uint8_t* bytes, uint32_t size, std::string* error);

}  // namespace archive
