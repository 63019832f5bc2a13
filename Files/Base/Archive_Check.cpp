// Everything that the loaders will read, read once with bounds.

#include <algorithm>

#include "Files/Base/Archive_Cursor.h"
#include "Files/Base/Archive_Writer.h"

namespace archive {

namespace {

constexpr uint32_t kMaxEventTypes = 15;
constexpr uint32_t kMaxSubtypes = 256;
constexpr uint32_t kCollisionType = 4;      // its subtypes are object indices
constexpr uint32_t kRoomSlots = 8;          // backgrounds and views of a room
constexpr uint32_t kMaxImageSize = 0xFFFF;  // page entries hold sizes in 16 bits

struct Bounds {
    uint32_t begin = 0, end = 0;
};

class Checker {
public:
    Checker(const uint8_t* bytes, uint32_t size) : image_(bytes, size) {}
    bool Run(std::string* error);

private:
    using Member = void (Checker::*)(Cursor&);
    struct Handler {
        uint32_t tag;
        Member check;
    };
    static const Handler kHandlers[];

    bool FindPools(const std::vector<ChunkPlace>& chunks);
    void CheckChunk(const ChunkPlace& chunk);
    void CheckAcross();

    void CheckString(const Cursor& at, ArchiveString offset, const char* what);
    void CheckName(const Cursor& at, ArchiveString offset);
    void CheckEntry(const Cursor& at, ArchiveOffset offset);
    void CheckActions(Cursor list);

    void CheckGeneral(Cursor& chunk);
    void CheckOptions(Cursor& chunk);
    void CheckOldOptions(Cursor& chunk);
    void CheckConstants(Cursor& chunk, uint32_t count);
    void CheckLanguage(Cursor& chunk);
    void CheckGroups(Cursor& chunk);
    void CheckSounds(Cursor& chunk);
    void CheckWaves(Cursor& chunk);
    void CheckSprites(Cursor& chunk);
    void CheckSprite(Cursor& record);
    void CheckBackgrounds(Cursor& chunk);
    void CheckPaths(Cursor& chunk);
    void CheckScripts(Cursor& chunk);
    void CheckGlobalCode(Cursor& chunk);
    void CheckFonts(Cursor& chunk);
    void CheckTimelines(Cursor& chunk);
    void CheckObjects(Cursor& chunk);
    void CheckObject(Cursor& record);
    void CheckEvents(uint32_t type, Cursor& list);
    void CheckRooms(Cursor& chunk);
    void CheckRoom(Cursor& record);
    template <class T>
    void CheckRoomList(const Cursor& record, ArchiveOffset offset, const char* what,
                       uint32_t limit);
    void CheckPageEntries(Cursor& chunk);
    void CheckStrings(Cursor& chunk);
    void CheckPages(Cursor& chunk);
    void CheckImages(Cursor& chunk);

    struct Parent {
        uint32_t offset;
        int32_t index;
    };
    Image image_;
    Bounds strings_;  // from the first byte of STRG's body to behind its last zero
    std::vector<ArchiveOffset> entries_;  // ascending
    std::vector<Parent> parents_;         // by object
    std::vector<uint32_t> order_;
    uint32_t orderOffset_ = 0, roomCount_ = 0, objectCount_ = 0;
};

const Checker::Handler Checker::kHandlers[] = {
    {ArchiveTag("GEN7"), &Checker::CheckGeneral},
    {ArchiveTag("GEN8"), &Checker::CheckGeneral},
    {ArchiveTag("GENL"), &Checker::CheckGeneral},
    {ArchiveTag("OPTN"), &Checker::CheckOptions},
    {ArchiveTag("LANG"), &Checker::CheckLanguage},
    {ArchiveTag("AGRP"), &Checker::CheckGroups},
    {ArchiveTag("SOND"), &Checker::CheckSounds},
    {ArchiveTag("AUDO"), &Checker::CheckWaves},
    {ArchiveTag("SPRT"), &Checker::CheckSprites},
    {ArchiveTag("BGND"), &Checker::CheckBackgrounds},
    {ArchiveTag("PATH"), &Checker::CheckPaths},
    {ArchiveTag("SCPT"), &Checker::CheckScripts},
    {ArchiveTag("GLOB"), &Checker::CheckGlobalCode},
    {ArchiveTag("FONT"), &Checker::CheckFonts},
    {ArchiveTag("TMLN"), &Checker::CheckTimelines},
    {ArchiveTag("OBJT"), &Checker::CheckObjects},
    {ArchiveTag("ROOM"), &Checker::CheckRooms},
    {ArchiveTag("TXTR"), &Checker::CheckPages},
    {ArchiveTag("EMBI"), &Checker::CheckImages},
    {ArchiveTag("STRG"), &Checker::CheckStrings},
};

bool Checker::Run(std::string* error)
{
    std::vector<ChunkPlace> chunks;
    const bool whole = FindChunks(&image_, &chunks);
    std::erase_if(chunks, [](const ChunkPlace& chunk) { return chunk.size == 0; });
    if (whole && FindPools(chunks)) {
        for (const ChunkPlace& chunk : chunks)
            if (image_.Ok()) CheckChunk(chunk);
        if (image_.Ok()) CheckAcross();
    }
    if (error) *error = image_.Error();
    return image_.Ok();
}

// What records refer to from other chunks: the texts and the page entries.
bool Checker::FindPools(const std::vector<ChunkPlace>& chunks)
{
    for (size_t i = 0; i < chunks.size(); ++i) {
        const ChunkPlace& chunk = chunks[i];
        for (size_t j = 0; j < i; ++j)
            if (chunks[j].tag == chunk.tag)
                image_.Fail(chunk.tag, chunk.offset, "the chunk stands twice");
        if (i > 64) image_.Fail(chunk.tag, chunk.offset, "too many chunks");
        if (!image_.Ok()) return false;
        if (chunk.tag == ArchiveTag("STRG")) {
            strings_ = {chunk.offset, chunk.offset + chunk.size};
            while (strings_.end > strings_.begin && image_.Bytes()[strings_.end - 1] != 0)
                --strings_.end;
        }
        if (chunk.tag == ArchiveTag("TPAG")) {
            Claims claims(chunk.offset, chunk.offset + chunk.size);
            Cursor cursor(&image_, chunk.tag, chunk.offset, chunk.offset + chunk.size, &claims);
            CheckPageEntries(cursor);
            uint32_t first, second;
            if (claims.FindOverlap(&first, &second))
                image_.Fail(chunk.tag, second, "the record overlaps the one at %u", first);
        }
    }
    return image_.Ok();
}

void Checker::CheckChunk(const ChunkPlace& chunk)
{
    for (const Handler& handler : kHandlers) {
        if (handler.tag != chunk.tag) continue;
        const uint32_t end = chunk.offset + chunk.size;
        Claims claims(chunk.offset, end);
        Cursor cursor(&image_, chunk.tag, chunk.offset, end, &claims);
        (this->*handler.check)(cursor);
        uint32_t first, second;
        if (claims.FindOverlap(&first, &second))
            image_.Fail(chunk.tag, second, "the record overlaps the one at %u", first);
    }
}

// What holds between chunks: the room order and the objects' parents.
void Checker::CheckAcross()
{
    for (size_t i = 0; i < order_.size(); ++i) {
        if (order_[i] < roomCount_) continue;
        image_.Fail(ArchiveTag("GEN8"), orderOffset_ + static_cast<uint32_t>(i * 4),
                    "the room order names room %u of %u", order_[i], roomCount_);
    }
    // Each walk up marks its objects with its own number: meeting one's own mark is a loop.
    std::vector<uint32_t> mark(parents_.size(), 0);
    for (uint32_t start = 0; start < parents_.size(); ++start) {
        for (int64_t at = start; at >= 0 && at < static_cast<int64_t>(parents_.size());
             at = parents_[at].index) {
            if (mark[at] == start + 1)
                return image_.Fail(ArchiveTag("OBJT"), parents_[at].offset,
                                   "the parents of object %u loop", start);
            if (mark[at] != 0) break;
            mark[at] = start + 1;
        }
    }
}

void Checker::CheckString(const Cursor& at, ArchiveString offset, const char* what)
{
    if (offset == 0 || (offset >= strings_.begin && offset < strings_.end)) return;
    at.Fail("the text of %s at %u lies outside STRG or has no end", what, offset);
}

void Checker::CheckName(const Cursor& at, ArchiveString offset)
{
    if (offset == 0) at.Fail("a record has no name");
    CheckString(at, offset, "a name");
}

void Checker::CheckEntry(const Cursor& at, ArchiveOffset offset)
{
    if (offset != 0 && !std::binary_search(entries_.begin(), entries_.end(), offset))
        at.Fail("there is no page entry at %u", offset);
}

void Checker::CheckActions(Cursor list)
{
    EachRecord(list, "an action", [this](uint32_t, Cursor& record) {
        const ArchiveAction action = record.Take<ArchiveAction>("an action");
        CheckString(record, action.text, "an action");
    });
}

void Checker::CheckGeneral(Cursor& chunk)
{
    const ArchiveGeneral general = TakeGeneral(chunk);
    if (general.major > 1) chunk.Fail("major version %u: only 1 can be read", general.major);
    CheckString(chunk, general.fileName, "the file name");
    CheckString(chunk, general.config, "the configuration");
    CheckString(chunk, general.name, "the name");
    CheckString(chunk, general.displayName, "the display name");
    orderOffset_ = chunk.Offset();
    const uint8_t* order = chunk.TakeBytes(general.roomCount, 4, "the room order");
    if (!order) return;
    order_.resize(general.roomCount);
    if (!order_.empty()) std::memcpy(order_.data(), order, order_.size() * 4);
}

void Checker::CheckConstants(Cursor& chunk, uint32_t count)
{
    for (uint32_t i = 0; i < count && chunk.Ok(); ++i) {
        const ArchiveConstant constant = chunk.Take<ArchiveConstant>("a constant");
        CheckString(chunk, constant.name, "a constant");
        CheckString(chunk, constant.value, "a constant's value");
    }
}

void Checker::CheckOptions(Cursor& chunk)
{
    Cursor peek(&image_, chunk.Tag(), chunk.Begin(), chunk.End());
    if (peek.Word("the option block") != kOptionMarker) return CheckOldOptions(chunk);
    // A block of another version is refused by the reader, which looks no further.
    if (peek.Word("the option block's version") != kOptionVersion) return;
    const ArchiveOptions options = chunk.Take<ArchiveOptions>("the option block");
    CheckString(chunk, options.loadBarImage, "the load bar image");
    CheckConstants(chunk, options.constantCount);
}

void Checker::CheckOldOptions(Cursor& chunk)
{
    const ArchiveOldOptions options = chunk.Take<ArchiveOldOptions>("the older option block");
    CheckString(chunk, options.loadBarImage, "the load bar image");
    CheckConstants(chunk, options.constantCount);
}

void Checker::CheckLanguage(Cursor& chunk)
{
    chunk.Word("the language table");
    const uint64_t entries = chunk.Word("the entry count");
    const uint64_t languages = chunk.Word("the language count");
    if (languages > chunk.Left() / 4)
        return chunk.Fail("%u languages lead outside", static_cast<unsigned>(languages));
    const uint64_t texts = languages + entries * (2 + languages);
    for (uint64_t i = 0; i < texts && chunk.Ok(); ++i)
        CheckString(chunk, chunk.Word("a language text"), "the language table");
}

void Checker::CheckGroups(Cursor& chunk)
{
    EachRecord(chunk, "the list of audio groups", [this](uint32_t, Cursor& record) {
        CheckName(record, record.Word("an audio group"));
    });
}

void Checker::CheckSounds(Cursor& chunk)
{
    EachRecord(chunk, "the list of sounds", [this](uint32_t, Cursor& record) {
        const ArchiveSound sound = record.Take<ArchiveSound>("a sound");
        CheckName(record, sound.name);
        CheckString(record, sound.extension, "an extension");
        CheckString(record, sound.fileName, "a file name");
    });
}

void Checker::CheckWaves(Cursor& chunk)
{
    EachRecord(chunk, "the list of waves", [](uint32_t, Cursor& record) {
        record.TakeBytes(record.Word("a wave's length"), 1, "a wave");
    });
}

void Checker::CheckSprites(Cursor& chunk)
{
    EachRecord(chunk, "the list of sprites",
               [this](uint32_t, Cursor& record) { CheckSprite(record); });
}

void Checker::CheckSprite(Cursor& record)
{
    const ArchiveSprite sprite = record.Take<ArchiveSprite>("a sprite");
    CheckName(record, sprite.name);
    if (sprite.width > kMaxImageSize || sprite.height > kMaxImageSize)
        record.Fail("a sprite of %u by %u pixels", sprite.width, sprite.height);
    if (sprite.frameCount == -1) {
        record.TakeBytes(2, 4, "a sprite's version and type");
        return;
    }
    if (sprite.frameCount < 0) record.Fail("a sprite of %d frames", sprite.frameCount);
    const uint32_t frames = static_cast<uint32_t>(sprite.frameCount);
    if (frames > record.Left() / 4) record.Fail("%u frames lead outside", frames);
    for (uint32_t i = 0; i < frames && record.Ok(); ++i) CheckEntry(record, record.Word("a frame"));
    const uint32_t masks = record.Word("the mask count");
    if (masks > 1 && masks != frames)
        record.Fail("%u masks are neither one nor one for each of %u frames", masks, frames);
    const uint64_t maskSize = uint64_t{sprite.height} * ((sprite.width + 7) / 8);
    record.TakeBytes(masks, maskSize, "the masks");
}

void Checker::CheckBackgrounds(Cursor& chunk)
{
    EachRecord(chunk, "the list of backgrounds", [this](uint32_t, Cursor& record) {
        const ArchiveBackground background = record.Take<ArchiveBackground>("a background");
        CheckName(record, background.name);
        CheckEntry(record, background.tpag);
    });
}

void Checker::CheckPaths(Cursor& chunk)
{
    EachRecord(chunk, "the list of paths", [this](uint32_t, Cursor& record) {
        const ArchivePath path = record.Take<ArchivePath>("a path");
        CheckName(record, path.name);
        record.TakeBytes(path.pointCount, 12, "a path's points");
    });
}

void Checker::CheckScripts(Cursor& chunk)
{
    EachRecord(chunk, "the list of scripts", [this](uint32_t, Cursor& record) {
        CheckName(record, record.Take<ArchiveScript>("a script").name);
    });
}

void Checker::CheckGlobalCode(Cursor& chunk)
{
    chunk.TakeBytes(chunk.Word("the list of start code"), 4, "the list of start code");
}

void Checker::CheckFonts(Cursor& chunk)
{
    if (chunk.Left() < sizeof(uint32_t) + kSpriteFontTable)
        return chunk.Fail("the table of sprite fonts leads outside");
    EachRecord(chunk, "the list of fonts", [this](uint32_t, Cursor& record) {
        const ArchiveFont font = record.Take<ArchiveFont>("a font");
        CheckName(record, font.name);
        CheckString(record, font.faceName, "a face name");
        CheckEntry(record, font.tpag);
        const uint32_t glyphs = font.glyphCount;
        if (glyphs > record.Left() / 4) record.Fail("%u glyphs lead outside", glyphs);
        for (uint32_t i = 0; i < glyphs && record.Ok(); ++i) {
            Cursor glyph = record.At(record.Word("a glyph's offset"), "a glyph");
            glyph.TakeBytes(1, sizeof(ArchiveGlyph), "a glyph");
        }
    });
}

void Checker::CheckTimelines(Cursor& chunk)
{
    EachRecord(chunk, "the list of timelines", [this](uint32_t, Cursor& record) {
        const ArchiveTimeline timeline = record.Take<ArchiveTimeline>("a timeline");
        CheckName(record, timeline.name);
        for (uint32_t i = 0; i < timeline.momentCount && record.Ok(); ++i) {
            record.Word("a moment's time");
            CheckActions(record.At(record.Word("a moment's actions"), "an action list"));
        }
    });
}

void Checker::CheckObjects(Cursor& chunk)
{
    objectCount_ =
        Cursor(&image_, chunk.Tag(), chunk.Begin(), chunk.End()).Word("the object count");
    EachRecord(
        chunk, "the list of objects", [this](uint32_t, Cursor& record) { CheckObject(record); },
        [this](uint32_t) {
            parents_.push_back({0, kNoParent});
        });
}

void Checker::CheckObject(Cursor& record)
{
    const uint32_t start = record.Offset();
    const ArchiveObject object = record.Take<ArchiveObject>("an object");
    CheckName(record, object.name);
    parents_.push_back({start, object.parentIndex});
    record.TakeBytes(object.physicsVertexCount, 8, "an object's vertices");
    const uint32_t types = record.Word("the event types");
    if (types > kMaxEventTypes) record.Fail("%u event types, %u are known", types, kMaxEventTypes);
    for (uint32_t type = 0; type < types && record.Ok(); ++type) {
        const ArchiveOffset offset = record.Word("a list of events");
        if (offset == 0) continue;
        Cursor list = record.At(offset, "a list of events");
        CheckEvents(type, list);
    }
}

void Checker::CheckEvents(uint32_t type, Cursor& list)
{
    const uint32_t limit = type == kCollisionType ? objectCount_ : kMaxSubtypes;
    EachRecord(list, "a list of events", [&](uint32_t, Cursor& event) {
        const uint32_t subtype = event.Word("an event");
        if (subtype >= limit) event.Fail("event %u of type %u, below %u", subtype, type, limit);
        CheckActions(event);
    });
}

void Checker::CheckRooms(Cursor& chunk)
{
    roomCount_ = EachRecord(chunk, "the list of rooms",
                            [this](uint32_t, Cursor& record) { CheckRoom(record); });
}

template <class T>
void Checker::CheckRoomList(const Cursor& record, ArchiveOffset offset, const char* what,
                            uint32_t limit)
{
    if (offset == 0) return;
    Cursor list = record.At(offset, what);
    const uint32_t count = EachRecord(
        list, what, [what](uint32_t, Cursor& entry) { entry.TakeBytes(1, sizeof(T), what); });
    if (count > limit) list.Fail("%s of %u, at most %u", what, count, limit);
}

void Checker::CheckRoom(Cursor& record)
{
    const ArchiveRoom room = record.Take<ArchiveRoom>("a room");
    CheckName(record, room.name);
    CheckString(record, room.caption, "a caption");
    CheckRoomList<ArchiveRoomBackground>(record, room.backgrounds, "a room's backgrounds",
                                         kRoomSlots);
    CheckRoomList<ArchiveRoomView>(record, room.views, "a room's views", kRoomSlots);
    CheckRoomList<ArchiveRoomInstance>(record, room.instances, "a room's instances", UINT32_MAX);
    CheckRoomList<ArchiveRoomTile>(record, room.tiles, "a room's tiles", UINT32_MAX);
}

void Checker::CheckPageEntries(Cursor& chunk)
{
    EachRecord(chunk, "the list of page entries", [this](uint32_t, Cursor& record) {
        entries_.push_back(record.Offset());
        record.TakeBytes(1, sizeof(ArchivePageEntry), "a page entry");
    });
    std::sort(entries_.begin(), entries_.end());
}

void Checker::CheckStrings(Cursor& chunk)
{
    EachRecord(chunk, "the list of texts", [](uint32_t, Cursor& record) {
        const uint64_t size = uint64_t{record.Word("a text's length")} + 1;
        const uint8_t* text = record.TakeBytes(size, 1, "a text");
        if (text && text[size - 1] != 0) record.Fail("a text has no end");
    });
}

void Checker::CheckPages(Cursor& chunk)
{
    EachRecord(chunk, "the list of pages", [](uint32_t, Cursor& record) {
        const ArchivePage page = record.Take<ArchivePage>("a page");
        record.At(page.data, "a page's picture").TakeBytes(1, 1, "a page's picture");
    });
}

void Checker::CheckImages(Cursor& chunk)
{
    chunk.Word("the image table");
    CheckConstants(chunk, chunk.Word("the image count"));
}

}  // namespace

bool Check(const uint8_t* bytes, uint32_t size, std::string* error)
{
    return Checker(bytes, size).Run(error);
}

}  // namespace archive
