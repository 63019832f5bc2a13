#pragma once
// The content tables as checked values: names are resolved to numbers, which are the
// positions of their rows.

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Files/Base/Archive_Content.h"
#include "tools/pack/Table.h"

namespace pack {

// Numbers by name; a name stands once.
class Names {
public:
    // Fails at `row` when the name is taken or cannot stand in the generated code.
    void Add(const Row& row, const std::string& name);
    int Find(const std::string& name) const;  // -1 when missing
    int Need(const Row& row, const std::string& name, const char* kind) const;
    const std::vector<std::string>& List() const { return list_; }
    int Count() const { return static_cast<int>(list_.size()); }

private:
    std::vector<std::string> list_;
    std::map<std::string, int> numbers_;
};

enum class MaskOf { none, box, picture };

struct SpriteRow {
    archive::Sprite sprite;  // without frames and masks
    int frames = 1;
    bool boxOfPicture = false;
    MaskOf mask = MaskOf::box;
    std::string page;  // pictures of one page word are kept together; empty for its own
};

struct BackgroundRow {
    std::string name, page;
    int width = 0, height = 0;
};

// A note of a synthesised sound: seconds, hertz, 0..1.
struct Note {
    double start = 0, length = 0, from = 0, to = 0, loudness = 0;
};

struct SoundRow {
    std::string name, file;  // without a file, notes
    std::vector<Note> notes;
};

struct FontRow {
    archive::Font font;  // without entry and glyphs
    std::string file;    // below the folder of the system's fonts
    int line = 0;
};

struct ScriptRow {
    std::string name;
    bool later = false;
};

struct EventRow {
    int line = 0;
    int type = 0, subtype = 0;
    std::string word;  // of the function's name: "Collision_oMonte", "Create"
    int shared = -1;   // object whose function it runs, -1 for its own
    bool later = false;
};

struct ObjectRow {
    archive::Object object;  // without events
    std::vector<EventRow> events;
};

struct PlacedInstance {
    int object = -1, x = 0, y = 0;
    double scaleX = 1, scaleY = 1;
    uint32_t colour = 0xFFFFFFFFU;  // 0xAABBGGRR
};

struct RoomRow {
    std::string name;
    uint32_t colour = 0;  // 0x00BBGGRR
    int background = -1;
    bool hasCode = false, codeLater = false;
    std::string level;  // file in levels/ without ".txt"; empty for none
    std::vector<PlacedInstance> instances;
};

enum class VariableKind { global, instance, builtin, room };

struct VariableRow {
    VariableKind kind = VariableKind::global;
    std::string name, word;  // word: what the rules call it
};

struct Parameter {
    std::string type, name;
};

struct FunctionRow {
    std::string name, word;
    bool self = false, direct = false;
    std::string result;
    std::vector<Parameter> parameters;
};

struct Tables {
    archive::General general;
    archive::Options options;
    Names spriteNames, backgroundNames, soundNames, fontNames, scriptNames, objectNames, roomNames;
    std::vector<SpriteRow> sprites;
    std::vector<BackgroundRow> backgrounds;
    std::vector<SoundRow> sounds;
    std::vector<FontRow> fonts;
    std::vector<ScriptRow> scripts;
    std::vector<ObjectRow> objects;
    std::vector<RoomRow> rooms;
    std::vector<VariableRow> variables;  // globals, then instances', then built-in ones
    std::vector<FunctionRow> functions;

    // How many variables are the game's own.
    int UserVariables() const;
};

// Reads all tables in `folder`. Throws ContentError.
Tables Tables_Read(const std::string& folder);

// The steps of Tables_Read, each over the rows of its file.
void Tables_Game(Tables& tables, const std::vector<Row>& rows);
void Tables_Sprites(Tables& tables, const std::vector<Row>& rows);
void Tables_Backgrounds(Tables& tables, const std::vector<Row>& rows);
void Tables_Sounds(Tables& tables, const std::vector<Row>& rows);
void Tables_Fonts(Tables& tables, const std::vector<Row>& rows);
void Tables_Scripts(Tables& tables, const std::vector<Row>& rows);
void Tables_Objects(Tables& tables, const std::vector<Row>& rows);
void Tables_Rooms(Tables& tables, const std::vector<Row>& rows);
void Tables_Variables(Tables& tables, const std::vector<Row>& rows);
void Tables_Functions(Tables& tables, const std::vector<Row>& rows);

}  // namespace pack
