#pragma once

#include "foundation/aassert.h"

#include <atomic>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <type_traits>

// Counts are changed by compare-and-swap loops, sequentially consistent.
template <typename Step>
std::uint32_t atomic_step(std::atomic<std::uint32_t>& cell, Step step)
{
    std::uint32_t seen = cell.load(std::memory_order_relaxed);
    while (!cell.compare_exchange_weak(seen, step(seen))) {
    }
    return step(seen);
}

inline std::uint32_t atomic_increment(std::atomic<std::uint32_t>& cell)
{
    return atomic_step(cell, [](std::uint32_t value) { return value + 1; });
}

inline std::uint32_t atomic_decrement(std::atomic<std::uint32_t>& cell)
{
    return atomic_step(cell, [](std::uint32_t value) { return value - 1; });
}

inline std::uint32_t atomic_subtract(std::atomic<std::uint32_t>& cell, std::uint32_t amount)
{
    return atomic_step(cell, [amount](std::uint32_t value) { return value - amount; });
}

// The rest works on plain cells. Where the address is not aligned the operation is carried out all
// the same, under the global mutex and atomic only against others at such addresses; the exchanges
// report it.
namespace atomic_detail
{

// Runs `step` under the global mutex, which is made on first use and never freed.
void run_guarded(void (*step)(void* context), void* context);

template <typename Step>
void guarded(Step step)
{
    run_guarded([](void* context) { (*static_cast<Step*>(context))(); }, &step);
}

// Untyped, so that no compiler takes an alignment for granted.
template <typename T>
bool is_aligned(const void* address)
{
    return reinterpret_cast<std::uintptr_t>(address) % sizeof(T) == 0;
}

template <typename T>
T load(void* address)
{
    if (is_aligned<T>(address)) {
        return std::atomic_ref<T>(*static_cast<T*>(address)).load();
    }
    T value;
    std::memcpy(&value, address, sizeof value);
    return value;
}

template <typename T>
void store(void* address, T value)
{
    if (is_aligned<T>(address)) {
        std::atomic_ref<T>(*static_cast<T*>(address)).store(value);
    } else {
        std::memcpy(address, &value, sizeof value);
    }
}

template <typename T>
bool guarded_compare_exchange(void* address, T expected, T desired)
{
    bool equal = false;
    guarded([&] {
        equal = load<T>(address) == expected;
        if (equal) {
            store<T>(address, desired);
        }
    });
    return equal;
}

} // namespace atomic_detail

template <typename T>
T atomic_read(const T* address)
{
    auto* cell = const_cast<T*>(address);
    if (atomic_detail::is_aligned<T>(cell)) {
        return atomic_detail::load<T>(cell);
    }
    T value{};
    atomic_detail::guarded([&] { value = atomic_detail::load<T>(cell); });
    return value;
}

template <typename T>
requires std::same_as<T, std::uint32_t> || std::same_as<T, std::uint64_t>
void atomic_write(T* address, T value)
{
    if (atomic_detail::is_aligned<T>(address)) {
        std::atomic_ref<T>(*address).exchange(value);
    } else {
        atomic_detail::guarded([&] { atomic_detail::store<T>(address, value); });
    }
}

// Stores `desired` where `expected` was, and tells whether it did.
inline bool atomic_compare_exchange(std::uint32_t* address, std::uint32_t expected,
                                    std::uint32_t desired)
{
    if (!A_CHECK("atomic_win32_impl", atomic_detail::is_aligned<std::uint32_t>(address))) {
        return atomic_detail::guarded_compare_exchange(address, expected, desired);
    }
    return std::atomic_ref<std::uint32_t>(*address).compare_exchange_strong(expected, desired);
}

// The same for pointers, under the global mutex. It serves to publish a value that is made lazily
// once, and to take a pointer out of a field.
template <typename T>
bool atomic_compare_exchange(T** address, std::type_identity_t<T>* expected,
                             std::type_identity_t<T>* desired)
{
    A_CHECK("atomic_win32_impl", atomic_detail::is_aligned<T*>(address));
    return atomic_detail::guarded_compare_exchange<T*>(address, expected, desired);
}

// A cell of two words; whoever stores a value raises the generation.
struct alignas(16) AtomicCell128 {
    std::uint64_t value = 0;
    std::uint64_t generation = 0;
};

bool atomic_compare_exchange(AtomicCell128* cell, const AtomicCell128& expected,
                             const AtomicCell128& desired);
