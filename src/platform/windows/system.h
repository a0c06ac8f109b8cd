#pragma once

// The system's headers in the one order in which they can be included.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif

// clang-format off
#include <winsock2.h>
#include <windows.h>
// clang-format on
