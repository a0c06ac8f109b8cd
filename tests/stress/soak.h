#pragma once

#include "stress/run.h"

namespace stress
{

// A run that prints its figures every ten seconds, and at its end whether anything was lost or has
// grown. The table goes to the file too, if one is named. Gives the program's exit code.
int soak(const Options& options, const std::string& table_file);

} // namespace stress
