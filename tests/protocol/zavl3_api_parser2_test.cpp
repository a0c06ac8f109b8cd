#include "protocol/zavl3_api_parser2.h"

#include "platform/platform.h"
#include "support/assert_watch.h"
#include "support/await.h"
#include "support/recording_parser.h"
#include "support/wire_model.h"

#include <future>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using Calls = std::vector<std::string>;

constexpr std::size_t largest_message = 32768;

std::string created(const std::string& id)
{
    return "<report><clip_created><ClipID>" + id + "</ClipID></clip_created></report>";
}

// A report of exactly this size.
std::string created_of_size(std::size_t size)
{
    return created(std::string(size - created("").size(), 'x'));
}

std::string call_of(const std::string& message)
{
    const std::size_t around = created("").size();
    return "clip_created{" + std::string(message.size() - around, 'x') + "}";
}

class APIParser2Test : public testing::Test
{
protected:
    void feed(const std::string& bytes) { parser.feed(bytes); }

    void feed_in_blocks(const std::string& bytes, std::size_t block)
    {
        for (std::size_t at = 0; at < bytes.size(); at += block) {
            parser.feed(bytes.substr(at, block));
        }
    }

    RecordingParser parser;
};

TEST_F(APIParser2Test, DispatchesTwoMessagesOfOneBlockInOrder)
{
    feed(created("a") + "<reply><xid>1</xid><ok/></reply>");
    EXPECT_EQ(parser.calls, (Calls{"clip_created{a}", "1 ok{}"}));
}

TEST_F(APIParser2Test, DispatchesAMessageInThreePiecesWithItsLastByte)
{
    const std::string message = created("\u20AC");
    for (std::size_t first = 1; first + 1 < message.size(); ++first) {
        const std::size_t second = first + (message.size() - first) / 2;
        parser.calls.clear();
        feed(message.substr(0, first));
        feed(message.substr(first, second - first));
        feed(message.substr(second, message.size() - 1 - second));
        EXPECT_EQ(parser.calls, Calls{}) << first;
        feed(message.substr(message.size() - 1));
        EXPECT_EQ(parser.calls, Calls{"clip_created{\u20AC}"}) << first;
    }
}

TEST_F(APIParser2Test, DispatchesMessagesByteByByte)
{
    feed_in_blocks(created("a") + "\r\n" + created("b"), 1);
    EXPECT_EQ(parser.calls, (Calls{"clip_created{a}", "clip_created{b}"}));
}

TEST_F(APIParser2Test, DispatchesTheWholeCatalogueInOneStream)
{
    std::string stream;
    Calls expected;
    for (const wire::Message& message : wire::messages()) {
        stream += message.wrap(message.content.xml());
        expected.push_back(message.call(message.content.seen()));
    }
    for (const std::size_t block : {stream.size(), std::size_t{2048}, std::size_t{13}}) {
        parser.calls.clear();
        feed_in_blocks(stream, block);
        EXPECT_EQ(parser.calls, expected);
        EXPECT_FALSE(parser.is_stream_broken());
    }
}

TEST_F(APIParser2Test, TakesABlockThatIsLargerThanItsBuffer)
{
    std::string stream;
    for (int i = 0; i < 5000; ++i) {
        stream += created(std::to_string(i));
    }
    ASSERT_GT(stream.size(), 4 * largest_message);
    feed(stream);
    ASSERT_EQ(parser.calls.size(), 5000u);
    EXPECT_EQ(parser.calls.front(), "clip_created{0}");
    EXPECT_EQ(parser.calls.back(), "clip_created{4999}");
}

TEST_F(APIParser2Test, SkipsWhatStandsBetweenMessages)
{
    feed("<?xml version=\"1.0\"?>\r\n" + created("a") + "</junk> & <" + created("b") + "\r\n \r\n" +
         created("c") + "tail");
    EXPECT_EQ(parser.calls, (Calls{"clip_created{a}", "clip_created{b}", "clip_created{c}"}));
    EXPECT_FALSE(parser.is_stream_broken());
}

TEST_F(APIParser2Test, TakesAMessageOfExactlyTheBuffersSize)
{
    const std::string message = created_of_size(largest_message);
    ASSERT_EQ(message.size(), largest_message);
    for (const std::size_t block : {largest_message, std::size_t{2048}, std::size_t{1000}}) {
        parser.calls.clear();
        feed_in_blocks(message, block);
        EXPECT_TRUE(parser.calls == Calls{call_of(message)});
        EXPECT_FALSE(parser.is_stream_broken());
    }
}

TEST_F(APIParser2Test, BreaksAtAMessageOneByteLarger)
{
    const std::string message = created_of_size(largest_message + 1);
    for (const std::size_t block : {message.size(), std::size_t{2048}, std::size_t{1000}}) {
        feed_in_blocks(message, block);
        EXPECT_EQ(parser.calls, Calls{});
        EXPECT_TRUE(parser.is_stream_broken());
        parser.reset_stream();
    }
}

TEST_F(APIParser2Test, CountsTheJunkBeforeAMessage)
{
    feed(" " + created_of_size(largest_message));
    EXPECT_TRUE(parser.is_stream_broken());
    EXPECT_EQ(parser.calls, Calls{});
}

TEST_F(APIParser2Test, BreaksAtJunkThatFillsTheBuffer)
{
    feed(std::string(largest_message, 'x'));
    EXPECT_FALSE(parser.is_stream_broken());
    feed("x");
    EXPECT_TRUE(parser.is_stream_broken());
}

TEST_F(APIParser2Test, DropsWhatComesOnABrokenStream)
{
    feed(created_of_size(largest_message + 1));
    ASSERT_TRUE(parser.is_stream_broken());
    feed(created("a"));
    EXPECT_EQ(parser.calls, Calls{});
    EXPECT_TRUE(parser.is_stream_broken());
}

// The refused message itself is not enough: the bytes behind it show that the stream has failed.
TEST_F(APIParser2Test, BreaksBehindAMessageThatIsNoXML)
{
    for (const std::string message :
         {"<reply><a></b></reply>", "<report><a/>mixed</report>", "<reply><></reply>"}) {
        feed(message);
        EXPECT_FALSE(parser.is_stream_broken()) << message;
        feed("x");
        EXPECT_TRUE(parser.is_stream_broken()) << message;
        feed(created("a"));
        EXPECT_EQ(parser.calls, Calls{});
        parser.reset_stream();
    }
}

TEST_F(APIParser2Test, DispatchesWhatCameBeforeAMessageThatIsNoXML)
{
    feed(created("a") + "<reply><a></b></reply>" + created("b"));
    EXPECT_EQ(parser.calls, Calls{"clip_created{a}"});
    feed("x");
    EXPECT_TRUE(parser.is_stream_broken());
    EXPECT_EQ(parser.calls, Calls{"clip_created{a}"});
}

TEST_F(APIParser2Test, StaysWholeAfterAMessageThatMeansNothing)
{
    feed("<report><clip_created/></report>" + created("a"));
    EXPECT_EQ(parser.calls, Calls{"clip_created{a}"});
    EXPECT_FALSE(parser.is_stream_broken());
}

TEST_F(APIParser2Test, StartsAnewAfterAReset)
{
    feed(created_of_size(largest_message + 1));
    ASSERT_TRUE(parser.is_stream_broken());
    parser.reset_stream();
    EXPECT_FALSE(parser.is_stream_broken());
    feed(created("a"));
    EXPECT_EQ(parser.calls, Calls{"clip_created{a}"});
}

TEST_F(APIParser2Test, ForgetsHalfAMessageWithAReset)
{
    const std::string message = created("a");
    for (std::size_t cut = 1; cut < message.size(); ++cut) {
        feed(message.substr(0, cut));
        parser.reset_stream();
        feed(message.substr(cut));
        EXPECT_EQ(parser.calls, Calls{}) << cut;
        feed(created("b"));
        EXPECT_EQ(parser.calls, Calls{"clip_created{b}"}) << cut;
        parser.reset_stream();
        parser.calls.clear();
    }
}

TEST_F(APIParser2Test, LeavesTheFailureOfAMessageAloneWithAReset)
{
    feed("<report><clip_created/></report>");
    parser.reset_stream();
    EXPECT_FALSE(parser.message_ok);
}

TEST_F(APIParser2Test, TakesNoBytesAsNothing)
{
    parser.feed_bytes(nullptr, 0);
    EXPECT_FALSE(parser.is_stream_broken());
}

// An operation that takes the link down.
class ResettingParser : public RecordingParser
{
public:
    void on_report_clip_deleted(const ZAVL3::report::clip_deleted& message) override
    {
        RecordingParser::on_report_clip_deleted(message);
        reset_stream();
    }
};

TEST(APIParser2Reset, WithinAnOperationDropsTheRestOfTheBlock)
{
    ResettingParser parser;
    const std::string deleted = "<report><clip_deleted><ClipID>a</ClipID></clip_deleted></report>";
    parser.feed(created("1") + deleted + created("2") + created("3").substr(0, 20));
    EXPECT_EQ(parser.calls, (Calls{"clip_created{1}", "clip_deleted{a}"}));
    parser.feed(created("4"));
    EXPECT_EQ(parser.calls.back(), "clip_created{4}");
    EXPECT_EQ(parser.calls.size(), 3u);
}

#ifdef VELTO_SANITIZED
constexpr std::size_t small_stack_bytes = 1024 * 1024;
#else
constexpr std::size_t small_stack_bytes = 65536;
#endif

// Parses, copies, dispatches and destroys one message on a thread with the stack of a worker.
struct SmallStackRun {
    static void start(void* run) { static_cast<SmallStackRun*>(run)->execute(); }

    static void keep(void* copy, XMLTree tree) { *static_cast<XMLTree*>(copy) = tree; }

    void execute()
    {
        {
            const auto parser = std::make_unique<RecordingParser>();
            XMLTree copy;
            parser->message_tap = AFunction<XMLTree>(&keep, &copy);
            parser->feed(bytes);
            calls = parser->calls;
            for (const XMLTree* at = &copy; at->first_child() != nullptr; ++depth) {
                at = &at->first_child()->value;
            }
        }
        done.set_value();
    }

    std::string bytes;
    Calls calls;
    std::uint32_t depth = 0;
    std::promise<void> done;
};

TEST(APIParser2Stack, IsEnoughForAMessageThatNests4600Deep)
{
    constexpr std::uint32_t levels = 4600;
    std::string nest;
    for (std::uint32_t i = 0; i < levels; ++i) {
        nest = "<a>" + nest + "</a>";
    }
    for (const std::string& message :
         {"<reply>" + nest + "<xid>1</xid><ok/></reply>",
          "<report><clip_created>" + nest + "<ClipID>x</ClipID></clip_created></report>"}) {
        ASSERT_LE(message.size(), largest_message);
        SmallStackRun run;
        run.bytes = message;
        ASSERT_TRUE(platform::start_thread(&SmallStackRun::start, &run, small_stack_bytes));
        await(run.done.get_future());
        const bool reply = message.starts_with("<reply>");
        EXPECT_EQ(run.calls, Calls{reply ? "1 ok{}" : "clip_created{x}"});
        EXPECT_EQ(run.depth, reply ? levels : levels + 1);
    }
}

} // namespace
