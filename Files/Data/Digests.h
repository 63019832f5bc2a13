#pragma once
// Digests and Base64 (RFC 4648, the standard alphabet) of blocks of bytes.

#include <cstddef>
#include <cstdint>

#include "Platform/MemoryManager.h"

VxString Sha1_Text(const void* bytes, size_t size);  // 40 lower-case hexadecimal digits
VxString Md5_Text(const void* bytes, size_t size);   // 32

VxString Base64_Encode(const void* bytes, size_t size);  // padded, in one line
// Ends at the first character outside the alphabet, "=" included; bits of a byte that is
// not whole are dropped.
VxVector<uint8_t> Base64_Decode(const char* text, size_t size);
