// The table of fonts.

#include <cstdio>
#include <cstring>

#include "Files/Base/Archive_List.h"
#include "Files/Font/CFontSW.h"
#include "Files/Font/Font_Glyphs.h"

namespace {

VxVector<CFontSW*> g_fonts;            // null for an empty slot
VxVector<uint16_t> g_frameCharacters;  // characters of sprite fonts by frame number

void ReadFrameCharacters(const uint8_t* chunk, uint32_t size)
{
    if (size < kSpriteFontTable) return;
    g_frameCharacters.resize(kSpriteFontTable / sizeof(uint16_t));
    std::memcpy(g_frameCharacters.data(), chunk + size - kSpriteFontTable, kSpriteFontTable);
}

void NameNew(int32_t index, CFontSW* font)
{
    char text[32];
    std::snprintf(text, sizeof text, "__newfont%d", index);
    font->ownName = text;
    font->name = font->ownName.c_str();
}

}  // namespace

void Font_Init()
{
    Font_Quit();
}

void Font_Quit()
{
    for (CFontSW* font : g_fonts) VxDelete(font);
    VxVector<CFontSW*>().swap(g_fonts);
    VxVector<uint16_t>().swap(g_frameCharacters);
    Font_FreeDefault();
    FontFile_Quit();
}

bool Font_Load(const uint8_t* chunk, uint32_t size, uint8_t* archiveBase)
{
    const ArchiveList list(chunk, archiveBase);
    for (uint32_t i = 0; i < list.Count(); ++i) {
        const uint8_t* record = list.At(i);
        CFontSW* font = record ? VxNew<CFontSW>() : nullptr;
        if (font) font->LoadFromChunk(record, archiveBase);
        g_fonts.push_back(font);
    }
    ReadFrameCharacters(chunk, size);
    return true;
}

// Fonts of the archive draw from its pages: there is no texture of their own.
bool Font_InitTextures()
{
    return true;
}

int32_t Font_Count()
{
    return static_cast<int32_t>(g_fonts.size());
}

CFontSW* Font_Data(int32_t index)
{
    return index >= 0 && index < Font_Count() ? g_fonts[static_cast<size_t>(index)] : nullptr;
}

int32_t Font_Find(const char* name)
{
    for (int32_t i = 0; i < Font_Count(); ++i)
        if (const CFontSW* font = Font_Data(i))
            if (std::strcmp(font->name, name) == 0) return i;
    return -1;
}

const char* Font_Name(int32_t index)
{
    const CFontSW* font = Font_Data(index);
    return font ? font->name : "<undefined>";
}

int32_t Font_Add(CFontSW* font)
{
    g_fonts.push_back(font);
    NameNew(Font_Count() - 1, font);
    return Font_Count() - 1;
}

bool Font_Delete(int32_t index)
{
    CFontSW* font = Font_Data(index);
    if (!font) return false;
    g_fonts[static_cast<size_t>(index)] = nullptr;
    VxDelete(font);
    return true;
}

bool Font_Replace(int32_t index, CFontSW* font)
{
    CFontSW* old = Font_Data(index);
    if (!old) return false;
    font->ownName = old->name;
    font->name = font->ownName.c_str();
    g_fonts[static_cast<size_t>(index)] = font;
    VxDelete(old);
    return true;
}

uint16_t Font_FrameCharacter(int32_t number)
{
    const auto at = static_cast<size_t>(static_cast<uint32_t>(number));
    return at < g_frameCharacters.size() ? g_frameCharacters[at] : static_cast<uint16_t>(number);
}
