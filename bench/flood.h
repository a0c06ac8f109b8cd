#pragma once

// Prints how fast channel_timecode reports are taken in, and what one costs in CPU time, in the
// library beside the peer client. `smoke` only shows that it runs.
void measure_flood(bool smoke);
