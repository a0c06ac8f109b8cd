#include "velto/velto.h"

#include "support/faults.h"
#include "support/outcome.h"
#include "support/script_server.h"

#include <gtest/gtest.h>

namespace
{

using platform::Call;

// It is not closed: that would wait for its worker for ever.
TEST(ConnectionFaults, WithoutAThreadAConnectionStaysDown)
{
    const ScriptServer server;
    Faults faults{{.call = Call::start_thread}};
    const VeltoHandle handle = velto_connect(server.address().number);
    EXPECT_EQ(Faults::struck(Call::start_thread), 1u);
    EXPECT_NE(handle, 0u);
    EXPECT_EQ(velto_connected(handle), 0u);
    EXPECT_EQ(outcome_of([&] { return velto_cmd_stop1(handle, 0); }), link_failed);
}

TEST(ConnectionFaults, OutOfDescriptorsAConnectionIsTriedAgain)
{
    ScriptServer server;
    const Faults faults{{.call = Call::open_socket, .times = 3}};
    const VeltoHandle handle = velto_connect(server.address().number);
    EXPECT_EQ(velto_wait_until_connected(handle), 1u);
    EXPECT_EQ(Faults::struck(Call::open_socket), 3u);
    ScriptLink link = server.accept();
    link.close();
    velto_close(handle);
}

} // namespace
