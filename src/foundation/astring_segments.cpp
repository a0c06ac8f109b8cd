#include "foundation/astring_segments.h"

#include <array>
#include <new>

std::atomic<bool> segments_exhausted{false};

#ifndef VELTO_SANITIZED

namespace
{

// A free list under a flag that is only ever tried: who finds it taken goes to the heap.
struct alignas(64) Shard {
    std::atomic_flag busy;
    AStringSegment* free = nullptr;
    unsigned count = 0;
};

constexpr unsigned shard_bits = 2;
constexpr unsigned segments_per_shard = 4096; // 4 MB: the texts of the densest message

// Usable before and after all static construction, as strings are.
constinit std::array<Shard, 1u << shard_bits> shards{};

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

// Threads are told apart by where their stacks lie, in steps of the smallest stack in use. It need
// not be exact: the wrong shard is right too.
Shard& shard_of_this_thread()
{
    char on_stack;
    const std::uint64_t step = reinterpret_cast<std::uintptr_t>(&on_stack) >> 16;
    return shards[(step * 0x9E3779B97F4A7C15u) >> (64 - shard_bits)];
}

AStringSegment* take_pooled()
{
    Shard& shard = shard_of_this_thread();
    const ShardLock lock(shard);
    if (!lock || shard.free == nullptr) {
        return nullptr;
    }
    AStringSegment* segment = shard.free;
    shard.free = segment->next;
    --shard.count;
    segment->next = nullptr;
    segment->buflen = 0;
    return segment;
}

// Returns what found no place.
AStringSegment* give_to_pool(AStringSegment* head)
{
    Shard& shard = shard_of_this_thread();
    const ShardLock lock(shard);
    if (!lock) {
        return head;
    }
    while (head != nullptr && shard.count < segments_per_shard) {
        AStringSegment* following = head->next;
        head->next = shard.free;
        shard.free = head;
        ++shard.count;
        head = following;
    }
    return head;
}

} // namespace

#else

// Without a pool a sanitizer sees each use of a freed segment.
static AStringSegment* take_pooled()
{
    return nullptr;
}

static AStringSegment* give_to_pool(AStringSegment* head)
{
    return head;
}

#endif

AStringSegment* take_segment()
{
    if (segments_exhausted.load(std::memory_order_relaxed)) {
        return nullptr;
    }
    AStringSegment* segment = take_pooled();
    return segment != nullptr ? segment : new (std::nothrow) AStringSegment;
}

void release_segments(AStringSegment* head)
{
    if (head != nullptr) {
        head = give_to_pool(head);
    }
    while (head != nullptr) {
        AStringSegment* following = head->next;
        delete head;
        head = following;
    }
}
