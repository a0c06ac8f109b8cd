#include "foundation/runonce.h"

#include "support/assert_watch.h"

#include <gtest/gtest.h>

namespace
{

int runs = 0;
RunOnce* object_seen = nullptr;
std::uint32_t value_seen = 99;

void note_run(RunOnce* object, std::uint32_t value)
{
    ++runs;
    object_seen = object;
    value_seen = value;
}

RunOnce at_load(&note_run);

TEST(RunOnce, CallsItsFunctionOnceAtLoadWithTheObjectAndZero)
{
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(object_seen, &at_load);
    EXPECT_EQ(value_seen, 0u);
}

TEST(RunOnce, NullFunctionIsReported)
{
    const AssertWatch watch;
    const RunOnce nothing(nullptr);
    EXPECT_EQ(watch.count("runonce"), 1u);
}

TEST(RunOnce, LibraryHasStoredZeroInItsCellOnce)
{
    EXPECT_EQ(run_once_cell().value, 0u);
    EXPECT_EQ(run_once_cell().generation, 1u);
}

} // namespace
