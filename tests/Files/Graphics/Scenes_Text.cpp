// Scenes of text: alignment, line breaks, wrapping and transforms.

#include "tests/Files/Graphics/support_Scenes.h"

namespace {

void Start(SceneStage& s)
{
    s.call("draw_clear", 0x403830);
    s.call("draw_set_font", s.font);
    s.call("draw_set_colour", kWhite);
}

// Three lines, the longest 33 pixels wide: all nine alignments about a mark.
void Alignments(SceneStage& s)
{
    Start(s);
    for (int32_t valign = 0; valign < 3; valign++)
        for (int32_t halign = 0; halign < 3; halign++) {
            const double x = 60 + halign * 90, y = 60 + valign * 80;
            s.call("draw_set_halign", halign);
            s.call("draw_set_valign", valign);
            s.call("draw_text", x, y, "abc\nd\nQ#");
            s.mark(static_cast<float>(x), static_cast<float>(y));
        }
    s.call("draw_set_halign", 7);  // no alignment: left, as the start has it
    s.call("draw_set_valign", -1);
    s.call("draw_set_font", -1);
    s.call("draw_set_alpha", 0.5);
    s.call("draw_set_colour", kYellow);
    s.call("draw_text", 4, 4, "debug");
    s.call("draw_text", 90, 4, 12.5);
    s.call("draw_set_alpha", 1);
}

// Every kind of break, and a line without anything still takes its space.
void Breaks(SceneStage& s)
{
    Start(s);
    const char* const texts[] = {"a\rb",
                                 "a\nb",
                                 "a\r\nb",
                                 "a\n\rb",
                                 "a\n\nb",
                                 "\na\nb\n",
                                 "a#b",
                                 "\xC3\x96"
                                 "a\xD0\x96"
                                 "b"};
    for (int32_t i = 0; i < 8; i++) {
        s.call("draw_set_colour", kGrey);
        const double width = s.call("string_width", texts[i]);
        const double height = s.call("string_height", texts[i]);
        s.call("draw_rectangle", 5 + i * 40, 5, 3 + i * 40 + width, 3 + height, 1);
        s.call("draw_set_colour", kWhite);
        s.call("draw_text", 6 + i * 40, 6, texts[i]);
    }
}

void Wraps(SceneStage& s)
{
    Start(s);
    struct Wrap {
        double x, y, separation, width;
        int32_t halign;
    };
    const char* text = "a bc  def gh\rij lengthy k";
    const Wrap wraps[] = {{6, 6, -1, 60, 0},   {140, 6, 14, 45, 1},  {310, 6, -1, 100, 2},
                          {6, 134, 22, 12, 0}, {130, 134, 0, 80, 0}, {230, 134, -1, 0, 0}};
    for (const Wrap& wrap : wraps) {
        s.call("draw_set_halign", 0);
        s.call("draw_set_colour", kGrey);
        const double left = wrap.x - wrap.width * wrap.halign / 2;
        const double height = s.call("string_height_ext", text, wrap.separation, wrap.width);
        s.call("draw_rectangle", left - 1, wrap.y - 1, left - 1 + wrap.width, wrap.y - 1 + height,
               1);
        s.call("draw_set_halign", wrap.halign);
        s.call("draw_set_colour", kWhite);
        s.call("draw_text_ext", wrap.x, wrap.y, text, wrap.separation, wrap.width);
    }
    s.call("draw_set_halign", 0);
}

void Transforms(SceneStage& s)
{
    Start(s);
    for (int32_t align = 0; align < 3; align++) {
        s.call("draw_set_halign", align);
        s.call("draw_set_valign", align);
        const float x = static_cast<float>(60 + align * 100);
        s.call("draw_text_transformed", x, 60, "abc\nd\nQg", 1, 1, 30);
        s.mark(x, 60);
        s.call("draw_text_transformed", x, 170, "abc\nd", 2, -1.5, 0);
        s.mark(x, 170);
        s.call("draw_text_ext_transformed", x, 250, "one two six", 16, 70, -0.8, 1, 270);
        s.mark(x, 250);
    }
    s.call("draw_set_halign", 0);
    s.call("draw_set_valign", 0);
}

void Colours(SceneStage& s)
{
    Start(s);
    s.call("draw_text_colour", 6, 6, "colours\nrun", kRed, kYellow, kGreen, kBlue, 1);
    s.call("draw_text_ext_colour", 100, 6, "half of it is clear", 20, 90, kWhite, kWhite, kBlack,
           kBlack, 0.5);
    s.call("draw_set_halign", 1);
    s.call("draw_text_transformed_colour", 60, 100, "turned", 1.5, 1.5, 20, kRed, kBlue, kBlue,
           kRed, 1);
    s.call("draw_text_ext_transformed_colour", 160, 80, "two lines", 20, 50, 1, 2, -10, kYellow,
           kOrange, kWhite, kGreen, 0.8);
    s.call("draw_set_halign", 0);
}

constexpr SceneRow kScenes[] = {
    {"text_alignments", 290, 250, Alignments}, {"text_breaks", 326, 90, Breaks},
    {"text_wraps", 320, 280, Wraps},           {"text_transforms", 320, 320, Transforms},
    {"text_colours", 230, 160, Colours},
};

}  // namespace

std::span<const SceneRow> Scenes_Text()
{
    return kScenes;
}
