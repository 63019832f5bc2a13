#include "Files/Base/Archive_Writer.h"

#include <cstring>
#include <map>

#include "Files/Base/Archive_Records.h"

namespace archive {

namespace {

constexpr uint32_t kPictureAlignment = 128;  // of the PNG files inside TXTR

// What the authoring tool stores with every object, room and action.
constexpr float kDensity = 0.5F, kRestitution = 0.1F, kDamping = 0.1F, kFriction = 0.2F;
constexpr uint32_t kPhysicsRight = 1024, kPhysicsBottom = 768;
constexpr float kGravityY = 10.0F, kPixelsToMetres = 0.1F;
constexpr ArchiveAction kAction = {{1, 603, 7, 0, 0, 1, 2}, 0, -1, {1, -1, 0, 0, 0}};

class Writer {
public:
    explicit Writer(const Content& content) : content_(content) {}
    std::vector<uint8_t> Run();

private:
    uint32_t At() const { return static_cast<uint32_t>(bytes_.size()); }
    template <class T>
    uint32_t Put(const T& record)
    {
        const uint32_t at = At();
        bytes_.resize(at + sizeof(T));
        std::memcpy(bytes_.data() + at, &record, sizeof(T));
        return at;
    }
    uint32_t PutWord(uint32_t word) { return Put(word); }
    void PutBytes(const std::vector<uint8_t>& bytes)
    {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    }
    void SetWord(uint32_t at, uint32_t word) { std::memcpy(bytes_.data() + at, &word, 4); }
    void Align(uint32_t alignment) { bytes_.resize((At() + alignment - 1) & ~(alignment - 1)); }

    // The word at `at` becomes the offset of the text, once STRG stands.
    void Text(uint32_t at, const std::string& text);
    // The word at `at` becomes the offset of a page entry, once TPAG stands.
    void Entry(uint32_t at, const PageEntry& entry) { entries_.push_back({at, entry}); }

    // A chunk's header, its body by `body`, and its size; the next chunk is aligned.
    template <class Body>
    void Chunk(const char (&tag)[5], Body body, bool aligned = true);
    // A count, that many offsets, and the records, each by put(record). A record with
    // an empty name, and a page without a picture, is an empty slot.
    template <class T, class PutRecord>
    void List(const std::vector<T>& records, PutRecord put);

    void GeneralAndOptions();
    void Assets();
    void PutFonts();
    void World();
    void Pools();

    void PutGeneral();
    void PutOptions();
    void PutSound(const Sound& sound);
    void PutSprite(const Sprite& sprite);
    void PutBackground(const Background& background);
    void PutFont(const Font& font);
    void PutObject(const Object& object);
    void PutEvent(const Event& event);
    void PutRoom(const Room& room);
    void PutInstance(const RoomInstance& instance);
    void PutTile(const RoomTile& tile);
    void PutPageEntries();
    void PutStrings();
    void PutPages();

    struct EntryUse {
        uint32_t at;
        PageEntry entry;
    };
    const Content& content_;
    std::vector<uint8_t> bytes_;
    std::map<std::string, uint32_t> textIndex_;
    std::vector<std::string> texts_;              // in the order of first use
    std::vector<std::vector<uint32_t>> textUse_;  // places of each text's references
    std::vector<EntryUse> entries_;
};

template <class T>
bool IsEmptySlot(const T& record)
{
    if constexpr (requires { record.name; }) return record.name.empty();
    if constexpr (requires { record.png; }) return record.png.empty();
    return false;
}

void Writer::Text(uint32_t at, const std::string& text)
{
    const auto [place, isNew] = textIndex_.try_emplace(text, static_cast<uint32_t>(texts_.size()));
    if (isNew) {
        texts_.push_back(text);
        textUse_.emplace_back();
    }
    textUse_[place->second].push_back(at);
}

template <class Body>
void Writer::Chunk(const char (&tag)[5], Body body, bool aligned)
{
    const uint32_t header = Put(ArchiveChunk{ArchiveTag(tag), 0});
    body();
    if (aligned) Align(4);
    SetWord(header + 4, At() - header - 8);
}

template <class T, class PutRecord>
void Writer::List(const std::vector<T>& records, PutRecord put)
{
    PutWord(static_cast<uint32_t>(records.size()));
    const uint32_t offsets = At();
    bytes_.resize(offsets + 4 * records.size());
    for (size_t i = 0; i < records.size(); ++i) {
        if (IsEmptySlot(records[i])) continue;
        Align(4);
        SetWord(offsets + static_cast<uint32_t>(4 * i), At());
        put(records[i]);
    }
}

std::vector<uint8_t> Writer::Run()
{
    Put(ArchiveChunk{ArchiveTag("FORM"), 0});
    GeneralAndOptions();
    Assets();
    World();
    Pools();
    SetWord(4, At() - 8);
    return std::move(bytes_);
}

void Writer::GeneralAndOptions()
{
    Chunk("GEN8", [this] { PutGeneral(); });
    Chunk("OPTN", [this] { PutOptions(); });
    Chunk("LANG", [this] {
        PutWord(1);
        PutWord(0);
        PutWord(0);
    });
    Chunk("EXTN", [this] { PutWord(0); });
}

void Writer::Assets()
{
    Chunk("SOND",
          [this] { List(content_.sounds, [this](const Sound& sound) { PutSound(sound); }); });
    Chunk("AGRP", [this] { PutWord(0); });
    Chunk("SPRT",
          [this] { List(content_.sprites, [this](const Sprite& sprite) { PutSprite(sprite); }); });
    Chunk("BGND", [this] {
        List(content_.backgrounds,
             [this](const Background& background) { PutBackground(background); });
    });
    Chunk("PATH", [this] { PutWord(0); });
    Chunk("SCPT", [this] {
        List(content_.scripts, [this](const Script& script) {
            Text(Put(ArchiveScript{0, script.codeId}), script.name);
        });
    });
    Chunk("GLOB", [this] {
        PutWord(static_cast<uint32_t>(content_.globalCode.size()));
        for (const int32_t code : content_.globalCode) Put(code);
    });
    Chunk("SHDR", [this] { PutWord(0); });
    Chunk("FONT", [this] { PutFonts(); });
    Chunk("TMLN", [this] { PutWord(0); });
}

void Writer::World()
{
    Chunk("OBJT",
          [this] { List(content_.objects, [this](const Object& object) { PutObject(object); }); });
    Chunk("ROOM", [this] { List(content_.rooms, [this](const Room& room) { PutRoom(room); }); });
    Chunk("DAFL", [] {});
}

void Writer::Pools()
{
    Chunk("TPAG", [this] { PutPageEntries(); });
    Chunk("CODE", [] {});
    Chunk("VARI", [] {});
    Chunk("FUNC", [] {});
    Chunk("STRG", [this] { PutStrings(); });
    Chunk("TXTR", [this] { PutPages(); });
    Chunk(
        "AUDO",
        [this] {
            List(content_.waves, [this](const std::vector<uint8_t>& wave) {
                PutWord(static_cast<uint32_t>(wave.size()));
                PutBytes(wave);
            });
        },
        false);
}

void Writer::PutGeneral()
{
    const General& from = content_.general;
    ArchiveGeneral general{};
    general.debuggerDisabled = from.debuggerDisabled;
    general.bytecodeVersion = from.bytecodeVersion;
    general.lastInstanceId = static_cast<uint32_t>(from.lastInstanceId);
    general.lastTileId = static_cast<uint32_t>(from.lastTileId);
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
    const uint32_t at = At();
    // An older version has a shorter header, with the room count right behind it.
    const uint32_t size = ArchiveRoomCountOffset(from.bytecodeVersion);
    Put(general);
    bytes_.resize(at + size);
    Text(at + offsetof(ArchiveGeneral, fileName), from.fileName);
    Text(at + offsetof(ArchiveGeneral, config), from.config);
    if (size > offsetof(ArchiveGeneral, name)) Text(at + offsetof(ArchiveGeneral, name), from.name);
    if (size > offsetof(ArchiveGeneral, displayName))
        Text(at + offsetof(ArchiveGeneral, displayName), from.displayName);
    PutWord(static_cast<uint32_t>(from.roomOrder.size()));
    for (const uint32_t room : from.roomOrder) PutWord(room);
}

void Writer::PutOptions()
{
    const Options& from = content_.options;
    ArchiveOptions options{};
    options.marker = kOptionMarker;
    options.version = kOptionVersion;
    options.bits = from.bits;
    options.windowScale = from.windowScale;
    options.windowColour = from.windowColour;
    options.colourDepth = from.colourDepth;
    options.resolution = from.resolution;
    options.frequency = from.frequency;
    options.verticalSync = from.verticalSync;
    options.priority = from.priority;
    options.loadAlpha = from.loadAlpha;
    options.constantCount = static_cast<uint32_t>(from.constants.size());
    Text(Put(options) + offsetof(ArchiveOptions, loadBarImage), from.loadBarImage);
    for (const auto& [name, value] : from.constants) {
        Text(PutWord(0), name);
        Text(PutWord(0), value);
    }
}

void Writer::PutSound(const Sound& sound)
{
    const uint32_t at = Put(ArchiveSound{0, sound.flags, 0, 0, sound.effects, sound.volume,
                                         sound.pitch, sound.groupId, sound.audioIndex});
    Text(at + offsetof(ArchiveSound, name), sound.name);
    Text(at + offsetof(ArchiveSound, extension), sound.extension);
    Text(at + offsetof(ArchiveSound, fileName), sound.fileName);
}

void Writer::PutSprite(const Sprite& sprite)
{
    ArchiveSprite record{};
    record.width = sprite.width;
    record.height = sprite.height;
    record.bboxLeft = sprite.bboxLeft;
    record.bboxRight = sprite.bboxRight;
    record.bboxBottom = sprite.bboxBottom;
    record.bboxTop = sprite.bboxTop;
    record.transparent = sprite.transparent;
    record.smooth = sprite.smooth;
    record.preload = sprite.preload;
    record.bboxMode = sprite.bboxMode;
    record.sepMasks = sprite.sepMasks;
    record.originX = sprite.originX;
    record.originY = sprite.originY;
    record.frameCount = static_cast<int32_t>(sprite.frames.size());
    Text(Put(record), sprite.name);
    for (const PageEntry& frame : sprite.frames) Entry(PutWord(0), frame);
    PutWord(static_cast<uint32_t>(sprite.masks.size()));
    for (const std::vector<uint8_t>& mask : sprite.masks) PutBytes(mask);
}

void Writer::PutBackground(const Background& background)
{
    const uint32_t at =
        Put(ArchiveBackground{0, background.transparent, background.smooth, background.preload, 0});
    Text(at, background.name);
    if (background.hasEntry) Entry(at + offsetof(ArchiveBackground, tpag), background.entry);
}

void Writer::PutFonts()
{
    List(content_.fonts, [this](const Font& font) { PutFont(font); });
    for (uint16_t frame = 0; frame < kSpriteFontTable / sizeof frame; ++frame) Put(frame);
}

void Writer::PutFont(const Font& font)
{
    ArchiveFont record{};
    record.size = font.size;
    record.bold = font.bold;
    record.italic = font.italic;
    record.first = font.first;
    record.charset = font.charset;
    record.antialias = font.antialias;
    record.last = font.last;
    record.scaleX = font.scaleX;
    record.scaleY = font.scaleY;
    record.glyphCount = static_cast<uint32_t>(font.glyphs.size());
    const uint32_t at = Put(record);
    Text(at + offsetof(ArchiveFont, name), font.name);
    Text(at + offsetof(ArchiveFont, faceName), font.faceName);
    Entry(at + offsetof(ArchiveFont, tpag), font.entry);
    const uint32_t glyphs = At() + static_cast<uint32_t>(4 * font.glyphs.size());
    for (size_t i = 0; i < font.glyphs.size(); ++i)
        PutWord(glyphs + static_cast<uint32_t>(i * sizeof(ArchiveGlyph)));
    for (const Glyph& glyph : font.glyphs)
        Put(ArchiveGlyph{glyph.character, glyph.x, glyph.y, glyph.width, glyph.height, glyph.shift,
                         glyph.offset, glyph.kerningCount});
}

void Writer::PutObject(const Object& object)
{
    ArchiveObject record{};
    record.spriteIndex = object.spriteIndex;
    record.visible = object.visible;
    record.solid = object.solid;
    record.depth = object.depth;
    record.persistent = object.persistent;
    record.parentIndex = object.parentIndex;
    record.maskIndex = object.maskIndex;
    record.physicsDensity = kDensity;
    record.physicsRestitution = kRestitution;
    record.physicsLinearDamping = kDamping;
    record.physicsAngularDamping = kDamping;
    record.physicsFriction = kFriction;
    record.physicsAwake = 1;
    Text(Put(record), object.name);
    PutWord(kEventTypes);
    const uint32_t lists = At();
    bytes_.resize(lists + 4 * kEventTypes);
    for (uint32_t type = 0; type < kEventTypes; ++type) {
        SetWord(lists + 4 * type, At());
        List(object.events[type], [this](const Event& event) { PutEvent(event); });
    }
}

void Writer::PutEvent(const Event& event)
{
    PutWord(event.subtype);
    PutWord(1);
    PutWord(At() + 4);
    ArchiveAction action = kAction;
    action.codeId = event.codeId;
    Text(Put(action) + offsetof(ArchiveAction, text), "");
}

void Writer::PutRoom(const Room& room)
{
    ArchiveRoom record{};
    record.width = room.width;
    record.height = room.height;
    record.speed = room.speed;
    record.persistent = room.persistent;
    record.colour = room.colour;
    record.showColour = room.showColour;
    record.codeId = room.codeId;
    record.flags = room.flags;
    record.physicsRight = kPhysicsRight;
    record.physicsBottom = kPhysicsBottom;
    record.physicsGravityY = kGravityY;
    record.physicsPixelsToMetres = kPixelsToMetres;
    const uint32_t at = Put(record);
    Text(at + offsetof(ArchiveRoom, name), room.name);
    Text(at + offsetof(ArchiveRoom, caption), room.caption);
    const std::vector<RoomBackground> backgrounds(std::begin(room.backgrounds),
                                                  std::end(room.backgrounds));
    const std::vector<RoomView> views(std::begin(room.views), std::end(room.views));
    SetWord(at + offsetof(ArchiveRoom, backgrounds), At());
    List(backgrounds, [this](const RoomBackground& from) {
        Put(ArchiveRoomBackground{from.visible, from.foreground, from.backgroundIndex, from.x,
                                  from.y, from.tileHorizontal, from.tileVertical,
                                  from.horizontalSpeed, from.verticalSpeed, from.stretch});
    });
    SetWord(at + offsetof(ArchiveRoom, views), At());
    List(views, [this](const RoomView& from) {
        Put(ArchiveRoomView{from.visible, from.viewX, from.viewY, from.viewWidth, from.viewHeight,
                            from.portX, from.portY, from.portWidth, from.portHeight, from.borderH,
                            from.borderV, from.speedH, from.speedV, from.followObject});
    });
    SetWord(at + offsetof(ArchiveRoom, instances), At());
    List(room.instances, [this](const RoomInstance& instance) { PutInstance(instance); });
    SetWord(at + offsetof(ArchiveRoom, tiles), At());
    List(room.tiles, [this](const RoomTile& tile) { PutTile(tile); });
}

void Writer::PutInstance(const RoomInstance& from)
{
    Put(ArchiveRoomInstance{from.x, from.y, from.objectIndex, from.id, from.creationCode,
                            from.scaleX, from.scaleY, from.colour, from.rotation,
                            from.preCreateCode});
}

void Writer::PutTile(const RoomTile& from)
{
    Put(ArchiveRoomTile{from.x, from.y, from.backgroundIndex, from.sourceX, from.sourceY,
                        from.width, from.height, from.depth, from.id, from.scaleX, from.scaleY,
                        from.colour});
}

// One entry for each use, in the order of use: loading overwrites their page index.
void Writer::PutPageEntries()
{
    PutWord(static_cast<uint32_t>(entries_.size()));
    const uint32_t offsets = At();
    bytes_.resize(offsets + 4 * entries_.size());
    for (size_t i = 0; i < entries_.size(); ++i) {
        const PageEntry& from = entries_[i].entry;
        SetWord(offsets + static_cast<uint32_t>(4 * i), At());
        SetWord(entries_[i].at, At());
        Put(ArchivePageEntry{from.x, from.y, from.width, from.height, from.targetX, from.targetY,
                             from.targetWidth, from.targetHeight, from.sourceWidth,
                             from.sourceHeight, from.page});
    }
}

// Each text once; references lead behind its length.
void Writer::PutStrings()
{
    PutWord(static_cast<uint32_t>(texts_.size()));
    const uint32_t offsets = At();
    bytes_.resize(offsets + 4 * texts_.size());
    for (size_t i = 0; i < texts_.size(); ++i) {
        const std::string& text = texts_[i];
        SetWord(offsets + static_cast<uint32_t>(4 * i), At());
        PutWord(static_cast<uint32_t>(text.size()));
        for (const uint32_t at : textUse_[i]) SetWord(at, At());
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        bytes_.push_back(0);
    }
}

void Writer::PutPages()
{
    struct Use {
        uint32_t record;
        const Page* page;
    };
    std::vector<Use> uses;
    List(content_.pages, [&](const Page& page) {
        uses.push_back({Put(ArchivePage{page.flags, 0}), &page});
    });
    for (const Use& use : uses) {
        Align(kPictureAlignment);
        SetWord(use.record + offsetof(ArchivePage, data), At());
        PutBytes(use.page->png);
    }
}

}  // namespace

std::vector<uint8_t> Write(const Content& content)
{
    return Writer(content).Run();
}

}  // namespace archive
