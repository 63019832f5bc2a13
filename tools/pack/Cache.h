#pragma once
// Rendered pictures and packed pages of the last run, so that a build after a small
// change renders only what changed. An entry is found by a hash of all that it was made
// from; a damaged or missing one is made anew, and a run forgets what it did not use.

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/pack/Pictures.h"

namespace pack {

// FNV-1a, 64 bits (Fowler, Noll, Vo), over several pieces.
class Hash {
public:
    Hash& Add(const void* data, size_t size);
    Hash& Add(const std::string& text) { return Add(text.data(), text.size()).Add(text.size()); }
    Hash& Add(uint64_t number) { return Add(&number, sizeof(number)); }
    uint64_t Value() const { return value_; }

private:
    uint64_t value_ = 14695981039346656037ULL;
};

class Cache {
public:
    // Without a folder nothing is kept.
    explicit Cache(const std::string& folder);

    std::optional<std::vector<Image>> FindImages(uint64_t key);
    void KeepImages(uint64_t key, const std::vector<Image>& images);
    std::optional<std::vector<uint8_t>> FindBytes(uint64_t key);
    void KeepBytes(uint64_t key, const std::vector<uint8_t>& bytes);

    // Removes the entries that were neither found nor kept.
    void Prune() const;

private:
    std::string PathOf(uint64_t key);

    std::string folder_;
    std::set<std::string> used_;
};

}  // namespace pack
