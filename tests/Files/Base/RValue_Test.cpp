#include "Files/Base/RValue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "Files/Base/Error.h"
#include "Files/Base/VXObjectBase.h"
#include "tests/Files/support_Reports.h"

namespace {

RValue Real(double number)
{
    return RValue(number);
}
RValue Kind(uint32_t kind, int64_t payload = 0)
{
    RValue value;
    value.i64 = payload;
    value.kind = kind;
    return value;
}
RValue Bool(double number)
{
    RValue value(number);
    value.kind = VALUE_BOOL;
    return value;
}
RValue Text(const char* text)
{
    RValue value;
    VXCreateString(&value, text);
    return value;
}
RValue Int32(int32_t number)
{
    return Kind(VALUE_INT32, number);
}
RValue Int64(int64_t number)
{
    return Kind(VALUE_INT64, number);
}
RValue Unset()
{
    return Kind(VALUE_UNSET);
}

void Put(RValue& array, int32_t index, RValue value)
{
    SET_RValue(&array, &value, index);
    FREE_RValue(&value);
}
double Get(RValue& array, int32_t index)
{
    RValue out;
    GET_RValue(&out, &array, index);
    return REAL_RValue(&out);
}
std::string Print(const RValue& value)
{
    return ToText(&value).get();
}

class RValueTest : public ReportsTest {
protected:
    void SetUp() override
    {
        ReportsTest::SetUp();
        RValue_Init();
        blocks_ = MemoryManager::GetStats().blocks;
    }
    void ExpectNothingLost() { EXPECT_EQ(MemoryManager::GetStats().blocks, blocks_); }
    size_t blocks_ = 0;
};

TEST_F(RValueTest, StringsAreSharedAndDroppedWithTheLastHolder)
{
    RValue a = Text("monte"), b, c;
    COPY_RValue(&b, &a);
    COPY_RValue(&c, &b);
    EXPECT_EQ(a.string->refcount, 3);
    EXPECT_EQ(a.string->size, 5);
    FREE_RValue(&a);
    EXPECT_STREQ(VXGetText(&c), "monte");
    VXCreateString(&c, VXGetText(&c) + 2);
    EXPECT_STREQ(VXGetText(&c), "nte") << "made of its own old text";
    RValue none = Text(nullptr);
    EXPECT_EQ(none.string->size, 0);
    EXPECT_EQ(VXGetText(&none), nullptr);
    for (RValue* value : {&b, &c, &none}) RELEASE_RValue(value);
    EXPECT_EQ(b.Kind(), VALUE_UNDEFINED);
    ExpectNothingLost();
}

TEST_F(RValueTest, OnlyKindsOneToFourNeedRelease)
{
    for (uint32_t kind = 0; kind < 16; ++kind)
        EXPECT_EQ(Kind(kind).NeedsRelease(), kind >= 1 && kind <= 4) << kind;
    EXPECT_TRUE(Kind(0x7F000001).NeedsRelease());
    EXPECT_FALSE(Kind(VALUE_UNSET).NeedsRelease());
}

TEST_F(RValueTest, AnOwnedPointerIsDeletedAndALentOneIsNot)
{
    RValue lent = Kind(VALUE_PTR), owned = Kind(VALUE_PTR);
    lent.object = owned.object = VxNew<VXObjectBase>(5);
    owned.flags = kFlagOwnsPtr;
    const size_t blocks = MemoryManager::GetStats().blocks;
    FREE_RValue(&lent);
    EXPECT_EQ(MemoryManager::GetStats().blocks, blocks);
    FREE_RValue(&owned);
    ExpectNothingLost();
}

TEST_F(RValueTest, TheTopBitsOfAKindMeanNothing)
{
    RValue number(2.5);
    number.kind |= 0x5A000000;
    EXPECT_EQ(REAL_RValue(&number), 2.5);
    EXPECT_EQ(Print(number), "2.50");
    RValue text = Text("x");
    text.kind |= 0x80000000;
    EXPECT_STREQ(VXGetText(&text), "x");
    RValue copy;
    COPY_RValue(&copy, &text);
    EXPECT_EQ(text.string->refcount, 2);
    FREE_RValue(&copy);
    FREE_RValue(&text);
    ExpectNothingLost();
}

TEST_F(RValueTest, ArraysAreCopiedOnWrite)
{
    RValue a, b;
    Put(a, 0, Real(1));
    Put(a, 1, Text("cima"));
    ASSIGN_RValue(&b, &a);
    EXPECT_EQ(a.array, b.array);
    Put(a, 0, Real(5));
    EXPECT_EQ(a.array, b.array) << "the owner writes in place, shared or not";
    Put(b, 0, Real(7));
    EXPECT_NE(a.array, b.array);
    EXPECT_EQ(Get(a, 0), 5);
    EXPECT_EQ(Get(b, 0), 7);
    EXPECT_EQ(ARRAY_CELL(&a, 1)->string, ARRAY_CELL(&b, 1)->string) << "cells are shared";
    EXPECT_EQ(ARRAY_CELL(&a, 1)->string->refcount, 2);
    FREE_RValue(&a);
    RValue c;
    COPY_RValue(&c, &b);
    EXPECT_EQ(c.array->owner, &b);
    RELEASE_RValue(&b);
    EXPECT_EQ(c.array->owner, nullptr) << "an owner that goes leaves the array without one";
    FREE_RValue(&c);
    ExpectNothingLost();
}

TEST_F(RValueTest, RowsAreThirtyTwoThousandCellsApart)
{
    RValue array;
    Put(array, kArrayRowStride, Real(3));
    EXPECT_EQ(array.array->rowCount, 2);
    EXPECT_EQ(array.array->rows[0].length, 0);
    EXPECT_EQ(array.array->rows[1].length, 1);
    Put(array, 2 * kArrayRowStride + 3, Real(4));
    EXPECT_EQ(array.array->rows[2].length, 4);
    EXPECT_EQ(Get(array, 2 * kArrayRowStride + 1), 0.0) << "a cell never written";
    EXPECT_FALSE(g_ArrayError.failed);
    FREE_RValue(&array);
    ExpectNothingLost();
}

TEST_F(RValueTest, ReadsOutsideAnArrayGiveZeroAndAreRecorded)
{
    RValue array;
    Put(array, 0, Real(1));
    const struct {
        int32_t index, row, column, length;
    } cases[] = {{4, 0, 4, 1},
                 {kArrayRowStride + 2, 1, 2, -1},
                 {-1, 0, -1, 1},
                 {-kArrayRowStride, -1, 0, -1}};
    for (const auto& outside : cases) {
        g_ArrayError.failed = false;
        EXPECT_EQ(Get(array, outside.index), 0.0);
        EXPECT_TRUE(g_ArrayError.failed);
        EXPECT_EQ(g_ArrayError.row, outside.row);
        EXPECT_EQ(g_ArrayError.column, outside.column);
        EXPECT_EQ(g_ArrayError.rowCount, 1);
        EXPECT_EQ(g_ArrayError.length, outside.length);
        EXPECT_EQ(ARRAY_CELL(&array, outside.index), nullptr);
    }
    g_ArrayError.failed = false;
    Put(array, -3, Real(9));
    EXPECT_TRUE(g_ArrayError.failed);
    EXPECT_EQ(ARRAY_LVAL(&array, -3), nullptr);
    EXPECT_EQ(array.array->rows[0].length, 1) << "a negative index writes nothing";
    FREE_RValue(&array);
    EXPECT_TRUE(Reports().empty());
    ExpectNothingLost();
}

TEST_F(RValueTest, ACellMayBeWrittenFromItsOwnArray)
{
    RValue array;
    Put(array, 0, Text("first"));
    for (int i = 1; i < 100; ++i) SET_RValue(&array, &array.array->rows[0].cells[0], i);
    EXPECT_STREQ(VXGetText(ARRAY_CELL(&array, 99)), "first");
    EXPECT_EQ(ARRAY_CELL(&array, 0)->string->refcount, 100);
    SET_RValue(&array, &array, ARRAY_INDEX_NONE);
    EXPECT_STREQ(VXGetText(ARRAY_CELL(&array, 5)), "first");
    *ARRAY_LVAL(&array, 200) = Real(2);
    EXPECT_EQ(Get(array, 200), 2);
    FREE_RValue(&array);
    ExpectNothingLost();
}

TEST_F(RValueTest, AppendingCellByCellCopiesFewTimes)
{
    RValue array;
    const uint64_t calls = MemoryManager::GetStats().calls;
    for (int i = 0; i < 10000; ++i) Put(array, i, Real(i));
    EXPECT_LT(MemoryManager::GetStats().calls - calls, 40U);
    EXPECT_EQ(Get(array, 9999), 9999);
    FREE_RValue(&array);
}

TEST_F(RValueTest, IndexingWhatIsNoArrayIsReported)
{
    RValue number(4), out;
    EXPECT_FALSE(GET_RValue(&out, &number, 0));
    EXPECT_EQ(out.real, 4);
    ExpectFatal("trying to index a variable which is not an array");
}

TEST_F(RValueTest, Conversions)
{
    RValue text = Text("  12.75abc"), empty = Text(nullptr), hex = Text("ff");
    RValue array;
    Put(array, 0, Text("3.5"));
    const RValue minus = Real(-2.9);
    EXPECT_EQ(REAL_RValue(&text), 12.75);
    EXPECT_EQ(INT32_RValue(&text), 12);
    EXPECT_EQ(INT64_RValue(&text), 12);
    EXPECT_EQ(REAL_RValue(&empty), 0.0);
    EXPECT_FALSE(BOOL_RValue(&empty));
    EXPECT_EQ(PTR_RValue(&hex), reinterpret_cast<void*>(255));
    EXPECT_EQ(INT32_RValue(&minus), -2);
    EXPECT_EQ(REAL_RValue(&array), 3.5);
    EXPECT_TRUE(BOOL_RValue(&array));
    const RValue undefined, wide = Int64(0x100000007), negative = Int32(-1);
    EXPECT_EQ(REAL_RValue(&undefined), 0.0);
    EXPECT_EQ(INT32_RValue(&wide), 7);
    EXPECT_EQ(INT64_RValue(&negative), -1);
    EXPECT_FALSE(BOOL_RValue(&negative));
    const RValue colour = Real(4294967295.0), huge = Real(1e300), nan = Real(NAN);
    EXPECT_EQ(static_cast<uint32_t>(INT32_RValue(&colour)), 0xFFFFFFFFU);
    EXPECT_EQ(INT64_RValue(&huge), INT64_MAX);
    EXPECT_EQ(INT32_RValue(&nan), 0);
    for (RValue* value : {&text, &empty, &hex, &array}) FREE_RValue(value);
    EXPECT_TRUE(Reports().empty());
    ExpectNothingLost();
}

TEST_F(RValueTest, TruthIsAboveOneHalf)
{
    for (const auto& [number, truth] : {std::pair{0.5, false}, {0.5000001, true}, {-1.0, false}}) {
        const RValue real = Real(number), boolean = Bool(number);
        EXPECT_EQ(BOOL_RValue(&real), truth);
        EXPECT_EQ(BOOL_RValue(&boolean), truth);
    }
}

TEST_F(RValueTest, ConversionsReportUnsetAndUnfitKinds)
{
    const RValue unset = Unset(), pointer = Kind(VALUE_PTR), iterator = Kind(VALUE_ITERATOR);
    EXPECT_EQ(REAL_RValue(&unset), 0.0);
    ExpectFatal("REAL argument is unset");
    EXPECT_EQ(INT32_RValue(&unset), 0);
    ExpectFatal("I32 argument is unset");
    EXPECT_FALSE(BOOL_RValue(&unset));
    ExpectFatal("bool argument is unset");
    EXPECT_EQ(Print(unset), "");
    ExpectFatal("STRING argument is unset");
    ARRAY_CELL(&unset, 0);
    ExpectFatal("ARRAY argument is unset");
    REAL_RValue(&pointer);
    ExpectFatal("REAL argument incorrect type 3");
    INT64_RValue(&iterator);
    ExpectFatal("I64 argument incorrect type 14");
}

TEST_F(RValueTest, ReadersOfArguments)
{
    RValue args[] = {Real(0.5),   Bool(0.25), Int32(-3),         Text(" 0x1F "), Real(INFINITY),
                     Text("12a"), Text(""),   Text("-Infinity"), Text("-1.5e3")};
    EXPECT_FALSE(VXGetBool(args, 0));
    EXPECT_TRUE(VXGetBool(args, 1)) << "a bool is true when it is not zero";
    EXPECT_FALSE(VXGetBool(args, 2));
    EXPECT_EQ(VXGetInt32(args, 3), 31);
    EXPECT_EQ(VXGetReal(args, 4), 0.0);
    EXPECT_EQ(VXGetInt32(args, 4), 0);
    EXPECT_TRUE(std::isnan(VXGetReal(args, 5)));
    EXPECT_EQ(VXGetInt32(args, 5), 0);
    EXPECT_EQ(VXGetReal(args, 6), 0.0);
    EXPECT_EQ(VXGetReal(args, 7), -INFINITY);
    EXPECT_EQ(VXGetReal(args, 8), -1500);
    EXPECT_EQ(VXGetUint32(args, 2), 0xFFFFFFFDU);
    EXPECT_STREQ(VXGetString(args, 2), "-3");
    EXPECT_EQ(VXGetString(args, 3).get(), VXGetText(&args[3])) << "a text is lent, not copied";
    EXPECT_TRUE(Reports().empty());
    for (RValue& value : args) FREE_RValue(&value);
    ExpectNothingLost();
}

TEST_F(RValueTest, ReadersNameTheFunctionTheArgumentAndTheKind)
{
    static const FunctionRecord kRecord = {"draw_sprite", nullptr, 4, -1};
    g_CurrentFunction = &kRecord;
    const RValue args[] = {Text("x"), RValue()};
    const struct {
        void (*read)(const RValue* args);
        const char* words;
    } cases[] = {
        {[](const RValue* a) { VXGetBool(a, 0); },
         "draw_sprite argument 1 incorrect type (string) expecting a Number (VXGB)"},
        {[](const RValue* a) { VXGetInt32(a, 1); },
         "draw_sprite argument 2 incorrect type (undefined) expecting a Number (VXGI32)"},
        {[](const RValue* a) { VXGetUint32(a, 1); },
         "draw_sprite argument 2 incorrect type (undefined) expecting a Number (VXGU32)"},
        {[](const RValue* a) { VXGetInt64(a, 1); },
         "draw_sprite argument 2 incorrect type (undefined) expecting a Number"},
        {[](const RValue* a) { VXGetReal(a, 1); },
         "draw_sprite argument 2 incorrect type (undefined) expecting a Number (VXGR)"},
        {[](const RValue* a) { VXGetFloat(a, 0); },
         "draw_sprite argument 1 incorrect type (string) expecting a Number (VXGF)"},
        {[](const RValue* a) { VXGetPtrOrInt(a, 0); },
         "draw_sprite argument 1 incorrect type (string) expecting a Number or Pointer"},
        {[](const RValue* a) { VXGetString(a, 1); },
         "draw_sprite argument 2 incorrect type (undefined) expecting a String (VXGS)"},
    };
    for (const auto& unfit : cases) {
        unfit.read(args);
        ExpectReport(unfit.words);
    }
    g_CurrentFunction = nullptr;
    FREE_RValue(const_cast<RValue*>(&args[0]));
}

TEST_F(RValueTest, Printing)
{
    EXPECT_EQ(Print(Real(5)), "5");
    EXPECT_EQ(Print(Real(5.5)), "5.50");
    EXPECT_EQ(Print(Real(1.0 / 3)), "0.33");
    EXPECT_EQ(Print(Real(-0.0)), "0");
    EXPECT_EQ(Print(Real(NAN)), "NaN");
    EXPECT_EQ(Print(Real(1e15)), "1000000000000000");
    EXPECT_EQ(Print(Real(-9223372036854774784.0)), "-9223372036854774784");
    EXPECT_EQ(Print(Real(9223372036854775808.0)), "9223372036854775808.00") << "past 64 bits";
    EXPECT_EQ(Print(Real(9223372036854774784.0)), "9223372036854774784") << "the last whole one";
    EXPECT_EQ(Print(Real(1e300)).size(), 304U);
    EXPECT_EQ(Print(Bool(1)), "1");
    EXPECT_EQ(Print(Bool(0)), "0");
    EXPECT_EQ(Print(RValue()), "undefined");
    EXPECT_EQ(Print(Int64(INT64_MIN)), "-9223372036854775808");
    EXPECT_EQ(Print(Kind(VALUE_OBJECT)), "null");
    RValue nothing = Text(nullptr);
    EXPECT_EQ(Print(nothing), "");
    FREE_RValue(&nothing);
}

TEST_F(RValueTest, PrintingOfArraysAndRings)
{
    RValue array;
    Put(array, 0, Real(1));
    Put(array, 1, Real(2));
    EXPECT_EQ(Print(array), "{ { 1,2 },  }");
    Put(array, kArrayRowStride, Text("a"));
    EXPECT_EQ(Print(array), "{ { 1,2 }, { a },  }");
    EXPECT_EQ(Print(array), "{ { 1,2 }, { a },  }") << "the same a second time";

    RValue outer;
    Put(outer, 0, Real(7));
    SET_RValue(&outer, &array, 1);
    EXPECT_EQ(Print(outer), "{ { 7,{ { 1,2 }, { a },  } },  }");
    // A ring of two: printed once round, then braces only.
    SET_RValue(&array, &outer, 1);
    EXPECT_EQ(Print(outer), "{ { 7,{ { 1,{  } }, { a },  } },  }");
    Put(array, 1, Real(0));
    FREE_RValue(&outer);
    FREE_RValue(&array);
    ExpectNothingLost();
}

int Compare(RValue a, RValue b)
{
    const int order = VXCompareVal(&a, &b, g_MathEpsilon);
    FREE_RValue(&a);
    FREE_RValue(&b);
    return order;
}

TEST_F(RValueTest, Comparison)
{
    EXPECT_EQ(Compare(Real(1), Real(1 + 1e-11)), 0);
    EXPECT_EQ(Compare(Real(1), Real(1 + 1e-9)), -1);
    EXPECT_EQ(Compare(Real(2), Bool(1)), 1);
    EXPECT_EQ(Compare(Real(16777217), Int32(16777216)), 0) << "in single precision";
    EXPECT_EQ(Compare(Int32(3), Real(2.5)), 1);
    EXPECT_EQ(Compare(Real(2.9), Int64(2)), 0) << "the number is truncated";
    EXPECT_EQ(Compare(Int64(1), Real(2.9)), -1);
    EXPECT_EQ(Compare(Bool(1), Int32(1)), 0);
    EXPECT_EQ(Compare(Int32(-1), Int64(-1)), 0);
    EXPECT_EQ(Compare(Int64(INT64_MAX), Int64(INT64_MIN)), 1);
    EXPECT_EQ(Compare(Text("abc"), Text("abd")), -1);
    EXPECT_EQ(Compare(Text("\xC3\xA9"), Text("z")), 1) << "bytes are unsigned";
    EXPECT_EQ(Compare(Text(nullptr), Text("")), 0);
    EXPECT_EQ(Compare(Text("x"), Text(nullptr)), 1);
    EXPECT_EQ(Compare(Kind(VALUE_STRING), Text("")), 1) << "no body at all";
    EXPECT_EQ(Compare(RValue(), RValue()), 0);
    EXPECT_EQ(Compare(Real(0), Text("0")), -1);
    EXPECT_EQ(Compare(Text("0"), Real(0)), 1);
    EXPECT_EQ(Compare(RValue(), Real(0)), 1);
    RValue a, b;
    Put(a, 0, Real(1));
    Put(b, 0, Real(1));
    RValue shared;
    COPY_RValue(&shared, &a);
    EXPECT_EQ(VXCompareVal(&a, &shared, 0), 0);
    EXPECT_EQ(VXCompareVal(&a, &b, 0), 1);
    EXPECT_EQ(Compare(Kind(VALUE_ARRAY), Kind(VALUE_ARRAY)), 1) << "two arrays without a body";
    for (RValue* value : {&a, &b, &shared}) FREE_RValue(value);
    ExpectNothingLost();
}

TEST_F(RValueTest, Arithmetic)
{
    RValue sum = Text("a"), b = Text("bc"), joined;
    joined = sum + b;
    EXPECT_STREQ(VXGetText(&joined), "abc");
    EXPECT_STREQ(VXGetText(&sum), "a");
    RValue nothing = Text(nullptr);
    nothing += nothing;
    EXPECT_EQ(VXGetText(&nothing), nullptr);
    RValue number = Real(1);
    number += Int32(4);
    EXPECT_EQ(number.real, 5);
    number /= Real(0);
    EXPECT_EQ(number.real, INFINITY);
    RValue narrow = Int32(INT32_MAX);
    ++narrow;
    EXPECT_EQ(narrow.i32, INT32_MIN) << "wraps around";
    EXPECT_EQ((Int32(7) / Int32(2)).i32, 3);
    EXPECT_EQ((Int32(7) * Int64(2)).Kind(), VALUE_INT64);
    EXPECT_EQ((Int64(7) * Int32(-2)).i64, -14);
    EXPECT_EQ((Int32(7) * Real(0.5)).real, 3.5);
    EXPECT_EQ((Int64(7) / Bool(1)).Kind(), VALUE_REAL);
    EXPECT_EQ((Int32(INT32_MIN) / Int32(-1)).i32, INT32_MIN);
    EXPECT_EQ((Int32(5) / Int32(0)).i32, 0);
    EXPECT_EQ((Int64(5) - Real(2.9)).i64, 3);
    for (RValue* value : {&sum, &b, &joined, &nothing}) FREE_RValue(value);
    EXPECT_TRUE(Reports().empty());
    ExpectNothingLost();
}

TEST_F(RValueTest, ArithmeticOnUnfitKindsIsReportedAndChangesNothing)
{
    RValue text = Text("a"), undefined;
    text -= Real(1);
    ExpectFatal("invalid type for -= lhs=a (type=1), rhs=1 (type=0)");
    text += Real(1);
    ExpectFatal("invalid type for += lhs=a (type=1), rhs=1 (type=0)");
    EXPECT_STREQ(VXGetText(&text), "a");
    undefined *= Real(2);
    ExpectFatal("invalid type for *= lhs=undefined (type=5), rhs=2 (type=0)");
    EXPECT_EQ(undefined.Kind(), VALUE_UNDEFINED);
    FREE_RValue(&text);
}

TEST(VXObjectBase, SlotsInBothForms)
{
    const size_t blocks = MemoryManager::GetStats().blocks;
    {
        VXObjectBase table(4), map;
        EXPECT_EQ(table.Slots()[3].Kind(), VALUE_UNSET);
        EXPECT_EQ(table.InternalGetVar(2), table.Slots() + 2);
        EXPECT_EQ(map.FindVar(7), nullptr);
        EXPECT_EQ(map.InternalGetVar(7)->Kind(), VALUE_UNSET);
        RValue* const place = map.InternalGetVar(7);
        for (int32_t slot = 100; slot > 0; --slot) *map.InternalGetVar(slot) = RValue(slot);
        EXPECT_EQ(map.InternalGetVar(7), place) << "a value stays where it is";
        VXCreateString(map.InternalGetVar(5), "five");

        VXObjectBase copy;
        VXCreateString(copy.InternalGetVar(5), "old");
        VXCreateString(copy.InternalGetVar(500), "gone");
        copy.CopyVarsFrom(map);
        EXPECT_EQ(copy.FindVar(5)->string, map.FindVar(5)->string);
        EXPECT_EQ(copy.FindVar(500)->Kind(), VALUE_UNSET);
        struct Order {
            int32_t last = 0, count = 0;
        } order;
        map.VisitVars(
            [](void* context, int32_t slot, RValue*) {
                Order& seen = *static_cast<Order*>(context);
                EXPECT_GT(slot, seen.last);
                seen.last = slot;
                ++seen.count;
            },
            &order);
        EXPECT_EQ(order.count, 100);
    }
    EXPECT_EQ(MemoryManager::GetStats().blocks, blocks);
}

}  // namespace
