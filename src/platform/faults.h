#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

// Makes calls of the system fail, for tests: which call, when, how often and how. Where nothing is
// armed, a call costs one relaxed load more. None of this is exported.
namespace platform
{

// What the platform layer asks of the system; a system has most of these. docs/faults.md tells what
// becomes of each failure.
#define PLATFORM_CALLS(CALL)                                                                       \
    CALL(start_sockets)                                                                            \
    CALL(open_socket)                                                                              \
    CALL(connect)                                                                                  \
    CALL(connect_result)                                                                           \
    CALL(set_option)                                                                               \
    CALL(wait_ready)                                                                               \
    CALL(receive)                                                                                  \
    CALL(send)                                                                                     \
    CALL(shut_down)                                                                                \
    CALL(cancel)                                                                                   \
    CALL(close_socket)                                                                             \
    CALL(mutex_attributes)                                                                         \
    CALL(create_mutex)                                                                             \
    CALL(lock_mutex)                                                                               \
    CALL(unlock_mutex)                                                                             \
    CALL(destroy_mutex)                                                                            \
    CALL(create_semaphore)                                                                         \
    CALL(wait_semaphore)                                                                           \
    CALL(release_semaphore)                                                                        \
    CALL(destroy_semaphore)                                                                        \
    CALL(stack_limits)                                                                             \
    CALL(thread_attributes)                                                                        \
    CALL(signal_mask)                                                                              \
    CALL(stay_loaded)                                                                              \
    CALL(start_thread)                                                                             \
    CALL(thread_priority)                                                                          \
    CALL(thread_id)                                                                                \
    CALL(sleep)                                                                                    \
    CALL(yield)                                                                                    \
    CALL(monotonic_clock)                                                                          \
    CALL(wall_clock)

enum class Call : std::size_t {
#define PLATFORM_CALL(name) name,
    PLATFORM_CALLS(PLATFORM_CALL)
#undef PLATFORM_CALL
};

inline constexpr auto call_names = std::to_array<std::string_view>({
#define PLATFORM_CALL_NAME(name) #name,
    PLATFORM_CALLS(PLATFORM_CALL_NAME)
#undef PLATFORM_CALL_NAME
});

namespace faults
{

enum class Effect {
    fails,
    interrupted, // by a signal, or by an asynchronous call
    timed_out,
    empty, // succeeds with nothing: no bytes
    cut,   // takes no more than `bytes`
};

enum class Threads { all, caller, others }; // as seen from the thread that arms

inline constexpr std::uint64_t for_good = ~std::uint64_t{0};

struct Fault {
    Call call;
    Effect effect = Effect::fails;
    std::size_t bytes = 1;    // for `cut`
    std::uint64_t behind = 0; // so many calls go well first
    std::uint64_t times = 1;
    Threads threads = Threads::all;
};

// Behind what is armed for that call already: one fault strikes when the one before is used up.
void arm(const Fault& fault);
void disarm_all();
// How often faults of the call have struck since all were disarmed.
std::uint64_t struck(Call call);

struct Strike {
    Effect effect;
    std::size_t bytes;
};

inline std::atomic<bool> any_armed{false};
std::optional<Strike> next_strike(Call call);

inline std::optional<Strike> strike(Call call)
{
    return any_armed.load(std::memory_order_relaxed) ? next_strike(call) : std::nullopt;
}

} // namespace faults

// A call of the system that can be made to fail. `Failure::tell<Result> (effect)` leaves behind
// what the system would, and gives what the call then returns.
template <Call Which, typename Failure, auto Native>
struct SystemCall {
    template <typename... Arguments>
    auto operator()(Arguments... arguments) const
    {
        using Result = decltype(Native(arguments...));
        const auto strike = faults::strike(Which);
        return strike ? Failure::template tell<Result>(strike->effect) : Native(arguments...);
    }
};

// One that lets go of something: it is gone, even when the system tells of a failure.
template <Call Which, typename Failure, auto Native>
struct ReleasingCall {
    template <typename... Arguments>
    auto operator()(Arguments... arguments) const
    {
        const auto result = Native(arguments...);
        const auto strike = faults::strike(Which);
        return strike ? Failure::template tell<decltype(result)>(strike->effect) : result;
    }
};

// One that moves bytes, or a part of them.
template <Call Which, typename Failure, auto Native>
struct TransferCall {
    template <typename Socket, typename Bytes, typename Count>
    auto operator()(Socket socket, Bytes* bytes, Count count, int flags) const
    {
        using Result = decltype(Native(socket, bytes, count, flags));
        const auto strike = faults::strike(Which);
        if (!strike) {
            return Native(socket, bytes, count, flags);
        }
        if (strike->effect == faults::Effect::empty) {
            return Result{0};
        }
        if (strike->effect != faults::Effect::cut) {
            return Failure::template tell<Result>(strike->effect);
        }
        const auto few = static_cast<Count>(strike->bytes);
        return Native(socket, bytes, few < count ? few : count, flags);
    }
};

} // namespace platform
