#pragma once

#include "foundation/anumber.h"
#include "foundation/astring.h"

// A text template with the placeholders %1 to %99. Each `arg` fills one piece: the first one with
// the lowest number still open.
class AStringFormat
{
public:
    explicit AStringFormat(const AString& text);

    AStringFormat& arg(AString value);
    AStringFormat& arg(std::uint32_t value, std::int64_t width = 0, char fill = ' ');
    AStringFormat& arg(std::uint64_t value, std::int64_t width = 0, char fill = ' ');
    AString to_string() const;

private:
    nonstd_list<AString> pieces;
    nonstd_list<int> indexes; // per piece; -1 for literal text and for what is filled already
};
