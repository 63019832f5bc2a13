#include "tools/pack/Code.h"

#include <algorithm>
#include <set>

#include "tools/pack/Events.h"

namespace pack {
namespace {

int AddRow(CodePlan& plan, const CodeRowPlan& row, bool later)
{
    if (later) {
        plan.later.push_back(row.name);
        return -1;
    }
    plan.rows.push_back(row);
    return static_cast<int>(plan.rows.size()) - 1;
}

std::vector<int> PlanEvents(const Tables& tables, const ObjectRow& object, CodePlan& plan)
{
    std::vector<int> ids;
    for (const EventRow& event : object.events) {
        const ObjectRow& owner =
            event.shared < 0 ? object : tables.objects[static_cast<size_t>(event.shared)];
        CodeRowPlan row;
        row.name = "vxl_Object_" + object.object.name + "_" + Event_Word(event.type) + "_" +
                   std::to_string(event.subtype);
        row.function = "vxl_Object_" + owner.object.name + "_" + event.word;
        ids.push_back(AddRow(plan, row, event.later));
    }
    return ids;
}

// ---- Names.h

constexpr const char* kMade = "// Made by the packer from the tables of content.\n";

void Constants(std::string& out, const char* type, const Names& names)
{
    for (int i = 0; i < names.Count(); ++i) {
        out += std::string("inline constexpr ") + type + " " +
               names.List()[static_cast<size_t>(i)] + "{" + std::to_string(i) + "};\n";
    }
}

const char* HandleOf(VariableKind kind)
{
    switch (kind) {
        case VariableKind::global:
            return "Global";
        case VariableKind::instance:
            return "InstanceVar";
        case VariableKind::builtin:
            return "BuiltinVar";
        default:
            return "BuiltinGlobal";
    }
}

// ---- Builtins.h

// The ways to write a parameter: names and values also take a number.
std::vector<std::string> TypesOf(const std::string& type)
{
    if (type == "real") return {"double"};
    if (type == "int") return {"int32_t"};
    if (type == "bool") return {"bool"};
    if (type == "text") return {"const char*"};
    if (type == "value") return {"const Value&", "double"};
    if (type == "target") return {"Target"};
    std::string named = type;
    named[0] = static_cast<char>(named[0] - 'a' + 'A');
    return {named, "double"};
}

std::string ResultType(const std::string& result)
{
    if (result == "none") return "void";
    if (result == "real") return "double";
    if (result == "bool") return "bool";
    return "Value";
}

// `variant` picks among the ways to write the named parameters.
std::string Wrapper(const FunctionRow& function, size_t slot, size_t variant)
{
    std::string parameters = function.self ? "CInstance* self, " : "";
    std::string arguments;
    for (const Parameter& parameter : function.parameters) {
        std::vector<std::string> types = TypesOf(parameter.type);
        parameters += types[std::min(variant, types.size() - 1)] + " " + parameter.name + ", ";
        arguments += ", " + parameter.name;
    }
    std::string call = "seam::Call(" + std::to_string(slot) + ", " +
                       (function.self ? "self" : "Frame::Self()") + ", line" + arguments + ")";
    if (function.result == "bool") call = "static_cast<bool>(" + call + ")";
    return "inline " + ResultType(function.result) + " " + function.word + "(" + parameters +
           "Here line = Here::current())\n{\n    " + (function.result == "none" ? "" : "return ") +
           call + ";\n}\n";
}

bool Named(const FunctionRow& function)
{
    return std::any_of(function.parameters.begin(), function.parameters.end(),
                       [](const Parameter& p) { return TypesOf(p.type).size() > 1; });
}

// ---- CodeTable.cpp

void Slots(std::string& out, const char* table, const std::vector<std::string>& names)
{
    std::string records = std::string("SlotRecord ") + table + "Records[] = {\n";
    std::string pointers = std::string("SlotRecord* ") + table + "Slots[] = {\n";
    for (size_t i = 0; i < names.size(); ++i) {
        records += "    {\"" + names[i] + "\", -1},\n";
        pointers += std::string("    &") + table + "Records[" + std::to_string(i) + "],\n";
    }
    out += records + "};\n" + pointers + "    nullptr,\n};\n\n";
}

}  // namespace

CodePlan Code_Plan(const Tables& tables)
{
    CodePlan plan;
    for (const ScriptRow& script : tables.scripts) {
        std::string name = "vxl_Script_" + script.name;
        plan.scripts.push_back(AddRow(plan, {name, name, true}, script.later));
    }
    for (const ObjectRow& object : tables.objects) {
        plan.events.push_back(PlanEvents(tables, object, plan));
    }
    for (const RoomRow& room : tables.rooms) {
        std::string name = "vxl_Room_" + room.name + "_Create";
        plan.rooms.push_back(room.hasCode ? AddRow(plan, {name, name, false}, room.codeLater) : -1);
    }
    return plan;
}

std::string Code_Names(const Tables& tables, const CodePlan& plan)
{
    std::string out = "#pragma once\n";
    out += kMade;
    out +=
        "// Names of the archive and of the game's variables, and the functions of the rules.\n\n"
        "#include \"Files/Code/Seam.h\"\n\n"
        "namespace names {\n\n";
    Constants(out, "Object", tables.objectNames);
    Constants(out, "Sprite", tables.spriteNames);
    Constants(out, "Background", tables.backgroundNames);
    Constants(out, "Sound", tables.soundNames);
    Constants(out, "Font", tables.fontNames);
    Constants(out, "Room", tables.roomNames);
    Constants(out, "Script", tables.scriptNames);
    out += "\n// ---- variables, by slot\n";
    for (size_t i = 0; i < tables.variables.size(); ++i) {
        const VariableRow& variable = tables.variables[i];
        out += std::string("inline constexpr ") + HandleOf(variable.kind) + " " + variable.word +
               "{" + std::to_string(i) + "};\n";
    }
    out += "\n}  // namespace names\n\n// ---- functions of the rules\n";
    std::set<std::string> declared;
    for (const CodeRowPlan& row : plan.rows) {
        if (!declared.insert(row.function).second) continue;
        out += row.script ? "RValue& " + row.function +
                                "(CInstance* self, CInstance* other, RValue& result, int argc,\n"
                                "    RValue** args);\n"
                          : "void " + row.function + "(CInstance* self, CInstance* other);\n";
    }
    return out;
}

std::string Code_Builtins(const Tables& tables)
{
    std::string out = "#pragma once\n";
    out += kMade;
    out +=
        "// The built-ins that the game calls, as typed functions. Those that take the acting\n"
        "// instance have it first; the others act for the instance of the running function.\n\n"
        "#include \"Files/Code/Seam.h\"\n\n";
    for (size_t i = 0; i < tables.functions.size(); ++i) {
        const FunctionRow& function = tables.functions[i];
        if (function.direct) continue;
        out += Wrapper(function, i, 0);
        if (Named(function)) out += Wrapper(function, i, 1);
    }
    return out;
}

std::string Code_Table(const Tables& tables, const CodePlan& plan)
{
    std::string out = kMade;
    out +=
        "// The attachment of the game: its code table, variables and built-ins.\n\n"
        "#include \"Names.h\"\n";
    out +=
        "#include \"game/Attachment.h\"\n\nnamespace {\n\n"
        "// The number of a row is the code id of archive records.\n"
        "const CodeRow g_GameCode[] = {\n";
    for (const CodeRowPlan& row : plan.rows) {
        out += "    {\"" + row.name + "\", " + row.function + "},\n";
    }
    if (plan.rows.empty()) out += "    {\"\", static_cast<EventFunction>(nullptr)},\n";
    out += "};\n\n";
    std::vector<std::string> variables, functions;
    for (const VariableRow& variable : tables.variables) variables.push_back(variable.name);
    for (const FunctionRow& function : tables.functions) functions.push_back(function.name);
    Slots(out, "var", variables);
    Slots(out, "func", functions);
    std::string user = std::to_string(tables.UserVariables());
    out +=
        "}  // namespace\n\nRunnerData Game_Attachment()\n{\n"
        "    // Ids of an earlier start in this process do not hold.\n"
        "    for (SlotRecord& slot : varRecords) slot.id = -1;\n"
        "    for (SlotRecord& slot : funcRecords) slot.id = -1;\n"
        "    RunnerData data;\n"
        "    data.globalVarCount = " +
        user +
        ";\n"
        "    data.instanceVarCount = " +
        user +
        ";\n"
        "    data.codeCount = " +
        std::to_string(plan.rows.size()) +
        ";\n"
        "    data.varSlots = varSlots;\n"
        "    data.funcSlots = funcSlots;\n"
        "    data.codeTable = g_GameCode;\n"
        "    data.traceHead = &g_TraceHead;\n"
        "    return data;\n}\n";
    return out;
}

}  // namespace pack
