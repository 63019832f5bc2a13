#pragma once
// The one description of the archive's records: little-endian, fixed width, read
// in place. "Offset" fields count from the archive's first byte, 0 is null; string
// fields are offsets to the text of a STRG entry. A list is a count followed by
// that many offsets. Variable tails are told in the comments behind each record.

#include <bit>
#include <cstddef>
#include <cstdint>

static_assert(std::endian::native == std::endian::little,
              "records are read in place: the machine must be little-endian");

using ArchiveOffset = uint32_t;
using ArchiveString = uint32_t;

constexpr uint32_t ArchiveTag(const char (&tag)[5])
{
    return static_cast<uint32_t>(static_cast<uint8_t>(tag[0])) |
           static_cast<uint32_t>(static_cast<uint8_t>(tag[1])) << 8 |
           static_cast<uint32_t>(static_cast<uint8_t>(tag[2])) << 16 |
           static_cast<uint32_t>(static_cast<uint8_t>(tag[3])) << 24;
}

#pragma pack(push, 1)

struct ArchiveChunk {
    uint32_t tag;
    uint32_t size;  // of the body that follows
};
static_assert(sizeof(ArchiveChunk) == 8);

// GEN8; the room order follows: roomCount words.
struct ArchiveGeneral {
    uint8_t debuggerDisabled;
    uint8_t bytecodeVersion;
    uint16_t reserved0;
    ArchiveString fileName;
    ArchiveString config;
    uint32_t lastInstanceId;
    uint32_t lastTileId;
    uint32_t gameId;
    uint8_t guid[16];
    ArchiveString name;
    uint32_t major, minor, release, build;
    uint32_t defaultWindowWidth;
    uint32_t defaultWindowHeight;
    uint32_t infoFlags;
    uint32_t reserved1[5];
    uint64_t timestamp;         // seconds
    ArchiveString displayName;  // from version 10
    uint64_t activeTargets;     // from version 11
    uint64_t functionClasses;   // from version 12
    uint32_t steamAppId;        // from version 13
    uint32_t debuggerPort;      // from version 14
    uint32_t roomCount;
};
static_assert(offsetof(ArchiveGeneral, guid) == 24 && offsetof(ArchiveGeneral, name) == 40 &&
              offsetof(ArchiveGeneral, infoFlags) == 68 &&
              offsetof(ArchiveGeneral, timestamp) == 92 &&
              offsetof(ArchiveGeneral, displayName) == 100 &&
              offsetof(ArchiveGeneral, activeTargets) == 104 &&
              offsetof(ArchiveGeneral, steamAppId) == 120 &&
              offsetof(ArchiveGeneral, roomCount) == 128 && sizeof(ArchiveGeneral) == 132);

// Where roomCount stands in the header of a version.
constexpr uint32_t ArchiveRoomCountOffset(uint32_t version)
{
    return version < 8    ? 36
           : version < 10 ? 100
           : version < 11 ? 104
           : version < 12 ? 112
           : version < 13 ? 120
           : version < 14 ? 124
                          : 128;
}

inline constexpr uint32_t kOptionMarker = 0x80000000U;
inline constexpr uint32_t kOptionVersion = 2;

// OPTN in its newer form; constantCount pairs of strings follow.
struct ArchiveOptions {
    uint32_t marker;
    uint32_t version;
    uint32_t bits;
    uint32_t reserved0;
    int32_t windowScale;
    uint32_t windowColour;
    uint32_t colourDepth, resolution, frequency;
    uint32_t verticalSync, priority;
    uint32_t reserved1[2];
    ArchiveString loadBarImage;
    uint32_t loadAlpha;
    uint32_t constantCount;
};
static_assert(offsetof(ArchiveOptions, loadBarImage) == 52 && sizeof(ArchiveOptions) == 64);

// OPTN in its older form: a word for each option, in the order of the option bits,
// and the values between them; constantCount pairs of strings follow.
struct ArchiveOldOptions {
    uint32_t bits0To4[5];
    int32_t windowScale;
    uint32_t bits5To6[2];
    uint32_t windowColour;
    uint32_t bit7;
    uint32_t colourDepth, resolution, frequency;
    uint32_t bit8;
    uint32_t verticalSync;
    uint32_t bits9To14[6];
    uint32_t priority;
    uint32_t bits15To16[2];
    uint32_t reserved[2];
    ArchiveString loadBarImage;
    uint32_t bit17;
    uint32_t loadAlpha;
    uint32_t bits18To23[6];
    uint32_t constantCount;
};
static_assert(offsetof(ArchiveOldOptions, windowScale) == 20 &&
              offsetof(ArchiveOldOptions, windowColour) == 32 &&
              offsetof(ArchiveOldOptions, colourDepth) == 40 &&
              offsetof(ArchiveOldOptions, verticalSync) == 56 &&
              offsetof(ArchiveOldOptions, priority) == 84 &&
              offsetof(ArchiveOldOptions, loadBarImage) == 104 &&
              offsetof(ArchiveOldOptions, constantCount) == 140);

// The option bits that the words of the older form stand for.
constexpr uint32_t ArchiveOldOptionBits(const ArchiveOldOptions& options)
{
    uint32_t bits = 0;
    int next = 0;
    const auto add = [&](uint32_t word) { bits |= (word != 0 ? 1U : 0U) << next++; };
    for (int i = 0; i < 5; ++i) add(options.bits0To4[i]);
    for (int i = 0; i < 2; ++i) add(options.bits5To6[i]);
    add(options.bit7);
    add(options.bit8);
    for (int i = 0; i < 6; ++i) add(options.bits9To14[i]);
    for (int i = 0; i < 2; ++i) add(options.bits15To16[i]);
    add(options.bit17);
    for (int i = 0; i < 6; ++i) add(options.bits18To23[i]);
    return bits;
}

struct ArchiveConstant {
    ArchiveString name, value;
};

struct ArchiveSound {
    ArchiveString name;
    uint32_t flags;
    ArchiveString extension;
    ArchiveString fileName;
    uint32_t effects;
    float volume;
    float pitch;
    uint32_t groupId;
    int32_t audioIndex;
};
static_assert(sizeof(ArchiveSound) == 36);

// Followed by frameCount offsets of page entries, a word maskCount, and the masks.
// A frameCount of -1 marks a versioned record: a word version and a word type follow.
struct ArchiveSprite {
    ArchiveString name;
    uint32_t width, height;
    int32_t bboxLeft, bboxRight, bboxBottom, bboxTop;
    uint32_t transparent, smooth, preload;
    uint32_t bboxMode;
    uint32_t sepMasks;
    int32_t originX, originY;
    int32_t frameCount;
};
static_assert(sizeof(ArchiveSprite) == 60);

struct ArchiveBackground {
    ArchiveString name;
    uint32_t transparent, smooth, preload;
    ArchiveOffset tpag;
};
static_assert(sizeof(ArchiveBackground) == 20);

// Followed by pointCount points of three floats x, y, speed.
struct ArchivePath {
    ArchiveString name;
    uint32_t kind, closed, precision, pointCount;
};
static_assert(sizeof(ArchivePath) == 20);

struct ArchiveScript {
    ArchiveString name;
    int32_t codeId;
};
static_assert(sizeof(ArchiveScript) == 8);

// Followed by glyphCount offsets of glyphs.
struct ArchiveFont {
    ArchiveString name, faceName;
    uint32_t size;
    uint32_t bold, italic;
    uint16_t first;
    uint8_t charset, antialias;
    uint32_t last;
    ArchiveOffset tpag;
    float scaleX, scaleY;
    uint32_t glyphCount;
};
static_assert(offsetof(ArchiveFont, first) == 20 && sizeof(ArchiveFont) == 44);

inline constexpr uint32_t kSpriteFontTable = 512;  // bytes at the end of FONT: 256 16-bit values

struct ArchiveGlyph {
    uint16_t character, x, y, width, height, shift;
    int16_t offset;
    uint16_t kerningCount;
};
static_assert(sizeof(ArchiveGlyph) == 16);

// Followed by momentCount pairs of a word time and an offset of an action list.
struct ArchiveTimeline {
    ArchiveString name;
    uint32_t momentCount;
};

inline constexpr int32_t kNoParent = -100;

// Followed by physicsVertexCount pairs of floats, a word eventTypeCount, and that
// many offsets of event lists.
struct ArchiveObject {
    ArchiveString name;
    int32_t spriteIndex;
    uint32_t visible, solid;
    int32_t depth;
    uint32_t persistent;
    int32_t parentIndex, maskIndex;
    uint32_t physicsObject, physicsSensor, physicsShape;
    float physicsDensity, physicsRestitution;
    uint32_t physicsGroup;
    float physicsLinearDamping, physicsAngularDamping;
    uint32_t physicsVertexCount;
    float physicsFriction;
    uint32_t physicsAwake, physicsKinematic;
};
static_assert(sizeof(ArchiveObject) == 80);

// An event: a word subtype, then a list of actions; only the first action is read.
struct ArchiveAction {
    uint32_t stored0[7];  // 1, 603, 7, 0, 0, 1, 2
    ArchiveString text;
    int32_t codeId;
    int32_t stored1[5];  // 1, -1, 0, 0, 0
};
static_assert(offsetof(ArchiveAction, codeId) == 32 && sizeof(ArchiveAction) == 56);

struct ArchiveRoom {
    ArchiveString name, caption;
    uint32_t width, height, speed;
    uint32_t persistent;
    uint32_t colour;
    uint32_t showColour;
    int32_t codeId;
    uint16_t flags;
    uint16_t format;
    ArchiveOffset backgrounds, views, instances, tiles;
    uint32_t physicsWorld;
    int32_t physicsTop, physicsLeft, physicsRight, physicsBottom;
    float physicsGravityX, physicsGravityY, physicsPixelsToMetres;
};
static_assert(offsetof(ArchiveRoom, flags) == 36 && sizeof(ArchiveRoom) == 88);

struct ArchiveRoomBackground {
    uint32_t visible, foreground;
    int32_t backgroundIndex, x, y;
    uint32_t tileHorizontal, tileVertical;
    int32_t horizontalSpeed, verticalSpeed;
    uint32_t stretch;
};
static_assert(sizeof(ArchiveRoomBackground) == 40);

struct ArchiveRoomView {
    uint32_t visible;
    int32_t viewX, viewY, viewWidth, viewHeight;
    int32_t portX, portY, portWidth, portHeight;
    int32_t borderH, borderV, speedH, speedV, followObject;
};
static_assert(sizeof(ArchiveRoomView) == 56);

struct ArchiveRoomInstance {
    int32_t x, y, objectIndex, id, creationCode;
    float scaleX, scaleY;
    uint32_t colour;
    float rotation;
    int32_t preCreateCode;
};
static_assert(sizeof(ArchiveRoomInstance) == 40);

struct ArchiveRoomTile {
    int32_t x, y, backgroundIndex, sourceX, sourceY, width, height, depth, id;
    float scaleX, scaleY;
    uint32_t colour;
};
static_assert(sizeof(ArchiveRoomTile) == 48);

struct ArchivePageEntry {
    uint16_t x, y, width, height;
    uint16_t targetX, targetY, targetWidth, targetHeight;
    uint16_t sourceWidth, sourceHeight;
    int16_t texture;  // page index; the slot of the texture once loaded
};
static_assert(sizeof(ArchivePageEntry) == 22);

struct ArchivePage {
    uint32_t flags;
    ArchiveOffset data;  // PNG bytes, or a raw-pixel header
};
static_assert(sizeof(ArchivePage) == 8);

#pragma pack(pop)
