#include "connection/result.h"

#include "support/outcome.h"

#include <gtest/gtest.h>

namespace
{

struct FixedResult {
    VeltoResult (*call)();
    Outcome expected;
};

const FixedResult fixed_results[] = {
    {result_ok, {0, "OK"}},
    {result_invalid_handle, {3, "Invalid handle"}},
    {result_read_only, {4, "Read only"}},
    {result_timeout, {5, "Timeout"}},
    {result_invalid_argument, {6, "Invalid argument"}},
    {result_write_only, {7, "Write only"}},
};

TEST(Result, EachRecordsItsTextAndGivesItsCode)
{
    for (const FixedResult& row : fixed_results) {
        set_last_error_text("before");
        EXPECT_EQ(outcome_of(row.call), row.expected);
        EXPECT_EQ(outcome_of(row.call), row.expected);
    }
}

TEST(Result, AFailureHasCodeTwoAndItsOwnText)
{
    EXPECT_EQ(outcome_of([] { return result_failed("clip in use"); }), (Outcome{2, "clip in use"}));
    EXPECT_EQ(outcome_of([] { return result_failed(AString()); }), (Outcome{2, ""}));
}

TEST(Result, AnyCodePassesUnchangedWithItsText)
{
    for (const VeltoResult code : {0, 1, 2, 7, 8, -1, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(outcome_of([&] { return result_with_code(code, "text"); }),
                  (Outcome{code, "text"}));
    }
}

// A failure that is compared with result_ok() keeps its code and loses its text. Wanted.
TEST(Result, ComparingWithSuccessRecordsSuccess)
{
    const VeltoResult failure = result_failed("the reason");
    EXPECT_NE(failure, result_ok());
    EXPECT_EQ(get_last_error_text().to_utf8(), "OK");
}

} // namespace
