#include "foundation/astring_segments.h"

#include "foundation/astring_model.h"
#include "support/astring_printer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>
#include <vector>

using model::Random;
using model::Text;
using model::text_of;

namespace
{

// More than any pool keeps.
constexpr std::size_t many = 10000;

AStringSegment* chain_of(const std::vector<AStringSegment*>& segments)
{
    AStringSegment* head = nullptr;
    for (AStringSegment* segment : segments) {
        segment->next = head;
        segment->buflen = segment->buf.size();
        head = segment;
    }
    return head;
}

TEST(AStringSegments, AreEmptyAndDistinctAlsoWhenUsedAgain)
{
    for (int round = 0; round < 3; ++round) {
        std::vector<AStringSegment*> taken;
        for (std::size_t i = 0; i < many; ++i) {
            taken.push_back(take_segment());
            ASSERT_NE(taken.back(), nullptr);
            ASSERT_EQ(taken.back()->next, nullptr);
            ASSERT_EQ(taken.back()->buflen, 0u);
        }
        EXPECT_EQ(std::set<AStringSegment*>(taken.begin(), taken.end()).size(), many);
        release_segments(chain_of(taken));
    }
}

TEST(AStringSegments, ReleasingNoneDoesNothing)
{
    release_segments(nullptr);
    AStringSegment* segment = take_segment();
    ASSERT_NE(segment, nullptr);
    release_segments(segment);
}

TEST(AStringSegments, ThreadsBuildShareAndDropStringsAtOnce)
{
    constexpr int threads = 8;
    std::vector<AString> shared;
    std::vector<Text> expected;
    Random random(7);
    for (int i = 0; i < threads; ++i) {
        expected.push_back(random.text(700, U"abc"));
        shared.push_back(model::string_of(expected.back()));
    }
    std::atomic<int> wrong{0};
    std::vector<std::thread> workers;
    for (std::uint32_t i = 0; i < threads; ++i) {
        workers.emplace_back([&, i] {
            Random own(100 + i);
            std::vector<AString> kept(16);
            for (int round = 0; round < 2000; ++round) {
                const std::size_t from = own.below(threads);
                const std::size_t pos = own.below(700);
                const AString part = shared[from].mid(pos, 300);
                AString& slot = kept[own.below(kept.size())];
                slot = part + AString("!");
                if (text_of(slot) != expected[from].substr(pos, 300) + U"!") {
                    ++wrong;
                }
            }
        });
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    EXPECT_EQ(wrong.load(), 0);
}

} // namespace
