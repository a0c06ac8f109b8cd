#include "support/session.h"

#include <vector>

#include <gtest/gtest.h>

namespace
{

constexpr VeltoChar untouched = 0x2A2A;

using Units = std::vector<VeltoChar>;

const std::string some_standard =
    "<video_standard><VideoStandard>720_50p</VideoStandard><VideoRate>50</VideoRate>"
    "<VideoResolution>720p</VideoResolution></video_standard>";

using VideoFunction = VeltoResult (*)(VeltoHandle, std::uint32_t*);

struct VideoRow {
    VideoFunction function;
    std::uint32_t value; // for `some_standard`
};

const VideoRow video_rows[] = {
    {velto_video_standard, 7},
    {velto_video_frequency, 2},
    {velto_video_resolution, 1},
};

class Server : public testing::Test
{
protected:
    // Asks for the server's name, which is `name`, with a buffer of `size`.
    Units name_in(std::uint32_t size, const std::string& name)
    {
        Units units(size + 1, untouched);
        auto asking = calling([&] {
            return velto_server_name(session.handle, {units.data(), size});
        });
        session.link->reply(session.link->expect("get_computer_name").xid,
                            "<computername><ComputerName>" + name +
                                "</ComputerName></computername>");
        EXPECT_EQ(await(std::move(asking)), succeeded);
        return units;
    }

    Session session;
};

TEST_F(Server, TheQuestionsAreTheseBytes)
{
    Units units(4);
    auto naming = calling([&] { return velto_server_name(session.handle, {units.data(), 4}); });
    const ReceivedCommand name = session.link->expect_command();
    EXPECT_EQ(name.bytes,
              "<cmd>\r\n<xid>" + name.xid + "</xid>\r\n<get_computer_name />\r\n</cmd>");
    session.link->reply_error(name.xid, "");
    await(std::move(naming));

    for (const VideoRow& row : video_rows) {
        std::uint32_t value = 77;
        auto asking = calling([&] { return row.function(session.handle, &value); });
        const ReceivedCommand video = session.link->expect_command();
        EXPECT_EQ(video.bytes,
                  "<cmd>\r\n<xid>" + video.xid + "</xid>\r\n<get_video_standard />\r\n</cmd>");
        session.link->reply(video.xid, some_standard);
        EXPECT_EQ(await(std::move(asking)), succeeded);
        EXPECT_EQ(value, row.value);
    }
}

TEST_F(Server, TheNameIsCutToTheBuffer)
{
    EXPECT_EQ(name_in(4, "abc"), (Units{'a', 'b', 'c', 0, untouched}));
    EXPECT_EQ(name_in(3, "abc"), (Units{'a', 'b', 0, untouched}));
    EXPECT_EQ(name_in(1, "abc"), (Units{0, untouched}));
    EXPECT_EQ(name_in(0, "abc"), (Units{untouched}));
    EXPECT_EQ(name_in(3, "a\xF0\x9F\x8E\xAC"), (Units{'a', 0, untouched, untouched}));
    EXPECT_EQ(name_in(4, "a\xF0\x9F\x8E\xAC"), (Units{'a', 0xD83C, 0xDFAC, 0, untouched}));
}

TEST_F(Server, ARefusalWritesNothingAndItsTextIsOk)
{
    Units units(2, untouched);
    auto naming = calling([&] { return velto_server_name(session.handle, {units.data(), 2}); });
    session.link->reply_error(session.link->expect("get_computer_name").xid, "no name");
    EXPECT_EQ(await(std::move(naming)), failed_question);
    EXPECT_EQ(units, (Units{untouched, untouched}));

    for (const VideoRow& row : video_rows) {
        std::uint32_t value = 77;
        auto asking = calling([&] { return row.function(session.handle, &value); });
        session.link->reply_error(session.link->expect("get_video_standard").xid, "no standard");
        EXPECT_EQ(await(std::move(asking)), failed_question);
        EXPECT_EQ(value, 77u);
    }
}

TEST_F(Server, TheLossOfTheLinkFailsAQuestion)
{
    std::uint32_t value = 77;
    auto asking = calling([&] { return velto_video_standard(session.handle, &value); });
    session.link->expect("get_video_standard");
    session.link->close();
    EXPECT_EQ(await(std::move(asking)), failed_question);
    EXPECT_EQ(value, 77u);
}

TEST_F(Server, QuestionsWaitAlsoWhereCommandsDoNot)
{
    velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
    EXPECT_EQ(name_in(4, "abc"), (Units{'a', 'b', 'c', 0, untouched}));
}

TEST(ServerWithoutHandle, EveryQuestionGivesInvalidHandle)
{
    VeltoChar unit = untouched;
    EXPECT_EQ(outcome_of([&] { return velto_server_name(0, {&unit, 1}); }), invalid_handle);
    EXPECT_EQ(unit, untouched);
    for (const VideoRow& row : video_rows) {
        std::uint32_t value = 77;
        EXPECT_EQ(outcome_of([&] { return row.function(0, &value); }), invalid_handle);
        EXPECT_EQ(value, 77u);
    }
}

TEST(ServerWithoutLink, EveryQuestionFailsAtOnceAndItsTextIsOk)
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    VeltoChar unit = untouched;
    EXPECT_EQ(outcome_of([&] { return velto_server_name(handle, {&unit, 1}); }), failed_question);
    EXPECT_EQ(unit, untouched);
    for (const VideoRow& row : video_rows) {
        std::uint32_t value = 77;
        EXPECT_EQ(outcome_of([&] { return row.function(handle, &value); }), failed_question);
        EXPECT_EQ(value, 77u);
    }
    velto_close(handle);
}

} // namespace
