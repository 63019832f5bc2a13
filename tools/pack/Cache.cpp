#include "tools/pack/Cache.h"

#include <zlib.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace pack {
namespace {

// Ahead of each entry; the number rises when pictures come out otherwise from the same
// files.
constexpr uint32_t kMark = 0x58500001;
constexpr int kQuick = 1;  // compression level: the time counts, not the size

struct Head {
    uint32_t mark = kMark, size = 0, check = 0;  // size and CRC-32 of the bytes, unpacked
};

void Append(std::vector<uint8_t>& bytes, const void* data, size_t size)
{
    const auto* from = static_cast<const uint8_t*>(data);
    bytes.insert(bytes.end(), from, from + size);
}

uint32_t Check(const std::vector<uint8_t>& bytes)
{
    return static_cast<uint32_t>(crc32(0, bytes.data(), static_cast<uInt>(bytes.size())));
}

}  // namespace

Hash& Hash::Add(const void* data, size_t size)
{
    const auto* bytes = static_cast<const uint8_t*>(data);
    for (size_t i = 0; i < size; ++i) value_ = (value_ ^ bytes[i]) * 1099511628211ULL;
    return *this;
}

Cache::Cache(const std::string& folder) : folder_(folder)
{
    std::error_code failed;
    if (!folder_.empty()) std::filesystem::create_directories(folder_, failed);
}

std::string Cache::PathOf(uint64_t key)
{
    static const char* const kDigits = "0123456789abcdef";
    std::string name;
    for (int shift = 60; shift >= 0; shift -= 4) name += kDigits[key >> shift & 15];
    used_.insert(name);
    return folder_ + "/" + name;
}

std::optional<std::vector<uint8_t>> Cache::FindBytes(uint64_t key)
{
    if (folder_.empty()) return {};
    std::ifstream stream(PathOf(key), std::ios::binary);
    Head head;
    if (!stream.read(reinterpret_cast<char*>(&head), sizeof(head)) || head.mark != kMark) return {};
    const std::vector<char> packed{std::istreambuf_iterator<char>(stream), {}};
    std::vector<uint8_t> bytes(head.size);
    uLongf size = head.size;
    const int result =
        uncompress(bytes.data(), &size, reinterpret_cast<const Bytef*>(packed.data()),
                   static_cast<uLong>(packed.size()));
    if (result != Z_OK || size != head.size || Check(bytes) != head.check) return {};
    return bytes;
}

void Cache::KeepBytes(uint64_t key, const std::vector<uint8_t>& bytes)
{
    if (folder_.empty()) return;
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::vector<uint8_t> packed(size);
    if (compress2(packed.data(), &size, bytes.data(), static_cast<uLong>(bytes.size()), kQuick) !=
        Z_OK) {
        return;
    }
    Head head;
    head.size = static_cast<uint32_t>(bytes.size());
    head.check = Check(bytes);
    std::ofstream stream(PathOf(key), std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(&head), sizeof(head));
    stream.write(reinterpret_cast<const char*>(packed.data()), static_cast<std::streamsize>(size));
}

std::optional<std::vector<Image>> Cache::FindImages(uint64_t key)
{
    const std::optional<std::vector<uint8_t>> bytes = FindBytes(key);
    if (!bytes) return {};
    std::vector<Image> images;
    for (size_t at = 0; at < bytes->size();) {
        Image image;
        int32_t size[2] = {};
        if (bytes->size() - at < sizeof(size)) return {};
        std::memcpy(size, bytes->data() + at, sizeof(size));
        at += sizeof(size);
        const size_t pixels = static_cast<size_t>(size[0]) * static_cast<size_t>(size[1]) * 4;
        if (bytes->size() - at < pixels) return {};
        image.width = size[0];
        image.height = size[1];
        image.bgra.assign(bytes->begin() + static_cast<std::ptrdiff_t>(at),
                          bytes->begin() + static_cast<std::ptrdiff_t>(at + pixels));
        at += pixels;
        images.push_back(std::move(image));
    }
    return images;
}

void Cache::KeepImages(uint64_t key, const std::vector<Image>& images)
{
    if (folder_.empty()) return;
    std::vector<uint8_t> bytes;
    for (const Image& image : images) {
        const int32_t size[2] = {image.width, image.height};
        Append(bytes, size, sizeof(size));
        Append(bytes, image.bgra.data(), image.bgra.size());
    }
    KeepBytes(key, bytes);
}

void Cache::Prune() const
{
    if (folder_.empty()) return;
    std::error_code failed;
    std::vector<std::filesystem::path> old;
    for (const auto& entry : std::filesystem::directory_iterator(folder_, failed)) {
        if (!used_.count(entry.path().filename().string())) old.push_back(entry.path());
    }
    for (const std::filesystem::path& path : old) std::filesystem::remove(path, failed);
}

}  // namespace pack
