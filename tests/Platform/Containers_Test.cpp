#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "Platform/CHashMap.h"
#include "Platform/SLinkedList.h"
#include "Platform/cARRAY.h"

namespace {

// Published check values of the hash, with the top bit cleared.
TEST(Hash, KnownAnswers)
{
    EXPECT_EQ(Hash_Bytes("test", 4), 0xBA6BD213U & 0x7FFFFFFFU);
    EXPECT_EQ(Hash_Bytes("Hello, world!", 13), 0xC0363E43U & 0x7FFFFFFFU);
    EXPECT_EQ(Hash_Bytes("The quick brown fox jumps over the lazy dog", 43), 0x2E4FF723U);
    EXPECT_EQ(Hash_Bytes("Hello, world!", 13, 0x9747B28C), 0x24884CBAU);
    EXPECT_EQ(Hash_Bytes("", 0), 1U) << "0 marks a free entry, so no key may have it";
}

// Against a map that is known to be right, through growth and removals.
TEST(CHashMap, BehavesAsAMap)
{
    CHashMap<int32_t, int32_t> table(8);
    std::map<int32_t, int32_t> model;
    uint32_t random = 12345;
    for (int step = 0; step < 20000; ++step) {
        random = random * 1664525U + 1013904223U;
        const int32_t key = static_cast<int32_t>((random >> 8) % 500);
        if ((random >> 28) < 9) {
            table.Set(key, step);
            model[key] = step;
        } else {
            EXPECT_EQ(table.Remove(key), model.erase(key) == 1);
        }
    }
    EXPECT_EQ(table.Count(), model.size());
    for (int32_t key = 0; key < 500; ++key) {
        const auto known = model.find(key);
        const int32_t* found = table.Find(key);
        ASSERT_EQ(found != nullptr, known != model.end()) << key;
        if (found) {
            EXPECT_EQ(*found, known->second);
        }
    }
}

TEST(CHashMap, DoublesAboveSixTenths)
{
    CHashMap<const char*, int32_t> names;
    EXPECT_EQ(names.Size(), 128U);
    std::vector<std::string> keys;
    for (int i = 0; i < 77; ++i) keys.push_back("name" + std::to_string(i));
    for (int i = 0; i < 76; ++i) names.Set(keys[i].c_str(), i);
    EXPECT_EQ(names.Size(), 128U);
    names.Set(keys[76].c_str(), 76);
    EXPECT_EQ(names.Size(), 256U);
    for (int i = 0; i < 77; ++i) EXPECT_EQ(*names.Find(std::string(keys[i]).c_str()), i);
    EXPECT_EQ(names.Find("name77"), nullptr);
}

TEST(SLinkedList, KeepsOrderAndLetsItemsLeaveDuringAWalk)
{
    int items[5] = {0, 1, 2, 3, 4};
    SLinkedList<int> list;
    for (int& item : items) list.Add(&item);
    std::string seen;
    for (auto* node = list.Head(); node;) {
        auto* next = node->next;
        seen += std::to_string(*node->item);
        if (*node->item % 2 == 0) list.Remove(node->item);
        node = next;
    }
    EXPECT_EQ(seen, "01234");
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(*list.Head()->item, 1);
    EXPECT_EQ(*list.Tail()->item, 3);
    EXPECT_EQ(list.Tail()->previous, list.Head());
    EXPECT_FALSE(list.Remove(&items[0]));
    list.Clear();
    EXPECT_TRUE(list.Empty());
    EXPECT_EQ(list.Tail(), nullptr);
}

struct Tracked {
    explicit Tracked(int* count) : count_(count) { ++*count_; }
    ~Tracked() { --*count_; }
    int* count_;
};

TEST(Arrays, OwnWhatTheyShould)
{
    int alive = 0;
    {
        cARRAY_CLASS<Tracked> owned;
        for (int i = 0; i < 10; ++i) owned.Add(VxNew<Tracked>(&alive));
        owned.Set(3, nullptr);
        owned.SetLength(12);
        EXPECT_EQ(owned[11], nullptr);
        EXPECT_EQ(alive, 9);
        owned.SetLength(5);
        EXPECT_EQ(alive, 4);

        cARRAY_CLASS_NO_DELETE<Tracked> lent;
        lent.Add(owned[0]);
        lent.Clear();
        EXPECT_EQ(alive, 4);
    }
    EXPECT_EQ(alive, 0);

    const size_t blocks = MemoryManager::GetStats().blocks;
    {
        cARRAY_MEMORY memory;
        for (int i = 0; i < 40; ++i) memory.Add(MemoryManager::Alloc(100));
    }
    EXPECT_EQ(MemoryManager::GetStats().blocks, blocks);
}

TEST(Arrays, StructuresGrowZeroedAndKeepTheirMemory)
{
    cARRAY_STRUCTURE<int> numbers;
    for (int i = 0; i < 100; ++i) EXPECT_EQ(numbers.Add(i), i);
    numbers.RemoveAt(0);
    EXPECT_EQ(numbers[0], 1);
    EXPECT_EQ(numbers.Count(), 99);
    numbers.SetLength(2);
    numbers.SetLength(4);
    EXPECT_EQ(numbers[1], 2);
    EXPECT_EQ(numbers[2], 0) << "an item that comes back is a new one";
    EXPECT_EQ(numbers.Add(numbers[1]), 4);
    EXPECT_EQ(numbers[4], 2);
}

}  // namespace
