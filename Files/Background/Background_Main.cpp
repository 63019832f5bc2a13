// Backgrounds and their table.

#include <cstdio>
#include <cstring>

#include "Files/Background/CBackground.h"
#include "Files/Base/Archive_Main.h"
#include "Files/Base/Archive_Records.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Picture_Files.h"
#include "Files/Graphics/TextureSlots.h"
#include "Platform/MemoryManager.h"

namespace {

VxVector<CBackground*> s_backgrounds;

void TakeName(CBackground* background, const char* name)
{
    if (background->nameOwned) MemoryManager::Free(const_cast<char*>(background->name));
    const size_t size = std::strlen(name) + 1;
    auto* copy = static_cast<char*>(MemoryManager::Alloc(size));
    std::memcpy(copy, name, size);
    background->name = copy;
    background->nameOwned = true;
}

CBackground* ReadBackground(uint8_t* archiveBase, uint32_t offset)
{
    ArchiveBackground record;
    std::memcpy(&record, archiveBase + offset, sizeof record);
    auto* background = VxNew<CBackground>();
    if (const char* name = GetArchiveString(record.name)) TakeName(background, name);
    background->transparent = record.transparent != 0;
    background->smooth = record.smooth != 0;
    background->preload = record.preload != 0;
    if (record.tpag) {
        background->entry = reinterpret_cast<ArchivePageEntry*>(archiveBase + record.tpag);
        background->width = background->entry->sourceWidth;
        background->height = background->entry->sourceHeight;
    }
    return background;
}

}  // namespace

CBackground::~CBackground()
{
    Texture_Free(texture);
    VxDelete(bitmap);
    if (entryOwned) MemoryManager::Free(entry);
    if (nameOwned) MemoryManager::Free(const_cast<char*>(name));
}

int32_t CBackground::Texture()
{
    if (texture < 0 && bitmap)
        texture = Texture_CreateFromPixels(
            bitmap->width, bitmap->height, bitmap->data,
            static_cast<uint32_t>(bitmap->width) * static_cast<uint32_t>(bitmap->height) * 4);
    return texture;
}

void CBackground::SetBitmap(CBitmap32* picture)
{
    Texture_Free(texture);
    texture = -1;
    VxDelete(bitmap);
    if (entryOwned) MemoryManager::Free(entry);
    entry = nullptr;
    entryOwned = false;
    bitmap = picture;
    width = picture->width;
    height = picture->height;
}

uint32_t* CBackground::Pixels() const
{
    if (entry) return Picture_OfEntry(*entry);
    if (!bitmap) return nullptr;
    const size_t bytes =
        static_cast<size_t>(bitmap->width) * static_cast<size_t>(bitmap->height) * 4;
    auto* pixels = static_cast<uint32_t*>(MemoryManager::Alloc(bytes));
    std::memcpy(pixels, bitmap->data, bytes);
    return pixels;
}

void Background_Init()
{
    Background_Quit();
}

void Background_Quit()
{
    for (CBackground* background : s_backgrounds) VxDelete(background);
    VxVector<CBackground*>().swap(s_backgrounds);
}

bool Background_Load(const uint8_t* chunk, uint32_t size, uint8_t* archiveBase)
{
    Background_Init();
    uint32_t count = 0;
    if (size < sizeof count) return true;
    std::memcpy(&count, chunk, sizeof count);
    if (count > (size - 4) / 4) return true;
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t offset;
        std::memcpy(&offset, chunk + 4 + static_cast<size_t>(i) * 4, sizeof offset);
        s_backgrounds.push_back(offset ? ReadBackground(archiveBase, offset) : nullptr);
    }
    return true;
}

bool Background_InitTextures()
{
    for (CBackground* background : s_backgrounds)
        if (background) background->Texture();
    return true;
}

int32_t Background_Count()
{
    return static_cast<int32_t>(s_backgrounds.size());
}

CBackground* Background_Data(int32_t index)
{
    const auto position = static_cast<size_t>(static_cast<uint32_t>(index));
    return position < s_backgrounds.size() ? s_backgrounds[position] : nullptr;
}

int32_t Background_Find(const char* name)
{
    for (size_t i = 0; i < s_backgrounds.size(); ++i)
        if (s_backgrounds[i] && std::strcmp(s_backgrounds[i]->name, name) == 0)
            return static_cast<int32_t>(i);
    return -1;
}

const char* Background_Name(int32_t index)
{
    const CBackground* background = Background_Data(index);
    return background ? background->name : "<undefined>";
}

int32_t Background_Add(CBackground* background)
{
    s_backgrounds.push_back(background);
    return Background_Count() - 1;
}

bool Background_Delete(int32_t index)
{
    CBackground* background = Background_Data(index);
    if (!background) return false;
    VxDelete(background);
    s_backgrounds[static_cast<size_t>(index)] = nullptr;
    return true;
}

void Background_NameNew(int32_t index)
{
    CBackground* background = Background_Data(index);
    if (!background) return;
    char name[32];
    std::snprintf(name, sizeof name, "__newbackground%d", index);
    TakeName(background, name);
}
