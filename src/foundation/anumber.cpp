#include "foundation/anumber.h"

#include "foundation/aassert.h"
#include "foundation/astring_runs.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace
{

bool take_character(AStringRuns& at, char c)
{
    const bool stands_there = !at.at_end() && at.current() == L1(static_cast<unsigned char>(c));
    if (stands_there) {
        at.skip(1);
    }
    return stands_there;
}

// Moves behind a leading `0x`; stays otherwise.
bool take_hex_prefix(AStringRuns& at)
{
    AStringRuns ahead = at;
    if (!take_character(ahead, '0') || !take_character(ahead, 'x')) {
        return false;
    }
    at = ahead;
    return true;
}

bool has_hex_prefix(const AString& text)
{
    AStringRuns at(text);
    return take_hex_prefix(at);
}

// Takes one leading sign off; true for `-`.
bool take_sign(AString& text)
{
    const AChar first = text.getchar(0, 0);
    if (first == L1('+') || first == L1('-')) {
        text = text.drop_left(1);
    }
    return first == L1('-');
}

// At least one digit, and nothing else up to the end.
template <typename ValueOf>
bool parse_digits(AStringRuns& run, ValueOf value_of, std::uint64_t& total)
{
    if (run.at_end()) {
        return false;
    }
    for (; !run.at_end(); run.next_run()) {
        for (std::uint64_t i = 0; i < run.count; ++i) {
            const int digit = value_of(run.data[i], -1);
            // Times 10 in base 16 too: 0x10 is 10. Servers and clients agree on it, so it stays.
            // An overflow that wraps to a larger total passes, and is meant to.
            const std::uint64_t next = total * 10 + static_cast<std::uint64_t>(digit);
            if (digit < 0 || next < total) {
                return false;
            }
            total = next;
        }
    }
    return true;
}

template <typename Narrow, typename Wide>
bool narrow(bool parsed, Wide wide, Narrow* value)
{
    if (!parsed || wide < std::numeric_limits<Narrow>::min() ||
        wide > std::numeric_limits<Narrow>::max()) {
        return false;
    }
    if (value != nullptr) {
        *value = static_cast<Narrow>(wide);
    }
    return true;
}

template <typename Narrow>
bool to_narrow_unsigned(const AString& text, Narrow* value)
{
    std::uint64_t wide = 0;
    const bool parsed = to_u64(text, &wide);
    return narrow(parsed, wide, value);
}

bool to_raw_fract16(const AString& text, fract16* value)
{
    std::uint32_t bits = 0;
    if (to_i32(text, value)) {
        return true;
    }
    if (!to_u32(text, &bits)) {
        return false;
    }
    if (value != nullptr) {
        *value = static_cast<fract16>(bits);
    }
    return true;
}

// The digits behind the point as 16 bits, cut off.
bool parse_fraction(const AString& digits, std::uint32_t& fraction)
{
    std::uint64_t fx = 0; // scaled by 2 to the power 60
    AStringPos at;
    const AStringStorage* storage = digits.storage.get();
    bool more = !digits.is_empty() && at.locate(storage, digits.start_offset + digits.len - 1);
    while (more) {
        const int digit = digit_value(at.current(), -1);
        if (!A_CHECK("anumber", digit >= 0)) {
            return false;
        }
        fx = ((static_cast<std::uint64_t>(digit) << 60) + fx) / 10;
        more = at.absolute_position > digits.start_offset && at.step_back(storage);
    }
    fraction = static_cast<std::uint32_t>(fx >> 44) & 0xFFFFu;
    return true;
}

bool parse_whole(const AString& digits, std::uint64_t largest, std::uint32_t& whole)
{
    std::uint64_t parsed = 0;
    if (!digits.is_empty() && !to_u64(digits, &parsed)) {
        return false;
    }
    whole = static_cast<std::uint32_t>(parsed);
    return parsed <= largest;
}

// Text of numbers in the making, on the stack.
class DigitBuffer
{
public:
    void put(char c) { text[used++] = c; }

    void put_number(std::uint64_t value, std::uint32_t min_digits = 1)
    {
        std::array<char, 20> digits;
        char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        for (auto count = end - digits.data(); count < min_digits; ++count) {
            put('0');
        }
        for (const char* digit = digits.data(); digit != end; ++digit) {
            put(*digit);
        }
    }

    void drop_trailing(char c)
    {
        while (used != 0 && text[used - 1] == c) {
            --used;
        }
    }

    AString finish() const { return AString(text.data(), used); }

private:
    std::array<char, 48> text;
    std::size_t used = 0;
};

} // namespace

bool to_u64(const AString& text, std::uint64_t* value)
{
    const ATrimmed digits(text);
    AStringRuns run(*digits);
    std::uint64_t total = 0;
    const bool good = take_hex_prefix(run) ? parse_digits(run, alnum_value, total)
                                           : parse_digits(run, digit_value, total);
    if (good && value != nullptr) {
        *value = total;
    }
    return good;
}

bool to_i64(const AString& text, std::int64_t* value)
{
    const ATrimmed trimmed(text);
    AString unsigned_part;
    const AChar sign = trimmed->getchar(0, 0);
    const bool negative = sign == L1('-');
    const AString* digits = &*trimmed;
    if (negative || sign == L1('+')) {
        unsigned_part = trimmed->drop_left(1);
        digits = &unsigned_part;
    }
    std::uint64_t magnitude = 0;
    if (!to_u64(*digits, &magnitude)) {
        return false;
    }
    const std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    if (magnitude > largest + (negative ? 1 : 0)) {
        return false;
    }
    if (value != nullptr) {
        *value = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
    }
    return true;
}

bool to_i32(const AString& text, std::int32_t* value)
{
    std::int64_t wide = 0;
    const bool parsed = to_i64(text, &wide);
    return narrow(parsed, wide, value);
}

bool to_u32(const AString& text, std::uint32_t* value)
{
    return to_narrow_unsigned(text, value);
}

bool to_u16(const AString& text, std::uint16_t* value)
{
    return to_narrow_unsigned(text, value);
}

bool to_u8(const AString& text, std::uint8_t* value)
{
    return to_narrow_unsigned(text, value);
}

bool to_fract16(const AString& text, fract16* value)
{
    AString number = text.trim();
    if (number.is_empty()) {
        return false;
    }
    // Wanted: without the X the text is the raw value, so `65536` is 1.0 and `1.5` is refused.
    if (number.last(0) != L1('X')) {
        return to_raw_fract16(number, value);
    }
    number = number.drop_right(1);
    const bool negative = take_sign(number);
    const std::int64_t point = number.find(L1('.'));
    const std::uint64_t whole_length =
        point < 0 ? number.length() : static_cast<std::uint64_t>(point);
    const AString whole_part = number.left(whole_length);
    const AString fraction_part = number.mid(whole_length + 1);
    if (has_hex_prefix(whole_part) || has_hex_prefix(fraction_part)) {
        return false;
    }
    std::uint32_t whole = 0;
    std::uint32_t fraction = 0;
    if (!parse_whole(whole_part, negative ? 32768 : 32767, whole) ||
        !parse_fraction(fraction_part, fraction)) {
        return false;
    }
    // Unsigned, so that what lies below -32768 wraps: -32768.5X is 32767.5.
    const std::uint32_t bits = (whole << 16) | fraction;
    if (value != nullptr) {
        *value = static_cast<fract16>(negative ? 0 - bits : bits);
    }
    return true;
}

AString from_u64(std::uint64_t value, std::int64_t width, char fill)
{
    DigitBuffer buffer;
    buffer.put_number(value);
    const AString digits = buffer.finish();
    return width == 0 ? digits : digits.pad(width, fill);
}

AString from_i64(std::int64_t value, std::int64_t width, char fill)
{
    const std::uint64_t bits = static_cast<std::uint64_t>(value);
    if (value >= 0) {
        return from_u64(bits, width, fill);
    }
    if (width == 0) {
        DigitBuffer buffer;
        buffer.put('-');
        buffer.put_number(0 - bits);
        return buffer.finish();
    }
    // The sign takes one place, and the fill stands behind it.
    return AString("-") + from_u64(0 - bits, width > 0 ? width - 1 : width + 1, fill);
}

AString from_fract16(fract16 value, std::uint32_t digits)
{
    const std::uint32_t bits = static_cast<std::uint32_t>(value);
    const std::uint32_t magnitude = value < 0 ? 0 - bits : bits;
    std::uint32_t frac = magnitude & 0xFFFFu;
    DigitBuffer buffer;
    if (digits == 0 || frac == 0) {
        if (value < 0) {
            buffer.put('-');
        }
        buffer.put_number((magnitude + 32768) >> 16);
        buffer.put('X');
        return buffer.finish();
    }
    // Sixteen digits hold every fraction exactly; further ones would be zeros, which are dropped.
    const std::uint32_t count = std::min<std::uint32_t>(digits, 16);
    std::uint64_t scaled = 0;
    std::uint64_t limit = 1;
    for (std::uint32_t i = 0; i < count; ++i) {
        frac *= 10;
        scaled = scaled * 10 + (frac >> 16);
        frac &= 0xFFFFu;
        limit *= 10;
    }
    if (frac * 10 >= 0x50000) {
        ++scaled;
    }
    std::uint32_t whole = magnitude >> 16;
    if (scaled >= limit) {
        ++whole;
        scaled %= limit;
    }
    if (value < 0 && (whole != 0 || scaled != 0)) {
        buffer.put('-');
    }
    buffer.put_number(whole);
    buffer.put('.');
    buffer.put_number(scaled, count);
    buffer.drop_trailing('0');
    buffer.drop_trailing('.');
    buffer.put('X');
    return buffer.finish();
}
