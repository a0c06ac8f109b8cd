#include "foundation/aassert.h"
#include "foundation/astring.h"
#include "foundation/astring_runs.h"
#include "foundation/astring_segments.h"
#include "foundation/utf8_text.h"

#include <algorithm>

AStringStorage::~AStringStorage()
{
    release_segments(head);
    head = nullptr;
    tail = nullptr;
    total_len = 0;
}

AStringSegment* AStringStorage::segment_with_room()
{
    if (!A_CHECK("astring", !ctor_done)) {
        return nullptr;
    }
    if (tail != nullptr && !tail->full()) {
        return tail;
    }
    AStringSegment* segment = take_segment();
    if (!A_CHECK("astring", segment != nullptr)) {
        return nullptr;
    }
    (tail != nullptr ? tail->next : head) = segment;
    tail = segment;
    return segment;
}

bool AStringPos::step_forward()
{
    return skip(1);
}

bool AStringPos::step_back(const AStringStorage* storage)
{
    if (!A_CHECK("astring", storage != nullptr && storage->is_ctor_done()) ||
        absolute_position == 0) {
        return false;
    }
    if (segment_offset == 0) {
        return locate(storage, absolute_position - 1);
    }
    --segment_offset;
    --absolute_position;
    return true;
}

AStringBuilder::AStringBuilder() : storage(ARef<AStringStorage>::create()) {}

// `fill (room, count)` writes the next `count` characters to `room`.
template <typename Fill>
bool AStringBuilder::append_blocks(std::uint64_t count, Fill fill)
{
    if (!A_CHECK("astring", storage)) {
        return false;
    }
    while (count != 0) {
        AStringSegment* segment = storage->segment_with_room();
        if (segment == nullptr) {
            return false;
        }
        const std::uint64_t block = std::min(segment->buf.size() - segment->buflen, count);
        fill(segment->buf.data() + segment->buflen, block);
        segment->buflen += block;
        storage->total_len += block;
        count -= block;
    }
    return true;
}

bool AStringBuilder::append(AChar c)
{
    AStringSegment* segment = storage ? storage->tail : nullptr;
    if (segment == nullptr || segment->full()) {
        return append_fill(c, 1);
    }
    segment->buf[segment->buflen++] = c;
    ++storage->total_len;
    return true;
}

bool AStringBuilder::append(const AChar* characters, std::uint64_t count)
{
    return append_blocks(count, [&characters](AChar* room, std::uint64_t block) {
        std::copy_n(characters, block, room);
        characters += block;
    });
}

bool AStringBuilder::append(const char* bytes, std::uint64_t count)
{
    return append_blocks(count, [&bytes](AChar* room, std::uint64_t block) {
        widen(reinterpret_cast<const unsigned char*>(bytes), block, room);
        bytes += block;
    });
}

bool AStringBuilder::append(const AString& text)
{
    for (AStringRuns run(text); !run.at_end(); run.next_run()) {
        if (!append(run.data, run.count)) {
            return false;
        }
    }
    return true;
}

bool AStringBuilder::append_fill(AChar c, std::uint64_t count)
{
    return append_blocks(count,
                         [c](AChar* room, std::uint64_t block) { std::fill_n(room, block, c); });
}

AString AStringBuilder::finish()
{
    AString text;
    if (storage && A_CHECK("astring", !storage->is_ctor_done())) {
        storage->ctor_done = true;
        text.bind_view(std::move(storage), 0, AString::rest);
    }
    return text;
}
