// What game code sees: handles of variables, and built-ins with native arguments.

#include "Files/Code/Seam.h"

#include "Files/Base/VXObjectBase.h"
#include "Files/Function/Function_Registry.h"
#include "tests/Files/support_Reports.h"

namespace {

class SeamTest : public ReportsTest {
protected:
    void SetUp() override
    {
        ReportsTest::SetUp();
        RValue_Init();
        globals_ = VxNew<VXObjectBase>(3);
        g_Global = globals_;
    }
    void TearDown() override
    {
        g_Global = nullptr;
        VxDelete(globals_);
        ReportsTest::TearDown();
    }
    const Global steps{0}, name{1}, other{2};

private:
    VXObjectBase* globals_ = nullptr;
};

// A sum of tenths is not exactly its decimal; a script compares as if it were.
TEST_F(SeamTest, NumbersCompareWithATolerance)
{
    steps = 0;
    for (int i = 0; i < 10; ++i) steps += 0.1;
    ASSERT_NE(static_cast<double>(steps), 1.0);
    EXPECT_TRUE(steps == 1);
    EXPECT_TRUE(1.0 == steps);
    EXPECT_FALSE(steps != 1);
    EXPECT_FALSE(steps < 1);
    EXPECT_FALSE(steps > 1);
    EXPECT_TRUE(steps <= 1);
    EXPECT_TRUE(steps >= 1);
    EXPECT_TRUE(1 >= steps);
    steps += 1e-9;
    EXPECT_TRUE(steps > 1);
    EXPECT_TRUE(1 < steps);
    EXPECT_FALSE(steps == 1);
    EXPECT_TRUE(steps.ref() != 1);
    g_MathEpsilon = 1e-3;
    EXPECT_TRUE(steps == 1) << "by the tolerance that the script set";
}

TEST_F(SeamTest, TwoVariablesCompareAsValues)
{
    name = "cima";
    other = "cima";
    EXPECT_TRUE(name == other);
    other = "baixo";
    EXPECT_TRUE(name != other);
    EXPECT_TRUE(other < name);
    EXPECT_TRUE(name == "cima");
    steps = 0;
    EXPECT_FALSE(name == steps) << "a text is no number";
    other = 1e-11;
    EXPECT_TRUE(other == steps.ref());
    EXPECT_TRUE(other.ref().get() == steps);
    EXPECT_TRUE(Reports().empty());
}

TEST_F(SeamTest, ChanceCharactersAndMessages)
{
    Random_Seed(5);
    const double drawn[] = {choose({1, 2, 4}), choose({1, 2, 4}), choose({1, 2, 4})};
    Random_Seed(5);
    for (const double value : drawn) EXPECT_EQ(value, 1 << Random_Word() % 3);
    const uint32_t next = (Random_Seed(5), Random_Word());
    Random_Seed(5);
    EXPECT_EQ(choose({}), 0);
    EXPECT_EQ(Random_Word(), next) << "nothing is drawn for no values";
    EXPECT_EQ(ord("\xC3\xA9t"), 0xE9);
    EXPECT_EQ(ord(""), 0);
    steps = 2.5;
    show_debug_message(steps.ref().get());
    show_debug_message("Fase 1");
    EXPECT_EQ(Lines(), (std::vector<std::string>{"2.50\n", "Fase 1\n"}));
}

}  // namespace
