#pragma once

#include "foundation/astring.h"

// Names that are taken one by one, from the front.
using NameList = ARef<AStringList>;

// Makes a list of names that may be long and is kept. A text of its own would cost each name a
// whole segment, so the names are packed: as many as fill a segment share one.
class NameListBuilder
{
public:
    void append(const AString& name);
    // Never null. The list is given away.
    NameList finish();

private:
    void pack();

    NameList names;
    AStringList unpacked;
    std::uint64_t unpacked_length = 0;
};
