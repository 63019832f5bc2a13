#include "tools/pack/Pictures.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "tools/pack/Cache.h"
#include "tools/pack/Cutouts.h"
#include "tools/pack/Svg.h"

namespace pack {
namespace {

constexpr int kLargest = 8192;  // pixels, either way
constexpr int kSamples = 4;     // samples a pixel either way: clean edges where shapes touch
constexpr double kPi = 3.14159265358979323846;

struct Row {
    int line = 0;
    std::string svg, cut, animation;
    std::vector<std::string> groups;
    bool hasView = false, flip = false;
    double view[4] = {};  // x, y, width, height in units of the drawing
};

bool ReadFile(const std::string& path, std::string& text)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream) return false;
    std::ostringstream all;
    all << stream.rdbuf();
    text = all.str();
    return true;
}

std::vector<std::string> Split(const std::string& text, char separator)
{
    std::vector<std::string> pieces;
    std::istringstream stream(text);
    for (std::string piece; std::getline(stream, piece, separator);) pieces.push_back(piece);
    return pieces;
}

}  // namespace

struct PictureLibrary::State {
    std::string folder;
    std::string table;  // path of pictures.txt
    std::vector<std::string> names;
    std::map<std::string, Row> rows;
    std::map<std::string, CutoutTable> cuts;               // by name in the table
    std::map<std::string, std::unique_ptr<SvgFile>> svgs;  // read at first use
    std::map<std::string, uint64_t> hashes;                // of files, by name in the table
};

namespace {

using State = PictureLibrary::State;

bool Expected(const std::string& file, int line, const std::string& what, std::string& error)
{
    error = file + ":" + std::to_string(line) + ": expected " + what;
    return false;
}

bool ParseView(const std::string& value, Row& row)
{
    const std::vector<std::string> pieces = Split(value, ',');
    if (pieces.size() != 4) return false;
    for (size_t i = 0; i < 4; ++i) {
        char* end = nullptr;
        row.view[i] = std::strtod(pieces[i].c_str(), &end);
        if (pieces[i].empty() || *end != 0 || !std::isfinite(row.view[i])) return false;
    }
    row.hasView = true;
    return row.view[2] > 0 && row.view[3] > 0;
}

bool ParseKey(State& state, const std::string& word, Row& row, std::string& error)
{
    const size_t equals = word.find('=');
    const std::string key = word.substr(0, equals);
    const std::string value = equals == std::string::npos ? "" : word.substr(equals + 1);
    if (value.empty())
        return Expected(state.table, row.line, "key=value instead of \"" + word + "\"", error);
    if (key == "svg") {
        row.svg = value;
    } else if (key == "cut") {
        row.cut = value;
    } else if (key == "animation") {
        row.animation = value;
    } else if (key == "group") {
        row.groups = Split(value, ',');
    } else if (key == "view") {
        if (!ParseView(value, row))
            return Expected(state.table, row.line,
                            "view=x,y,width,height with a size above 0, not \"" + value + "\"",
                            error);
    } else if (key == "flip") {
        if (value != "x") return Expected(state.table, row.line, "flip=x", error);
        row.flip = true;
    } else {
        return Expected(
            state.table, row.line,
            "svg=, cut=, animation=, group=, view= or flip= instead of \"" + word + "\"", error);
    }
    return true;
}

bool LoadCut(State& state, const Row& row, std::string& error)
{
    if (!state.cuts.count(row.cut)) {
        const std::string path = state.folder + "/" + row.cut;
        std::string text;
        if (!ReadFile(path, text))
            return Expected(state.table, row.line, "a readable file " + path, error);
        CutoutTable table;
        if (!Cutouts_Parse(path, text, table, error)) return false;
        state.cuts[row.cut] = table;
    }
    if (!Cutouts_Find(state.cuts[row.cut], row.animation))
        return Expected(
            state.table, row.line,
            "animation=<name> with an animation of " + row.cut + ", not \"" + row.animation + "\"",
            error);
    return true;
}

bool ParseRow(State& state, const std::string& text, int line, std::string& error)
{
    std::istringstream stream(text.substr(0, text.find('#')));
    std::string name;
    if (!(stream >> name)) return true;
    Row row;
    row.line = line;
    for (std::string word; stream >> word;)
        if (!ParseKey(state, word, row, error)) return false;
    if (row.svg.empty()) return Expected(state.table, line, "svg=<file> for " + name, error);
    if (state.rows.count(name))
        return Expected(state.table, line, "one row for each picture, " + name + " has two", error);
    if (!row.cut.empty() && !row.groups.empty())
        return Expected(state.table, line, "either group= or cut=, not both", error);
    if (!row.cut.empty() && !LoadCut(state, row, error)) return false;
    state.names.push_back(name);
    state.rows[name] = row;
    return true;
}

void Replace(std::string& text, const std::string& from, const std::string& to)
{
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
}

// A row whose name holds "{1..100}" is one row for each number, which stands for "{n}".
bool ParseRows(State& state, const std::string& text, int line, std::string& error)
{
    int first = 0, last = 0, end = 0;
    const size_t open = text.substr(0, text.find('#')).find('{');
    if (open == std::string::npos) return ParseRow(state, text, line, error);
    if (std::sscanf(text.c_str() + open, "{%d..%d}%n", &first, &last, &end) != 2 || end == 0 ||
        last < first)
        return Expected(state.table, line, "a range such as {1..100} in the name", error);
    for (int number = first; number <= last; ++number) {
        std::string row = text;
        Replace(row, text.substr(open, static_cast<size_t>(end)), std::to_string(number));
        Replace(row, "{n}", std::to_string(number));
        if (!ParseRow(state, row, line, error)) return false;
    }
    return true;
}

const SvgFile* OpenSvg(State& state, const Row& row, std::string& error)
{
    std::unique_ptr<SvgFile>& file = state.svgs[row.svg];
    if (!file) file = SvgFile::Load(state.folder + "/" + row.svg, error);
    return file.get();
}

// A drawing surface of width * height pixels with kSamples samples each way.
class Canvas {
public:
    Canvas(int width, int height) : width_(width), height_(height)
    {
        surface_ =
            cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width * kSamples, height * kSamples);
        cr_ = cairo_create(surface_);
        cairo_scale(cr_, kSamples, kSamples);
    }
    ~Canvas()
    {
        cairo_destroy(cr_);
        cairo_surface_destroy(surface_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    cairo_t* Context() const { return cr_; }

    Image Take() const
    {
        cairo_surface_flush(surface_);
        Image image;
        image.width = width_;
        image.height = height_;
        image.bgra.resize(static_cast<size_t>(width_) * static_cast<size_t>(height_) * 4);
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x) Average(x, y, image);
        return image;
    }

private:
    // The mean of a pixel's samples, and the multiplication by alpha undone.
    void Average(int x, int y, Image& image) const
    {
        const unsigned char* data = cairo_image_surface_get_data(surface_);
        const int stride = cairo_image_surface_get_stride(surface_);
        unsigned sum[4] = {};
        for (int row = 0; row < kSamples; ++row) {
            const unsigned char* at =
                data + static_cast<ptrdiff_t>(y * kSamples + row) * stride + x * kSamples * 4;
            for (int i = 0; i < kSamples * 4; ++i) sum[i % 4] += at[i];
        }
        uint8_t* out = &image.bgra[(static_cast<size_t>(y) * static_cast<size_t>(width_) +
                                    static_cast<size_t>(x)) *
                                   4];
        constexpr unsigned count = kSamples * kSamples;
        out[3] = static_cast<uint8_t>((sum[3] + count / 2) / count);
        if (out[3] == 0) return;
        for (int i = 0; i < 3; ++i)
            out[i] = static_cast<uint8_t>(std::min(255U, (sum[i] * 255 + sum[3] / 2) / sum[3]));
    }

    int width_, height_;
    cairo_surface_t* surface_;
    cairo_t* cr_;
};

// Maps the area of the drawing that the row shows onto the whole picture.
void ShowArea(const Row& row, double areaWidth, double areaHeight, int width, int height,
              cairo_t* cr)
{
    const double x = row.hasView ? row.view[0] : 0, y = row.hasView ? row.view[1] : 0;
    const double w = row.hasView ? row.view[2] : areaWidth;
    const double h = row.hasView ? row.view[3] : areaHeight;
    cairo_scale(cr, width / w, height / h);
    cairo_translate(cr, -x, -y);
}

void Mirror(Image& image)
{
    const auto row = static_cast<size_t>(image.width) * 4;
    for (int y = 0; y < image.height; ++y) {
        uint8_t* pixels = &image.bgra[static_cast<size_t>(y) * row];
        for (size_t x = 0; x < row / 8; ++x)
            std::swap_ranges(pixels + x * 4, pixels + x * 4 + 4, pixels + row - x * 4 - 4);
    }
}

bool CheckGroup(const SvgFile& svg, const std::string& id, const std::string& file, int line,
                const std::string& svgName, std::string& error)
{
    if (id.empty() || svg.Has(id)) return true;
    return Expected(file, line, "a group \"" + id + "\" in " + svgName, error);
}

bool RenderGroups(State& state, const Row& row, const SvgFile& svg, int width, int height,
                  int frames, std::vector<Image>& out, std::string& error)
{
    std::vector<std::string> groups = row.groups;
    if (groups.empty()) groups.push_back("");
    if (static_cast<int>(groups.size()) != frames)
        return Expected(state.table, row.line,
                        "a group for each of the " + std::to_string(frames) + " frames", error);
    for (const std::string& group : groups) {
        if (!CheckGroup(svg, group, state.table, row.line, row.svg, error)) return false;
        Canvas canvas(width, height);
        ShowArea(row, svg.Width(), svg.Height(), width, height, canvas.Context());
        std::string problem;
        if (!svg.Draw(canvas.Context(), group, problem))
            return Expected(state.table, row.line, row.svg + " to be drawn: " + problem, error);
        out.push_back(canvas.Take());
    }
    return true;
}

// A part of a cut-out: its group as a sheet of pixels, cut out once for all frames.
// The drawing library knows no turned or mirrored clear groups, so a group is drawn
// upright and the sheet is turned.
class Cutting {
public:
    Cutting() = default;
    ~Cutting()
    {
        if (surface_) cairo_surface_destroy(surface_);
    }
    Cutting(const Cutting&) = delete;
    Cutting& operator=(const Cutting&) = delete;

    // scaleX, scaleY: samples of the sheet for one unit of the drawing.
    bool Cut(const SvgFile& svg, const std::string& group, double scaleX, double scaleY,
             std::string& error)
    {
        double width = 0, height = 0;
        if (group.empty() || !svg.Area(group, x_, y_, width, height)) return true;
        x_ -= kMargin;
        y_ -= kMargin;
        scaleX_ = scaleX;
        scaleY_ = scaleY;
        surface_ = cairo_image_surface_create(
            CAIRO_FORMAT_ARGB32, static_cast<int>(std::ceil((width + 2 * kMargin) * scaleX)),
            static_cast<int>(std::ceil((height + 2 * kMargin) * scaleY)));
        cairo_t* cr = cairo_create(surface_);
        cairo_scale(cr, scaleX, scaleY);
        cairo_translate(cr, -x_, -y_);
        const bool drawn = svg.Draw(cr, group, error);
        cairo_destroy(cr);
        return drawn;
    }

    void Draw(cairo_t* cr, const cairo_matrix_t& matrix, double fade) const
    {
        if (!surface_) return;
        cairo_save(cr);
        cairo_transform(cr, &matrix);
        cairo_translate(cr, x_, y_);
        cairo_scale(cr, 1 / scaleX_, 1 / scaleY_);
        cairo_set_source_surface(cr, surface_, 0, 0);
        cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_BILINEAR);
        cairo_paint_with_alpha(cr, fade);
        cairo_restore(cr);
    }

private:
    static constexpr double kMargin = 1;  // units around the group, for soft edges

    cairo_surface_t* surface_ = nullptr;  // null for a group without marks
    double x_ = 0, y_ = 0, scaleX_ = 1, scaleY_ = 1;
};

struct Pivot {
    double x = 0, y = 0;
};

bool FindPivots(const CutoutTable& table, const Row& row, const SvgFile& svg,
                std::vector<Pivot>& pivots, std::string& error)
{
    for (const CutoutPart& part : table.parts) {
        if (!CheckGroup(svg, part.group, table.file, part.line, row.svg, error)) return false;
        Pivot pivot{part.pivotX, part.pivotY};
        const std::string& id = part.marker.empty() ? part.group : part.marker;
        double x = 0, y = 0, width = 0, height = 0;
        const bool found = svg.Area(id, x, y, width, height);
        if (!part.marker.empty() && !found)
            return Expected(table.file, part.line, "a marker \"" + part.marker + "\" in " + row.svg,
                            error);
        if (!part.fixedPivot) pivot = {x + width / 2, y + height / 2};
        pivots.push_back(pivot);
    }
    return true;
}

cairo_matrix_t PoseMatrix(const CutoutPose& pose, const Pivot& pivot)
{
    cairo_matrix_t matrix;
    cairo_matrix_init_translate(&matrix, pivot.x + pose.x, pivot.y + pose.y);
    cairo_matrix_rotate(&matrix, pose.turn * kPi / 180);
    cairo_matrix_scale(&matrix, pose.scaleX, pose.scaleY);
    cairo_matrix_translate(&matrix, -pivot.x, -pivot.y);
    return matrix;
}

void DrawPose(const CutoutTable& table, const std::vector<CutoutPose>& poses,
              const std::vector<Pivot>& pivots, const std::vector<Cutting>& cuttings, cairo_t* cr)
{
    std::vector<cairo_matrix_t> matrices(poses.size());
    std::vector<bool> shown(poses.size());
    for (size_t i = 0; i < poses.size(); ++i) {
        const CutoutPart& part = table.parts[i];
        const CutoutPose& pose = poses[i];
        matrices[i] = PoseMatrix(pose, pivots[i]);
        shown[i] = pose.show;
        if (part.parent >= 0) {
            const size_t parent = static_cast<size_t>(part.parent);
            cairo_matrix_multiply(&matrices[i], &matrices[i], &matrices[parent]);
            shown[i] = shown[i] && shown[parent];
        }
        if (shown[i] && pose.scaleX != 0 && pose.scaleY != 0)
            cuttings[i].Draw(cr, matrices[i], pose.fade);
    }
}

bool RenderCutout(const CutoutTable& table, const Row& row, const SvgFile& svg, int width,
                  int height, int frames, std::vector<Image>& out, std::string& error)
{
    std::vector<Pivot> pivots;
    if (!FindPivots(table, row, svg, pivots, error)) return false;
    const double scaleX = kSamples * width / (row.hasView ? row.view[2] : table.width);
    const double scaleY = kSamples * height / (row.hasView ? row.view[3] : table.height);
    std::vector<Cutting> cuttings(table.parts.size());
    for (size_t i = 0; i < cuttings.size(); ++i) {
        const CutoutPart& part = table.parts[i];
        std::string problem;
        if (!cuttings[i].Cut(svg, part.group, scaleX, scaleY, problem))
            return Expected(table.file, part.line, part.group + " to be drawn: " + problem, error);
    }
    const CutoutAnimation& animation = *Cutouts_Find(table, row.animation);
    for (int frame = 0; frame < frames; ++frame) {
        const double moment = Cutouts_Moment(animation, frame, frames);
        Canvas canvas(width, height);
        ShowArea(row, table.width, table.height, width, height, canvas.Context());
        DrawPose(table, Cutouts_Pose(table, animation, moment), pivots, cuttings, canvas.Context());
        out.push_back(canvas.Take());
    }
    return true;
}

}  // namespace

bool Pictures_Load(const std::string& artFolder, PictureLibrary& out, std::string& error)
{
    out.state = std::make_shared<State>();
    State& state = *out.state;
    state.folder = artFolder;
    state.table = artFolder + "/pictures.txt";
    std::string text;
    if (!ReadFile(state.table, text))
        return Expected(state.table, 1, "a readable table of pictures", error);
    int line = 0;
    for (const std::string& row : Split(text, '\n'))
        if (!ParseRows(state, row, ++line, error)) return false;
    return true;
}

bool Pictures_Has(const PictureLibrary& library, const std::string& name)
{
    return library.state && library.state->rows.count(name) != 0;
}

std::vector<std::string> Pictures_Names(const PictureLibrary& library)
{
    return library.state ? library.state->names : std::vector<std::string>();
}

std::vector<std::string> Pictures_Files(const PictureLibrary& library)
{
    std::vector<std::string> files;
    if (!library.state) return files;
    files.push_back(library.state->table);
    for (const auto& [name, row] : library.state->rows) {
        files.push_back(library.state->folder + "/" + row.svg);
        if (!row.cut.empty()) files.push_back(library.state->folder + "/" + row.cut);
    }
    std::sort(files.begin(), files.end());
    files.erase(std::unique(files.begin(), files.end()), files.end());
    return files;
}

uint64_t Pictures_Key(const PictureLibrary& library, const std::string& name, int width, int height,
                      int frames)
{
    if (!Pictures_Has(library, name)) return 0;
    State& state = *library.state;
    const Row& row = state.rows[name];
    Hash hash;
    for (const std::string& file : {row.svg, row.cut}) {
        uint64_t& known = state.hashes[file];
        std::string text;
        if (known == 0 && !file.empty() && ReadFile(state.folder + "/" + file, text))
            known = Hash().Add(text).Value();
        hash.Add(known);
    }
    hash.Add(row.animation);
    for (const std::string& group : row.groups) hash.Add(group);
    if (row.hasView) hash.Add(row.view, sizeof(row.view));
    for (const int number : {row.flip ? 1 : 0, width, height, frames, kSamples})
        hash.Add(static_cast<uint64_t>(number));
    return hash.Value();
}

bool Pictures_Render(const PictureLibrary& library, const std::string& name, int width, int height,
                     int frames, std::vector<Image>& out, std::string& error)
{
    out.clear();
    if (width < 1 || height < 1 || width > kLargest || height > kLargest || frames < 1) {
        error = name + ": expected at least one frame of 1 to " + std::to_string(kLargest) +
                " pixels each way, not " + std::to_string(frames) + " of " + std::to_string(width) +
                " by " + std::to_string(height);
        return false;
    }
    if (!Pictures_Has(library, name)) {
        out.assign(static_cast<size_t>(frames), Pictures_Placeholder(name, width, height));
        return true;
    }
    State& state = *library.state;
    const Row& row = state.rows[name];
    const SvgFile* svg = OpenSvg(state, row, error);
    if (!svg) return false;
    const bool done =
        row.cut.empty()
            ? RenderGroups(state, row, *svg, width, height, frames, out, error)
            : RenderCutout(state.cuts[row.cut], row, *svg, width, height, frames, out, error);
    if (row.flip) std::for_each(out.begin(), out.end(), Mirror);
    return done;
}

// Letters of 3 by 5 squares, the top left one in bit 14: a placeholder looks alike on
// every machine, whatever fonts it has.
constexpr uint16_t kLetters[26] = {0x2BED, 0x6BAE, 0x3923, 0x6B6E, 0x79A7, 0x79A4, 0x396B,
                                   0x5BED, 0x7497, 0x126A, 0x5BAD, 0x4927, 0x5FED, 0x6B6D,
                                   0x2B6A, 0x6BA4, 0x2B7B, 0x6BAD, 0x388E, 0x7492, 0x5B6F,
                                   0x5B6A, 0x5BFD, 0x5AAD, 0x5A92, 0x72A7};
constexpr uint16_t kDigits[10] = {0x7B6F, 0x2C97, 0x62A7, 0x628E, 0x5BC9,
                                  0x798E, 0x39EF, 0x7292, 0x7BEF, 0x7BCE};
constexpr int kLetterWidth = 3, kLetterHeight = 5, kLetterStep = 4;

static unsigned LetterBits(char letter)
{
    if (letter >= '0' && letter <= '9') return kDigits[letter - '0'];
    if (letter >= 'a' && letter <= 'z') return kLetters[letter - 'a'];
    if (letter >= 'A' && letter <= 'Z') return kLetters[letter - 'A'];
    return 0x0007;  // a line at the foot
}

static void WriteName(cairo_t* cr, const std::string& name)
{
    int x = 0;
    for (char letter : name) {
        const unsigned bits = LetterBits(letter);
        for (int i = 0; i < kLetterWidth * kLetterHeight; ++i)
            if (bits >> (kLetterWidth * kLetterHeight - 1 - i) & 1)
                cairo_rectangle(cr, x + i % kLetterWidth, i / kLetterWidth, 1, 1);
        x += kLetterStep;
    }
    cairo_fill(cr);
}

Image Pictures_Placeholder(const std::string& name, int width, int height)
{
    Canvas canvas(width, height);
    cairo_t* cr = canvas.Context();
    cairo_rectangle(cr, 0.5, 0.5, width - 1, height - 1);
    cairo_set_source_rgba(cr, 0.62, 0.62, 0.68, 0.85);
    cairo_fill_preserve(cr);
    cairo_set_line_width(cr, 1);
    cairo_set_source_rgba(cr, 0.25, 0.25, 0.3, 1);
    cairo_stroke(cr);

    const double length = kLetterStep * static_cast<double>(name.size()) - 1;
    const double fit = std::min({(width - 4) / length, (height - 4.0) / kLetterHeight, 4.0});
    if (name.empty() || fit <= 0) return canvas.Take();
    cairo_translate(cr, (width - length * fit) / 2, (height - kLetterHeight * fit) / 2);
    cairo_scale(cr, fit, fit);
    WriteName(cr, name);
    return canvas.Take();
}

}  // namespace pack
