#pragma once

#include "foundation/astring.h"

#include <gtest/gtest.h>

#include <ostream>

// What GoogleTest and streams show of a string.
inline std::ostream& operator<<(std::ostream& out, const AString& text)
{
    return out << text.to_utf8();
}

inline void PrintTo(const AString& text, std::ostream* out)
{
    *out << testing::PrintToString(text.to_utf8()) << " (" << text.length() << " characters)";
}
