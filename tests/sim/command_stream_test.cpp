#include "sim/command_stream.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sim/refusal.h"

namespace veltosim
{

namespace
{

const std::string first =
    "<cmd>\r\n<xid>1</xid>\r\n<play>\r\n<Channel>A</Channel>\r\n</play>\r\n</cmd>";
const std::string second = "<cmd>\r\n<xid>2</xid>\r\n<get_disk_usage />\r\n</cmd>";

std::vector<std::string> drain(CommandStream& stream)
{
    std::vector<std::string> commands;
    while (auto command = stream.next()) {
        commands.push_back(*command);
    }
    return commands;
}

std::vector<std::string> cut(const std::vector<std::string>& blocks)
{
    CommandStream stream;
    std::vector<std::string> commands;
    for (const std::string& block : blocks) {
        stream.feed(block);
        const auto complete = drain(stream);
        commands.insert(commands.end(), complete.begin(), complete.end());
    }
    return commands;
}

} // namespace

TEST(CommandStream, CutsCommandsThatFollowEachOther)
{
    EXPECT_EQ(cut({first + second + first}), (std::vector{first, second, first}));
}

TEST(CommandStream, GivesACommandWithItsLastByteAndNotBefore)
{
    CommandStream stream;
    for (const char byte : first.substr(0, first.size() - 1)) {
        stream.feed({&byte, 1});
        ASSERT_EQ(stream.next(), std::nullopt);
    }
    stream.feed(">");
    EXPECT_EQ(stream.next(), first);
    EXPECT_EQ(stream.next(), std::nullopt);
}

TEST(CommandStream, DoesNotMindWhereTheBlocksAreCut)
{
    const std::string all = first + second;
    for (std::size_t at = 0; at <= all.size(); ++at) {
        EXPECT_EQ(cut({all.substr(0, at), all.substr(at)}), (std::vector{first, second})) << at;
    }
}

TEST(CommandStream, SkipsWhiteSpaceBetweenCommands)
{
    EXPECT_EQ(cut({"\r\n \t" + first + "\n", "\n" + second + " "}), (std::vector{first, second}));
}

TEST(CommandStream, AnythingElseBetweenCommandsIsJunk)
{
    for (const char* junk :
         {"x", "<reply>", "<cmd/>", "<cmd >", "<CMD>", "<cm>", "</cmd>", "\xFF", "<?xml?>", ">"}) {
        CommandStream stream;
        stream.feed(first + junk);
        EXPECT_EQ(stream.next(), first);
        EXPECT_THROW(stream.next(), Junk) << junk;
    }
    CommandStream stream;
    stream.feed(std::string(1, '\0'));
    EXPECT_THROW(stream.next(), Junk);
}

TEST(CommandStream, TheLargestCommandFitsAndOneByteMoreIsJunk)
{
    const std::string frame = "<cmd></cmd>";
    const auto of_size = [&](std::size_t bytes) {
        return "<cmd>" + std::string(bytes - frame.size(), 'x') + "</cmd>";
    };
    const std::string largest = of_size(CommandStream::largest_command);
    EXPECT_EQ(cut({largest, second}), (std::vector{largest, second}));
    EXPECT_THROW(cut({of_size(CommandStream::largest_command + 1)}), Junk);
}

TEST(CommandStream, ACommandWithoutEndIsJunkAtTheLimit)
{
    CommandStream stream;
    stream.feed("<cmd>");
    const std::string block(4096, 'x');
    std::size_t fed = 5;
    const auto feed_all = [&] {
        for (; fed <= 2 * CommandStream::largest_command; fed += block.size()) {
            stream.feed(block);
            (void)stream.next();
        }
    };
    EXPECT_THROW(feed_all(), Junk);
    EXPECT_LE(fed, CommandStream::largest_command);
}

} // namespace veltosim
