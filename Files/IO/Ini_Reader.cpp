#include "Files/IO/Ini_Reader.h"

#include <cstdlib>
#include <cstring>

namespace {

bool IsLineEnd(char c)
{
    return c == '\r' || c == '\n';
}
bool IsBlank(char c)
{
    return c == ' ' || c == '\t';
}
bool IsComment(char c)
{
    return c == '#' || c == ';';
}
bool IsWhite(char c)
{
    return IsBlank(c) || IsLineEnd(c);
}

class IniParser {
public:
    IniParser(const char* text, uint32_t size) : at_(text), end_(text + size)
    {
        if (size >= 3 && std::memcmp(text, "\xEF\xBB\xBF", 3) == 0) at_ += 3;
    }

    bool AtEnd() const { return at_ == end_; }
    bool AtHeader() const { return !AtEnd() && *at_ == '['; }

    // The next header; a new section in front of `sections`, or null at the end.
    IniSection* ReadHeader(IniSection* sections)
    {
        SkipWhite();
        const char* const open = Find('[');
        const char* const close = open ? FindFrom(open, ']') : nullptr;
        if (!close) {
            at_ = end_;
            return nullptr;
        }
        at_ = close + 1;
        return VxNew<IniSection>(IniSection{sections, nullptr, VxString(open + 1, close)});
    }

    // An entry in front of `entries`, or null when none results.
    IniEntry* ReadEntry(IniEntry* entries)
    {
        SkipWhite();
        if (AtEnd() || AtHeader()) return nullptr;
        const char* const start = at_;
        const char* const equals = Find('=');
        if (!equals) {
            at_ = end_;
            return nullptr;
        }
        const char* keyEnd = equals;
        while (keyEnd > start && (IsWhite(keyEnd[-1]) || IsComment(keyEnd[-1]))) --keyEnd;
        at_ = equals + 1;
        if (SkipWhite()) return nullptr;
        return VxNew<IniEntry>(IniEntry{entries, VxString(start, keyEnd), ReadValue()});
    }

private:
    const char* FindFrom(const char* from, char wanted) const
    {
        return static_cast<const char*>(
            std::memchr(from, wanted, static_cast<size_t>(end_ - from)));
    }
    const char* Find(char wanted) const { return AtEnd() ? nullptr : FindFrom(at_, wanted); }
    void SkipLine()
    {
        while (!AtEnd() && !IsLineEnd(*at_)) ++at_;
    }
    // Over white space and comments; true when a line end was crossed.
    bool SkipWhite()
    {
        bool crossed = false;
        for (; !AtEnd(); ++at_) {
            if (IsComment(*at_)) SkipLine();
            if (AtEnd() || !IsWhite(*at_)) break;
            crossed |= IsLineEnd(*at_);
        }
        return crossed;
    }
    VxString ReadValue()
    {
        const char quote = AtEnd() ? '\0' : *at_;
        const bool quoted = quote == '"' || quote == '\'';
        if (quoted) ++at_;
        const char* const start = at_;
        while (!AtEnd() && !IsLineEnd(*at_) && (quoted ? *at_ != quote : !IsComment(*at_))) ++at_;
        const char* stop = at_;
        while (!quoted && stop > start && IsBlank(stop[-1])) --stop;
        SkipLine();
        return VxString(start, stop);
    }

    const char* at_;
    const char* const end_;
};

// The link of a list that leads to the first item of the name, or to its end.
template <class Item, class Link>
Link LinkTo(Link link, VxString Item::*name, const char* wanted)
{
    while (*link && (*link)->*name != wanted) link = &(*link)->next;
    return link;
}

void DropFirst(IniEntry** link)
{
    IniEntry* entry = *link;
    *link = entry->next;
    VxDelete(entry);
}

void DropFirst(IniSection** link)
{
    IniSection* section = *link;
    while (section->entries) DropFirst(&section->entries);
    *link = section->next;
    VxDelete(section);
}

}  // namespace

bool IniText::Parse(const char* text, uint32_t size)
{
    Clear();
    IniParser parser(text, size);
    IniSection* section = parser.ReadHeader(nullptr);
    while (section) {
        sections_ = section;
        while (!parser.AtEnd() && !parser.AtHeader())
            if (IniEntry* entry = parser.ReadEntry(section->entries)) section->entries = entry;
        section = parser.AtHeader() ? parser.ReadHeader(sections_) : nullptr;
    }
    return sections_ != nullptr;
}

void IniText::Clear()
{
    while (sections_) DropFirst(&sections_);
}

const IniSection* IniText::FindSection(const char* section) const
{
    return *LinkTo(&sections_, &IniSection::name, section);
}

const IniEntry* IniText::FindEntry(const char* section, const char* key) const
{
    const IniSection* in = FindSection(section);
    return in ? *LinkTo(&in->entries, &IniEntry::key, key) : nullptr;
}

IniEntry* IniText::Place(const char* section, const char* key)
{
    IniSection* in = *LinkTo(&sections_, &IniSection::name, section);
    if (!in) in = sections_ = VxNew<IniSection>(IniSection{sections_, nullptr, section});
    IniEntry* entry = *LinkTo(&in->entries, &IniEntry::key, key);
    if (!entry) entry = in->entries = VxNew<IniEntry>(IniEntry{in->entries, key, VxString()});
    return entry;
}

bool IniText::RemoveEntry(const char* section, const char* key)
{
    IniSection* in = *LinkTo(&sections_, &IniSection::name, section);
    IniEntry** link = in ? LinkTo(&in->entries, &IniEntry::key, key) : nullptr;
    if (!link || !*link) return false;
    DropFirst(link);
    return true;
}

bool IniText::RemoveSection(const char* section)
{
    IniSection** link = LinkTo(&sections_, &IniSection::name, section);
    if (!*link) return false;
    DropFirst(link);
    return true;
}

const char* IniText::ReadString(const char* section, const char* key, const char* fallback) const
{
    const IniEntry* entry = FindEntry(section, key);
    return entry ? entry->value.c_str() : fallback;
}

int32_t IniText::ReadInteger(const char* section, const char* key, int32_t fallback) const
{
    const IniEntry* entry = FindEntry(section, key);
    return entry ? std::atoi(entry->value.c_str()) : fallback;
}

double IniText::ReadReal(const char* section, const char* key, double fallback) const
{
    const IniEntry* entry = FindEntry(section, key);
    return entry ? std::atof(entry->value.c_str()) : fallback;
}
