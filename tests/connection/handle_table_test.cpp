#include "connection/handle_table.h"

#include "support/await.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

// Each table of a process is another type.
struct TextTable : HandleTable<std::string> {
};

class Handles : public testing::Test
{
protected:
    void TearDown() override { last_handle = handle_before; } // as the other tests left it

    HandleTable<std::string> table;
    const std::uint32_t handle_before = last_handle;
};

TEST_F(Handles, AreFoundUntilTheyAreRemoved)
{
    const VeltoHandle one = table.add("one");
    const VeltoHandle two = table.add("two");
    EXPECT_EQ(two, one + 1);
    EXPECT_EQ(table.find(one), "one");
    EXPECT_EQ(table.find(two), "two");
    table.remove(one);
    EXPECT_EQ(table.find(one), std::nullopt);
    EXPECT_EQ(table.find(two), "two");
    EXPECT_GT(table.add("three"), two);
}

TEST_F(Handles, ThatWereNeverIssuedAreUnknown)
{
    const VeltoHandle known = table.add("one");
    for (const VeltoHandle unknown : {VeltoHandle{0}, known + 1, known - 1}) {
        EXPECT_EQ(table.find(unknown), std::nullopt);
        EXPECT_FALSE(table.change(unknown, [](std::string&) { ADD_FAILURE(); }));
        table.remove(unknown);
    }
    EXPECT_EQ(table.find(known), "one");
}

TEST_F(Handles, GiveACopyThatStaysAsItWas)
{
    const VeltoHandle handle = table.add("one");
    const std::optional<std::string> before = table.find(handle);
    EXPECT_TRUE(table.change(handle, [](std::string& value) { value += " more"; }));
    EXPECT_EQ(before, "one");
    EXPECT_EQ(table.find(handle), "one more");
}

TEST_F(Handles, LetTheirValueGo)
{
    HandleTable<std::shared_ptr<int>> shared;
    const auto value = std::make_shared<int>(7);
    const VeltoHandle handle = shared.add(value);
    EXPECT_EQ(value.use_count(), 2);
    EXPECT_EQ(**shared.find(handle), 7);
    EXPECT_EQ(value.use_count(), 2);
    shared.remove(handle);
    EXPECT_EQ(value.use_count(), 1);
}

TEST_F(Handles, OfTwoTablesAreNeverTheSame)
{
    HandleTable<int> other;
    const VeltoHandle one = table.add("one");
    const VeltoHandle two = other.add(2);
    EXPECT_NE(one, two);
    EXPECT_EQ(table.find(two), std::nullopt);
    EXPECT_EQ(other.find(one), std::nullopt);
}

TEST_F(Handles, InUseAreSkippedWhenTheCounterWraps)
{
    last_handle = 0;
    EXPECT_EQ(table.add("one"), 1u);
    EXPECT_EQ(table.add("two"), 2u);
    table.remove(1);
    last_handle = 0xFFFFFFFE;
    EXPECT_EQ(table.add("last"), 0xFFFFFFFFu);
    EXPECT_EQ(table.add("one again"), 1u); // and not 0
    EXPECT_EQ(table.add("three"), 3u);
    EXPECT_EQ(table.find(2), "two");
}

// A change can look up others: the lock is one that its thread may take again.
TEST_F(Handles, CanBeLookedUpWithinAChange)
{
    const VeltoHandle one = table.add("one");
    const VeltoHandle two = table.add("two");
    EXPECT_TRUE(table.change(one, [&](std::string& value) { value += *table.find(two); }));
    EXPECT_EQ(table.find(one), "onetwo");
}

TEST_F(Handles, OfManyThreadsAreAllDifferentAndKeepTheirValues)
{
    constexpr int thread_count = 4;
    constexpr int rounds = 500;
    const auto work = [&](int thread) {
        std::vector<VeltoHandle> mine;
        for (int i = 0; i < rounds; ++i) {
            const std::string value = std::to_string(thread) + ":" + std::to_string(i);
            const VeltoHandle handle = table.add(value);
            EXPECT_TRUE(table.change(handle, [](std::string& text) { text += "!"; }));
            EXPECT_EQ(table.find(handle), value + "!");
            if (i % 2 == 0) {
                table.remove(handle);
                EXPECT_EQ(table.find(handle), std::nullopt);
            } else {
                mine.push_back(handle);
            }
        }
        return mine;
    };
    std::vector<std::future<std::vector<VeltoHandle>>> threads;
    for (int thread = 0; thread < thread_count; ++thread) {
        threads.push_back(in_thread([&, thread] { return work(thread); }));
    }
    std::set<VeltoHandle> all;
    for (auto& thread : threads) {
        for (const VeltoHandle handle : await(std::move(thread))) {
            EXPECT_TRUE(all.insert(handle).second);
            EXPECT_NE(table.find(handle), std::nullopt);
        }
    }
    EXPECT_EQ(all.size(), thread_count * rounds / 2u);
}

TEST(ProcessTable, IsOneForAllThreadsFromItsFirstUseOn)
{
    std::vector<std::future<TextTable*>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.push_back(in_thread([] { return &process_table<TextTable>(); }));
    }
    for (auto& thread : threads) {
        EXPECT_EQ(await(std::move(thread)), &process_table<TextTable>());
    }
}

} // namespace
