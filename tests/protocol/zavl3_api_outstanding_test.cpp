#include "protocol/zavl3_api_outstanding.h"

#include "support/assert_watch.h"
#include "support/await.h"
#include "support/completion_log.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;
using Lines = std::vector<std::string>;

class OutstandingCommandsTest : public testing::Test
{
protected:
    // A command of this name with an on_error delegate, as its wrapper leaves it in the map.
    CommandRecord* issue(const std::string& name)
    {
        CommandRecord* record = outstanding.new_command();
        record->on_error = log.on_error(name);
        return record;
    }

    static std::string failed(const std::string& name)
    {
        return name + ": error Failing all outstanding commands 0";
    }

    CompletionLog log;
    OutstandingCommands outstanding;
};

TEST_F(OutstandingCommandsTest, HoldANewCommandWithoutDelegates)
{
    CommandRecord* record = outstanding.new_command();
    EXPECT_EQ(record->parent, &outstanding);
    EXPECT_FALSE(record->has_delegate());
    EXPECT_EQ(outstanding.find_command(record->xid), record);
    EXPECT_EQ(outstanding.outstanding_count(), 1u);
}

TEST_F(OutstandingCommandsTest, NumberCommandsFromOneInPlainDecimals)
{
    last_xid_number = 0;
    EXPECT_EQ(outstanding.new_command()->xid.to_utf8(), "1");
    EXPECT_EQ(outstanding.new_command()->xid.to_utf8(), "2");
    last_xid_number = 0xFFFFFFFE;
    EXPECT_EQ(outstanding.new_command()->xid.to_utf8(), "4294967295");
    EXPECT_EQ(outstanding.new_command()->xid.to_utf8(), "0");
}

TEST_F(OutstandingCommandsTest, ShareTheNumbersOfTheProcess)
{
    OutstandingCommands others;
    std::set<std::string> xids;
    for (int i = 0; i < 100; ++i) {
        xids.insert(outstanding.new_command()->xid.to_utf8());
        xids.insert(others.new_command()->xid.to_utf8());
    }
    EXPECT_EQ(xids.size(), 200u);
}

TEST_F(OutstandingCommandsTest, ShareTheNumbersAmongThreads)
{
    constexpr std::size_t commands = 500;
    std::vector<std::future<Lines>> issuers;
    for (int thread = 0; thread < 4; ++thread) {
        issuers.push_back(in_thread([] {
            OutstandingCommands mine;
            Lines xids;
            for (std::size_t i = 0; i < commands; ++i) {
                xids.push_back(mine.new_command()->xid.to_utf8());
            }
            return xids;
        }));
    }
    std::set<std::string> all;
    for (std::future<Lines>& issuer : issuers) {
        for (const std::string& xid : await(std::move(issuer))) {
            all.insert(xid);
        }
    }
    EXPECT_EQ(all.size(), 4 * commands);
}

TEST_F(OutstandingCommandsTest, SkipANumberThatIsStillOutstandingAfterAWrap)
{
    last_xid_number = 0xFFFFFFFF;
    EXPECT_EQ(outstanding.new_command()->xid.to_utf8(), "0");
    EXPECT_EQ(outstanding.new_command()->xid.to_utf8(), "1");
    CommandRecord* third = outstanding.new_command();
    EXPECT_EQ(outstanding.new_command()->xid.to_utf8(), "3");
    outstanding.release_command(third);
    last_xid_number = 0xFFFFFFFF;
    EXPECT_EQ(outstanding.new_command()->xid.to_utf8(), "2");
    EXPECT_EQ(outstanding.new_command()->xid.to_utf8(), "4");
    EXPECT_EQ(outstanding.outstanding_count(), 5u);
}

TEST_F(OutstandingCommandsTest, KeepACommandWithAnyDelegate)
{
    std::uint64_t expected = 0;
#define CHECK_KEPT(name, ...)                                                                      \
    {                                                                                              \
        CommandRecord* record = outstanding.new_command();                                         \
        record->on_##name = log.on<reply::name>("a", #name);                                       \
        EXPECT_TRUE(record->has_delegate());                                                       \
        EXPECT_EQ(&delegate_for<reply::name>(*record), &record->on_##name);                        \
        const AString xid = record->xid;                                                           \
        EXPECT_EQ(outstanding.finish_command(record), xid);                                        \
        EXPECT_EQ(outstanding.outstanding_count(), ++expected);                                    \
    }
    ZAVL3_REPLIES(CHECK_KEPT)
#undef CHECK_KEPT
    EXPECT_EQ(expected, 24u);
}

TEST_F(OutstandingCommandsTest, DropACommandThatNobodyWaitsFor)
{
    last_xid_number = 4710;
    CommandRecord* record = outstanding.new_command();
    EXPECT_EQ(outstanding.finish_command(record).to_utf8(), "none4711");
    EXPECT_EQ(outstanding.outstanding_count(), 0u);
    EXPECT_EQ(outstanding.find_command(AString("4711")), nullptr);
    EXPECT_EQ(outstanding.find_command(AString("none4711")), nullptr);
}

TEST_F(OutstandingCommandsTest, FindACommandByItsExactXid)
{
    last_xid_number = 41;
    CommandRecord* record = outstanding.new_command();
    EXPECT_EQ(outstanding.find_command(AString("42")), record);
    for (const char* xid : {"", "042", " 42", "42 ", "4", "none42"}) {
        EXPECT_EQ(outstanding.find_command(AString(xid)), nullptr) << xid;
    }
}

TEST_F(OutstandingCommandsTest, ReleaseACommandForGood)
{
    CommandRecord* record = outstanding.new_command();
    const AString xid = record->xid;
    outstanding.release_command(record);
    EXPECT_EQ(outstanding.find_command(xid), nullptr);
    EXPECT_EQ(outstanding.outstanding_count(), 0u);
}

TEST_F(OutstandingCommandsTest, ReportTheReleaseOfARecordThatIsNotTheirs)
{
    CommandRecord* mine = outstanding.new_command();
    CommandRecord released;
    released.xid = mine->xid;
    AssertWatch watch;
    outstanding.release_command(&released);
    EXPECT_EQ(watch.count(), 1u);
    EXPECT_TRUE(watch.saw("zavl3_api", 5313));
    EXPECT_EQ(outstanding.find_command(mine->xid), mine);
}

TEST_F(OutstandingCommandsTest, GiveTheDelegateOfAFinalReplyAndForgetTheCommand)
{
    const AString xid = issue("a")->xid;
    reply::error::Delegate delegate;
    reply::error::Delegate on_error;
    EXPECT_FALSE(outstanding.take_delegates<reply::error>(AString("x"), delegate, on_error));
    EXPECT_TRUE(outstanding.take_delegates<reply::error>(xid, delegate, on_error));
    EXPECT_EQ(outstanding.outstanding_count(), 0u);
    EXPECT_EQ(log.lines, Lines{});
    delegate(AString("m"), ErrorCode{1});
    EXPECT_EQ(log.lines, Lines{"a: error m 1"});
    EXPECT_FALSE(outstanding.take_delegates<reply::error>(xid, delegate, on_error));
}

TEST_F(OutstandingCommandsTest, FailAllWithNoneDoesNothing)
{
    outstanding.fail_all_outstanding();
    EXPECT_EQ(outstanding.outstanding_count(), 0u);
    issue("a");
    outstanding.fail_all_outstanding();
    EXPECT_EQ(log.lines, Lines{failed("a")});
    outstanding.fail_all_outstanding();
    EXPECT_EQ(log.lines.size(), 1u);
}

TEST_F(OutstandingCommandsTest, FailInStringOrderOfTheXids)
{
    last_xid_number = 7;
    for (const std::string name : {"8", "9", "10", "11"}) {
        EXPECT_EQ(issue(name)->xid.to_utf8(), name);
    }
    last_xid_number = 99;
    issue("100");
    outstanding.fail_all_outstanding();
    EXPECT_EQ(log.lines,
              (Lines{failed("10"), failed("100"), failed("11"), failed("8"), failed("9")}));
    EXPECT_EQ(outstanding.outstanding_count(), 0u);
}

TEST_F(OutstandingCommandsTest, FailACommandWithoutAnErrorDelegateInSilence)
{
    outstanding.new_command()->on_ok = log.on_ok("a");
    outstanding.fail_all_outstanding();
    EXPECT_EQ(log.lines, Lines{});
    EXPECT_EQ(outstanding.outstanding_count(), 0u);
}

// An on_error delegate that does something of its own.
struct Reaction {
    static void run(void* reaction, AString, ErrorCode)
    {
        static_cast<Reaction*>(reaction)->react();
    }

    reply::error::Delegate delegate() { return reply::error::Delegate(&run, this); }

    std::function<void()> react;
};

TEST_F(OutstandingCommandsTest, FailEachOnceWhenTheDelegatesFailAllAgain)
{
    last_xid_number = 0;
    Reaction again{[this] {
        log.lines.emplace_back("begin");
        outstanding.fail_all_outstanding();
        log.lines.emplace_back("end");
    }};
    outstanding.new_command()->on_error = again.delegate();
    issue("b");
    outstanding.new_command()->on_error = again.delegate();
    outstanding.fail_all_outstanding();
    EXPECT_EQ(log.lines, (Lines{"begin", "end", failed("b"), "begin", "end"}));
}

TEST_F(OutstandingCommandsTest, FailWhatADelegateIssuesMeanwhileToo)
{
    last_xid_number = 0;
    Reaction issues{[this] {
        issue("later");
        outstanding.fail_all_outstanding(); // as the write on the dead link does
        log.lines.emplace_back("issued");
    }};
    outstanding.new_command()->on_error = issues.delegate();
    issue("b");
    outstanding.fail_all_outstanding();
    EXPECT_EQ(log.lines, (Lines{"issued", failed("b"), failed("later")}));
    EXPECT_EQ(outstanding.outstanding_count(), 0u);
}

TEST_F(OutstandingCommandsTest, ForgetACommandBeforeItsIssuerLearnsThatItFailed)
{
    std::vector<std::uint64_t> counts;
    Reaction count{[&] { counts.push_back(outstanding.outstanding_count()); }};
    for (int i = 0; i < 3; ++i) {
        outstanding.new_command()->on_error = count.delegate();
    }
    outstanding.fail_all_outstanding();
    EXPECT_EQ(counts, (std::vector<std::uint64_t>{2, 1, 0}));
}

TEST_F(OutstandingCommandsTest, CallNoDelegateWhenTheyAreDestroyed)
{
    {
        OutstandingCommands dying;
        CommandRecord* record = dying.new_command();
        record->on_ok = log.on_ok("a");
        record->on_error = log.on_error("a");
        dying.new_command();
    }
    EXPECT_EQ(log.lines, Lines{});
}

TEST_F(OutstandingCommandsTest, LetACommandLeaveItsStreamingDelegateBeforeItFails)
{
    CommandRecord* record = issue("a");
    issue("b");
    EXPECT_EQ(outstanding.enter_delegate(AString("x")), nullptr);
    ASSERT_EQ(outstanding.enter_delegate(record->xid), record);
    outstanding.fail_all_outstanding();
    EXPECT_EQ(outstanding.outstanding_count(), 0u);
    EXPECT_EQ(log.lines, Lines{failed("b")});
    outstanding.leave_delegate(record);
    EXPECT_EQ(log.lines, (Lines{failed("b"), failed("a")}));
}

TEST_F(OutstandingCommandsTest, KeepACommandAfterItsStreamingDelegate)
{
    CommandRecord* record = issue("a");
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(outstanding.enter_delegate(record->xid), record);
        outstanding.leave_delegate(record);
    }
    EXPECT_EQ(log.lines, Lines{});
    outstanding.fail_all_outstanding();
    EXPECT_EQ(log.lines, Lines{failed("a")});
}

// So that a record is filled before anybody else sees it.
TEST_F(OutstandingCommandsTest, KeepOthersOutWhileTheyAreHeld)
{
    std::future<std::uint64_t> count;
    std::promise<void> asking;
    {
        const AMutexLock guard = outstanding.hold();
        count = in_thread([&] {
            asking.set_value();
            return outstanding.outstanding_count();
        });
        await(asking.get_future());
        issue("a");
        issue("b");
    }
    EXPECT_EQ(await(std::move(count)), 2u);
}

} // namespace
