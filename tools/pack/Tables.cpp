#include "tools/pack/Tables.h"

#include <algorithm>
#include <set>
#include <sstream>

namespace pack {

// ---- names

namespace {

bool IsIdentifier(const std::string& name)
{
    if (name.empty() || (name[0] >= '0' && name[0] <= '9')) return false;
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_';
    });
}

}  // namespace

void Names::Add(const Row& row, const std::string& name)
{
    if (!IsIdentifier(name)) row.Fail("expected a name of letters, digits and _, not " + name);
    if (!numbers_.emplace(name, Count()).second)
        row.Fail("expected a name of its own, not " + name + " again");
    list_.push_back(name);
}

int Names::Find(const std::string& name) const
{
    auto found = numbers_.find(name);
    return found == numbers_.end() ? -1 : found->second;
}

int Names::Need(const Row& row, const std::string& name, const char* kind) const
{
    int number = Find(name);
    if (number < 0) {
        bool vowel = std::string("aeiou").find(kind[0]) != std::string::npos;
        row.Fail(std::string("expected a") + (vowel ? "n " : " ") + kind + ", not " + name);
    }
    return number;
}

int Tables::UserVariables() const
{
    return static_cast<int>(
        std::count_if(variables.begin(), variables.end(), [](const VariableRow& v) {
            return v.kind == VariableKind::global || v.kind == VariableKind::instance;
        }));
}

// ---- game.txt

namespace {

const std::string& Value(const Row& row, size_t position = 0)
{
    if (row.fields.size() <= position || !row.fields[position].key.empty()) {
        row.Fail("expected a value behind " + row.name);
    }
    row.fields[position].used = true;
    return row.fields[position].value;
}

long long Number(const Row& row)
{
    long long number = 0;
    if (!Parse_Number(Value(row), number)) row.Fail("expected a number behind " + row.name);
    return number;
}

uint32_t Word(const Row& row)
{
    long long number = Number(row);
    if (number < INT32_MIN || number > UINT32_MAX) row.Fail("expected 32 bits behind " + row.name);
    return static_cast<uint32_t>(number);
}

void Version(const Row& row, archive::General& general)
{
    uint32_t* parts[] = {&general.major, &general.minor, &general.release, &general.build};
    std::istringstream stream(Value(row));
    size_t count = 0;
    for (std::string part; std::getline(stream, part, '.'); ++count) {
        long long number = 0;
        if (count > 3 || !Parse_Number(part, number))
            row.Fail("expected a version such as 1.0.0.1");
        *parts[count] = static_cast<uint32_t>(number);
    }
    if (count != 4) row.Fail("expected a version such as 1.0.0.1");
}

bool GeneralText(const Row& row, archive::General& general)
{
    const std::pair<const char*, std::string*> texts[] = {{"fileName", &general.fileName},
                                                          {"name", &general.name},
                                                          {"displayName", &general.displayName},
                                                          {"config", &general.config}};
    for (const auto& [key, text] : texts) {
        if (row.name != key) continue;
        *text = Value(row);
        return true;
    }
    return false;
}

bool GeneralWord(const Row& row, archive::General& general)
{
    const std::pair<const char*, uint32_t*> words[] = {{"gameId", &general.gameId},
                                                       {"steamAppId", &general.steamAppId},
                                                       {"infoFlags", &general.infoFlags},
                                                       {"debuggerPort", &general.debuggerPort}};
    for (const auto& [key, word] : words) {
        if (row.name != key) continue;
        *word = Word(row);
        return true;
    }
    const std::pair<const char*, uint64_t*> longs[] = {
        {"timestamp", &general.timestamp},
        {"activeTargets", &general.activeTargets},
        {"functionClasses", &general.functionClasses}};
    for (const auto& [key, number] : longs) {
        if (row.name != key) continue;
        *number = static_cast<uint64_t>(Number(row));
        return true;
    }
    return false;
}

bool GeneralOther(const Row& row, archive::General& general)
{
    if (row.name == "version") {
        Version(row, general);
    } else if (row.name == "debuggerDisabled") {
        general.debuggerDisabled = static_cast<uint8_t>(Word(row));
    } else if (row.name == "bytecodeVersion") {
        general.bytecodeVersion = static_cast<uint8_t>(Word(row));
    } else if (row.name == "window") {
        const std::string& size = Value(row);
        Row pair = row;
        pair.fields = {Field{"window", size}};
        int width = 0, height = 0;
        pair.Pair("window", 'x', width, height);
        general.defaultWindowWidth = static_cast<uint32_t>(width);
        general.defaultWindowHeight = static_cast<uint32_t>(height);
    } else {
        return false;
    }
    return true;
}

bool Option(const Row& row, archive::Options& options)
{
    if (row.name == "constant") {
        options.constants.emplace_back(Value(row, 0), Value(row, 1));
        return true;
    }
    if (row.name == "windowScale") {
        options.windowScale = static_cast<int32_t>(Number(row));
        return true;
    }
    const std::pair<const char*, uint32_t*> words[] = {{"options", &options.bits},
                                                       {"windowColour", &options.windowColour},
                                                       {"colourDepth", &options.colourDepth},
                                                       {"resolution", &options.resolution},
                                                       {"frequency", &options.frequency},
                                                       {"verticalSync", &options.verticalSync},
                                                       {"priority", &options.priority},
                                                       {"loadAlpha", &options.loadAlpha}};
    for (const auto& [key, word] : words) {
        if (row.name != key) continue;
        *word = Word(row);
        return true;
    }
    return false;
}

}  // namespace

void Tables_Game(Tables& tables, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        if (!GeneralText(row, tables.general) && !GeneralWord(row, tables.general) &&
            !GeneralOther(row, tables.general) && !Option(row, tables.options)) {
            row.Fail("expected a value of the header or an option, not " + row.name);
        }
        row.Done();
    }
}

// ---- pictures

namespace {

void Size(const Row& row, int& width, int& height)
{
    row.Pair("size", 'x', width, height);
    if (width < 1 || height < 1 || width > 1024 || height > 1024) {
        row.Fail("expected a size from 1x1 to 1024x1024");
    }
}

void SpriteBox(const Row& row, SpriteRow& out)
{
    archive::Sprite& sprite = out.sprite;
    sprite.bboxRight = static_cast<int32_t>(sprite.width) - 1;
    sprite.bboxBottom = static_cast<int32_t>(sprite.height) - 1;
    sprite.bboxMode = 1;
    if (!row.Has("box")) return;
    if (row.Text("box") == "picture") {
        out.boxOfPicture = true;
        sprite.bboxMode = 0;
        return;
    }
    std::vector<int> box = row.Ints("box", 4);
    if (box[0] < 0 || box[1] < 0 || box[2] < box[0] || box[3] < box[1] ||
        box[2] > sprite.bboxRight || box[3] > sprite.bboxBottom) {
        row.Fail("expected box=left,top,right,bottom inside the image");
    }
    sprite.bboxMode = 2;
    sprite.bboxLeft = box[0];
    sprite.bboxTop = box[1];
    sprite.bboxRight = box[2];
    sprite.bboxBottom = box[3];
}

MaskOf SpriteMask(const Row& row)
{
    const std::string word = row.Text("mask", "box");
    if (word == "box") return MaskOf::box;
    if (word == "picture") return MaskOf::picture;
    if (word != "none") row.Fail("expected mask=box, mask=picture or mask=none");
    return MaskOf::none;
}

}  // namespace

void Tables_Sprites(Tables& tables, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        tables.spriteNames.Add(row, row.name);
        SpriteRow out;
        out.sprite.name = row.name;
        int width = 0, height = 0;
        Size(row, width, height);
        out.sprite.width = static_cast<uint32_t>(width);
        out.sprite.height = static_cast<uint32_t>(height);
        if (row.Has("origin")) row.Pair("origin", ',', out.sprite.originX, out.sprite.originY);
        out.frames = row.Int("frames", 1);
        if (out.frames < 1 || out.frames > 1000) row.Fail("expected frames=1 to 1000");
        SpriteBox(row, out);
        out.mask = SpriteMask(row);
        out.page = row.Text("page", "");
        row.Done();
        tables.sprites.push_back(std::move(out));
    }
}

void Tables_Backgrounds(Tables& tables, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        tables.backgroundNames.Add(row, row.name);
        BackgroundRow out;
        out.name = row.name;
        Size(row, out.width, out.height);
        out.page = row.Text("page", "");
        row.Done();
        tables.backgrounds.push_back(std::move(out));
    }
}

// ---- sounds and fonts

namespace {

double Decimal(const Row& row, const std::string& text)
{
    char* end = nullptr;
    double number = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(number >= 0 && number < 100000)) {
        row.Fail("expected a number, not " + text +
                 ", in a note start:length:hertz[>hertz]:loudness");
    }
    return number;
}

Note ParseNote(const Row& row, const std::string& text)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, ':');) parts.push_back(part);
    if (parts.size() != 4)
        row.Fail("expected a note start:length:hertz[>hertz]:loudness, not " + text);
    Note note;
    note.start = Decimal(row, parts[0]);
    note.length = Decimal(row, parts[1]);
    size_t glide = parts[2].find('>');
    note.from = Decimal(row, parts[2].substr(0, glide));
    note.to = glide == std::string::npos ? note.from : Decimal(row, parts[2].substr(glide + 1));
    note.loudness = Decimal(row, parts[3]);
    if (note.start + note.length > 60 || note.length <= 0 || note.loudness > 1) {
        row.Fail("expected a note within 60 seconds, of a length above 0 and a loudness to 1");
    }
    return note;
}

}  // namespace

void Tables_Sounds(Tables& tables, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        tables.soundNames.Add(row, row.name);
        SoundRow out;
        out.name = row.name;
        out.file = row.Text("file", "");
        if (row.Has("tones")) {
            std::istringstream stream(row.Text("tones"));
            for (std::string note; stream >> note;) out.notes.push_back(ParseNote(row, note));
        }
        if (out.file.empty() == out.notes.empty()) row.Fail("expected either file= or tones=");
        row.Done();
        tables.sounds.push_back(std::move(out));
    }
}

void Tables_Fonts(Tables& tables, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        tables.fontNames.Add(row, row.name);
        FontRow out;
        out.line = row.line;
        out.font.name = row.name;
        out.font.faceName = row.Text("face");
        out.file = row.Text("file");
        out.font.bold = row.Flag("bold");
        out.font.italic = row.Flag("italic");
        int size = row.Int("size", 0), first = row.Int("first", 32), last = row.Int("last", 127);
        if (size < 4 || size > 200) row.Fail("expected size=4 to 200 points");
        if (first < 1 || last < first || last > 65535)
            row.Fail("expected first= and last= in order");
        out.font.size = static_cast<uint32_t>(size);
        out.font.first = static_cast<uint16_t>(first);
        out.font.last = static_cast<uint32_t>(last);
        row.Done();
        tables.fonts.push_back(std::move(out));
    }
}

void Tables_Scripts(Tables& tables, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        tables.scriptNames.Add(row, row.name);
        tables.scripts.push_back({row.name, row.Flag("later")});
        row.Done();
    }
}

// ---- all of them

Tables Tables_Read(const std::string& folder)
{
    Tables tables;
    Tables_Game(tables, Table_Read(folder, "game.txt"));
    Tables_Sprites(tables, Table_Read(folder, "sprites.txt"));
    Tables_Backgrounds(tables, Table_Read(folder, "backgrounds.txt"));
    Tables_Sounds(tables, Table_Read(folder, "sounds.txt"));
    Tables_Fonts(tables, Table_Read(folder, "fonts.txt"));
    Tables_Scripts(tables, Table_Read(folder, "scripts.txt"));
    Tables_Objects(tables, Table_Read(folder, "objects.txt"));
    Tables_Rooms(tables, Table_Read(folder, "rooms.txt"));
    Tables_Variables(tables, Table_Read(folder, "variables.txt"));
    Tables_Functions(tables, Table_Read(folder, "functions.txt"));
    return tables;
}

}  // namespace pack
