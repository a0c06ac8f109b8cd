#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace veltosim
{

// Cuts what a client sends into commands. They follow each other as `<cmd>...</cmd>` with nothing,
// or white space, between them; there is no other framing. Each byte is looked at once, however the
// blocks fall.
class CommandStream
{
public:
    // More than any command needs, and little enough to keep for each client.
    static constexpr std::size_t largest_command = 1024 * 1024;

    // Takes the next block. Ask for commands until there is none before offering another block: so
    // no more than one command and one block are ever kept.
    void feed(std::string_view block);

    // The next complete command, from `<cmd>` to `</cmd>`, or nothing as yet. Throws Junk when what
    // stands there can never become a command; the stream is then of no more use.
    std::optional<std::string> next();

private:
    std::string buffer;
    std::size_t searched = 0; // there is no end of a command before this
};

} // namespace veltosim
