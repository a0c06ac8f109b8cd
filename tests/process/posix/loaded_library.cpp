#include "process/loaded_library.h"

#include <filesystem>
#include <iterator>

#include <dlfcn.h>

LoadedLibrary::LoadedLibrary(const char* path) : handle(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {}

LoadedLibrary::~LoadedLibrary()
{
    dlclose(handle);
}

void (*LoadedLibrary::address_of(const char* name) const)()
{
    return reinterpret_cast<void (*)()>(dlsym(handle, name));
}

namespace
{

std::uint64_t entries(const char* directory)
{
    const std::filesystem::directory_iterator first(directory);
    return static_cast<std::uint64_t>(std::distance(first, {}));
}

} // namespace

Resources resources()
{
    return {entries("/proc/self/task"), entries("/proc/self/fd")};
}
