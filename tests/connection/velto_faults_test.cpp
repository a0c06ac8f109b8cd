#include "connection/velto.h"

#include "support/assert_watch.h"
#include "support/faults.h"
#include "support/session.h"
#include "support/store_script.h"

#include <gtest/gtest.h>

// What calls come to when the system fails them.
namespace
{

using platform::Call;
using Threads = Faults::Threads;

const Outcome not_known{VELTO_RESULT_FAILED, "Internal software error"};

class CallFaults : public testing::Test
{
protected:
    VeltoResult stop() { return velto_cmd_stop1(session.handle, 0); }

    // The call of a command goes wrong here, its reply comes to nothing, and the next one is good.
    void expect_unknown_outcome(const Faults::Fault& fault)
    {
        const AssertWatch watch;
        faults.arm(fault);
        EXPECT_EQ(outcome_of([&] { return stop(); }), not_known);
        EXPECT_EQ(Faults::struck(fault.call), 1u);
        EXPECT_GE(watch.count("csem"), 1u);
        session.link->reply_ok(session.link->expect("stop").xid);

        auto next = calling([&] { return stop(); });
        session.link->reply_ok(session.link->expect("stop").xid);
        EXPECT_EQ(await(std::move(next)), succeeded);
        EXPECT_EQ(session.connection->outstanding_callbacks, 0u);
    }

    Session session;
    Faults faults;
};

TEST_F(CallFaults, WithoutASemaphoreACallDoesNotKnowItsOutcome)
{
    expect_unknown_outcome({.call = Call::create_semaphore, .threads = Threads::caller});
}

TEST_F(CallFaults, AfterAWaitThatFailsACallDoesNotKnowItsOutcome)
{
    expect_unknown_outcome({.call = Call::wait_semaphore, .threads = Threads::caller});
}

TEST_F(CallFaults, WithoutASemaphoreACallForDataTouchesNoOutput)
{
    faults.arm({.call = Call::create_semaphore, .threads = Threads::caller});
    std::uint32_t standard = 77;
    EXPECT_EQ(velto_video_standard(session.handle, &standard), VELTO_RESULT_FAILED);
    EXPECT_EQ(standard, 77u);
    session.link->expect("get_video_standard");
}

TEST(LockFaults, WithoutItsMutexesAConnectionIsUsedUnlocked)
{
    Faults faults{{.call = Call::create_mutex, .times = Faults::for_good}};
    const auto connection = ARef<VeltoConnObject>::create();
    EXPECT_GT(Faults::struck(Call::create_mutex), 48u); // those of the channels alone
    faults.end();
    const auto stop = [&] {
        return VeltoConnObject::plain_command(connection, ZAVL3::command::stop{});
    };
    EXPECT_EQ(outcome_of(stop), link_failed);
}

TEST(LockFaults, ALockThatIsNotHadIsGoneWithout)
{
    const auto connection = ARef<VeltoConnObject>::create();
    const auto stop = [&] {
        return VeltoConnObject::plain_command(connection, ZAVL3::command::stop{});
    };
    const Faults faults{
        {.call = Call::lock_mutex, .times = Faults::for_good, .threads = Threads::caller}};
    EXPECT_EQ(outcome_of(stop), link_failed);
    EXPECT_GE(Faults::struck(Call::lock_mutex), 1u);
}

// ---- Stores.

class StoreFaults : public testing::Test
{
protected:
    // The store opens and takes writes, which it keeps to itself, and closes.
    void expect_store_without_writer(const Faults::Fault& fault)
    {
        const AssertWatch watch;
        faults.arm(fault);
        VeltoStoreHandle store = 0;
        EXPECT_EQ(outcome_of([&] {
                      return velto_open_kvstore(session.handle, units("folder").c_str(),
                                                units("").c_str(), VELTO_STORE_WRITE, &store);
                  }),
                  succeeded);
        EXPECT_EQ(Faults::struck(fault.call), 1u);
        EXPECT_TRUE(watch.count("kv_store") == 1);
        EXPECT_EQ(velto_kvstore_set(store, units("key").c_str(), units("value").c_str()),
                  VELTO_RESULT_OK);
        EXPECT_EQ(outcome_of([&] { return velto_kvstore_flush(store, 0); }), timed_out);
        velto_close_key_value_store(store);
    }

    Session session;
    Faults faults;
};

TEST_F(StoreFaults, WithoutAThreadAStoreKeepsItsWrites)
{
    expect_store_without_writer({.call = Call::start_thread});
}

TEST_F(StoreFaults, WithoutASemaphoreToWaitForItsWriterAStoreHasNone)
{
    expect_store_without_writer({.call = Call::create_semaphore, .threads = Threads::caller});
}

} // namespace
