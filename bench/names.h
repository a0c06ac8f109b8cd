#pragma once

// Prints how fast a long list of clip names arrives, what a name costs in CPU time and in memory,
// in the library beside a peer client, and how fast names are taken from it. `smoke` only shows
// that it runs.
void measure_names(bool smoke);
