#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace veltosim
{

// Something wrong with a text at one of its lines, which count from 1.
struct LocatedError : std::runtime_error {
    LocatedError(std::size_t error_line, const std::string& reason)
        : std::runtime_error(reason), line(error_line)
    {
    }
    std::size_t line;
};

// A JSON value that knows where it stands, so that an error in its meaning can be told like one in
// its form.
struct LocatedJson {
    std::size_t line = 1;
    std::string key;                // of the member of an object that it is
    nlohmann::json value;           // an object or array is here only the empty one
    std::vector<LocatedJson> items; // the members of an object or elements of an array

    const LocatedJson* find(std::string_view wanted_key) const;
};

// Throws a LocatedError for what is no JSON, holds a key twice in an object, or is nested deeper
// than anything here is.
LocatedJson parse_json(std::string_view text);

} // namespace veltosim
