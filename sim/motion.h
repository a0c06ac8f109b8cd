#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "sim/standards.h"

namespace veltosim
{

using TimePoint = std::chrono::steady_clock::time_point;

// Speeds are signed 16.16 fixed-point numbers, as on the wire, and positions in motion count the
// same parts of a field.
using Speed = std::int32_t;
inline constexpr Speed normal_speed = 0x10000;
inline constexpr std::int64_t parts_of_field = 0x10000;

// From `first` to the field before `end`.
struct Range {
    std::uint32_t first = 0;
    std::uint32_t end = 1;
};

enum class Turn : std::uint8_t { none, loop, pingpong };

// The way that a playing clip takes: through `leg` to its border, and there to an end or, for ever,
// round in `round`. Neither range is empty.
struct Path {
    Range leg;
    Range round;
    Turn turn = Turn::none;
};

// Where the motion began, when, and how fast. Nothing ticks: a position is computed when asked for.
struct Motion {
    TimePoint since{};
    std::int64_t base = 0; // in parts of a field
    Speed speed = 0;
};

struct Moment {
    std::int64_t at = 0;     // in parts of a field
    int direction = 1;       // 1 or -1: turned round by each end of a pingpong
    std::uint32_t field = 0; // the field on the screen
};

constexpr int direction_of(Speed speed)
{
    return speed < 0 ? -1 : 1;
}

constexpr std::int64_t parts(std::int64_t field)
{
    return field * parts_of_field;
}

// The field on the screen: moving forward a field shows from its start on, moving back from its end
// on, so that each shows equally long.
std::uint32_t field_at(std::int64_t at, int direction);

// The moment that `now` is; behind the end of a path without turn its last field shows.
Moment moment_at(const Motion& motion, const Path& path, const FieldRate& rate, TimePoint now);

// When the end of a path without turn was reached, if that was not later than `now`.
std::optional<TimePoint> end_time(const Motion& motion, const Path& path, const FieldRate& rate,
                                  TimePoint now);

// The fields since the last midnight of a clock that has run for `time`.
std::uint64_t fields_of_day(std::chrono::nanoseconds time, const FieldRate& rate);

// When the next one of these fields begins on the clock that `now` belongs to.
TimePoint next_field(TimePoint now, const FieldRate& rate);

std::chrono::nanoseconds duration_of(std::uint32_t fields, const FieldRate& rate);

} // namespace veltosim
