#pragma once

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

} // namespace veltosim
