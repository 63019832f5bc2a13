#include <algorithm>
#include <cstring>

#include "Files/Base/Archive_Cursor.h"
#include "Files/Base/Archive_Writer.h"

namespace archive {

namespace {

constexpr uint8_t kPngSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

// Bytes of the PNG file at the head of `bytes`, its IEND chunk included; `left` when
// it is no whole PNG file.
size_t PngSize(const uint8_t* bytes, size_t left)
{
    if (left < sizeof kPngSignature || std::memcmp(bytes, kPngSignature, sizeof kPngSignature) != 0)
        return left;
    constexpr size_t kAround = 12;  // length, type and check sum around a chunk's data
    for (size_t at = sizeof kPngSignature; left - at >= kAround;) {
        const uint8_t* chunk = bytes + at;
        const size_t length =
            static_cast<size_t>(chunk[0]) << 24 | chunk[1] << 16 | chunk[2] << 8 | chunk[3];
        if (length > left - at - kAround) break;
        at += length + kAround;
        if (std::memcmp(chunk + 4, "IEND", 4) == 0) return at;
    }
    return left;
}

// Reads an archive that Check has let pass.
class Reader {
public:
    Reader(const std::vector<uint8_t>& bytes, Content* content)
        : image_(bytes.data(), static_cast<uint32_t>(bytes.size())), content_(*content)
    {
    }
    bool Run(std::string* error);

private:
    using Member = void (Reader::*)(Cursor&);
    struct Handler {
        uint32_t tag;
        Member read;
    };
    static const Handler kHandlers[];

    std::string Text(ArchiveString offset) const
    {
        return offset ? reinterpret_cast<const char*>(image_.Bytes()) + offset : "";
    }
    PageEntry Entry(ArchiveOffset offset) const;
    // Visits a list; a slot that is empty stays a record without a name.
    template <class T, class Fill>
    void Records(Cursor& list, std::vector<T>* records, const char* what, Fill fill);

    void ReadGeneral(Cursor& chunk);
    void ReadOptions(Cursor& chunk);
    void ReadOldOptions(Cursor& chunk);
    void ReadConstants(Cursor& chunk, uint32_t count);
    void ReadSounds(Cursor& chunk);
    void ReadWaves(Cursor& chunk);
    void ReadSprites(Cursor& chunk);
    void ReadSprite(Cursor& record, Sprite* sprite);
    void ReadBackgrounds(Cursor& chunk);
    void ReadScripts(Cursor& chunk);
    void ReadGlobalCode(Cursor& chunk);
    void ReadFonts(Cursor& chunk);
    void ReadFont(Cursor& record, Font* font);
    void ReadObjects(Cursor& chunk);
    void ReadObject(Cursor& record, Object* object);
    void ReadRooms(Cursor& chunk);
    void ReadRoom(Cursor& record, Room* room);
    void ReadBackgroundSlots(Cursor list, Room* room);
    void ReadViews(Cursor list, Room* room);
    void ReadInstances(Cursor list, Room* room);
    void ReadTiles(Cursor list, Room* room);
    void ReadPages(Cursor& chunk);

    Image image_;
    Content& content_;
};

const Reader::Handler Reader::kHandlers[] = {
    {ArchiveTag("GEN7"), &Reader::ReadGeneral}, {ArchiveTag("GEN8"), &Reader::ReadGeneral},
    {ArchiveTag("GENL"), &Reader::ReadGeneral}, {ArchiveTag("OPTN"), &Reader::ReadOptions},
    {ArchiveTag("SOND"), &Reader::ReadSounds},  {ArchiveTag("AUDO"), &Reader::ReadWaves},
    {ArchiveTag("SPRT"), &Reader::ReadSprites}, {ArchiveTag("BGND"), &Reader::ReadBackgrounds},
    {ArchiveTag("SCPT"), &Reader::ReadScripts}, {ArchiveTag("GLOB"), &Reader::ReadGlobalCode},
    {ArchiveTag("FONT"), &Reader::ReadFonts},   {ArchiveTag("OBJT"), &Reader::ReadObjects},
    {ArchiveTag("ROOM"), &Reader::ReadRooms},   {ArchiveTag("TXTR"), &Reader::ReadPages},
};

bool Reader::Run(std::string* error)
{
    std::vector<ChunkPlace> chunks;
    FindChunks(&image_, &chunks);
    for (const ChunkPlace& chunk : chunks)
        for (const Handler& handler : kHandlers)
            if (handler.tag == chunk.tag && chunk.size != 0) {
                Cursor cursor(&image_, chunk.tag, chunk.offset, chunk.offset + chunk.size);
                (this->*handler.read)(cursor);
            }
    if (error) *error = image_.Error();
    return image_.Ok();
}

PageEntry Reader::Entry(ArchiveOffset offset) const
{
    PageEntry entry;
    if (offset == 0) return entry;
    ArchivePageEntry from;
    std::memcpy(&from, image_.Bytes() + offset, sizeof from);
    entry.x = from.x;
    entry.y = from.y;
    entry.width = from.width;
    entry.height = from.height;
    entry.targetX = from.targetX;
    entry.targetY = from.targetY;
    entry.targetWidth = from.targetWidth;
    entry.targetHeight = from.targetHeight;
    entry.sourceWidth = from.sourceWidth;
    entry.sourceHeight = from.sourceHeight;
    entry.page = from.texture;
    return entry;
}

template <class T, class Fill>
void Reader::Records(Cursor& list, std::vector<T>* records, const char* what, Fill fill)
{
    EachRecord(
        list, what,
        [&](uint32_t, Cursor& record) {
            records->emplace_back();
            fill(record, &records->back());
        },
        [&](uint32_t) { records->emplace_back(); });
}

void Reader::ReadGeneral(Cursor& chunk)
{
    const ArchiveGeneral from = TakeGeneral(chunk);
    General& general = content_.general;
    general.debuggerDisabled = from.debuggerDisabled;
    general.bytecodeVersion = from.bytecodeVersion;
    general.fileName = Text(from.fileName);
    general.config = Text(from.config);
    general.name = Text(from.name);
    general.displayName = Text(from.displayName);
    general.lastInstanceId = static_cast<int32_t>(from.lastInstanceId);
    general.lastTileId = static_cast<int32_t>(from.lastTileId);
    general.gameId = from.gameId;
    general.major = from.major;
    general.minor = from.minor;
    general.release = from.release;
    general.build = from.build;
    general.defaultWindowWidth = from.defaultWindowWidth;
    general.defaultWindowHeight = from.defaultWindowHeight;
    general.infoFlags = from.infoFlags;
    general.timestamp = from.timestamp;
    general.activeTargets = from.activeTargets;
    general.functionClasses = from.functionClasses;
    general.steamAppId = from.steamAppId;
    general.debuggerPort = from.debuggerPort;
    for (uint32_t i = 0; i < from.roomCount && chunk.Ok(); ++i)
        general.roomOrder.push_back(chunk.Word("the room order"));
}

void Reader::ReadConstants(Cursor& chunk, uint32_t count)
{
    for (uint32_t i = 0; i < count && chunk.Ok(); ++i) {
        const ArchiveConstant constant = chunk.Take<ArchiveConstant>("a constant");
        content_.options.constants.emplace_back(Text(constant.name), Text(constant.value));
    }
}

template <class T>
void CopyOptionValues(const T& from, Options* options)
{
    options->windowScale = from.windowScale;
    options->windowColour = from.windowColour;
    options->colourDepth = from.colourDepth;
    options->resolution = from.resolution;
    options->frequency = from.frequency;
    options->verticalSync = from.verticalSync;
    options->priority = from.priority;
    options->loadAlpha = from.loadAlpha;
}

void Reader::ReadOptions(Cursor& chunk)
{
    Cursor peek = chunk;
    if (peek.Word("the option block") != kOptionMarker) return ReadOldOptions(chunk);
    if (peek.Word("the option block's version") != kOptionVersion) return;
    const ArchiveOptions from = chunk.Take<ArchiveOptions>("the option block");
    content_.options.bits = from.bits;
    content_.options.loadBarImage = Text(from.loadBarImage);
    CopyOptionValues(from, &content_.options);
    ReadConstants(chunk, from.constantCount);
}

void Reader::ReadOldOptions(Cursor& chunk)
{
    const ArchiveOldOptions from = chunk.Take<ArchiveOldOptions>("the older option block");
    content_.options.bits = ArchiveOldOptionBits(from);
    content_.options.loadBarImage = Text(from.loadBarImage);
    CopyOptionValues(from, &content_.options);
    ReadConstants(chunk, from.constantCount);
}

void Reader::ReadSounds(Cursor& chunk)
{
    Records(chunk, &content_.sounds, "a sound", [this](Cursor& record, Sound* sound) {
        const ArchiveSound from = record.Take<ArchiveSound>("a sound");
        sound->name = Text(from.name);
        sound->flags = from.flags;
        sound->extension = Text(from.extension);
        sound->fileName = Text(from.fileName);
        sound->effects = from.effects;
        sound->volume = from.volume;
        sound->pitch = from.pitch;
        sound->groupId = from.groupId;
        sound->audioIndex = from.audioIndex;
    });
}

void Reader::ReadWaves(Cursor& chunk)
{
    Records(chunk, &content_.waves, "a wave", [](Cursor& record, std::vector<uint8_t>* wave) {
        const uint32_t length = record.Word("a wave's length");
        if (const uint8_t* bytes = record.TakeBytes(length, 1, "a wave"))
            wave->assign(bytes, bytes + length);
    });
}

void Reader::ReadSprites(Cursor& chunk)
{
    Records(chunk, &content_.sprites, "a sprite",
            [this](Cursor& record, Sprite* sprite) { ReadSprite(record, sprite); });
}

void Reader::ReadSprite(Cursor& record, Sprite* sprite)
{
    const ArchiveSprite from = record.Take<ArchiveSprite>("a sprite");
    sprite->name = Text(from.name);
    sprite->width = from.width;
    sprite->height = from.height;
    sprite->bboxLeft = from.bboxLeft;
    sprite->bboxRight = from.bboxRight;
    sprite->bboxBottom = from.bboxBottom;
    sprite->bboxTop = from.bboxTop;
    sprite->transparent = from.transparent != 0;
    sprite->smooth = from.smooth != 0;
    sprite->preload = from.preload != 0;
    sprite->bboxMode = from.bboxMode;
    sprite->sepMasks = from.sepMasks != 0;
    sprite->originX = from.originX;
    sprite->originY = from.originY;
    if (from.frameCount < 0) return;
    for (int32_t i = 0; i < from.frameCount && record.Ok(); ++i)
        sprite->frames.push_back(Entry(record.Word("a frame")));
    const uint32_t masks = record.Word("the mask count");
    const uint64_t size = uint64_t{from.height} * ((from.width + 7) / 8);
    for (uint32_t i = 0; i < masks && record.Ok(); ++i)
        if (const uint8_t* bytes = record.TakeBytes(1, size, "a mask"))
            sprite->masks.emplace_back(bytes, bytes + size);
}

void Reader::ReadBackgrounds(Cursor& chunk)
{
    Records(chunk, &content_.backgrounds, "a background",
            [this](Cursor& record, Background* background) {
                const ArchiveBackground from = record.Take<ArchiveBackground>("a background");
                background->name = Text(from.name);
                background->transparent = from.transparent != 0;
                background->smooth = from.smooth != 0;
                background->preload = from.preload != 0;
                background->hasEntry = from.tpag != 0;
                background->entry = Entry(from.tpag);
            });
}

void Reader::ReadScripts(Cursor& chunk)
{
    Records(chunk, &content_.scripts, "a script", [this](Cursor& record, Script* script) {
        const ArchiveScript from = record.Take<ArchiveScript>("a script");
        script->name = Text(from.name);
        script->codeId = from.codeId;
    });
}

void Reader::ReadGlobalCode(Cursor& chunk)
{
    const uint32_t count = chunk.Word("the list of start code");
    for (uint32_t i = 0; i < count && chunk.Ok(); ++i)
        content_.globalCode.push_back(static_cast<int32_t>(chunk.Word("a code id")));
}

void Reader::ReadFonts(Cursor& chunk)
{
    Records(chunk, &content_.fonts, "a font",
            [this](Cursor& record, Font* font) { ReadFont(record, font); });
}

void Reader::ReadFont(Cursor& record, Font* font)
{
    const ArchiveFont from = record.Take<ArchiveFont>("a font");
    font->name = Text(from.name);
    font->faceName = Text(from.faceName);
    font->size = from.size;
    font->bold = from.bold != 0;
    font->italic = from.italic != 0;
    font->first = from.first;
    font->charset = from.charset;
    font->antialias = from.antialias;
    font->last = from.last;
    font->entry = Entry(from.tpag);
    font->scaleX = from.scaleX;
    font->scaleY = from.scaleY;
    for (uint32_t i = 0; i < from.glyphCount && record.Ok(); ++i) {
        const ArchiveGlyph glyph =
            record.At(record.Word("a glyph"), "a glyph").Take<ArchiveGlyph>("a glyph");
        font->glyphs.push_back({glyph.character, glyph.x, glyph.y, glyph.width, glyph.height,
                                glyph.shift, glyph.offset, glyph.kerningCount});
    }
}

void Reader::ReadObjects(Cursor& chunk)
{
    Records(chunk, &content_.objects, "an object",
            [this](Cursor& record, Object* object) { ReadObject(record, object); });
}

void Reader::ReadObject(Cursor& record, Object* object)
{
    const ArchiveObject from = record.Take<ArchiveObject>("an object");
    object->name = Text(from.name);
    object->spriteIndex = from.spriteIndex;
    object->visible = from.visible != 0;
    object->solid = from.solid != 0;
    object->depth = from.depth;
    object->persistent = from.persistent != 0;
    object->parentIndex = from.parentIndex;
    object->maskIndex = from.maskIndex;
    record.TakeBytes(from.physicsVertexCount, 8, "the vertices");
    const uint32_t types = record.Word("the event types");
    for (uint32_t type = 0; type < types && record.Ok(); ++type) {
        const ArchiveOffset offset = record.Word("a list of events");
        if (offset == 0 || type >= kEventTypes) continue;
        Cursor list = record.At(offset, "a list of events");
        EachRecord(list, "an event", [&](uint32_t, Cursor& entry) {
            Event event;
            event.subtype = entry.Word("an event");
            bool first = true;
            EachRecord(entry, "an action", [&](uint32_t, Cursor& action) {
                if (first) event.codeId = action.Take<ArchiveAction>("an action").codeId;
                first = false;
            });
            object->events[type].push_back(event);
        });
    }
}

void Reader::ReadRooms(Cursor& chunk)
{
    Records(chunk, &content_.rooms, "a room",
            [this](Cursor& record, Room* room) { ReadRoom(record, room); });
}

void Reader::ReadRoom(Cursor& record, Room* room)
{
    const ArchiveRoom from = record.Take<ArchiveRoom>("a room");
    room->name = Text(from.name);
    room->caption = Text(from.caption);
    room->width = from.width;
    room->height = from.height;
    room->speed = from.speed;
    room->persistent = from.persistent != 0;
    room->colour = from.colour;
    room->showColour = from.showColour != 0;
    room->codeId = from.codeId;
    room->flags = from.flags;
    if (from.backgrounds != 0)
        ReadBackgroundSlots(record.At(from.backgrounds, "the backgrounds"), room);
    if (from.views != 0) ReadViews(record.At(from.views, "the views"), room);
    if (from.instances != 0) ReadInstances(record.At(from.instances, "the instances"), room);
    if (from.tiles != 0) ReadTiles(record.At(from.tiles, "the tiles"), room);
}

void Reader::ReadBackgroundSlots(Cursor list, Room* room)
{
    EachRecord(list, "the backgrounds", [room](uint32_t index, Cursor& record) {
        const auto from = record.Take<ArchiveRoomBackground>("a background");
        RoomBackground& slot = room->backgrounds[index];
        slot.visible = from.visible != 0;
        slot.foreground = from.foreground != 0;
        slot.backgroundIndex = from.backgroundIndex;
        slot.x = from.x;
        slot.y = from.y;
        slot.tileHorizontal = from.tileHorizontal != 0;
        slot.tileVertical = from.tileVertical != 0;
        slot.horizontalSpeed = from.horizontalSpeed;
        slot.verticalSpeed = from.verticalSpeed;
        slot.stretch = from.stretch != 0;
    });
}

void Reader::ReadViews(Cursor list, Room* room)
{
    EachRecord(list, "the views", [room](uint32_t index, Cursor& record) {
        const auto from = record.Take<ArchiveRoomView>("a view");
        room->views[index] = {from.visible != 0, from.viewX,       from.viewY,   from.viewWidth,
                              from.viewHeight,   from.portX,       from.portY,   from.portWidth,
                              from.portHeight,   from.borderH,     from.borderV, from.speedH,
                              from.speedV,       from.followObject};
    });
}

void Reader::ReadInstances(Cursor list, Room* room)
{
    EachRecord(list, "the instances", [room](uint32_t, Cursor& record) {
        const auto from = record.Take<ArchiveRoomInstance>("an instance");
        room->instances.push_back({from.x, from.y, from.objectIndex, from.id, from.creationCode,
                                   from.scaleX, from.scaleY, from.colour, from.rotation,
                                   from.preCreateCode});
    });
}

void Reader::ReadTiles(Cursor list, Room* room)
{
    EachRecord(list, "the tiles", [room](uint32_t, Cursor& record) {
        const auto from = record.Take<ArchiveRoomTile>("a tile");
        room->tiles.push_back({from.x, from.y, from.backgroundIndex, from.sourceX, from.sourceY,
                               from.width, from.height, from.depth, from.id, from.scaleX,
                               from.scaleY, from.colour});
    });
}

// A page ends with its PNG file, or, without one, where the next page begins.
void Reader::ReadPages(Cursor& chunk)
{
    std::vector<uint32_t> starts;
    Records(chunk, &content_.pages, "a page", [&](Cursor& record, Page* page) {
        const ArchivePage from = record.Take<ArchivePage>("a page");
        page->flags = from.flags;
        starts.resize(content_.pages.size());
        starts.back() = from.data;
    });
    std::vector<uint32_t> ends = starts;
    ends.push_back(chunk.End());
    std::sort(ends.begin(), ends.end());
    for (size_t i = 0; i < starts.size(); ++i) {
        if (starts[i] == 0) continue;
        const uint32_t end = *std::upper_bound(ends.begin(), ends.end(), starts[i]);
        const uint8_t* bytes = image_.Bytes() + starts[i];
        content_.pages[i].png.assign(bytes, bytes + PngSize(bytes, end - starts[i]));
    }
}

}  // namespace

bool Read(const std::vector<uint8_t>& bytes, Content* content, std::string* error)
{
    *content = Content{};
    if (!Check(bytes.data(), static_cast<uint32_t>(bytes.size()), error)) return false;
    return Reader(bytes, content).Run(error);
}

}  // namespace archive
