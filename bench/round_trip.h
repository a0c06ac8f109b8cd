#pragma once

// Prints the round trip of a command through the library beside the same bytes on a bare socket,
// and the rate of commands that are not waited for beside bare sends. `smoke` only shows that it
// runs.
void measure_round_trips(bool smoke);
void measure_rates(bool smoke);
