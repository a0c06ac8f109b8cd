#include "foundation/atomic_win32_impl.h"

#include "support/assert_watch.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

constexpr int threads = 4;
constexpr int rounds = 2000;

void run_in_threads(const std::function<void()>& function)
{
    std::vector<std::thread> running;
    for (int i = 0; i != threads; ++i) {
        running.emplace_back(function);
    }
    for (std::thread& thread : running) {
        thread.join();
    }
}

// A cell of type T at an address that no T can have.
template <typename T>
class Misaligned
{
public:
    explicit Misaligned(T value) { std::memcpy(bytes + 1, &value, sizeof value); }
    T* address() { return reinterpret_cast<T*>(bytes + 1); }
    T value() const
    {
        T copy;
        std::memcpy(&copy, bytes + 1, sizeof copy);
        return copy;
    }

private:
    alignas(T) std::byte bytes[2 * sizeof(T)]{};
};

TEST(Atomic, IncrementAndDecrementGiveTheNewValue)
{
    std::atomic<std::uint32_t> cell{5};
    EXPECT_EQ(atomic_increment(cell), 6u);
    EXPECT_EQ(atomic_decrement(cell), 5u);
    cell = 0;
    EXPECT_EQ(atomic_decrement(cell), 0xFFFFFFFFu);
    EXPECT_EQ(atomic_increment(cell), 0u);
}

TEST(Atomic, IncrementsOfAllThreadsCount)
{
    std::atomic<std::uint32_t> cell{0};
    std::atomic<std::uint32_t> largest{0};
    run_in_threads([&] {
        std::uint32_t last = 0;
        for (int i = 0; i != rounds; ++i) {
            last = atomic_increment(cell);
        }
        atomic_step(largest, [last](std::uint32_t seen) { return std::max(seen, last); });
    });
    EXPECT_EQ(cell.load(), std::uint32_t{threads * rounds});
    EXPECT_EQ(largest.load(), std::uint32_t{threads * rounds});
}

TEST(Atomic, WriteReplacesAndReadGivesTheValue)
{
    std::uint32_t narrow = 1;
    std::uint64_t wide = 1;
    atomic_write(&narrow, std::uint32_t{0xFFFFFFFF});
    atomic_write(&wide, std::uint64_t{0xFEDCBA9876543210});
    EXPECT_EQ(atomic_read(&narrow), 0xFFFFFFFFu);
    EXPECT_EQ(atomic_read(&wide), 0xFEDCBA9876543210u);
}

TEST(Atomic, ExchangeSwapsOnlyWhatWasExpected)
{
    std::uint32_t cell = 1;
    EXPECT_FALSE(atomic_compare_exchange(&cell, 2, 3));
    EXPECT_EQ(cell, 1u);
    EXPECT_TRUE(atomic_compare_exchange(&cell, 1, 3));
    EXPECT_EQ(cell, 3u);
}

TEST(Atomic, ExchangeLoopLosesNothing)
{
    std::uint32_t cell = 0;
    run_in_threads([&] {
        for (int i = 0; i != rounds; ++i) {
            std::uint32_t seen = 0;
            do {
                seen = atomic_read(&cell);
            } while (!atomic_compare_exchange(&cell, seen, seen + 1));
        }
    });
    EXPECT_EQ(cell, std::uint32_t{threads * rounds});
}

TEST(Atomic, MisalignedExchangeIsReportedAndGoesOn)
{
    Misaligned<std::uint32_t> cell(1);
    const AssertWatch watch;
    EXPECT_FALSE(atomic_compare_exchange(cell.address(), 2, 3));
    EXPECT_EQ(cell.value(), 1u);
    EXPECT_EQ(watch.count("atomic_win32_impl"), 1u);
    EXPECT_TRUE(atomic_compare_exchange(cell.address(), 1, 3));
    EXPECT_EQ(cell.value(), 3u);
    EXPECT_EQ(watch.count("atomic_win32_impl"), 2u);
}

TEST(Atomic, MisalignedReadsAndWritesGoOnUnreported)
{
    Misaligned<std::uint32_t> narrow(1);
    Misaligned<std::uint64_t> wide(2);
    const AssertWatch watch;
    EXPECT_EQ(atomic_read(narrow.address()), 1u);
    atomic_write(narrow.address(), std::uint32_t{0x12345678});
    atomic_write(wide.address(), std::uint64_t{0x123456789ABCDEF0});
    EXPECT_EQ(narrow.value(), 0x12345678u);
    EXPECT_EQ(wide.value(), 0x123456789ABCDEF0u);
    EXPECT_EQ(watch.count(), 0u);
}

TEST(Atomic, PointerExchangeSwapsOnlyWhatWasExpected)
{
    int first = 1;
    int second = 2;
    int* cell = nullptr;
    EXPECT_FALSE(atomic_compare_exchange(&cell, &first, &second));
    EXPECT_EQ(cell, nullptr);
    EXPECT_TRUE(atomic_compare_exchange(&cell, nullptr, &first));
    EXPECT_EQ(atomic_read(&cell), &first);
    EXPECT_TRUE(atomic_compare_exchange(&cell, &first, nullptr));
    EXPECT_EQ(cell, nullptr);
}

TEST(Atomic, MisalignedPointerExchangeIsReportedAndGoesOn)
{
    int object = 1;
    Misaligned<int*> cell(nullptr);
    const AssertWatch watch;
    EXPECT_TRUE(atomic_compare_exchange(cell.address(), nullptr, &object));
    EXPECT_EQ(cell.value(), &object);
    EXPECT_EQ(watch.count("atomic_win32_impl"), 1u);
    EXPECT_FALSE(atomic_compare_exchange(cell.address(), nullptr, nullptr));
    EXPECT_EQ(watch.count("atomic_win32_impl"), 2u);
    EXPECT_EQ(atomic_read(cell.address()), &object);
}

TEST(Atomic, LazilyMadeValueIsPublishedOnce)
{
    int* published = nullptr;
    std::atomic<int> made{0};
    std::atomic<int> kept{0};
    run_in_threads([&] {
        if (atomic_read(&published) == nullptr) {
            auto* own = new int(42);
            ++made;
            if (atomic_compare_exchange(&published, nullptr, own)) {
                ++kept;
            } else {
                delete own;
            }
        }
        EXPECT_EQ(*atomic_read(&published), 42);
    });
    EXPECT_EQ(kept, 1);
    EXPECT_GE(made, 1);
    delete published;
}

TEST(Atomic, PointerIsTakenOutOfAFieldByOneThread)
{
    int object = 1;
    int* field = &object;
    std::atomic<int> takers{0};
    run_in_threads([&] {
        int* seen = nullptr;
        do {
            seen = atomic_read(&field);
        } while (!atomic_compare_exchange(&field, seen, nullptr));
        takers += seen != nullptr;
    });
    EXPECT_EQ(takers, 1);
    EXPECT_EQ(field, nullptr);
}

TEST(Atomic, WideExchangeComparesBothWords)
{
    AtomicCell128 cell{1, 2};
    EXPECT_FALSE(atomic_compare_exchange(&cell, {1, 3}, {7, 8}));
    EXPECT_FALSE(atomic_compare_exchange(&cell, {0, 2}, {7, 8}));
    EXPECT_EQ(cell.value, 1u);
    EXPECT_EQ(cell.generation, 2u);
    EXPECT_TRUE(atomic_compare_exchange(&cell, {1, 2}, {~0ull, 8}));
    EXPECT_EQ(cell.value, ~0ull);
    EXPECT_EQ(cell.generation, 8u);
}

TEST(Atomic, WideExchangeChangesBothWordsAtOnce)
{
    AtomicCell128 cell;
    run_in_threads([&] {
        for (int i = 0; i != rounds; ++i) {
            AtomicCell128 seen;
            do {
                seen = {atomic_read(&cell.value), atomic_read(&cell.generation)};
            } while (!atomic_compare_exchange(&cell, seen, {seen.value + 3, seen.generation + 1}));
        }
    });
    EXPECT_EQ(cell.generation, std::uint64_t{threads * rounds});
    EXPECT_EQ(cell.value, std::uint64_t{3 * threads * rounds});
}

} // namespace
