#include "sim/faults.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "sim/commands.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

// No client takes it for XML.
constexpr std::string_view usual_garbage = "<reply><xid>garbage</reply>";
constexpr std::string_view usual_refusal = "it is refused on purpose";

struct Misunderstood : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The first word, and what follows behind the blanks.
std::pair<std::string_view, std::string_view> split_word(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    const std::size_t end = std::min(text.find_first_of(blanks), text.size());
    std::string_view rest = text.substr(end);
    rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
    rest = rest.substr(0, rest.find_last_not_of(blanks) + 1);
    return {text.substr(0, end), rest};
}

std::uint64_t number(std::string_view text, std::uint64_t lowest, std::uint64_t highest)
{
    std::uint64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end || value < lowest || value > highest) {
        throw Misunderstood(
            fmt::format("{} is no number from {} to {}", quote(text), lowest, highest));
    }
    return value;
}

std::uint64_t count(std::string_view text)
{
    return number(text, 1, 1'000'000'000);
}

std::string command_name(std::string_view text)
{
    const auto known = commands();
    const bool found = std::any_of(known.begin(), known.end(),
                                   [&](const CommandRule& rule) { return rule.name == text; });
    if (!found) {
        throw Misunderstood(fmt::format("there is no command {}", quote(text)));
    }
    return std::string(text);
}

std::string or_usual(std::string_view text, std::string_view usual)
{
    return std::string(text.empty() ? usual : text);
}

template <class Function>
const Function& of_server(const Function& function)
{
    if (!function) {
        throw Misunderstood("there are no links yet");
    }
    return function;
}

// Lines. Each is given what stands behind its words, and says what it has done. ------------------

std::string refuse_command(Faults& faults, std::string_view arguments)
{
    const auto [word, text] = split_word(arguments);
    const std::string name = command_name(word);
    faults.refusals[name] = or_usual(text, usual_refusal);
    return fmt::format("{} is refused", name);
}

std::string allow_command(Faults& faults, std::string_view arguments)
{
    const std::string name = command_name(arguments);
    faults.refusals.erase(name);
    return fmt::format("{} is obeyed", name);
}

std::string delay_all(Faults& faults, std::string_view arguments)
{
    faults.delay = std::chrono::milliseconds(number(arguments, 0, 3'600'000));
    return fmt::format("all is sent {} ms late", faults.delay.count());
}

std::string split_writes(Faults& faults, std::string_view arguments)
{
    faults.piece = number(arguments, 0, 1'000'000);
    return faults.piece == 0
               ? "writes are whole"
               : fmt::format("writes are split into pieces of {} bytes", faults.piece);
}

std::string drop_after(Faults& faults, std::string_view arguments)
{
    faults.drop_after = count(arguments);
    return fmt::format("a link is dropped behind message {} from now", faults.drop_after);
}

std::string drop_every(Faults& faults, std::string_view arguments)
{
    faults.drop_every = count(arguments);
    return fmt::format("each link is dropped behind its message {}", faults.drop_every);
}

std::string drop_before_reply(Faults& faults, std::string_view arguments)
{
    faults.swallowed = arguments.empty() ? "" : command_name(arguments);
    return fmt::format("the link is dropped before the reply to {}",
                       arguments.empty() ? "the next command" : arguments);
}

std::string drop_now(Faults& faults, std::string_view)
{
    return fmt::format("{} links are dropped", of_server(faults.drop_links)());
}

std::string garbage_now(Faults& faults, std::string_view arguments)
{
    return fmt::format("{} links got garbage",
                       of_server(faults.send_to_links)(or_usual(arguments, usual_garbage)));
}

std::string garbage_after(Faults& faults, std::string_view arguments)
{
    const auto [word, text] = split_word(arguments);
    faults.garbage_after = count(word);
    faults.garbage = or_usual(text, usual_garbage);
    return fmt::format("a link gets garbage behind message {} from now", faults.garbage_after);
}

std::string clear_all(Faults& faults, std::string_view)
{
    faults.clear();
    return "nothing goes wrong any more";
}

std::string help(Faults&, std::string_view);

struct Control {
    std::string_view words;
    std::string_view arguments;
    std::string_view effect;
    std::string (*obey)(Faults& faults, std::string_view arguments);
    bool needs_arguments = true;
};

// Of two that begin with the same word the longer comes first.
constexpr std::array controls{
    Control{"refuse", "COMMAND [TEXT]", "refuse a command by its name", refuse_command},
    Control{"allow", "COMMAND", "obey it again", allow_command},
    Control{"delay", "MS", "send everything so much later; 0 ends it", delay_all},
    Control{"split", "BYTES", "write in pieces of so many bytes; 0 ends it", split_writes},
    Control{"drop after", "N", "drop the link behind the Nth message from now, of all links",
            drop_after},
    Control{"drop every", "N", "drop each link behind its Nth message", drop_every},
    Control{"drop before-reply", "[COMMAND]",
            "obey the next command, or the next of that name, and drop its link", drop_before_reply,
            false},
    Control{"drop now", "", "drop all links", drop_now, false},
    Control{"garbage after", "N [TEXT]", "send it behind the Nth message from now", garbage_after},
    Control{"garbage", "[TEXT]", "send all clients what is no message", garbage_now, false},
    Control{"clear", "", "let nothing go wrong any more", clear_all, false},
    Control{"help", "", "tell what there is", help, false},
};

std::string help(Faults&, std::string_view)
{
    std::string list;
    for (const Control& control : controls) {
        list += fmt::format("{}{}{}{}", list.empty() ? "" : ", ", control.words,
                            control.arguments.empty() ? "" : " ", control.arguments);
    }
    return list;
}

// What stands behind the words of the line, if it begins with them.
std::optional<std::string_view> arguments_of(std::string_view line, std::string_view words)
{
    while (!words.empty()) {
        const auto [wanted, more_words] = split_word(words);
        const auto [word, rest] = split_word(line);
        if (word != wanted) {
            return std::nullopt;
        }
        words = more_words;
        line = rest;
    }
    return line;
}

std::string obey(Faults& faults, std::string_view line)
{
    for (const Control& control : controls) {
        if (const auto arguments = arguments_of(line, control.words)) {
            if (control.needs_arguments && arguments->empty()) {
                throw Misunderstood(fmt::format("write {} {}", control.words, control.arguments));
            }
            if (control.arguments.empty() && !arguments->empty()) {
                throw Misunderstood(
                    fmt::format("{} stands behind {}", quote(*arguments), control.words));
            }
            return control.obey(faults, *arguments);
        }
    }
    throw Misunderstood(
        fmt::format("{} is not understood; there are: {}", quote(line), help(faults, "")));
}

// Whether this message is the one that was counted down to.
bool counts_down(std::uint64_t& left)
{
    return left != 0 && --left == 0;
}

} // namespace

const std::string* Faults::refusal(std::string_view command) const
{
    const auto found = refusals.find(command);
    return found == refusals.end() ? nullptr : &found->second;
}

bool Faults::swallows_reply(std::string_view command)
{
    const bool swallows = swallowed && (swallowed->empty() || *swallowed == command);
    if (swallows) {
        swallowed.reset();
    }
    return swallows;
}

Faults::Aftermath Faults::message_sent(std::uint64_t of_link)
{
    Aftermath aftermath;
    if (counts_down(garbage_after)) {
        aftermath.garbage = garbage;
    }
    aftermath.drop = counts_down(drop_after) || (drop_every != 0 && of_link >= drop_every);
    return aftermath;
}

void Faults::clear()
{
    Faults none;
    none.drop_links = std::move(drop_links);
    none.send_to_links = std::move(send_to_links);
    *this = std::move(none);
}

std::string obey_control(Faults& faults, std::string_view line)
{
    try {
        return "ok: " + on_one_line(obey(faults, line));
    } catch (const Misunderstood& problem) {
        return fmt::format("error: {}", problem.what());
    }
}

std::string control_help()
{
    std::string text;
    for (const Control& control : controls) {
        text += fmt::format("  {:<34} {}\n", fmt::format("{} {}", control.words, control.arguments),
                            control.effect);
    }
    return text;
}

} // namespace veltosim
