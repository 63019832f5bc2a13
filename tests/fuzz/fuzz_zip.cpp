// Feeds any bytes to the reader of ZIP archives: what it lists stays below the folder
// that it would be unpacked into.
//
//   fuzz_zip --write-seeds=DIR    writes small archives into DIR, which exists
//   fuzz_zip -max_total_time=600 DIR

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "Files/IO/File_Names.h"
#include "Files/IO/File_Zip.h"
#include "tests/Files/IO/support_Zip.h"
#include "tests/fuzz/support_Seeds.h"

namespace {

void WriteSeeds(const std::string& folder)
{
    const std::pair<const char*, std::string> seeds[] = {
        {"stored", ZipOf({{"a.txt", "stored"}})},
        {"deflated", ZipOf({{"b/", ""}, {"b/c.txt", std::string(90, 'c'), true}})},
        {"outside", ZipOf({{"../a", "x"}})},
        {"comment", ZipOf({{"a", "x"}, {"b", "y", true}}, "a comment")}};
    for (const auto& [name, bytes] : seeds)
        std::ofstream(folder + "/" + name, std::ios::binary) << bytes;
}

bool LeadsOut(const VxString& name)
{
    const VxString framed = "/" + name + "/";
    return framed.find("/../") != VxString::npos || framed.find("//") == 0 ||
           name.find('\0') != VxString::npos || name.find('\\') != VxString::npos;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments)
{
    WriteSeedsIfAsked(*count, *arguments, WriteSeeds);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // A block of its own: a read behind its end is seen.
    const std::unique_ptr<uint8_t[]> block(new uint8_t[size]);
    if (size) std::memcpy(block.get(), data, size);
    VxVector<ZipEntry> entries;
    if (Zip_List(block.get(), static_cast<uint32_t>(size), &entries)) return 0;
    for (const ZipEntry& entry : entries) {
        if (LeadsOut(entry.name)) {
            std::fprintf(stderr, "%s leads out\n", entry.name.c_str());
            std::abort();
        }
        MemoryManager::Free(Zip_Unpack(block.get(), static_cast<uint32_t>(size), entry));
    }
    return 0;
}
