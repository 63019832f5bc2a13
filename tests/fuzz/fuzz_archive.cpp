// Feeds archives to the checker, the reader, the lister, and, where the checker lets
// them pass, to the loaders that read them in place.
//
//   fuzz_archive --write-seeds=DIR    writes small archives into DIR, which exists
//   fuzz_archive -max_total_time=600 DIR
//
// Most damage to a size would end in the first test of the stored size of the whole:
// each input is therefore also tried with that size mended.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Archive_Writer.h"
#include "Files/Base/Console.h"
#include "Files/Graphics/Window.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Room/Room_Tables.h"
#include "Files/Run/Run_Modules.h"
#include "Files/Script/Script_Main.h"
#include "Files/Sound/Audio_Main.h"
#include "Files/Sprite/CSprite.h"
#include "Host/Host_Stage.h"
#include "tests/Files/Base/Archive_Sample.h"
#include "tests/fuzz/support_Seeds.h"
#include "tools/list/Records.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

void Require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

archive::Content WithoutAssets()
{
    archive::Content content = archive::SampleContent();
    content.sounds.clear();
    content.waves.clear();
    content.sprites.clear();
    content.backgrounds.clear();
    content.fonts.clear();
    content.pages.clear();
    return content;
}

void WriteSeeds(const std::string& folder)
{
    archive::Content older = archive::SampleContent();
    older.general.bytecodeVersion = 8;
    const std::pair<const char*, std::vector<uint8_t>> seeds[] = {
        {"sample", archive::Write(archive::SampleContent())},
        {"empty", archive::Write(archive::Content{})},
        {"world", archive::Write(WithoutAssets())},
        {"older", archive::Write(older)},
        {"path", archive::SampleWithPath()},
        {"timeline", archive::SampleWithTimeline()}};
    for (const auto& [name, bytes] : seeds)
        std::ofstream(folder + "/" + name, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
}

// The records that are read later in a run: room contents and masks.
void UseWhatWasLoaded()
{
    for (int32_t i = 0; i < Sprite_Count(); ++i)
        if (CSprite* sprite = Sprite_Data(i)) sprite->ExpandedMasks();
    for (int32_t i = 0; i < Room_Count(); ++i) {
        const CRoom* from = Room_Template(i);
        if (!from) continue;
        CRoom* room = VxNew<CRoom>();
        Room_CopyTemplate(room, *from);
        VxDelete(room);
    }
}

void LoadAll(const uint8_t* bytes, uint32_t size)
{
    RunnerData attachment;
    attachment.archive = bytes;
    attachment.archiveSize = size;
    RunState_Reset();
    Console_Init();
    Window_Init();
    Archive_Init();
    InitGameSystem();
    if (RunnerLoadGame(attachment) && LoadGameHeader(g_ArchiveBase, g_ArchiveSize)) {
        LoadGameData(g_ArchiveBase, g_ArchiveSize);
        PrepareGame();
        Object_BuildEventTables();
        UseWhatWasLoaded();
    }
    Finish();
}

void Try(const std::vector<uint8_t>& bytes)
{
    // A block of its own: a read behind its end is seen.
    const std::unique_ptr<uint8_t[]> block(new uint8_t[bytes.size()]);
    std::memcpy(block.get(), bytes.data(), bytes.size());
    const uint32_t size = static_cast<uint32_t>(bytes.size());
    std::string error;
    const bool ok = archive::Check(block.get(), size, &error);
    Require(ok == error.empty(), "the verdict and the message differ");
    archive::Content content;
    Require(archive::Read(bytes, &content, nullptr) == ok, "check and reader differ");
    if (!ok) return;
    archive::Content back;
    const bool written = archive::Read(archive::Write(content), &back, &error);
    Require(written, ("what was read can't be written: " + error).c_str());
    list::Value tree;
    Require(list::Describe(bytes, &tree, &error), "check and lister differ");
    LoadAll(block.get(), size);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments)
{
    WriteSeedsIfAsked(*count, *arguments, WriteSeeds);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::vector<uint8_t> bytes(data, data + size);
    std::string error;
    archive::Check(bytes.data(), static_cast<uint32_t>(size), &error);
    if (size >= 8) {
        const uint32_t form = static_cast<uint32_t>(size - 8);
        std::memcpy(bytes.data() + 4, &form, sizeof form);
        Try(bytes);
    }
    Stage_Reset();
    return 0;
}

// Half of the mutations bend one word the way a damaged offset, count or index is
// bent: to another word of the archive, a step aside, or an extreme.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    if (seed % 2 == 0 || size < 16) return LLVMFuzzerMutate(data, size, maxSize);
    uint32_t random = seed * 2654435761U;
    const auto next = [&random](size_t below) {
        random = random * 1664525U + 1013904223U;
        return static_cast<size_t>(random >> 8) % below;
    };
    const size_t at = next(size / 4) * 4, other = next(size / 4) * 4;
    uint32_t word;
    std::memcpy(&word, data + at, 4);
    switch (next(5)) {
        case 0:
            std::memcpy(&word, data + other, 4);
            break;
        case 1:
            word = static_cast<uint32_t>(next(size));
            break;
        case 2:
            word += 4 * static_cast<uint32_t>(next(9)) - 16;
            break;
        case 3:
            word = static_cast<uint32_t>(next(5)) - 2;
            break;
        default:
            word = 0x80000000U >> next(32);
            break;
    }
    std::memcpy(data + at, &word, 4);
    return size;
}
