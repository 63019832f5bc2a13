#include "Files/Data/Digests.h"

#include <nettle/base64.h>
#include <nettle/md5.h>
#include <nettle/sha1.h>

#include <cctype>

namespace {

constexpr char kDigits[] = "0123456789abcdef";

template <size_t size>
VxString Printed(const uint8_t (&digest)[size])
{
    VxString text;
    for (const uint8_t byte : digest) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

bool InAlphabet(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '+' || c == '/';
}

}  // namespace

VxString Sha1_Text(const void* bytes, size_t size)
{
    sha1_ctx context;
    uint8_t digest[SHA1_DIGEST_SIZE];
    sha1_init(&context);
    sha1_update(&context, size, static_cast<const uint8_t*>(bytes));
    sha1_digest(&context, sizeof digest, digest);
    return Printed(digest);
}

VxString Md5_Text(const void* bytes, size_t size)
{
    md5_ctx context;
    uint8_t digest[MD5_DIGEST_SIZE];
    md5_init(&context);
    md5_update(&context, size, static_cast<const uint8_t*>(bytes));
    md5_digest(&context, sizeof digest, digest);
    return Printed(digest);
}

VxString Base64_Encode(const void* bytes, size_t size)
{
    VxString text(BASE64_ENCODE_RAW_LENGTH(size), '\0');
    base64_encode_raw(text.data(), size, static_cast<const uint8_t*>(bytes));
    return text;
}

VxVector<uint8_t> Base64_Decode(const char* text, size_t size)
{
    size_t length = 0;
    while (length < size && InAlphabet(text[length])) ++length;
    VxVector<uint8_t> bytes(BASE64_DECODE_LENGTH(length) + 1);
    base64_decode_ctx context;
    base64_decode_init(&context);
    size_t written = bytes.size();
    base64_decode_update(&context, &written, bytes.data(), length, text);
    bytes.resize(written);
    return bytes;
}
