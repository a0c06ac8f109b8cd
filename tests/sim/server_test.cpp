#include "sim/server.h"

#include <chrono>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <asio.hpp>
#include <gtest/gtest.h>

#include "sim/command_stream.h"
#include "sim/scenario.h"

namespace veltosim
{

namespace
{

using asio::ip::tcp;
using namespace std::chrono_literals;

// Only a hang lasts so long.
constexpr auto longest_wait = 30s;

// Server and clients run on the test's own thread, whenever the test waits for something.
class ServerTest : public testing::Test
{
protected:
    asio::io_context context;
    Station station{"studio", *find_standard("1080_50i"), default_scenario().clips};
    Log log{false};
    asio::ip::address_v4 address;
    std::unique_ptr<Server> server;

    void SetUp() override
    {
        std::random_device seed;
        std::uniform_int_distribution<asio::ip::address_v4::uint_type> host(0x7F010001, 0x7FFEFFFE);
        while (!server) {
            address = asio::ip::address_v4(host(seed));
            listen();
        }
    }

    void listen()
    {
        try {
            server = std::make_unique<Server>(context, address, station, log);
        } catch (const asio::system_error& problem) {
            ASSERT_EQ(problem.code(), asio::error::address_in_use);
        }
    }

    template <class Condition>
    void run_until(const Condition& condition)
    {
        const auto limit = std::chrono::steady_clock::now() + longest_wait;
        context.restart();
        while (!condition()) {
            ASSERT_LT(std::chrono::steady_clock::now(), limit) << "nothing came";
            context.run_one_for(1s);
        }
    }

    void control(const std::string& line)
    {
        EXPECT_EQ(obey_control(station.faults, line).substr(0, 4), "ok: ") << line;
    }

    tcp::socket connect()
    {
        tcp::socket client(context);
        client.connect({address, server_port});
        return client;
    }

    // What the server sends until `ending` has come, or until it closes the connection.
    std::string receive(tcp::socket& client, std::string_view ending)
    {
        std::string received;
        std::error_code result;
        bool done = false;
        asio::async_read_until(client, asio::dynamic_buffer(received), ending,
                               [&](const std::error_code& error, std::size_t) {
                                   result = error;
                                   done = true;
                               });
        run_until([&] { return done; });
        return result ? received + "(closed)" : received;
    }

    std::string ask(tcp::socket& client, const std::string& bytes)
    {
        asio::write(client, asio::buffer(bytes));
        return receive(client, "</reply>");
    }

    // A client that receives more than the answers to what it asks.
    struct Listener {
        tcp::socket socket;
        std::string received;
    };

    // What has come up to `ending`; the rest is for the next time.
    std::string next(Listener& client, std::string_view ending)
    {
        std::error_code result;
        std::size_t end = 0;
        bool done = false;
        asio::async_read_until(client.socket, asio::dynamic_buffer(client.received), ending,
                               [&](const std::error_code& error, std::size_t count) {
                                   result = error;
                                   end = count;
                                   done = true;
                               });
        run_until([&] { return done; });
        const std::string message = result ? "(closed)" : client.received.substr(0, end);
        client.received.erase(0, end);
        return message;
    }
    std::string next_report(Listener& client) { return next(client, "</report>"); }

    std::string ask(Listener& client, const std::string& bytes)
    {
        asio::write(client.socket, asio::buffer(bytes));
        return next(client, "</reply>");
    }
};

std::string command(int xid, const std::string& content)
{
    return "<cmd>\r\n<xid>" + std::to_string(xid) + "</xid>\r\n" + content + "\r\n</cmd>";
}

std::string ok(int xid)
{
    return "<reply><xid>" + std::to_string(xid) + "</xid><ok/></reply>";
}

std::string registering(const std::string& type)
{
    return "<channel_report_register><Channel>A</Channel><ChannelReportType>" + type +
           "</ChannelReportType></channel_report_register>";
}

std::string status_report(const std::string& word, const std::string& clip = "")
{
    return "<report><channel_status><Channel>A</Channel><ChannelStatus>" + word +
           "</ChannelStatus>" + (clip.empty() ? "" : "<ClipID>" + clip + "</ClipID>") +
           "</channel_status></report>";
}

std::string speed_report(const std::string& speed)
{
    return "<report><channel_speed><Channel>A</Channel><Speed>" + speed +
           "</Speed></channel_speed></report>";
}

int position_in(const std::string& report)
{
    const std::string tag = "<ClipPosition>";
    const std::size_t begin = report.find(tag);
    return begin == report.npos ? -1 : std::stoi(report.substr(begin + tag.size()));
}

const std::string cue_a = "<cue_clip><Channel>A</Channel><ClipID>news_open</ClipID></cue_clip>";
const std::string play_a = "<play><Channel>A</Channel></play>";
const std::string stop_a = "<stop><Channel>A</Channel></stop>";

const std::string name_of_studio =
    "<computername><ComputerName>studio</ComputerName></computername>";

} // namespace

TEST_F(ServerTest, AnswersOverTheSocket)
{
    tcp::socket client = connect();
    EXPECT_EQ(ask(client, command(1, "<get_computer_name />")),
              "<reply><xid>1</xid>" + name_of_studio + "</reply>");
}

TEST_F(ServerTest, ManyCommandsInOneBlockAreAnsweredInTheirOrder)
{
    tcp::socket client = connect();
    std::string commands;
    std::string replies;
    for (int xid = 1; xid <= 500; ++xid) {
        commands += command(xid, "<stop><Channel>A</Channel></stop>");
        replies += ok(xid);
    }
    asio::write(client, asio::buffer(commands));
    EXPECT_EQ(receive(client, ok(500)), replies);
}

TEST_F(ServerTest, ACommandMayComeByteByByte)
{
    tcp::socket client = connect();
    client.set_option(tcp::no_delay(true));
    for (const char byte : command(1, "<stop><Channel>A</Channel></stop>")) {
        asio::write(client, asio::buffer(&byte, 1));
        context.restart();
        context.poll();
    }
    EXPECT_EQ(receive(client, "</reply>"), ok(1));
}

TEST_F(ServerTest, ClientsShareTheChannels)
{
    tcp::socket first = connect();
    tcp::socket second = connect();
    const std::string cue = "<cue_clip><Channel>A</Channel><ClipID>news_open</ClipID></cue_clip>";
    const std::string play = "<play><Channel>A</Channel></play>";
    EXPECT_NE(ask(second, command(1, play)).find("nothing loaded"), std::string::npos);
    EXPECT_EQ(ask(first, command(1, cue)), ok(1));
    EXPECT_EQ(ask(second, command(2, play)), ok(2));
}

TEST_F(ServerTest, JunkDropsTheClientAndNoOther)
{
    tcp::socket good = connect();
    for (const std::string& junk :
         {std::string("GET / HTTP/1.0\r\n\r\n"), std::string("<cmd><xid>1</xid><stop></cmd>"),
          std::string("<cmd>\xFF</cmd>"), std::string(5000, '\0')}) {
        tcp::socket bad = connect();
        asio::write(bad, asio::buffer(junk));
        EXPECT_EQ(receive(bad, "</reply>"), "(closed)");
    }
    EXPECT_EQ(ask(good, command(1, "<stop><Channel>A</Channel></stop>")), ok(1));
}

TEST_F(ServerTest, ACommandWithoutEndDropsTheClient)
{
    tcp::socket client = connect();
    const std::string endless = "<cmd>" + std::string(2 * CommandStream::largest_command, 'x');
    bool ended = false;
    asio::async_write(client, asio::buffer(endless),
                      [&](const std::error_code&, std::size_t) { ended = true; });
    EXPECT_EQ(receive(client, "</reply>"), "(closed)");
    run_until([&] { return ended; });
}

TEST_F(ServerTest, RepliesStillComeWhenTheClientHasFinishedSending)
{
    tcp::socket client = connect();
    asio::write(client, asio::buffer(command(1, "<stop><Channel>A</Channel></stop>")));
    client.shutdown(tcp::socket::shutdown_send);
    EXPECT_EQ(receive(client, "nothing that comes"), ok(1) + "(closed)");
}

TEST_F(ServerTest, AClientThatDoesNotReadIsNotReadEither)
{
    tcp::socket client = connect();
    constexpr std::size_t commands_a_block = 1000;
    constexpr std::size_t most_blocks = 2000;
    std::string block;
    for (std::size_t i = 0; i < commands_a_block; ++i) {
        block += command(1, "<stop><Channel>A</Channel></stop>");
    }

    // How much fits before the server reads no more is the system's matter.
    std::size_t blocks = 0;
    bool stalled = false;
    bool sent = true;
    context.restart();
    while (!stalled && blocks < most_blocks) {
        sent = false;
        ++blocks;
        asio::async_write(client, asio::buffer(block),
                          [&](const std::error_code& error, std::size_t) {
                              EXPECT_FALSE(error);
                              sent = true;
                          });
        while (!sent && !stalled) {
            stalled = context.run_one_for(500ms) == 0;
        }
    }
    ASSERT_TRUE(stalled) << "the server reads on";

    // Reading sets all going again.
    const std::size_t expected = blocks * commands_a_block * ok(1).size();
    std::size_t received = 0;
    std::vector<char> replies(65536);
    std::function<void()> read = [&] {
        client.async_read_some(asio::buffer(replies),
                               [&](const std::error_code& error, std::size_t count) {
                                   ASSERT_FALSE(error);
                                   received += count;
                                   if (received < expected) {
                                       read();
                                   }
                               });
    };
    read();
    run_until([&] { return sent && received >= expected; });
    EXPECT_EQ(received, expected);
}

TEST_F(ServerTest, StopClosesAllClientsAndTheAddressIsFreeAtOnce)
{
    tcp::socket first = connect();
    tcp::socket second = connect();
    EXPECT_EQ(ask(first, command(1, "<stop><Channel>A</Channel></stop>")), ok(1));
    EXPECT_EQ(ask(second, command(1, "<stop><Channel>A</Channel></stop>")), ok(1));
    server->stop();
    EXPECT_EQ(receive(first, "</reply>"), "(closed)");
    EXPECT_EQ(receive(second, "</reply>"), "(closed)");
    server.reset();
    listen();
    ASSERT_TRUE(server);
    tcp::socket again = connect();
    EXPECT_EQ(ask(again, command(1, "<stop><Channel>A</Channel></stop>")), ok(1));
}

TEST_F(ServerTest, ASecondServerAtTheAddressIsRefused)
{
    try {
        Server second(context, address, station, log);
        FAIL() << "two servers at one address";
    } catch (const asio::system_error& problem) {
        EXPECT_EQ(problem.code(), asio::error::address_in_use);
    }
}

TEST_F(ServerTest, EachClientGetsTheReportsThatItRegistered)
{
    Listener first{connect(), {}};
    Listener second{connect(), {}};
    EXPECT_EQ(ask(first, command(1, registering("status"))), ok(1));
    EXPECT_EQ(next_report(first), status_report("idle"));
    EXPECT_EQ(ask(second, command(1, registering("speed"))), ok(1));
    EXPECT_EQ(next_report(second), speed_report("0X"));

    EXPECT_EQ(ask(second, command(2, cue_a)), ok(2));
    EXPECT_EQ(next_report(first), status_report("cueing", "news_open"));
    EXPECT_EQ(next_report(first), status_report("stop", "news_open"));
    EXPECT_EQ(ask(first, command(2, play_a)), ok(2));
    EXPECT_EQ(next_report(first), status_report("play", "news_open"));
    EXPECT_EQ(next_report(second), speed_report("1X"));
    EXPECT_EQ(ask(second, command(3, stop_a)), ok(3));
    EXPECT_EQ(next_report(second), speed_report("0X"));
    EXPECT_EQ(next_report(first), status_report("stop", "news_open"));
}

TEST_F(ServerTest, ChangesOfTheStoreAreToldToWhoeverWantsThem)
{
    Listener writer{connect(), {}};
    Listener clips{connect(), {}};
    Listener directories{connect(), {}};
    const auto registering_for = [](const std::string& type) {
        return "<report_register><ReportType>" + type + "</ReportType></report_register>";
    };
    EXPECT_EQ(ask(writer, command(1, registering_for("clip_change"))), ok(1));
    EXPECT_EQ(ask(clips, command(1, registering_for("clip_change"))), ok(1));
    EXPECT_EQ(ask(directories, command(1, registering_for("directory_change"))), ok(1));

    const auto told = [](const std::string& kind, const std::string& tag, const std::string& id) {
        return "<report><" + kind + "><" + tag + ">" + id + "</" + tag + "></" + kind +
               "></report>";
    };
    // The reply comes first, and each report before the reply to the next command.
    const std::string commands =
        command(2, "<create_clip><ClipID>d/x</ClipID><TrackSet><TrackType>video</TrackType>"
                   "</TrackSet></create_clip>") +
        command(3, "<create_clip><ClipID>d/x</ClipID><TrackSet /></create_clip>") +
        command(4, "<modify_clip_attributes><ClipID>d/x</ClipID><ClipAttrChange><Title>t</Title>"
                   "</ClipAttrChange></modify_clip_attributes>") +
        command(5, "<delete_clip><ClipID>d/x</ClipID></delete_clip>");
    asio::write(writer.socket, asio::buffer(commands));
    EXPECT_EQ(next_report(writer), ok(2) + told("clip_created", "ClipID", "d/x"));
    EXPECT_EQ(next(writer, "</reply>"),
              "<reply><xid>3</xid><error><ErrorMessage>studio: create_clip: there is a clip 'd/x' "
              "already</ErrorMessage><ErrorCode>general</ErrorCode></error></reply>");
    EXPECT_EQ(next_report(writer), ok(4) + told("clip_changed", "ClipID", "d/x"));
    EXPECT_EQ(next_report(writer), ok(5) + told("clip_deleted", "ClipID", "d/x"));
    EXPECT_EQ(next_report(clips), told("clip_created", "ClipID", "d/x"));
    EXPECT_EQ(next_report(clips), told("clip_changed", "ClipID", "d/x"));
    EXPECT_EQ(next_report(clips), told("clip_deleted", "ClipID", "d/x"));
    EXPECT_EQ(next_report(directories), told("directory_created", "DirectoryName", "d"));
    EXPECT_EQ(next_report(directories), told("directory_deleted", "DirectoryName", "d"));
    EXPECT_EQ(ask(directories, command(2, stop_a)), ok(2)) << "it gets nothing else";
}

TEST_F(ServerTest, NamesStreamBeforeTheirOk)
{
    tcp::socket client = connect();
    asio::write(client, asio::buffer(command(1, "<download_listids />")));
    const auto listid = [](const std::string& name) {
        return "<reply><xid>1</xid><listid><ListID>" + name + "</ListID></listid></reply>";
    };
    EXPECT_EQ(receive(client, ok(1)), listid("evening_news") + listid("idents") + listid("promos") +
                                          listid("sport_desk") + ok(1));
}

TEST_F(ServerTest, AClientThatDoesNotReadItsNewsIsDropped)
{
    Listener silent{connect(), {}};
    Listener other{connect(), {}};
    const std::string database = "<MetadataDatabase>db</MetadataDatabase>";
    EXPECT_EQ(ask(silent, command(1, "<watch_metadata_database>" + database +
                                         "</watch_metadata_database>")),
              ok(1));
    // Each is a report as long, and all together more than is kept and the system buffers.
    const std::string set = "<metadata_set>" + database + "<MetadataList><Metadata><Key>k</Key>" +
                            "<Value>" + std::string(30000, 'v') +
                            "</Value></Metadata></MetadataList></metadata_set>";
    for (int xid = 1; xid <= 1500; ++xid) {
        ASSERT_EQ(ask(other, command(xid, set)), ok(xid));
    }
    std::size_t reports = 0;
    for (std::string last; last != "(closed)"; ++reports) {
        last = next_report(silent);
        ASSERT_TRUE(last == "(closed)" || last.ends_with("</report>"));
    }
    EXPECT_LT(reports, 1500u);
}

TEST_F(ServerTest, MetadataIsToldToAllWatchersTheWriterIncluded)
{
    Listener writer{connect(), {}};
    Listener watcher{connect(), {}};
    const std::string database = "<MetadataDatabase>db</MetadataDatabase>";
    const std::string watch = "<watch_metadata_database>" + database + "</watch_metadata_database>";
    EXPECT_EQ(ask(writer, command(1, watch)), ok(1));
    EXPECT_EQ(ask(watcher, command(1, watch)), ok(1));
    const std::string pair = "<MetadataList><Metadata><Key>k</Key><Value>v</Value></Metadata>"
                             "</MetadataList>";
    EXPECT_EQ(ask(writer, command(2, "<metadata_set>" + database + pair + "</metadata_set>")),
              ok(2));
    const std::string change = "<report><metadata_change>" + database +
                               "<MetadataPrefix></MetadataPrefix>" + pair +
                               "</metadata_change></report>";
    EXPECT_EQ(next_report(writer), change);
    EXPECT_EQ(next_report(watcher), change);
    EXPECT_EQ(ask(watcher, command(2, "<unwatch_metadata_database>" + database +
                                          "</unwatch_metadata_database>")),
              ok(2));
    EXPECT_EQ(ask(writer, command(3, "<metadata_erase>" + database +
                                         "<KeyList><Key>k</Key></KeyList></metadata_erase>")),
              ok(3));
    EXPECT_EQ(next_report(writer), "<report><metadata_remove>" + database +
                                       "<MetadataPrefix></MetadataPrefix><KeyList><Key>k</Key>"
                                       "</KeyList></metadata_remove></report>");
    EXPECT_EQ(ask(watcher, command(3, stop_a)), ok(3)) << "it watches no more";
}

TEST_F(ServerTest, ALinkIsDroppedBehindAMessage)
{
    tcp::socket client = connect();
    tcp::socket other = connect();
    EXPECT_EQ(ask(other, command(1, stop_a)), ok(1));
    control("drop after 2");
    asio::write(client, asio::buffer(command(1, stop_a) + command(2, stop_a) + command(3, cue_a)));
    EXPECT_EQ(receive(client, "nothing that comes"), ok(1) + ok(2) + "(closed)");
    EXPECT_EQ(ask(other, command(2, stop_a)), ok(2));
    EXPECT_NE(ask(other, command(3, play_a)).find("nothing loaded"), std::string::npos)
        << "what came behind is not obeyed";
    tcp::socket again = connect();
    EXPECT_EQ(ask(again, command(1, stop_a)), ok(1));
}

TEST_F(ServerTest, ALinkIsDroppedInTheMiddleOfAList)
{
    tcp::socket client = connect();
    control("drop after 2");
    asio::write(client, asio::buffer(command(1, "<download_listids />")));
    EXPECT_EQ(receive(client, "nothing that comes"),
              "<reply><xid>1</xid><listid><ListID>evening_news</ListID></listid></reply>"
              "<reply><xid>1</xid><listid><ListID>idents</ListID></listid></reply>(closed)");
}

TEST_F(ServerTest, EachLinkIsDroppedBehindItsMessages)
{
    control("drop every 2");
    for (int i = 0; i < 3; ++i) {
        tcp::socket client = connect();
        EXPECT_EQ(ask(client, command(1, stop_a)), ok(1));
        asio::write(client, asio::buffer(command(2, stop_a)));
        EXPECT_EQ(receive(client, "nothing that comes"), ok(2) + "(closed)");
    }
}

TEST_F(ServerTest, ALinkIsDroppedBetweenACommandAndItsReply)
{
    tcp::socket client = connect();
    Listener other{connect(), {}};
    EXPECT_EQ(ask(other, command(1, "<report_register><ReportType>directory_change</ReportType>"
                                    "</report_register>")),
              ok(1));
    control("drop before-reply create_directory");
    asio::write(client, asio::buffer(command(1, stop_a) +
                                     command(2, "<create_directory><DirectoryName>d</DirectoryName>"
                                                "</create_directory>")));
    EXPECT_EQ(receive(client, "nothing that comes"), ok(1) + "(closed)");
    EXPECT_EQ(next_report(other), "<report><directory_created><DirectoryName>d</DirectoryName>"
                                  "</directory_created></report>");
}

TEST_F(ServerTest, AllLinksAreDroppedAtOnce)
{
    tcp::socket first = connect();
    tcp::socket second = connect();
    EXPECT_EQ(ask(first, command(1, stop_a)), ok(1));
    EXPECT_EQ(ask(second, command(1, stop_a)), ok(1));
    EXPECT_EQ(obey_control(station.faults, "drop now"), "ok: 2 links are dropped");
    EXPECT_EQ(receive(first, "nothing that comes"), "(closed)");
    EXPECT_EQ(receive(second, "nothing that comes"), "(closed)");
}

TEST_F(ServerTest, WritesInPiecesArriveWhole)
{
    tcp::socket client = connect();
    control("split 7");
    std::string commands;
    std::string replies;
    for (int xid = 1; xid <= 100; ++xid) {
        commands += command(xid, stop_a);
        replies += ok(xid);
    }
    asio::write(client, asio::buffer(commands));
    EXPECT_EQ(receive(client, ok(100)), replies);
}

TEST_F(ServerTest, GarbageIsSentBehindAMessageAndAtOnce)
{
    tcp::socket client = connect();
    control("garbage after 1 <<x>");
    asio::write(client, asio::buffer(command(1, stop_a) + command(2, stop_a)));
    EXPECT_EQ(receive(client, ok(2)), ok(1) + "<<x>" + ok(2));
    EXPECT_EQ(obey_control(station.faults, "garbage"), "ok: 1 links got garbage");
    EXPECT_EQ(receive(client, "</reply>"), "<reply><xid>garbage</reply>");
}

TEST_F(ServerTest, EverythingComesLateAndInOrder)
{
    tcp::socket client = connect();
    control("delay 200");
    const auto begin = std::chrono::steady_clock::now();
    asio::write(client, asio::buffer(command(1, stop_a)));
    EXPECT_EQ(receive(client, ok(1)), ok(1));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 200ms);

    asio::write(client, asio::buffer(command(2, stop_a)));
    context.restart();
    context.run_one_for(longest_wait); // until it is obeyed: the reply waits now
    control("clear");
    asio::write(client, asio::buffer(command(3, stop_a)));
    client.shutdown(tcp::socket::shutdown_send);
    EXPECT_EQ(receive(client, "nothing that comes"), ok(2) + ok(3) + "(closed)");
}

TEST_F(ServerTest, PositionsGoOnComingWhileAChannelMoves)
{
    Listener client{connect(), {}};
    EXPECT_EQ(ask(client, command(1, cue_a)), ok(1));
    EXPECT_EQ(ask(client, command(2, registering("timecode"))), ok(2));
    EXPECT_EQ(position_in(next_report(client)), 0);
    EXPECT_EQ(ask(client, command(3, play_a)), ok(3));
    int last = 0;
    for (int i = 0; i < 20; ++i) {
        const int position = position_in(next_report(client));
        EXPECT_GT(position, last);
        last = position;
    }
}

TEST_F(ServerTest, ReportsGoOnForTheOthersWhenAClientLeaves)
{
    Listener leaving{connect(), {}};
    Listener staying{connect(), {}};
    for (Listener* client : {&leaving, &staying}) {
        EXPECT_EQ(ask(*client, command(1, registering("status"))), ok(1));
        EXPECT_EQ(next_report(*client), status_report("idle"));
    }
    leaving.socket.close();
    EXPECT_EQ(ask(staying, command(2, cue_a)), ok(2));
    EXPECT_EQ(next_report(staying), status_report("cueing", "news_open"));
    EXPECT_EQ(next_report(staying), status_report("stop", "news_open"));
}

TEST_F(ServerTest, AClientThatDoesNotReadMissesReportsAndHoldsUpNobody)
{
    Listener silent{tcp::socket(context, tcp::v4()), {}};
    silent.socket.set_option(tcp::socket::receive_buffer_size(16384));
    silent.socket.connect({address, server_port});
    Listener other{connect(), {}};
    EXPECT_EQ(ask(silent, command(1, registering("info"))), ok(1));
    EXPECT_NE(next_report(silent).find("<ClipID></ClipID>"), std::string::npos);

    // Each is a change to report, and all together far more than what is kept for a client.
    constexpr int changes = 20000;
    constexpr int changes_a_block = 1000;
    for (int xid = 1; xid < changes; xid += changes_a_block) {
        std::string block;
        for (int i = 0; i < changes_a_block; ++i) {
            block += command(xid + i, "<ee><Channel>A</Channel><SonyEditMask>" + std::to_string(i) +
                                          "</SonyEditMask><AutoEE>true" + "</AutoEE></ee>");
        }
        asio::write(other.socket, asio::buffer(block));
        EXPECT_EQ(next(other, ok(xid + changes_a_block - 1)).substr(0, ok(xid).size()), ok(xid));
    }
    EXPECT_EQ(ask(other, command(1, "<ee><Channel>A</Channel><SonyEditMask>1023</SonyEditMask>"
                                    "<AutoEE>true</AutoEE></ee>")),
              ok(1));

    // Whatever was left out, the last one is what is true.
    int reports = 0;
    for (std::string report; report.find("<SonyEditMask>1023<") == std::string::npos; ++reports) {
        report = next_report(silent);
        ASSERT_TRUE(report.ends_with("</report>")) << report;
    }
    EXPECT_LT(reports, changes);
}

} // namespace veltosim
