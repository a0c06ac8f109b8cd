#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "sim/words.h"

namespace veltosim
{

// `text` in single quotes, fit for one line of a message: control characters become dots, and a
// long text is cut, at the border of a character.
std::string quote(std::string_view text);

// The same without quotes and without a limit, for the trace.
std::string on_one_line(std::string_view text);

// "off, loop or loopto"
std::string any_of(Words words);

bool is_utf8(std::string_view text);

// What clips, playlists and the server itself can be called.
inline constexpr std::size_t longest_name = 255;
inline constexpr std::string_view name_rule =
    "1 to 255 bytes of UTF-8 are allowed, without control characters";
bool is_name(std::string_view text);

} // namespace veltosim
