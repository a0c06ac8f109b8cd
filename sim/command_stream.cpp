#include "sim/command_stream.h"

#include <algorithm>

#include <fmt/format.h>

#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

constexpr std::string_view opening = "<cmd>";
constexpr std::string_view closing = "</cmd>";
constexpr std::string_view white_space = " \t\r\n";

} // namespace

void CommandStream::feed(std::string_view block)
{
    buffer += block;
}

std::optional<std::string> CommandStream::next()
{
    if (searched == 0) {
        buffer.erase(0, std::min(buffer.find_first_not_of(white_space), buffer.size()));
    }
    const std::string_view held = buffer;
    if (!held.starts_with(opening.substr(0, held.size()))) {
        throw Junk(fmt::format("a command begins with <cmd>, and not with {}", quote(held)));
    }
    const std::size_t found = held.find(closing, searched);
    const std::size_t end = found == held.npos ? held.size() : found + closing.size();
    if (end > largest_command) {
        throw Junk(fmt::format("a command is longer than {} bytes", largest_command));
    }
    if (found == held.npos) {
        searched = held.size() < closing.size() ? 0 : held.size() - closing.size() + 1;
        return std::nullopt;
    }
    std::string command(held.substr(0, end));
    buffer.erase(0, end);
    searched = 0;
    return command;
}

} // namespace veltosim
