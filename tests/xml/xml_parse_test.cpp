#include "xml/xml_parse.h"

#include "platform/platform.h"
#include "support/assert_watch.h"
#include "support/await.h"
#include "xml/xml_texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace
{

constexpr std::uint64_t largest_message = 32768;

// With the root tags of the control stream.
class Stream
{
public:
    virtual ~Stream() = default;
    explicit Stream(std::uint64_t size = largest_message) : parser(size)
    {
        parser.add_root_tag("reply");
        parser.add_root_tag("report");
    }

    std::uint64_t feed(std::string_view bytes) { return parser.feed(bytes.data(), bytes.size()); }

    // The element as it is written, "" for none.
    virtual std::string next()
    {
        const XMLTree tree = parser.next_element();
        return tree.is_null ? "" : written(tree);
    }

    // All that come when bytes go in as they do from a socket; "|" behind each.
    std::string run(std::string_view bytes)
    {
        std::string elements;
        while (!bytes.empty()) {
            const std::uint64_t taken = feed(bytes);
            if (taken == 0) {
                return elements + "full";
            }
            bytes.remove_prefix(taken);
            for (std::string element; !(element = next()).empty();) {
                elements += element + "|";
            }
        }
        return elements + (parser.has_failed() ? "failed" : "");
    }

    XMLParser parser;
};

struct Row {
    const char* bytes;
    const char* elements;
};

const Row wire_rows[] = {
    {"", ""},
    {"<reply></reply>", "<reply />|"},
    {"<report></report>", "<report />|"},
    {"< reply ></ reply >", "<reply />|"},
    {"<\breply\b></\breply\b>", "failed"}, // found, but the backspace is no white space of a text
    {"<reply><xid>17</xid><ok/></reply>", "<reply><xid>17</xid><ok /></reply>|"},
    {"<reply>\r\n<xid>1</xid>\r\n<ok />\r\n</reply>\r\n", "<reply><xid>1</xid><ok /></reply>|"},
    {"<reply>a</reply><report>b</report>", "<reply>a</reply>|<report>b</report>|"},
    {"<report>b</report><reply>a</reply>", "<report>b</report>|<reply>a</reply>|"},
    {"<reply>1</reply>\r\n<reply>2</reply>junk<report>3</report>",
     "<reply>1</reply>|<reply>2</reply>|<report>3</report>|"},
    {"junk<reply>1</reply>", "<reply>1</reply>|"},
    {"<other>x</other><reply>1</reply>", "<reply>1</reply>|"},
    {"<reply a=\"1\"></reply>", ""},
    {"<reply a=\"1\">1</reply><reply>2</reply>", "<reply>2</reply>|"},
    {"<reply/><reply>2</reply>", "<reply>2</reply>|"},
    {"</reply><reply>2</reply>", "<reply>2</reply>|"},
    {"<Reply>1</Reply>", ""},
    {"<reply>1</report>", ""},
    {"<reply>1</report></reply>", "failed"},
    {"<reply><report>1</report></reply>", "<reply><report>1</report></reply>|"},
    {"<report><reply>1</reply></report><reply>2</reply>",
     "<report><reply>1</reply></report>|<reply>2</reply>|"},
    {"<reply><reply></reply></reply>", "failed"}, // the first close tag ends it
    {"<reply><a>\xC3\xA9\xE6\x97\xA5\xF0\x9D\x84\x9E</a></reply>",
     "<reply><a>\xC3\xA9\xE6\x97\xA5\xF0\x9D\x84\x9E</a></reply>|"},
    {"<reply>&lt;&#65;</reply>", "<reply>&lt;&amp;#65;</reply>|"},
    {"<reply>\xFF</reply>", "failed"}, // not UTF-8: the text is cut there
    {"<reply><a></reply>", "failed"},
    {"<reply><a></b></reply>", "failed"},
    {"<reply>x>y</reply>", "failed"},
    {"<reply><></reply>", "failed"},
    {"<reply>x<a/></reply>", "failed"},
    {"<reply>1</reply><report></a></report><reply>2</reply>", "<reply>1</reply>|failed"},
};

// The longest message that fits, with `text` bytes of content around which it is built.
std::string message_of(std::uint64_t size)
{
    const std::string head = "<reply><xid>1</xid><a>";
    const std::string tail = "</a></reply>";
    return head + std::string(size - head.size() - tail.size(), 'x') + tail;
}

// 32768 bytes exactly.
constexpr std::size_t deepest = 4679;

std::string deep_message()
{
    std::string message = "<reply>";
    for (std::size_t i = 0; i < deepest; ++i) {
        message += "<a>";
    }
    for (std::size_t i = 0; i < deepest; ++i) {
        message += "</a>";
    }
    return message + "</reply>";
}

#ifdef VELTO_SANITIZED
constexpr std::size_t worker_stack = 1048576; // their frames are larger
#else
constexpr std::size_t worker_stack = 65536;
#endif

// Runs `work` on a thread with the stack of a worker.
template <typename Result>
Result on_worker(Result (*work)())
{
    struct Task {
        Result (*work)();
        std::promise<Result> result;
    };
    Task task{work, {}};
    std::future<Result> result = task.result.get_future();
    const bool started = platform::start_thread(
        [](void* context) {
            auto* given = static_cast<Task*>(context);
            std::promise<Result> promise = std::move(given->result);
            promise.set_value(given->work()); // the task may be gone from here on
        },
        &task, worker_stack);
    EXPECT_TRUE(started);
    return started ? await(std::move(result)) : Result();
}

} // namespace

TEST(XMLParser, TableWhole)
{
    for (const Row& row : wire_rows) {
        EXPECT_EQ(Stream().run(row.bytes), row.elements) << row.bytes;
    }
}

TEST(XMLParser, TableByteByByte)
{
    for (const Row& row : wire_rows) {
        Stream stream;
        std::string elements;
        for (const char& byte : std::string_view(row.bytes)) {
            elements += stream.run(std::string_view(&byte, 1));
            if (stream.parser.has_failed()) {
                break;
            }
        }
        EXPECT_EQ(elements, row.elements) << row.bytes;
    }
}

TEST(XMLParser, TableCutAtEachPosition)
{
    for (const Row& row : wire_rows) {
        const std::string_view bytes = row.bytes;
        for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
            Stream stream;
            std::string elements = stream.run(bytes.substr(0, cut));
            if (!stream.parser.has_failed()) {
                elements += stream.run(bytes.substr(cut));
            }
            EXPECT_EQ(elements, row.elements) << row.bytes << " cut at " << cut;
        }
    }
}

TEST(XMLParser, ElementComesWithItsLastByteAndNotBefore)
{
    const std::string message = "<reply><xid>1</xid></reply>";
    Stream stream;
    for (std::size_t i = 0; i + 1 < message.size(); ++i) {
        EXPECT_EQ(stream.feed(message.substr(i, 1)), 1u);
        EXPECT_EQ(stream.next(), "") << i;
    }
    stream.feed(">");
    EXPECT_EQ(stream.next(), "<reply><xid>1</xid></reply>");
    EXPECT_EQ(stream.next(), "");
}

TEST(XMLParser, HalfOfTheNextElementStays)
{
    Stream stream;
    stream.feed("<reply>1</reply><reply>2</re");
    EXPECT_EQ(stream.next(), "<reply>1</reply>");
    EXPECT_EQ(stream.next(), "");
    stream.feed("ply>");
    EXPECT_EQ(stream.next(), "<reply>2</reply>");
}

TEST(XMLParser, SmallestPositionComesFirstWhateverTheOrderOfRegistration)
{
    for (const bool reversed : {false, true}) {
        XMLParser parser(1024);
        parser.add_root_tag(reversed ? "b" : "a");
        parser.add_root_tag(reversed ? "a" : "b");
        const std::string bytes = "<b>1</b><a>2</a><b>3</b>";
        parser.feed(bytes.data(), bytes.size());
        EXPECT_EQ(written(parser.next_element()), "<b>1</b>");
        EXPECT_EQ(written(parser.next_element()), "<a>2</a>");
        EXPECT_EQ(written(parser.next_element()), "<b>3</b>");
        EXPECT_TRUE(parser.next_element().is_null);
    }
}

TEST(XMLParser, TagThatIsCompleteAtTheSameByteButStartsLaterComesSecond)
{
    XMLParser parser(64);
    parser.add_root_tag("a<b");
    parser.add_root_tag("b");
    for (const char& byte : std::string_view("<a<b></b></a<b>")) {
        ASSERT_FALSE(parser.has_failed());
        parser.feed(&byte, 1);
        EXPECT_TRUE(parser.next_element().is_null);
    }
    EXPECT_TRUE(parser.has_failed()); // the whole is no element
}

TEST(XMLParser, OpenElementBlocksThoseBehindIt)
{
    Stream stream;
    stream.feed("<reply><report>1</report>");
    EXPECT_EQ(stream.next(), "");
    stream.feed("</reply>");
    EXPECT_EQ(stream.next(), "<reply><report>1</report></reply>");
    EXPECT_EQ(stream.next(), "");
}

TEST(XMLParser, WithoutRootTagsNothingIsFound)
{
    XMLParser parser(64);
    const std::string bytes = "<reply>1</reply>";
    EXPECT_EQ(parser.feed(bytes.data(), bytes.size()), bytes.size());
    EXPECT_TRUE(parser.next_element().is_null);
    parser.add_root_tag("reply");
    EXPECT_EQ(written(parser.next_element()), "<reply>1</reply>");
}

TEST(XMLParser, RootTagAddedLaterIsFoundInWhatIsHeld)
{
    Stream stream;
    stream.feed("<early>1</early><reply>2");
    EXPECT_EQ(stream.next(), "");
    stream.parser.add_root_tag("early");
    EXPECT_EQ(stream.next(), "<early>1</early>");
    stream.feed("</reply>");
    EXPECT_EQ(stream.next(), "<reply>2</reply>");
}

TEST(XMLParser, SizeOfZeroIsReportedAnd1024IsUsed)
{
    const AssertWatch watch;
    Stream stream(0);
    EXPECT_EQ(watch.count("xml_parse"), 1u);
    EXPECT_EQ(stream.feed(std::string(2000, ' ')), 1024u);
}

TEST(XMLParser, FeedTakesWhatFits)
{
    Stream stream(10);
    EXPECT_EQ(stream.feed("1234567"), 7u);
    EXPECT_EQ(stream.feed("1234567"), 3u);
    EXPECT_EQ(stream.feed("1"), 0u);
    EXPECT_EQ(stream.feed(""), 0u);
    EXPECT_EQ(stream.parser.feed(nullptr, 0), 0u);
    EXPECT_FALSE(stream.parser.has_failed());
}

TEST(XMLParser, MessageOfExactlyTheBufferFits)
{
    Stream stream;
    const std::string message = message_of(largest_message);
    EXPECT_EQ(stream.feed(message), largest_message);
    EXPECT_EQ(stream.next(), message);
    EXPECT_EQ(stream.feed(message), largest_message);
    EXPECT_EQ(stream.next(), message);
}

TEST(XMLParser, OneByteMoreFillsTheBuffer)
{
    Stream stream;
    const std::string message = message_of(largest_message + 1);
    EXPECT_EQ(stream.feed(message), largest_message);
    EXPECT_EQ(stream.next(), "");
    EXPECT_EQ(stream.feed(message.substr(largest_message)), 0u);
    EXPECT_FALSE(stream.parser.has_failed());
}

TEST(XMLParser, JunkBeforeAnElementCounts)
{
    EXPECT_EQ(Stream(64).run(" " + message_of(63)), message_of(63) + "|");
    EXPECT_EQ(Stream(64).run("  " + message_of(63)), "full");
}

TEST(XMLParser, RoomOfTakenElementsIsUsedAgain)
{
    Stream stream(100);
    std::string bytes;
    std::string elements;
    for (int i = 0; i < 500; ++i) {
        const std::string message = message_of(40 + static_cast<std::uint64_t>(i % 60));
        bytes += message;
        elements += message + "|";
    }
    EXPECT_EQ(stream.run(bytes), elements);
}

TEST(XMLParser, ManyElementsInOneBlock)
{
    std::string bytes;
    std::string elements;
    while (bytes.size() + 40 < largest_message) {
        const std::string message =
            bytes.size() % 3 == 0 ? "<report>1</report>" : "<reply>2</reply>";
        bytes += message + "\r\n";
        elements += message + "|";
    }
    EXPECT_EQ(Stream().run(bytes), elements);
}

TEST(XMLParser, RandomBlocksGiveTheSameElements)
{
    static const char* const parts[] = {
        "<reply>1</reply>",
        "<report><a b=1/></report>",
        "< reply >2</ reply >",
        "\r\n",
        "<reply a=\"1\">",
        "<reply",
        "</reply>",
        "</report>",
        "<report><reply>3</reply></report>",
        "<other>4</other>",
        "< \b ",
        "<reply><xid>5</xid><ok/></reply>",
    };
    std::mt19937 engine(5);
    std::string bytes;
    for (int i = 0; i < 400; ++i) {
        bytes += parts[engine() % std::size(parts)];
    }
    const std::string whole = Stream(bytes.size()).run(bytes);
    EXPECT_GT(std::count(whole.begin(), whole.end(), '|'), 100);
    EXPECT_EQ(whole.find("failed"), std::string::npos);
    for (unsigned round = 0; round < 20; ++round) {
        Stream stream(bytes.size());
        std::string elements;
        for (std::size_t at = 0; at < bytes.size();) {
            const std::size_t block = 1 + engine() % (round % 2 == 0 ? 10 : 300);
            elements += stream.run(std::string_view(bytes).substr(at, block));
            at += block;
        }
        EXPECT_EQ(elements, whole);
    }
}

TEST(XMLParser, FailedStreamSwallowsAndGivesNothingUntilReset)
{
    Stream stream(64);
    stream.feed("<reply></a></reply>");
    EXPECT_FALSE(stream.parser.has_failed());
    EXPECT_EQ(stream.next(), "");
    EXPECT_TRUE(stream.parser.has_failed());
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(stream.feed("<reply>1</reply>"), 16u);
        EXPECT_EQ(stream.next(), "");
        EXPECT_TRUE(stream.parser.has_failed());
    }
    stream.parser.reset();
    EXPECT_FALSE(stream.parser.has_failed());
    EXPECT_EQ(stream.next(), "");
    EXPECT_EQ(stream.feed("<reply>1</reply>"), 16u);
    EXPECT_EQ(stream.next(), "<reply>1</reply>");
}

TEST(XMLParser, ResetDropsHalfAnElement)
{
    Stream stream;
    stream.feed("<reply>0</reply><reply>1");
    EXPECT_EQ(stream.next(), "<reply>0</reply>");
    EXPECT_EQ(stream.next(), "");
    stream.parser.reset();
    EXPECT_EQ(stream.run("2</reply>"), "");
    EXPECT_EQ(stream.run("<report>3</report>"), "<report>3</report>|");
}

TEST(XMLParser, LongMessageByteByByte)
{
    const std::string message =
        "<reply>\r\n" + std::string(16000, '<') + "\r\n" + std::string(16000, ' ') + "</reply>";
    Stream stream;
    for (const char& byte : message) {
        ASSERT_EQ(stream.feed(std::string_view(&byte, 1)), 1u);
        ASSERT_EQ(stream.next(), "");
    }
    EXPECT_TRUE(stream.parser.has_failed());
}

TEST(XMLParser, DeepMessageIsHandledOnTheStackOfAWorker)
{
    ASSERT_EQ(deep_message().size(), largest_message);
    const auto work = []() -> std::string {
        Stream stream;
        const std::string message = deep_message();
        stream.feed(message);
        XMLTree tree = stream.parser.next_element();
        XMLTree copy = tree;
        copy.add_child(tree); // copies what is shared
        std::string bytes = written(tree, XMLWriteMode::compact, false);
        const std::size_t pieces = pieces_of(copy, XMLWriteMode::lines).size();
        tree = XMLTree();
        copy = XMLTree();
        stream.feed(message.substr(0, message.size() - 9) + "</reply>"); // refused at its depth
        stream.next();
        return bytes == message && pieces > 4 * deepest && stream.parser.has_failed() ? "handled"
                                                                                      : bytes;
    };
    EXPECT_EQ(on_worker<std::string>(work), "handled");
}

TEST(XMLParser, MessageOfTagsAloneNestsToTheEndOfTheBuffer)
{
    const auto work = []() -> std::string {
        Stream stream;
        std::string message = "<reply>";
        while (message.size() + 11 <= largest_message) {
            message += "<a>";
        }
        return stream.run(message + "</reply>");
    };
    EXPECT_EQ(on_worker<std::string>(work), "failed");
}

namespace
{

// Known names make the plain way possible.
const AStringTable& stream_names()
{
    static const AStringTable table = [] {
        AStringTable made;
        for (const char* name : {"reply", "report", "a"}) {
            made.add(AString(name), 0);
        }
        return made;
    }();
    return table;
}

// Takes elements where they were received if that can be, as the client does.
class PlainStream : public Stream
{
public:
    explicit PlainStream(std::uint64_t size = largest_message) : Stream(size)
    {
        parser.use_known_names(stream_names());
    }

    std::string next() override
    {
        const XMLPlainElement* plain = parser.next_plain_element();
        if (plain == nullptr) {
            return Stream::next();
        }
        ++plain_elements;
        return "<" + plain->get_name().to_utf8() + ">" + std::string(plain->get_text()) + "</" +
               plain->get_name().to_utf8() + ">";
    }

    std::size_t plain_elements = 0;
};

} // namespace

TEST(XMLParser, PlainElementsAreReadWithoutATree)
{
    PlainStream stream;
    EXPECT_EQ(stream.run(" <reply>1</reply>\r\n<report>2</report>"),
              "<reply>1</reply>|<report>2</report>|");
    EXPECT_EQ(stream.plain_elements, 2u);
    EXPECT_EQ(stream.run("x<reply>1</reply><reply>&amp;</reply><reply>2</reply>"),
              "<reply>1</reply>|<reply>&amp;</reply>|<reply>2</reply>|");
    EXPECT_EQ(stream.plain_elements, 3u);
}

TEST(XMLParser, AnElementIsPlainOrNotHoweverItComes)
{
    const std::string bytes = "<reply>1</reply>\r\n<report>\xC3\x96</report>junk<reply>2</reply>"
                              "<report >3</report><reply>4</reply ><report>5</report>";
    const std::string elements = "<reply>1</reply>|<report>\xC3\x96</report>|<reply>2</reply>|"
                                 "<report>3</report>|<reply>4</reply>|<report>5</report>|";
    for (std::size_t block = 1; block <= bytes.size(); ++block) {
        for (const std::uint64_t size : {std::uint64_t{64}, largest_message}) {
            PlainStream stream(size);
            std::string found;
            for (std::size_t at = 0; at < bytes.size(); at += block) {
                found += stream.run(std::string_view(bytes).substr(at, block));
            }
            ASSERT_EQ(found, elements) << block;
        }
    }
}

TEST(XMLParser, ARefusedElementFailsThePlainStreamToo)
{
    PlainStream stream;
    EXPECT_EQ(stream.run("<reply>1</reply><reply><a></reply>"), "<reply>1</reply>|failed");
    EXPECT_EQ(stream.parser.next_plain_element(), nullptr);
    stream.parser.reset();
    EXPECT_EQ(stream.run("<reply>1</reply>"), "<reply>1</reply>|");
}

TEST(XMLParser, HalfAPlainElementIsForgottenWithAReset)
{
    PlainStream stream;
    EXPECT_EQ(stream.run("<reply>1</re"), "");
    stream.parser.reset();
    EXPECT_EQ(stream.run("ply><report>2</report>"), "<report>2</report>|");
}

TEST(XMLParser, AnElementBegunAsPlainMayBeTakenAsATree)
{
    PlainStream stream;
    ASSERT_EQ(stream.run("<reply>1</"), "");
    ASSERT_EQ(stream.feed("reply>"), 6u);
    EXPECT_EQ(written(stream.parser.next_element()), "<reply>1</reply>");
    EXPECT_EQ(stream.run("<report>2</report>"), "<report>2</report>|");
}
