// UTF-16: there is one way to write each text, so what is decoded is encoded to the same units.

#include "foundation/astring.h"
#include "fuzz/check.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace
{

std::u16string units_of(const std::uint8_t* data, std::size_t size)
{
    std::u16string units(size / sizeof(char16_t), u'\0');
    std::memcpy(units.data(), data, units.size() * sizeof(char16_t));
    return units;
}

// The units up to the first that are no character.
std::u16string decode_one_by_one(const std::u16string& units, std::vector<AChar>& characters)
{
    std::size_t done = 0;
    for (;;) {
        AChar c = 0;
        std::uint64_t consumed = 0;
        if (!utf16_decode(units.data() + done, units.size() - done, &c, &consumed)) {
            FUZZ_CHECK(consumed == 0);
            return units.substr(0, done);
        }
        char16_t encoded[2];
        std::uint64_t written = 0;
        FUZZ_CHECK(utf16_encode(c, encoded, 2, &written) && written == consumed);
        FUZZ_CHECK(std::equal(encoded, encoded + written, units.data() + done));
        FUZZ_CHECK(!utf16_encode(c, encoded, consumed - 1, nullptr));
        characters.push_back(c);
        done += consumed;
    }
}

// A buffer of any size holds the beginning of the text, whole characters and a 0.
void check_cut(const AString& text, const std::u16string& units, std::size_t room)
{
    constexpr char16_t guard = 0x7E7E;
    std::vector<char16_t> buffer(room + 1, guard);
    text.to_utf16z(buffer.data(), room);
    FUZZ_CHECK(buffer[room] == guard);
    if (room == 0) {
        return;
    }
    const auto end = std::find(buffer.begin(), buffer.end() - 1, u'\0');
    const std::size_t length = static_cast<std::size_t>(end - buffer.begin());
    FUZZ_CHECK(length < room);
    FUZZ_CHECK(units.starts_with(std::u16string_view(buffer.data(), length)));
    FUZZ_CHECK(length == units.size() || length + 2 >= room); // it is cut no shorter than it must
    FUZZ_CHECK(AString(buffer.data(), length).to_wide().size() == length);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::u16string input = units_of(data, size);
    std::vector<AChar> characters;
    characters.reserve(input.size() + 1); // no null pointer for an empty text
    const std::u16string units = decode_one_by_one(input, characters);
    const AString text = AString::from_utf16(input.data(), input.size());
    FUZZ_CHECK(text == AString::from_chars(characters.data(), characters.size()));
    FUZZ_CHECK(text == AString(units));
    FUZZ_CHECK(text == AString(units.c_str()));
    FUZZ_CHECK(text.to_wide() == units);

    const std::string utf8 = text.to_utf8();
    FUZZ_CHECK(AString::from_utf8(utf8.data(), utf8.size()) == text);
    for (const std::size_t room : {std::size_t{0}, std::size_t{1}, std::size_t{2}, units.size() / 2,
                                   units.size(), units.size() + 1, units.size() + 9}) {
        check_cut(text, units, room);
    }
    return 0;
}
