// Feeds any bytes to the INI reader, and what was read to the writer: sections and keys
// must come back in reverse order, and values up to their first quote.
//
//   fuzz_ini -max_total_time=600 -only_ascii=0 DIR

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Files/IO/Ini_File.h"

namespace {

void Require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

// The items of a list, last first.
template <class Item>
VxVector<const Item*> Reversed(const Item* head)
{
    VxVector<const Item*> items;
    for (; head; head = head->next) items.insert(items.begin(), head);
    return items;
}

void CompareEntries(const IniSection* before, const IniSection* after)
{
    const IniEntry* entry = after->entries;
    for (const IniEntry* from : Reversed(before->entries)) {
        Require(entry && entry->key == from->key, "a key was lost");
        Require(entry->value == from->value.substr(0, from->value.find('"')), "a value was lost");
        entry = entry->next;
    }
    Require(!entry, "a key was made up");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // A block of its own: a read behind its end is seen.
    const std::unique_ptr<char[]> block(new char[size]);
    if (size) std::memcpy(block.get(), data, size);
    IniFile before, after;
    const bool isIni = before.Parse(block.get(), static_cast<uint32_t>(size));
    const VxString text = before.Write();
    Require(after.Parse(text.data(), static_cast<uint32_t>(text.size())) == isIni,
            "what was written is no INI text");
    const IniSection* section = after.Sections();
    for (const IniSection* from : Reversed(before.Sections())) {
        Require(section && section->name == from->name, "a section was lost");
        CompareEntries(from, section);
        section = section->next;
    }
    Require(!section, "a section was made up");
    return 0;
}
