#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <asio.hpp>
#include <gtest/gtest.h>

#include "sim/options.h"
#include "sim/posix/program.h"
#include "sim/server.h"

namespace veltosim
{

namespace
{

using asio::ip::tcp;

class StoreCrashTest : public testing::Test
{
protected:
    std::random_device seed;
    std::filesystem::path directory =
        std::filesystem::temp_directory_path() / ("veltosim_crash_test_" + std::to_string(seed()));
    std::string file = (directory / "store.db").string();
    std::string address =
        asio::ip::address_v4(std::uniform_int_distribution<asio::ip::address_v4::uint_type>(
                                 0x7F010001, 0x7FFEFFFE)(seed))
            .to_string();

    void SetUp() override { std::filesystem::create_directory(directory); }
    void TearDown() override { std::filesystem::remove_all(directory); }

    std::vector<std::string> arguments() const { return {"--address", address, "--store", file}; }

    // All that the server sends for the commands, up to the end of the last reply.
    std::string tell(const std::string& commands, const std::string& ending)
    {
        asio::io_context context;
        tcp::socket client(context);
        client.connect({asio::ip::make_address(address), server_port});
        asio::write(client, asio::buffer(commands));
        std::string received;
        asio::read_until(client, asio::dynamic_buffer(received), ending);
        return received;
    }
    // What a client can see of the store.
    std::string picture()
    {
        std::string commands;
        for (const std::string name : {"download_clipids", "download_directory_names",
                                       "download_listids", "get_disk_usage"}) {
            commands += "<cmd><xid>1</xid><" + name + "/></cmd>";
        }
        for (const std::string clip : {"weather", "kept/clip", "interview", "gone"}) {
            commands += "<cmd><xid>2</xid><get_clip_info><ClipID>" + clip +
                        "</ClipID></get_clip_info></cmd>";
        }
        commands += "<cmd><xid>3</xid><download_metadata><MetadataDatabase>operators"
                    "</MetadataDatabase></download_metadata></cmd>";
        return tell(commands + "<cmd><xid>last</xid><stop><Channel>A</Channel></stop></cmd>",
                    "<xid>last</xid><ok/></reply>");
    }
};

std::string command(const std::string& content)
{
    return "<cmd><xid>0</xid>" + content + "</cmd>";
}

} // namespace

TEST_F(StoreCrashTest, WhatWasAcknowledgedSurvivesAKilledServer)
{
    std::string before;
    {
        Program program(arguments());
        const std::string commands =
            command("<create_clip><ClipID>kept/clip</ClipID><TrackSet><TrackType>video</TrackType>"
                    "</TrackSet></create_clip>") +
            command("<create_directory><DirectoryName>made</DirectoryName></create_directory>") +
            command("<delete_clip><ClipID>countdown</ClipID></delete_clip>") +
            command("<modify_clip_attributes><ClipID>weather</ClipID><ClipAttrChange>"
                    "<Title>Rain &lt;again&gt;</Title><MetadataList><Metadata><Key>k</Key>"
                    "<Value>v</Value></Metadata></MetadataList></ClipAttrChange>"
                    "</modify_clip_attributes>") +
            command("<metadata_set><MetadataDatabase>operators</MetadataDatabase><MetadataList>"
                    "<Metadata><Key>studio 3</Key><Value>Edith</Value></Metadata></MetadataList>"
                    "</metadata_set>") +
            command("<cue_clip><Channel>B</Channel><ClipID>interview</ClipID></cue_clip>") +
            "<cmd><xid>last</xid><rename_clip><FromID>station_ident</FromID><ToID>ident</ToID>"
            "</rename_clip></cmd>";
        std::string acknowledged;
        for (int i = 0; i < 6; ++i) {
            acknowledged += "<reply><xid>0</xid><ok/></reply>";
        }
        acknowledged += "<reply><xid>last</xid><ok/></reply>";
        EXPECT_EQ(tell(commands, "<xid>last</xid><ok/></reply>"), acknowledged);
        before = picture();
        EXPECT_EQ(program.end(SIGKILL), 128 + SIGKILL);
    }
    EXPECT_NE(before.find("<Title>Rain &lt;again&gt;</Title>"), std::string::npos);
    EXPECT_NE(before.find("<ClipID>kept/clip</ClipID>"), std::string::npos);
    EXPECT_NE(before.find("<Value>Edith</Value>"), std::string::npos);
    Program again(arguments());
    // Channels that the scenario loads are loaded again, which their clips' records tell.
    EXPECT_EQ(picture(), before);
    EXPECT_EQ(again.end(SIGTERM), exit_ok);
}

TEST_F(StoreCrashTest, AServerThatIsKilledAgainAndAgainLosesNothing)
{
    for (int round = 0; round < 5; ++round) {
        Program program(arguments());
        const std::string name = "round/" + std::to_string(round);
        EXPECT_EQ(tell("<cmd><xid>1</xid><create_clip><ClipID>" + name +
                           "</ClipID><TrackSet><TrackType>video</TrackType></TrackSet>"
                           "</create_clip></cmd>",
                       "</reply>"),
                  "<reply><xid>1</xid><ok/></reply>");
        program.end(SIGKILL);
    }
    Program program(arguments());
    const std::string names = tell("<cmd><xid>1</xid><download_clipids><DirectoryName>round"
                                   "</DirectoryName></download_clipids></cmd>",
                                   "<ok/></reply>");
    std::string expected;
    for (int round = 0; round < 5; ++round) {
        expected += "<reply><xid>1</xid><clipid><ClipID>round/" + std::to_string(round) +
                    "</ClipID></clipid></reply>";
    }
    EXPECT_EQ(names, expected + "<reply><xid>1</xid><ok/></reply>");
}

TEST_F(StoreCrashTest, AFileThatIsNoStoreEndsTheProgramWithAReason)
{
    std::ofstream(file) << "This is a text, and no database at all, of some length.";
    const Ended ended = run_to_end(arguments());
    EXPECT_EQ(ended.text, "veltosim: " + file + ": is no store of this simulator\n");
    EXPECT_EQ(ended.code, exit_store);
}

TEST_F(StoreCrashTest, TwoServersDoNotShareAStore)
{
    Program first(arguments());
    const Ended second = run_to_end({"--address", "127.0.0.1", "--store", file});
    EXPECT_EQ(second.text, "veltosim: " + file + ": is in use by another process\n");
    EXPECT_EQ(second.code, exit_store);
}

} // namespace veltosim
