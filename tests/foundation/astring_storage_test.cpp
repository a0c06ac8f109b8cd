#include "foundation/astring.h"
#include "foundation/astring_model.h"
#include "foundation/astring_segments.h"
#include "support/assert_watch.h"
#include "support/astring_printer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

using model::string_of;
using model::Text;
using model::text_of;

namespace
{

Text counted(std::size_t length)
{
    Text text;
    while (text.size() < length) {
        text += static_cast<char32_t>(text.size());
    }
    return text;
}

std::vector<std::uint64_t> segment_lengths(const AString& text)
{
    std::vector<std::uint64_t> lengths;
    for (const AStringSegment* segment = text.storage->head; segment != nullptr;
         segment = segment->next) {
        lengths.push_back(segment->buflen);
    }
    return lengths;
}

using Lengths = std::vector<std::uint64_t>;

class Exhausted
{
public:
    Exhausted() { segments_exhausted.store(true); }
    Exhausted(const Exhausted&) = delete;
    Exhausted& operator=(const Exhausted&) = delete;
    ~Exhausted() { segments_exhausted.store(false); }
};

TEST(AStringStorage, SegmentsHold256Characters)
{
    const AString one = string_of(counted(256));
    EXPECT_EQ(segment_lengths(one), (Lengths{256}));
    EXPECT_EQ(one.storage->head, one.storage->tail);
    EXPECT_TRUE(one.storage->head->full());
    const AString two = string_of(counted(257));
    EXPECT_EQ(segment_lengths(two), (Lengths{256, 1}));
    EXPECT_EQ(two.storage->head->next, two.storage->tail);
    EXPECT_FALSE(two.storage->tail->full());
    EXPECT_EQ(two.storage->total_len, 257u);
}

TEST(AStringStorage, OnlyTheTailIsPartlyFilledHoweverItWasBuilt)
{
    AStringBuilder builder;
    builder.append(string_of(counted(200)));
    builder.append("bytes", 5);
    builder.append(AChar{7});
    builder.append_fill('x', 300);
    builder.append(AString());
    builder.append("", 0);
    const AString text = builder.finish();
    EXPECT_EQ(segment_lengths(text), (Lengths{256, 250}));
    EXPECT_EQ(text_of(text), counted(200) + U"bytes" + Text(1, U'\7') + Text(300, U'x'));
    EXPECT_TRUE(text.storage->is_ctor_done());
}

TEST(AStringStorage, IsFreedWithItsLastReference)
{
    AString text = string_of(counted(600));
    const AString part = text.mid(100, 5);
    const auto& count = ARefBlock<AStringStorage>::of(text.storage.get())->reference_count;
    EXPECT_EQ(count.load(), 2u);
    text = AString();
    EXPECT_EQ(count.load(), 1u);
    EXPECT_EQ(text_of(part), counted(600).substr(100, 5));
}

TEST(AStringStorage, TakesNothingMoreOnceFrozen)
{
    const AString text("abc");
    AssertWatch watch;
    EXPECT_EQ(text.storage->segment_with_room(), nullptr);
    EXPECT_EQ(watch.count("astring"), 1u);
    EXPECT_EQ(text, "abc");
}

TEST(AStringBuilder, BuildsTheEmptyStringFromNothing)
{
    AStringBuilder builder;
    const AString text = builder.finish();
    EXPECT_TRUE(text.is_empty());
    EXPECT_EQ(text.length(), 0u);
}

TEST(AStringBuilder, TakesNothingMoreOnceFinished)
{
    AStringBuilder builder;
    EXPECT_TRUE(builder.append("abc", 3));
    const AString text = builder.finish();
    AssertWatch watch;
    EXPECT_FALSE(builder.append(AChar{'d'}));
    EXPECT_FALSE(builder.append("de", 2));
    EXPECT_FALSE(builder.append(text));
    EXPECT_EQ(watch.count("astring"), 3u);
    EXPECT_TRUE(builder.finish().is_empty());
    EXPECT_EQ(text, "abc");
}

TEST(AStringBuilder, AppendsAViewAlone)
{
    AStringBuilder builder;
    builder.append(string_of(counted(1000)).mid(250, 300));
    EXPECT_EQ(text_of(builder.finish()), counted(1000).substr(250, 300));
}

TEST(AStringPos, LocatesEveryPosition)
{
    const AString text = string_of(counted(600));
    AStringPos at;
    for (std::uint64_t p = 0; p < 600; ++p) {
        ASSERT_TRUE(at.locate(text.storage.get(), p));
        ASSERT_EQ(at.current(), p);
        ASSERT_EQ(at.absolute_position, p);
        ASSERT_LT(at.segment_offset, at.current_segment->buflen);
    }
    EXPECT_FALSE(at.locate(text.storage.get(), 600));
    EXPECT_FALSE(at.locate(text.storage.get(), std::numeric_limits<std::uint64_t>::max()));
}

TEST(AStringPos, StepsBothWays)
{
    const AString text = string_of(counted(600));
    AStringPos at;
    ASSERT_TRUE(at.locate(text.storage.get(), 0));
    for (std::uint64_t p = 1; p < 600; ++p) {
        ASSERT_TRUE(at.step_forward());
        ASSERT_EQ(at.current(), p);
    }
    EXPECT_FALSE(at.step_forward());
    EXPECT_EQ(at.current_segment, nullptr);
    EXPECT_EQ(at.absolute_position, 600u);
    EXPECT_FALSE(at.step_forward());
    for (std::uint64_t p = 600; p-- > 0;) {
        ASSERT_TRUE(at.step_back(text.storage.get()));
        ASSERT_EQ(at.current(), p);
        ASSERT_EQ(at.absolute_position, p);
    }
    EXPECT_FALSE(at.step_back(text.storage.get()));
}

TEST(AStringPos, SkipsAsManyStepsForward)
{
    const AString text = string_of(counted(600));
    for (const std::uint64_t start : {0u, 1u, 255u, 256u, 511u, 512u, 599u}) {
        for (const std::uint64_t count : {0u, 1u, 255u, 256u, 257u, 512u, 599u, 600u, 5000u}) {
            AStringPos at;
            ASSERT_TRUE(at.locate(text.storage.get(), start));
            ASSERT_EQ(at.skip(count), start + count < 600) << start << " " << count;
            ASSERT_EQ(at.absolute_position, std::min<std::uint64_t>(start + count, 600));
            if (start + count < 600) {
                ASSERT_EQ(at.current(), start + count);
            }
        }
    }
}

TEST(AStringPos, ReadsFrozenStoragesAlone)
{
    AStringStorage growing;
    AStringPos at;
    AssertWatch watch;
    EXPECT_FALSE(at.locate(&growing, 0));
    EXPECT_FALSE(at.step_back(&growing));
    EXPECT_FALSE(at.locate(nullptr, 0));
    EXPECT_EQ(watch.count("astring"), 3u);
}

TEST(AStringExhausted, NoSegmentGivesTheEmptyString)
{
    const Exhausted no_memory;
    AssertWatch watch;
    EXPECT_TRUE(AString("abc").is_empty());
    EXPECT_EQ(watch.count("astring"), 1u);
    EXPECT_TRUE(AString(AChar{'a'}).is_empty());
    EXPECT_EQ(watch.count("astring"), 2u);
}

TEST(AStringExhausted, AnAppendThatNeedsASegmentDoesNothing)
{
    AStringBuilder builder;
    builder.append_fill('x', 256);
    {
        const Exhausted no_memory;
        AssertWatch watch;
        EXPECT_FALSE(builder.append(AChar{'y'}));
        EXPECT_EQ(watch.count("astring"), 1u);
    }
    EXPECT_TRUE(builder.append(AChar{'z'}));
    EXPECT_EQ(text_of(builder.finish()), Text(256, U'x') + U"z");
}

TEST(AStringExhausted, ABlockIsAppendedAsFarAsTheLastSegmentGoes)
{
    AStringBuilder builder;
    builder.append_fill('x', 200);
    const AString more = string_of(counted(100));
    const Exhausted no_memory;
    AssertWatch watch;
    EXPECT_FALSE(builder.append(more));
    EXPECT_EQ(watch.count("astring"), 1u);
    EXPECT_EQ(text_of(builder.finish()), Text(200, U'x') + counted(56));
}

TEST(AStringExhausted, CombinationsEndWithWhatTheyHave)
{
    const AString text("ab");
    const Exhausted no_memory;
    AssertWatch watch;
    EXPECT_TRUE((text + text).is_empty());
    EXPECT_TRUE(text.repeat(std::numeric_limits<std::uint64_t>::max()).is_empty());
    EXPECT_TRUE(text.pad(std::numeric_limits<std::int64_t>::min(), '*').is_empty());
    EXPECT_TRUE(text.pad(std::numeric_limits<std::int64_t>::max(), '*').is_empty());
    EXPECT_GE(watch.count("astring"), 4u);
    EXPECT_EQ(watch.count(), watch.count("astring"));
}

} // namespace
