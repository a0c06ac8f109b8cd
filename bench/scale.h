#pragma once

// Prints what a thousand connections in one process take: time to come up, memory, threads, CPU
// time when idle, and the round trip of a busy one beside the others. `smoke` shows with few that
// it runs.
void measure_scale(bool smoke);

// The processes that it starts, by arguments of this program; false for other arguments.
bool run_part_of_scale(int argc, char** argv);
