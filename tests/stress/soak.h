#pragma once

#include "stress/run.h"

namespace stress
{

// Twelve clients, which are connections of this process: now and then one is closed and another
// opened. Prints figures every ten seconds, and at the end whether anything was lost, or has grown
// since the first minute; at both times everything is closed, so that what is left can be compared.
// The table goes to the file too, if one is named. Gives the program's exit code.
int soak(const Options& options, const std::string& table_file);

} // namespace stress
