#include "tools/levels/Level_File.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "tools/levels/Play.h"

namespace levels {
namespace {

int NumberOf(const std::string& name)
{
    const size_t digits = name.find_last_not_of("0123456789");
    const std::string number = digits == std::string::npos ? name : name.substr(digits + 1);
    return number.empty() ? 0 : std::atoi(number.c_str());
}

// Keys in lines that are easy to read.
std::string Wrapped(const std::string& keys)
{
    std::istringstream words(ShortKeys(keys));
    std::string text, line;
    for (std::string word; words >> word;) {
        if (line.size() + word.size() > 84) {
            text += "solution" + line + "\n";
            line.clear();
        }
        line += " " + word;
    }
    return text + "solution" + line + "\n";
}

}  // namespace

LevelFile LevelFile_Parse(const pack::Tables& tables, const std::string& name,
                          const std::string& text)
{
    LevelFile file;
    const std::string stem = std::filesystem::path(name).stem().string();
    file.number = NumberOf(stem);
    try {
        file.level = pack::Level_Parse(tables, name, text);
        file.fault = Board_Parse(file.level.map, file.board);
    } catch (const pack::ContentError& error) {
        file.fault = error.what();
    }
    return file;
}

LevelFile LevelFile_Read(const pack::Tables& tables, const std::string& path)
{
    try {
        return LevelFile_Parse(tables, path, pack::File_Text(path, path));
    } catch (const pack::ContentError& error) {
        LevelFile file;
        file.number = NumberOf(std::filesystem::path(path).stem().string());
        file.fault = error.what();
        return file;
    }
}

std::vector<std::string> LevelFile_List(const std::string& folder)
{
    std::vector<std::string> paths;
    std::error_code failed;
    for (const auto& entry : std::filesystem::directory_iterator(folder, failed)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind("level", 0) == 0 && entry.path().extension() == ".txt") {
            paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string LevelFile_Text(const NewLevel& level)
{
    std::string text = "title   " + level.title + "\nworld   " + std::to_string(level.world) +
                       "\nseed    " + std::to_string(level.seed) + "\n";
    if (level.rain) text += "weather rain\n";
    if (!level.made.empty()) text += "made    " + level.made + "\n";
    if (level.optimum) text += "optimum " + std::to_string(level.optimum) + "\n";
    if (level.bound) text += "bound   " + std::to_string(level.bound) + "\n";
    text += "\nmap\n";
    for (const std::string& line : Board_Map(level.board, level.gateRow)) text += line + "\n";
    return text + "\n" + Wrapped(level.keys);
}

}  // namespace levels
