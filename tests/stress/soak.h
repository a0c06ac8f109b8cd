#pragma once

#include "stress/run.h"

namespace stress
{

// Twelve clients, which are connections of this process: one is closed and another opened now and
// then. A run that prints its figures every ten seconds, and at its end whether anything was lost
// or has grown. The table goes to the file too, if one is named. Gives the program's exit code.
int soak(const Options& options, const std::string& table_file);

} // namespace stress
