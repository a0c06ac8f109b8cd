#include "sim/motion.h"

#include <algorithm>

namespace veltosim
{

namespace
{

// Speed, rate and nanoseconds multiply to more than 64 bits within minutes.
__extension__ typedef __int128 Wide;

constexpr Wide nanoseconds_a_second = 1'000'000'000;
constexpr std::chrono::nanoseconds day = std::chrono::days(1);

Wide magnitude(Speed speed)
{
    return speed < 0 ? -static_cast<Wide>(speed) : static_cast<Wide>(speed);
}

Wide distance_covered(const Motion& motion, const FieldRate& rate, TimePoint now)
{
    const auto elapsed = std::chrono::nanoseconds(now - motion.since).count();
    if (elapsed <= 0) {
        return 0;
    }
    return magnitude(motion.speed) * elapsed * rate.fields / (rate.seconds * nanoseconds_a_second);
}

Wide distance_to_border(const Motion& motion, const Path& path)
{
    return motion.speed < 0 ? motion.base - (parts(path.leg.first) - parts_of_field)
                            : parts(path.leg.end) - motion.base;
}

Moment moment(std::int64_t at, int direction)
{
    return {at, direction, field_at(at, direction)};
}

// Where a walk through `range` stands that began at the border which `direction` leads away from.
Moment walked(const Range& range, int direction, Wide distance)
{
    const auto way = static_cast<std::int64_t>(distance);
    return direction > 0 ? moment(parts(range.first) + way, 1)
                         : moment(parts(range.end) - parts_of_field - way, -1);
}

Moment last_of(const Range& range, int direction)
{
    const std::uint32_t field = direction > 0 ? range.end - 1 : range.first;
    return moment(parts(field), direction);
}

Moment turned(const Path& path, int direction, Wide behind_border)
{
    const Wide length = parts(path.round.end) - parts(path.round.first);
    if (path.turn == Turn::loop) {
        return walked(path.round, direction, behind_border % length);
    }
    const Wide way = behind_border % (2 * length);
    return way < length ? walked(path.round, -direction, way)
                        : walked(path.round, direction, way - length);
}

} // namespace

std::uint32_t field_at(std::int64_t at, int direction)
{
    const std::int64_t rounded = direction > 0 ? at : at + parts_of_field - 1;
    return static_cast<std::uint32_t>(rounded / parts_of_field);
}

Moment moment_at(const Motion& motion, const Path& path, const FieldRate& rate, TimePoint now)
{
    const int direction = direction_of(motion.speed);
    const Wide covered = distance_covered(motion, rate, now);
    const Wide to_border = distance_to_border(motion, path);
    if (covered < to_border) {
        return moment(motion.base + direction * static_cast<std::int64_t>(covered), direction);
    }
    return path.turn == Turn::none ? last_of(path.leg, direction)
                                   : turned(path, direction, covered - to_border);
}

std::optional<TimePoint> end_time(const Motion& motion, const Path& path, const FieldRate& rate,
                                  TimePoint now)
{
    const Wide to_border = distance_to_border(motion, path);
    if (path.turn != Turn::none || distance_covered(motion, rate, now) < to_border) {
        return std::nullopt;
    }
    const Wide a_second = magnitude(motion.speed) * rate.fields;
    const Wide wait = (to_border * rate.seconds * nanoseconds_a_second + a_second - 1) / a_second;
    return motion.since + std::chrono::nanoseconds(static_cast<std::int64_t>(wait));
}

std::uint64_t fields_of_day(std::chrono::nanoseconds time, const FieldRate& rate)
{
    return static_cast<std::uint64_t>(Wide{(time % day).count()} * rate.fields /
                                      (rate.seconds * nanoseconds_a_second));
}

TimePoint next_field(TimePoint now, const FieldRate& rate)
{
    const std::chrono::nanoseconds time = now.time_since_epoch();
    const Wide next = static_cast<Wide>(fields_of_day(time, rate)) + 1;
    const Wide begin = (next * rate.seconds * nanoseconds_a_second + rate.fields - 1) / rate.fields;
    const std::chrono::nanoseconds since_midnight(static_cast<std::int64_t>(begin));
    return TimePoint(time - time % day + std::min(since_midnight, day));
}

std::chrono::nanoseconds duration_of(std::uint32_t fields, const FieldRate& rate)
{
    const Wide wait = static_cast<Wide>(fields) * rate.seconds * nanoseconds_a_second / rate.fields;
    return std::chrono::nanoseconds(static_cast<std::int64_t>(wait));
}

} // namespace veltosim
