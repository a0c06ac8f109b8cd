#include "connection/velto.h"

#include "support/session.h"

#include <array>

#include <gtest/gtest.h>

namespace
{

using Buffer = std::array<VeltoChar, 32>;

VeltoResult stop(const ARef<VeltoConnObject>& connection)
{
    return VeltoConnObject::plain_command(connection, ZAVL3::command::stop{});
}

VeltoResult server_name(const ARef<VeltoConnObject>& connection, Buffer& buffer)
{
    return VeltoConnObject::server_name(connection,
                                        {buffer.data(), static_cast<std::uint32_t>(buffer.size())});
}

std::string computername(const std::string& name)
{
    return "<computername><ComputerName>" + name + "</ComputerName></computername>";
}

std::string video_standard(const std::string& standard, const std::string& rate,
                           const std::string& resolution)
{
    return "<video_standard><VideoStandard>" + standard + "</VideoStandard><VideoRate>" + rate +
           "</VideoRate><VideoResolution>" + resolution + "</VideoResolution></video_standard>";
}

class Core : public testing::Test
{
protected:
    std::future<Outcome> calling_stop()
    {
        return calling([this] { return stop(session.connection); });
    }

    // Asks for the name while the server answers with `content`.
    Outcome ask_name(const std::string& content)
    {
        auto asking = calling([this] { return server_name(session.connection, buffer); });
        session.link->reply(session.link->expect("get_computer_name").xid, content);
        return await(std::move(asking));
    }

    Session session;
    Buffer buffer{};
};

TEST_F(Core, ACommandReturnsWithItsReply)
{
    auto call = calling_stop();
    session.link->reply_ok(session.link->expect("stop").xid);
    EXPECT_EQ(await(std::move(call)), succeeded);
    EXPECT_EQ(session.connection->outstanding_callbacks, 0u);
}

TEST_F(Core, ARefusalGivesTheServersMessageWhateverItsCode)
{
    for (const char* code : {"general", "clipnotfound", "configname_invalid"}) {
        auto call = calling_stop();
        session.link->reply_error(session.link->expect("stop").xid, "No clip &quot;a&quot;", code);
        EXPECT_EQ(await(std::move(call)), (Outcome{2, "No clip \"a\""}));
    }
}

TEST_F(Core, ARefusalWithAnUnknownCodeIsNoReply)
{
    auto call = calling_stop();
    const std::string xid = session.link->expect("stop").xid;
    session.link->reply_error(xid, "lost", "code_of_tomorrow");
    session.link->reply_error(xid, "read", "general");
    EXPECT_EQ(await(std::move(call)), (Outcome{2, "read"}));
}

TEST_F(Core, TheLossOfTheLinkWakesEveryWaitingThread)
{
    auto first = calling_stop();
    auto second = calling([this] { return server_name(session.connection, buffer); });
    session.link->expect_command();
    session.link->expect_command();
    session.link->close();
    EXPECT_EQ(await(std::move(first)), link_failed);
    EXPECT_EQ(await(std::move(second)), failed_question);

    session.accept();
    auto again = calling_stop();
    session.link->reply_ok(session.link->expect("stop").xid);
    EXPECT_EQ(await(std::move(again)), succeeded);
}

TEST_F(Core, NothingIsRegisteredAtTheServerByItself)
{
    session.link->close();
    session.accept();
    auto call = calling_stop();
    session.link->reply_ok(session.link->expect("stop").xid); // the first that comes
    EXPECT_EQ(await(std::move(call)), succeeded);
}

TEST_F(Core, AnAsynchronousCommandReturnsOnceItIsWritten)
{
    for (const std::uint32_t value : {1u, 2u, 0x80000000u}) {
        session.connection->asynchronous = value;
        EXPECT_EQ(outcome_of([&] { return stop(session.connection); }), succeeded);
        EXPECT_EQ(session.connection->outstanding_callbacks, 1u);
        session.link->reply_error(session.link->expect("stop").xid, "nobody hears it");
        VeltoConnObject::sync(session.connection);
        EXPECT_EQ(get_last_error_text().to_utf8(), "OK");
    }
}

TEST_F(Core, WithAsynchronousBackAtZeroCommandsWaitAgain)
{
    session.connection->asynchronous = 1;
    EXPECT_EQ(outcome_of([&] { return stop(session.connection); }), succeeded);
    session.connection->asynchronous = 0;
    auto call = calling_stop();
    session.link->expect("stop");
    session.link->reply_error(session.link->expect("stop").xid, "refused");
    EXPECT_EQ(await(std::move(call)), (Outcome{2, "refused"}));
}

TEST_F(Core, AQuestionWaitsAlsoWhenAsynchronous)
{
    session.connection->asynchronous = 1;
    EXPECT_EQ(ask_name(computername("ingest_2")), succeeded);
    EXPECT_EQ(std::u16string(buffer.begin(), buffer.begin() + 9), std::u16string(u"ingest_2\0", 9));
    EXPECT_EQ(ask_name(error_content("no name")), failed_question);
}

TEST_F(Core, SyncWaitsForEveryOutstandingCommand)
{
    VeltoConnObject::sync(session.connection); // nothing is outstanding

    session.connection->asynchronous = 1;
    stop(session.connection);
    stop(session.connection);
    auto waiting = in_thread([this] {
        VeltoConnObject::sync(session.connection);
        return session.connection->outstanding_callbacks.load();
    });
    session.link->reply_ok(session.link->expect("stop").xid);
    session.link->reply_ok(session.link->expect("stop").xid);
    EXPECT_EQ(await(std::move(waiting)), 0u);
}

TEST_F(Core, SyncEndsWithTheLossOfTheLink)
{
    session.connection->asynchronous = 1;
    stop(session.connection);
    auto waiting = in_thread([this] { VeltoConnObject::sync(session.connection); });
    session.link->close();
    await(std::move(waiting));
}

TEST_F(Core, TheServerNameIsCopiedAndCut)
{
    EXPECT_EQ(ask_name(computername("")), succeeded);
    EXPECT_EQ(buffer[0], 0);

    EXPECT_EQ(ask_name(computername(std::string(31, 'x') + "y")), succeeded);
    EXPECT_EQ(buffer[30], 'x');
    EXPECT_EQ(buffer[31], 0);

    EXPECT_EQ(ask_name(computername("\xC3\xA9")), succeeded);
    EXPECT_EQ(buffer[0], 0xE9);
    EXPECT_EQ(buffer[1], 0);
}

TEST_F(Core, AFailedServerNameLeavesTheBufferAndTheTextOk)
{
    buffer.fill(0x2A);
    EXPECT_EQ(ask_name(error_content("no name")), failed_question);
    EXPECT_EQ(buffer[0], 0x2A);
}

// A reply of a final kind for which the caller takes no delegate ends the command, but not the
// wait. It is wanted so.
TEST_F(Core, AReplyOfAnotherKindLeavesTheCallerBlockedEvenOverALoss)
{
    const CBHolder<CBOkObject> callback(session.connection, CBBaseObject::Waiting::waits);
    session.connection->issue(ZAVL3::command::stop{},
                              {callback.delegate<&CBOkObject::ok_delegate>(),
                               callback.delegate<&CBOkObject::error_delegate>()});
    auto blocked = calling([&] { return callback.outcome(); });
    const std::string xid = session.link->expect("stop").xid;
    EXPECT_EQ(session.connection->outstanding_count(), 1u);
    session.link->reply(xid, computername("ingest_2"));
    session.link->reply_ok(xid); // too late
    session.link->close();

    session.accept(); // the loss is over
    auto other = calling_stop();
    session.link->reply_ok(session.link->expect("stop").xid);
    EXPECT_EQ(await(std::move(other)), succeeded);

    EXPECT_EQ(session.connection->outstanding_count(), 0u);
    EXPECT_EQ(session.connection->outstanding_callbacks, 1u);
    EXPECT_EQ(blocked.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    callback->ok_delegate(); // nobody else will end it
    EXPECT_EQ(await(std::move(blocked)), succeeded);
}

// An exported number for each word that has one; the others give 0.
struct VideoWord {
    const char* word;
    std::uint32_t exported;
};

class VideoQuestions : public Core
{
protected:
    using Question = VeltoResult (*)(ARef<VeltoConnObject>, std::uint32_t*);

    struct Answer {
        Outcome outcome;
        std::uint32_t value;
        bool operator==(const Answer&) const = default;
    };

    Answer ask(Question question, const std::string& content)
    {
        std::uint32_t value = 77;
        auto asking = calling([&] { return question(session.connection, &value); });
        session.link->reply(session.link->expect("get_video_standard").xid, content);
        const Outcome outcome = await(std::move(asking));
        return {outcome, value};
    }
};

TEST_F(VideoQuestions, EachStandardHasItsNumber)
{
    const VideoWord words[] = {
        {"1080_60i", 0},    {"1080_59_94i", 1},   {"1080_50i", 2},    {"1080_48i", 3},
        {"1080_47_95i", 4}, {"720_60p", 5},       {"720_59_94p", 6},  {"720_50p", 7},
        {"625_50i", 8},     {"525_59_94i", 9},    {"4K_60p", 0},      {"4K_23_98p", 0},
        {"1080_60p", 0},    {"1080_23_98psf", 0}, {"1080_29_97p", 0},
    };
    for (const auto& [word, exported] : words) {
        EXPECT_EQ(ask(&VeltoConnObject::video_standard, video_standard(word, "59_94", "720p")),
                  (Answer{succeeded, exported}))
            << word;
    }
}

TEST_F(VideoQuestions, EachRateHasItsNumber)
{
    const VideoWord words[] = {
        {"60", 0}, {"59_94", 1}, {"50", 2}, {"48", 3}, {"47_95", 4},
        {"30", 0}, {"29_97", 0}, {"25", 0}, {"24", 0}, {"23_98", 0},
    };
    for (const auto& [word, exported] : words) {
        EXPECT_EQ(ask(&VeltoConnObject::video_frequency, video_standard("720_50p", word, "720p")),
                  (Answer{succeeded, exported}))
            << word;
    }
}

TEST_F(VideoQuestions, EachResolutionHasItsNumber)
{
    const VideoWord words[] = {
        {"1080i", 0}, {"720p", 1}, {"625i", 2}, {"525i", 3}, {"4K", 0}, {"1080p", 0},
    };
    for (const auto& [word, exported] : words) {
        EXPECT_EQ(ask(&VeltoConnObject::video_resolution, video_standard("720_50p", "50", word)),
                  (Answer{succeeded, exported}))
            << word;
    }
}

TEST_F(VideoQuestions, ARefusalWritesNothing)
{
    for (const Question question :
         {&VeltoConnObject::video_standard, &VeltoConnObject::video_frequency,
          &VeltoConnObject::video_resolution}) {
        EXPECT_EQ(ask(question, error_content("no standard")), (Answer{failed_question, 77}));
    }
}

// It reaches nobody, and the caller stays blocked until the link goes.
TEST_F(VideoQuestions, AReplyWithAnUnknownWordCompletesNothing)
{
    std::uint32_t value = 77;
    auto asking =
        calling([&] { return VeltoConnObject::video_standard(session.connection, &value); });
    const std::string xid = session.link->expect("get_video_standard").xid;
    session.link->reply(xid, video_standard("8K_60p", "60", "1080i"));
    session.link->reply(xid, video_standard("720_50p", "61", "1080i"));
    session.link->reply(xid, video_standard("720_50p", "60", "1081i"));

    auto other = calling_stop(); // its reply comes behind those
    session.link->reply_ok(session.link->expect("stop").xid);
    EXPECT_EQ(await(std::move(other)), succeeded);
    EXPECT_EQ(session.connection->outstanding_callbacks, 1u);

    session.link->close();
    EXPECT_EQ(await(std::move(asking)), failed_question);
    EXPECT_EQ(value, 77u);
}

TEST(CoreWithoutLink, ACommandFailsAtOnce)
{
    const auto connection = ARef<VeltoConnObject>::create();
    EXPECT_EQ(outcome_of([&] { return stop(connection); }), link_failed);
    EXPECT_EQ(connection->outstanding_callbacks, 0u);
    EXPECT_EQ(connection->outstanding_count(), 0u);
}

TEST(CoreWithoutLink, AnAsynchronousCommandSucceedsAllTheSame)
{
    const auto connection = ARef<VeltoConnObject>::create();
    ASSERT_TRUE(connection);
    connection->asynchronous = 1;
    EXPECT_EQ(outcome_of([&] { return stop(connection); }), succeeded);
    EXPECT_EQ(connection->outstanding_callbacks, 0u);
    VeltoConnObject::sync(connection);
}

TEST(CoreWithoutLink, AQuestionFailsAndItsTextIsOk)
{
    const auto connection = ARef<VeltoConnObject>::create();
    Buffer buffer{};
    std::uint32_t value = 77;
    EXPECT_EQ(outcome_of([&] { return server_name(connection, buffer); }), failed_question);
    EXPECT_EQ(outcome_of([&] { return VeltoConnObject::video_standard(connection, &value); }),
              failed_question);
    EXPECT_EQ(value, 77u);
}

} // namespace
