#pragma once

#include "sim/motion.h"
#include "sim/reports.h"
#include "sim/standards.h"
#include "sim/station.h"

namespace veltosim
{

// Looks at a station's channels for the clients that have registered reports.
class ReportSource
{
public:
    // Positions of moving channels are told at `report_rate`, and not more often than looked at.
    ReportSource(Station& watched_station, const FieldRate& report_rate)
        : station(watched_station), pacer(report_rate)
    {
    }

    // The round for the beginning of a field.
    ReportRound at_field(TimePoint now);
    // The round for what a command has just changed.
    ReportRound after_command(TimePoint now);

private:
    ReportRound look(TimePoint now, Positions positions);

    Station& station;
    Pacer pacer;
};

} // namespace veltosim
