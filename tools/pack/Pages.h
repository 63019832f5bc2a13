#pragma once
// Fills texture pages with pictures: transparent borders are trimmed, equal
// pictures share a place, edges are bled so that linear filtering shows neither
// seams nor dark fringes, and pictures of one group stand on one page where they
// fit. The same pictures in the same order give the same bytes.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Files/Base/Archive_Content.h"
#include "tools/pack/Cache.h"
#include "tools/pack/Pictures.h"

namespace pack {

inline constexpr int kPageSize = 1024;  // width and height of a page, pixels
inline constexpr int kPageBleed = 2;    // pixels kept around each picture for its bled edge

// A picture that stays whole: fonts and tile sets, whose parts are addressed by
// their place in the untrimmed picture.
enum class Trim { borders, nothing };

class PageFiller {
public:
    // Takes a picture and returns its index, which counts up from 0. Pictures with
    // the same non-empty `group` are kept together.
    int Add(const Image& image, const std::string& group, Trim trim = Trim::borders);

    // Places all pictures. False with a message when one is larger than a page.
    bool Fill(std::string& error);

    // After Fill: where picture `index` lies.
    const archive::PageEntry& Entry(int index) const;

    // After Fill: the pages as PNG; those that `cache` knows are taken from it.
    std::vector<archive::Page> Encode(Cache& cache) const;

    // After Fill: share of the pages' area that pictures and their bled edges use, 0..1.
    double Usage() const;

    int PageCount() const { return static_cast<int>(pages_.size()); }

private:
    struct Source {
        Image image;  // trimmed
        std::string group;
        int sameAs = -1;     // index of an earlier picture with the same pixels
        bool clear[4] = {};  // left, top, right, bottom: a transparent border was trimmed there
        archive::PageEntry entry;
    };
    struct Rect {
        int x, y, width, height;
    };
    struct Sheet {
        std::vector<Rect> free;
        long used = 0;
    };

    static Rect FindPlace(const Sheet& sheet, int width, int height);
    static void Occupy(Sheet& sheet, const Rect& rect);
    bool PlaceTogether(const std::vector<int>& members, int sheet);
    void PlaceGroup(const std::vector<int>& members);
    std::vector<std::vector<int>> Groups() const;
    Image Paint(int page) const;

    std::vector<Source> sources_;
    std::vector<Sheet> pages_;
};

// The PNG file of a picture, 8 bits a channel with alpha.
std::vector<uint8_t> Pages_Png(const Image& image);

// The smallest box, both ends inside, that holds every pixel with alpha above 0 of
// all frames. False, and a box of the single pixel (0, 0), when there is none.
bool Pages_Box(const std::vector<Image>& frames, int& left, int& top, int& right, int& bottom);

// A collision mask: height rows of (width + 7) / 8 bytes, the leftmost pixel in
// bit 7. From a picture: the pixels with alpha above 0. From a box, both ends
// inside: the pixels of the box within width by height.
std::vector<uint8_t> Pages_Mask(const Image& image);
std::vector<uint8_t> Pages_Mask(int width, int height, int left, int top, int right, int bottom);

}  // namespace pack
