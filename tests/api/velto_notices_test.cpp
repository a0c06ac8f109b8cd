#include "support/channel_script.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

constexpr std::uint32_t longest_wait = 0xFFFFFFFF;

// A call of velto_get_notification: result, kind and channel, as text. These are 77 before.
std::string notice_within(VeltoHandle handle, std::uint32_t timeout_ms)
{
    std::uint32_t kind = 77;
    std::uint32_t channel = 77;
    const VeltoResult result = velto_get_notification(handle, timeout_ms, &kind, &channel);
    return std::to_string(result) + ": " + std::to_string(kind) + " " + std::to_string(channel);
}

const std::string nothing = "0: 0 0";

class Notices : public testing::Test
{
protected:
    std::string next() { return notice_within(session.handle, 0); }

    // All notices, once the client has taken in what the server has sent.
    std::vector<std::string> all()
    {
        session.settle();
        std::vector<std::string> notices;
        for (std::string notice = next(); notice != nothing; notice = next()) {
            notices.push_back(notice);
        }
        return notices;
    }

    Session session;
};

using Texts = std::vector<std::string>;

TEST_F(Notices, ManyReportsThatNobodyReadsLeaveOne)
{
    for (int i = 0; i < 10; ++i) {
        session.link->send(speed_report('C', std::to_string(i) + "X"));
    }
    EXPECT_EQ(all(), (Texts{"0: 7 2"}));
}

TEST_F(Notices, APendingNoticeKeepsItsPlace)
{
    session.link->send(speed_report('C', "1X"));
    session.link->send(status_report('C', "play"));
    session.link->send(speed_report('C', "2X"));
    EXPECT_EQ(all(), (Texts{"0: 7 2", "0: 5 2"}));
}

TEST_F(Notices, ADeliveredNoticeCanComeAgain)
{
    session.link->send(speed_report('C', "1X"));
    EXPECT_EQ(all(), (Texts{"0: 7 2"}));
    session.link->send(speed_report('C', "1X")); // the same value is a report like any other
    EXPECT_EQ(all(), (Texts{"0: 7 2"}));
}

TEST_F(Notices, EachReportHasItsKinds)
{
    session.link->send(clip_report('A', "news_open"));
    EXPECT_EQ(all(), (Texts{"0: 1 0"}));
    session.link->send(position_report('B', "1"));
    EXPECT_EQ(all(), (Texts{"0: 3 1"}));
    session.link->send(status_report('G', "idle"));
    EXPECT_EQ(all(), (Texts{"0: 5 6"}));
    session.link->send(speed_report('H', "1X"));
    EXPECT_EQ(all(), (Texts{"0: 7 7"}));
    session.link->send(info_report('D'));
    EXPECT_EQ(all(), (Texts{"0: 2 3", "0: 4 3", "0: 6 3", "0: 8 3", "0: 9 3"}));
}

TEST_F(Notices, OtherReportsHaveNone)
{
    for (char channel = 'I'; channel <= 'L'; ++channel) {
        session.link->send(status_report(channel, "play"));
        session.link->send(info_report(channel));
    }
    session.link->send(list_report("list", 'A', list_loaded("evening")));
    session.link->send(list_report("item_exists", 'A', list_item(0, "a")));
    session.link->send(list_report("air_now", 'A', on_air(0)));
    session.link->send("<report><clip_created><ClipID>a</ClipID></clip_created></report>");
    session.link->send("<report><directory_created><DirectoryName>a</DirectoryName>"
                       "</directory_created></report>");
    session.link->send(speed_report('A', "fast"));
    EXPECT_EQ(all(), Texts{});
}

TEST_F(Notices, AnEmptyQueueIsOnlyLookedAtWithoutTime)
{
    set_last_error_text("before");
    EXPECT_EQ(next(), nothing);
    EXPECT_EQ(get_last_error_text().to_utf8(), "before");
}

TEST_F(Notices, AnEmptyQueueIsWaitedForAsLongAsTold)
{
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(notice_within(session.handle, 100), nothing);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
}

TEST_F(Notices, AReportEndsTheWait)
{
    auto waiting = in_thread([&] { return notice_within(session.handle, longest_wait); });
    EXPECT_EQ(waiting.wait_for(50ms), std::future_status::timeout);
    session.link->send(position_report('B', "1"));
    EXPECT_EQ(await(std::move(waiting)), "0: 3 1");
}

TEST_F(Notices, AreConsumedWithoutOutputsToo)
{
    session.link->send(info_report('A'));
    session.settle();
    set_last_error_text("before");
    std::uint32_t value = 77;
    EXPECT_EQ(velto_get_notification(session.handle, longest_wait, nullptr, nullptr), 0);
    EXPECT_EQ(velto_get_notification(session.handle, longest_wait, &value, nullptr), 0);
    EXPECT_EQ(value, 4u);
    EXPECT_EQ(velto_get_notification(session.handle, longest_wait, nullptr, &value), 0);
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(get_last_error_text().to_utf8(), "before");
    EXPECT_EQ(all(), (Texts{"0: 8 0", "0: 9 0"}));
}

TEST_F(Notices, TheReportThatAFirstReadWaitsForIsTheFirst)
{
    EXPECT_EQ(first_read(session, position_getter, 4), read_to("250"));
    EXPECT_EQ(notice_within(session.handle, longest_wait), "0: 3 4");
    EXPECT_EQ(next(), nothing);
}

// A server reports what is registered, and that is what a getter has asked for.
TEST_F(Notices, WithoutAGetterNothingIsRegisteredAndNothingCanCome)
{
    EXPECT_EQ(all(), Texts{});
    session.replace_link();
    session.settle();
    EXPECT_EQ(all(), Texts{}); // which settles again, behind the worker's own commands
}

TEST_F(Notices, TheLossOfTheLinkKeepsWhatIsPendingAndAddsNothing)
{
    session.link->send(speed_report('C', "1X"));
    session.settle();
    lose_link(session);
    EXPECT_EQ(next(), "0: 7 2");
    EXPECT_EQ(next(), nothing);
    restore_link(session);
    EXPECT_EQ(all(), Texts{});
}

TEST_F(Notices, AnUnknownHandleLeavesTheOutputs)
{
    EXPECT_EQ(notice_within(0, longest_wait), "3: 77 77");
    EXPECT_EQ(get_last_error_text().to_utf8(), "Invalid handle");
}

TEST_F(Notices, ConnectionsHaveQueuesOfTheirOwn)
{
    Session other;
    other.link->send(speed_report('B', "1X"));
    other.settle();
    EXPECT_EQ(all(), Texts{});
    EXPECT_EQ(notice_within(other.handle, longest_wait), "0: 7 1");
}

// Nothing tells when a call has come to its wait. Where the close has overtaken it, the handle is
// invalid, and the script is played again with more time.
TEST(NoticesOfAClosedConnection, StillReachWhoIsWaiting)
{
    for (auto pause = 50ms; pause < hang_bound; pause *= 2) {
        Session session;
        session.connection.clear();
        auto waiting = in_thread([&] { return notice_within(session.handle, longest_wait); });
        waiting.wait_for(pause);
        velto_close(session.handle);
        session.link->send(speed_report('C', "1X"));
        const std::string notice = await(std::move(waiting));
        if (notice != "3: 77 77") {
            EXPECT_EQ(notice, "0: 7 2");
            EXPECT_EQ(notice_within(session.handle, 0), "3: 77 77");
            return;
        }
    }
    FAIL() << "no call has come to its wait";
}

} // namespace
