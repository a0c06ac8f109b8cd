#include "foundation/abuffer.h"

#include "support/assert_watch.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

// What the sink was given, block by block.
struct Blocks {
    static void take(void* blocks, const unsigned char* bytes, std::uint64_t size)
    {
        static_cast<Blocks*>(blocks)->list.emplace_back(reinterpret_cast<const char*>(bytes), size);
    }

    ABuffer::Sink sink() { return ABuffer::Sink(&take, this); }

    std::vector<std::size_t> sizes() const
    {
        std::vector<std::size_t> all;
        for (const std::string& block : list) {
            all.push_back(block.size());
        }
        return all;
    }

    std::string joined() const
    {
        std::string all;
        for (const std::string& block : list) {
            all += block;
        }
        return all;
    }

    std::vector<std::string> list;
};

using Sizes = std::vector<std::size_t>;

// No two stretches of it are alike, so that a byte out of place shows.
std::string pattern(std::size_t size, std::size_t from = 0)
{
    std::string text;
    for (std::size_t i = from; i < from + size; ++i) {
        text += static_cast<char>((i * 31 + i / 251) % 256);
    }
    return text;
}

void append(ABuffer& buffer, const std::string& text)
{
    buffer.append(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

class ABufferTest : public testing::Test
{
protected:
    Blocks blocks;
    ABuffer buffer{blocks.sink()};
};

TEST_F(ABufferTest, KeepsSmallPiecesUntilItIsFlushed)
{
    append(buffer, "one ");
    append(buffer, "two ");
    append(buffer, "three");
    EXPECT_EQ(blocks.sizes(), Sizes{});
    buffer.flush();
    EXPECT_EQ(blocks.list, std::vector<std::string>{"one two three"});
    buffer.flush();
    EXPECT_EQ(blocks.list.size(), 1u);
}

TEST_F(ABufferTest, GivesNothingForNothing)
{
    buffer.append(nullptr, 0);
    append(buffer, "");
    buffer.flush();
    EXPECT_EQ(blocks.sizes(), Sizes{});
}

// Full is not yet over: the next byte makes it flush.
TEST_F(ABufferTest, FlushesByItselfOnlyWhenMoreComes)
{
    append(buffer, pattern(1499));
    append(buffer, pattern(1, 1499));
    EXPECT_EQ(blocks.sizes(), Sizes{});
    append(buffer, pattern(1, 1500));
    EXPECT_EQ(blocks.sizes(), Sizes{1500});
    buffer.flush();
    EXPECT_EQ(blocks.sizes(), (Sizes{1500, 1}));
    EXPECT_EQ(blocks.joined(), pattern(1501));
}

TEST_F(ABufferTest, GroupsManyPiecesIntoBlocksOf1500)
{
    const std::string text = pattern(4000);
    for (std::size_t at = 0; at < text.size(); at += 7) {
        append(buffer, text.substr(at, 7));
    }
    buffer.flush();
    EXPECT_EQ(blocks.sizes(), (Sizes{1500, 1500, 1000}));
    EXPECT_EQ(blocks.joined(), text);
}

TEST_F(ABufferTest, HandsAPieceThatFillsItStraightOnWhenItIsEmpty)
{
    append(buffer, pattern(1500));
    EXPECT_EQ(blocks.sizes(), Sizes{1500});
    append(buffer, pattern(5000));
    EXPECT_EQ(blocks.sizes(), (Sizes{1500, 5000}));
    append(buffer, pattern(1499));
    EXPECT_EQ(blocks.sizes(), (Sizes{1500, 5000}));
}

TEST_F(ABufferTest, FillsUpFirstAndHandsTheRestOnWhenAPieceIsLong)
{
    append(buffer, pattern(100));
    append(buffer, pattern(5000, 100));
    EXPECT_EQ(blocks.sizes(), (Sizes{1500, 3600}));
    buffer.flush();
    EXPECT_EQ(blocks.joined(), pattern(5100));
}

TEST_F(ABufferTest, KeepsARestThatDoesNotFillIt)
{
    append(buffer, pattern(100));
    append(buffer, pattern(2899, 100));
    EXPECT_EQ(blocks.sizes(), Sizes{1500});
    buffer.flush();
    EXPECT_EQ(blocks.sizes(), (Sizes{1500, 1499}));
    EXPECT_EQ(blocks.joined(), pattern(2999));
}

// After a flush in the middle the ring goes on from there, so what follows comes in two runs.
TEST_F(ABufferTest, WrapsAround)
{
    append(buffer, pattern(1000));
    buffer.flush();
    append(buffer, pattern(900, 1000));
    buffer.flush();
    EXPECT_EQ(blocks.sizes(), (Sizes{1000, 500, 400}));
    append(buffer, pattern(1499, 1900));
    append(buffer, pattern(2, 3399));
    EXPECT_EQ(blocks.sizes(), (Sizes{1000, 500, 400, 1100, 400}));
    buffer.flush();
    EXPECT_EQ(blocks.sizes(), (Sizes{1000, 500, 400, 1100, 400, 1}));
    EXPECT_EQ(blocks.joined(), pattern(3401));
}

TEST_F(ABufferTest, KeepsEveryByteInOrderWhateverThePieces)
{
    AssertWatch watch;
    std::string text;
    for (std::size_t i = 0; i < 3000; ++i) {
        const std::string piece = pattern(i * 7919 % 1700, text.size());
        append(buffer, piece);
        text += piece;
        if (i % 13 == 0) {
            buffer.flush();
        }
    }
    buffer.flush();
    EXPECT_TRUE(blocks.joined() == text);
    EXPECT_EQ(watch.count(), 0u);
}

} // namespace
