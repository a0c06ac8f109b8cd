#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sim/channel.h"
#include "sim/motion.h"
#include "sim/standards.h"
#include "sim/words.h"

namespace veltosim
{

// Which positions a round of reports tells. All others are told whenever they have changed.
enum class Positions : std::uint8_t {
    none,
    jumped, // those that were set, not reached by moving
    all,
};

// All channels at one moment, of which each client is then told what it has registered and does not
// know yet.
struct ReportRound {
    std::vector<ChannelView> channels;
    Positions positions = Positions::all;
};

// Says of the moments at which positions are looked at whether they are to be told: once in each
// period of `rate`.
class Pacer
{
public:
    explicit Pacer(const FieldRate& told_rate) : rate(told_rate) {}
    bool due(TimePoint now);

private:
    FieldRate rate;
    std::optional<std::uint64_t> last_period;
};

// The channel reports that one client has registered, and what it was told last.
class ChannelReports
{
public:
    // What is added again is told again. Throws a Refusal for a kind that this server never sends.
    void add(std::size_t channel, ChannelReportType type);
    bool has(std::size_t channel, ChannelReportType type) const;
    bool empty() const { return told.empty(); }

    // The messages of one round. What a round leaves out comes with a later one, if it is still
    // news then.
    std::vector<std::string> news(const ReportRound& round, const Standard& standard);

private:
    using Key = std::pair<std::size_t, ChannelReportType>;

    std::map<Key, std::optional<ChannelView>> told;
};

} // namespace veltosim
