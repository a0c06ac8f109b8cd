#include "connection/velto.h"

#include "support/outcome.h"

#include <gtest/gtest.h>

namespace
{

using Waiting = CBBaseObject::Waiting;
constexpr auto general = ZAVL3::word<ZAVL3::ErrorCode>("general");
constexpr auto not_found = ZAVL3::word<ZAVL3::ErrorCode>("clipnotfound");

// Counts how many of its kind are alive.
class CountedCallback : public CBOkObject
{
public:
    CountedCallback(const ARef<VeltoConnObject>& owner, Waiting waiting)
        : CBOkObject(owner, waiting)
    {
        ++alive;
    }
    ~CountedCallback() override { --alive; }

    static inline std::atomic<int> alive{0};
};

using Holder = CBHolder<CountedCallback>;

std::uint32_t references(const ARef<VeltoConnObject>& connection)
{
    return ARefBlock<VeltoConnObject>::of(connection.get())->reference_count;
}

class Callbacks : public testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(CountedCallback::alive, 0); }

    ARef<VeltoConnObject> connection = ARef<VeltoConnObject>::create();
};

TEST_F(Callbacks, IsMadeAsASuccessThatHoldsTheConnection)
{
    const Holder callback(connection, Waiting::waits);
    EXPECT_EQ(connection->outstanding_callbacks, 1u);
    EXPECT_EQ(references(connection), 2u);
    EXPECT_EQ(callback->connection.get(), connection.get());
    EXPECT_NE(callback->done_semaphore, nullptr);
    EXPECT_EQ(callback->result_code, VELTO_RESULT_OK);
    EXPECT_EQ(callback->result_text.to_utf8(), "OK");
    EXPECT_EQ(callback->reference_count, 2u);
    callback->ok_delegate();
}

TEST_F(Callbacks, HasNoSemaphoreWhereNobodyWaits)
{
    const Holder callback(connection, Waiting::does_not_wait);
    EXPECT_EQ(callback->done_semaphore, nullptr);
    EXPECT_EQ(connection->outstanding_callbacks, 1u);
    EXPECT_EQ(outcome_of([&] { return callback.outcome(); }), succeeded);
    callback->error_delegate("too late for anybody", general);
    EXPECT_EQ(outcome_of([&] { return callback.outcome(); }), succeeded);
    EXPECT_EQ(connection->outstanding_callbacks, 0u);
}

TEST_F(Callbacks, AnOkEndsTheWait)
{
    const Holder callback(connection, Waiting::waits);
    callback->ok_delegate();
    EXPECT_EQ(outcome_of([&] { return callback.outcome(); }), succeeded);
}

// The server's code is ignored.
TEST_F(Callbacks, AnErrorGivesCodeTwoAndItsText)
{
    for (const auto code : {general, not_found}) {
        const Holder callback(connection, Waiting::waits);
        callback->error_delegate("no such clip", code);
        EXPECT_EQ(outcome_of([&] { return callback.outcome(); }), (Outcome{2, "no such clip"}));
    }
}

TEST_F(Callbacks, AWaiterWakesOnAnotherThread)
{
    const Holder callback(connection, Waiting::waits);
    auto waiting = calling([&] { return callback.outcome(); });
    callback->error_delegate("refused", general);
    EXPECT_EQ(await(std::move(waiting)), (Outcome{2, "refused"}));
}

// A caller that has its result does not find the delegates still holding the connection.
TEST_F(Callbacks, TheConnectionIsLetGoBeforeTheWaiterWakes)
{
    const Holder callback(connection, Waiting::waits);
    auto waiting = in_thread([&] {
        callback.outcome();
        return std::pair(references(connection), connection->outstanding_callbacks.load());
    });
    callback->ok_delegate();
    EXPECT_EQ(await(std::move(waiting)), std::pair(1u, 0u));
}

TEST_F(Callbacks, WhoeverDropsTheLastShareDestroysIt)
{
    CountedCallback* left_to_delegates = nullptr;
    {
        const Holder callback(connection, Waiting::does_not_wait);
        left_to_delegates = callback.operator->();
    }
    EXPECT_EQ(CountedCallback::alive, 1);
    left_to_delegates->ok_delegate();
    EXPECT_EQ(CountedCallback::alive, 0);

    {
        const Holder callback(connection, Waiting::waits);
        callback->ok_delegate();
        EXPECT_EQ(CountedCallback::alive, 1);
    }
    EXPECT_EQ(CountedCallback::alive, 0);
}

TEST_F(Callbacks, BoundDelegatesReachTheirObject)
{
    const Holder callback(connection, Waiting::waits);
    const AFunction<AString, ZAVL3::ErrorCode> on_error =
        callback.delegate<&CountedCallback::error_delegate>();
    on_error("refused", general);
    EXPECT_EQ(outcome_of([&] { return callback.outcome(); }), (Outcome{2, "refused"}));
}

TEST_F(Callbacks, DataIsStoredBeforeTheWaiterWakes)
{
    const CBHolder<CBServerNameObject> name(connection, Waiting::waits);
    auto reading = in_thread([&] {
        name.outcome();
        return name->reply.get<"ComputerName">().to_utf8();
    });
    name->reply_delegate("ingest_2");
    EXPECT_EQ(await(std::move(reading)), "ingest_2");

    const CBHolder<CBVideoStandardObject> video(connection, Waiting::waits);
    constexpr auto standard = ZAVL3::word<ZAVL3::VideoStandard>("720_50p");
    constexpr auto rate = ZAVL3::word<ZAVL3::VideoRate>("50");
    constexpr auto resolution = ZAVL3::word<ZAVL3::VideoResolution>("720p");
    video->reply_delegate(standard, rate, resolution);
    EXPECT_EQ(outcome_of([&] { return video.outcome(); }), succeeded);
    EXPECT_EQ(video->reply.get<"VideoStandard">(), standard);
    EXPECT_EQ(video->reply.get<"VideoRate">(), rate);
    EXPECT_EQ(video->reply.get<"VideoResolution">(), resolution);
}

} // namespace
