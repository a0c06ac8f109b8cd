#pragma once

#include "connection/last_error.h"
#include "support/await.h"
#include "velto/velto.h"

#include <ostream>
#include <string>

// How an exported function or a member ended: its result, and the text that it left.
struct Outcome {
    VeltoResult result;
    std::string text;

    bool operator==(const Outcome&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome)
    {
        return out << outcome.result << " \"" << outcome.text << '"';
    }
};

inline const Outcome succeeded{VELTO_RESULT_OK, "OK"};
inline const Outcome link_failed{VELTO_RESULT_FAILED, "Failing all outstanding commands"};
inline const Outcome failed_question{VELTO_RESULT_FAILED, "OK"};
inline const Outcome invalid_handle{VELTO_RESULT_INVALID_HANDLE, "Invalid handle"};

// Calls it here.
template <typename Call>
Outcome outcome_of(Call call)
{
    const VeltoResult result = call();
    return {result, get_last_error_text().to_utf8()};
}

// Calls it on a thread of its own, while the test plays the server.
template <typename Call>
std::future<Outcome> calling(Call call)
{
    return in_thread([call] { return outcome_of(call); });
}
