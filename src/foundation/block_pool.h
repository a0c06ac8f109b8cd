#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

// A bounded, process-wide pool of free blocks in front of the heap, for objects that come and go
// with each message. Any thread; never blocks.
//
// The blocks lie in free lists under flags that are only ever tried: who finds one taken goes to
// the heap. Usable before and after all static construction, as strings are.
template <std::size_t Bytes, unsigned BlocksPerShard>
class BlockPool
{
public:
    // Null when there is none at hand.
    void* take()
    {
        Shard& shard = shard_of_this_thread();
        const ShardLock lock(shard);
        if (!lock || shard.free == nullptr) {
            return nullptr;
        }
        FreeBlock* block = shard.free;
        shard.free = block->next;
        --shard.count;
        return block;
    }

    // False when it finds no place.
    bool give(void* memory)
    {
        Shard& shard = shard_of_this_thread();
        const ShardLock lock(shard);
        if (!lock || shard.count == BlocksPerShard) {
            return false;
        }
        shard.free = new (memory) FreeBlock{shard.free};
        ++shard.count;
        return true;
    }

private:
    struct FreeBlock {
        FreeBlock* next;
    };
    static_assert(Bytes >= sizeof(FreeBlock));

    struct alignas(64) Shard {
        std::atomic_flag busy;
        FreeBlock* free = nullptr;
        unsigned count = 0;
    };

    class ShardLock
    {
    public:
        explicit ShardLock(Shard& tried)
            : shard(tried), held(!tried.busy.test_and_set(std::memory_order_acquire))
        {
        }
        ShardLock(const ShardLock&) = delete;
        ShardLock& operator=(const ShardLock&) = delete;
        ~ShardLock()
        {
            if (held) {
                shard.busy.clear(std::memory_order_release);
            }
        }

        explicit operator bool() const { return held; }

    private:
        Shard& shard;
        bool held;
    };

    // Threads are told apart by where their stacks lie, in steps of the smallest stack in use. It
    // need not be exact: the wrong shard is right too.
    Shard& shard_of_this_thread()
    {
        char on_stack;
        const std::uint64_t step = reinterpret_cast<std::uintptr_t>(&on_stack) >> 16;
        return shards[(step * 0x9E3779B97F4A7C15u) >> (64 - shard_bits)];
    }

    static constexpr unsigned shard_bits = 2;
    std::array<Shard, 1u << shard_bits> shards{};
};

#ifndef VELTO_SANITIZED
inline constexpr bool pools_are_used = true;
#else
inline constexpr bool pools_are_used = false; // so that a sanitizer sees each use of a freed block
#endif

template <std::size_t Bytes, unsigned BlocksPerShard>
inline constinit BlockPool<Bytes, BlocksPerShard> block_pool{};

// Allocates single objects from the pool of their size.
template <typename T>
struct PoolAllocator {
    using value_type = T;

    PoolAllocator() = default;
    template <typename Other>
    PoolAllocator(const PoolAllocator<Other>&)
    {
    }

    T* allocate(std::size_t count)
    {
        void* block = nullptr;
        if constexpr (pools_are_used) {
            block = count == 1 ? pool().take() : nullptr;
        }
        return static_cast<T*>(block != nullptr ? block : ::operator new(count* bytes));
    }

    void deallocate(T* memory, std::size_t count)
    {
        if constexpr (pools_are_used) {
            if (count == 1 && pool().give(memory)) {
                return;
            }
        }
        ::operator delete(memory);
    }

    bool operator==(const PoolAllocator&) const = default;

private:
    static constexpr std::size_t bytes = (sizeof(T) + 63) / 64 * 64;
    static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

    // As many as the elements of the densest message.
    static auto& pool() { return block_pool<bytes, 4096>; }
};

template <typename T, typename... Arguments>
std::shared_ptr<T> make_pooled(Arguments&&... arguments)
{
    return std::allocate_shared<T>(PoolAllocator<T>(), std::forward<Arguments>(arguments)...);
}
