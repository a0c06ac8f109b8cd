#include "platform/faults.h"

#include "platform/loopback.h"
#include "support/faults.h"

#include <gtest/gtest.h>

namespace
{

using platform::Call;
using platform::WaitResult;
using Effect = Faults::Effect;

// Sockets that could not be started are tried as if they were: their calls tell.
TEST(WindowsFaults, SocketsThatAreNotStartedArePassedOver)
{
    const Faults faults{{.call = Call::start_sockets, .times = Faults::for_good}};
    platform::start_sockets();
    Connection both; // whose other end has started them
    EXPECT_TRUE(both.connected);
}

TEST(WindowsFaults, WithoutTheCancellationAnAbortStillEndsLaterSends)
{
    Connection both;
    ASSERT_TRUE(both.connected);
    const Faults faults{{.call = Call::cancel}};
    platform::abort_socket(both.client.handle);
    EXPECT_EQ(Faults::struck(Call::cancel), 1u);
    EXPECT_EQ(platform::send(both.client.handle, "x", 1), -1);
}

TEST(WindowsFaults, APriorityThatIsNotSetIsPassedOver)
{
    const Faults faults{{.call = Call::thread_priority}};
    platform::set_thread_priority(0);
    EXPECT_EQ(Faults::struck(Call::thread_priority), 1u);
}

TEST(WindowsFaults, AThreadThatCouldBeUnloadedIsNotStarted)
{
    const Faults faults{{.call = Call::stay_loaded}};
    const auto fail = [](void*) { ADD_FAILURE(); };
    EXPECT_FALSE(platform::start_thread(fail, nullptr, 65536));
    EXPECT_EQ(Faults::struck(Call::stay_loaded), 1u);
}

TEST(WindowsFaults, AnInterruptedWaitForASemaphoreIsTold)
{
    platform::Semaphore* semaphore = platform::create_semaphore(1, 1);
    const Faults faults{{.call = Call::wait_semaphore, .effect = Effect::interrupted}};
    EXPECT_EQ(platform::wait_semaphore(semaphore, platform::infinite), WaitResult::interrupted);
    EXPECT_EQ(platform::wait_semaphore(semaphore, platform::infinite), WaitResult::signalled);
    platform::destroy_semaphore(semaphore);
}

} // namespace
