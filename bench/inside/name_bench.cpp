#include "connection/name_list.h"
#include "connection/velto.h"
#include "foundation/afunctionext.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace
{

constexpr std::size_t block_bytes = 2048; // as the worker receives them

// Lists without a server: what it sends goes nowhere.
class Lister : public VeltoConnObject
{
public:
    Lister()
        : xid(issue(ZAVL3::command::download_clipids{},
                    {bind<&Lister::end>(this), bind<&Lister::take_name>(this),
                     bind<&Lister::fail>(this)})
                  .to_utf8())
    {
    }

    void write_bytes(const unsigned char*, std::uint64_t) override {}

    NameListBuilder names;
    const std::string xid;

private:
    void take_name(AString name) { names.append(name); }
    void end() {}
    void fail(AString, ZAVL3::ErrorCode) {}
};

// The road of a name, from its bytes to the list, without a socket.
void NameToList(benchmark::State& state)
{
    constexpr std::uint32_t count = 1000;
    Lister lister;
    std::string stream;
    for (std::uint32_t i = 0; i < count; ++i) {
        fmt::format_to(std::back_inserter(stream),
                       "<reply><xid>{}</xid><clipid><ClipID>news/day_07/item_{:06}</ClipID>"
                       "</clipid></reply>",
                       lister.xid, i);
    }
    for (auto _ : state) {
        for (std::size_t at = 0; at < stream.size(); at += block_bytes) {
            lister.feed_bytes(stream.data() + at, std::min(block_bytes, stream.size() - at));
        }
        if (lister.names.finish()->length() != count) {
            state.SkipWithError("the names did not arrive");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * count);
}

BENCHMARK(NameToList);

} // namespace
