#include "sim/options.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string_view>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "sim/faults.h"
#include "sim/scenario.h"
#include "sim/scenario_schema.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

constexpr const char* description =
    "veltosim - a video server of 12 channels, A to L, to try clients on.\n"
    "It listens on TCP port 8913, keeps what each channel holds and how it moves, obeys the\n"
    "transport commands, refuses with a reason what it cannot do, and reports to each client what\n"
    "it has registered. Stop it with Ctrl-C: it then prints its channels. Its first line of\n"
    "output, 'listening on <address>:8913', tells that clients can connect.\n";

std::string footer()
{
    const Scenario scenario = default_scenario();
    std::string loaded;
    for (const ChannelLoad& load : scenario.channels) {
        loaded += fmt::format("{}{}", loaded.empty() ? "" : ", ", channel_words[load.channel]);
    }
    return "\nThere from the start, without --scenario\n" + scenario.clips.summary() +
           fmt::format("Loaded channels: {}\n", loaded) +
           "\nThe store\n"
           "  What stands before the last slash of a clip's name is its directory. A directory is\n"
           "  there while something is in it, and for ever if a client made it. A clip that is "
           "read\n"
           "  only is neither changed, renamed nor deleted; with read_only_meta its attributes "
           "and\n"
           "  name stay, with read_only_content what was recorded. A clip with children is "
           "deleted\n"
           "  after them. Stamps are milliseconds since 1970. Outside of a modification each edit\n"
           "  of a virtual clip counts at once, inside of one all count at its end.\n"
           "\nControl\n"
           "  Each line on standard input makes something go wrong, and is answered by one line "
           "on\n"
           "  standard output that begins with 'ok:' or 'error:'. The end of the input ends "
           "nothing.\n"
           "  Messages are counted as they are sent, replies and reports.\n" +
           control_help() +
           "\nExamples\n"
           "  veltosim                                   a server at 127.0.0.1\n"
           "  veltosim --address 127.0.0.2 --name second another one beside it\n"
           "  veltosim --standard 1080_59_94i --clip race:18000:4 --trace\n"
           "  veltosim --print-scenario > mine.json      a file to begin one of your own from\n"
           "  veltosim --scenario mine.json --report-rate 10\n"
           "  veltosim --fault 'refuse stop' --fault 'delay 200'\n"
           "  veltosim --store studio.db                 what clients change outlives the server\n"
           "\nExit codes\n"
           "  0 stopped by a signal, 2 bad option, 3 address in use, 4 other network failure,\n"
           "  5 bad scenario, 6 the store cannot be used\n";
}

[[noreturn]] void fail(const std::string& text)
{
    throw std::invalid_argument(text);
}

asio::ip::address_v4 to_address(const std::string& text)
{
    std::error_code error;
    const auto address = asio::ip::make_address_v4(text, error);
    if (error) {
        fail(fmt::format("--address: {} is no IPv4 address; one such as 127.0.0.1 is allowed",
                         quote(text)));
    }
    return address;
}

const Standard* to_standard(const std::string& text)
{
    const Standard* standard = find_standard(text);
    if (!standard) {
        std::vector<std::string_view> names;
        for (const Standard& known : standards()) {
            names.push_back(known.name);
        }
        fail(fmt::format("--standard: {} is no video standard; allowed is {}", quote(text),
                         any_of(names)));
    }
    return standard;
}

std::string to_name(std::string_view option, std::string_view text)
{
    if (!is_name(text)) {
        fail(fmt::format("{}: {} is no name; {}", option, quote(text), name_rule));
    }
    return std::string(text);
}

std::uint32_t to_count(std::string_view clip, std::string_view what, std::string_view text,
                       std::uint32_t highest)
{
    std::uint32_t count = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, count);
    if (error != std::errc{} || stop != end || count == 0 || count > highest) {
        fail(fmt::format("--clip: the {} of {} cannot be {}; 1 to {} are allowed", what,
                         quote(clip), quote(text), highest));
    }
    return count;
}

Clip to_clip(std::string_view text)
{
    const auto first = text.find(':');
    if (first == text.npos) {
        fail(fmt::format("--clip: {} has no length; write NAME:LENGTH or NAME:LENGTH:ANGLES, the "
                         "length in fields",
                         quote(text)));
    }
    const auto second = std::min(text.find(':', first + 1), text.size());
    Clip clip;
    clip.name = to_name("--clip", text.substr(0, first));
    clip.length = to_count(clip.name, "length", text.substr(first + 1, second - first - 1),
                           std::numeric_limits<std::uint32_t>::max());
    if (second < text.size()) {
        clip.angles = static_cast<std::uint8_t>(
            to_count(clip.name, "number of angles", text.substr(second + 1), 255));
    }
    return clip;
}

std::vector<Clip> to_clips(const std::vector<std::string>& texts)
{
    std::vector<Clip> clips;
    std::set<std::string> names;
    for (const std::string& text : texts) {
        clips.push_back(to_clip(text));
        if (!names.insert(clips.back().name).second) {
            fail(fmt::format("--clip: {} is given twice", quote(clips.back().name)));
        }
    }
    return clips;
}

std::optional<FieldRate> to_report_rate(const std::optional<std::uint32_t>& hertz)
{
    constexpr std::uint32_t highest = 1000;
    if (hertz && (*hertz == 0 || *hertz > highest)) {
        fail(fmt::format("--report-rate: {} is no rate; 1 to {} are allowed", *hertz, highest));
    }
    return hertz ? std::optional(FieldRate{*hertz, 1}) : std::nullopt;
}

std::vector<std::string> to_faults(const std::vector<std::string>& lines)
{
    Faults trial;
    for (const std::string& line : lines) {
        const std::string answer = obey_control(trial, line);
        if (!answer.starts_with("ok: ")) {
            fail(fmt::format("--fault: {}", answer));
        }
    }
    return lines;
}

// The command line as it was written.
struct Written {
    std::string address = "127.0.0.1";
    std::string standard = "1080_50i";
    std::string name = "veltosim";
    std::string scenario;
    std::string store;
    bool print_scenario = false;
    bool print_schema = false;
    std::vector<std::string> clips;
    std::optional<std::uint32_t> report_rate;
    std::vector<std::string> faults;
    bool trace = false;
};

void declare(CLI::App& app, Written& written)
{
    app.footer(footer());
    app.set_version_flag("--version", "veltosim " VELTOSIM_VERSION);
    app.add_option("--address", written.address, "IPv4 address to listen on, port 8913")
        ->capture_default_str();
    app.add_option("--standard", written.standard,
                   "Video standard, which sets how fast positions run: 4K_60p to 525_59_94i")
        ->capture_default_str();
    app.add_option("--name", written.name, "Computer name that clients are told")
        ->capture_default_str();
    app.add_option("--scenario", written.scenario,
                   "JSON file of clips, directories, virtual clips, playlists and what the\n"
                   "channels hold");
    app.add_option(
        "--store", written.store,
        "File to keep the store in, made if it is not there; otherwise it is kept in\n"
        "memory. A change is in the file before its reply goes out. Scenario and --clip\n"
        "fill only a new file; from one that is there only the scenario's channels are\n"
        "loaded, as far as their clips still exist");
    app.add_flag("--print-scenario", written.print_scenario,
                 "Print the scenario that is built in, and end");
    app.add_flag("--print-schema", written.print_schema,
                 "Print the JSON schema of scenarios, and end");
    app.add_option("--report-rate", written.report_rate,
                   "Position reports a second of a moving channel, if less than one a field");
    app.add_option("--clip", written.clips,
                   "One more clip, NAME:LENGTH[:ANGLES], the length in fields; repeatable")
        ->allow_extra_args(false)
        ->take_all();
    app.add_option("--fault", written.faults,
                   "A line of control to begin with, such as 'refuse stop'; repeatable")
        ->allow_extra_args(false)
        ->take_all();
    app.add_flag("--trace", written.trace,
                 "Log each message on standard error, with time, client and direction");
}

Options to_options(const Written& written)
{
    return {to_address(written.address),
            to_standard(written.standard),
            to_name("--name", written.name),
            written.scenario,
            written.store,
            to_clips(written.clips),
            to_report_rate(written.report_rate),
            to_faults(written.faults),
            written.trace};
}

} // namespace

std::optional<Options> read_options(int argc, const char* const* argv, std::ostream& out,
                                    std::ostream& err, int& exit_code)
{
    CLI::App app(description, "veltosim");
    Written written;
    declare(app, written);
    try {
        app.parse(argc, argv);
        if (written.print_scenario || written.print_schema) {
            out << (written.print_scenario ? default_scenario_text() : scenario_schema());
            exit_code = exit_ok;
            return std::nullopt;
        }
        return to_options(written);
    } catch (const CLI::ParseError& problem) {
        exit_code = app.exit(problem, out, err) == 0 ? exit_ok : exit_bad_option;
    } catch (const std::invalid_argument& problem) {
        err << "veltosim: " << problem.what() << '\n';
        exit_code = exit_bad_option;
    }
    return std::nullopt;
}

} // namespace veltosim
