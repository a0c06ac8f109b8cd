#pragma once

#include "foundation/amutex.h"
#include "foundation/astring.h"

#include <map>

// The last text that each thread recorded. One for the process, made at first use and never
// destroyed.
//
// Thread: any. Locks: `lock`, a leaf.
class LastErrorTable
{
public:
    // A text that this thread has recorded last already is not recorded again: nearly all are "OK".
    void set(const AString& text);
    AString get();

private:
    struct Recorded;
    // Of this thread.
    static Recorded& recorded();
    // The entry of this thread. The system gives the id of a thread that has ended to a new one,
    // which must not find the old text.
    AString& entry();

    AMutex lock;
    std::map<std::uint32_t, AString> texts;
};

LastErrorTable& last_error_table();

// For the calling thread.
void set_last_error_text(const AString& text);
AString get_last_error_text();
