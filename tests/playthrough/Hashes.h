#pragma once
// Hashes of the runs: what each level's play looked like, kept in a file for each run
// beside this one, a row a level: its name, the hash of its file, the hash of its play.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
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

// ---- hashes of the runs, by level: that of the level's file, and that of its play
struct Kept {
    std::string level, play;
};
using Hashes = std::map<std::string, Kept>;

inline std::filesystem::path HashFile(const std::string& run)
{
    return std::filesystem::path(STAGE_CONTENT) / ".." / "tests" / "playthrough" / (run + ".txt");
}

inline Hashes ReadHashes(const std::string& run)
{
    Hashes hashes;
    std::ifstream file(HashFile(run));
    Kept kept;
    for (std::string name; file >> name >> kept.level >> kept.play;) hashes[name] = kept;
    return hashes;
}

inline void WriteHashes(const std::string& run, const Hashes& hashes)
{
    std::ofstream file(HashFile(run));
    for (const auto& [name, kept] : hashes)
        file << name << ' ' << kept.level << ' ' << kept.play << '\n';
}
