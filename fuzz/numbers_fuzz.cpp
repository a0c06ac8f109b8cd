// Numbers: the parsers agree with each other, touch nothing when they refuse, and read what was
// written.

#include "foundation/anumber.h"
#include "fuzz/check.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

namespace
{

template <typename T>
std::optional<T> parse(bool (*parser)(const AString&, T*), const AString& text)
{
    constexpr auto untouched = static_cast<T>(0x5A);
    T value = untouched;
    const bool parsed = parser(text, &value);
    FUZZ_CHECK(parsed || value == untouched);
    FUZZ_CHECK(parser(text, nullptr) == parsed);
    return parsed ? std::optional(value) : std::nullopt;
}

// A narrow parser takes what the wide one takes and fits.
template <typename Narrow, typename Wide>
void check_narrow(bool (*parser)(const AString&, Narrow*), const AString& text,
                  const std::optional<Wide>& wide)
{
    const bool fits = wide && *wide >= Wide{std::numeric_limits<Narrow>::min()} &&
                      *wide <= Wide{std::numeric_limits<Narrow>::max()};
    const std::optional<Narrow> narrow = parse(parser, text);
    FUZZ_CHECK(narrow.has_value() == fits);
    FUZZ_CHECK(!fits || Wide{*narrow} == *wide);
}

void check_parsers(const AString& text)
{
    const std::optional<std::uint64_t> u64 = parse(&to_u64, text);
    const std::optional<std::int64_t> i64 = parse(&to_i64, text);
    check_narrow(&to_u32, text, u64);
    check_narrow(&to_u16, text, u64);
    check_narrow(&to_u8, text, u64);
    check_narrow(&to_i32, text, i64);
    if (u64) {
        const bool fits = *u64 <= std::uint64_t{std::numeric_limits<std::int64_t>::max()};
        FUZZ_CHECK(i64.has_value() == fits);
        FUZZ_CHECK(!fits || static_cast<std::uint64_t>(*i64) == *u64);
        FUZZ_CHECK(parse(&to_u64, from_u64(*u64)) == u64);
    }
    if (i64) {
        FUZZ_CHECK(parse(&to_i64, from_i64(*i64)) == i64);
    }
}

void check_fixed(fract16 value)
{
    constexpr std::uint32_t wire_digits = 15;
    FUZZ_CHECK(parse(&to_fract16, from_fract16(value, wire_digits)) == value);
    for (const std::uint32_t digits : {0u, 1u, 5u, 19u, 20u, 21u, 0xFFFFFFFFu}) {
        const AString text = from_fract16(value, digits);
        FUZZ_CHECK(text.last(0) == L1('X'));
        FUZZ_CHECK(text.length() <= 1 + 5 + 1 + 20 + 1);
    }
    FUZZ_CHECK(parse(&to_fract16, from_i64(value)) == value); // a raw number
}

void check_padding(std::int64_t number, std::int8_t width)
{
    const AString bare = from_i64(number);
    const AString padded = from_i64(number, width, '0');
    const auto room = static_cast<std::uint64_t>(std::abs(int{width}));
    FUZZ_CHECK(padded.length() == std::max(bare.length(), room));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const AString text = AString::from_utf8(data, size);
    check_parsers(text);
    if (const auto fixed = parse(&to_fract16, text)) {
        check_fixed(*fixed);
    }
    std::int64_t number = 0;
    std::memcpy(&number, data, std::min(size, sizeof number));
    check_fixed(static_cast<fract16>(number));
    check_padding(number, static_cast<std::int8_t>(size));
    FUZZ_CHECK(parse(&to_i64, from_i64(number)) == number);
    return 0;
}
