#include "tests/Files/Graphics/support_Drawing.h"

int32_t DrawingTest::PlainSprite(int32_t size, uint32_t colour, const char* name)
{
    auto* sprite = VxNew<CSprite>();
    sprite->name = name;
    sprite->width = sprite->height = size;
    sprite->frameCount = 1;
    sprite->bboxRight = sprite->bboxBottom = size - 1;
    sprite->entriesOwned = true;
    sprite->entries = static_cast<ArchivePageEntry**>(MemoryManager::Alloc(sizeof(void*)));
    sprite->entries[0] =
        static_cast<ArchivePageEntry*>(MemoryManager::Alloc(sizeof(ArchivePageEntry)));
    *sprite->entries[0] = Entry(Page(size, size, colour), static_cast<uint16_t>(size));
    sprite->ComputeCullRadius();
    return Sprite_Add(sprite);
}
