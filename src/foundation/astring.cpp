#include "foundation/astring.h"

#include "foundation/aassert.h"
#include "foundation/astring_runs.h"

#include <algorithm>
#include <cstring>

void AString::bind_view(ARef<AStringStorage> text, std::uint64_t offset, std::uint64_t count)
{
    storage.clear();
    start_offset = 0;
    len = 0;
    if (!text || offset >= text->total_len) {
        return;
    }
    const std::uint64_t remaining = text->total_len - offset;
    if (count == rest || count > remaining) {
        count = remaining;
    }
    if (count == 0) {
        return;
    }
    storage = std::move(text);
    start_offset = offset;
    len = count;
}

AString::AString(const AString& other, std::uint64_t pos, std::uint64_t count)
    : AString(other.mid(pos, count))
{
}

AString::AString(AChar c) : AString(from_chars(&c, 1)) {}

AString::AString(const char* bytes)
{
    if (A_CHECK("astring", bytes != nullptr)) {
        *this = AString(bytes, std::strlen(bytes));
    }
}

AString::AString(const char* bytes, std::uint64_t count)
{
    if (A_CHECK("astring", bytes != nullptr) && count != 0) {
        AStringBuilder builder;
        builder.append(bytes, count);
        *this = builder.finish();
    }
}

AString::AString(const char16_t* units)
{
    if (A_CHECK("astring", units != nullptr)) {
        *this = from_utf16(units, std::char_traits<char16_t>::length(units));
    }
}

AString::AString(const char16_t* units, std::uint64_t count) : AString(from_utf16(units, count)) {}

AString::AString(const std::u16string& units) : AString(from_utf16(units.data(), units.size())) {}

AString::AString(const AStringList& list) : AString(join(list, AString())) {}

AString AString::from_chars(const AChar* characters, std::uint64_t count)
{
    if (!A_CHECK("astring", characters != nullptr) || count == 0) {
        return AString();
    }
    AStringBuilder builder;
    builder.append(characters, count);
    return builder.finish();
}

bool AString::is_blank() const
{
    return !AStringRuns(*this).find_if([](AChar c) { return !is_space(c); });
}

AChar AString::getchar(std::uint64_t pos, AChar default_value) const
{
    AStringPos at;
    if (pos >= len || !at.locate(storage.get(), start_offset + pos)) {
        return default_value;
    }
    return at.current();
}

AChar AString::last(AChar default_value) const
{
    return is_empty() ? default_value : getchar(len - 1, default_value);
}

AString AString::mid(std::uint64_t pos, std::uint64_t count) const
{
    count = std::min(count, pos > len ? 0 : len - pos);
    if (count == 0) {
        return AString();
    }
    AString result(*this);
    if (result.storage) {
        result.start_offset += pos;
        result.len = count == rest ? storage->total_len - result.start_offset : count;
    }
    return result;
}

AString AString::left(std::uint64_t n) const
{
    return n < len ? mid(0, n) : *this;
}

AString AString::right(std::uint64_t n) const
{
    return n < len ? mid(len - n, rest) : *this;
}

AString AString::drop_left(std::uint64_t n) const
{
    return n >= len ? AString() : right(len - n);
}

AString AString::drop_right(std::uint64_t n) const
{
    return n >= len ? AString() : left(len - n);
}

AString AString::trim_left() const
{
    AStringRuns run(*this);
    return run.find_if([](AChar c) { return !is_space(c); }) ? drop_left(run.position())
                                                             : AString();
}

// How many characters of a run are left when the white space at its end is dropped.
static std::uint64_t trimmed_count(const AChar* data, std::uint64_t count)
{
    while (count != 0 && is_space(data[count - 1])) {
        --count;
    }
    return count;
}

AString AString::trim_right() const
{
    AStringPos at;
    if (is_empty() || !at.locate(storage.get(), start_offset + len - 1)) {
        return AString();
    }
    // Nearly always the last run decides.
    const std::uint64_t last_run = std::min(at.segment_offset + 1, len);
    const AChar* data = at.current_segment->buf.data() + at.segment_offset + 1 - last_run;
    if (const std::uint64_t kept = trimmed_count(data, last_run)) {
        return left(len - last_run + kept);
    }
    // Segments have no link back, so the others are looked at in their order.
    std::uint64_t end = 0;
    for (AStringRuns run(*this); !run.at_end(); run.next_run()) {
        if (const std::uint64_t kept = trimmed_count(run.data, run.count)) {
            end = run.position() + kept;
        }
    }
    return left(end);
}

AString AString::trim() const
{
    return trim_left().trim_right();
}

bool AString::is_trimmed() const
{
    return is_empty() || !(is_space(getchar(0, 0)) || is_space(getchar(len - 1, 0)));
}

static void set_optional(bool* found, bool value)
{
    if (found != nullptr) {
        *found = value;
    }
}

AString AString::strip_prefix(const AString& prefix, bool* found, ACompare mode) const
{
    const bool present = starts_with(prefix, mode);
    set_optional(found, present);
    return present ? drop_left(prefix.len) : *this;
}

AString AString::strip_suffix(const AString& suffix, bool* found, ACompare mode) const
{
    const bool present = ends_with(suffix, mode);
    set_optional(found, present);
    return present ? drop_right(suffix.len) : *this;
}

AString AString::compact_copy(std::uint64_t slack) const
{
    if (is_empty() || storage->total_len - len <= slack) {
        return *this;
    }
    AStringBuilder builder;
    builder.append(*this);
    return builder.finish();
}

static int order_of(AChar a, AChar b)
{
    return a < b ? -1 : static_cast<int>(a > b);
}

static int compare_exact(const AChar* a, const AChar* b, std::uint64_t count)
{
    if (std::memcmp(a, b, count * sizeof(AChar)) == 0) {
        return 0;
    }
    const auto [left, right] = std::mismatch(a, a + count, b);
    return order_of(*left, *right);
}

static int compare_folded(const AChar* a, const AChar* b, std::uint64_t count)
{
    for (const AChar* end = a + count; a != end; ++a, ++b) {
        if (const int order = order_of(to_lower(*a), to_lower(*b))) {
            return order;
        }
    }
    return 0;
}

int AString::compare(std::uint64_t pos, const AString& other, std::uint64_t other_pos,
                     std::uint64_t count, ACompare mode) const
{
    // Wanted without regard to the positions: the same view is equal to itself.
    if (is_same_view(other) || count == 0) {
        return 0;
    }
    if (count == rest) {
        count = std::max(len, other.len);
    }
    const auto compare_block = mode == ACompare::exact ? compare_exact : compare_folded;
    AStringRuns left(*this, pos);
    AStringRuns right(other, other_pos);
    while (!left.at_end() && !right.at_end()) {
        const std::uint64_t block = std::min({left.count, right.count, count});
        if (const int order = compare_block(left.data, right.data, block)) {
            return order;
        }
        count -= block;
        if (count == 0) {
            return 0;
        }
        left.skip(block);
        right.skip(block);
    }
    return static_cast<int>(!left.at_end()) - static_cast<int>(!right.at_end());
}

bool AString::starts_with(const AString& prefix, ACompare mode) const
{
    return compare(0, prefix, 0, prefix.len, mode) == 0;
}

bool AString::ends_with(const AString& suffix, ACompare mode) const
{
    return suffix.compare(0, right(suffix.len), 0, rest, mode) == 0;
}

bool AString::has_same_characters(const AString& other) const
{
    const AStringRuns left(*this);
    const AStringRuns right(other);
    if (left.count == len && right.count == len) {
        return std::memcmp(left.data, right.data, len * sizeof(AChar)) == 0;
    }
    return compare(0, other, 0, rest, ACompare::exact) == 0;
}

bool operator<(const AString& a, const AString& b)
{
    return a.compare(0, b, 0, AString::rest, ACompare::exact) < 0;
}

AString AString::concat(const AString& a, const AString& b)
{
    if (a.is_empty()) {
        return b;
    }
    if (b.is_empty()) {
        return a;
    }
    AStringBuilder builder;
    builder.append(a);
    builder.append(b);
    return builder.finish();
}

AString AString::repeat(std::uint64_t count) const
{
    if (is_empty() || count == 0) {
        return AString();
    }
    AStringBuilder builder;
    while (count != 0 && builder.append(*this)) {
        --count;
    }
    return builder.finish();
}

AString AString::join(const AStringList& list, const AString& separator)
{
    if (list.length() <= 1) {
        return list.length() == 0 ? AString() : *list.begin();
    }
    AStringBuilder builder;
    bool first = true;
    for (const AString& entry : list) {
        if (!first) {
            builder.append(separator);
        }
        first = false;
        builder.append(entry);
    }
    return builder.finish();
}

AString AString::pad(std::int64_t width, char fill) const
{
    // Unsigned, so that the magnitude of the lowest width is one too.
    const std::uint64_t bits = static_cast<std::uint64_t>(width);
    const std::uint64_t wanted = width < 0 ? 0 - bits : bits;
    if (wanted <= len) {
        return *this;
    }
    const AChar c = L1(static_cast<unsigned char>(fill));
    AStringBuilder builder;
    if (width > 0) {
        builder.append_fill(c, wanted - len);
    }
    builder.append(*this);
    if (width < 0) {
        builder.append_fill(c, wanted - len);
    }
    return builder.finish();
}
