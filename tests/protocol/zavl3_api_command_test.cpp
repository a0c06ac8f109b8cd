#include "protocol/zavl3_api_command.h"

#include "support/await.h"
#include "support/recording_api.h"
#include "support/xml_text.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;

command::clip_exists clip_exists(const std::string& id)
{
    command::clip_exists fields;
    fields.set<"ClipID">(utf8(id));
    return fields;
}

std::string clip_exists_bytes(const std::string& xid, const std::string& id)
{
    return "<cmd>\r\n<xid>" + xid + "</xid>\r\n<clip_exists>\r\n<ClipID>" + id +
           "</ClipID>\r\n</clip_exists>\r\n</cmd>";
}

std::vector<std::size_t> sizes(const std::vector<std::string>& blocks)
{
    std::vector<std::size_t> all;
    for (const std::string& block : blocks) {
        all.push_back(block.size());
    }
    return all;
}

TEST(APICommand, WritesAShortCommandInOneBlock)
{
    RecordingAPI api;
    api.send(AString("1"), clip_exists("a"));
    EXPECT_EQ(api.blocks, std::vector{clip_exists_bytes("1", "a")});
}

TEST(APICommand, WritesALongCommandInBlocksOf1500)
{
    RecordingAPI api;
    const std::string id(5000, 'x');
    api.send(AString("1"), clip_exists(id));
    const std::string expected = clip_exists_bytes("1", id);
    EXPECT_EQ(sizes(api.blocks),
              (std::vector<std::size_t>{1500, 1500, 1500, expected.size() - 4500}));
    EXPECT_EQ(api.take_bytes(), expected);
}

TEST(APICommand, WritesNoBlockOver1500WhateverTheText)
{
    for (std::size_t length = 1350; length < 1650; ++length) {
        RecordingAPI api;
        std::string id;
        for (std::size_t i = 0; i < length; ++i) {
            id += i % 3 == 0 ? "\u20AC" : "&";
        }
        api.send(AString("1"), clip_exists(id));
        const std::vector<std::size_t> blocks = sizes(api.blocks);
        EXPECT_LE(*std::max_element(blocks.begin(), blocks.end()), 1500u);
        EXPECT_EQ(std::count(blocks.begin(), blocks.end() - 1, 1500u),
                  static_cast<std::ptrdiff_t>(blocks.size() - 1));
    }
}

TEST(APICommand, LeavesNothingBehindForTheNextCommand)
{
    RecordingAPI api;
    api.send(AString("1"), clip_exists(std::string(1500, 'x')));
    api.take_bytes();
    api.send(AString("2"), clip_exists("a"));
    EXPECT_EQ(api.blocks, std::vector{clip_exists_bytes("2", "a")});
}

// What a tap saw, and how much had been written by then.
struct Tap {
    static void see(void* tap, XMLTree tree)
    {
        Tap& self = *static_cast<Tap*>(tap);
        self.seen.push_back(to_xml(tree));
        self.blocks_before.push_back(self.api->blocks.size());
    }

    RecordingAPI* api;
    std::vector<std::string> seen;
    std::vector<std::size_t> blocks_before;
};

TEST(APICommand, ShowsEveryCommandToTheTapBeforeItIsWritten)
{
    RecordingAPI api;
    EXPECT_TRUE(api.command_tap.is_empty());
    Tap tap{&api, {}, {}};
    api.command_tap = AFunction<XMLTree>(&Tap::see, &tap);
    api.send(AString("1"), clip_exists("a"));
    api.send(AString("2"), command::get_disk_usage());
    EXPECT_EQ(tap.seen, (std::vector<std::string>{
                            "<cmd><xid>1</xid><clip_exists><ClipID>a</ClipID></clip_exists></cmd>",
                            "<cmd><xid>2</xid><get_disk_usage /></cmd>"}));
    EXPECT_EQ(tap.blocks_before, (std::vector<std::size_t>{0, 1}));
}

TEST(APICommand, NeverInterleavesTheCommandsOfThreads)
{
    constexpr int threads = 4;
    constexpr int commands = 100;
    const auto id_of = [](int thread, int number) {
        return std::to_string(thread * commands + number) +
               std::string(5000, static_cast<char>('a' + thread));
    };
    RecordingAPI api;
    std::vector<std::future<void>> senders;
    for (int thread = 0; thread < threads; ++thread) {
        senders.push_back(in_thread([&api, &id_of, thread] {
            for (int number = 0; number < commands; ++number) {
                api.send(AString("1"), clip_exists(id_of(thread, number)));
            }
        }));
    }
    for (std::future<void>& sender : senders) {
        await(std::move(sender));
    }

    std::multiset<std::string> expected;
    for (int thread = 0; thread < threads; ++thread) {
        for (int number = 0; number < commands; ++number) {
            expected.insert(clip_exists_bytes("1", id_of(thread, number)));
        }
    }
    const std::string stream = api.take_bytes();
    const std::string end = "</cmd>";
    std::multiset<std::string> sent;
    for (std::size_t at = 0; at < stream.size();) {
        const std::size_t next =
            std::min(stream.find(end, at), stream.size() - end.size()) + end.size();
        sent.insert(stream.substr(at, next - at));
        at = next;
    }
    EXPECT_TRUE(sent == expected);
}

// As a delegate does that a failed write has called.
class NestingAPI : public RecordingAPI
{
public:
    void write_bytes(const unsigned char* bytes, std::uint64_t count) override
    {
        RecordingAPI::write_bytes(bytes, count);
        if (blocks.size() == 1) {
            send(AString("2"), clip_exists("inner"));
        }
    }
};

TEST(APICommand, CanBeSentWithinTheWriteOfAnother)
{
    NestingAPI api;
    api.send(AString("1"), clip_exists("outer"));
    EXPECT_EQ(api.blocks,
              (std::vector{clip_exists_bytes("1", "outer"), clip_exists_bytes("2", "inner")}));
}

} // namespace
