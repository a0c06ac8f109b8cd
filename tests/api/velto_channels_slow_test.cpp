#include "support/channel_list.h"
#include "support/channel_script.h"

#include <gtest/gtest.h>

// First reads for which no report comes in time. The wait is of 5 to 6 seconds, so that all scripts
// run at the same time, before the first test, and the tests look at what became of them.
namespace
{

// How far the clock by which the wait goes has advanced, in its whole seconds.
struct TimedReading {
    ChannelReading reading;
    std::int64_t seconds;
};

std::future<TimedReading> timed(ReadChannel read, VeltoHandle handle, std::uint32_t channel)
{
    return in_thread([=] {
        const std::int64_t start = platform::unix_time_seconds();
        const ChannelReading reading = read(handle, channel);
        return TimedReading{reading, platform::unix_time_seconds() - start};
    });
}

void expect_time_out(const ChannelGetter& getter, const TimedReading& timed)
{
    SCOPED_TRACE(getter.name);
    EXPECT_EQ(timed.reading, getter.failed());
    EXPECT_GT(timed.seconds, 5); // which takes more than 5 seconds
}

// Registrations are accepted, and no report follows.
std::vector<TimedReading> play_silent_server()
{
    Session session;
    std::vector<std::future<TimedReading>> waiting;
    for (const ChannelGetter& getter : channel_getters) {
        waiting.push_back(timed(getter.read, session.handle, 6));
        session.link->reply_ok(expect_registration(session, 'G', getter.item));
    }
    // These are of other channels, or of other items.
    session.link->send(status_report('H', "play") + status_report('I', "play") +
                       channel_report("channel_aux_audio_speed", 'G', "<Speed>1X</Speed>"));
    std::vector<TimedReading> readings;
    for (auto& future : waiting) {
        readings.push_back(await(std::move(future)));
    }
    return readings;
}

struct LateReport {
    TimedReading in_vain;
    ChannelReading refused;
    ChannelReading with_reply;
    ChannelReading local;
};

// The report comes when the getter has given up. The item is not registered for that, but the next
// read need not wait for a report.
LateReport play_late_report()
{
    Session session;
    LateReport seen;
    auto in_vain = timed(&read_speed, session.handle, 0);
    session.link->reply_ok(expect_registration(session, 'A', "speed"));
    seen.in_vain = await(std::move(in_vain));

    auto refused = reading(&read_speed, session.handle, 0); // tries again
    session.link->reply_error(expect_registration(session, 'A', "speed"), "refused");
    seen.refused = await(std::move(refused));

    session.link->send(speed_report('A', "2X"));
    session.settle();
    auto with_reply = reading(&read_speed, session.handle, 0);
    session.link->reply_ok(expect_registration(session, 'A', "speed"));
    seen.with_reply = await(std::move(with_reply));

    seen.local = read_speed(session.handle, 0);
    session.settle();
    return seen;
}

struct ListGetters {
    std::vector<TimedReading> in_vain;
    std::string cached;
    std::vector<ChannelReading> again;
};

// The server tells all of its list. The cache has it, and the getters fail.
ListGetters play_list_server()
{
    Session session;
    ListGetters seen;
    std::vector<std::future<TimedReading>> waiting;
    for (const ChannelGetter& getter : list_getters) {
        waiting.push_back(timed(getter.read, session.handle, 0));
        session.link->reply_ok(expect_registration(session, 'A', getter.item));
    }
    session.link->send(list_report("list", 'A', list_loaded("evening")) +
                       list_report("item_exists", 'A', list_item(0, "a")) +
                       list_report("item_exists", 'A', list_item(1, "b")) +
                       list_report("air_now", 'A', on_air(1)) + info_report('A'));
    for (auto& future : waiting) {
        seen.in_vain.push_back(await(std::move(future)));
    }
    session.settle();
    seen.cached = describe(session.connection->channel_state(0)->list_play.value);
    for (const ChannelGetter& getter : list_getters) { // each registers anew
        auto again = reading(getter.read, session.handle, 0);
        session.link->reply_error(expect_registration(session, 'A', getter.item), "refused");
        seen.again.push_back(await(std::move(again)));
    }
    return seen;
}

// The link is lost between the reply and the report. As the registration has not finished, it is
// not repeated when the link is back.
TimedReading play_loss_before_report()
{
    Session session;
    auto waiting = timed(&read_speed, session.handle, 0);
    session.link->reply_ok(expect_registration(session, 'A', "speed"));
    session.settle();
    session.replace_link();
    session.settle();
    session.settle(); // behind the worker's own commands, of which there are none
    return await(std::move(waiting));
}

class ChannelsInVain : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        auto silent = in_thread(&play_silent_server);
        auto late = in_thread(&play_late_report);
        auto lists = in_thread(&play_list_server);
        auto loss = in_thread(&play_loss_before_report);
        silent_server = await(std::move(silent));
        late_report = await(std::move(late));
        list_server = await(std::move(lists));
        loss_before_report = await(std::move(loss));
    }

    static inline std::vector<TimedReading> silent_server;
    static inline LateReport late_report;
    static inline ListGetters list_server;
    static inline TimedReading loss_before_report;
};

TEST_F(ChannelsInVain, AGetterGivesUpAfterMoreThanFiveSeconds)
{
    ASSERT_EQ(silent_server.size(), channel_getters.size());
    for (std::size_t i = 0; i < silent_server.size(); ++i) {
        expect_time_out(channel_getters[i], silent_server[i]);
    }
}

TEST_F(ChannelsInVain, AReportThatComesTooLateServesTheNextRead)
{
    expect_time_out(speed_getter, late_report.in_vain);
    EXPECT_EQ(late_report.refused, speed_getter.failed());
    EXPECT_EQ(late_report.with_reply, read_to("2"));
    EXPECT_EQ(late_report.local, read_to("2"));
}

TEST_F(ChannelsInVain, TheListGettersAlwaysGiveUpThoughTheCacheIsRight)
{
    ASSERT_EQ(list_server.in_vain.size(), list_getters.size());
    for (std::size_t i = 0; i < list_server.in_vain.size(); ++i) {
        expect_time_out(list_getters[i], list_server.in_vain[i]);
        EXPECT_EQ(list_server.again[i], list_getters[i].failed());
    }
    EXPECT_EQ(list_server.cached, "loaded evening, mode 1, [a, b], now 1, next -, lock -, loop -");
}

TEST_F(ChannelsInVain, ALossOfTheLinkDoesNotShortenTheWaitForTheReport)
{
    expect_time_out(speed_getter, loss_before_report);
}

} // namespace
