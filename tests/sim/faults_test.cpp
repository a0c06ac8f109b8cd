#include "sim/faults.h"

#include <string>

#include <gtest/gtest.h>

#include "commands_fixture.h"

namespace veltosim
{

namespace
{

class FaultsTest : public CommandsTest
{
protected:
    std::string control(const std::string& line) { return obey_control(station.faults, line); }
};

const std::string stop_a = "<stop><Channel>A</Channel></stop>";

} // namespace

TEST_F(FaultsTest, ACommandIsRefusedByItsName)
{
    EXPECT_EQ(control("refuse stop"), "ok: stop is refused");
    EXPECT_EQ(answer_to(stop_a), error("stop: it is refused on purpose"));
    EXPECT_EQ(control("  refuse \t stop  out of  order \r"), "ok: stop is refused");
    EXPECT_EQ(answer_to(stop_a), error("stop: out of  order"));
    EXPECT_EQ(answer_to("<stop />"), error("stop: out of  order")) << "whatever it holds";
    EXPECT_NE(answer_to("<get_computer_name />").find("studio"), std::string::npos);
    EXPECT_EQ(control("allow stop"), "ok: stop is obeyed");
    obey(stop_a);
}

TEST_F(FaultsTest, AReplyIsSwallowedOnce)
{
    EXPECT_EQ(control("drop before-reply"),
              "ok: the link is dropped before the reply to the next command");
    EXPECT_TRUE(answers_to(stop_a).empty());
    obey(stop_a);
    EXPECT_EQ(control("drop before-reply metadata_set"),
              "ok: the link is dropped before the reply to metadata_set");
    obey(stop_a);
    registrations.metadata.emplace("d", "");
    EXPECT_TRUE(answers_to("<metadata_set><MetadataDatabase>d</MetadataDatabase><MetadataList>"
                           "<Metadata><Key>k</Key><Value>v</Value></Metadata></MetadataList>"
                           "</metadata_set>")
                    .empty());
    EXPECT_EQ(told().size(), 1u) << "it was obeyed";
}

TEST_F(FaultsTest, MessagesAreCountedDown)
{
    Faults& faults = station.faults;
    EXPECT_EQ(control("drop after 2"), "ok: a link is dropped behind message 2 from now");
    EXPECT_FALSE(faults.message_sent(1).drop);
    EXPECT_TRUE(faults.message_sent(1).drop);
    EXPECT_FALSE(faults.message_sent(2).drop);
    EXPECT_EQ(control("drop every 3"), "ok: each link is dropped behind its message 3");
    EXPECT_FALSE(faults.message_sent(2).drop);
    EXPECT_TRUE(faults.message_sent(3).drop);
    EXPECT_TRUE(faults.message_sent(3).drop);
    EXPECT_EQ(control("garbage after 1 <x> y"),
              "ok: a link gets garbage behind message 1 from now");
    EXPECT_EQ(faults.message_sent(1).garbage, "<x> y");
    EXPECT_EQ(faults.message_sent(1).garbage, std::nullopt);
}

TEST_F(FaultsTest, LinksAreReachedWhileThereIsAServer)
{
    EXPECT_EQ(control("drop now"), "error: there are no links yet");
    EXPECT_EQ(control("garbage"), "error: there are no links yet");
    std::string sent;
    station.faults.drop_links = [] { return std::size_t{2}; };
    station.faults.send_to_links = [&](const std::string& text) {
        sent = text;
        return std::size_t{3};
    };
    EXPECT_EQ(control("drop now"), "ok: 2 links are dropped");
    EXPECT_EQ(control("garbage"), "ok: 3 links got garbage");
    EXPECT_EQ(sent, "<reply><xid>garbage</reply>");
    EXPECT_EQ(control("garbage </a> b"), "ok: 3 links got garbage");
    EXPECT_EQ(sent, "</a> b");
}

TEST_F(FaultsTest, DelayAndPiecesAreSet)
{
    EXPECT_EQ(control("delay 200"), "ok: all is sent 200 ms late");
    EXPECT_EQ(station.faults.delay, 200ms);
    EXPECT_EQ(control("split 7"), "ok: writes are split into pieces of 7 bytes");
    EXPECT_EQ(station.faults.piece, 7u);
    EXPECT_EQ(control("split 0"), "ok: writes are whole");
    EXPECT_EQ(station.faults.piece, 0u);
}

TEST_F(FaultsTest, ClearEndsThemAll)
{
    for (const char* line : {"refuse stop", "delay 5", "split 5", "drop after 1", "drop every 1",
                             "drop before-reply", "garbage after 1"}) {
        EXPECT_EQ(control(line).substr(0, 4), "ok: ") << line;
    }
    station.faults.drop_links = [] { return std::size_t{0}; };
    EXPECT_EQ(control("clear"), "ok: nothing goes wrong any more");
    obey(stop_a);
    const Faults::Aftermath aftermath = station.faults.message_sent(1);
    EXPECT_FALSE(aftermath.drop);
    EXPECT_EQ(aftermath.garbage, std::nullopt);
    EXPECT_EQ(station.faults.delay, 0ms);
    EXPECT_EQ(station.faults.piece, 0u);
    EXPECT_EQ(control("drop now"), "ok: 0 links are dropped");
}

TEST_F(FaultsTest, EachLineIsAnsweredByOneLine)
{
    const std::string there_are =
        "there are: refuse COMMAND [TEXT], allow COMMAND, delay MS, split BYTES, drop after N, "
        "drop "
        "every N, drop before-reply [COMMAND], drop now, garbage after N [TEXT], garbage [TEXT], "
        "clear, help";
    EXPECT_EQ(control("help"), "ok: " + there_are.substr(11));
    struct Case {
        const char* line;
        std::string text;
    };
    const Case cases[] = {
        {"", "'' is not understood; " + there_are},
        {"explode", "'explode' is not understood; " + there_are},
        {"drop", "'drop' is not understood; " + there_are},
        {"dropafter 5", "'dropafter 5' is not understood; " + there_are},
        {"refuse", "write refuse COMMAND [TEXT]"},
        {"refuse fly", "there is no command 'fly'"},
        {"drop before-reply fly", "there is no command 'fly'"},
        {"delay", "write delay MS"},
        {"delay -1", "'-1' is no number from 0 to 3600000"},
        {"delay 5x", "'5x' is no number from 0 to 3600000"},
        {"drop after 0", "'0' is no number from 1 to 1000000000"},
        {"drop after 99999999999999999999",
         "'99999999999999999999' is no number from 1 to 1000000000"},
        {"clear all", "'all' stands behind clear"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(control(row.line), "error: " + row.text);
    }
}

TEST_F(FaultsTest, TheManualNamesEachLine)
{
    EXPECT_NE(control_help().find("drop before-reply [COMMAND]"), std::string::npos);
}

} // namespace veltosim
