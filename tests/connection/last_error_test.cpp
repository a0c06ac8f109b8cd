#include "connection/last_error.h"

#include "support/astring_printer.h"
#include "support/await.h"

#include <gtest/gtest.h>

namespace
{

TEST(LastError, IsEmptyOnAThreadThatHasRecordedNothing)
{
    EXPECT_EQ(await(in_thread(get_last_error_text)), AString());
}

TEST(LastError, GivesTheLatestTextOfTheThread)
{
    set_last_error_text("first");
    EXPECT_EQ(get_last_error_text(), "first");
    EXPECT_EQ(get_last_error_text(), "first");
    set_last_error_text("second");
    EXPECT_EQ(get_last_error_text(), "second");
    set_last_error_text(AString());
    EXPECT_EQ(get_last_error_text(), AString());
}

TEST(LastError, BelongsToTheThread)
{
    set_last_error_text("mine");
    const AString other = await(in_thread([] {
        set_last_error_text("other");
        return get_last_error_text();
    }));
    EXPECT_EQ(other, "other");
    EXPECT_EQ(get_last_error_text(), "mine");
}

// The system gives the number of an ended thread to a new one.
TEST(LastError, ANewThreadNeverFindsTheTextOfAnEndedOne)
{
    for (int i = 0; i < 200; ++i) {
        const AString found = await(in_thread([] {
            AString text = get_last_error_text();
            set_last_error_text("left behind");
            return text;
        }));
        ASSERT_EQ(found, AString());
    }
}

TEST(LastError, ThereIsOneTable)
{
    EXPECT_EQ(&last_error_table(), await(in_thread([] { return &last_error_table(); })));
}

} // namespace
