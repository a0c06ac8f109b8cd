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

// ---- The space on its disks

std::string disk_usage(const std::string& total, const std::string& available,
                       const std::string& field_size)
{
    return "<disk_usage><TotalDiskSpace>" + total + "</TotalDiskSpace><AvailableDiskSpace>" +
           available + "</AvailableDiskSpace><FieldSize>" + field_size +
           "</FieldSize></disk_usage>";
}

constexpr const char* most_bytes = "18446744073709551615";

// How a question ended, and its outputs; these are 77 before.
struct Usage {
    Outcome outcome;
    std::vector<std::uint64_t> values;

    bool operator==(const Usage&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Usage& usage)
    {
        return out << usage.outcome << " with " << testing::PrintToString(usage.values);
    }
};

Usage ask_bytes(VeltoHandle handle)
{
    std::uint64_t total = 77;
    std::uint64_t available = 77;
    std::uint32_t field_size = 77;
    const Outcome outcome =
        outcome_of([&] { return velto_disk_usage1(handle, &total, &available, &field_size); });
    return {outcome, {total, available, field_size}};
}

Usage ask_fields(VeltoHandle handle)
{
    std::uint32_t total = 77;
    std::uint32_t available = 77;
    const Outcome outcome =
        outcome_of([&] { return velto_disk_usage2(handle, &total, &available); });
    return {outcome, {total, available}};
}

using AskUsage = Usage (*)(VeltoHandle);

const Usage unknown_bytes{failed_question, {77, 77, 77}};
const Usage unknown_fields{failed_question, {77, 77}};

class DiskUsage : public testing::Test
{
protected:
    Usage answered(AskUsage ask, const std::string& content)
    {
        auto asking = in_thread([=, this] { return ask(session.handle); });
        const ReceivedCommand question = session.link->expect_command();
        EXPECT_EQ(question.bytes,
                  "<cmd>\r\n<xid>" + question.xid + "</xid>\r\n<get_disk_usage />\r\n</cmd>");
        session.link->reply(question.xid, content);
        return await(std::move(asking));
    }

    Session session;
};

TEST_F(DiskUsage, IsTheServersInBytes)
{
    EXPECT_EQ(answered(ask_bytes, disk_usage("10000000001", "20000000003", "4147200")),
              (Usage{succeeded, {10000000001u, 20000000003u, 4147200}}));
    EXPECT_EQ(answered(ask_bytes, disk_usage("0", "0", "0")), (Usage{succeeded, {0, 0, 0}}));
    EXPECT_EQ(answered(ask_bytes, disk_usage(most_bytes, most_bytes, "4294967295")),
              (Usage{succeeded, {18446744073709551615u, 18446744073709551615u, 4294967295u}}));
}

// The bytes, the size of a field, and the fields of whole frames.
struct FieldsRow {
    const char* bytes;
    const char* field_size;
    std::uint64_t fields;
};

const FieldsRow fields_rows[] = {
    {"1000", "3", 332},
    {"0", "3", 0},
    {"2", "3", 0},
    {"3", "3", 0},
    {"5", "3", 0},
    {"6", "3", 2},
    {"6", "1", 6},
    {"7", "1", 6},
    {"4294967294", "1", 4294967294},
    {"4294967295", "1", 4294967294},
    {"4294967296", "1", 4294967295}, // cut only when the half frame is off
    {"4294967297", "1", 4294967295},
    {"8589934591", "2", 4294967294},
    {"8589934592", "2", 4294967295},
    {most_bytes, "1", 4294967295},
    {most_bytes, "4294967295", 4294967295},
    {"18446744065119617025", "4294967295", 4294967294}, // the square of it
};

TEST_F(DiskUsage, IsInWholeFramesInFields)
{
    for (const FieldsRow& row : fields_rows) {
        EXPECT_EQ(answered(ask_fields, disk_usage(row.bytes, "1000", row.field_size)).values[0],
                  row.fields)
            << row.bytes << " of " << row.field_size;
        EXPECT_EQ(answered(ask_fields, disk_usage("1000", row.bytes, row.field_size)).values[1],
                  row.fields);
    }
    EXPECT_EQ(answered(ask_fields, disk_usage("1000", "500", "3")), (Usage{succeeded, {332, 166}}));
}

TEST_F(DiskUsage, IsNotToBeToldInFieldsOfNoSize)
{
    EXPECT_EQ(answered(ask_fields, disk_usage("1000", "500", "0")),
              (Usage{{2, "Internal software error"}, {77, 77}}));
}

TEST_F(DiskUsage, IsUnknownAfterARefusalWhoseTextIsOk)
{
    EXPECT_EQ(answered(ask_bytes, error_content("no disk")), unknown_bytes);
    EXPECT_EQ(answered(ask_fields, error_content("no disk")), unknown_fields);
}

TEST_F(DiskUsage, IsUnknownAfterALoss)
{
    auto bytes = in_thread([this] { return ask_bytes(session.handle); });
    auto fields = in_thread([this] { return ask_fields(session.handle); });
    session.link->expect("get_disk_usage");
    session.link->expect("get_disk_usage");
    session.link->close();
    EXPECT_EQ(await(std::move(bytes)), unknown_bytes);
    EXPECT_EQ(await(std::move(fields)), unknown_fields);
}

TEST_F(DiskUsage, IsWaitedForAlsoWhereCommandsDoNotWait)
{
    velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
    EXPECT_EQ(answered(ask_bytes, disk_usage("9", "8", "7")), (Usage{succeeded, {9, 8, 7}}));
    EXPECT_EQ(answered(ask_fields, disk_usage("90", "80", "7")), (Usage{succeeded, {12, 10}}));
    EXPECT_EQ(answered(ask_fields, error_content("no disk")), unknown_fields);
}

TEST(DiskUsageWithoutHandle, GivesInvalidHandle)
{
    EXPECT_EQ(ask_bytes(0), (Usage{invalid_handle, {77, 77, 77}}));
    EXPECT_EQ(ask_fields(0), (Usage{invalid_handle, {77, 77}}));
}

TEST(DiskUsageWithoutLink, FailsAtOnceAndItsTextIsOk)
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    EXPECT_EQ(ask_bytes(handle), unknown_bytes);
    EXPECT_EQ(ask_fields(handle), unknown_fields);
    velto_close(handle);
}

} // namespace
