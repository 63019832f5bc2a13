// The table of sprites.

#include <cstdio>
#include <cstring>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Archive_Records.h"
#include "Files/Graphics/TextureSlots.h"
#include "Files/Sprite/CSprite.h"
#include "Platform/CHashMap.h"

namespace {

VxVector<CSprite*> s_sprites;
CHashMap<const char*, int32_t>* s_names;

// Fields of a record in the archive, which stands at any address.
template <class T>
T Field(const uint8_t* at)
{
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

void TakeName(CSprite* sprite, const char* name)
{
    if (sprite->nameOwned) MemoryManager::Free(const_cast<char*>(sprite->name));
    const size_t size = std::strlen(name) + 1;
    auto* copy = static_cast<char*>(MemoryManager::Alloc(size));
    std::memcpy(copy, name, size);
    sprite->name = copy;
    sprite->nameOwned = true;
}

void ReadFrames(CSprite* sprite, const uint8_t* tail, uint8_t* archiveBase)
{
    const auto frames = static_cast<size_t>(sprite->frameCount);
    sprite->entries = static_cast<ArchivePageEntry**>(
        MemoryManager::Alloc(frames * sizeof(ArchivePageEntry*), true));
    for (size_t frame = 0; frame < frames; ++frame) {
        const auto offset = Field<uint32_t>(tail + frame * 4);
        if (offset)
            sprite->entries[frame] = reinterpret_cast<ArchivePageEntry*>(archiveBase + offset);
    }
    sprite->maskCount = Field<int32_t>(tail + frames * 4);
    if (sprite->maskCount <= 0) return;
    sprite->packedMasks = tail + frames * 4 + 4;
    sprite->precise = true;
}

CSprite* ReadSprite(uint8_t* archiveBase, uint32_t offset)
{
    const auto record = Field<ArchiveSprite>(archiveBase + offset);
    const uint8_t* tail = archiveBase + offset + sizeof record;
    auto* sprite = VxNew<CSprite>();
    if (const char* name = GetArchiveString(record.name)) TakeName(sprite, name);
    sprite->width = static_cast<int32_t>(record.width);
    sprite->height = static_cast<int32_t>(record.height);
    sprite->bboxLeft = record.bboxLeft;
    sprite->bboxTop = record.bboxTop;
    sprite->bboxRight = record.bboxRight;
    sprite->bboxBottom = record.bboxBottom;
    sprite->transparent = record.transparent != 0;
    sprite->smooth = record.smooth != 0;
    sprite->preload = record.preload != 0;
    sprite->bboxMode = static_cast<int32_t>(record.bboxMode);
    sprite->sepMasks = record.sepMasks != 0;
    sprite->originX = record.originX;
    sprite->originY = record.originY;
    sprite->ComputeCullRadius();
    if (record.frameCount < 0) {  // a version and a kind follow
        sprite->kind = Field<int32_t>(tail + 4);
        return sprite;
    }
    sprite->frameCount = record.frameCount;
    if (record.frameCount > 0) ReadFrames(sprite, tail, archiveBase);
    return sprite;
}

void EnterName(int32_t index)
{
    const CSprite* sprite = s_sprites[static_cast<size_t>(index)];
    if (s_names && sprite && sprite->name[0]) s_names->Set(sprite->name, index);
}

// Another sprite of the same name keeps its entry.
void RemoveName(int32_t index)
{
    const CSprite* sprite = s_sprites[static_cast<size_t>(index)];
    const int32_t* entered = s_names ? s_names->Find(sprite->name) : nullptr;
    if (entered && *entered == index) s_names->Remove(sprite->name);
}

}  // namespace

void Sprite_Init()
{
    Sprite_Quit();
    s_names = VxNew<CHashMap<const char*, int32_t>>(512U);
}

void Sprite_Quit()
{
    for (CSprite* sprite : s_sprites) VxDelete(sprite);
    VxVector<CSprite*>().swap(s_sprites);
    VxDelete(s_names);
    s_names = nullptr;
}

bool Sprite_Load(const uint8_t* chunk, uint32_t size, uint8_t* archiveBase)
{
    Sprite_Init();
    if (size < 4) return true;
    const auto count = Field<uint32_t>(chunk);
    if (count > (size - 4) / 4) return true;
    s_sprites.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        const auto offset = Field<uint32_t>(chunk + 4 + static_cast<size_t>(i) * 4);
        s_sprites.push_back(offset ? ReadSprite(archiveBase, offset) : nullptr);
        EnterName(static_cast<int32_t>(i));
    }
    return true;
}

bool Sprite_InitTextures()
{
    for (CSprite* sprite : s_sprites)
        for (int32_t frame = 0; sprite && sprite->textures && frame < sprite->frameCount; ++frame)
            sprite->Texture(frame);
    return true;
}

int32_t Sprite_Count()
{
    return static_cast<int32_t>(s_sprites.size());
}

CSprite* Sprite_Data(int32_t index)
{
    const auto position = static_cast<size_t>(static_cast<uint32_t>(index));
    return position < s_sprites.size() ? s_sprites[position] : nullptr;
}

bool Sprite_Exists(int32_t index)
{
    return Sprite_Data(index) != nullptr;
}

int32_t Sprite_Find(const char* name)
{
    const int32_t* index = s_names ? s_names->Find(name) : nullptr;
    return index ? *index : -1;
}

const char* Sprite_Name(int32_t index)
{
    const CSprite* sprite = Sprite_Data(index);
    return sprite ? sprite->name : "<undefined>";
}

int32_t Sprite_Add(CSprite* sprite)
{
    if (!s_names) Sprite_Init();
    const int32_t index = Sprite_Count();
    s_sprites.push_back(sprite);
    EnterName(index);
    return index;
}

void Sprite_NameNew(int32_t index)
{
    CSprite* sprite = Sprite_Data(index);
    if (!sprite) return;
    char name[32];
    std::snprintf(name, sizeof name, "__newsprite%d", index);
    RemoveName(index);
    TakeName(sprite, name);
    EnterName(index);
}

bool Sprite_Delete(int32_t index)
{
    CSprite* sprite = Sprite_Data(index);
    if (!sprite) return false;
    RemoveName(index);
    VxDelete(sprite);
    s_sprites[static_cast<size_t>(index)] = nullptr;
    return true;
}

void Sprite_Replace(int32_t index, CSprite* sprite)
{
    CSprite* old = Sprite_Data(index);
    if (!old) {
        VxDelete(sprite);
        return;
    }
    RemoveName(index);
    TakeName(sprite, old->name);
    VxDelete(old);
    s_sprites[static_cast<size_t>(index)] = sprite;
    EnterName(index);
}
