#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace veltosim
{

// What goes wrong on purpose. Nothing does until it is told to.
//
// Messages are counted as they are sent, replies and reports, on all links together.
class Faults
{
public:
    // What happens behind a message.
    struct Aftermath {
        std::optional<std::string> garbage; // is sent
        bool drop = false;                  // the link, when it is out
    };

    // Why the command is refused, if it is.
    const std::string* refusal(std::string_view command) const;
    // Whether the link is to be dropped in place of the command's reply. It is, once.
    bool swallows_reply(std::string_view command);
    // A message has been sent on a link that has sent `of_link` of them.
    Aftermath message_sent(std::uint64_t of_link);

    std::chrono::milliseconds delay{0}; // of all that is sent
    std::size_t piece = 0;              // bytes written at once; 0: as many as there are

    std::map<std::string, std::string, std::less<>> refusals; // text by command
    std::optional<std::string> swallowed;                     // a command's name; empty: the next
    std::uint64_t drop_after = 0;                             // messages still to come; 0: never
    std::uint64_t drop_every = 0;                             // messages of one link; 0: never
    std::uint64_t garbage_after = 0;
    std::string garbage; // to be sent then

    // What is done to the links at once. Not set while there is no server.
    std::function<std::size_t()> drop_links;
    std::function<std::size_t(const std::string& text)> send_to_links;

    // Nothing goes wrong any more.
    void clear();
};

// Obeys one line such as "delay 200", and says in one line what was done: "ok: ..." or
// "error: ...". A line "help" tells which lines there are.
std::string obey_control(Faults& faults, std::string_view line);

// The lines that are understood, each with what it does.
std::string control_help();

} // namespace veltosim
