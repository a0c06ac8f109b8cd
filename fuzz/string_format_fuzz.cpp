// AStringFormat beside a plain model of it. The first line of the input is the template; each other
// line is an argument, as a number if it begins with #.

#include "foundation/astringformat.h"
#include "fuzz/check.h"

#include <string>
#include <vector>

namespace
{

class Model
{
public:
    explicit Model(std::string_view text)
    {
        std::string literal;
        while (!text.empty()) {
            const std::size_t length = placeholder_length(text);
            if (length == 0) {
                literal += text.front();
                text.remove_prefix(1);
                continue;
            }
            pieces.push_back({std::exchange(literal, {}), filled});
            pieces.push_back({std::string(text.substr(0, length)),
                              std::stoi(std::string(text.substr(1, length - 1)))});
            text.remove_prefix(length);
        }
        pieces.push_back({literal, filled});
    }

    void arg(const std::string& value)
    {
        Piece* lowest = nullptr;
        for (Piece& piece : pieces) {
            if (piece.number != filled && (lowest == nullptr || piece.number < lowest->number)) {
                lowest = &piece;
            }
        }
        if (lowest != nullptr) {
            *lowest = {value, filled};
        }
    }

    std::string to_string() const
    {
        std::string all;
        for (const Piece& piece : pieces) {
            all += piece.text;
        }
        return all;
    }

private:
    static constexpr int filled = -1;
    struct Piece {
        std::string text;
        int number;
    };

    static std::size_t placeholder_length(std::string_view text)
    {
        if (text.front() != '%') {
            return 0;
        }
        const std::size_t end = std::min(text.find_first_not_of("0123456789", 1), text.size());
        return end == 2 || end == 3 ? end : 0;
    }

    std::vector<Piece> pieces;
};

std::string_view take_line(std::string_view& input)
{
    const std::size_t end = std::min(input.find('\n'), input.size());
    const std::string_view line = input.substr(0, end);
    input.remove_prefix(std::min(end + 1, input.size()));
    return line;
}

AString to_astring(std::string_view text)
{
    return AString(text.data(), text.size());
}

} // namespace

// Bytes are taken as characters here: what is UTF-8 is another target's business.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view input = fuzz::text_of(data, size);
    const std::string_view text = take_line(input);
    AStringFormat format(to_astring(text));
    Model model(text);
    while (!input.empty()) {
        const std::string_view argument = take_line(input);
        if (argument.starts_with('#')) {
            const std::uint64_t number = argument.size() * 0x0123456789ABCDEFu;
            format.arg(number, 24, '0');
            const std::string digits = std::to_string(number);
            model.arg(std::string(24 - digits.size(), '0') + digits);
        } else {
            format.arg(to_astring(argument));
            model.arg(std::string(argument));
        }
        const std::string expected = model.to_string();
        FUZZ_CHECK(format.to_string() == to_astring(expected));
    }
    FUZZ_CHECK(format.to_string() == to_astring(model.to_string()));
    return 0;
}
