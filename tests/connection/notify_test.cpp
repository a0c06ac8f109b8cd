#include "connection/notify.h"

#include "support/await.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

constexpr std::uint32_t longest_wait = std::numeric_limits<std::uint32_t>::max();

struct Taken {
    std::uint32_t kind;
    std::uint32_t channel;
    auto operator<=>(const Taken&) const = default;
};

constexpr Taken nothing{0, 0};

std::ostream& operator<<(std::ostream& out, const Taken& taken)
{
    return out << "(" << taken.kind << ", " << taken.channel << ")";
}

Taken take(NoticeQueue& queue, std::uint32_t timeout_ms = 0)
{
    Taken taken{77, 77};
    queue.wait_notice(timeout_ms, &taken.kind, &taken.channel);
    return taken;
}

std::vector<Taken> take_all(NoticeQueue& queue)
{
    std::vector<Taken> all;
    for (Taken taken = take(queue); taken != nothing; taken = take(queue)) {
        all.push_back(taken);
    }
    return all;
}

// Each kind on each channel, kind by kind.
std::vector<Taken> every_notice()
{
    std::vector<Taken> all;
    for (std::uint32_t kind = 1; kind <= 9; ++kind) {
        for (std::uint32_t channel = 0; channel < 8; ++channel) {
            all.push_back({kind, channel});
        }
    }
    return all;
}

using Notices = std::vector<Taken>;

TEST(NoticeQueue, EmptyGivesZeros)
{
    NoticeQueue queue;
    EXPECT_EQ(take(queue), nothing);
    EXPECT_EQ(take(queue), nothing);
}

TEST(NoticeQueue, GivesTheOldestFirst)
{
    NoticeQueue queue;
    queue.post_notice(9, 7);
    queue.post_notice(1, 0);
    queue.post_notice(5, 3);
    EXPECT_EQ(take_all(queue), (Notices{{9, 7}, {1, 0}, {5, 3}}));
}

TEST(NoticeQueue, HoldsAPendingNoticeOnceAndInItsPlace)
{
    NoticeQueue queue;
    queue.post_notice(7, 2);
    queue.post_notice(5, 2);
    queue.post_notice(7, 2);
    EXPECT_EQ(take_all(queue), (Notices{{7, 2}, {5, 2}}));
}

TEST(NoticeQueue, KeepsKindsAndChannelsApart)
{
    NoticeQueue queue;
    queue.post_notice(2, 7);
    queue.post_notice(7, 2);
    queue.post_notice(7, 7);
    EXPECT_EQ(take_all(queue), (Notices{{2, 7}, {7, 2}, {7, 7}}));
}

TEST(NoticeQueue, TakesANoticeAnewOnceItIsDelivered)
{
    NoticeQueue queue;
    queue.post_notice(7, 2);
    queue.post_notice(5, 2);
    EXPECT_EQ(take(queue), (Taken{7, 2}));
    queue.post_notice(7, 2); // now behind the other
    EXPECT_EQ(take_all(queue), (Notices{{5, 2}, {7, 2}}));
}

TEST(NoticeQueue, NeverHoldsMoreThanEachKindOnEachChannel)
{
    NoticeQueue queue;
    const Notices all = every_notice();
    for (int round = 0; round < 3; ++round) {
        for (const Taken& notice : all) {
            queue.post_notice(notice.kind, notice.channel);
        }
    }
    EXPECT_EQ(all.size(), 72u);
    EXPECT_EQ(take_all(queue), all);
}

TEST(NoticeQueue, ConsumesANoticeThatNobodyWantsToSee)
{
    NoticeQueue queue;
    for (const std::uint32_t channel : {1u, 2u, 3u, 4u}) {
        queue.post_notice(7, channel);
    }
    std::uint32_t value = 77;
    queue.wait_notice(0, nullptr, nullptr);
    queue.wait_notice(0, &value, nullptr);
    EXPECT_EQ(value, 7u);
    queue.wait_notice(0, nullptr, &value);
    EXPECT_EQ(value, 3u);
    EXPECT_EQ(take_all(queue), (Notices{{7, 4}}));

    queue.wait_notice(0, nullptr, nullptr); // and where there is none
    queue.wait_notice(0, nullptr, &value);
    EXPECT_EQ(value, 0u);
}

TEST(NoticeQueue, WaitsTheTimeGiven)
{
    NoticeQueue queue;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(take(queue, 100), nothing);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
}

TEST(NoticeQueue, DoesNotWaitWhileThereIsANotice)
{
    NoticeQueue queue;
    queue.post_notice(5, 6);
    auto taking = in_thread([&] { return take(queue, longest_wait); });
    EXPECT_EQ(await(std::move(taking)), (Taken{5, 6}));
}

TEST(NoticeQueue, TakesAllBitsOfTheTimeAndEndsTheWaitWithANotice)
{
    for (const std::uint32_t timeout_ms : {longest_wait, longest_wait - 1, 0x80000000u}) {
        NoticeQueue queue;
        auto taking = in_thread([&] { return take(queue, timeout_ms); });
        EXPECT_EQ(taking.wait_for(50ms), std::future_status::timeout);
        queue.post_notice(3, 1);
        EXPECT_EQ(await(std::move(taking)), (Taken{3, 1}));
    }
}

TEST(NoticeQueue, LetsThoseWaitOnForWhomThereIsNone)
{
    NoticeQueue queue;
    std::vector<std::future<Taken>> waiting;
    for (int i = 0; i < 3; ++i) {
        waiting.push_back(in_thread([&] { return take(queue, longest_wait); }));
    }
    Notices taken;
    for (const std::uint32_t channel : {4u, 5u, 6u}) {
        queue.post_notice(1, channel); // wakes all
        std::size_t ended = waiting.size();
        const auto hang = std::chrono::steady_clock::now() + hang_bound;
        while (ended == waiting.size()) {
            if (std::chrono::steady_clock::now() > hang) {
                report_hang("the one that takes the notice");
            }
            for (ended = 0; ended < waiting.size(); ++ended) {
                if (waiting[ended].wait_for(1ms) == std::future_status::ready) {
                    break;
                }
            }
        }
        taken.push_back(waiting[ended].get());
        waiting.erase(waiting.begin() + static_cast<std::ptrdiff_t>(ended));
        for (const std::future<Taken>& other : waiting) {
            EXPECT_EQ(other.wait_for(20ms), std::future_status::timeout);
        }
    }
    EXPECT_EQ(taken, (Notices{{1, 4}, {1, 5}, {1, 6}}));
}

TEST(NoticeQueue, GivesEachNoticeToOneOfItsConsumers)
{
    constexpr std::size_t consumers = 4;
    const Notices all = every_notice();
    NoticeQueue queue;
    std::vector<std::future<Notices>> consuming;
    for (std::size_t i = 0; i < consumers; ++i) {
        consuming.push_back(in_thread([&] {
            Notices share;
            while (share.size() < all.size() / consumers) {
                share.push_back(take(queue, longest_wait));
            }
            return share;
        }));
    }
    for (const Taken& notice : all) {
        queue.post_notice(notice.kind, notice.channel);
    }
    Notices together;
    for (std::future<Notices>& consumer : consuming) {
        const Notices share = await(std::move(consumer));
        together.insert(together.end(), share.begin(), share.end());
    }
    std::sort(together.begin(), together.end());
    EXPECT_EQ(together, all);
    EXPECT_EQ(take(queue), nothing);
}

} // namespace
