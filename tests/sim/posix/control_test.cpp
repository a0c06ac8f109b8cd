#include <array>
#include <csignal>
#include <random>
#include <string>

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

class ControlTest : public testing::Test
{
protected:
    std::random_device seed;
    std::string address =
        asio::ip::address_v4(std::uniform_int_distribution<asio::ip::address_v4::uint_type>(
                                 0x7F010001, 0x7FFEFFFE)(seed))
            .to_string();
    asio::io_context context;

    tcp::socket connect()
    {
        tcp::socket client(context);
        client.connect({asio::ip::make_address(address), server_port});
        return client;
    }
    std::string ask(tcp::socket& client, const std::string& content)
    {
        std::string received;
        std::error_code error;
        asio::write(client, asio::buffer("<cmd><xid>1</xid>" + content + "</cmd>"));
        asio::read_until(client, asio::dynamic_buffer(received), "</reply>", error);
        return error ? received + "(closed)" : received;
    }
};

const std::string stop_a = "<stop><Channel>A</Channel></stop>";
const std::string ok = "<reply><xid>1</xid><ok/></reply>";

std::string refused(const std::string& text)
{
    return "<reply><xid>1</xid><error><ErrorMessage>veltosim: stop: " + text +
           "</ErrorMessage><ErrorCode>general</ErrorCode></error></reply>";
}

} // namespace

TEST_F(ControlTest, LinesOnStandardInputAreObeyedAndAnswered)
{
    Program program({"--address", address});
    tcp::socket client = connect();
    EXPECT_EQ(ask(client, stop_a), ok);
    program.write("refuse stop no\nnonsense\n");
    EXPECT_EQ(program.line(), "ok: stop is refused");
    EXPECT_EQ(program.line().substr(0, 36), "error: 'nonsense' is not understood;");
    EXPECT_EQ(ask(client, stop_a), refused("no"));
    program.write("cle");
    program.write("ar\n");
    EXPECT_EQ(program.line(), "ok: nothing goes wrong any more");
    EXPECT_EQ(ask(client, stop_a), ok);
    program.write("drop now\n");
    EXPECT_EQ(program.line(), "ok: 1 links are dropped");
    std::string rest;
    std::error_code error;
    asio::read(client, asio::dynamic_buffer(rest), error);
    EXPECT_EQ(error, asio::error::eof);
    EXPECT_EQ(program.end(SIGTERM), exit_ok);
}

TEST_F(ControlTest, FaultsCanBeThereFromTheStart)
{
    Program program(
        {"--address", address, "--fault", "refuse stop at first", "--fault", "split 3"});
    tcp::socket client = connect();
    EXPECT_EQ(ask(client, stop_a), refused("at first"));
}

TEST_F(ControlTest, TheEndOfTheInputEndsNothingElse)
{
    Program program({"--address", address});
    program.write("refuse stop\n");
    EXPECT_EQ(program.line(), "ok: stop is refused");
    program.close_input();
    tcp::socket client = connect();
    EXPECT_EQ(ask(client, stop_a), refused("it is refused on purpose"));
    EXPECT_EQ(program.end(SIGINT), exit_ok);
}

} // namespace veltosim
