#include "protocol/zavl3_client_win32.h"

#include "protocol/test_client.h"

#include <gtest/gtest.h>

namespace
{

constexpr std::size_t largest_message = 32768;
constexpr std::size_t deepest_nesting = 4600;

// An ok reply of exactly `size` bytes.
std::string ok_reply_of(const std::string& xid, std::size_t size)
{
    const std::string bare = reply_message(xid, "<ok /><pad></pad>");
    return reply_message(xid, "<ok /><pad>" + std::string(size - bare.size(), 'x') + "</pad>");
}

std::string repeated(std::string_view text, std::size_t count)
{
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

// A link that is up, with a command on its way. `loses_link` and `works` tell what became of it.
class ClientStream : public testing::Test
{
protected:
    void expect_ok(Completion& completion, const std::string& reply)
    {
        link.send(reply);
        EXPECT_EQ(completion.outcome(), "ok");
        EXPECT_TRUE(client.is_connected());
    }

    // Takes up the link that follows a loss; it works.
    void expect_next_link_works()
    {
        client.events.await("down");
        link.expect_end();
        link = server.accept();
        client.events.await("up", 2);
        Completion& next = client.issue_stop();
        expect_ok(next, reply_message(link.expect("stop").xid, "<ok />"));
    }

    TestClient client;
    ScriptServer server;
    ScriptLink link = client.connect(server);
    Completion& stop = client.issue_stop();
    const std::string xid = link.expect("stop").xid;
};

TEST_F(ClientStream, AMessageArrivesOneByteAtATime)
{
    const std::string reply = reply_message(xid, "<ok />");
    link.send_byte_by_byte(std::string_view(reply).substr(0, reply.size() - 1));
    EXPECT_FALSE(stop.is_over());
    expect_ok(stop, ">");
}

TEST_F(ClientStream, AMessageArrivesInThreeBlocks)
{
    const std::string reply = reply_message(xid, "<ok />");
    link.send(reply.substr(0, 5));
    link.send(reply.substr(5, 20));
    expect_ok(stop, reply.substr(25));
}

TEST_F(ClientStream, TwoMessagesArriveInOneBlock)
{
    Completion& second = client.issue_stop();
    const std::string second_xid = link.expect("stop").xid;
    link.send(reply_message(second_xid, error_content("no")) + reply_message(xid, "<ok />"));
    EXPECT_EQ(second.outcome(), "no (general)");
    EXPECT_EQ(stop.outcome(), "ok");
}

TEST_F(ClientStream, ManyMessagesArriveInBlocksThatCutThem)
{
    std::deque<Completion> completions(300);
    std::string replies;
    for (Completion& completion : completions) {
        client.issue_stop(completion);
        replies += ok_reply_of(link.expect("stop").xid, 777);
    }
    link.send(replies);
    for (Completion& completion : completions) {
        EXPECT_EQ(completion.outcome(), "ok");
    }
}

TEST_F(ClientStream, AMessageOfTheWholeBufferFits)
{
    expect_ok(stop, ok_reply_of(xid, largest_message));
}

TEST_F(ClientStream, OneByteMoreLosesTheLinkAndTheNextWorks)
{
    link.send(ok_reply_of(xid, largest_message + 1));
    EXPECT_EQ(stop.outcome(), link_loss);
    expect_next_link_works();
}

TEST_F(ClientStream, MalformedXmlLosesTheLinkAndTheNextWorks)
{
    link.send(broken_stream("<reply><xid>" + xid + "</xid><ok></reply>"));
    EXPECT_EQ(stop.outcome(), link_loss);
    expect_next_link_works();
}

TEST_F(ClientStream, WhatFollowsAMalformedMessageIsDropped)
{
    link.send(broken_stream("<reply><></reply>" + reply_message(xid, "<ok />")));
    EXPECT_EQ(stop.outcome(), link_loss);
    expect_next_link_works();
}

TEST_F(ClientStream, AMessageThatSaysNothingCostsOnlyItself)
{
    link.send("<reply><ok /></reply><report><unheard_of /></report><report></report>"
              "<reply><xid>" +
              xid + "</xid><ok /><ok /></reply>");
    expect_ok(stop, reply_message(xid, "<ok />"));
}

TEST_F(ClientStream, JunkBetweenMessagesIsSkipped)
{
    expect_ok(stop, "junk <junk> </junk>\r\n" + reply_message(xid, "<ok />"));
}

TEST_F(ClientStream, ALostLinkTakesTheHalfMessageWithIt)
{
    link.send(reply_message(xid, "<ok />").substr(0, 20));
    link.close();
    EXPECT_EQ(stop.outcome(), link_loss);

    link = server.accept();
    client.events.await("up", 2);
    Completion& next = client.issue_stop();
    const std::string next_xid = link.expect("stop").xid;
    // Behind the half message this would be one of a wrong form.
    expect_ok(next, reply_message(next_xid, "<ok />"));
}

// The worker has a small stack: a message may nest as deep as its length allows.
TEST_F(ClientStream, ADeepMessageIsSurvived)
{
    const std::string nest = repeated("<a>", deepest_nesting) + repeated("</a>", deepest_nesting);
    const std::string report = "<report>" + nest + "</report>";
    ASSERT_LE(report.size(), largest_message);
    link.send(report + report);
    expect_ok(stop, reply_message(xid, "<ok>" + nest + "</ok>"));
}

TEST_F(ClientStream, ADeepMessageThatIsRefusedIsSurvived)
{
    link.send(broken_stream("<report>" + repeated("<a>", deepest_nesting * 2) + "</report>"));
    EXPECT_EQ(stop.outcome(), link_loss);
    expect_next_link_works();
}

void keep_copy(void* kept, XMLTree message)
{
    *static_cast<XMLTree*>(kept) = message;
}

TEST(Client, ADeepMessageIsCopiedAndDestroyedOnTheWorker)
{
    XMLTree kept;
    TestClient client;
    client.message_tap = AFunction<XMLTree>(&keep_copy, &kept);
    ScriptServer server;
    ScriptLink link = client.connect(server);
    Completion& stop = client.issue_stop();
    const std::string xid = link.expect("stop").xid;
    link.send("<report>" + repeated("<a>", deepest_nesting) + repeated("</a>", deepest_nesting) +
              "</report>");
    link.reply_ok(xid); // the tap then lets the deep one go
    EXPECT_EQ(stop.outcome(), "ok");
    EXPECT_TRUE(kept.has_child("ok"));
}

} // namespace
