#pragma once

// Print how fast a key-value store gets its writes confirmed, beside the round trip of a plain
// command, and how fast and in how much memory a reader takes a large scan. `smoke` only shows that
// it runs.
void measure_store_writes(bool smoke);
void measure_store_scan(bool smoke);
