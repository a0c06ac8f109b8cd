#include "support/clip_rows.h"
#include "support/command_script.h"
#include "support/xml_text.h"

#include <set>

#include <gtest/gtest.h>

namespace
{

constexpr const VeltoChar* clip = VELTO_TEXT("news_open");

std::string clipexists(const std::string& exists)
{
    return "<clipexists><ClipID>news_open</ClipID><Exists>" + exists + "</Exists></clipexists>";
}

class Clips : public CommandScript
{
protected:
    struct Answer {
        Outcome outcome;
        std::uint32_t exists;

        bool operator==(const Answer&) const = default;
        friend std::ostream& operator<<(std::ostream& out, const Answer& answer)
        {
            return out << answer.outcome << " with " << answer.exists;
        }
    };

    // Asks whether the clip exists, while the server answers with `content`.
    Answer ask(const std::string& content)
    {
        std::uint32_t exists = 77;
        auto asking = calling([&] { return velto_clip_exists(session.handle, clip, &exists); });
        session.link->reply(expect_lines(session, {"<clip_exists>", "<ClipID>news_open</ClipID>",
                                                   "</clip_exists>"}),
                            content);
        const Outcome outcome = await(std::move(asking));
        return {outcome, exists};
    }
};

TEST_F(Clips, SendTheseBytes)
{
    expect_bytes(clip_rows());
}

TEST(ClipRows, AreOfAllEightCommands)
{
    std::set<std::string> functions;
    for (const WireRow& row : clip_rows()) {
        functions.insert(row.function);
    }
    EXPECT_EQ(functions.size(), 8u);
}

TEST_F(Clips, EveryCommandGivesTheServersMessage)
{
    expect_refusals(clip_rows());
}

TEST_F(Clips, EveryCommandSucceedsAtOnceWhereCommandsDoNotWait)
{
    expect_no_wait(clip_rows());
}

TEST_F(Clips, ALossFailsEveryCommandThatWaits)
{
    expect_failure_at_loss(clip_rows());
}

TEST(ClipsWithoutHandle, EveryCommandGivesInvalidHandle)
{
    expect_invalid_handle(clip_rows());
}

TEST(ClipsWithoutLink, EveryCommandFailsAtOnce)
{
    expect_failure_without_link(clip_rows());
}

TEST_F(Clips, ExistOrNot)
{
    EXPECT_EQ(ask(clipexists("true")), (Answer{succeeded, 1}));
    EXPECT_EQ(ask(clipexists("false")), (Answer{succeeded, 0}));
    EXPECT_EQ(ask(clipexists("-7")), (Answer{succeeded, 1}));
    EXPECT_EQ(ask(clipexists("0")), (Answer{succeeded, 0}));
}

// The text of the failure stays, which most questions lose.
TEST_F(Clips, DoNotExistWhereTheQuestionIsRefused)
{
    EXPECT_EQ(ask(error_content("No access", "general")), (Answer{{2, "No access"}, 0}));
    EXPECT_EQ(ask(error_content("Not found", "clipnotfound")), (Answer{{2, "Not found"}, 0}));
}

TEST_F(Clips, DoNotExistWhereTheLinkIsLost)
{
    std::uint32_t exists = 77;
    auto asking = calling([&] { return velto_clip_exists(session.handle, clip, &exists); });
    session.link->expect("clip_exists");
    session.link->close();
    EXPECT_EQ(await(std::move(asking)), link_failed);
    EXPECT_EQ(exists, 0u);
}

TEST_F(Clips, MayExistForNobody)
{
    for (const std::string& content : {clipexists("true"), error_content("No access")}) {
        auto asking = calling([&] { return velto_clip_exists(session.handle, clip, nullptr); });
        session.link->reply(session.link->expect("clip_exists").xid, content);
        EXPECT_EQ(await(std::move(asking)).result, content == clipexists("true") ? 0 : 2);
    }
    EXPECT_EQ(outcome_of([&] { return velto_clip_exists(0, clip, nullptr); }), invalid_handle);
}

TEST_F(Clips, AreAskedForAlsoWhereCommandsDoNotWait)
{
    velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
    EXPECT_EQ(ask(clipexists("true")), (Answer{succeeded, 1}));
    EXPECT_EQ(ask(error_content("No access")), (Answer{{2, "No access"}, 0}));
}

TEST(ClipsWithoutHandle, DoNotExist)
{
    std::uint32_t exists = 77;
    EXPECT_EQ(outcome_of([&] { return velto_clip_exists(0, clip, &exists); }), invalid_handle);
    EXPECT_EQ(exists, 0u);
}

TEST(ClipsWithoutLink, DoNotExist)
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    std::uint32_t exists = 77;
    EXPECT_EQ(outcome_of([&] { return velto_clip_exists(handle, clip, &exists); }), link_failed);
    EXPECT_EQ(exists, 0u);
    velto_close(handle);
}

// Two functions that are there for programs that link against them.
TEST_F(Clips, CannotBeMadeReadOnly)
{
    const Outcome not_implemented{2, "Not implemented"};
    for (const auto function : {velto_set_readonly, velto_unset_readonly}) {
        EXPECT_EQ(outcome_of([&] { return function(session.handle, clip); }), not_implemented);
        velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
        EXPECT_EQ(outcome_of([&] { return function(session.handle, nullptr); }), not_implemented);
        velto_synchronous(session.handle, VELTO_COMMANDS_WAIT);
        EXPECT_EQ(outcome_of([&] { return function(0, clip); }), invalid_handle);
    }
    session.settle(); // nothing was sent
}

} // namespace
