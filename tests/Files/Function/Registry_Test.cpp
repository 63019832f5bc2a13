#include "Files/Function/Function_Registry.h"

#include <cstring>

#include "Files/Variable/Variable_BuiltIn.h"
#include "tests/Files/Function/support_Builtins.h"

namespace {

class RegistryTest : public ReportsTest {
protected:
    void TearDown() override
    {
        Function_Init();
        Variable_BuiltIn_Init();
        Constant_Init();
        Code_Variable_Init(0, 0);
        ReportsTest::TearDown();
    }
    static void Routine(RValue&, CInstance*, CInstance*, int, RValue*) {}
};

TEST_F(RegistryTest, StartUpNamesTheFamiliesInOrder)
{
    g_DebugConsole = g_ErrorConsole;
    std::string once;
    int32_t functions = 0, constants = 0, variables = 0;
    for (int start = 0; start < 2; ++start) {
        Lines().clear();
        InitVXLFunctions();
        std::string trace;
        for (const std::string& line : Lines()) trace += line;
        EXPECT_EQ(trace,
                  "HighScore..Game..Math..Graphic..Action..File..Resource..Interaction..3D.."
                  "Particle..Misc..DS..Sound..Physics..Gamepad..Buffers..Networking..Shaders.."
                  "Vexo..Fini\n");
        if (start == 1) {
            EXPECT_EQ(Function_Count(), functions) << "emptied and filled again";
            EXPECT_EQ(Constant_Count(), constants);
            EXPECT_EQ(Variable_BuiltIn_Count(), variables);
        }
        functions = Function_Count();
        constants = Constant_Count();
        variables = Variable_BuiltIn_Count();
    }
    for (int32_t i = 0; i < functions; ++i)
        EXPECT_EQ(Function_Find(Function_Record(i)->name), i)
            << Function_Record(i)->name << " has two rows, or a script's name";
}

TEST_F(RegistryTest, FunctionIds)
{
    bool found = true;
    EXPECT_EQ(Function_Find("", &found), -1);
    EXPECT_FALSE(found);
    for (int i = 0; i < 1200; ++i)
        Function_Add(("built_in_" + std::to_string(i)).c_str(), Routine, i % 5 - 1);
    EXPECT_EQ(Function_Find("built_in_1199", &found), 1199);
    EXPECT_TRUE(found);
    EXPECT_EQ(Function_Record(700)->argumentCount, -1);
    EXPECT_EQ(Function_Record(700)->id, -1);
    EXPECT_EQ(Function_Find("script_execute"), kScriptExecuteId);
    EXPECT_EQ(Function_Record(1200), nullptr);
    EXPECT_EQ(Function_Record(kScriptExecuteId), nullptr);
    Function_Add(std::string(100, 'n').c_str(), Routine, 0);
    EXPECT_EQ(std::strlen(Function_Record(1200)->name), 63U) << "a name ends inside its field";
}

TEST_F(RegistryTest, BuiltInVariables)
{
    EXPECT_EQ(Variable_BuiltIn_Find("x"), -1);
    for (int i = 0; i < kMaxBuiltinVariables; ++i)
        Variable_BuiltIn_Add(("v" + std::to_string(i)).c_str(), nullptr, nullptr, i % 2 == 0);
    EXPECT_EQ(Variable_BuiltIn_Find("v499"), 499);
    EXPECT_STREQ(Variable_BuiltIn_Row(7)->name, "v7");
    EXPECT_FALSE(Variable_BuiltIn_Row(7)->canSet);
    EXPECT_EQ(Variable_BuiltIn_Row(500), nullptr);
    EXPECT_TRUE(Reports().empty());
    Variable_BuiltIn_Add("one_more", nullptr, nullptr, false);
    ExpectReport("INTERNAL ERROR: Adding too many variables");
    EXPECT_EQ(Variable_BuiltIn_Count(), kMaxBuiltinVariables);
}

TEST_F(RegistryTest, NamesOfTheGamesVariables)
{
    Variable_BuiltIn_Add("health", nullptr, nullptr, true);
    Variable_BuiltIn_Add("shared", nullptr, nullptr, true);
    Code_Variable_Init(3, 2);
    EXPECT_EQ(Code_Variable_Register("moveCaixa", SCOPE_GLOBAL, 2), 100002);
    EXPECT_EQ(Code_Variable_Register("alvo", SCOPE_INSTANCE, 40), 100040);
    EXPECT_EQ(Code_Variable_Register("both", SCOPE_INSTANCE, 1), 100001);
    EXPECT_EQ(Code_Variable_Register("both", SCOPE_GLOBAL, 0), 100000);
    EXPECT_EQ(Code_Variable_Register("shared", SCOPE_INSTANCE, 7), 100007);

    EXPECT_EQ(Code_Variable_Find("moveCaixa", SCOPE_EITHER), 100002);
    EXPECT_EQ(Code_Variable_Find("both", SCOPE_EITHER), 100000) << "globals come first";
    EXPECT_EQ(Code_Variable_Find("both", SCOPE_INSTANCE), 100001);
    EXPECT_EQ(Code_Variable_Find("shared", SCOPE_EITHER), 100007) << "then instances";
    EXPECT_EQ(Code_Variable_Find("health", SCOPE_EITHER), 0) << "built-in ones last";
    EXPECT_EQ(Code_Variable_Find("health", SCOPE_GLOBAL), -1);
    EXPECT_EQ(Code_Variable_Find("nobody", SCOPE_EITHER), -1);
    EXPECT_EQ(Code_Variable_InstanceCount(), 41) << "the high mark";
    EXPECT_STREQ(Code_Variable_InstanceName(40), "alvo");
    EXPECT_EQ(Code_Variable_InstanceName(39), nullptr);
    EXPECT_STREQ(Code_Variable_GlobalName(2), "moveCaixa");
    Code_Variable_Init(0, 0);
    EXPECT_EQ(Code_Variable_Find("moveCaixa", SCOPE_EITHER), -1) << "rebuilt with each load";
}

TEST_F(RegistryTest, Constants)
{
    Constants_Register();
    const struct {
        const char* name;
        double value;
    } known[] = {
        {"noone", -4},
        {"pi", 3.1415927410125732},
        {"c_yellow", 0x00FFFF},
        {"vk_anykey", 1},
        {"vk_f12", 123},
        {"vk_left", 37},
        {"gp_axisrv", 0x8014},
        {"ev_user15", 25},
        {"ev_gui_end", 75},
        {"ev_global_left_press", 53},
        {"ev_joystick2_button8", 43},
        {"cr_size_all", -22},
        {"pr_trianglefan", 6},
        {"fa_middle", 1},
        {"ef_rain", 10},
        {"pt_shape_snow", 13},
        {"buffer_text", 13},
        {"bm_subtract", 3},
        {"os_android", 4},
    };
    for (const auto& constant : known) {
        RValue value;
        EXPECT_TRUE(Constant_Find(constant.name, &value)) << constant.name;
        EXPECT_EQ(value.real, constant.value) << constant.name;
    }
    EXPECT_FALSE(Constant_Find("vk_hyper", nullptr));
    RValue text;
    VXCreateString(&text, "a setting");
    Constant_Add("from_options", text);
    FREE_RValue(&text);
    ASSERT_TRUE(Constant_Find("from_options", &text));
    EXPECT_STREQ(VXGetText(&text), "a setting");
    RELEASE_RValue(&text);
    EXPECT_STREQ(Constant_Name(Constant_Count() - 1), "from_options");
}

// ---- random numbers

// Words worked out apart from this code, from the published recurrence.
TEST(Random, KnownWords)
{
    const struct {
        uint32_t seed;
        bool old;
        uint32_t words[4], thousandth;
    } cases[] = {
        {0x0U, false, {0xCDC05DCFU, 0xF6780AEFU, 0x41457DF1U, 0xA5BC7F31U}, 0xE0F636C7U},
        {0x1U, false, {0x176C4976U, 0x67312AE8U, 0xE23C7AB9U, 0x63FD35A0U}, 0x9CDC4205U},
        {0xDEADBEEFU, false, {0xB59043B2U, 0x2904034U, 0xBA10E1EAU, 0xE7D57767U}, 0x73ADD6FFU},
        {0x1U, true, {0x176C4976U, 0x67312AE8U, 0xE23C7AB9U, 0x63FD35A0U}, 0x9CDC4205U},
    };
    for (const auto& one : cases) {
        Random_UseOldVersion(one.old);
        Random_Seed(one.seed);
        EXPECT_EQ(Random_GetSeed(), one.seed);
        for (const uint32_t word : one.words) EXPECT_EQ(Random_Word(), word);
        for (int i = 5; i < 1000; ++i) Random_Word();
        EXPECT_EQ(Random_Word(), one.thousandth);
    }
    Random_UseOldVersion(false);
}

TEST(Random, IntegersIncludeBothEndsAndDrawTwoWords)
{
    Random_Seed(3);
    bool seen[4] = {};
    for (int i = 0; i < 200; ++i) {
        const int64_t drawn = Random_Integer(-3);
        ASSERT_TRUE(drawn <= 0 && drawn >= -3);
        seen[-drawn] = true;
    }
    for (const bool each : seen) EXPECT_TRUE(each);

    Random_Seed(9);
    Random_Word();
    Random_Word();
    const uint32_t third = Random_Word();
    Random_Seed(9);
    EXPECT_EQ(Random_Integer(0), 0);
    EXPECT_EQ(Random_Word(), third);
    Random_Seed(5);
    EXPECT_EQ(Random_Integer(10), 10);
}

TEST_F(BuiltinsTest, RandomFamily)
{
    Number("random_set_seed", {77.0});
    const double first = Number("random", {1.0});
    EXPECT_EQ(Number("random_get_seed"), 77);
    Random_Seed(77);
    EXPECT_EQ(Number("random", {1.0}), first);
    for (int i = 0; i < 100; ++i) {
        const double real = Number("random_range", {5.0, -5.0});
        EXPECT_TRUE(real >= -5 && real < 5);
        const double whole = Number("irandom_range", {2.0, -1.0});
        EXPECT_TRUE(whole >= -1 && whole <= 2 && whole == static_cast<int>(whole));
    }
    Random_Seed(1);
    const uint32_t word = Random_Word();
    Random_Seed(1);
    EXPECT_EQ(Number("choose"), 0) << "no draw";
    EXPECT_EQ(Text("choose", {"a", "b", "c"}), std::string(1, static_cast<char>('a' + word % 3)));
    Stage_MoveClock(0x123456789);
    const double seed = Number("randomize");
    EXPECT_EQ(seed, Random_GetSeed());
    EXPECT_EQ(Random_GetSeed(), (0x23456789U + 1) ^ 0x2345U ^ 0x67890000U);
}

}  // namespace
