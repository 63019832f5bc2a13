#include "tools/pack/Svg.h"

#include <cairo.h>
#include <librsvg/rsvg.h>

#include <cctype>

namespace pack {

struct SvgFile::Handle {
    RsvgHandle* rsvg = nullptr;
    RsvgRectangle viewport{};
    ~Handle()
    {
        if (rsvg) g_object_unref(rsvg);
    }
};

SvgFile::~SvgFile() = default;

namespace {

// The parser names the line inside its message: "... on line 12 column 4 ...".
std::string LineOf(const std::string& message)
{
    const std::string mark = "on line ";
    const size_t at = message.find(mark);
    if (at == std::string::npos) return "1";
    size_t end = at + mark.size();
    while (end < message.size() && std::isdigit(static_cast<unsigned char>(message[end]))) ++end;
    return message.substr(at + mark.size(), end - at - mark.size());
}

std::string TakeMessage(GError* problem)
{
    std::string message = problem ? problem->message : "no reason given";
    if (problem) g_error_free(problem);
    return message;
}

}  // namespace

std::unique_ptr<SvgFile> SvgFile::Load(const std::string& path, std::string& error)
{
    GError* problem = nullptr;
    RsvgHandle* rsvg = rsvg_handle_new_from_file(path.c_str(), &problem);
    if (!rsvg) {
        const std::string message = TakeMessage(problem);
        error = path + ":" + LineOf(message) + ": expected an SVG drawing: " + message;
        return nullptr;
    }
    std::unique_ptr<SvgFile> file(new SvgFile);
    file->handle_ = std::make_unique<Handle>();
    file->handle_->rsvg = rsvg;
    rsvg_handle_set_dpi(rsvg, 96.0);

    gboolean hasWidth = FALSE, hasHeight = FALSE, hasBox = FALSE;
    RsvgLength width{}, height{};
    RsvgRectangle box{};
    rsvg_handle_get_intrinsic_dimensions(rsvg, &hasWidth, &width, &hasHeight, &height, &hasBox,
                                         &box);
    if (hasBox) {
        file->width_ = box.width;
        file->height_ = box.height;
    } else if (!rsvg_handle_get_intrinsic_size_in_pixels(rsvg, &file->width_, &file->height_)) {
        file->width_ = 0;
    }
    if (file->width_ <= 0 || file->height_ <= 0) {
        error = path + ":1: expected a viewBox, or a width and a height in pixels";
        return nullptr;
    }
    file->handle_->viewport = {0, 0, file->width_, file->height_};
    return file;
}

bool SvgFile::Has(const std::string& id) const
{
    return rsvg_handle_has_sub(handle_->rsvg, ("#" + id).c_str()) != FALSE;
}

bool SvgFile::Draw(cairo_t* target, const std::string& id, std::string& error) const
{
    const std::string fragment = "#" + id;
    GError* problem = nullptr;
    if (rsvg_handle_render_layer(handle_->rsvg, target, id.empty() ? nullptr : fragment.c_str(),
                                 &handle_->viewport, &problem))
        return true;
    error = TakeMessage(problem);
    return false;
}

bool SvgFile::Area(const std::string& id, double& x, double& y, double& width, double& height) const
{
    x = y = width = height = 0;
    RsvgRectangle ink{}, logical{};
    if (!Has(id) ||
        !rsvg_handle_get_geometry_for_layer(handle_->rsvg, ("#" + id).c_str(), &handle_->viewport,
                                            &ink, &logical, nullptr))
        return false;
    if (!(ink.width > 0) || !(ink.height > 0)) return false;
    x = ink.x;
    y = ink.y;
    width = ink.width;
    height = ink.height;
    return true;
}

}  // namespace pack
