#include "sim/report_source.h"

namespace veltosim
{

ReportRound ReportSource::at_field(TimePoint now)
{
    return look(now, pacer.due(now) ? Positions::all : Positions::jumped);
}

ReportRound ReportSource::after_command(TimePoint now)
{
    return look(now, Positions::jumped);
}

ReportRound ReportSource::look(TimePoint now, Positions positions)
{
    ReportRound round;
    round.positions = positions;
    for (Channel& channel : station.channels) {
        channel.catch_up(now);
        round.channels.push_back(channel.view(now));
    }
    return round;
}

} // namespace veltosim
