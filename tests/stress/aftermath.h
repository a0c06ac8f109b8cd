#pragma once

#include "stress/actor.h"

#include <deque>

namespace stress
{

// What has to be so once nothing goes wrong any more and the workers have ended: every connection
// comes up, changes reach everyone, what was confirmed is there, all connections see the same, and
// everything can be closed. `judge` is a thread of its own to the model.
void check_aftermath(Actor& judge, std::deque<Actor>& workers);

} // namespace stress
