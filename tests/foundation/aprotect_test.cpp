#include "foundation/aprotect.h"

#include "support/await.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace std::chrono_literals;

TEST(AProtect, StartsWithADefaultValue)
{
    const AProtect<int> number;
    EXPECT_EQ(*AProtectAccess<int>(number), 0);
}

TEST(AProtect, CopiesAreTheSameValue)
{
    const AProtect<int> first;
    const AProtect<int> second = first;
    const AProtect<int> other;
    *AProtectAccess<int>(first) = 7;
    EXPECT_EQ(*AProtectAccess<int>(second), 7);
    EXPECT_EQ(*AProtectAccess<int>(other), 0);
}

TEST(AProtect, AccessesOfOneThreadNest)
{
    const AProtect<std::vector<int>> list;
    const AProtectAccess<std::vector<int>> outer(list);
    outer->push_back(1);
    {
        const AProtectAccess<std::vector<int>> inner(list);
        inner->push_back(2);
    }
    EXPECT_EQ(outer->size(), 2u);
}

TEST(AProtect, OtherThreadsWaitForTheAccessToEnd)
{
    const AProtect<int> number;
    std::optional<AProtectAccess<int>> access(std::in_place, number);
    std::atomic<bool> entered{false};
    auto rival = in_thread([&] {
        const AProtectAccess<int> own(number);
        entered = true;
        return *own;
    });
    std::this_thread::sleep_for(50ms);
    EXPECT_FALSE(entered);
    **access = 5;
    access.reset();
    EXPECT_EQ(await(std::move(rival)), 5);
}

TEST(AProtect, ValueOutlivesTheLastAProtectWhileItIsAccessed)
{
    auto number = std::make_unique<AProtect<std::shared_ptr<int>>>();
    const auto content = std::make_shared<int>(3);
    {
        const AProtectAccess<std::shared_ptr<int>> access(*number);
        *access = content;
        number.reset();
        EXPECT_EQ(content.use_count(), 2);
        EXPECT_EQ(**access, 3);
    }
    EXPECT_EQ(content.use_count(), 1) << "the value goes with the last access";
}

TEST(AProtect, GuardsItsValue)
{
    const AProtect<int> number;
    std::vector<std::future<void>> running;
    for (int i = 0; i != 4; ++i) {
        running.push_back(in_thread([number] {
            for (int round = 0; round != 1000; ++round) {
                ++*AProtectAccess<int>(number);
            }
        }));
    }
    for (auto& thread : running) {
        await(std::move(thread));
    }
    EXPECT_EQ(*AProtectAccess<int>(number), 4000);
}

} // namespace
