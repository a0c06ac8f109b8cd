#include "sim/text.h"

#include <algorithm>

#include <fmt/format.h>
#include <pugixml.hpp>

namespace veltosim
{

namespace
{

constexpr std::size_t longest_quote = 64;

std::string_view cut(std::string_view text, std::size_t bytes)
{
    if (text.size() <= bytes) {
        return text;
    }
    while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0) == 0x80) {
        --bytes;
    }
    return text.substr(0, bytes);
}

} // namespace

std::string on_one_line(std::string_view text)
{
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '.');
    return line;
}

std::string quote(std::string_view text)
{
    const std::string_view shown = cut(text, longest_quote);
    return fmt::format("'{}{}'", on_one_line(shown), shown.size() < text.size() ? "..." : "");
}

std::string any_of(Words words)
{
    std::string list;
    for (std::size_t i = 0; i < words.size(); ++i) {
        list += i == 0 ? "" : i + 1 == words.size() ? " or " : ", ";
        list += words[i];
    }
    return list;
}

bool is_utf8(std::string_view text)
{
    // The decoder drops what is no UTF-8, so that only sound text comes back as it was.
    const std::string whole(text);
    return pugi::as_utf8(pugi::as_wide(whole)) == whole;
}

bool is_name(std::string_view text)
{
    return !text.empty() && text.size() <= longest_name && is_utf8(text) &&
           on_one_line(text) == text;
}

} // namespace veltosim
