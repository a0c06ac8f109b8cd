#pragma once

#include "foundation/astring.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

// The reference that strings are compared with: the same text as plain characters.
namespace model
{

using Text = std::u32string;

inline const std::vector<std::size_t> lengths = {0, 1, 2, 255, 256, 257, 512, 513, 1000};

inline AString string_of(const Text& text)
{
    const std::vector<AChar> characters(text.begin(), text.end());
    return characters.empty() ? AString() : AString::from_chars(characters.data(), text.size());
}

// The same text as a view in the midst of a longer storage.
inline AString view_of(const Text& text, std::size_t before, std::size_t behind)
{
    return string_of(Text(before, U'<') + text + Text(behind, U'>')).mid(before, text.size());
}

inline Text text_of(const AString& string)
{
    Text text;
    const auto add = [](void* to, const AChar* characters, std::uint64_t count) {
        static_cast<Text*>(to)->append(characters, characters + count);
    };
    string.for_each_run(AString::RunDelegate(add, &text));
    return text;
}

inline std::vector<Text> texts_of(const AStringList& list)
{
    std::vector<Text> texts;
    for (const AString& entry : list) {
        texts.push_back(text_of(entry));
    }
    return texts;
}

// The same numbers on every system.
class Random
{
public:
    explicit Random(std::uint32_t seed) : engine(seed) {}

    std::size_t below(std::size_t limit) { return engine() % limit; }

    Text text(std::size_t length, const Text& alphabet)
    {
        Text result;
        while (result.size() < length) {
            result += alphabet[below(alphabet.size())];
        }
        return result;
    }

    // The text as a string that starts anywhere in its storage.
    AString view(const Text& content) { return view_of(content, below(600), below(600)); }

private:
    std::mt19937 engine;
};

} // namespace model
