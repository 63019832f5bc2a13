#include "tests/Files/Graphics/support_Pictures.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Files/Graphics/Bitmap.h"
#include "Platform/MemoryManager.h"

namespace {

// The largest step between two pixels in one channel.
int32_t Apart(uint32_t a, uint32_t b)
{
    int32_t most = 0;
    for (int32_t shift = 0; shift < 32; shift += 8)
        most = std::max(most, std::abs(static_cast<int32_t>(a >> shift & 0xFF) -
                                       static_cast<int32_t>(b >> shift & 0xFF)));
    return most;
}

bool Write(const std::string& path, const KeptPicture& picture)
{
    std::vector<uint32_t> swapped = picture.pixels;
    for (uint32_t& pixel : swapped)
        pixel = (pixel & 0xFF00FF00U) | (pixel >> 16 & 0xFFU) | (pixel & 0xFFU) << 16;
    return WritePNG(path.c_str(), reinterpret_cast<const uint8_t*>(swapped.data()), picture.width,
                    picture.height);
}

bool Read(const std::string& path, KeptPicture* picture)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    uint8_t* pixels = ReadPNG_Pixels(reinterpret_cast<const uint8_t*>(bytes.data()),
                                     static_cast<uint32_t>(bytes.size()), &picture->width,
                                     &picture->height, false);
    if (!pixels) return false;
    picture->pixels.resize(static_cast<size_t>(picture->width) *
                           static_cast<size_t>(picture->height));
    std::memcpy(picture->pixels.data(), pixels, picture->pixels.size() * 4);
    MemoryManager::Free(pixels);
    return true;
}

testing::AssertionResult Tell(const KeptPicture& drawn, const KeptPicture& kept)
{
    size_t first = 0, count = 0;
    for (size_t i = kept.pixels.size(); i-- > 0;) {
        if (drawn.pixels[i] == kept.pixels[i]) continue;
        first = i;
        count++;
    }
    char text[160];
    std::snprintf(text, sizeof text, "%zu pixels differ, the first at (%zu, %zu): %08X, kept %08X",
                  count, first % static_cast<size_t>(kept.width),
                  first / static_cast<size_t>(kept.width), drawn.pixels[first], kept.pixels[first]);
    return testing::AssertionFailure() << text;
}

}  // namespace

double ShareApart(const KeptPicture& a, const KeptPicture& b, int32_t tolerance)
{
    if (a.width != b.width || a.height != b.height || a.pixels.empty()) return 1;
    size_t count = 0;
    for (size_t i = 0; i < a.pixels.size(); i++)
        count += Apart(a.pixels[i], b.pixels[i]) > tolerance;
    return static_cast<double>(count) / static_cast<double>(a.pixels.size());
}

KeptPicture DifferenceOf(const KeptPicture& a, const KeptPicture& b)
{
    KeptPicture difference = a;
    for (size_t i = 0; i < a.pixels.size(); i++) {
        const int32_t apart = Apart(a.pixels[i], b.pixels[i]);
        const auto grey = static_cast<uint32_t>(apart == 0 ? 0 : std::min(64 + apart, 255));
        difference.pixels[i] = 0xFF000000U | grey * 0x010101U;
    }
    return difference;
}

std::string WriteAside(const std::string& name, const KeptPicture& picture)
{
    std::filesystem::create_directories(PICTURES_ASIDE);
    const std::string path = std::string(PICTURES_ASIDE) + "/" + name + ".png";
    Write(path, picture);
    return path;
}

testing::AssertionResult MatchesKept(const std::string& name, const KeptPicture& drawn)
{
    const std::string path = std::string(PICTURES_KEPT) + "/" + name + ".png";
    if (std::getenv("KEEP_PICTURES"))
        return Write(path, drawn) ? testing::AssertionSuccess()
                                  : testing::AssertionFailure() << path << " can't be written";
    KeptPicture kept;
    if (!Read(path, &kept))
        return testing::AssertionFailure()
               << path << " can't be read; drawn: " << WriteAside(name + "_drawn", drawn);
    if (kept == drawn) return testing::AssertionSuccess();
    const std::string aside = WriteAside(name + "_drawn", drawn);
    WriteAside(name + "_kept", kept);
    if (kept.width != drawn.width || kept.height != drawn.height)
        return testing::AssertionFailure() << "the sizes differ; drawn: " << aside;
    WriteAside(name + "_difference", DifferenceOf(drawn, kept));
    return Tell(drawn, kept) << "; drawn, kept and difference stand in " << PICTURES_ASIDE;
}
