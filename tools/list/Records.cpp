#include "tools/list/Records.h"

#include <cstring>

#include "Files/Base/Archive_Cursor.h"
#include "Files/Base/Archive_List.h"
#include "Files/Base/Archive_Writer.h"

namespace list {

namespace {

using archive::ChunkPlace;

constexpr uint32_t kCollision = 4;
constexpr const char* kEventNames[] = {"Create",     "Destroy", "Alarm",   "Step",    "Collision",
                                       "Keyboard",   "Mouse",   "Other",   "Draw",    "KeyPress",
                                       "KeyRelease", "Trigger", "CleanUp", "Gesture", "PreCreate"};
constexpr uint32_t kMaskRowBits = 8;

class Describer {
public:
    Describer(const std::vector<uint8_t>& bytes, const std::vector<ChunkPlace>& chunks)
        : base_(bytes.data()), chunks_(chunks)
    {
    }
    Value Run();

private:
    using Member = Value (Describer::*)(const ChunkPlace&) const;
    struct Handler {
        char tag[5];
        const char* field;
        Member describe;
    };
    static const Handler kHandlers[];

    std::string Text(ArchiveString offset) const { return ArchiveText(base_, offset); }
    const ChunkPlace* Find(uint32_t tag) const;
    // The name of a record of a chunk's list; null for none.
    Value NameOf(const char (&tag)[5], int32_t index) const;
    Value CodeWords(const ChunkPlace& chunk) const;
    // The records of a list by describe(bytes of the record).
    template <class DescribeRecord>
    Value List(uint32_t offset, DescribeRecord describe) const;

    Value General(const ChunkPlace& chunk) const;
    Value Options(const ChunkPlace& chunk) const;
    template <class T>
    Value OptionFields(const T& record, uint32_t bits, const uint8_t* constants) const;
    Value Constants(const uint8_t* at, uint32_t count) const;
    Value Language(const ChunkPlace& chunk) const;
    Value Groups(const ChunkPlace& chunk) const;
    Value Images(const ChunkPlace& chunk) const;
    Value Sounds(const ChunkPlace& chunk) const;
    Value Waves(const ChunkPlace& chunk) const;
    Value Sprites(const ChunkPlace& chunk) const;
    Value Sprite(const uint8_t* at) const;
    Value Backgrounds(const ChunkPlace& chunk) const;
    Value Paths(const ChunkPlace& chunk) const;
    Value Scripts(const ChunkPlace& chunk) const;
    Value Fonts(const ChunkPlace& chunk) const;
    Value Font(const uint8_t* at) const;
    Value Timelines(const ChunkPlace& chunk) const;
    Value Objects(const ChunkPlace& chunk) const;
    Value Object(const uint8_t* at) const;
    Value Physics(const ArchiveObject& record) const;
    Value Events(const uint8_t* lists) const;
    Value Event(uint32_t type, const uint8_t* at) const;
    Value Actions(uint32_t list) const;
    Value Rooms(const ChunkPlace& chunk) const;
    Value Room(const uint8_t* at) const;
    Value RoomBackgrounds(ArchiveOffset list) const;
    Value RoomViews(ArchiveOffset list) const;
    Value RoomInstances(ArchiveOffset list) const;
    Value RoomTiles(ArchiveOffset list) const;
    Value Entry(ArchiveOffset offset) const;
    Value PageEntries(const ChunkPlace& chunk) const;
    Value Pages(const ChunkPlace& chunk) const;
    Value Strings(const ChunkPlace& chunk) const;

    const uint8_t* base_;
    const std::vector<ChunkPlace>& chunks_;
};

const Describer::Handler Describer::kHandlers[] = {
    {"GEN7", "header", &Describer::General},      {"GEN8", "header", &Describer::General},
    {"GENL", "header", &Describer::General},      {"OPTN", "options", &Describer::Options},
    {"LANG", "table", &Describer::Language},      {"AGRP", "records", &Describer::Groups},
    {"EMBI", "images", &Describer::Images},       {"SOND", "records", &Describer::Sounds},
    {"AUDO", "records", &Describer::Waves},       {"SPRT", "records", &Describer::Sprites},
    {"BGND", "records", &Describer::Backgrounds}, {"PATH", "records", &Describer::Paths},
    {"SCPT", "records", &Describer::Scripts},     {"GLOB", "codes", &Describer::CodeWords},
    {"FONT", "records", &Describer::Fonts},       {"TMLN", "records", &Describer::Timelines},
    {"OBJT", "records", &Describer::Objects},     {"ROOM", "records", &Describer::Rooms},
    {"TPAG", "records", &Describer::PageEntries}, {"TXTR", "records", &Describer::Pages},
    {"STRG", "texts", &Describer::Strings},
};

Value Describer::Run()
{
    Value::Fields tree;
    for (const ChunkPlace& chunk : chunks_) {
        std::string tag(4, ' ');
        std::memcpy(tag.data(), &chunk.tag, 4);
        Value::Fields fields = {{"offset", chunk.offset}, {"size", chunk.size}};
        for (const Handler& handler : kHandlers)
            if (handler.tag == tag && chunk.size != 0)
                fields.emplace_back(handler.field, (this->*handler.describe)(chunk));
        tree.emplace_back(tag, std::move(fields));
    }
    return tree;
}

const ChunkPlace* Describer::Find(uint32_t tag) const
{
    for (const ChunkPlace& chunk : chunks_)
        if (chunk.tag == tag && chunk.size != 0) return &chunk;
    return nullptr;
}

Value Describer::NameOf(const char (&tag)[5], int32_t index) const
{
    const ChunkPlace* chunk = Find(ArchiveTag(tag));
    if (!chunk || index < 0) return {};
    const ArchiveList list(base_ + chunk->offset, base_);
    if (static_cast<uint32_t>(index) >= list.Count()) return {};
    const uint8_t* record = list.At(static_cast<uint32_t>(index));
    return record ? Value(Text(ArchiveCopy<ArchiveString>(record))) : Value();
}

template <class DescribeRecord>
Value Describer::List(uint32_t offset, DescribeRecord describe) const
{
    Value::Items items;
    if (offset == 0) return items;
    const ArchiveList list(base_ + offset, base_);
    for (uint32_t i = 0; i < list.Count(); ++i) {
        const uint8_t* at = list.At(i);
        items.push_back(at ? describe(at) : Value());
    }
    return items;
}

Value Words(const uint8_t* at, uint32_t count)
{
    Value::Items items;
    for (uint32_t i = 0; i < count; ++i)
        items.emplace_back(ArchiveCopy<int32_t>(at + size_t{i} * 4));
    return items;
}

Value Describer::CodeWords(const ChunkPlace& chunk) const
{
    const uint8_t* at = base_ + chunk.offset;
    return Words(at + 4, ArchiveCopy<uint32_t>(at));
}

template <size_t N>
std::string Hex(const uint8_t (&bytes)[N])
{
    std::string text;
    for (const uint8_t byte : bytes)
        for (const int shift : {4, 0}) text += "0123456789abcdef"[byte >> shift & 15];
    return text;
}

Value Describer::General(const ChunkPlace& chunk) const
{
    archive::Image image(base_, chunk.offset + chunk.size);
    archive::Cursor cursor(&image, chunk.tag, chunk.offset, chunk.offset + chunk.size);
    const ArchiveGeneral record = archive::TakeGeneral(cursor);
    return Value::Fields{
        {"debuggerDisabled", record.debuggerDisabled != 0},
        {"bytecodeVersion", unsigned{record.bytecodeVersion}},
        {"fileName", Text(record.fileName)},
        {"config", Text(record.config)},
        {"lastInstanceId", record.lastInstanceId},
        {"lastTileId", record.lastTileId},
        {"gameId", record.gameId},
        {"guid", Hex(record.guid)},
        {"name", Text(record.name)},
        {"major", record.major},
        {"minor", record.minor},
        {"release", record.release},
        {"build", record.build},
        {"defaultWindowWidth", record.defaultWindowWidth},
        {"defaultWindowHeight", record.defaultWindowHeight},
        {"infoFlags", record.infoFlags},
        {"timestamp", uint64_t{record.timestamp}},
        {"displayName", Text(record.displayName)},
        {"activeTargets", uint64_t{record.activeTargets}},
        {"functionClasses", uint64_t{record.functionClasses}},
        {"steamAppId", record.steamAppId},
        {"debuggerPort", record.debuggerPort},
        {"roomOrder", Words(base_ + cursor.Offset(), record.roomCount)},
    };
}

Value Describer::Constants(const uint8_t* at, uint32_t count) const
{
    Value::Items items;
    for (uint32_t i = 0; i < count; ++i) {
        const auto constant = ArchiveCopy<ArchiveConstant>(at + i * sizeof(ArchiveConstant));
        items.push_back(
            Value::Fields{{"name", Text(constant.name)}, {"value", Text(constant.value)}});
    }
    return items;
}

template <class T>
Value Describer::OptionFields(const T& record, uint32_t bits, const uint8_t* constants) const
{
    return Value::Fields{
        {"bits", bits},
        {"windowScale", record.windowScale},
        {"windowColour", record.windowColour},
        {"colourDepth", record.colourDepth},
        {"resolution", record.resolution},
        {"frequency", record.frequency},
        {"verticalSync", record.verticalSync},
        {"priority", record.priority},
        {"loadBarImage", Text(record.loadBarImage)},
        {"loadAlpha", record.loadAlpha},
        {"constants", Constants(constants, record.constantCount)},
    };
}

Value Describer::Options(const ChunkPlace& chunk) const
{
    const uint8_t* at = base_ + chunk.offset;
    if (ArchiveCopy<uint32_t>(at) != kOptionMarker) {
        const auto record = ArchiveCopy<ArchiveOldOptions>(at);
        return OptionFields(record, ArchiveOldOptionBits(record), at + sizeof record);
    }
    if (ArchiveCopy<uint32_t>(at + 4) != kOptionVersion) return {};
    const auto record = ArchiveCopy<ArchiveOptions>(at);
    return OptionFields(record, record.bits, at + sizeof record);
}

// Names of the languages, then for each entry its name, its default, and a text for
// each language.
Value Describer::Language(const ChunkPlace& chunk) const
{
    const uint8_t* at = base_ + chunk.offset;
    const auto entries = ArchiveCopy<uint32_t>(at + 4), languages = ArchiveCopy<uint32_t>(at + 8);
    Value::Items texts;
    const size_t count = languages + size_t{entries} * (2 + size_t{languages});
    for (size_t i = 0; i < count; ++i)
        texts.emplace_back(Text(ArchiveCopy<ArchiveString>(at + 12 + i * 4)));
    return Value::Fields{{"first", ArchiveCopy<uint32_t>(at)},
                         {"entryCount", entries},
                         {"languageCount", languages},
                         {"texts", std::move(texts)}};
}

Value Describer::Groups(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) -> Value {
        return Value::Fields{{"name", Text(ArchiveCopy<ArchiveString>(at))}};
    });
}

Value Describer::Images(const ChunkPlace& chunk) const
{
    const uint8_t* at = base_ + chunk.offset;
    return Constants(at + 8, ArchiveCopy<uint32_t>(at + 4));
}

Value Describer::Sounds(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchiveSound>(at);
        return Value::Fields{
            {"name", Text(record.name)},
            {"flags", record.flags},
            {"extension", Text(record.extension)},
            {"fileName", Text(record.fileName)},
            {"effects", record.effects},
            {"volume", record.volume},
            {"pitch", record.pitch},
            {"groupId", record.groupId},
            {"audioIndex", record.audioIndex},
        };
    });
}

Value Describer::Waves(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [](const uint8_t* at) -> Value {
        return Value::Fields{{"length", ArchiveCopy<uint32_t>(at)}};
    });
}

Value Describer::Entry(ArchiveOffset offset) const
{
    if (offset == 0) return {};
    const auto record = ArchiveCopy<ArchivePageEntry>(base_ + offset);
    return Value::Fields{
        {"x", int{record.x}},
        {"y", int{record.y}},
        {"width", int{record.width}},
        {"height", int{record.height}},
        {"targetX", int{record.targetX}},
        {"targetY", int{record.targetY}},
        {"targetWidth", int{record.targetWidth}},
        {"targetHeight", int{record.targetHeight}},
        {"sourceWidth", int{record.sourceWidth}},
        {"sourceHeight", int{record.sourceHeight}},
        {"texture", int{record.texture}},
    };
}

// Rows of a mask as text, '#' for a pixel that collides.
Value MaskRows(const uint8_t* mask, uint32_t width, uint32_t height)
{
    Value::Items rows;
    const uint32_t rowBytes = (width + kMaskRowBits - 1) / kMaskRowBits;
    for (uint32_t y = 0; y < height; ++y) {
        std::string row(width, '.');
        for (uint32_t x = 0; x < width; ++x)
            if (mask[y * rowBytes + x / kMaskRowBits] & (0x80U >> x % kMaskRowBits)) row[x] = '#';
        rows.emplace_back(std::move(row));
    }
    return rows;
}

Value Describer::Sprite(const uint8_t* at) const
{
    const auto record = ArchiveCopy<ArchiveSprite>(at);
    Value::Items frames, masks;
    const uint8_t* offsets = at + sizeof record;
    const size_t count = record.frameCount < 0 ? 0 : static_cast<size_t>(record.frameCount);
    for (size_t i = 0; i < count; ++i)
        frames.push_back(Entry(ArchiveCopy<ArchiveOffset>(offsets + i * 4)));
    if (record.frameCount >= 0) {
        const uint8_t* mask = offsets + count * 4 + 4;
        const auto maskCount = ArchiveCopy<uint32_t>(offsets + count * 4);
        for (uint32_t i = 0; i < maskCount; ++i) {
            masks.push_back(MaskRows(mask, record.width, record.height));
            mask += size_t{record.height} * ((record.width + kMaskRowBits - 1) / kMaskRowBits);
        }
    }
    return Value::Fields{
        {"name", Text(record.name)},       {"width", record.width},
        {"height", record.height},         {"bboxLeft", record.bboxLeft},
        {"bboxRight", record.bboxRight},   {"bboxBottom", record.bboxBottom},
        {"bboxTop", record.bboxTop},       {"transparent", record.transparent != 0},
        {"smooth", record.smooth != 0},    {"preload", record.preload != 0},
        {"bboxMode", record.bboxMode},     {"sepMasks", record.sepMasks != 0},
        {"originX", record.originX},       {"originY", record.originY},
        {"frameCount", record.frameCount}, {"frames", std::move(frames)},
        {"masks", std::move(masks)},
    };
}

Value Describer::Sprites(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) { return Sprite(at); });
}

Value Describer::Backgrounds(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchiveBackground>(at);
        return Value::Fields{
            {"name", Text(record.name)},    {"transparent", record.transparent != 0},
            {"smooth", record.smooth != 0}, {"preload", record.preload != 0},
            {"entry", Entry(record.tpag)},
        };
    });
}

Value Describer::Paths(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchivePath>(at);
        Value::Items points;
        for (uint32_t i = 0; i < record.pointCount; ++i) {
            const uint8_t* point = at + sizeof record + size_t{i} * 12;
            points.push_back(Value::Fields{{"x", ArchiveCopy<float>(point)},
                                           {"y", ArchiveCopy<float>(point + 4)},
                                           {"speed", ArchiveCopy<float>(point + 8)}});
        }
        return Value::Fields{
            {"name", Text(record.name)},    {"kind", record.kind},
            {"closed", record.closed != 0}, {"precision", record.precision},
            {"points", std::move(points)},
        };
    });
}

Value Describer::Scripts(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchiveScript>(at);
        return Value::Fields{{"name", Text(record.name)}, {"codeId", record.codeId}};
    });
}

Value Describer::Font(const uint8_t* at) const
{
    const auto record = ArchiveCopy<ArchiveFont>(at);
    Value::Items glyphs;
    for (uint32_t i = 0; i < record.glyphCount; ++i) {
        const auto offset = ArchiveCopy<ArchiveOffset>(at + sizeof record + size_t{i} * 4);
        const auto glyph = ArchiveCopy<ArchiveGlyph>(base_ + offset);
        glyphs.push_back(Value::Fields{{"character", int{glyph.character}},
                                       {"x", int{glyph.x}},
                                       {"y", int{glyph.y}},
                                       {"width", int{glyph.width}},
                                       {"height", int{glyph.height}},
                                       {"shift", int{glyph.shift}},
                                       {"offset", int{glyph.offset}},
                                       {"kerningCount", int{glyph.kerningCount}}});
    }
    return Value::Fields{
        {"name", Text(record.name)},
        {"faceName", Text(record.faceName)},
        {"size", record.size},
        {"bold", record.bold != 0},
        {"italic", record.italic != 0},
        {"first", int{record.first}},
        {"charset", int{record.charset}},
        {"antialias", int{record.antialias}},
        {"last", record.last},
        {"scaleX", record.scaleX},
        {"scaleY", record.scaleY},
        {"entry", Entry(record.tpag)},
        {"glyphs", std::move(glyphs)},
    };
}

Value Describer::Fonts(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) { return Font(at); });
}

Value Describer::Timelines(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchiveTimeline>(at);
        Value::Items moments;
        for (uint32_t i = 0; i < record.momentCount; ++i) {
            const uint8_t* moment = at + sizeof record + size_t{i} * 8;
            moments.push_back(
                Value::Fields{{"time", ArchiveCopy<int32_t>(moment)},
                              {"actions", Actions(ArchiveCopy<ArchiveOffset>(moment + 4))}});
        }
        return Value::Fields{{"name", Text(record.name)}, {"moments", std::move(moments)}};
    });
}

Value Describer::Actions(uint32_t list) const
{
    return List(list, [this](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchiveAction>(at);
        Value::Items stored;
        for (const uint32_t word : record.stored0) stored.emplace_back(word);
        stored.emplace_back(Text(record.text));
        stored.emplace_back(record.codeId);
        for (const int32_t word : record.stored1) stored.emplace_back(word);
        return stored;
    });
}

Value Describer::Event(uint32_t type, const uint8_t* at) const
{
    const auto subtype = ArchiveCopy<uint32_t>(at);
    const uint32_t list = static_cast<uint32_t>(at + 4 - base_);
    const ArchiveList actions(at + 4, base_);
    const uint8_t* first = actions.Count() != 0 ? actions.At(0) : nullptr;
    Value::Fields fields = {{"event", kEventNames[type]}, {"type", type}, {"subtype", subtype}};
    if (type == kCollision)
        fields.emplace_back("object", NameOf("OBJT", static_cast<int32_t>(subtype)));
    fields.emplace_back("codeId",
                        first ? Value(ArchiveCopy<ArchiveAction>(first).codeId) : Value());
    fields.emplace_back("actions", Actions(list));
    return fields;
}

Value Describer::Events(const uint8_t* lists) const
{
    Value::Items events;
    const auto types = ArchiveCopy<uint32_t>(lists);
    for (uint32_t type = 0; type < types; ++type) {
        const auto offset = ArchiveCopy<ArchiveOffset>(lists + 4 + size_t{type} * 4);
        if (offset == 0) continue;
        const ArchiveList list(base_ + offset, base_);
        for (uint32_t i = 0; i < list.Count(); ++i)
            if (const uint8_t* event = list.At(i)) events.push_back(Event(type, event));
    }
    return events;
}

Value Describer::Physics(const ArchiveObject& record) const
{
    return Value::Fields{
        {"object", record.physicsObject != 0},
        {"sensor", record.physicsSensor != 0},
        {"shape", record.physicsShape},
        {"density", record.physicsDensity},
        {"restitution", record.physicsRestitution},
        {"group", record.physicsGroup},
        {"linearDamping", record.physicsLinearDamping},
        {"angularDamping", record.physicsAngularDamping},
        {"vertexCount", record.physicsVertexCount},
        {"friction", record.physicsFriction},
        {"awake", record.physicsAwake != 0},
        {"kinematic", record.physicsKinematic != 0},
    };
}

Value Describer::Object(const uint8_t* at) const
{
    const auto record = ArchiveCopy<ArchiveObject>(at);
    const uint8_t* types = at + sizeof record + size_t{record.physicsVertexCount} * 8;
    return Value::Fields{
        {"name", Text(record.name)},
        {"spriteIndex", record.spriteIndex},
        {"sprite", NameOf("SPRT", record.spriteIndex)},
        {"visible", record.visible != 0},
        {"solid", record.solid != 0},
        {"depth", record.depth},
        {"persistent", record.persistent != 0},
        {"parentIndex", record.parentIndex},
        {"parent", NameOf("OBJT", record.parentIndex)},
        {"maskIndex", record.maskIndex},
        {"mask", NameOf("SPRT", record.maskIndex)},
        {"physics", Physics(record)},
        {"eventTypeCount", ArchiveCopy<uint32_t>(types)},
        {"events", Events(types)},
    };
}

Value Describer::Objects(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) { return Object(at); });
}

Value Describer::RoomBackgrounds(ArchiveOffset list) const
{
    return List(list, [this](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchiveRoomBackground>(at);
        return Value::Fields{
            {"visible", record.visible != 0},
            {"foreground", record.foreground != 0},
            {"backgroundIndex", record.backgroundIndex},
            {"background", NameOf("BGND", record.backgroundIndex)},
            {"x", record.x},
            {"y", record.y},
            {"tileHorizontal", record.tileHorizontal != 0},
            {"tileVertical", record.tileVertical != 0},
            {"horizontalSpeed", record.horizontalSpeed},
            {"verticalSpeed", record.verticalSpeed},
            {"stretch", record.stretch != 0},
        };
    });
}

Value Describer::RoomViews(ArchiveOffset list) const
{
    return List(list, [](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchiveRoomView>(at);
        return Value::Fields{
            {"visible", record.visible != 0},  {"viewX", record.viewX},
            {"viewY", record.viewY},           {"viewWidth", record.viewWidth},
            {"viewHeight", record.viewHeight}, {"portX", record.portX},
            {"portY", record.portY},           {"portWidth", record.portWidth},
            {"portHeight", record.portHeight}, {"borderH", record.borderH},
            {"borderV", record.borderV},       {"speedH", record.speedH},
            {"speedV", record.speedV},         {"followObject", record.followObject},
        };
    });
}

Value Describer::RoomInstances(ArchiveOffset list) const
{
    return List(list, [this](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchiveRoomInstance>(at);
        return Value::Fields{
            {"object", NameOf("OBJT", record.objectIndex)},
            {"x", record.x},
            {"y", record.y},
            {"objectIndex", record.objectIndex},
            {"id", record.id},
            {"creationCode", record.creationCode},
            {"scaleX", record.scaleX},
            {"scaleY", record.scaleY},
            {"colour", record.colour},
            {"rotation", record.rotation},
            {"preCreateCode", record.preCreateCode},
        };
    });
}

Value Describer::RoomTiles(ArchiveOffset list) const
{
    return List(list, [this](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchiveRoomTile>(at);
        return Value::Fields{
            {"background", NameOf("BGND", record.backgroundIndex)},
            {"x", record.x},
            {"y", record.y},
            {"backgroundIndex", record.backgroundIndex},
            {"sourceX", record.sourceX},
            {"sourceY", record.sourceY},
            {"width", record.width},
            {"height", record.height},
            {"depth", record.depth},
            {"id", record.id},
            {"scaleX", record.scaleX},
            {"scaleY", record.scaleY},
            {"colour", record.colour},
        };
    });
}

Value Describer::Room(const uint8_t* at) const
{
    const auto record = ArchiveCopy<ArchiveRoom>(at);
    return Value::Fields{
        {"name", Text(record.name)},
        {"caption", Text(record.caption)},
        {"width", record.width},
        {"height", record.height},
        {"speed", record.speed},
        {"persistent", record.persistent != 0},
        {"colour", record.colour},
        {"showColour", record.showColour != 0},
        {"codeId", record.codeId},
        {"flags", int{record.flags}},
        {"format", int{record.format}},
        {"physicsWorld", record.physicsWorld != 0},
        {"physicsTop", record.physicsTop},
        {"physicsLeft", record.physicsLeft},
        {"physicsRight", record.physicsRight},
        {"physicsBottom", record.physicsBottom},
        {"physicsGravityX", record.physicsGravityX},
        {"physicsGravityY", record.physicsGravityY},
        {"physicsPixelsToMetres", record.physicsPixelsToMetres},
        {"backgrounds", RoomBackgrounds(record.backgrounds)},
        {"views", RoomViews(record.views)},
        {"instances", RoomInstances(record.instances)},
        {"tiles", RoomTiles(record.tiles)},
    };
}

Value Describer::Rooms(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) { return Room(at); });
}

Value Describer::PageEntries(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [this](const uint8_t* at) {
        return Entry(static_cast<ArchiveOffset>(at - base_));
    });
}

Value Describer::Pages(const ChunkPlace& chunk) const
{
    return List(chunk.offset, [](const uint8_t* at) -> Value {
        const auto record = ArchiveCopy<ArchivePage>(at);
        return Value::Fields{{"flags", record.flags}, {"data", record.data}};
    });
}

Value Describer::Strings(const ChunkPlace& chunk) const
{
    archive::Image image(base_, chunk.offset + chunk.size);
    archive::Cursor list(&image, chunk.tag, chunk.offset, chunk.offset + chunk.size);
    Value::Items texts;
    archive::EachRecord(list, "a text", [&](uint32_t, archive::Cursor& record) {
        const uint32_t length = record.Word("a text's length");
        if (const uint8_t* text = record.TakeBytes(length, 1, "a text"))
            texts.emplace_back(std::string(reinterpret_cast<const char*>(text), length));
    });
    return texts;
}

}  // namespace

bool Describe(const std::vector<uint8_t>& archive, Value* tree, std::string* error)
{
    const uint32_t size = static_cast<uint32_t>(archive.size());
    if (!archive::Check(archive.data(), size, error)) return false;
    archive::Image image(archive.data(), size);
    std::vector<ChunkPlace> chunks;
    archive::FindChunks(&image, &chunks);
    *tree = Describer(archive, chunks).Run();
    return true;
}

std::vector<uint8_t> FindArchive(const std::vector<uint8_t>& file)
{
    constexpr uint8_t kForm[] = {'F', 'O', 'R', 'M'};
    constexpr size_t kFirstTag = 8;
    for (size_t at = 0; at + kFirstTag + 4 <= file.size(); ++at) {
        if (std::memcmp(file.data() + at, kForm, sizeof kForm) != 0) continue;
        if (at == 0) return file;
        const size_t size = size_t{ArchiveCopy<uint32_t>(file.data() + at + 4)} + kFirstTag;
        const bool general = std::memcmp(file.data() + at + kFirstTag, "GEN", 3) == 0;
        if (general && size <= file.size() - at)
            return {file.begin() + static_cast<long>(at),
                    file.begin() + static_cast<long>(at + size)};
    }
    return {};
}

}  // namespace list
