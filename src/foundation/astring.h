#pragma once

#include "foundation/aassert.h"
#include "foundation/achar.h"
#include "foundation/afunction.h"
#include "foundation/aref.h"
#include "foundation/ns_list.h"

#include <array>
#include <string>
#include <utility>

// One block of text. Only the last block of a storage can be partly filled.
struct AStringSegment {
    AStringSegment* next = nullptr;
    std::uint64_t buflen = 0;
    std::array<AChar, 256> buf; // meaningful up to buflen

    bool full() const { return buflen == buf.size(); }
};

// The shared text behind strings: appended to by one AStringBuilder, then frozen for good.
class AStringStorage
{
public:
    using IsPooled = void;

    AStringStorage() = default;
    AStringStorage(const AStringStorage&) = delete;
    AStringStorage& operator=(const AStringStorage&) = delete;
    ~AStringStorage();

    bool is_ctor_done() const { return ctor_done; }
    // A last segment with room for a character, linked in when there was none; the caller fills it.
    // Null, and reported, for a frozen storage and when memory is exhausted.
    AStringSegment* segment_with_room();

    bool ctor_done = false;
    AStringSegment* head = nullptr;
    AStringSegment* tail = nullptr;
    std::uint64_t total_len = 0;
};

// A cursor in a frozen storage. Finding one costs time linear in its position, stepping does not:
// code that walks a string locates once and steps.
struct AStringPos {
    // All four: false when there is no such character. Past the end `current_segment` is null.
    bool locate(const AStringStorage* storage, std::uint64_t position);
    bool step_forward();
    bool step_back(const AStringStorage* storage);
    bool skip(std::uint64_t count);
    AChar current() const { return current_segment->buf[segment_offset]; }

    AStringSegment* current_segment = nullptr;
    std::uint64_t segment_offset = 0;
    std::uint64_t absolute_position = 0; // in the storage, not in the string
};

inline bool AStringPos::locate(const AStringStorage* storage, std::uint64_t position)
{
    if (!A_CHECK("astring", storage != nullptr && storage->is_ctor_done()) ||
        position >= storage->total_len) {
        return false;
    }
    current_segment = storage->head;
    segment_offset = position;
    absolute_position = position;
    while (segment_offset >= current_segment->buflen) {
        segment_offset -= current_segment->buflen;
        current_segment = current_segment->next;
    }
    return true;
}

inline bool AStringPos::skip(std::uint64_t count)
{
    while (current_segment != nullptr && count >= current_segment->buflen - segment_offset) {
        const std::uint64_t run = current_segment->buflen - segment_offset;
        count -= run;
        absolute_position += run;
        current_segment = current_segment->next;
        segment_offset = 0;
    }
    if (current_segment == nullptr) {
        return false;
    }
    segment_offset += count;
    absolute_position += count;
    return true;
}

class AString;
using AStringList = nonstd_list<AString>;

enum class ACompare { exact, ignore_case };

// An immutable sequence of code points: a view on a shared storage. Copies and substrings share it.
// Positions and counts are code points.
class AString
{
public:
    // As a count: up to the end. 32 bits on purpose, also where counts are wider.
    static constexpr std::uint64_t rest = 0xFFFFFFFFu;

    AString() = default;
    AString(const AString& other) : storage(other.storage) { take_view(other); }
    AString(AString&& other) noexcept
        : storage(std::move(other.storage)), start_offset(std::exchange(other.start_offset, 0)),
          len(std::exchange(other.len, 0))
    {
    }
    AString& operator=(const AString& other)
    {
        storage = other.storage;
        take_view(other);
        return *this;
    }
    AString& operator=(AString&& other) noexcept
    {
        if (this != &other) {
            storage = std::move(other.storage);
            start_offset = std::exchange(other.start_offset, 0);
            len = std::exchange(other.len, 0);
        }
        return *this;
    }
    ~AString() = default;

    // The same as `other.mid (pos, count)`.
    AString(const AString& other, std::uint64_t pos, std::uint64_t count);
    explicit AString(AChar c);
    // Each byte becomes one code point. A null pointer is reported and gives the empty string.
    AString(const char* bytes);
    AString(const char* bytes, std::uint64_t count);
    // UTF-16; ends at the first sequence that is none. A null pointer is reported.
    explicit AString(const char16_t* units);
    AString(const char16_t* units, std::uint64_t count);
    explicit AString(const std::u16string& units);
    explicit AString(const AStringList& list);
    static AString from_chars(const AChar* characters, std::uint64_t count);
    // Ends, without a mark, at the first byte that is not UTF-8 or is 0.
    static AString from_utf8(const void* bytes, std::uint64_t count);
    static AString from_utf16(const char16_t* units, std::uint64_t count);

    std::uint64_t length() const { return len; }
    bool is_empty() const { return !storage; }
    bool is_blank() const;
    AChar getchar(std::uint64_t pos, AChar default_value) const;
    AChar last(AChar default_value) const;

    AString mid(std::uint64_t pos, std::uint64_t count = rest) const;
    AString left(std::uint64_t n) const;
    AString right(std::uint64_t n) const;
    AString drop_left(std::uint64_t n) const;
    AString drop_right(std::uint64_t n) const;
    AString trim_left() const;
    AString trim_right() const;
    AString trim() const;
    // Whether `trim ()` would leave it as it is.
    bool is_trimmed() const;
    AString strip_prefix(const AString& prefix, bool* found = nullptr,
                         ACompare mode = ACompare::exact) const;
    AString strip_suffix(const AString& suffix, bool* found = nullptr,
                         ACompare mode = ACompare::exact) const;
    // A copy of its own when the storage holds more than `slack` characters beyond this view, so
    // that a small value does not keep a large message in memory.
    AString compact_copy(std::uint64_t slack) const;

    // For a text that is kept for good: its copies are no longer counted.
    void make_permanent() const
    {
        if (storage) {
            ARefBlock<AStringStorage>::of(storage.get())->make_permanent();
        }
    }

    int compare(std::uint64_t pos, const AString& other, std::uint64_t other_pos,
                std::uint64_t count, ACompare mode) const;
    bool starts_with(const AString& prefix, ACompare mode = ACompare::exact) const;
    bool ends_with(const AString& suffix, ACompare mode = ACompare::exact) const;
    friend bool operator==(const AString& a, const AString& b)
    {
        return a.len == b.len && (a.is_same_view(b) || a.has_same_characters(b));
    }
    friend bool operator<(const AString& a, const AString& b);

    std::int64_t find(AChar c, std::uint64_t from = 0) const;
    std::int64_t find(const AString& needle, std::uint64_t from = 0) const;

    static AString concat(const AString& a, const AString& b);
    friend AString operator+(const AString& a, const AString& b) { return concat(a, b); }
    AString& operator+=(const AString& other) { return *this = concat(*this, other); }
    AString repeat(std::uint64_t count) const;
    static AString join(const AStringList& list, const AString& separator);

    // Finds the next separator at or after `from`: its position, -1 when there is none, and its
    // length, 1 unless set. `from` never goes back within one split.
    using Finder = AFunction<const AString*, std::uint64_t, std::int64_t*, std::uint64_t*>;
    // An empty separator separates nothing.
    AStringList split(const AString& separator, bool keep_empties) const;
    // A run of characters of the set is one separator.
    AStringList split_any(const AString& character_set, bool keep_empties) const;
    AStringList split_with(const Finder& finder, bool keep_empties, bool keep_separators) const;

    // Fill characters up to |width|: in front of the text for a positive width, behind it for a
    // negative one.
    AString pad(std::int64_t width, char fill) const;

    // Ends at the first character that has no UTF-16 form or no longer fits.
    void to_utf16(char16_t* buf, std::uint64_t count, std::uint64_t* actual = nullptr,
                  bool zero_fill = false) const;
    // Writes nothing behind the terminating 0, and nothing at all for a count of 0.
    void to_utf16z(char16_t* buf, std::uint64_t count) const;
    std::u16string to_wide() const;
    // For messages to people and for tests: UTF-8.
    std::string to_utf8() const;

    using RunDelegate = AFunction<const AChar*, std::uint64_t>;
    using BytesDelegate = AFunction<const unsigned char*, std::uint64_t>;
    // One call per contiguous run of the view.
    void for_each_run(const RunDelegate& delegate) const;
    // Chunks of at most 128 bytes, none across two runs; characters above 0x10FFFF are left out.
    void for_each_utf8(const BytesDelegate& delegate) const;

    ARef<AStringStorage> storage;
    std::uint64_t start_offset = 0;
    std::uint64_t len = 0;

    // Whether both show the same part of the same storage.
    bool is_same_view(const AString& other) const
    {
        return storage.get() == other.storage.get() && start_offset == other.start_offset &&
               len == other.len;
    }

private:
    friend class AStringBuilder;
    // All new strings and substrings pass here: no storage without characters, and none of those
    // beyond the end of the storage.
    void bind_view(ARef<AStringStorage> text, std::uint64_t offset, std::uint64_t count);

    bool has_same_characters(const AString& other) const;

    // The view for a reference copied from `other`; an empty one where the reference was refused.
    void take_view(const AString& other)
    {
        start_offset = storage ? other.start_offset : 0;
        len = storage ? other.len : 0;
    }
};

// The text without the white space at both ends, for reading it: hardly any has some, and the
// others are not copied. The text must live for as long.
class ATrimmed
{
public:
    explicit ATrimmed(const AString& text) : chosen(&text)
    {
        if (!text.is_trimmed()) {
            trimmed = text.trim();
            chosen = &trimmed;
        }
    }

    ATrimmed(const ATrimmed&) = delete;
    ATrimmed& operator=(const ATrimmed&) = delete;

    const AString& operator*() const { return *chosen; }
    const AString* operator->() const { return chosen; }

private:
    AString trimmed;
    const AString* chosen;
};

// The one writer of text. Appending is false, and reported, when memory is exhausted or the text is
// finished; the rest of the piece is then left out.
class AStringBuilder
{
public:
    AStringBuilder();

    bool append(AChar c);
    bool append(const AChar* characters, std::uint64_t count);
    bool append(const char* bytes, std::uint64_t count);
    bool append(const AString& text);
    bool append_fill(AChar c, std::uint64_t count);
    AString finish();

private:
    template <typename Fill>
    bool append_blocks(std::uint64_t count, Fill fill);

    ARef<AStringStorage> storage;
};
