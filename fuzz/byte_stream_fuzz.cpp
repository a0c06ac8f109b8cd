// What a server sends, in pieces of any size, up to the state that applications read: with commands
// waiting, questions asked between the pieces, and links lost.

#include "fuzz/check.h"
#include "fuzz/link.h"
#include "fuzz/script.h"

namespace
{

void feed(fuzz::Link& link, std::string_view piece)
{
    link.feed(piece);
    if (link.is_broken()) {
        link.lose();
    }
}

// The pieces up to the next action answer a question.
std::optional<fuzz::Script::Step> feed_pieces(fuzz::Link& link, fuzz::Script& script)
{
    for (auto step = script.next(); step; step = script.next()) {
        if (step->action) {
            return step;
        }
        feed(link, step->piece);
    }
    return std::nullopt;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto questions = fuzz::questions();
    const auto action_count = static_cast<std::uint8_t>(questions.size() + 1);
    fuzz::Script script(fuzz::text_of(data, size), action_count);
    fuzz::Link link;
    auto step = feed_pieces(link, script);
    while (step) {
        if (const std::uint8_t action = *step->action; action < questions.size()) {
            step.reset();
            link.ask(questions[action], [&] { step = feed_pieces(link, script); });
        } else {
            link.lose();
            step = feed_pieces(link, script);
        }
    }
    link.read_back();
    return 0;
}
