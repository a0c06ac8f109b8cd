#include "foundation/block_pool.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

namespace
{

constexpr std::size_t block_bytes = 64;
constexpr unsigned blocks = 8;

using Pool = BlockPool<block_bytes, blocks>;
using Block = std::array<std::uint64_t, block_bytes / sizeof(std::uint64_t)>;

TEST(BlockPool, GivesBackAtMostWhatItWasGiven)
{
    Pool pool;
    EXPECT_EQ(pool.take(), nullptr);
    std::array<Block, blocks + 3> memory;
    std::set<void*> kept;
    for (Block& block : memory) {
        if (pool.give(&block)) {
            kept.insert(&block);
        }
    }
    EXPECT_LE(kept.size(), blocks);
    std::set<void*> taken;
    while (void* block = pool.take()) {
        EXPECT_TRUE(taken.insert(block).second);
    }
    EXPECT_EQ(taken, kept);
}

TEST(BlockPool, SizesAreRoundedUpSoThatObjectsShareAPool)
{
    EXPECT_EQ(pooled_size(1), 64u);
    EXPECT_EQ(pooled_size(64), 64u);
    EXPECT_EQ(pooled_size(65), 128u);
}

TEST(BlockPool, NoBlockIsTakenByTwoThreadsAtOnce)
{
    Pool pool;
    std::vector<Block> memory(blocks);
    for (Block& block : memory) {
        pool.give(&block);
    }
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (std::uint64_t number = 1; number <= 4; ++number) {
        threads.emplace_back([&pool, &wrong, number] {
            Block own;
            for (int round = 0; round < 20000; ++round) {
                void* taken = pool.take();
                Block& block = taken != nullptr ? *static_cast<Block*>(taken) : own;
                block.fill(number);
                for (const std::uint64_t word : block) {
                    wrong += word != number ? 1 : 0;
                }
                if (taken != nullptr) {
                    pool.give(taken);
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong.load(), 0);
}

struct Refusing : PooledMemory<Refusing> {
    explicit Refusing(bool refuses)
    {
        if (refuses) {
            throw std::runtime_error("refused");
        }
    }

    std::array<char, 4000> content{};
};

// The address sanitizer tells what leaks.
TEST(BlockPool, GetsTheMemoryOfAnObjectBackThatCannotBeMade)
{
    EXPECT_THROW(static_cast<void>(new (std::nothrow) Refusing(true)), std::runtime_error);
    const std::unique_ptr<Refusing> next(new (std::nothrow) Refusing(false));
    EXPECT_NE(next, nullptr);
}

} // namespace
