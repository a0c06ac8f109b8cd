#pragma once

#include "foundation/astring.h"

#include <atomic>

// Where segments come from: a bounded, process-wide pool of free ones in front of the heap. Any
// thread; never blocks.

// An empty segment, null when memory is exhausted.
AStringSegment* take_segment();
// Takes a whole chain back.
void release_segments(AStringSegment* head);

// For tests: while set, `take_segment` finds memory exhausted.
extern std::atomic<bool> segments_exhausted;
