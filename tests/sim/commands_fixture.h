#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "sim/commands.h"
#include "sim/scenario.h"

namespace veltosim
{

using namespace std::chrono_literals;

inline constexpr TimePoint start{};

// A client of a station whose clocks are the test's.
class CommandsTest : public testing::Test
{
protected:
    CommandsTest() : CommandsTest(default_scenario().clips) {}
    explicit CommandsTest(ClipStore store)
        : station("studio", *find_standard("1080_50i"), std::move(store))
    {
        station.clock = [this] { return milliseconds; };
    }

    Station station;
    Registrations registrations;
    std::uint64_t milliseconds = 5000; // since 1970

    // The contents of the replies to `content` sent as a command, without what frames each.
    std::vector<std::string> answers_to(const std::string& content,
                                        std::chrono::nanoseconds time = 0s)
    {
        const std::string command = "<cmd>\r\n<xid>7</xid>\r\n" + content + "\r\n</cmd>";
        auto messages = answer(station, registrations, command, start + time);
        const std::string head = "<reply><xid>7</xid>";
        const std::string tail = "</reply>";
        for (std::string& message : messages) {
            EXPECT_EQ(message.substr(0, head.size()), head);
            EXPECT_EQ(message.substr(message.size() - tail.size()), tail);
            EXPECT_LE(message.size(), largest_message);
            message = message.substr(head.size(), message.size() - head.size() - tail.size());
        }
        return messages;
    }
    // The same of a command with one reply.
    std::string answer_to(const std::string& content, std::chrono::nanoseconds time = 0s)
    {
        const auto messages = answers_to(content, time);
        EXPECT_EQ(messages.size(), 1u);
        return messages.front();
    }
    void obey(const std::string& content, std::chrono::nanoseconds time = 0s)
    {
        EXPECT_EQ(answer_to(content, time), "<ok/>") << content;
    }
    ChannelView view(char letter, std::chrono::nanoseconds time = 0s) const
    {
        return station.channels.at(static_cast<std::size_t>(letter - 'A')).view(start + time);
    }
    // The reports since the last call, in their order: all about clips and directories, and what
    // this client's watches see of the metadata.
    std::vector<std::string> told()
    {
        std::vector<std::string> reports;
        for (const News& item : station.take_news()) {
            if (const auto* store_news = std::get_if<StoreNews>(&item)) {
                reports.push_back(store_news->message);
                continue;
            }
            const auto& news = std::get<MetadataNews>(item);
            for (const auto& [database, prefix] : registrations.metadata) {
                if (database == news.database()) {
                    const auto& more = news.reports(prefix);
                    reports.insert(reports.end(), more.begin(), more.end());
                }
            }
        }
        return reports;
    }
};

inline std::string error(const std::string& text, const std::string& code = "general")
{
    return "<error><ErrorMessage>studio: " + text + "</ErrorMessage><ErrorCode>" + code +
           "</ErrorCode></error>";
}

} // namespace veltosim
