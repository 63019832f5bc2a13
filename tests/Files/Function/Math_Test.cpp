#include <cmath>

#include "tests/Files/Function/support_Builtins.h"

namespace {

TEST_F(BuiltinsTest, Numbers)
{
    const struct {
        const char* name;
        std::vector<Argument> arguments;
        double value;
    } cases[] = {
        {"round", {2.5}, 2},
        {"round", {3.5}, 4},
        {"round", {-0.5}, 0},
        {"floor", {-0.1}, -1},
        {"ceil", {-0.9}, 0},
        {"frac", {-3.25}, -0.25},
        {"sign", {-7.0}, -1},
        {"sqr", {-3.0}, 9},
        {"power", {2.0, 10.0}, 1024},
        {"logn", {2.0, 8.0}, 3},
        {"min", {3.0, -2.0, 9.0}, -2},
        {"max", {3.0, -2.0, 9.0, 1.0}, 9},
        {"mean", {1.0, 2.0, 6.0}, 3},
        {"median", {9.0, 1.0, 4.0}, 4},
        {"median", {9.0, 1.0, 4.0, 5.0}, 4},
        {"clamp", {5.0, 3.0, 1.0}, 3},
        {"clamp", {-5.0, 1.0, 3.0}, 1},
        {"lerp", {10.0, 20.0, 1.5}, 25},
        {"dot_product", {1.0, 2.0, 3.0, 4.0}, 11},
        {"dot_product_normalised", {0.0, 2.0, 0.0, 9.0}, 1},
        {"point_distance", {1.0, 1.0, 4.0, 5.0}, 5},
        {"point_direction", {0.0, 0.0, 0.0, -3.0}, 90},
        {"point_direction", {0.0, 0.0, -3.0, 0.0}, 180},
        {"point_direction", {0.0, 0.0, 5.0, 5.0}, 315},
        {"lengthdir_x", {52.0, 90.0}, 0},
        {"lengthdir_y", {52.0, 90.0}, -52},
        {"angle_difference", {10.0, 350.0}, 20},
        {"angle_difference", {350.0, 10.0}, -20},
        {"radtodeg", {3.1415927410125732}, 180},
        {"abs", {"-4.5"}, 4.5},
        {"power", {}, 1},
    };
    for (const auto& one : cases)
        EXPECT_NEAR(Number(one.name, one.arguments), one.value, 1e-9) << one.name;
    EXPECT_TRUE(Reports().empty());
}

TEST_F(BuiltinsTest, TheEpsilonOfComparisons)
{
    EXPECT_EQ(Number("math_get_epsilon"), 1e-10);
    Call("math_set_epsilon", {0.25});
    const RValue a(1), b(1.2);
    EXPECT_EQ(VXCompareVal(&a, &b, g_MathEpsilon), 0);
    for (const double refused : {1.0, -0.1}) Call("math_set_epsilon", {refused});
    EXPECT_EQ(Number("math_get_epsilon"), 0.25);
    Call("math_set_epsilon", {0.0});
    EXPECT_EQ(Number("math_get_epsilon"), 1e-11);
}

TEST_F(BuiltinsTest, KindsByName)
{
    RValue list = Call("array_create", {2.0}), whole = Call("int64", {"12"});
    const RValue undefined;
    EXPECT_EQ(Text("typeof", {&list}), "array");
    EXPECT_EQ(Text("typeof", {&whole}), "int64");
    EXPECT_EQ(Text("typeof", {1.0}), "number");
    EXPECT_EQ(Text("typeof", {"x"}), "string");
    EXPECT_EQ(Text("typeof", {&undefined}), "undefined");
    EXPECT_EQ(Number("is_array", {&list}), 1);
    EXPECT_EQ(Number("is_real", {&whole}), 1);
    EXPECT_EQ(Number("is_real", {"1"}), 0);
    EXPECT_EQ(Number("is_undefined", {&undefined}), 1);
    FREE_RValue(&list);
}

TEST_F(BuiltinsTest, TextsOfValues)
{
    RValue list = Call("array_create", {2.0, 1.5});
    EXPECT_EQ(Text("string", {&list}), "{ { 1.50,1.50 },  }");
    EXPECT_EQ(Text("string", {12.0}), "12");
    EXPECT_EQ(Text("string_format", {3.14159, 4.0, 2.0}), "   3.14");
    EXPECT_EQ(Text("string_format", {7.0, 3.0, 0.0}), "  7");
    EXPECT_EQ(Number("real", {" 4.5 "}), 4.5);
    EXPECT_EQ(Text("chr", {233.0}), "\xC3\xA9");
    EXPECT_EQ(Text("chr", {65.0}), "A");
    EXPECT_EQ(Text("chr", {128512.0}), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Number("ord", {"\xC3\xA9tat"}), 233);
    EXPECT_EQ(Number("ord", {""}), 0);
    EXPECT_TRUE(Reports().empty());
    EXPECT_EQ(Number("real", {"four"}), 0);
    ExpectReport("real :: unable to convert string \"four\" to number");
    FREE_RValue(&list);
}

// "Condição" has two characters of two bytes each.
TEST_F(BuiltinsTest, StringsCountCharacters)
{
    const char* const word = "Condi\xC3\xA7\xC3\xA3o";
    EXPECT_EQ(Number("string_length", {word}), 8);
    EXPECT_EQ(Number("string_byte_length", {word}), 10);
    EXPECT_EQ(Text("string_char_at", {word, 6.0}), "\xC3\xA7");
    EXPECT_EQ(Text("string_char_at", {word, 0.0}), "C");
    EXPECT_EQ(Text("string_char_at", {word, 9.0}), "");
    EXPECT_EQ(Text("string_copy", {word, 6.0, 2.0}), "\xC3\xA7\xC3\xA3");
    EXPECT_EQ(Text("string_copy", {word, 8.0, 100.0}), "o");
    EXPECT_EQ(Text("string_copy", {word, 2.0, -1.0}), "");
    EXPECT_EQ(Number("string_pos", {"\xC3\xA3o", word}), 7);
    EXPECT_EQ(Number("string_pos", {"x", word}), 0);
    EXPECT_EQ(Text("string_delete", {word, 2.0, 6.0}), "Co");
    EXPECT_EQ(Text("string_delete", {word, 0.0, 6.0}), word);
    EXPECT_EQ(Text("string_insert", {"-", word, 7.0}), "Condi\xC3\xA7-\xC3\xA3o");
    EXPECT_EQ(Text("string_upper", {word}), "CONDI\xC3\x87\xC3\x83O");
    EXPECT_EQ(Text("string_lower", {"\xC3\x89\xC3\x97"}), "\xC3\xA9\xC3\x97");
    EXPECT_EQ(Number("string_ord_at", {word, 6.0}), 0xE7);
    EXPECT_EQ(Number("string_length", {"\xFF\xC3"}), 2) << "bytes that are no UTF-8 count too";
}

TEST_F(BuiltinsTest, StringsInPieces)
{
    EXPECT_EQ(Text("string_replace", {"aXbXc", "X", "--"}), "a--bXc");
    EXPECT_EQ(Text("string_replace_all", {"aXbXc", "X", "XX"}), "aXXbXXc");
    EXPECT_EQ(Text("string_replace_all", {"abc", "", "x"}), "abc");
    EXPECT_EQ(Number("string_count", {"aa", "aaaa"}), 2);
    EXPECT_EQ(Text("string_repeat", {"ab", 3.0}), "ababab");
    EXPECT_EQ(Text("string_repeat", {"ab", -1.0}), "");
    EXPECT_EQ(Text("string_digits", {"a1b22 3"}), "1223");
    EXPECT_EQ(Text("string_letters", {"a1b22 Z"}), "abZ");
    EXPECT_EQ(Text("string_lettersdigits", {"a-1 b"}), "a1b");
    EXPECT_EQ(Text("string_repeat", {"0123456789", 1e9}), "");
    ExpectReport("string_repeat :: 1000000000 times 10 bytes is too long");
}

TEST_F(BuiltinsTest, Arrays)
{
    RValue list = Call("array_create", {3.0, "x"}), alias;
    COPY_RValue(&alias, &list);
    Call("array_set", {&list, 1.0, 5.0});
    EXPECT_EQ(Number("array_get", {&alias, 1.0}), 5) << "written in place, seen by all holders";
    Call("array_set", {&list, 40.0, 1.0});
    EXPECT_EQ(Number("array_length_1d", {&alias}), 41);
    Call("array_set_2D", {&list, 2.0, 4.0, 9.0});
    EXPECT_EQ(Number("array_height_2d", {&list}), 3);
    EXPECT_EQ(Number("array_length_2d", {&list, 2.0}), 5);
    EXPECT_EQ(Number("array_get_2D", {&list, 2.0, 4.0}), 9);
    EXPECT_EQ(Number("array_length_1d", {4.0}), 0);
    EXPECT_TRUE(Reports().empty());
    EXPECT_EQ(Number("array_get", {&list, 41.0}), 0);
    ExpectReport("array_get :: Index [0,41] out of range [3,41]");
    Call("array_get", {&list, -1.0});
    ExpectReport("array_get :: Index [0,-1] out of range [3,41]");
    FREE_RValue(&alias);
    FREE_RValue(&list);
}

TEST_F(BuiltinsTest, ArraysComparedAndCopied)
{
    RValue a = Call("array_create", {3.0, 1.0}), b = Call("array_create", {3.0, 1.0});
    EXPECT_EQ(Number("array_equals", {&a, &b}), 1);
    Call("array_set", {&b, 2.0, "1"});
    EXPECT_EQ(Number("array_equals", {&a, &b}), 0);
    EXPECT_EQ(Number("array_equals", {&a, &a}), 1);
    for (int i = 0; i < 3; ++i) Call("array_set", {&a, double(i), double(i)});
    Call("array_copy", {&a, 1.0, &a, 0.0, 3.0});
    EXPECT_EQ(Text("string", {&a}), "{ { 0,0,1,2 },  }") << "over itself, from the end";
    Call("array_copy", {&b, 0.0, &a, 3.0, 50.0});
    EXPECT_EQ(Text("string", {&b}), "{ { 2,1,1 },  }") << "only the cells that are there";
    EXPECT_TRUE(Reports().empty());
    Call("array_equals", {&a});
    ExpectReport("array_equals :: takes 2 arguments");
    Call("array_equals", {1.0, &a});
    ExpectReport("array_equals :: argument 0 is not an array");
    Call("array_equals", {&a, "a"});
    ExpectReport("array_equals :: argument 1 is not an array");
    FREE_RValue(&a);
    FREE_RValue(&b);
}

TEST_F(BuiltinsTest, Dates)
{
    const double day = Number("date_create_datetime", {2024.0, 2.0, 29.0, 23.0, 59.0, 58.0});
    EXPECT_EQ(Number("date_date_of", {day}), 45351);
    EXPECT_EQ(Text("date_datetime_string", {day}), "29/02/2024 23:59:58");
    EXPECT_EQ(Number("date_get_weekday", {day}), 4) << "a Thursday";
    EXPECT_EQ(Number("date_get_day_of_year", {day}), 60);
    EXPECT_EQ(Text("date_datetime_string", {Number("date_inc_second", {day, 2.0})}),
              "01/03/2024 00:00:00");
    EXPECT_EQ(Text("date_date_string", {Number("date_inc_year", {day, 1.0})}), "28/02/2025");
    EXPECT_EQ(Text("date_date_string", {Number("date_inc_month", {day, -14.0})}), "29/12/2022");
    EXPECT_EQ(Number("date_create_datetime", {2023.0, 2.0, 29.0, 0.0, 0.0, 0.0}), -1);
    EXPECT_EQ(Number("date_days_in_month", {day}), 29);
    EXPECT_EQ(Number("date_leap_year", {Number("date_inc_year", {day, -124.0})}), 0) << "1900";
    EXPECT_EQ(Number("date_compare_datetime", {day, day + 1e-9}), 0) << "to the second";
    EXPECT_NEAR(Number("date_hour_span", {day, day + 2}), 48, 1e-6);
    for (double walk = -800000; walk < 800000; walk += 9973.25) {
        const double again =
            Number("date_create_datetime",
                   {Number("date_get_year", {walk}), Number("date_get_month", {walk}),
                    Number("date_get_day", {walk}), Number("date_get_hour", {walk}),
                    Number("date_get_minute", {walk}), Number("date_get_second", {walk})});
        ASSERT_NEAR(again, walk, 1e-9);
    }
    Stage_SetLocalTime(HostLocalTime{2026, 11, 22, 0, 6, 0, 0});
    EXPECT_EQ(Text("date_datetime_string", {Number("date_current_datetime")}),
              "22/11/2026 06:00:00");
}

}  // namespace
