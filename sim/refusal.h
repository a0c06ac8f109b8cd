#pragma once

#include <stdexcept>
#include <string>

#include "sim/words.h"

namespace veltosim
{

// A command that the server does not obey. The client gets an `error` reply; nothing has changed.
struct Refusal : std::runtime_error {
    explicit Refusal(const std::string& text, ErrorCode error_code = ErrorCode::general)
        : std::runtime_error(text), code(error_code)
    {
    }
    ErrorCode code;
};

// Bytes that are no command at all. There is nobody to answer to: the client is dropped.
struct Junk : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace veltosim
