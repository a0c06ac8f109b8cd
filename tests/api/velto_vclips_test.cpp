#include "support/clip_rows.h"
#include "support/command_script.h"

#include <set>

#include <gtest/gtest.h>

namespace
{

class VClips : public CommandScript
{
};

TEST_F(VClips, SendTheseBytes)
{
    expect_bytes(vclip_rows());
}

TEST(VClipRows, AreOfAllTenCommands)
{
    std::set<std::string> functions;
    for (const WireRow& row : vclip_rows()) {
        functions.insert(row.function);
    }
    EXPECT_EQ(functions.size(), 10u);
}

TEST_F(VClips, EveryCommandGivesTheServersMessage)
{
    expect_refusals(vclip_rows());
}

TEST_F(VClips, EveryCommandSucceedsAtOnceWhereCommandsDoNotWait)
{
    expect_no_wait(vclip_rows());
}

TEST_F(VClips, ALossFailsEveryCommandThatWaits)
{
    expect_failure_at_loss(vclip_rows());
}

TEST(VClipsWithoutHandle, EveryCommandGivesInvalidHandle)
{
    expect_invalid_handle(vclip_rows());
}

TEST(VClipsWithoutLink, EveryCommandFailsAtOnce)
{
    expect_failure_without_link(vclip_rows());
}

} // namespace
