#include "foundation/aassert.h"
#include "foundation/astring.h"
#include "foundation/astring_runs.h"
#include "foundation/utf8_text.h"

#include <algorithm>

namespace
{

// Hands `take (pointer, count)` the UTF-8 form of a run, in blocks of at most 128 bytes.
template <typename Take>
void encode_run(const AChar* data, std::uint64_t count, Take take)
{
    std::array<unsigned char, 128> block;
    std::uint64_t used = 0;
    for (const AChar* end = data + count; data != end; ++data) {
        if (block.size() - used < 4) {
            take(block.data(), used);
            used = 0;
        }
        if (*data < 128) {
            block[used++] = static_cast<unsigned char>(*data);
            continue;
        }
        std::uint64_t written = 0;
        utf8_encode(*data, block.data() + used, block.size() - used, &written);
        used += written;
    }
    if (used != 0) {
        take(block.data(), used);
    }
}

} // namespace

AString AString::from_utf8(const void* bytes, std::uint64_t count)
{
    if (!A_CHECK("astring", bytes != nullptr) || count == 0) {
        return AString();
    }
    AStringBuilder builder;
    decode_utf8(
        static_cast<const unsigned char*>(bytes), count,
        [&builder](const unsigned char* run, std::uint64_t length) {
            builder.append(reinterpret_cast<const char*>(run), length);
        },
        [&builder](AChar c) { builder.append(c); });
    return builder.finish();
}

AString AString::from_utf16(const char16_t* units, std::uint64_t count)
{
    if (!A_CHECK("astring", units != nullptr) || count == 0) {
        return AString();
    }
    AStringBuilder builder;
    AChar c = 0;
    std::uint64_t consumed = 0;
    while (utf16_decode(units, count, &c, &consumed)) {
        builder.append(c);
        units += consumed;
        count -= consumed;
    }
    return builder.finish();
}

void AString::to_utf16(char16_t* buf, std::uint64_t count, std::uint64_t* actual,
                       bool zero_fill) const
{
    std::uint64_t used = 0;
    bool fits = A_CHECK("astring", buf != nullptr || count == 0);
    const std::uint64_t room = fits ? count : 0;
    for (AStringRuns run(*this); fits && !run.at_end(); run.next_run()) {
        for (std::uint64_t i = 0; fits && i < run.count; ++i) {
            std::uint64_t written = 0;
            fits = utf16_encode(run.data[i], buf + used, room - used, &written);
            used += written;
        }
    }
    if (actual != nullptr) {
        *actual = used;
    }
    if (zero_fill) {
        std::fill_n(buf + used, room - used, u'\0');
    }
}

void AString::to_utf16z(char16_t* buf, std::uint64_t count) const
{
    if (count == 0 || !A_CHECK("astring", buf != nullptr)) {
        return;
    }
    std::uint64_t actual = 0;
    to_utf16(buf, count - 1, &actual);
    buf[actual] = 0;
}

std::u16string AString::to_wide() const
{
    std::u16string text;
    std::array<char16_t, 64> block;
    std::uint64_t used = 0;
    bool encoded = true;
    for (AStringRuns run(*this); encoded && !run.at_end(); run.next_run()) {
        for (std::uint64_t i = 0; encoded && i < run.count; ++i) {
            if (block.size() - used < 2) {
                text.append(block.data(), used);
                used = 0;
            }
            std::uint64_t written = 0;
            encoded = utf16_encode(run.data[i], block.data() + used, block.size() - used, &written);
            used += written;
        }
    }
    text.append(block.data(), used);
    return text;
}

std::string AString::to_utf8() const
{
    std::string text;
    for (AStringRuns run(*this); !run.at_end(); run.next_run()) {
        encode_run(run.data, run.count, [&text](const unsigned char* bytes, std::uint64_t count) {
            text.append(reinterpret_cast<const char*>(bytes), count);
        });
    }
    return text;
}

void AString::for_each_run(const RunDelegate& delegate) const
{
    for (AStringRuns run(*this); !run.at_end(); run.next_run()) {
        delegate(run.data, run.count);
    }
}

void AString::for_each_utf8(const BytesDelegate& delegate) const
{
    for (AStringRuns run(*this); !run.at_end(); run.next_run()) {
        encode_run(run.data, run.count, delegate);
    }
}
