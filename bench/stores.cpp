#include "stores.h"

#include "library_link.h"
#include "measure.h"

#include <fmt/format.h>

#include <cstdio>
#include <iterator>

namespace
{

constexpr std::uint32_t flush_limit_ms = 60000; // only catches a hang
constexpr std::uint32_t entries_in_a_reply = 200;

using Text = std::basic_string<VeltoChar>;

Text text(const std::string& ascii)
{
    return Text(ascii.begin(), ascii.end());
}

// A store on a connection of its own.
class BenchStore
{
public:
    BenchStore(VeltoHandle connection, std::uint32_t mode)
    {
        require(velto_open_kvstore(connection, VELTO_TEXT("notes"), VELTO_TEXT("clip/"), mode,
                                   &handle) == VELTO_RESULT_OK,
                "velto_open_kvstore failed");
    }
    BenchStore(const BenchStore&) = delete;
    BenchStore& operator=(const BenchStore&) = delete;
    ~BenchStore() { velto_close_key_value_store(handle); }

    VeltoStoreHandle handle = 0;
};

double writes_per_second(const BenchStore& store, const std::vector<Text>& keys, const Text& value)
{
    const auto start = Clock::now();
    for (const Text& key : keys) {
        velto_kvstore_set(store.handle, key.c_str(), value.c_str());
    }
    require(velto_kvstore_flush(store.handle, flush_limit_ms) == VELTO_RESULT_OK,
            "velto_kvstore_flush failed");
    return static_cast<double>(keys.size()) / seconds_since(start);
}

double commands_per_second(VeltoHandle connection, std::size_t count)
{
    const auto start = Clock::now();
    for (std::size_t i = 0; i < count; ++i) {
        require(velto_cmd_stop1(connection, VELTO_CHANNEL_A) == VELTO_RESULT_OK,
                "velto_cmd_stop1 failed");
    }
    return static_cast<double>(count) / seconds_since(start);
}

// Answers a download with the whole of a database, which has `entry_count` entries.
class Database
{
public:
    explicit Database(std::uint32_t count) : entry_count(count) {}

    std::string operator()(const std::string& command) const
    {
        std::string reply;
        if (command.find("<download_metadata>") != std::string::npos) {
            const std::string xid = text_of(command, "xid");
            for (std::uint32_t first = 0; first < entry_count; first += entries_in_a_reply) {
                append_reply(reply, xid, first);
            }
        }
        return reply + ok_reply_to(command);
    }

private:
    void append_reply(std::string& reply, const std::string& xid, std::uint32_t first) const
    {
        const auto out = std::back_inserter(reply);
        fmt::format_to(out,
                       "<reply><xid>{}</xid><metadata><MetadataDatabase>notes</MetadataDatabase>"
                       "<MetadataPrefix></MetadataPrefix><MetadataList>",
                       xid);
        for (std::uint32_t i = first; i < first + entries_in_a_reply && i < entry_count; ++i) {
            fmt::format_to(
                out, "<Metadata><Key>clip/{0:06}</Key><Value>title {0}</Value></Metadata>", i);
        }
        reply += "</MetadataList></metadata></reply>";
    }

    std::uint32_t entry_count;
};

// Takes `count` changes, waiting for each.
void drain(const BenchStore& store, std::uint32_t count)
{
    VeltoChar key[64], value[64];
    std::uint32_t kind = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        require(velto_kvstore_get_change(store.handle, flush_limit_ms, &kind, {key, 64},
                                         {value, 64}) == VELTO_RESULT_OK,
                "a change has not come");
    }
}

} // namespace

// The two take turns, so that whatever else the machine does meets them alike.
void measure_store_writes(bool smoke)
{
    const int rounds = smoke ? 2 : 20;
    const std::size_t count = smoke ? 50 : 2000;

    const Responder responder;
    const LibraryLink link(responder);
    const BenchStore store(link.handle, VELTO_STORE_WRITE);
    std::vector<Text> keys;
    for (std::size_t i = 0; i < count; ++i) {
        keys.push_back(text(fmt::format("{:06}", i)));
    }
    const Text value = text("ready for air");

    std::vector<double> commands, writes;
    for (int round = 0; round < rounds; ++round) {
        commands.push_back(commands_per_second(link.handle, count));
        writes.push_back(writes_per_second(store, keys, value));
    }
    const double command_rate = median(commands);
    const double write_rate = median(writes);
    std::printf("writes through one store, %d rounds of %zu, in turns; median\n", rounds, count);
    std::printf("  %-38s %10.0f a second\n", "velto_cmd_stop1, one after the other", command_rate);
    std::printf("  %-38s %10.0f a second (%.2f of them)\n", "writes confirmed", write_rate,
                write_rate / command_rate);
}

void measure_store_scan(bool smoke)
{
    const int rounds = smoke ? 1 : 5;
    const std::uint32_t count = smoke ? 1000 : 100000;

    const Responder responder{Database(count)};
    const LibraryLink link(responder);
    std::vector<double> together, drains, bytes;
    for (int round = 0; round < rounds; ++round) {
        {
            const auto start = Clock::now();
            const BenchStore store(link.handle, VELTO_STORE_READ);
            drain(store, count);
            together.push_back(count / seconds_since(start));
        }
        const BenchStore store(link.handle, VELTO_STORE_READ);
        require(velto_kvstore_wait_scan(store.handle, flush_limit_ms) == VELTO_RESULT_OK,
                "the scan has not ended");
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // the server lets go as well
        const double full = allocated_bytes();
        const auto start = Clock::now();
        drain(store, count);
        drains.push_back(count / seconds_since(start));
        bytes.push_back((full - allocated_bytes()) / count);
    }
    std::printf("scan of %u keys of 11 characters, values of some 11; median of %d\n", count,
                rounds);
    std::printf("  %-38s %10.0f changes a second\n", "opened and drained as it arrives",
                median(together));
    std::printf("  %-38s %10.0f changes a second\n", "drained once all is there", median(drains));
    std::printf("  %-38s %10.0f bytes, as the allocator counts\n", "an undelivered change takes",
                median(bytes));
}
