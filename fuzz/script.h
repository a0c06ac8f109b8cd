#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace fuzz
{

// An input that is a stream of bytes with what is to happen to it: the number of steps, a byte for
// each, then the stream. What steps below the number of `actions` mean is the target's business;
// the others take a piece of the stream.
class Script
{
public:
    struct Step {
        std::optional<std::uint8_t> action;
        std::string_view piece; // if there is no action
    };

    Script(std::string_view input, std::uint8_t action_count) : actions(action_count)
    {
        const std::size_t count = input.empty() ? 0 : static_cast<std::uint8_t>(input.front());
        input.remove_prefix(std::min<std::size_t>(1, input.size()));
        steps = input.substr(0, count);
        stream = input.substr(steps.size());
    }

    // The last step takes the rest of the stream.
    std::optional<Step> next()
    {
        if (steps.empty()) {
            return stream.empty() ? std::nullopt : std::optional<Step>({{}, take(stream.size())});
        }
        const auto step = static_cast<std::uint8_t>(steps.front());
        steps.remove_prefix(1);
        if (step < actions) {
            return Step{step, {}};
        }
        const std::size_t length = std::size_t{step} - actions + 1;
        return Step{{}, take(length <= short_pieces ? length : (length - short_pieces) * 32)};
    }

    // The next line of the stream, without its end.
    std::string_view take_line()
    {
        const std::size_t end = stream.find('\n');
        const std::string_view line = take(std::min(end, stream.size()));
        take(1);
        return line;
    }

    // The input that does this.
    static std::string make(std::string_view steps, std::string_view stream)
    {
        return std::string(1, static_cast<char>(steps.size())).append(steps).append(stream);
    }

private:
    static constexpr std::size_t short_pieces = 64;

    std::string_view take(std::size_t count)
    {
        const std::string_view piece = stream.substr(0, count);
        stream.remove_prefix(piece.size());
        return piece;
    }

    std::uint8_t actions;
    std::string_view steps;
    std::string_view stream;
};

} // namespace fuzz
