// Boxes, pixel masks and the place tests.

#include "Files/Object/Collision.h"

#include <cmath>
#include <list>

#include "Files/Run/Run_State.h"
#include "Files/Sprite/CSprite.h"
#include "tests/Files/support_World.h"

namespace {

class Collision : public World {
protected:
    void SetUp() override
    {
        World::SetUp();
        thing_ = AddObject("Thing", {});
        child_ = AddObject("Child", {}, thing_);
        other_ = AddObject("Other", {});
        AddRoom("room_one");
        Begin();
    }
    CInstance* Make(int32_t object, float x, float y, int32_t sprite = -1)
    {
        CInstance* instance = Room_CreateInstance(x, y, object);
        instance->SetSprite(sprite);
        return instance;
    }
    // A precise sprite of one mask a picture: rows of characters, '#' for a set pixel.
    int32_t AddMaskSprite(const std::vector<std::vector<std::string>>& frames)
    {
        const auto width = static_cast<int32_t>(frames[0][0].size());
        const auto height = static_cast<int32_t>(frames[0].size());
        std::vector<uint8_t>& packed = packed_.emplace_back();
        for (const auto& frame : frames)
            for (const std::string& row : frame) {
                const size_t start = packed.size();
                packed.resize(start + (row.size() + 7) / 8);
                for (size_t x = 0; x < row.size(); ++x)
                    if (row[x] == '#') packed[start + x / 8] |= static_cast<uint8_t>(0x80 >> x % 8);
            }
        const int32_t index = AddBoxSprite(width, height, static_cast<int32_t>(frames.size()));
        CSprite* sprite = Sprite_Data(index);
        sprite->precise = true;
        sprite->maskCount = static_cast<int32_t>(frames.size());
        sprite->packedMasks = packed.data();
        return index;
    }
    std::vector<int32_t> Box(CInstance* instance)
    {
        EnsureBoundingBox(instance);
        EXPECT_FALSE(instance->bboxDirty);
        return {instance->bbox_left, instance->bbox_top, instance->bbox_right,
                instance->bbox_bottom};
    }
    using Sides = std::vector<int32_t>;

    int32_t thing_ = -1, child_ = -1, other_ = -1;
    std::list<std::vector<uint8_t>> packed_;
};

TEST_F(Collision, RoundingGoesToEven)
{
    const std::pair<double, int32_t> cases[] = {{0.5, 0},
                                                {1.5, 2},
                                                {2.5, 2},
                                                {-0.5, 0},
                                                {-1.5, -2},
                                                {2.49, 2},
                                                {-7.51, -8},
                                                {2147483646.6, 2147483647},
                                                {1e300, INT32_MAX},
                                                {-1e300, INT32_MIN},
                                                {2147483647.0, INT32_MAX},
                                                {-2147483648.0, INT32_MIN},
                                                {std::nan(""), 0}};
    for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundToEven(value), rounded) << value;
}

TEST_F(Collision, BoxesFollowPositionScaleAndOrigin)
{
    const int32_t plain = AddBoxSprite(32, 16);
    const int32_t centred = AddBoxSprite(32, 16);
    Sprite_Data(centred)->originX = 16;
    Sprite_Data(centred)->originY = 8;
    const int32_t inset = AddBoxSprite(32, 32);
    Sprite_Data(inset)->bboxLeft = 4;
    Sprite_Data(inset)->bboxTop = 8;
    Sprite_Data(inset)->bboxRight = 27;
    Sprite_Data(inset)->bboxBottom = 23;
    CInstance* instance = Make(thing_, 100, 50, plain);
    const auto box = [&](int32_t sprite, float xscale, float yscale) {
        instance->SetSprite(sprite);
        instance->image_xscale = xscale;
        instance->image_yscale = yscale;
        return Box(instance);
    };
    EXPECT_EQ(box(plain, 1, 1), (Sides{100, 50, 131, 65}));
    EXPECT_EQ(box(inset, 1, 1), (Sides{104, 58, 127, 73}));
    EXPECT_EQ(box(plain, -1, 1), (Sides{68, 50, 99, 65}));
    EXPECT_EQ(box(plain, 2, -0.5F), (Sides{100, 42, 163, 49}));
    EXPECT_EQ(box(centred, -1, -1), box(centred, 1, 1));
    instance->SetPosition(100.5F, 51.5F);  // halves go to the even neighbour
    EXPECT_EQ(box(plain, 1, 1), (Sides{100, 52, 131, 67}));
    instance->SetPosition(-3.9F, 3.9F);
    EXPECT_EQ(box(-1, 1, 1), (Sides{-3, 3, -3, 3})) << "no sprite: the position, truncated";
    instance->mask_index = plain;
    EXPECT_EQ(box(-1, 1, 1), (Sides{-4, 4, 27, 19})) << "the mask goes before the sprite";
    instance->SetPosition(1e30F, -1e30F);
    const Sides far = box(plain, 1e10F, 1e10F);
    EXPECT_GE(far[2], far[0] - 1) << "sides beyond the world stay numbers";
}

TEST_F(Collision, BoxesTurnWithTheAngle)
{
    const int32_t sprite = AddBoxSprite(32, 16);
    CInstance* instance = Make(thing_, 100, 50, sprite);
    const std::pair<float, Sides> cases[] = {{90, {100, 18, 115, 49}},
                                             {180, {68, 34, 99, 49}},
                                             {270, {84, 50, 99, 81}},
                                             {360, {100, 50, 131, 65}},
                                             {45, {100, 27, 133, 60}}};
    for (const auto& [angle, sides] : cases) {
        instance->image_angle = angle;
        instance->bboxDirty = true;
        EXPECT_EQ(Box(instance), sides) << angle;
    }
}

TEST_F(Collision, PairsByBox)
{
    const int32_t box = AddBoxSprite(32, 32);
    CInstance* a = Make(thing_, 0, 0, box);
    CInstance* b = Make(thing_, 32, 0, box);
    EXPECT_FALSE(CollisionInstance(a, b, true)) << "31 and 32 only touch";
    b->SetPosition(31, 31);
    EXPECT_TRUE(CollisionInstance(a, b, true));
    EXPECT_TRUE(CollisionInstance(b, a, false));
    EXPECT_FALSE(CollisionInstance(a, a, true));
    b->SetSprite(-1);
    b->SetPosition(5, 5);
    EXPECT_FALSE(CollisionInstance(a, b, true)) << "nothing collides with what has no shape";
    b->mask_index = box;
    b->bboxDirty = true;
    EXPECT_TRUE(CollisionInstance(a, b, true));
    Sprite_Data(box)->frameCount = 0;
    EXPECT_FALSE(CollisionInstance(a, b, true));
    Sprite_Data(box)->frameCount = 1;
    b->marked = true;
    EXPECT_FALSE(CollisionInstance(a, b, true));
    EXPECT_FALSE(CollisionInstance(b, a, true));
}

TEST_F(Collision, PairsByPixel)
{
    // A diagonal; and a mask of two frames, the first empty.
    const int32_t diagonal = AddMaskSprite({{"#...", ".#..", "..#.", "...#"}});
    const int32_t frames = AddMaskSprite({{"....", "...."}, {"####", "...."}});
    CInstance* a = Make(thing_, 10, 10, diagonal);
    CInstance* b = Make(thing_, 10, 10, diagonal);
    EXPECT_TRUE(CollisionInstance(a, b, true));
    b->SetPosition(11, 10);
    EXPECT_FALSE(CollisionInstance(a, b, true));
    EXPECT_TRUE(CollisionInstance(a, b, false)) << "without the pixel test the boxes decide";
    Sprite_Data(diagonal)->precise = false;
    EXPECT_TRUE(CollisionInstance(a, b, true)) << "a sprite that is not precise is its box";
    Sprite_Data(diagonal)->precise = true;
    b->SetPosition(11, 11);
    EXPECT_TRUE(CollisionInstance(a, b, true));
    a->image_index = 3.7F;  // one mask for all frames: 3 modulo 1
    EXPECT_TRUE(CollisionInstance(a, b, true));

    b->SetSprite(frames);
    b->SetPosition(10, 10);
    EXPECT_FALSE(CollisionInstance(a, b, true));
    for (const float index : {1.0F, 1.9F, 3.0F, -1.0F}) {
        b->image_index = index;
        EXPECT_TRUE(CollisionInstance(a, b, true)) << index;
    }
    b->image_index = -2;
    EXPECT_FALSE(CollisionInstance(a, b, true));

    // A box without masks against the mask: its whole rectangle is set.
    const int32_t dot = AddBoxSprite(1, 1);
    b->SetSprite(dot);
    b->SetPosition(12, 12);
    EXPECT_TRUE(CollisionInstance(a, b, true));
    b->SetPosition(12, 11);
    EXPECT_FALSE(CollisionInstance(a, b, true));
    b->SetPosition(12.5F, 12.5F);  // on whole pixels: 12, 12
    EXPECT_TRUE(CollisionInstance(a, b, true));
}

TEST_F(Collision, MasksScaleMirrorAndTurn)
{
    const int32_t corner = AddMaskSprite({{"#...", "....", "....", "...."}});
    const int32_t dot = AddBoxSprite(1, 1);
    CInstance* a = Make(thing_, 20, 20, corner);
    CInstance* probe = Make(thing_, 0, 0, dot);
    const auto hit = [&] {
        // The pixels about the instance at which the probe meets it.
        std::vector<std::pair<int, int>> hits;
        a->bboxDirty = true;
        for (int y = 8; y < 32; ++y)
            for (int x = 8; x < 32; ++x) {
                probe->SetPosition(static_cast<float>(x), static_cast<float>(y));
                if (CollisionInstance(a, probe, true)) hits.emplace_back(x, y);
            }
        return hits;
    };
    using Hits = std::vector<std::pair<int, int>>;
    EXPECT_EQ(hit(), (Hits{{20, 20}}));
    a->image_xscale = 2;
    EXPECT_EQ(hit(), (Hits{{20, 20}, {21, 20}}));
    a->image_xscale = -2;
    EXPECT_EQ(hit(), (Hits{{19, 20}})) << "mirrored: the mask pixel of 20 lies outside the box";
    a->image_xscale = 1;
    a->image_yscale = 3;
    EXPECT_EQ(hit(), (Hits{{20, 20}, {20, 21}, {20, 22}}));
    a->image_yscale = 1;
    a->image_xscale = 0;
    a->image_angle = 0;
    EXPECT_EQ(hit(), Hits{}) << "no width, no pixels and no division";
}

TEST_F(Collision, MasksTurnTheWayThePictureDoes)
{
    // Set on the left: turned counter-clockwise by a quarter, that side lies below.
    const int32_t left = AddMaskSprite({std::vector<std::string>(16, "########........")});
    CInstance* a = Make(thing_, 100, 100, left);
    CInstance* probe = Make(thing_, 0, 0, AddBoxSprite(1, 1));
    struct {
        float angle;
        int setX, setY, clearX, clearY;  // from the position
    } const cases[] = {{0, 4, 8, 12, 8},
                       {90, 8, -4, 8, -12},
                       {180, -4, -8, -12, -8},
                       {270, -8, 4, -8, 12},
                       {45, 8, 4, 14, -5}};
    for (const auto& c : cases) {
        a->image_angle = c.angle;
        a->bboxDirty = true;
        const auto at = [&](int dx, int dy) {
            const auto x = static_cast<float>(100 + dx), y = static_cast<float>(100 + dy);
            probe->SetPosition(x, y);
            const bool pair = CollisionInstance(a, probe, true);
            EXPECT_EQ(pair, CollisionPoint(a, x, y, true)) << c.angle;
            return pair;
        };
        EXPECT_TRUE(at(c.setX, c.setY)) << c.angle;
        EXPECT_FALSE(at(c.clearX, c.clearY)) << c.angle;
    }
}

// The test of whole rows must tell the same as one pixel after the other.
TEST_F(Collision, RowsAgreeWithPixels)
{
    uint32_t seed = 12345;
    const auto chance = [&] { return (seed = seed * 1664525U + 1013904223U) >> 16; };
    const auto picture = [&](int width, int height) {
        std::vector<std::string> rows(static_cast<size_t>(height));
        for (std::string& row : rows)
            for (int x = 0; x < width; ++x) row += chance() % 16 == 0 ? '#' : '.';
        return rows;
    };
    const auto first = picture(27, 11), second = picture(13, 19);
    const int32_t a = AddMaskSprite({first}), b = AddMaskSprite({second});
    Sprite_Data(a)->originX = 5;
    Sprite_Data(b)->originY = 7;
    CInstance* ofA = Make(thing_, 50, 50, a);
    CInstance* ofB = Make(thing_, 50, 50, b);
    int hits = 0;
    for (int step = 0; step < 2000; ++step) {
        const int bx = 40 + static_cast<int>(chance() % 50),
                  by = 35 + static_cast<int>(chance() % 45);
        ofB->SetPosition(static_cast<float>(bx), static_cast<float>(by));
        bool expected = false;
        for (int y = 0; y < 11; ++y)
            for (int x = 0; x < 27; ++x) {
                const int ox = 45 + x - bx, oy = 50 + y - (by - 7);
                if (first[static_cast<size_t>(y)][static_cast<size_t>(x)] == '#' && ox >= 0 &&
                    ox < 13 && oy >= 0 && oy < 19 &&
                    second[static_cast<size_t>(oy)][static_cast<size_t>(ox)] == '#')
                    expected = true;
            }
        ASSERT_EQ(CollisionInstance(ofA, ofB, true), expected) << bx << ", " << by;
        hits += expected;
    }
    EXPECT_GT(hits, 100);
    EXPECT_LT(hits, 1900);
}

TEST_F(Collision, Points)
{
    const int32_t mask = AddMaskSprite({{"#..", "...", "..#"}});
    const int32_t bare = AddBoxSprite(3, 3);
    Sprite_Data(bare)->precise = true;
    CInstance* instance = Make(thing_, 10, 10, mask);
    EXPECT_TRUE(CollisionPoint(instance, 10, 10, true));
    EXPECT_FALSE(CollisionPoint(instance, 11, 10, true));
    EXPECT_TRUE(CollisionPoint(instance, 11, 10, false));
    EXPECT_TRUE(CollisionPoint(instance, 12.4F, 12.4F, true));
    EXPECT_TRUE(CollisionPoint(instance, 12.9F, 12.9F, false));
    EXPECT_FALSE(CollisionPoint(instance, 12.9F, 12.9F, true)) << "pixel 13 lies outside";
    EXPECT_FALSE(CollisionPoint(instance, 13, 12, false));
    EXPECT_FALSE(CollisionPoint(instance, 9.99F, 10, false));
    instance->SetSprite(bare);
    EXPECT_TRUE(CollisionPoint(instance, 11, 10, true)) << "no masks: all of the box";
    instance->SetSprite(-1);
    EXPECT_FALSE(CollisionPoint(instance, 10, 10, true)) << "no shape";
    instance->SetSprite(mask);
    instance->marked = true;
    EXPECT_FALSE(CollisionPoint(instance, 10, 10, true));
}

TEST_F(Collision, PlacesLendTheCaller)
{
    const int32_t box = AddBoxSprite(10, 10);
    CInstance* self = Make(thing_, 0, 0, box);
    CInstance* wall = Make(other_, 30, 0, box);
    EXPECT_FALSE(Place_Empty(self, 25, 0));
    EXPECT_TRUE(Place_Free(self, 25, 0)) << "the wall is not solid yet";
    wall->solid = true;
    EXPECT_FALSE(Place_Free(self, 25, 0));
    EXPECT_TRUE(Place_Free(self, 20, 0));
    EXPECT_EQ(self->x, 0);
    EXPECT_EQ(Box(self), (Sides{0, 0, 9, 9}));
    self->solid = true;
    EXPECT_TRUE(Place_Free(self, 0, 0)) << "the caller is not in its own way";
    wall->marked = true;
    EXPECT_TRUE(Place_Free(self, 30, 0));
    wall->marked = false;
    wall->SetSprite(-1);
    EXPECT_TRUE(Place_Free(self, 30, 0)) << "what has no shape stops nobody";
}

TEST_F(Collision, TargetsOfPlacesAndPoints)
{
    const int32_t box = AddBoxSprite(10, 10);
    CInstance* self = Make(other_, 0, 0, box);
    CInstance* near = Make(child_, 20, 0, box);
    CInstance* far = Make(thing_, 20, 0, box);
    const auto place = [&](int32_t target) { return Place_Find(self, far, 20, 0, target); };
    const auto point = [&](int32_t target) { return Position_Find(self, far, 25, 5, target); };
    for (const int32_t target : {thing_, static_cast<int32_t>(INSTANCE_ALL), child_, near->id}) {
        EXPECT_EQ(place(target), near) << target;
        EXPECT_EQ(point(target), near) << target;
    }
    EXPECT_EQ(place(INSTANCE_OTHER), far);
    EXPECT_EQ(point(INSTANCE_OTHER), far);
    EXPECT_EQ(place(INSTANCE_SELF), nullptr);
    EXPECT_EQ(Position_Find(self, far, 5, 5, INSTANCE_SELF), self);
    for (const int32_t target : {-4, -5, -7, 99, 100000 - 1, lastInstanceId + 1}) {
        EXPECT_EQ(place(target), nullptr) << target;
        EXPECT_EQ(point(target), nullptr) << target;
    }
    Instance_Deactivate(near);
    for (const int32_t target : {thing_, static_cast<int32_t>(INSTANCE_ALL)}) {
        EXPECT_EQ(place(target), far) << target;
        EXPECT_EQ(point(target), far) << target;
    }
    EXPECT_EQ(place(near->id), nullptr);
    EXPECT_EQ(Place_Find(self, far, 0, 0, INSTANCE_ALL), nullptr);
}

TEST_F(Collision, Grid)
{
    CInstance* instance = Make(thing_, 64.0005F, 10);
    EXPECT_TRUE(Place_Snapped(instance, 32, 0));
    EXPECT_FALSE(Place_Snapped(instance, 32, 32));
    EXPECT_TRUE(Place_Snapped(instance, 32, -1));
    instance->x = 64.002F;
    EXPECT_FALSE(Place_Snapped(instance, 32, 0));
    EXPECT_TRUE(Place_Snapped(instance, 0, 5));
    EXPECT_EQ(RoundToGrid(48, 32), 64);  // 1.5 to even
    EXPECT_EQ(RoundToGrid(80, 32), 64);  // 2.5 to even
}

TEST_F(Collision, SteadyTestsAllocateNothing)
{
    const int32_t mask = AddMaskSprite({{"##", "##"}});
    CInstance* self = Make(thing_, 0, 0, mask);
    for (int i = 0; i < 50; ++i) Make(other_, static_cast<float>(i), 0, mask);
    const auto all = [&] {
        Place_Free(self, 3, 0);
        Place_Find(self, self, 3, 0, other_);
        Position_Find(self, self, 3, 0, INSTANCE_ALL);
        Instance_Exists(other_, self, self);
        Instance_Number(INSTANCE_ALL, self, self);
        Instance_SetDepth(self, self->depth + 1);
        ApplyPendingChanges();
        PurgeInstances();
    };
    all();
    const uint64_t before = MemoryManager::GetStats().calls;
    for (int i = 0; i < 10; ++i) all();
    EXPECT_EQ(MemoryManager::GetStats().calls, before);
}

}  // namespace
