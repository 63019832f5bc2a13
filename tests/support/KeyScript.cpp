#include "tests/support/KeyScript.h"

#include <cctype>
#include <cstdlib>
#include <map>
#include <sstream>

namespace {

constexpr int32_t kF1 = 112;

int32_t KeyNumber(const std::string& name)
{
    static const std::map<std::string, int32_t> named = {
        {"Left", 37},  {"Up", 38},     {"Right", 39}, {"Down", 40},
        {"Enter", 13}, {"Escape", 27}, {"Back", 8},   {"Space", 32}};
    if (name.size() == 1 && isalnum(static_cast<unsigned char>(name[0])))
        return toupper(static_cast<unsigned char>(name[0]));
    if (const auto found = named.find(name); found != named.end()) return found->second;
    if (name.size() > 1 && name[0] == 'F') {
        const int number = atoi(name.c_str() + 1);
        if (number >= 1 && number <= 12) return kF1 + number - 1;
    }
    return -1;
}

bool ParsePiece(const std::string& piece, KeyHold* hold)
{
    const size_t star = piece.find('*');
    if (star != std::string::npos) {
        hold->frames = atoi(piece.c_str() + star + 1);
        if (hold->frames < 1) return false;
    }
    const std::string keys = piece.substr(0, star);
    if (keys == ".") return true;
    std::istringstream names(keys);
    for (std::string name; std::getline(names, name, '+');) {
        const int32_t key = KeyNumber(name);
        if (key < 0) return false;
        hold->keys.push_back(key);
    }
    return !hold->keys.empty();
}

}  // namespace

bool KeyScript_Parse(const std::string& text, std::vector<KeyHold>* holds, std::string* error)
{
    std::istringstream pieces(text);
    for (std::string piece; pieces >> piece;) {
        KeyHold hold;
        if (!ParsePiece(piece, &hold)) {
            *error = "\"" + piece + "\" is no hold: expected a key or a dot, then perhaps *frames";
            return false;
        }
        holds->push_back(hold);
    }
    return true;
}
