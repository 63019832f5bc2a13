#pragma once
// Hashes of the runs, kept in a file for each run beside this one: the state of the
// whole world at the levels' ends, and what each level's play looked like, a row a level:
// its name, the hash of its file, the hash of its play.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "tests/support/Solution.h"

class Hash {  // FNV-1a, 64 bits
public:
    void Add(const void* data, size_t size)
    {
        const auto* byte = static_cast<const unsigned char*>(data);
        for (size_t i = 0; i < size; ++i) value_ = (value_ ^ byte[i]) * 0x100000001B3ULL;
    }
    void Add(double number) { Add(&number, sizeof number); }
    void Add(uint64_t number) { Add(&number, sizeof number); }
    void Add(const std::string& text) { Add(text.data(), text.size()); }
    std::string text() const
    {
        char out[20];
        std::snprintf(out, sizeof out, "%016llx", static_cast<unsigned long long>(value_));
        return out;
    }

private:
    uint64_t value_ = 0xCBF29CE484222325ULL;
};

inline std::string LevelName(int level)
{
    char name[16];
    std::snprintf(name, sizeof name, "level%03d", level);
    return name;
}

// The map and the solution, without title, tiles and notes.
inline std::string LevelHash(int level)
{
    std::ifstream file(std::string(STAGE_CONTENT) + "/levels/" + LevelName(level) + ".txt");
    Hash hash;
    bool inMap = false;
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("map", 0) == 0) inMap = true;
        if (line.empty()) inMap = false;
        if (inMap) hash.Add(line);
    }
    hash.Add(Solution_Of(level));
    return hash.text();
}

// ---- a run's hashes
struct Kept {
    std::string level, play;  // of the level's file, and of its play
};
struct Hashes {
    std::string state;  // of the world at each level's end, folded
    std::map<std::string, Kept> levels;
};

inline std::filesystem::path HashFile(const std::string& run)
{
    return std::filesystem::path(STAGE_CONTENT) / ".." / "tests" / "playthrough" / (run + ".txt");
}

inline Hashes ReadHashes(const std::string& run)
{
    Hashes hashes;
    std::ifstream file(HashFile(run));
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream words(line);
        std::string name;
        words >> name;
        if (name == "state")
            words >> hashes.state;
        else
            words >> hashes.levels[name].level >> hashes.levels[name].play;
    }
    return hashes;
}

inline void WriteHashes(const std::string& run, const Hashes& hashes)
{
    std::ofstream file(HashFile(run));
    file << "# What this run of the campaign looks like. After a change that is meant,\n"
            "# MARLOWICK_KEEP_HASHES=1 build/release/tests/test_playthrough keeps it anew: the\n"
            "# state of the world at the levels' ends, and for each level its file and its play.\n";
    file << "state " << hashes.state << '\n';
    for (const auto& [name, kept] : hashes.levels)
        file << name << ' ' << kept.level << ' ' << kept.play << '\n';
}
