#include "platform/platform.h"

#include "platform/loopback.h"
#include "platform/posix/descriptors.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <gtest/gtest.h>

namespace
{

int descriptor(platform::SocketHandle socket)
{
    return static_cast<int>(socket);
}

TEST(PosixDescriptors, AreClosedOnExec)
{
    const TestSocket socket;
    const int flags = fcntl(descriptor(socket.handle), F_GETFD);
    ASSERT_NE(flags, -1);
    EXPECT_NE(flags & FD_CLOEXEC, 0);
}

TEST(PosixDescriptors, NoDelayIsSetOnTheSocket)
{
    const TestSocket socket;
    const auto no_delay = [&] {
        int value = -1;
        socklen_t size = sizeof value;
        getsockopt(descriptor(socket.handle), IPPROTO_TCP, TCP_NODELAY, &value, &size);
        return value;
    };
    ASSERT_EQ(no_delay(), 0);
    platform::set_no_delay(socket.handle);
    EXPECT_EQ(no_delay(), 1);
}

TEST(PosixDescriptors, MayHaveNumbersAbove1023)
{
    const DescriptorLimit limit(4096);
    Connection both;
    ASSERT_TRUE(both.connected);
    const int high = fcntl(descriptor(both.client.handle), F_DUPFD_CLOEXEC, 2000);
    ASSERT_GE(high, 2000) << "needs a limit of more than 2000 descriptors";
    both.client.close();
    both.client.handle = static_cast<platform::SocketHandle>(high);

    EXPECT_EQ(platform::wait_readable(both.client.handle, 20), 0);
    asio::write(both.server, asio::buffer("x", 1));
    EXPECT_EQ(platform::wait_readable(both.client.handle, 60'000), 1);
    char byte = 0;
    EXPECT_EQ(platform::receive(both.client.handle, &byte, 1), 1);
    EXPECT_EQ(byte, 'x');
}

TEST(PosixDescriptors, OneThatIsClosedIsAnErrorAndNoTimeOut)
{
    Connection both;
    ASSERT_TRUE(both.connected);
    const int free_number = fcntl(descriptor(both.client.handle), F_DUPFD_CLOEXEC, 200);
    ASSERT_NE(free_number, -1);
    const auto handle = static_cast<platform::SocketHandle>(free_number);
    platform::close_socket(handle);
    EXPECT_EQ(platform::wait_readable(handle, 0), -1);
}

TEST(PosixDescriptors, AbortKeepsTheNumberTaken)
{
    Connection both;
    ASSERT_TRUE(both.connected);
    platform::abort_socket(both.client.handle);
    EXPECT_NE(fcntl(descriptor(both.client.handle), F_GETFD), -1);
    const TestSocket next;
    EXPECT_NE(next.handle, both.client.handle);
}

} // namespace
