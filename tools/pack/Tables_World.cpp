// Objects, rooms, variables and functions: the tables that name one another.

#include <algorithm>

#include "tools/pack/Events.h"
#include "tools/pack/Tables.h"

namespace pack {

// ---- objects.txt
namespace {

// What the words of an event line say: `<event> [subtype] [= <object>] [later]`.
struct EventWords {
    std::string subtype, shared;
    bool later = false;
};

EventWords SplitEvent(const Row& row)
{
    EventWords out;
    std::vector<std::string> words = row.Words();
    row.Done();
    for (size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "=" && i + 1 < words.size()) {
            out.shared = words[++i];
        } else if (words[i] == "later" && i + 1 == words.size()) {
            out.later = true;
        } else if (i == 0 && words[i] != "=") {
            out.subtype = words[i];
        } else {
            row.Fail("expected an event line: event [subtype] [= object] [later]");
        }
    }
    return out;
}

EventRow ReadEvent(const Tables& tables, const Row& row)
{
    EventWords words = SplitEvent(row);
    EventRow out;
    out.line = row.line;
    out.type = Event_Type(row.name);
    if (out.type < 0 || out.type >= archive::kEventTypes) {
        row.Fail("expected an event such as Create, Step or Collision, not " + row.name);
    }
    std::string shown;
    out.subtype = Event_Subtype(out.type, words.subtype, tables.objectNames, shown);
    if (out.subtype < 0) {
        row.Fail(std::string("expected ") + Event_Expects(out.type) + " behind " + row.name);
    }
    out.word = row.name + (shown.empty() ? "" : "_" + shown);
    if (!words.shared.empty()) out.shared = tables.objectNames.Need(row, words.shared, "object");
    out.later = words.later;
    return out;
}

void ReadObject(Tables& tables, const Row& row, ObjectRow& out)
{
    archive::Object& object = out.object;
    object.name = row.name;
    if (row.Has("sprite"))
        object.spriteIndex = tables.spriteNames.Need(row, row.Text("sprite"), "sprite");
    if (row.Has("mask"))
        object.maskIndex = tables.spriteNames.Need(row, row.Text("mask"), "sprite");
    if (row.Has("parent")) {
        object.parentIndex = tables.objectNames.Need(row, row.Text("parent"), "object");
    }
    object.depth = row.Int("depth", 0);
    object.solid = row.Flag("solid");
    object.visible = !row.Flag("hidden");
    object.persistent = row.Flag("persistent");
    row.Done();
    for (const Row& event : row.rows) {
        EventRow read = ReadEvent(tables, event);
        for (const EventRow& before : out.events) {
            if (before.type == read.type && before.subtype == read.subtype) {
                event.Fail("expected each event of " + row.name + " once");
            }
        }
        out.events.push_back(std::move(read));
    }
}

const EventRow* FindEvent(const ObjectRow& object, int type, int subtype)
{
    for (const EventRow& event : object.events) {
        if (event.type == type && event.subtype == subtype) return &event;
    }
    return nullptr;
}

// A shared function must be one that the other object has of its own.
void CheckShared(const Tables& tables, const Row& row, const ObjectRow& object)
{
    for (const EventRow& event : object.events) {
        if (event.shared < 0) continue;
        const ObjectRow& owner = tables.objects[static_cast<size_t>(event.shared)];
        const EventRow* own = FindEvent(owner, event.type, event.subtype);
        bool chained = own && own->shared >= 0 && own->shared != event.shared;
        if (!own || chained || own->later != event.later) {
            throw ContentError(row.file, event.line,
                               "expected " + owner.object.name + " to have " + event.word +
                                   " of its own" + (event.later ? ", still to come" : ""));
        }
    }
}

void CheckParents(const Tables& tables, const Row& row, const ObjectRow& object)
{
    int steps = 0;
    for (int at = object.object.parentIndex; at >= 0; ++steps) {
        if (steps > tables.objectNames.Count()) row.Fail("expected parents that do not go round");
        at = tables.objects[static_cast<size_t>(at)].object.parentIndex;
    }
}

}  // namespace

void Tables_Objects(Tables& tables, const std::vector<Row>& rows)
{
    for (const Row& row : rows) tables.objectNames.Add(row, row.name);
    for (const Row& row : rows) {
        tables.objects.emplace_back();
        ReadObject(tables, row, tables.objects.back());
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        CheckShared(tables, rows[i], tables.objects[i]);
        CheckParents(tables, rows[i], tables.objects[i]);
    }
}

// ---- rooms.txt
namespace {

// "#rrggbb" to 0x00BBGGRR.
uint32_t Colour(const Row& row)
{
    const std::string text = row.Text("colour", "#000000");
    long long rgb = 0;
    if (text.size() != 7 || text[0] != '#' || !Parse_Number("0x" + text.substr(1), rgb)) {
        row.Fail("expected colour=#rrggbb");
    }
    return static_cast<uint32_t>((rgb & 0xFF) << 16 | (rgb & 0xFF00) | rgb >> 16);
}

void ReadPlace(const Tables& tables, const Row& row, RoomRow& out)
{
    if (row.name == "Create") {
        out.hasCode = true;
        out.codeLater = row.Flag("later");
        row.Done();
        return;
    }
    PlacedInstance placed;
    placed.object = tables.objectNames.Need(row, row.name, "object");
    std::vector<std::string> words = row.Words();
    if (words.size() != 1) row.Fail("expected a place x,y behind " + row.name);
    Row place = row;
    place.fields = {Field{"place", words[0]}};
    place.Pair("place", ',', placed.x, placed.y);
    row.Done();
    out.instances.push_back(placed);
}

}  // namespace

void Tables_Rooms(Tables& tables, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        tables.roomNames.Add(row, row.name);
        RoomRow out;
        out.name = row.name;
        out.colour = Colour(row);
        out.level = row.Text("level", "");
        if (row.Has("background")) {
            out.background = tables.backgroundNames.Need(row, row.Text("background"), "background");
        }
        row.Done();
        for (const Row& place : row.rows) ReadPlace(tables, place, out);
        tables.rooms.push_back(std::move(out));
    }
}

// ---- variables.txt

void Tables_Variables(Tables& tables, const std::vector<Row>& rows)
{
    constexpr std::pair<const char*, VariableKind> kKinds[] = {{"global", VariableKind::global},
                                                               {"instance", VariableKind::instance},
                                                               {"builtin", VariableKind::builtin},
                                                               {"room", VariableKind::room}};
    Names words, names[4];
    for (const Row& row : rows) {
        auto kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                 [&](const auto& entry) { return row.name == entry.first; });
        if (kind == std::end(kKinds)) row.Fail("expected global, instance, builtin or room");
        if (!tables.variables.empty() && tables.variables.back().kind > kind->second) {
            row.Fail("expected the kinds in the order global, instance, builtin, room");
        }
        for (const Field& field : row.fields) {
            VariableRow out{kind->second, field.key.empty() ? field.value : field.key, field.value};
            names[static_cast<size_t>(out.kind)].Add(row, out.name);
            words.Add(row, out.word);
            tables.variables.push_back(std::move(out));
        }
    }
}

// ---- functions.txt
namespace {

bool IsResult(const std::string& word)
{
    constexpr const char* kResults[] = {"none", "real", "bool", "text", "value"};
    return std::find(std::begin(kResults), std::end(kResults), word) != std::end(kResults);
}

bool IsParameter(const std::string& word)
{
    constexpr const char* kTypes[] = {"real",   "int",    "bool",  "text", "value",
                                      "target", "sprite", "sound", "room", "object"};
    return std::find(std::begin(kTypes), std::end(kTypes), word) != std::end(kTypes);
}

// "(int", "key,", "text", "name)": the words of a parameter list.
std::vector<Parameter> ReadParameters(const Row& row, const std::vector<std::string>& words,
                                      size_t from)
{
    std::vector<Parameter> out;
    std::string list;
    for (size_t i = from; i < words.size(); ++i) list += (i == from ? "" : " ") + words[i];
    if (list.size() < 2 || list.front() != '(' || list.back() != ')') {
        row.Fail("expected (type name, ...) behind the result");
    }
    list = list.substr(1, list.size() - 2);
    while (!list.empty()) {
        size_t comma = list.find(',');
        std::string part = list.substr(0, comma);
        list = comma == std::string::npos ? "" : list.substr(comma + 1);
        part.erase(0, part.find_first_not_of(' '));
        size_t blank = part.find(' ');
        if (blank == std::string::npos || !IsParameter(part.substr(0, blank))) {
            row.Fail("expected a parameter such as `real count`, not " + part);
        }
        out.push_back({part.substr(0, blank), part.substr(blank + 1)});
    }
    return out;
}

}  // namespace

void Tables_Functions(Tables& tables, const std::vector<Row>& rows)
{
    Names names;
    for (const Row& row : rows) {
        FunctionRow out;
        size_t equals = row.name.find('=');
        out.name = row.name.substr(0, equals);
        out.word = equals == std::string::npos ? out.name : row.name.substr(equals + 1);
        names.Add(row, out.name);
        out.direct = row.Flag("direct");
        if (!out.direct) {
            std::vector<std::string> words = row.Words();
            size_t at = 0;
            if (at < words.size() && words[at] == "self") {
                out.self = true;
                ++at;
            }
            if (at + 2 >= words.size() || words[at] != ":" || !IsResult(words[at + 1])) {
                row.Fail("expected `name [self] : result (type name, ...)` or `name direct`");
            }
            out.result = words[at + 1];
            out.parameters = ReadParameters(row, words, at + 2);
        }
        row.Done();
        tables.functions.push_back(std::move(out));
    }
}

}  // namespace pack
