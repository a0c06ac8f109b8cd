#include "process/loaded_library.h"

#include <windows.h>

#include <tlhelp32.h>

LoadedLibrary::LoadedLibrary(const char* path) : handle(LoadLibraryA(path)) {}

LoadedLibrary::~LoadedLibrary()
{
    FreeLibrary(static_cast<HMODULE>(handle));
}

void (*LoadedLibrary::address_of(const char* name) const)()
{
    return reinterpret_cast<void (*)()>(GetProcAddress(static_cast<HMODULE>(handle), name));
}

Resources resources()
{
    Resources found{0, 0};
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    found.descriptors = handles;
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    for (BOOL more = Thread32First(snapshot, &thread); more;
         more = Thread32Next(snapshot, &thread)) {
        found.threads += thread.th32OwnerProcessID == GetCurrentProcessId();
    }
    CloseHandle(snapshot);
    return found;
}
