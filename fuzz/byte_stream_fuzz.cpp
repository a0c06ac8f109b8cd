// What a server sends, in pieces of any size, up to the state that applications read: with commands
// waiting, questions asked between the pieces, and links lost.

#include "fuzz/both_roads.h"
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

fuzz::Script make_script(std::string_view input)
{
    return fuzz::Script(input, static_cast<std::uint8_t>(fuzz::questions().size() + 1));
}

void play(std::string_view input)
{
    const auto questions = fuzz::questions();
    fuzz::Script script = make_script(input);
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
}

// Without the questions: each action begins another link.
void compare_roads(std::string_view input)
{
    fuzz::Script script = make_script(input);
    fuzz::BothRoads roads;
    while (const auto step = script.next()) {
        if (step->action) {
            roads.lose();
        } else {
            roads.feed(step->piece);
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input = fuzz::text_of(data, size);
    play(input);
    compare_roads(input);
    return 0;
}
