#include "tools/pack/Pictures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "tools/pack/Cutouts.h"

using namespace pack;
namespace fs = std::filesystem;

namespace {

const char* const kDrawing =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 20 10\">\n"
    "  <g id=\"left\"><rect x=\"0\" y=\"0\" width=\"10\" height=\"10\" fill=\"#ff0000\"/></g>\n"
    "  <g id=\"glass\"><g opacity=\"0.5\"><rect x=\"8\" y=\"2\" width=\"4\" height=\"6\" "
    "fill=\"#0000ff\"/></g></g>\n"
    "  <g id=\"empty\"/>\n"
    "  <circle id=\"pivot-mid\" cx=\"10\" cy=\"5\" r=\"1\"/>\n"
    "</svg>\n";

// A folder of art that is gone after the test.
class Art {
public:
    Art()
    {
        folder_ =
            fs::path(testing::TempDir()) /
            ("art-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::create_directories(folder_);
        Write("drawing.svg", kDrawing);
    }
    ~Art() { fs::remove_all(folder_); }

    void Write(const std::string& name, const std::string& text) const
    {
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }

    std::string Path(const std::string& name) const { return (folder_ / name).string(); }

    // The pictures of `name` by this table, or the error as the only result.
    std::vector<Image> Render(const std::string& table, const std::string& name, int width,
                              int height, int frames)
    {
        Write("pictures.txt", table);
        std::vector<Image> out;
        error.clear();
        PictureLibrary library;
        if (Pictures_Load(folder_.string(), library, error))
            Pictures_Render(library, name, width, height, frames, out, error);
        return out;
    }

    std::string error;

private:
    fs::path folder_;
};

unsigned Pixel(const Image& image, int x, int y)
{
    const uint8_t* p = &image.bgra[static_cast<size_t>(y * image.width + x) * 4];
    return static_cast<unsigned>(p[3]) << 24 | static_cast<unsigned>(p[2]) << 16 |
           static_cast<unsigned>(p[1]) << 8 | p[0];
}

const std::string kTable = "size 20 10\npart left\n";

CutoutTable Parsed(const std::string& text)
{
    CutoutTable table;
    std::string error;
    EXPECT_TRUE(Cutouts_Parse("t.cut", text, table, error)) << error;
    return table;
}

}  // namespace

TEST(Cutouts, AFaultNamesItsLineAndWhatWasExpected)
{
    struct Case {
        std::string text, error;
    };
    const std::string walk = kTable + "animation walk length=4 loop\n";
    const Case cases[] = {
        {"size 20\n", "t.cut:1: expected a width and a height above 0 after size"},
        {"size 20 -1\n", "t.cut:1: expected a width and a height above 0 after size"},
        {"turn 0=1\n", "t.cut:1: expected size, part, joint or animation instead of \"turn\""},
        {kTable + "part left\n", "t.cut:3: expected a new name, \"left\" is already a part"},
        {kTable + "part arm parent=body\n",
         "t.cut:3: expected an earlier part as parent, not \"body\""},
        {kTable + "part arm pivot=1,x\n", "t.cut:3: expected pivot=x,y with two numbers"},
        {kTable + "joint hip\n", "t.cut:3: expected pivot= for the joint \"hip\""},
        {kTable + "part arm at=3\n", "t.cut:3: expected group=, parent= or pivot="},
        {kTable + "animation walk length=0\n", "t.cut:3: expected a length above 0"},
        {kTable + "animation walk like=run\n", "t.cut:3: expected an earlier animation"},
        {walk + "part arm\n", "t.cut:4: expected every part before the first animation"},
        {walk + "arm x 0=1\n", "t.cut:4: expected the name of a part instead of \"arm\""},
        {walk + "left spin 0=1\n", "t.cut:4: expected a channel (x, y, turn"},
        {walk + "left x\n", "t.cut:4: expected time=value after \"x\""},
        {walk + "left x 0=1 here\n", "t.cut:4: expected time=value instead of \"here\""},
        {walk + "left x 0=1:slow\n", "t.cut:4: expected one of smooth, linear, in, out, hold"},
        {walk + "left x 0=1 5=1\n", "t.cut:4: expected a time within the length"},
        {walk + "left x 2=1 2=3\n", "t.cut:4: expected times that rise"},
        {walk + "left x 0=nan\n", "t.cut:4: expected time=value instead of \"0=nan\""},
        {"# nothing\n", "t.cut:2: expected a size before the end"},
        {kTable, "t.cut:3: expected at least one animation before the end"},
    };
    for (const Case& c : cases) {
        CutoutTable table;
        std::string error;
        EXPECT_FALSE(Cutouts_Parse("t.cut", c.text, table, error)) << c.text;
        EXPECT_EQ(error.substr(0, c.error.size()), c.error);
    }
}

TEST(Cutouts, KeysEaseHoldAndLeadRoundALoop)
{
    const CutoutTable table = Parsed(kTable +
                                     "animation walk length=8 loop\n"
                                     "left x 2=0:linear 6=8:linear\n"
                                     "left y 0=0:hold 4=5\n"
                                     "left turn 0=0 4=90\n"
                                     "left show 0=1 4=0\n"
                                     "animation once length=8 like=walk once\n"
                                     "left turn 0=7\n");
    const CutoutAnimation& walk = *Cutouts_Find(table, "walk");
    const auto pose = [&](double moment) { return Cutouts_Pose(table, walk, moment)[0]; };
    EXPECT_DOUBLE_EQ(pose(3).x, 2);
    EXPECT_DOUBLE_EQ(pose(7).x, 6);  // back from 8 at 6 to 0 at 2, through the end
    EXPECT_DOUBLE_EQ(pose(1).x, 2);
    EXPECT_DOUBLE_EQ(pose(3.9).y, 0);
    EXPECT_DOUBLE_EQ(pose(4).y, 5);
    EXPECT_NEAR(pose(2).turn, 45, 1e-9);
    EXPECT_LT(pose(1).turn, 22.5);  // smooth: slow at its start
    EXPECT_TRUE(pose(3.9).show);
    EXPECT_FALSE(pose(4).show);

    const CutoutAnimation& once = *Cutouts_Find(table, "once");
    EXPECT_DOUBLE_EQ(Cutouts_Pose(table, once, 8)[0].x, 8);  // no way back without a loop
    EXPECT_DOUBLE_EQ(Cutouts_Pose(table, once, 1)[0].turn, 7);
    EXPECT_DOUBLE_EQ(Cutouts_Moment(walk, 1, 8), 1);
    EXPECT_DOUBLE_EQ(Cutouts_Moment(once, 4, 5), 8);
}

// A picture of a walk shows for 1 / 0.3 frames of 4 pixels at the middle speed. The
// foot that is on the ground must go back by as much, or the figure slides.
TEST(Cutouts, TheFeetOfTheFiguresDoNotSlide)
{
    const fs::path art = fs::path(CONTENT_FOLDER) / "art/figures";
    const double ground = 4 / 0.3;
    const auto footOf = [&](const std::string& view, const CutoutTable& table,
                            const CutoutAnimation& walk, const std::string& side, int frame) {
        const std::vector<CutoutPose> poses = Cutouts_Pose(table, walk, frame);
        const auto part = [&](const std::string& name) {
            for (size_t i = 0; i < table.parts.size(); ++i)
                if (table.parts[i].name == name) return poses[i];
            ADD_FAILURE() << name;
            return CutoutPose();
        };
        if (view != "side") return part("leg-" + side).y;
        // Down the leg from the hip: 7 to the ankle, from there 3.2 to the sole.
        const CutoutPose leg = part("leg-" + side), shoe = part("shoe-" + side);
        const double degree = std::acos(-1.0) / 180;
        return leg.x - 7 * std::sin(leg.turn * degree) -
               3.2 * std::sin((leg.turn + shoe.turn) * degree);
    };
    struct View {
        const char *name, *first, *second;
        double way;
    };
    for (const View& view :
         {View{"front", "left", "right", -ground}, View{"back", "left", "right", ground},
          View{"side", "near", "far", -ground}}) {
        std::ifstream file(art / (std::string(view.name) + ".cut"));
        const CutoutTable table = Parsed(std::string(std::istreambuf_iterator<char>(file), {}));
        for (const char* name : {"walk", "push"}) {
            const CutoutAnimation* walk = Cutouts_Find(table, name);
            ASSERT_TRUE(walk) << view.name << " " << name;
            ASSERT_DOUBLE_EQ(walk->length, 8);
            for (int frame = 0; frame < 8; frame += 2) {
                const char* side = frame % 4 == 0 ? view.first : view.second;
                const double way = footOf(view.name, table, *walk, side, frame + 1) -
                                   footOf(view.name, table, *walk, side, frame);
                EXPECT_NEAR(way, view.way, 0.1) << view.name << " " << name << " " << frame;
            }
        }
    }
}

TEST(Pictures, FaultsNameFileLineAndWhatWasExpected)
{
    Art art;
    art.Write(
        "broken.svg",
        "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 9 9\">\n<g id=></g>\n</svg>\n");
    art.Write("sizeless.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\"><g/></svg>\n");
    art.Write("bad.cut", "size 1\n");
    art.Write("arm.cut", kTable + "part arm\nanimation a loop\n");
    art.Write("pivot.cut", kTable + "joint hip pivot=nowhere\nanimation a loop\n");
    art.Write("good.cut", kTable + "animation a loop\n");
    const std::string table = art.Path("pictures.txt");
    struct Case {
        std::string row, error;
    };
    const Case cases[] = {
        {"p svg=none.svg", art.Path("none.svg") + ":1: expected an SVG drawing"},
        {"p svg=broken.svg", art.Path("broken.svg") + ":2: expected an SVG drawing"},
        {"p svg=sizeless.svg", art.Path("sizeless.svg") + ":1: expected a viewBox"},
        {"p group=left", table + ":2: expected svg=<file> for p"},
        {"p svg=drawing.svg group=right", table + ":2: expected a group \"right\" in drawing.svg"},
        {"p svg=drawing.svg group=left,left", table + ":2: expected a group for each of the 1"},
        {"p svg=drawing.svg colour=red", table + ":2: expected svg=, cut=, animation="},
        {"p svg=drawing.svg flip=y", table + ":2: expected flip=x"},
        {"p svg=drawing.svg view=0,0,5", table + ":2: expected view=x,y,width,height"},
        {"p{3..1} svg=drawing.svg", table + ":2: expected a range such as {1..100}"},
        {"p svg=drawing.svg\np svg=drawing.svg", table + ":3: expected one row for each"},
        {"p svg=drawing.svg cut=none.cut animation=a", table + ":2: expected a readable file"},
        {"p svg=drawing.svg cut=bad.cut animation=a",
         art.Path("bad.cut") + ":1: expected a width and a height"},
        {"p svg=drawing.svg cut=good.cut animation=b",
         table + ":2: expected animation=<name> with an animation of good.cut, not \"b\""},
        {"p svg=drawing.svg cut=arm.cut animation=a",
         art.Path("arm.cut") + ":3: expected a group \"arm\" in drawing.svg"},
        {"p svg=drawing.svg cut=pivot.cut animation=a",
         art.Path("pivot.cut") + ":3: expected a marker \"pivot-nowhere\" in drawing.svg"},
    };
    for (const Case& c : cases) {
        EXPECT_TRUE(art.Render("# pictures\n" + c.row + "\n", "p", 20, 10, 1).empty()) << c.row;
        EXPECT_EQ(art.error.substr(0, c.error.size()), c.error);
    }
    EXPECT_TRUE(art.Render("p svg=drawing.svg\n", "p", 0, 10, 1).empty());
    EXPECT_NE(art.error.find("p: expected at least one frame"), std::string::npos) << art.error;
}

TEST(Pictures, ARangeMakesARowForEachNumber)
{
    Art art;
    art.Write("signs.svg",
              "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 9 9\">\n"
              "  <g id=\"sign-9\"/>\n  <g id=\"sign-10\"><path d=\"M0,0h9v9h-9z\"/></g>\n</svg>\n");
    const std::string row = "p{9..10}x svg=signs.svg group=sign-{n}\n";
    ASSERT_EQ(art.Render(row, "p9x", 9, 9, 1).size(), 1U) << art.error;
    EXPECT_EQ(Pixel(art.Render(row, "p9x", 9, 9, 1)[0], 4, 4), 0U);
    EXPECT_EQ(Pixel(art.Render(row, "p10x", 9, 9, 1)[0], 4, 4), 0xFF000000U);
}

TEST(Pictures, GroupsViewsAndMirrors)
{
    Art art;
    std::vector<Image> out = art.Render("p svg=drawing.svg group=left,empty\n", "p", 40, 20, 2);
    ASSERT_EQ(out.size(), 2U) << art.error;
    EXPECT_EQ(Pixel(out[0], 19, 10), 0xFFFF0000U);
    EXPECT_EQ(Pixel(out[0], 20, 10), 0U);
    EXPECT_EQ(Pixel(out[1], 5, 5), 0U);

    out = art.Render("p svg=drawing.svg group=left flip=x\n", "p", 40, 20, 1);
    ASSERT_EQ(out.size(), 1U) << art.error;
    EXPECT_EQ(Pixel(out[0], 19, 10), 0U);
    EXPECT_EQ(Pixel(out[0], 20, 10), 0xFFFF0000U);

    out = art.Render("p svg=drawing.svg group=left view=5,0,10,10\n", "p", 10, 10, 1);
    ASSERT_EQ(out.size(), 1U) << art.error;
    EXPECT_EQ(Pixel(out[0], 4, 5), 0xFFFF0000U);
    EXPECT_EQ(Pixel(out[0], 5, 5), 0U);
}

TEST(Pictures, PartsMoveTurnAndFade)
{
    Art art;
    art.Write("move.cut",
              "size 20 10\n"
              "part left   pivot=0,0\n"
              "part glass  parent=left pivot=mid\n"
              "part empty\n"
              "animation a length=4 loop\n"
              "left   x     0=0:linear 2=10\n"
              "left   fade  0=1:hold 1=0:hold 3=1\n"
              "glass  turn  0=0:linear 1=90:linear 2=180\n");
    const std::vector<Image> out =
        art.Render("p svg=drawing.svg cut=move.cut animation=a\n", "p", 20, 10, 4);
    ASSERT_EQ(out.size(), 4U) << art.error;
    EXPECT_EQ(Pixel(out[0], 3, 5), 0xFFFF0000U);
    // Half of the blue glass over the red, and over nothing.
    EXPECT_NEAR(Pixel(out[0], 9, 5) >> 16 & 255, 127, 1);
    EXPECT_NEAR(Pixel(out[0], 11, 5) >> 24, 128, 1);
    // The parent unseen, its child moved along by 5 and turned: now wider than high.
    EXPECT_EQ(Pixel(out[1], 6, 5), 0U);
    EXPECT_NEAR(Pixel(out[1], 12, 5) >> 24, 128, 1);
    EXPECT_NEAR(Pixel(out[1], 17, 5) >> 24, 128, 1);
    EXPECT_EQ(Pixel(out[1], 15, 2), 0U);
    EXPECT_NEAR(Pixel(out[2], 19, 7) >> 24, 128, 1);
}

TEST(Pictures, TheSameBytesOnEachRunAndAPlaceholderForTheRest)
{
    Art art;
    art.Write("turn.cut",
              "size 20 10\npart left\npart glass\nanimation a length=7 loop\n"
              "left turn 0=3 3=40\nglass scale 0=1 3=1.5\n");
    const std::string table = "p svg=drawing.svg cut=turn.cut animation=a\n";
    const std::vector<Image> first = art.Render(table, "p", 33, 17, 7);
    const std::vector<Image> second = art.Render(table, "p", 33, 17, 7);
    ASSERT_EQ(first.size(), 7U) << art.error;
    for (size_t i = 0; i < 7; ++i) EXPECT_EQ(first[i].bgra, second[i].bgra);
    EXPECT_NE(first[0].bgra, first[3].bgra);

    const std::vector<Image> missing = art.Render(table, "sNobody", 52, 104, 3);
    ASSERT_EQ(missing.size(), 3U);
    EXPECT_EQ(missing[0].width, 52);
    EXPECT_EQ(missing[0].height, 104);
    EXPECT_GT(Pixel(missing[0], 26, 4) >> 24, 128U);
    EXPECT_NE(missing[0].bgra, Pictures_Placeholder("sSomebody", 52, 104).bgra);
    EXPECT_EQ(Pictures_Placeholder("sTiny", 1, 1).bgra.size(), 4U);
}
