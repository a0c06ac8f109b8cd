#include "memory/exhaustion.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace
{

constexpr int nobody = 0;
constexpr int caller = 1;
constexpr int library = 2;

std::atomic<int> concerned{nobody};
std::atomic<bool> goes_on{false};
std::atomic<std::uint64_t> left{0}; // allocations that go well first
std::atomic<bool> struck{false};

thread_local bool is_caller = false;
thread_local bool is_spared = false;

bool is_exhausted()
{
    const int who = concerned.load(std::memory_order_relaxed);
    if (who == nobody || (who == caller ? !is_caller : is_caller || is_spared)) {
        return false;
    }
    for (std::uint64_t before = left; before != 0;) {
        if (left.compare_exchange_weak(before, before - 1)) {
            return false;
        }
    }
    return !struck.exchange(true) || goes_on;
}

void* allocate(std::size_t size)
{
    return is_exhausted() ? nullptr : std::malloc(size != 0 ? size : 1);
}

} // namespace

Exhaustion::Exhaustion(Of threads, std::uint64_t behind, Lasting lasting)
{
    is_caller = true;
    struck = false;
    left = behind;
    goes_on = lasting == Lasting::on;
    concerned = threads == Of::caller ? caller : library;
}

void Exhaustion::end()
{
    concerned = nobody;
}

bool Exhaustion::has_struck() const
{
    return struck;
}

void Exhaustion::spare_this_thread()
{
    is_spared = true;
}

void* operator new(std::size_t size)
{
    if (void* memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
