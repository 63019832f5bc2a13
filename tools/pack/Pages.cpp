#include "tools/pack/Pages.h"

#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <map>

namespace pack {
namespace {

constexpr int kColourReach = kPageBleed + 1;  // pixels that edge colours spread under clear ones

size_t Offset(const Image& image, int x, int y)
{
    return (static_cast<size_t>(y) * static_cast<size_t>(image.width) + static_cast<size_t>(x)) * 4;
}

uint8_t AlphaAt(const Image& image, int x, int y)
{
    return image.bgra[Offset(image, x, y) + 3];
}

Image Blank(int width, int height)
{
    Image image;
    image.width = width;
    image.height = height;
    image.bgra.resize(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
    return image;
}

Image Crop(const Image& image, int left, int top, int width, int height)
{
    Image part = Blank(width, height);
    for (int y = 0; y < height; ++y) {
        const auto from =
            image.bgra.begin() + static_cast<std::ptrdiff_t>(Offset(image, left, top + y));
        std::copy(from, from + static_cast<std::ptrdiff_t>(width) * 4,
                  part.bgra.begin() + static_cast<std::ptrdiff_t>(Offset(part, 0, y)));
    }
    return part;
}

// FNV-1a, 64 bits (Fowler, Noll, Vo).
uint64_t HashOf(const Image& image)
{
    uint64_t hash = 14695981039346656037ULL;
    for (uint8_t byte : image.bgra) hash = (hash ^ byte) * 1099511628211ULL;
    return hash;
}

// The mean colour of the coloured neighbours, into the clear pixel (x, y).
bool TakeColour(const Image& image, const std::vector<uint8_t>& coloured, int x, int y,
                uint8_t* out)
{
    unsigned sum[3] = {}, count = 0;
    for (int ny = std::max(0, y - 1); ny <= std::min(image.height - 1, y + 1); ++ny) {
        for (int nx = std::max(0, x - 1); nx <= std::min(image.width - 1, x + 1); ++nx) {
            const size_t at = Offset(image, nx, ny);
            if (!coloured[at / 4]) continue;
            for (size_t i = 0; i < 3; ++i) sum[i] += image.bgra[at + i];
            ++count;
        }
    }
    if (count == 0) return false;
    for (size_t i = 0; i < 3; ++i) out[i] = static_cast<uint8_t>((sum[i] + count / 2) / count);
    return true;
}

// Filtering mixes a clear pixel's colour into its neighbours, so the clear pixels
// next to the shape take the shape's colours; further ones are zero.
void SpreadColours(Image& image)
{
    std::vector<uint8_t> coloured(image.bgra.size() / 4);
    for (size_t i = 0; i < coloured.size(); ++i) {
        coloured[i] = image.bgra[i * 4 + 3] != 0;
        if (!coloured[i])
            std::fill_n(image.bgra.begin() + static_cast<std::ptrdiff_t>(i * 4), 4, uint8_t{0});
    }
    for (int pass = 0; pass < kColourReach; ++pass) {
        std::vector<uint8_t> next = coloured;
        for (int y = 0; y < image.height; ++y)
            for (int x = 0; x < image.width; ++x) {
                const size_t at = Offset(image, x, y);
                if (!coloured[at / 4] && TakeColour(image, coloured, x, y, &image.bgra[at]))
                    next[at / 4] = 1;
            }
        coloured = next;
    }
}

// The picture with kPageBleed more pixels on each side. Where the picture reached
// its own border they repeat the border, so that it can be laid edge to edge; where
// a clear border was trimmed they are clear.
Image Bleed(const Image& image, const bool (&clear)[4])
{
    Image out = Blank(image.width + 2 * kPageBleed, image.height + 2 * kPageBleed);
    for (int y = 0; y < out.height; ++y) {
        for (int x = 0; x < out.width; ++x) {
            const int fromX = std::clamp(x - kPageBleed, 0, image.width - 1);
            const int fromY = std::clamp(y - kPageBleed, 0, image.height - 1);
            const bool clearHere = (clear[0] && x < kPageBleed) || (clear[1] && y < kPageBleed) ||
                                   (clear[2] && x >= kPageBleed + image.width) ||
                                   (clear[3] && y >= kPageBleed + image.height);
            if (clearHere) continue;
            std::copy_n(&image.bgra[Offset(image, fromX, fromY)], 4, &out.bgra[Offset(out, x, y)]);
        }
    }
    SpreadColours(out);
    return out;
}

}  // namespace

int PageFiller::Add(const Image& image, const std::string& group, Trim trim)
{
    Source source;
    source.group = group;
    int left = 0, top = 0, right = image.width - 1, bottom = image.height - 1;
    if (trim == Trim::borders) Pages_Box({image}, left, top, right, bottom);
    source.clear[0] = left > 0;
    source.clear[1] = top > 0;
    source.clear[2] = right < image.width - 1;
    source.clear[3] = bottom < image.height - 1;
    source.image = Crop(image, left, top, right - left + 1, bottom - top + 1);

    archive::PageEntry& entry = source.entry;
    entry.targetX = static_cast<uint16_t>(left);
    entry.targetY = static_cast<uint16_t>(top);
    entry.width = entry.targetWidth = static_cast<uint16_t>(source.image.width);
    entry.height = entry.targetHeight = static_cast<uint16_t>(source.image.height);
    entry.sourceWidth = static_cast<uint16_t>(image.width);
    entry.sourceHeight = static_cast<uint16_t>(image.height);
    entry.page = -1;
    sources_.push_back(std::move(source));
    return static_cast<int>(sources_.size()) - 1;
}

// Best short side fit of the maximal free rectangles (Jukka Jylänki, "A Thousand
// Ways to Pack the Bin", 2010), without turning. Width 0 when there is no place.
PageFiller::Rect PageFiller::FindPlace(const Sheet& sheet, int width, int height)
{
    Rect best{0, 0, 0, 0};
    int bestShort = kPageSize + 1, bestLong = kPageSize + 1;
    for (const Rect& rect : sheet.free) {
        const int restX = rect.width - width, restY = rect.height - height;
        if (restX < 0 || restY < 0) continue;
        const int shortSide = std::min(restX, restY), longSide = std::max(restX, restY);
        if (shortSide > bestShort || (shortSide == bestShort && longSide >= bestLong)) continue;
        best = {rect.x, rect.y, width, height};
        bestShort = shortSide;
        bestLong = longSide;
    }
    return best;
}

void PageFiller::Occupy(Sheet& sheet, const Rect& rect)
{
    const int right = rect.x + rect.width, bottom = rect.y + rect.height;
    std::vector<Rect> pieces;
    for (const Rect& old : sheet.free) {
        const int oldRight = old.x + old.width, oldBottom = old.y + old.height;
        if (rect.x >= oldRight || right <= old.x || rect.y >= oldBottom || bottom <= old.y) {
            pieces.push_back(old);
            continue;
        }
        if (rect.x > old.x) pieces.push_back({old.x, old.y, rect.x - old.x, old.height});
        if (right < oldRight) pieces.push_back({right, old.y, oldRight - right, old.height});
        if (rect.y > old.y) pieces.push_back({old.x, old.y, old.width, rect.y - old.y});
        if (bottom < oldBottom) pieces.push_back({old.x, bottom, old.width, oldBottom - bottom});
    }
    const auto inside = [](const Rect& a, const Rect& b) {
        return a.x >= b.x && a.y >= b.y && a.x + a.width <= b.x + b.width &&
               a.y + a.height <= b.y + b.height;
    };
    sheet.free.clear();
    for (size_t i = 0; i < pieces.size(); ++i) {
        bool kept = true;
        for (size_t j = 0; j < pieces.size() && kept; ++j)
            if (i != j && inside(pieces[i], pieces[j]))
                kept = inside(pieces[j], pieces[i]) && i < j;  // of two equal ones the first stays
        if (kept) sheet.free.push_back(pieces[i]);
    }
    sheet.used += static_cast<long>(rect.width) * rect.height;
}

bool PageFiller::PlaceTogether(const std::vector<int>& members, int page)
{
    Sheet trial = pages_[static_cast<size_t>(page)];
    std::vector<Rect> places;
    for (int index : members) {
        const Image& image = sources_[static_cast<size_t>(index)].image;
        const Rect rect =
            FindPlace(trial, image.width + 2 * kPageBleed, image.height + 2 * kPageBleed);
        if (rect.width == 0) return false;
        Occupy(trial, rect);
        places.push_back(rect);
    }
    for (size_t i = 0; i < members.size(); ++i) {
        archive::PageEntry& entry = sources_[static_cast<size_t>(members[i])].entry;
        entry.x = static_cast<uint16_t>(places[i].x + kPageBleed);
        entry.y = static_cast<uint16_t>(places[i].y + kPageBleed);
        entry.page = static_cast<int16_t>(page);
    }
    pages_[static_cast<size_t>(page)] = trial;
    return true;
}

// On the first page with room for all; a group larger than a page is split.
void PageFiller::PlaceGroup(const std::vector<int>& members)
{
    for (int page = 0; page < PageCount(); ++page)
        if (PlaceTogether(members, page)) return;
    pages_.push_back({{{0, 0, kPageSize, kPageSize}}, 0});
    if (PlaceTogether(members, PageCount() - 1)) return;
    pages_.pop_back();
    for (int index : members) PlaceGroup({index});
}

// The indices to place, group by group, large before small in both.
std::vector<std::vector<int>> PageFiller::Groups() const
{
    const auto area = [this](int index) {
        const Image& image = sources_[static_cast<size_t>(index)].image;
        return static_cast<long>(image.width) * image.height;
    };
    std::vector<std::vector<int>> groups;
    std::map<std::string, size_t> byName;
    for (int i = 0; i < static_cast<int>(sources_.size()); ++i) {
        const Source& source = sources_[static_cast<size_t>(i)];
        if (source.sameAs >= 0) continue;
        size_t at = groups.size();
        if (!source.group.empty()) at = byName.emplace(source.group, at).first->second;
        if (at == groups.size()) groups.emplace_back();
        groups[at].push_back(i);
    }
    for (std::vector<int>& group : groups)
        std::stable_sort(group.begin(), group.end(),
                         [&](int a, int b) { return area(a) > area(b); });
    const auto total = [&](const std::vector<int>& group) {
        long sum = 0;
        for (int index : group) sum += area(index);
        return sum;
    };
    std::stable_sort(groups.begin(), groups.end(),
                     [&](const auto& a, const auto& b) { return total(a) > total(b); });
    return groups;
}

bool PageFiller::Fill(std::string& error)
{
    pages_.clear();
    constexpr int largest = kPageSize - 2 * kPageBleed;
    std::multimap<uint64_t, int> known;
    for (int i = 0; i < static_cast<int>(sources_.size()); ++i) {
        Source& source = sources_[static_cast<size_t>(i)];
        if (source.image.width > largest || source.image.height > largest) {
            error = "picture " + std::to_string(i) + " of group \"" + source.group + "\" is " +
                    std::to_string(source.image.width) + " by " +
                    std::to_string(source.image.height) + " pixels: expected at most " +
                    std::to_string(largest) + " each way";
            return false;
        }
        const uint64_t hash = HashOf(source.image);
        source.sameAs = -1;
        for (auto [it, end] = known.equal_range(hash); it != end && source.sameAs < 0; ++it) {
            const Source& other = sources_[static_cast<size_t>(it->second)];
            if (other.image.width == source.image.width && other.image.bgra == source.image.bgra &&
                std::equal(other.clear, other.clear + 4, source.clear))
                source.sameAs = it->second;
        }
        if (source.sameAs < 0) known.emplace(hash, i);
    }
    for (const std::vector<int>& group : Groups()) PlaceGroup(group);
    for (Source& source : sources_) {
        if (source.sameAs < 0) continue;
        const archive::PageEntry& same = sources_[static_cast<size_t>(source.sameAs)].entry;
        source.entry.x = same.x;
        source.entry.y = same.y;
        source.entry.page = same.page;
    }
    return true;
}

const archive::PageEntry& PageFiller::Entry(int index) const
{
    return sources_[static_cast<size_t>(index)].entry;
}

Image PageFiller::Paint(int page) const
{
    Image sheet = Blank(kPageSize, kPageSize);
    for (const Source& source : sources_) {
        if (source.sameAs >= 0 || source.entry.page != page) continue;
        const Image bled = Bleed(source.image, source.clear);
        const int left = source.entry.x - kPageBleed, top = source.entry.y - kPageBleed;
        for (int y = 0; y < bled.height; ++y)
            std::copy_n(&bled.bgra[Offset(bled, 0, y)], static_cast<size_t>(bled.width) * 4,
                        &sheet.bgra[Offset(sheet, left, top + y)]);
    }
    return sheet;
}

std::vector<archive::Page> PageFiller::Encode(Cache& cache) const
{
    std::vector<archive::Page> pages;
    for (int page = 0; page < PageCount(); ++page) {
        archive::Page encoded;
        const Image image = Paint(page);
        const uint64_t key = Hash().Add("page").Add(image.bgra.data(), image.bgra.size()).Value();
        if (std::optional<std::vector<uint8_t>> known = cache.FindBytes(key)) {
            encoded.png = std::move(*known);
        } else {
            encoded.png = Pages_Png(image);
            cache.KeepBytes(key, encoded.png);
        }
        pages.push_back(std::move(encoded));
    }
    return pages;
}

double PageFiller::Usage() const
{
    if (pages_.empty()) return 0;
    double used = 0;
    for (const Sheet& sheet : pages_) used += static_cast<double>(sheet.used);
    return used / (static_cast<double>(pages_.size()) * kPageSize * kPageSize);
}

std::vector<uint8_t> Pages_Png(const Image& image)
{
    std::vector<uint8_t> file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return {};
    }
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep data, size_t size) {
            auto* out = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(writer));
            out->insert(out->end(), data, data + size);
        },
        [](png_structp) {});
    png_set_compression_level(png, 6);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_ALL_FILTERS);
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.width),
                 static_cast<png_uint_32>(image.height), 8, PNG_COLOR_TYPE_RGB_ALPHA,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_set_bgr(png);
    for (int y = 0; y < image.height; ++y) png_write_row(png, &image.bgra[Offset(image, 0, y)]);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

bool Pages_Box(const std::vector<Image>& frames, int& left, int& top, int& right, int& bottom)
{
    left = top = kPageSize * 64;
    right = bottom = -1;
    for (const Image& image : frames) {
        for (int y = 0; y < image.height; ++y) {
            for (int x = 0; x < image.width; ++x) {
                if (AlphaAt(image, x, y) == 0) continue;
                left = std::min(left, x);
                top = std::min(top, y);
                right = std::max(right, x);
                bottom = std::max(bottom, y);
            }
        }
    }
    if (right >= 0) return true;
    left = top = right = bottom = 0;
    return false;
}

std::vector<uint8_t> Pages_Mask(const Image& image)
{
    const size_t stride = (static_cast<size_t>(image.width) + 7) / 8;
    std::vector<uint8_t> mask(stride * static_cast<size_t>(image.height));
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            if (AlphaAt(image, x, y) == 0) continue;
            uint8_t& byte = mask[static_cast<size_t>(y) * stride + static_cast<size_t>(x / 8)];
            byte = static_cast<uint8_t>(byte | (0x80 >> (x % 8)));
        }
    }
    return mask;
}

std::vector<uint8_t> Pages_Mask(int width, int height, int left, int top, int right, int bottom)
{
    Image image = Blank(width, height);
    for (int y = std::max(0, top); y <= std::min(height - 1, bottom); ++y)
        for (int x = std::max(0, left); x <= std::min(width - 1, right); ++x)
            image.bgra[Offset(image, x, y) + 3] = 255;
    return Pages_Mask(image);
}

}  // namespace pack
