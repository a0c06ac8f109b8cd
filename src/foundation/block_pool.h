#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
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
        if (!is_used) {
            return nullptr;
        }
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
        if (!is_used) {
            return false;
        }
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
#ifndef VELTO_SANITIZED
    static constexpr bool is_used = true;
#else
    static constexpr bool is_used = false; // so that a sanitizer sees each use of a freed block
#endif

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

// The pool for objects of about one size, with as many blocks as the densest message has elements.
constexpr std::size_t pooled_size(std::size_t bytes)
{
    return (bytes + 63) / 64 * 64;
}

template <std::size_t Bytes>
inline constinit BlockPool<Bytes, 4096> block_pool{};

// The memory of a class whose objects come from the pool.
template <typename Object>
struct PooledMemory {
    static void* operator new(std::size_t, const std::nothrow_t&) noexcept
    {
        void* memory = pool().take();
        return memory != nullptr ? memory
                                 : ::operator new(pooled_size(sizeof(Object)), std::nothrow);
    }

    static void operator delete(void* memory) noexcept
    {
        if (!pool().give(memory)) {
            ::operator delete(memory);
        }
    }

    static void operator delete(void* memory, const std::nothrow_t&) noexcept
    {
        operator delete(memory);
    }

private:
    static auto& pool()
    {
        static_assert(alignof(Object) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
        return block_pool<pooled_size(sizeof(Object))>;
    }
};
