#pragma once

#include <cstdint>

// The library as a program has it that loads it when it needs it.
class LoadedLibrary
{
public:
    explicit LoadedLibrary(const char* path);
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
    ~LoadedLibrary(); // unloads

    bool is_loaded() const { return handle != nullptr; }

    template <typename Function>
    Function* function(const char* name) const
    {
        return reinterpret_cast<Function*>(address_of(name));
    }

private:
    void (*address_of(const char* name) const)();

    void* handle;
};

// What this process has of the system.
struct Resources {
    std::uint64_t threads;
    std::uint64_t descriptors;

    bool operator==(const Resources&) const = default;
};
Resources resources();
