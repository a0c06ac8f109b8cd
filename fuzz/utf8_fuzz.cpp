// UTF-8: a text is what its characters are one by one, and is the same when it has been encoded and
// decoded again.

#include "foundation/astring.h"
#include "fuzz/check.h"

#include <algorithm>
#include <vector>

namespace
{

struct Decoded {
    std::vector<AChar> characters;
    std::size_t consumed = 0;
};

// The shortest encoding of what a character was decoded from gives its bytes again.
void check_encoding(AChar c, const std::uint8_t* bytes, std::uint64_t count)
{
    unsigned char encoded[4];
    std::uint64_t written = 0;
    const bool has_encoding = utf8_encode(c, encoded, sizeof encoded, &written);
    FUZZ_CHECK(has_encoding == (c <= 0x10FFFF));
    FUZZ_CHECK(!has_encoding || written <= count);
    if (has_encoding && written == count) {
        FUZZ_CHECK(std::equal(encoded, encoded + written, bytes));
        FUZZ_CHECK(!utf8_encode(c, encoded, written - 1, nullptr));
    }
}

Decoded decode_one_by_one(const std::uint8_t* data, std::size_t size)
{
    Decoded all;
    all.characters.reserve(size + 1); // no null pointer for an empty text
    for (;;) {
        AChar c = 0;
        std::uint64_t consumed = 0;
        if (!utf8_decode(data + all.consumed, size - all.consumed, &c, consumed)) {
            FUZZ_CHECK(consumed == 0);
            return all;
        }
        FUZZ_CHECK(consumed >= 1 && consumed <= 4 && consumed <= size - all.consumed);
        check_encoding(c, data + all.consumed, consumed);
        all.characters.push_back(c);
        all.consumed += consumed;
    }
}

// What does not survive: a 0 ends a text, and what is above the last character is left out.
bool comes_back(AChar c)
{
    return c != 0 && c <= 0x10FFFF;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Decoded decoded = decode_one_by_one(data, size);
    const AString text = AString::from_utf8(data, size);
    FUZZ_CHECK(text.length() == decoded.characters.size());
    for (std::size_t i = 0; i < decoded.characters.size(); ++i) {
        FUZZ_CHECK(text.getchar(i, 0) == decoded.characters[i]);
    }
    FUZZ_CHECK(text == AString::from_chars(decoded.characters.data(), decoded.characters.size()));

    const std::string encoded = text.to_utf8();
    FUZZ_CHECK(encoded.size() <= decoded.consumed);
    if (std::all_of(decoded.characters.begin(), decoded.characters.end(), comes_back)) {
        FUZZ_CHECK(AString::from_utf8(encoded.data(), encoded.size()) == text);
    }
    return 0;
}
