#pragma once

#include "foundation/astring.h"
#include "velto/velto.h"

// How a call ends: each records its text for the calling thread and returns its code. Members also
// call result_ok() to compare a code with it; that records "OK", so that a failure that is tested
// in this way keeps its code and loses its text. Wanted, and relied on.
VeltoResult result_ok();
VeltoResult result_failed(const AString& text);
VeltoResult result_with_code(VeltoResult code, const AString& text);
VeltoResult result_invalid_handle();
VeltoResult result_read_only();
VeltoResult result_timeout();
VeltoResult result_invalid_argument();
VeltoResult result_write_only();
