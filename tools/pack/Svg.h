#pragma once
// SVG drawings whose named groups are rendered one by one (librsvg and cairo).

#include <memory>
#include <string>

using cairo_t = struct _cairo;

namespace pack {

class SvgFile {
public:
    // Null with "file:line: what is wrong" in `error`.
    static std::unique_ptr<SvgFile> Load(const std::string& path, std::string& error);
    ~SvgFile();
    SvgFile(const SvgFile&) = delete;
    SvgFile& operator=(const SvgFile&) = delete;

    // Size of the drawing in its own units: the view box, or else width and height.
    double Width() const { return width_; }
    double Height() const { return height_; }

    bool Has(const std::string& id) const;

    // Draws the element `id`, or the whole drawing for an empty id, at its place in
    // the drawing. False with a message without a place in `error`.
    bool Draw(cairo_t* target, const std::string& id, std::string& error) const;

    // The box around all that the element `id` draws, in units of the drawing; for a
    // part without marks, such as an empty group, false and a box of size 0.
    bool Area(const std::string& id, double& x, double& y, double& width, double& height) const;

private:
    SvgFile() = default;
    struct Handle;
    std::unique_ptr<Handle> handle_;
    double width_ = 0, height_ = 0;
};

}  // namespace pack
