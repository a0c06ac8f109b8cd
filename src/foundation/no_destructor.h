#pragma once

#include <cstddef>
#include <new>
#include <utility>

// A global that is never destroyed: workers may still run while the process ends.
template <typename T>
class NoDestructor
{
public:
    template <typename... Arguments>
    explicit NoDestructor(Arguments&&... arguments)
    {
        ::new (static_cast<void*>(storage)) T(std::forward<Arguments>(arguments)...);
    }

    NoDestructor(const NoDestructor&) = delete;
    NoDestructor& operator=(const NoDestructor&) = delete;

    T& operator*() { return *std::launder(reinterpret_cast<T*>(storage)); }
    const T& operator*() const { return *std::launder(reinterpret_cast<const T*>(storage)); }
    T* operator->() { return &**this; }
    const T* operator->() const { return &**this; }

private:
    alignas(T) std::byte storage[sizeof(T)];
};
