#pragma once
// The content of a game archive as plain values: what a packer or a test fills
// in and Archive_Write turns into the bytes of the chunks. Indices are those of
// the archive: the position of a record in its list. All names are UTF-8.

#include <cstdint>
#include <string>
#include <vector>

namespace archive {

// One PNG page of the texture atlas, encoded. Without a picture it is an empty slot.
struct Page {
    std::vector<uint8_t> png;
    uint32_t flags = 0;
    bool operator==(const Page&) const = default;
};

// Where a picture lies on its page and inside its untrimmed source image, in pixels.
struct PageEntry {
    uint16_t x = 0, y = 0, width = 0, height = 0;
    uint16_t targetX = 0, targetY = 0, targetWidth = 0, targetHeight = 0;
    uint16_t sourceWidth = 0, sourceHeight = 0;
    int16_t page = 0;
    bool operator==(const PageEntry&) const = default;
};

struct Sound {
    std::string name;
    uint32_t flags = 100;  // class: 100 streamed from a file, 101 held in the archive
    std::string extension;
    std::string fileName;
    uint32_t effects = 0;
    float volume = 1.0F;
    float pitch = 0.0F;
    uint32_t groupId = 0;
    int32_t audioIndex = -1;  // index into waves, -1 for a file beside the program
    bool operator==(const Sound&) const = default;
};

// bboxMode: 0 automatic, 1 full image, 2 manual. A mask is `height` rows of
// (`width` + 7) / 8 bytes, the leftmost pixel in bit 7. masks is empty, or holds
// one mask for all frames, or one a frame.
struct Sprite {
    std::string name;
    uint32_t width = 0, height = 0;
    int32_t bboxLeft = 0, bboxTop = 0, bboxRight = 0, bboxBottom = 0;  // both ends inside
    bool transparent = false, smooth = false, preload = true;
    uint32_t bboxMode = 0;
    bool sepMasks = false;
    int32_t originX = 0, originY = 0;
    std::vector<PageEntry> frames;
    std::vector<std::vector<uint8_t>> masks;
    bool operator==(const Sprite&) const = default;
};

struct Background {
    std::string name;
    bool transparent = false, smooth = false, preload = true;
    bool hasEntry = true;
    PageEntry entry;
    bool operator==(const Background&) const = default;
};

struct Script {
    std::string name;
    int32_t codeId = -1;  // row of the code table
    bool operator==(const Script&) const = default;
};

struct Glyph {
    uint16_t character = 0, x = 0, y = 0, width = 0, height = 0, shift = 0;
    int16_t offset = 0;
    uint16_t kerningCount = 0;
    bool operator==(const Glyph&) const = default;
};

struct Font {
    std::string name, faceName;
    uint32_t size = 12;
    bool bold = false, italic = false;
    uint16_t first = 32;
    uint8_t charset = 0, antialias = 0;  // antialias is stored plus 1; 0 means the default
    uint32_t last = 127;
    PageEntry entry;
    float scaleX = 1.0F, scaleY = 1.0F;
    std::vector<Glyph> glyphs;  // ascending by character
    bool operator==(const Font&) const = default;
};

struct Event {
    uint32_t subtype = 0;
    int32_t codeId = -1;
    bool operator==(const Event&) const = default;
};

inline constexpr int kEventTypes = 13;  // event types stored with an object

struct Object {
    std::string name;
    int32_t spriteIndex = -1;
    bool visible = true, solid = false;
    int32_t depth = 0;
    bool persistent = false;
    int32_t parentIndex = -100;  // -100 for none
    int32_t maskIndex = -1;
    std::vector<Event> events[kEventTypes];
    bool operator==(const Object&) const = default;
};

struct RoomBackground {
    bool visible = false, foreground = false;
    int32_t backgroundIndex = -1;
    int32_t x = 0, y = 0;
    bool tileHorizontal = true, tileVertical = true;
    int32_t horizontalSpeed = 0, verticalSpeed = 0;
    bool stretch = false;
    bool operator==(const RoomBackground&) const = default;
};

struct RoomView {
    bool visible = false;
    int32_t viewX = 0, viewY = 0, viewWidth = 854, viewHeight = 480;
    int32_t portX = 0, portY = 0, portWidth = 854, portHeight = 480;
    int32_t borderH = 32, borderV = 32, speedH = -1, speedV = -1, followObject = -1;
    bool operator==(const RoomView&) const = default;
};

struct RoomInstance {
    int32_t x = 0, y = 0, objectIndex = -1, id = 0;
    int32_t creationCode = -1;
    float scaleX = 1.0F, scaleY = 1.0F;
    uint32_t colour = 0xFFFFFFFFU;  // 0xAABBGGRR
    float rotation = 0.0F;
    int32_t preCreateCode = -1;
    bool operator==(const RoomInstance&) const = default;
};

struct RoomTile {
    int32_t x = 0, y = 0, backgroundIndex = -1, sourceX = 0, sourceY = 0;
    int32_t width = 0, height = 0, depth = 0, id = 0;
    float scaleX = 1.0F, scaleY = 1.0F;
    uint32_t colour = 0xFFFFFFFFU;  // 0xAABBGGRR
    bool operator==(const RoomTile&) const = default;
};

struct Room {
    std::string name, caption;
    uint32_t width = 854, height = 480, speed = 30;
    bool persistent = false;
    uint32_t colour = 0xC0C0C0;  // 0x00BBGGRR
    bool showColour = true;
    int32_t codeId = -1;
    uint16_t flags = 2;
    RoomBackground backgrounds[8];
    RoomView views[8];
    std::vector<RoomInstance> instances;
    std::vector<RoomTile> tiles;
    bool operator==(const Room&) const = default;
};

struct General {
    uint8_t debuggerDisabled = 1, bytecodeVersion = 16;
    std::string fileName, config = "Default", name, displayName;
    int32_t lastInstanceId = 100000, lastTileId = 10000000;
    uint32_t gameId = 0;
    uint32_t major = 1, minor = 0, release = 0, build = 0;
    uint32_t defaultWindowWidth = 854, defaultWindowHeight = 480;
    uint32_t infoFlags = 0;
    uint64_t timestamp = 0;
    uint64_t activeTargets = 0, functionClasses = 0;
    uint32_t steamAppId = 0, debuggerPort = 6502;
    std::vector<uint32_t> roomOrder;  // room indices in the order of play
    bool operator==(const General&) const = default;
};

struct Options {
    uint32_t bits = 0;
    int32_t windowScale = -1;
    uint32_t windowColour = 0;
    uint32_t colourDepth = 0, resolution = 0, frequency = 0;
    uint32_t verticalSync = 0, priority = 0;
    std::string loadBarImage;
    uint32_t loadAlpha = 0;
    std::vector<std::pair<std::string, std::string>> constants;
    bool operator==(const Options&) const = default;
};

struct Content {
    General general;
    Options options;
    std::vector<Sound> sounds;
    std::vector<std::vector<uint8_t>> waves;  // RIFF wave files
    std::vector<Sprite> sprites;
    std::vector<Background> backgrounds;
    std::vector<Script> scripts;
    std::vector<int32_t> globalCode;  // code ids run once when the scripts are prepared
    std::vector<Font> fonts;
    std::vector<Object> objects;
    std::vector<Room> rooms;
    std::vector<Page> pages;
    bool operator==(const Content&) const = default;
};

}  // namespace archive
