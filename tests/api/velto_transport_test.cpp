#include "support/command_script.h"
#include "support/transport_rows.h"

#include <set>

#include <gtest/gtest.h>

namespace
{

class Transport : public CommandScript
{
};

TEST_F(Transport, PlayAndStopSendTheseBytes)
{
    expect_bytes(play_and_stop_rows());
}

TEST_F(Transport, SeekSendsTheseBytes)
{
    expect_bytes(seek_rows());
}

TEST_F(Transport, LoadSendsTheseBytes)
{
    expect_bytes(load_rows());
}

TEST_F(Transport, PrecueSendsTheseBytes)
{
    expect_bytes(precue_rows());
}

TEST_F(Transport, LiveAndTakeSendTheseBytes)
{
    expect_bytes(live_and_take_rows());
}

TEST_F(Transport, EditAndMonitorSendTheseBytes)
{
    expect_bytes(edit_and_monitor_rows());
}

TEST_F(Transport, LoopAndOutPointSendTheseBytes)
{
    expect_bytes(loop_and_out_point_rows());
}

TEST_F(Transport, ListPlayOutSendsTheseBytes)
{
    expect_bytes(list_play_out_rows());
}

TEST(TransportRows, AreOfAllSixtyFiveCommands)
{
    std::set<std::string> functions;
    for (const WireRow& row : all_rows()) {
        functions.insert(row.function);
    }
    EXPECT_EQ(functions.size(), 65u);
}

// The source of each report in a row with one: a null text, or a number outside a table.
TEST(TransportRows, ReportWhereATextIsNullOrANumberIsOutside)
{
    const AssertWatch watch;
    velto_cmd_loadclip1(0, 0, nullptr); // the handle is unknown: nothing is converted
    EXPECT_EQ(watch.count(), 0u);

    const VeltoHandle handle =
        connection_registry().add_connection(ARef<VeltoConnObject>::create());
    velto_cmd_loadclip1(handle, 0, nullptr);
    EXPECT_EQ(watch.count("astring"), 1u);
    velto_take1(handle, 0, 5, 0);
    EXPECT_EQ(watch.count("typehelp"), 1u);
    velto_take2(handle, 0, 0, 0, 4);
    EXPECT_EQ(watch.count("typehelp"), 2u);
    EXPECT_EQ(watch.count(), 3u);
    velto_close(handle);
}

TEST_F(Transport, EveryCommandGivesTheServersMessage)
{
    expect_refusals(all_rows());
}

TEST_F(Transport, EveryCommandSucceedsAtOnceWhereCommandsDoNotWait)
{
    expect_no_wait(all_rows());
}

TEST(TransportWithoutHandle, EveryCommandGivesInvalidHandle)
{
    expect_invalid_handle(all_rows());
}

TEST(TransportWithoutLink, EveryCommandFailsAtOnce)
{
    expect_failure_without_link(all_rows());
}

TEST_F(Transport, ALossFailsEveryCommandThatWaits)
{
    auto play = calling([&] { return velto_cmd_play1(session.handle, 0); });
    auto load = calling([&] { return velto_cmd_loadclip1(session.handle, 1, VELTO_TEXT("a")); });
    session.link->expect_command();
    session.link->expect_command();
    session.link->reset();
    EXPECT_EQ(await(std::move(play)), link_failed);
    EXPECT_EQ(await(std::move(load)), link_failed);
}

// Eight threads on one connection, answered in the reverse order of their commands.
TEST_F(Transport, EachOfManyThreadsGetsItsOwnReply)
{
    constexpr std::uint32_t thread_count = 8;
    constexpr int rounds = 25;
    const auto channel_name = [](std::uint32_t channel) {
        return std::string(1, static_cast<char>('A' + channel));
    };
    const auto make_calls = [&](std::uint32_t channel) {
        for (int round = 0; round < rounds; ++round) {
            const Outcome expected =
                channel % 2 == 0 ? succeeded : Outcome{2, "refused on " + channel_name(channel)};
            EXPECT_EQ(outcome_of([&] { return velto_cmd_stop1(session.handle, channel); }),
                      expected);
        }
    };

    std::vector<std::future<void>> threads;
    for (std::uint32_t channel = 0; channel < thread_count; ++channel) {
        threads.push_back(in_thread([&, channel] { make_calls(channel); }));
    }
    for (int round = 0; round < rounds; ++round) {
        std::string replies;
        for (std::uint32_t i = 0; i < thread_count; ++i) {
            const ReceivedCommand command = session.link->expect("stop");
            const char channel = command.bytes[command.bytes.find("<Channel>") + 9];
            const std::string content =
                (channel - 'A') % 2 == 0 ? "<ok />"
                                         : error_content("refused on " + std::string(1, channel));
            replies = reply_message(command.xid, content) + replies;
        }
        session.link->send(replies);
    }
    for (std::future<void>& thread : threads) {
        await(std::move(thread));
    }
}

} // namespace
