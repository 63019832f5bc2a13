// Containers of scripts, called as scripts call them.

#include <cmath>
#include <string>

#include "Files/Data/DS_Tables.h"
#include "tests/Files/Function/support_Builtins.h"

namespace {

class DS : public BuiltinsTest {
protected:
    double New(const char* kind, const std::vector<Argument>& sizes = {})
    {
        return Number(("ds_" + std::string(kind) + "_create").c_str(), sizes);
    }
    bool IsUndefined(const char* name, const std::vector<Argument>& arguments)
    {
        RValue result = Call(name, arguments);
        const bool undefined = result.Kind() == VALUE_UNDEFINED;
        FREE_RValue(&result);
        return undefined;
    }
    // The values of a list as one text.
    std::string Items(double list)
    {
        std::string items;
        const double size = Number("ds_list_size", {list});
        for (double i = 0; i < size; ++i) items += Printed("ds_list_find_value", {list, i}) + ",";
        return items;
    }
    std::string Printed(const char* name, const std::vector<Argument>& arguments)
    {
        RValue result = Call(name, arguments);
        const std::string text = ToText(&result).get();
        FREE_RValue(&result);
        return text;
    }
    const std::string missing_ = "Data structure with index does not exist.";
};

TEST_F(DS, IdsAreTheLowestFreeOnesOfEachKind)
{
    for (double id = 0; id < 5; ++id) EXPECT_EQ(New("map"), id);
    EXPECT_EQ(New("list"), 0) << "kinds have ids of their own";
    Call("ds_map_destroy", {3.0});
    Call("ds_map_destroy", {1.0});
    EXPECT_EQ(Number("ds_exists", {3.0, 1.0}), 0);
    EXPECT_EQ(New("map"), 1);
    EXPECT_EQ(New("map"), 3);
    EXPECT_EQ(Number("ds_exists", {0.0, 2.0}), 1);
    EXPECT_EQ(Number("ds_exists", {0.0, 3.0}), 0);
    EXPECT_EQ(Number("ds_exists", {0.0, 7.0}), 0) << "no such kind";
    for (const double id : {-1.0, 9.0, 1e9}) {
        EXPECT_EQ(Number("ds_map_size", {id}), 0);
        ExpectReport(missing_);
        Call("ds_list_add", {id, 1.0});
        ExpectReport(missing_);
        EXPECT_EQ(Number("ds_grid_get", {id, 0.0, 0.0}), 0);
        ExpectReport(missing_);
        Call("ds_stack_pop", {id});
        ExpectReport(missing_);
    }
    Call("ds_map_create", {3.0});
    ExpectReport("ds_map_create: the number of buckets is no power of two");
}

TEST_F(DS, MapsByKey)
{
    const double map = New("map");
    EXPECT_TRUE(IsUndefined("ds_map_find_value", {map, "a"}));
    EXPECT_EQ(Number("ds_map_replace", {map, "a", 1.0}), 0) << "absent: added";
    EXPECT_EQ(Number("ds_map_add", {map, "a", 2.0}), 0) << "present: kept";
    EXPECT_EQ(Number("ds_map_find_value", {map, "a"}), 1);
    EXPECT_EQ(Number("ds_map_replace", {map, "a", "text"}), 1);
    EXPECT_EQ(Text("ds_map_find_value", {map, "a"}), "text");
    EXPECT_EQ(Number("ds_map_add", {map, 1.0, "number"}), 1);
    EXPECT_EQ(Number("ds_map_add", {map, "1", "digit"}), 1);
    EXPECT_EQ(Number("ds_map_add", {map, 1.0000000001, "other bytes"}), 1);
    EXPECT_EQ(Text("ds_map_find_value", {map, 1.0}), "number");
    EXPECT_EQ(Text("ds_map_find_value", {map, "1"}), "digit");
    Call("ds_map_set", {map, "", "empty"});
    EXPECT_EQ(Number("ds_map_size", {map}), 5);
    const double copy = New("map");
    Call("ds_map_copy", {copy, map});
    Call("ds_map_delete", {map, 1.0});
    Call("ds_map_delete", {map, "absent"});
    EXPECT_EQ(Number("ds_map_exists", {map, 1.0}), 0);
    EXPECT_EQ(Number("ds_map_size", {map}), 4);
    EXPECT_EQ(Number("ds_map_exists", {copy, 1.0}), 1);
    Call("ds_map_clear", {map});
    EXPECT_EQ(Number("ds_map_empty", {map}), 1);
    EXPECT_TRUE(Reports().empty());
}

// One bucket: the order of adding. 256 buckets: that of the hashes.
TEST_F(DS, MapsAreWalkedInOneOrderBothWays)
{
    for (const double buckets : {1.0, 2.0, 256.0}) {
        const double map = New("map", {buckets});
        EXPECT_TRUE(IsUndefined("ds_map_find_first", {map}));
        EXPECT_TRUE(IsUndefined("ds_map_find_last", {map}));
        for (double key = 0; key < 40; ++key) Call("ds_map_add", {map, key, -key});
        for (double key = 0; key < 40; key += 3) Call("ds_map_delete", {map, key});
        std::string there, back;
        int steps = 0;
        RValue key = Call("ds_map_find_first", {map});
        for (; key.Kind() == VALUE_REAL; key = Call("ds_map_find_next", {map, &key}), ++steps)
            there += std::to_string(static_cast<int>(key.real)) + " ";
        EXPECT_EQ(steps, 26);
        for (key = Call("ds_map_find_last", {map}); key.Kind() == VALUE_REAL;
             key = Call("ds_map_find_previous", {map, &key}))
            back = std::to_string(static_cast<int>(key.real)) + " " + back;
        EXPECT_EQ(there, back);
        if (buckets == 1) {
            EXPECT_EQ(there.substr(0, 14), "1 2 4 5 7 8 10");
        }
        EXPECT_TRUE(IsUndefined("ds_map_find_next", {map, "absent"}));
    }
}

TEST_F(DS, HashesAreTheStatedOnes)
{
    const auto hash = [](const char* text) {
        RValue value;
        VXCreateString(&value, text);
        const uint32_t found = HashOf(value);
        FREE_RValue(&value);
        return found;
    };
    EXPECT_EQ(hash(""), 0xFFFFFFFFU);
    EXPECT_EQ(hash("123456789"), ~0xCBF43926U) << "the check value of the polynomial, turned";
    EXPECT_EQ(HashOf(RValue()), 0U);
    RValue integer(0.0);
    integer.i64 = 7;
    integer.kind = VALUE_INT64;
    EXPECT_EQ(HashOf(integer), HashOf(RValue(7.0)));
}

TEST_F(DS, ValuesCompareByKind)
{
    RValue text, other, int32(0.0), int64(0.0), truth(1.0), none;
    VXCreateString(&text, "a");
    VXCreateString(&other, "b");
    int32.i32 = 3;
    int32.kind = VALUE_INT32;
    int64.i64 = INT64_MAX;
    int64.kind = VALUE_INT64;
    truth.kind = VALUE_BOOL;
    const auto compare = [](const RValue& a, const RValue& b) { return Compare(a, b, 1e-8); };
    EXPECT_EQ(compare(RValue(1.0), RValue(1.000000001)), 0);
    EXPECT_EQ(compare(RValue(1.0), RValue(1.1)), -1);
    EXPECT_EQ(compare(RValue(NAN), RValue(1.0)), 1);
    EXPECT_EQ(compare(truth, RValue(1.0)), 0);
    EXPECT_EQ(compare(int32, RValue(3.0000001)), 0) << "in single precision";
    EXPECT_EQ(compare(int32, RValue(3.5)), -1);
    EXPECT_EQ(compare(int64, RValue(9e30)), 0) << "as whole numbers, to the nearest end";
    EXPECT_EQ(compare(int64, int32), 1);
    EXPECT_EQ(compare(text, other), -1);
    EXPECT_EQ(compare(none, none), 0);
    EXPECT_EQ(compare(RValue(1e9), text), -1) << "numbers stand first";
    EXPECT_EQ(compare(text, RValue(1e9)), 1);
    EXPECT_EQ(compare(none, text), 1);
    FREE_RValue(&text);
    FREE_RValue(&other);
}

TEST_F(DS, ListsByPosition)
{
    const double list = New("list");
    Call("ds_list_add", {list, 0.0, "b", 2.0});
    Call("ds_list_insert", {list, 3.0, "end"});
    Call("ds_list_insert", {list, 5.0, "outside"});
    Call("ds_list_insert", {list, -1.0, "outside"});
    Call("ds_list_insert", {list, 0.0, "start"});
    Call("ds_list_replace", {list, 1.0, "a"});
    Call("ds_list_replace", {list, 5.0, "outside"});
    EXPECT_EQ(Items(list), "start,a,b,2,end,");
    Call("ds_list_set", {list, 7.0, "far"});
    Call("ds_list_set", {list, -1.0, "outside"});
    Call("ds_list_delete", {list, 0.0});
    Call("ds_list_delete", {list, 9.0});
    EXPECT_EQ(Items(list), "a,b,2,end,0,0,far,");
    EXPECT_TRUE(IsUndefined("ds_list_find_value", {list, 7.0}));
    EXPECT_EQ(Number("ds_list_find_index", {list, "end"}), 3);
    EXPECT_EQ(Number("ds_list_find_index", {list, "none"}), -1);
    EXPECT_EQ(Number("ds_list_find_index", {list, 2.000000001}), 2);
    Call("ds_set_precision", {0.0});
    EXPECT_EQ(Number("ds_list_find_index", {list, 2.000000001}), -1);
    Call("ds_list_clear", {list});
    EXPECT_EQ(Number("ds_list_empty", {list}), 1);
}

TEST_F(DS, SortingAndShuffling)
{
    const double list = New("list");
    Call("ds_list_add", {list, "b", 3.0, 1.0, "a", 2.0, 1.000000001});
    Call("ds_list_sort", {list, 1.0});
    EXPECT_EQ(Items(list), "1,1.00,2,3,a,b,") << "equal ones keep their order";
    Call("ds_list_sort", {list, 0.0});
    EXPECT_EQ(Items(list), "b,a,3,2,1.00,1,") << "and change it in the other direction";
    Call("ds_list_clear", {list});
    double sum = 0;
    for (double i = 0; i < 30; ++i) Call("ds_list_add", {list, i});
    const std::string before = Items(list);
    Random_Seed(1);
    Call("ds_list_shuffle", {list});
    EXPECT_NE(Items(list), before);
    for (double i = 0; i < 30; ++i) sum += Number("ds_list_find_value", {list, i});
    EXPECT_EQ(sum, 435);
    EXPECT_TRUE(Reports().empty());
}

TEST_F(DS, ContainersOwnTheMarkedOnes)
{
    const double outer = New("map"), inner = New("map"), list = New("list"), deep = New("map");
    Call("ds_map_add_map", {outer, "map", inner});
    Call("ds_map_add_list", {outer, "list", list});
    Call("ds_list_add", {list, deep, 77.0});
    Call("ds_list_mark_as_map", {list, 0.0});
    Call("ds_list_mark_as_map", {list, 1.0});
    Call("ds_map_add_map", {deep, "circle", outer});
    EXPECT_EQ(Number("ds_map_find_value", {outer, "map"}), inner) << "a plain number for scripts";
    Call("ds_map_add_map", {outer, "none", 99.0});
    ExpectReport("Invalid map index for value");
    Call("ds_map_replace_list", {outer, "none", 99.0});
    ExpectReport("Invalid list index for value");
    Call("ds_map_replace_map", {outer, "none", outer});
    ExpectReport("Unable to use same map for replace");
    EXPECT_EQ(Number("ds_map_exists", {outer, "none"}), 0);
    Call("ds_map_destroy", {outer});
    for (const double map : {outer, inner, deep}) EXPECT_EQ(Number("ds_exists", {map, 1.0}), 0);
    EXPECT_EQ(Number("ds_exists", {list, 2.0}), 0);
    EXPECT_EQ(New("map"), 0);
    Call("ds_map_add_map", {0.0, "self", 0.0});
    Call("ds_map_clear", {0.0});
    EXPECT_EQ(Number("ds_exists", {0.0, 1.0}), 0) << "it owned itself";
    // A long chain goes without a deep stack.
    const double first = New("list");
    for (int i = 0; i < 20000; ++i) {
        const double next = New("list");
        Call("ds_list_add", {next - 1, next});
        Call("ds_list_mark_as_list", {next - 1, 0.0});
    }
    Call("ds_list_destroy", {first});
    EXPECT_EQ(Number("ds_exists", {20000.0, 2.0}), 0);
}

TEST_F(DS, StacksAndQueues)
{
    const double stack = New("stack"), queue = New("queue");
    Call("ds_stack_push", {stack, 1.0, "top"});
    EXPECT_EQ(Text("ds_stack_top", {stack}), "top");
    EXPECT_EQ(Text("ds_stack_pop", {stack}), "top");
    EXPECT_EQ(Number("ds_stack_pop", {stack}), 1);
    EXPECT_TRUE(IsUndefined("ds_stack_pop", {stack}));
    EXPECT_TRUE(IsUndefined("ds_stack_top", {stack}));
    for (double i = 0; i < 40; ++i) Call("ds_queue_enqueue", {queue, i});
    for (double i = 0; i < 20; ++i) EXPECT_EQ(Number("ds_queue_dequeue", {queue}), i);
    EXPECT_EQ(Number("ds_queue_head", {queue}), 20);
    EXPECT_EQ(Number("ds_queue_tail", {queue}), 39);
    EXPECT_EQ(Number("ds_queue_size", {queue}), 20);
    // Count 20, head 0, room for 48.
    EXPECT_EQ(Text("ds_queue_write", {queue}).substr(0, 32), "CA000000140000000000000030000000");
    for (int i = 0; i < 20; ++i) Call("ds_queue_dequeue", {queue});
    EXPECT_TRUE(IsUndefined("ds_queue_dequeue", {queue}));
    EXPECT_TRUE(IsUndefined("ds_queue_tail", {queue}));
    EXPECT_EQ(Number("ds_queue_empty", {queue}), 1);
}

TEST_F(DS, PriorityQueues)
{
    const double queue = New("priority");
    EXPECT_TRUE(IsUndefined("ds_priority_find_min", {queue}));
    Call("ds_priority_add", {queue, "mid", 5.0});
    Call("ds_priority_add", {queue, "low", 1.0});
    Call("ds_priority_add", {queue, "high", 9.0});
    EXPECT_EQ(Text("ds_priority_find_max", {queue}), "high");
    Call("ds_priority_change_priority", {queue, "high", 0.0});
    EXPECT_EQ(Number("ds_priority_find_priority", {queue, "high"}), 0);
    EXPECT_TRUE(IsUndefined("ds_priority_find_priority", {queue, "none"}));
    EXPECT_EQ(Text("ds_priority_delete_min", {queue}), "high");
    EXPECT_EQ(Text("ds_priority_delete_max", {queue}), "mid");
    Call("ds_priority_delete_value", {queue, "none"});
    EXPECT_EQ(Number("ds_priority_size", {queue}), 1);
    Call("ds_priority_delete_value", {queue, "low"});
    EXPECT_TRUE(IsUndefined("ds_priority_delete_min", {queue}));
}

TEST_F(DS, TextsOfContainers)
{
    const double list = New("list"), copy = New("list");
    RValue truth(1.0), int32(0.0), array;
    truth.kind = VALUE_BOOL;
    int32.i32 = -2;
    int32.kind = VALUE_INT32;
    const RValue cell(4.0);
    SET_RValue(&array, &cell, kArrayRowStride + 1);
    Call("ds_list_add", {list, 1.0, "ab"});
    EXPECT_EQ(Text("ds_list_write", {list}),
              "2E0100000200000000000000000000000000F03F01000000020000006162");
    Call("ds_list_add", {list, &truth, &int32, &array});
    const std::string text = Text("ds_list_write", {list});
    Call("ds_list_add", {copy, "old"});
    Call("ds_list_read", {copy, text.c_str()});
    EXPECT_EQ(Text("ds_list_write", {copy}), text);
    EXPECT_EQ(Number("ds_list_find_value", {copy, 3.0}), -2);
    // Damaged texts change nothing.
    for (size_t cut = 0; cut < text.size(); ++cut)
        Call("ds_list_read", {copy, text.substr(0, cut).c_str()});
    for (const char* bad : {"2e01000000000000", "2E0100000000000", "2F01000000000000", "x",
                            "2E010000FFFFFF7F", "5A020000FFFF0000FFFF0000"})
        Call("ds_list_read", {copy, bad});
    Call("ds_grid_read", {New("grid", {1.0, 1.0}), "5A020000FFFF0000FF000000"});
    EXPECT_EQ(Text("ds_list_write", {copy}), text);
    EXPECT_TRUE(Reports().empty());
    EXPECT_EQ(Lines().back(), "ds_grid_read: the text is damaged\n");
    FREE_RValue(&array);

    const double map = New("map");
    for (const char* key : {"a", "b", "c"}) Call("ds_map_add", {map, key, key});
    Call("ds_map_add_map", {map, "inner", New("map")});
    const double other = New("map");
    Call("ds_map_read", {other, Text("ds_map_write", {map}).c_str()});
    EXPECT_EQ(Text("ds_map_write", {other}), Text("ds_map_write", {map}));
    Call("ds_map_destroy", {other});
    EXPECT_EQ(Number("ds_exists", {1.0, 1.0}), 1) << "a text owns nobody";
    for (const char* kind : {"stack", "queue", "priority"}) {
        const std::string prefix = "ds_" + std::string(kind);
        const double from = New(kind), to = New(kind);
        const char* add = kind[0] == 's'   ? "ds_stack_push"
                          : kind[0] == 'q' ? "ds_queue_enqueue"
                                           : "ds_priority_add";
        for (double i = 0; i < 3; ++i) Call(add, {from, i, "second"});
        const std::string written = Text((prefix + "_write").c_str(), {from});
        Call((prefix + "_read").c_str(), {to, written.c_str()});
        EXPECT_EQ(Text((prefix + "_write").c_str(), {to}), written) << kind;
    }
}

TEST_F(DS, ArraysInsideAreNotChangedFromOutside)
{
    const double list = New("list");
    RValue array;
    const RValue one(1.0), two(2.0);
    SET_RValue(&array, &one, 0);
    Call("ds_list_add", {list, &array});
    FREE_RValue(&array);
    array = Call("ds_list_find_value", {list, 0.0});
    SET_RValue(&array, &two, 0);
    RValue inside = Call("ds_list_find_value", {list, 0.0});
    EXPECT_EQ(ARRAY_CELL(&inside, 0)->real, 1);
    EXPECT_EQ(ARRAY_CELL(&array, 0)->real, 2);
    FREE_RValue(&inside);
    FREE_RValue(&array);
}

TEST_F(DS, GridsByCellAndArea)
{
    const double grid = New("grid", {4.0, 3.0});
    Call("ds_grid_set", {grid, 3.0, 2.0, 5.0});
    Call("ds_grid_set", {grid, 4.0, 2.0, 5.0});
    EXPECT_TRUE(IsUndefined("ds_grid_get", {grid, 4.0, 2.0}));
    EXPECT_EQ(Number("ds_grid_get", {grid, 0.0, 0.0}), 0);
    Call("ds_grid_add_region", {grid, 9.0, 1.0, 2.0, -4.0, 2.0});
    EXPECT_EQ(Number("ds_grid_get_sum", {grid, 0.0, 0.0, 3.0, 2.0}), 13) << "two by two, clipped";
    EXPECT_EQ(Number("ds_grid_get_max", {grid, 3.0, 2.0, 0.0, 0.0}), 5) << "corners in any order";
    EXPECT_EQ(Number("ds_grid_get_sum", {grid, 4.0, 0.0, 9.0, 9.0}), 0) << "beside the grid";
    Call("ds_grid_clear", {grid, 1.0});
    Call("ds_grid_set_disk", {grid, 1.0, 1.0, 1.0, 7.0});
    EXPECT_EQ(Number("ds_grid_get_sum", {grid, 0.0, 0.0, 3.0, 2.0}), 7 * 1 + 5 * 7);
    EXPECT_EQ(Number("ds_grid_get_disk_mean", {grid, 1.0, 1.0, 1.0}), 7);
    EXPECT_EQ(Number("ds_grid_value_x", {grid, 0.0, 0.0, 3.0, 2.0, 7.0}), 1);
    EXPECT_EQ(Number("ds_grid_value_y", {grid, 0.0, 0.0, 3.0, 2.0, 7.0}), 0);
    EXPECT_EQ(Number("ds_grid_value_disk_exists", {grid, 1.0, 1.0, 1.0, 1.0}), 0);
    Call("ds_grid_multiply", {grid, 1.0, 0.0, 2.0});
    Call("ds_grid_set", {grid, 0.0, 0.0, "text"});
    EXPECT_EQ(Number("ds_grid_get_sum", {grid, 0.0, 0.0, 1.0, 0.0}), 14) << "numbers alone";
    Call("ds_grid_get_disk_min", {grid, 0.0, 0.0, 1.0});
    Call("ds_grid_set_grid_region", {grid, grid, 0.0, 0.0, 1.0, 0.0, 1.0, 0.0});
    EXPECT_EQ(Text("ds_grid_get", {grid, 1.0, 0.0}), "text") << "from itself, overlapping";
    EXPECT_EQ(Number("ds_grid_get", {grid, 2.0, 0.0}), 14);
    Call("ds_grid_resize", {grid, 2.0, 4.0});
    EXPECT_EQ(Text("ds_grid_get", {grid, 1.0, 0.0}), "text");
    EXPECT_EQ(Number("ds_grid_get", {grid, 1.0, 3.0}), 0);
    for (double y = 0; y < 4; ++y) {
        Call("ds_grid_set", {grid, 0.0, y, -y});
        Call("ds_grid_set", {grid, 1.0, y, y});
    }
    Call("ds_grid_sort", {grid, 0.0, 1.0});
    EXPECT_EQ(Number("ds_grid_get", {grid, 1.0, 0.0}), 3) << "rows go as wholes";
    Call("ds_grid_shuffle", {grid});
    EXPECT_EQ(Number("ds_grid_get_sum", {grid, 0.0, 0.0, 1.0, 3.0}), 0);
    EXPECT_TRUE(Reports().empty());
    New("grid", {1e5, 1e5});
    ExpectReport("ds_grid_create: the grid is too large");
}

}  // namespace
