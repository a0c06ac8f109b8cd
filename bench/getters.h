#pragma once

// Prints what it costs to ask for the position of a channel, on one thread and on several at once,
// in the library beside the peer client. `smoke` only shows that it runs.
void measure_getters(bool smoke);
