#pragma once

#include "foundation/astring.h"

#include <algorithm>

// Walks the contiguous runs of a string: locates once, then moves forward.
class AStringRuns
{
public:
    explicit AStringRuns(const AString& text, std::uint64_t from = 0)
        : start(text.start_offset), end(text.start_offset + text.len)
    {
        if (from < text.len && at.locate(text.storage.get(), start + from)) {
            enter();
        }
    }

    bool at_end() const { return count == 0; }
    AChar current() const { return *data; }
    // Of `data`, in the string.
    std::uint64_t position() const { return at.absolute_position - start; }

    void next_run() { skip(count); }

    void skip(std::uint64_t characters)
    {
        at.skip(characters);
        enter();
    }

    // Moves to the first `c` at or after this position.
    bool find(AChar c)
    {
        return find_if([c](AChar other) { return other == c; });
    }

    template <typename Predicate>
    bool find_if(Predicate predicate)
    {
        for (; !at_end(); next_run()) {
            const AChar* hit = std::find_if(data, data + count, predicate);
            if (hit != data + count) {
                skip(static_cast<std::uint64_t>(hit - data));
                return true;
            }
        }
        return false;
    }

    const AChar* data = nullptr;
    std::uint64_t count = 0; // characters left in this run; 0 at the end of the string

private:
    void enter()
    {
        if (at.current_segment == nullptr || at.absolute_position >= end) {
            count = 0;
            return;
        }
        data = at.current_segment->buf.data() + at.segment_offset;
        count =
            std::min(at.current_segment->buflen - at.segment_offset, end - at.absolute_position);
    }

    AStringPos at;
    std::uint64_t start; // of the view, in the storage
    std::uint64_t end;
};
