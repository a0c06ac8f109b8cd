// What clients send to the simulator, in pieces, while its clock goes on and lines on its control
// input make things go wrong. All that it sends is short enough and good for the library to read.

#include "fuzz/check.h"
#include "fuzz/script.h"
#include "protocol/zavl3_api_parser2.h"
#include "sim/command_stream.h"
#include "sim/commands.h"
#include "sim/report_source.h"
#include "sim/scenario.h"

#include <variant>

namespace
{

using namespace veltosim;
using namespace std::chrono_literals;

class Client
{
public:
    Client()
    {
        station.clock = [] { return std::uint64_t{5000}; };
        load_channels(station, scenario().channels, now);
    }

    // False when the simulator drops this client.
    bool send(std::string_view piece)
    {
        stream.feed(piece);
        try {
            while (const auto command = stream.next()) {
                obey(*command);
            }
        } catch (const Junk&) {
            return false;
        }
        return true;
    }

    void wait(std::chrono::milliseconds time)
    {
        now += time;
        station.note_use(now);
        take_news();
        receive_all(registrations.channel_reports.news(source.at_field(now), station.standard));
    }

    void control(std::string_view line)
    {
        const std::string answer = obey_control(station.faults, line);
        FUZZ_CHECK(answer.starts_with("ok: ") || answer.starts_with("error: ") || line == "help");
    }

private:
    static const Scenario& scenario()
    {
        static const Scenario loaded = default_scenario();
        return loaded;
    }

    void obey(const std::string& command)
    {
        const std::vector<std::string> replies = answer(station, registrations, command, now);
        if (!replies.empty()) {
            receive_all(replies);
        }
        take_news();
        if (!registrations.channel_reports.empty()) {
            receive_all(
                registrations.channel_reports.news(source.after_command(now), station.standard));
        }
        now += 20ms;
    }

    void take_news()
    {
        for (const News& item : station.take_news()) {
            if (const auto* store_news = std::get_if<StoreNews>(&item)) {
                receive(store_news->message);
            } else {
                receive_metadata(std::get<MetadataNews>(item));
            }
        }
    }

    void receive_metadata(const MetadataNews& news)
    {
        for (const auto& [database, prefix] : registrations.metadata) {
            if (database == news.database()) {
                receive_all(news.reports(prefix));
            }
        }
    }

    void receive_all(const std::vector<std::string>& messages)
    {
        for (const std::string& message : messages) {
            receive(message);
        }
    }

    void receive(const std::string& message)
    {
        FUZZ_CHECK(message.size() <= largest_message);
        bool seen = false;
        const auto note = [](void* flag, XMLTree) { *static_cast<bool*>(flag) = true; };
        library.message_tap = AFunction<XMLTree>(note, &seen);
        library.feed_bytes(message.data(), message.size());
        FUZZ_CHECK(seen && library.message_ok);
        station.faults.message_sent(++sent);
    }

    Station station{"studio", *find_standard("1080_50i"), scenario().clips};
    Registrations registrations;
    ReportSource source{station, {50, 1}};
    CommandStream stream;
    TimePoint now{};
    std::uint64_t sent = 0;
    ZAVL3::APIParser2 library;
};

enum Action : std::uint8_t { wait_a_field, wait_a_minute, control, action_count };

void act(Client& client, fuzz::Script& script, std::uint8_t action)
{
    switch (action) {
    case wait_a_field:
        return client.wait(20ms);
    case wait_a_minute:
        return client.wait(60s);
    default:
        return client.control(script.take_line());
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Script script(fuzz::text_of(data, size), action_count);
    Client client;
    while (const auto step = script.next()) {
        if (step->action) {
            act(client, script, *step->action);
        } else if (!client.send(step->piece)) {
            return 0;
        }
    }
    return 0;
}
