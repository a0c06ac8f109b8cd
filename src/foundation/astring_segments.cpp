#include "foundation/astring_segments.h"

#include "foundation/block_pool.h"

std::atomic<bool> segments_exhausted{false};

// 1 MB: the texts of the densest message.
static constinit BlockPool<sizeof(AStringSegment), 1024> segment_pool{};

AStringSegment* take_segment()
{
    if (segments_exhausted.load(std::memory_order_relaxed)) {
        return nullptr;
    }
    void* memory = segment_pool.take();
    if (memory == nullptr) {
        memory = ::operator new(sizeof(AStringSegment), std::nothrow);
    }
    return memory != nullptr ? new (memory) AStringSegment : nullptr;
}

void release_segments(AStringSegment* head)
{
    while (head != nullptr) {
        AStringSegment* following = head->next;
        if (!segment_pool.give(head)) {
            ::operator delete(head);
        }
        head = following;
    }
}
