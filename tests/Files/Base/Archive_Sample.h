#pragma once
// A small archive's content with at least one record of every kind, no two fields
// of a record alike where the type allows it.

#include <cstring>
#include <initializer_list>

#include "Files/Base/Archive_Content.h"
#include "Files/Base/Archive_Records.h"
#include "Files/Base/Archive_Writer.h"

namespace archive {

inline PageEntry SampleEntry(uint16_t base, int16_t page)
{
    const auto at = [base](int i) { return static_cast<uint16_t>(base + i); };
    return {at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7), at(8), at(9), page};
}

inline General SampleGeneral()
{
    General general;
    general.fileName = "SampleGame";
    general.config = "Test";
    general.name = "SampleName";
    general.displayName = "Sample caption";
    general.lastInstanceId = 100003;
    general.lastTileId = 10000002;
    general.gameId = 4711;
    general.minor = 2;
    general.release = 3;
    general.build = 4;
    general.defaultWindowWidth = 640;
    general.defaultWindowHeight = 360;
    general.infoFlags = 0x8B9;
    general.timestamp = 0x123456789AULL;
    general.activeTargets = 5;
    general.functionClasses = 6;
    general.steamAppId = 7;
    general.roomOrder = {1, 0};
    return general;
}

inline Options SampleOptions()
{
    Options options;
    options.bits = 0xCC7A17;
    options.windowColour = 0x112233;
    options.colourDepth = 1;
    options.resolution = 2;
    options.frequency = 3;
    options.verticalSync = 4;
    options.priority = 5;
    options.loadBarImage = "bar";
    options.loadAlpha = 255;
    options.constants = {{"@@SleepMargin", "1"}, {"limite", "42"}};
    return options;
}

inline Sprite SampleSprite()
{
    Sprite sprite;
    sprite.name = "sBox";
    sprite.width = 10;
    sprite.height = 2;
    sprite.bboxLeft = 1;
    sprite.bboxTop = -2;
    sprite.bboxRight = 3;
    sprite.bboxBottom = 4;
    sprite.smooth = true;
    sprite.bboxMode = 2;
    sprite.originX = 5;
    sprite.originY = -6;
    sprite.frames = {SampleEntry(10, 0), SampleEntry(30, 1)};
    sprite.masks = {{0xFF, 0x80, 0x01, 0x40}, {0x11, 0x22, 0x33, 0x44}};
    return sprite;
}

inline Font SampleFont()
{
    Font font;
    font.name = "fSmall";
    font.faceName = "Face";
    font.size = 24;
    font.bold = true;
    font.charset = 3;
    font.antialias = 2;
    font.last = 255;
    font.entry = SampleEntry(50, 1);
    font.scaleX = 0.5F;
    font.scaleY = 2.0F;
    font.glyphs = {{65, 1, 2, 3, 9, 5, -6, 0}, {66, 7, 8, 9, 4, 11, 12, 0}};
    return font;
}

inline std::vector<Object> SampleObjects()
{
    Object box;
    box.name = "oBox";
    box.spriteIndex = 0;
    box.solid = true;
    box.depth = -3;
    box.events[0] = {{0, 0}};
    box.events[4] = {{2, 1}, {0, 2}};
    box.events[7] = {{10, 3}};
    Object child;
    child.name = "oChild";
    child.visible = false;
    child.persistent = true;
    child.parentIndex = 0;
    child.maskIndex = 0;
    return {box, Object{}, child};
}

inline Room SampleRoom()
{
    Room room;
    room.name = "room_one";
    room.caption = "One";
    room.width = 416;
    room.height = 312;
    room.speed = 60;
    room.persistent = true;
    room.colour = 0x010203;
    room.showColour = false;
    room.codeId = 4;
    room.flags = 3;
    room.backgrounds[2] = {true, true, 1, 2, -3, false, true, 4, -5, true};
    room.views[7] = {true, 1, -2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    room.instances = {{1, -2, 0, 100001, 3, 4.5F, -5.5F, 0x80FFFFFFU, 90.0F, 5},
                      {52, 104, 2, 100003}};
    room.tiles = {{1, -2, 0, 4, 5, 6, 7, 1000, 10000002, 1.5F, -1.0F, 0x7F123456U}};
    return room;
}

inline Content SampleContent()
{
    Content content;
    content.general = SampleGeneral();
    content.options = SampleOptions();
    content.sounds = {{"xMusic", 100, ".ogg", "xMusic.ogg", 1, 0.75F, 0.5F, 0, -1},
                      {},
                      {"xClick", 101, ".wav", "xClick.wav", 0, 1.0F, 0.0F, 0, 1}};
    content.waves = {{'R', 'I', 'F'}, {'R', 'I', 'F', 'F', '2'}};
    content.sprites = {SampleSprite(), Sprite{}};
    content.backgrounds = {{"bTiles", true, true, false, true, SampleEntry(70, 0)},
                           {"bNone", false, false, true, false, {}}};
    content.scripts = {{"scr_one", 5}, {"scr_two", -1}};
    content.globalCode = {7, 8};
    content.fonts = {SampleFont()};
    content.objects = SampleObjects();
    Room second;
    second.name = "room_two";
    content.rooms = {SampleRoom(), second};
    // The signature, an empty IEND chunk: the least that is walked as a PNG file.
    content.pages = {
        {{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 0, 'I', 'E', 'N', 'D', 1, 2, 3, 4},
         1},
        {{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0,   0,   0,   1,   'I', 'D', 'A', 'T', 9,
          1,    2,   3,   4,   0,    0,    0,    0,    'I', 'E', 'N', 'D', 1,   2,   3,   4},
         0}};
    return content;
}

// ---- kinds of records that the writer leaves empty, put behind a written archive

inline uint32_t WordAt(const std::vector<uint8_t>& bytes, size_t at)
{
    uint32_t word;
    std::memcpy(&word, bytes.data() + at, sizeof word);
    return word;
}

inline uint32_t BodyOf(const std::vector<uint8_t>& bytes, const char (&tag)[5])
{
    for (uint32_t at = 8; at < bytes.size(); at += 8 + WordAt(bytes, at + 4))
        if (WordAt(bytes, at) == ArchiveTag(tag)) return at + 8;
    return 0;
}

// The chunk of that tag gets one that loaders pass over; a new one stands at the end.
inline void ReplaceChunk(std::vector<uint8_t>* bytes, const char (&tag)[5],
                         const char (&passedOver)[5], std::initializer_list<uint32_t> body)
{
    std::memcpy(bytes->data() + BodyOf(*bytes, tag) - 8, passedOver, 4);
    const auto append = [bytes](uint32_t word) {
        bytes->resize(bytes->size() + 4);
        std::memcpy(bytes->data() + bytes->size() - 4, &word, 4);
    };
    bytes->resize((bytes->size() + 3) & ~size_t{3});
    append(ArchiveTag(tag));
    append(static_cast<uint32_t>(4 * body.size()));
    for (const uint32_t word : body) append(word);
    const uint32_t size = static_cast<uint32_t>(bytes->size() - 8);
    std::memcpy(bytes->data() + 4, &size, 4);
}

constexpr uint32_t FloatWord(float value)
{
    return std::bit_cast<uint32_t>(value);
}

// A path of two points, named as the first script, behind an empty slot.
inline std::vector<uint8_t> SampleWithPath()
{
    Content content = SampleContent();
    content.waves.clear();  // so that the archive ends on a word
    std::vector<uint8_t> bytes = Write(content);
    const uint32_t name = WordAt(bytes, WordAt(bytes, BodyOf(bytes, "SCPT") + 4));
    const uint32_t body = static_cast<uint32_t>(bytes.size()) + 8;
    ReplaceChunk(&bytes, "PATH", "HELP",
                 {2, 0, body + 12, name, 1, 1, 4, 2, FloatWord(1.0F), FloatWord(2.0F),
                  FloatWord(100.0F), FloatWord(-3.0F), FloatWord(4.5F), FloatWord(50.0F)});
    return bytes;
}

// A timeline with one moment at step 30 that runs row 1 of the code table.
inline std::vector<uint8_t> SampleWithTimeline()
{
    std::vector<uint8_t> bytes = SampleWithPath();
    const uint32_t name = WordAt(bytes, WordAt(bytes, BodyOf(bytes, "SCPT") + 4));
    const uint32_t body = static_cast<uint32_t>(bytes.size()) + 8;
    ReplaceChunk(&bytes, "TMLN", "STAT",
                 {1, body + 8, name, 1, 30,   body + 24, 1, body + 32,   1, 603, 7,
                  0, 0,        1,    2, name, 1,         1, 0xFFFFFFFFU, 0, 0,   0});
    return bytes;
}

}  // namespace archive
