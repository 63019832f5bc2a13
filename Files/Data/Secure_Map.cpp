#include "Files/Data/Secure_Map.h"

#include <cstdio>

#include "Files/Data/Digests.h"
#include "Files/Data/Json.h"
#include "Host/Host.h"

namespace {

// Changed once, files of before can't be opened any more.
constexpr int kOddMark = 0x35, kEvenMark = 0x5A;
constexpr size_t kTagSize = 80;
constexpr size_t kWordSize = 8;  // characters of a digest's word
constexpr int kChosenByte = 2;   // of the identifier: it says where the mark comes from

VxString MachineId()
{
    const VxString id = g_Host.files.MachineId();
    return id.empty() ? "NOT SUPPORTED" : id;
}

// Two digests, woven word by word.
VxString Tag()
{
    const VxString id = MachineId();
    const int size = static_cast<int>(id.size());
    int place = static_cast<signed char>(id[static_cast<size_t>(kChosenByte % size)]) % size;
    if (place < 0) place += size;
    const int letter = static_cast<signed char>(id[static_cast<size_t>(place)]);
    char digits[16];
    std::snprintf(digits, sizeof digits, "%03d", letter ^ (place % 2 != 0 ? kOddMark : kEvenMark));
    const VxString mark = digits;
    VxString text = id;
    text.insert(static_cast<size_t>(place), mark);
    // With their zeros.
    const VxString whole = Sha1_Text(text.c_str(), text.size() + 1);
    const VxString part = Sha1_Text(mark.c_str(), mark.size() + 1);
    VxString tag;
    for (size_t at = 0; at < whole.size(); at += kWordSize)
        tag += whole.substr(at, kWordSize) + part.substr(at, kWordSize);
    return tag;
}

}  // namespace

VxString SecureMap_Text(int32_t map)
{
    VxString json = Json_Encode(map);
    if (json.empty()) json = "{ }";
    return Tag() + Base64_Encode(json.c_str(), json.size() + 1);
}

int32_t SecureMap_Open(const char* text, size_t size)
{
    if (size < kTagSize || VxString(text, kTagSize) != Tag()) return -1;
    VxVector<uint8_t> json = Base64_Decode(text + kTagSize, size - kTagSize);
    json.push_back(0);
    return Json_Decode(reinterpret_cast<const char*>(json.data()));
}
