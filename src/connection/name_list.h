#pragma once

#include "foundation/astring.h"

#include <vector>

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
    AStringBuilder text; // of the names that are not in the list yet
    std::uint64_t text_length = 0;
    std::vector<std::uint64_t> lengths; // theirs
};
