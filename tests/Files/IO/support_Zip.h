#pragma once
// Writes small ZIP archives, also ones that no packer would write.

#include <zlib.h>

#include <cstdint>
#include <string>
#include <vector>

struct ZipItem {
    std::string name, content;
    bool deflated = false;
    uint16_t flags = 0;
};

namespace zip_writer {

inline void Put(std::string* out, uint32_t value, int bytes)
{
    for (; bytes > 0; --bytes, value >>= 8) out->push_back(static_cast<char>(value & 0xFF));
}

inline std::string Packed(const ZipItem& item)
{
    if (!item.deflated) return item.content;
    std::string packed(item.content.size() + 64, '\0');
    z_stream stream = {};
    deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(item.content.data()));
    stream.avail_in = static_cast<uInt>(item.content.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

// What the local header and the directory say alike.
inline void PutHead(std::string* out, const ZipItem& item, const std::string& packed)
{
    Put(out, 20, 2);
    Put(out, item.flags, 2);
    Put(out, item.deflated ? 8 : 0, 2);
    Put(out, 0, 4);
    Put(out,
        static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(item.content.data()),
                                    static_cast<uInt>(item.content.size()))),
        4);
    Put(out, static_cast<uint32_t>(packed.size()), 4);
    Put(out, static_cast<uint32_t>(item.content.size()), 4);
    Put(out, static_cast<uint32_t>(item.name.size()), 2);
    Put(out, 0, 2);
}

}  // namespace zip_writer

inline std::string ZipOf(const std::vector<ZipItem>& items, const std::string& comment = "")
{
    using namespace zip_writer;
    std::string out, directory;
    for (const ZipItem& item : items) {
        const std::string packed = Packed(item);
        Put(&directory, 0x02014B50, 4);
        Put(&directory, 20, 2);
        PutHead(&directory, item, packed);
        Put(&directory, 0, 4);
        Put(&directory, 0, 2);
        Put(&directory, 0, 4);
        Put(&directory, static_cast<uint32_t>(out.size()), 4);
        directory += item.name;
        Put(&out, 0x04034B50, 4);
        PutHead(&out, item, packed);
        out += item.name + packed;
    }
    const auto start = static_cast<uint32_t>(out.size());
    out += directory;
    Put(&out, 0x06054B50, 4);
    Put(&out, 0, 4);
    Put(&out, static_cast<uint32_t>(items.size()), 2);
    Put(&out, static_cast<uint32_t>(items.size()), 2);
    Put(&out, static_cast<uint32_t>(directory.size()), 4);
    Put(&out, start, 4);
    Put(&out, static_cast<uint32_t>(comment.size()), 2);
    return out + comment;
}
